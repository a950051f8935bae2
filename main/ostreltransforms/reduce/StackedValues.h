#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <span>
#include <utility>

#include "ostrelrtcore/StoreType.h"

namespace OstrelTransforms {

// Stacks numbers in two piles, those below 0 and all others, as for stacked bars. A row's result is the
// top of its segment (its pile with the row's number added) or the bottom (without). A special row lies on
// the pile of negative numbers while the other one is exactly 0, and on the other one from then on. Every row
// of the result is an ordinary one.
template <class T, bool top>
class StackValuesTCFunctor {
  using SpecialKind = ort::core::SpecialKind;

 public:
  std::pair<T, SpecialKind> Apply(T, SpecialKind, T value, SpecialKind kind) {
    return {Stack(positiveSum_, negativeSum_, value, kind), SpecialKind::None};
  }

  // Reads the second input alone. The sums stay out of memory while the rows are written.
  void ApplyToArrays(std::span<T const>, std::span<SpecialKind const>, std::span<T const> values,
                     std::span<SpecialKind const> kinds, std::span<T> output,
                     std::span<SpecialKind> outputKinds) {
    T positive = positiveSum_;
    T negative = negativeSum_;
    for (std::size_t row = 0; row < values.size(); ++row) {
      output[row] = Stack(positive, negative, values[row], kinds[row]);
    }
    positiveSum_ = positive;
    negativeSum_ = negative;
    // Not before the kinds have been read: both may be one view.
    std::fill(outputKinds.begin(), outputKinds.end(), SpecialKind::None);
  }

 private:
  using Bits = std::conditional_t<sizeof(T) == 8, std::uint64_t, std::uint32_t>;

  // Signs follow no pattern, so both piles grow, one of them by zero, and no branch asks for the sign. No
  // pile is ever minus zero, so adding zero changes none.
  [[gnu::always_inline]] static T Stack(T& positive, T& negative, T value, SpecialKind kind) {
    bool isNegative = value < T{0};
    if (kind != SpecialKind::None) [[unlikely]]
      isNegative = positive == T{0};
    Bits const mask = Bits{0} - static_cast<Bits>(isNegative);
    T const formerPositive = positive;
    T const formerNegative = negative;
    positive += std::bit_cast<T>(static_cast<Bits>(std::bit_cast<Bits>(value) & ~mask));
    negative += std::bit_cast<T>(static_cast<Bits>(std::bit_cast<Bits>(value) & mask));
    T const onPositive = top ? positive : formerPositive;
    T const onNegative = top ? negative : formerNegative;
    return std::bit_cast<T>(static_cast<Bits>((std::bit_cast<Bits>(onNegative) & mask) |
                                              (std::bit_cast<Bits>(onPositive) & ~mask)));
  }

  T positiveSum_ = 0;
  T negativeSum_ = 0;
};

}  // namespace OstrelTransforms
