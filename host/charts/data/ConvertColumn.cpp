#include "charts/data/ConvertColumn.h"

#include <fmt/format.h>

#include <cmath>
#include <limits>

#include "charts/data/ColumnStore.h"
#include "charts/data/DateText.h"
#include "charts/data/NumberText.h"
#include "charts/data/Sources.h"
#include "ostrelsys/Utf.h"

namespace ostrel::charts {

using ort::core::OrtDateTime;
using ort::core::OrtTimeSpan;
using ort::core::RIndirectString;
using ort::core::SpecialKind;
using ort::core::StoreType;

namespace {

constexpr OrtDateTime kEpoch(1970, 1, 1);
constexpr std::int64_t kTicksPerMillisecond = 10;

bool IsTemporal(StoreType type) { return type == StoreType::Date || type == StoreType::DateTime; }

/// UTF-8 of an interned text, by way of a buffer that is used again and again.
std::string_view ToUtf8(RIndirectString const& text, std::string& buffer) {
  auto const units = text.Get().view();
  buffer.clear();
  for (char16_t const unit : units) {
    if (unit >= 0x80) return buffer = Utf::Utf16ToUtf8(units);
    buffer.push_back(static_cast<char>(unit));
  }
  return buffer;
}

/// Gives `append` the store and every row that is not special: its text, or the type and bits of another
/// scalar. A row that `append` does not take becomes Missing.
template <typename Append>
DataColumn ConvertRows(DataColumn const& column, StoreType emptyType, Append append) {
  auto const& view = column.values->AsColumn();
  auto const type = column.GetType();
  auto const count = static_cast<std::size_t>(view.GetCount());
  auto const specialRows = view.GetSpecialRows();
  auto const specialKinds = view.GetSpecialKinds();
  ColumnStore store;
  store.Reserve(count);
  std::size_t special = 0;
  auto const convertAll = [&](auto const& values) {
    for (std::size_t row = 0; row < count; ++row) {
      if (special < specialRows.size() && static_cast<std::size_t>(specialRows[special]) == row) {
        store.AppendSpecial(specialKinds[special++]);
      } else if (!append(store, values[row])) {
        store.AppendSpecial(SpecialKind::Missing);
      }
    }
  };
  switch (GetStorageClass(type)) {
    case ort::core::StorageClass::String:
      convertAll(column.values->AsTypedArray<RIndirectString>().GetValues());
      break;
    case ort::core::StorageClass::UInt8:
      convertAll(column.values->AsTypedArray<ort::core::uint8>().GetValues());
      break;
    default:
      convertAll(column.values->AsTypedArray<ort::core::uint64>().GetValues());
      break;
  }
  return {column.name, store.Finish(emptyType), column.isFromText};
}

bool AppendText(ColumnStore& store, std::string_view text) {
  return store.AppendString(RIndirectString::FromUtf8(text));
}

bool AppendNumber(ColumnStore& store, std::string_view text) {
  if (text.empty()) {
    store.AppendSpecial(SpecialKind::Null);
    return true;
  }
  auto const number = ReadNumber(TrimBlanks(text));
  if (number.kind == NumberText::Kind::None) return false;
  return number.kind == NumberText::Kind::Integer ? store.AppendInteger(number.integer)
                                                  : store.AppendReal(number.real);
}

double ToMilliseconds(OrtDateTime instant) {
  return static_cast<double>((instant - kEpoch).GetTicks()) / static_cast<double>(kTicksPerMillisecond);
}

OrtDateTime FromMilliseconds(double milliseconds) {
  constexpr auto limit = static_cast<double>(std::numeric_limits<std::int64_t>::max());
  double const ticks = std::round(milliseconds * static_cast<double>(kTicksPerMillisecond));
  if (ticks >= limit) return kEpoch + OrtTimeSpan::FromTicks(std::numeric_limits<std::int64_t>::max());
  if (ticks <= -limit) return kEpoch + OrtTimeSpan::FromTicks(std::numeric_limits<std::int64_t>::min());
  return kEpoch + OrtTimeSpan::FromTicks(static_cast<std::int64_t>(ticks));
}

bool AppendNumberAsDate(ColumnStore& store, double number, bool isFromText) {
  bool const isYear = isFromText && number >= 1 && number <= 9999 && std::trunc(number) == number;
  if (isYear) return store.AppendDate(OrtDateTime(static_cast<int>(number), 1, 1), false);
  if (!std::isfinite(number)) return false;
  return store.AppendDate(FromMilliseconds(number), true);
}

double ToReal(StoreType type, std::uint64_t bits) {
  return type == StoreType::Int64 ? static_cast<double>(static_cast<std::int64_t>(bits))
                                  : std::bit_cast<double>(bits);
}

/// The rows of a column as texts.
template <typename Append>
DataColumn ConvertTexts(DataColumn const& column, StoreType emptyType, Append append) {
  std::string buffer;
  auto const type = column.GetType();
  return ConvertRows(column, emptyType, [&](ColumnStore& store, auto const& value) {
    if constexpr (std::is_same_v<std::remove_cvref_t<decltype(value)>, RIndirectString>) {
      return append(store, ToUtf8(value, buffer));
    } else {
      return append(store, DescribeScalar(type, value));
    }
  });
}

/// The rows of a column that is not of strings.
template <typename Append>
DataColumn ConvertScalars(DataColumn const& column, StoreType emptyType, Append append) {
  return ConvertRows(column, emptyType, [&](ColumnStore& store, auto const& value) {
    if constexpr (std::is_same_v<std::remove_cvref_t<decltype(value)>, RIndirectString>) {
      return false;
    } else {
      return append(store, std::uint64_t{value});
    }
  });
}

}  // namespace

DataColumn ConvertToNumber(DataColumn const& column) {
  auto const type = column.GetType();
  if (type == StoreType::String) return ConvertTexts(column, StoreType::Real64, AppendNumber);
  if (type == StoreType::Bool) {
    return ConvertScalars(column, StoreType::Real64, [](ColumnStore& store, std::uint64_t bits) {
      return store.AppendInteger(static_cast<std::int64_t>(bits));
    });
  }
  if (!IsTemporal(type)) return column;
  return ConvertScalars(column, StoreType::Real64, [](ColumnStore& store, std::uint64_t bits) {
    return store.AppendReal(ToMilliseconds(OrtDateTime::FromValue(bits)));
  });
}

DataColumn ConvertToDate(DataColumn const& column) {
  auto const type = column.GetType();
  if (IsTemporal(type)) return column;
  if (type == StoreType::String) {
    return ConvertTexts(column, StoreType::Date, [](ColumnStore& store, std::string_view text) {
      if (auto const date = ReadFreeDate(text)) return store.AppendDate(date->instant, date->hasTime);
      auto const number = ReadNumber(TrimBlanks(text));
      return number.kind != NumberText::Kind::None && AppendNumberAsDate(store, number.ToReal(), true);
    });
  }
  bool const isFromText = column.isFromText;
  return ConvertScalars(column, StoreType::Date, [type, isFromText](ColumnStore& store, std::uint64_t bits) {
    return type != StoreType::Bool && AppendNumberAsDate(store, ToReal(type, bits), isFromText);
  });
}

DataColumn ConvertToDate(DataColumn const& column, std::string const& pattern) {
  DatePattern const datePattern(pattern);
  return ConvertTexts(column, StoreType::Date, [&datePattern](ColumnStore& store, std::string_view text) {
    auto const date = datePattern.Read(text);
    return date && store.AppendDate(date->instant, date->hasTime);
  });
}

DataColumn ConvertToString(DataColumn const& column) {
  if (column.GetType() == StoreType::String) return column;
  return ConvertTexts(column, StoreType::String, AppendText);
}

DataColumn ConvertToBoolean(DataColumn const& column) {
  auto const type = column.GetType();
  if (type == StoreType::Bool) return column;
  if (type == StoreType::String) {
    return ConvertTexts(column, StoreType::Bool, [](ColumnStore& store, std::string_view text) {
      return !text.empty() && store.AppendBool(text != "false" && text != "0");
    });
  }
  return ConvertScalars(column, StoreType::Bool, [type](ColumnStore& store, std::uint64_t bits) {
    return store.AppendBool(IsTemporal(type) || ToReal(type, bits) != 0.0);
  });
}

DataColumn InferDates(DataColumn column) {
  if (column.GetType() != StoreType::String) return column;
  std::string buffer;
  auto const& view = column.values->AsColumn();
  auto const texts = column.values->AsTypedArray<RIndirectString>().GetValues();
  for (int row = 0; row < view.GetCount(); ++row) {
    if (view.IsSpecial(row)) continue;
    if (!ReadPlainDate(ToUtf8(texts[static_cast<std::size_t>(row)], buffer))) return column;
    break;
  }
  bool areDates = true;
  auto dates =
      ConvertTexts(column, StoreType::String, [&areDates](ColumnStore& store, std::string_view text) {
        auto const date = areDates ? ReadPlainDate(text) : std::nullopt;
        areDates = date && store.AppendDate(date->instant, date->hasTime);
        return areDates;
      });
  return areDates ? dates : column;
}

DataColumn ApplyParse(DataColumn column, DataFormat const& format) {
  auto const found = format.parse.find(column.name);
  if (found == format.parse.end()) return column;
  auto const& wanted = found->second;
  if (wanted == "number") return ConvertToNumber(column);
  if (wanted == "boolean") return ConvertToBoolean(column);
  if (wanted == "string") return ConvertToString(column);
  if (wanted == "date") return ConvertToDate(column);
  // "date:'%d %b %Y'"
  auto const quote = wanted.find(':') + 1;
  return ConvertToDate(column, wanted.substr(quote + 1, wanted.size() - quote - 2));
}

}  // namespace ostrel::charts
