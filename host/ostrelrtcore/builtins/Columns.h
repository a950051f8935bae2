#pragma once

#include <span>
#include <string>

#include "ostrelrtcore/Factory.h"
#include "ostrelrtcore/builtins/BuiltinRow.h"
#include "ostrelrtcore/engine/Operand.h"

/// What functions of whole values share: they work on a column's storage class and never on its meaning.
namespace ort::core::builtins {

using engine::IsColumn;
using engine::VisitStorage;

/// Throws an error whose message is UTF-8.
[[noreturn]] ORTCORE_API void ThrowError(OrtError error, std::string const& message);

inline StoreType ElementType(StoreValue const& column) {
  return column.GetTypeInfo().GetElementType().GetStoreType();
}
inline StoreTypeInfo ElementInfo(StoreValue const& column) { return column.GetTypeInfo().GetElementType(); }

/// Throws 55 unless the value is a column of the type; `what` names it in the message.
ORTCORE_API ColumnView const& RequireColumn(StoreValue const& value, StoreType elementType, char const* what);
/// Throws 259 where a column differs from another in length.
ORTCORE_API void RequireOneLength(int count, int other, char const* what);

/// The kind of every row, in constant time for each.
class ORTCORE_API RowKinds {
 public:
  /// No special rows.
  RowKinds() = default;
  explicit RowKinds(ColumnView const& column);
  bool HasSpecials() const { return !kinds_.empty(); }
  SpecialKind operator[](int row) const {
    return kinds_.empty() ? SpecialKind::None : kinds_[static_cast<std::size_t>(row)];
  }

 private:
  std::vector<SpecialKind> kinds_;
};

/// The row of a column as a value of its own. Throws 55 for a row outside the column.
Value ElementAt(Value const& column, int row);
/// The value as a column of `count` equal rows; what is a column already must have that many (259).
Value AsColumn(Value const& value, int count, char const* what);
/// A column of the scalar or whole value in every row, in constant memory. Throws 55 for a negative count.
Value RepeatValue(Value const& value, int count);

/// The named rows of a column. A row outside the column throws 55.
Value TakeRows(Value const& column, std::span<int const> rows);
/// The same with special rows among the rows: they stay special.
Value TakeRows(Value const& column, StoreValue const& rows);

/// The rows of a table: those of every column, which must agree (259); 0 without columns.
int CountTableRows(StoreValue const& table);
/// A table of what `make` gives for each column.
template <class Make>
Value MapTable(StoreValue const& table, Make const& make) {
  factory::NamedValues columns;
  for (OStringCore const& name : table.AsNamedValues().GetNames()) {
    columns.emplace(name, make(table.AsNamedValues().Get(name)));
  }
  return factory::MakeTable(std::move(columns));
}

}  // namespace ort::core::builtins
