#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace ort::core {

/// A colour of four 8-bit channels held as one int: alpha in the highest byte, then red, green, blue.
class OrtColor {
 public:
  /// Fully transparent black, 0.
  constexpr OrtColor() noexcept = default;
  constexpr OrtColor(int argb) noexcept : argb_(argb) {}

  constexpr int GetValue() const noexcept { return argb_; }

  /// Channels are 0 to 255.
  constexpr int GetA() const noexcept { return Channel(24); }
  constexpr int GetR() const noexcept { return Channel(16); }
  constexpr int GetG() const noexcept { return Channel(8); }
  constexpr int GetB() const noexcept { return Channel(0); }

  /// Setters take the low eight bits of their argument.
  constexpr void SetA(int alpha) noexcept { SetChannel(24, alpha); }
  constexpr void SetR(int red) noexcept { SetChannel(16, red); }
  constexpr void SetG(int green) noexcept { SetChannel(8, green); }
  constexpr void SetB(int blue) noexcept { SetChannel(0, blue); }

  friend constexpr bool operator==(OrtColor, OrtColor) noexcept = default;

 private:
  constexpr int Channel(int shift) const noexcept { return (argb_ >> shift) & 0xFF; }
  constexpr void SetChannel(int shift, int value) noexcept {
    std::uint32_t const mask = std::uint32_t{0xFF} << shift;
    std::uint32_t const bits = (static_cast<std::uint32_t>(value) << shift) & mask;
    argb_ = static_cast<int>((static_cast<std::uint32_t>(argb_) & ~mask) | bits);
  }

  int argb_ = 0;
};

}  // namespace ort::core

template <>
struct std::hash<ort::core::OrtColor> {
  std::size_t operator()(ort::core::OrtColor color) const noexcept {
    return std::hash<int>{}(color.GetValue());
  }
};
