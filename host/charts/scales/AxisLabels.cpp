#include "charts/scales/AxisLabels.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "charts/texts/ComposedTexts.h"

namespace ostrel::charts {
namespace {

using runtime::NoWrap;
using runtime::WordWrap;

// Pixels between two labels side by side. Lines below each other bring their own distance.
constexpr double kLabelGap = 6;
constexpr double kLeastRoom = 30;  // of a line along an axis; labels of smaller steps are left out
constexpr int kMostLines = 3;

class LabelPlanner {
 public:
  LabelPlanner(GraphBuilder& graph, AxisLabelRequest const& request)
      : graph_(graph),
        request_(request),
        font_(MakeLabelFont(graph, request.fontSize)),
        widths_(Measure("label widths", "measureTexts", request.texts)) {}

  AxisLabels Plan() {
    if (request_.angle || !request_.isHorizontal || !request_.step) {
      Set(FindDirection(request_.angle.value_or(0)));
    } else if (request_.limit <= GetRoomAlong() || HasNone(widths_, GetRoomAlong())) {
      Set({});
    } else if (request_.areWhole || !SetWrapped()) {
      Set(FindDirection(-90));
    }
    for (NodeId const composed : labels_.composed) graph_.Keep(composed);
    labels_.shown = graph_.Keep(graph_.Call(Name("shown labels"), "visibleLabels",
                                            {request_.positions, GetExtents(), graph_.Real(GetGap()),
                                             graph_.Text(request_.isLog ? "greedy" : "parity")}));
    return labels_;
  }

 private:
  std::string Name(char const* what) const { return request_.name + " " + what; }

  NodeId Measure(char const* what, char const* function, NodeId texts) {
    return graph_.Call(Name(what), function, {texts, font_});
  }

  // Whether no row of a column of widths exceeds a room.
  bool HasNone(NodeId widths, double room) {
    auto const values = graph_.Peek(widths)->AsTypedArray<double>().GetValues();
    return std::ranges::none_of(values, [&](double width) { return width > room; });
  }

  double GetRoomAlong() const { return *request_.step - kLabelGap; }
  bool RunsAlong() const {
    return labels_.slant == 0 && (labels_.style.turn == TextTurn::None) == request_.isHorizontal;
  }
  double GetGap() const { return RunsAlong() || labels_.slant != 0 ? kLabelGap : 0; }
  double MeasureHeight(int lines) { return MeasureLines(graph_, labels_.style, lines); }

  // Where labels stand towards their axis.
  void Direct(TextDirection const& direction) {
    labels_.slant = direction.slant;
    TextStyle& style = labels_.style;
    style = {.fontSize = request_.fontSize, .turn = direction.turn};
    TextAnchor const away = request_.isFar ? TextAnchor::Start : TextAnchor::End;
    TextAnchor const towards = request_.isFar ? TextAnchor::End : TextAnchor::Start;
    style.along = style.across = TextAnchor::Middle;
    if (direction.slant != 0) {
      double const lean = std::sin(direction.slant * std::numbers::pi / 180) * (request_.isFar ? 1 : -1);
      bool const isBefore = request_.isHorizontal ? lean < 0 : !request_.isFar;
      style.along = isBefore ? TextAnchor::End : TextAnchor::Start;
    } else if (RunsAlong()) {
      // The next line of a text that is turned clockwise stands to the left.
      style.across = direction.turn == TextTurn::Clockwise ? towards : away;
    } else {
      style.along = direction.turn == TextTurn::Anticlockwise ? towards : away;
    }
  }

  void Set(TextDirection const& direction) {
    Direct(direction);
    if (labels_.slant != 0) return AddComposed("labels", request_.texts, {request_.limit, 1});
    if (RunsAlong()) {
      if (request_.areWhole) return AddComposed("labels", request_.texts, {request_.limit, 1});
      double const room = request_.step ? std::max(GetRoomAlong(), kLeastRoom) : request_.limit;
      return Compose({std::min(room, request_.limit), kMostLines});
    }
    int lines = request_.step || request_.areWhole ? 1 : kMostLines;
    while (!request_.areWhole && lines < kMostLines && MeasureHeight(lines + 1) <= *request_.step) ++lines;
    Compose({request_.limit, lines});
  }

  struct Room {
    double length;  // of a line, pixels
    int lines;
  };

  // Wraps the labels whose words fit on a line.
  void Compose(Room const& room) {
    if (room.lines == 1 || HasNone(widths_, room.length)) return AddComposed("labels", request_.texts, room);
    NodeId const words = GetWords();
    if (HasNone(words, room.length)) return AddComposed("labels", breakable_, room, WordWrap);
    NodeId const isWrapped = graph_.Zip(Name("words fit"), "lessOrEqual", words, graph_.Real(room.length));
    auto const choose = [&](char const* name, NodeId whenTrue, NodeId whenFalse) {
      return graph_.Call(Name(name), "choose", {isWrapped, whenTrue, whenFalse});
    };
    NodeId const none = graph_.Text("");
    AddComposed("wrapped labels", choose("labels of short words", breakable_, none), room, WordWrap);
    AddComposed("labels on one line", choose("labels of long words", none, request_.texts), room);
  }

  // False when a label must be broken within a word or shortened so.
  bool SetWrapped() {
    if (!HasNone(GetWords(), GetRoomAlong())) return false;
    Direct({});
    AddComposed("wrapped labels", breakable_, {GetRoomAlong(), kMostLines}, WordWrap,
                runtime::HideIfOverflow);
    auto const widths = graph_.Peek(widths_)->AsTypedArray<double>().GetValues();
    ComposedTexts const composed(graph_.Peek(labels_.composed.front()));
    for (int row = 0; row < composed.GetCount(); ++row) {
      if (composed.HasText(row) || widths[static_cast<std::size_t>(row)] == 0) continue;
      labels_.composed.clear();
      return false;
    }
    return true;
  }

  NodeId GetWords() {
    if (words_ >= 0) return words_;
    breakable_ = graph_.Call(Name("breakable labels"), "hintBreaks", {request_.texts});
    words_ = Measure("word widths", "measureWords", breakable_);
    return words_;
  }

  void AddComposed(char const* name, NodeId texts, Room const& room, runtime::WrapMode wrap = NoWrap,
                   runtime::TextFitStyle fit = runtime::DotsRight) {
    TextBox box = MakeBox(graph_, labels_.style, room.length, room.lines, wrap);
    box.fit = fit;
    labels_.composed.push_back(ComposeTexts(graph_, Name(name), texts, labels_.style, box));
  }

  // A column of the composed labels, each of which is empty, 0, in all nodes but one.
  NodeId GetSizes(bool isWidth) {
    NodeId sizes = -1;
    for (NodeId const composed : labels_.composed) {
      NodeId const own = graph_.Call(Name(isWidth ? "composed widths" : "composed heights"), "member",
                                     {composed, graph_.Text(isWidth ? "width" : "height")});
      sizes = sizes < 0 ? own : graph_.Zip(Name("label sizes"), "Max", sizes, own);
    }
    return sizes;
  }

  // How far labels reach along the axis.
  NodeId GetExtents() {
    if (labels_.slant == 0) return GetSizes(request_.isHorizontal);
    double const angle = labels_.slant * std::numbers::pi / 180;
    double const sine = std::abs(std::sin(angle));
    double const cosine = std::abs(std::cos(angle));
    double const along = request_.isHorizontal ? cosine : sine;
    double const across = request_.isHorizontal ? sine : cosine;
    auto const scale = [&](char const* name, bool isWidth, double factor) {
      return graph_.Zip(Name(name), "multiply", GetSizes(isWidth), graph_.Real(factor));
    };
    // Parallel slanted labels pass each other a line apart.
    if (request_.isHorizontal && across > 0.1 && along > 0.1)
      return scale("heights along", false, 1 / across);
    return graph_.Zip(Name("label extents"), "add", scale("widths along", true, along),
                      scale("heights along", false, across));
  }

  GraphBuilder& graph_;
  AxisLabelRequest const& request_;
  NodeId font_;
  NodeId widths_;
  NodeId words_ = -1;      // of what stands in breakable_
  NodeId breakable_ = -1;  // the texts with hints where lines may end
  AxisLabels labels_;
};

}  // namespace

AxisLabels PlanAxisLabels(GraphBuilder& graph, AxisLabelRequest const& request) {
  return LabelPlanner(graph, request).Plan();
}

}  // namespace ostrel::charts
