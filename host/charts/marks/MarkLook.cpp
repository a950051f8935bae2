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

std::string const& ColorText(MarkSpec const& mark, bool isFilled) {
  std::string const& specific = isFilled ? mark.fill : mark.stroke;
  return specific.empty() ? mark.color : specific;
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
  MarkSpec const& mark = layer.mark;
  MarkDefinition const& definition = GetDefinition(mark);
  MarkLook look;
  look.color = OrtColor(static_cast<int>(definition.color));
  look.isFilled = mark.filled.value_or(definition.isFilled);
  if (auto const& text = ColorText(mark, look.isFilled); !text.empty()) {
    look.color = ReadColor(document, mark.path, text);
  }
  // What is drawn once for many rows hides nothing.
  bool const isAggregated = std::ranges::any_of(
      layer.encodings, [](Encoding const& encoding) { return encoding.aggregate.has_value(); });
  look.opacity = mark.opacity.value_or(isAggregated ? 1 : definition.opacity);
  look.size = mark.size.value_or(look.size);
  look.strokeWidth = mark.strokeWidth.value_or(look.strokeWidth);
  look.strokeDash = mark.strokeDash;
  look.shape = mark.shape.value_or(definition.shape);
  for (Encoding const& encoding : layer.encodings) ApplyConstant(document, encoding, look);
  return look;
}

}  // namespace ostrel::charts
