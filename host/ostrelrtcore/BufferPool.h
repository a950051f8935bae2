#pragma once

#include <cstddef>
#include <utility>

#include "ostrelrtcore/Export.h"

namespace ort::core {

/// Uninitialised memory for the rows of a column, aligned to 64 bytes. It goes back to the pool when the
/// buffer is destroyed, on any thread, also while the program ends.
class ORTCORE_API PooledBuffer {
 public:
  /// No memory: data() is null.
  PooledBuffer() noexcept = default;
  /// At least `bytes` bytes; none for 0. Throws std::bad_alloc.
  explicit PooledBuffer(std::size_t bytes);

  PooledBuffer(PooledBuffer&& other) noexcept
      : data_(std::exchange(other.data_, nullptr)),
        size_(std::exchange(other.size_, 0)),
        capacity_(std::exchange(other.capacity_, 0)) {}
  PooledBuffer& operator=(PooledBuffer&& other) noexcept {
    PooledBuffer taken(std::move(other));
    std::swap(data_, taken.data_);
    std::swap(size_, taken.size_);
    std::swap(capacity_, taken.capacity_);
    return *this;
  }
  ~PooledBuffer() {
    if (data_ != nullptr) Release();
  }

  void* data() noexcept { return data_; }
  void const* data() const noexcept { return data_; }
  /// The bytes asked for.
  std::size_t size() const noexcept { return size_; }
  /// The bytes that may be used, not below size().
  std::size_t capacity() const noexcept { return capacity_; }

 private:
  void Release() noexcept;

  void* data_ = nullptr;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

/// The one pool behind all PooledBuffers. A graph that is evaluated again finds its buffers again: fresh
/// memory has to be mapped and zeroed page by page, which costs far more than the arithmetic of most
/// functions. Buffers are rounded up to four sizes per power of two, so at most a quarter is unused;
/// from kHugePageBytes on they are aligned to huge pages and ask for them.
///
/// Under the address sanitizer every buffer is an allocation of its own and nothing is kept, so that use
/// after release and overruns are found.
namespace BufferPool {

/// Free buffers are kept up to this sum; beyond it the ones unused for longest are given back.
inline constexpr std::size_t kMaxKeptBytes = std::size_t{256} << 20;
/// Smaller buffers come from the heap and are not kept.
inline constexpr std::size_t kMinPooledBytes = std::size_t{64} << 10;
inline constexpr std::size_t kHugePageBytes = std::size_t{2} << 20;
inline constexpr std::size_t kAlignment = 64;

/// False under the address sanitizer.
ORTCORE_API bool KeepsBuffers() noexcept;
/// The bytes of free buffers kept at this moment.
ORTCORE_API std::size_t GetKeptBytes() noexcept;
/// Gives all free buffers back to the system.
ORTCORE_API void Trim() noexcept;

}  // namespace BufferPool

}  // namespace ort::core
