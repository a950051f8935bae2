#pragma once

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "charts/data/ColumnStore.h"
#include "charts/data/DataTable.h"

namespace ostrel::charts {

/// A column in one line, "Int64 1|-|null|4": '-' is Missing. Checks that every special slot is zero.
inline std::string DescribeColumn(DataColumn const& column) {
  using ort::core::RIndirectString;
  using ort::core::SpecialKind;
  auto const type = column.GetType();
  auto const& view = column.values->AsColumn();
  auto text = ort::core::StoreTypeToString(type).toUtf8() + " ";
  auto const addAll = [&](auto const& values) {
    for (int row = 0; row < view.GetCount(); ++row) {
      auto const& value = values[static_cast<std::size_t>(row)];
      auto const kind = view.GetSpecialKind(row);
      if (row > 0) text += '|';
      if (kind != SpecialKind::None) {
        EXPECT_EQ(value, std::remove_cvref_t<decltype(value)>()) << column.name << " row " << row;
        text += kind == SpecialKind::Null ? "null" : "-";
      } else if constexpr (std::is_same_v<std::remove_cvref_t<decltype(value)>, RIndirectString>) {
        text += value.Get().toUtf8();
      } else {
        text += DescribeScalar(type, value);
      }
    }
  };
  switch (GetStorageClass(type)) {
    case ort::core::StorageClass::String:
      addAll(column.values->AsTypedArray<RIndirectString>().GetValues());
      break;
    case ort::core::StorageClass::UInt8:
      addAll(column.values->AsTypedArray<ort::core::uint8>().GetValues());
      break;
    default:
      addAll(column.values->AsTypedArray<ort::core::uint64>().GetValues());
      break;
  }
  return text;
}

/// "a: Int64 1|2; b: String x|y"
inline std::string DescribeTable(DataTable const& table) {
  std::string text;
  for (auto const& column : table.columns) {
    EXPECT_EQ(column.values->AsColumn().GetCount(), table.rowCount) << column.name;
    text += (text.empty() ? "" : "; ") + column.name + ": " + DescribeColumn(column);
  }
  return text;
}

/// The message of the DataError that `act` throws, and "" when it throws none.
template <typename Act>
std::string MessageOf(Act act) {
  try {
    act();
  } catch (DataError const& error) {
    return error.what();
  }
  return "";
}

}  // namespace ostrel::charts
