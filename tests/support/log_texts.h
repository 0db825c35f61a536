#pragma once

#include <string>

namespace korvanel::test {

// The fixed lines of a log file and a clock that always says the same.
inline const std::string kSessionRule = "---xxx" + std::string(88, '-') + "xxx---";
inline const std::string kEntryRule(100, '-');

inline std::string FixedStamp() {
  return "Monday, March 3, 2025 :: 14:05:09";
}

// The header of a session whose start carries FixedStamp().
inline std::string StampedSessionStart() {
  return kSessionRule + "\nSession start [" + FixedStamp() + "]\n";
}

}  // namespace korvanel::test
