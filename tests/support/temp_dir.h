#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace korvanel::test {

// A fresh directory under the system's temporary folder, removed afterwards.
class TempDir {
 public:
  TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "korvanel-XXXXXX").string();
    path_ = mkdtemp(pattern.data()) != nullptr ? pattern : std::string();
  }
  ~TempDir() {
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return path_; }
  std::string File(const std::string& name) const { return path_ + "/" + name; }

  std::string Write(const std::string& name, const std::string& text) const {
    std::ofstream(File(name), std::ios::binary) << text;
    return File(name);
  }
  std::string WriteBytes(const std::string& name, const std::vector<uint8_t>& bytes) const {
    std::ofstream out(File(name), std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return File(name);
  }

 private:
  std::string path_;
};

}  // namespace korvanel::test
