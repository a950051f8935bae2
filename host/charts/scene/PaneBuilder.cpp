#include "charts/scene/PaneBuilder.h"

#include <algorithm>
#include <cmath>

#include "charts/guides/AxisGuide.h"
#include "charts/guides/LegendGuide.h"
#include "charts/marks/MarkTable.h"
#include "charts/texts/ComposedTexts.h"

namespace ostrel::charts {
namespace {

// Between the headers of rows and an axis title that reads upwards as they do.
constexpr double kRowHeaderPadding = 14;

bool HasGivenDomain(PanePlan const& pane) {
  return std::ranges::any_of(pane.axes, [](AxisPlan const& axis) {
    ScaleSpec const& spec = axis.scale->encoding.scale;
    return !spec.domain.empty() || spec.domainMin || spec.domainMax;
  });
}

Group BuildLayer(ChartPlan const& plan, PanePlan const& pane, LayerPlan const& layer, Results const& results,
                 TextSetter const& setter, Extent& extent) {
  Group group;
  group.role = "marks";
  std::optional<bool> const clip = layer.spec->mark.clip;
  bool const endsWithMap = plan.map && GetDefinition(layer.spec->mark).endsWithMap;
  if (endsWithMap || clip.value_or(!plan.map && HasGivenDomain(pane))) {
    // What stands on an edge is not cut in halves where the document does not ask for it, but a map goes on
    // there.
    double const margin = clip || endsWithMap ? 0 : layer.mark->GetReach();
    group.clip = Rect{-margin, -margin, plan.width + 2 * margin, plan.height + 2 * margin};
  }
  // Nothing that is clipped takes up room.
  Extent hidden = extent;
  layer.mark->Build({results, setter, group, group.clip ? hidden : extent});
  return group;
}

// How far an axis must keep off the plotting area for others on its side.
double FindOffset(PositionScale const& scale, std::vector<PositionScale const*> const& placed,
                  ChartPlan const& plan, Rect const& used) {
  bool const isFar = IsFarAxis(scale);
  bool const isTaken = std::ranges::any_of(placed, [&](PositionScale const* other) {
    return other->space.isHorizontal == scale.space.isHorizontal && IsFarAxis(*other) == isFar;
  });
  if (!isTaken) return 0;
  double const room = scale.space.isHorizontal ? (isFar ? used.Bottom() - plan.height : -used.y)
                                               : (isFar ? used.Right() - plan.width : -used.x);
  return std::ceil(room + GuideStyle::kAxisGap);
}

// Around a map, and around panes whose document gives them a frame.
void AddFrame(ChartPlan const& plan, Group& plot) {
  ort::core::OrtColor const color =
      plan.view.stroke.value_or(plan.map ? GuideStyle::AxisColor() : ort::core::OrtColor(0));
  double const width = plan.view.strokeWidth.value_or(1);
  if (color.GetA() == 0 || width == 0) return;
  Group frame;
  frame.role = "frame";
  frame.nodes.emplace_back(
      RectMark{{0, 0, plan.width, plan.height}, ort::core::OrtColor(0), {color, width, {}}});
  AddGroup(plot, std::move(frame));
}

void AddGround(ChartPlan const& plan, Group& plot) {
  ort::core::OrtColor const color = plan.view.fill.value_or(ort::core::OrtColor(0));
  if (color.GetA() == 0) return;
  Group ground;
  ground.role = "ground";
  ground.nodes.emplace_back(RectMark{{0, 0, plan.width, plan.height}, color});
  AddGroup(plot, std::move(ground));
}

// Ground, grid, layers and axes of a pane, in this order from back to front.
void BuildPane(ChartPlan const& plan, PanePlan const& pane, bool hasTitles, Results const& results,
               TextSetter const& setter, Group& plot, Extent& extent) {
  std::vector<AxisGuide> axes;
  std::vector<PositionScale const*> placed;
  for (auto const& [scale, hasLabels] : pane.axes) {
    double const offset = FindOffset(*scale, placed, plan, extent.GetRect());
    axes.push_back(BuildAxis(*scale, results, plan.width, plan.height,
                             {.hasLabels = hasLabels, .hasTitle = hasTitles, .offset = offset}, extent));
    if (hasLabels && !scale->encoding.axis.isHidden) placed.push_back(scale);
  }
  AddGround(plan, plot);
  for (AxisGuide& axis : axes) AddGroup(plot, std::move(axis.grid));
  for (LayerPlan const& layer : pane.layers)
    AddGroup(plot, BuildLayer(plan, pane, layer, results, setter, extent));
  for (AxisGuide& axis : axes) AddGroup(plot, std::move(axis.axis));
  AddFrame(plan, plot);
}

// Where the rows or columns of a grid begin, each with room for what its panes have before and behind them.
class Tracks {
 public:
  Tracks(int count, double length, std::optional<double> gap)
      : before_(static_cast<std::size_t>(count)),
        behind_(before_),
        length_(length),
        gap_(gap.value_or(GuideStyle::kPaneGap)) {}

  void AddRoom(int track, double before, double behind) {
    auto const at = static_cast<std::size_t>(track);
    before_[at] = std::max(before_[at], before);
    behind_[at] = std::max(behind_[at], behind);
  }

  std::vector<double> Place() const {
    std::vector<double> starts(1, 0.0);
    for (std::size_t track = 1; track < before_.size(); ++track) {
      double const gap = behind_[track - 1] + gap_ + before_[track];
      starts.push_back(std::ceil(starts.back() + length_ + gap));
    }
    return starts;
  }

 private:
  std::vector<double> before_;
  std::vector<double> behind_;
  double length_;
  double gap_;
};

// The panes of a grid with headers, and axis titles that serve all of them.
class GridBuilder {
 public:
  GridBuilder(ChartPlan const& plan, Results const& results, TextSetter const& setter, Group& plot,
              Extent& extent)
      : plan_(plan), results_(results), setter_(setter), plot_(plot), extent_(extent) {
    headers_.role = "header";
  }

  void Build() {
    BuildAll();
    PlacePanes();
    AddAxisTitles();
    if (plan_.grid.rows) AddRowHeaders(*plan_.grid.rows);
    if (plan_.grid.columns) AddColumnHeaders(*plan_.grid.columns);
    if (plan_.grid.panes) AddTitle(*plan_.grid.panes, true);
    AddGroup(plot_, std::move(headers_));
  }

 private:
  struct BuiltPane {
    PanePlan const* plan;
    Group group;
    Extent extent;
  };

  void BuildAll() {
    for (PanePlan const& pane : plan_.panes) {
      BuiltPane built{&pane, {}, Extent(Rect{0, 0, plan_.width, plan_.height})};
      built.group.role = "pane";
      BuildPane(plan_, pane, false, results_, setter_, built.group, built.extent);
      panes_.push_back(std::move(built));
    }
    AddPaneLegends();
    if (plan_.grid.panes) AddPaneHeaders(plan_.grid.panes->composedLabels);
  }

  // Those of a column of panes stand on one line.
  void AddPaneLegends() {
    std::vector<double> rights(static_cast<std::size_t>(plan_.grid.columnCount), plan_.width);
    auto const rightOf = [&](BuiltPane const& built) -> double& {
      return rights[static_cast<std::size_t>(built.plan->column)];
    };
    for (BuiltPane const& built : panes_)
      rightOf(built) = std::max(rightOf(built), built.extent.GetRect().Right());
    for (std::size_t i = 0; i < panes_.size(); ++i) {
      BuiltPane& built = panes_[i];
      Rect beside = built.extent.GetRect();
      beside.width = rightOf(built) - beside.x;
      AddLegends(plan_, i, beside, results_, setter_, built.group, built.extent);
    }
  }

  // One label of a header, in its place.
  void AddLabel(TitleText const& labels, std::size_t label, Point at, Group& group, Extent& extent) const {
    TextMark look;
    look.at = at;
    look.color = GuideStyle::TextColor();
    ComposedTexts(results_[labels.composed]).Add(group, static_cast<int>(label), labels.style, look, extent);
  }

  // The headers of a row of panes stand on one line.
  void AddPaneHeaders(TitleText const& labels) {
    if (labels.composed < 0) return;
    std::vector<double> tops(static_cast<std::size_t>(plan_.grid.rowCount), 0.0);
    auto const topOf = [&](BuiltPane const& built) -> double& {
      return tops[static_cast<std::size_t>(built.plan->row)];
    };
    for (BuiltPane const& built : panes_) topOf(built) = std::min(topOf(built), built.extent.GetRect().y);
    for (std::size_t i = 0; i < panes_.size(); ++i) {
      Point const at{plan_.width / 2, topOf(panes_[i]) - GuideStyle::kHeaderPadding};
      AddLabel(labels, i, at, panes_[i].group, panes_[i].extent);
    }
  }

  bool HasPane(int row, int column) const {
    return std::ranges::any_of(
        plan_.panes, [&](PanePlan const& pane) { return pane.row == row && pane.column == column; });
  }

  void PlacePanes() {
    Tracks columns(plan_.grid.columnCount, plan_.width, plan_.grid.spacing.columns);
    Tracks rows(plan_.grid.rowCount, plan_.height, plan_.grid.spacing.rows);
    for (BuiltPane const& built : panes_) {
      Rect const room = built.extent.GetRect();
      columns.AddRoom(built.plan->column, -room.x, room.Right() - plan_.width);
      // An axis hangs into the empty place below a pane.
      bool const hasBelow = HasPane(built.plan->row + 1, built.plan->column);
      bool const isLast = built.plan->row + 1 == plan_.grid.rowCount;
      rows.AddRoom(built.plan->row, -room.y, hasBelow || isLast ? room.Bottom() - plan_.height : 0);
    }
    lefts_ = columns.Place();
    tops_ = rows.Place();
    for (BuiltPane& built : panes_) {
      built.group.origin = {Left(built.plan->column), Top(built.plan->row)};
      Rect const room = built.extent.GetRect();
      extent_.Add({room.x + built.group.origin.x, room.y + built.group.origin.y, room.width, room.height});
      AddGroup(plot_, std::move(built.group));
    }
  }

  double Left(int column) const { return lefts_[static_cast<std::size_t>(column)]; }
  double Top(int row) const { return tops_[static_cast<std::size_t>(row)]; }
  double GridWidth() const { return lefts_.back() + plan_.width; }
  double GridHeight() const { return tops_.back() + plan_.height; }

  // Panes have the same fields, so that one title on each side serves all of them.
  void AddAxisTitles() {
    std::vector<PositionScale const*> titled;
    for (AxisPlan const& axis : plan_.panes.front().axes) {
      if (!axis.scale->encoding.axis.isHidden) titled.push_back(axis.scale);
    }
    for (PositionScale const* scale : titled)
      AddAxisTitle(*scale, results_, GridWidth(), GridHeight(), extent_.GetRect(), headers_, extent_);
  }

  void AddRowHeaders(PaneHeader const& header) {
    double const right = extent_.GetRect().x - kRowHeaderPadding;
    for (int row = 0; header.composedLabels.composed >= 0 && row < plan_.grid.rowCount; ++row) {
      AddLabel(header.composedLabels, static_cast<std::size_t>(row), {right, Top(row) + plan_.height / 2},
               headers_, extent_);
    }
    AddTitle(header, false);
  }

  void AddColumnHeaders(PaneHeader const& header) {
    double const bottom = extent_.GetRect().y - GuideStyle::kHeaderPadding;
    for (int column = 0; header.composedLabels.composed >= 0 && column < plan_.grid.columnCount; ++column) {
      AddLabel(header.composedLabels, static_cast<std::size_t>(column),
               {Left(column) + plan_.width / 2, bottom}, headers_, extent_);
    }
    AddTitle(header, true);
  }

  void AddTitle(PaneHeader const& header, bool isAbove) {
    using namespace GuideStyle;
    Rect const used = extent_.GetRect();
    Point const at = isAbove ? Point{GridWidth() / 2, used.y - kHeaderPadding}
                             : Point{used.x - kHeaderPadding, GridHeight() / 2};
    charts::AddTitle(headers_, results_, header.title, at, TextColor(), extent_);
  }

  ChartPlan const& plan_;
  Results const& results_;
  TextSetter const& setter_;
  Group& plot_;
  Extent& extent_;
  std::vector<BuiltPane> panes_;
  std::vector<double> lefts_;
  std::vector<double> tops_;
  Group headers_;
};

}  // namespace

void AddGroup(Group& plot, Group group) {
  if (!group.nodes.empty()) plot.nodes.emplace_back(std::make_unique<Group>(std::move(group)));
}

void BuildPanes(ChartPlan const& plan, Results const& results, TextSetter const& setter, Group& plot,
                Extent& extent) {
  if (plan.grid.IsSingle()) {
    BuildPane(plan, plan.panes.front(), true, results, setter, plot, extent);
  } else {
    GridBuilder(plan, results, setter, plot, extent).Build();
  }
}

}  // namespace ostrel::charts
