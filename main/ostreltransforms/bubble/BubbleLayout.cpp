#include "ostreltransforms/bubble/BubbleLayout.h"

#include <algorithm>
#include <cmath>

#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/bubble/CirclePacking.h"
#include "ostreltransforms/map/ColumnParameter.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;

double FetchScale(Value const& scale, wchar_t const* name) {
  return FetchStoreValue<double>(scale->AsNamedValues().Get(OStringCore(name)));
}

// Special rows stay special.
template <class Operation>
Value Transform(Value const& column, Operation const& operation) {
  auto const& rows = column->AsTypedArray<double>();
  auto output = factory::MakeColumnBuilder<double>(StoreTypeInfo::Real64, rows.GetCount());
  std::span<double const> const values = rows.GetValues();
  std::transform(values.begin(), values.end(), output.GetValues().begin(), operation);
  if (rows.HasSpecials()) {
    for (int const row : rows.GetSpecialRows()) output.SetSpecial(row, rows.GetSpecialKind(row));
  }
  return output.Finish();
}

void RequireLength(Value const& column, Value const& sizes, OStringCore const& name) {
  detail::RequireColumnOf(StoreType::Real64, column);
  if (column->AsColumn().GetCount() != sizes->AsColumn().GetCount()) {
    throw OrtRuntimeException(OrtError_LengthsDiffer, name);
  }
}

}  // namespace

Value LayoutBubbles(Value const& sizes) {
  detail::RequireColumnOf(StoreType::Real64, sizes);
  std::span<double const> const values = sizes->AsTypedArray<double>().GetValues();
  int const count = static_cast<int>(values.size());
  auto x = factory::MakeColumnBuilder<double>(StoreTypeInfo::Real64, count);
  auto y = factory::MakeColumnBuilder<double>(StoreTypeInfo::Real64, count);
  CirclePacking::Pack(values, x.GetValues(), y.GetValues());
  factory::NamedValues centres;
  centres.emplace(L"x", x.Finish());
  centres.emplace(L"y", y.Finish());
  return factory::MakeKeyMap(std::move(centres));
}

Value PixelScaleBubbles(Value const& layout, Value const& sizes, Value const& scale) {
  detail::RequireColumnOf(StoreType::Real64, sizes);
  double const xScale = FetchScale(scale, L"xScale");
  double const yScale = FetchScale(scale, L"yScale");
  double const sizeScale = 2 * std::min(std::abs(xScale), std::abs(yScale));
  factory::NamedValues pixels;
  for (auto const& [name, factor] : {std::pair(OStringCore(L"x"), xScale), {OStringCore(L"y"), yScale}}) {
    Value const column = layout->AsNamedValues().Get(name);
    RequireLength(column, sizes, name);
    pixels.emplace(name, Transform(column, [factor = factor](double centre) { return centre * factor; }));
  }
  pixels.emplace(L"size", Transform(sizes, [sizeScale](double size) {
                   return CirclePacking::RadiusOf(size) * sizeScale;
                 }));
  return factory::MakeKeyMap(std::move(pixels));
}

}  // namespace OstrelTransforms
