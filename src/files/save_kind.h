#pragma once

// What the user chose to save: the menu groups and their entries as a table,
// and the writer mode each one runs.

#include <cstdint>

#include "image/save_request.h"

namespace korvanel {

enum class SaveFormat : uint32_t { Binary = 0, Text = 1, HexText = 2 };

struct SaveKind {
  SaveFormat format = SaveFormat::Binary;
  SavePacking packing = SavePacking::Original;
  bool big_endian = false;
};

struct SaveMenuEntry {
  const char* group;
  const char* label;
  SaveKind kind;
};

inline constexpr SaveMenuEntry kSaveMenu[] = {
    {"Binary", "Original (RAW)", {SaveFormat::Binary, SavePacking::Original, false}},
    {"Binary", "Planner", {SaveFormat::Binary, SavePacking::Planar, false}},
    {"Binary", "Interleave", {SaveFormat::Binary, SavePacking::Interleave, false}},
    {"Binary", "Planner (BE)", {SaveFormat::Binary, SavePacking::Planar, true}},
    {"Binary", "Interleave (BE)", {SaveFormat::Binary, SavePacking::Interleave, true}},
    {"Text", "Original packing", {SaveFormat::Text, SavePacking::Original, false}},
    {"Text", "Planner", {SaveFormat::Text, SavePacking::Planar, false}},
    {"Text", "Interleave", {SaveFormat::Text, SavePacking::Interleave, false}},
    {"Hexa-Text", "Original packing", {SaveFormat::HexText, SavePacking::Original, false}},
    {"Hexa-Text", "Planner", {SaveFormat::HexText, SavePacking::Planar, false}},
    {"Hexa-Text", "Interleave", {SaveFormat::HexText, SavePacking::Interleave, false}},
    {"Hexa-Text", "Planner (BE)", {SaveFormat::HexText, SavePacking::Planar, true}},
    {"Hexa-Text", "Interleave (BE)", {SaveFormat::HexText, SavePacking::Interleave, true}},
};

// Hexa-text becomes C arrays when the configuration asks for them.
constexpr SaveMode WriterModeFor(SaveFormat format, bool c_arrays) {
  switch (format) {
    case SaveFormat::Binary: return SaveMode::Raw;
    case SaveFormat::Text: return SaveMode::Text;
    case SaveFormat::HexText: return c_arrays ? SaveMode::CArray : SaveMode::HexDump;
  }
  return SaveMode::Raw;
}

}  // namespace korvanel
