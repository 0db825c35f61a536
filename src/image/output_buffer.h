#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace korvanel {

// Writers format into memory and hand the bytes to the file in large pieces:
// whenever the buffer holds at least kOutputFlushBytes, and at the end. A
// short write is an error; the caller turns it into a message that says
// which pixels were being written.
class COutputBuffer {
 public:
  static constexpr uint64_t kOutputFlushBytes = 0xF9800;

  COutputBuffer() = default;
  COutputBuffer(const COutputBuffer&) = delete;
  COutputBuffer& operator=(const COutputBuffer&) = delete;
  ~COutputBuffer();

  // `mode` as for fopen ("wb", "wt"). False when the file cannot be created.
  bool Open(const std::string& path, const char* mode);
  std::string& Buffer() { return buffer_; }
  void Append(const void* bytes, size_t count) {
    buffer_.append(static_cast<const char*>(bytes), count);
  }
  // Writes out when the threshold is reached; false on a short write.
  bool FlushIfFull() { return buffer_.size() < kOutputFlushBytes || Flush(); }
  bool Flush();
  // Flushes and closes; false when any byte did not reach the file.
  bool Close();
  // How many times bytes were handed to the file.
  uint64_t FlushCount() const { return flush_count_; }

 private:
  std::FILE* file_ = nullptr;
  std::string buffer_;
  uint64_t flush_count_ = 0;
};

}  // namespace korvanel
