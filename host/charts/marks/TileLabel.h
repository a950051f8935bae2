#pragma once

#include "charts/marks/MarkPlan.h"

namespace ostrel::charts {

/// Adds a text to the middle of a strip's left end, on one line: as much of it as fits with an ellipsis, and
/// nothing where too little does or the strip is lower than the line. A number is not cut. Font and colour
/// are `style`'s.
void AddTileLabel(MarkScene const& scene, std::string text, Rect const& strip, TextMark const& style,
                  bool isNumber = false);

/// Black or white: what stands out more against a colour (the contrast ratio of WCAG 2).
ort::core::OrtColor ChooseTextColor(ort::core::OrtColor ground);

}  // namespace ostrel::charts
