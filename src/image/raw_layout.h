#pragma once

// What a format's layout attributes say about the file's bytes beyond
// today's grammar: where the significant bits sit in each word. An empty
// record is today's plain layout, loaded as it always was.

#include <cstdint>
#include <string>

namespace korvanel {

enum class BitAlign : uint8_t { None, Lsb, Msb };

struct RawLayout {
  BitAlign align = BitAlign::None;
  // The significant bits per sample (1..container-1); 0 without LSB/MSB.
  uint32_t bits = 0;

  bool Empty() const { return align == BitAlign::None; }
  // The depth the values use once loaded: `bits`, or the container's.
  uint32_t SignificantBits(uint32_t container) const { return bits == 0 ? container : bits; }
  // How far MSB-aligned words are shifted down on load (0 otherwise).
  uint32_t MsbShift(uint32_t container) const {
    return align == BitAlign::Msb && bits < container ? container - bits : 0;
  }
  // The attribute tokens, each followed by a comma ("MSB=10,"), "" when empty.
  std::string ToText() const {
    if (align == BitAlign::None) return {};
    return std::string(align == BitAlign::Lsb ? "LSB=" : "MSB=") + std::to_string(bits) + ",";
  }
  // "LSB 10", "MSB 10" for labels; "" when empty.
  std::string Label() const {
    if (align == BitAlign::None) return {};
    return std::string(align == BitAlign::Lsb ? "LSB " : "MSB ") + std::to_string(bits);
  }

  friend bool operator==(const RawLayout&, const RawLayout&) = default;
};

}  // namespace korvanel
