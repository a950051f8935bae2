#pragma once

#include "charts/scene/Scene.h"

namespace ostrel::charts {

/// How a layer's marks look where no field says so: the document's constants, else the defaults of the mark.
struct MarkLook {
  ort::core::OrtColor color;
  double opacity = 1;
  double size = 30;  ///< square pixels
  MarkPaint paint;
  SymbolShape shape = SymbolShape::Circle;

  double GetFillOpacity() const { return opacity * paint.fillOpacity; }
  double GetStrokeOpacity() const { return opacity * paint.strokeOpacity; }
};

/// Throws DocumentError for a text that is no colour.
MarkLook ResolveMarkLook(ChartDocument const& document, LayerSpec const& layer);
/// The look of a further mark over the layer's rows.
MarkLook ResolveMarkLook(ChartDocument const& document, LayerSpec const& layer, MarkSpec const& mark);

/// A colour, more transparent by an opacity of 0 to 1.
ort::core::OrtColor Fade(ort::core::OrtColor color, double opacity);

/// A colour as the document writes it. Throws DocumentError.
ort::core::OrtColor ReadColor(ChartDocument const& document, std::string const& jsonPath,
                              std::string const& text);

}  // namespace ostrel::charts
