#include <gtest/gtest.h>
#include <tbb/global_control.h>
#include <tbb/parallel_for.h>
#include <tbb/task_group.h>

#include <algorithm>
#include <atomic>
#include <numeric>
#include <stdexcept>
#include <thread>
#include <vector>

#include "ostrelrtcore/ParallelLoop.h"

namespace ort::core {
namespace {

struct RowFailed : std::runtime_error {
  explicit RowFailed(std::size_t failedRow) : std::runtime_error("row"), row(failedRow) {}
  std::size_t row;
};

TEST(ParallelLoopThreads, RunTheBodyOnceForEachIndex) {
  for (std::size_t const count : {0u, 1u, 2u, 7u, 1000u, 20000u}) {
    std::vector<int> runs(count);
    ParallelFor(count, [&](std::size_t i) { ++runs[i]; });
    EXPECT_EQ(std::ranges::count(runs, 1), static_cast<std::ptrdiff_t>(count));
  }
}

TEST(ParallelLoopThreads, CarryAnExceptionToTheCaller) {
  for (std::size_t const failing : {0u, 499u, 999u}) {
    std::vector<std::atomic<int>> runs(1000);
    auto const caller = std::this_thread::get_id();
    try {
      ParallelFor(runs.size(), [&](std::size_t i) {
        ++runs[i];
        if (i == failing) throw RowFailed(i);
      });
      ADD_FAILURE() << "no exception";
    } catch (RowFailed const& error) {
      EXPECT_EQ(error.row, failing);
      EXPECT_EQ(std::this_thread::get_id(), caller);
    }
    // Only the rest of the failing chunk may be missing.
    for (std::size_t i = 0; i <= failing; ++i) EXPECT_EQ(runs[i], 1);
    EXPECT_TRUE(std::ranges::all_of(runs, [](int n) { return n <= 1; }));
  }
}

TEST(ParallelLoopThreads, CarryOneOfManyExceptions) {
  std::atomic<int> runs = 0;
  EXPECT_THROW(ParallelFor(500,
                           [&](std::size_t i) {
                             ++runs;
                             throw RowFailed(i);
                           }),
               RowFailed);
  EXPECT_GE(runs, 1);
  EXPECT_NO_THROW(ParallelFor(3, [](std::size_t) {}));
}

TEST(ParallelLoopThreads, NestAndRunFromManyCallers) {
  std::atomic<std::size_t> sum = 0;
  std::vector<std::thread> callers;
  for (int c = 0; c < 3; ++c) {
    callers.emplace_back([&] {
      ParallelFor(20, [&](std::size_t i) { ParallelFor(20, [&](std::size_t j) { sum += i * j; }); });
    });
  }
  for (auto& caller : callers) caller.join();
  EXPECT_EQ(sum, 3u * 190u * 190u);
}

TEST(ParallelLoopThreads, RunAllRowsInsideACancelledGroup) {
  tbb::task_group_context outer;
  std::atomic<int> rows = 0;
  std::atomic<bool> ran = false;
  tbb::parallel_for(
      0, 1,
      [&](int) {
        ran = true;
        outer.cancel_group_execution();
        ParallelFor(300, [&](std::size_t) { ++rows; });
      },
      outer);
  EXPECT_TRUE(ran);
  EXPECT_EQ(rows, 300);
}

TEST(ParallelLoopThreads, NeverRunTasksOfTheCallersOwnMeanwhile) {
  std::atomic<bool> isIsolated = true;
  thread_local bool isInside = false;
  tbb::parallel_for(0, 200, [&](int) {
    if (isInside) isIsolated = false;
    isInside = true;
    ParallelFor(16, [](std::size_t) { std::this_thread::yield(); });
    isInside = false;
  });
  EXPECT_TRUE(isIsolated);
}

TEST(ParallelLoopThreads, RunEveryRowOnASingleThread) {
  tbb::global_control const one(tbb::global_control::max_allowed_parallelism, 1);
  std::vector<std::size_t> order;
  ParallelFor(100, [&](std::size_t i) { order.push_back(i); });
  std::vector<std::size_t> expected(100);
  std::iota(expected.begin(), expected.end(), std::size_t{0});
  std::ranges::sort(order);
  EXPECT_EQ(order, expected);
}

}  // namespace
}  // namespace ort::core
