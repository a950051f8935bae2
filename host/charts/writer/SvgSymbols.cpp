#include <array>
#include <cmath>
#include <string>

#include "charts/writer/RowPaint.h"
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
        shape_(marks.shape, count_),
        paint_(marks.paint, marks.color, marks.opacity, count_) {
    if (marks.tooltips != nullptr) tooltips_ = ReadColumn<RIndirectString>(marks.tooltips, count_);
  }

  void Write() {
    if (count_ == 0) return;
    out_ << "<g";
    paint_.WriteShared(out_);
    // The inside of a hollow symbol belongs to it where a pointer asks for its tooltip.
    if (!marks_.paint.isFilled && !tooltips_.empty()) out_ << " pointer-events=\"all\"";
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
  void WriteRow(std::size_t row) {
    bool const isPlaced = IsFinite(Point{x_[row], y_[row]});
    if (!isPlaced || !paint_.IsSeen(row) || !std::isfinite(size_[row]) || size_[row] <= 0) return;
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
    paint_.WriteRow(row, out_);
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
  RowValues<SymbolShape, int> shape_;
  RowPaint paint_;
  std::span<RIndirectString const> tooltips_;
  OutlineCache outlines_;
};

}  // namespace

void WriteSymbols(SymbolMarks const& marks, SvgStream& out) { SymbolWriter(marks, out).Write(); }

}  // namespace ostrel::charts
