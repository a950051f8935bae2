#pragma once

#include <string_view>

#include "charts/scene/Scene.h"
#include "charts/writer/SvgStream.h"

namespace ostrel::charts {

/// A colour's alpha and an opacity in one, 0 to 1; 0 for NaN.
double GetPaintOpacity(ort::core::OrtColor color, double opacity = 1);
/// ` NAME="..."`; nothing for 1, which is what SVG starts from.
void WriteOpacity(std::string_view name, double opacity, SvgStream& out);
/// ` fill="..."` with its opacity.
void WriteFill(ort::core::OrtColor color, SvgStream& out);

bool IsPainted(Stroke const& stroke, double opacity = 1);
bool IsSame(Stroke const& left, Stroke const& right);
/// The width and the dashes of a stroke, where they are not what SVG starts from.
void WriteStrokeShape(Stroke const& stroke, SvgStream& out);
/// A stroke's attributes; none when it is not painted.
void WriteStroke(Stroke const& stroke, double opacity, SvgStream& out);

}  // namespace ostrel::charts
