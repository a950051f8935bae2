#include "charts/functions/ChartFamilies.h"
#include "charts/functions/Palettes.h"
#include "ostrelrtcore/Factory.h"

/// Colours for categories and ramps.
namespace ostrel::charts {
namespace {

using namespace ort::core;
using namespace ort::core::builtins;

template <PaletteEnds kEnds>
Value ColorScheme(Value const& name, Value const& count) {
  auto colors = std::make_unique<std::vector<int>>(
      MakePaletteColors(FetchStoreValue<OStringCore>(name).toUtf8(), FetchStoreValue<int>(count), kEnds));
  return factory::MakeArray<int>(StoreTypeInfo::Int32, std::move(colors));
}

}  // namespace

BuiltinFamily PaletteFamily() {
  using enum StoreType;
  return {"palettes",
          {
              {.name = "colorScheme",
               .inputs = {"name", "count"},
               .help = "That many colours of a published palette as ARGB numbers: those of categories "
                       "repeated as needed, those of ramps at even distances from end to end; an unknown "
                       "name throws 2.",
               .example = R"("inputs": [{"String": "viridis"}, {"Int32": 3}])",
               .registrations = {Multinary<ColorScheme<PaletteEnds::Taken>>({Segment(String), Segment(Int32)},
                                                                            ArrayOf(Int32))}},
              {.name = "discreteColorScheme",
               .inputs = {"name", "count"},
               .help = "Colours of a published palette for so many discrete values as ARGB numbers: those of "
                       "categories repeated as needed, n of a ramp from 1 / (n + 1) to n / (n + 1) of its "
                       "way; an unknown name throws 2.",
               .example = R"("inputs": [{"String": "viridis"}, {"Int32": 3}])",
               .registrations = {Multinary<ColorScheme<PaletteEnds::Left>>({Segment(String), Segment(Int32)},
                                                                           ArrayOf(Int32))}},
          }};
}

}  // namespace ostrel::charts
