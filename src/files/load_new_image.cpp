#include "files/load_new_image.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <optional>
#include <system_error>
#include <vector>

#include "files/name_regex.h"
#include "files/path_parts.h"
#include "files/picture_codec.h"
#include "image/ascii_matrix.h"
#include "image/block_recycler.h"
#include "image/image_factory.h"
#include "image/image_yuv.h"
#include "image/layout_stage.h"
#include "image/memory_budget.h"
#include "image/raw_unpack.h"
#include "image/text_util.h"

namespace korvanel {

namespace {

constexpr const char* kTypeNames[] = {"RGB", "YUV", "GRAY"};  // by ColorKind

const char* KindName(ColorKind kind) { return kTypeNames[static_cast<uint32_t>(kind)]; }

struct Dimensions {
  uint32_t width = 0;
  uint32_t height = 0;
};

// A captured decimal number that fits 32 bits, or nothing.
std::optional<uint32_t> ParseDecimal(const std::string& text) {
  if (text.empty() || text.size() > 10) return std::nullopt;
  uint64_t value = 0;
  for (char c : text) {
    if (c < '0' || c > '9') return std::nullopt;
    value = value * 10 + static_cast<uint64_t>(c - '0');
  }
  if (value > std::numeric_limits<uint32_t>::max()) return std::nullopt;
  return static_cast<uint32_t>(value);
}

std::optional<uint32_t> ResolveDimension(const char* key, const std::string& regex, int32_t group,
                                         uint32_t fixed, uint32_t line, const std::string& name,
                                         ILineSink& log) {
  if (regex.empty()) return fixed;
  std::smatch match;
  if (MatchWholeName(regex, name, &match, log)) {
    log.AddLine(StrFormat("Matched regex %s/%u", key, line));
    const auto index = static_cast<size_t>(group < 1 ? 1 : group);
    if (index < match.size() && match[index].matched) {
      if (const std::optional<uint32_t> value = ParseDecimal(match[index].str())) {
        log.AddLine(StrFormat("Matched %s(%u)/%d [%s]", key, *value, static_cast<int>(line), name.c_str()));
        return value;
      }
    }
  }
  log.AddLine(StrFormat("Failed to parse %s/%d [%s]", key, static_cast<int>(line), name.c_str()));
  return std::nullopt;
}

uint64_t ExpectedRawSize(const FormatExpression& f, uint32_t width, uint32_t height) {
  const uint32_t bytes = f.BytesPerComponent();
  switch (f.color_kind) {
    case ColorKind::Gray: return PlanarFrameBytes(width, height, bytes, 1);
    case ColorKind::Rgb: return PlanarFrameBytes(width, height, bytes, 3);
    case ColorKind::Yuv: return YuvFrameBytes(CountsOf(f.components), width, height, bytes);
  }
  return 0;
}

// The file's bytes, read once for all formats without an offset. The buffer
// is recycled (image/block_recycler.h): no pass to zero it, and the next
// file of the same size reads into pages that are already mapped.
class FileBytes {
 public:
  explicit FileBytes(std::string path) : path_(std::move(path)) {
    std::error_code error;
    const auto size = std::filesystem::file_size(path_, error);
    size_ = error ? 0 : size;
  }
  uint64_t size() const { return size_; }

  RecycledBlock* Whole() {
    if (whole_.empty() && !tried_) {
      tried_ = true;
      whole_ = Read(0, size_);
    }
    return whole_.empty() ? nullptr : &whole_;
  }

  // Empty when the range is not in the file or cannot be read whole.
  RecycledBlock Read(uint64_t position, uint64_t count) const {
    if (count == 0 || position > size_ || count > size_ - position) return {};
    if (count > std::numeric_limits<size_t>::max() / 2) return {};
    RecycledBlock bytes = RecycledBlock::Take(static_cast<size_t>(count), false);
    if (bytes.empty()) return {};
    std::ifstream file(path_, std::ios::binary);
    file.seekg(static_cast<std::streamoff>(position));
    if (!file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(count))) return {};
    return bytes;
  }

 private:
  std::string path_;
  uint64_t size_ = 0;
  bool tried_ = false;
  RecycledBlock whole_;
};

enum class Step { Loaded, NextFormat, EndOpen };

struct Attempt {
  const std::string& path;
  const std::string& name;
  FileBytes& file;
  ILineSink& log;
  LoadedImage result;
  IParallelRunner* runner = nullptr;
};

// Text matrices: the values become the sample buffer. A grey entry of
// 1 x 1 asks the matrix for its own size, which then replaces `dims`.
bool ReadAscii(const FormatExpression& format, Dimensions& dims, Attempt& a,
               std::vector<uint8_t>& bytes) {
  if (format.bpp < 0) {
    a.log.AddLine(StrFormat("ASCII: Big-endian BPP %d isn't supported for text input", format.bpp));
    return false;
  }
  if (format.HasOffset() && format.offset < 0) {
    a.log.AddLine(StrFormat("ASCII: Can't skip a negative count of values (%d)", format.offset));
    return false;
  }
  if (format.color_kind == ColorKind::Gray && uint64_t{dims.width} * dims.height == 1) {
    dims = {0, 0};
  }
  const uint64_t skip = format.HasOffset() ? static_cast<uint64_t>(format.offset) : 0;
  std::optional<std::vector<uint8_t>> samples =
      ReadAsciiSamples(a.path, skip, format.BitsPerComponent(), dims.width, dims.height, a.log);
  if (!samples) return false;
  bytes = std::move(*samples);
  return true;
}

// The bytes of the file and the full-size planes made from them must fit
// in the memory the system has left.
bool EnoughMemory(Attempt& a, uint64_t file_bytes) {
  const uint64_t needed = file_bytes * 3;  // the bytes, and planes of up to twice as many
  if (MemoryAvailableFor(needed)) return true;
  a.log.AddLine(StrFormat("Can't load path %s: about %llu MB needed, %llu MB available", a.path.c_str(),
                          static_cast<unsigned long long>(needed >> 20),
                          static_cast<unsigned long long>(AvailableMemoryBytes() >> 20)));
  return false;
}

Step TryFormat(const FormatExpression& format, Dimensions dims, Attempt& a) {
  if (!MatchWholeName(format.regex, a.name, nullptr, a.log)) {
    a.log.AddLine(StrFormat("Can't match regex %s/%u", "format", format.line));
    return Step::NextFormat;
  }

  // Text samples or a slice at an offset are this format's own; the whole
  // file is shared by the formats that follow.
  std::vector<uint8_t> text_samples;
  RecycledBlock slice;
  uint8_t* data = nullptr;
  uint64_t byte_count = 0;
  if (format.ascii) {
    if (!ReadAscii(format, dims, a, text_samples)) return Step::NextFormat;
    data = text_samples.data();
    byte_count = text_samples.size();
  } else if (!format.HasOffset()) {
    // A size that cannot fit is refused without reading the file: the same
    // lines as a refusal by the image class, none of the reading.
    const uint64_t expected = ExpectedRawSize(format, dims.width, dims.height);
    if (a.file.size() != 0 && expected != a.file.size()) {
      a.log.AddLine(StrFormat("Matched %s/%u [%s] --> Trying to load binary", "format", format.line,
                              format.expression.c_str()));
      a.log.AddLine(StrFormat("Failed to load as %s", KindName(format.color_kind)));
      return Step::NextFormat;
    }
    if (!EnoughMemory(a, expected)) return Step::EndOpen;
    RecycledBlock* whole = a.file.Whole();
    if (whole == nullptr || a.file.size() == 0) {
      a.log.AddLine(StrFormat("Can't load path %s (file size = %u bytes)", a.path.c_str(),
                              static_cast<unsigned>(a.file.size())));
      return Step::EndOpen;
    }
    data = whole->data();
    byte_count = whole->size();
  } else {
    const uint64_t expected = ExpectedRawSize(format, dims.width, dims.height);
    const uint64_t size = a.file.size();
    const uint64_t magnitude = format.offset < 0 ? uint64_t(-int64_t{format.offset}) : uint64_t(format.offset);
    if (size >= 1 && magnitude < size && expected != 0 && expected <= size) {
      if (!EnoughMemory(a, expected)) return Step::EndOpen;
      const uint64_t position = format.offset < 0 ? size - magnitude : magnitude;
      slice = a.file.Read(position, expected);
    }
    if (slice.empty()) {
      a.log.AddLine(StrFormat("Can't load path %s (ofs = %d, expected raw size = %u, file size = %u bytes)",
                              a.path.c_str(), format.offset, static_cast<unsigned>(expected),
                              static_cast<unsigned>(size)));
      return Step::EndOpen;
    }
    data = slice.data();
    byte_count = slice.size();
  }

  a.log.AddLine(StrFormat("Matched %s/%u [%s] --> Trying to load binary", "format", format.line,
                          format.expression.c_str()));
  std::unique_ptr<CImageConcreteBase> image = LoadWithLayout(
      format, data, byte_count, dims.width, dims.height, a.log, a.runner, &a.result.warning);
  if (!image) {
    a.log.AddLine(StrFormat("Failed to load as %s", KindName(format.color_kind)));
    return Step::NextFormat;
  }
  a.log.AddLine(StrFormat("Loaded %s as %s", a.path.c_str(), KindName(format.color_kind)));
  a.result.image = std::move(image);
  a.result.format_text = format.expression;
  return Step::Loaded;
}

// Step result of one group: whether the open ended (loaded or given up).
bool TryGroup(const FormatGroup& group, Attempt& a) {
  if (!MatchWholeName(group.file_pattern, a.name, nullptr, a.log)) {
    a.log.AddLine(StrFormat("Can't match regex %s/%u [%s]", "file_pattern", group.file_pattern_line,
                            a.name.c_str()));
    return false;
  }
  a.log.AddLine(StrFormat("Matched regex %s/%u [%s]", "file_pattern", group.file_pattern_line,
                          a.name.c_str()));
  const std::optional<uint32_t> width = ResolveDimension(
      "width", group.width_regex, group.width_group, group.width_value, group.width_line, a.name, a.log);
  if (!width) return false;
  const std::optional<uint32_t> height = ResolveDimension(
      "height", group.height_regex, group.height_group, group.height_value, group.height_line, a.name, a.log);
  if (!height) return false;
  for (const FormatExpression& format : group.formats) {
    switch (TryFormat(format, {*width, *height}, a)) {
      case Step::Loaded: return true;
      case Step::EndOpen: return true;
      case Step::NextFormat: break;
    }
  }
  return false;
}

}  // namespace

LoadedImage LoadNewImage(const std::string& path, const FormatRules& rules, ILineSink& log,
                         IParallelRunner* runner) {
  log.BeginEntry("LoadNewImage");
  log.AddLine(StrFormat("Trying to load %s", path.c_str()));
  const PathParts parts = SplitPath(path);
  const std::string name = parts.stem + (parts.has_extension ? "." + parts.extension : "");
  log.AddLine(StrFormat("File name: %s", name.c_str()));

  if (parts.has_extension && IsPictureExtension(parts.extension)) {
    LoadedImage loaded;
    loaded.image = DecodePicture(path);
    if (loaded.image) {
      loaded.format_text = "RGB";
      log.AddLine(StrFormat("Loaded %s as RGB", path.c_str()));
    } else {
      log.AddLine("Failed to load as RGB using GDI+");
    }
    return loaded;
  }

  FileBytes file(path);
  Attempt attempt{path, name, file, log, {}, runner};
  if (rules.direct.in_force && TryGroup(rules.direct.group, attempt)) return std::move(attempt.result);
  for (const FormatGroup& group : rules.groups) {
    if (TryGroup(group, attempt)) break;
  }
  return std::move(attempt.result);
}

}  // namespace korvanel
