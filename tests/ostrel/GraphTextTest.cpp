#include <gtest/gtest.h>

#include "ostrel/GraphText.h"

namespace ostrel::program {
namespace {

using namespace ort::core;

FunctionGraph MakeGraph() {
  FunctionGraph graph;
  auto const column =
      graph.AddConstant(OStringCore(L"say \"hi\"\\\n"), factory::MakeString(OStringCore(L"a\"b")));
  auto const input = graph.AddInput(OStringCore(L"x"));
  FunctionNode node;
  node.name = OStringCore(L"sums");
  node.function = OStringCore(L"add");
  node.mode = EvaluationMode::Scan;
  node.inputs = {input};
  node.parameters = {column};
  node.initial = column;
  node.groups = input;
  graph.AddFunction(node);
  return graph;
}

TEST(GraphText, GivesEveryNodeOneLine) {
  EXPECT_EQ(MakeGraphText(MakeGraph()),
            "#0    say \"hi\"\\  = String 'a\"b'\n"
            "#1    x = input\n"
            "#2    sums = scan add(#1, parameter #0, initial #0, groups #1)\n");
}

TEST(GraphText, EscapesDot) {
  EXPECT_EQ(MakeGraphDot(MakeGraph()),
            "digraph chart {\n"
            "  rankdir=LR;\n"
            "  n0 [shape=ellipse, label=\"say \\\"hi\\\"\\\\ \\nString 'a\\\"b'\"];\n"
            "  n1 [shape=ellipse, label=\"x\\ninput\"];\n"
            "  n2 [shape=box, label=\"sums\\nscan add\"];\n"
            "  n1 -> n2;\n"
            "  n0 -> n2 [label=\"parameter\", style=dashed];\n"
            "  n0 -> n2 [label=\"initial\", style=dashed];\n"
            "  n1 -> n2 [label=\"groups\", style=dashed];\n"
            "}\n");
}

TEST(GraphText, CutsLongTexts) {
  FunctionGraph graph;
  graph.AddConstant(OStringCore(L"long"), factory::MakeString(OStringCore(std::u16string(1'000'000, u'x'))));
  EXPECT_LT(MakeGraphText(graph).size(), 200U);
}

}  // namespace
}  // namespace ostrel::program
