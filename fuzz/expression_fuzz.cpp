// The expression evaluator in direct and in compiled mode, with a resolver
// that knows a few variables.
#include <cstring>
#include <string>

#include "expr/expression_evaluator.h"

namespace {

class FixedResolver : public korvanel::CExpressionEvaluator::IVarResolver {
 public:
  bool Resolve(const char* name, uint32_t length, korvanel::ExprValue& value) override {
    if (length == 1 && (name[0] == 'x' || name[0] == 'y')) {
      value = korvanel::ExprValue::Integer(name[0] == 'x' ? -7 : 1'000'000'007);
      return true;
    }
    if (length == 1 && name[0] == 'f') {
      value = korvanel::ExprValue::Double(-2.5);
      return true;
    }
    return false;
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  FixedResolver resolver;
  korvanel::ExprValue value;
  {
    korvanel::CExpressionEvaluator direct;
    direct.SetResolver(&resolver);
    direct.Evaluate(text, value);
  }
  korvanel::CExpressionEvaluator compiled;
  compiled.SetResolver(&resolver);
  compiled.SetCompiledMode(true);
  if (compiled.Evaluate(text, value)) {
    compiled.EvaluateCompiled(value);
    compiled.EvaluateCompiled(value);
  }
  return 0;
}
