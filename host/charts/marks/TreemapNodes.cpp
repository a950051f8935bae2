#include "charts/marks/TreemapNodes.h"

#include <fmt/format.h>

#include "charts/marks/Tooltips.h"

namespace ostrel::charts {
namespace {

namespace factory = ort::core::factory;
using ort::core::StoreTypeInfo;

// Of the outermost level and of all deeper ones, pixels.
constexpr double kHeaderHeights[] = {18, 14};
constexpr double kPaddings[] = {1, 1};

// One level of the hierarchy.
struct Level {
  NodeId groups = -1;     // Int32 column: of each row the node of this level
  NodeId firstRows = -1;  // Int32 column: of each node its first row
  NodeId count = -1;      // Int32 scalar
  NodeId offset = -1;     // Int32 scalar: the nodes of all levels above
};

class TreemapPlanner {
 public:
  explicit TreemapPlanner(MarkContext& context) : context_(context), graph_(context.GetGraph()) {}

  TreemapNodes Plan() {
    TreemapNodes nodes;
    NodeId const color = context_.GetScaled(Channel::Color);
    NodeId const opacity = context_.GetScaled(Channel::Opacity);
    ReadSizes(nodes);
    SelectRows({color, opacity}, nodes);
    MakeLevels();
    NodeId const layout = LayOut();

    Level const& last = levels_.back();
    NodeId const ofLeaves = graph_.Call("leaf nodes", "sequence", {last.offset, graph_.Int(1), last.count});
    NodeId const seen = TakeTiles(layout, "leaf", ofLeaves, nodes.leaves);
    auto const ofLeaf = [&](char const* name, NodeId column) {
      if (column < 0) return NodeId{-1};
      return Filter(name, graph_.Call(name, "take", {SelectSized(column), last.firstRows}), seen);
    };
    nodes.color = ofLeaf("leaf color", color);
    nodes.opacity = ofLeaf("leaf opacity", opacity);
    nodes.tooltips = ofLeaf("leaf tooltip", PlanTooltips(context_));
    if (NodeId const texts = FindTexts(); texts >= 0) nodes.leaves.label = ofLeaf("leaf label", texts);
    PlanGroups(layout, nodes);
    return nodes;
  }

 private:
  void ReadSizes(TreemapNodes& nodes) {
    Encoding const* const size = context_.GetSpec().Find(Channel::Size);
    if (size == nullptr || size->field.empty()) return;
    if (size->type != FieldType::Quantitative) {
      ThrowDocumentError(context_.GetCompilation().document, size->path + ".type",
                         "areas need numbers; use \"quantitative\"");
    }
    sizes_ = FieldNumbers(context_.GetCompilation(), {size, &context_.GetRows(), ""}, "size");
    nodes.hasSize = graph_.Zip("has an area", "greater", sizes_, graph_.Real(0));
  }

  // The rows that the treemap shows.
  void SelectRows(std::vector<NodeId> const& styles, TreemapNodes const& nodes) {
    mask_ = context_.FindPlaced(styles);
    if (nodes.hasSize < 0) return;
    mask_ = mask_ < 0 ? nodes.hasSize : graph_.Zip("shown rows", "and", mask_, nodes.hasSize);
  }

  NodeId Filter(char const* name, NodeId column, NodeId mask) {
    return mask < 0 ? column : graph_.Call(name, "filter", {column, mask});
  }
  NodeId SelectSized(NodeId column) { return Filter("shown rows", column, mask_); }

  std::vector<Encoding const*> ListDetails() const {
    std::vector<Encoding const*> details;
    for (Encoding const& encoding : context_.GetSpec().encodings) {
      if (encoding.channel == Channel::Detail && !encoding.field.empty()) details.push_back(&encoding);
    }
    return details;
  }

  void MakeLevels() {
    std::vector<NodeId> columns;
    for (Encoding const* const detail : ListDetails()) {
      columns.push_back(SelectSized(context_.GetRows().GetTexts(graph_, detail->field).node));
      AddLevel(graph_.Call(fmt::format("nodes of level {}", columns.size()), "groupIndex", columns));
      texts_.push_back(columns.back());
    }
    if (!levels_.empty()) return;
    NodeId const one = graph_.Constant(
        "rows", factory::MakeConstantArray<int>(StoreTypeInfo::Int32, 1, context_.GetRows().GetRowCount()));
    NodeId const count = graph_.Call("row count", "count", {SelectSized(one)});
    AddLevel(graph_.Call("leaves", "sequence", {graph_.Int(0), graph_.Int(1), count}));
  }

  void AddLevel(NodeId groups) {
    Level level;
    level.groups = groups;
    level.firstRows = graph_.Call("first rows", "groupFirstRow", {groups});
    level.count = graph_.Call("node count", "count", {level.firstRows});
    level.offset = levels_.empty()
                       ? graph_.Int(0)
                       : graph_.Zip("nodes above", "add", levels_.back().offset, levels_.back().count);
    levels_.push_back(level);
  }

  NodeId Join(char const* name, std::vector<NodeId> const& columns) {
    return columns.size() == 1 ? columns.front() : graph_.Call(name, "concatenate", columns);
  }

  NodeId LayOut() {
    std::vector<NodeId> parents;
    std::vector<NodeId> sizes;
    for (std::size_t i = 0; i < levels_.size(); ++i) {
      Level const& level = levels_[i];
      parents.push_back(i == 0 ? graph_.Call("no parents", "repeat", {graph_.Int(-1), level.count})
                               : FindParents(levels_[i - 1], level));
      sizes.push_back(i + 1 < levels_.size()
                          ? graph_.Call("no sizes", "repeat", {graph_.Real(0), level.count})
                          : AddUpSizes(level));
    }
    return graph_.Call("treemap", "computeTreemapNodesLayout",
                       {Join("parents", parents), Join("sizes", sizes), graph_.Real(context_.GetWidth()),
                        graph_.Real(context_.GetHeight()), MakeColumn("header heights", kHeaderHeights),
                        MakeColumn("paddings", kPaddings)});
  }

  NodeId FindParents(Level const& outer, Level const& inner) {
    NodeId const places = graph_.Call("places of parents", "take", {outer.groups, inner.firstRows});
    return graph_.Zip("parents", "add", places, outer.offset);
  }

  NodeId AddUpSizes(Level const& leaves) {
    if (sizes_ >= 0) return graph_.Call("leaf sizes", "groupSum", {SelectSized(sizes_), leaves.groups});
    return graph_.Map("leaf sizes", "asReal64", graph_.Call("rows of leaves", "groupCount", {leaves.groups}));
  }

  NodeId MakeColumn(char const* name, std::span<double const> values) {
    auto column = factory::MakeColumnBuilder<double>(StoreTypeInfo::Real64, static_cast<int>(values.size()));
    std::ranges::copy(values, column.GetValues().begin());
    return graph_.Constant(name, column.Finish());
  }

  // The rectangles of some nodes that have an area. Gives a Bool column that tells which.
  NodeId TakeTiles(NodeId layout, std::string const& name, NodeId nodes, TreemapTiles& tiles) {
    auto const take = [&](char const* member) {
      NodeId const column =
          graph_.Call("all " + std::string(member), "member", {layout, graph_.Text(member)});
      return graph_.Call(name + " " + member, "take", {column, nodes});
    };
    tiles = {.left = take("x"), .top = take("y"), .right = take("x1"), .bottom = take("y1")};
    NodeId const seen =
        graph_.Zip(name + " seen", "and", graph_.Zip(name + " has width", "less", tiles.left, tiles.right),
                   graph_.Zip(name + " has height", "less", tiles.top, tiles.bottom));
    for (NodeId* const column : {&tiles.left, &tiles.top, &tiles.right, &tiles.bottom})
      *column = Filter("with an area", *column, seen);
    return seen;
  }

  // What the leaves say: the text of their first row, else their innermost detail.
  NodeId FindTexts() {
    if (Encoding const* const text = context_.GetSpec().Find(Channel::Text)) {
      if (!text->field.empty()) return PlanTexts(context_, *text);
      ThrowDocumentError(context_.GetCompilation().document, text->path,
                         "a constant tells no rectangles apart; use a field");
    }
    std::vector<Encoding const*> const details = ListDetails();
    if (details.empty()) return -1;
    return context_.GetRows().GetTexts(graph_, details.back()->field).node;
  }

  void PlanGroups(NodeId layout, TreemapNodes& nodes) {
    if (levels_.size() < 2) return;
    NodeId const ofGroups =
        graph_.Call("group nodes", "sequence", {graph_.Int(0), graph_.Int(1), levels_.back().offset});
    NodeId const seen = TakeTiles(layout, "group", ofGroups, nodes.groups);
    NodeId const heights =
        graph_.Call("all header heights", "member", {layout, graph_.Text("header_height")});
    nodes.headerHeights =
        Filter("with an area", graph_.Call("group headers", "take", {heights, ofGroups}), seen);
    std::vector<NodeId> labels;
    for (std::size_t i = 0; i + 1 < levels_.size(); ++i)
      labels.push_back(graph_.Call("group labels", "take", {texts_[i], levels_[i].firstRows}));
    nodes.groups.label = Filter("with an area", Join("all group labels", labels), seen);
  }

  MarkContext& context_;
  GraphBuilder& graph_;
  NodeId sizes_ = -1;  // Real64 column
  NodeId mask_ = -1;   // Bool column of the rows that are shown; -1 for all
  std::vector<Level> levels_;
  std::vector<NodeId> texts_;  // String columns of the shown rows, one for each detail
};

}  // namespace

TreemapNodes PlanTreemapNodes(MarkContext& context) { return TreemapPlanner(context).Plan(); }

}  // namespace ostrel::charts
