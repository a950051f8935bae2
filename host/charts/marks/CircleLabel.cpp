#include "charts/marks/CircleLabel.h"

#include <cmath>

namespace ostrel::charts {
namespace {

constexpr double kSmallestFont = 8;
constexpr double kLargestFont = 13;
constexpr double kFontShare = 0.16;  // of the diameter
constexpr double kMargin = 2;        // between the text and the circle, pixels
constexpr std::size_t kMostLines = 4;
// So many characters at least stand before the ellipsis of a line that is cut.
constexpr std::size_t kLeastCharacters = 3;

std::vector<std::string> SplitWords(std::string const& text) {
  std::vector<std::string> words;
  std::size_t begin = 0;
  for (;;) {
    begin = text.find_first_not_of(" \t\n\r", begin);
    if (begin == std::string::npos) return words;
    std::size_t const end = std::min(text.find_first_of(" \t\n\r", begin), text.size());
    words.push_back(text.substr(begin, end - begin));
    begin = end;
  }
}

std::string Join(std::vector<std::string> const& words, std::size_t from, std::size_t to) {
  std::string text;
  for (std::size_t i = from; i < to; ++i) text += (i == from ? "" : " ") + words[i];
  return text;
}

std::size_t CountCharacters(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::count_if(
      text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }));
}

// A text in a circle, in one size of font.
class CircleFitter {
 public:
  CircleFitter(std::vector<std::string> const& words, double diameter, double fontSize,
               TextSetter const& setter)
      : words_(words), setter_(setter), radius_(diameter / 2 - kMargin) {
    label_.font = setter.MakeFont(fontSize);
    TextMark line;
    line.font = label_.font;
    lineHeight_ = setter.MeasureRect(line).height + GuideStyle::kTitleLineGap;
    while (mostLines_ < kMostLines && GetWidth(0, mostLines_ + 1) > 0) ++mostLines_;
  }

  std::optional<CircleLabel> FitWhole() {
    for (std::size_t count = 1; count <= mostLines_; ++count) {
      if (Fill(count, false)) return label_;
    }
    return std::nullopt;
  }

  std::optional<CircleLabel> FitBeginning() {
    for (std::size_t count = mostLines_; count > 0; --count) {
      if (Fill(count, true)) return label_;
    }
    return std::nullopt;
  }

 private:
  // Of a line's rectangle between the circle's sides.
  double GetWidth(std::size_t line, std::size_t count) const {
    double const middle = static_cast<double>(line) - (static_cast<double>(count) - 1) / 2;
    double const height = (std::abs(middle) + 0.5) * lineHeight_;
    return height < radius_ ? 2 * std::sqrt(radius_ * radius_ - height * height) : 0;
  }

  bool HasRoom(std::string const& text, double width) const {
    return setter_.MeasureWidth(text, label_.font) <= width;
  }

  // As many words as have room on each of the lines, all of which get some; the last line may be cut.
  bool Fill(std::size_t count, bool isCut) {
    label_.lines.clear();
    std::size_t next = 0;
    for (std::size_t line = 0; line < count; ++line) {
      double const width = GetWidth(line, count);
      std::size_t end = next;
      while (end < words_.size() && HasRoom(Join(words_, next, end + 1), width)) ++end;
      if (isCut && line + 1 == count && end < words_.size()) return Cut(next, width);
      if (end == next) return false;
      label_.lines.push_back(Join(words_, next, end));
      next = end;
    }
    return next == words_.size();
  }

  // Ends the text with as much of the words left as a line has room for.
  bool Cut(std::size_t next, double width) {
    std::string line = setter_.Limit(Join(words_, next, words_.size()), label_.font, width);
    if (CountCharacters(line) <= kLeastCharacters || !HasRoom(line, width)) return false;
    label_.lines.push_back(std::move(line));
    return true;
  }

  std::vector<std::string> const& words_;
  TextSetter const& setter_;
  double radius_;
  double lineHeight_;
  std::size_t mostLines_ = 0;
  CircleLabel label_;
};

}  // namespace

std::optional<CircleLabel> FitIntoCircle(std::string const& text, double diameter, TextSetter const& setter) {
  std::vector<std::string> const words = SplitWords(text);
  if (words.empty()) return std::nullopt;
  for (double size = std::min(diameter * kFontShare, kLargestFont); size > kSmallestFont; size -= 1) {
    if (auto label = CircleFitter(words, diameter, size, setter).FitWhole()) return label;
  }
  CircleFitter smallest(words, diameter, kSmallestFont, setter);
  auto label = smallest.FitWhole();
  return label ? label : smallest.FitBeginning();
}

}  // namespace ostrel::charts
