#include "ostrelrtcore/engine/Groups.h"

#include <array>
#include <bit>
#include <limits>
#include <optional>
#include <unordered_map>

namespace ort::core::engine {
namespace {

constexpr uint32 kNoGroup = std::numeric_limits<uint32>::max();

struct HashKey {
  template <class K>
  std::size_t operator()(K const& key) const {
    return ort::core::detail::HashKey(key);
  }
};
struct EqualKeys {
  template <class K>
  bool operator()(K const& a, K const& b) const {
    return ort::core::detail::EqualKeys(a, b);
  }
};

// Reals that are equal values get one bit pattern.
template <class Real>
auto NormaliseReal(Real value) {
  using Bits = std::conditional_t<sizeof(Real) == 8, uint64, uint32>;
  if (value != value) value = std::numeric_limits<Real>::quiet_NaN();
  return std::bit_cast<Bits>(value == 0 ? Real{0} : value);
}

template <class K>
K const& NormaliseKey(StoreType, K const& key) {
  return key;
}
uint32 NormaliseKey(StoreType type, uint32 key) {
  return type == StoreType::Real32 ? NormaliseReal(std::bit_cast<float>(key)) : key;
}
uint64 NormaliseKey(StoreType type, uint64 key) {
  return type == StoreType::Real64 ? NormaliseReal(std::bit_cast<double>(key)) : key;
}

// Numbers the groups in the order in which they first appear.
template <class K>
class GroupNumbers {
 public:
  uint32 OfKey(K const& key) {
    // Rows of one group often stand together.
    if (last_ != nullptr && EqualKeys()(last_->first, key)) return last_->second;
    auto const [entry, isNew] = byKey_.try_emplace(key, count_);
    if (isNew) ++count_;
    last_ = &*entry;
    return entry->second;
  }
  uint32 OfKind(SpecialKind kind) {
    uint32& number = byKind_[static_cast<std::size_t>(kind)];
    if (number == kNoGroup) number = count_++;
    return number;
  }
  uint32 GetCount() const noexcept { return count_; }
  GroupNumbers() { byKind_.fill(kNoGroup); }

 private:
  uint32 count_ = 0;
  std::unordered_map<K, uint32, HashKey, EqualKeys> byKey_;
  std::pair<K const, uint32> const* last_ = nullptr;
  std::array<uint32, 256> byKind_;
};

struct NumberedRows {
  std::vector<uint32> groups;  // of each row; kNoGroup for a row that is left out
  std::size_t groupCount = 0;
};

template <class K>
NumberedRows NumberRows(Operand const& keys, int count, std::span<int const> leftOut) {
  auto const* elements = static_cast<K const*>(keys.GetElements());
  auto const specialRows = keys.GetSpecialRows();
  auto const specialKinds = keys.GetSpecialKinds();
  NumberedRows result{std::vector<uint32>(static_cast<std::size_t>(count)), 0};
  GroupNumbers<K> numbers;
  std::size_t nextSpecial = 0;
  std::size_t nextLeftOut = 0;
  for (int row = 0; row < count; ++row) {
    SpecialKind kind = keys.GetUniformKind();
    if (nextSpecial < specialRows.size() && specialRows[nextSpecial] == row)
      kind = specialKinds[nextSpecial++];
    uint32& group = result.groups[static_cast<std::size_t>(row)];
    if (nextLeftOut < leftOut.size() && leftOut[nextLeftOut] == row) {
      ++nextLeftOut;
      group = kNoGroup;
    } else if (kind != SpecialKind::None) {
      group = numbers.OfKind(kind);
    } else {
      group = numbers.OfKey(NormaliseKey(keys.GetElementType(), elements[keys.IsBroadcast() ? 0 : row]));
    }
  }
  result.groupCount = numbers.GetCount();
  return result;
}

}  // namespace

Groups::Groups(Operand const& keys, int count, std::span<int const> leftOut) {
  auto const numbered =
      VisitStorage(keys.GetStorage(), [&]<class K>() { return NumberRows<K>(keys, count, leftOut); });
  // A counting sort: ends_ holds each group's size, then its begin, then, with its rows placed, its end.
  ends_.assign(numbered.groupCount, 0);
  for (uint32 const group : numbered.groups) {
    if (group != kNoGroup) ++ends_[group];
  }
  std::size_t begin = 0;
  for (std::size_t& size : ends_) begin += std::exchange(size, begin);
  rows_.resize(begin);
  for (int row = 0; row < count; ++row) {
    uint32 const group = numbered.groups[static_cast<std::size_t>(row)];
    if (group != kNoGroup) rows_[ends_[group]++] = row;
  }
}

}  // namespace ort::core::engine
