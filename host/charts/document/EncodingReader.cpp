#include <fmt/format.h>

#include <algorithm>

#include "charts/document/JsonObjectReader.h"
#include "charts/document/Readers.h"

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
  bool hasHeader = false;
};

constexpr ChannelParts kChannels[] = {
    {"x", Channel::X, true, true, false, true, true},
    {"y", Channel::Y, true, true, false, true, true},
    {"color", Channel::Color, true, false, true, true, true},
    {"size", Channel::Size, true, false, true, true, true},
    {"shape", Channel::Shape, true, false, true, true, true},
    {"opacity", Channel::Opacity, true, false, true, true, true},
    {"detail", Channel::Detail, false, false, false, false, false},
    {"order", Channel::Order, false, false, false, true, false},
    {"text", Channel::Text, false, false, false, false, false},
    {"tooltip", Channel::Tooltip, false, false, false, false, false},
    {"longitude", Channel::Longitude, false, false, false, false, false},
    {"latitude", Channel::Latitude, false, false, false, false, false},
    {"row", Channel::Row, false, false, false, true, false, true},
    {"column", Channel::Column, false, false, false, true, false, true},
    {"facet", Channel::Facet, false, false, false, true, false, true},
};

/// A constant in the channel's own terms.
Literal ReadValue(JsonValue const& value, Channel channel) {
  switch (channel) {
    case Channel::X:
    case Channel::Y:
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

void ReadSort(JsonValue const& value, Encoding& encoding) {
  if (value.IsNull()) {
    encoding.keepsDataOrder = true;
  } else if (value.Get().is_array()) {
    encoding.sort = value.ReadLiterals();
    if (encoding.sort.empty()) value.Fail("has no values; leave it out");
  } else if (value.IsObject()) {
    value.Fail("sorting by another field is not supported; list the values in their order");
  } else {
    encoding.isDescending = value.ReadOneOf(std::span<NamedValue<bool> const>(kSortOrders));
  }
}

void RefuseTransforms(JsonObjectReader& reader) {
  reader.RefuseUnlessOff("bin", "binning is not supported; compute the bins in the data")
      .RefuseUnlessOff("aggregate", "aggregation is not supported; compute the aggregates in the data")
      .RefuseUnlessOff("timeUnit", "time units are not supported; compute the periods in the data")
      .RefuseUnlessOff("stack", "stacking is not supported; compute the sums in the data")
      .RefuseUnlessOff("impute", "is not supported; fill the gaps in the data")
      .Refuse("bandPosition", "is not supported; leave it out")
      .Refuse("condition", "conditions are not supported; use a field or a value");
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
        .Refuse("spacing", "is not supported; leave it out")
        .Refuse("align", "is not supported; leave it out")
        .Refuse("center", "is not supported; leave it out");
  }
  if (parts.channel == Channel::Facet) reader.Number("columns", encoding.columns, kPaneColumns);
  if (parts.hasValue) {
    reader.Refuse("datum", "constants of the data are not supported; use a field, or a value");
  } else {
    reader.Refuse("value", "a constant has no effect here; use a field")
        .Refuse("datum", "a constant has no effect here; use a field");
  }
  RefuseTransforms(reader);
  reader.Read();
  if (encoding.field.empty()) {
    value.Fail(parts.hasValue ? "expects a field or a value" : "expects a field");
  }
  if (!value.Has("type")) encoding.type = DefaultFieldType(encoding);
  bool const isDegrees = parts.channel == Channel::Longitude || parts.channel == Channel::Latitude;
  if (isDegrees && encoding.type != FieldType::Quantitative)
    value.FailAt("type", "degrees are numbers; use \"quantitative\"");
  CheckScale(value, encoding);
  CheckGuides(value, encoding);
  CheckSort(value, encoding);
}

void ReadConstant(JsonValue const& value, Encoding& encoding) {
  auto const* const cause = "is for fields; give a field or a value, not both";
  JsonObjectReader reader(value);
  reader.On("value",
            [&](JsonValue const& constant) { encoding.value = ReadValue(constant, encoding.channel); });
  for (auto const* part : {"field", "type", "title", "scale", "axis", "legend", "sort", "datum"}) {
    reader.Refuse(part, cause);
  }
  RefuseTransforms(reader);
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
      if (parts.channel == Channel::Detail && channel.Get().is_array()) {
        for (auto const& field : channel.ReadArray()) encodings.push_back(ReadEncoding(field, parts));
        return;
      }
      encodings.push_back(ReadEncoding(channel, parts));
    });
  }
  for (auto const* offset : {"xOffset", "yOffset"}) {
    reader.Refuse(offset, "is not supported; place the rows by x and y");
  }
  for (auto const* second : {"x2", "y2", "xError", "xError2", "yError", "yError2"}) {
    reader.Refuse(second, "spans are not supported; use x and y");
  }
  for (auto const* place : {"longitude2", "latitude2"}) {
    reader.Refuse(place, "is not supported; use longitude and latitude");
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
      .Refuse("url", "images are not supported; use shape")
      .Refuse("key", "is not supported; leave it out")
      .Refuse("href", "links are not supported; leave it out")
      .Refuse("description", "is not supported; use the chart's description");
  reader.Read(JoinChannels(lists));
  return encodings;
}

FieldType DefaultFieldType(Encoding const& encoding) {
  if (encoding.channel == Channel::Longitude || encoding.channel == Channel::Latitude)
    return FieldType::Quantitative;
  if (encoding.channel == Channel::Shape) return FieldType::Nominal;
  if (encoding.channel == Channel::Order || !encoding.sort.empty()) return FieldType::Ordinal;
  switch (encoding.scale.type.value_or(ScaleType::Ordinal)) {
    case ScaleType::Linear:
    case ScaleType::Log:
    case ScaleType::Sqrt:
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

bool IsDiscrete(FieldType type) { return type == FieldType::Ordinal || type == FieldType::Nominal; }

char const* NameOf(FieldType type) {
  for (auto const& word : kFieldTypes) {
    if (word.value == type) return word.name;
  }
  return "";
}

}  // namespace ostrel::charts
