#include "charts/marks/TileLabel.h"

#include <cmath>

namespace ostrel::charts {
namespace {

using ort::core::OrtColor;

constexpr double kPadding = 4;  // beside a label, pixels
// Fewer letters before an ellipsis tell nothing.
constexpr int kLeastLetters = 3;

int CountLetters(std::string const& text) {
  auto const beginsLetter = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; };
  return static_cast<int>(std::count_if(text.begin(), text.end(), beginsLetter));
}

// The relative luminance of a part of a colour, from 0 to 255.
double Linearise(int part) {
  double const share = part / 255.0;
  return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

}  // namespace

void AddTileLabel(MarkScene const& scene, std::string text, Rect const& strip, TextMark const& style,
                  bool isNumber) {
  for (char& byte : text) {
    if (byte == '\n' || byte == '\r') byte = ' ';
  }
  double const room = strip.width - 2 * kPadding;
  if (text.empty() || !(room > 0)) return;
  TextMark label = style;
  label.text = scene.setter.Limit(text, style.font, room);
  if (label.text != text && (isNumber || CountLetters(label.text) <= kLeastLetters)) return;
  label.at = {strip.x + kPadding, strip.y + strip.height / 2};
  label.baseline = TextBaseline::Middle;
  Rect const taken = scene.setter.MeasureRect(label);
  if (taken.width > room || taken.height > strip.height) return;
  Extent inside(strip);
  scene.setter.Add(scene.group, label, inside);
}

OrtColor ChooseTextColor(OrtColor ground) {
  auto const value = static_cast<unsigned>(ground.GetValue());
  auto const part = [value](int shift) { return Linearise(static_cast<int>((value >> shift) & 0xFFU)); };
  double const luminance = 0.2126 * part(16) + 0.7152 * part(8) + 0.0722 * part(0);
  constexpr double kFlare = 0.05;
  bool const isDark = (1 + kFlare) / (luminance + kFlare) > (luminance + kFlare) / kFlare;
  return OrtColor(static_cast<int>(isDark ? 0xFFFFFFFF : 0xFF222222));
}

}  // namespace ostrel::charts
