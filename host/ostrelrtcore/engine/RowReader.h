#pragma once

#include <vector>

#include "ostrelrtcore/OrtFunctor.h"
#include "ostrelrtcore/engine/Operand.h"
#include "ostrelrtcore/engine/RowSet.h"

namespace ort::core::engine {

/// Hands out rows of an operand as views of contiguous memory: in place where they stand so, else copied to a
/// block. A view is valid until the next one.
class RowReader {
 public:
  /// At most `maxRows` rows are ever asked for at once where IsDirect is not true.
  RowReader(Operand const& operand, bool withKinds, std::size_t maxRows);

  /// True when a range of any length can be read at once.
  bool IsDirect() const noexcept { return !withKinds_ && !operand_->IsBroadcast(); }
  UntypedInput Read(RowSet const& rows);

 private:
  void const* ReadValues(RowSet const& rows);
  SpecialKind const* ReadKinds(RowSet const& rows);

  Operand const* operand_;
  bool withKinds_;
  std::size_t blockRows_;
  std::size_t elementSize_;
  ort::core::detail::ColumnMemory block_;
  std::vector<SpecialKind> kinds_;
};

}  // namespace ort::core::engine
