#include "charts/functions/ChartFamilies.h"
#include "charts/functions/LinearTicks.h"
#include "charts/functions/LogTicks.h"
#include "charts/functions/TimeTicks.h"
#include "ostrelrtcore/builtins/Columns.h"

/// Domains and ticks of axes and legends. A special end throws 55; special positions are passed over.
namespace ostrel::charts {
namespace {

using namespace ort::core;
using namespace ort::core::builtins;

double ReadReal(Value const& value) { return FetchStoreValue<double>(value); }

template <class T>
Value MakeColumn(StoreTypeInfo const& type, std::vector<T> values) {
  return factory::MakeArray<T>(type, std::make_unique<std::vector<T>>(std::move(values)));
}

Value MakeDomain(Domain domain) {
  return factory::MakeTuple({factory::MakeReal64(domain.minimum), factory::MakeReal64(domain.maximum)});
}

Value CallLinearTicks(Value const& minimum, Value const& maximum, Value const& count) {
  return MakeColumn(StoreTypeInfo::Real64,
                    LinearTicks(ReadReal(minimum), ReadReal(maximum), ReadReal(count)));
}

Value CallNiceLinearDomain(Value const& minimum, Value const& maximum, Value const& count) {
  return MakeDomain(NiceLinearDomain({ReadReal(minimum), ReadReal(maximum)}, ReadReal(count)));
}

Value CallNiceLogDomain(Value const& minimum, Value const& maximum, Value const& base) {
  return MakeDomain(NiceLogDomain({ReadReal(minimum), ReadReal(maximum)}, ReadReal(base)));
}

Value CallTimeTicks(Value const& minimum, Value const& maximum, Value const& count) {
  return MakeColumn(StoreTypeInfo::DateTime,
                    TimeTicks(ReadReal(minimum), ReadReal(maximum), ReadReal(count)));
}

Value CallLogTickValues(Value const& positions, Value const& minimum, Value const& maximum,
                        Value const& count) {
  RowKinds const kinds(RequireColumn(*positions, StoreType::Real64, "positions"));
  auto const& column = positions->AsTypedArray<double>();
  std::vector<double> ordinary;
  for (int row = 0; row < column.GetCount(); ++row) {
    if (kinds[row] == SpecialKind::None) ordinary.push_back(column.GetElement(row));
  }
  return MakeColumn(StoreTypeInfo::Real64,
                    LogTickValues(ordinary, {ReadReal(minimum), ReadReal(maximum)}, ReadReal(count)));
}

}  // namespace

BuiltinFamily TickFamily() {
  using enum StoreType;
  KeySegmentType const real = Segment(Real64);
  return {
      "ticks",
      {
          {.name = "linearTicks",
           .inputs = {"minimum", "maximum", "count"},
           .help = "About that many round numbers from minimum to maximum, 1, 2 or 5 times a power of ten "
                   "apart, from the maximum down where the ends are swapped; none for a count not above 0 or "
                   "an end that is not finite.",
           .example = R"("inputs": [{"Real64": 0}, {"Real64": 1}, {"Real64": 5}])",
           .registrations = {Multinary<CallLinearTicks>({real, real, real}, ArrayOf(Real64))}},
          {.name = "niceLinearDomain",
           .inputs = {"minimum", "maximum", "count"},
           .help = "A tuple of the ends widened to multiples of the step that about that many ticks have; "
                   "equal ends stay.",
           .example = R"("inputs": [{"Real64": 0.13}, {"Real64": 9.7}, {"Real64": 10}])",
           .registrations = {Multinary<CallNiceLinearDomain>({real, real, real}, Segment(Tuple))}},
          {.name = "niceLogDomain",
           .inputs = {"minimum", "maximum", "base"},
           .help =
               "A tuple of the ends widened to powers of the base; an end not above 0 or a base not above "
               "1 throws 2.",
           .example = R"("inputs": [{"Real64": 3}, {"Real64": 4200}, {"Real64": 10}])",
           .registrations = {Multinary<CallNiceLogDomain>({real, real, real}, Segment(Tuple))}},
          {.name = "timeTicks",
           .inputs = {"minimum", "maximum", "count"},
           .help = "About that many dates, from day number to day number, at which a unit of the calendar "
                   "begins: milliseconds to years.",
           .example = R"("inputs": [{"Real64": 43831}, {"Real64": 44197}, {"Real64": 5}])",
           .registrations = {Multinary<CallTimeTicks>({real, real, real}, ArrayOf(DateTime))}},
          {.name = "logTickValues",
           .inputs = {"positions", "minimum", "maximum", "count"},
           .help =
               "The numbers at positions of a logarithmic axis, 0 its minimum and 1 its maximum, that lie "
               "in the domain; about that many linear ticks where fewer than two do.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [0, 0.5, 1, 1.5]}}, )"
                      R"({"Real64": 1}, {"Real64": 100}, {"Real64": 5}])",
           .registrations = {Multinary<CallLogTickValues>({ArrayOf(Real64), real, real, real},
                                                          ArrayOf(Real64))}},
      }};
}

}  // namespace ostrel::charts
