#include <fmt/format.h>

#include <cmath>

#include "charts/marks/Marks.h"
#include "charts/marks/TextColor.h"
#include "charts/marks/TreemapNodes.h"
#include "charts/texts/ComposedTexts.h"

// The mark treemap: nested rectangles whose areas are in proportion to the sizes of rows, with a labelled
// strip at the top of each group.
namespace ostrel::charts {
namespace {

using ort::core::OrtColor;
using ort::core::RIndirectString;

OrtColor const kGroupColor(static_cast<int>(0xFFE6E6E6));
OrtColor const kBorderColor(static_cast<int>(0xFFFFFFFF));
constexpr double kBorderWidth = 1;
constexpr double kPadding = 4;  // between a tile's sides and its label, pixels
constexpr double kPaddingDown = 3;
constexpr int kMostLines = 4;
constexpr TextStyle kHeaderStyle{.fontSize = 11, .isBold = true, .across = TextAnchor::Middle};
constexpr TextStyle kLeafStyle{.fontSize = GuideStyle::kLabelFontSize};

// The columns of evaluated tiles.
class Tiles {
 public:
  Tiles(TreemapTiles const& tiles, Results const& results)
      : left_(Read(results, tiles.left)),
        top_(Read(results, tiles.top)),
        right_(Read(results, tiles.right)),
        bottom_(Read(results, tiles.bottom)),
        labels_(tiles.label < 0 ? nullptr : &results[tiles.label]->AsTypedArray<RIndirectString>()) {}

  int GetCount() const { return static_cast<int>(left_.size()); }
  Rect GetRect(int row) const {
    auto const at = static_cast<std::size_t>(row);
    return {left_[at], top_[at], right_[at] - left_[at], bottom_[at] - top_[at]};
  }
  // Empty where there is none.
  OStringCore GetLabel(int row) const {
    return labels_ == nullptr || labels_->IsSpecial(row) ? OStringCore() : labels_->GetElement(row).Get();
  }

 private:
  static std::span<double const> Read(Results const& results, NodeId node) {
    return results[node]->AsTypedArray<double>().GetValues();
  }

  std::span<double const> left_, top_, right_, bottom_;
  ort::core::ITypedArray<RIndirectString> const* labels_;
};

RectMarks MakeRects(TreemapTiles const& tiles, Results const& results) {
  RectMarks rects;
  rects.x = results[tiles.left];
  rects.x2 = results[tiles.right];
  rects.y = results[tiles.top];
  rects.y2 = results[tiles.bottom];
  return rects;
}

class TreemapPlan final : public MarkPlan {
 public:
  explicit TreemapPlan(MarkContext& context)
      : nodes_(PlanTreemapNodes(context)),
        look_(context.GetLook()),
        rowCount_(context.GetRows().GetRowCount()) {
    MarkSpec const& mark = context.GetMark();
    border_.other = mark.stroke.empty() ? kBorderColor : context.GetLook().paint.other;
    border_.strokeWidth = mark.strokeWidth.value_or(kBorderWidth);
    Encoding const* const text = context.GetSpec().Find(Channel::Text);
    hasNumbers_ = text != nullptr && text->type == FieldType::Quantitative;
    if (Encoding const* const size = context.GetSpec().Find(Channel::Size)) sizeField_ = size->field;
    for (NodeId const node : ListNodes()) {
      if (node >= 0) context.GetGraph().Keep(node);
    }
    PlanLabels(context.GetGraph());
  }

  void Build(MarkScene const& scene) const override {
    Results const& results = scene.results;
    if (nodes_.groups.left >= 0) {
      RectMarks groups = MakeRects(nodes_.groups, results);
      groups.color = {kGroupColor, nullptr};
      groups.opacity = {1, nullptr};
      groups.paint = border_;
      scene.group.nodes.emplace_back(std::move(groups));
    }
    RectMarks leaves = MakeRects(nodes_.leaves, results);
    leaves.color = {look_.color, nodes_.color < 0 ? nullptr : results[nodes_.color]};
    leaves.opacity = {look_.opacity, nodes_.opacity < 0 ? nullptr : results[nodes_.opacity]};
    leaves.paint = border_;
    if (nodes_.tooltips >= 0) leaves.tooltips = results[nodes_.tooltips];
    scene.group.nodes.emplace_back(std::move(leaves));
    if (headers_ >= 0) LabelGroups(scene);
    if (leafLabels_ >= 0) LabelLeaves(scene);
  }

  void DescribeLeftOut(Results const& results, std::vector<std::string>& sentences) const override {
    if (nodes_.hasSize < 0) return;
    auto const& hasSize = results[nodes_.hasSize]->AsTypedArray<bool>();
    int missing = 0;
    for (int row = 0; row < hasSize.GetCount(); ++row) {
      if (hasSize.IsSpecial(row) || !hasSize.GetElement(row)) ++missing;
    }
    if (missing == 0) return;
    sentences.push_back(fmt::format("{} of {} rows have no number above 0 in '{}' for an area; not drawn",
                                    missing, rowCount_, sizeField_));
  }

 private:
  std::vector<NodeId> ListNodes() const {
    std::vector<NodeId> nodes = {nodes_.headerHeights, nodes_.hasSize, nodes_.color, nodes_.opacity,
                                 nodes_.tooltips};
    for (TreemapTiles const* const tiles : {&nodes_.leaves, &nodes_.groups}) {
      for (NodeId const node : {tiles->left, tiles->top, tiles->right, tiles->bottom, tiles->label})
        nodes.push_back(node);
    }
    return nodes;
  }

  // What the tiles say, within their padding and on as many lines as they have room for.
  NodeId ComposeLabels(GraphBuilder& graph, std::string const& name, TreemapTiles const& tiles,
                       NodeId heights, TextStyle const& style, int mostLines,
                       runtime::TextFitStyle fit) const {
    auto const reduce = [&](char const* what, NodeId length, double padding) {
      return graph.Zip(name + what, "subtract", length, graph.Real(2 * padding));
    };
    auto const measure = [&](char const* what, NodeId from, NodeId to) {
      return graph.Zip(name + what, "subtract", to, from);
    };
    if (heights < 0)
      heights = reduce(" room down", measure(" heights", tiles.top, tiles.bottom), kPaddingDown);
    NodeId const widths = reduce(" room across", measure(" widths", tiles.left, tiles.right), kPadding);
    return graph.Keep(
        ComposeInShapes(graph, name, tiles.label, {widths, heights}, {style}, mostLines, 1, fit));
  }

  void PlanLabels(GraphBuilder& graph) {
    if (nodes_.groups.label >= 0) {
      headers_ = ComposeLabels(graph, "headers", nodes_.groups, nodes_.headerHeights, kHeaderStyle, 1,
                               runtime::DotsRight);
    }
    if (nodes_.leaves.label >= 0) {
      leafLabels_ = ComposeLabels(graph, "labels of leaves", nodes_.leaves, -1, kLeafStyle, kMostLines,
                                  hasNumbers_ ? runtime::HideIfOverflow : runtime::DotsRight);
    }
  }

  void LabelGroups(MarkScene const& scene) const {
    Tiles const groups(nodes_.groups, scene.results);
    ComposedTexts const labels(scene.results[headers_]);
    auto const& heights = scene.results[nodes_.headerHeights]->AsTypedArray<double>();
    TextMark look;
    look.color = GuideStyle::TextColor();
    for (int row = 0; row < groups.GetCount(); ++row) {
      Rect const tile = groups.GetRect(row);
      look.at = {tile.x + kPadding, tile.y + heights.GetElement(row) / 2};
      if (labels.IsTelling(row, groups.GetLabel(row)))
        labels.Add(scene.group, row, kHeaderStyle, look, scene.extent);
    }
  }

  void LabelLeaves(MarkScene const& scene) const {
    Tiles const leaves(nodes_.leaves, scene.results);
    ComposedTexts const labels(scene.results[leafLabels_]);
    auto const* const colors =
        nodes_.color < 0 ? nullptr : &scene.results[nodes_.color]->AsTypedArray<OrtColor>();
    TextMark look;
    for (int row = 0; row < leaves.GetCount(); ++row) {
      Rect const tile = leaves.GetRect(row);
      look.at = {tile.x + kPadding, tile.y + kPaddingDown};
      look.color = ChooseTextColor(colors == nullptr ? look_.color : colors->GetElement(row));
      if (labels.IsTelling(row, leaves.GetLabel(row)))
        labels.Add(scene.group, row, kLeafStyle, look, scene.extent);
    }
  }

  TreemapNodes nodes_;
  MarkLook look_;
  MarkPaint border_;
  int rowCount_;
  std::string sizeField_;
  bool hasNumbers_ = false;  // the leaves' labels, which are not shortened
  NodeId headers_ = -1;      // composed texts; -1 without
  NodeId leafLabels_ = -1;
};

std::unique_ptr<MarkPlan> Plan(MarkContext& context) { return std::make_unique<TreemapPlan>(context); }

}  // namespace

MarkDefinition DefineTreemap() {
  return {.name = "treemap",
          .properties = {"fill", "stroke", "strokeWidth"},
          .channels = {Channel::Size, Channel::Color, Channel::Opacity, Channel::Detail, Channel::Text,
                       Channel::Tooltip},
          .plan = Plan,
          .isFilled = true,
          .shape = SymbolShape::Square,
          .scalesSize = false};
}

}  // namespace ostrel::charts
