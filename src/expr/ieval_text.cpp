#include "expr/ieval_text.h"

#include "image/text_util.h"

namespace korvanel {

bool SplitStages(std::string_view expression, std::vector<TextPiece>& stages, std::string& error) {
  stages.clear();
  if (expression.find('{') == std::string_view::npos) {
    stages.push_back({std::string(expression), 0});
    return true;
  }
  size_t pos = 0;
  while (pos < expression.size()) {
    const char c = expression[pos];
    if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
      ++pos;
      continue;
    }
    if (c != '{') {
      error = StrFormat("Unexpected '%c' outside of {...} at pos %d", c, static_cast<int>(pos));
      return false;
    }
    const size_t close = expression.find('}', pos + 1);
    if (close == std::string_view::npos) {
      error = StrFormat("Missing '}' for the stage starting at pos %d", static_cast<int>(pos));
      return false;
    }
    stages.push_back({std::string(expression.substr(pos + 1, close - pos - 1)),
                      static_cast<uint32_t>(pos + 1)});
    pos = close + 1;
  }
  if (stages.empty()) {
    error = "Empty expression";
    return false;
  }
  return true;
}

std::vector<TextPiece> SplitPhrases(std::string_view stage) {
  std::vector<TextPiece> phrases;
  size_t start = 0;
  for (;;) {
    const size_t semicolon = stage.find(';', start);
    const size_t end = semicolon == std::string_view::npos ? stage.size() : semicolon;
    phrases.push_back({std::string(stage.substr(start, end - start)), static_cast<uint32_t>(start)});
    if (semicolon == std::string_view::npos) return phrases;
    start = semicolon + 1;
  }
}

bool ParseCanonicalToken(std::string_view word, uint32_t& image, uint32_t& component) {
  if (word.size() != 4 || word[0] != 'i' || word[2] != 'c') return false;
  if (word[1] < '0' || word[1] > '9' || word[3] < '0' || word[3] > '9') return false;
  image = static_cast<uint32_t>(word[1] - '0');
  component = static_cast<uint32_t>(word[3] - '0');
  return true;
}

namespace {

// The number after a one-letter prefix ("i12" -> 12); false for other words.
bool NumberAfter(std::string_view word, char prefix, uint32_t& value) {
  if (word.size() < 2 || word.size() > 4 || word[0] != prefix) return false;
  value = 0;
  for (size_t i = 1; i < word.size(); ++i) {
    if (word[i] < '0' || word[i] > '9') return false;
    value = value * 10 + static_cast<uint32_t>(word[i] - '0');
  }
  return true;
}

}  // namespace

ExpandedPhrase ExpandShortForms(const TextPiece& phrase, uint32_t channel,
                                std::span<const uint32_t> components) {
  const auto channel_of = [&](uint32_t image) {
    return components[image - 1] == 1 ? 1u : channel;
  };
  const auto count = static_cast<uint32_t>(components.size());
  ExpandedPhrase out;
  const std::string_view text = phrase.text;
  size_t i = 0;
  while (i < text.size()) {
    const auto origin = static_cast<uint32_t>(phrase.pos + i);
    if (!IsWordChar(text[i])) {
      out.text += text[i++];
      out.origin.push_back(origin);
      continue;
    }
    size_t end = i;
    while (end < text.size() && IsWordChar(text[end])) ++end;
    const std::string_view word = text.substr(i, end - i);
    uint32_t number = 0;
    std::string replacement(word);
    if ((word == "i" || word == "c") && count > 0) {
      replacement = StrFormat("i1c%u", channel_of(1));
    } else if (NumberAfter(word, 'i', number) && number >= 1 && number <= count) {
      replacement = StrFormat("i%uc%u", number, channel_of(number));
    } else if (NumberAfter(word, 'c', number) && number >= 1 && number <= 3) {
      replacement = StrFormat("i1c%u", number);
    }
    // Every character of a rewritten word points at the word's start.
    for (size_t k = 0; k < replacement.size(); ++k) {
      out.origin.push_back(replacement.size() == word.size() ? origin + static_cast<uint32_t>(k)
                                                             : origin);
    }
    out.text += replacement;
    i = end;
  }
  return out;
}

}  // namespace korvanel
