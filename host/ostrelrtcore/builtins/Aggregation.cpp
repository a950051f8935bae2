#include <cmath>

#include "ostrelrtcore/builtins/GroupedValues.h"

/// Aggregates of a column's ordinary rows, as a whole or by a column of group numbers, whose row g of the
/// result is group g. Special rows, in the values or in the groups, are passed over, and a group without
/// rows gives a special row of kind 1. NaN counts in sum, mean and deviation and makes them NaN; minimum,
/// maximum and quantiles pass it over.
namespace ort::core::builtins {
namespace {

template <class T>
bool IsNan(T value) {
  if constexpr (std::is_floating_point_v<T>) {
    return value != value;
  } else {
    return false;
  }
}

/// A column of one row a group; a group without values is special.
template <class Out, class Finish>
Value MakeGroupColumn(StoreType type, std::vector<int> const& counts, int minimumCount,
                      Finish const& finish) {
  auto column = factory::MakeColumnBuilder<Out>({type, false}, static_cast<int>(counts.size()));
  for (std::size_t group = 0; group < counts.size(); ++group) {
    if (counts[group] < minimumCount) {
      column.GetValues()[group] = Out();
      column.SetSpecial(static_cast<int>(group), SpecialKind::Missing);
    } else {
      column.GetValues()[group] = finish(group);
    }
  }
  return column.Finish();
}

/// Sums go through the rows in order, so that a bar's total is the end of its last stacked part.
template <class T>
struct SumOf {
  using Total = std::conditional_t<std::is_integral_v<T>, int64, double>;
  static constexpr StoreType ResultType(StoreType) { return ElementTraits<Total>::kStoreType; }

  static Value Compute(GroupedValues<T> const& values, StoreType) {
    using Wide = std::conditional_t<std::is_integral_v<T>, uint64, double>;
    struct State {
      Wide total = 0;
      int count = 0;
    };
    std::vector<State> states(static_cast<std::size_t>(values.GetGroupCount()));
    values.ForEach([states = states.data()](std::size_t group, T value) {
      states[group].total += static_cast<Wide>(value);
      ++states[group].count;
    });
    std::vector<int> counts;
    for (State const& state : states) counts.push_back(state.count);
    return MakeGroupColumn<Total>(ElementTraits<Total>::kStoreType, counts, 1,
                                  [&](std::size_t group) { return static_cast<Total>(states[group].total); });
  }
};

struct Means {
  std::vector<double> means;
  std::vector<int> counts;
};

template <class T>
Means ComputeMeans(GroupedValues<T> const& values) {
  auto const groups = static_cast<std::size_t>(values.GetGroupCount());
  Means result{std::vector<double>(groups), std::vector<int>(groups)};
  values.ForEach([means = result.means.data(), counts = result.counts.data()](std::size_t group, T value) {
    means[group] += static_cast<double>(value);
    ++counts[group];
  });
  for (std::size_t group = 0; group < groups; ++group) result.means[group] /= result.counts[group];
  return result;
}

template <class T>
struct MeanOf {
  static constexpr StoreType ResultType(StoreType) { return StoreType::Real64; }
  static Value Compute(GroupedValues<T> const& values, StoreType) {
    auto const [means, counts] = ComputeMeans(values);
    return MakeGroupColumn<double>(StoreType::Real64, counts, 1,
                                   [&means = means](std::size_t group) { return means[group]; });
  }
};

/// The deviations are taken from the mean in a second pass, since sums of squares cancel.
template <class T>
struct DeviationOf {
  static constexpr StoreType ResultType(StoreType) { return StoreType::Real64; }
  static Value Compute(GroupedValues<T> const& values, StoreType) {
    auto const means = ComputeMeans(values);
    std::vector<double> squares(means.means.size());
    values.ForEach([&means, squares = squares.data()](std::size_t group, T value) {
      double const deviation = static_cast<double>(value) - means.means[group];
      squares[group] += deviation * deviation;
    });
    return MakeGroupColumn<double>(StoreType::Real64, means.counts, 2, [&](std::size_t group) {
      return std::sqrt(squares[group] / (means.counts[group] - 1));
    });
  }
};

template <class T, bool IsMinimum>
struct ExtremeOf {
  static constexpr StoreType ResultType(StoreType values) { return values; }
  static Value Compute(GroupedValues<T> const& values, StoreType type) {
    auto const groups = static_cast<std::size_t>(values.GetGroupCount());
    std::vector<T> extremes(groups);
    std::vector<int> counts(groups);
    values.ForEach([extremes = extremes.data(), counts = counts.data()](std::size_t group, T value) {
      if (IsNan(value)) return;
      T& extreme = extremes[group];
      bool const isBeyond = IsMinimum ? value < extreme : value > extreme;
      if (isBeyond || counts[group] == 0) extreme = value;
      counts[group] = 1;
    });
    return MakeGroupColumn<T>(type, counts, 1, [&](std::size_t group) { return extremes[group]; });
  }
};
template <class T>
using MinimumOf = ExtremeOf<T, true>;
template <class T>
using MaximumOf = ExtremeOf<T, false>;

/// The quantile of numbers in any order, which are reordered: linear between the two values next to
/// fraction * (n - 1) (R. J. Hyndman and Y. Fan, "Sample quantiles in statistical packages", The American
/// Statistician 50 (1996), definition 7).
template <class T>
double QuantileOf(std::span<T> values, double fraction) {
  double const place = fraction * static_cast<double>(values.size() - 1);
  auto const below = static_cast<std::size_t>(place);
  auto const at = values.begin() + static_cast<std::ptrdiff_t>(below);
  std::ranges::nth_element(values, at);
  auto const lower = static_cast<double>(*at);
  double const part = place - static_cast<double>(below);
  if (part == 0) return lower;
  auto const upper = static_cast<double>(*std::ranges::min_element(at + 1, values.end()));
  return lower == upper ? lower : lower * (1 - part) + upper * part;
}

/// The values of each group next to each other, NaN left out; group g's stand at starts[g] to starts[g + 1].
template <class T>
struct Buckets {
  std::vector<T> values;
  std::vector<std::size_t> starts;
};

template <class T>
Buckets<T> SortIntoBuckets(GroupedValues<T> const& values) {
  Buckets<T> buckets;
  buckets.starts.resize(static_cast<std::size_t>(values.GetGroupCount()) + 1);
  values.ForEach([&](std::size_t group, T value) { buckets.starts[group + 1] += !IsNan(value); });
  for (std::size_t group = 1; group < buckets.starts.size(); ++group) {
    buckets.starts[group] += buckets.starts[group - 1];
  }
  buckets.values.resize(buckets.starts.back());
  auto next = buckets.starts;
  values.ForEach([&](std::size_t group, T value) {
    if (!IsNan(value)) buckets.values[next[group]++] = value;
  });
  return buckets;
}

template <class T>
Value ComputeQuantiles(GroupedValues<T> const& values, double fraction) {
  auto buckets = SortIntoBuckets(values);
  auto const sizeOf = [&](std::size_t group) { return buckets.starts[group + 1] - buckets.starts[group]; };
  std::vector<int> counts;
  for (std::size_t group = 0; group + 1 < buckets.starts.size(); ++group) {
    counts.push_back(static_cast<int>(sizeOf(group)));
  }
  return MakeGroupColumn<double>(StoreType::Real64, counts, 1, [&](std::size_t group) {
    return QuantileOf(std::span(buckets.values).subspan(buckets.starts[group], sizeOf(group)), fraction);
  });
}

template <class T>
struct MedianOf {
  static constexpr StoreType ResultType(StoreType) { return StoreType::Real64; }
  static Value Compute(GroupedValues<T> const& values, StoreType) { return ComputeQuantiles(values, 0.5); }
};

/// The function of whole values for an aggregate of elements of one type.
template <StoreType Type, template <class> class Aggregate, class T>
Value AggregateGroups(Value const& values, Value const& groups) {
  RequireColumn(*values, Type, "values");
  GroupColumn const rows(*groups);
  return Aggregate<T>::Compute(GroupedValues<T>(*values, rows), Type);
}

template <StoreType Type, template <class> class Aggregate, class T>
Value AggregateColumn(Value const& values) {
  GroupColumn const rows(RequireColumn(*values, Type, "values").GetCount());
  return ElementAt(Aggregate<T>::Compute(GroupedValues<T>(*values, rows), Type), 0);
}

template <template <class> class Aggregate, StoreType... Types>
std::vector<Registration> ByGroup() {
  return {Multinary<AggregateGroups<Types, Aggregate, typename detail::ElementOfType<Types>::Element>>(
      {ArrayOf(Types), ArrayOf(StoreType::Int32)},
      ArrayOf(Aggregate<typename detail::ElementOfType<Types>::Element>::ResultType(Types)))...};
}

template <template <class> class Aggregate, StoreType... Types>
std::vector<Registration> OfColumn() {
  return {Multinary<AggregateColumn<Types, Aggregate, typename detail::ElementOfType<Types>::Element>>(
      {ArrayOf(Types)},
      Segment(Aggregate<typename detail::ElementOfType<Types>::Element>::ResultType(Types)))...};
}

double FetchFraction(Value const& value) {
  auto const fraction = FetchStoreValue<double>(value);
  if (!(fraction >= 0 && fraction <= 1)) {
    ThrowError(OrtError_WrongValueKind, "fraction " + std::to_string(fraction) + " outside of 0 to 1");
  }
  return fraction;
}

template <StoreType Type>
Value GroupQuantile(Value const& values, Value const& groups, Value const& fraction) {
  using T = typename detail::ElementOfType<Type>::Element;
  RequireColumn(*values, Type, "values");
  GroupColumn const rows(*groups);
  return ComputeQuantiles(GroupedValues<T>(*values, rows), FetchFraction(fraction));
}

template <StoreType Type>
Value ColumnQuantile(Value const& values, Value const& fraction) {
  using T = typename detail::ElementOfType<Type>::Element;
  GroupColumn const rows(RequireColumn(*values, Type, "values").GetCount());
  return ElementAt(ComputeQuantiles(GroupedValues<T>(*values, rows), FetchFraction(fraction)), 0);
}

template <StoreType... Types>
std::vector<Registration> QuantileByGroup() {
  using enum StoreType;
  return {
      Multinary<GroupQuantile<Types>>({ArrayOf(Types), ArrayOf(Int32), Segment(Real64)}, ArrayOf(Real64))...};
}

template <StoreType... Types>
std::vector<Registration> QuantileOfColumn() {
  using enum StoreType;
  return {Multinary<ColumnQuantile<Types>>({ArrayOf(Types), Segment(Real64)}, Segment(Real64))...};
}

Value GroupCount(Value const& groups) {
  GroupColumn const rows(*groups);
  auto counts = factory::MakeColumnBuilder<int>(StoreTypeInfo::Int32, rows.GetCount());
  std::ranges::fill(counts.GetValues(), 0);
  rows.ForEachRow(RowKinds(),
                  [counts = counts.GetValues().data()](std::size_t group, int) { ++counts[group]; });
  return counts.Finish();
}

Value GroupFirstRow(Value const& groups) {
  GroupColumn const rows(*groups);
  std::vector<int> firstRows(static_cast<std::size_t>(rows.GetCount()), -1);
  rows.ForEachRow(RowKinds(), [&](std::size_t group, int row) {
    if (firstRows[group] < 0) firstRows[group] = row;
  });
  std::vector<int> counts;
  for (int const row : firstRows) counts.push_back(row >= 0);
  return MakeGroupColumn<int>(StoreType::Int32, counts, 1,
                              [&](std::size_t group) { return firstRows[group]; });
}

}  // namespace

BuiltinFamily AggregationFamily() {
  using enum StoreType;
  return {
      "aggregation",
      {
          {.name = "groupCount",
           .inputs = {"groups"},
           .help = "The number of rows of each group.",
           .example = R"("inputs": [{"Array": {"type": "Int32", "values": [0, 1, 0]}}])",
           .registrations = {Multinary<GroupCount>({ArrayOf(Int32)}, ArrayOf(Int32))}},
          {.name = "groupFirstRow",
           .inputs = {"groups"},
           .help = "The first row of each group.",
           .example = R"("inputs": [{"Array": {"type": "Int32", "values": [0, 1, 0]}}])",
           .registrations = {Multinary<GroupFirstRow>({ArrayOf(Int32)}, ArrayOf(Int32))}},
          {.name = "groupSum",
           .inputs = {"values", "groups"},
           .help = "The sum of each group, of integers as Int64, which wraps around.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 2, 4]}}, )"
                      R"({"Array": {"type": "Int32", "values": [0, 1, 0]}}])",
           .registrations = ByGroup<SumOf, Int32, Int64, Real32, Real64>()},
          {.name = "groupMean",
           .inputs = {"values", "groups"},
           .help = "The arithmetic mean of each group.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 2, 4]}}, )"
                      R"({"Array": {"type": "Int32", "values": [0, 1, 0]}}])",
           .registrations = ByGroup<MeanOf, Int32, Int64, Real32, Real64>()},
          {.name = "groupMin",
           .inputs = {"values", "groups"},
           .help = "The lowest value of each group, NaN passed over.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 2, 4]}}, )"
                      R"({"Array": {"type": "Int32", "values": [0, 1, 0]}}])",
           .registrations = ByGroup<MinimumOf, Int32, Int64, Real32, Real64, Date, DateTime>()},
          {.name = "groupMax",
           .inputs = {"values", "groups"},
           .help = "The highest value of each group, NaN passed over.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 2, 4]}}, )"
                      R"({"Array": {"type": "Int32", "values": [0, 1, 0]}}])",
           .registrations = ByGroup<MaximumOf, Int32, Int64, Real32, Real64, Date, DateTime>()},
          {.name = "groupMedian",
           .inputs = {"values", "groups"},
           .help = "The median of each group, NaN passed over.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 2, 4]}}, )"
                      R"({"Array": {"type": "Int32", "values": [0, 1, 0]}}])",
           .registrations = ByGroup<MedianOf, Int32, Int64, Real32, Real64>()},
          {.name = "groupQuantile",
           .inputs = {"values", "groups", "fraction"},
           .help = "The quantile of each group at a fraction from 0 to 1 (else 55), linear between the two "
                   "nearest values, NaN passed over.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 2, 4]}}, )"
                      R"({"Array": {"type": "Int32", "values": [0, 1, 0]}}, {"Real64": 0.25}])",
           .registrations = QuantileByGroup<Int32, Int64, Real32, Real64>()},
          {.name = "groupStdev",
           .inputs = {"values", "groups"},
           .help = "The sample standard deviation of each group; a special row of kind 1 for fewer than two "
                   "values.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 2, 4]}}, )"
                      R"({"Array": {"type": "Int32", "values": [0, 1, 0]}}])",
           .registrations = ByGroup<DeviationOf, Int32, Int64, Real32, Real64>()},
          {.name = "columnSum",
           .inputs = {"values"},
           .help = "The sum of a column, of integers as Int64, which wraps around.",
           .example = R"("inputs": [{"Array": {"type": "Int32", "values": [1, 2, 4]}}])",
           .registrations = OfColumn<SumOf, Int32, Int64, Real32, Real64>()},
          {.name = "columnMean",
           .inputs = {"values"},
           .help = "The arithmetic mean of a column.",
           .example = R"("inputs": [{"Array": {"type": "Int32", "values": [1, 2, 4]}}])",
           .registrations = OfColumn<MeanOf, Int32, Int64, Real32, Real64>()},
          {.name = "columnMin",
           .inputs = {"values"},
           .help = "The lowest value of a column, NaN passed over.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": ["NaN", 2, 4]}}])",
           .registrations = OfColumn<MinimumOf, Int32, Int64, Real32, Real64, Date, DateTime>()},
          {.name = "columnMax",
           .inputs = {"values"},
           .help = "The highest value of a column, NaN passed over.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": ["NaN", 2, 4]}}])",
           .registrations = OfColumn<MaximumOf, Int32, Int64, Real32, Real64, Date, DateTime>()},
          {.name = "columnMedian",
           .inputs = {"values"},
           .help = "The median of a column, NaN passed over.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [4, 1, 2]}}])",
           .registrations = OfColumn<MedianOf, Int32, Int64, Real32, Real64>()},
          {.name = "columnQuantile",
           .inputs = {"values", "fraction"},
           .help = "The quantile of a column at a fraction from 0 to 1 (else 55), linear between the two "
                   "nearest values, NaN passed over.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [4, 1, 2]}}, {"Real64": 0.25}])",
           .registrations = QuantileOfColumn<Int32, Int64, Real32, Real64>()},
          {.name = "columnStdev",
           .inputs = {"values"},
           .help = "The sample standard deviation of a column; special of kind 1 for fewer than two values.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [4, 1, 2]}}])",
           .registrations = OfColumn<DeviationOf, Int32, Int64, Real32, Real64>()},
      }};
}

}  // namespace ort::core::builtins
