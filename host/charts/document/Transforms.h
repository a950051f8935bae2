#pragma once

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "ostrelrtcore/OrtDateTime.h"

/// How a document derives rows and fields from its data, as it was written.
namespace ostrel::charts {

struct Expression;

/// A scalar of the document, or a date that is an object of its parts; monostate where none stands or it is
/// null.
using Literal = std::variant<std::monostate, bool, double, std::string, ort::core::OrtDateTime>;

enum class AggregateOperation { Count, Valid, Missing, Sum, Mean, Median, Min, Max, Q1, Q3, Stdev };

enum class StackOffset { None, Zero, Normalize, Center };

struct BinSpec {
  bool isDone = false;  ///< "binned": the field and a second one hold the bins' ends already
  std::optional<double> maxBins;
  std::optional<double> step;
  std::optional<double> minStep;
  std::optional<double> extentStart;
  std::optional<double> extentEnd;
};

/// A unit of time, and where its years or weeks begin.
struct TimeUnitSpec {
  std::string name;                ///< one that TimeUnit knows, or "yearweek"; empty where there is none
  std::optional<int> fiscalStart;  ///< the first month of a fiscal year, 1 to 12; of years and quarters
  int weekStart = 1;               ///< the first day of a week, Sunday 1 to Saturday 7

  bool operator==(TimeUnitSpec const&) const = default;
  bool empty() const { return name.empty(); }
  bool IsWeek() const { return name == "yearweek"; }
  /// Its beginnings are counted from one of them, instead of being read off the calendar.
  bool IsPeriod() const { return IsWeek() || fiscalStart; }
};

/// How the values of a discrete field are ordered by numbers: those of another channel, or a field's.
struct SortSpec {
  std::string channel;  ///< "x", "y", "color", ...; empty: the field is meant
  std::string field;    ///< empty for a count
  AggregateOperation operation = AggregateOperation::Min;
  bool isDescending = false;
};

/// A test of one field, an expression, or several of them joined.
struct FilterSpec {
  enum class Kind {
    Equal,
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual,
    Range,
    OneOf,
    Valid,
    Expression,
    And,
    Or,
    Not
  };
  Kind kind = Kind::Equal;
  std::string path;  ///< "$.transform[0].filter"
  std::string field;
  TimeUnitSpec timeUnit;
  std::vector<Literal> values;  ///< one of a comparison; two of a range, which may be open (monostate)
  bool isValid = true;
  std::shared_ptr<Expression const> expression;
  std::vector<FilterSpec> parts;
};

struct CalculateSpec {
  std::string path;  ///< "$.transform[0].calculate"
  std::shared_ptr<Expression const> expression;
  std::string as;
};

struct AggregateSpec {
  struct Field {
    AggregateOperation operation = AggregateOperation::Count;
    std::string field;  ///< empty for a count
    std::string as;
  };
  std::string path;
  std::vector<Field> fields;
  std::vector<std::string> groups;
  /// The results stand in new columns beside all rows instead of in a row for each group.
  bool keepsRows = false;
};

struct BinTransform {
  std::string path;
  BinSpec bin;
  std::string field;
  std::string start;
  std::string end;
};

struct TimeUnitTransform {
  std::string path;
  TimeUnitSpec unit;
  std::string field;
  std::string start;
  std::string end;
};

using TransformSpec = std::variant<FilterSpec, CalculateSpec, AggregateSpec, BinTransform, TimeUnitTransform>;

}  // namespace ostrel::charts
