#pragma once

// The text side of the image evaluator: a piped expression cut into stages,
// a stage cut into channel phrases, short image tokens expanded per output
// channel. Positions always refer to the text the user wrote, so messages
// can point into it after the rewriting.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korvanel {

// A piece of a larger text and where it starts in it.
struct TextPiece {
  std::string text;
  uint32_t pos = 0;
};

// "{a} {b} ..." gives one stage per brace pair; text without braces is a
// single stage. False with a message for a stage without its "}" or text
// outside the braces.
bool SplitStages(std::string_view expression, std::vector<TextPiece>& stages, std::string& error);

// The phrases of a stage, split at every ';' (positions within the stage).
std::vector<TextPiece> SplitPhrases(std::string_view stage);

// Letters, digits and '_' make up words; anything else separates them.
inline bool IsWordChar(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

// `i<k>c<m>` with one digit each: exactly four characters.
bool ParseCanonicalToken(std::string_view word, uint32_t& image, uint32_t& component);

// A phrase with its short forms rewritten for one output channel, and for
// each of its characters the position in the stage text it came from.
struct ExpandedPhrase {
  std::string text;
  std::vector<uint32_t> origin;
};

// `i`/`c` become i1c<ch>, `i<k>` (k in 1..N) i<k>c<ch>, `c<m>` (m in 1..3)
// i1c<m>; ch becomes 1 for an image with a single component.
// `components[k-1]` is image k's component count.
ExpandedPhrase ExpandShortForms(const TextPiece& phrase, uint32_t channel,
                                std::span<const uint32_t> components);

}  // namespace korvanel
