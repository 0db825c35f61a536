#include "files/save_path.h"

#include <fstream>

#include "files/path_parts.h"
#include "image/text_util.h"

namespace korvanel {

std::string SaveFolder(std::string_view file_name, bool from_file, const SaveSettings& settings) {
  std::string folder = from_file ? SplitPath(file_name).directory : settings.work_path;
  while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  return folder.empty() ? "." : folder;
}

std::optional<std::string> ResolveSavePath(const std::string& name, const std::string& folder,
                                           const SaveOptions& options, const SaveSettings& settings,
                                           std::string_view title, ISaveHost& host) {
  std::string path;
  if (!options.forced_name.empty()) {
    path = options.forced_name;
  } else if (settings.auto_naming) {
    path = StrFormat("%s/%s", folder.c_str(), name.c_str());
  } else if (settings.console_batch || !host.AskFileName(StrFormat("%s/%s", folder.c_str(), name.c_str()), path)) {
    return std::nullopt;
  }
  if (options.overwrite_existing || !std::ifstream(path, std::ios::binary)) return path;
  if (settings.console_batch) {
    host.ShowError(StrFormat("The file %s already exists.", path.c_str()), "Save file error");
    return std::nullopt;
  }
  if (!host.AskYesNo(StrFormat("The file %s already exists. Overwrite?", path.c_str()), title)) {
    return std::nullopt;
  }
  return path;
}

}  // namespace korvanel
