#include <array>
#include <cmath>

#include "charts/writer/RowPaint.h"
#include "charts/writer/SvgShapes.h"
#include "ostrelsys/Utf.h"

namespace ostrel::charts {

namespace {

using namespace ort::core;

class RectWriter {
 public:
  RectWriter(RectMarks const& marks, SvgStream& out)
      : out_(out),
        marks_(marks),
        count_(marks.x == nullptr ? 0 : static_cast<std::size_t>(marks.x->AsColumn().GetCount())),
        x_(ReadColumn<double>(marks.x, count_)),
        x2_(ReadColumn<double>(marks.x2, count_)),
        y_(ReadColumn<double>(marks.y, count_)),
        y2_(ReadColumn<double>(marks.y2, count_)),
        paint_(marks.paint, marks.color, marks.opacity, count_) {
    if (!marks.corners.empty() && marks.corners.size() != count_)
      throw OrtRuntimeException(OrtError_LengthsDiffer);
    if (marks.tooltips != nullptr) tooltips_ = ReadColumn<RIndirectString>(marks.tooltips, count_);
    for (auto const* side : {&marks.x, &marks.x2, &marks.y, &marks.y2})
      hasSpecials_ = hasSpecials_ || (*side)->AsColumn().HasSpecials();
  }

  void Write() {
    if (count_ == 0) return;
    out_ << "<g";
    paint_.WriteShared(out_);
    if (marks_.isSeamless) out_ << " shape-rendering=\"crispEdges\"";
    out_ << ">\n";
    for (std::size_t row = 0; row < count_; ++row) {
      if (!hasSpecials_ || !IsSpecial(static_cast<int>(row))) WriteRow(row);
    }
    out_ << "</g>\n";
  }

 private:
  bool IsSpecial(int row) const {
    auto const isSpecial = [row](auto const& side) { return side->AsColumn().IsSpecial(row); };
    return isSpecial(marks_.x) || isSpecial(marks_.x2) || isSpecial(marks_.y) || isSpecial(marks_.y2);
  }

  void WriteRow(std::size_t row) {
    Rect const rect{x_[row], y_[row], x2_[row] - x_[row], y2_[row] - y_[row]};
    bool const isSeen = IsFinite(rect) && rect.width != 0 && rect.height != 0 && paint_.IsSeen(row);
    if (!isSeen) return;
    std::string_view const tag = WriteOutline(row, rect);
    paint_.WriteRow(row, out_);
    if (tooltips_.empty() || tooltips_[row].IsEmpty()) {
      out_ << "/>\n";
    } else {
      out_ << "><title>" << Escaped{Utf::Utf16ToUtf8(tooltips_[row].Get().view())} << "</title></" << tag
           << ">\n";
    }
  }

  // Begins the element and gives its name: a path where corners are rounded.
  std::string_view WriteOutline(std::size_t row, Rect const& rect) {
    if (marks_.corners.empty() || marks_.corners[row] == CornerRadii{}) {
      out_ << "<rect";
      WriteRectGeometry(rect, out_);
      return "rect";
    }
    out_ << "<path d=\"";
    WriteRoundedRect(rect, marks_.corners[row], out_);
    out_ << "\"";
    return "path";
  }

  SvgStream& out_;
  RectMarks const& marks_;
  std::size_t count_;
  std::span<double const> x_;
  std::span<double const> x2_;
  std::span<double const> y_;
  std::span<double const> y2_;
  RowPaint paint_;
  std::span<RIndirectString const> tooltips_;
  bool hasSpecials_ = false;
};

}  // namespace

void WriteRects(RectMarks const& marks, SvgStream& out) { RectWriter(marks, out).Write(); }

}  // namespace ostrel::charts
