#include "expr/block_evaluator.h"

#include <bit>

#include "expr/expr_operations.h"

namespace korvanel {
namespace {

// Wrapping arithmetic as the per-value operators do it: on uint64_t.
inline int64_t Wrap(uint64_t v) { return static_cast<int64_t>(v); }
inline uint64_t U(int64_t v) { return static_cast<uint64_t>(v); }

template <typename F>
inline void IntegerLoop(uint32_t n, const int64_t* a, const int64_t* b, int64_t* out, F f) {
  for (uint32_t p = 0; p < n; ++p) out[p] = f(a[p], b[p]);
}

// Calls f(x, y) on both operands read as doubles, for each combination of
// lane kinds, so that each loop body is free of kind tests.
template <typename R, typename F>
inline void DoubleLoop(uint32_t n, const ExprLane& a, const ExprLane& b, R* out, F f) {
  if (a.kind == LaneKind::Double && b.kind == LaneKind::Double) {
    for (uint32_t p = 0; p < n; ++p) out[p] = f(a.d[p], b.d[p]);
  } else if (a.kind == LaneKind::Double) {
    for (uint32_t p = 0; p < n; ++p) out[p] = f(a.d[p], static_cast<double>(b.i[p]));
  } else if (b.kind == LaneKind::Double) {
    for (uint32_t p = 0; p < n; ++p) out[p] = f(static_cast<double>(a.i[p]), b.d[p]);
  } else {
    for (uint32_t p = 0; p < n; ++p) {
      out[p] = f(static_cast<double>(a.i[p]), static_cast<double>(b.i[p]));
    }
  }
}

inline bool IsComparison(OperatorId op) {
  return static_cast<uint32_t>(op) <= static_cast<uint32_t>(OperatorId::kNotEqual);
}

}  // namespace

bool CBlockEvaluator::Bind(const CExpressionEvaluator& compiled,
                           std::span<const std::string_view> variables) {
  const std::vector<ExprNode>& nodes = compiled.GetNodes();
  steps_.clear();
  lanes_.assign(nodes.size(), ExprLane{});
  storage_.clear();
  storage_.resize(nodes.size());
  if (nodes.empty()) return false;
  root_ = static_cast<uint32_t>(nodes.size() - 1);

  for (const ExprNode& node : nodes) {
    if (node.kind != ExprNodeKind::Constant || !node.value.IsValid()) continue;
    Storage& s = storage_[node.index];
    if (node.value.IsInteger()) {
      s.i = std::make_unique<int64_t[]>(kExprBlockSize);
      for (uint32_t p = 0; p < kExprBlockSize; ++p) s.i[p] = node.value.i;
      lanes_[node.index] = ExprLane{LaneKind::Integer, s.i.get(), nullptr, nullptr};
    } else {
      s.d = std::make_unique<double[]>(kExprBlockSize);
      for (uint32_t p = 0; p < kExprBlockSize; ++p) s.d[p] = node.value.d;
      lanes_[node.index] = ExprLane{LaneKind::Double, nullptr, s.d.get(), nullptr};
    }
  }

  const uint32_t count = static_cast<uint32_t>(nodes.size());
  for (uint32_t i = compiled.GetFirstNode(); i < count; i = nodes[i].next) {
    const ExprNode& node = nodes[i];
    Step step;
    step.node = i;
    if (node.shared_with >= 0) {
      step.kind = StepKind::Shared;
      step.source = static_cast<uint32_t>(node.shared_with);
      steps_.push_back(step);
      continue;
    }
    switch (node.kind) {
      case ExprNodeKind::Constant:
        continue;
      case ExprNodeKind::Error:
        return false;
      case ExprNodeKind::Variable: {
        step.kind = StepKind::Variable;
        size_t k = 0;
        while (k < variables.size() && variables[k] != node.text) ++k;
        if (k == variables.size()) return false;
        step.source = static_cast<uint32_t>(k);
        steps_.push_back(step);
        continue;
      }
      case ExprNodeKind::Binary:
      case ExprNodeKind::Function:
        break;
    }
    step.kind = node.kind == ExprNodeKind::Binary ? StepKind::Binary : StepKind::Function;
    step.op = node.op;
    step.fn = node.fn;
    step.left = node.left;
    step.right = node.right;
    if (node.right >= 0) {
      const ExprNode& right = nodes[node.right];
      if (right.kind == ExprNodeKind::Constant && right.value.IsInteger()) {
        step.right_is_constant = true;
        step.right_constant = right.value.i;
        if (right.value.i > 0 && std::has_single_bit(static_cast<uint64_t>(right.value.i))) {
          step.right_shift = std::countr_zero(static_cast<uint64_t>(right.value.i));
        }
      }
    }
    Storage& s = storage_[i];
    s.i = std::make_unique<int64_t[]>(kExprBlockSize);
    s.d = std::make_unique<double[]>(kExprBlockSize);
    s.v = std::make_unique<ExprValue[]>(kExprBlockSize);
    steps_.push_back(step);
  }
  return true;
}

ExprLane& CBlockEvaluator::IntegerOut(uint32_t node) {
  lanes_[node] = ExprLane{LaneKind::Integer, storage_[node].i.get(), nullptr, nullptr};
  return lanes_[node];
}

ExprLane& CBlockEvaluator::DoubleOut(uint32_t node) {
  lanes_[node] = ExprLane{LaneKind::Double, nullptr, storage_[node].d.get(), nullptr};
  return lanes_[node];
}

uint32_t CBlockEvaluator::Run(uint32_t count, const int64_t* const* variables) {
  uint32_t n = count;
  for (const Step& step : steps_) {
    switch (step.kind) {
      case StepKind::Variable:
        lanes_[step.node] = ExprLane{LaneKind::Integer, variables[step.source], nullptr, nullptr};
        break;
      case StepKind::Shared:
        lanes_[step.node] = lanes_[step.source];
        break;
      case StepKind::Binary:
        RunBinary(step, n);
        break;
      case StepKind::Function:
        RunFunction(step, n);
        break;
    }
    if (n == 0) break;
  }
  return n;
}

ExprValue CBlockEvaluator::ResultAt(uint32_t p) const { return NormaliseWhole(Result().At(p)); }

void CBlockEvaluator::RunBinary(const Step& step, uint32_t& n) {
  const ExprLane& a = lanes_[step.left];
  const ExprLane& b = lanes_[step.right];
  if (a.kind == LaneKind::Integer && b.kind == LaneKind::Integer) {
    if (RunIntegerBinary(step, a, b, n)) return;
  } else if (a.kind != LaneKind::Mixed && b.kind != LaneKind::Mixed) {
    if (RunDoubleBinary(step, a, b, n)) return;
  }
  const OperatorId op = step.op;
  RunGeneric(step.node, n, [&](uint32_t p) { return ApplyBinary(op, a.At(p), b.At(p), scratch_); });
}

bool CBlockEvaluator::RunIntegerBinary(const Step& step, const ExprLane& a, const ExprLane& b,
                                       uint32_t& n) {
  using Op = OperatorId;
  const int64_t* x = a.i;
  const int64_t* y = b.i;
  int64_t* out = storage_[step.node].i.get();
  switch (step.op) {
    case Op::kLess: IntegerLoop(n, x, y, out, [](int64_t p, int64_t q) -> int64_t { return p < q; }); break;
    case Op::kLessEqual: IntegerLoop(n, x, y, out, [](int64_t p, int64_t q) -> int64_t { return p <= q; }); break;
    case Op::kGreater: IntegerLoop(n, x, y, out, [](int64_t p, int64_t q) -> int64_t { return p > q; }); break;
    case Op::kGreaterEqual: IntegerLoop(n, x, y, out, [](int64_t p, int64_t q) -> int64_t { return p >= q; }); break;
    case Op::kEqual: IntegerLoop(n, x, y, out, [](int64_t p, int64_t q) -> int64_t { return p == q; }); break;
    case Op::kNotEqual: IntegerLoop(n, x, y, out, [](int64_t p, int64_t q) -> int64_t { return p != q; }); break;
    case Op::kLogicalOr: IntegerLoop(n, x, y, out, [](int64_t p, int64_t q) -> int64_t { return p != 0 || q != 0; }); break;
    case Op::kLogicalXor: IntegerLoop(n, x, y, out, [](int64_t p, int64_t q) -> int64_t { return (p != 0) != (q != 0); }); break;
    case Op::kLogicalAnd: IntegerLoop(n, x, y, out, [](int64_t p, int64_t q) -> int64_t { return p != 0 && q != 0; }); break;
    case Op::kBitOr: IntegerLoop(n, x, y, out, [](int64_t p, int64_t q) { return p | q; }); break;
    case Op::kBitXor: IntegerLoop(n, x, y, out, [](int64_t p, int64_t q) { return p ^ q; }); break;
    case Op::kBitAnd: IntegerLoop(n, x, y, out, [](int64_t p, int64_t q) { return p & q; }); break;
    case Op::kShiftRight: IntegerLoop(n, x, y, out, [](int64_t p, int64_t q) { return p >> (q & 63); }); break;
    case Op::kShiftLeft: IntegerLoop(n, x, y, out, [](int64_t p, int64_t q) { return Wrap(U(p) << (q & 63)); }); break;
    case Op::kAdd: IntegerLoop(n, x, y, out, [](int64_t p, int64_t q) { return Wrap(U(p) + U(q)); }); break;
    case Op::kMultiply: IntegerLoop(n, x, y, out, [](int64_t p, int64_t q) { return Wrap(U(p) * U(q)); }); break;
    case Op::kDivide:
    case Op::kRemainder: {
      const bool divide = step.op == Op::kDivide;
      if (step.right_shift >= 0) {
        // Truncating division by 2^k: bias negative dividends by 2^k - 1.
        const int k = step.right_shift;
        const int64_t mask = (int64_t{1} << k) - 1;
        if (divide) {
          for (uint32_t p = 0; p < n; ++p) out[p] = (x[p] + ((x[p] >> 63) & mask)) >> k;
        } else {
          for (uint32_t p = 0; p < n; ++p) {
            out[p] = x[p] - (((x[p] + ((x[p] >> 63) & mask)) >> k) << k);
          }
        }
        break;
      }
      // The first zero divisor fails its pixel; INT64_MIN / -1 wraps and any
      // remainder by -1 is 0, as the per-value operators answer them.
      for (uint32_t p = 0; p < n; ++p) {
        if (y[p] == 0) {
          n = p;
          break;
        }
      }
      if (divide) {
        for (uint32_t p = 0; p < n; ++p) out[p] = y[p] == -1 ? Wrap(0 - U(x[p])) : x[p] / y[p];
      } else {
        for (uint32_t p = 0; p < n; ++p) out[p] = y[p] == -1 ? 0 : x[p] % y[p];
      }
      break;
    }
    default:
      return false;
  }
  IntegerOut(step.node);
  return true;
}

bool CBlockEvaluator::RunDoubleBinary(const Step& step, const ExprLane& a, const ExprLane& b,
                                      uint32_t& n) {
  using Op = OperatorId;
  const uint32_t node = step.node;
  if (step.op == Op::kAdd || step.op == Op::kMultiply) {
    double* out = storage_[node].d.get();
    if (step.op == Op::kAdd) {
      DoubleLoop(n, a, b, out, [](double p, double q) { return p + q; });
    } else {
      DoubleLoop(n, a, b, out, [](double p, double q) { return p * q; });
    }
    DoubleOut(node);
    return true;
  }
  if (IsComparison(step.op)) {
    int64_t* out = storage_[node].i.get();
    switch (step.op) {
      case Op::kLess: DoubleLoop(n, a, b, out, [](double p, double q) -> int64_t { return p < q; }); break;
      case Op::kLessEqual: DoubleLoop(n, a, b, out, [](double p, double q) -> int64_t { return p <= q; }); break;
      case Op::kGreater: DoubleLoop(n, a, b, out, [](double p, double q) -> int64_t { return p > q; }); break;
      case Op::kGreaterEqual: DoubleLoop(n, a, b, out, [](double p, double q) -> int64_t { return p >= q; }); break;
      case Op::kEqual: DoubleLoop(n, a, b, out, [](double p, double q) -> int64_t { return p == q; }); break;
      default: DoubleLoop(n, a, b, out, [](double p, double q) -> int64_t { return p != q; }); break;
    }
    IntegerOut(node);
    return true;
  }
  if (step.op == Op::kDivide) {
    for (uint32_t p = 0; p < n; ++p) {
      if (b.At(p).AsDouble() == 0.0) {
        n = p;
        break;
      }
    }
    DoubleLoop(n, a, b, storage_[node].d.get(), [](double p, double q) { return p / q; });
    DoubleOut(node);
    return true;
  }
  return false;
}

void CBlockEvaluator::RunFunction(const Step& step, uint32_t& n) {
  const ExprLane& a = lanes_[step.left];
  if (step.fn == FunctionId::kNegate && a.kind == LaneKind::Integer) {
    int64_t* out = storage_[step.node].i.get();
    for (uint32_t p = 0; p < n; ++p) out[p] = Wrap(0 - U(a.i[p]));
    IntegerOut(step.node);
    return;
  }
  if (step.fn == FunctionId::kNegate && a.kind == LaneKind::Double) {
    double* out = storage_[step.node].d.get();
    for (uint32_t p = 0; p < n; ++p) out[p] = -a.d[p];
    DoubleOut(step.node);
    return;
  }
  const FunctionId fn = step.fn;
  if (step.right < 0) {
    RunGeneric(step.node, n,
               [&](uint32_t p) { return ApplyFunction(fn, a.At(p), ExprValue::Empty(), scratch_); });
    return;
  }
  const ExprLane& b = lanes_[step.right];
  RunGeneric(step.node, n, [&](uint32_t p) { return ApplyFunction(fn, a.At(p), b.At(p), scratch_); });
}

template <typename F>
void CBlockEvaluator::RunGeneric(uint32_t node, uint32_t& n, F compute) {
  ExprValue* out = storage_[node].v.get();
  for (uint32_t p = 0; p < n; ++p) {
    const ExprValue r = compute(p);
    if (!r.IsValid()) {
      n = p;
      break;
    }
    out[p] = r;
  }
  // The text of a failure is taken later from the per-pixel walk.
  if (scratch_.Failed()) scratch_.Reset();
  Classify(node, n);
}

void CBlockEvaluator::Classify(uint32_t node, uint32_t n) {
  Storage& s = storage_[node];
  uint32_t integers = 0;
  for (uint32_t p = 0; p < n; ++p) integers += s.v[p].IsInteger() ? 1 : 0;
  if (n > 0 && integers == n) {
    for (uint32_t p = 0; p < n; ++p) s.i[p] = s.v[p].i;
    IntegerOut(node);
  } else if (n > 0 && integers == 0) {
    for (uint32_t p = 0; p < n; ++p) s.d[p] = s.v[p].d;
    DoubleOut(node);
  } else {
    lanes_[node] = ExprLane{LaneKind::Mixed, nullptr, nullptr, s.v.get()};
  }
}

}  // namespace korvanel
