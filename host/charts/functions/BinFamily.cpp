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

}  // namespace

BuiltinFamily BinFamily() {
  KeySegmentType const real = Segment(StoreType::Real64);
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
      }};
}

}  // namespace ostrel::charts
