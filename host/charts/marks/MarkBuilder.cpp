#include "charts/marks/MarkBuilder.h"

#include <fmt/format.h>

#include <cmath>
#include <limits>

#include "charts/document/Readers.h"
#include "charts/graph/DocumentChecks.h"
#include "charts/scales/ScaledField.h"
#include "services/ValueConverter.h"

namespace ostrel::charts {
namespace {

using ort::core::OrtColor;

OrtColor const kDefaultColor(static_cast<int>(0xFF4C78A8));

struct PointReader {
  ort::core::ITypedArray<double> const& x;
  ort::core::ITypedArray<double> const& y;

  Point Read(int row) const {
    if (x.IsSpecial(row) || y.IsSpecial(row)) {
      double const nan = std::numeric_limits<double>::quiet_NaN();
      return {nan, nan};
    }
    return {x.GetElement(row), y.GetElement(row)};
  }
};

template <class T>
Varying<T> MakeVarying(Results const& results, NodeId node, T constant) {
  return {constant, node < 0 ? nullptr : results[node]};
}

SymbolMarks BuildSymbols(SymbolPlan const& plan, Results const& results, MarkLook const& look) {
  SymbolMarks marks;
  marks.x = results[plan.x];
  marks.y = results[plan.y];
  marks.color = MakeVarying(results, plan.color, look.color);
  marks.size = MakeVarying(results, plan.size, look.size);
  marks.opacity = MakeVarying(results, plan.opacity, look.opacity);
  marks.shape = MakeVarying(results, plan.shape, look.shape);
  marks.isFilled = look.isFilled;
  marks.strokeWidth = look.strokeWidth;
  return marks;
}

// Symbols on a line are filled and as opaque as the line.
MarkLook PointsOfLine(MarkLook look) {
  look.isFilled = true;
  look.size = 30;
  return look;
}

std::vector<LineMark> BuildLines(ChartDocument const& document, LinePlan const& plan, Results const& results,
                                 MarkLook const& look) {
  PointReader const points{results[plan.x]->AsTypedArray<double>(), results[plan.y]->AsTypedArray<double>()};
  auto const* groups = plan.group < 0 ? nullptr : &results[plan.group]->AsTypedArray<int>();
  auto const* colors = plan.color < 0 ? nullptr : &results[plan.color]->AsTypedArray<OrtColor>();
  std::vector<LineMark> lines;
  for (int row = 0; row < points.x.GetCount(); ++row) {
    bool const isNew =
        row == 0 || (groups != nullptr && groups->GetElement(row) != groups->GetElement(row - 1));
    if (isNew) {
      LineMark line;
      line.interpolation = document.mark.interpolation;
      line.stroke = {colors != nullptr ? colors->GetElement(row) : look.color, look.strokeWidth,
                     look.strokeDash};
      line.opacity = look.opacity;
      lines.push_back(std::move(line));
    }
    lines.back().points.push_back(points.Read(row));
  }
  return lines;
}

bool HasGivenDomain(std::optional<PositionScale> const& scale) {
  if (!scale) return false;
  ScaleSpec const& spec = scale->encoding->scale;
  return !spec.domain.empty() || spec.domainMin || spec.domainMax;
}

std::string ColorText(ChartDocument const& document, bool isFilled) {
  MarkSpec const& mark = document.mark;
  std::string const& specific = isFilled ? mark.fill : mark.stroke;
  return specific.empty() ? mark.color : specific;
}

}  // namespace

OrtColor ReadColor(ChartDocument const& document, std::string const& jsonPath, std::string const& text) {
  if (auto const color = services::ParseColor(OStringCore::fromUtf8(text).view())) return *color;
  ThrowDocumentError(document, jsonPath, fmt::format("\"{}\" is no colour", text));
}

namespace {

// A channel with a value instead of a field.
void ApplyConstant(ChartDocument const& document, Encoding const& encoding, MarkLook& look) {
  if (auto const* text = std::get_if<std::string>(&encoding.value)) {
    if (encoding.channel == Channel::Color) look.color = ReadColor(document, encoding.path + ".value", *text);
    for (auto const& word : SymbolShapeNames()) {
      if (encoding.channel == Channel::Shape && *text == word.name) look.shape = word.value;
    }
  }
  if (auto const* number = std::get_if<double>(&encoding.value)) {
    if (encoding.channel == Channel::Size) look.size = *number;
    if (encoding.channel == Channel::Opacity) look.opacity = *number;
  }
}

}  // namespace

MarkLook ResolveMarkLook(ChartDocument const& document) {
  MarkSpec const& mark = document.mark;
  bool const isLine = mark.kind == MarkKind::Line;
  MarkLook look;
  look.color = kDefaultColor;
  look.isFilled = IsFilled(mark);
  if (auto const text = ColorText(document, look.isFilled); !text.empty()) {
    look.color = ReadColor(document, mark.path, text);
  }
  look.opacity = mark.opacity.value_or(isLine ? 1 : 0.7);
  look.size = mark.size.value_or(look.size);
  look.strokeWidth = mark.strokeWidth.value_or(look.strokeWidth);
  look.strokeDash = mark.strokeDash;
  look.shape = mark.shape.value_or(mark.kind == MarkKind::Square ? SymbolShape::Square : SymbolShape::Circle);

  for (Encoding const& encoding : document.encodings) ApplyConstant(document, encoding, look);
  return look;
}

Group BuildMarks(ChartDocument const& document, ChartPlan const& plan, Results const& results) {
  MarkLook const look = ResolveMarkLook(document);
  Group group;
  group.role = "marks";
  if (document.mark.clip.value_or(HasGivenDomain(plan.x) || HasGivenDomain(plan.y))) {
    // What stands on an edge is not cut in halves where the document does not ask for it.
    double const reach = ((plan.lines ? 0 : std::sqrt(look.size)) + look.strokeWidth) / 2;
    double const margin = document.mark.clip ? 0 : reach;
    group.clip = Rect{-margin, -margin, plan.width + 2 * margin, plan.height + 2 * margin};
  }
  if (plan.lines) {
    for (LineMark& line : BuildLines(document, *plan.lines, results, look))
      group.nodes.emplace_back(std::move(line));
  }
  if (plan.symbols) {
    group.nodes.emplace_back(BuildSymbols(*plan.symbols, results, plan.lines ? PointsOfLine(look) : look));
  }
  return group;
}

}  // namespace ostrel::charts
