#include "ostrelrtcore/engine/ResultColumn.h"

#include <algorithm>
#include <cstring>

namespace ort::core::engine {

using ColumnMemory = ort::core::detail::ColumnMemory;

ResultColumn::ResultColumn(StoreType elementType, int count)
    : type_(elementType),
      storage_(GetStorageClass(elementType)),
      count_(count),
      elementSize_(GetElementSize(storage_)),
      memory_(ColumnMemory::Allocate(storage_, count)) {}

UntypedOutput ResultColumn::Prepare(RowSet const& rows, bool withKinds) {
  UntypedOutput output{nullptr, nullptr, rows.count};
  std::size_t const blockRows = std::min(static_cast<std::size_t>(count_), kBlockRows);
  if (rows.IsRange()) {
    output.values =
        static_cast<char*>(memory_.elements) + static_cast<std::size_t>(rows.begin) * elementSize_;
  } else {
    if (block_.elements == nullptr) block_ = ColumnMemory::Allocate(storage_, static_cast<int>(blockRows));
    output.values = block_.elements;
  }
  if (withKinds) {
    if (kinds_.empty()) kinds_.resize(blockRows);
    output.kinds = kinds_.data();
  }
  return output;
}

void ResultColumn::Write(RowSet const& rows, UntypedOutput const& output) {
  if (!rows.IsRange()) {
    VisitStorage(storage_, [&]<class T>() {
      auto* source = static_cast<T*>(output.values);
      auto* target = static_cast<T*>(memory_.elements);
      for (std::size_t i = 0; i < rows.count; ++i) target[rows.rows[i]] = std::move(source[i]);
    });
  }
  if (output.kinds != nullptr) MarkSpecial(rows, output.kinds);
}

void ResultColumn::MarkSpecial(RowSet const& rows, SpecialKind const* kinds) {
  for (std::size_t i = 0; i < rows.count;) {
    std::uint64_t eight = 0;
    std::size_t const step = std::min<std::size_t>(rows.count - i, sizeof eight);
    std::memcpy(&eight, kinds + i, step);
    for (std::size_t const end = i + step; i < end; ++i) {
      if (eight == 0) {
        i = end;
        break;
      }
      if (kinds[i] == SpecialKind::None) continue;
      specialRows_.push_back(rows.GetRow(i));
      specialKinds_.push_back(kinds[i]);
    }
  }
}

void ResultColumn::MarkSpecial(std::span<int const> rows, std::span<SpecialKind const> kinds) {
  specialRows_.insert(specialRows_.end(), rows.begin(), rows.end());
  specialKinds_.insert(specialKinds_.end(), kinds.begin(), kinds.end());
}

void ResultColumn::Fill(RowSet const& rows, ElementSlot const& element, SpecialKind kind) {
  VisitStorage(storage_, [&]<class T>() {
    auto const& value = *static_cast<T const*>(element.GetAddress());
    auto* target = static_cast<T*>(memory_.elements);
    for (std::size_t i = 0; i < rows.count; ++i) target[rows.GetRow(i)] = value;
  });
  if (kind == SpecialKind::None) return;
  for (std::size_t i = 0; i < rows.count; ++i) {
    specialRows_.push_back(rows.GetRow(i));
    specialKinds_.push_back(kind);
  }
}

Value ResultColumn::Finish() {
  return factory::detail::MakeColumn(StoreTypeInfo(type_, false), storage_, memory_.elements,
                                     static_cast<std::size_t>(count_), std::move(memory_.owner),
                                     &specialRows_, &specialKinds_);
}

Value MakeRepeatedColumn(StoreType elementType, ElementSlot const& element, SpecialKind kind, int count) {
  auto owner =
      std::make_shared<ElementSlot>(kind == SpecialKind::None ? element : ElementSlot(element.GetStorage()));
  void* const address = owner->GetAddress();
  return factory::detail::MakeConstantColumn(StoreTypeInfo(elementType, false), element.GetStorage(), address,
                                             std::move(owner), count, kind);
}

}  // namespace ort::core::engine
