#pragma once

// The process-wide configuration: built-in defaults overwritten key by key
// from an optional file "Korvanel.ini" beside the executable. Problems in the
// file never stop the program: each is one line in "qel.cfg_err.txt" (work
// path) and the key keeps its default. Missing files and keys are no error.

#include <filesystem>
#include <string>
#include <vector>

#include "app/app_logs.h"
#include "app/config_values.h"

namespace korvanel {

inline constexpr const char* kConfigFileName = "Korvanel.ini";

class CConfiguration {
 public:
  // `program_dir` is the default work path: the executable's folder, or the
  // XDG state folder when that is read-only (writable_home.h).
  explicit CConfiguration(std::filesystem::path program_dir);

  // Reads `path` over fresh defaults and applies it, then writes the
  // rejections (if any) to the configuration warnings log as one entry titled
  // with the path. Returns false, changing nothing, when the file is missing
  // or cannot be read (a pipe, device, folder or a huge file is logged as a
  // rejection and not read).
  bool Load(const std::filesystem::path& path);

  const ConfigValues& Values() const { return values_; }
  // For the switches the viewer toggles at run time.
  ConfigValues& MutableValues() { return values_; }
  const std::vector<std::string>& Lines() const { return lines_; }
  // The rejection lines of the last Load.
  const std::vector<std::string>& Rejections() const { return rejections_; }
  bool Loaded() const { return loaded_; }
  AppLogs& Logs() { return logs_; }
  const std::filesystem::path& ProgramDir() const { return program_dir_; }

 private:
  void LogRejections(const std::filesystem::path& path, const std::vector<std::string>& lines);

  std::filesystem::path program_dir_;
  ConfigValues values_;
  std::vector<std::string> lines_;
  std::vector<std::string> rejections_;
  bool loaded_ = false;
  AppLogs logs_;
};

// The directory of the running executable (from /proc/self/exe), or the
// current directory when that cannot be read.
std::filesystem::path ExecutableDirectory();

// The process-wide instance; the first call loads "Korvanel.ini" from the
// executable's directory, or when that folder is read-only and has none, from
// $XDG_CONFIG_HOME/korvanel.
CConfiguration& GetConfiguration();

}  // namespace korvanel
