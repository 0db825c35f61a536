#pragma once

// Matching a plain file name against a rule's regex: the standard library's
// default (ECMAScript) grammar, case-insensitive, the whole name.
//
// Rules come from users' files, so a pattern must not be able to hang or
// crash the program: matching runs on the polynomial-time engine (nested
// repetitions such as "(a*)*b" cannot take exponential time, and
// back-references are refused), and patterns longer than kMaxRegexLength,
// nested deeper than kMaxRegexNesting or repeating more than
// kMaxRegexRepeat times ("a{100000}" builds that many states, and a count
// past the range of long overflows inside the library) are refused before
// they are compiled.

#include <cstddef>
#include <regex>
#include <string>

#include "image/line_sink.h"

namespace korvanel {

inline constexpr size_t kMaxRegexLength = 2048;
inline constexpr size_t kMaxRegexNesting = 64;
inline constexpr size_t kMaxRegexRepeat = 1000;
// Longer than any file name a file system hands out.
inline constexpr size_t kMaxMatchedNameLength = 4096;

// False, with one log line, when the pattern is refused; a name that does
// not match is false without a line.
bool MatchWholeName(const std::string& regex, const std::string& name, std::smatch* groups,
                    ILineSink& log);

}  // namespace korvanel
