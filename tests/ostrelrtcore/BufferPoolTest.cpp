#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <random>
#include <thread>
#include <vector>

#include "ostrelrtcore/BufferPool.h"

namespace ort::core {
namespace {

constexpr std::size_t kKiB = 1024;
constexpr std::size_t kMiB = 1024 * kKiB;

// Lives until the program's own statics end.
PooledBuffer heldToTheEnd(3 * kMiB);

class BufferPoolTest : public testing::Test {
 protected:
  void SetUp() override { BufferPool::Trim(); }
  void TearDown() override { BufferPool::Trim(); }
};

class KeptBuffersTest : public BufferPoolTest {
 protected:
  void SetUp() override {
    BufferPoolTest::SetUp();
    if (!BufferPool::KeepsBuffers()) GTEST_SKIP() << "nothing is kept under the address sanitizer";
  }
};

TEST_F(BufferPoolTest, BuffersOfEverySizeAreAlignedWritableAndLittleIsWasted) {
  std::vector<std::size_t> sizes = {1, 7, 63, 64, 65, 1000, 300 * kMiB + 1};
  for (std::size_t power = 4 * kKiB; power <= 8 * kMiB; power *= 2) {
    for (std::size_t quarter = 4; quarter < 8; ++quarter) {
      for (std::size_t nudge : {-1, 0, 1}) sizes.push_back(power / 4 * quarter + nudge);
    }
  }
  for (std::size_t size : sizes) {
    PooledBuffer buffer(size);
    ASSERT_NE(buffer.data(), nullptr);
    EXPECT_EQ(buffer.size(), size);
    EXPECT_GE(buffer.capacity(), size);
    EXPECT_LE(buffer.capacity(), size + size / 4 + BufferPool::kAlignment) << size;
    auto const address = reinterpret_cast<std::uintptr_t>(buffer.data());
    bool const isHuge = BufferPool::KeepsBuffers() && buffer.capacity() >= BufferPool::kHugePageBytes;
    EXPECT_EQ(address % (isHuge ? BufferPool::kHugePageBytes : BufferPool::kAlignment), 0u) << size;
    std::size_t const touched = std::min(buffer.capacity(), 9 * kMiB);
    std::memset(buffer.data(), 0xA5, touched);
    static_cast<char*>(buffer.data())[buffer.capacity() - 1] = 1;
  }
}

TEST_F(BufferPoolTest, NoBytesNeedNoMemory) {
  PooledBuffer const none(0);
  EXPECT_EQ(none.data(), nullptr);
  EXPECT_EQ(none.size() + none.capacity(), 0u);
}

TEST_F(BufferPoolTest, MovingLeavesAnEmptyBuffer) {
  for (std::size_t size : {std::size_t{10}, 100 * kKiB, 3 * kMiB}) {
    PooledBuffer first(size);
    void* const data = first.data();
    PooledBuffer second(std::move(first));
    EXPECT_EQ(second.data(), data);
    EXPECT_EQ(first.data(), nullptr);
    EXPECT_EQ(first.size() + first.capacity(), 0u);
    PooledBuffer third(64 * kKiB);
    third = std::move(second);
    EXPECT_EQ(third.data(), data);
    EXPECT_EQ(third.size(), size);
    PooledBuffer& itself = third;
    third = std::move(itself);
    EXPECT_EQ(third.data(), data);
  }
}

TEST_F(KeptBuffersTest, AReleasedBufferServesTheNextOfItsSizeAndNoOther) {
  for (std::size_t size : {70 * kKiB, 100 * kKiB, 2 * kMiB, 75 * kMiB, 256 * kMiB}) {
    BufferPool::Trim();
    void* released;
    {
      PooledBuffer buffer(size);
      released = buffer.data();
    }
    std::size_t const kept = BufferPool::GetKeptBytes();
    EXPECT_GE(kept, size);
    PooledBuffer const other(size / 2);
    EXPECT_EQ(BufferPool::GetKeptBytes(), kept) << size;
    PooledBuffer const same(size - size / 100);
    EXPECT_EQ(same.data(), released) << size;
    EXPECT_EQ(BufferPool::GetKeptBytes(), 0u) << size;
  }
}

TEST_F(BufferPoolTest, SmallAndVastBuffersAreNotKept) {
  { PooledBuffer const small(BufferPool::kMinPooledBytes - 1); }
  { PooledBuffer const vast(BufferPool::kMaxKeptBytes + 1); }
  EXPECT_EQ(BufferPool::GetKeptBytes(), 0u);
}

TEST_F(KeptBuffersTest, BeyondTheLimitTheLongestUnusedGo) {
  // Sizes of different classes, released in this order: 64 + 80 + 96 MiB fit, the 112 push out the first two.
  std::vector<PooledBuffer> buffers;
  std::vector<void*> data;
  for (std::size_t size : {64 * kMiB, 80 * kMiB, 96 * kMiB, 112 * kMiB}) {
    data.push_back(buffers.emplace_back(size).data());
  }
  buffers[0] = {};
  buffers[1] = {};
  buffers[2] = {};
  EXPECT_EQ(BufferPool::GetKeptBytes(), 240 * kMiB);
  buffers[3] = {};
  EXPECT_EQ(BufferPool::GetKeptBytes(), 208 * kMiB);
  EXPECT_EQ(PooledBuffer(96 * kMiB).data(), data[2]);
  EXPECT_EQ(PooledBuffer(112 * kMiB).data(), data[3]);
}

TEST_F(KeptBuffersTest, TrimmingGivesBackAllThatIsFree) {
  PooledBuffer const used(4 * kMiB);
  std::memset(const_cast<void*>(used.data()), 7, used.size());
  { PooledBuffer const first(100 * kKiB), second(100 * kKiB), third(5 * kMiB); }
  EXPECT_GT(BufferPool::GetKeptBytes(), 5 * kMiB);
  BufferPool::Trim();
  EXPECT_EQ(BufferPool::GetKeptBytes(), 0u);
  EXPECT_EQ(static_cast<unsigned char const*>(used.data())[used.size() - 1], 7);
}

TEST_F(BufferPoolTest, ASizeThatCannotBeHadIsBadAlloc) {
  constexpr auto most = std::numeric_limits<std::size_t>::max();
  for (std::size_t size : {most, most / 2, most / 2 - kMiB}) {
    EXPECT_THROW(PooledBuffer{size}, std::bad_alloc) << size;
  }
}

TEST_F(BufferPoolTest, NoTwoThreadsEverShareABuffer) {
  auto const work = [](unsigned thread) {
    std::mt19937 random(thread);
    std::vector<PooledBuffer> held(8);
    for (int i = 0; i < 3000; ++i) {
      PooledBuffer& slot = held[random() % held.size()];
      if (slot.data() != nullptr) {
        auto const* words = static_cast<std::uintptr_t const*>(slot.data());
        ASSERT_EQ(words[0], reinterpret_cast<std::uintptr_t>(&slot));
        ASSERT_EQ(words[slot.size() / sizeof(*words) - 1], reinterpret_cast<std::uintptr_t>(&slot));
      }
      slot = PooledBuffer((std::size_t{32} << random() % 6) * kKiB);
      auto* words = static_cast<std::uintptr_t*>(slot.data());
      words[0] = words[slot.size() / sizeof(*words) - 1] = reinterpret_cast<std::uintptr_t>(&slot);
      if (i % 500 == 0) BufferPool::Trim();
      ASSERT_LE(BufferPool::GetKeptBytes(), BufferPool::kMaxKeptBytes);
    }
  };
  std::vector<std::thread> threads;
  for (unsigned thread = 0; thread < 4; ++thread) threads.emplace_back(work, thread);
  for (std::thread& thread : threads) thread.join();
}

TEST_F(BufferPoolTest, TheAddressSanitizerSeesUseAfterReleaseAndOverruns) {
  if (BufferPool::KeepsBuffers()) GTEST_SKIP() << "needs the address sanitizer";
  for (std::size_t size : {100 * std::size_t{1}, 100 * kKiB, 3 * kMiB}) {
    auto const useAfterRelease = [&] {
      PooledBuffer buffer(size);
      auto volatile* data = static_cast<char*>(buffer.data());
      buffer = {};
      data[0] = 1;
    };
    auto const overrun = [&] {
      PooledBuffer buffer(size);
      static_cast<char volatile*>(buffer.data())[size] = 1;
    };
    EXPECT_DEATH(useAfterRelease(), "heap-use-after-free") << size;
    EXPECT_DEATH(overrun(), "heap-buffer-overflow") << size;
  }
}

}  // namespace
}  // namespace ort::core
