#include <fmt/format.h>

#include "charts/document/JsonObjectReader.h"
#include "charts/document/Readers.h"

namespace ostrel::charts {

namespace {

constexpr NamedValue<MarkKind> kMarkNames[] = {{"point", MarkKind::Point},
                                               {"circle", MarkKind::Circle},
                                               {"square", MarkKind::Square},
                                               {"line", MarkKind::Line}};

constexpr NamedValue<SymbolShape> kShapeNames[] = {{"circle", SymbolShape::Circle},
                                                   {"square", SymbolShape::Square},
                                                   {"cross", SymbolShape::Cross},
                                                   {"diamond", SymbolShape::Diamond},
                                                   {"triangle-up", SymbolShape::TriangleUp},
                                                   {"triangle-down", SymbolShape::TriangleDown},
                                                   {"triangle-right", SymbolShape::TriangleRight},
                                                   {"triangle-left", SymbolShape::TriangleLeft}};

constexpr NamedValue<LineInterpolation> kInterpolationNames[] = {
    {"linear", LineInterpolation::Linear},
    {"step-before", LineInterpolation::StepBefore},
    {"step-after", LineInterpolation::StepAfter},
    {"step", LineInterpolation::Step},
    {"monotone", LineInterpolation::Monotone}};

void ReadDash(JsonValue const& value, std::vector<double>& dash) {
  for (auto const& length : value.ReadArray()) dash.push_back(length.ReadNumber(kNotNegative));
}

/// Properties that a mark of the kind would pass over.
void CheckProperties(JsonValue const& value, MarkKind kind) {
  auto const refuse = [&value](char const* property, char const* cause) {
    if (value.Has(property)) value.FailAt(property, cause);
  };
  if (kind == MarkKind::Line) {
    refuse("size", "a line has no size; use strokeWidth");
    refuse("fill", "a line is not filled; use stroke");
    refuse("filled", "a line is not filled; leave it out");
  } else {
    refuse("interpolate", "is for the mark line only");
    refuse("point", "is for the mark line only");
  }
  if (kind != MarkKind::Point) refuse("shape", "is for the mark point only");
}

}  // namespace

std::span<NamedValue<SymbolShape> const> SymbolShapeNames() { return kShapeNames; }

MarkSpec ReadMark(JsonValue const& value) {
  MarkSpec mark;
  mark.path = value.GetPath();
  std::span<NamedValue<MarkKind> const> const kinds(kMarkNames);
  if (!value.IsObject()) {
    mark.kind = value.ReadOneOf(kinds);
    return mark;
  }
  JsonObjectReader(value)
      .OneOf("type", mark.kind, kinds)
      .Text("color", mark.color)
      .Text("fill", mark.fill)
      .Text("stroke", mark.stroke)
      .Number("size", mark.size, kNotNegative)
      .Number("opacity", mark.opacity, kFraction)
      .Number("strokeWidth", mark.strokeWidth, kNotNegative)
      .On("strokeDash", [&mark](JsonValue const& dash) { ReadDash(dash, mark.strokeDash); })
      .Bool("filled", mark.filled)
      .OneOf("shape", mark.shape, SymbolShapeNames())
      .OneOf("interpolate", mark.interpolation,
             std::span<NamedValue<LineInterpolation> const>(kInterpolationNames))
      .On("point", [&mark](JsonValue const& point) { mark.hasPoints = point.ReadBool(); })
      .Bool("clip", mark.clip)
      .RefuseUnlessOff("tooltip", "tooltips are not supported; leave it out")
      .Refuse("fillOpacity", "is not supported; use opacity")
      .Refuse("strokeOpacity", "is not supported; use opacity")
      .Refuse("style", "named styles are not supported; set the mark's own properties")
      .Read();
  if (!value.Has("type")) value.FailAt("type", "is missing; use one of point, circle, square, line");
  CheckProperties(value, mark.kind);
  return mark;
}

void CheckMark(JsonValue const& encodings, MarkSpec const& mark) {
  if (mark.kind != MarkKind::Point && encodings.Has("shape")) {
    encodings.FailAt("shape", "only the mark point has shapes; use \"point\" or leave it out");
  }
  if (mark.kind == MarkKind::Line && encodings.Has("size")) {
    encodings.FailAt("size", "a line has no size; use the mark's strokeWidth");
  }
}

}  // namespace ostrel::charts
