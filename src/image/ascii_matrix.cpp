#include "image/ascii_matrix.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "image/sample_type.h"
#include "image/text_util.h"

namespace korvanel {

namespace {

enum class Conversion { Ok, NotANumber, OutOfRange };

// value ::= ["-"|"+"] ( "0x" hex-digits | "0" octal-digits | decimal-digits )
Conversion ConvertValue(const std::string& piece, uint32_t bits, uint32_t& value) {
  errno = 0;
  char* end = nullptr;
  const long long parsed = std::strtoll(piece.c_str(), &end, 0);
  if (end == piece.c_str() || *end != '\0') return Conversion::NotANumber;
  const long long top = bits == 32 ? 0xFFFFFFFFLL : (1LL << bits) - 1;
  if (errno == ERANGE || parsed < 0 || parsed > top) return Conversion::OutOfRange;
  value = static_cast<uint32_t>(parsed);
  return Conversion::Ok;
}

void Append(std::vector<uint8_t>& out, uint32_t value, uint32_t bits) {
  DispatchBits(bits, [&]<typename T>(std::type_identity<T>) {
    const T sample = static_cast<T>(value);
    uint8_t bytes[sizeof(T)];
    std::memcpy(bytes, &sample, sizeof(T));
    out.insert(out.end(), bytes, bytes + sizeof(T));
  });
}

}  // namespace

std::optional<std::vector<uint8_t>> ReadAsciiSamples(const std::string& path, uint64_t skip,
                                                     uint32_t bits, uint32_t& width,
                                                     uint32_t& height, ILineSink& log) {
  std::ifstream file(path);
  if (!file) return std::nullopt;
  return ParseAsciiSamples(file, skip, bits, width, height, log);
}

std::optional<std::vector<uint8_t>> ParseAsciiSamples(std::istream& file, uint64_t skip,
                                                      uint32_t bits, uint32_t& width,
                                                      uint32_t& height, ILineSink& log) {
  if (!IsSupportedBits(bits)) return std::nullopt;

  std::vector<uint8_t> out;
  size_t columns = 0;
  uint32_t rows = 0;
  bool matrix = true;
  uint64_t seen = 0;
  std::string line;
  for (int line_index = 0; std::getline(file, line); ++line_index) {
    const std::vector<std::string> pieces = SplitTokens(line, "\t ;,\r");
    if (pieces.empty()) continue;
    if (rows == 0) columns = pieces.size();
    else if (pieces.size() != columns) matrix = false;
    ++rows;
    for (size_t col = 0; col < pieces.size(); ++col) {
      if (seen++ < skip) continue;
      uint32_t value = 0;
      switch (ConvertValue(pieces[col], bits, value)) {
        case Conversion::NotANumber:
          log.AddLine(StrFormat("ASCII: Can't convert '%s' to integer at row %d, col %d",
                                pieces[col].c_str(), line_index, static_cast<int>(col)));
          return std::nullopt;
        case Conversion::OutOfRange:
          log.AddLine(StrFormat("ASCII: Value '%s' at row %d, col %d is out of BPP range",
                                pieces[col].c_str(), line_index, static_cast<int>(col)));
          return std::nullopt;
        case Conversion::Ok: Append(out, value, bits); break;
      }
    }
  }
  if (uint64_t{width} * height == 0) {
    if (!matrix || rows == 0) {
      log.AddLine("SCII: Can't auto-detect input dimension, not a matrix form");
      return std::nullopt;
    }
    width = static_cast<uint32_t>(columns);
    height = rows;
  }
  return out;
}

}  // namespace korvanel
