#include <fmt/format.h>

#include <cmath>

#include "charts/document/DateLiterals.h"
#include "charts/document/Readers.h"
#include "ostrelrtcore/OrtDateTime.h"

namespace ostrel::charts {

namespace {

/// Values in terms of the field: numbers, dates, or anything for a discrete field.
void CheckFieldValues(JsonValue const& value, std::string const& place, Encoding const& encoding,
                      std::vector<Literal> const& literals) {
  if (IsDiscrete(encoding.type)) return;
  for (std::size_t i = 0; i < literals.size(); ++i) {
    if (encoding.type == FieldType::Quantitative && !std::holds_alternative<double>(literals[i])) {
      value.FailAt(fmt::format("{}[{}]", place, i), "expects a number, as the field is quantitative");
    }
    if (encoding.type == FieldType::Temporal && !FindDate(encoding.timeUnit, literals[i])) {
      value.FailAt(fmt::format("{}[{}]", place, i),
                   "expects a date such as \"2020-03-01\" or {\"year\": 2020, \"month\": 3}");
    }
  }
}

/// Of a quantitative field its number, of a temporal one the day number.
double Position(Encoding const& encoding, Literal const& literal) {
  return encoding.type == FieldType::Temporal ? FindDate(encoding.timeUnit, literal)->ToDouble()
                                              : std::get<double>(literal);
}

bool IsStyle(Channel channel) {
  return !IsPosition(channel) && channel != Channel::XOffset && channel != Channel::YOffset;
}

void CheckScaleType(JsonValue const& value, Encoding const& encoding) {
  if (!encoding.scale.type) return;
  auto const name = value.Get()["scale"]["type"].get<std::string>();
  auto const refuse = [&](char const* wanted) {
    value.FailAt("scale.type", fmt::format("\"{}\" does not suit a {} field in this channel; use {}", name,
                                           NameOf(encoding.type), wanted));
  };
  auto const type = *encoding.scale.type;
  if (IsStepped(type)) {
    if (encoding.channel == Channel::Color && encoding.type == FieldType::Quantitative) return;
    value.FailAt("scale.type", fmt::format("\"{}\" is for quantitative colors only; leave it out", name));
  }
  if (IsDiscrete(encoding.type)) {
    bool const isStyle = IsStyle(encoding.channel);
    if (isStyle ? name != "ordinal" : name != "point" && name != "band")
      refuse(isStyle ? "ordinal" : "band or point");
  } else if (encoding.type == FieldType::Temporal) {
    if (type != ScaleType::Time) refuse("time or utc");
  } else if (type == ScaleType::Time || type == ScaleType::Ordinal) {
    refuse(encoding.channel == Channel::Color ? "linear, log, sqrt, quantize or threshold"
                                              : "linear, log or sqrt");
  }
}

void CheckContinuousDomain(JsonValue const& value, Encoding const& encoding) {
  auto const& scale = encoding.scale;
  bool const isLog = scale.type == ScaleType::Log;
  auto const checkSign = [&](std::string const& place, double end) {
    if (isLog && end <= 0) value.FailAt(place, "the domain of a log scale must be above 0");
  };
  if (!scale.unionWith.empty()) {
    CheckFieldValues(value, "scale.domain.unionWith", encoding, scale.unionWith);
    for (std::size_t i = 0; i < scale.unionWith.size(); ++i) {
      std::string const place = fmt::format("scale.domain.unionWith[{}]", i);
      double const number = Position(encoding, scale.unionWith[i]);
      checkSign(place, number);
      if (std::abs(number) > kLargestNumber) value.FailAt(place, "expects a number from -1e307 to 1e307");
    }
  } else if (value.Get()["scale"].contains("domain")) {
    if (scale.domain.size() != 2) {
      value.FailAt("scale.domain",
                   fmt::format("expects two values, as the field is {}", NameOf(encoding.type)));
    }
    CheckFieldValues(value, "scale.domain", encoding, scale.domain);
    auto const first = Position(encoding, scale.domain[0]);
    auto const last = Position(encoding, scale.domain[1]);
    checkSign("scale.domain[0]", first);
    checkSign("scale.domain[1]", last);
    if (first == last) value.FailAt("scale.domain", "expects two different values");
  }
  for (auto const* end : {"domainMin", "domainMax"}) {
    if (!value.Get()["scale"].contains(end)) continue;
    auto const place = std::string("scale.") + end;
    if (!scale.domain.empty()) value.FailAt(place, "is given beside domain; leave one of them out");
    if (encoding.type == FieldType::Temporal)
      value.FailAt(place, "is for numbers; use domain with two dates");
  }
  if (scale.domainMin) checkSign("scale.domainMin", *scale.domainMin);
  if (scale.domainMax) checkSign("scale.domainMax", *scale.domainMax);
  if (scale.domainMin && scale.domainMax && !(*scale.domainMin < *scale.domainMax)) {
    value.FailAt("scale.domainMin", "must be below domainMax; use reverse to turn the scale round");
  }
}

/// The properties that only some scales have.
void CheckScaleProperties(JsonValue const& value, Encoding const& encoding) {
  auto const& json = value.Get()["scale"];
  auto const refuse = [&](bool isRefused, char const* property, char const* cause) {
    if (isRefused && json.contains(property)) value.FailAt(std::string("scale.") + property, cause);
  };
  bool const isDiscrete = IsDiscrete(encoding.type);
  bool const isLog = encoding.scale.type == ScaleType::Log;
  for (auto const* property : {"domainMin", "domainMax", "zero", "nice", "clamp", "fit"}) {
    refuse(isDiscrete, property, "is for quantitative and temporal fields only; leave it out");
  }
  refuse(encoding.type == FieldType::Temporal && encoding.scale.zero == true, "zero",
         "a time scale has no zero; leave it out");
  refuse(isLog && encoding.scale.zero == true, "zero", "a log scale has no zero; leave it out");
  bool const hasMiddle = encoding.channel == Channel::Color || encoding.channel == Channel::Size;
  refuse(!hasMiddle, "domainMid", "is for the channels color and size only; leave it out");
  ScaleType const type = encoding.scale.type.value_or(ScaleType::Linear);
  refuse(encoding.type != FieldType::Quantitative || (type != ScaleType::Linear && !IsStepped(type)),
         "domainMid", "needs a quantitative field and a linear scale; leave it out");
  refuse(encoding.scale.findsMid && encoding.channel != Channel::Color, "domainMid",
         "\"auto\" is for the channel color only; give a number");
  refuse(IsStyle(encoding.channel), "fit", "is for positions only; leave it out");
  refuse(encoding.scale.type == ScaleType::Sqrt, "fit",
         "is not supported on a square root scale; widen the domain instead");
  refuse(!isLog, "base", "is for log scales only; leave it out");
  bool const isStyle = IsStyle(encoding.channel);
  refuse(isStyle, "padding", "is for positions only; widen the domain instead");
  for (auto const* property : {"paddingInner", "paddingOuter"}) {
    refuse(isStyle || !isDiscrete, property,
           isStyle ? "is for nominal and ordinal positions only; widen the domain instead"
                   : "is for nominal and ordinal positions only; use padding");
  }
  if (!encoding.scale.unionWith.empty()) {
    refuse(isDiscrete, "domain", "unionWith is for quantitative and temporal fields only; list all values");
    refuse(isStyle, "domain", "unionWith is for positions only; list the ends of the domain");
  }
  refuse(encoding.channel != Channel::Color, "scheme", "is for the channel color only; leave it out");
  refuse(json.contains("range"), "scheme", "is given beside range; leave one of them out");
  refuse(!IsStyle(encoding.channel), "range",
         "positions reach from 0 to the chart's width or height; use reverse to turn them round");
}

void CheckRange(JsonValue const& value, Encoding const& encoding) {
  auto const& range = encoding.scale.range;
  bool const isContinuous = !IsDiscrete(encoding.type);
  bool const isColor = encoding.channel == Channel::Color;
  bool const isShape = encoding.channel == Channel::Shape;
  if (range.empty()) value.FailAt("scale.range", "has no values; leave it out");
  bool const isExtent = !isColor && !isShape;
  if (isExtent && range.size() != 2)
    value.FailAt("scale.range", "expects two numbers, the least and the largest");
  if (isContinuous && range.size() < 2) value.FailAt("scale.range", "expects at least two colors");
  for (std::size_t i = 0; i < range.size(); ++i) {
    auto const place = fmt::format("scale.range[{}]", i);
    auto const* number = std::get_if<double>(&range[i]);
    auto const* text = std::get_if<std::string>(&range[i]);
    if (isColor && text == nullptr) value.FailAt(place, "expects a color");
    if (isShape) {
      auto const names = SymbolShapeNames();
      bool isKnown = false;
      for (auto const& word : names) isKnown = isKnown || (text != nullptr && *text == word.name);
      if (!isKnown) value.FailAt(place, "expects the name of a symbol, such as \"circle\"");
    }
    if (isColor || isShape) continue;
    if (number == nullptr || *number < 0) value.FailAt(place, "expects a number of at least 0");
    if (encoding.channel == Channel::Opacity && *number > 1)
      value.FailAt(place, "expects a number from 0 to 1");
  }
}

/// Of the thresholds, the numbers between the steps.
void CheckThresholds(JsonValue const& value, Encoding const& encoding) {
  ScaleSpec const& scale = encoding.scale;
  if (scale.domain.empty())
    value.FailAt("scale", "a threshold scale needs a domain: the numbers between its steps");
  CheckFieldValues(value, "scale.domain", encoding, scale.domain);
  for (std::size_t i = 1; i < scale.domain.size(); ++i) {
    if (!(std::get<double>(scale.domain[i - 1]) < std::get<double>(scale.domain[i])))
      value.FailAt(fmt::format("scale.domain[{}]", i), "expects a number above the one before");
  }
  std::size_t const count = scale.domain.size() + 1;
  auto const check = [&](char const* place, std::size_t colors) {
    if (colors != count)
      value.FailAt(place,
                   fmt::format("{} thresholds lie between {} colors, not {}", count - 1, count, colors));
  };
  if (!scale.range.empty()) check("scale.range", scale.range.size());
  if (scale.schemeCount) check("scale.scheme.count", static_cast<std::size_t>(*scale.schemeCount));
}

/// What only scales of steps have, and what they have not.
void CheckSteps(JsonValue const& value, Encoding const& encoding) {
  ScaleSpec const& scale = encoding.scale;
  bool const hasBins = encoding.bin && !encoding.bin->isDone && !IsDiscrete(encoding.type);
  bool const isOfBins =
      scale.type == ScaleType::BinOrdinal || (!scale.type && encoding.channel == Channel::Color && hasBins);
  bool const isOfThresholds = scale.type == ScaleType::Threshold;
  bool const hasSteps = isOfBins || (scale.type && IsStepped(*scale.type));
  auto const refuse = [&](bool isRefused, char const* part, char const* property, char const* cause) {
    bool const isGiven =
        value.Has(part) && value.Get()[part].is_object() && value.Get()[part].contains(property);
    if (isRefused && isGiven) value.FailAt(fmt::format("{}.{}", part, property), cause);
  };
  refuse(isOfBins && !hasBins, "scale", "type", "needs bins; set bin, or use quantize");
  if (scale.schemeCount && (isOfBins || !hasSteps)) {
    value.FailAt("scale.scheme.count", hasSteps ? "every bin has a color; use maxbins"
                                                : "is for the scale types quantize and threshold");
  }
  refuse(isOfBins, "scale", "range", "every bin has a color; use scheme");
  refuse(hasSteps, "scale", "clamp",
         "numbers outside of the domain have the colors of its ends; leave it out");
  refuse(isOfBins, "scale", "domain", "the bins tell the steps; use maxbins or step");
  for (auto const* property : {"domainMin", "domainMax", "zero", "nice"}) {
    refuse(isOfBins, "scale", property, "the bins tell the steps; use maxbins or step");
    refuse(isOfThresholds, "scale", property, "the thresholds tell the steps; use domain");
  }
  for (auto const* property : {"values", "tickCount"})
    refuse(hasSteps, "legend", property, "every end of a step has its label; leave it out");
}

void CheckGuide(JsonValue const& value, char const* guide, Encoding const& encoding,
                std::vector<Literal> const& values) {
  bool const hasDates = !encoding.timeUnit.empty();
  if (!value.Has(guide) || value.Get()[guide].is_null()) return;
  auto const place = std::string(guide) + ".";
  for (auto const* property : {"format", "tickCount"}) {
    bool const isDate = hasDates && std::string_view(property) == "format";
    if (IsDiscrete(encoding.type) && !isDate && value.Get()[guide].contains(property)) {
      value.FailAt(place + property, "is for quantitative and temporal fields only; leave it out");
    }
  }
  CheckFieldValues(value, place + "values", encoding, values);
}

}  // namespace

void CheckScale(JsonValue const& value, Encoding const& encoding) {
  if (encoding.channel == Channel::Shape && !IsDiscrete(encoding.type)) {
    value.FailAt("type", "a shape needs a nominal or ordinal field");
  }
  if (value.Has("scale")) CheckScaleType(value, encoding);
  CheckSteps(value, encoding);
  if (!value.Has("scale")) return;
  CheckScaleProperties(value, encoding);
  if (encoding.scale.type == ScaleType::Threshold) {
    CheckThresholds(value, encoding);
  } else if (!IsDiscrete(encoding.type)) {
    CheckContinuousDomain(value, encoding);
  } else if (value.Get()["scale"].contains("domain") && encoding.scale.domain.empty()) {
    value.FailAt("scale.domain", "has no values; leave it out");
  }
  if (value.Get()["scale"].contains("range")) CheckRange(value, encoding);
}

void CheckGuides(JsonValue const& value, Encoding const& encoding) {
  bool const hasDates = !encoding.timeUnit.empty();
  CheckGuide(value, "axis", encoding, encoding.axis.values);
  CheckGuide(value, "legend", encoding, encoding.legend.values);
  bool const isOfColorsOrShapes = encoding.channel == Channel::Color || encoding.channel == Channel::Shape;
  bool const isDerived = hasDates || encoding.bin || encoding.aggregate;
  if (!encoding.legend.hidden.empty() && (!IsDiscrete(encoding.type) || !isOfColorsOrShapes || isDerived))
    value.FailAt("legend.hidden", "is for colors and shapes of nominal and ordinal fields of the data");
  if (encoding.axis.tickInterval && encoding.type != FieldType::Temporal)
    value.FailAt("axis.tickCount", "an interval of time is for temporal fields only; use a number");
  auto const& side = encoding.axis.orient;
  bool const isVertical = side == "left" || side == "right";
  if (!side.empty() && isVertical != (encoding.channel == Channel::Y)) {
    value.FailAt("axis.orient",
                 encoding.channel == Channel::Y ? "expects left or right" : "expects top or bottom");
  }
}

void CheckSort(JsonValue const& value, Encoding const& encoding) {
  if (encoding.sort.empty()) return;
  if (encoding.channel == Channel::Order) value.FailAt("sort", "use one of ascending, descending");
  if (!IsDiscrete(encoding.type)) {
    value.FailAt("sort",
                 "a list of values is for nominal and ordinal fields; use \"ascending\" or \"descending\"");
  }
  if (!encoding.scale.domain.empty())
    value.FailAt("sort", "is given beside scale.domain; leave one of them out");
}

}  // namespace ostrel::charts
