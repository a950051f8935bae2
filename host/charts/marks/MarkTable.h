#pragma once

#include <memory>
#include <span>
#include <vector>

#include "charts/document/ChartDocument.h"

namespace ostrel::charts {

class MarkPlan;
class MarkContext;

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

  /// It draws outlines of a map: its rows are points of LoadShapes instead of those of a table.
  bool isMap = false;
  bool isFilled = false;
  double opacity = 1;
  SymbolShape shape = SymbolShape::Circle;
  LegendSample sample = LegendSample::Symbol;
  /// What becomes of a row that a scale can't place.
  char const* gap = "not drawn";
  /// Channel size has a scale and a legend; otherwise the mark reads the field's numbers.
  bool scalesSize = true;
};

/// All marks, in the order in which messages list them.
std::span<MarkDefinition const> GetMarkTable();
MarkDefinition const& GetDefinition(MarkSpec const& mark);

}  // namespace ostrel::charts
