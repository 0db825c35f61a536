#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

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

  // Room for `count` more bytes, written through the pointer and then
  // committed with the end of what was written.
  char* Reserve(size_t count);
  void Commit(char* end) { size_ = static_cast<size_t>(end - data_.get()); }
  void Append(const void* bytes, size_t count);
  void Append(std::string_view text) { Append(text.data(), text.size()); }
  size_t Size() const { return size_; }

  // Writes out when the threshold is reached; false on a short write.
  bool FlushIfFull() { return size_ < kOutputFlushBytes || Flush(); }
  bool Flush();
  // Flushes and closes; false when any byte did not reach the file.
  bool Close();
  // How many times bytes were handed to the file.
  uint64_t FlushCount() const { return flush_count_; }

 private:
  std::FILE* file_ = nullptr;
  std::unique_ptr<char[]> data_;
  size_t size_ = 0;
  size_t capacity_ = 0;
  uint64_t flush_count_ = 0;
};

}  // namespace korvanel
