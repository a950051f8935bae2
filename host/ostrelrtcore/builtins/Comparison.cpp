#include <functional>

#include "ostrelrtcore/builtins/BuiltinRow.h"

/// Comparison of two values of one type, row by row. Special rows stay special. A NaN is not equal to
/// anything, itself included, and neither less nor greater; strings compare by code unit, dates by instant.
namespace ort::core::builtins {
namespace {

/// Equal texts share one address, so that only an order has to look at them.
template <class T, template <class> class Relation>
struct Comparison {
  bool Apply(T const& first, T const& second) const { return Relation<T>()(first, second); }
};
template <template <class> class Relation>
struct Comparison<RIndirectString, Relation> {
  bool Apply(RIndirectString const& first, RIndirectString const& second) const {
    return Relation<std::u16string_view>()(first.Get().view(), second.Get().view());
  }
};

// clang-format off
template <class T> struct Equal { bool Apply(T const& first, T const& second) const { return first == second; } };
template <class T> struct NotEqual { bool Apply(T const& first, T const& second) const { return !(first == second); } };
template <class T> struct Less : Comparison<T, std::less> {};
template <class T> struct LessOrEqual : Comparison<T, std::less_equal> {};
template <class T> struct Greater : Comparison<T, std::greater> {};
template <class T> struct GreaterOrEqual : Comparison<T, std::greater_equal> {};
// clang-format on

template <template <class> class Operation>
std::vector<Registration> ZipOrdered() {
  using enum StoreType;
  return Zip<Operation, Int32, Int64, Real32, Real64, String, Date, DateTime>();
}

template <template <class> class Operation>
std::vector<Registration> ZipAll() {
  using enum StoreType;
  return Zip<Operation, Int32, Int64, Real32, Real64, String, Date, DateTime, Color, Bool>();
}

}  // namespace

BuiltinFamily ComparisonFamily() {
  return {
      "comparison",
      {
          {.name = "equal",
           .inputs = {"first", "second"},
           .help = "Whether the two are equal; NaN equals nothing.",
           .example = R"("inputs": [{"String": "a"}, {"Array": {"type": "String", "values": ["b", "a"]}}])",
           .registrations = ZipAll<Equal>()},
          {.name = "notEqual",
           .inputs = {"first", "second"},
           .help = "Whether the two differ; NaN differs from everything.",
           .example = R"("inputs": [{"Int32": 1}, {"Int32": 2}])",
           .registrations = ZipAll<NotEqual>()},
          {.name = "less",
           .inputs = {"first", "second"},
           .help = "Whether the first is below the second; never with a NaN.",
           .example = R"("inputs": [{"Real64": 1}, {"Real64": 2}])",
           .registrations = ZipOrdered<Less>()},
          {.name = "lessOrEqual",
           .inputs = {"first", "second"},
           .help = "Whether the first is below or equal to the second; never with a NaN.",
           .example = R"("inputs": [{"Date": "2020-03-01"}, {"Date": "2020-03-01"}])",
           .registrations = ZipOrdered<LessOrEqual>()},
          {.name = "greater",
           .inputs = {"first", "second"},
           .help = "Whether the first is above the second; never with a NaN.",
           .example = R"("inputs": [{"Real64": 1}, {"Real64": 2}])",
           .registrations = ZipOrdered<Greater>()},
          {.name = "greaterOrEqual",
           .inputs = {"first", "second"},
           .help = "Whether the first is above or equal to the second; never with a NaN.",
           .example = R"("inputs": [{"String": "b"}, {"String": "a"}])",
           .registrations = ZipOrdered<GreaterOrEqual>()},
      }};
}

}  // namespace ort::core::builtins
