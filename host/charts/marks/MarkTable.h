#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "charts/document/ChartDocument.h"

namespace ostrel::charts {

class MarkPlan;
class MarkContext;
struct RowReach;

/// What a legend shows beside its labels.
enum class LegendSample { Symbol, Line };

/// A mark: what documents may say of it, and how it is drawn.
struct MarkDefinition {
  char const* name;
  /// What its object may say beside type, and what all marks have: color, opacity, clip.
  std::vector<char const*> properties;
  std::vector<Channel> channels;
  /// Makes the nodes that a layer of this mark needs beyond those of its scales.
  std::unique_ptr<MarkPlan> (*plan)(MarkContext& context);
  /// What the mark draws around its rows' places on x or y; null where it may reach out of the pane.
  RowReach (*reach)(MarkContext& context, Channel channel) = nullptr;

  /// It draws outlines of a map: its rows are points of LoadShapes instead of those of a table.
  bool isMap = false;
  /// It fills parts of a map between two longitudes and two latitudes.
  bool coversMap = false;
  /// Whether it is cut off where a map ends.
  bool endsWithMap = true;
  /// Whether rows of one place stand on one another where the document does not say.
  bool isStacked = false;
  /// Whether a series' rows are joined, so that stacked series need a row at every place.
  bool joinsRows = false;
  /// The share of a discrete value's step that is left free between marks; nullopt: marks are points.
  std::optional<double> bandGap = std::nullopt;
  /// Pixels across a place on a continuous scale that are no interval; such a scale keeps them free at its
  /// ends.
  std::optional<double> thickness = std::nullopt;
  /// Whether intervals, bins and units of time, are drawn from end to end, and how.
  bool coversIntervals = false;
  bool isFilled = false;
  std::uint32_t color = 0xFF4C78A8;
  double opacity = 1;
  double strokeWidth = 2;
  SymbolShape shape = SymbolShape::Circle;
  LegendSample sample = LegendSample::Symbol;
  /// What becomes of a row that a scale can't place.
  char const* gap = "not drawn";
  /// The property that a constant size gives where the mark has no channel size.
  std::optional<double> MarkSpec::*constantSize = nullptr;
  /// Channel size has a scale and a legend; otherwise the mark reads the field's numbers.
  bool scalesSize = true;
};

/// The properties of marks with an inside and an outline, and further ones.
std::vector<char const*> WithPaints(std::vector<char const*> further);

/// All marks, in the order in which messages list them.
std::span<MarkDefinition const> GetMarkTable();
MarkDefinition const& GetDefinition(MarkSpec const& mark);

}  // namespace ostrel::charts
