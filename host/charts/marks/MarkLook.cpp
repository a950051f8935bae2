#include "charts/marks/MarkLook.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "charts/document/Readers.h"
#include "charts/graph/Compilation.h"
#include "charts/marks/MarkTable.h"
#include "services/ValueConverter.h"

namespace ostrel::charts {
namespace {

using ort::core::OrtColor;

constexpr double kOpacityBelow = 0.7;

bool HasOverlay(MarkSpec const& mark) { return mark.line != nullptr || mark.point != nullptr; }

struct GivenColor {
  char const* property;
  std::string const& text;
};

// What tells the colour of rows that no field colours.
GivenColor FindColor(MarkSpec const& mark, bool isFilled) {
  GivenColor const specific = isFilled ? GivenColor{".fill", mark.fill} : GivenColor{".stroke", mark.stroke};
  return specific.text.empty() ? GivenColor{".color", mark.color} : specific;
}

MarkPaint ResolvePaint(ChartDocument const& document, MarkSpec const& mark,
                       MarkDefinition const& definition) {
  MarkPaint paint{.isFilled = mark.filled.value_or(definition.isFilled),
                  .fillOpacity = mark.fillOpacity.value_or(1),
                  .strokeOpacity = mark.strokeOpacity.value_or(1),
                  .strokeWidth = mark.strokeWidth.value_or(definition.strokeWidth),
                  .strokeDash = mark.strokeDash};
  std::string const& other = paint.isFilled ? mark.stroke : mark.fill;
  if (!other.empty())
    paint.other = ReadColor(document, mark.path + (paint.isFilled ? ".stroke" : ".fill"), other);
  return paint;
}

// A channel with a value instead of a field.
void ApplyConstant(ChartDocument const& document, Encoding const& encoding, MarkLook& look) {
  if (auto const* text = std::get_if<std::string>(&encoding.value)) {
    if (encoding.channel == Channel::Color) look.color = ReadColor(document, encoding.path + ".value", *text);
    for (auto const& word : SymbolShapeNames()) {
      if (encoding.channel == Channel::Shape && *text == word.name) look.shape = word.value;
    }
  }
  if (auto const* number = std::get_if<double>(&encoding.value)) {
    if (encoding.channel == Channel::Size) look.size = *number;
    if (encoding.channel == Channel::Opacity) look.opacity = *number;
  }
}

}  // namespace

OrtColor ReadColor(ChartDocument const& document, std::string const& jsonPath, std::string const& text) {
  if (auto const color = services::ParseColor(OStringCore::fromUtf8(text).view())) return *color;
  ThrowDocumentError(document, jsonPath, fmt::format("\"{}\" is no colour", text));
}

OrtColor Fade(OrtColor color, double opacity) {
  if (opacity >= 1) return color;
  auto const alpha = static_cast<std::uint32_t>(std::lround(color.GetA() * opacity));
  return OrtColor(
      static_cast<int>((static_cast<std::uint32_t>(color.GetValue()) & 0xFFFFFFU) | alpha << 24U));
}

MarkLook ResolveMarkLook(ChartDocument const& document, LayerSpec const& layer) {
  return ResolveMarkLook(document, layer, layer.mark);
}

MarkLook ResolveMarkLook(ChartDocument const& document, LayerSpec const& layer, MarkSpec const& mark) {
  MarkDefinition const& definition = GetDefinition(mark);
  MarkLook look;
  look.color = OrtColor(static_cast<int>(definition.color));
  look.paint = ResolvePaint(document, mark, definition);
  if (auto const [property, text] = FindColor(mark, look.paint.isFilled); !text.empty())
    look.color = ReadColor(document, mark.path + property, text);
  // What is drawn once for many rows hides nothing.
  bool const isAggregated = std::ranges::any_of(
      layer.encodings, [](Encoding const& encoding) { return encoding.aggregate.has_value(); });
  double const opacity = isAggregated || mark.fillOpacity ? 1 : definition.opacity;
  // What lies below its own line or symbols lets them be seen.
  look.opacity = mark.opacity.value_or(mark.type == "area" && HasOverlay(mark) ? kOpacityBelow : opacity);
  look.size = mark.size.value_or(look.size);
  look.shape = mark.shape.value_or(definition.shape);
  for (Encoding const& encoding : layer.encodings) ApplyConstant(document, encoding, look);
  return look;
}

}  // namespace ostrel::charts
