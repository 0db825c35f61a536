#pragma once

// The configuration keys as data: section, key, kind, range, default text and
// the field each one fills. Defaults are texts that go through the same
// parser as the file's values, so a default can never be something the file
// could not say.

#include <cstdint>
#include <span>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "app/config_values.h"

namespace korvanel {

// In the order the sections are applied.
enum class ConfigSection : uint32_t {
  kGui,
  kImage,
  kDialogConvert,
  kDialogFilter,
  kDialogIeval,
  kDialogOpen,
  kDialogRuler,
  kDialogFileModify,
  kSystem,
  kDeveloper,
};
inline constexpr uint32_t kConfigSectionCount = 10;
extern const char* const kConfigSectionNames[kConfigSectionCount];

enum class ValueKind {
  kBool,       // "0"/"1" (also false/true, no/yes, off/on)
  kInt,        // decimal in min..max
  kIntList,    // comma separated decimals, one range per position
  kReal,       // decimal in min..max
  kEnum,       // one word of `words`
  kColorList,  // min..max colours; with min == max a fixed list kept per position
  kFont,       // "name, size, smaller size", sizes in min..max
  kMatrix,     // 12 numbers: three rows of three reals and an integer offset
  kDirectory,  // an existing directory; an empty default is the program's folder
  kText,       // any non-empty text
  kLog,        // "switch, file name", the switch in min..max
};

// Every kind parses into one of these.
using ConfigValue = std::variant<bool, int32_t, double, std::string, std::vector<Rgb>, FontSpec,
                                 ColorTransform, std::vector<int32_t>, LogSetting>;

struct FieldAccess {
  ConfigValue (*load)(const ConfigValues&);
  // False when the value's type does not fit the field (a broken table row).
  bool (*store)(ConfigValues&, const ConfigValue&);
};

template <auto kSection, auto kMember>
ConfigValue LoadField(const ConfigValues& values) {
  const auto& field = values.*kSection.*kMember;
  using Field = std::remove_cvref_t<decltype(field)>;
  if constexpr (std::is_enum_v<Field>) {
    return static_cast<int32_t>(field);
  } else {
    return field;
  }
}

template <auto kSection, auto kMember>
bool StoreField(ConfigValues& values, const ConfigValue& value) {
  auto& field = values.*kSection.*kMember;
  using Field = std::remove_cvref_t<decltype(field)>;
  using Held = std::conditional_t<std::is_enum_v<Field>, int32_t, Field>;
  const Held* held = std::get_if<Held>(&value);
  if (held) field = static_cast<Field>(*held);
  return held != nullptr;
}

template <auto kSection, auto kMember>
constexpr FieldAccess Field() {
  return {&LoadField<kSection, kMember>, &StoreField<kSection, kMember>};
}

struct EnumWord {
  const char* word;
  int32_t value;
};

struct IntRange {
  int32_t min;
  int32_t max;
};

struct KeyEntry {
  ConfigSection section;
  const char* key;
  ValueKind kind;
  const char* default_text;
  FieldAccess field;
  int32_t min = 0;
  int32_t max = 0;
  std::span<const EnumWord> words = {};
  std::span<const IntRange> elements = {};
};

std::span<const KeyEntry> ConfigKeys();

struct NamedColor {
  const char* name;
  Rgb rgb;
};
std::span<const NamedColor> NamedColors();

// Words accepted for a boolean, with their values.
std::span<const EnumWord> BoolWords();

}  // namespace korvanel
