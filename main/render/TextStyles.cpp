#include "render/TextStyles.h"

#include <utility>

#include "ostreltransforms/VisualKey.h"

namespace runtime {

using namespace ort::core;

namespace {

// A row beyond the range of int becomes negative, which no column has.
int ToRow(std::uint32_t style) { return static_cast<int>(style); }

template <class T>
ITypedArray<T> const& FindColumn(std::shared_ptr<StoreValue> const& table, OStringCore const& name) {
  if (!table) throw OrtRuntimeException(OrtError_WrongValueKind, name);
  // The table keeps the column alive.
  return table->AsNamedValues().Get(name)->AsTypedArray<T>();
}

}  // namespace

TextStyles::TextStyles(Value table)
    : table_(std::move(table)), fonts_(&FindColumn<Value>(table_, VisualKey::TextFont)) {}

template <class T>
typename ITypedArray<T>::Result TextStyles::Read(Column<T>& column, OStringCore const& name,
                                                 std::uint32_t style) const {
  if (column == nullptr) column = &FindColumn<T>(table_, name);
  return column->GetElement(ToRow(style));
}

TextStyles::Value const& TextStyles::GetFont(std::uint32_t style) const {
  Value const& font = fonts_->GetElement(ToRow(style));
  if (!font) throw OrtRuntimeException(OrtError_WrongValueKind, VisualKey::TextFont);
  return font;
}

double TextStyles::GetAscent(std::uint32_t style) const { return Read(ascents_, VisualKey::Ascent, style); }
double TextStyles::GetFontHeight(std::uint32_t style) const {
  return Read(fontHeights_, VisualKey::FontHeight, style);
}
double TextStyles::GetLeading(std::uint32_t style) const {
  return Read(leadings_, VisualKey::Leading, style);
}

std::uint32_t TextStyles::GetOrientation(std::uint32_t style) const {
  switch (Read(orientations_, VisualKey::TextOrientation, style)) {
    case 2:
      return 2;
    case 3:
      return 1;
    default:
      return 0;
  }
}
std::uint32_t TextStyles::GetHorizontalAlignment(std::uint32_t style) const {
  return static_cast<std::uint32_t>(Read(hAligns_, VisualKey::HAlign, style));
}
std::uint32_t TextStyles::GetVerticalAlignment(std::uint32_t style) const {
  return static_cast<std::uint32_t>(Read(vAligns_, VisualKey::VAlign, style));
}

}  // namespace runtime
