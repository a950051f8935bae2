#include "charts/data/ColumnStore.h"

#include <fmt/format.h>

#include <cmath>

namespace ostrel::charts {

using ort::core::OrtDateTime;
using ort::core::RIndirectString;
using ort::core::StoreType;
using ort::core::StoreTypeInfo;

namespace {

std::string DescribeReal(double number) {
  if (std::isinf(number)) return number > 0 ? "Infinity" : "-Infinity";
  return number == 0 ? "0" : fmt::format("{}", number);
}

}  // namespace

std::string DescribeScalar(StoreType type, std::uint64_t bits) {
  switch (type) {
    case StoreType::Bool:
      return bits != 0 ? "true" : "false";
    case StoreType::Int64:
      return fmt::format("{}", static_cast<std::int64_t>(bits));
    case StoreType::Date:
      return OrtDateTime::FromValue(bits).ToIsoDateText();
    case StoreType::DateTime:
      return OrtDateTime::FromValue(bits).ToIsoText();
    default:
      return DescribeReal(std::bit_cast<double>(bits));
  }
}

void ColumnStore::TurnIntoStrings() {
  if (type_ == StoreType::String) return;
  strings_.reserve(bits_.capacity());
  auto special = specialRows_.begin();
  for (std::size_t row = 0; row < bits_.size(); ++row) {
    bool const isSpecial = special != specialRows_.end() && static_cast<std::size_t>(*special) == row;
    if (isSpecial) {
      ++special;
      strings_.emplace_back();
    } else {
      strings_.push_back(RIndirectString::FromUtf8(DescribeScalar(type_, bits_[row])));
    }
  }
  bits_ = {};
  type_ = StoreType::String;
}

void ColumnStore::TurnIntegersIntoReals() {
  for (auto& bits : bits_) {
    bits = std::bit_cast<std::uint64_t>(static_cast<double>(static_cast<std::int64_t>(bits)));
  }
  type_ = StoreType::Real64;
}

std::shared_ptr<ort::core::StoreValue> ColumnStore::Finish(StoreType emptyType) {
  auto store = std::exchange(*this, ColumnStore());
  if (store.type_ == StoreType::Empty && emptyType == StoreType::String) store.TurnIntoStrings();
  auto const type = store.type_ == StoreType::Empty ? emptyType : store.type_;
  auto const make = [&store, type](auto values) {
    auto const owner = std::make_shared<decltype(values)>(std::move(values));
    return ort::core::factory::detail::MakeColumn(StoreTypeInfo(type, false), GetStorageClass(type),
                                                  owner->data(), owner->size(), owner, &store.specialRows_,
                                                  &store.specialKinds_);
  };
  if (type == StoreType::String) return make(std::move(store.strings_));
  if (type != StoreType::Bool) return make(std::move(store.bits_));
  return make(std::vector<ort::core::uint8>(store.bits_.begin(), store.bits_.end()));
}

}  // namespace ostrel::charts
