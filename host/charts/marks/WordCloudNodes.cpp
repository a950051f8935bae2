#include "charts/marks/WordCloudNodes.h"

#include <fmt/format.h>

#include <cmath>

namespace ostrel::charts {
namespace {

namespace factory = ort::core::factory;
using ort::core::StoreTypeInfo;

// Widths are in proportion to the font, so that one measured size serves all.
constexpr double kMeasuredSize = 100;
constexpr double kGap = 2;  // between two words, pixels
constexpr double kShrinking = 0.96;
// The words of the last attempt are a quarter as large as those of the first.
constexpr int kMostAttempts = 35;

// The cells of an attempt, in pixels.
struct Attempt {
  NodeId scale = -1;  // the font size of the largest word
  NodeId x = -1;
  NodeId y = -1;
  NodeId width = -1;
  NodeId height = -1;
};

class WordCloudPlanner {
 public:
  explicit WordCloudPlanner(MarkContext& context) : context_(context), graph_(context.GetGraph()) {}

  WordCloudNodes Plan() {
    SelectRows();
    if (CountWords() == 0) return nodes_;
    MeasureCells();
    Attempt attempt = LayOut(0);
    for (int i = 1; i < kMostAttempts && !AllShown(attempt); ++i) attempt = LayOut(i);
    Take(attempt);
    return nodes_;
  }

 private:
  void SelectRows() {
    LayerSpec const& spec = context_.GetSpec();
    NodeId const text = context_.GetRows().GetTexts(graph_, spec.Find(Channel::Text)->field).node;
    NodeId const color = context_.GetScaled(Channel::Color);
    NodeId mask = context_.FindPlaced({text, color});
    Encoding const* const size = spec.Find(Channel::Size);
    NodeId numbers = -1;
    if (size != nullptr && !size->field.empty()) {
      numbers = FieldNumbers(context_.GetCompilation(), {size, &context_.GetRows(), ""}, "size");
      nodes_.hasSize = graph_.Zip("has a size", "greater", numbers, graph_.Real(0));
      mask = graph_.Zip("shown rows", "and", mask, nodes_.hasSize);
    }
    auto const select = [&](char const* name, NodeId column) {
      return column < 0 ? -1 : graph_.Call(name, "filter", {column, mask});
    };
    sizes_ = select("sizes", numbers);
    nodes_.words = select("words", text);
    nodes_.color = select("word colors", color);
    if (sizes_ < 0) return;
    NodeId const order = graph_.Call("largest first", "sortIndices", {sizes_, graph_.Bool(true)});
    for (NodeId* const column : {&sizes_, &nodes_.words, &nodes_.color}) {
      if (*column >= 0) *column = graph_.Call("sorted words", "take", {*column, order});
    }
  }

  int CountWords() { return count_ = graph_.Peek(nodes_.words)->AsColumn().GetCount(); }

  NodeId Repeat(char const* name, double value) {
    return graph_.Constant(name, factory::MakeConstantArray<double>(StoreTypeInfo::Real64, value, count_));
  }

  // Fonts as fractions of the largest, and cells as they would be with a largest font of one pixel.
  void MeasureCells() {
    fractions_ = Repeat("equal sizes", 1);
    if (sizes_ >= 0) {
      NodeId const largest = graph_.Call("largest size", "element", {sizes_, graph_.Int(0)});
      fractions_ =
          graph_.Map("font fractions", "sqrt", graph_.Zip("size fractions", "divide", sizes_, largest));
    }
    NodeId const font =
        graph_.Constant("word font", services::MakeFont({OStringCore::fromUtf8(kFontFamily), kMeasuredSize}));
    NodeId const widths = graph_.Call("word widths", "measureTexts", {nodes_.words, font});
    NodeId const height = graph_.Call(
        "line height", "member", {graph_.Call("font metrics", "measureFont", {font}), graph_.Text("height")});
    NodeId const scale = graph_.Zip("measured fonts", "divide", fractions_, graph_.Real(kMeasuredSize));
    NodeId const along = graph_.Zip("cell lengths", "multiply", widths, scale);
    NodeId const across = graph_.Zip("cell heights", "multiply", scale, height);
    MakeAngles();
    width_ = graph_.Call("cell widths", "choose", {isUpright_, across, along});
    height_ = graph_.Call("turned cell heights", "choose", {isUpright_, along, across});
    scale_ =
        graph_.Call("cloud scale", "wordleScale",
                    {width_, height_, graph_.Real(context_.GetWidth()), graph_.Real(context_.GetHeight())});
    starts_ = Repeat("starts", 0.5);
  }

  // The orientations in turn.
  void MakeAngles() {
    std::vector<double> turns = context_.GetMark().orientations;
    if (turns.empty()) turns.push_back(0);
    auto angles = factory::MakeColumnBuilder<double>(StoreTypeInfo::Real64, count_);
    auto upright = factory::MakeColumnBuilder<ort::core::uint8>(StoreTypeInfo::Bool, count_);
    for (std::size_t i = 0; i < static_cast<std::size_t>(count_); ++i) {
      double const angle = turns[i % turns.size()];
      angles.GetValues()[i] = angle;
      upright.GetValues()[i] = std::fmod(angle, 180) == 0 ? 0 : 1;
    }
    angles_ = graph_.Constant("orientations", angles.Finish());
    isUpright_ = graph_.Constant("is upright", upright.Finish());
  }

  Attempt LayOut(int number) {
    Attempt attempt;
    attempt.scale = graph_.Zip("largest font", "multiply", scale_, graph_.Real(std::pow(kShrinking, number)));
    attempt.width = graph_.Zip("word widths", "multiply", width_, attempt.scale);
    attempt.height = graph_.Zip("word heights", "multiply", height_, attempt.scale);
    NodeId const layout =
        graph_.Call(fmt::format("word cloud {}", number + 1), "layoutWordCloudCells",
                    {attempt.width, attempt.height, starts_, graph_.Real(context_.GetWidth()),
                     graph_.Real(context_.GetHeight()), graph_.Real(1), graph_.Real(kGap)});
    attempt.x = graph_.Call("word lefts", "member", {layout, graph_.Text("x")});
    attempt.y = graph_.Call("word tops", "member", {layout, graph_.Text("y")});
    return attempt;
  }

  std::span<double const> Read(NodeId node) { return graph_.Peek(node)->AsTypedArray<double>().GetValues(); }

  // Hidden words stand left of the plot, and clipped ones reach beyond it.
  bool AllShown(Attempt const& attempt) {
    auto const x = Read(attempt.x), y = Read(attempt.y);
    auto const width = Read(attempt.width), height = Read(attempt.height);
    for (std::size_t i = 0; i < x.size(); ++i) {
      bool const isInside = x[i] >= 0 && y[i] >= 0 && x[i] + width[i] <= context_.GetWidth() &&
                            y[i] + height[i] <= context_.GetHeight();
      if (!isInside) return false;
    }
    return true;
  }

  struct Side {
    NodeId low;
    NodeId high;
    NodeId isInside;
  };

  Side FindSide(NodeId low, NodeId size, double bound) {
    NodeId const high = graph_.Zip("word ends", "add", low, size);
    return {
        low, high,
        graph_.Zip("in the plot", "and", graph_.Zip("begins inside", "greaterOrEqual", low, graph_.Real(0)),
                   graph_.Zip("ends inside", "lessOrEqual", high, graph_.Real(bound)))};
  }

  // The middles of the shown words, moved so that the cloud's middle is that of the plot.
  NodeId Centre(Side const& side, double bound) {
    NodeId const low = Shown("shown begins", side.low), high = Shown("shown ends", side.high);
    NodeId const ends =
        graph_.Zip("ends of the cloud", "add", graph_.Call("cloud begin", "min_multi_r64", {low}),
                   graph_.Call("cloud end", "max_multi_r64", {high}));
    NodeId const twice = graph_.Zip("twice the move", "subtract", graph_.Real(bound), ends);
    NodeId const sums =
        graph_.Zip("moved ends", "add", graph_.Zip("begins and ends", "add", low, high), twice);
    return graph_.Zip("word middles", "divide", sums, graph_.Real(2));
  }

  NodeId Shown(char const* name, NodeId column) {
    return column < 0 ? -1 : graph_.Call(name, "filter", {column, nodes_.isShown});
  }

  void Take(Attempt const& attempt) {
    Side const across = FindSide(attempt.x, attempt.width, context_.GetWidth());
    Side const down = FindSide(attempt.y, attempt.height, context_.GetHeight());
    nodes_.isShown = graph_.Zip("shown words", "and", across.isInside, down.isInside);
    nodes_.x = Centre(across, context_.GetWidth());
    nodes_.y = Centre(down, context_.GetHeight());
    nodes_.text = Shown("word texts", nodes_.words);
    nodes_.size = Shown("word fonts", graph_.Zip("font sizes", "multiply", fractions_, attempt.scale));
    nodes_.angle = Shown("word angles", angles_);
    nodes_.color = Shown("shown colors", nodes_.color);
  }

  MarkContext& context_;
  GraphBuilder& graph_;
  WordCloudNodes nodes_;
  int count_ = 0;
  NodeId sizes_ = -1;  // of the words; -1 without channel size
  NodeId fractions_ = -1;
  NodeId angles_ = -1;
  NodeId isUpright_ = -1;
  NodeId width_ = -1;
  NodeId height_ = -1;
  NodeId scale_ = -1;
  NodeId starts_ = -1;
};

}  // namespace

WordCloudNodes PlanWordCloudNodes(MarkContext& context) { return WordCloudPlanner(context).Plan(); }

}  // namespace ostrel::charts
