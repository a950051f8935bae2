#pragma once

#include "charts/writer/RowValues.h"
#include "charts/writer/SvgPaint.h"

namespace ostrel::charts {

/// The attributes of marks that are columns: what is one for all rows stands in their group, the rest in each
/// element. Opacity is an attribute of the paints: that of a group would melt its overlapping marks into one.
class RowPaint {
 public:
  RowPaint(MarkPaint const& paint, Varying<ort::core::OrtColor> const& color, Varying<double> const& opacity,
           std::size_t count)
      : paint_(paint),
        color_(color, count),
        opacity_(opacity, count),
        hasOther_(paint.isFilled ? IsPainted(paint.GetStroke({}), 1) : paint.other.GetA() != 0) {}

  void WriteShared(SvgStream& out) const;
  bool IsSeen(std::size_t row) const {
    return GetOpacity(row) > 0 || (hasOther_ && GetOtherOpacity(row) > 0);
  }
  void WriteRow(std::size_t row, SvgStream& out) const;

 private:
  double GetOpacity(std::size_t row) const {
    double const own = paint_.isFilled ? paint_.fillOpacity : paint_.strokeOpacity;
    return GetPaintOpacity(color_[row], opacity_[row] * own);
  }
  double GetOtherOpacity(std::size_t row) const {
    double const own = paint_.isFilled ? paint_.strokeOpacity : paint_.fillOpacity;
    return GetPaintOpacity(paint_.other, opacity_[row] * own);
  }
  std::string_view NameOpacity() const { return paint_.isFilled ? "fill-opacity" : "stroke-opacity"; }
  std::string_view NameOtherOpacity() const { return paint_.isFilled ? "stroke-opacity" : "fill-opacity"; }

  MarkPaint const& paint_;
  RowValues<ort::core::OrtColor> color_;
  RowValues<double> opacity_;
  bool hasOther_;
};

}  // namespace ostrel::charts
