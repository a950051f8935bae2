#pragma once

#include "ostrelrtcore/OrtFunctor.h"
#include "ostrelrtcore/RowLoop.h"

namespace ort::core {

/// A per-row operation `std::pair<Out, SpecialKind> F::Apply(In, SpecialKind)`, which sees special rows, as
/// a functor over columns. Holds one F.
template <class In, class Out, class F>
class OrtUnarySpecialFunctor : public IUnarySpecialFunctor<In, Out> {
 public:
  using Input = In;
  using Output = Out;

  template <class... Args>
  explicit OrtUnarySpecialFunctor(Args&&... args) : operation_(std::forward<Args>(args)...) {}

  std::pair<Out, SpecialKind> Apply(In value, SpecialKind kind) override {
    return operation_.Apply(value, kind);
  }

  void ApplyToArray(std::span<In const> input, std::span<SpecialKind const> inputKinds, std::span<Out> output,
                    std::span<SpecialKind> outputKinds) override {
    detail::RequireOneLength(input.size(), {inputKinds.size(), output.size(), outputKinds.size()});
    // An operation may bring a loop of its own, for instance a vectorised one.
    if constexpr (requires { operation_.ApplyToArray(input, inputKinds, output, outputKinds); }) {
      operation_.ApplyToArray(input, inputKinds, output, outputKinds);
    } else {
      auto const row = [held = RowOperation<F, In, SpecialKind>{operation_}, in = input.data(),
                        inKinds = inputKinds.data(), out = output.data(),
                        outKinds = outputKinds.data()](std::size_t i) {
        auto result = held.operation.Apply(in[i], inKinds[i]);
        out[i] = std::move(result.first);
        outKinds[i] = result.second;
      };
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
  bool TakesKinds() const override { return true; }
  void ApplyUntyped(UntypedInput input, UntypedOutput output) override {
    ApplyToArray(detail::TypedView<In>(input), detail::KindView(input), detail::TypedView<Out>(output),
                 detail::KindView(output));
  }

 private:
  F operation_;
};

/// Turns a plain function of a value and its kind into an operation.
template <class In, class Out, std::pair<Out, SpecialKind> (*fn)(In, SpecialKind)>
struct OrtUnarySpecialFunctorGenerator {
  std::pair<Out, SpecialKind> Apply(In value, SpecialKind kind) const { return fn(value, kind); }
};

}  // namespace ort::core
