#include "charts/graph/LayerRows.h"

#include <algorithm>
#include <cmath>

#include "charts/data/ConvertColumn.h"

namespace ostrel::charts {
namespace {

namespace factory = ort::core::factory;
using ort::core::StoreType;

// What is further from 0 counts as infinite: no domain's length may exceed the range of doubles.
constexpr double kLargestNumber = 1e307;

DataColumn WithoutInfinities(DataColumn column) {
  if (column.GetType() != StoreType::Real64) return column;
  auto const& rows = column.values->AsTypedArray<double>();
  auto const values = rows.GetValues();
  auto const isInfinite = [](double value) { return !(std::abs(value) <= kLargestNumber); };
  if (std::ranges::none_of(values, isInfinite)) return column;
  auto builder =
      factory::MakeColumnBuilder<double>(ort::core::StoreTypeInfo::Real64, static_cast<int>(values.size()));
  for (int row = 0; row < rows.GetCount(); ++row) {
    double const value = rows.GetElement(row);
    bool const isPlaced = !rows.IsSpecial(row) && !isInfinite(value);
    builder.GetValues()[static_cast<std::size_t>(row)] = isPlaced ? value : 0;
    if (!isPlaced) builder.SetSpecial(row, ort::core::SpecialKind::Missing);
  }
  column.name += " (finite)";
  column.values = builder.Finish();
  return column;
}

DataColumn ToNumbers(DataColumn const& column) {
  bool const isNumeric = column.GetType() == StoreType::Real64 || column.GetType() == StoreType::Int64;
  DataColumn numbers = isNumeric ? column : ConvertToNumber(column);
  if (!isNumeric) numbers.name += " (numbers)";
  return WithoutInfinities(std::move(numbers));
}

DataColumn ToDates(DataColumn const& column) {
  DataColumn dates = ConvertToDate(column);
  dates.name += " (dates)";
  return dates;
}

DataColumn ToTexts(DataColumn const& column) {
  DataColumn texts = ConvertToString(column);
  if (column.GetType() != StoreType::String) texts.name += " (text)";
  return texts;
}

}  // namespace

LayerRows::LayerRows(GraphBuilder& graph, std::shared_ptr<LayerRows> whole, NodeId selection,
                     std::string label)
    : table_(whole->table_), label_(std::move(label)), whole_(std::move(whole)), selection_(selection) {
  Value const& selected = graph.Peek(selection);
  if (selected->GetTypeInfo().GetElementType() == StoreType::Int32) {
    selector_ = "take";
    rowCount_ = selected->AsColumn().GetCount();
    return;
  }
  auto const& isKept = selected->AsTypedArray<bool>();
  for (int row = 0; row < isKept.GetCount(); ++row) {
    if (!isKept.IsSpecial(row) && isKept.GetElement(row)) ++rowCount_;
  }
}

NodeId LayerRows::Keep(GraphBuilder& graph, std::string const& name, NodeId column,
                       LayerRows const& of) const {
  if (this == &of || !whole_) return column;
  return graph.Call(label_ + name, selector_, {whole_->Keep(graph, name, column, of), selection_});
}

RowColumn const& LayerRows::GetColumn(GraphBuilder& graph, std::string const& field) {
  return Get(graph, Form::AsItStands, field);
}
RowColumn const& LayerRows::GetNumbers(GraphBuilder& graph, std::string const& field) {
  return Get(graph, Form::Numbers, field);
}
RowColumn const& LayerRows::GetDates(GraphBuilder& graph, std::string const& field) {
  return Get(graph, Form::Dates, field);
}
RowColumn const& LayerRows::GetTexts(GraphBuilder& graph, std::string const& field) {
  return Get(graph, Form::Texts, field);
}

NodeId LayerRows::GetCategories(GraphBuilder& graph, std::string const& field) {
  RowColumn const& texts = GetTexts(graph, field);
  if (!texts.values->AsColumn().HasSpecials()) return texts.node;
  auto const [found, isNew] = categories_.try_emplace(field, -1);
  if (isNew) found->second = graph.Map(label_ + texts.name + " or null", "coerceText", texts.node);
  return found->second;
}

RowColumn const& LayerRows::Get(GraphBuilder& graph, Form form, std::string const& field) {
  auto const key = std::pair(form, field);
  auto const found = columns_.find(key);
  return found != columns_.end() ? found->second
                                 : columns_.emplace(key, Make(graph, form, field)).first->second;
}

RowColumn LayerRows::Make(GraphBuilder& graph, Form form, std::string const& field) {
  if (whole_) {
    RowColumn column = whole_->Get(graph, form, field);
    column.node = graph.Call(label_ + column.name, selector_, {column.node, selection_});
    column.values = graph.Peek(column.node);
    return column;
  }
  DataColumn const& column = table_->Get(field);
  DataColumn const made = form == Form::Numbers ? ToNumbers(column)
                          : form == Form::Dates ? ToDates(column)
                          : form == Form::Texts ? ToTexts(column)
                                                : column;
  bool const isNode = !nodes_.empty() && made.values == column.values;
  auto const place = static_cast<std::size_t>(&column - table_->columns.data());
  return {made.name, isNode ? nodes_[place] : graph.Input(label_ + made.name, made.values), made.values};
}

}  // namespace ostrel::charts
