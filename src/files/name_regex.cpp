#include "files/name_regex.h"

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
  if (regex.size() > kMaxRegexLength || NestingDepth(regex) > kMaxRegexNesting) {
    log.AddLine(StrFormat("Regex too complex (over %zu characters or %zu nested groups) [%.64s...]",
                          kMaxRegexLength, kMaxRegexNesting, regex.c_str()));
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
