#pragma once

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "charts/expressions/Expression.h"
#include "charts/transforms/RowStep.h"

namespace ostrel::charts {

enum class ValueType { Number, Text, Boolean, Date, Null, List, Parts };

/// "a number", "a text", ...
char const* NameOf(ValueType type);

/// A part of an expression, compiled: a column, or one value that is the same in every row.
struct Operand {
  ValueType type = ValueType::Null;
  ort::core::StoreType store = ort::core::StoreType::Empty;
  NodeId node = -1;          ///< of a column
  Value constant = nullptr;  ///< null for a column
  bool mayBeMissing = false;
  std::string field = {};             ///< of a column that is one of the rows' own
  std::vector<Operand> members = {};  ///< of a List; of Parts the text and the separator that divides it

  bool IsConstant() const { return constant != nullptr; }
};

/// Makes operands of an expression's nodes, and of operands others. All throw ExpressionError with the column
/// of the node that is being compiled.
class OperandCompiler {
 public:
  OperandCompiler(RowStep& step, Expression const& expression) : step_(step), expression_(expression) {}

  Operand Compile(int node);
  /// Whether the value counts as true; no row is missing.
  Operand CompileTruth(int node);

  // Conversions as operations make them: no row is missing. Null is 0, "null" and false, what is missing
  // otherwise NaN, "undefined" and false. Lists and parts of texts are refused.
  Operand ToReal(Operand const& operand);
  Operand ToText(Operand const& operand);
  Operand ToTruth(Operand const& operand);
  // Conversions that leave missing values missing.
  Operand AsReal(Operand const& operand);
  Operand AsText(Operand const& operand);
  Operand AsDate(Operand const& operand);

  Operand Real(double value) const;
  Operand Text(std::string const& value) const;
  Operand Bool(bool value) const;
  /// Null, of a type.
  Operand Null(ort::core::StoreType store) const;

  // Functions of operands; the result is missing where one of them is.
  Operand Map(ort::core::StoreType result, char const* function, Operand const& operand,
              std::vector<Operand> const& parameters = {});
  Operand Zip(ort::core::StoreType result, char const* function, Operand const& first, Operand const& second);
  /// Of numbers.
  Operand ZipReal(char const* function, Operand const& first, Operand const& second);
  Operand Call(ort::core::StoreType result, char const* function, std::vector<Operand> const& operands);
  /// The same for a function whose first operands must be columns.
  Operand CallOnColumns(ort::core::StoreType result, char const* function,
                        std::vector<Operand> const& operands, std::size_t columns);

  /// Row by row one or the other, of types that go together.
  Operand Choose(Operand const& mask, Operand whenTrue, Operand whenFalse);
  /// Equal values, or both missing.
  Operand Equal(Operand const& first, Operand const& second, bool isStrict);
  Operand Compare(char const* function, Operand const& first, Operand const& second);
  Operand Not(Operand const& truth);
  Operand IsMissing(Operand const& operand);
  Operand IsNull(Operand const& operand);
  Operand WithoutMissing(Operand const& operand, bool replacement);
  /// A text, "null" where it is missing.
  Operand OrNull(Operand const& text);
  Operand CountParts(Operand const& list);

  /// Throws for null, lists and parts, which are no values of rows.
  void RequireValue(Operand const& operand);
  NodeId NodeOf(Operand const& operand);
  /// The whole expression's value as a column without NaN.
  NodeId MakeColumn(Operand operand);
  ExpressionNode const& GetNode(int node) const { return expression_.GetNode(node); }
  [[noreturn]] void Fail(std::string const& cause) const;

 private:
  class At;

  Operand CompileNode(ExpressionNode const& node);
  Operand CompileOperation(ExpressionNode const& node);
  Operand CompileLogic(ExpressionNode const& node);
  Operand CompileAccess(ExpressionNode const& node);
  Operand CompilePart(Operand const& whole, Operand const& index);
  Operand CompileField(std::string const& name);
  std::optional<std::string> FindFieldName(ExpressionNode const& node) const;
  Operand AddText(Operand const& first, Operand const& second);
  Operand CompareTexts(char const* function, Operand const& first, Operand const& second);
  void Unify(Operand& first, Operand& second);

  Operand Apply(ort::core::StoreType result, char const* function, ort::core::EvaluationMode mode,
                std::vector<Operand> const& operands, std::vector<Operand> const& parameters);
  Operand Fold(ort::core::StoreType result, std::vector<Operand> const& operands,
               std::function<Value(std::vector<Value> const&)> const& compute);
  std::string MakeName() const;

  RowStep& step_;
  Expression const& expression_;
  ExpressionNode const* current_ = nullptr;
  std::map<std::string, NodeId> nodes_;  ///< by function and inputs: what occurs twice is computed once
};

/// The values of one call.
class CallCompiler {
 public:
  CallCompiler(OperandCompiler& compiler_, ExpressionNode const& node) : compiler(compiler_), node_(node) {}

  std::size_t GetCount() const { return node_.children.size(); }
  bool Has(std::size_t place) const { return place < node_.children.size(); }
  Operand Get(std::size_t place) { return compiler.Compile(node_.children[place]); }
  Operand GetReal(std::size_t place) { return compiler.ToReal(Get(place)); }
  Operand GetReal(std::size_t place, double otherwise) {
    return Has(place) ? GetReal(place) : compiler.Real(otherwise);
  }
  Operand GetText(std::size_t place) { return compiler.ToText(Get(place)); }
  Operand GetText(std::size_t place, char const* otherwise) {
    return Has(place) ? GetText(place) : compiler.Text(otherwise);
  }
  /// The text of one that may be missing.
  Operand GetOwnText(std::size_t place) { return compiler.AsText(Get(place)); }
  Operand GetDate(std::size_t place) { return compiler.AsDate(Get(place)); }
  Operand GetTruth(std::size_t place) { return compiler.CompileTruth(node_.children[place]); }
  /// Throws for one that is not the same in every row.
  Operand GetConstantText(std::size_t place, char const* what);
  bool GetConstantTruth(std::size_t place, bool otherwise);

  OperandCompiler& compiler;

 private:
  ExpressionNode const& node_;
};

}  // namespace ostrel::charts
