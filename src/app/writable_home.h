#pragma once

// Where the program's own writable files go. The folder of the executable
// comes first, as in build trees and portable copies. An installed program
// (/usr/bin) cannot write there, so then logs go to $XDG_STATE_HOME/korvanel,
// "Korvanel.dat" and a relative saved I-Eval list path to
// $XDG_CONFIG_HOME/korvanel, and "Korvanel.ini" is also looked for there.

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace korvanel {

// The environment variables the fallback folders come from.
struct HomeEnvironment {
  std::string xdg_config_home;
  std::string xdg_state_home;
  std::string home;

  static HomeEnvironment FromProcess();
};

class CWritableHome {
 public:
  CWritableHome(std::filesystem::path program_dir, bool program_dir_writable, const HomeEnvironment& env);

  const std::filesystem::path& ProgramDir() const { return program_dir_; }
  // True when the program folder is read-only and the XDG folders are used.
  bool UsesFallback() const { return fallback_; }
  // "Korvanel.dat", the saved I-Eval list: the program folder or
  // $XDG_CONFIG_HOME/korvanel.
  const std::filesystem::path& FilesFolder() const { return files_folder_; }
  // The default work path (logs): the program folder or $XDG_STATE_HOME/korvanel.
  const std::filesystem::path& LogFolder() const { return log_folder_; }
  // Where "Korvanel.ini" is looked for, in order.
  std::vector<std::filesystem::path> ConfigFileCandidates(std::string_view name) const;
  // A configured file path: unchanged while the program folder is writable
  // (relative to the current folder, as always); a relative one lands in
  // FilesFolder() otherwise.
  std::filesystem::path Resolve(const std::filesystem::path& configured) const;

 private:
  std::filesystem::path program_dir_;
  bool fallback_ = false;
  std::filesystem::path files_folder_;
  std::filesystem::path log_folder_;
};

// The running program's home: the executable's folder, judged writable with
// access(W_OK), and the process environment; made on first use.
const CWritableHome& ProgramHome();

// The one answer to "where does the writable file `name` go": in
// ProgramHome().FilesFolder(), created when missing.
std::filesystem::path WritableFilePath(std::string_view name);

// A configured path of a writable file (the saved I-Eval list) resolved by
// ProgramHome(); the fallback folder is created when the path lands there.
std::filesystem::path ResolveWritablePath(const std::filesystem::path& configured);

}  // namespace korvanel
