#include "charts/transforms/ChannelFields.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "charts/document/DateLiterals.h"
#include "charts/document/Readers.h"
#include "charts/document/TransformReaders.h"
#include "charts/functions/TimeUnits.h"
#include "charts/marks/MarkTable.h"
#include "charts/scales/CategoryField.h"
#include "charts/scales/ScaledField.h"
#include "charts/transforms/RowTransforms.h"
#include "ostrelrtcore/OrtDateTime.h"

namespace ostrel::charts {

namespace {

using ort::core::StoreTypeInfo;

constexpr double kMaxBinsOfPositions = 10;
constexpr double kMaxBinsOfStyles = 6;

std::string Capitalised(std::string text) {
  if (!text.empty() && text[0] >= 'a' && text[0] <= 'z') text[0] = static_cast<char>(text[0] - 'a' + 'A');
  return text;
}

class ChannelDeriver {
 public:
  ChannelDeriver(GraphBuilder& graph, LayerSpec const& layer, std::shared_ptr<LayerRows> rows)
      : graph_(graph), layer_(layer), drawn_{std::move(rows), layer.encodings} {}

  DrawnRows Derive() {
    bool const isHorizontal = IsHorizontal(layer_.mark, drawn_.encodings);
    AddConstants();
    HideMarks();
    for (Encoding& encoding : drawn_.encodings) {
      if (!encoding.timeUnit.empty()) {
        FloorToTimeUnit(encoding);
      } else if (IsFacet(encoding.channel) && encoding.type == FieldType::Temporal) {
        TakeDates(encoding);
      }
      if (encoding.bin) encoding.bin->isDone ? FindBinEnd(encoding) : Bin(encoding);
    }
    for (Encoding& encoding : drawn_.encodings) {
      if (!encoding.sortBy) continue;
      if (auto const field = FindAggregated(*encoding.sortBy)) {
        encoding.sortBy->channel.clear();
        encoding.sortBy->operation = *field->aggregate;
        encoding.sortBy->field = field->field;
      }
      if (encoding.sortBy->channel.empty()) SortByField(encoding);
    }
    bool const isAggregated = std::ranges::any_of(
        drawn_.encodings, [](Encoding const& encoding) { return encoding.aggregate.has_value(); });
    if (isAggregated) Aggregate();
    bool const tellsRows = layer_.mark.tooltip == TooltipContent::Data;
    std::vector<Encoding> const tooltips = tellsRows ? ListFields(isAggregated) : std::vector<Encoding>();
    Encoding* const stacked = FindStacked(isHorizontal, isAggregated);
    for (Encoding& encoding : drawn_.encodings) {
      if (encoding.sortBy && !encoding.sortBy->channel.empty()) SortByChannel(encoding, stacked);
    }
    if (stacked != nullptr) Stack(*stacked);
    PlaceIntervals();
    std::ranges::copy(tooltips, std::back_inserter(drawn_.encodings));
    for (Encoding& encoding : drawn_.encodings) {
      Encoding const* const first = Find(encoding.channel == Channel::X2 ? Channel::X : Channel::Y);
      if (IsSecondPosition(encoding.channel) && first != nullptr) encoding.type = first->type;
    }
    return std::move(drawn_);
  }

 private:
  // A name that the data do not have themselves.
  std::string NewName(std::string name) const {
    while (source_->GetTable().Find(name) != nullptr) name += "_";
    return name;
  }

  // Constants in terms of a scale become columns. A layer of nothing else is drawn once, not for every row.
  void AddConstants() {
    auto const isConstant = [](Encoding const& encoding) {
      return !std::holds_alternative<std::monostate>(encoding.datum);
    };
    if (std::ranges::none_of(drawn_.encodings, isConstant)) return;
    bool const isAlone = std::ranges::all_of(drawn_.encodings, [](Encoding const& encoding) {
      return encoding.field.empty() && !encoding.aggregate;
    });
    RowStep step(graph_, *drawn_.rows, layer_.path + ".encoding");
    int const count = isAlone ? 1 : drawn_.rows->GetRowCount();
    for (Encoding& encoding : drawn_.encodings) {
      if (!isConstant(encoding)) continue;
      encoding.field = NewName(fmt::format("datum_{}", NameOf(encoding.channel)));
      if (!encoding.title.isGiven) encoding.title = {true, ""};
      step.Set(encoding.field, graph_.Constant(encoding.field, MakeConstantColumn(encoding, count)));
    }
    drawn_.rows = isAlone ? step.Replace() : step.Extend();
  }

  // Rows whose entries a legend hides are not drawn: they neither stack nor widen domains.
  void HideMarks() {
    auto const hides = [](Encoding const& encoding) {
      return !encoding.legend.hidden.empty() && !encoding.field.empty();
    };
    if (std::ranges::none_of(drawn_.encodings, hides)) return;
    NodeId const noEntries = graph_.Constant("no entries", MakeEmptyColumn<int>(StoreTypeInfo::Int32));
    NodeId const noFlags =
        graph_.Constant("no flags", MakeEmptyColumn<ort::core::uint8>(StoreTypeInfo::Bool));
    Legend colors{noEntries, noFlags};
    Legend shapes = colors;
    for (Encoding const& encoding : drawn_.encodings) {
      if (hides(encoding)) (encoding.channel == Channel::Color ? colors : shapes) = ReadLegend(encoding);
    }
    NodeId const stays = graph_.Call(layer_.path + " stays", "excludeHiddenMarks",
                                     {colors.entries, colors.areHidden, shapes.entries, shapes.areHidden,
                                      noEntries, noFlags, noFlags, graph_.Bool(true)});
    drawn_.rows = std::make_shared<LayerRows>(graph_, drawn_.rows, stays, layer_.path + " shown ");
    if (drawn_.rows->GetRowCount() == 0) {
      throw DataError(fmt::format("{}: no row of {} is left by the values that legends hide", layer_.path,
                                  drawn_.rows->GetTable().sourceName));
    }
  }

  struct Legend {
    NodeId entries = -1;    // Int32 column: of each row its entry
    NodeId areHidden = -1;  // Bool column: of each entry
  };

  Legend ReadLegend(Encoding const& encoding) {
    std::string const& field = encoding.field;
    NodeId const texts = drawn_.rows->GetCategories(graph_, field);
    NodeId const entries = graph_.Call(field + " entries", "distinct", {texts});
    return {graph_.Call(field + " entry", "indexIn", {texts, entries}),
            FindListed(graph_, field + " is hidden", entries, encoding.legend.hidden)};
  }

  template <class T>
  static Value MakeEmptyColumn(ort::core::StoreTypeInfo const& type) {
    return ort::core::factory::MakeArray<T>(type, std::make_unique<std::vector<T>>());
  }

  static Value MakeConstantColumn(Encoding const& encoding, int count) {
    using namespace ort::core;
    auto const* text = std::get_if<std::string>(&encoding.datum);
    if (encoding.type == FieldType::Temporal) {
      auto const date = FindDate(encoding.timeUnit, encoding.datum);
      if (!date) throw DataError(encoding.path + ".datum: expects a date such as \"2020-03-01\"");
      return factory::MakeConstantArray<OrtDateTime>(StoreTypeInfo::DateTime, *date, count);
    }
    if (auto const* number = std::get_if<double>(&encoding.datum))
      return factory::MakeConstantArray<double>(StoreTypeInfo::Real64, *number, count);
    bool const* const flag = std::get_if<bool>(&encoding.datum);
    std::string const word = text != nullptr ? *text : flag != nullptr && *flag ? "true" : "false";
    return factory::MakeConstantArray<RIndirectString>(StoreTypeInfo::String, RIndirectString::FromUtf8(word),
                                                       count);
  }

  // Bars reach from an interval's start to its end, other marks stand in the middle of a bin and at the
  // beginning of a unit of time.
  void PlaceIntervals() {
    std::vector<Encoding> ends;
    for (Encoding& encoding : drawn_.encodings) {
      // Styles of a bin are those of its middle.
      if (IsStyle(encoding.channel) && encoding.bin && !encoding.endField.empty() &&
          !IsStepped(ResolveScaleType(encoding)))
        TakeMiddle(encoding);
      bool const isPlace = IsPosition(encoding.channel) && !IsDiscrete(encoding.type);
      if (!isPlace || encoding.endField.empty()) continue;
      if (encoding.bin && !encoding.scale.zero) encoding.scale.zero = false;
      if (encoding.bin && !encoding.scale.nice && !encoding.scale.niceCount) encoding.scale.nice = false;
      SetUnitFormat(encoding);
      Channel const second = encoding.channel == Channel::X ? Channel::X2 : Channel::Y2;
      if (Find(second) != nullptr) continue;
      if (GetDefinition(layer_.mark).coversIntervals) {
        Encoding& end = ends.emplace_back();
        end.channel = second;
        end.path = encoding.path;
        end.field = encoding.endField;
      } else if (encoding.bin) {
        TakeMiddle(encoding);
      }
    }
    for (Encoding& end : ends) drawn_.encodings.push_back(std::move(end));
  }

  // Ticks say what the unit keeps of a date; the one year that stands for any is not shown.
  static void SetUnitFormat(Encoding& encoding) {
    auto const unit = TimeUnit::FromName(encoding.timeUnit.name);
    bool const isOpen = encoding.axis.format.empty() && !encoding.axis.tickInterval;
    if (unit && isOpen && !encoding.timeUnit.IsPeriod()) encoding.axis.format = unit->GetLabelPattern();
  }

  static bool IsStyle(Channel channel) {
    return channel == Channel::Size || channel == Channel::Opacity || channel == Channel::Color;
  }

  void TakeMiddle(Encoding& encoding) {
    RowStep step(graph_, *drawn_.rows, encoding.path);
    std::string const middle = encoding.field + "_middle";
    NodeId const sum =
        graph_.Zip("sum of ends", "add", step.Numbers(encoding.field), step.Numbers(encoding.endField));
    step.Set(middle, graph_.Zip(middle, "multiply", sum, graph_.Real(0.5)));
    drawn_.rows = step.Extend();
    encoding.startField = std::exchange(encoding.field, middle);
  }

  // Dates part panes as instants, however they are written.
  void TakeDates(Encoding& encoding) {
    RowStep step(graph_, *drawn_.rows, encoding.path);
    encoding.derivedTitle = encoding.field;
    std::string const dates = NewName("date_" + encoding.field);
    step.Set(dates, step.Instants(encoding.field));
    encoding.field = dates;
    drawn_.rows = step.Extend();
  }

  void FloorToTimeUnit(Encoding& encoding) {
    TimeUnitSpec const& spec = encoding.timeUnit;
    std::string const start =
        NewName(spec.IsPeriod() ? fmt::format("{}_{}_{}_{}", spec.name, spec.fiscalStart.value_or(0),
                                              spec.weekStart, encoding.field)
                                : spec.name + "_" + encoding.field);
    auto const known = TimeUnit::FromName(spec.name);
    encoding.derivedTitle = fmt::format("{} ({}{})", encoding.field, spec.fiscalStart ? "fiscal " : "",
                                        known ? known->GetName() : spec.name);
    encoding.endField = start + "_end";
    if (drawn_.rows->GetTable().Find(start) == nullptr) {
      TimeUnitTransform const unit{encoding.path, encoding.timeUnit, encoding.field, start,
                                   encoding.endField};
      drawn_.rows = FloorRowsToTimeUnit(graph_, unit, *drawn_.rows);
    }
    encoding.field = start;
  }

  void Bin(Encoding& encoding) {
    BinSpec spec = *encoding.bin;
    bool const isPosition = IsPosition(encoding.channel);
    if (!spec.maxBins) spec.maxBins = isPosition ? kMaxBinsOfPositions : kMaxBinsOfStyles;
    std::string const start = NewName(
        fmt::format("bin_{}_{}_{}_{}_{}_{}", *spec.maxBins, spec.step.value_or(0), spec.minStep.value_or(0),
                    spec.extentStart.value_or(0), spec.extentEnd.value_or(0), encoding.field));
    encoding.derivedTitle = encoding.field + " (binned)";
    encoding.endField = start + "_end";
    if (drawn_.rows->GetTable().Find(start) == nullptr)
      drawn_.rows =
          BinRows(graph_, {encoding.path, spec, encoding.field, start, encoding.endField}, *drawn_.rows);
    encoding.field = start;
    if (IsDiscrete(encoding.type) || IsFacet(encoding.channel)) NameBins(encoding);
  }

  // Bins as categories: each is told by its ends, and they stand in their own order where no other is asked
  // for.
  void NameBins(Encoding& encoding) {
    RowStep step(graph_, *drawn_.rows, encoding.path);
    std::string const start = std::exchange(encoding.field, encoding.field + "_range");
    auto const format = [&](std::string const& end) {
      return graph_.Call(end + " texts", "formatNumbers", {step.Numbers(end), graph_.Text("")});
    };
    // A row without a number has no bin.
    NodeId const texts = graph_.Call(encoding.field + " texts", "joinTexts",
                                     {format(start), graph_.Text(" \u2013 "), format(encoding.endField)});
    NodeId const none = graph_.Map(encoding.field + " is none", "isSpecial", step.Numbers(start));
    NodeId const noText = graph_.Constant(
        "no text", ort::core::factory::MakeSpecial(StoreTypeInfo::String, ort::core::SpecialKind::Null));
    step.Set(encoding.field, graph_.Call(encoding.field, "choose", {none, noText, texts}));
    drawn_.rows = step.Extend();
    encoding.endField.clear();
    if (!encoding.sortBy && encoding.sort.empty() && !encoding.keepsDataOrder) encoding.sortField = start;
  }

  // Bins of the data: the second position has their ends.
  void FindBinEnd(Encoding& encoding) {
    if (!IsPosition(encoding.channel)) return;
    Channel const second = encoding.channel == Channel::X ? Channel::X2 : Channel::Y2;
    auto const end = std::ranges::find(drawn_.encodings, second, &Encoding::channel);
    if (end != drawn_.encodings.end()) encoding.endField = end->field;
  }

  // The aggregate that values are sorted by: that of all their rows, however these are grouped.
  Encoding const* FindAggregated(SortSpec const& sort) const {
    auto const isMeant = [&](Encoding const& other) {
      return sort.channel == NameOf(other.channel) && other.aggregate;
    };
    auto const found = std::ranges::find_if(drawn_.encodings, isMeant);
    return found != drawn_.encodings.end() ? &*found : nullptr;
  }

  void SortByField(Encoding& encoding) {
    SortSpec const& sort = *encoding.sortBy;
    encoding.sortField = NewName(fmt::format("sort_{}", NameOf(encoding.channel)));
    AggregateSpec const numbers{
        encoding.path + ".sort", {{sort.operation, sort.field, encoding.sortField}}, {encoding.field}, true};
    drawn_.rows = AggregateRows(graph_, numbers, *drawn_.rows);
  }

  void SortByChannel(Encoding& encoding, Encoding const* stacked) {
    SortSpec const& sort = *encoding.sortBy;
    auto const isMeant = [&](Encoding const& other) { return sort.channel == NameOf(other.channel); };
    auto const other = std::ranges::find_if(drawn_.encodings, isMeant);
    if (other == drawn_.encodings.end() || other->field.empty()) {
      throw DataError(fmt::format("{}.sort: the channel {} has no field", encoding.path, sort.channel));
    }
    encoding.sortField = NewName(fmt::format("sort_{}", NameOf(encoding.channel)));
    auto const operation = &*other == stacked ? AggregateOperation::Sum : AggregateOperation::Min;
    AggregateSpec const numbers{
        encoding.path + ".sort", {{operation, other->field, encoding.sortField}}, {encoding.field}, true};
    drawn_.rows = AggregateRows(graph_, numbers, *drawn_.rows);
  }

  void AddGroup(AggregateSpec& aggregate, std::string const& field) const {
    bool const isNew = std::ranges::find(aggregate.groups, field) == aggregate.groups.end();
    if (!field.empty() && isNew) aggregate.groups.push_back(field);
  }

  void Aggregate() {
    AggregateSpec aggregate{layer_.path + ".encoding", {}, {}, false};
    for (Encoding& encoding : drawn_.encodings) {
      if (!encoding.aggregate) {
        AddGroup(aggregate, encoding.field);
        AddGroup(aggregate, encoding.endField);
        AddGroup(aggregate, encoding.sortField);
        continue;
      }
      AggregateOperation const operation = *encoding.aggregate;
      std::string const name = NameOf(operation);
      std::string const as = NewName(encoding.field.empty() ? name : name + "_" + encoding.field);
      encoding.derivedTitle = operation == AggregateOperation::Count
                                  ? "Count of Records"
                                  : fmt::format("{} of {}", Capitalised(name), encoding.field);
      auto const isSame = [&](AggregateSpec::Field const& field) { return field.as == as; };
      if (std::ranges::none_of(aggregate.fields, isSame))
        aggregate.fields.push_back({operation, encoding.field, as});
      encoding.field = as;
    }
    drawn_.rows = AggregateRows(graph_, aggregate, *drawn_.rows);
  }

  // All fields of the rows: those of the data, or what the channels made of them.
  std::vector<Encoding> ListFields(bool isAggregated) const {
    std::vector<Encoding> tooltips;
    for (DataColumn const& column : (isAggregated ? drawn_.rows : source_)->GetTable().columns) {
      auto const isOrder = [&](Encoding const& encoding) { return encoding.sortField == column.name; };
      if (std::ranges::any_of(drawn_.encodings, isOrder)) continue;
      Encoding& tooltip = tooltips.emplace_back();
      tooltip.channel = Channel::Tooltip;
      tooltip.path = layer_.mark.path + ".tooltip";
      tooltip.field = column.name;
    }
    return tooltips;
  }

  Encoding* Find(Channel channel) {
    auto const found = std::ranges::find(drawn_.encodings, channel, &Encoding::channel);
    return found != drawn_.encodings.end() ? &*found : nullptr;
  }

  static bool Splits(Encoding const& encoding) {
    switch (encoding.channel) {
      case Channel::Color:
      case Channel::Detail:
      case Channel::Opacity:
      case Channel::Size:
      case Channel::Shape:
        return !encoding.field.empty() && !encoding.aggregate;
      default:
        return false;
    }
  }

  // The channel whose values are stacked, or null. Bars and areas stack where the document does not say.
  Encoding* FindStacked(bool isHorizontal, bool isAggregated) {
    Encoding* const measure = Find(isHorizontal ? Channel::X : Channel::Y);
    if (measure == nullptr || measure->field.empty() || measure->type != FieldType::Quantitative)
      return nullptr;
    if (measure->bin || Find(isHorizontal ? Channel::X2 : Channel::Y2) != nullptr) return nullptr;
    if (!measure->stack && !GetDefinition(layer_.mark).isStacked) return nullptr;
    if (measure->stack == StackOffset::None) return nullptr;
    if (measure->scale.type.value_or(ScaleType::Linear) != ScaleType::Linear && !measure->stack)
      return nullptr;
    bool const isSplit = std::ranges::any_of(drawn_.encodings, Splits);
    if (isAggregated && !isSplit) return nullptr;
    return measure;
  }

  // The first value of a legend, which stands at its top, is farthest from an axis below and nearest to one
  // at the left.
  void AddStackingOrder(StackSpec& stack, bool isHorizontal) {
    for (Encoding const& encoding : drawn_.encodings) {
      if (encoding.channel == Channel::Order && !encoding.field.empty())
        stack.order.push_back({encoding.field, encoding.isDescending.value_or(false)});
    }
    if (!stack.order.empty()) return;
    for (Encoding const& encoding : drawn_.encodings) {
      if (Splits(encoding)) stack.order.push_back({FindStackingField(encoding), !isHorizontal});
    }
  }

  // Colours whose values are listed stack in the order of the list.
  std::string FindStackingField(Encoding const& encoding) {
    bool const isListed = encoding.channel == Channel::Color && encoding.type == FieldType::Nominal &&
                          !encoding.scale.domain.empty();
    if (!isListed) return encoding.field;
    std::string place = NewName("place_" + encoding.field);
    RowStep step(graph_, *drawn_.rows, encoding.path);
    NodeId const list =
        graph_.Constant(place + " list", MakeTextColumn(encoding.scale.domain, encoding.timeUnit));
    NodeId const index = graph_.Call(place + " index", "indexIn", {step.Categories(encoding.field), list});
    step.Set(place, graph_.Map(place, "asReal64", index));
    drawn_.rows = step.Extend();
    return place;
  }

  void Stack(Encoding& measure) {
    bool const isHorizontal = measure.channel == Channel::X;
    StackSpec stack{.path = measure.path + ".stack",
                    .field = measure.field,
                    .groups = {},
                    .order = {},
                    .offset = measure.stack.value_or(StackOffset::Zero),
                    .start = measure.field + "_start",
                    .end = measure.field + "_end"};
    for (Channel const channel :
         {isHorizontal ? Channel::Y : Channel::X, isHorizontal ? Channel::YOffset : Channel::XOffset}) {
      Encoding const* const place = Find(channel);
      if (place != nullptr && !place->field.empty()) stack.groups.push_back(place->field);
    }
    for (Encoding const& encoding : drawn_.encodings) {
      if (IsFacet(encoding.channel)) stack.groups.push_back(encoding.field);
    }
    if (measure.derivedTitle.empty()) measure.derivedTitle = measure.field;
    if (GetDefinition(layer_.mark).joinsRows) FillStack(measure);
    AddStackingOrder(stack, isHorizontal);
    drawn_.rows = StackRows(graph_, stack, *drawn_.rows);
    if (stack.offset == StackOffset::Normalize && measure.axis.format.empty()) measure.axis.format = ".0%";
    measure.field = stack.end;
    Encoding start;
    start.channel = isHorizontal ? Channel::X2 : Channel::Y2;
    start.path = measure.path;
    start.field = stack.start;
    start.type = measure.type;
    drawn_.encodings.push_back(std::move(start));
  }

  // Series stand on one another at all places, also where one of them has no row.
  void FillStack(Encoding const& measure) {
    GapSpec gaps{
        .path = measure.path + ".stack", .field = measure.field, .place = {}, .series = {}, .needed = {}};
    auto const add = [](std::vector<std::string>& fields, Encoding const& encoding) {
      for (std::string const& field :
           {encoding.field, encoding.startField, encoding.endField, encoding.sortField}) {
        if (!field.empty() && std::ranges::find(fields, field) == fields.end()) fields.push_back(field);
      }
    };
    Channel const place = measure.channel == Channel::X ? Channel::Y : Channel::X;
    for (Encoding const& encoding : drawn_.encodings) {
      if (encoding.channel == place) add(gaps.place, encoding);
      if (encoding.channel == place && !IsDiscrete(encoding.type)) add(gaps.needed, encoding);
      if (Splits(encoding) || IsFacet(encoding.channel)) add(gaps.series, encoding);
    }
    if (!gaps.place.empty() && !gaps.series.empty()) drawn_.rows = FillGaps(graph_, gaps, drawn_.rows);
  }

  GraphBuilder& graph_;
  LayerSpec const& layer_;
  DrawnRows drawn_;
  std::shared_ptr<LayerRows> const source_ = drawn_.rows;
};

}  // namespace

DrawnRows DeriveChannelFields(GraphBuilder& graph, LayerSpec const& layer, std::shared_ptr<LayerRows> rows) {
  return ChannelDeriver(graph, layer, std::move(rows)).Derive();
}

}  // namespace ostrel::charts
