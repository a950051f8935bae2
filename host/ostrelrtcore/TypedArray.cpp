#include "ostrelrtcore/TypedArray.h"

#include <algorithm>
#include <numeric>

#include "ostrelrtcore/StoreValue.h"

namespace ort::core {

/// What a constant column stores once somebody wants it spelled out.
struct ColumnView::Materialised {
  std::shared_ptr<void const> values;
  void const* first = nullptr;
  std::vector<int> specialRows;
  std::vector<SpecialKind> specialKinds;
};

namespace {

template <class T>
std::shared_ptr<void const> Repeat(void const* element, std::size_t count, void const*& first) {
  auto values = std::make_shared<std::vector<T>>(count, *static_cast<T const*>(element));
  first = values->data();
  return values;
}

std::shared_ptr<void const> Repeat(StorageClass storage, void const* element, std::size_t count,
                                   void const*& first) {
  switch (storage) {
    case StorageClass::UInt8:
      return Repeat<uint8>(element, count, first);
    case StorageClass::UInt32:
      return Repeat<uint32>(element, count, first);
    case StorageClass::UInt64:
      return Repeat<uint64>(element, count, first);
    case StorageClass::String:
      return Repeat<RIndirectString>(element, count, first);
    case StorageClass::Value:
      return Repeat<std::shared_ptr<StoreValue>>(element, count, first);
  }
  return nullptr;
}

}  // namespace

ColumnView::ColumnView(Content content)
    : first_(content.first),
      stride_(content.isConstant ? 0 : 1),
      count_(content.count),
      storage_(content.storage),
      uniformKind_(content.uniformKind),
      specialRows_(std::move(content.specialRows)),
      specialKinds_(std::move(content.specialKinds)),
      owner_(std::move(content.owner)) {}

ColumnView::~ColumnView() { delete materialised_.load(std::memory_order_relaxed); }

ColumnView::Owners ColumnView::TakeOwners() noexcept {
  auto* const made = materialised_.load(std::memory_order_acquire);
  return {std::move(owner_), made != nullptr ? std::move(made->values) : nullptr};
}

ColumnView::Content ColumnView::GetContent() const {
  return {storage_, count_, stride_ == 0, uniformKind_, first_, owner_, specialRows_, specialKinds_};
}

void ColumnView::ThrowRowOutOfRange(int row, int count) {
  throw OrtRuntimeException(OrtError_WrongValueKind,
                            OStringCore::fromUtf8("row " + std::to_string(row) + " of a column of " +
                                                  std::to_string(count) + " rows"));
}

SpecialKind ColumnView::GetSpecialKind(int row) const {
  if (static_cast<unsigned>(row) >= static_cast<unsigned>(count_)) ThrowRowOutOfRange(row, count_);
  if (uniformKind_ != SpecialKind::None || specialRows_.empty()) return uniformKind_;
  auto const found = std::lower_bound(specialRows_.begin(), specialRows_.end(), row);
  if (found == specialRows_.end() || *found != row) return SpecialKind::None;
  return specialKinds_[static_cast<std::size_t>(found - specialRows_.begin())];
}

std::span<int const> ColumnView::GetSpecialRows() const {
  return uniformKind_ == SpecialKind::None ? specialRows_ : Materialise().specialRows;
}

std::span<SpecialKind const> ColumnView::GetSpecialKinds() const {
  return uniformKind_ == SpecialKind::None ? specialKinds_ : Materialise().specialKinds;
}

void const* ColumnView::MaterialiseValues() const { return Materialise().first; }

ColumnView::Materialised& ColumnView::Materialise() const {
  if (auto* const made = materialised_.load(std::memory_order_acquire)) return *made;
  std::lock_guard const lock(materialiseMutex_);
  if (auto* const made = materialised_.load(std::memory_order_relaxed)) return *made;
  auto made = std::make_unique<Materialised>();
  auto const count = static_cast<std::size_t>(count_);
  made->values = Repeat(storage_, first_, count, made->first);
  if (uniformKind_ != SpecialKind::None) {
    made->specialRows.resize(count);
    std::iota(made->specialRows.begin(), made->specialRows.end(), 0);
    made->specialKinds.assign(count, uniformKind_);
  }
  materialised_.store(made.get(), std::memory_order_release);
  return *made.release();
}

}  // namespace ort::core
