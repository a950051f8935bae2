#include <fmt/format.h>

#include <cmath>

#include "charts/expressions/LanguageFunctions.h"
#include "charts/expressions/Operand.h"

namespace ostrel::charts {

namespace {

namespace factory = ort::core::factory;
using ort::core::EvaluationMode;
using ort::core::StoreType;

ValueType TypeOf(StoreType store) {
  switch (store) {
    case StoreType::Int64:
    case StoreType::Real64:
      return ValueType::Number;
    case StoreType::Bool:
      return ValueType::Boolean;
    case StoreType::Date:
    case StoreType::DateTime:
      return ValueType::Date;
    default:
      return ValueType::Text;
  }
}

bool IsValueStore(StoreType store) { return TypeOf(store) != ValueType::Text || store == StoreType::String; }

char const* FunctionOf(Operator operation) {
  switch (operation) {
    case Operator::Less:
      return "less";
    case Operator::LessOrEqual:
      return "lessOrEqual";
    case Operator::Greater:
      return "greater";
    case Operator::GreaterOrEqual:
      return "greaterOrEqual";
    case Operator::Add:
      return "add";
    case Operator::Subtract:
      return "subtract";
    case Operator::Multiply:
      return "multiply";
    case Operator::Divide:
      return "divide";
    case Operator::Remainder:
      return "remainder";
    default:
      return "power";
  }
}

}  // namespace

/// The node that errors and names of graph nodes are about.
class OperandCompiler::At {
 public:
  At(OperandCompiler& compiler, ExpressionNode const& node) : compiler_(compiler), outer_(compiler.current_) {
    compiler.current_ = &node;
  }
  ~At() { compiler_.current_ = outer_; }
  At(At const&) = delete;
  At& operator=(At const&) = delete;

 private:
  OperandCompiler& compiler_;
  ExpressionNode const* outer_;
};

void OperandCompiler::Fail(std::string const& cause) const {
  expression_.Fail(current_ != nullptr ? current_->begin : 0, cause);
}

Operand OperandCompiler::Compile(int node) {
  At const at(*this, GetNode(node));
  return CompileNode(GetNode(node));
}

Operand OperandCompiler::CompileNode(ExpressionNode const& node) {
  switch (node.kind) {
    case ExpressionKind::Number:
      return Real(node.number);
    case ExpressionKind::Text:
      return Text(node.text);
    case ExpressionKind::Boolean:
      return Bool(node.number != 0);
    case ExpressionKind::Null:
      return {};
    case ExpressionKind::List: {
      Operand list{.type = ValueType::List};
      for (int const child : node.children) list.members.push_back(Compile(child));
      return list;
    }
    case ExpressionKind::Operation:
      return CompileOperation(node);
    case ExpressionKind::Conditional: {
      Operand const test = CompileTruth(node.children[0]);
      Operand const whenTrue = Compile(node.children[1]);
      return Choose(test, whenTrue, Compile(node.children[2]));
    }
    case ExpressionKind::Call: {
      CallCompiler call(*this, node);
      return node.function->compile(call);
    }
    default:
      return CompileAccess(node);
  }
}

Operand OperandCompiler::CompileTruth(int place) {
  ExpressionNode const& node = GetNode(place);
  bool const isLogic = node.kind == ExpressionKind::Operation &&
                       (node.operation == Operator::And || node.operation == Operator::Or);
  At const at(*this, node);
  if (!isLogic) return ToTruth(CompileNode(node));
  Operand const first = CompileTruth(node.children[0]);
  Operand const second = CompileTruth(node.children[1]);
  return Zip(StoreType::Bool, node.operation == Operator::And ? "and" : "or", first, second);
}

Operand OperandCompiler::CompileOperation(ExpressionNode const& node) {
  Operator const operation = node.operation;
  if (operation == Operator::And || operation == Operator::Or) return CompileLogic(node);
  if (operation == Operator::Not) return Not(CompileTruth(node.children[0]));
  Operand const first = Compile(node.children[0]);
  if (operation == Operator::ToNumber) return ToReal(first);
  if (operation == Operator::Negate) return Map(StoreType::Real64, "negate", ToReal(first));
  Operand const second = Compile(node.children[1]);
  switch (operation) {
    case Operator::Equal:
    case Operator::StrictlyEqual:
      return Equal(first, second, operation == Operator::StrictlyEqual);
    case Operator::NotEqual:
    case Operator::StrictlyUnequal:
      return Not(Equal(first, second, operation == Operator::StrictlyUnequal));
    case Operator::Less:
    case Operator::LessOrEqual:
    case Operator::Greater:
    case Operator::GreaterOrEqual:
      return Compare(FunctionOf(operation), first, second);
    default:
      break;
  }
  bool const isText = first.type == ValueType::Text || second.type == ValueType::Text;
  if (operation == Operator::Add && isText) return AddText(first, second);
  return ZipReal(FunctionOf(operation), first, second);
}

Operand OperandCompiler::AddText(Operand const& first, Operand const& second) {
  return Call(StoreType::String, "appendText", {ToText(first), ToText(second)});
}

// The value of one side, which the truth of the first one tells.
Operand OperandCompiler::CompileLogic(ExpressionNode const& node) {
  bool const isAnd = node.operation == Operator::And;
  Operand first = Compile(node.children[0]);
  Operand second = Compile(node.children[1]);
  Operand const mask = ToTruth(first);
  if (first.type == ValueType::Boolean && second.type == ValueType::Boolean)
    return Zip(StoreType::Bool, isAnd ? "and" : "or", mask, ToTruth(second));
  return isAnd ? Choose(mask, std::move(second), std::move(first))
               : Choose(mask, std::move(first), std::move(second));
}

// "a.b[0]" of datum.a.b[0]; nothing where it is not a chain of names below datum.
std::optional<std::string> OperandCompiler::FindFieldName(ExpressionNode const& node) const {
  if (node.kind == ExpressionKind::Datum) return std::string();
  if (node.kind != ExpressionKind::Member && node.kind != ExpressionKind::Index) return std::nullopt;
  auto const outer = FindFieldName(GetNode(node.children[0]));
  if (!outer) return std::nullopt;
  if (node.kind == ExpressionKind::Member) return outer->empty() ? node.text : *outer + "." + node.text;
  ExpressionNode const& index = GetNode(node.children[1]);
  bool const isPlace =
      index.kind == ExpressionKind::Number && index.number >= 0 && index.number == std::trunc(index.number);
  if (!isPlace) return std::nullopt;
  return outer->empty() ? fmt::format("{}", index.number) : fmt::format("{}[{}]", *outer, index.number);
}

Operand OperandCompiler::CompileAccess(ExpressionNode const& node) {
  if (node.kind == ExpressionKind::Datum) Fail("datum is the whole row; name a field, as in datum.name");
  auto const name = FindFieldName(node);
  if (name && step_.Has(*name)) return CompileField(*name);
  ExpressionNode const& whole = GetNode(node.children[0]);
  if (whole.kind == ExpressionKind::Datum) {
    if (!name) Fail("the name of a field must be written out, as in datum['name']");
    return CompileField(*name);
  }
  // What is no field of this name is a part of a value.
  bool const isIndex = node.kind == ExpressionKind::Index;
  bool const isLength = !isIndex && node.text == "length";
  if (!isIndex && !isLength && name) return CompileField(*name);
  Operand const value = Compile(node.children[0]);
  if (isIndex) return CompilePart(value, Compile(node.children[1]));
  if (!isLength) Fail(fmt::format("{} has no part '{}'", NameOf(value.type), node.text));
  return CountParts(value);
}

Operand OperandCompiler::CompilePart(Operand const& whole, Operand const& index) {
  if (whole.type == ValueType::Text)
    return Call(StoreType::String, "textPart", {whole, Text(""), ToReal(index)});
  if (whole.type == ValueType::Parts)
    return Call(StoreType::String, "textPart", {whole.members[0], whole.members[1], ToReal(index)});
  if (whole.type != ValueType::List) Fail(fmt::format("{} has no parts", NameOf(whole.type)));
  Operand const place = ToReal(index);
  if (!place.IsConstant()) Fail("the place in a list must be the same in every row");
  double const number = place.constant->IsSpecial() ? -1 : ort::core::FetchStoreValue<double>(place.constant);
  bool const isInside = number >= 0 && number < static_cast<double>(whole.members.size());
  return isInside ? whole.members[static_cast<std::size_t>(number)] : Operand();
}

Operand OperandCompiler::CountParts(Operand const& list) {
  if (list.type == ValueType::List) return Real(static_cast<double>(list.members.size()));
  if (list.type == ValueType::Parts) return Call(StoreType::Real64, "countTextParts", list.members);
  return Call(StoreType::Real64, "textLength", {AsText(list)});
}

Operand OperandCompiler::CompileField(std::string const& name) {
  RowColumn const* column = nullptr;
  try {
    column = &step_.Get(name);
  } catch (DataError const& error) {
    Fail(error.what());
  }
  if (!IsValueStore(column->GetType()))
    Fail(fmt::format("field '{}' holds no values to calculate with", name));
  return {.type = TypeOf(column->GetType()),
          .store = column->GetType(),
          .node = column->node,
          .constant = nullptr,
          .mayBeMissing = column->values->AsColumn().HasSpecials(),
          .field = name,
          .members = {}};
}

Operand OperandCompiler::Real(double value) const {
  return {.type = ValueType::Number, .store = StoreType::Real64, .constant = factory::MakeReal64(value)};
}
Operand OperandCompiler::Text(std::string const& value) const {
  return {.type = ValueType::Text,
          .store = StoreType::String,
          .constant = factory::MakeString(OStringCore::fromUtf8(value))};
}
Operand OperandCompiler::Bool(bool value) const {
  return {.type = ValueType::Boolean, .store = StoreType::Bool, .constant = factory::MakeBool(value)};
}
Operand OperandCompiler::Null(StoreType store) const {
  return {.type = TypeOf(store),
          .store = store,
          .constant = factory::MakeSpecial({store, false}, ort::core::SpecialKind::Null),
          .mayBeMissing = true};
}

Operand OperandCompiler::Map(StoreType result, char const* function, Operand const& operand,
                             std::vector<Operand> const& parameters) {
  return Apply(result, function, EvaluationMode::Map, {operand}, parameters);
}
Operand OperandCompiler::Zip(StoreType result, char const* function, Operand const& first,
                             Operand const& second) {
  return Apply(result, function, EvaluationMode::Zip, {first, second}, {});
}
Operand OperandCompiler::ZipReal(char const* function, Operand const& first, Operand const& second) {
  Operand const number = ToReal(first);
  return Zip(StoreType::Real64, function, number, ToReal(second));
}
Operand OperandCompiler::Call(StoreType result, char const* function, std::vector<Operand> const& operands) {
  return Apply(result, function, EvaluationMode::Call, operands, {});
}

// What was written, as the name of a node.
std::string OperandCompiler::MakeName() const {
  constexpr std::size_t kMostBytes = 60;
  std::string_view const text = expression_.GetText(*current_);
  if (text.size() <= kMostBytes) return std::string(text);
  std::size_t cut = kMostBytes;
  while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0U) == 0x80U) --cut;
  return std::string(text.substr(0, cut)) + "...";
}

NodeId OperandCompiler::NodeOf(Operand const& operand) {
  GraphBuilder& graph = step_.graph;
  if (!operand.IsConstant()) return operand.node;
  if (operand.constant->IsSpecial()) return graph.Constant("missing", operand.constant);
  switch (operand.store) {
    case StoreType::Real64:
      return graph.Real(ort::core::FetchStoreValue<double>(operand.constant));
    case StoreType::Bool:
      return graph.Bool(ort::core::FetchStoreValue<bool>(operand.constant));
    case StoreType::String:
      return graph.Text(ort::core::FetchStoreValue<OStringCore>(operand.constant).toUtf8());
    default:
      return graph.Constant(MakeName(), operand.constant);
  }
}

NodeId OperandCompiler::MakeColumn(Operand operand) {
  At const at(*this, GetNode(expression_.root));
  if (operand.type == ValueType::Null) operand = Null(StoreType::Real64);
  RequireValue(operand);
  bool const mayBeNan = operand.store == StoreType::Real64 && operand.field.empty();
  if (mayBeNan) operand = Map(StoreType::Real64, "missingIfNaN", operand);
  if (!operand.IsConstant()) return operand.node;
  GraphBuilder& graph = step_.graph;
  return graph.Call(MakeName(), "repeat", {NodeOf(operand), graph.Int(step_.GetRowCount())});
}

// Nothing for columns; the value of constants, which are computed at once.
Operand OperandCompiler::Fold(StoreType result, std::vector<Operand> const& operands,
                              std::function<Value(std::vector<Value> const&)> const& compute) {
  std::vector<Value> values;
  for (Operand const& operand : operands) {
    if (!operand.IsConstant()) return {};
    values.push_back(operand.constant);
  }
  try {
    Value const value = compute(values);
    return {.type = TypeOf(result),
            .store = result,
            .constant = value,
            .mayBeMissing = value->GetSpecialKind() != ort::core::SpecialKind::None};
  } catch (ort::core::OrtRuntimeException const& error) {
    Fail(error.what());
  }
}

Operand OperandCompiler::Apply(StoreType result, char const* function, EvaluationMode mode,
                               std::vector<Operand> const& operands, std::vector<Operand> const& parameters) {
  GraphBuilder& graph = step_.graph;
  std::vector<Value> constants;
  for (Operand const& parameter : parameters) constants.push_back(parameter.constant);
  Operand made = Fold(result, operands, [&](std::vector<Value> const& values) {
    return graph.Compute(function, mode, values, constants);
  });
  if (made.IsConstant()) return made;
  made = {.type = TypeOf(result), .store = result};
  std::string key = function;
  std::vector<NodeId> inputs;
  std::vector<NodeId> parameterNodes;
  for (Operand const& operand : operands) {
    made.mayBeMissing = made.mayBeMissing || operand.mayBeMissing;
    inputs.push_back(NodeOf(operand));
    key += fmt::format(" {}", inputs.back());
  }
  for (Operand const& parameter : parameters) {
    parameterNodes.push_back(NodeOf(parameter));
    key += fmt::format(", {}", parameterNodes.back());
  }
  auto const [found, isNew] = nodes_.try_emplace(key, -1);
  if (isNew) {
    found->second = mode == EvaluationMode::Map   ? graph.Map(MakeName(), function, inputs[0], parameterNodes)
                    : mode == EvaluationMode::Zip ? graph.Zip(MakeName(), function, inputs[0], inputs[1])
                                                  : graph.Call(MakeName(), function, inputs);
  }
  made.node = found->second;
  return made;
}

Operand OperandCompiler::CallOnColumns(StoreType result, char const* function,
                                       std::vector<Operand> const& operands, std::size_t columns) {
  GraphBuilder& graph = step_.graph;
  auto const repeat = [&](Value const& value) {
    return graph.Compute("repeat", EvaluationMode::Call, {value, factory::MakeInt32(1)});
  };
  Operand const folded = Fold(result, operands, [&](std::vector<Value> values) {
    for (std::size_t i = 0; i < columns; ++i) values[i] = repeat(values[i]);
    Value const column = graph.Compute(function, EvaluationMode::Call, std::move(values));
    return graph.Compute("element", EvaluationMode::Call, {column, factory::MakeInt32(0)});
  });
  return folded.IsConstant() ? folded : Call(result, function, operands);
}

}  // namespace ostrel::charts
