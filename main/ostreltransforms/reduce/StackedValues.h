#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <span>
#include <type_traits>
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
    return {Stack(sums_, value, kind), SpecialKind::None};
  }

  // Reads the second input alone. The sums stay out of memory while the rows are written.
  void ApplyToArrays(std::span<T const>, std::span<SpecialKind const>, std::span<T const> values,
                     std::span<SpecialKind const> kinds, std::span<T> output,
                     std::span<SpecialKind> outputKinds) {
    Pair sums = sums_;
    for (std::size_t row = 0; row < values.size(); ++row) output[row] = Stack(sums, values[row], kinds[row]);
    sums_ = sums;
    // Not before the kinds have been read: both may be one view.
    std::fill(outputKinds.begin(), outputKinds.end(), SpecialKind::None);
  }

 private:
  // Both piles in one register: the positive sum and the negative one.
  using Bits = std::conditional_t<sizeof(T) == 8, std::int64_t, std::int32_t>;
  typedef T Pair __attribute__((vector_size(2 * sizeof(T))));
  typedef Bits BitPair __attribute__((vector_size(2 * sizeof(T))));

  // Signs follow no pattern, so both piles grow, one of them by zero, and no branch asks for the sign. No
  // pile is ever minus zero, so adding zero changes none.
  [[gnu::always_inline]] static T Stack(Pair& sums, T value, SpecialKind kind) {
    BitPair isOn = (Pair{value, value} < Pair{}) ^ BitPair { -1, 0 };
    if (kind != SpecialKind::None) [[unlikely]]
      isOn = sums[0] == T{0} ? BitPair{0, -1} : BitPair{-1, 0};
    Pair const before = sums;
    sums += std::bit_cast<Pair>(std::bit_cast<BitPair>(Pair{value, value}) & isOn);
    BitPair const chosen = std::bit_cast<BitPair>(top ? sums : before) & isOn;
    return std::bit_cast<T>(chosen[0] | chosen[1]);
  }

  Pair sums_{};
};

}  // namespace OstrelTransforms
