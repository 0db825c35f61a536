#pragma once

#include <cstdint>

namespace korvanel {

inline constexpr const char* kAppName = "Korvanel";
// The About box shows "%u.%u %s" from major, minor and tag, the platform as
// "%s (%s)" and "Dev Ver: %u.%u.%05u" with the source revision; the update
// check compares (major, minor) with the remote records.
inline constexpr uint32_t kVersionMajor = 1;
inline constexpr uint32_t kVersionMinor = 4;
inline constexpr const char* kVersionTag = "(Stable)";
inline constexpr uint32_t kSourceRevision = 1054;
inline constexpr const char* kPlatformName = "x64";
// "%u.%u" of major and minor.
inline constexpr const char* kAppVersion = "1.4";

}  // namespace korvanel
