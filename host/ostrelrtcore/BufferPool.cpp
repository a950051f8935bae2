#include "ostrelrtcore/BufferPool.h"

#include <sys/mman.h>

#include <array>
#include <bit>
#include <boost/intrusive/list.hpp>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <mutex>
#include <new>

namespace ort::core {

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ORTCORE_ADDRESS_SANITIZER
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define ORTCORE_ADDRESS_SANITIZER
#endif

#ifdef ORTCORE_ADDRESS_SANITIZER
constexpr bool kKeepsBuffers = false;
#else
constexpr bool kKeepsBuffers = true;
#endif

namespace {

using namespace BufferPool;

constexpr std::size_t RoundUp(std::size_t bytes, std::size_t step) {
  return (bytes + step - 1) / step * step;
}

// Small buffers: the heap aligns to 16 bytes only, and its aligned allocation is slow. So a block is taken
// that is one alignment larger, with its address in front of the data.

void* AllocateSmall(std::size_t bytes) noexcept {
  void* const block = std::malloc(bytes + kAlignment);
  if (block == nullptr) return nullptr;
  auto const address = reinterpret_cast<std::uintptr_t>(block);
  auto* const data = static_cast<std::byte*>(block) + (kAlignment - address % kAlignment);
  reinterpret_cast<void**>(data)[-1] = block;
  return data;
}

void FreeSmall(void* data) noexcept { std::free(static_cast<void**>(data)[-1]); }

// Huge-page memory, aligned by mapping too much and giving the ends back.

void* MapHuge(std::size_t bytes) noexcept {
  std::size_t const mapped = bytes + kHugePageBytes;
  void* const region = mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (region == MAP_FAILED) return nullptr;
  auto const address = reinterpret_cast<std::uintptr_t>(region);
  std::size_t const before = (kHugePageBytes - address % kHugePageBytes) % kHugePageBytes;
  std::size_t const behind = kHugePageBytes - before;
  auto* const data = static_cast<std::byte*>(region) + before;
  if (before != 0) munmap(region, before);
  if (behind != 0) munmap(data + bytes, behind);
  madvise(data, bytes, MADV_HUGEPAGE);  // a refusal costs speed only
  return data;
}

// A loop reads some columns and writes another. Processors compare the places of loads and stores within
// their pages first, and hold a load back for a store that seems to stand just there. Where all columns begin
// at a page's begin, no row of one looks like a later row of another.
constexpr std::size_t kPageBytes = 4096;

void* AllocateLarge(std::size_t capacity) noexcept {
  return capacity >= kHugePageBytes ? MapHuge(capacity) : std::aligned_alloc(kPageBytes, capacity);
}

void FreeLarge(void* data, std::size_t capacity) noexcept {
  if (capacity >= kHugePageBytes) {
    munmap(data, capacity);
  } else {
    std::free(data);
  }
}

struct SizeClass {
  std::size_t index;
  std::size_t capacity;
};

constexpr std::size_t kStepsPerPowerOfTwo = 4;
constexpr std::size_t kSmallestBase = std::bit_floor(kMinPooledBytes - 1);
constexpr std::size_t kClassCount =
    (std::bit_width(kMaxKeptBytes - 1) - std::bit_width(kSmallestBase) + 1) * kStepsPerPowerOfTwo;

/// The class of a size from kMinPooledBytes to kMaxKeptBytes. Capacities lie above a power of two, the
/// base, by one to four quarters of it.
constexpr SizeClass ClassOf(std::size_t bytes) {
  std::size_t const base = std::bit_floor((bytes - 1) | kSmallestBase);
  std::size_t const step = base / kStepsPerPowerOfTwo;
  std::size_t const capacity = RoundUp(bytes, step);
  auto const octave = static_cast<std::size_t>(std::countr_zero(base) - std::countr_zero(kSmallestBase));
  return {octave * kStepsPerPowerOfTwo + (capacity - base) / step - 1, capacity};
}
static_assert(ClassOf(kMinPooledBytes).index == kStepsPerPowerOfTwo - 1);
static_assert(ClassOf(kMaxKeptBytes).index == kClassCount - 1);

namespace intrusive = boost::intrusive;
using ClassHook = intrusive::list_base_hook<intrusive::tag<struct InClass>>;
using AgeHook = intrusive::list_base_hook<intrusive::tag<struct ByAge>>;

/// Stands at the start of a free buffer's own memory, so that keeping one allocates nothing.
struct FreeBuffer : ClassHook, AgeHook {
  explicit FreeBuffer(std::size_t bytes) : capacity(bytes) {}
  std::size_t capacity;
};

using ClassList =
    intrusive::list<FreeBuffer, intrusive::base_hook<ClassHook>, intrusive::constant_time_size<false>>;
using AgeList =
    intrusive::list<FreeBuffer, intrusive::base_hook<AgeHook>, intrusive::constant_time_size<false>>;

void FreeAll(AgeList& buffers) noexcept {
  buffers.clear_and_dispose([](FreeBuffer* buffer) { FreeLarge(buffer, buffer->capacity); });
}

class Pool {
 public:
  /// Null when there is none of the size.
  void* Take(std::size_t bytes) noexcept {
    std::lock_guard const lock(mutex_);
    ClassList& sameSize = classes_[ClassOf(bytes).index];
    if (sameSize.empty()) return nullptr;
    FreeBuffer& newest = sameSize.back();
    Unlink(newest);
    return &newest;
  }

  void Keep(void* data, std::size_t capacity) noexcept {
    AgeList evicted;
    {
      std::lock_guard const lock(mutex_);
      auto& buffer = *new (data) FreeBuffer(capacity);
      classes_[ClassOf(capacity).index].push_back(buffer);
      byAge_.push_back(buffer);
      keptBytes_ += capacity;
      while (keptBytes_ > kMaxKeptBytes) {
        FreeBuffer& oldest = byAge_.front();
        Unlink(oldest);
        evicted.push_back(oldest);
      }
    }
    FreeAll(evicted);
  }

  void Trim() noexcept {
    AgeList all;
    {
      std::lock_guard const lock(mutex_);
      for (ClassList& sameSize : classes_) sameSize.clear();
      all.swap(byAge_);
      keptBytes_ = 0;
    }
    FreeAll(all);
  }

  std::size_t GetKeptBytes() noexcept {
    std::lock_guard const lock(mutex_);
    return keptBytes_;
  }

 private:
  void Unlink(FreeBuffer& buffer) noexcept {
    keptBytes_ -= buffer.capacity;
    classes_[ClassOf(buffer.capacity).index].erase(ClassList::s_iterator_to(buffer));
    byAge_.erase(AgeList::s_iterator_to(buffer));
  }

  std::mutex mutex_;
  std::array<ClassList, kClassCount> classes_;
  AgeList byAge_;
  std::size_t keptBytes_ = 0;
};

/// Never destroyed, since statics of other libraries may hold columns until the very end; the free
/// buffers alone are given back when this library goes.
Pool& ThePool() noexcept {
  alignas(Pool) static std::byte memory[sizeof(Pool)];
  static Pool& pool = *new (memory) Pool;
  return pool;
}

struct TrimAtUnload {
  ~TrimAtUnload() { ThePool().Trim(); }
};
TrimAtUnload const trimAtUnload;

/// Tries again with the pool's memory given back.
template <typename Allocate>
void* AllocateOrTrim(Allocate allocate) {
  void* data = allocate();
  if (data == nullptr) {
    ThePool().Trim();
    data = allocate();
  }
  if (data == nullptr) throw std::bad_alloc();
  return data;
}

}  // namespace

PooledBuffer::PooledBuffer(std::size_t bytes) : size_(bytes) {
  if (bytes == 0) return;
  if (bytes > std::numeric_limits<std::ptrdiff_t>::max() - 2 * kHugePageBytes) throw std::bad_alloc();
  if (!kKeepsBuffers) {
    capacity_ = bytes;
    data_ = ::operator new (bytes, std::align_val_t{kAlignment});
  } else if (bytes < kMinPooledBytes) {
    capacity_ = RoundUp(bytes, kAlignment);
    data_ = AllocateOrTrim([this] { return AllocateSmall(capacity_); });
  } else if (bytes > kMaxKeptBytes) {
    capacity_ = RoundUp(bytes, kHugePageBytes);
    data_ = AllocateOrTrim([this] { return MapHuge(capacity_); });
  } else {
    capacity_ = ClassOf(bytes).capacity;
    data_ = ThePool().Take(bytes);
    if (data_ == nullptr) data_ = AllocateOrTrim([this] { return AllocateLarge(capacity_); });
  }
}

void PooledBuffer::Release() noexcept {
  if (!kKeepsBuffers) {
    ::operator delete (data_, std::align_val_t{kAlignment});
  } else if (size_ < kMinPooledBytes) {
    FreeSmall(data_);
  } else if (size_ > kMaxKeptBytes) {
    FreeLarge(data_, capacity_);
  } else {
    ThePool().Keep(data_, capacity_);
  }
}

bool BufferPool::KeepsBuffers() noexcept { return kKeepsBuffers; }
std::size_t BufferPool::GetKeptBytes() noexcept { return ThePool().GetKeptBytes(); }
void BufferPool::Trim() noexcept { ThePool().Trim(); }

}  // namespace ort::core
