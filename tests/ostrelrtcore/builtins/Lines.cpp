#include "ostrelrtcore/builtins/Lines.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>

#include "ostrelrtcore/engine/Engine.h"

namespace builtins_test {
namespace {

using namespace ort::core;

FunctionRegistry const& Registry() {
  static auto const& registry = *[] {
    auto* made = new FunctionRegistry();
    RegisterAllBuiltinFunctions(*made);
    return made;
  }();
  return registry;
}

StoreType ParseType(std::string const& name) {
  for (int type = 1; type <= 14; ++type) {
    if (StoreTypeToString(static_cast<StoreType>(type)).toUtf8() == name) return static_cast<StoreType>(type);
  }
  throw std::logic_error("no type " + name);
}

Value ParseScalar(StoreType type, std::string const& text) {
  if (text.starts_with("<")) {
    return factory::MakeSpecial({type, false}, static_cast<SpecialKind>(std::stoi(text.substr(1))));
  }
  if (type == StoreType::Bool) return factory::MakeBool(text == "T");
  Value const asText = factory::MakeString(OStringCore::fromUtf8(text == "''" ? "" : text));
  if (type == StoreType::String) return asText;
  if (type == StoreType::Color) return asText->ConvertTo(StoreType::Int32)->ConvertTo(type);
  Value const value = text == "NaN" ? factory::MakeReal64(NAN)->ConvertTo(type) : asText->ConvertTo(type);
  if (value->IsSpecial()) throw std::logic_error("bad cell " + text);
  return value;
}

std::string ShowScalar(StoreValue const& value) {
  if (value.IsSpecial()) return "<" + std::to_string(static_cast<int>(value.GetSpecialKind())) + ">";
  switch (value.GetStoreType()) {
    case StoreType::Bool:
      return value.GetBool() ? "T" : "F";
    case StoreType::String:
      return value.GetString().IsEmpty() ? "''" : value.GetString().Get().toUtf8();
    case StoreType::Color:
      return std::to_string(value.GetColor().GetValue());
    default:
      return value.ConvertTo(StoreType::String)->GetString().Get().toUtf8();
  }
}

/// One row as a value, read through the typed view of its storage class alone.
Value RowValue(Value const& column, int row) {
  auto const type = column->GetTypeInfo().GetElementType();
  auto const& view = column->AsColumn();
  if (view.IsSpecial(row)) return factory::MakeSpecial(type, view.GetSpecialKind(row));
  switch (type.GetStoreType()) {
    case StoreType::Bool:
      return factory::MakeBool(column->AsTypedArray<bool>().GetElement(row));
    case StoreType::Int32:
      return factory::MakeInt32(column->AsTypedArray<int>().GetElement(row));
    case StoreType::Int64:
      return factory::MakeInt64(column->AsTypedArray<int64>().GetElement(row));
    case StoreType::Real32:
      return factory::MakeReal32(column->AsTypedArray<float>().GetElement(row));
    case StoreType::Real64:
      return factory::MakeReal64(column->AsTypedArray<double>().GetElement(row));
    case StoreType::Color:
      return factory::MakeColor(column->AsTypedArray<OrtColor>().GetElement(row));
    case StoreType::Date:
      return factory::MakeDate(column->AsTypedArray<OrtDateTime>().GetElement(row));
    case StoreType::DateTime:
      return factory::MakeDateTime(column->AsTypedArray<OrtDateTime>().GetElement(row));
    case StoreType::String:
      return factory::MakeString(column->AsTypedArray<RIndirectString>().GetElement(row));
    default:
      return column->AsTypedArray<Value>().GetElement(row);
  }
}

template <class T, class Read>
Value BuildColumn(StoreType type, std::vector<Value> const& cells, Read const& read) {
  auto values = std::make_unique<std::vector<T>>();
  auto rows = std::make_unique<std::vector<int>>();
  auto kinds = std::make_unique<std::vector<SpecialKind>>();
  for (Value const& cell : cells) {
    if (cell->IsSpecial()) {
      rows->push_back(static_cast<int>(values->size()));
      kinds->push_back(cell->GetSpecialKind());
    }
    values->push_back(cell->IsSpecial() ? T() : static_cast<T>(read(*cell)));
  }
  return factory::MakeArray<T>({type, false}, std::move(values), std::move(rows), std::move(kinds));
}

Value BuildColumn(StoreType type, std::vector<Value> const& cells) {
  switch (type) {
    case StoreType::Bool:
      return BuildColumn<uint8>(type, cells, [](auto& cell) { return cell.GetBool(); });
    case StoreType::Int32:
      return BuildColumn<int>(type, cells, [](auto& cell) { return cell.GetInt32(); });
    case StoreType::Int64:
      return BuildColumn<int64>(type, cells, [](auto& cell) { return cell.GetInt64(); });
    case StoreType::Real32:
      return BuildColumn<float>(type, cells, [](auto& cell) { return cell.GetReal32(); });
    case StoreType::Real64:
      return BuildColumn<double>(type, cells, [](auto& cell) { return cell.GetReal64(); });
    case StoreType::Color:
      return BuildColumn<OrtColor>(type, cells, [](auto& cell) { return cell.GetColor(); });
    case StoreType::String:
      return BuildColumn<RIndirectString>(type, cells, [](auto& cell) { return cell.GetString(); });
    default:
      return BuildColumn<OrtDateTime>(type, cells, [](auto& cell) { return cell.GetDateTime(); });
  }
}

/// Edge values of every type as the cells of a line.
char const* EdgeCells(StoreType type) {
  switch (type) {
    case StoreType::Bool:
      return "T F";
    case StoreType::Int32:
      return "0 1 -1 2147483647 -2147483648 7";
    case StoreType::Int64:
      return "0 1 -1 9223372036854775807 -9223372036854775808 4294967296";
    case StoreType::Real32:
      return "0 -0 1 -1.5 3.4028235e38 1e-45 NaN inf -inf";
    case StoreType::Real64:
      return "0 -0 1 -1.5 1.7976931348623157e308 5e-324 NaN inf -inf 2.5";
    case StoreType::Color:
      return "0 -1 255 -16777216";
    case StoreType::String:
      return "'' a b ab aa B \xC3\xA9 \xF0\x9F\x98\x80 \xEF\xBF\xBD";
    default:
      return "2020-03-01 1899-12-30 0001-01-01 9999-12-31 2020-03-01T12:00:00";
  }
}

std::vector<Value> ParseCells(StoreType type, std::istringstream& in) {
  std::vector<Value> cells;
  for (std::string cell; in >> cell;) cells.push_back(ParseScalar(type, cell));
  return cells;
}

}  // namespace

Value Parse(std::string const& text) {
  std::istringstream in(text);
  std::string type;
  in >> type;
  if (type.back() == ':') {
    auto const element = ParseType(type.substr(0, type.size() - 1));
    return BuildColumn(element, ParseCells(element, in));
  }
  std::string cell;
  in >> cell;
  return ParseScalar(ParseType(type), cell);
}

std::string Show(StoreValue const& value) {
  auto const type = value.GetStoreType();
  std::string const name = StoreTypeToString(type).toUtf8();
  if (value.IsSpecial() || IsPrimitiveStoreType(type)) return name + " " + ShowScalar(value);
  if (type == StoreType::Tuple) {
    std::string text = "Tuple(";
    for (int i = 0; i < value.AsTuple().GetCount(); ++i) {
      text += (i > 0 ? ", " : "") + Show(*value.AsTuple().GetMember(i));
    }
    return text + ")";
  }
  if (type == StoreType::Array) {
    Value const column = value.Clone();
    std::string text = StoreTypeToString(value.GetTypeInfo().GetElementType()).toUtf8() + ":";
    for (auto const& row : ShowRows(column)) text += " " + row;
    return text;
  }
  std::string text = name + "{";
  for (auto const& member : value.AsNamedValues().GetNames()) {
    text +=
        (text.back() == '{' ? "" : ", ") + member.toUtf8() + "=" + Show(*value.AsNamedValues().Get(member));
  }
  return text + "}";
}

std::string ShowRow(Value const& column, int row) {
  Value const value = RowValue(column, row);
  return IsPrimitiveStoreType(value->GetStoreType()) || value->IsSpecial() ? ShowScalar(*value)
                                                                           : Show(*value);
}

std::vector<std::string> ShowRows(Value const& column) {
  std::vector<std::string> rows;
  for (int row = 0; row < CountRows(column); ++row) rows.push_back(ShowRow(column, row));
  return rows;
}

int CountRows(Value const& column) { return column->AsColumn().GetCount(); }

Value Call(std::string const& function, std::vector<Value> const& inputs,
           std::vector<Value> const& parameters) {
  Engine const engine(Registry());
  auto const name = OStringCore::fromUtf8(function);
  auto const forms = engine.GetForms(name);
  auto const mode = forms.isUnary    ? EvaluationMode::Map
                    : forms.isBinary ? EvaluationMode::Zip
                                     : EvaluationMode::Call;
  return engine.Call({.function = name, .mode = mode, .inputs = inputs, .parameters = parameters});
}

std::string ShowCall(std::string const& function, std::vector<Value> const& inputs,
                     std::vector<Value> const& parameters) {
  try {
    return Show(Call(function, inputs, parameters));
  } catch (OrtRuntimeException const& error) {
    return error.what();
  } catch (InvalidCall const&) {
    return "no candidate";
  }
}

void RunCases(std::vector<Case> const& cases) {
  for (auto const& [function, inputs, expected, parameters] : cases) {
    std::string line = function;
    std::vector<Value> values;
    std::vector<Value> parameterValues;
    for (auto const& input : inputs) {
      values.push_back(Parse(input));
      line += " (" + input + ")";
    }
    for (auto const& parameter : parameters) parameterValues.push_back(Parse(parameter));
    EXPECT_EQ(ShowCall(function, values, parameterValues), expected) << line;
    for (std::size_t i = 0; i < inputs.size(); ++i) {
      EXPECT_TRUE(values[i]->Equals(*Parse(inputs[i]))) << "changed its input: " << line;
    }
  }
}

std::vector<StoreType> const& ColumnTypes() {
  using enum StoreType;
  static std::vector<StoreType> const types = {Bool, Int32, Int64,    Real32, Real64,
                                               Date, Color, DateTime, String};
  return types;
}

Value RandomColumn(StoreType type, int count, bool hasSpecials, std::mt19937& random) {
  std::istringstream in(EdgeCells(type));
  auto cells = ParseCells(type, in);
  for (int i = 0; i < count / 4 && type != StoreType::Bool; ++i) {
    auto const text = std::to_string(static_cast<int>(random() % 100'000) - 50'000);
    bool const isInstant = type == StoreType::Date || type == StoreType::DateTime;
    cells.push_back(isInstant ? ParseScalar(StoreType::Int32, text)->ConvertTo(type)
                              : ParseScalar(type, text));
  }
  std::vector<Value> rows;
  for (int row = 0; row < count; ++row) {
    if (hasSpecials && random() % 5 == 0) {
      rows.push_back(factory::MakeSpecial({type, false}, static_cast<SpecialKind>(random() % 2 * 8 + 1)));
    } else {
      rows.push_back(cells[random() % cells.size()]);
    }
  }
  return BuildColumn(type, rows);
}

Value RandomRows(int count, int limit, std::mt19937& random) {
  auto rows = std::make_unique<std::vector<int>>();
  for (int row = 0; row < count; ++row) rows->push_back(static_cast<int>(random()) % limit);
  for (int& row : *rows) row = row < 0 ? row + limit : row;
  return factory::MakeArray<int>(StoreTypeInfo::Int32, std::move(rows));
}

}  // namespace builtins_test
