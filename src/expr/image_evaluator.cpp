#include "expr/image_evaluator.h"

#include <algorithm>
#include <cmath>

#include "expr/expr_operations.h"
#include "image/sample_type.h"
#include "image/text_util.h"

namespace korvanel {
namespace {

// A result as the output depth holds it: doubles truncated toward zero,
// negatives 0, values above the depth's maximum that maximum.
uint32_t ClampToDepth(ExprValue v, uint32_t max) {
  if (v.IsInteger()) return v.i < 0 ? 0 : (v.i > int64_t{max} ? max : static_cast<uint32_t>(v.i));
  if (std::isnan(v.d) || v.d <= 0.0) return 0;
  if (v.d >= static_cast<double>(max)) return max;
  return static_cast<uint32_t>(v.d);
}

// An index value as a coordinate: whole values of the int64 range, doubles
// truncated; anything else points outside every image (-1).
int64_t IndexOf(ExprValue v) {
  v = NormaliseWhole(v);
  if (v.IsInteger()) return v.i;
  const double t = std::trunc(v.d);
  return FitsInt64(t) ? static_cast<int64_t>(t) : -1;
}

using LoadRow = void (*)(const Plane&, uint32_t y, uint32_t x0, uint32_t n, int64_t* out);
using Gather = void (*)(const Plane&, const int64_t* xs, const int64_t* ys, uint32_t n,
                        int64_t outside, int64_t* out);
using StoreRow = void (*)(const ExprLane& lane, uint32_t n, Plane& plane, uint32_t y, uint32_t x0,
                          uint32_t max);

template <typename T>
void LoadRowOf(const Plane& plane, uint32_t y, uint32_t x0, uint32_t n, int64_t* out) {
  const T* row = plane.Row<T>(y) + x0;
  for (uint32_t p = 0; p < n; ++p) out[p] = row[p];
}

template <typename T>
void GatherOf(const Plane& plane, const int64_t* xs, const int64_t* ys, uint32_t n,
              int64_t outside, int64_t* out) {
  const uint64_t w = plane.width();
  const uint64_t h = plane.height();
  const T* base = plane.Row<T>(0);
  for (uint32_t p = 0; p < n; ++p) {
    const auto x = static_cast<uint64_t>(xs[p]);
    const auto y = static_cast<uint64_t>(ys[p]);
    out[p] = x < w && y < h ? int64_t{base[y * w + x]} : outside;
  }
}

template <typename T>
void StoreRowOf(const ExprLane& lane, uint32_t n, Plane& plane, uint32_t y, uint32_t x0,
                uint32_t max) {
  T* row = plane.Row<T>(y) + x0;
  if (lane.kind == LaneKind::Integer) {
    const int64_t top = max;
    for (uint32_t p = 0; p < n; ++p) {
      const int64_t v = lane.i[p];
      row[p] = static_cast<T>(v < 0 ? 0 : (v > top ? top : v));
    }
    return;
  }
  for (uint32_t p = 0; p < n; ++p) row[p] = static_cast<T>(ClampToDepth(lane.At(p), max));
}

template <typename Fn>
Fn PickForBits(uint32_t bits, Fn f8, Fn f16, Fn f32) {
  Fn out = nullptr;
  DispatchBits(bits, [&]<typename T>(std::type_identity<T>) {
    if constexpr (std::is_same_v<T, uint8_t>) out = f8;
    if constexpr (std::is_same_v<T, uint16_t>) out = f16;
    if constexpr (std::is_same_v<T, uint32_t>) out = f32;
  });
  return out;
}

uint32_t MaxForBits(uint32_t bits) {
  return bits >= 32 ? 0xFFFFFFFFu : (1u << bits) - 1;
}

// Index of the bracket or parenthesis closing the '[' at `open`, counting
// nested [] and (); npos when the text ends first.
size_t MatchingBracket(std::string_view text, size_t open) {
  int depth = 0;
  for (size_t i = open; i < text.size(); ++i) {
    if (text[i] == '[' || text[i] == '(') ++depth;
    if (text[i] == ']' || text[i] == ')') {
      if (--depth == 0) return text[i] == ']' ? i : std::string_view::npos;
    }
  }
  return std::string_view::npos;
}

// The first ',' at depth 0 of `text`, or npos.
size_t XySeparator(std::string_view text) {
  int depth = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '[' || c == '(') ++depth;
    if (c == ']' || c == ')') --depth;
    if (c == ',' && depth == 0) return i;
  }
  return std::string_view::npos;
}

std::string WithoutBlanks(std::string_view text) {
  std::string out;
  for (char c : text) {
    if (c != ' ' && c != '\t') out += c;
  }
  return out;
}

}  // namespace

IEvalImage IEvalImageOf(const CImageConcreteBase& image) {
  IEvalImage out;
  out.components = std::min<uint32_t>(image.PlaneCount(), image.ComponentCount()) >= 3 ? 3 : 1;
  for (uint32_t c = 0; c < out.components; ++c) out.planes[c] = &image.GetPlane(c);
  return out;
}

IEvalInputs MakeIEvalInputs(const std::vector<const CImageConcreteBase*>& images) {
  IEvalInputs inputs;
  for (const CImageConcreteBase* image : images) inputs.images.push_back(IEvalImageOf(*image));
  if (!images.empty()) {
    images[0]->GetSize(inputs.width, inputs.height);
    inputs.roi = images[0]->GetRegionOfInterest();
  }
  return inputs;
}

struct CImageEvaluator::Slot {
  std::string name;  // "$NN"
  std::string key;   // the token, with its indices for an indexed one
  const Plane* plane = nullptr;
  int64_t outside = 0;  // the out-of-range value of the token's component
  std::unique_ptr<CImageEvaluator> x;  // indexed tokens only
  std::unique_ptr<CImageEvaluator> y;
  ExprValue current;
  std::unique_ptr<int64_t[]> lane = std::make_unique<int64_t[]>(kExprBlockSize);
  LoadRow load = nullptr;
  Gather gather = nullptr;
};

CImageEvaluator::CImageEvaluator() : root_(this) {}
CImageEvaluator::CImageEvaluator(CImageEvaluator* root)
    : root_(root),
      inputs_(root->inputs_),
      options_(root->options_),
      out_bits_(root->out_bits_),
      slot_counter_(root->slot_counter_) {}
CImageEvaluator::~CImageEvaluator() = default;

bool CImageEvaluator::Fail(std::string message) {
  root_->errors_.push_back(std::move(message));
  return false;
}

void CImageEvaluator::AddConstants(CExpressionEvaluator& evaluator) const {
  evaluator.AddVariable("w", ExprValue::Integer(inputs_->width));
  evaluator.AddVariable("h", ExprValue::Integer(inputs_->height));
  const Rect& roi = inputs_->roi;
  if (roi.IsNone()) return;
  evaluator.AddVariable("x1", ExprValue::Integer(roi.min_x));
  evaluator.AddVariable("y1", ExprValue::Integer(roi.min_y));
  evaluator.AddVariable("x2", ExprValue::Integer(roi.max_x));
  evaluator.AddVariable("y2", ExprValue::Integer(roi.max_y));
  evaluator.AddVariable("cw", ExprValue::Integer(static_cast<int64_t>(roi.Width())));
  evaluator.AddVariable("ch", ExprValue::Integer(static_cast<int64_t>(roi.Height())));
}

bool CImageEvaluator::InitPhrase(std::string_view stage, const IEvalInputs& inputs,
                                 const IEvalOptions& options) {
  prepared_ = false;
  errors_.clear();
  phrases_.clear();
  blocks_.clear();
  slots_.clear();
  own_slot_counter_ = 0;
  uses_x_ = uses_y_ = false;
  inputs_ = &inputs;
  options_ = options;
  if (inputs.images.empty() || inputs.images[0].planes[0] == nullptr) {
    return Fail("No input image");
  }
  out_bits_ = options.out_bits != 0 ? options.out_bits : inputs.images[0].planes[0]->bits();
  if (!IsSupportedBits(out_bits_)) {
    return Fail(StrFormat("Unsupported output depth %u", out_bits_));
  }

  const std::vector<TextPiece> phrases = SplitPhrases(stage);
  if (phrases.size() != 1 && phrases.size() != 3) {
    return Fail("Phrase must have either 1 or 3 components");
  }
  switch (options.channels) {
    case IEvalChannelMode::Single:
      if (phrases.size() == 3) return Fail("Can't force single output on 3 components expression");
      channels_ = 1;
      break;
    case IEvalChannelMode::Three:
      channels_ = 3;
      break;
    case IEvalChannelMode::Context:
      channels_ = phrases.size() == 3 || inputs.images[0].components == 3 ? 3 : 1;
      break;
  }

  std::vector<uint32_t> components;
  for (const IEvalImage& image : inputs.images) components.push_back(image.components);
  for (uint32_t ch = 0; ch < channels_; ++ch) {
    const TextPiece& phrase = phrases.size() == 3 ? phrases[ch] : phrases[0];
    const ExpandedPhrase expanded = ExpandShortForms(phrase, ch + 1, components);
    std::string rewritten;
    if (!RewriteTokens(expanded.text, expanded.origin.data(), rewritten)) return false;
    phrases_.push_back(std::make_unique<CExpressionEvaluator>());
    if (!Compile(*phrases_.back(), rewritten, phrase.text, phrase.pos)) return false;
  }
  if (!BindBlocks()) return false;
  prepared_ = true;
  return true;
}

bool CImageEvaluator::PrepareIndex(std::string_view text, const uint32_t* origin) {
  std::string rewritten;
  if (!RewriteTokens(text, origin, rewritten)) return false;
  phrases_.push_back(std::make_unique<CExpressionEvaluator>());
  // `origin` always reaches the ',' or ']' after an index, also an empty one.
  if (!Compile(*phrases_.back(), rewritten, text, origin[0])) return false;
  if (!BindBlocks()) return false;
  prepared_ = true;
  return true;
}

bool CImageEvaluator::Compile(CExpressionEvaluator& evaluator, const std::string& rewritten,
                              std::string_view original, uint32_t pos) {
  evaluator.SetResolver(this);
  evaluator.SetCompiledMode(true);
  AddConstants(evaluator);
  ExprValue result;
  if (evaluator.Evaluate(rewritten, result)) return true;
  Fail(StrFormat("Can't parse %.*s at pos %u", static_cast<int>(original.size()),
                 original.data(), pos));
  return Fail(evaluator.GetErrorText());
}

bool CImageEvaluator::RewriteTokens(std::string_view text, const uint32_t* origin,
                                    std::string& rewritten) {
  const auto count = static_cast<uint32_t>(inputs_->images.size());
  const auto valid = [&](uint32_t image, uint32_t component) {
    return image >= 1 && image <= count && component >= 1 && component <= 3;
  };
  rewritten.clear();
  size_t i = 0;
  while (i < text.size()) {
    const char c = text[i];
    if (c == ']') {
      return Fail(StrFormat("Unbalanced barracks for expr. starting at pos %u", origin[i]));
    }
    if (c == '[') {
      return Fail(StrFormat("Illegal image component token %s at pos %u", "[", origin[i]));
    }
    if (!IsWordChar(c)) {
      rewritten += c;
      ++i;
      continue;
    }
    size_t end = i;
    while (end < text.size() && IsWordChar(text[end])) ++end;
    const std::string word(text.substr(i, end - i));
    size_t open = end;
    while (open < text.size() && (text[open] == ' ' || text[open] == '\t')) ++open;
    const bool indexed = open < text.size() && text[open] == '[';
    uint32_t image = 0;
    uint32_t component = 0;
    const bool token = ParseCanonicalToken(word, image, component);
    if (!indexed && !token) {
      rewritten += word;
      i = end;
      continue;
    }
    if (!token || !valid(image, component)) {
      return Fail(StrFormat("Illegal image component token %s at pos %u", word.c_str(), origin[i]));
    }
    if (!indexed) {
      Slot* slot = FindOrAddSlot(word, image, component);
      if (slot == nullptr) return false;
      rewritten += slot->name;
      i = end;
      continue;
    }
    const size_t close = MatchingBracket(text, open);
    if (close == std::string_view::npos) {
      return Fail(StrFormat("Unbalanced barracks for expr. starting at pos %u", origin[i]));
    }
    const std::string_view inside = text.substr(open + 1, close - open - 1);
    const size_t comma = XySeparator(inside);
    if (comma == std::string_view::npos) {
      return Fail(StrFormat("No XY separator for expr. starting at pos %u", origin[i]));
    }
    const std::string key = word + "[" + WithoutBlanks(inside) + "]";
    const bool known = std::any_of(slots_.begin(), slots_.end(),
                                   [&](const auto& s) { return s->key == key; });
    Slot* slot = FindOrAddSlot(key, image, component);
    if (slot == nullptr) return false;
    if (!known) {
      slot->x.reset(new CImageEvaluator(root_));
      slot->y.reset(new CImageEvaluator(root_));
      if (!slot->x->PrepareIndex(inside.substr(0, comma), origin + open + 1)) return false;
      if (!slot->y->PrepareIndex(inside.substr(comma + 1), origin + open + 2 + comma)) return false;
    }
    rewritten += slot->name;
    i = close + 1;
  }
  return true;
}

CImageEvaluator::Slot* CImageEvaluator::FindOrAddSlot(const std::string& key, uint32_t image,
                                                      uint32_t component) {
  for (const auto& slot : slots_) {
    if (slot->key == key) return slot.get();
  }
  if (*slot_counter_ >= kMaxSlots) {
    Fail(StrFormat("Reached max supported variables of %d. Please reduce expression complexity.",
                   static_cast<int>(kMaxSlots)));
    return nullptr;
  }
  auto slot = std::make_unique<Slot>();
  slot->name = StrFormat("%c%02u", '$', ++*slot_counter_);
  slot->key = key;
  const IEvalImage& source = inputs_->images[image - 1];
  // A component a single-component image lacks reads its only one.
  slot->plane = source.planes[source.components == 1 ? 0 : component - 1];
  slot->outside = options_.out_of_range[component - 1];
  const uint32_t bits = slot->plane->bits();
  slot->load = PickForBits<LoadRow>(bits, &LoadRowOf<uint8_t>, &LoadRowOf<uint16_t>,
                                    &LoadRowOf<uint32_t>);
  slot->gather = PickForBits<Gather>(bits, &GatherOf<uint8_t>, &GatherOf<uint16_t>,
                                     &GatherOf<uint32_t>);
  slots_.push_back(std::move(slot));
  return slots_.back().get();
}

bool CImageEvaluator::BindBlocks() {
  x_lane_ = std::make_unique<int64_t[]>(kExprBlockSize);
  y_lane_ = std::make_unique<int64_t[]>(kExprBlockSize);
  variable_names_ = {"x", "y"};
  variable_lanes_ = {x_lane_.get(), y_lane_.get()};
  for (const auto& slot : slots_) {
    variable_names_.push_back(slot->name);
    variable_lanes_.push_back(slot->lane.get());
  }
  blocks_.clear();
  for (const auto& phrase : phrases_) {
    blocks_.push_back(std::make_unique<CBlockEvaluator>());
    if (!blocks_.back()->Bind(*phrase, variable_names_)) return Fail("Can't bind the compiled phrase");
  }
  return true;
}

bool CImageEvaluator::Resolve(const char* name, uint32_t length, ExprValue& value) {
  const std::string_view text(name, length);
  if (text == "x") {
    uses_x_ = true;
    value = ExprValue::Integer(x_);
    return true;
  }
  if (text == "y") {
    uses_y_ = true;
    value = ExprValue::Integer(y_);
    return true;
  }
  if (!text.starts_with('$')) return false;
  for (const auto& slot : slots_) {
    if (slot->name == text) {
      value = slot->current;
      return true;
    }
  }
  return false;
}

// --- the per-pixel walk ------------------------------------------------------

bool CImageEvaluator::ScalarSlots(uint32_t x, uint32_t y) {
  x_ = x;
  y_ = y;
  for (const auto& slot : slots_) {
    if (!slot->x) {
      slot->current = ExprValue::Integer(slot->plane->SampleAt(x, y));
      continue;
    }
    ExprValue vx;
    ExprValue vy;
    if (!slot->x->ScalarValue(x, y, vx) || !slot->y->ScalarValue(x, y, vy)) return false;
    const int64_t ix = IndexOf(vx);
    const int64_t iy = IndexOf(vy);
    const bool inside = ix >= 0 && iy >= 0 && ix < int64_t{slot->plane->width()} &&
                        iy < int64_t{slot->plane->height()};
    slot->current = ExprValue::Integer(
        inside ? slot->plane->SampleAt(static_cast<uint32_t>(ix), static_cast<uint32_t>(iy))
               : slot->outside);
  }
  return true;
}

bool CImageEvaluator::ScalarValue(uint32_t x, uint32_t y, ExprValue& value) {
  if (!ScalarSlots(x, y)) return false;
  if (phrases_[0]->EvaluateCompiled(value)) return true;
  root_->failure_detail_ = phrases_[0]->GetErrorText();
  return false;
}

bool CImageEvaluator::EvaluatePixel(uint32_t x, uint32_t y, std::array<uint32_t, 3>& values) {
  if (!prepared_) return Fail("Must call InitPhrase() before evaluation phase.");
  failure_detail_.clear();
  if (!ScalarSlots(x, y)) return RunTimeError(x, y, 0);
  const uint32_t max = MaxForBits(out_bits_);
  for (uint32_t ch = 0; ch < channels_; ++ch) {
    ExprValue v;
    if (!phrases_[ch]->EvaluateCompiled(v)) {
      failure_detail_ = phrases_[ch]->GetErrorText();
      return RunTimeError(x, y, ch);
    }
    values[ch] = ClampToDepth(v, max);
  }
  return true;
}

bool CImageEvaluator::RunTimeError(uint32_t x, uint32_t y, uint32_t channel) {
  if (channels_ == 1) {
    Fail(StrFormat("Eval single channel output run-time error at (%d,%d)", static_cast<int>(x),
                   static_cast<int>(y)));
  } else {
    Fail(StrFormat("Eval 3 channel output (ch. %u) run-time error at (%d,%d)", channel + 1,
                   static_cast<int>(x), static_cast<int>(y)));
  }
  if (!failure_detail_.empty()) Fail(failure_detail_);
  return false;
}

// --- the block walk ----------------------------------------------------------

uint32_t CImageEvaluator::BlockSlots(uint32_t x0, uint32_t y, uint32_t n) {
  if (uses_x_) {
    for (uint32_t p = 0; p < n; ++p) x_lane_[p] = int64_t{x0} + p;
  }
  if (uses_y_) std::fill_n(y_lane_.get(), n, int64_t{y});
  uint32_t done = n;
  for (const auto& slot : slots_) {
    if (!slot->x) {
      slot->load(*slot->plane, y, x0, n, slot->lane.get());
      continue;
    }
    done = std::min(done, slot->x->BlockValue(x0, y, done));
    done = std::min(done, slot->y->BlockValue(x0, y, done));
    const ExprLane& lx = slot->x->blocks_[0]->Result();
    const ExprLane& ly = slot->y->blocks_[0]->Result();
    // Integer lanes are coordinates already; others are converted first,
    // into the x and y lanes of the children, which are free again.
    const int64_t* xs = lx.i;
    const int64_t* ys = ly.i;
    if (lx.kind != LaneKind::Integer) {
      for (uint32_t p = 0; p < done; ++p) slot->x->x_lane_[p] = IndexOf(lx.At(p));
      xs = slot->x->x_lane_.get();
    }
    if (ly.kind != LaneKind::Integer) {
      for (uint32_t p = 0; p < done; ++p) slot->y->y_lane_[p] = IndexOf(ly.At(p));
      ys = slot->y->y_lane_.get();
    }
    slot->gather(*slot->plane, xs, ys, done, slot->outside, slot->lane.get());
  }
  return done;
}

uint32_t CImageEvaluator::BlockValue(uint32_t x0, uint32_t y, uint32_t n) {
  const uint32_t done = BlockSlots(x0, y, n);
  return blocks_[0]->Run(done, variable_lanes_.data());
}

bool CImageEvaluator::EvaluateBand(const Rect& band, Plane* const* outputs, uint32_t output_count,
                                   IRowObserver* observer) {
  if (!prepared_) return Fail("Must call InitPhrase() before evaluation phase.");
  bool fits = output_count == channels_;
  for (uint32_t ch = 0; fits && ch < output_count; ++ch) {
    const Plane* plane = outputs[ch];
    fits = plane != nullptr && plane->bits() == out_bits_ && plane->width() == inputs_->width &&
           plane->height() == inputs_->height;
  }
  if (!fits) {
    return Fail(channels_ == 1 ? "User single-comp output doesn't match expected size"
                               : "User 3-comp output doesn't match expected size");
  }
  if (band.min_x > band.max_x || band.min_y > band.max_y) return true;
  if (band.max_x >= inputs_->width || band.max_y >= inputs_->height) {
    return Fail(channels_ == 1 ? "User single-comp output doesn't match expected size"
                               : "User 3-comp output doesn't match expected size");
  }
  const StoreRow store = PickForBits<StoreRow>(out_bits_, &StoreRowOf<uint8_t>,
                                               &StoreRowOf<uint16_t>, &StoreRowOf<uint32_t>);
  const uint32_t max = MaxForBits(out_bits_);
  const auto width = static_cast<uint32_t>(band.Width());
  for (uint64_t y = band.min_y; y <= band.max_y; ++y) {
    const auto row = static_cast<uint32_t>(y);
    for (uint64_t x0 = band.min_x; x0 <= band.max_x; x0 += kExprBlockSize) {
      const auto start = static_cast<uint32_t>(x0);
      const auto n = static_cast<uint32_t>(std::min<uint64_t>(kExprBlockSize, band.max_x - x0 + 1));
      uint32_t done = BlockSlots(start, row, n);
      for (uint32_t ch = 0; ch < channels_; ++ch) {
        done = blocks_[ch]->Run(done, variable_lanes_.data());
      }
      if (done < n) {
        // The per-pixel walk of the failing pixel names the channel and cause.
        std::array<uint32_t, 3> unused{};
        if (EvaluatePixel(start + done, row, unused)) {
          failure_detail_.clear();
          return RunTimeError(start + done, row, 0);
        }
        return false;
      }
      for (uint32_t ch = 0; ch < channels_; ++ch) {
        store(blocks_[ch]->Result(), n, *outputs[ch], row, start, max);
      }
    }
    if (observer != nullptr && !observer->RowDone(width)) return false;
  }
  return true;
}

}  // namespace korvanel
