#include "charts/expressions/LanguageFunctions.h"
#include "charts/expressions/Operand.h"

namespace ostrel::charts {

namespace {

using ort::core::StoreType;
using Call = CallCompiler;

Operand IsNan(Call& call) {
  Operand const value = call.Get(0);
  if (value.type != ValueType::Number) return call.compiler.Bool(false);
  Operand flags = call.compiler.Map(StoreType::Bool, "isNaN", call.compiler.ToReal(value));
  flags.mayBeMissing = false;
  return flags;
}

Operand IsFinite(Call& call) {
  OperandCompiler& compiler = call.compiler;
  Operand const value = call.Get(0);
  if (value.type != ValueType::Number) return compiler.Bool(false);
  return compiler.WithoutMissing(compiler.Map(StoreType::Bool, "isFinite", compiler.AsReal(value)), false);
}

Operand IsThere(OperandCompiler& compiler, Operand const& value) {
  return compiler.Not(compiler.IsMissing(value));
}

Operand IsValid(Call& call) {
  OperandCompiler& compiler = call.compiler;
  Operand const value = call.Get(0);
  bool const mayBeNan = value.store == StoreType::Real64 && value.field.empty();
  if (!mayBeNan) return IsThere(compiler, value);
  Operand isNan = compiler.Map(StoreType::Bool, "isNaN", value);
  isNan.mayBeMissing = false;
  return compiler.Not(isNan);
}

Operand IsOf(Call& call, ValueType type) {
  Operand const value = call.Get(0);
  return value.type == type ? IsThere(call.compiler, value) : call.compiler.Bool(false);
}

Operand ToBoolean(Call& call) {
  OperandCompiler& compiler = call.compiler;
  Operand value = call.Get(0);
  if (value.type == ValueType::Boolean) return value;
  auto const differs = [&](Operand const& from, Operand const& other) {
    return compiler.Zip(StoreType::Bool, "notEqual", from, other);
  };
  if (value.type != ValueType::Text) return differs(compiler.AsReal(value), compiler.Real(0));
  Operand const isNotFalse = differs(value, compiler.Text("false"));
  Operand const isTrue = compiler.Zip(StoreType::Bool, "and", isNotFalse, differs(value, compiler.Text("0")));
  return compiler.Choose(compiler.ToTruth(value), isTrue, compiler.Null(StoreType::Bool));
}

Operand If(Call& call) {
  Operand const test = call.GetTruth(0);
  Operand const whenTrue = call.Get(1);
  return call.compiler.Choose(test, whenTrue, call.Get(2));
}

Operand InRange(Call& call) {
  OperandCompiler& compiler = call.compiler;
  Operand const value = call.Get(0);
  Operand const range = call.Get(1);
  if (range.type != ValueType::List || range.members.size() != 2)
    compiler.Fail("the range of inrange is a list of two values, as in inrange(datum.a, [0, 10])");
  // Dates are compared as numbers, as each of the three may be either.
  bool const isDate = value.type == ValueType::Date;
  auto const number = [&](Operand const& end) {
    return compiler.ToReal(isDate && end.type == ValueType::Text ? compiler.AsDate(end) : end);
  };
  Operand const ends[] = {number(range.members[0]), number(range.members[1])};
  Operand const low = compiler.ZipReal("least", ends[0], ends[1]);
  Operand const high = compiler.ZipReal("greatest", ends[0], ends[1]);
  Operand const place = compiler.ToReal(value);
  char const* const above = call.GetConstantTruth(2, true) ? "greaterOrEqual" : "greater";
  char const* const below = call.GetConstantTruth(3, true) ? "lessOrEqual" : "less";
  Operand const isAbove = compiler.Compare(above, place, low);
  return compiler.Zip(StoreType::Bool, "and", isAbove, compiler.Compare(below, place, high));
}

// clang-format off
constexpr LanguageFunction kFunctions[] = {
    {"if", 3, 3, If},
    {"inrange", 2, 4, InRange},
    {"isBoolean", 1, 1, [](Call& call) { return IsOf(call, ValueType::Boolean); }},
    {"isDate", 1, 1, [](Call& call) { return IsOf(call, ValueType::Date); }},
    {"isFinite", 1, 1, IsFinite},
    {"isNaN", 1, 1, IsNan},
    {"isNumber", 1, 1, [](Call& call) { return IsOf(call, ValueType::Number); }},
    {"isString", 1, 1, [](Call& call) { return IsOf(call, ValueType::Text); }},
    {"isValid", 1, 1, IsValid},
    {"toBoolean", 1, 1, ToBoolean},
};
// clang-format on

}  // namespace

std::span<LanguageFunction const> TestFunctions() { return kFunctions; }

}  // namespace ostrel::charts
