#pragma once

#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <utility>

#include "ostrelrtcore/BufferPool.h"

namespace ostrel::charts {

/// Memory of the runtime's pool for containers: large pieces come in huge pages, or warm from an earlier use.
template <typename T>
class PooledAllocator {
 public:
  using value_type = T;

  PooledAllocator() noexcept = default;
  template <typename U>
  PooledAllocator(PooledAllocator<U> const&) noexcept {}

  T* allocate(std::size_t count) {
    if (count > (std::numeric_limits<std::size_t>::max() - kHeader) / sizeof(T))
      throw std::bad_array_new_length();
    ort::core::PooledBuffer buffer(count * sizeof(T) + kHeader);
    auto* const memory = static_cast<std::byte*>(buffer.data());
    // The buffer keeps itself in front of the elements until they are given back.
    ::new (memory) ort::core::PooledBuffer(std::move(buffer));
    return reinterpret_cast<T*>(memory + kHeader);
  }

  void deallocate(T* elements, std::size_t) noexcept {
    auto* const header = std::launder(
        reinterpret_cast<ort::core::PooledBuffer*>(reinterpret_cast<std::byte*>(elements) - kHeader));
    auto const buffer = std::move(*header);
    std::destroy_at(header);
  }

  template <typename U>
  friend bool operator==(PooledAllocator const&, PooledAllocator<U> const&) noexcept {
    return true;
  }

 private:
  static constexpr std::size_t kHeader = ort::core::BufferPool::kAlignment;
  static_assert(sizeof(ort::core::PooledBuffer) <= kHeader && alignof(T) <= kHeader);
};

}  // namespace ostrel::charts
