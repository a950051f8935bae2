#include <cmath>

#include "ostrelrtcore/builtins/BuiltinRow.h"

/// Truth values and tests of rows. Special rows stay special, but for isSpecial and replaceSpecial, which see
/// them and give ordinary rows alone.
namespace ort::core::builtins {
namespace {

// clang-format off
template <class T> struct And { T Apply(T first, T second) const { return first & second; } };
template <class T> struct Or { T Apply(T first, T second) const { return first | second; } };
template <class T> struct ExclusiveOr { T Apply(T first, T second) const { return first != second; } };
template <class T> struct Not { T Apply(T value) const { return !value; } };
template <class T> struct IsFinite { bool Apply(T value) const { return std::isfinite(value); } };
// clang-format on

template <class T>
struct IsSpecial {
  std::pair<bool, SpecialKind> Apply(T const&, SpecialKind kind) const {
    return {kind != SpecialKind::None, SpecialKind::None};
  }
};

template <class T>
class ReplaceSpecial {
 public:
  explicit ReplaceSpecial(T replacement) : replacement_(std::move(replacement)) {}
  std::pair<T, SpecialKind> Apply(T const& value, SpecialKind kind) const {
    return {kind == SpecialKind::None ? value : replacement_, SpecialKind::None};
  }

 private:
  T replacement_;
};

}  // namespace

BuiltinFamily LogicFamily() {
  using enum StoreType;
  return {
      "logic",
      {
          {.name = "and",
           .inputs = {"first", "second"},
           .help = "Whether both are true.",
           .example = R"("inputs": [{"Bool": true}, {"Bool": false}])",
           .registrations = Zip<And, Bool>()},
          {.name = "or",
           .inputs = {"first", "second"},
           .help = "Whether one or both are true.",
           .example = R"("inputs": [{"Bool": true}, {"Bool": false}])",
           .registrations = Zip<Or, Bool>()},
          {.name = "xor",
           .inputs = {"first", "second"},
           .help = "Whether exactly one is true.",
           .example = R"("inputs": [{"Bool": true}, {"Bool": false}])",
           .registrations = Zip<ExclusiveOr, Bool>()},
          {.name = "not",
           .inputs = {"values"},
           .help = "Whether the value is false.",
           .example = R"("inputs": [{"Bool": true}])",
           .registrations = Map<Not, Bool>()},
          {.name = "isFinite",
           .inputs = {"values"},
           .help = "Whether the number is neither NaN nor an infinity.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, "NaN"]}}])",
           .registrations = Map<IsFinite, Real32, Real64>()},
          {.name = "isSpecial",
           .inputs = {"values"},
           .help = "Whether the row holds a special value of whatever kind; the result has no special rows.",
           .example =
               R"("inputs": [{"Array": {"type": "Real64", "values": [1, null], "specials": [[1, 9]]}}])",
           .registrations =
               Map<IsSpecial, Int32, Int64, Real32, Real64, String, Date, DateTime, Color, Bool>()},
          {.name = "replaceSpecial",
           .inputs = {"values"},
           .parameters = {"replacement"},
           .help = "The values with the replacement in the place of every special row.",
           .example =
               R"("inputs": [{"Array": {"type": "Int32", "values": [1, null], "specials": [[1, 9]]}}], )"
               R"("parameters": [{"Int32": 7}])",
           .registrations = MapWithParameter<ReplaceSpecial, Int32, Int64, Real32, Real64, String, Date,
                                             DateTime, Color, Bool>()},
      }};
}

}  // namespace ort::core::builtins
