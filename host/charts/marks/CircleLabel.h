#pragma once

#include <optional>

#include "charts/guides/GuideStyle.h"

namespace ostrel::charts {

/// A text set into a circle: centred lines, one below the other as TextSetter sets them.
struct CircleLabel {
  std::vector<std::string> lines;
  TextFont font;
};

/// Sets a text into a circle: over as many lines as the circle has room for, broken between words, and with
/// an ellipsis where it does not fit as a whole. Every line stands within the circle. Null where not even the
/// beginning of a word has room.
std::optional<CircleLabel> FitIntoCircle(std::string const& text, double diameter, TextSetter const& setter);

}  // namespace ostrel::charts
