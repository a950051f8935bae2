#include "charts/expressions/LanguageFunctions.h"
#include "charts/expressions/Operand.h"

namespace ostrel::charts {

namespace {

using ort::core::StoreType;
using Call = CallCompiler;

// Null is the beginning of 1970.
Operand GetInstant(Call& call) {
  Operand date = call.GetDate(0);
  if (!date.mayBeMissing) return date;
  Operand instant =
      call.compiler.Call(StoreType::DateTime, "dateOfMilliseconds", {call.compiler.ToReal(date)});
  instant.mayBeMissing = true;
  return instant;
}

Operand Part(Call& call, char const* part) {
  return call.compiler.Call(StoreType::Real64, "datePart", {GetInstant(call), call.compiler.Text(part)});
}

// The parts that are left out are those of midnight on the first of the month.
Operand MakeDate(OperandCompiler& compiler, std::vector<Operand> parts) {
  constexpr std::size_t kDay = 2;
  constexpr std::size_t kPartCount = 7;
  while (parts.size() < kPartCount) parts.push_back(compiler.Real(parts.size() == kDay ? 1 : 0));
  Operand date = compiler.Call(StoreType::DateTime, "dateOfParts", parts);
  date.mayBeMissing = true;
  return date;
}

Operand MakeDate(Call& call) {
  if (call.GetCount() == 1) return GetInstant(call);
  std::vector<Operand> parts;
  for (std::size_t i = 0; i < call.GetCount(); ++i) parts.push_back(call.GetReal(i));
  return MakeDate(call.compiler, std::move(parts));
}

Operand FormatDate(OperandCompiler& compiler, Operand const& date, Operand const& pattern) {
  return compiler.CallOnColumns(StoreType::String, "formatDates", {date, pattern}, 1);
}

Operand Format(Call& call) {
  Operand const date = call.GetDate(0);
  Operand const pattern = call.Has(1) ? call.GetConstantText(1, "a pattern") : call.compiler.Text("");
  Operand const text = FormatDate(call.compiler, date, pattern);
  return call.compiler.OrNull(text);
}

// The second of January 2000 was a Sunday.
Operand NameUnit(Call& call, bool isMonth, char const* pattern) {
  OperandCompiler& compiler = call.compiler;
  Operand const number = call.GetReal(0);
  Operand const zero = compiler.Real(0);
  Operand const day =
      isMonth ? compiler.Real(1) : compiler.Zip(StoreType::Real64, "add", number, compiler.Real(2));
  Operand const date = MakeDate(compiler, {compiler.Real(2000), isMonth ? number : zero, day});
  return FormatDate(compiler, date, compiler.Text(pattern));
}

// clang-format off
constexpr LanguageFunction kFunctions[] = {
    {"date", 1, 1, [](Call& call) { return Part(call, "date"); }},
    {"datetime", 1, 7, [](Call& call) { return MakeDate(call); }},
    {"day", 1, 1, [](Call& call) { return Part(call, "day"); }},
    {"dayAbbrevFormat", 1, 1, [](Call& call) { return NameUnit(call, false, "%a"); }},
    {"dayFormat", 1, 1, [](Call& call) { return NameUnit(call, false, "%A"); }},
    {"dayofyear", 1, 1, [](Call& call) { return Part(call, "dayofyear"); }},
    {"hours", 1, 1, [](Call& call) { return Part(call, "hours"); }},
    {"milliseconds", 1, 1, [](Call& call) { return Part(call, "milliseconds"); }},
    {"minutes", 1, 1, [](Call& call) { return Part(call, "minutes"); }},
    {"month", 1, 1, [](Call& call) { return Part(call, "month"); }},
    {"monthAbbrevFormat", 1, 1, [](Call& call) { return NameUnit(call, true, "%b"); }},
    {"monthFormat", 1, 1, [](Call& call) { return NameUnit(call, true, "%B"); }},
    {"quarter", 1, 1, [](Call& call) { return Part(call, "quarter"); }},
    {"seconds", 1, 1, [](Call& call) { return Part(call, "seconds"); }},
    {"time", 1, 1, [](Call& call) { return call.compiler.ToReal(call.GetDate(0)); }},
    {"timeFormat", 1, 2, Format},
    {"toDate", 1, 1, [](Call& call) { return call.GetDate(0); }},
    {"utc", 1, 7, [](Call& call) { return call.compiler.ToReal(MakeDate(call)); }},
    {"utcFormat", 1, 2, Format},
    {"utcdate", 1, 1, [](Call& call) { return Part(call, "date"); }},
    {"utcday", 1, 1, [](Call& call) { return Part(call, "day"); }},
    {"utcdayofyear", 1, 1, [](Call& call) { return Part(call, "dayofyear"); }},
    {"utchours", 1, 1, [](Call& call) { return Part(call, "hours"); }},
    {"utcmilliseconds", 1, 1, [](Call& call) { return Part(call, "milliseconds"); }},
    {"utcminutes", 1, 1, [](Call& call) { return Part(call, "minutes"); }},
    {"utcmonth", 1, 1, [](Call& call) { return Part(call, "month"); }},
    {"utcquarter", 1, 1, [](Call& call) { return Part(call, "quarter"); }},
    {"utcseconds", 1, 1, [](Call& call) { return Part(call, "seconds"); }},
    {"utcweek", 1, 1, [](Call& call) { return Part(call, "week"); }},
    {"utcyear", 1, 1, [](Call& call) { return Part(call, "year"); }},
    {"week", 1, 1, [](Call& call) { return Part(call, "week"); }},
    {"year", 1, 1, [](Call& call) { return Part(call, "year"); }},
};
// clang-format on

}  // namespace

std::span<LanguageFunction const> DateFunctions() { return kFunctions; }

}  // namespace ostrel::charts
