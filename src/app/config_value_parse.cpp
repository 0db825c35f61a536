#include "app/config_value_parse.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <optional>

#include "image/text_util.h"

namespace korvanel {
namespace {

// Collects the rejection lines of one key, each led by "[section]::key: ".
class Reporter {
 public:
  Reporter(const KeyEntry& entry, std::vector<std::string>& lines)
      : prefix_(StrFormat("[%s]::%s: ", kConfigSectionNames[static_cast<uint32_t>(entry.section)],
                          entry.key)),
        lines_(lines) {}

  void Add(const char* format, ...) __attribute__((format(printf, 2, 3))) {
    va_list args;
    va_start(args, format);
    lines_.push_back(prefix_ + StrFormatV(format, args));
    va_end(args);
  }

  void Undefined(std::string_view text) {
    Add("Parse error, undefined %s", std::string(text).c_str());
  }

 private:
  std::string prefix_;
  std::vector<std::string>& lines_;
};

constexpr int64_t kIntegerLimit = int64_t{1} << 40;

// "[+-]digits", or with `allow_hex` also "[+-]0x<hex digits>". Saturates far
// outside the int32 range so that a huge number is still "out of range".
std::optional<int64_t> ParseInteger(std::string_view text, bool allow_hex) {
  text = TrimAscii(text);
  bool negative = false;
  if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  int base = 10;
  if (allow_hex && text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
    base = 16;
    text.remove_prefix(2);
  }
  if (text.empty()) return std::nullopt;
  int64_t value = 0;
  for (const char c : text) {
    int digit = 0;
    if (c >= '0' && c <= '9') {
      digit = c - '0';
    } else if (base == 16 && c >= 'a' && c <= 'f') {
      digit = c - 'a' + 10;
    } else if (base == 16 && c >= 'A' && c <= 'F') {
      digit = c - 'A' + 10;
    } else {
      return std::nullopt;
    }
    value = std::min(value * base + digit, kIntegerLimit);
  }
  return negative ? -value : value;
}

int32_t ToInt32ForMessage(int64_t value) {
  const int64_t lo = std::numeric_limits<int32_t>::min();
  const int64_t hi = std::numeric_limits<int32_t>::max();
  return static_cast<int32_t>(std::clamp(value, lo, hi));
}

// A finite decimal number ("1", "-0.5", ".25", "1e3"); no "inf", "nan" or hex.
std::optional<double> ParseReal(std::string_view text) {
  text = TrimAscii(text);
  if (text.empty()) return std::nullopt;
  const char first = text.front();
  if (!(first == '+' || first == '-' || first == '.' || (first >= '0' && first <= '9'))) {
    return std::nullopt;
  }
  const std::string copy(text);
  if (copy.find_first_of("xXnN") != std::string::npos) return std::nullopt;
  char* end = nullptr;
  const double value = std::strtod(copy.c_str(), &end);
  if (end != copy.c_str() + copy.size() || !std::isfinite(value)) return std::nullopt;
  return value;
}

std::optional<int32_t> FindWord(std::span<const EnumWord> words, std::string_view text) {
  for (const EnumWord& word : words) {
    if (EqualsIgnoreAsciiCase(word.word, text)) return word.value;
  }
  return std::nullopt;
}

// The field's current content; a kind that does not match its field (caught by
// the defaults test) starts from an empty value instead of failing.
template <class T>
T Current(const ConfigValue& value) {
  const T* held = std::get_if<T>(&value);
  return held ? *held : T{};
}

bool InRange(int64_t value, int32_t min, int32_t max) {
  return value >= min && value <= max;
}

bool ParseBool(const KeyEntry&, std::string_view text, ConfigValue& value, Reporter& report) {
  const std::optional<int32_t> word = FindWord(BoolWords(), text);
  if (!word) {
    report.Add("Out-of-range %s (0/1)", std::string(text).c_str());
    return false;
  }
  value = *word != 0;
  return true;
}

bool ParseInt(const KeyEntry& entry, std::string_view text, ConfigValue& value, Reporter& report) {
  const std::optional<int64_t> number = ParseInteger(text, false);
  if (!number) {
    report.Undefined(text);
    return false;
  }
  if (!InRange(*number, entry.min, entry.max)) {
    report.Add("Out-of-range %d (%d..%d)", ToInt32ForMessage(*number), entry.min, entry.max);
    return false;
  }
  value = static_cast<int32_t>(*number);
  return true;
}

// Splits at commas that stand outside "<...>", so "<1,2,3>" stays one entry.
// Empty entries are kept so that positions stay where the user put them.
std::vector<std::string_view> SplitListEntries(std::string_view text) {
  std::vector<std::string_view> entries;
  size_t start = 0;
  bool in_brackets = false;
  for (size_t i = 0; i <= text.size(); ++i) {
    if (i == text.size() || (text[i] == ',' && !in_brackets)) {
      entries.push_back(TrimAscii(text.substr(start, i - start)));
      start = i + 1;
    } else if (text[i] == '<') {
      in_brackets = true;
    } else if (text[i] == '>') {
      in_brackets = false;
    }
  }
  return entries;
}

// Missing positions and rejected elements keep their current values; values
// past the last position are ignored.
bool ParseIntList(const KeyEntry& entry, std::string_view text, ConfigValue& value,
                  Reporter& report) {
  std::vector<int32_t> list = Current<std::vector<int32_t>>(value);
  list.resize(entry.elements.size());
  const std::vector<std::string_view> parts = SplitListEntries(text);
  for (size_t i = 0; i < parts.size() && i < list.size(); ++i) {
    if (parts[i].empty()) continue;
    const std::optional<int64_t> number = ParseInteger(parts[i], false);
    const IntRange range = entry.elements[i];
    if (!number) {
      report.Undefined(parts[i]);
    } else if (!InRange(*number, range.min, range.max)) {
      report.Add("Ignoring out-of-range %d (%d..%d)", ToInt32ForMessage(*number), range.min,
                 range.max);
    } else {
      list[i] = static_cast<int32_t>(*number);
    }
  }
  value = std::move(list);
  return true;
}

bool ParseRealKind(const KeyEntry& entry, std::string_view text, ConfigValue& value,
                   Reporter& report) {
  const std::optional<double> number = ParseReal(text);
  if (!number) {
    report.Undefined(text);
    return false;
  }
  if (*number < entry.min || *number > entry.max) {
    report.Add("Out-of-range %6.2lf (%6.2lf..%6.2lf)", *number, static_cast<double>(entry.min),
               static_cast<double>(entry.max));
    return false;
  }
  value = *number;
  return true;
}

bool ParseEnum(const KeyEntry& entry, std::string_view text, ConfigValue& value, Reporter& report) {
  const std::optional<int32_t> word = FindWord(entry.words, text);
  if (!word) {
    report.Undefined(text);
    return false;
  }
  value = *word;
  return true;
}

// One colour entry; `position` (from 1) names it in the report.
std::optional<Rgb> ParseColor(std::string_view entry, int position, Reporter& report) {
  const std::string text(entry);
  if (entry.empty() || entry.front() != '<') {
    for (const NamedColor& named : NamedColors()) {
      if (EqualsIgnoreAsciiCase(named.name, entry)) return named.rgb;
    }
    report.Add("Ignoring invalid color '%s' (%i)", text.c_str(), position);
    return std::nullopt;
  }
  const std::vector<std::string> parts = entry.back() == '>'
                                             ? SplitTokens(entry.substr(1, entry.size() - 2), ";,")
                                             : std::vector<std::string>{};
  std::optional<int64_t> channels[3];
  bool numbers = parts.size() == 3;
  for (size_t i = 0; numbers && i < 3; ++i) {
    channels[i] = ParseInteger(parts[i], true);
    numbers = channels[i].has_value();
  }
  if (!numbers) {
    report.Add("Ignoring non-rgb value %s (%i)", text.c_str(), position);
    return std::nullopt;
  }
  for (const std::optional<int64_t>& channel : channels) {
    if (!InRange(*channel, 0, 255)) {
      report.Add("Ignoring invalid rgb range %s (%i)", text.c_str(), position);
      return std::nullopt;
    }
  }
  return Rgb{static_cast<uint8_t>(*channels[0]), static_cast<uint8_t>(*channels[1]),
             static_cast<uint8_t>(*channels[2])};
}

// A list of min..max colours drops rejected entries; a fixed list (min == max)
// keeps the current colour at a rejected or missing position. Entries past
// the most allowed are ignored.
bool ParseColorList(const KeyEntry& entry, std::string_view text, ConfigValue& value,
                    Reporter& report) {
  const bool fixed = entry.min == entry.max;
  std::vector<Rgb> colors = fixed ? Current<std::vector<Rgb>>(value) : std::vector<Rgb>{};
  colors.resize(fixed ? static_cast<size_t>(entry.max) : 0);
  const std::vector<std::string_view> entries = SplitListEntries(text);
  size_t accepted = 0;
  for (size_t i = 0; i < entries.size() && i < static_cast<size_t>(entry.max); ++i) {
    const std::optional<Rgb> color = ParseColor(entries[i], static_cast<int>(i + 1), report);
    if (!color) continue;
    ++accepted;
    if (fixed) {
      colors[i] = *color;
    } else {
      colors.push_back(*color);
    }
  }
  if (accepted == 0) return false;
  value = std::move(colors);
  return true;
}

// "name, size, smaller size"; "_" in the name stands for a blank. Without a
// smaller size it is three quarters of the size; without sizes both stay.
bool ParseFont(const KeyEntry& entry, std::string_view text, ConfigValue& value, Reporter& report) {
  FontSpec font = Current<FontSpec>(value);
  const std::vector<std::string> parts = SplitTokens(text, ",");
  if (parts.empty() || parts.size() > 3 || TrimAscii(parts[0]).empty()) {
    report.Undefined(text);
    return false;
  }
  font.name = std::string(TrimAscii(parts[0]));
  for (char& c : font.name) {
    if (c == '_') c = ' ';
  }
  int32_t sizes[2] = {font.size, font.small_size};
  for (size_t i = 1; i < parts.size(); ++i) {
    const std::optional<int64_t> size = ParseInteger(parts[i], false);
    if (!size) {
      report.Undefined(TrimAscii(parts[i]));
      return false;
    }
    if (!InRange(*size, entry.min, entry.max)) {
      report.Add("Out-of-range %d (%d..%d)", ToInt32ForMessage(*size), entry.min, entry.max);
      return false;
    }
    sizes[i - 1] = static_cast<int32_t>(*size);
  }
  font.size = sizes[0];
  font.small_size =
      parts.size() == 2 ? static_cast<int32_t>(std::lround(sizes[0] * 0.75)) : sizes[1];
  value = std::move(font);
  return true;
}

// Twelve numbers, row by row; blanks, commas, ";" and brackets separate them,
// so the "[a,b,c,d],[...],[...]" form of the command line works too.
// Coefficients lie in -1000..1000, offsets are integers in -255..255.
bool ParseMatrix(const KeyEntry&, std::string_view text, ConfigValue& value, Reporter& report) {
  constexpr double kMaxCoefficient = 1000.0;
  const std::vector<std::string> parts = SplitTokens(text, " \t,;[]");
  constexpr unsigned kCount = ColorTransform::kRows * ColorTransform::kColumns;
  if (parts.size() != kCount) {
    report.Add("Parse error, %u values expected", kCount);
    return false;
  }
  ColorTransform matrix;
  for (unsigned i = 0; i < kCount; ++i) {
    const bool is_offset = i % ColorTransform::kColumns == ColorTransform::kOffsetColumn;
    const std::optional<double> number =
        is_offset ? std::optional<double>(ParseInteger(parts[i], false)) : ParseReal(parts[i]);
    if (!number) {
      report.Add("Parse error for element %u (%s)", i + 1, parts[i].c_str());
      return false;
    }
    const double limit = is_offset ? ColorTransform::kMaxOffset : kMaxCoefficient;
    if (*number < -limit || *number > limit) {
      report.Add("Element %u (%s) not in range", i + 1, parts[i].c_str());
      return false;
    }
    matrix.m[i / ColorTransform::kColumns][i % ColorTransform::kColumns] = *number;
  }
  value = matrix;
  return true;
}

bool ParseDirectory(const KeyEntry&, std::string_view text, ConfigValue& value, Reporter& report) {
  std::error_code error;
  if (!std::filesystem::is_directory(std::filesystem::path(text), error)) {
    report.Add("Directory '%s' isn't valid, ignoring.", std::string(text).c_str());
    return false;
  }
  value = std::string(text);
  return true;
}

bool ParseText(const KeyEntry&, std::string_view text, ConfigValue& value, Reporter&) {
  value = std::string(text);
  return true;
}

// "switch[, file name]": 0 off, 1 on, 2 on with every entry time-stamped; a
// missing file name keeps the current one.
bool ParseLog(const KeyEntry& entry, std::string_view text, ConfigValue& value, Reporter& report) {
  LogSetting log = Current<LogSetting>(value);
  const size_t comma = text.find(',');
  const std::string_view switch_text = TrimAscii(text.substr(0, comma));
  const std::optional<int64_t> number = ParseInteger(switch_text, false);
  if (!number) {
    report.Undefined(switch_text);
    return false;
  }
  if (!InRange(*number, entry.min, entry.max)) {
    report.Add("Out-of-range %d (%d..%d)", ToInt32ForMessage(*number), entry.min, entry.max);
    return false;
  }
  log.enabled = *number != 0;
  log.stamp_mode = *number == 2 ? StampMode::kEveryEntry : StampMode::kSession;
  if (comma != std::string_view::npos) {
    const std::string_view file = TrimAscii(text.substr(comma + 1));
    if (!file.empty()) log.file_name = std::string(file);
  }
  value = std::move(log);
  return true;
}

using KindParser = bool (*)(const KeyEntry&, std::string_view, ConfigValue&, Reporter&);

// Indexed by ValueKind.
constexpr KindParser kParsers[] = {
    ParseBool, ParseInt,    ParseIntList,   ParseRealKind, ParseEnum, ParseColorList,
    ParseFont, ParseMatrix, ParseDirectory, ParseText,     ParseLog,
};
static_assert(std::size(kParsers) == static_cast<size_t>(ValueKind::kLog) + 1);

}  // namespace

bool ParseConfigValue(const KeyEntry& entry, std::string_view text, ConfigValue& value,
                      std::vector<std::string>& report) {
  Reporter reporter(entry, report);
  if (text.empty()) {
    reporter.Add("Parse error, empty field");
    return false;
  }
  return kParsers[static_cast<size_t>(entry.kind)](entry, text, value, reporter);
}

}  // namespace korvanel
