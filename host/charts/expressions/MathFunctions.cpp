#include "charts/expressions/LanguageFunctions.h"
#include "charts/expressions/Operand.h"

namespace ostrel::charts {

namespace {

using ort::core::StoreType;
using Call = CallCompiler;

Operand MapReal(Call& call, char const* function) {
  return call.compiler.Map(StoreType::Real64, function, call.GetReal(0));
}

Operand ZipReal(Call& call, char const* function) {
  Operand const first = call.GetReal(0);
  return call.compiler.ZipReal(function, first, call.GetReal(1));
}

Operand Join(Call& call, char const* function) {
  Operand all = call.GetReal(0);
  for (std::size_t i = 1; i < call.GetCount(); ++i)
    all = call.compiler.ZipReal(function, all, call.GetReal(i));
  return all;
}

Operand Clamp(Call& call) {
  Operand const value = call.GetReal(0);
  Operand const low = call.GetReal(1);
  Operand const held = call.compiler.ZipReal("least", value, call.GetReal(2));
  return call.compiler.ZipReal("greatest", held, low);
}

// clang-format off
constexpr LanguageFunction kFunctions[] = {
    {"abs", 1, 1, [](Call& call) { return MapReal(call, "abs"); }},
    {"acos", 1, 1, [](Call& call) { return MapReal(call, "acos"); }},
    {"asin", 1, 1, [](Call& call) { return MapReal(call, "asin"); }},
    {"atan", 1, 1, [](Call& call) { return MapReal(call, "atan"); }},
    {"atan2", 2, 2, [](Call& call) { return ZipReal(call, "atan2"); }},
    {"ceil", 1, 1, [](Call& call) { return MapReal(call, "ceil"); }},
    {"clamp", 3, 3, Clamp},
    {"cos", 1, 1, [](Call& call) { return MapReal(call, "cos"); }},
    {"exp", 1, 1, [](Call& call) { return MapReal(call, "exp"); }},
    {"floor", 1, 1, [](Call& call) { return MapReal(call, "floor"); }},
    {"hypot", 2, 2, [](Call& call) { return ZipReal(call, "hypot"); }},
    {"log", 1, 1, [](Call& call) { return MapReal(call, "ln"); }},
    {"max", 1, kAnyCount, [](Call& call) { return Join(call, "greatest"); }},
    {"min", 1, kAnyCount, [](Call& call) { return Join(call, "least"); }},
    {"pow", 2, 2, [](Call& call) { return ZipReal(call, "power"); }},
    {"round", 1, 1, [](Call& call) { return MapReal(call, "roundHalfUp"); }},
    {"sign", 1, 1, [](Call& call) { return MapReal(call, "sign"); }},
    {"sin", 1, 1, [](Call& call) { return MapReal(call, "sin"); }},
    {"sqrt", 1, 1, [](Call& call) { return MapReal(call, "sqrt"); }},
    {"tan", 1, 1, [](Call& call) { return MapReal(call, "tan"); }},
};
// clang-format on

}  // namespace

std::span<LanguageFunction const> MathFunctions() { return kFunctions; }

}  // namespace ostrel::charts
