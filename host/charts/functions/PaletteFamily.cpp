#include "charts/functions/ChartFamilies.h"
#include "charts/functions/Palettes.h"
#include "ostrelrtcore/Factory.h"

/// Colours for categories and ramps.
namespace ostrel::charts {
namespace {

using namespace ort::core;
using namespace ort::core::builtins;

Value ColorScheme(Value const& name, Value const& count) {
  auto colors = std::make_unique<std::vector<int>>(
      MakePaletteColors(FetchStoreValue<OStringCore>(name).toUtf8(), FetchStoreValue<int>(count)));
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
                       "repeated as needed, those of ramps at even distances; an unknown name throws 2.",
               .example = R"("inputs": [{"String": "viridis"}, {"Int32": 3}])",
               .registrations = {Multinary<ColorScheme>({Segment(String), Segment(Int32)}, ArrayOf(Int32))}},
          }};
}

}  // namespace ostrel::charts
