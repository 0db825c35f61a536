#pragma once

// Runs the real program in a test's own folder. The binary is linked (or
// copied) into the folder so that the Korvanel.ini and logs it uses beside
// itself are the test's, never the build tree's.

#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "support/temp_dir.h"

namespace korvanel::test {

struct ProgramRun {
  int status = -1;     // exit status
  std::string output;  // standard output and error
};

inline std::string ShellQuote(const std::string& text) {
  std::string out = "'";
  for (char c : text) {
    if (c == '\'') out += "'\\''";
    else out += c;
  }
  return out + "'";
}

class ProgramRunner {
 public:
  // `ini` becomes the Korvanel.ini beside the program; by default the logs go
  // to the test folder.
  explicit ProgramRunner(const TempDir& dir, const std::string& ini = "") : dir_(dir) {
    const std::filesystem::path exe = dir.path() / "korvanel";
    std::error_code error;
    std::filesystem::create_hard_link(KORVANEL_BIN, exe, error);
    if (error) std::filesystem::copy_file(KORVANEL_BIN, exe, error);
    dir.Write("Korvanel.ini", ini.empty() ? "[system]\nwork_path = " + dir.path().string() + "\n" : ini);
  }

  ProgramRun Run(const std::vector<std::string>& arguments) const {
    std::string command = "cd " + ShellQuote(dir_.path().string()) + " && ./korvanel";
    for (const std::string& a : arguments) command += " " + ShellQuote(a);
    command += " 2>&1";
    ProgramRun run;
    std::FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return run;
    char buffer[4096];
    size_t n = 0;
    while ((n = std::fread(buffer, 1, sizeof(buffer), pipe)) > 0) run.output.append(buffer, n);
    const int raw = pclose(pipe);
    run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    return run;
  }

 private:
  const TempDir& dir_;
};

}  // namespace korvanel::test
