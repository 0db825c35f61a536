#include "app/configuration.h"

#include "app/config_reader.h"
#include "app/line_reader.h"
#include "app/writable_home.h"
#include "image/text_util.h"

namespace korvanel {

CConfiguration::CConfiguration(std::filesystem::path program_dir)
    : program_dir_(std::move(program_dir)) {
  ResetConfigValues(values_, program_dir_);
  logs_.Configure(values_);
}

bool CConfiguration::Load(const std::filesystem::path& path) {
  LineReadResult read = ReadTextLines(path, LineReadOptions{});
  if (read.status != LineReadStatus::kOk) return false;

  rejections_.clear();
  for (const uint32_t line : read.cut_lines) {
    rejections_.push_back(StrFormat("Line %u is longer than %zu characters, ignored", line,
                                    LineReadOptions{}.max_line_length));
    read.lines[line - 1].clear();
  }
  lines_ = std::move(read.lines);
  ResetConfigValues(values_, program_dir_);
  ApplyConfigLines(lines_, values_, rejections_);
  loaded_ = true;

  logs_.Configure(values_);
  if (!rejections_.empty()) {
    CLogger& log = logs_.config_errors;
    log.BeginEntry(path.string());
    for (const std::string& line : rejections_) log.AddLine(line);
    log.Flush();
  }
  return true;
}

std::filesystem::path ExecutableDirectory() {
  std::error_code error;
  const std::filesystem::path exe = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error || !exe.has_parent_path()) return std::filesystem::current_path(error);
  return exe.parent_path();
}

CConfiguration& GetConfiguration() {
  static CConfiguration config = [] {
    // An installed program keeps its logs in the XDG state folder and may
    // find its ini in the XDG configuration folder.
    const CWritableHome& home = ProgramHome();
    if (home.UsesFallback()) {
      std::error_code ignored;  // logs that cannot be written are skipped
      std::filesystem::create_directories(home.LogFolder(), ignored);
    }
    CConfiguration created(home.LogFolder());
    for (const std::filesystem::path& candidate : home.ConfigFileCandidates(kConfigFileName)) {
      if (created.Load(candidate)) break;
    }
    return created;
  }();
  return config;
}

}  // namespace korvanel
