#include <cmath>

#include "charts/document/JsonObjectReader.h"
#include "charts/document/Readers.h"

namespace ostrel::charts {

namespace {

/// Positions of a discrete field are points, its styles are ordinal: one type here. All times are UTC.
constexpr NamedValue<ScaleType> kScaleTypes[] = {
    {"linear", ScaleType::Linear},
    {"log", ScaleType::Log},
    {"sqrt", ScaleType::Sqrt},
    {"time", ScaleType::Time},
    {"utc", ScaleType::Time},
    {"ordinal", ScaleType::Ordinal},
    {"point", ScaleType::Ordinal},
    {"band", ScaleType::Ordinal},
    {"quantize", ScaleType::Quantize},
    {"threshold", ScaleType::Threshold},
    {"bin-ordinal", ScaleType::BinOrdinal},
};

constexpr NumberRange kTickCount{.minimum = 0, .maximum = 10'000, .isAboveMinimum = true};

void ReadType(JsonValue const& value, ScaleSpec& scale) {
  scale.type = value.ReadOneOf(std::span<NamedValue<ScaleType> const>(kScaleTypes));
  std::string const name = value.ReadText();
  if (name == "band" || name == "point") scale.isBand = name == "band";
}

void ReadNice(JsonValue const& value, ScaleSpec& scale) {
  if (value.Get().is_number()) {
    scale.niceCount = value.ReadNumber(kTickCount);
  } else if (value.Get().is_boolean()) {
    scale.nice = value.ReadBool();
  } else {
    value.Fail("expects true, false or a number of ticks, not " + value.Describe());
  }
}

void ReadDomain(JsonValue const& value, ScaleSpec& scale) {
  if (!value.IsObject()) {
    scale.domain = value.ReadLiterals();
    return;
  }
  JsonObjectReader(value)
      .Literals("unionWith", scale.unionWith)
      .Refuse("param", "is not supported; list the ends of the domain")
      .Refuse("selection", "is not supported; list the ends of the domain")
      .Read();
  if (scale.unionWith.empty()) value.FailAt("unionWith", "has no values; leave the domain out");
}

void ReadMiddle(JsonValue const& value, ScaleSpec& scale) {
  if (value.Get() == "auto") {
    scale.findsMid = true;
  } else if (value.Get().is_number()) {
    scale.domainMid = value.ReadNumber();
  } else {
    value.Fail("expects a number or \"auto\", not " + value.Describe());
  }
}

void ReadStepCount(JsonValue const& value, ScaleSpec& scale) {
  scale.schemeCount = value.ReadNumber({.minimum = 1, .maximum = 1'000});
  if (*scale.schemeCount != std::floor(*scale.schemeCount)) value.Fail("expects a whole number");
}

void ReadScheme(JsonValue const& value, ScaleSpec& scale) {
  if (!value.IsObject()) {
    scale.scheme = value.ReadText();
    return;
  }
  JsonObjectReader(value)
      .Text("name", scale.scheme)
      .On("count", [&scale](JsonValue const& count) { ReadStepCount(count, scale); })
      .Refuse("extent", "is not supported; list the colors in the scale's range")
      .Read();
  if (!value.Has("name")) value.FailAt("name", "is missing; name a color scheme");
}

void ReadBase(JsonValue const& value, ScaleSpec& scale) {
  scale.base = value.ReadNumber(kPositive);
  if (scale.base == 1) value.Fail("1 is no base of logarithms");
}

}  // namespace

ScaleSpec ReadScale(JsonValue const& value) {
  ScaleSpec scale;
  if (value.IsNull()) value.Fail("values without a scale are not supported; list them in domain and range");
  JsonObjectReader(value)
      .On("type", [&scale](JsonValue const& type) { ReadType(type, scale); })
      .On("domain", [&scale](JsonValue const& domain) { ReadDomain(domain, scale); })
      .Number("domainMin", scale.domainMin)
      .Number("domainMax", scale.domainMax)
      .On("domainMid", [&scale](JsonValue const& middle) { ReadMiddle(middle, scale); })
      .Literals("range", scale.range)
      .Bool("zero", scale.zero)
      .On("nice", [&scale](JsonValue const& nice) { ReadNice(nice, scale); })
      .Bool("reverse", scale.reverse)
      .Bool("clamp", scale.clamp)
      .Bool("fit", scale.fit)
      .On("base", [&scale](JsonValue const& base) { ReadBase(base, scale); })
      .On("scheme", [&scale](JsonValue const& scheme) { ReadScheme(scheme, scale); })
      .Refuse("domainRaw", "is not supported; use domain")
      .Refuse("rangeMin", "is not supported; use range")
      .Refuse("rangeMax", "is not supported; use range")
      .Refuse("exponent", "power scales are not supported; use the type sqrt, linear or log")
      .Refuse("constant", "symmetrical log scales are not supported; use the type sqrt, linear or log")
      .Refuse("interpolate", "is not supported; list more colors in range")
      .Number("padding", scale.padding, kNotNegative)
      .Number("paddingInner", scale.paddingInner, kFraction)
      .Number("paddingOuter", scale.paddingOuter, kNotNegative)
      .Refuse("bins", "is not supported; use axis.values or legend.values")
      .Read();
  return scale;
}

}  // namespace ostrel::charts
