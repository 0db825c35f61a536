#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "files/save_host.h"

namespace korvanel {

// The folder automatic names go to: beside the source file for an image
// opened from one, else the work path (the current directory when there is
// none). No trailing '/'.
std::string SaveFolder(std::string_view file_name, bool from_file, const SaveSettings& settings);

// Where a save goes: the forced name as given, or `folder`/`name` with
// automatic naming on, or what the save dialog returns. An existing file is
// overwritten only with the overwrite option or when the user says Yes
// (`title` heads the question); a console batch run fails with a message.
// Nothing when the save must not happen.
std::optional<std::string> ResolveSavePath(const std::string& name, const std::string& folder,
                                           const SaveOptions& options, const SaveSettings& settings,
                                           std::string_view title, ISaveHost& host);

}  // namespace korvanel
