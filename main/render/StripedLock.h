#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

#include "ostrelsys/OReadWriteLock.h"
#include "ostreltransforms/Export.h"

namespace runtime {

namespace detail {
// A number that no other running thread has, as far as the machine has so many processors; it may change from
// one call to the next.
OSTREL_API std::size_t GetRunningNumber() noexcept;
// Leaves the processor to whoever shares it for a moment, without a call into the system.
OSTREL_API void Pause() noexcept;
}  // namespace detail

// A reader/writer lock for data that is read far more often than written: a reader takes one part of it,
// mostly one that no other thread is using, so that readers do not wait for each other's cache lines; a
// writer takes all parts. What is done under it takes less time than to put a thread to sleep and wake it, so
// who finds it taken tries again for a while before waiting. Counters stand beside each part, for the readers
// that hold it.
template <class Counters>
class StripedLock {
  // Processors fetch neighbouring lines in pairs.
  struct alignas(128) Stripe {
    OReadWriteLock lock;
    Counters counters;
  };

 public:
  class Reader {
   public:
    explicit Reader(StripedLock& lock) : stripe_(lock.stripes_[detail::GetRunningNumber() % kStripes]) {
      if (!Try([&] { return stripe_.lock.TryLockForRead(); })) stripe_.lock.LockForRead();
    }
    ~Reader() { stripe_.lock.Unlock(); }
    Reader(Reader const&) = delete;
    Reader& operator=(Reader const&) = delete;

    // Shared with the readers that hold the same part.
    Counters* operator->() const noexcept { return &stripe_.counters; }

   private:
    Stripe& stripe_;
  };

  class Writer {
   public:
    explicit Writer(StripedLock& lock) : lock_(lock) {
      for (Stripe& stripe : lock_.stripes_) {
        if (!Try([&] { return stripe.lock.TryLockForWrite(); })) stripe.lock.LockForWrite();
      }
    }
    ~Writer() {
      for (Stripe& stripe : lock_.stripes_) stripe.lock.Unlock();
    }
    Writer(Writer const&) = delete;
    Writer& operator=(Writer const&) = delete;

   private:
    StripedLock& lock_;
  };

  std::uint32_t Sum(std::atomic<std::uint32_t> Counters::*counter) const noexcept {
    std::uint32_t sum = 0;
    for (Stripe const& stripe : stripes_) sum += (stripe.counters.*counter).load(std::memory_order_relaxed);
    return sum;
  }

 private:
  static constexpr std::size_t kStripes = 8;
  // Some microseconds.
  static constexpr int kTries = 100;

  template <class TryLock>
  static bool Try(TryLock const& tryLock) {
    for (int i = 0; i < kTries; ++i) {
      if (tryLock()) return true;
      detail::Pause();
    }
    return false;
  }

  std::array<Stripe, kStripes> stripes_;
};

}  // namespace runtime
