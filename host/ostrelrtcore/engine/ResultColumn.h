#pragma once

#include <span>
#include <vector>

#include "ostrelrtcore/OrtFunctor.h"
#include "ostrelrtcore/engine/ElementSlot.h"
#include "ostrelrtcore/engine/RowSet.h"

namespace ort::core::engine {

/// The column that a row-wise function writes, in the runtime's pooled memory.
class ResultColumn {
 public:
  ResultColumn(StoreType elementType, int count);

  /// Room for the results of some rows, with kinds where asked for: in place for a range, else (and for
  /// kinds) in a block, so that at most kBlockRows rows are asked for at once. Valid until Write.
  UntypedOutput Prepare(RowSet const& rows, bool withKinds);
  /// Takes over what stands in the view that Prepare gave for the same rows.
  void Write(RowSet const& rows, UntypedOutput const& output);

  /// One element and kind for all of the rows.
  void Fill(RowSet const& rows, ElementSlot const& element, SpecialKind kind);
  void MarkSpecial(std::span<int const> rows, std::span<SpecialKind const> kinds);

  /// The column; slots of special rows are zeroed. The object is empty afterwards.
  Value Finish();

 private:
  void MarkSpecial(RowSet const& rows, SpecialKind const* kinds);

  StoreType type_;
  StorageClass storage_;
  int count_;
  std::size_t elementSize_;
  ort::core::detail::ColumnMemory memory_;
  ort::core::detail::ColumnMemory block_;
  std::vector<SpecialKind> kinds_;
  std::vector<int> specialRows_;
  std::vector<SpecialKind> specialKinds_;
};

/// A column of `count` rows that all hold one element, or are special of one kind; it takes no memory by row.
Value MakeRepeatedColumn(StoreType elementType, ElementSlot const& element, SpecialKind kind, int count);

}  // namespace ort::core::engine
