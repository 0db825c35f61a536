// An installed program whose folder is read-only (as /usr/bin is to its
// users) keeps its writable files in the XDG folders and reads its ini there.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "support/program_runner.h"
#include "support/temp_dir.h"

namespace korvanel {
namespace {

using test::ShellQuote;

std::vector<std::string> FolderEntries(const std::filesystem::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

class InstalledProgram : public ::testing::Test {
 protected:
  InstalledProgram() {
    std::filesystem::create_directories(program);
    std::filesystem::create_directories(config_home / "korvanel");
    std::error_code error;
    std::filesystem::create_hard_link(KORVANEL_BIN, program / "korvanel", error);
    if (error) std::filesystem::copy_file(KORVANEL_BIN, program / "korvanel", error);
    EXPECT_FALSE(error) << error.message();
  }

  // Runs the program from the work folder with its own folder read-only:
  // a read-only bind mount for root (who may write anywhere else), the
  // permission bits for everybody else. Empty when neither can be had.
  std::optional<test::ProgramRun> RunReadOnly(const std::string& arguments) {
    const std::string dir = ShellQuote(program.string());
    const std::string run = "cd " + ShellQuote(work.path().string()) +
                            " && XDG_CONFIG_HOME=" + ShellQuote(config_home.string()) +
                            " XDG_STATE_HOME=" + ShellQuote(state_home.string()) + " " +
                            ShellQuote((program / "korvanel").string()) + " " + arguments;
    std::string command;
    if (geteuid() == 0) {
      command = "unshare -m sh -c " +
                ShellQuote("mount --bind " + dir + " " + dir + " && mount -o remount,ro,bind " + dir + " " +
                           dir + " && touch " + dir + "/probe 2>/dev/null && exit 77; " + run);
    } else {
      chmod(program.c_str(), 0555);
      command = run;
    }
    std::FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) return std::nullopt;
    test::ProgramRun result;
    char buffer[4096];
    size_t n = 0;
    while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0) result.output.append(buffer, n);
    const int raw = pclose(pipe);
    chmod(program.c_str(), 0755);
    result.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    // Without a mount namespace (or when the mount did not make it
    // read-only) the case cannot be set up here.
    if (geteuid() == 0 && (result.status == 77 || result.output.find("unshare:") != std::string::npos ||
                           result.output.find("mount:") != std::string::npos)) {
      return std::nullopt;
    }
    return result;
  }

  test::TempDir root;
  test::TempDir work;
  std::filesystem::path program = root / "bin";
  std::filesystem::path config_home = root / "config";
  std::filesystem::path state_home = root / "state";
};

TEST_F(InstalledProgram, ReadOnlyFolderUsesTheXdgFoldersForIniLogsAndSavedList) {
  const std::filesystem::path own = config_home / "korvanel";
  std::ofstream(own / "Korvanel.ini") << "[developer]\ndebug_batch_error_log = 1, fallback_batch.txt\n";
  std::ofstream(own / "qel.ieval.txt") << "<Halve>\ni/2\n</Halve>\n";
  work.Write("p.bin", "ABCDEFGH");

  const std::optional<test::ProgramRun> run =
      RunReadOnly("p.bin -dims 4x2 -fmt P,Y,8 -e ieval_expr '{$Halve$}' -s name half.raw -cls 5 -q");
  if (!run) GTEST_SKIP() << "no way to make a folder read-only here";
  EXPECT_EQ(run->status, 255) << run->output;  // -cls 5 fails, on purpose
  // The saved expression came from the XDG configuration folder.
  EXPECT_EQ(test::ReadWholeFile(work / "half.raw"), " !!\"\"##$");
  // The ini there was read: its batch log name is used, in the state folder.
  EXPECT_NE(test::ReadWholeFile(state_home / "korvanel" / "fallback_batch.txt").find("Can't close: invalid image index 5"),
            std::string::npos)
      << run->output;
  // Nothing was written beside the program.
  EXPECT_EQ(FolderEntries(program), std::vector<std::string>{"korvanel"});
}

}  // namespace
}  // namespace korvanel
