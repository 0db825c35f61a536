#include "app/writable_home.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace korvanel {
namespace {

using std::filesystem::path;

TEST(WritableHome, ReadOnlyProgramFolderFallsBackToTheXdgFolders) {
  const struct {
    const char* name;
    bool writable;
    HomeEnvironment env;
    bool fallback;
    const char* files;
    const char* logs;
  } rows[] = {
      {"writable program folder", true, {"/x/config", "/x/state", "/home/u"}, false, "/opt/k", "/opt/k"},
      {"xdg variables", false, {"/x/config", "/x/state", "/home/u"}, true, "/x/config/korvanel", "/x/state/korvanel"},
      {"home defaults", false, {"", "", "/home/u"}, true, "/home/u/.config/korvanel", "/home/u/.local/state/korvanel"},
      {"relative xdg values are ignored", false, {"cfg", "state", "/home/u"}, true, "/home/u/.config/korvanel",
       "/home/u/.local/state/korvanel"},
      {"no home at all", false, {"", "", ""}, false, "/opt/k", "/opt/k"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const CWritableHome home("/opt/k", row.writable, row.env);
    EXPECT_EQ(home.UsesFallback(), row.fallback);
    EXPECT_EQ(home.FilesFolder(), path(row.files));
    EXPECT_EQ(home.LogFolder(), path(row.logs));
  }
}

TEST(WritableHome, IniIsLookedForBesideTheProgramFirst) {
  const HomeEnvironment env{"/x/config", "/x/state", "/home/u"};
  EXPECT_EQ(CWritableHome("/opt/k", true, env).ConfigFileCandidates("Korvanel.ini"),
            std::vector<path>{"/opt/k/Korvanel.ini"});
  EXPECT_EQ(CWritableHome("/usr/bin", false, env).ConfigFileCandidates("Korvanel.ini"),
            (std::vector<path>{"/usr/bin/Korvanel.ini", "/x/config/korvanel/Korvanel.ini"}));
}

TEST(WritableHome, RelativePathsMoveToTheFilesFolderOnlyInTheFallback) {
  const HomeEnvironment env{"/x/config", "/x/state", "/home/u"};
  const CWritableHome writable("/opt/k", true, env);
  const CWritableHome installed("/usr/bin", false, env);
  const struct {
    const char* configured;
    const char* writable;
    const char* installed;
  } rows[] = {
      {"qel.ieval.txt", "qel.ieval.txt", "/x/config/korvanel/qel.ieval.txt"},
      {"lists/mine.txt", "lists/mine.txt", "/x/config/korvanel/lists/mine.txt"},
      {"/data/mine.txt", "/data/mine.txt", "/data/mine.txt"},
      {"", "", ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(writable.Resolve(row.configured), path(row.writable)) << row.configured;
    EXPECT_EQ(installed.Resolve(row.configured), path(row.installed)) << row.configured;
  }
}

// The build tree is writable, so the running tests keep everything beside
// the executable, as before.
TEST(WritableHome, TheTestProgramsFolderIsItsOwnHome) {
  EXPECT_FALSE(ProgramHome().UsesFallback());
  EXPECT_EQ(WritableFilePath("Korvanel.dat"), ProgramHome().ProgramDir() / "Korvanel.dat");
}

}  // namespace
}  // namespace korvanel
