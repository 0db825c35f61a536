#pragma once

#include <string>
#include <string_view>

namespace korvanel {

// A path split at the last '/' and at the last '.' of the file name:
// "/x/cam.yuv" -> "/x/", "cam", "yuv". A name without '.' has no extension;
// a leading dot (".profile") is part of the stem.
struct PathParts {
  std::string directory;  // with its trailing '/', empty when none
  std::string stem;
  std::string extension;  // without the dot
  bool has_extension = false;
};

PathParts SplitPath(std::string_view path);

}  // namespace korvanel
