#include "image/output_buffer.h"

namespace korvanel {

COutputBuffer::~COutputBuffer() {
  if (file_ != nullptr) std::fclose(file_);
}

bool COutputBuffer::Open(const std::string& path, const char* mode) {
  if (file_ != nullptr) std::fclose(file_);
  buffer_.clear();
  buffer_.reserve(kOutputFlushBytes + (kOutputFlushBytes >> 2));
  file_ = std::fopen(path.c_str(), mode);
  return file_ != nullptr;
}

bool COutputBuffer::Flush() {
  if (file_ == nullptr) return false;
  if (buffer_.empty()) return true;
  ++flush_count_;
  const size_t written = std::fwrite(buffer_.data(), 1, buffer_.size(), file_);
  const bool complete = written == buffer_.size() && std::fflush(file_) == 0;
  buffer_.clear();
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
