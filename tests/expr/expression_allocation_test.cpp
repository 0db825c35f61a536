// The compiled loop runs once per pixel on every worker: it must not touch
// the heap on its success path. Global operator new counts allocations made
// by this thread while a measurement is open.

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "expr/expression_evaluator.h"
#include "expr/image_evaluator.h"
#include "expr_test_support.h"
#include "support/image_builders.h"

namespace {
thread_local bool g_counting = false;
thread_local int g_allocations = 0;
}  // namespace

void* operator new(std::size_t size) {
  if (g_counting) ++g_allocations;
  void* p = std::malloc(size == 0 ? 1 : size);
  if (p == nullptr) throw std::bad_alloc();
  return p;
}
// The library's own nothrow allocations (std::stable_sort's buffer) must
// come from malloc too, since they are released through the delete below.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  if (g_counting) ++g_allocations;
  return std::malloc(size == 0 ? 1 : size);
}
void operator delete(void* p) noexcept {
  std::free(p);
}
void operator delete(void* p, std::size_t) noexcept {
  std::free(p);
}
// Every other form too, so that no pairing of this file's new with the
// library's delete (or the reverse) can occur under a sanitizer.
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept { return operator new(size, tag); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { std::free(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { std::free(p); }

namespace korvanel {
namespace {

TEST(CompiledMode, EvaluatesWithoutAllocating) {
  test::MapResolver vars;
  vars.vars = {
      {"a", ExprValue::Integer(200)}, {"b", ExprValue::Double(1.5)}, {"c", ExprValue::Integer(0)}};
  const char* texts[] = {"0.299*a + 0.587*b + 0.114*c", "(a & 0xF0) >> 4 > c && c != 0",
                         "sqrt(a*a + b*b) + min(a, c) / 2", "fact(5) + bits(a) - round(b)"};
  for (const char* text : texts) {
    CExpressionEvaluator eval;
    eval.SetResolver(&vars);
    eval.SetCompiledMode(true);
    ExprValue v;
    ASSERT_TRUE(eval.Evaluate(text, v)) << eval.GetErrorText();
    g_allocations = 0;
    g_counting = true;
    bool ok = true;
    for (int k = 0; k < 100; ++k) ok = eval.EvaluateCompiled(v) && ok;
    g_counting = false;
    EXPECT_TRUE(ok) << text;
    EXPECT_EQ(g_allocations, 0) << text;
  }
}

// The image evaluator's bands: blocks of samples, indexed reads and every
// output depth go through prepared lanes only.
TEST(CompiledMode, ImageBandsEvaluateWithoutAllocating) {
  auto image = test::MakeGrayImage(16, 600, 4, [](uint32_t x, uint32_t y) { return x * 7 + y; });
  const IEvalInputs inputs = MakeIEvalInputs({image.get()});
  const char* stages[] = {"(i[x-1,y]+i[x+1,y])/2 + sqrt(i*1.0)", "i*0.5; i%7; min(i, 300)"};
  for (const char* stage : stages) {
    CImageEvaluator eval;
    ASSERT_TRUE(eval.InitPhrase(stage, inputs, {}));
    std::vector<Plane> planes(eval.OutputChannels());
    std::vector<Plane*> outputs;
    for (Plane& plane : planes) {
      plane.Allocate(eval.OutputBits(), 600, 4);
      outputs.push_back(&plane);
    }
    g_allocations = 0;
    g_counting = true;
    const bool ok = eval.EvaluateBand(Rect{0, 0, 599, 3}, outputs.data(),
                                      static_cast<uint32_t>(outputs.size()), nullptr);
    g_counting = false;
    EXPECT_TRUE(ok) << stage;
    EXPECT_EQ(g_allocations, 0) << stage;
  }
}

}  // namespace
}  // namespace korvanel
