#pragma once

#include "charts/graph/GraphBuilder.h"
#include "charts/guides/GuideStyle.h"
#include "charts/scene/Scene.h"

namespace ostrel::charts {

/// What an evaluated mark is drawn with and into: a group in the coordinates of its pane.
struct MarkScene {
  Results const& results;
  TextSetter const& setter;
  Group& group;
  Extent& extent;  ///< grows with what reaches beyond the pane
};

/// The nodes of one layer's marks, and how their values become shapes.
class MarkPlan {
 public:
  MarkPlan() = default;
  MarkPlan(MarkPlan const&) = delete;
  MarkPlan& operator=(MarkPlan const&) = delete;
  virtual ~MarkPlan() = default;

  virtual void Build(MarkScene const& scene) const = 0;
  /// How far a mark reaches beyond its place, in pixels.
  virtual double GetReach() const { return 0; }
  /// Adds sentences for rows that the mark itself, and no scale, could not draw, or not well.
  virtual void DescribeLeftOut(Results const&, std::vector<std::string>&) const {}
};

}  // namespace ostrel::charts
