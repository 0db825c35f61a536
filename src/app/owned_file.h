#pragma once
// A C stream that closes itself when it goes out of scope.
#include <cstdio>
#include <memory>

namespace korvanel {

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

using OwnedFile = std::unique_ptr<std::FILE, FileCloser>;

}  // namespace korvanel
