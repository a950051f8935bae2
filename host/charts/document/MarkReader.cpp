#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>

#include "charts/document/JsonObjectReader.h"
#include "charts/document/Readers.h"
#include "charts/marks/MarkTable.h"

namespace ostrel::charts {

namespace {

// In the order in which values without a range of their own get them.
constexpr NamedValue<SymbolShape> kShapeNames[] = {{"circle", SymbolShape::Circle},
                                                   {"square", SymbolShape::Square},
                                                   {"triangle-up", SymbolShape::TriangleUp},
                                                   {"cross", SymbolShape::Cross},
                                                   {"diamond", SymbolShape::Diamond},
                                                   {"triangle-right", SymbolShape::TriangleRight},
                                                   {"triangle-down", SymbolShape::TriangleDown},
                                                   {"triangle-left", SymbolShape::TriangleLeft}};

constexpr NamedValue<LineInterpolation> kInterpolationNames[] = {
    {"linear", LineInterpolation::Linear},
    {"step-before", LineInterpolation::StepBefore},
    {"step-after", LineInterpolation::StepAfter},
    {"step", LineInterpolation::Step},
    {"monotone", LineInterpolation::Monotone}};

constexpr NamedValue<TooltipContent> kTooltipContents[] = {{"encoding", TooltipContent::Encoding},
                                                           {"data", TooltipContent::Data}};
constexpr NamedValue<bool> kOrientations[] = {{"horizontal", true}, {"vertical", false}};
constexpr NamedValue<char const*> kAlignments[] = {
    {"left", "left"}, {"center", "center"}, {"right", "right"}};
constexpr NamedValue<char const*> kBaselines[] = {
    {"top", "top"}, {"middle", "middle"}, {"bottom", "bottom"}, {"alphabetic", "alphabetic"}};
constexpr NamedValue<char const*> kFits[] = {{"dots", "dots"},
                                             {"overflow", "overflow"},
                                             {"hide", "hide"},
                                             {"truncate", "truncate"},
                                             {"pounds", "pounds"}};
constexpr NamedValue<bool> kDirections[] = {{"ltr", false}, {"rtl", true}};

void ReadWeight(JsonValue const& value, MarkSpec& mark) {
  constexpr double kLeastBold = 600;
  if (value.Get().is_number()) {
    mark.isBold = value.ReadNumber(kPositive) >= kLeastBold;
    return;
  }
  constexpr NamedValue<bool> kWeights[] = {{"normal", false}, {"bold", true}};
  mark.isBold = value.ReadOneOf(std::span<NamedValue<bool> const>(kWeights));
}

void ReadDash(JsonValue const& value, std::vector<double>& dash) {
  for (auto const& length : value.ReadArray()) dash.push_back(length.ReadNumber(kNotNegative));
}

void ReadOrientations(JsonValue const& value, std::vector<double>& angles) {
  for (auto const& angle : value.ReadArray()) {
    angles.push_back(angle.ReadNumber());
    if (std::fmod(angles.back(), 90) != 0) angle.Fail("expects a multiple of 90 degrees");
  }
  if (angles.empty()) value.Fail("has no values; leave it out");
}

/// "the mark line", "the marks point, circle and square": those of which something is true.
template <class Predicate>
std::string ListMarks(Predicate const& isMeant) {
  std::vector<char const*> names;
  for (MarkDefinition const& mark : GetMarkTable()) {
    if (isMeant(mark)) names.push_back(mark.name);
  }
  std::string text = names.size() == 1 ? "the mark " : "the marks ";
  for (std::size_t i = 0; i < names.size(); ++i) {
    text += i == 0 ? "" : i + 1 == names.size() ? " and " : ", ";
    text += names[i];
  }
  return text;
}

bool HasProperty(MarkDefinition const& mark, std::string_view name) {
  return std::ranges::find(mark.properties, name) != mark.properties.end();
}

bool HasChannel(MarkDefinition const& mark, Channel channel) {
  return std::ranges::find(mark.channels, channel) != mark.channels.end();
}

void ReadTooltip(JsonValue const& value, MarkSpec& mark) {
  if (value.IsNull()) return;
  if (value.Get().is_string()) {
    mark.tooltipText = value.ReadText();
  } else if (value.IsObject()) {
    JsonObjectReader(value)
        .OneOf("content", mark.tooltip, std::span<NamedValue<TooltipContent> const>(kTooltipContents))
        .Refuse("expr", "is not supported; calculate a field and give it to the channel tooltip")
        .Read();
    if (mark.tooltip == TooltipContent::None) value.Fail("expects content, \"encoding\" or \"data\"");
  } else if (value.Get().is_boolean()) {
    mark.tooltip = value.ReadBool() ? TooltipContent::Encoding : TooltipContent::None;
  } else {
    value.Fail("expects true, false, a text or {\"content\": ...}, not " + value.Describe());
  }
}

/// Refuses what some marks have and this one would pass over.
void CheckProperties(JsonValue const& value, MarkDefinition const& mark) {
  for (auto const& [name, property] : value.ReadObject()) {
    auto const hasIt = [&key = *name](MarkDefinition const& other) { return HasProperty(other, key); };
    if (!hasIt(mark) && std::ranges::any_of(GetMarkTable(), hasIt))
      property.Fail(fmt::format("is for {} only; leave it out", ListMarks(hasIt)));
  }
}

void ReadType(JsonValue const& value, MarkSpec& mark) {
  std::vector<NamedValue<char const*>> names;
  for (MarkDefinition const& definition : GetMarkTable()) names.push_back({definition.name, definition.name});
  mark.type = value.ReadOneOf(std::span<NamedValue<char const*> const>(names));
}

}  // namespace

std::span<NamedValue<SymbolShape> const> SymbolShapeNames() { return kShapeNames; }

MarkSpec ReadMark(JsonValue const& value) {
  MarkSpec mark;
  mark.path = value.GetPath();
  if (!value.IsObject()) {
    ReadType(value, mark);
    return mark;
  }
  JsonObjectReader(value)
      .On("type", [&mark](JsonValue const& type) { ReadType(type, mark); })
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
      .On("orientations", [&mark](JsonValue const& angles) { ReadOrientations(angles, mark.orientations); })
      .On("point", [&mark](JsonValue const& point) { mark.hasPoints = point.ReadBool(); })
      .Bool("clip", mark.clip)
      .OneOf("orient", mark.isHorizontal, std::span<NamedValue<bool> const>(kOrientations))
      .On("line", [&mark](JsonValue const& line) { mark.hasLine = line.ReadBool(); })
      .Number("dx", mark.dx)
      .Number("dy", mark.dy)
      .Number("angle", mark.angle)
      .OneOf("align", mark.align, std::span<NamedValue<char const*> const>(kAlignments))
      .OneOf("baseline", mark.baseline, std::span<NamedValue<char const*> const>(kBaselines))
      .Number("fontSize", mark.fontSize, kPositive)
      .On("fontWeight", [&mark](JsonValue const& weight) { ReadWeight(weight, mark); })
      .Number("limit", mark.limit, kNotNegative)
      .OneOf("fit", mark.fit, std::span<NamedValue<char const*> const>(kFits))
      .OneOf("dir", mark.isRightToLeft, std::span<NamedValue<bool> const>(kDirections))
      .On("text", [&mark](JsonValue const& text) { mark.text = text.ReadLines(); })
      .On("tooltip", [&mark](JsonValue const& tooltip) { ReadTooltip(tooltip, mark); })
      .Refuse("fillOpacity", "is not supported; use opacity")
      .Refuse("strokeOpacity", "is not supported; use opacity")
      .Refuse("url", "is not supported; use the channel url")
      .Refuse("style", "named styles are not supported; set the mark's own properties")
      .Read();
  if (!value.Has("type")) value.FailAt("type", "is missing; use one of " + ListMarkNames());
  CheckProperties(value, GetDefinition(mark));
  return mark;
}

std::string ListMarkNames() {
  std::vector<char const*> names;
  for (MarkDefinition const& mark : GetMarkTable()) names.push_back(mark.name);
  return fmt::format("{}", fmt::join(names, ", "));
}

void CheckChannels(std::string const& fileName, LayerSpec const& layer) {
  auto const check = [&](Channel channel, std::string const& path) {
    auto const hasIt = [&](MarkDefinition const& mark) { return HasChannel(mark, channel); };
    if (IsFacet(channel) || hasIt(GetDefinition(layer.mark))) return;
    throw DocumentError(
        fmt::format("{}: {}: is for {} only; leave it out", fileName, path, ListMarks(hasIt)));
  };
  for (Encoding const& encoding : layer.encodings) check(encoding.channel, encoding.path);
  if (layer.mark.tooltip != TooltipContent::None) check(Channel::Tooltip, layer.mark.path + ".tooltip");
}

}  // namespace ostrel::charts
