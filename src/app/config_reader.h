#pragma once

// Applies the lines of a configuration file to the settings. A section runs
// from its "[name]" line to the next line starting with "["; a key line holds
// "=" and does not start with ";" (a comment) or "[". Blanks around names,
// "=" and values are ignored, and section and key names are compared without
// regard to case. Sections are applied in a fixed order whatever their order
// in the file; within a section the keys go in table order, and a key given
// more than once takes its last accepted value. Unknown sections and keys are
// ignored.

#include <filesystem>
#include <string>
#include <vector>

#include "app/config_values.h"

namespace korvanel {

// Sets every key to its default (the work path to `program_dir`). Returns the
// rejection lines, which stay empty unless the key table is broken.
std::vector<std::string> ResetConfigValues(ConfigValues& values,
                                           const std::filesystem::path& program_dir);

// Rejections are appended to `report`, one line each.
void ApplyConfigLines(const std::vector<std::string>& lines, ConfigValues& values,
                      std::vector<std::string>& report);

}  // namespace korvanel
