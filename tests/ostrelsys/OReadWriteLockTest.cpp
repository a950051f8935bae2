#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include "ostrelsys/OReadWriteLock.h"

namespace {

// Another thread's answer, since a thread may not ask for a lock that it holds.
bool Elsewhere(std::function<bool()> const& ask) {
  bool answer = false;
  std::thread([&] { answer = ask(); }).join();
  return answer;
}

bool CanRead(OReadWriteLock& lock) {
  return Elsewhere([&] { return lock.TryLockForRead() && (lock.Unlock(), true); });
}
bool CanWrite(OReadWriteLock& lock) {
  return Elsewhere([&] { return lock.TryLockForWrite() && (lock.Unlock(), true); });
}

TEST(OReadWriteLock, AdmitsManyReadersOrOneWriter) {
  OReadWriteLock lock;
  EXPECT_TRUE(CanRead(lock) && CanWrite(lock));
  {
    OReadLocker const reader(lock);
    EXPECT_TRUE(CanRead(lock));
    EXPECT_FALSE(CanWrite(lock));
  }
  {
    OWriteLocker const writer(lock);
    EXPECT_FALSE(CanRead(lock));
    EXPECT_FALSE(CanWrite(lock));
  }
  lock.LockForWrite();
  lock.Unlock();
  lock.LockForRead();
  EXPECT_TRUE(CanRead(lock));
  lock.Unlock();
  EXPECT_TRUE(CanWrite(lock));
}

TEST(OReadWriteLock, KeepsReadersFromHalfWrittenData) {
  OReadWriteLock lock;
  long first = 0;
  long second = 0;
  std::atomic<int> torn = 0;
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&, t] {
      for (int i = 0; i < 5000; ++i) {
        if (t < 2) {
          OWriteLocker const guard(lock);
          ++first;
          ++second;
        } else {
          OReadLocker const guard(lock);
          if (first != second) ++torn;
        }
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(torn, 0);
  EXPECT_EQ(first, 10000);
  EXPECT_EQ(second, 10000);
}

}  // namespace
