#include "app/edit_history.h"

#include <algorithm>
#include <fstream>
#include <system_error>

#include "app/line_reader.h"

namespace korvanel {

namespace {

bool IsTagLine(std::string_view line) {
  return line.size() >= 3 && line.front() == '[' && line.back() == ']' &&
         line.find_first_of("[]", 1) == line.size() - 1;
}

std::string Escape(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    switch (c) {
      case '\\': out += "\\\\"; break;
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      default: out += c; break;
    }
  }
  return out;
}

std::string Unescape(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      out += text[i];
      continue;
    }
    const char next = text[++i];
    out += next == 'n' ? '\n' : next == 'r' ? '\r' : next;
  }
  return out;
}

// Whether the entry's line ("=" and the escaped text) loads again: a longer
// line would be cut and dropped, so such an entry is not kept in the first
// place.
bool FitsOnALine(std::string_view text) {
  size_t length = 1 + text.size();
  for (char c : text) length += c == '\\' || c == '\n' || c == '\r' ? 1 : 0;
  return length <= kMaxEditHistoryLine;
}

bool IsBlank(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c == ' ' || c == '\t'; });
}

}  // namespace

void CEditHistory::Add(std::string_view tag, std::string_view text) {
  if (tag.empty() || IsBlank(text) || !FitsOnALine(text)) return;
  auto found = lists_.find(tag);
  if (found == lists_.end()) found = lists_.emplace(std::string(tag), std::vector<std::string>{}).first;
  std::vector<std::string>& list = found->second;
  std::erase(list, text);
  list.insert(list.begin(), std::string(text));
  if (list.size() > kEditHistoryDepth) list.resize(kEditHistoryDepth);
}

const std::vector<std::string>& CEditHistory::Entries(std::string_view tag) const {
  static const std::vector<std::string> kNone;
  const auto found = lists_.find(tag);
  return found == lists_.end() ? kNone : found->second;
}

std::vector<std::string> CEditHistory::Tags() const {
  std::vector<std::string> tags;
  for (const auto& [tag, list] : lists_) tags.push_back(tag);
  return tags;
}

void CEditHistory::AddNewer(const CEditHistory& newer) {
  for (const auto& [tag, list] : newer.lists_) {
    for (auto text = list.rbegin(); text != list.rend(); ++text) Add(tag, *text);
  }
}

LineReadStatus CEditHistory::Load(const std::filesystem::path& path) {
  lists_.clear();
  LineReadOptions options;
  options.max_line_length = kMaxEditHistoryLine;
  LineReadResult read = ReadTextLines(path, options);
  if (read.status != LineReadStatus::kOk) return read.status;
  std::vector<bool> cut(read.lines.size() + 1, false);
  for (uint32_t number : read.cut_lines) {
    if (number <= read.lines.size()) cut[number - 1] = true;
  }
  std::vector<std::string>* current = nullptr;
  for (size_t i = 0; i < read.lines.size(); ++i) {
    const std::string& line = read.lines[i];
    if (cut[i]) continue;
    if (IsTagLine(line)) {
      current = &lists_[line];
    } else if (current != nullptr && !line.empty() && line.front() == '=' &&
               current->size() < kEditHistoryDepth) {
      std::string text = Unescape(std::string_view(line).substr(1));
      if (!IsBlank(text) && FitsOnALine(text) && std::find(current->begin(), current->end(), text) == current->end()) {
        current->push_back(std::move(text));
      }
    }
  }
  return LineReadStatus::kOk;
}

bool CEditHistory::Store(const std::filesystem::path& path) const {
  std::filesystem::path fresh = path;
  fresh += ".new";
  {
    std::ofstream out(fresh, std::ios::binary | std::ios::trunc);
    if (!out) return false;
    out << "# Korvanel dialog edit history: [TAG] lines, then =entry lines, most recent first\n";
    for (const auto& [tag, list] : lists_) {
      out << tag << '\n';
      for (const std::string& text : list) out << '=' << Escape(text) << '\n';
    }
    out.flush();
    if (!out) {
      out.close();
      std::error_code ignored;
      std::filesystem::remove(fresh, ignored);
      return false;
    }
  }
  std::error_code error;
  std::filesystem::rename(fresh, path, error);
  if (!error) return true;
  std::filesystem::remove(fresh, error);
  return false;
}

}  // namespace korvanel
