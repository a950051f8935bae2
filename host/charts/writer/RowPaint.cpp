#include "charts/writer/RowPaint.h"

namespace ostrel::charts {

void RowPaint::WriteShared(SvgStream& out) const {
  std::string_view const other = paint_.isFilled ? " stroke=\"" : " fill=\"";
  auto const writeOther = [&] {
    out << other << paint_.other << "\"";
    if (opacity_.IsConstant()) WriteOpacity(NameOtherOpacity(), GetOtherOpacity(0), out);
  };
  if (!paint_.isFilled) {
    if (hasOther_) {
      writeOther();
    } else {
      out << " fill=\"none\"";
    }
    WriteStrokeShape({{}, paint_.strokeWidth, paint_.strokeDash}, out);
  }
  if (color_.IsConstant()) {
    out << (paint_.isFilled ? " fill=\"" : " stroke=\"") << color_[0] << "\"";
    if (opacity_.IsConstant()) WriteOpacity(NameOpacity(), GetOpacity(0), out);
  }
  if (!paint_.isFilled || !hasOther_) return;
  writeOther();
  WriteStrokeShape({{}, paint_.strokeWidth, paint_.strokeDash}, out);
}

void RowPaint::WriteRow(std::size_t row, SvgStream& out) const {
  if (!color_.IsConstant()) out << (paint_.isFilled ? " fill=\"" : " stroke=\"") << color_[row] << "\"";
  if (!color_.IsConstant() || !opacity_.IsConstant()) WriteOpacity(NameOpacity(), GetOpacity(row), out);
  if (hasOther_ && !opacity_.IsConstant()) WriteOpacity(NameOtherOpacity(), GetOtherOpacity(row), out);
}

}  // namespace ostrel::charts
