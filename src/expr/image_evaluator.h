#pragma once

// CImageEvaluator: one stage of an I-Eval, i.e. the expression language
// extended with image tokens, evaluated for every pixel of a band.
//
// Preparing (InitPhrase) cuts the stage into 1 or 3 channel phrases,
// expands the short tokens per channel, turns every distinct image token
// into a variable slot "$NN" and compiles each phrase. An indexed token
// `i1c1[X,Y]` gets a slot whose X and Y are child evaluators of the same
// class, so indices nest to any depth. Slots are numbered across the whole
// stage, at most 99.
//
// Evaluating runs row segments of up to kExprBlockSize pixels through block
// evaluators; a failing pixel is evaluated once more with the per-pixel walk
// (Resolve answering x, y and the slots), which gives the exact error. The
// per-pixel walk is also available on its own (EvaluatePixel) and both give
// the same results.
//
// An instance is used by one thread at a time; parallel jobs each prepare
// their own.

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "expr/block_evaluator.h"
#include "expr/expression_evaluator.h"
#include "expr/ieval_options.h"
#include "expr/ieval_text.h"
#include "image/image_concrete_base.h"
#include "image/row_observer.h"
#include "image/plane.h"
#include "image/region.h"

namespace korvanel {

// The images a stage reads: image k (1-based) is images[k-1], all of one size.
struct IEvalImage {
  std::array<const Plane*, 3> planes{};
  uint32_t components = 1;
};

struct IEvalInputs {
  std::vector<IEvalImage> images;
  uint32_t width = 0;
  uint32_t height = 0;
  Rect roi = Rect::None();  // the active region of interest, or none
};

// The planes of `image` as a stage reads them.
IEvalImage IEvalImageOf(const CImageConcreteBase& image);
// Inputs over `images` (image 1 first), with image 1's size and region.
IEvalInputs MakeIEvalInputs(const std::vector<const CImageConcreteBase*>& images);


class CImageEvaluator final : public CExpressionEvaluator::IVarResolver {
 public:
  static constexpr uint32_t kMaxSlots = 99;

  CImageEvaluator();
  ~CImageEvaluator() override;
  CImageEvaluator(const CImageEvaluator&) = delete;
  CImageEvaluator& operator=(const CImageEvaluator&) = delete;

  // Prepares one stage. `inputs` must outlive the evaluation. False with
  // the messages in Errors().
  bool InitPhrase(std::string_view stage, const IEvalInputs& inputs, const IEvalOptions& options);

  uint32_t OutputChannels() const { return channels_; }
  uint32_t OutputBits() const { return out_bits_; }
  uint32_t SlotCount() const { return *slot_counter_; }
  const std::vector<std::string>& Errors() const { return errors_; }

  // Evaluates the band (inclusive; an empty band does nothing) into the
  // full-size output planes, one per output channel. False on a run-time
  // error (Errors() says where and why) or when `observer` stops it.
  bool EvaluateBand(const Rect& band, Plane* const* outputs, uint32_t output_count,
                    IRowObserver* observer);
  // The per-pixel walk for one pixel: the clamped output values of each
  // channel. False on failure, with the message in Errors().
  bool EvaluatePixel(uint32_t x, uint32_t y, std::array<uint32_t, 3>& values);

  bool Resolve(const char* name, uint32_t length, ExprValue& value) override;

 private:
  struct Slot;

  // A child evaluator for one index expression.
  CImageEvaluator(CImageEvaluator* root);
  // Replaces image tokens by slots; indexed tokens get child evaluators.
  bool RewriteTokens(std::string_view text, const uint32_t* origin, std::string& rewritten);
  bool PrepareIndex(std::string_view text, const uint32_t* origin);
  bool Compile(CExpressionEvaluator& evaluator, const std::string& rewritten,
               std::string_view original, uint32_t pos);
  bool BindBlocks();
  // The slot for `key`, made when new; null (with the message) past 99.
  Slot* FindOrAddSlot(const std::string& key, uint32_t image, uint32_t component);
  void AddConstants(CExpressionEvaluator& evaluator) const;
  bool Fail(std::string message);

  // The per-pixel walk: every slot, then (root) the phrases. On failure
  // the root's failure_detail_ holds the evaluator's error text.
  bool ScalarSlots(uint32_t x, uint32_t y);
  bool ScalarValue(uint32_t x, uint32_t y, ExprValue& value);
  // The block walk over pixels [x0, x0+n) of row y: how many leading pixels
  // succeeded.
  uint32_t BlockSlots(uint32_t x0, uint32_t y, uint32_t n);
  uint32_t BlockValue(uint32_t x0, uint32_t y, uint32_t n);
  bool RunTimeError(uint32_t x, uint32_t y, uint32_t channel);

  CImageEvaluator* root_;
  const IEvalInputs* inputs_ = nullptr;
  IEvalOptions options_;
  bool prepared_ = false;
  uint32_t channels_ = 1;
  uint32_t out_bits_ = 8;
  uint32_t own_slot_counter_ = 0;
  uint32_t* slot_counter_ = &own_slot_counter_;

  // One compiled phrase per output channel (a child has one: its index).
  std::vector<std::unique_ptr<CExpressionEvaluator>> phrases_;
  std::vector<std::unique_ptr<CBlockEvaluator>> blocks_;
  std::vector<std::unique_ptr<Slot>> slots_;

  // Per-pixel walk state and block lanes for x and y.
  uint32_t x_ = 0;
  uint32_t y_ = 0;
  bool uses_x_ = false;
  bool uses_y_ = false;
  std::string failure_detail_;
  std::unique_ptr<int64_t[]> x_lane_;
  std::unique_ptr<int64_t[]> y_lane_;
  std::vector<std::string_view> variable_names_;
  std::vector<const int64_t*> variable_lanes_;

  std::vector<std::string> errors_;
};

}  // namespace korvanel
