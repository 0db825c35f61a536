#include "app/app_logs.h"

namespace korvanel {
namespace {

struct LogBinding {
  CLogger AppLogs::*log;
  LogSetting ConfigDeveloper::*entry;
};

constexpr LogBinding kBindings[] = {
    {&AppLogs::app, &ConfigDeveloper::log_app_msg},
    {&AppLogs::batch, &ConfigDeveloper::debug_batch_error_log},
    {&AppLogs::format_load, &ConfigDeveloper::debug_load_format_log},
};

}  // namespace

void AppLogs::Configure(const ConfigValues& values) {
  const std::filesystem::path work_path(values.system.work_path);
  for (const LogBinding& binding : kBindings) {
    const LogSetting& entry = values.developer.*binding.entry;
    CLogger& log = this->*binding.log;
    log.SetEnabled(entry.enabled);
    log.SetStampMode(entry.stamp_mode);
    log.SetPath(work_path / entry.file_name);
  }
  config_errors.SetEnabled(true);
  config_errors.SetStampMode(StampMode::kSession);
  config_errors.SetPath(work_path / kConfigErrorLogName);
}

}  // namespace korvanel
