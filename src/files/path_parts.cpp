#include "files/path_parts.h"

namespace korvanel {

PathParts SplitPath(std::string_view path) {
  PathParts parts;
  const size_t slash = path.rfind('/');
  const size_t name_start = slash == std::string_view::npos ? 0 : slash + 1;
  parts.directory = std::string(path.substr(0, name_start));
  const std::string_view name = path.substr(name_start);
  const size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0) {
    parts.stem = std::string(name);
    return parts;
  }
  parts.stem = std::string(name.substr(0, dot));
  parts.extension = std::string(name.substr(dot + 1));
  parts.has_extension = true;
  return parts;
}

}  // namespace korvanel
