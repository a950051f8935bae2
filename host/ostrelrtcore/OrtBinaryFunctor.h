#pragma once

#include "ostrelrtcore/OrtFunctor.h"
#include "ostrelrtcore/RowLoop.h"

namespace ort::core {

/// A per-row operation `Out F::Apply(In1, In2)` as a functor over two columns, or folded over one.
/// Holds one F.
template <class In1, class In2, class Out, class F>
class OrtBinaryFunctor : public IBinaryFunctor<In1, In2, Out> {
 public:
  using FirstInput = In1;
  using SecondInput = In2;
  using Output = Out;

  template <class... Args>
  explicit OrtBinaryFunctor(Args&&... args) : operation_(std::forward<Args>(args)...) {}

  Out Apply(In1 first, In2 second) override { return operation_.Apply(first, second); }

  void ApplyToArrays(std::span<In1 const> first, std::span<In2 const> second,
                     std::span<Out> output) override {
    detail::RequireOneLength(first.size(), {second.size(), output.size()});
    // An operation may bring a loop of its own.
    if constexpr (requires { operation_.ApplyToArrays(first, second, output); }) {
      operation_.ApplyToArrays(first, second, output);
    } else {
      auto const row = [held = RowOperation<F, In1, In2>{operation_}, a = first.data(), b = second.data(),
                        out = output.data()](std::size_t i) { out[i] = held.operation.Apply(a[i], b[i]); };
      if constexpr (kVectorizable<In1, In2, Out>) {
        RunRows(first.size(), row);
      } else {
        detail::RunRowsBaseline(first.size(), row);
      }
    }
  }

  void AccumulateForward(Out& accumulator, std::span<In2 const> input, std::span<Out> output) override {
    Accumulate<true>(accumulator, input, output);
  }
  void AccumulateBackward(Out& accumulator, std::span<In2 const> input, std::span<Out> output) override {
    Accumulate<false>(accumulator, input, output);
  }

  FunctorStorage GetStorage() const override {
    return {ElementTraits<In1>::kStorage, ElementTraits<In2>::kStorage, ElementTraits<Out>::kStorage};
  }
  bool TakesKinds() const override { return false; }
  bool CanAccumulate() const override { return std::is_same_v<In1, Out>; }
  void ApplyUntyped(UntypedInput first, UntypedInput second, UntypedOutput output) override {
    ApplyToArrays(detail::TypedView<In1>(first), detail::TypedView<In2>(second),
                  detail::TypedView<Out>(output));
  }
  void AccumulateUntyped(bool forward, void* accumulator, SpecialKind*, UntypedInput input,
                         UntypedOutput output) override {
    auto const accumulate =
        forward ? &OrtBinaryFunctor::AccumulateForward : &OrtBinaryFunctor::AccumulateBackward;
    (this->*accumulate)(*static_cast<Out*>(accumulator), detail::TypedView<In2>(input),
                        detail::TypedView<Out>(output));
  }

 private:
  template <bool Forward>
  void Accumulate(Out& accumulator, std::span<In2 const> input, std::span<Out> output) {
    bool const isStored = output.data() != nullptr;
    if (isStored) detail::RequireOneLength(input.size(), {output.size()});
    if constexpr (std::is_same_v<In1, Out>) {
      std::size_t const count = input.size();
      for (std::size_t i = 0; i < count; ++i) {
        std::size_t const row = Forward ? i : count - 1 - i;
        accumulator = operation_.Apply(accumulator, input[row]);
        if (isStored) output[row] = accumulator;
      }
    } else {
      detail::ThrowNotAFold();
    }
  }

  F operation_;
};

/// Turns a plain function into an operation.
template <class In1, class In2, class Out, Out (*fn)(In1, In2)>
struct OrtBinaryFunctorGenerator {
  Out Apply(In1 first, In2 second) const { return fn(first, second); }
};

}  // namespace ort::core
