#include <algorithm>

#include "charts/document/JsonObjectReader.h"
#include "charts/document/Readers.h"
#include "charts/document/TransformReaders.h"

namespace ostrel::charts {

namespace {

constexpr NumberRange kTickCount{.minimum = 0, .maximum = 10'000, .isAboveMinimum = true};
constexpr NumberRange kDegrees{.minimum = -360, .maximum = 360};

constexpr NamedValue<char const*> kAxisSides[] = {
    {"left", "left"}, {"right", "right"}, {"top", "top"}, {"bottom", "bottom"}};

constexpr NamedValue<bool> kResolutions[] = {{"shared", false}, {"independent", true}};

/// The channels that are set to independent, or else to shared.
std::vector<Channel> ReadChannels(JsonValue const& value, std::span<Channel const> channels,
                                  bool isIndependent = true) {
  std::vector<Channel> found;
  JsonObjectReader reader(value);
  for (Channel const channel : channels) {
    reader.On(NameOf(channel), [&found, channel, isIndependent](JsonValue const& word) {
      if (word.ReadOneOf(std::span<NamedValue<bool> const>(kResolutions)) == isIndependent)
        found.push_back(channel);
    });
  }
  reader.Read();
  return found;
}

bool Contains(std::vector<Channel> const& channels, Channel channel) {
  return std::ranges::find(channels, channel) != channels.end();
}

}  // namespace

bool ResolveSpec::HasOwnScale(Channel channel) const { return Contains(independentScales, channel); }
bool ResolveSpec::HasOwnAxis(Channel channel) const {
  return Contains(independentScales, channel) || Contains(independentAxes, channel);
}
bool ResolveSpec::SharesZero(Channel channel) const { return Contains(sharedZeros, channel); }
bool ResolveSpec::SharesDomain(Channel channel) const { return Contains(sharedDomains, channel); }
bool ResolveSpec::SharesUnit(Channel channel) const { return Contains(sharedUnits, channel); }

ResolveSpec ReadResolve(JsonValue const& value) {
  static constexpr Channel kScales[] = {Channel::X,    Channel::Y,       Channel::Color,
                                        Channel::Size, Channel::Opacity, Channel::Shape};
  ResolveSpec resolve;
  resolve.path = value.GetPath();
  auto const readShared = [](std::vector<Channel>& channels) {
    return [&channels](JsonValue const& words) {
      channels = ReadChannels(words, std::span(kScales).first<2>(), false);
    };
  };
  JsonObjectReader(value)
      .On("scale", [&](JsonValue const& scale) { resolve.independentScales = ReadChannels(scale, kScales); })
      .On("axis",
          [&](JsonValue const& axis) {
            resolve.independentAxes = ReadChannels(axis, std::span(kScales).first<2>());
          })
      .On("zero", readShared(resolve.sharedZeros))
      .On("domain", readShared(resolve.sharedDomains))
      .On("unit", readShared(resolve.sharedUnits))
      .Refuse("legend", "is not supported; every scale has its legend, so set scale")
      .Read();
  return resolve;
}

HeaderSpec ReadHeader(JsonValue const& value) {
  HeaderSpec header;
  header.isHidden = value.IsNull();
  if (header.isHidden) return header;
  JsonObjectReader(value)
      .Title("title", header.title)
      .Bool("labels", header.labels)
      .Refuse("format", "is not supported; format the values in the data")
      .Refuse("formatType", "is not supported; format the values in the data")
      .Refuse("labelExpr", "is not supported; compute the labels in the data")
      .Refuse("orient", "is not supported; headers stand left of rows and above columns")
      .Read();
  return header;
}

AxisSpec ReadAxis(JsonValue const& value) {
  AxisSpec axis;
  axis.isHidden = value.IsNull();
  if (axis.isHidden) return axis;
  JsonObjectReader(value)
      .Title("title", axis.title)
      .Text("format", axis.format)
      .Number("labelAngle", axis.labelAngle, kDegrees)
      .Number("labelLimit", axis.labelLimit, kNotNegative)
      .On("tickCount",
          [&](JsonValue const& count) {
            if (count.Get().is_number()) {
              axis.tickCount = count.ReadNumber(kTickCount);
            } else {
              axis.tickInterval = ReadTickInterval(count);
            }
          })
      .Literals("values", axis.values)
      .Bool("grid", axis.grid)
      .OneOf("orient", axis.orient, std::span<NamedValue<char const*> const>(kAxisSides))
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
      .Number("labelLimit", legend.labelLimit, kNotNegative)
      .Literals("values", legend.values)
      .Literals("hidden", legend.hidden)
      .Number("tickCount", legend.tickCount, kTickCount)
      .Refuse("orient", "is not supported; legends stand right of the chart")
      .Refuse("type", "is not supported; the field's type tells it")
      .Refuse("labelExpr", "is not supported; compute the labels in the data or use format")
      .Refuse("formatType", "is not supported; the field's type tells it")
      .Read();
  return legend;
}

}  // namespace ostrel::charts
