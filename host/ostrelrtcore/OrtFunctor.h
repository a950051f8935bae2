#pragma once

#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "ostrelrtcore/StoreValue.h"

namespace ort::core {

class UntypedUnary;
class UntypedBinary;

/// What a registered factory makes: an object of one use, which may carry state from row to row. A host that
/// does not know the operation behind it calls it through one of the interfaces below, found by dynamic_cast.
//
/// Columns are passed as views: a span over the elements and, in the special forms, a second span with the
/// SpecialKind of every row. All views of a call have one length, else code 259 is thrown before any row is
/// written; an empty view may have a null pointer. Input and output may be one view.
class ORTCORE_API OrtFunctor {
 public:
  virtual ~OrtFunctor();

  /// The functor as its untyped interface, null where it has none: what a dynamic_cast would find, without
  /// its search through type names.
  UntypedUnary* GetUntypedUnary() const noexcept { return unary_; }
  UntypedBinary* GetUntypedBinary() const noexcept { return binary_; }

 protected:
  OrtFunctor() = default;
  explicit OrtFunctor(UntypedUnary& unary) : unary_(&unary) {}
  explicit OrtFunctor(UntypedBinary& binary) : binary_(&binary) {}
  OrtFunctor(OrtFunctor const&) = delete;
  OrtFunctor& operator=(OrtFunctor const&) = delete;

 private:
  UntypedUnary* unary_ = nullptr;
  UntypedBinary* binary_ = nullptr;
};

/// A column as a host sees it that knows only storage classes; `kinds` is null for plain functors.
struct UntypedInput {
  void const* values = nullptr;
  SpecialKind const* kinds = nullptr;
  std::size_t count = 0;
};
struct UntypedOutput {
  void* values = nullptr;
  SpecialKind* kinds = nullptr;
  std::size_t count = 0;
};

/// The storage classes that a functor reads and writes; `second` is the one input of a unary functor again.
struct FunctorStorage {
  StorageClass first;
  StorageClass second;
  StorageClass output;
};

/// The same operations for a host that works by storage class: one more base of every functor, so that the
/// typed interfaces keep their slots.
class ORTCORE_API UntypedUnary {
 public:
  virtual ~UntypedUnary();
  virtual FunctorStorage GetStorage() const = 0;
  virtual bool TakesKinds() const = 0;
  virtual void ApplyUntyped(UntypedInput input, UntypedOutput output) = 0;
};

class ORTCORE_API UntypedBinary {
 public:
  virtual ~UntypedBinary();
  virtual FunctorStorage GetStorage() const = 0;
  virtual bool TakesKinds() const = 0;
  /// A fold needs an output of the first input's type.
  virtual bool CanAccumulate() const = 0;
  virtual void ApplyUntyped(UntypedInput first, UntypedInput second, UntypedOutput output) = 0;
  /// `accumulator` points to an element of the output's type; `accumulatorKind` is null for plain functors.
  virtual void AccumulateUntyped(bool forward, void* accumulator, SpecialKind* accumulatorKind,
                                 UntypedInput input, UntypedOutput output) = 0;
};

template <class In, class Out>
class ORTCORE_API IUnaryFunctor : public OrtFunctor, public UntypedUnary {
 public:
  IUnaryFunctor() : OrtFunctor(static_cast<UntypedUnary&>(*this)) {}

  virtual Out Apply(In value) = 0;
  virtual void ApplyToArray(std::span<In const> input, std::span<Out> output) = 0;
};

template <class In, class Out>
class ORTCORE_API IUnarySpecialFunctor : public OrtFunctor, public UntypedUnary {
 public:
  IUnarySpecialFunctor() : OrtFunctor(static_cast<UntypedUnary&>(*this)) {}

  virtual std::pair<Out, SpecialKind> Apply(In value, SpecialKind kind) = 0;
  virtual void ApplyToArray(std::span<In const> input, std::span<SpecialKind const> inputKinds,
                            std::span<Out> output, std::span<SpecialKind> outputKinds) = 0;
};

/// AccumulateForward runs accumulator = Apply(accumulator, input[row]) from the first row to the last and,
/// when an output view is given (its pointer is not null), stores each new accumulator at its row.
/// AccumulateBackward takes the rows from last to first. Both throw 55 where the output is not of the first
/// input's type.
template <class In1, class In2, class Out>
class ORTCORE_API IBinaryFunctor : public OrtFunctor, public UntypedBinary {
 public:
  IBinaryFunctor() : OrtFunctor(static_cast<UntypedBinary&>(*this)) {}

  virtual Out Apply(In1 first, In2 second) = 0;
  virtual void ApplyToArrays(std::span<In1 const> first, std::span<In2 const> second,
                             std::span<Out> output) = 0;
  virtual void AccumulateForward(Out& accumulator, std::span<In2 const> input, std::span<Out> output) = 0;
  virtual void AccumulateBackward(Out& accumulator, std::span<In2 const> input, std::span<Out> output) = 0;
};

template <class In1, class In2, class Out>
class ORTCORE_API IBinarySpecialFunctor : public OrtFunctor, public UntypedBinary {
 public:
  IBinarySpecialFunctor() : OrtFunctor(static_cast<UntypedBinary&>(*this)) {}

  virtual std::pair<Out, SpecialKind> Apply(In1 first, SpecialKind firstKind, In2 second,
                                            SpecialKind secondKind) = 0;
  virtual void ApplyToArrays(std::span<In1 const> first, std::span<SpecialKind const> firstKinds,
                             std::span<In2 const> second, std::span<SpecialKind const> secondKinds,
                             std::span<Out> output, std::span<SpecialKind> outputKinds) = 0;
  virtual void AccumulateForward(Out& accumulator, SpecialKind& accumulatorKind, std::span<In2 const> input,
                                 std::span<SpecialKind const> inputKinds, std::span<Out> output,
                                 std::span<SpecialKind> outputKinds) = 0;
  virtual void AccumulateBackward(Out& accumulator, SpecialKind& accumulatorKind, std::span<In2 const> input,
                                  std::span<SpecialKind const> inputKinds, std::span<Out> output,
                                  std::span<SpecialKind> outputKinds) = 0;
};

/// A table-level function: an ordered list of whole values in, one value out.
class ORTCORE_API IMultinaryFunctor : public OrtFunctor {
 public:
  virtual std::shared_ptr<StoreValue> Apply(std::vector<std::shared_ptr<StoreValue>> const& inputs) = 0;
};

/// Turns a plain function into a multinary functor.
template <std::shared_ptr<StoreValue> (*fn)(std::vector<std::shared_ptr<StoreValue>> const&)>
class OrtMultinaryFunctor final : public IMultinaryFunctor {
 public:
  std::shared_ptr<StoreValue> Apply(std::vector<std::shared_ptr<StoreValue>> const& inputs) override {
    return fn(inputs);
  }
};

namespace detail {
[[noreturn]] ORTCORE_API void ThrowLengthMismatch();
[[noreturn]] ORTCORE_API void ThrowNotAFold();

inline void RequireOneLength(std::size_t count, std::initializer_list<std::size_t> others) {
  for (std::size_t const other : others) {
    if (other != count) ThrowLengthMismatch();
  }
}

template <class T>
std::span<T const> TypedView(UntypedInput input) {
  return {static_cast<T const*>(input.values), input.count};
}
template <class T>
std::span<T> TypedView(UntypedOutput output) {
  return {static_cast<T*>(output.values), output.count};
}
inline std::span<SpecialKind const> KindView(UntypedInput input) { return {input.kinds, input.count}; }
inline std::span<SpecialKind> KindView(UntypedOutput output) { return {output.kinds, output.count}; }
}  // namespace detail

}  // namespace ort::core
