#pragma once

namespace korvanel {

inline constexpr const char* kAppName = "Korvanel";
inline constexpr const char* kAppVersion = "0.1.0";

}  // namespace korvanel
