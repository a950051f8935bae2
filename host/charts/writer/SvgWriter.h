#pragma once

#include "charts/scene/Scene.h"
#include "charts/writer/ByteSink.h"
#include "services/TextMeasurer.h"

namespace ostrel::charts {

/// Writes a scene as SVG 1.1, in pieces as it goes; the same scene gives the same bytes. Numbers have three
/// decimals at most. A mark that has a coordinate or extent which is no finite number, or that would paint
/// nothing, is left out.
///
/// `fonts` gives the font families and, from a font's ascent and height, where baselines lie: Top puts the
/// ascent at the text's y, Bottom the descent, Middle the middle of the two. Start and End are the left and
/// the right end of a text in either direction. Blanks of a text are kept; a tab or line end is a blank.
/// Symbols are as GetSymbolCorners says. A line's lone point between gaps is a dot.
///
/// Throws OrtRuntimeException 259 when the columns of one batch differ in length, 55 when one is of another
/// type, and what the sink throws.
void WriteSvg(Scene const& scene, services::TextMeasurer const& fonts, ByteSink& sink);

}  // namespace ostrel::charts
