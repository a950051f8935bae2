#include "ostrelrtcore/engine/RowReader.h"

#include <algorithm>

namespace ort::core::engine {
namespace {

void Repeat(StorageClass storage, void const* element, std::size_t count, void* to) {
  VisitStorage(storage,
               [&]<class T>() { std::fill_n(static_cast<T*>(to), count, *static_cast<T const*>(element)); });
}

void Gather(StorageClass storage, void const* from, RowSet const& rows, void* to) {
  VisitStorage(storage, [&]<class T>() {
    auto const* source = static_cast<T const*>(from);
    auto* target = static_cast<T*>(to);
    for (std::size_t i = 0; i < rows.count; ++i) target[i] = source[rows.rows[i]];
  });
}

}  // namespace

RowReader::RowReader(Operand const& operand, bool withKinds, std::size_t maxRows)
    : operand_(&operand),
      withKinds_(withKinds),
      blockRows_(std::min(maxRows, kBlockRows)),
      elementSize_(GetElementSize(operand.GetStorage())) {
  if (withKinds) kinds_.assign(blockRows_, operand.GetUniformKind());
  if (operand.IsBroadcast() && blockRows_ > 1) {
    block_ = ort::core::detail::ColumnMemory::Allocate(operand.GetStorage(), static_cast<int>(blockRows_));
    Repeat(operand.GetStorage(), operand.GetElements(), blockRows_, block_.elements);
  }
}

UntypedInput RowReader::Read(RowSet const& rows) {
  return {ReadValues(rows), withKinds_ ? ReadKinds(rows) : nullptr, rows.count};
}

void const* RowReader::ReadValues(RowSet const& rows) {
  if (operand_->IsBroadcast()) return block_.elements != nullptr ? block_.elements : operand_->GetElements();
  if (rows.IsRange()) {
    return static_cast<char const*>(operand_->GetElements()) +
           static_cast<std::size_t>(rows.begin) * elementSize_;
  }
  if (block_.elements == nullptr) {
    block_ = ort::core::detail::ColumnMemory::Allocate(operand_->GetStorage(), static_cast<int>(blockRows_));
  }
  Gather(operand_->GetStorage(), operand_->GetElements(), rows, block_.elements);
  return block_.elements;
}

SpecialKind const* RowReader::ReadKinds(RowSet const& rows) {
  auto const specialRows = operand_->GetSpecialRows();
  if (specialRows.empty()) return kinds_.data();
  std::fill_n(kinds_.begin(), rows.count, SpecialKind::None);
  if (!rows.IsRange()) {
    for (std::size_t i = 0; i < rows.count; ++i) kinds_[i] = operand_->GetKind(rows.rows[i]);
    return kinds_.data();
  }
  int const end = rows.begin + static_cast<int>(rows.count);
  auto row = std::lower_bound(specialRows.begin(), specialRows.end(), rows.begin);
  for (; row != specialRows.end() && *row < end; ++row) {
    kinds_[static_cast<std::size_t>(*row - rows.begin)] =
        operand_->GetSpecialKinds()[static_cast<std::size_t>(row - specialRows.begin())];
  }
  return kinds_.data();
}

}  // namespace ort::core::engine
