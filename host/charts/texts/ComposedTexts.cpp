#include "charts/texts/ComposedTexts.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "charts/texts/TextDirection.h"
#include "ostrelsys/OCType.h"
#include "ostreltransforms/VisualKey.h"

namespace ostrel::charts {
namespace {

namespace VisualKey = runtime::VisualKey;

template <class T>
std::span<T const> Read(Value const& composed, OStringCore const& name) {
  return composed->AsNamedValues().Get(name)->AsTypedArray<T>().GetValues();
}

// The box around lines as seen from their place.
Rect FindBox(TextStyle const& style, double width, double height) {
  double const along = GetShare(style.along);
  double const across = GetShare(style.across);
  switch (style.turn) {
    case TextTurn::Clockwise:
      return {(across - 1) * width, -along * height, width, height};
    case TextTurn::Anticlockwise:
      return {-across * width, (along - 1) * height, width, height};
    case TextTurn::None:
      break;
  }
  return {-along * width, -across * height, width, height};
}

// Turns points about the origin and moves them.
class Placing {
 public:
  Placing(Point at, double degrees)
      : at_(at),
        sine_(std::sin(degrees * std::numbers::pi / 180)),
        cosine_(std::cos(degrees * std::numbers::pi / 180)),
        isTurned_(degrees != 0) {}

  Point Place(double x, double y) const {
    if (!isTurned_) return {at_.x + x, at_.y + y};
    return {at_.x + x * cosine_ - y * sine_, at_.y + x * sine_ + y * cosine_};
  }
  Rect Place(Rect const& box) const {
    auto const corner = [&](double x, double y) {
      Point const point = Place(x, y);
      return Rect{point.x, point.y, 0, 0};
    };
    Extent extent(corner(box.x, box.y));
    extent.Add(corner(box.Right(), box.y));
    extent.Add(corner(box.x, box.Bottom()));
    extent.Add(corner(box.Right(), box.Bottom()));
    return extent.GetRect();
  }

 private:
  Point at_;
  double sine_;
  double cosine_;
  bool isTurned_;
};

// Dots stand where letters were left out, also in a line whose direction is not that of the letters: a mark
// of the letters' direction on their other side keeps them there.
std::string KeepDotsBeside(std::string text, bool isLineFromRight, bool readsFromRight) {
  if (isLineFromRight == readsFromRight) return text;
  char const* const mark = readsFromRight ? "\u200F" : "\u200E";
  if (text.starts_with("..")) text.insert(0, mark);
  if (text.ends_with("..")) text += mark;
  return text;
}

}  // namespace

ComposedTexts::ComposedTexts(Value const& composed)
    : offsets_(Read<int>(composed, VisualKey::TextRunOffset)),
      counts_(Read<int>(composed, VisualKey::TextRunCount)),
      widths_(Read<double>(composed, VisualKey::Width)),
      heights_(Read<double>(composed, VisualKey::Height)),
      x_(Read<double>(composed, VisualKey::TextRunXRemote)),
      y_(Read<double>(composed, VisualKey::TextRunYRemote)),
      runs_(Read<ort::core::RIndirectString>(composed, VisualKey::TextRun)),
      styles_(Read<int>(composed, VisualKey::TextStyleID)) {}

std::string ComposedTexts::GetText(int text) const {
  std::string all;
  for (int run = 0; run < counts_[At(text)]; ++run)
    all += (run == 0 ? "" : "\n") + runs_[At(offsets_[At(text)] + run)].Get().toUtf8();
  return all;
}

bool ComposedTexts::IsTelling(int text, OStringCore const& whole) const {
  constexpr std::size_t kLeastLetters = 3;
  constexpr std::size_t kDots = 2;
  if (!HasText(text)) return false;
  // Lines end at blanks, which are not shown.
  auto const strip = [](OStringCore const& from, std::u16string& to) {
    std::ranges::copy_if(from.view(), std::back_inserter(to),
                         [](char16_t unit) { return !OCType::isSpace(unit); });
  };
  std::u16string shown;
  std::u16string all;
  strip(whole, all);
  for (int run = 0; run < counts_[At(text)]; ++run) strip(runs_[At(offsets_[At(text)] + run)].Get(), shown);
  return !shown.empty() && (shown == all || shown.size() >= kLeastLetters + kDots);
}

Rect ComposedTexts::Add(Group& group, int text, std::span<TextStyle const> styles, TextMark const& look,
                        Extent& extent) const {
  Placing const placing(look.at, look.angle);
  TextStyle const& style = styles.size() == 1 ? styles.front() : styles[GetStyle(text)];
  TextMark mark = look;
  // A line is told by the point at which it is aligned, so that it stays there in another font.
  mark.anchor = style.along;
  mark.baseline = TextBaseline::Alphabetic;
  mark.angle += style.turn == TextTurn::None ? 0 : style.turn == TextTurn::Clockwise ? 90 : -90;
  bool const readsFromRight = ReadsFromRight(GetText(text));
  mark.isRightToLeft = style.isRightToLeft.value_or(readsFromRight);
  for (int run = 0; run < counts_[At(text)]; ++run) {
    std::size_t const at = At(offsets_[At(text)] + run);
    bool const isUpright = style.turn != TextTurn::None;
    mark.font = (styles.size() == 1 ? style : styles[At(styles_[at])]).MakeFont();
    mark.at = placing.Place(isUpright ? x_[at] : 0, isUpright ? 0 : y_[at]);
    mark.text = KeepDotsBeside(runs_[at].Get().toUtf8(), mark.isRightToLeft, readsFromRight);
    if (!mark.text.empty()) group.nodes.emplace_back(mark);
  }
  Rect const room = placing.Place(FindBox(style, widths_[At(text)], heights_[At(text)]));
  extent.Add({room.x + group.origin.x, room.y + group.origin.y, room.width, room.height});
  return room;
}

Rect AddTitle(Group& group, Results const& results, TitleText const& title, Point at,
              ort::core::OrtColor color, Extent& extent) {
  if (title.composed < 0) return {at.x, at.y, 0, 0};
  TextMark look;
  look.at = at;
  look.color = color;
  return ComposedTexts(results[title.composed]).Add(group, 0, title.style, look, extent);
}

}  // namespace ostrel::charts
