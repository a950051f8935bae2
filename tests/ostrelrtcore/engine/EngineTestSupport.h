#pragma once

#include <random>
#include <string>
#include <vector>

#include "ostrelrtcore/OrtBinaryFunctor.h"
#include "ostrelrtcore/OrtBinarySpecialFunctor.h"
#include "ostrelrtcore/OrtUnaryFunctor.h"
#include "ostrelrtcore/OrtUnarySpecialFunctor.h"
#include "ostrelrtcore/engine/Engine.h"

/// Functions whose results tell which rows they saw, in which order and with which kinds, and a model that
/// applies the same operations row by row.
namespace enginetest {

using namespace ort::core;
using factory::Value;

inline SpecialKind Kind(int code) { return static_cast<SpecialKind>(code); }

struct Halve {
  double Apply(double x) const { return 0.5 * x; }
};
/// Each row counts half as much for the next one: order, doubled and missing rows show.
struct Decay {
  double Apply(double x) { return total = 0.5 * total + x; }
  double total = 0;
};
struct HalveSpecial {
  std::pair<double, SpecialKind> Apply(double x, SpecialKind kind) const {
    auto const code = static_cast<int>(kind);
    return {0.5 * x + 100 * code, Kind(x > 5 ? 7 : code == 9 ? 0 : code)};
  }
};
struct DecaySpecial {
  std::pair<double, SpecialKind> Apply(double x, SpecialKind kind) {
    total = 0.5 * total + x + static_cast<int>(kind);
    return {total, Kind(total < 2 ? 3 : 0)};
  }
  double total = 0;
};
struct Mix {
  double Apply(double a, double b) const { return 0.5 * a + b; }
};
struct MixDecay {
  double Apply(double a, double b) { return total = 0.25 * total + 0.5 * a + b; }
  double total = 0;
};
struct MixSpecial {
  std::pair<double, SpecialKind> Apply(double a, SpecialKind ka, double b, SpecialKind kb) const {
    return {0.5 * a + b + 10 * static_cast<int>(ka) + 20 * static_cast<int>(kb), Kind(b > 6 ? 5 : 0)};
  }
};
struct MixDecaySpecial {
  std::pair<double, SpecialKind> Apply(double a, SpecialKind ka, double b, SpecialKind kb) {
    total = 0.25 * total + 0.5 * a + b + static_cast<int>(ka) + 2 * static_cast<int>(kb);
    return {total, Kind(b > 6 ? 5 : 0)};
  }
  double total = 0;
};
struct Append {
  RIndirectString Apply(RIndirectString const& a, RIndirectString const& b) const {
    return OStringCore(a) + OStringCore(b);
  }
};
struct Scale {
  explicit Scale(double by) : factor(by) {}
  double Apply(double x) const { return factor * x; }
  double factor;
};
/// Fails at the value 13.
struct RefuseThirteen {
  double Apply(double x) const {
    if (x == 13) throw OrtRuntimeException(static_cast<OrtError>(178), OStringCore(L"thirteen"));
    return x;
  }
};

/// "halve", "decay" (order-dependent), "mix", "mixDecay" (order-dependent), each of them with "Special"
/// behind its name for the form that sees special rows; "both" (a plain and a special registration under one
/// key), "scale" (a parameter), "append" (strings), "refuse", and the multinary "count".
void RegisterTestFunctions(FunctionRegistry& registry);

struct Row {
  double value = 0;
  SpecialKind kind = SpecialKind::None;
  friend bool operator==(Row const& a, Row const& b) = default;
};
using Rows = std::vector<Row>;
void PrintTo(Row const& row, std::ostream* out);

/// "1 2.5 !9 -3": values, and special rows by their kind.
Rows ParseRows(std::string const& text);
Value MakeReals(Rows const& rows);
Value MakeReals(std::string const& text);
Value MakeStrings(std::vector<char const*> const& texts, std::vector<int> const& missing = {});
/// The rows of a Real64 column, or the one row of a Real64 scalar.
Rows ReadRows(Value const& value);
/// The first difference between rows in words, "same" without one.
std::string Compare(Rows const& rows, Rows const& expected);
std::vector<std::string> ReadTexts(Value const& value);

/// An input of `count` rows in one of the forms in which the engine takes it.
struct Sample {
  enum Form { Dense, FewSpecials, ManySpecials, Constant, AllSpecial, Scalar, SpecialScalar };
  static constexpr int kForms = 7;

  Sample(Form form, int count, unsigned seed);
  bool IsScalar() const { return form == Scalar || form == SpecialScalar; }

  Form form;
  Rows rows;  // a scalar's row once for every row
  Value value;
};

/// The rows that a plain or special operation gives one after the other; none for `kept` of a plain one.
template <class Operation>
Row ApplyToRow(Operation& operation, Row const& row) {
  if constexpr (requires { operation.Apply(0.0, SpecialKind()); }) {
    auto const [value, kind] = operation.Apply(row.value, row.kind);
    return {kind == SpecialKind::None ? value : 0.0, kind};
  } else {
    return row.kind != SpecialKind::None ? Row{0, row.kind} : Row{operation.Apply(row.value)};
  }
}

template <class Operation>
Row ApplyToRow(Operation& operation, Row const& a, Row const& b) {
  if constexpr (requires { operation.Apply(0.0, SpecialKind(), 0.0, SpecialKind()); }) {
    auto const [value, kind] = operation.Apply(a.value, a.kind, b.value, b.kind);
    return {kind == SpecialKind::None ? value : 0.0, kind};
  } else {
    SpecialKind const kind = a.kind != SpecialKind::None ? a.kind : b.kind;
    return kind != SpecialKind::None ? Row{0, kind} : Row{operation.Apply(a.value, b.value)};
  }
}

/// The code and message of the OrtRuntimeException that `run` throws, as "259" or "178 thirteen"; the text of
/// any other exception; "nothing" without one.
template <class Run>
std::string Failure(Run const& run) {
  try {
    run();
  } catch (OrtRuntimeException const& error) {
    auto const message = error.GetMessage().toUtf8();
    return std::to_string(error.GetError()) + (message.empty() ? "" : " " + message);
  } catch (std::exception const& error) {
    return error.what();
  }
  return "nothing";
}

}  // namespace enginetest
