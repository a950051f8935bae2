#include <algorithm>
#include <cmath>

#include "charts/document/GuideMembers.h"
#include "charts/document/JsonObjectReader.h"
#include "charts/document/Readers.h"
#include "charts/document/TransformReaders.h"

namespace ostrel::charts {

namespace {

constexpr NamedValue<char const*> kSides[] = {
    {"left", "left"}, {"right", "right"}, {"top", "top"}, {"bottom", "bottom"}};

constexpr NamedValue<bool> kTickBands[] = {{"extent", true}, {"center", false}};
constexpr NamedValue<bool> kDirections[] = {{"horizontal", true}, {"vertical", false}};
constexpr NamedValue<bool> kResolutions[] = {{"shared", false}, {"independent", true}};

constexpr NumberRange kSpacing{.minimum = 0, .maximum = 1'000};

/// Headers stand straight.
double ReadHeaderAngle(JsonValue const& value) {
  double const angle = std::remainder(value.ReadNumber(kDegrees), 360);
  if (angle != 0 && std::abs(angle) != 90) value.Fail("expects 0, 90 or -90");
  return angle;
}

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

void ReadMember(JsonObjectReader& reader, GuideMember<std::string> const& member, GuideSpec& guide) {
  std::string& target = guide.*member.member;
  if (member.member == &GuideSpec::orient) {
    reader.OneOf(member.name, target, std::span<NamedValue<char const*> const>(kSides));
  } else {
    reader.Text(member.name, target);
  }
}

void ReadMember(JsonObjectReader& reader, GuideMember<std::optional<double>> const& member,
                GuideSpec& guide) {
  reader.Number(member.name, guide.*member.member, member.range);
}

// Of axes, a number of ticks or a unit of time.
void ReadMember(JsonObjectReader& reader, GuideMember<std::optional<TickInterval>> const& member,
                GuideSpec& guide) {
  reader.On(member.name, [&guide](JsonValue const& count) {
    if (count.Get().is_number()) {
      guide.tickCount = count.ReadNumber(kTickCounts);
    } else {
      guide.tickInterval = ReadTickInterval(count);
    }
  });
}

void ReadMember(JsonObjectReader& reader, GuideMember<std::vector<Literal>> const& member, GuideSpec& guide) {
  reader.Literals(member.name, guide.*member.member);
}

void ReadMember(JsonObjectReader& reader, GuideMember<std::optional<bool>> const& member, GuideSpec& guide) {
  std::optional<bool>& target = guide.*member.member;
  if (member.member == &GuideSpec::marksBandEnds) {
    reader.OneOf(member.name, target, std::span<NamedValue<bool> const>(kTickBands));
  } else if (member.member == &GuideSpec::runsAcross) {
    reader.OneOf(member.name, target, std::span<NamedValue<bool> const>(kDirections));
  } else if (member.member == &GuideSpec::isTitleBold) {
    reader.On(member.name, [&target](JsonValue const& weight) { target = ReadFontWeight(weight); });
  } else {
    reader.Bool(member.name, target);
  }
}

void ReadMember(JsonObjectReader& reader, GuideMember<std::optional<OrtColor>> const& member,
                GuideSpec& guide) {
  reader.On(member.name,
            [&target = guide.*member.member](JsonValue const& color) { target = ReadColorOrNone(color); });
}

void ReadMember(JsonObjectReader& reader, GuideMember<std::vector<double>> const& member, GuideSpec& guide) {
  reader.On(member.name,
            [&target = guide.*member.member](JsonValue const& dash) { target = ReadDashes(dash); });
}

void ReadMember(JsonObjectReader& reader, GuideMember<std::optional<SymbolShape>> const& member,
                GuideSpec& guide) {
  reader.OneOf(member.name, guide.*member.member, SymbolShapeNames());
}

void AddMembers(JsonObjectReader& reader, GuidePlace place, GuideSpec& guide) {
  VisitGuideMembers([&](auto const& member) {
    if ((member.places & place) != 0) ReadMember(reader, member, guide);
  });
}

void RefuseOfGuides(JsonObjectReader& reader) {
  reader.Refuse("labelExpr", "is not supported; compute the labels in the data or use format")
      .Refuse("formatType", "is not supported; the field's type tells it");
  for (auto const* font : {"labelFont", "titleFont"})
    reader.Refuse(font, "is not supported; all texts of a chart have one font");
}

void RefuseOfAxes(JsonObjectReader& reader) {
  reader.Refuse("labelOverlap", "is not supported; labels without room are left out");
}

void RefuseOfLegends(JsonObjectReader& reader) {
  reader.Refuse("type", "is not supported; the field's type tells it");
}

using Refusals = void (*)(JsonObjectReader&);

GuideSpec ReadGuide(JsonValue const& value, GuidePlace place, Refusals refuseOthers) {
  GuideSpec guide;
  guide.isHidden = value.IsNull();
  if (guide.isHidden) return guide;
  JsonObjectReader reader(value);
  reader.Title("title", guide.title);
  AddMembers(reader, place, guide);
  RefuseOfGuides(reader);
  refuseOthers(reader);
  reader.Read();
  return guide;
}

// The defaults of config; `own` is a member that only a single guide has.
GuideSpec ReadDefaults(JsonValue const& value, std::string const& kind, GuidePlace place,
                       Refusals refuseOthers, char const* own) {
  GuideSpec guide;
  std::string const ownCause = "is no default; set it for the " + kind + " itself";
  std::string const disableCause = "is not supported; set " + kind + " to null";
  JsonObjectReader reader(value);
  AddMembers(reader, place, guide);
  RefuseOfGuides(reader);
  refuseOthers(reader);
  for (auto const* member : {"title", "format", "values", own}) reader.Refuse(member, ownCause.c_str());
  reader.Refuse("disable", disableCause.c_str());
  reader.Read();
  return guide;
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

PaneSpacing ReadSpacing(JsonValue const& value) {
  PaneSpacing spacing;
  if (value.IsObject()) {
    JsonObjectReader(value)
        .Number("row", spacing.rows, kSpacing)
        .Number("column", spacing.columns, kSpacing)
        .Read();
  } else {
    spacing.rows = spacing.columns = value.ReadNumber(kSpacing);
  }
  return spacing;
}

HeaderSpec ReadHeader(JsonValue const& value) {
  HeaderSpec header;
  header.isHidden = value.IsNull();
  if (header.isHidden) return header;
  JsonObjectReader(value)
      .Title("title", header.title)
      .Bool("labels", header.labels)
      .Text("format", header.format)
      .On("labelAngle", [&](JsonValue const& angle) { header.labelAngle = ReadHeaderAngle(angle); })
      .Refuse("formatType", "is not supported; the field's type tells it")
      .Refuse("labelExpr", "is not supported; compute the labels in the data")
      .Refuse("orient", "is not supported; headers stand left of rows and above columns")
      .Read();
  return header;
}

GuideSpec ReadAxis(JsonValue const& value) { return ReadGuide(value, kInAxis, RefuseOfAxes); }

GuideSpec ReadLegend(JsonValue const& value) { return ReadGuide(value, kInLegend, RefuseOfLegends); }

GuideSpec ReadAxisConfig(JsonValue const& value) {
  return ReadDefaults(value, "axis", kInAxisConfig, RefuseOfAxes, "orient");
}

GuideSpec ReadLegendConfig(JsonValue const& value) {
  return ReadDefaults(value, "legend", kInLegendConfig, RefuseOfLegends, "hidden");
}

}  // namespace ostrel::charts
