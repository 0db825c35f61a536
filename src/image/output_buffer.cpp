#include "image/output_buffer.h"

#include <algorithm>
#include <cstring>

namespace korvanel {

COutputBuffer::~COutputBuffer() {
  if (file_ != nullptr) std::fclose(file_);
}

bool COutputBuffer::Open(const std::string& path, const char* mode) {
  if (file_ != nullptr) std::fclose(file_);
  size_ = 0;
  file_ = std::fopen(path.c_str(), mode);
  return file_ != nullptr;
}

char* COutputBuffer::Reserve(size_t count) {
  if (capacity_ - size_ < count) {
    // Rows may be long: grow to whatever they need beyond the usual size.
    const size_t capacity =
        std::max({size_ + count, 2 * capacity_, size_t{kOutputFlushBytes + kOutputFlushBytes / 4}});
    std::unique_ptr<char[]> bigger(new char[capacity]);
    if (size_ != 0) std::memcpy(bigger.get(), data_.get(), size_);
    data_ = std::move(bigger);
    capacity_ = capacity;
  }
  return data_.get() + size_;
}

void COutputBuffer::Append(const void* bytes, size_t count) {
  char* p = Reserve(count);
  std::memcpy(p, bytes, count);
  size_ += count;
}

bool COutputBuffer::Flush() {
  if (file_ == nullptr) return false;
  if (size_ == 0) return true;
  ++flush_count_;
  const size_t written = std::fwrite(data_.get(), 1, size_, file_);
  const bool complete = written == size_ && std::fflush(file_) == 0;
  size_ = 0;
  return complete;
}

bool COutputBuffer::Close() {
  if (file_ == nullptr) return false;
  const bool flushed = Flush();
  const bool closed = std::fclose(file_) == 0;
  file_ = nullptr;
  return flushed && closed;
}

}  // namespace korvanel
