#include "charts/scales/ScaleSource.h"

#include <fmt/format.h>

#include <algorithm>

#include "charts/document/GuideMembers.h"
#include "charts/document/Readers.h"

namespace ostrel::charts {
namespace {

bool SaysAnything(GuideSpec const& guide) {
  bool says = guide.isHidden || guide.title.isGiven;
  VisitGuideMembers([&](auto const& member) { says = says || !IsOpen(guide.*member.member); });
  return says;
}

// Takes over what one more channel says; two may say the same, but not two things.
class EncodingJoiner {
 public:
  EncodingJoiner(Compilation const& compilation, Encoding& joined, Encoding const& further)
      : compilation_(compilation), joined_(joined), further_(further) {}

  void JoinScale() {
    ScaleSpec& into = joined_.scale;
    ScaleSpec const& from = further_.scale;
    Join("scale.type", into.type, from.type);
    Join("scale.domain", into.domain, from.domain);
    JoinUnions();
    Join("scale.domainMin", into.domainMin, from.domainMin);
    Join("scale.domainMax", into.domainMax, from.domainMax);
    Join("scale.domainMid", into.domainMid, from.domainMid);
    Join("scale.domainMid", into.findsMid, from.findsMid);
    Join("scale.range", into.range, from.range);
    Join("scale.zero", into.zero, from.zero);
    Join("scale.nice", into.nice, from.nice);
    Join("scale.nice", into.niceCount, from.niceCount);
    Join("scale.reverse", into.reverse, from.reverse);
    Join("scale.clamp", into.clamp, from.clamp);
    Join("scale.fit", into.fit, from.fit);
    Join("scale.type", into.isBand, from.isBand);
    Join("scale.padding", into.padding, from.padding);
    Join("scale.paddingInner", into.paddingInner, from.paddingInner);
    Join("scale.paddingOuter", into.paddingOuter, from.paddingOuter);
    Join("scale.base", into.base, from.base);
    Join("scale.padding", into.padding, from.padding);
    Join("scale.paddingInner", into.paddingInner, from.paddingInner);
    Join("scale.paddingOuter", into.paddingOuter, from.paddingOuter);
    Join("scale.scheme", into.scheme, from.scheme);
    Join("scale.scheme.count", into.schemeCount, from.schemeCount);
    Join("sort", joined_.sort, further_.sort);
    Join("sort", joined_.isDescending, further_.isDescending);
    joined_.keepsDataOrder = joined_.keepsDataOrder || further_.keepsDataOrder;
  }

  void JoinGuides() {
    if (IsSecondPosition(further_.channel)) return;
    JoinGuide("axis", joined_.axis, further_.axis);
    JoinGuide("legend", joined_.legend, further_.legend);
  }

  void CheckTypes() const {
    if (IsDiscrete(joined_.type) == IsDiscrete(further_.type) &&
        (IsDiscrete(joined_.type) || joined_.type == further_.type))
      return;
    Refuse("type", fmt::format("a {} field shares no scale with the {} one of {}", NameOf(further_.type),
                               NameOf(joined_.type), joined_.path));
  }

 private:
  // The first channel that says anything of a guide hides or shows it.
  void JoinGuide(char const* guide, GuideSpec& into, GuideSpec const& from) const {
    if (into.isHidden) return;
    if (from.isHidden) {
      into.isHidden = !SaysAnything(into);
      return;
    }
    VisitGuideMembers([&](auto const& member) {
      Join(fmt::format("{}.{}", guide, member.name).c_str(), into.*member.member, from.*member.member);
    });
  }

  template <class T>
  void Join(char const* property, T& into, T const& from) const {
    if (IsOpen(from) || into == from) return;
    if (!IsOpen(into))
      Refuse(property, "differs from what " + joined_.path + " says of the scale that both share");
    into = from;
  }

  // A domain holds what any of its channels lists, unless one of them gives the whole domain.
  void JoinUnions() const {
    ScaleSpec& into = joined_.scale;
    std::vector<Literal> const& listed = further_.scale.unionWith;
    into.unionWith.insert(into.unionWith.end(), listed.begin(), listed.end());
    if (!into.domain.empty() && !into.unionWith.empty())
      Refuse("scale.domain", "differs from what " + joined_.path + " says of the scale that both share");
  }

  [[noreturn]] void Refuse(char const* property, std::string const& cause) const {
    ThrowDocumentError(compilation_.document, fmt::format("{}.{}", further_.path, property), cause);
  }

  Compilation const& compilation_;
  Encoding& joined_;
  Encoding const& further_;
};

// Given titles come before those that fields give.
TitleSpec JoinTitles(std::vector<FieldUse> const& uses, TitleSpec (*guideTitle)(Encoding const&)) {
  std::vector<std::string> given;
  std::vector<std::string> fields;
  auto const add = [](std::vector<std::string>& titles, std::string const& title) {
    if (!title.empty() && std::ranges::find(titles, title) == titles.end()) titles.push_back(title);
  };
  bool isGiven = false;
  for (FieldUse const& use : uses) {
    // An end that was derived has the title of the beginning.
    bool const isDerived = IsSecondPosition(use.encoding->channel) && use.encoding->path.back() != '2';
    if (isDerived) continue;
    TitleSpec const title = guideTitle(*use.encoding);
    // A constant has no name beside a field's.
    bool const isConstant = !std::holds_alternative<std::monostate>(use.encoding->datum);
    if (isConstant && title.text.empty()) continue;
    isGiven = isGiven || title.isGiven;
    title.isGiven ? add(given, title.text) : add(fields, DefaultTitle(*use.encoding));
  }
  TitleSpec joined{.isGiven = true, .text = {}};
  for (std::string const& title : isGiven ? given : fields)
    joined.text += (joined.text.empty() ? "" : ", ") + title;
  return joined;
}

TitleSpec AxisTitle(Encoding const& encoding) {
  return encoding.axis.title.isGiven ? encoding.axis.title : encoding.title;
}
TitleSpec LegendTitle(Encoding const& encoding) {
  return encoding.legend.title.isGiven ? encoding.legend.title : encoding.title;
}

}  // namespace

std::string DefaultTitle(Encoding const& encoding) {
  return encoding.derivedTitle.empty() ? encoding.field : encoding.derivedTitle;
}

ScaleSource JoinUses(Compilation const& compilation, std::string const& name, std::vector<FieldUse> uses) {
  ScaleSource source{name, *uses.front().encoding, std::move(uses)};
  for (auto use = source.uses.begin() + 1; use != source.uses.end(); ++use) {
    EncodingJoiner joiner(compilation, source.encoding, *use->encoding);
    joiner.CheckTypes();
    joiner.JoinScale();
    joiner.JoinGuides();
  }
  source.encoding.axis.title = JoinTitles(source.uses, AxisTitle);
  source.encoding.legend.title = JoinTitles(source.uses, LegendTitle);
  ConfigSpec const& config = compilation.document.config;
  TakeDefaults(source.encoding.channel == Channel::Y ? config.axisY : config.axisX, source.encoding.axis);
  TakeDefaults(config.axis, source.encoding.axis);
  TakeDefaults(config.legend, source.encoding.legend);
  return source;
}

}  // namespace ostrel::charts
