#pragma once

#include "ostrelrtcore/OrtFunctor.h"
#include "ostrelrtcore/RowLoop.h"

namespace ort::core {

/// A per-row operation `Out F::Apply(In)` as a functor over columns. Holds one F.
template <class In, class Out, class F>
class OrtUnaryFunctor : public IUnaryFunctor<In, Out> {
 public:
  using Input = In;
  using Output = Out;

  template <class... Args>
  explicit OrtUnaryFunctor(Args&&... args) : operation_(std::forward<Args>(args)...) {}

  Out Apply(In value) override { return operation_.Apply(value); }

  void ApplyToArray(std::span<In const> input, std::span<Out> output) override {
    detail::RequireOneLength(input.size(), {output.size()});
    // An operation may bring a loop of its own, for instance a vectorised one.
    if constexpr (requires { operation_.ApplyToArray(input, output); }) {
      operation_.ApplyToArray(input, output);
    } else {
      auto const row = [held = RowOperation<F, In>{operation_}, in = input.data(),
                        out = output.data()](std::size_t i) { out[i] = held.operation.Apply(in[i]); };
      if constexpr (kVectorizable<In, Out>) {
        RunRows(input.size(), row);
      } else {
        detail::RunRowsBaseline(input.size(), row);
      }
    }
  }

  FunctorStorage GetStorage() const override {
    return {ElementTraits<In>::kStorage, ElementTraits<In>::kStorage, ElementTraits<Out>::kStorage};
  }
  bool TakesKinds() const override { return false; }
  void ApplyUntyped(UntypedInput input, UntypedOutput output) override {
    ApplyToArray(detail::TypedView<In>(input), detail::TypedView<Out>(output));
  }

 private:
  F operation_;
};

/// Turns a plain function into an operation.
template <class In, class Out, Out (*fn)(In)>
struct OrtUnaryFunctorGenerator {
  Out Apply(In value) const { return fn(value); }
};

}  // namespace ort::core
