#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

#include "TestValues.h"
#include "ostrelrtcore/engine/Engine.h"
#include "ostreltransforms/Callbacks.h"
#include "ostreltransforms/Registration.h"
#include "text/Texts.h"

// Callbacks that fail while functions are evaluated on many threads.
namespace OstrelTransforms {
namespace {

using namespace TestValues;

// Says which callback failed, over what, and holds on to something of its thrower's.
struct Failure : std::runtime_error {
  Failure(std::string const& place, OStringCore const& text, std::shared_ptr<int> held)
      : std::runtime_error(place + " " + text.toUtf8()), held_(std::move(held)) {}

 private:
  std::shared_ptr<int> held_;
};

class CallbackThreads : public testing::Test {
 protected:
  CallbackThreads() {
    RegisterAllRuntimeFunctions(registry_);
    auto const fail = [held = held_](char const* place, OStringCore const& text) {
      if (!text.isEmpty() && text.view().front() == u'!') throw Failure(place, text, held);
    };
    SetRuntimeFunctionCallbacks(
        [fail](double, IStoreTuple const& format) {
          fail("formatting", format.GetMember(0)->GetString());
          return OStringCore(L"abc");
        },
        [fail](OStringCore const& text, Value const&) {
          fail("measuring", text);
          return 10 * static_cast<float>(text.length());
        },
        [](Value const& font) {
          if (font->AsTuple().GetMember(0)->GetInt32() < 0) {
            throw OrtRuntimeException(static_cast<OrtError>(7001), OStringCore(L"no such font"));
          }
          return font;
        },
        {});
  }
  ~CallbackThreads() override { SetRuntimeFunctionCallbacks({}, {}, {}, {}); }

  static Value One(int number) { return Ints({number}); }

  static FunctionCall StylesOf(int font) {
    return {.function = L"updateTextStyleTable",
            .mode = EvaluationMode::Call,
            .inputs = {factory::MakeTable({{L"text_font", Tuples({Tuple({I32(font)})})}})},
            .parameters = {}};
  }

  FunctionCall Composed(wchar_t const* text) const {
    auto const texts = Column(StoreTypeInfo::String, std::vector{RIndirectString(OStringCore(text))});
    return {.function = L"composeText",
            .mode = EvaluationMode::Call,
            .inputs = {One(0), One(1), texts, One(0), styles_, R64(40), R64(200), I32(3), I32(2)},
            .parameters = {}};
  }

  static FunctionCall TicksOf(wchar_t const* format) {
    return {.function = L"calcLogTicks",
            .mode = EvaluationMode::Call,
            .inputs = {R64(1), R64(1000), I32(100), Flag(true), I32(4), Tuple({Text(format)}),
                       Tuple({I32(0)}), R64(1), R64(10)},
            .parameters = {}};
  }

  // What comes of a call, in words.
  std::string Tell(FunctionCall const& call) const {
    try {
      Value const result = Engine(registry_).Call(call);
      if (result->GetStoreType() == StoreType::Array) {
        return std::to_string(result->AsColumn().GetCount()) + " ticks";
      }
      auto const& columns = result->AsNamedValues();
      Value const runs = columns.Find(L"text_run");
      if (runs == nullptr) return "styles";
      return std::to_string(runs->AsColumn().GetCount()) + " runs";
    } catch (Failure const& failure) {
      return failure.what();
    } catch (OrtRuntimeException const& error) {
      return error.what();
    }
  }

  std::shared_ptr<int> const held_ = std::make_shared<int>(0);
  FunctionRegistry registry_;
  Value const styles_ = Texts::MakeTable({{}});
};

TEST_F(CallbackThreads, EveryFailureReachesItsOwnCallerAndLeavesNothingBehind) {
  struct {
    FunctionCall call;
    char const* expected;
  } const cases[] = {
      {Composed(L"one two six"), "3 runs"},
      {Composed(L"one !two six"), "measuring !two"},
      {Composed(L"one !six ten"), "measuring !six"},
      {StylesOf(1), "styles"},
      {StylesOf(-1), "error 7001: unknown error: no such font"},
      {TicksOf(L"1"), "4 ticks"},
      {TicksOf(L"!1"), "formatting !1"},
      {TicksOf(L"!2"), "formatting !2"},
  };
  long const holders = held_.use_count();
  std::atomic<int> wrong = 0;
  std::vector<std::thread> threads;
  for (std::size_t t = 0; t < 8; ++t) {
    threads.emplace_back([&, t] {
      for (std::size_t round = 0; round < 25; ++round) {
        for (std::size_t i = 0; i < std::size(cases); ++i) {
          auto const& [call, expected] = cases[(i * (1 + t % 2) + t) % std::size(cases)];
          if (Tell(call) != expected) ++wrong;
        }
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
  for (auto const& [call, expected] : cases) EXPECT_EQ(Tell(call), expected);
  EXPECT_EQ(held_.use_count(), holders) << "an exception or a callback was kept";
}

TEST_F(CallbackThreads, AGraphTellsTheFirstNodeThatFailed) {
  FunctionGraph graph;
  auto const add = [&graph](wchar_t const* name, FunctionCall const& call) {
    std::vector<NodeId> inputs;
    for (Value const& input : call.inputs) inputs.push_back(graph.AddConstant({}, input));
    return graph.AddFunction({.name = OStringCore(name),
                              .function = call.function,
                              .mode = call.mode,
                              .inputs = std::move(inputs),
                              .parameters = {}});
  };
  std::vector<NodeId> const outputs = {add(L"good", Composed(L"one two six")), add(L"first", TicksOf(L"!1")),
                                       add(L"second", Composed(L"!one"))};
  for (int round = 0; round < 100; ++round) {
    try {
      Engine(registry_).Evaluate(graph, {}, outputs);
      FAIL() << "nothing failed";
    } catch (EvaluationError const& error) {
      EXPECT_STREQ(error.what(), "node 'first' (calcLogTicks): formatting !1");
      EXPECT_THROW(std::rethrow_exception(error.GetCause()), Failure);
    }
  }
}

}  // namespace
}  // namespace OstrelTransforms
