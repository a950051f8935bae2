#include <fmt/format.h>

#include <algorithm>

#include "charts/document/DateLiterals.h"
#include "charts/expressions/ExpressionCompiler.h"
#include "charts/graph/PeriodNodes.h"
#include "charts/transforms/RowTransforms.h"
#include "ostrelrtcore/OrtDateTime.h"

namespace ostrel::charts {

namespace {

namespace factory = ort::core::factory;
using ort::core::OrtDateTime;
using ort::core::StoreType;
using Kind = FilterSpec::Kind;

// The mask of a filter's rows.
class FilterMask {
 public:
  explicit FilterMask(RowStep& step) : step_(step), graph_(step.graph) {}

  NodeId Make(FilterSpec const& filter) {
    switch (filter.kind) {
      case Kind::And:
        return Join(filter, "and");
      case Kind::Or:
        return Join(filter, "or");
      case Kind::Not:
        return graph_.Map("is not", "not", Make(filter.parts.front()));
      case Kind::Valid: {
        NodeId const isNone = graph_.Map(filter.field + " is none", "isSpecial", step_.Column(filter.field));
        return filter.isValid ? graph_.Map(filter.field + " is there", "not", isNone) : isNone;
      }
      case Kind::Range:
        return MakeRange(filter);
      case Kind::OneOf:
        return MakeOneOf(filter);
      case Kind::Expression:
        return CompileTest(step_, *filter.expression, filter.path);
      default:
        return Compare(filter, FunctionOf(filter.kind), filter.values.front());
    }
  }

 private:
  static char const* FunctionOf(Kind kind) {
    switch (kind) {
      case Kind::Less:
        return "less";
      case Kind::LessOrEqual:
        return "lessOrEqual";
      case Kind::Greater:
        return "greater";
      case Kind::GreaterOrEqual:
        return "greaterOrEqual";
      default:
        return "equal";
    }
  }

  NodeId Join(FilterSpec const& filter, char const* function) {
    NodeId all = -1;
    for (FilterSpec const& part : filter.parts) {
      // A row without a value passes no test, and fails none that another part of "or" passes.
      NodeId const mask = graph_.Map("passes", "replaceSpecial", Make(part), {graph_.Bool(false)});
      all = all < 0 ? mask : graph_.Zip(function, function, all, mask);
    }
    return all;
  }

  bool IsDate(FilterSpec const& filter) const {
    StoreType const type = step_.GetType(filter.field);
    auto const isDate = [](Literal const& literal) { return std::holds_alternative<OrtDateTime>(literal); };
    if (std::ranges::any_of(filter.values, isDate)) return true;
    return !filter.timeUnit.empty() || type == StoreType::Date || type == StoreType::DateTime;
  }

  bool HasMissing(std::string const& field) { return step_.Get(field).values->AsColumn().HasSpecials(); }

  // As in expressions null counts as 0 where it is compared by size, and is equal to no number.
  NodeId Numbers(std::string const& field, bool isBySize) {
    NodeId const numbers = step_.Numbers(field);
    return isBySize && HasMissing(field) ? graph_.Map(field + " or 0", "coerceNumber", numbers) : numbers;
  }

  NodeId Instants(std::string const& field, bool isBySize) {
    NodeId const dates = step_.Instants(field);
    if (!isBySize || !HasMissing(field)) return dates;
    NodeId const numbers = graph_.Call(field + " milliseconds", "millisecondsOfDate", {dates});
    return graph_.Call(field + " or 1970", "dateOfMilliseconds",
                       {graph_.Map(field + " or 0", "coerceNumber", numbers)});
  }

  NodeId Dates(FilterSpec const& filter, bool isBySize) {
    NodeId const dates = Instants(filter.field, isBySize);
    if (filter.timeUnit.empty()) return dates;
    return FloorDates(graph_, filter.timeUnit.name + " " + filter.field, filter.timeUnit, dates);
  }

  OrtDateTime ReadDate(FilterSpec const& filter, Literal const& literal) const {
    if (auto const date = FindDate(filter.timeUnit, literal)) return *date;
    throw DataError(fmt::format(
        "{}: field '{}' holds dates; compare it with a date such as \"2020-03-01\"{}", filter.path,
        filter.field, filter.timeUnit.empty() ? "" : ", or with a number or name of a single unit"));
  }

  NodeId Compare(FilterSpec const& filter, char const* function, Literal const& literal) {
    std::string const name = fmt::format("{} {}", filter.field, function);
    bool const isBySize = std::string_view(function) != "equal";
    if (IsDate(filter)) {
      NodeId const date = graph_.Constant("date", factory::MakeDateTime(ReadDate(filter, literal)));
      return graph_.Zip(name, function, Dates(filter, isBySize), date);
    }
    if (auto const* number = std::get_if<double>(&literal))
      return graph_.Zip(name, function, Numbers(filter.field, isBySize), graph_.Real(*number));
    auto const* text = std::get_if<std::string>(&literal);
    bool const* flag = std::get_if<bool>(&literal);
    std::string const wanted = text != nullptr ? *text : flag != nullptr && *flag ? "true" : "false";
    return graph_.Zip(name, function, step_.Texts(filter.field), graph_.Text(wanted));
  }

  NodeId MakeRange(FilterSpec const& filter) {
    NodeId mask = -1;
    for (std::size_t end = 0; end < 2; ++end) {
      if (std::holds_alternative<std::monostate>(filter.values[end])) continue;
      NodeId const part = Compare(filter, end == 0 ? "greaterOrEqual" : "lessOrEqual", filter.values[end]);
      mask = mask < 0 ? part : graph_.Zip(filter.field + " in range", "and", mask, part);
    }
    return mask;
  }

  NodeId MakeOneOf(FilterSpec const& filter) {
    NodeId mask = -1;
    for (Literal const& value : filter.values) {
      NodeId const part = Compare(filter, "equal", value);
      mask = mask < 0 ? part : graph_.Zip(filter.field + " is one of", "or", mask, part);
    }
    return mask;
  }

  RowStep& step_;
  GraphBuilder& graph_;
};

}  // namespace

std::shared_ptr<LayerRows> FilterRows(GraphBuilder& graph, FilterSpec const& filter,
                                      std::shared_ptr<LayerRows> const& rows) {
  RowStep step(graph, *rows, filter.path);
  auto passing = std::make_shared<LayerRows>(graph, rows, FilterMask(step).Make(filter), filter.path + " ");
  if (passing->GetRowCount() == 0) {
    throw DataError(
        fmt::format("{}: no row of {} passes the filter", filter.path, rows->GetTable().sourceName));
  }
  return passing;
}

std::shared_ptr<LayerRows> TransformRows(GraphBuilder& graph, std::span<TransformSpec const> transforms,
                                         std::shared_ptr<LayerRows> rows) {
  for (TransformSpec const& transform : transforms) {
    if (auto const* filter = std::get_if<FilterSpec>(&transform)) rows = FilterRows(graph, *filter, rows);
    if (auto const* value = std::get_if<CalculateSpec>(&transform))
      rows = CalculateRows(graph, *value, *rows);
    if (auto const* some = std::get_if<AggregateSpec>(&transform)) rows = AggregateRows(graph, *some, *rows);
    if (auto const* bin = std::get_if<BinTransform>(&transform)) rows = BinRows(graph, *bin, *rows);
    if (auto const* unit = std::get_if<TimeUnitTransform>(&transform))
      rows = FloorRowsToTimeUnit(graph, *unit, *rows);
  }
  return rows;
}

}  // namespace ostrel::charts
