#pragma once

// Runs a compiled expression over a block of pixels at once: node by node
// along the chain, each node computing its whole block before the next one
// starts. A node's block is held in an integer lane or a double lane when
// all its values have that kind, so the common arithmetic runs as plain
// loops the compiler vectorises; a block of mixed kinds falls back to
// tagged values and the same per-value arithmetic as the per-pixel walk.
//
// The results are the ones EvaluateCompiled gives pixel by pixel: the same
// values and kinds for every pixel before the first one that fails. Run()
// reports that pixel; the caller evaluates it once more with the per-pixel
// walk to get the exact error text.
//
// Variables are integer lanes the caller supplies (image samples and
// coordinates). Binding allocates; Run() does not.

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "expr/expression_evaluator.h"

namespace korvanel {

inline constexpr uint32_t kExprBlockSize = 256;

enum class LaneKind : uint8_t { Integer, Double, Mixed };

// A node's values for one block, in the representation its kinds allow.
struct ExprLane {
  LaneKind kind = LaneKind::Integer;
  const int64_t* i = nullptr;
  const double* d = nullptr;
  const ExprValue* v = nullptr;

  ExprValue At(uint32_t p) const {
    switch (kind) {
      case LaneKind::Integer: return ExprValue::Integer(i[p]);
      case LaneKind::Double: return ExprValue::Double(d[p]);
      case LaneKind::Mixed: break;
    }
    return v[p];
  }
};

class CBlockEvaluator {
 public:
  // Binds to the compiled form of `compiled` (which must have compiled
  // successfully). `variables` lists the names of the lanes Run() receives,
  // in that order. False when the chain names a variable not in the list.
  bool Bind(const CExpressionEvaluator& compiled, std::span<const std::string_view> variables);

  // Evaluates pixels [0, count), count <= kExprBlockSize, with `variables[k]`
  // the lane of variable k. Returns how many leading pixels succeeded:
  // `count` when all did, else the index of the first failing pixel.
  uint32_t Run(uint32_t count, const int64_t* const* variables);

  // The final value of each pixel before normalisation; valid for the
  // pixels Run() reported as succeeded.
  const ExprLane& Result() const { return lanes_[root_]; }
  // As EvaluateCompiled returns it: whole doubles become integers.
  ExprValue ResultAt(uint32_t p) const;

 private:
  enum class StepKind : uint8_t { Binary, Function, Variable, Shared };
  struct Step {
    StepKind kind = StepKind::Binary;
    uint32_t node = 0;
    OperatorId op = OperatorId::kNone;
    FunctionId fn = FunctionId::kNone;
    int32_t left = -1;
    int32_t right = -1;
    uint32_t source = 0;  // variable index, or the node a shared step copies
    // A constant integer right operand of / or %: a power of two lets the
    // loop shift instead of divide.
    bool right_is_constant = false;
    int64_t right_constant = 0;
    int32_t right_shift = -1;  // log2 of a positive power-of-two constant
  };
  struct Storage {
    std::unique_ptr<int64_t[]> i;
    std::unique_ptr<double[]> d;
    std::unique_ptr<ExprValue[]> v;
  };

  void RunBinary(const Step& step, uint32_t& n);
  void RunFunction(const Step& step, uint32_t& n);
  bool RunIntegerBinary(const Step& step, const ExprLane& a, const ExprLane& b, uint32_t& n);
  bool RunDoubleBinary(const Step& step, const ExprLane& a, const ExprLane& b, uint32_t& n);
  // Tagged values, one at a time; `n` shrinks to the first failing pixel.
  template <typename F>
  void RunGeneric(uint32_t node, uint32_t& n, F compute);
  // Sets the lane of `node` from its tagged values: one kind gets its own lane.
  void Classify(uint32_t node, uint32_t n);
  ExprLane& IntegerOut(uint32_t node);
  ExprLane& DoubleOut(uint32_t node);

  std::vector<Step> steps_;
  std::vector<ExprLane> lanes_;
  std::vector<Storage> storage_;
  uint32_t root_ = 0;
  ExprErrorState scratch_;
};

}  // namespace korvanel
