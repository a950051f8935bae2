#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "ostrelrtcore/StoreValue.h"

namespace ostrel::charts {

/// What is wrong with a chart's data. The text names the source, the place in it (line, column or row) and
/// the cause: "cars.csv:17: 5 fields, the header has 6".
class DataError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// One field of all rows: an Int64, Real64, String, Bool, Date or DateTime column. Special rows are of kind
/// Missing (no value, or NaN) or Null (a JSON null), and their slots hold 0; no Real64 slot is NaN.
struct DataColumn {
  std::string name;
  std::shared_ptr<ort::core::StoreValue> values;
  /// The values were written as text (CSV and the like), where 1880 in a date column is a year; among JSON
  /// numbers it is a count of milliseconds.
  bool isFromText = false;

  ort::core::StoreType GetType() const { return values->GetTypeInfo().GetElementType(); }
};

/// Rows and columns as they were loaded; at least one row, and columns of that many rows each.
struct DataTable {
  /// As messages name it: the file's path as the chart gives it, or the JSON path of inline values.
  std::string sourceName;
  int rowCount = 0;
  /// In the order of the header, or in which JSON rows first name them.
  std::vector<DataColumn> columns;

  /// Null when there is no such column.
  DataColumn const* Find(std::string_view name) const;
  /// Throws DataError with the nearest name and a list of the columns: "no field 'Horsepwr' in cars.csv; did
  /// you mean 'Horsepower'? Its fields are Horsepower, Name, ...".
  DataColumn const& Get(std::string_view name) const;
};

/// Throws DataError when every row of the column is special: "cars.csv: field 'x' holds only missing values".
void RequireValues(DataTable const& table, DataColumn const& column);

}  // namespace ostrel::charts
