#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>

// The input's bytes one after the other, zeros behind the last, and the numbers that they make.
class Bytes {
 public:
  Bytes(std::uint8_t const* data, std::size_t size) : data_(data), size_(size) {}

  bool AtEnd() const { return size_ == 0; }

  std::uint8_t Next() {
    if (size_ == 0) return 0;
    --size_;
    return *data_++;
  }

  template <class T>
  T NextBits() {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < sizeof(T); ++i) bits = bits << 8 | Next();
    return static_cast<T>(bits);
  }

  // Mostly small numbers, now and then the ends of the range and any bits.
  template <class T>
  T NextInteger() {
    auto const byte = Next();
    if (byte < 240) return static_cast<T>(byte - 20);
    if (byte < 244) return std::numeric_limits<T>::max();
    if (byte < 248) return std::numeric_limits<T>::min();
    return NextBits<T>();
  }

  // Small multiples of a quarter, numbers at which arithmetic goes wrong, and any bits.
  double NextReal() {
    using Limits = std::numeric_limits<double>;
    constexpr double odd[] = {Limits::quiet_NaN(),
                              Limits::infinity(),
                              -Limits::infinity(),
                              Limits::max(),
                              Limits::lowest(),
                              Limits::min(),
                              Limits::denorm_min(),
                              -Limits::denorm_min(),
                              -0.0,
                              1e-170,
                              1e154,
                              9007199254740993.0};
    auto const byte = Next();
    if (byte < std::size(odd)) return odd[byte];
    if (byte >= 248) return std::bit_cast<double>(NextBits<std::uint64_t>());
    return (byte - 32) * 0.25;
  }

  // What is left, up to a zero.
  std::string NextText() {
    std::string text;
    while (!AtEnd()) {
      auto const byte = Next();
      if (byte == 0) break;
      text += static_cast<char>(byte);
    }
    return text;
  }

 private:
  std::uint8_t const* data_;
  std::size_t size_;
};

// The claim that a fuzz program makes.
inline void Check(bool condition) {
  if (!condition) std::abort();
}
