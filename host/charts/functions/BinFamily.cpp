#include <algorithm>
#include <cmath>

#include "charts/functions/BinRange.h"
#include "charts/functions/ChartFamilies.h"
#include "ostrelrtcore/builtins/Columns.h"

/// Intervals of numbers, whose rows are counted together.
namespace ostrel::charts {
namespace {

using namespace ort::core;
using namespace ort::core::builtins;

Value CallBinRange(Value const& minimum, Value const& maximum, Value const& maxBins, Value const& step,
                   Value const& minStep) {
  auto const read = [](Value const& value) { return FetchStoreValue<double>(value); };
  BinRange const bins = FindBins({read(minimum), read(maximum), read(maxBins), read(step), read(minStep)});
  return factory::MakeTuple(
      {factory::MakeReal64(bins.start), factory::MakeReal64(bins.stop), factory::MakeReal64(bins.step)});
}

Value CallThresholdIndex(Value const& numbers, Value const& thresholds) {
  RowKinds const kinds(RequireColumn(*numbers, StoreType::Real64, "numbers"));
  RequireColumn(*thresholds, StoreType::Real64, "thresholds");
  auto const values = numbers->AsTypedArray<double>().GetValues();
  auto const limits = thresholds->AsTypedArray<double>().GetValues();
  bool const isAscending =
      std::ranges::adjacent_find(limits, [](double a, double b) { return !(a < b); }) == limits.end();
  if (!isAscending) ThrowError(OrtError_InputKindNotAccepted, "thresholds must be ascending");
  auto indices = factory::MakeColumnBuilder<int>(StoreTypeInfo::Int32, static_cast<int>(values.size()));
  for (std::size_t row = 0; row < values.size(); ++row) {
    SpecialKind const kind = kinds[static_cast<int>(row)];
    indices.GetValues()[row] =
        static_cast<int>(std::ranges::upper_bound(limits, values[row]) - limits.begin());
    if (kind != SpecialKind::None) indices.SetSpecial(static_cast<int>(row), kind);
    if (std::isnan(values[row])) indices.SetSpecial(static_cast<int>(row), SpecialKind::Missing);
  }
  return indices.Finish();
}

}  // namespace

BuiltinFamily BinFamily() {
  KeySegmentType const real = Segment(StoreType::Real64);
  KeySegmentType const reals = ArrayOf(StoreType::Real64);
  return {
      "bins",
      {
          {.name = "binRange",
           .inputs = {"minimum", "maximum", "maxBins", "step", "minStep"},
           .help = "A tuple of start, stop and step of at most that many bins over the range, the step 1, "
                   "2 or 5 times a power of ten and not below the least one, or as given where it is "
                   "above 0; ends that are not finite and more than 10,000 bins throw 2.",
           .example = R"("inputs": [{"Real64": 1.4}, {"Real64": 9.3}, {"Real64": 10}, {"Real64": 0}, )"
                      R"({"Real64": 0}])",
           .registrations = {Multinary<CallBinRange>({real, real, real, real, real},
                                                     Segment(StoreType::Tuple))}},
          {.name = "thresholdIndex",
           .inputs = {"numbers", "thresholds"},
           .help = "How many of the thresholds each number reaches; special rows stay special, NaN becomes "
                   "special of kind 1. Thresholds that are not ascending throw 2.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [-1, 0, 7, 12]}}, )"
                      R"({"Array": {"type": "Real64", "values": [0, 10]}}])",
           .registrations = {Multinary<CallThresholdIndex>({reals, reals}, ArrayOf(StoreType::Int32))}},
      }};
}

}  // namespace ostrel::charts
