#include <limits>

#include "charts/expressions/LanguageFunctions.h"
#include "charts/expressions/Operand.h"

namespace ostrel::charts {

namespace {

using ort::core::StoreType;
using Call = CallCompiler;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

Operand EditText(Call& call, char const* function) {
  return call.compiler.Call(StoreType::String, function, {call.GetText(0)});
}

Operand CutText(Call& call, char const* function, Operand const& text) {
  return call.compiler.Call(StoreType::String, function,
                            {text, call.GetReal(1, 0), call.GetReal(2, kInfinity)});
}

Operand Length(Call& call) { return call.compiler.CountParts(call.Get(0)); }

// The place of a value in a list of constants.
Operand FindInList(OperandCompiler& compiler, Operand const& list, Operand const& value, bool isLast) {
  Operand place = compiler.Real(-1);
  auto const count = list.members.size();
  for (std::size_t i = 0; i < count; ++i) {
    std::size_t const member = isLast ? i : count - 1 - i;
    Operand const isHere = compiler.Equal(value, list.members[member], true);
    place = compiler.Choose(isHere, compiler.Real(static_cast<double>(member)), place);
  }
  return place;
}

Operand Find(Call& call, char const* function, bool isLast) {
  Operand const whole = call.Get(0);
  if (whole.type == ValueType::List) return FindInList(call.compiler, whole, call.Get(1), isLast);
  return call.compiler.Call(StoreType::Real64, function, {call.compiler.AsText(whole), call.GetText(1)});
}

Operand Replace(Call& call) {
  return call.compiler.Call(StoreType::String, "replaceText",
                            {call.GetText(0), call.GetText(1), call.GetText(2)});
}

Operand Split(Call& call) {
  return {.type = ValueType::Parts, .members = {call.GetOwnText(0), call.GetText(1)}};
}

Operand Pad(Call& call) {
  Operand const side = call.Has(3) ? call.GetConstantText(3, "the side") : call.compiler.Text("right");
  return call.compiler.Call(StoreType::String, "padText",
                            {call.GetText(0), call.GetReal(1), call.GetText(2, " "), side});
}

Operand Truncate(Call& call) {
  Operand const side = call.Has(2) ? call.GetConstantText(2, "the side") : call.compiler.Text("right");
  return call.compiler.Call(StoreType::String, "truncateText",
                            {call.GetText(0), call.GetReal(1), side, call.GetText(3, "…")});
}

Operand Format(Call& call) {
  OperandCompiler& compiler = call.compiler;
  Operand const number = compiler.AsReal(call.Get(0));
  return compiler.OrNull(compiler.CallOnColumns(StoreType::String, "formatNumbers",
                                                {number, call.GetConstantText(1, "a pattern")}, 1));
}

// The value that `convert` makes, null for null and the empty text.
Operand Convert(Call& call, StoreType store, Operand (OperandCompiler::*convert)(Operand const&)) {
  OperandCompiler& compiler = call.compiler;
  Operand const value = call.Get(0);
  Operand converted = (compiler.*convert)(value);
  if (value.type != ValueType::Text) return converted;
  Operand const isEmpty = compiler.Equal(value, compiler.Text(""), true);
  return compiler.Choose(isEmpty, compiler.Null(store), converted);
}

Operand ReadNumber(Call& call, char const* function) {
  Operand number = call.compiler.Call(StoreType::Real64, function, {call.GetText(0)});
  number.mayBeMissing = true;
  return number;
}

// clang-format off
constexpr LanguageFunction kFunctions[] = {
    {"format", 2, 2, Format},
    {"indexOf", 2, 2, [](Call& call) { return Find(call, "findText", false); }},
    {"indexof", 2, 2, [](Call& call) { return Find(call, "findText", false); }},
    {"lastIndexOf", 2, 2, [](Call& call) { return Find(call, "findLastText", true); }},
    {"lastindexof", 2, 2, [](Call& call) { return Find(call, "findLastText", true); }},
    {"length", 1, 1, Length},
    {"lower", 1, 1, [](Call& call) { return EditText(call, "lowerCase"); }},
    {"pad", 2, 4, Pad},
    {"parseFloat", 1, 1, [](Call& call) { return ReadNumber(call, "readLeadingNumber"); }},
    {"parseInt", 1, 1, [](Call& call) { return ReadNumber(call, "readLeadingInteger"); }},
    {"replace", 3, 3, Replace},
    {"slice", 2, 3, [](Call& call) { return CutText(call, "sliceText", call.GetOwnText(0)); }},
    {"split", 2, 2, Split},
    {"substring", 2, 3, [](Call& call) { return CutText(call, "substring", call.GetText(0)); }},
    {"toNumber", 1, 1, [](Call& call) { return Convert(call, StoreType::Real64, &OperandCompiler::AsReal); }},
    {"toString", 1, 1, [](Call& call) { return Convert(call, StoreType::String, &OperandCompiler::AsText); }},
    {"trim", 1, 1, [](Call& call) { return EditText(call, "trimText"); }},
    {"truncate", 2, 4, Truncate},
    {"upper", 1, 1, [](Call& call) { return EditText(call, "upperCase"); }},
};
// clang-format on

}  // namespace

std::span<LanguageFunction const> TextFunctions() { return kFunctions; }

}  // namespace ostrel::charts
