#include <gtest/gtest.h>
#include <tbb/parallel_for.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "engine/EngineTestSupport.h"

namespace enginetest {
namespace {

using std::chrono_literals::operator""s;

FunctionNode Node(char const* name, wchar_t const* function, EvaluationMode mode,
                  std::vector<NodeId> inputs) {
  return {OStringCore::fromUtf8(name), OStringCore(function), mode, std::move(inputs), {}};
}

class EngineGraph : public testing::Test {
 protected:
  EngineGraph() { RegisterTestFunctions(registry); }

  // A multinary function that the test itself answers.
  template <class Answer>
  void Register(wchar_t const* name, Answer answer) {
    struct Functor final : IMultinaryFunctor {
      explicit Functor(Answer given) : answer(std::move(given)) {}
      Value Apply(std::vector<Value> const& inputs) override { return answer(inputs); }
      Answer answer;
    };
    registry.GetMultinaryFunctions().Register(FunctionKey(OStringCore(name), std::vector<KeySegmentType>()),
                                              KeySegmentType(StoreTypeInfo::Real64),
                                              [answer] { return std::make_unique<Functor>(answer); });
  }

  NodeId AddCall(char const* name, wchar_t const* function, std::vector<NodeId> inputs = {}) {
    return graph.AddFunction(Node(name, function, EvaluationMode::Call, std::move(inputs)));
  }
  NodeId AddMap(char const* name, wchar_t const* function, NodeId input) {
    return graph.AddFunction(Node(name, function, EvaluationMode::Map, {input}));
  }

  std::vector<Value> Evaluate(std::vector<NodeId> const& outputs,
                              factory::NamedValues const& inputs = {}) const {
    return Engine(registry).Evaluate(graph, inputs, outputs);
  }

  FunctionRegistry registry;
  FunctionGraph graph;
};

TEST_F(EngineGraph, GivesOutputsInTheirOrder) {
  auto const x = graph.AddInput(L"x");
  auto const two = graph.AddConstant(L"two", factory::MakeReal64(2));
  FunctionNode scaled = Node("scaled", L"scale", EvaluationMode::Map, {x});
  scaled.parameters = {two};
  auto const s = graph.AddFunction(scaled);
  FunctionNode running = Node("running", L"mix", EvaluationMode::Scan, {s});
  running.initial = two;
  running.groups = x;
  auto const r = graph.AddFunction(running);
  auto const values = Evaluate({r, x, s, r}, {{L"x", MakeReals("1 2 2")}});
  EXPECT_EQ(ReadRows(values[0]), ParseRows("3 5 6.5"));
  EXPECT_EQ(ReadRows(values[1]), ParseRows("1 2 2"));
  EXPECT_EQ(ReadRows(values[2]), ParseRows("2 4 4"));
  EXPECT_EQ(values[3], values[0]);
}

TEST_F(EngineGraph, EvaluatesEachNeededNodeOnce) {
  std::atomic<int> calls = 0;
  Register(L"called", [&calls](auto const&) {
    ++calls;
    return factory::MakeReal64(1);
  });
  auto const shared = AddCall("shared", L"called");
  AddCall("not needed", L"called");
  auto const sum = graph.AddFunction(Node("sum", L"mix", EvaluationMode::Zip, {shared, shared}));
  EXPECT_EQ(ReadRows(Evaluate({sum, shared})[0]), ParseRows("1.5"));
  EXPECT_EQ(calls, 1);
}

TEST_F(EngineGraph, TellsWhatIsWrongWithAGraph) {
  auto const x = graph.AddInput(L"x");
  auto const a = graph.AddFunction(Node("a", L"mix", EvaluationMode::Zip, {x, 2}));
  AddMap("b", L"halve", 3);
  AddMap("c", L"halve", 1);
  auto const lost = AddMap("lost", L"halve", 77);
  auto const before = graph.AddFunction(Node("before", L"mix", EvaluationMode::Zip, {x, a}));
  auto const self = AddMap("self", L"halve", 6);
  factory::NamedValues const inputs{{L"x", MakeReals("1")}};
  struct Case {
    NodeId output;
    char const* expected;
  };
  Case const cases[] = {
      {before, "the graph has a cycle: 'a' -> 'b' -> 'c' -> 'a'"},
      {self, "the graph has a cycle: 'self' -> 'self'"},
      {lost, "node 'lost' refers to node 77; the graph has 7 nodes"},
      {-1, "an output refers to node -1; the graph has 7 nodes"},
  };
  for (auto const& [output, expected] : cases) {
    EXPECT_EQ(Failure([&, id = output] { Evaluate({id}, inputs); }), expected);
  }
  EXPECT_EQ(Failure([&] { Evaluate({x}); }), "input 'x' has no value");
  EXPECT_THROW(Evaluate({self}), InvalidGraph);
}

TEST_F(EngineGraph, ErrorNamesNodeAndFunctionAndKeepsItsCause) {
  auto const x = graph.AddConstant(L"x", MakeReals("12 13"));
  auto const bad = AddMap("x positions", L"refuse", x);
  auto const after = AddMap("after", L"halve", bad);
  try {
    Evaluate({after});
    FAIL() << "no error";
  } catch (EvaluationError const& error) {
    EXPECT_EQ(error.GetNode(), bad);
    EXPECT_EQ(error.GetNodeName(), OStringCore(L"x positions"));
    EXPECT_EQ(error.GetFunction(), OStringCore(L"refuse"));
    EXPECT_STREQ(error.what(), "node 'x positions' (refuse): error 178: type not supported: thirteen");
    EXPECT_EQ(Failure([&] { std::rethrow_exception(error.GetCause()); }), "178 thirteen");
  }
  EXPECT_EQ(Failure([&] { Evaluate({AddMap("y", L"unheard", x)}); }),
            "node 'y' (unheard): no function is named 'unheard'");
}

TEST_F(EngineGraph, FirstOfSeveralFailuresIsReportedFromAllThreads) {
  Register(L"fail", [](auto const& inputs) -> Value {
    if (inputs[0]->GetInt32() % 2 == 0) std::this_thread::sleep_for(std::chrono::microseconds(50));
    throw std::out_of_range("failed " + std::to_string(inputs[0]->GetInt32()));
  });
  Register(L"join", [](auto const& inputs) { return inputs[0]; });
  std::vector<NodeId> nodes;
  for (int i = 0; i < 20; ++i) {
    nodes.push_back(AddCall("f", L"fail", {graph.AddConstant(L"i", factory::MakeInt32(i))}));
  }
  auto const join = AddCall("join", L"join", nodes);
  for (int round = 0; round < 50; ++round) {
    EXPECT_EQ(Failure([&] { Evaluate({join}); }), "node 'f' (fail): failed 0");
  }
}

TEST_F(EngineGraph, ResultIsReleasedWithItsLastUse) {
  std::weak_ptr<StoreValue> watched;
  Register(L"make", [&watched](auto const&) {
    auto const value = MakeReals("1 2 3");
    watched = value;
    return value;
  });
  Register(L"look",
           [&watched](auto const&) { return factory::MakeReal64(static_cast<double>(watched.use_count())); });
  auto const made = AddCall("made", L"make");
  auto const first = AddMap("first", L"halve", made);
  auto const during = AddCall("during", L"look", {first});
  auto const second = graph.AddFunction(Node("second", L"mix", EvaluationMode::Zip, {made, during}));
  auto const after = AddCall("after", L"look", {second});
  auto const values = Evaluate({during, after});
  EXPECT_EQ(values[0]->GetReal64(), 1);
  EXPECT_EQ(values[1]->GetReal64(), 0);
}

TEST_F(EngineGraph, LongChainsNeitherRecurseNorLeaveThisThread) {
  auto const here = std::this_thread::get_id();
  std::atomic<int> elsewhere = 0;
  Register(L"step", [&](auto const& inputs) {
    if (std::this_thread::get_id() != here) ++elsewhere;
    return factory::MakeReal64(inputs[0]->GetReal64() + 1);
  });
  // Each node refers to the one that is added after it.
  for (NodeId i = 0; i < 100000; ++i) AddCall("link", L"step", {i + 1});
  graph.AddConstant(L"start", factory::MakeReal64(0));
  EXPECT_EQ(Evaluate({0})[0]->GetReal64(), 100000);
  EXPECT_EQ(elsewhere, 0);
}

TEST_F(EngineGraph, IndependentNodesRunOnSeveralThreadsAtOnce) {
  std::mutex mutex;
  std::condition_variable met;
  int waiting = 0;
  // Each of the two waits for the other.
  Register(L"meet", [&](auto const&) {
    std::unique_lock lock(mutex);
    ++waiting;
    met.notify_all();
    bool const both = met.wait_for(lock, 10s, [&] { return waiting == 2; });
    return factory::MakeReal64(both ? 1 : 0);
  });
  auto const values = Evaluate({AddCall("left", L"meet"), AddCall("right", L"meet")});
  EXPECT_EQ(values[0]->GetReal64() + values[1]->GetReal64(), 2);
}

TEST_F(EngineGraph, OneEngineServesManyThreadsAndTasks) {
  auto const x = graph.AddInput(L"x");
  std::vector<NodeId> layer{x};
  for (int i = 0; i < 6; ++i)
    layer.push_back(AddMap("half", L"halve", layer[static_cast<std::size_t>(i / 2)]));
  NodeId sum = x;
  for (auto const node : layer)
    sum = graph.AddFunction(Node("sum", L"mix", EvaluationMode::Zip, {sum, node}));
  auto const evaluate = [&](double start) {
    return Evaluate({sum}, {{L"x", factory::MakeReal64(start)}})[0]->GetReal64();
  };
  double const unit = evaluate(1);
  std::atomic<int> wrong = 0;
  auto const check = [&](int i) { wrong += evaluate(i) != i * unit; };
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&check, t] {
      for (int i = 0; i < 200; ++i) check(t * 1000 + i);
    });
  }
  tbb::parallel_for(0, 500, check);
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
}

TEST(FunctionGraph, IsReadBack) {
  FunctionGraph graph;
  auto const c = graph.AddConstant(L"c", factory::MakeInt32(4));
  auto const i = graph.AddInput(L"i");
  auto const f = graph.AddFunction({L"f", L"mix", EvaluationMode::Zip, {i, c}, {}});
  EXPECT_EQ(graph.GetKind(c), FunctionGraph::NodeKind::Constant);
  EXPECT_EQ(graph.GetKind(i), FunctionGraph::NodeKind::Input);
  EXPECT_EQ(graph.GetName(f), OStringCore(L"f"));
  EXPECT_EQ(graph.GetFunction(f).inputs, (std::vector<NodeId>{i, c}));
  EXPECT_EQ(Failure([&] { graph.GetName(3); }), "55 node 3 is not in the graph");
  EXPECT_EQ(Failure([&] { graph.GetFunction(c); }), "55 node 0 is not a function");
  EXPECT_EQ(Failure([&] { graph.GetConstant(f); }), "55 node 2 is not a constant");
  EXPECT_EQ(Failure([&] { graph.AddConstant(L"null", nullptr); }), "55 null");
}

}  // namespace
}  // namespace enginetest
