#include "app/writable_home.h"

#include <unistd.h>

#include <cstdlib>
#include <system_error>

#include "app/configuration.h"

namespace korvanel {
namespace {

constexpr const char* kAppFolder = "korvanel";

std::string EnvironmentValue(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

// An XDG base folder: the variable when it holds an absolute path (XDG
// says to ignore relative ones), else the default under $HOME.
std::filesystem::path BaseFolder(const std::string& variable, const std::string& home,
                                 const char* home_default) {
  if (!variable.empty() && std::filesystem::path(variable).is_absolute()) return variable;
  if (home.empty()) return {};
  return std::filesystem::path(home) / home_default;
}

}  // namespace

HomeEnvironment HomeEnvironment::FromProcess() {
  return {EnvironmentValue("XDG_CONFIG_HOME"), EnvironmentValue("XDG_STATE_HOME"), EnvironmentValue("HOME")};
}

CWritableHome::CWritableHome(std::filesystem::path program_dir, bool program_dir_writable,
                             const HomeEnvironment& env)
    : program_dir_(std::move(program_dir)), files_folder_(program_dir_), log_folder_(program_dir_) {
  if (program_dir_writable) return;
  const std::filesystem::path config = BaseFolder(env.xdg_config_home, env.home, ".config");
  const std::filesystem::path state = BaseFolder(env.xdg_state_home, env.home, ".local/state");
  // Without any home there is nowhere better than the program folder.
  if (config.empty() || state.empty()) return;
  fallback_ = true;
  files_folder_ = config / kAppFolder;
  log_folder_ = state / kAppFolder;
}

std::vector<std::filesystem::path> CWritableHome::ConfigFileCandidates(std::string_view name) const {
  std::vector<std::filesystem::path> candidates = {program_dir_ / name};
  if (fallback_) candidates.push_back(files_folder_ / name);
  return candidates;
}

std::filesystem::path CWritableHome::Resolve(const std::filesystem::path& configured) const {
  if (!fallback_ || configured.empty() || configured.is_absolute()) return configured;
  return files_folder_ / configured;
}

const CWritableHome& ProgramHome() {
  static const CWritableHome home = [] {
    const std::filesystem::path dir = ExecutableDirectory();
    const bool writable = access(dir.c_str(), W_OK) == 0;
    return CWritableHome(dir, writable, HomeEnvironment::FromProcess());
  }();
  return home;
}

namespace {

// A folder that cannot be made fails the write later, with its own message.
void MakeFallbackFolder(const CWritableHome& home, const std::filesystem::path& folder) {
  std::error_code ignored;
  if (home.UsesFallback()) std::filesystem::create_directories(folder, ignored);
}

}  // namespace

std::filesystem::path WritableFilePath(std::string_view name) {
  const CWritableHome& home = ProgramHome();
  MakeFallbackFolder(home, home.FilesFolder());
  return home.FilesFolder() / name;
}

std::filesystem::path ResolveWritablePath(const std::filesystem::path& configured) {
  const CWritableHome& home = ProgramHome();
  const std::filesystem::path resolved = home.Resolve(configured);
  if (resolved != configured) MakeFallbackFolder(home, home.FilesFolder());
  return resolved;
}

}  // namespace korvanel
