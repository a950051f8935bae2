#pragma once

#include "ostrelrtcore/OrtFunctor.h"
#include "ostrelrtcore/RowLoop.h"

namespace ort::core {

/// A per-row operation `std::pair<Out, SpecialKind> F::Apply(In1, SpecialKind, In2, SpecialKind)`, which
/// sees special rows, as a functor over two columns, or folded over one. Holds one F.
template <class In1, class In2, class Out, class F>
class OrtBinarySpecialFunctor : public IBinarySpecialFunctor<In1, In2, Out> {
 public:
  using FirstInput = In1;
  using SecondInput = In2;
  using Output = Out;

  template <class... Args>
  explicit OrtBinarySpecialFunctor(Args&&... args) : operation_(std::forward<Args>(args)...) {}

  std::pair<Out, SpecialKind> Apply(In1 first, SpecialKind firstKind, In2 second,
                                    SpecialKind secondKind) override {
    return operation_.Apply(first, firstKind, second, secondKind);
  }

  void ApplyToArrays(std::span<In1 const> first, std::span<SpecialKind const> firstKinds,
                     std::span<In2 const> second, std::span<SpecialKind const> secondKinds,
                     std::span<Out> output, std::span<SpecialKind> outputKinds) override {
    detail::RequireOneLength(first.size(), {firstKinds.size(), second.size(), secondKinds.size(),
                                            output.size(), outputKinds.size()});
    // An operation may bring a loop of its own: a running sum reads the second input alone.
    if constexpr (requires {
                    operation_.ApplyToArrays(first, firstKinds, second, secondKinds, output, outputKinds);
                  }) {
      operation_.ApplyToArrays(first, firstKinds, second, secondKinds, output, outputKinds);
    } else {
      auto const row = [held = RowOperation<F, In1, SpecialKind, In2, SpecialKind>{operation_},
                        a = first.data(), aKinds = firstKinds.data(), b = second.data(),
                        bKinds = secondKinds.data(), out = output.data(),
                        outKinds = outputKinds.data()](std::size_t i) {
        auto result = held.operation.Apply(a[i], aKinds[i], b[i], bKinds[i]);
        out[i] = std::move(result.first);
        outKinds[i] = result.second;
      };
      if constexpr (kVectorizable<In1, In2, Out>) {
        RunRows(first.size(), row);
      } else {
        detail::RunRowsBaseline(first.size(), row);
      }
    }
  }

  void AccumulateForward(Out& accumulator, SpecialKind& accumulatorKind, std::span<In2 const> input,
                         std::span<SpecialKind const> inputKinds, std::span<Out> output,
                         std::span<SpecialKind> outputKinds) override {
    Accumulate<true>(accumulator, accumulatorKind, input, inputKinds, output, outputKinds);
  }
  void AccumulateBackward(Out& accumulator, SpecialKind& accumulatorKind, std::span<In2 const> input,
                          std::span<SpecialKind const> inputKinds, std::span<Out> output,
                          std::span<SpecialKind> outputKinds) override {
    Accumulate<false>(accumulator, accumulatorKind, input, inputKinds, output, outputKinds);
  }

  FunctorStorage GetStorage() const override {
    return {ElementTraits<In1>::kStorage, ElementTraits<In2>::kStorage, ElementTraits<Out>::kStorage};
  }
  bool TakesKinds() const override { return true; }
  bool CanAccumulate() const override { return std::is_same_v<In1, Out>; }
  void ApplyUntyped(UntypedInput first, UntypedInput second, UntypedOutput output) override {
    ApplyToArrays(detail::TypedView<In1>(first), detail::KindView(first), detail::TypedView<In2>(second),
                  detail::KindView(second), detail::TypedView<Out>(output), detail::KindView(output));
  }
  void AccumulateUntyped(bool forward, void* accumulator, SpecialKind* accumulatorKind, UntypedInput input,
                         UntypedOutput output) override {
    auto const accumulate =
        forward ? &OrtBinarySpecialFunctor::AccumulateForward : &OrtBinarySpecialFunctor::AccumulateBackward;
    (this->*accumulate)(*static_cast<Out*>(accumulator), *accumulatorKind, detail::TypedView<In2>(input),
                        detail::KindView(input), detail::TypedView<Out>(output), detail::KindView(output));
  }

 private:
  template <bool Forward>
  void Accumulate(Out& accumulator, SpecialKind& accumulatorKind, std::span<In2 const> input,
                  std::span<SpecialKind const> inputKinds, std::span<Out> output,
                  std::span<SpecialKind> outputKinds) {
    detail::RequireOneLength(input.size(), {inputKinds.size()});
    bool const isStored = output.data() != nullptr;
    if (isStored) detail::RequireOneLength(input.size(), {output.size(), outputKinds.size()});
    if constexpr (std::is_same_v<In1, Out>) {
      // Where it can be copied, a copy that no other memory can refer to carries the state from row to row:
      // it need not be written and read again for each.
      constexpr bool kIsCopied = std::is_trivially_copyable_v<F> && std::is_copy_assignable_v<F>;
      std::conditional_t<kIsCopied, F, F&> operation{operation_};
      std::size_t const count = input.size();
      for (std::size_t i = 0; i < count; ++i) {
        std::size_t const row = Forward ? i : count - 1 - i;
        auto result = operation.Apply(accumulator, accumulatorKind, input[row], inputKinds[row]);
        accumulator = std::move(result.first);
        accumulatorKind = result.second;
        if (isStored) {
          output[row] = accumulator;
          outputKinds[row] = accumulatorKind;
        }
      }
      if constexpr (kIsCopied) operation_ = operation;
    } else {
      detail::ThrowNotAFold();
    }
  }

  F operation_;
};

/// Turns a plain function of two values and their kinds into an operation.
template <class In1, class In2, class Out,
          std::pair<Out, SpecialKind> (*fn)(In1, SpecialKind, In2, SpecialKind)>
struct OrtBinarySpecialFunctorGenerator {
  std::pair<Out, SpecialKind> Apply(In1 first, SpecialKind firstKind, In2 second,
                                    SpecialKind secondKind) const {
    return fn(first, firstKind, second, secondKind);
  }
};

}  // namespace ort::core
