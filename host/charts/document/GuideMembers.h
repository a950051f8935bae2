#pragma once

#include <tuple>

#include "charts/document/ChartDocument.h"
#include "charts/document/JsonValue.h"

/// What axes and legends may say, once for reading, for joining what layers say of a shared one, and for the
/// defaults of a whole chart.
namespace ostrel::charts {

/// Where a member may stand.
enum GuidePlace : unsigned { kInAxis = 1, kInLegend = 2, kInAxisConfig = 4, kInLegendConfig = 8 };
inline constexpr unsigned kEverywhere = kInAxis | kInLegend | kInAxisConfig | kInLegendConfig;

template <class T>
struct GuideMember {
  char const* name;
  T GuideSpec::*member;
  unsigned places;
  NumberRange range = kAnyNumber;
};

inline constexpr NumberRange kTickCounts{.minimum = 0, .maximum = 10'000, .isAboveMinimum = true};
inline constexpr NumberRange kDegrees{.minimum = -360, .maximum = 360};
inline constexpr NumberRange kLengths{.minimum = 0, .maximum = 1'000};
inline constexpr NumberRange kFontSizes{.minimum = 0, .maximum = 1'000, .isAboveMinimum = true};
inline constexpr NumberRange kColumns{.minimum = 0, .maximum = 1'000};
inline constexpr NumberRange kSymbolSizes{.minimum = 0, .maximum = 1'000'000, .isAboveMinimum = true};

using ort::core::OrtColor;

inline constexpr std::tuple kGuideMembers{
    GuideMember<std::string>{"format", &GuideSpec::format, kInAxis | kInLegend},
    GuideMember<std::optional<double>>{"labelAngle", &GuideSpec::labelAngle, kInAxis | kInAxisConfig,
                                       kDegrees},
    GuideMember<std::optional<double>>{"labelLimit", &GuideSpec::labelLimit, kEverywhere, kNotNegative},
    GuideMember<std::optional<double>>{"tickCount", &GuideSpec::tickCount,
                                       kInLegend | kInAxisConfig | kInLegendConfig, kTickCounts},
    GuideMember<std::optional<TickInterval>>{"tickCount", &GuideSpec::tickInterval, kInAxis},
    GuideMember<std::vector<Literal>>{"values", &GuideSpec::values, kInAxis | kInLegend},
    GuideMember<std::vector<Literal>>{"hidden", &GuideSpec::hidden, kInLegend},
    GuideMember<std::optional<bool>>{"grid", &GuideSpec::grid, kInAxis | kInAxisConfig},
    GuideMember<std::optional<bool>>{"domain", &GuideSpec::domain, kInAxis | kInAxisConfig},
    GuideMember<std::optional<bool>>{"labels", &GuideSpec::labels, kInAxis | kInAxisConfig},
    GuideMember<std::optional<bool>>{"ticks", &GuideSpec::ticks, kInAxis | kInAxisConfig},
    GuideMember<std::optional<bool>>{"tickBand", &GuideSpec::marksBandEnds, kInAxis | kInAxisConfig},
    GuideMember<std::string>{"orient", &GuideSpec::orient, kInAxis | kInLegend | kInLegendConfig},
    GuideMember<std::optional<double>>{"offset", &GuideSpec::offset, kEverywhere, kLengths},
    GuideMember<std::optional<double>>{"labelFontSize", &GuideSpec::labelFontSize, kEverywhere, kFontSizes},
    GuideMember<std::optional<double>>{"labelPadding", &GuideSpec::labelPadding, kInAxis | kInAxisConfig,
                                       kLengths},
    GuideMember<std::optional<OrtColor>>{"labelColor", &GuideSpec::labelColor, kEverywhere},
    GuideMember<std::optional<double>>{"titleFontSize", &GuideSpec::titleFontSize, kEverywhere, kFontSizes},
    GuideMember<std::optional<double>>{"titlePadding", &GuideSpec::titlePadding, kEverywhere, kLengths},
    GuideMember<std::optional<double>>{"titleLimit", &GuideSpec::titleLimit, kEverywhere, kNotNegative},
    GuideMember<std::optional<bool>>{"titleFontWeight", &GuideSpec::isTitleBold, kEverywhere},
    GuideMember<std::optional<OrtColor>>{"titleColor", &GuideSpec::titleColor, kEverywhere},
    GuideMember<std::optional<double>>{"tickMinStep", &GuideSpec::tickMinStep, kInAxis | kInAxisConfig,
                                       kPositive},
    GuideMember<std::optional<double>>{"tickSize", &GuideSpec::tickSize, kInAxis | kInAxisConfig, kLengths},
    GuideMember<std::optional<double>>{"tickWidth", &GuideSpec::tickWidth, kInAxis | kInAxisConfig, kLengths},
    GuideMember<std::optional<OrtColor>>{"tickColor", &GuideSpec::tickColor, kInAxis | kInAxisConfig},
    GuideMember<std::optional<double>>{"domainWidth", &GuideSpec::domainWidth, kInAxis | kInAxisConfig,
                                       kLengths},
    GuideMember<std::optional<OrtColor>>{"domainColor", &GuideSpec::domainColor, kInAxis | kInAxisConfig},
    GuideMember<std::optional<double>>{"gridWidth", &GuideSpec::gridWidth, kInAxis | kInAxisConfig, kLengths},
    GuideMember<std::optional<double>>{"gridOpacity", &GuideSpec::gridOpacity, kInAxis | kInAxisConfig,
                                       kFraction},
    GuideMember<std::vector<double>>{"gridDash", &GuideSpec::gridDash, kInAxis | kInAxisConfig},
    GuideMember<std::optional<OrtColor>>{"gridColor", &GuideSpec::gridColor, kInAxis | kInAxisConfig},
    GuideMember<std::optional<bool>>{"direction", &GuideSpec::runsAcross, kInLegend | kInLegendConfig},
    GuideMember<std::optional<double>>{"columns", &GuideSpec::columns, kInLegend | kInLegendConfig, kColumns},
    GuideMember<std::optional<SymbolShape>>{"symbolType", &GuideSpec::symbol, kInLegend | kInLegendConfig},
    GuideMember<std::optional<double>>{"symbolSize", &GuideSpec::symbolSize, kInLegend | kInLegendConfig,
                                       kSymbolSizes},
};

/// Calls visit(member) for every member of the table.
template <class Visit>
void VisitGuideMembers(Visit const& visit) {
  std::apply([&](auto const&... member) { (visit(member), ...); }, kGuideMembers);
}

inline bool IsOpen(std::string const& text) { return text.empty(); }
template <class T>
bool IsOpen(std::vector<T> const& list) {
  return list.empty();
}
template <class T>
bool IsOpen(std::optional<T> const& value) {
  return !value;
}

/// Members that a guide leaves open get what the defaults say.
inline void TakeDefaults(GuideSpec const& defaults, GuideSpec& guide) {
  VisitGuideMembers([&](auto const& member) {
    if (IsOpen(guide.*member.member)) guide.*member.member = defaults.*member.member;
  });
}

}  // namespace ostrel::charts
