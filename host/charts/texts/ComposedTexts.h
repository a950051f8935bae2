#pragma once

#include <span>

#include "charts/guides/GuideStyle.h"
#include "charts/texts/TextNodes.h"

namespace ostrel::charts {

/// The value of a node of composeText.
class ComposedTexts {
 public:
  explicit ComposedTexts(Value const& composed);

  int GetCount() const { return static_cast<int>(counts_.size()); }
  /// Whether anything of a text is shown.
  bool HasText(int text) const { return counts_[At(text)] > 0; }
  /// Of the box around a text's lines, as they are turned.
  double GetWidth(int text) const { return widths_[At(text)]; }
  double GetHeight(int text) const { return heights_[At(text)]; }
  /// The style of a text that is shown: a row of the style table.
  std::size_t GetStyle(int text) const { return At(styles_[At(offsets_[At(text)])]); }
  /// What is shown of a text, its lines one after the other.
  std::string GetText(int text) const;
  /// Whether something is shown of the given text that tells what it is: all of it, or three letters at least
  /// before what is left out.
  bool IsTelling(int text, OStringCore const& whole) const;

  /// Adds a text's lines, one run each, to a group, with the point that the style names at `look.at`, in
  /// look's colour and slanted by its angle; and its room, moved by the group's origin, to the extent. Gives
  /// that room in the group's coordinates.
  Rect Add(Group& group, int text, TextStyle const& style, TextMark const& look, Extent& extent) const {
    return Add(group, text, std::span(&style, 1), look, extent);
  }
  /// The same with a style for each run: a row of the style table. They differ in their fonts alone.
  Rect Add(Group& group, int text, std::span<TextStyle const> styles, TextMark const& look,
           Extent& extent) const;

 private:
  static std::size_t At(int row) { return static_cast<std::size_t>(row); }

  std::span<int const> offsets_, counts_;     // of texts
  std::span<double const> widths_, heights_;  // of texts
  std::span<double const> x_, y_;             // of runs, from their text's place
  std::span<ort::core::RIndirectString const> runs_;
  std::span<int const> styles_;  // of runs
};

/// Adds a title, if there is one, at its place; gives the room it takes as ComposedTexts does.
Rect AddTitle(Group& group, Results const& results, TitleText const& title, Point at,
              ort::core::OrtColor color, Extent& extent);

}  // namespace ostrel::charts
