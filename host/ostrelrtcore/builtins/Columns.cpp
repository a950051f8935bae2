#include "ostrelrtcore/builtins/Columns.h"

#include <algorithm>

namespace ort::core::builtins {
namespace {

/// Beyond this many rows of the source for each one taken, asking row by row beats one pass over all kinds.
constexpr int kSparseTake = 64;

[[noreturn]] void ThrowRowOutside(int row, int count) {
  ThrowError(OrtError_WrongValueKind,
             "row " + std::to_string(row) + " of a column of " + std::to_string(count) + " rows");
}

void RequireRows(std::span<int const> rows, int count) {
  auto const outside = [count](int row) {
    return static_cast<unsigned>(row) >= static_cast<unsigned>(count);
  };
  auto const found = std::ranges::find_if(rows, outside);
  if (found != rows.end()) ThrowRowOutside(*found, count);
}

template <class T>
ColumnBuilder<T> Gather(Value const& column, std::span<int const> rows) {
  auto builder = factory::MakeColumnBuilder<T>(ElementInfo(*column), static_cast<int>(rows.size()));
  auto const out = builder.GetValues();
  ITypedArray<T> const& source = column->AsTypedArray<T>();
  if (source.IsConstant()) {
    std::ranges::fill(out, rows.empty() ? T() : source.GetElement(0));
    return builder;
  }
  T const* const values = source.GetValues().data();
  for (std::size_t i = 0; i < rows.size(); ++i) out[i] = values[static_cast<std::size_t>(rows[i])];
  return builder;
}

template <class T>
void CopySpecials(ColumnBuilder<T>& builder, ColumnView const& source, std::span<int const> rows) {
  if (!source.HasSpecials()) return;
  auto const count = static_cast<int>(rows.size());
  auto const mark = [&](auto const& kindOf) {
    for (int i = 0; i < count; ++i) {
      SpecialKind const kind = kindOf(rows[static_cast<std::size_t>(i)]);
      if (kind != SpecialKind::None) builder.SetSpecial(i, kind);
    }
  };
  if (count < source.GetCount() / kSparseTake) {
    mark([&](int row) { return source.GetSpecialKind(row); });
  } else {
    RowKinds const kinds(source);
    mark([&](int row) { return kinds[row]; });
  }
}

}  // namespace

void ThrowError(OrtError error, std::string const& message) {
  throw OrtRuntimeException(error, OStringCore::fromUtf8(message));
}

ColumnView const& RequireColumn(StoreValue const& value, StoreType elementType, char const* what) {
  if (!IsColumn(value) || ElementType(value) != elementType) {
    ThrowError(OrtError_WrongValueKind,
               std::string(what) + ": a column of " + StoreTypeToString(elementType).toUtf8() + " wanted");
  }
  return value.AsColumn();
}

void RequireOneLength(int count, int other, char const* what) {
  if (count == other) return;
  ThrowError(OrtError_LengthsDiffer,
             std::string(what) + ": " + std::to_string(other) + " rows beside " + std::to_string(count));
}

RowKinds::RowKinds(ColumnView const& column) {
  if (!column.HasSpecials()) return;
  kinds_.assign(static_cast<std::size_t>(column.GetCount()), column.GetUniformSpecialKind());
  if (column.GetUniformSpecialKind() != SpecialKind::None) return;
  auto const rows = column.GetSpecialRows();
  auto const kinds = column.GetSpecialKinds();
  for (std::size_t i = 0; i < rows.size(); ++i) kinds_[static_cast<std::size_t>(rows[i])] = kinds[i];
}

Value ElementAt(Value const& column, int row) {
  ColumnView const& view = column->AsColumn();
  if (row < 0 || row >= view.GetCount()) ThrowRowOutside(row, view.GetCount());
  return VisitStorage(view.GetStorage(), [&]<class T>() {
    engine::ElementSlot slot(view.GetStorage());
    *static_cast<T*>(slot.GetAddress()) = column->AsTypedArray<T>().GetElement(row);
    return slot.ToScalar(ElementType(*column), view.GetSpecialKind(row));
  });
}

Value AsColumn(Value const& value, int count, char const* what) {
  if (!IsColumn(*value)) return RepeatValue(value, count);
  RequireOneLength(count, value->AsColumn().GetCount(), what);
  return value;
}

Value RepeatValue(Value const& value, int count) {
  if (count < 0) ThrowError(OrtError_WrongValueKind, std::to_string(count) + " rows");
  StoreTypeInfo const type(value->GetStoreType(), false);
  engine::ElementSlot const slot(value);
  return VisitStorage(slot.GetStorage(), [&]<class T>() {
    return value->IsSpecial()
               ? factory::MakeConstantArray<T>(type, count, value->GetSpecialKind())
               : factory::MakeConstantArray<T>(type, *static_cast<T const*>(slot.GetAddress()), count);
  });
}

Value TakeRows(Value const& column, std::span<int const> rows) {
  ColumnView const& view = column->AsColumn();
  RequireRows(rows, view.GetCount());
  return VisitStorage(view.GetStorage(), [&]<class T>() {
    if (view.IsConstant() && !view.HasSpecials() && !rows.empty()) {
      return factory::MakeConstantArray<T>(ElementInfo(*column), column->AsTypedArray<T>().GetElement(0),
                                           static_cast<int>(rows.size()));
    }
    auto builder = Gather<T>(column, rows);
    CopySpecials(builder, view, rows);
    return builder.Finish();
  });
}

Value TakeRows(Value const& column, StoreValue const& rows) {
  ITypedArray<int> const& numbers = rows.AsTypedArray<int>();
  if (!numbers.HasSpecials()) return TakeRows(column, numbers.GetValues());
  ColumnView const& view = column->AsColumn();
  RowKinds const rowKinds(numbers);
  RowKinds const kinds(view);
  return VisitStorage(view.GetStorage(), [&]<class T>() {
    auto builder = factory::MakeColumnBuilder<T>(ElementInfo(*column), numbers.GetCount());
    auto const out = builder.GetValues();
    ITypedArray<T> const& source = column->AsTypedArray<T>();
    for (int i = 0; i < numbers.GetCount(); ++i) {
      SpecialKind kind = rowKinds[i];
      out[static_cast<std::size_t>(i)] = T();
      if (kind == SpecialKind::None) {
        int const row = numbers.GetElement(i);
        if (row < 0 || row >= view.GetCount()) ThrowRowOutside(row, view.GetCount());
        out[static_cast<std::size_t>(i)] = source.GetElement(row);
        kind = kinds[row];
      }
      if (kind != SpecialKind::None) builder.SetSpecial(i, kind);
    }
    return builder.Finish();
  });
}

int CountTableRows(StoreValue const& table) {
  IStoreNamedValues const& columns = table.AsNamedValues();
  int count = -1;
  for (OStringCore const& name : columns.GetNames()) {
    int const rows = columns.Get(name)->AsColumn().GetCount();
    if (count >= 0) RequireOneLength(count, rows, name.toUtf8().c_str());
    count = rows;
  }
  return std::max(count, 0);
}

}  // namespace ort::core::builtins
