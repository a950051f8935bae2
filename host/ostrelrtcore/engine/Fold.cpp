#include "ostrelrtcore/engine/Fold.h"

#include <optional>

#include "ostrelrtcore/engine/Functors.h"
#include "ostrelrtcore/engine/Groups.h"
#include "ostrelrtcore/engine/ResultColumn.h"
#include "ostrelrtcore/engine/RowReader.h"
#include "ostrelrtcore/engine/SpecialRows.h"

namespace ort::core::engine {
namespace {

struct Accumulator {
  ElementSlot element;
  SpecialKind kind = SpecialKind::None;
};

Accumulator MakeInitial(FoundFunction const& function, CallView const& call, bool takesKinds) {
  if (call.initial == nullptr) {
    Accumulator zero{ElementSlot(GetStorageClass(function.GetInputType(0)))};
    if (zero.element.GetStorage() != StorageClass::Value) return zero;
    throw OrtRuntimeException(OrtError_WrongValueKind,
                              function.key->GetName() + OStringCore(L": an initial value is needed"));
  }
  if (call.initial->IsSpecial() && !takesKinds) {
    throw OrtRuntimeException(OrtError_WrongValueKind,
                              function.key->GetName() + OStringCore(L": the initial value is special"));
  }
  return {ElementSlot(call.initial), call.initial->GetSpecialKind()};
}

class FoldLoop {
 public:
  FoldLoop(FoundFunction const& function, CallView const& call, Operand const& input, int count)
      : function_(function),
        call_(call),
        input_(input),
        count_(count),
        made_(Make()),
        takesKinds_(made_.functor->TakesKinds()),
        initial_(MakeInitial(function, call, takesKinds_)) {
    if (!made_.functor->CanAccumulate()) ort::core::detail::ThrowNotAFold();
  }

  Value ApplyToScalar();
  Value ApplyToColumn();
  Value ApplyToGroups();

 private:
  MadeFunctor<UntypedBinary> Make() const { return MakeBinary(function_, call_.parameters); }
  bool KeepsSteps() const { return call_.mode != EvaluationMode::Fold; }
  bool IsForward() const { return call_.mode != EvaluationMode::ScanBackward; }

  // Folds the rows into the accumulator; the steps go to `result` where they are kept.
  void Accumulate(UntypedBinary& functor, Accumulator& accumulator, RowReader& reader, RowSet const& rows,
                  ResultColumn* result) const;
  Value ApplyToUniform(SpecialKind kind) const;

  FoundFunction const& function_;
  CallView const& call_;
  Operand const& input_;
  int count_;
  MadeFunctor<UntypedBinary> made_;
  bool takesKinds_;
  Accumulator initial_;
};

void FoldLoop::Accumulate(UntypedBinary& functor, Accumulator& accumulator, RowReader& reader,
                          RowSet const& rows, ResultColumn* result) const {
  std::size_t const partRows = rows.IsRange() && reader.IsDirect() ? rows.count : kBlockRows;
  ForEachPart(rows, partRows, IsForward(), [&](RowSet const& part) {
    UntypedInput const input = reader.Read(part);
    UntypedOutput const output = result != nullptr ? result->Prepare(part, takesKinds_) : UntypedOutput();
    functor.AccumulateUntyped(IsForward(), accumulator.element.GetAddress(),
                              takesKinds_ ? &accumulator.kind : nullptr, input, output);
    if (result != nullptr) result->Write(part, output);
  });
}

Value FoldLoop::ApplyToScalar() {
  SpecialKind const kind = input_.GetUniformKind();
  Accumulator accumulator = initial_;
  if (takesKinds_ || kind == SpecialKind::None) {
    RowReader reader(input_, takesKinds_, 1);
    Accumulate(*made_.functor, accumulator, reader, RowSet::Range(0, 1), nullptr);
  } else if (KeepsSteps()) {
    accumulator.kind = kind;
  }
  return accumulator.element.ToScalar(function_.GetOutputType(), accumulator.kind);
}

Value FoldLoop::ApplyToColumn() {
  Accumulator accumulator = initial_;
  RowReader reader(input_, takesKinds_, static_cast<std::size_t>(count_));
  std::optional<ResultColumn> result;
  if (KeepsSteps()) result.emplace(function_.GetOutputType(), count_);
  auto const accumulate = [&](RowSet const& rows) {
    Accumulate(*made_.functor, accumulator, reader, rows, result ? &*result : nullptr);
  };
  if (takesKinds_) {
    accumulate(RowSet::Range(0, count_));
  } else {
    SpecialRows const specials({&input_, 1}, count_);
    if (specials.GetUniformKind() != SpecialKind::None) return ApplyToUniform(specials.GetUniformKind());
    specials.ForEachOrdinary(IsForward(), accumulate);
    if (result) result->MarkSpecial(specials.GetRows(), specials.GetKinds());
  }
  if (result) return result->Finish();
  return accumulator.element.ToScalar(function_.GetOutputType(), accumulator.kind);
}

// A plain function sees none of these rows.
Value FoldLoop::ApplyToUniform(SpecialKind kind) const {
  StoreType const type = function_.GetOutputType();
  if (!KeepsSteps() && call_.groups == nullptr) return initial_.element.ToScalar(type, SpecialKind::None);
  return MakeRepeatedColumn(type, ElementSlot(GetStorageClass(type)), kind, count_);
}

Value FoldLoop::ApplyToGroups() {
  if (!takesKinds_ && input_.GetUniformKind() != SpecialKind::None) {
    return ApplyToUniform(input_.GetUniformKind());
  }
  SpecialRows const specials({&input_, 1}, count_);
  Groups const groups(*call_.groups, count_, takesKinds_ ? std::span<int const>() : specials.GetRows());
  RowReader reader(input_, takesKinds_, static_cast<std::size_t>(count_));
  ResultColumn result(function_.GetOutputType(), count_);
  for (std::size_t group = 0; group < groups.GetCount(); ++group) {
    RowSet const rows = groups.GetRows(group);
    if (rows.count == 0) continue;
    auto const made = Make();
    Accumulator accumulator = initial_;
    Accumulate(*made.functor, accumulator, reader, rows, KeepsSteps() ? &result : nullptr);
    if (!KeepsSteps()) result.Fill(rows, accumulator.element, accumulator.kind);
  }
  if (!takesKinds_) result.MarkSpecial(specials.GetRows(), specials.GetKinds());
  return result.Finish();
}

}  // namespace

Value ApplyFold(FoundFunction const& function, CallView const& call) {
  Operand const input(call.inputs[0]);
  if (call.groups == nullptr) {
    FoldLoop loop(function, call, input, input.GetCount());
    return input.IsScalar() ? loop.ApplyToScalar() : loop.ApplyToColumn();
  }
  Operand const keys(call.groups);
  int const count = GetCommonCount({&input, &keys});
  FoldLoop loop(function, call, input, count);
  return count < 0 ? loop.ApplyToScalar() : loop.ApplyToGroups();
}

}  // namespace ort::core::engine
