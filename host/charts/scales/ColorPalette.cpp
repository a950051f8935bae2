#include "charts/scales/ColorPalette.h"

#include "charts/document/Readers.h"
#include "services/ValueConverter.h"

namespace ostrel::charts {
namespace {

namespace factory = ort::core::factory;
using ort::core::OrtColor;
using ort::core::StoreTypeInfo;

OrtColor ReadColor(Compilation const& compilation, Encoding const& encoding, Literal const& literal) {
  if (auto const* text = std::get_if<std::string>(&literal)) {
    if (auto const color = services::ParseColor(OStringCore::fromUtf8(*text).view())) return *color;
    ThrowDocumentError(compilation.document, encoding.path + ".scale.range",
                       "\"" + *text + "\" is no colour");
  }
  ThrowDocumentError(compilation.document, encoding.path + ".scale.range", "expects colours");
}

}  // namespace

NodeId PlanPalette(Compilation& compilation, Encoding const& encoding, std::string const& name, NodeId count,
                   char const* defaultScheme, PaletteEnds ends, bool isReversed) {
  GraphBuilder& graph = compilation.graph;
  ScaleSpec const& scale = encoding.scale;
  NodeId palette = -1;
  if (!scale.range.empty()) {
    auto colors = std::make_unique<std::vector<int>>();
    for (Literal const& literal : scale.range) {
      colors->push_back(ReadColor(compilation, encoding, literal).GetValue());
    }
    palette =
        graph.Constant(name + " palette", factory::MakeArray<int>(StoreTypeInfo::Int32, std::move(colors)));
  } else {
    std::string const scheme = scale.scheme.empty() ? defaultScheme : scale.scheme;
    char const* const function = ends == PaletteEnds::Taken ? "colorScheme" : "discreteColorScheme";
    palette = graph.Call(name + " palette", function, {graph.Text(scheme), count});
  }
  return isReversed ? graph.Call(name + " reversed palette", "reverse", {palette}) : palette;
}

}  // namespace ostrel::charts
