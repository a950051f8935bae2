#include <array>
#include <cmath>
#include <string>

#include "charts/writer/RowValues.h"
#include "charts/writer/SvgPaint.h"
#include "charts/writer/SvgShapes.h"
#include "charts/writer/SymbolOutline.h"
#include "ostrelsys/Utf.h"

namespace ostrel::charts {

namespace {

using namespace ort::core;

constexpr int kShapeCount = static_cast<int>(SymbolShape::TriangleLeft) + 1;

/// The outline of each shape in the size it was last asked for.
class OutlineCache {
 public:
  SymbolOutline const& Get(SymbolShape shape, double size) {
    auto& entry = entries_[static_cast<std::size_t>(shape)];
    if (entry.size != size) entry = {size, MakeSymbolOutline(shape, size)};
    return entry.outline;
  }

 private:
  struct Entry {
    double size = 0;
    SymbolOutline outline;
  };
  std::array<Entry, kShapeCount> entries_;
};

class SymbolWriter {
 public:
  SymbolWriter(SymbolMarks const& marks, SvgStream& out)
      : out_(out),
        marks_(marks),
        count_(marks.x == nullptr ? 0 : static_cast<std::size_t>(marks.x->AsColumn().GetCount())),
        x_(ReadColumn<double>(marks.x, count_)),
        y_(ReadColumn<double>(marks.y, count_)),
        size_(marks.size, count_),
        color_(marks.color, count_),
        opacity_(marks.opacity, count_),
        shape_(marks.shape, count_),
        paint_(marks.isFilled ? "fill" : "stroke"),
        paintOpacity_(marks.isFilled ? "fill-opacity" : "stroke-opacity") {
    if (marks.tooltips != nullptr) tooltips_ = ReadColumn<RIndirectString>(marks.tooltips, count_);
  }

  void Write() {
    if (count_ == 0) return;
    out_ << "<g";
    WriteSharedAttributes();
    out_ << ">\n";
    ColumnView const& x = marks_.x->AsColumn();
    ColumnView const& y = marks_.y->AsColumn();
    bool const hasSpecials = x.HasSpecials() || y.HasSpecials();
    for (std::size_t row = 0; row < count_; ++row) {
      if (hasSpecials && (x.IsSpecial(static_cast<int>(row)) || y.IsSpecial(static_cast<int>(row)))) continue;
      WriteRow(row);
    }
    out_ << "</g>\n";
  }

 private:
  // Opacity is an attribute of the paint: that of a group would melt its overlapping symbols into one.
  void WriteSharedAttributes() {
    if (!marks_.isFilled) {
      out_ << " fill=\"none\"";
      if (marks_.strokeWidth != 1) out_ << " stroke-width=\"" << marks_.strokeWidth << "\"";
      // The inside of a hollow symbol belongs to it where a pointer asks for its tooltip.
      if (!tooltips_.empty()) out_ << " pointer-events=\"all\"";
    }
    if (!color_.IsConstant()) return;
    out_ << " " << paint_ << "=\"" << color_[0] << "\"";
    if (opacity_.IsConstant()) WriteOpacity(paintOpacity_, GetPaintOpacity(color_[0], opacity_[0]), out_);
  }

  void WriteRow(std::size_t row) {
    double const opacity = GetPaintOpacity(color_[row], opacity_[row]);
    bool const isPlaced = IsFinite(Point{x_[row], y_[row]});
    if (!isPlaced || opacity == 0 || !std::isfinite(size_[row]) || size_[row] <= 0) return;
    int const shape = static_cast<int>(shape_[row]);
    if (shape < 0 || shape >= kShapeCount) throw OrtRuntimeException(OrtError_WrongValueKind);
    SymbolOutline const& outline = outlines_.Get(shape_[row], size_[row]);
    out_ << outline.prefix << x_[row] + outline.dx;
    if (outline.separator == " ") {
      out_ << NextNumber{y_[row] + outline.dy};
    } else {
      out_ << outline.separator << y_[row] + outline.dy;
    }
    out_ << outline.rest;
    if (!color_.IsConstant()) out_ << " " << paint_ << "=\"" << color_[row] << "\"";
    if (!color_.IsConstant() || !opacity_.IsConstant()) WriteOpacity(paintOpacity_, opacity, out_);
    if (tooltips_.empty() || tooltips_[row].IsEmpty()) {
      out_ << "/>\n";
    } else {
      out_ << "><title>" << Escaped{Utf::Utf16ToUtf8(tooltips_[row].Get().view())} << "</title></"
           << outline.tag << ">\n";
    }
  }

  SvgStream& out_;
  SymbolMarks const& marks_;
  std::size_t count_;
  std::span<double const> x_;
  std::span<double const> y_;
  RowValues<double> size_;
  RowValues<OrtColor> color_;
  RowValues<double> opacity_;
  RowValues<SymbolShape, int> shape_;
  std::span<RIndirectString const> tooltips_;
  std::string_view paint_;
  std::string_view paintOpacity_;
  OutlineCache outlines_;
};

}  // namespace

void WriteSymbols(SymbolMarks const& marks, SvgStream& out) { SymbolWriter(marks, out).Write(); }

}  // namespace ostrel::charts
