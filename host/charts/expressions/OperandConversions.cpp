#include <fmt/format.h>

#include "charts/expressions/Operand.h"

namespace ostrel::charts {

namespace {

using ort::core::StoreType;

bool IsFalse(Operand const& truth) { return !ort::core::FetchStoreValue<bool>(truth.constant); }

}  // namespace

char const* NameOf(ValueType type) {
  switch (type) {
    case ValueType::Number:
      return "a number";
    case ValueType::Text:
      return "a text";
    case ValueType::Boolean:
      return "true or false";
    case ValueType::Date:
      return "a date";
    case ValueType::Null:
      return "null";
    default:
      return "a list";
  }
}

void OperandCompiler::RequireValue(Operand const& operand) {
  if (operand.type == ValueType::Null) Fail("null is no value to calculate with");
  if (operand.type == ValueType::List || operand.type == ValueType::Parts)
    Fail("a list is no value to calculate with; take one of its parts, as in list[0]");
}

Operand OperandCompiler::AsReal(Operand const& operand) {
  if (operand.type == ValueType::Null) return Null(StoreType::Real64);
  RequireValue(operand);
  if (operand.store == StoreType::Real64) return operand;
  if (operand.type == ValueType::Date)
    return Call(StoreType::Real64, "millisecondsOfDate", {AsDate(operand)});
  if (operand.type != ValueType::Text) return Map(StoreType::Real64, "asReal64", operand);
  Operand number = Call(StoreType::Real64, "readNumber", {operand});
  number.mayBeMissing = true;
  return number;
}

Operand OperandCompiler::ToReal(Operand const& operand) {
  Operand real = AsReal(operand);
  if (!real.mayBeMissing) return real;
  real = Map(StoreType::Real64, "coerceNumber", real);
  real.mayBeMissing = false;
  return real;
}

Operand OperandCompiler::AsText(Operand const& operand) {
  if (operand.type == ValueType::Null) return Null(StoreType::String);
  RequireValue(operand);
  if (operand.type == ValueType::Text) return operand;
  if (operand.store == StoreType::Real64) return Call(StoreType::String, "describeNumber", {operand});
  if (operand.type != ValueType::Boolean) return Map(StoreType::String, "toString", operand);
  Operand const text = Choose(ToTruth(operand), Text("true"), Text("false"));
  return operand.mayBeMissing ? Choose(IsMissing(operand), Null(StoreType::String), text) : text;
}

Operand OperandCompiler::ToText(Operand const& operand) {
  Operand text = AsText(operand);
  if (!text.mayBeMissing) return text;
  text = Map(StoreType::String, "coerceText", text);
  text.mayBeMissing = false;
  return text;
}

Operand OperandCompiler::AsDate(Operand const& operand) {
  if (operand.type == ValueType::Null) return Null(StoreType::DateTime);
  RequireValue(operand);
  if (operand.type == ValueType::Boolean) Fail("true and false are no dates");
  if (operand.store == StoreType::DateTime) return operand;
  if (!operand.field.empty()) {
    // A field becomes dates as it does in a temporal channel.
    Operand dates{.type = ValueType::Date, .store = StoreType::DateTime};
    dates.node = step_.Instants(operand.field);
    dates.mayBeMissing = operand.mayBeMissing || operand.type != ValueType::Date;
    return dates;
  }
  if (operand.store == StoreType::Date) return Map(StoreType::DateTime, "toDateTime", operand);
  bool const isText = operand.type == ValueType::Text;
  Operand dates = Call(StoreType::DateTime, isText ? "readDates" : "dateOfMilliseconds",
                       {isText ? operand : AsReal(operand)});
  if (isText && dates.IsConstant() && dates.constant->IsSpecial() && !operand.constant->IsSpecial())
    Fail("the text is no date; write one such as '2020-03-01'");
  dates.mayBeMissing = true;
  return dates;
}

Operand OperandCompiler::ToTruth(Operand const& operand) {
  if (operand.type == ValueType::Null) return Bool(false);
  RequireValue(operand);
  if (operand.type == ValueType::Boolean && !operand.mayBeMissing) return operand;
  Operand truth = Map(StoreType::Bool, "isTruthy", operand);
  truth.mayBeMissing = false;
  return truth;
}

Operand OperandCompiler::Not(Operand const& truth) { return Map(StoreType::Bool, "not", truth); }

Operand OperandCompiler::IsMissing(Operand const& operand) {
  if (operand.type == ValueType::Null) return Bool(true);
  RequireValue(operand);
  if (!operand.mayBeMissing) return Bool(false);
  Operand flags = Map(StoreType::Bool, "isSpecial", operand);
  flags.mayBeMissing = false;
  return flags;
}

Operand OperandCompiler::IsNull(Operand const& operand) {
  if (operand.type == ValueType::Null) return Bool(true);
  RequireValue(operand);
  if (!operand.mayBeMissing) return Bool(false);
  Operand flags = Map(StoreType::Bool, "isNull", operand);
  flags.mayBeMissing = false;
  return flags;
}

Operand OperandCompiler::WithoutMissing(Operand const& operand, bool replacement) {
  if (!operand.mayBeMissing) return operand;
  Operand whole = Map(StoreType::Bool, "replaceSpecial", operand, {Bool(replacement)});
  whole.mayBeMissing = false;
  return whole;
}

// Makes both of one type; null stays null.
void OperandCompiler::Unify(Operand& first, Operand& second) {
  if (first.store == second.store) return;
  auto const hasText = [&] { return first.type == ValueType::Text || second.type == ValueType::Text; };
  auto const convert = [&](Operand (OperandCompiler::*as)(Operand const&)) {
    first = (this->*as)(first);
    second = (this->*as)(second);
  };
  if (first.type == ValueType::Null) {
    first = Null(second.store);
  } else if (second.type == ValueType::Null) {
    second = Null(first.store);
  } else if (hasText()) {
    convert(&OperandCompiler::AsText);
  } else if (first.type == ValueType::Date && second.type == ValueType::Date) {
    convert(&OperandCompiler::AsDate);
  } else {
    convert(&OperandCompiler::AsReal);
  }
}

Operand OperandCompiler::OrNull(Operand const& text) {
  if (!text.mayBeMissing) return text;
  Operand whole = Map(StoreType::String, "replaceSpecial", text, {Text("null")});
  whole.mayBeMissing = false;
  return whole;
}

Operand OperandCompiler::Choose(Operand const& mask, Operand whenTrue, Operand whenFalse) {
  for (Operand const* side : {&whenTrue, &whenFalse}) {
    if (side->type != ValueType::Null) RequireValue(*side);
  }
  Unify(whenTrue, whenFalse);
  if (whenTrue.type == ValueType::Null) return whenTrue;
  if (mask.IsConstant()) return IsFalse(mask) ? whenFalse : whenTrue;
  return Call(whenTrue.store, "choose", {mask, whenTrue, whenFalse});
}

Operand OperandCompiler::Equal(Operand const& first, Operand const& second, bool isStrict) {
  if (first.type == ValueType::Null) return isStrict ? IsNull(second) : IsMissing(second);
  if (second.type == ValueType::Null) return isStrict ? IsNull(first) : IsMissing(first);
  RequireValue(first);
  RequireValue(second);
  auto const hasType = [&](ValueType type) { return first.type == type || second.type == type; };
  bool const isDateText = hasType(ValueType::Date) && hasType(ValueType::Text);
  if (isStrict && first.type != second.type && !isDateText) return Bool(false);
  Operand a = first;
  Operand b = second;
  if (a.store != b.store) {
    bool const areDates = isDateText || (a.type == ValueType::Date && b.type == ValueType::Date);
    a = areDates ? AsDate(first) : AsReal(first);
    b = areDates ? AsDate(second) : AsReal(second);
  }
  Operand equal = WithoutMissing(Zip(StoreType::Bool, "equal", a, b), false);
  // What is missing on one side alone differs.
  if (!first.mayBeMissing || !second.mayBeMissing) return equal;
  Operand const isFirstMissing = IsMissing(first);
  Operand const bothMissing = Zip(StoreType::Bool, "and", isFirstMissing, IsMissing(second));
  return Zip(StoreType::Bool, "or", equal, bothMissing);
}

// Beside a missing one, the other text counts as a number.
Operand OperandCompiler::CompareTexts(char const* function, Operand const& first, Operand const& second) {
  Operand texts = WithoutMissing(Zip(StoreType::Bool, function, first, second), false);
  if (!first.mayBeMissing && !second.mayBeMissing) return texts;
  Operand const numbers = Zip(StoreType::Bool, function, ToReal(first), ToReal(second));
  Operand const isMissing = Zip(StoreType::Bool, "or", IsMissing(first), IsMissing(second));
  return Choose(isMissing, numbers, texts);
}

Operand OperandCompiler::Compare(char const* function, Operand const& first, Operand const& second) {
  auto const isOf = [&](ValueType one, ValueType other) {
    return (first.type == one && second.type == other) || (first.type == other && second.type == one);
  };
  if (isOf(ValueType::Text, ValueType::Text)) return CompareTexts(function, first, second);
  bool const areDates = isOf(ValueType::Date, ValueType::Date) || isOf(ValueType::Date, ValueType::Text);
  Operand const a = areDates ? AsDate(first) : first;
  Operand const b = areDates ? AsDate(second) : second;
  if (areDates && !a.mayBeMissing && !b.mayBeMissing) return Zip(StoreType::Bool, function, a, b);
  return Zip(StoreType::Bool, function, ToReal(a), ToReal(b));
}

Operand CallCompiler::GetConstantText(std::size_t place, char const* what) {
  Operand text = Get(place);
  if (text.type != ValueType::Text || !text.IsConstant())
    compiler.Fail(fmt::format("{} must be a text that is the same in every row", what));
  return text;
}

bool CallCompiler::GetConstantTruth(std::size_t place, bool otherwise) {
  if (!Has(place)) return otherwise;
  Operand const truth = GetTruth(place);
  if (!truth.IsConstant()) compiler.Fail("true or false must be the same in every row here");
  return !IsFalse(truth);
}

}  // namespace ostrel::charts
