#include "ostrelrtcore/engine/Rowwise.h"

#include <array>

#include "ostrelrtcore/engine/Functors.h"
#include "ostrelrtcore/engine/ResultColumn.h"
#include "ostrelrtcore/engine/RowReader.h"
#include "ostrelrtcore/engine/SpecialRows.h"

namespace ort::core::engine {
namespace {

// One shape for both arities: N operands and a functor that takes N views.
template <std::size_t N>
struct RowwiseCall {
  using Functor = std::conditional_t<N == 1, UntypedUnary, UntypedBinary>;

  FoundFunction const& function;
  std::array<Operand, N> operands;
  Functor& functor;
  bool takesKinds;
  int count;

  void Apply(std::array<UntypedInput, N> const& inputs, UntypedOutput output) const {
    if constexpr (N == 1) {
      functor.ApplyUntyped(inputs[0], output);
    } else {
      functor.ApplyUntyped(inputs[0], inputs[1], output);
    }
  }
};

// The rows' only result where one element stands for all of them.
struct SingleResult {
  ElementSlot element;
  SpecialKind kind = SpecialKind::None;
};

template <std::size_t N>
SingleResult ApplyOnce(RowwiseCall<N> const& call) {
  SingleResult result{ElementSlot(GetStorageClass(call.function.GetOutputType()))};
  std::array<SpecialKind, N> kinds;
  std::array<UntypedInput, N> inputs;
  for (std::size_t i = 0; i < N; ++i) {
    kinds[i] = call.operands[i].GetUniformKind();
    inputs[i] = {call.operands[i].GetElements(), call.takesKinds ? &kinds[i] : nullptr, 1};
    if (!call.takesKinds && result.kind == SpecialKind::None) result.kind = kinds[i];
  }
  if (result.kind != SpecialKind::None) return result;
  call.Apply(inputs, {result.element.GetAddress(), call.takesKinds ? &result.kind : nullptr, 1});
  return result;
}

template <std::size_t N>
std::array<RowReader, N> MakeReaders(RowwiseCall<N> const& call) {
  auto const make = [&](std::size_t i) {
    return RowReader(call.operands[i], call.takesKinds, static_cast<std::size_t>(call.count));
  };
  if constexpr (N == 1) {
    return {make(0)};
  } else {
    return {make(0), make(1)};
  }
}

template <std::size_t N>
class RowwiseLoop {
 public:
  explicit RowwiseLoop(RowwiseCall<N> const& call)
      : call_(call), result_(call.function.GetOutputType(), call.count), readers_(MakeReaders(call)) {
    for (auto const& reader : readers_) areDirect_ = areDirect_ && reader.IsDirect();
  }

  Value ApplyToAll() {
    Apply(RowSet::Range(0, call_.count));
    return result_.Finish();
  }

  Value ApplyToOrdinary(SpecialRows const& specials) {
    specials.ForEachOrdinary(true, [this](RowSet const& rows) { Apply(rows); });
    result_.MarkSpecial(specials.GetRows(), specials.GetKinds());
    return result_.Finish();
  }

 private:
  void Apply(RowSet const& rows) {
    std::size_t const partRows = rows.IsRange() && areDirect_ ? rows.count : kBlockRows;
    ForEachPart(rows, partRows, true, [this](RowSet const& part) {
      std::array<UntypedInput, N> inputs;
      for (std::size_t i = 0; i < N; ++i) inputs[i] = readers_[i].Read(part);
      UntypedOutput const output = result_.Prepare(part, call_.takesKinds);
      call_.Apply(inputs, output);
      result_.Write(part, output);
    });
  }

  RowwiseCall<N> const& call_;
  ResultColumn result_;
  std::array<RowReader, N> readers_;
  bool areDirect_ = true;
};

template <std::size_t N>
Value Apply(RowwiseCall<N> const& call) {
  StoreType const outputType = call.function.GetOutputType();
  if (call.count < 0) {
    auto const single = ApplyOnce(call);
    return single.element.ToScalar(outputType, single.kind);
  }
  bool isOneElement = call.count > 0 && !call.function.isOrderDependent;
  for (auto const& operand : call.operands) isOneElement = isOneElement && operand.IsBroadcast();
  if (isOneElement) {
    auto const single = ApplyOnce(call);
    return MakeRepeatedColumn(outputType, single.element, single.kind, call.count);
  }
  if (call.takesKinds) return RowwiseLoop<N>(call).ApplyToAll();
  SpecialRows const specials(call.operands, call.count);
  if (specials.GetUniformKind() != SpecialKind::None) {
    return MakeRepeatedColumn(outputType, ElementSlot(GetStorageClass(outputType)), specials.GetUniformKind(),
                              call.count);
  }
  return RowwiseLoop<N>(call).ApplyToOrdinary(specials);
}

}  // namespace

Value ApplyRowwise(FoundFunction const& function, CallView const& call) {
  if (call.mode == EvaluationMode::Map) {
    auto const made = MakeUnary(function, call.parameters);
    std::array<Operand, 1> operands{Operand(call.inputs[0])};
    int const count = GetCommonCount({&operands[0]});
    return Apply<1>({function, std::move(operands), *made.functor, made.functor->TakesKinds(), count});
  }
  auto const made = MakeBinary(function, call.parameters);
  std::array<Operand, 2> operands{Operand(call.inputs[0]), Operand(call.inputs[1])};
  int const count = GetCommonCount({&operands[0], &operands[1]});
  return Apply<2>({function, std::move(operands), *made.functor, made.functor->TakesKinds(), count});
}

}  // namespace ort::core::engine
