#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "charts/document/JsonObjectReader.h"
#include "charts/document/Readers.h"
#include "charts/document/TransformReaders.h"

namespace ostrel::charts {

namespace {

constexpr NamedValue<FieldType> kFieldTypes[] = {{"quantitative", FieldType::Quantitative},
                                                 {"temporal", FieldType::Temporal},
                                                 {"ordinal", FieldType::Ordinal},
                                                 {"nominal", FieldType::Nominal}};

constexpr NumberRange kPaneColumns{.minimum = 1, .maximum = 1'000};
constexpr NamedValue<bool> kSortOrders[] = {{"ascending", false}, {"descending", true}};

/// Which parts a channel has beside its field.
struct ChannelParts {
  char const* name;
  Channel channel;
  bool hasScale = false;
  bool hasAxis = false;
  bool hasLegend = false;
  bool hasSort = false;
  bool hasValue = false;
  bool hasStack = false;
  bool hasFormat = false;
  bool isList = false;  ///< several fields may be given
  bool hasHeader = false;
};

constexpr ChannelParts kChannels[] = {
    {.name = "x",
     .channel = Channel::X,
     .hasScale = true,
     .hasAxis = true,
     .hasSort = true,
     .hasValue = true,
     .hasStack = true},
    {.name = "y",
     .channel = Channel::Y,
     .hasScale = true,
     .hasAxis = true,
     .hasSort = true,
     .hasValue = true,
     .hasStack = true},
    {.name = "x2", .channel = Channel::X2, .hasValue = true},
    {.name = "y2", .channel = Channel::Y2, .hasValue = true},
    {.name = "xOffset", .channel = Channel::XOffset, .hasScale = true, .hasSort = true},
    {.name = "yOffset", .channel = Channel::YOffset, .hasScale = true, .hasSort = true},
    {.name = "color",
     .channel = Channel::Color,
     .hasScale = true,
     .hasLegend = true,
     .hasSort = true,
     .hasValue = true},
    {.name = "size",
     .channel = Channel::Size,
     .hasScale = true,
     .hasLegend = true,
     .hasSort = true,
     .hasValue = true},
    {.name = "shape",
     .channel = Channel::Shape,
     .hasScale = true,
     .hasLegend = true,
     .hasSort = true,
     .hasValue = true},
    {.name = "opacity",
     .channel = Channel::Opacity,
     .hasScale = true,
     .hasLegend = true,
     .hasSort = true,
     .hasValue = true},
    {.name = "detail", .channel = Channel::Detail, .isList = true},
    {.name = "order", .channel = Channel::Order, .hasSort = true, .isList = true},
    {.name = "text", .channel = Channel::Text, .hasValue = true, .hasFormat = true, .isList = true},
    {.name = "tooltip", .channel = Channel::Tooltip, .hasValue = true, .hasFormat = true, .isList = true},
    {.name = "longitude", .channel = Channel::Longitude},
    {.name = "latitude", .channel = Channel::Latitude},
    {.name = "longitude2", .channel = Channel::Longitude2},
    {.name = "latitude2", .channel = Channel::Latitude2},
    {.name = "url", .channel = Channel::Url, .hasValue = true},
    {.name = "row", .channel = Channel::Row, .hasSort = true, .hasHeader = true},
    {.name = "column", .channel = Channel::Column, .hasSort = true, .hasHeader = true},
    {.name = "facet", .channel = Channel::Facet, .hasSort = true, .hasHeader = true},
};

/// A constant in the channel's own terms.
Literal ReadValue(JsonValue const& value, Channel channel) {
  switch (channel) {
    case Channel::X:
    case Channel::Y:
    case Channel::X2:
    case Channel::Y2:
      if (value.Get() == (channel == Channel::X || channel == Channel::X2 ? "width" : "height"))
        return value.ReadText();
      if (value.Get().is_string()) value.Fail("expects a number of pixels, not " + value.Describe());
      return value.ReadNumber();
    case Channel::Size:
      return value.ReadNumber(kNotNegative);
    case Channel::Opacity:
      return value.ReadNumber(kFraction);
    case Channel::Shape:
      value.ReadOneOf(SymbolShapeNames());
      break;
    default:
      break;
  }
  return value.ReadText();
}

void ReadSortObject(JsonValue const& value, Encoding& encoding) {
  SortSpec sort;
  std::optional<bool> isDescending;
  JsonObjectReader(value)
      .On("field", [&](JsonValue const& field) { sort.field = ReadFieldName(field); })
      .On("op", [&](JsonValue const& operation) { sort.operation = ReadAggregateOperation(operation); })
      .Text("encoding", sort.channel)
      .OneOf("order", isDescending, std::span<NamedValue<bool> const>(kSortOrders))
      .Read();
  sort.isDescending = isDescending.value_or(false);
  bool const isCount = value.Has("op") && sort.operation == AggregateOperation::Count;
  if (sort.channel.empty() && sort.field.empty() && !isCount) value.Fail("expects a field or an encoding");
  if (!sort.channel.empty() && !sort.field.empty()) value.FailAt("encoding", "is given beside field");
  encoding.sortBy = sort;
}

/// "y", "-y": the values come in the order of another channel.
std::optional<SortSpec> FindSortChannel(std::string const& text) {
  bool const isDescending = text.starts_with('-');
  std::string const name = text.substr(isDescending ? 1 : 0);
  for (auto const* channel : {"x", "y", "color", "size", "shape", "opacity", "text"}) {
    if (name == channel) {
      SortSpec sort;
      sort.channel = name;
      sort.isDescending = isDescending;
      return sort;
    }
  }
  return std::nullopt;
}

void ReadSort(JsonValue const& value, Encoding& encoding) {
  if (value.IsNull()) {
    encoding.keepsDataOrder = true;
  } else if (value.Get().is_array()) {
    encoding.sort = value.ReadLiterals();
    if (encoding.sort.empty()) value.Fail("has no values; leave it out");
  } else if (value.IsObject()) {
    ReadSortObject(value, encoding);
  } else if (value.Get().is_string() && FindSortChannel(value.ReadText())) {
    encoding.sortBy = FindSortChannel(value.ReadText());
  } else {
    encoding.isDescending = value.ReadOneOf(std::span<NamedValue<bool> const>(kSortOrders));
  }
}

void RefuseFurther(JsonObjectReader& reader) {
  reader.RefuseUnlessOff("impute", "is not supported; fill the gaps in the data")
      .Refuse("bandPosition", "is not supported; leave it out")
      .Refuse("condition", "conditions are not supported; use a field or a value");
}

void ReadTransformsOf(JsonObjectReader& reader, bool hasStack, Encoding& encoding) {
  reader
      .On("aggregate",
          [&](JsonValue const& value) {
            if (!value.IsOff()) encoding.aggregate = ReadAggregateOperation(value);
          })
      .On("bin", [&](JsonValue const& value) { encoding.bin = ReadBin(value); })
      .On("timeUnit", [&](JsonValue const& value) { encoding.timeUnit = ReadTimeUnit(value); });
  if (hasStack) {
    reader.On("stack", [&](JsonValue const& value) { encoding.stack = ReadStack(value); });
  } else {
    reader.RefuseUnlessOff("stack", "is for the channels x and y only; leave it out");
  }
}

/// What derived fields ask of each other.
void CheckTransforms(JsonValue const& value, Encoding const& encoding) {
  int const count =
      (encoding.aggregate ? 1 : 0) + (encoding.bin ? 1 : 0) + (encoding.timeUnit.empty() ? 0 : 1);
  if (count > 1) value.Fail("expects one of aggregate, bin and timeUnit");
  if (encoding.bin && encoding.bin->isDone && IsDiscrete(encoding.type))
    value.FailAt("type", "bins are intervals of numbers; use \"quantitative\"");
  if (!encoding.timeUnit.empty() && encoding.type == FieldType::Quantitative)
    value.FailAt("type", "units of time are no quantities; use \"temporal\" or \"ordinal\"");
  if (encoding.sortBy && !IsDiscrete(encoding.type))
    value.FailAt("sort", "is for nominal and ordinal fields; use \"ascending\" or \"descending\"");
}

/// A linear ramp of colours over three values: the second is its middle.
void TakeMiddle(JsonValue const& value, Encoding& encoding) {
  ScaleSpec& scale = encoding.scale;
  bool const isLinear = scale.type.value_or(ScaleType::Linear) == ScaleType::Linear;
  bool const isRamp = encoding.channel == Channel::Color && encoding.type == FieldType::Quantitative &&
                      isLinear && !encoding.bin;
  if (!isRamp || scale.domain.size() != 3 || scale.domainMid || scale.findsMid) return;
  double ends[3] = {};
  for (std::size_t i = 0; i < 3; ++i) {
    auto const* number = std::get_if<double>(&scale.domain[i]);
    if (number == nullptr) return;
    ends[i] = *number;
  }
  bool const isFalling = ends[0] > ends[1];
  if (isFalling) std::swap(ends[0], ends[2]);
  if (!(ends[0] < ends[1] && ends[1] < ends[2]))
    value.FailAt("scale.domain", "expects three values that rise or fall");
  if (!scale.range.empty() && scale.range.size() != 3)
    value.FailAt("scale.range", "expects as many colors as the domain has values");
  if (isFalling) scale.reverse = !scale.reverse.value_or(false);
  scale.domain = {ends[0], ends[2]};
  scale.domainMid = ends[1];
}

void ReadField(JsonValue const& value, ChannelParts const& parts, Encoding& encoding) {
  JsonObjectReader reader(value);
  reader.On("field", [&](JsonValue const& field) { encoding.field = ReadFieldName(field); })
      .OneOf("type", encoding.type, std::span<NamedValue<FieldType> const>(kFieldTypes))
      .Title("title", encoding.title);
  if (parts.hasScale) {
    reader.On("scale", [&](JsonValue const& scale) { encoding.scale = ReadScale(scale); });
  }
  if (parts.hasAxis) reader.On("axis", [&](JsonValue const& axis) { encoding.axis = ReadAxis(axis); });
  if (parts.hasLegend) {
    reader.On("legend", [&](JsonValue const& legend) { encoding.legend = ReadLegend(legend); });
  }
  if (parts.hasSort) reader.On("sort", [&](JsonValue const& sort) { ReadSort(sort, encoding); });
  if (parts.hasHeader) {
    reader.On("header", [&](JsonValue const& header) { encoding.header = ReadHeader(header); })
        .On("spacing", [&](JsonValue const& spacing) { encoding.spacing = ReadSpacing(spacing); })
        .Refuse("align", "is not supported; leave it out")
        .Refuse("center", "is not supported; leave it out");
  }
  if (parts.channel == Channel::Facet) reader.Number("columns", encoding.columns, kPaneColumns);
  if (parts.hasFormat) reader.Text("format", encoding.format);
  if (parts.hasValue) {
    reader.On("datum", [&](JsonValue const& datum) { encoding.datum = datum.ReadLiteral(); });
  } else {
    reader.Refuse("value", "a constant has no effect here; use a field")
        .Refuse("datum", "a constant has no effect here; use a field");
  }
  ReadTransformsOf(reader, parts.hasStack, encoding);
  RefuseFurther(reader);
  reader.Read();
  bool const isCount = encoding.aggregate == AggregateOperation::Count;
  if (value.Has("datum") && parts.channel == Channel::Tooltip)
    value.FailAt("datum", "has no scale here; use value");
  if (value.Has("datum") && (!encoding.field.empty() || encoding.aggregate))
    value.FailAt("datum", "is given beside a field; leave one of them out");
  if (encoding.field.empty() && !isCount && !value.Has("datum")) {
    value.Fail(parts.hasValue ? "expects a field or a value" : "expects a field");
  }
  if (!value.Has("type")) encoding.type = DefaultFieldType(encoding);
  if (IsDegrees(parts.channel) && encoding.type != FieldType::Quantitative)
    value.FailAt("type", "degrees are numbers; use \"quantitative\"");
  CheckTransforms(value, encoding);
  TakeMiddle(value, encoding);
  CheckScale(value, encoding);
  CheckGuides(value, encoding);
  CheckSort(value, encoding);
}

void ReadConstant(JsonValue const& value, Encoding& encoding) {
  auto const* const cause = "is for fields; give a field or a value, not both";
  JsonObjectReader reader(value);
  reader.On("value",
            [&](JsonValue const& constant) { encoding.value = ReadValue(constant, encoding.channel); });
  for (auto const* part : {"field", "type", "title", "scale", "axis", "legend", "sort", "datum", "format",
                           "aggregate", "bin", "timeUnit", "stack"}) {
    reader.Refuse(part, cause);
  }
  RefuseFurther(reader);
  reader.Read();
}

Encoding ReadEncoding(JsonValue const& value, ChannelParts const& parts) {
  Encoding encoding;
  encoding.channel = parts.channel;
  encoding.path = value.GetPath();
  if (value.Get().is_array()) value.Fail("several fields are not supported; give one object with a field");
  if (parts.hasValue && value.Has("value")) {
    ReadConstant(value, encoding);
  } else {
    ReadField(value, parts, encoding);
  }
  return encoding;
}

/// A constant takes the place of what an outer view says of its channel; all else is joined with it.
JsonValue Override(JsonValue const& outer, JsonValue const& inner) {
  bool const isConstant = inner.Has("value") || outer.Has("value");
  return isConstant || !inner.IsObject() || !outer.IsObject() ? inner : inner.WithDefaults(outer);
}

ChannelMembers JoinChannels(std::vector<ChannelMembers> const& lists) {
  ChannelMembers channels;
  for (ChannelMembers const& list : lists) {
    for (auto const& member : list) {
      auto const isSame = [&](auto const& channel) { return *channel.first == *member.first; };
      auto const outer = std::ranges::find_if(channels, isSame);
      if (outer == channels.end()) {
        channels.push_back(member);
      } else {
        outer->second = Override(outer->second, member.second);
      }
    }
  }
  return channels;
}

}  // namespace

std::vector<Encoding> ReadEncodings(JsonValue const& view, std::vector<ChannelMembers> const& lists) {
  std::vector<Encoding> encodings;
  JsonObjectReader reader(view);
  for (auto const& parts : kChannels) {
    reader.On(parts.name, [&](JsonValue const& channel) {
      if (channel.IsNull()) return;  // a layer does without what the view hands down
      if (!parts.isList || !channel.Get().is_array()) {
        encodings.push_back(ReadEncoding(channel, parts));
        // A single field is told without its name.
        if (parts.channel == Channel::Tooltip) encodings.back().title = {true, ""};
        return;
      }
      for (JsonValue const& part : channel.ReadArray()) encodings.push_back(ReadEncoding(part, parts));
    });
  }
  for (auto const* second : {"xError", "xError2", "yError", "yError2"}) {
    reader.Refuse(second, "spans are not supported; use x and y");
  }
  for (auto const* polar : {"theta", "theta2", "radius", "radius2"}) {
    reader.Refuse(polar, "polar coordinates are not supported; use x and y");
  }
  reader.Refuse("fill", "is not supported; use color")
      .Refuse("stroke", "is not supported; use color")
      .Refuse("fillOpacity", "is not supported; use opacity")
      .Refuse("strokeOpacity", "is not supported; use opacity")
      .Refuse("strokeWidth", "is not supported; use the mark's strokeWidth")
      .Refuse("strokeDash", "is not supported; use the mark's strokeDash, or color")
      .Refuse("key", "is not supported; leave it out")
      .Refuse("href", "links are not supported; leave it out")
      .Refuse("description", "is not supported; use the chart's description");
  reader.Read(JoinChannels(lists));
  return encodings;
}

FieldType DefaultFieldType(Encoding const& encoding) {
  if (IsDegrees(encoding.channel)) return FieldType::Quantitative;
  if (encoding.channel == Channel::Shape) return FieldType::Nominal;
  if (encoding.channel == Channel::Order || !encoding.sort.empty()) return FieldType::Ordinal;
  if (!encoding.timeUnit.empty()) return FieldType::Temporal;
  if (std::holds_alternative<ort::core::OrtDateTime>(encoding.datum)) return FieldType::Temporal;
  if (encoding.bin || encoding.aggregate || std::holds_alternative<double>(encoding.datum))
    return FieldType::Quantitative;
  switch (encoding.scale.type.value_or(ScaleType::Ordinal)) {
    case ScaleType::Linear:
    case ScaleType::Log:
    case ScaleType::Sqrt:
    case ScaleType::Quantize:
    case ScaleType::Threshold:
    case ScaleType::BinOrdinal:
      return FieldType::Quantitative;
    case ScaleType::Time:
      return FieldType::Temporal;
    case ScaleType::Ordinal:
      break;
  }
  return FieldType::Nominal;
}

char const* NameOf(Channel channel) {
  for (auto const& parts : kChannels) {
    if (parts.channel == channel) return parts.name;
  }
  return "";
}

bool IsPosition(Channel channel) { return channel == Channel::X || channel == Channel::Y; }

bool IsFacet(Channel channel) {
  return channel == Channel::Row || channel == Channel::Column || channel == Channel::Facet;
}

bool IsSecondPosition(Channel channel) { return channel == Channel::X2 || channel == Channel::Y2; }

bool IsDegrees(Channel channel) {
  return channel == Channel::Longitude || channel == Channel::Latitude || channel == Channel::Longitude2 ||
         channel == Channel::Latitude2;
}

bool IsDiscrete(FieldType type) { return type == FieldType::Ordinal || type == FieldType::Nominal; }

bool IsStepped(ScaleType type) {
  return type == ScaleType::Quantize || type == ScaleType::Threshold || type == ScaleType::BinOrdinal;
}

char const* NameOf(FieldType type) {
  for (auto const& word : kFieldTypes) {
    if (word.value == type) return word.name;
  }
  return "";
}

}  // namespace ostrel::charts
