#pragma once

#include <algorithm>

#include "charts/scene/Scene.h"
#include "services/TextMeasurer.h"

namespace ostrel::charts {

/// How axes, legends and titles look: lengths in pixels, colours as ARGB.
namespace GuideStyle {
inline constexpr double kTickSize = 5;
inline constexpr double kLeastTickGap = 4;
inline constexpr double kLabelPadding = 3;   ///< between a tick and its label
inline constexpr double kTitlePadding = 8;   ///< between labels and the axis title
inline constexpr double kAxisGap = 12;       ///< between two axes on one side
inline constexpr double kPaneGap = 20;       ///< between panes with their axes
inline constexpr double kHeaderPadding = 8;  ///< between a pane and its header
inline constexpr double kChartTitlePadding = 10;
inline constexpr double kLegendOffset = 18;  ///< between the plotting area and a legend
inline constexpr double kLegendGap = 16;     ///< between two legends
inline constexpr double kLegendRowGap = 3;
inline constexpr double kLegendRowHeight = 12;    ///< at least
inline constexpr double kLegendEntryGap = 14;     ///< between entries beside one another
inline constexpr double kLegendLabelPadding = 6;  ///< between a symbol and its label
inline constexpr double kLegendSampleSize = 100;  ///< of symbols whose size no field tells, square pixels
inline constexpr double kLegendTitlePadding = 5;
inline constexpr double kTitleLineGap = 2;             ///< between the lines of a title
inline constexpr double kLabelLimit = 180;             ///< of the lines of labels
inline constexpr double kNoLimit = 100'000;            ///< of a document's limit 0
inline constexpr double kLeastTitleLength = 150;       ///< lines of axis titles and headers may be that long
inline constexpr double kLeastChartTitleLength = 300;  ///< and those of a chart's title
inline constexpr int kMostLegendEntries = 30;
inline constexpr double kOuterPadding = 10;
/// Where panes begin within a pixel of the picture: one-pixel lines at their whole positions fill their
/// pixel.
inline constexpr double kPixelShift = 0.5;
inline constexpr double kLabelFontSize = 10;
inline constexpr double kTitleFontSize = 11;
inline constexpr double kChartTitleFontSize = 14;
inline constexpr double kGradientLength = 160;
inline constexpr double kGradientThickness = 14;

inline ort::core::OrtColor GridColor() { return {static_cast<int>(0xFFE4E4E4)}; }
inline ort::core::OrtColor AxisColor() { return {static_cast<int>(0xFF888888)}; }
inline ort::core::OrtColor TextColor() { return {static_cast<int>(0xFF333333)}; }
inline ort::core::OrtColor FaintTextColor() { return {static_cast<int>(0xFF666666)}; }
}  // namespace GuideStyle

/// The room that the parts of a picture take up.
class Extent {
 public:
  explicit Extent(Rect const& rect)
      : left_(rect.x), top_(rect.y), right_(rect.Right()), bottom_(rect.Bottom()) {}
  void Add(Rect const& rect) {
    left_ = std::min(left_, rect.x);
    top_ = std::min(top_, rect.y);
    right_ = std::max(right_, rect.Right());
    bottom_ = std::max(bottom_, rect.Bottom());
  }
  Rect GetRect() const { return {left_, top_, right_ - left_, bottom_ - top_}; }

 private:
  double left_;
  double top_;
  double right_;
  double bottom_;
};

/// Texts that need no composing, and the room they take up.
class TextSetter {
 public:
  TextSetter(services::TextMeasurer const& measurer, std::string family)
      : measurer_(measurer), family_(std::move(family)) {}

  TextFont MakeFont(double size, bool isBold = false) const {
    return {family_, size, isBold ? 700 : 400, false};
  }
  double MeasureWidth(std::string const& text, TextFont const& font) const;
  /// The rectangle around a text as it is turned and anchored.
  Rect MeasureRect(TextMark const& text) const;
  /// Adds a text of one line to a group, and its room, moved by the group's origin, to the extent. Gives that
  /// room in the group's coordinates.
  Rect Add(Group& group, TextMark const& text, Extent& extent) const;

 private:
  services::TextMeasurer const& measurer_;
  std::string family_;
};

}  // namespace ostrel::charts
