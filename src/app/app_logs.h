#pragma once

// The four logs of the program, all in the work path:
//   application log   "qel.log_app.txt"    key [developer] log_app_msg
//   batch error log   "qel.log_batch.txt"  key [developer] debug_batch_error_log
//   format-load log   "qel.log_fmt.txt"    key [developer] debug_load_format_log
//   configuration warnings "qel.cfg_err.txt", always on
// The three keys take "switch, file name" (see LogSetting).

#include <filesystem>

#include "app/config_values.h"
#include "app/logger.h"

namespace korvanel {

inline constexpr const char* kConfigErrorLogName = "qel.cfg_err.txt";

struct AppLogs {
  CLogger app;
  CLogger batch;
  CLogger format_load;
  CLogger config_errors;

  // Takes switches, stamp modes and paths from `values`; pending lines stay.
  void Configure(const ConfigValues& values);
};

}  // namespace korvanel
