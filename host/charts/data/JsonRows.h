#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "charts/data/RowBuilder.h"

namespace ostrel::charts {

/// Rows out of the events of a JSON document: finds the array that the property names and takes its elements
/// for rows. Errors throw DataError with the row.
class JsonRows {
 public:
  static constexpr std::size_t kMostLevels = 200;
  static constexpr std::size_t kMostTextBytes = std::size_t{16} << 20;
  static constexpr std::size_t kMostNameBytes = 4096;

  /// With `acceptsOneRow` the document may be an object that is the only row.
  JsonRows(std::string const& property, std::string sourceName, bool acceptsOneRow);

  void OnNull() { OnScalar({}); }
  void OnBool(bool value);
  void OnInteger(std::int64_t value);
  void OnReal(double value);
  void OnText(std::string_view value);
  void OnKey(std::string_view key);
  void BeginObject() { Begin(false); }
  void BeginArray() { Begin(true); }
  void End();

  /// Throws when the property was not found.
  DataTable Finish();

 private:
  /// A step of the property: a key, or a position in an array.
  struct Step {
    std::string key;
    std::size_t index = 0;
    bool isIndex = false;
  };
  /// An open object or array of the row that is being read, or one on the way to the rows.
  struct Level {
    bool isArray = false;
    std::size_t index = 0;         // of the element that begins next
    std::size_t prefixLength = 0;  // of the names of its members
    std::string key;               // read last; on the way to the rows only
  };
  enum class Place { BeforeRows, Rows, BehindRows };

  static std::vector<Step> ParseProperty(std::string const& property, std::string const& sourceName);
  void Begin(bool isArray);
  void BeginBeforeRows(bool isArray);
  void BeginInRows(bool isArray);
  void OnScalar(RowCell cell);
  bool IsOnTheWay();
  void NameElement();
  void CheckName() const;
  [[noreturn]] void Fail(std::string_view cause) const;

  std::string sourceName_;
  std::string property_;
  std::vector<Step> steps_;
  bool acceptsOneRow_;
  RowBuilder rows_;
  Place place_ = Place::BeforeRows;
  std::size_t depth_ = 0;    // open objects and arrays
  std::size_t matched_ = 0;  // of them, from the outside, those on the way to the rows
  std::size_t rowsDepth_ = 0;
  std::vector<Level> levels_;
  std::string name_;  // of the field that is read: the levels' prefix and its own key
  bool isOneRow_ = false;
};

}  // namespace ostrel::charts
