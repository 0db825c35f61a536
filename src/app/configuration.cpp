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
  if (read.status != LineReadStatus::kOk) {
    // Something that is there but cannot be read is a problem of the file
    // like any other; the defaults stay.
    if (read.status != LineReadStatus::kMissing) {
      LogRejections(path, {StrFormat("The file %s, ignored", LineReadProblem(read.status))});
    }
    return false;
  }

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
  LogRejections(path, rejections_);
  return true;
}

void CConfiguration::LogRejections(const std::filesystem::path& path, const std::vector<std::string>& lines) {
  if (lines.empty()) return;
  CLogger& log = logs_.config_errors;
  log.BeginEntry(path.string());
  for (const std::string& line : lines) log.AddLine(line);
  log.Flush();
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
