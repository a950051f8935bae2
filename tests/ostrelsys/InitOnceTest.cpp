#include <gtest/gtest.h>

#include <any>
#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>
#include <vector>

#include "ostrelsys/InitOnce.h"
#include "ostrelsys/ThrowLogicException.h"

namespace {

constinit InitOnce g_once;
std::any g_slot;

TEST(InitOnce, RunsOnceForAllThreadsAndShowsThemItsWork) {
  std::atomic<int> runs = 0;
  std::atomic<int> wrong = 0;
  std::vector<std::thread> threads;
  for (int t = 0; t < 8; ++t) {
    threads.emplace_back([&] {
      auto const& slot = g_once.Fill(g_slot, [&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        ++runs;
        return std::make_shared<int>(7);
      });
      if (*std::any_cast<std::shared_ptr<int> const&>(slot) != 7) ++wrong;
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(runs, 1);
  EXPECT_EQ(wrong, 0);
  EXPECT_TRUE(g_once.IsDone());
}

TEST(InitOnce, TriesAgainAfterAnException) {
  InitOnce once;
  int runs = 0;
  auto const initialise = [&] {
    if (++runs < 3) throw std::runtime_error("not yet");
  };
  EXPECT_THROW(once.Run(initialise), std::runtime_error);
  EXPECT_FALSE(once.IsDone());
  EXPECT_THROW(once.Run(initialise), std::runtime_error);
  once.Run(initialise);
  EXPECT_TRUE(once.IsDone());
  once.Run(initialise);
  EXPECT_EQ(runs, 3);
}

TEST(InitOnce, RefusesToWaitForItself) {
  InitOnce once;
  EXPECT_THROW(once.Run([&] { once.Run([] {}); }), OLogicException);
  EXPECT_FALSE(once.IsDone());
  once.Run([] {});
  EXPECT_TRUE(once.IsDone());
}

TEST(ThrowLogicException, CarriesSourceLineAndExpression) {
  try {
    ThrowLogicException("TextComposer", 921, "!tokens.empty()");
    FAIL();
  } catch (OLogicException const& e) {
    EXPECT_EQ(e.GetSource(), "TextComposer");
    EXPECT_EQ(e.GetLine(), 921);
    EXPECT_EQ(e.GetExpression(), "!tokens.empty()");
    EXPECT_STREQ(e.what(), "logic error in TextComposer, line 921: !tokens.empty()");
  }
  EXPECT_THROW(ThrowLogicException(nullptr, 0, nullptr), std::logic_error);
}

}  // namespace
