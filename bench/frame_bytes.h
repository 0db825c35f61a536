#pragma once

// The bytes of a benchmark frame: pseudo-random (the same on every run), or
// the raw file named by an environment variable, so that the comparison
// scripts can give Korvanel and the other programs the same frames.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <vector>

namespace korvanel::bench {

inline std::optional<std::vector<uint8_t>> FrameBytes(size_t count, uint32_t seed, const char* variable) {
  std::vector<uint8_t> bytes(count);
  const char* path = variable != nullptr ? std::getenv(variable) : nullptr;
  if (path != nullptr) {
    std::FILE* file = std::fopen(path, "rb");
    if (file == nullptr) return std::nullopt;
    const size_t read = std::fread(bytes.data(), 1, bytes.size(), file);
    std::fclose(file);
    if (read != bytes.size()) return std::nullopt;
    return bytes;
  }
  uint32_t state = seed;
  for (uint8_t& b : bytes) {
    state = state * 1664525u + 1013904223u;
    b = static_cast<uint8_t>(state >> 24);
  }
  return bytes;
}

}  // namespace korvanel::bench
