#include "expr/ieval_list.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "image/text_util.h"

namespace korvanel {
namespace {

bool IsNameStart(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }

bool IsNameChar(char c) {
  return IsNameStart(c) || (c >= '0' && c <= '9') ||
         CIEvalList::kNameChars.find(c) != std::string_view::npos;
}

std::string_view WithoutTrailingBlanks(std::string_view line) {
  while (!line.empty() && (line.back() == ' ' || line.back() == '\t' || line.back() == '\r')) {
    line.remove_suffix(1);
  }
  return line;
}

}  // namespace

bool CIEvalList::CheckName(std::string_view name, std::string& message) {
  const bool ok = !name.empty() && name.size() <= kMaxNameLength && IsNameStart(name[0]) &&
                  std::all_of(name.begin() + 1, name.end(), IsNameChar);
  if (!ok) {
    message = StrFormat(
        "Illegal I-Eval name. Make sure it starts with [a-z,A-Z,_] and followed by alpha-numeric "
        "or any of '%.*s' chars. The name can't exceed length of %u",
        static_cast<int>(kNameChars.size()), kNameChars.data(),
        static_cast<unsigned>(kMaxNameLength));
  }
  return ok;
}

bool CIEvalList::Load(const std::string& path, std::vector<std::string>& messages) {
  const std::filesystem::path file(path);
  std::error_code error;
  const std::filesystem::path folder = file.parent_path();
  if (!folder.empty() && !std::filesystem::is_directory(folder, error)) {
    messages.push_back(StrFormat("Failed: Path not found '%s'", path.c_str()));
    return false;
  }
  items_.clear();
  order_.clear();
  std::ifstream in(file);
  if (!in) return true;

  std::string raw;
  uint32_t line_number = 0;
  bool in_item = false;
  bool skipping = false;
  std::string name;
  std::string closing;
  std::string expression;
  const auto finish = [&] {
    if (!skipping) {
      if (!items_.contains(name)) order_.push_back(name);
      items_[name] = expression;
    }
    in_item = false;
  };
  while (std::getline(in, raw)) {
    ++line_number;
    const std::string_view line = WithoutTrailingBlanks(raw);
    if (in_item) {
      if (line == closing) {
        finish();
      } else {
        expression += (expression.empty() ? "" : "\n") + std::string(line);
      }
      continue;
    }
    if (!line.starts_with('<')) continue;
    const size_t close = line.find('>');
    name = std::string(line.substr(1, close == std::string_view::npos ? line.size() - 1 : close - 1));
    closing = "</" + name + ">";
    expression.clear();
    in_item = true;
    std::string ignored;
    skipping = close == std::string_view::npos || !CheckName(name, ignored);
    if (skipping) {
      messages.push_back(StrFormat("Failed to load item at line #%u: illegal name '%s'",
                                   line_number, name.c_str()));
    }
  }
  if (in_item) finish();  // an item the file ends inside keeps what it has
  return true;
}

bool CIEvalList::Store(const std::string& path, std::string& message) const {
  std::ofstream out(path, std::ios::trunc);
  for (const std::string& name : order_) {
    if (!out) break;
    out << '<' << name << ">\n" << items_.at(name) << "\n</" << name << ">\n";
  }
  out.flush();
  if (!out) {
    message = StrFormat("Failed: Can't write to '%s'", path.c_str());
    return false;
  }
  return true;
}

bool CIEvalList::Add(std::string_view name, std::string_view expression,
                     bool overwrite_without_prompt,
                     const std::function<bool(std::string_view question)>& ask_overwrite,
                     std::string& message) {
  if (!CheckName(name, message)) return false;
  const auto it = items_.find(name);
  if (it != items_.end()) {
    if (!overwrite_without_prompt &&
        !(ask_overwrite && ask_overwrite("The name you're trying to add already exists.\n"
                                         "Overwrite it?"))) {
      return false;
    }
    it->second = expression;
    return true;
  }
  items_.emplace(std::string(name), std::string(expression));
  order_.emplace_back(name);
  return true;
}

bool CIEvalList::Delete(std::string_view name) {
  const auto it = items_.find(name);
  if (it == items_.end()) return false;
  items_.erase(it);
  std::erase(order_, std::string(name));
  return true;
}

bool CIEvalList::MoveUp(std::string_view name) {
  if (view_ != View::Custom) return false;
  const auto it = std::find(order_.begin(), order_.end(), name);
  if (it == order_.end() || it == order_.begin()) return false;
  std::iter_swap(it, it - 1);
  return true;
}

bool CIEvalList::MoveDown(std::string_view name) {
  if (view_ != View::Custom) return false;
  const auto it = std::find(order_.begin(), order_.end(), name);
  if (it == order_.end() || it + 1 == order_.end()) return false;
  std::iter_swap(it, it + 1);
  return true;
}

const char* CIEvalList::ToggleText() const {
  return view_ == View::Custom ? "Sorted list ->" : "Custom list ->";
}

std::vector<std::string> CIEvalList::Names() const {
  if (view_ == View::Custom) return order_;
  std::vector<std::string> sorted;
  for (const auto& item : items_) sorted.push_back(item.first);
  return sorted;
}

const std::string* CIEvalList::Find(std::string_view name) const {
  const auto it = items_.find(name);
  return it == items_.end() ? nullptr : &it->second;
}

std::string CIEvalList::MarkerText(std::string_view name) {
  return "{$" + std::string(name) + "$}";
}

std::string CIEvalList::ExpressionText(std::string_view name) const {
  const std::string* expression = Find(name);
  return expression == nullptr ? std::string() : "{" + *expression + "}";
}

bool CIEvalList::ExpandNameMarkers(std::string_view text, std::string& out,
                                   std::string& message) const {
  out = text;
  size_t from = 0;
  // A marker that expands to itself does not grow; the count of expansions
  // ends it like the length ends a growing one.
  for (size_t expansions = 0;; ++expansions) {
    const size_t start = out.find('$', from);
    if (start == std::string::npos) return true;
    const size_t end = out.find('$', start + 1);
    if (end == std::string::npos) {
      message = StrFormat("Found name marker start %c w/o a matching end in pos %d", '$',
                          static_cast<int>(start));
      return false;
    }
    const std::string name = out.substr(start + 1, end - start - 1);
    const std::string* expression = Find(name);
    if (expression == nullptr) {
      message = StrFormat("Unknown name marker '%s' in pos %d", name.c_str(),
                          static_cast<int>(start));
      return false;
    }
    out.replace(start, end - start + 1, *expression);
    if (out.size() > kMaxExpandedLength || expansions >= kMaxExpandedLength) {
      message = StrFormat("I-Eval (expanded) length is too long (max is %u)",
                          static_cast<unsigned>(kMaxExpandedLength));
      return false;
    }
    from = start;
  }
}

}  // namespace korvanel
