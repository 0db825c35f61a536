// Korvanel.dat as found on disk. Whatever loads must store and load again
// to the same lists: the program rewrites the file at every dialog apply.
#include <stdlib.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "app/edit_history.h"

namespace {

// An in-memory file, so that each run costs no disk write for the input.
std::filesystem::path MemoryFile(const uint8_t* data, size_t size, int& fd) {
  fd = memfd_create("edit_history", MFD_CLOEXEC);
  if (fd < 0 || write(fd, data, size) != static_cast<ssize_t>(size)) std::abort();
  return "/proc/self/fd/" + std::to_string(fd);
}

std::filesystem::path g_store_folder;

void RemoveStoreFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(g_store_folder, ignored);
}

const std::filesystem::path& StoreFolder() {
  if (g_store_folder.empty()) {
    std::string pattern = (std::filesystem::temp_directory_path() / "korvanel_history_fuzz_XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) std::abort();
    g_store_folder = pattern;
    std::atexit(RemoveStoreFolder);
  }
  return g_store_folder;
}

bool SameLists(const korvanel::CEditHistory& a, const korvanel::CEditHistory& b) {
  if (a.Tags() != b.Tags()) return false;
  for (const std::string& tag : a.Tags()) {
    if (a.Entries(tag) != b.Entries(tag)) return false;
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  int fd = -1;
  const std::filesystem::path input = MemoryFile(data, size, fd);
  korvanel::CEditHistory loaded;
  const korvanel::LineReadStatus status = loaded.Load(input);
  close(fd);
  if (status != korvanel::LineReadStatus::kOk) std::abort();  // a small regular file always reads

  const std::filesystem::path stored = StoreFolder() / korvanel::kEditHistoryFileName;
  if (!loaded.Store(stored)) std::abort();
  korvanel::CEditHistory reloaded;
  if (reloaded.Load(stored) != korvanel::LineReadStatus::kOk || !SameLists(loaded, reloaded)) std::abort();
  for (const std::string& tag : loaded.Tags()) {
    if (loaded.Entries(tag).size() > korvanel::kEditHistoryDepth) std::abort();
  }
  return 0;
}
