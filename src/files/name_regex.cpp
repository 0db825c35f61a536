#include "files/name_regex.h"

#include <algorithm>
#include <cctype>

#include "image/text_util.h"

namespace korvanel {

namespace {

size_t NestingDepth(const std::string& regex) {
  size_t depth = 0, deepest = 0;
  bool escaped = false;
  for (char c : regex) {
    if (escaped) {
      escaped = false;
    } else if (c == '\\') {
      escaped = true;
    } else if (c == '(') {
      deepest = std::max(deepest, ++depth);
    } else if (c == ')' && depth > 0) {
      --depth;
    }
  }
  return deepest;
}

// The largest number the regex compiler will read as an integer: a
// "{m}" / "{m,n}" repetition count or a "\\n" back-reference, saturated.
size_t LargestRepeat(const std::string& regex) {
  size_t largest = 0;
  bool escaped = false;
  for (size_t i = 0; i < regex.size(); ++i) {
    const char c = regex[i];
    if (escaped) {
      escaped = false;
      size_t value = 0;
      for (size_t j = i; j < regex.size() && std::isdigit(static_cast<unsigned char>(regex[j])); ++j) {
        value = std::min<size_t>(value * 10 + static_cast<size_t>(regex[j] - '0'), kMaxRegexRepeat + 1);
      }
      largest = std::max(largest, value);
      continue;
    }
    if (c == '\\') {
      escaped = true;
      continue;
    }
    if (c != '{') continue;
    size_t value = 0;
    for (size_t j = i + 1; j < regex.size() && (std::isdigit(static_cast<unsigned char>(regex[j])) || regex[j] == ','); ++j) {
      if (regex[j] == ',') {
        value = 0;
        continue;
      }
      value = std::min<size_t>(value * 10 + static_cast<size_t>(regex[j] - '0'), kMaxRegexRepeat + 1);
      largest = std::max(largest, value);
    }
  }
  return largest;
}

std::regex::flag_type Flags() {
#ifdef __GLIBCXX__
  // libstdc++'s breadth-first engine: polynomial time, no back-references.
  return std::regex::icase | std::regex_constants::__polynomial;
#else
  return std::regex::icase;
#endif
}

}  // namespace

bool MatchWholeName(const std::string& regex, const std::string& name, std::smatch* groups,
                    ILineSink& log) {
  if (regex.size() > kMaxRegexLength || NestingDepth(regex) > kMaxRegexNesting ||
      LargestRepeat(regex) > kMaxRegexRepeat) {
    log.AddLine(StrFormat("Regex too complex (over %zu characters, %zu nested groups or %zu repeats) [%.64s...]",
                          kMaxRegexLength, kMaxRegexNesting, kMaxRegexRepeat, regex.c_str()));
    return false;
  }
  if (name.size() > kMaxMatchedNameLength) return false;
  try {
    const std::regex re(regex, Flags());
    if (groups != nullptr) return std::regex_match(name, *groups, re);
    return std::regex_match(name, re);
  } catch (const std::regex_error&) {
    log.AddLine(StrFormat("Invalid regex [%s]", regex.c_str()));
    return false;
  }
}

}  // namespace korvanel
