#include <fmt/format.h>

#include "charts/document/Readers.h"
#include "services/ValueConverter.h"

// What colours, dashes, weights and lengths say of how a chart looks.
namespace ostrel::charts {

namespace {

constexpr NumberRange kPadding{.minimum = 0, .maximum = 20'000};
constexpr NumberRange kTitleLengths{.minimum = 0, .maximum = 1'000};
constexpr NumberRange kTitleSizes{.minimum = 0, .maximum = 1'000, .isAboveMinimum = true};
constexpr NamedValue<TextPlace> kAnchors[] = {
    {"start", TextPlace::Start}, {"middle", TextPlace::Middle}, {"end", TextPlace::End}};

}  // namespace

ort::core::OrtColor ReadColorOrNone(JsonValue const& value) {
  if (value.IsNull()) return ort::core::OrtColor(0);
  std::string const text = value.ReadText();
  if (auto const color = services::ParseColor(OStringCore::fromUtf8(text).view())) return *color;
  value.Fail(fmt::format("\"{}\" is no colour", text));
}

std::vector<double> ReadDashes(JsonValue const& value) {
  std::vector<double> dashes;
  for (auto const& length : value.ReadArray()) dashes.push_back(length.ReadNumber(kNotNegative));
  return dashes;
}

bool ReadFontWeight(JsonValue const& value) {
  constexpr double kLeastBold = 600;
  constexpr NamedValue<bool> kWeights[] = {{"normal", false}, {"bold", true}};
  if (value.Get().is_number()) return value.ReadNumber(kPositive) >= kLeastBold;
  return value.ReadOneOf(std::span<NamedValue<bool> const>(kWeights));
}

PaddingSpec ReadPadding(JsonValue const& value) {
  if (!value.IsObject()) {
    double const all = value.ReadNumber(kPadding);
    return {all, all, all, all};
  }
  PaddingSpec padding;
  auto const read = [](double& side) {
    return [&side](JsonValue const& length) { side = length.ReadNumber(kPadding); };
  };
  JsonObjectReader(value)
      .On("left", read(padding.left))
      .On("top", read(padding.top))
      .On("right", read(padding.right))
      .On("bottom", read(padding.bottom))
      .Read();
  return padding;
}

void AddTitleLook(JsonObjectReader& reader, ChartTitleSpec& title) {
  auto const color = [](std::optional<ort::core::OrtColor>& target) {
    return [&target](JsonValue const& value) { target = ReadColorOrNone(value); };
  };
  auto const weight = [](std::optional<bool>& target) {
    return [&target](JsonValue const& value) { target = ReadFontWeight(value); };
  };
  reader.OneOf("anchor", title.anchor, std::span<NamedValue<TextPlace> const>(kAnchors))
      .Number("offset", title.offset, kTitleLengths)
      .Number("fontSize", title.fontSize, kTitleSizes)
      .On("fontWeight", weight(title.isBold))
      .On("color", color(title.color))
      .Number("subtitleFontSize", title.subtitleFontSize, kTitleSizes)
      .On("subtitleFontWeight", weight(title.isSubtitleBold))
      .On("subtitleColor", color(title.subtitleColor))
      .Number("subtitlePadding", title.subtitlePadding, kTitleLengths)
      .Refuse("orient", "is not supported; a title stands above its chart")
      .Refuse("frame", "is not supported; a title stands along the panes")
      .Refuse("font", "is not supported; all texts of a chart have one font");
}

}  // namespace ostrel::charts
