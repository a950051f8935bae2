#include "charts/document/JsonObjectReader.h"
#include "charts/document/Readers.h"

namespace ostrel::charts {

namespace {

constexpr NumberRange kTickCount{.minimum = 0, .maximum = 10'000, .isAboveMinimum = true};
constexpr NumberRange kDegrees{.minimum = -360, .maximum = 360};

constexpr NamedValue<char const*> kAxisSides[] = {
    {"left", "left"}, {"right", "right"}, {"top", "top"}, {"bottom", "bottom"}};

}  // namespace

AxisSpec ReadAxis(JsonValue const& value) {
  AxisSpec axis;
  axis.isHidden = value.IsNull();
  if (axis.isHidden) return axis;
  JsonObjectReader(value)
      .Title("title", axis.title)
      .Text("format", axis.format)
      .Number("labelAngle", axis.labelAngle, kDegrees)
      .Number("tickCount", axis.tickCount, kTickCount)
      .Literals("values", axis.values)
      .Bool("grid", axis.grid)
      .OneOf("orient", axis.orient, std::span<NamedValue<char const*> const>(kAxisSides))
      .Refuse("labelLimit", "is not supported; shorten the labels or set labelAngle")
      .Refuse("labelExpr", "is not supported; compute the labels in the data or use format")
      .Refuse("formatType", "is not supported; the field's type tells it")
      .Refuse("tickMinStep", "is not supported; use tickCount or values")
      .Read();
  return axis;
}

LegendSpec ReadLegend(JsonValue const& value) {
  LegendSpec legend;
  legend.isHidden = value.IsNull();
  if (legend.isHidden) return legend;
  JsonObjectReader(value)
      .Title("title", legend.title)
      .Text("format", legend.format)
      .Literals("values", legend.values)
      .Number("tickCount", legend.tickCount, kTickCount)
      .Refuse("orient", "is not supported; legends stand right of the chart")
      .Refuse("type", "is not supported; the field's type tells it")
      .Refuse("labelExpr", "is not supported; compute the labels in the data or use format")
      .Refuse("formatType", "is not supported; the field's type tells it")
      .Read();
  return legend;
}

}  // namespace ostrel::charts
