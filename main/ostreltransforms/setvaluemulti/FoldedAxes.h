#pragma once

#include <optional>
#include <span>

// Several measures folded onto one pane: where their zeros can meet, as plain numbers.
namespace OstrelTransforms::FoldedAxes {

/// How far an axis reaches from its zero to the pane's start and end, in its own units; neither is below 0.
struct Reach {
  double before;
  double after;
  bool fixesBefore = false;  // this side can't become longer
  bool fixesAfter = false;

  /// Where zero stands: 0 at the pane's start, 1 at its end.
  double GetZero() const { return before / (before + after); }
};

/// The one position for the zeros of all axes at which none is cut and the least room is wasted: the product
/// of the shares of the pane that the axes' own reaches keep is greatest. Of two axes it is the position
/// between both zeros that is nearest to the middle, so that one of the axes stays as it is unless their
/// zeros lie to both sides of the middle. Nothing where the fixed sides, or an axis that would need
/// a pane without end, allow no such position; nothing for no axes. Every axis has a reach above 0.
std::optional<double> FindCommonZero(std::span<Reach const> axes);

/// The axis made longer so that its zero stands at a position that FindCommonZero gave.
Reach MoveZero(Reach const& axis, double zero);

}  // namespace OstrelTransforms::FoldedAxes
