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
};

/// Calls visit(member) for every member of the table.
template <class Visit>
void VisitGuideMembers(Visit const& visit) {
  std::apply([&](auto const&... member) { (visit(member), ...); }, kGuideMembers);
}

inline bool IsOpen(std::string const& text) { return text.empty(); }
inline bool IsOpen(std::vector<Literal> const& literals) { return literals.empty(); }
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
