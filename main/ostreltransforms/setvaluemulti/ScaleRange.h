#pragma once

#include <functional>
#include <span>
#include <vector>

#include "ostreltransforms/RangeUtilities.h"

// Range tuples (see RangeUtilities) as plain numbers, for the functions that widen and compare the ranges of
// axes. All of them read and write ranges by these rules:
//
//   - An end is a number on its scale: a number of days for dates, the natural logarithm on a logarithmic
//     scale. An end that is special, not finite or, on a logarithmic scale, not above zero is missing.
//   - Ends in the wrong order are exchanged, each with what its mode says of it.
//   - Of a mode that leaves no end to the data (3, 10) neither end moves, of 4, 6 and 7 not the minimum, of
//   5,
//     8 and 9 not the maximum. A missing end may always be filled in.
//   - A range that is not changed is given back as it is. Of another both ends are made anew: DateTimes for a
//     temporal field, Real64 for any other; out of their logarithms. An end that did not move keeps its
//     number exactly, and so does one that could only move to infinity.
//   - A row that is special stays special, with its kind.
namespace OstrelTransforms {

struct ScaleRange {
  double minimum;  // NaN where it is missing
  double maximum;
  bool fixesMinimum;
  bool fixesMaximum;
  bool isLog;
  ort::core::StoreType fieldType;

  /// Both ends are there.
  bool IsComplete() const { return minimum <= maximum; }
  /// Both ends are there and differ by a finite amount.
  bool HasExtent() const;
  double GetExtent() const { return maximum - minimum; }
  /// A number of the field on the range's scale; NaN where it has no place there.
  double ToScale(double number) const;
  /// Opens a range of one point as RangeUtilities::WidenPoint does.
  void OpenPoint();
};

/// Throws what RangeUtilities throws, and 178 for ends that are neither numeric nor temporal.
ScaleRange ReadRange(Value const& range);

/// The tuple of a range that was read from `source`. With `keepsLogarithms` the ends of a logarithmic range
/// are written as the logarithms they are, and an end without one as a special value of kind 1.
Value MakeRange(ScaleRange const& range, Value const& source, bool keepsLogarithms = false);

/// A column of range tuples, to be read, changed and written as a whole. A special row reads as a range
/// without ends.
class RangeColumn {
 public:
  /// Throws 55 for anything but a column of tuples.
  explicit RangeColumn(Value const& column);

  std::size_t GetCount() const { return ranges_.size(); }
  std::vector<ScaleRange> const& GetRanges() const { return ranges_; }
  bool IsSpecial(std::size_t row) const;
  /// One range a row.
  Value Make(std::span<ScaleRange const> ranges, bool keepsLogarithms = false) const;
  /// What `make` makes of each row, its range and its tuple.
  Value MakeEach(std::function<Value(std::size_t, ScaleRange const&, Value const&)> const& make) const;

 private:
  Value column_;
  std::vector<ScaleRange> ranges_;
};

/// The rows of a Real64 column, with NaN for special ones. Throws 55 for anything else.
class NumberColumn {
 public:
  explicit NumberColumn(Value const& column);
  std::size_t GetCount() const { return rows_.size(); }
  double operator[](std::size_t row) const { return rows_[row]; }

 private:
  Value column_;
  std::vector<double> withoutSpecials_;
  std::span<double const> rows_;
};

/// The rows of an Int32 or Int64 column, or of a Bool column; special rows are 0. Throw 55 for anything else.
std::vector<ort::core::int64> ReadIntegers(Value const& column);
std::vector<bool> ReadFlags(Value const& column);

/// Throws 259, naming the input, unless a column has as many rows as another.
void RequireCount(std::size_t count, std::size_t wanted, wchar_t const* name);

/// Throws 2: the input must be what is needed.
[[noreturn]] void Refuse(wchar_t const* name, wchar_t const* need);
/// Throws 2 unless a number is finite and not negative.
void RequireNotNegative(double number, wchar_t const* name);

}  // namespace OstrelTransforms
