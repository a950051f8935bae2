#include "services/ValueConverter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>

#include "ostrelrtcore/Factory.h"
#include "ostrelrtcore/OrtRuntimeException.h"
#include "services/NamedColors.h"

namespace ostrel::services {

using namespace ort::core;

namespace {

constexpr std::string_view kBlanks = " \t\r\n\f";

// Lower case and without outer blanks; empty for a text with other than ASCII characters.
std::string Normalize(std::u16string_view text) {
  std::string result;
  for (char16_t const unit : text) {
    if (unit >= 128) return {};
    auto const c = static_cast<char>(unit);
    result += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  auto const first = result.find_first_not_of(kBlanks);
  if (first == std::string::npos) return {};
  return result.substr(first, result.find_last_not_of(kBlanks) - first + 1);
}

OrtColor MakeColor(std::array<double, 4> const& rgba) {
  OrtColor color;
  auto const channel = [](double value) {
    return static_cast<int>(std::lround(std::clamp(value, 0.0, 255.0)));
  };
  color.SetR(channel(rgba[0]));
  color.SetG(channel(rgba[1]));
  color.SetB(channel(rgba[2]));
  color.SetA(channel(rgba[3]));
  return color;
}

std::optional<OrtColor> ParseHex(std::string_view digits) {
  bool const brief = digits.size() == 3 || digits.size() == 4;
  if (!brief && digits.size() != 6 && digits.size() != 8) return std::nullopt;
  std::array<double, 4> rgba{0, 0, 0, 255};
  std::size_t const step = brief ? 1 : 2;
  for (std::size_t at = 0; at < digits.size(); at += step) {
    unsigned value = 0;
    char const* const last = digits.data() + at + step;
    auto const read = std::from_chars(digits.data() + at, last, value, 16);
    if (read.ec != std::errc() || read.ptr != last) return std::nullopt;
    rgba[at / step] = brief ? value * 17 : value;
  }
  return MakeColor(rgba);
}

struct Argument {
  double number = 0;
  std::string_view unit;
};

std::optional<Argument> ParseArgument(std::string_view text) {
  Argument argument;
  if (!text.empty() && text[0] == '+') text.remove_prefix(1);
  char const* const end = text.data() + text.size();
  auto const read = std::from_chars(text.data(), end, argument.number, std::chars_format::fixed);
  if (read.ec != std::errc() || !std::isfinite(argument.number)) return std::nullopt;
  argument.unit = text.substr(static_cast<std::size_t>(read.ptr - text.data()));
  return argument;
}

// The arguments between parentheses; 3 or 4, parted by commas, or by blanks and a slash before the fourth.
struct Arguments {
  std::array<Argument, 4> values;
  std::size_t count = 0;
};

std::optional<Arguments> ParseArguments(std::string_view list) {
  bool const commas = list.find(',') != list.npos;
  std::string_view const separators = commas ? ",;" : " /\t\r\n\f";
  Arguments result;
  auto const parts = std::count(list.begin(), list.end(), commas ? ',' : '/');
  if (commas ? parts > 3 : parts > 1) return std::nullopt;
  while (!list.empty()) {
    auto const end = std::min(list.find_first_of(separators), list.size());
    std::string_view part = list.substr(0, end);
    list.remove_prefix(std::min(end + 1, list.size()));
    auto const first = part.find_first_not_of(kBlanks);
    if (first == part.npos) {
      if (commas) return std::nullopt;
      continue;
    }
    part = part.substr(first, part.find_last_not_of(kBlanks) - first + 1);
    auto const argument = ParseArgument(part);
    if (!argument || result.count == result.values.size()) return std::nullopt;
    result.values[result.count++] = *argument;
  }
  if (result.count < 3) return std::nullopt;
  return result;
}

std::optional<double> ToPart(Argument const& argument, double whole) {
  if (argument.unit == "%") return argument.number / 100 * whole;
  if (!argument.unit.empty()) return std::nullopt;
  return argument.number;
}

std::optional<OrtColor> FromRgb(Arguments const& arguments, double alpha) {
  std::array<double, 4> rgba{0, 0, 0, alpha};
  for (std::size_t i = 0; i < 3; ++i) {
    auto const part = ToPart(arguments.values[i], 255);
    if (!part) return std::nullopt;
    rgba[i] = *part;
  }
  return MakeColor(rgba);
}

// CSS Color Module Level 4, section 7.1, "Converting HSL Colors to sRGB".
std::optional<OrtColor> FromHsl(Arguments const& arguments, double alpha) {
  auto const& [hue, saturation, lightness, last] = arguments.values;
  bool const degrees = hue.unit.empty() || hue.unit == "deg";
  if (!degrees || saturation.unit != "%" || lightness.unit != "%") return std::nullopt;
  double const s = std::clamp(saturation.number / 100, 0.0, 1.0);
  double const l = std::clamp(lightness.number / 100, 0.0, 1.0);
  double const turn = std::fmod(std::fmod(hue.number, 360) + 360, 360) / 30;
  double const reach = s * std::min(l, 1 - l);
  auto const channel = [&](double offset) {
    double const k = std::fmod(offset + turn, 12);
    return 255 * (l - reach * std::clamp(std::min(k - 3, 9 - k), -1.0, 1.0));
  };
  return MakeColor({channel(0), channel(8), channel(4), alpha});
}

std::optional<OrtColor> ParseFunction(std::string_view name, std::string_view list) {
  bool const rgb = name == "rgb" || name == "rgba";
  if (!rgb && name != "hsl" && name != "hsla") return std::nullopt;
  auto const arguments = ParseArguments(list);
  if (!arguments) return std::nullopt;
  double alpha = 255;
  if (arguments->count == 4) {
    auto const part = ToPart(arguments->values[3], 1);
    if (!part) return std::nullopt;
    alpha = 255 * *part;
  }
  return rgb ? FromRgb(*arguments, alpha) : FromHsl(*arguments, alpha);
}

}  // namespace

std::optional<OrtColor> ParseColor(std::u16string_view text) {
  std::string const color = Normalize(text);
  if (color.empty()) return std::nullopt;
  if (color[0] == '#') return ParseHex(std::string_view(color).substr(1));
  if (color == "transparent") return OrtColor();
  if (auto const rgb = FindNamedColor(color)) return OrtColor(static_cast<int>(0xFF000000U | *rgb));
  auto const open = color.find('(');
  if (open == color.npos || color.back() != ')') return std::nullopt;
  std::string_view const all = color;
  return ParseFunction(all.substr(0, open), all.substr(open + 1, all.size() - open - 2));
}

Value ConvertStyleValue(Value const& value, TextMeasurer const& measurer) {
  StoreType const type = value && !value->IsSpecial() ? value->GetStoreType() : StoreType::Empty;
  if (type == StoreType::Color) return value;
  if (type == StoreType::Tuple) return measurer.ResolveFont(value);
  if (type != StoreType::String) {
    throw OrtRuntimeException(OrtError_WrongValueKind,
                              u"a style value is a colour, a colour's name or a font");
  }
  OStringCore const text = value->GetString();
  if (auto const color = ParseColor(text.view())) return factory::MakeColor(*color);
  OStringCore message(u"\"");
  throw OrtRuntimeException(OrtError_WrongValueKind,
                            message.append(text).append(std::u16string_view(u"\" is no colour")));
}

}  // namespace ostrel::services
