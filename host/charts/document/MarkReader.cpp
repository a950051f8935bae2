#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <iterator>

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

void ReadBreadth(JsonValue const& value, BreadthSpec& breadth) {
  if (!value.IsObject()) {
    breadth.pixels = value.ReadNumber(kNotNegative);
    return;
  }
  JsonObjectReader(value).Number("band", breadth.band, kFraction).Read();
  if (!breadth.band) value.FailAt("band", "is missing; give a share of the band, from 0 to 1");
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

void AddProperties(JsonObjectReader& reader, MarkSpec& mark) {
  reader.Text("color", mark.color)
      .Text("fill", mark.fill)
      .Text("stroke", mark.stroke)
      .Number("size", mark.size, kNotNegative)
      .Number("opacity", mark.opacity, kFraction)
      .Number("fillOpacity", mark.fillOpacity, kFraction)
      .Number("strokeOpacity", mark.strokeOpacity, kFraction)
      .Number("strokeWidth", mark.strokeWidth, kNotNegative)
      .On("strokeDash", [&mark](JsonValue const& dash) { mark.strokeDash = ReadDashes(dash); })
      .Bool("filled", mark.filled)
      .OneOf("shape", mark.shape, SymbolShapeNames())
      .OneOf("interpolate", mark.interpolation,
             std::span<NamedValue<LineInterpolation> const>(kInterpolationNames))
      .On("orientations", [&mark](JsonValue const& angles) { ReadOrientations(angles, mark.orientations); })
      .Bool("clip", mark.clip)
      .OneOf("orient", mark.isHorizontal, std::span<NamedValue<bool> const>(kOrientations))
      .On("width", [&mark](JsonValue const& width) { ReadBreadth(width, mark.width); })
      .On("height", [&mark](JsonValue const& height) { ReadBreadth(height, mark.height); })
      .Number("thickness", mark.thickness, kNotNegative)
      .Number("bandSize", mark.bandSize, kNotNegative)
      .Number("cornerRadius", mark.cornerRadius, kNotNegative)
      .Number("cornerRadiusTopLeft", mark.cornerRadiusTopLeft, kNotNegative)
      .Number("cornerRadiusTopRight", mark.cornerRadiusTopRight, kNotNegative)
      .Number("cornerRadiusBottomRight", mark.cornerRadiusBottomRight, kNotNegative)
      .Number("cornerRadiusBottomLeft", mark.cornerRadiusBottomLeft, kNotNegative)
      .Number("cornerRadiusEnd", mark.cornerRadiusEnd, kNotNegative)
      .Number("dx", mark.dx)
      .Number("dy", mark.dy)
      .Number("angle", mark.angle)
      .OneOf("align", mark.align, std::span<NamedValue<char const*> const>(kAlignments))
      .OneOf("baseline", mark.baseline, std::span<NamedValue<char const*> const>(kBaselines))
      .Number("fontSize", mark.fontSize, kPositive)
      .On("fontWeight", [&mark](JsonValue const& weight) { mark.isBold = ReadFontWeight(weight); })
      .Number("limit", mark.limit, kNotNegative)
      .OneOf("fit", mark.fit, std::span<NamedValue<char const*> const>(kFits))
      .OneOf("dir", mark.isRightToLeft, std::span<NamedValue<bool> const>(kDirections))
      .On("text", [&mark](JsonValue const& text) { mark.text = text.ReadLines(); })
      .On("tooltip", [&mark](JsonValue const& tooltip) { ReadTooltip(tooltip, mark); })
      .Refuse("url", "is not supported; use the channel url")
      .Refuse("style", "named styles are not supported; set the mark's own properties")
      .Refuse("font", "is not supported; all texts of a chart have one font")
      .Refuse("fontStyle", "is not supported; use fontWeight or color")
      .Refuse("tension", "is not supported; use another interpolate");
}

void AddNames(MarkDefinition const& mark, std::vector<std::string>& names) {
  names.insert(names.end(), {"color", "opacity"});
  names.insert(names.end(), mark.properties.begin(), mark.properties.end());
}

/// What is drawn over a line or an area by a mark of its own: true, or an object of that mark's properties.
std::shared_ptr<MarkSpec const> ReadOverlay(JsonValue const& value, MarkSpec mark, bool isTransparent) {
  mark.path = value.GetPath();
  if (isTransparent) {
    mark.opacity = 0;
  } else if (value.IsObject()) {
    JsonObjectReader reader(value);
    std::vector<std::string> names;
    AddNames(GetDefinition(mark), names);
    AddProperties(reader.List(std::move(names)), mark);
    reader.Read();
    CheckProperties(value, GetDefinition(mark));
  } else if (value.IsNull() || !value.ReadBool()) {
    return nullptr;
  }
  return std::make_shared<MarkSpec const>(std::move(mark));
}

void ReadPoint(JsonValue const& value, MarkSpec& mark) {
  MarkSpec point;
  point.type = "point";
  point.opacity = 1;
  point.filled = true;
  mark.point = ReadOverlay(value, std::move(point), value.Get() == "transparent");
}

void ReadLine(JsonValue const& value, MarkSpec& mark) {
  MarkSpec line;
  line.type = "line";
  mark.line = ReadOverlay(value, std::move(line), false);
}

void ReadType(JsonValue const& value, MarkSpec& mark) {
  std::vector<NamedValue<char const*>> names;
  for (MarkDefinition const& definition : GetMarkTable()) names.push_back({definition.name, definition.name});
  mark.type = value.ReadOneOf(std::span<NamedValue<char const*> const>(names));
}

/// What the mark that an object names may say.
std::vector<std::string> ListProperties(JsonValue const& value) {
  for (auto const& [name, property] : value.ReadObject()) {
    if (*name != "type") continue;
    MarkSpec mark;
    ReadType(property, mark);
    std::vector<std::string> names = {"type", "clip", "tooltip"};
    AddNames(GetDefinition(mark), names);
    return names;
  }
  return {};
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
  JsonObjectReader reader(value);
  reader.List(ListProperties(value))
      .On("type", [&mark](JsonValue const& type) { ReadType(type, mark); })
      .On("point", [&mark](JsonValue const& point) { ReadPoint(point, mark); })
      .On("line", [&mark](JsonValue const& line) { ReadLine(line, mark); });
  AddProperties(reader, mark);
  reader.Read();
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
