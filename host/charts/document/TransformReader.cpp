#include <fmt/format.h>

#include "charts/document/JsonObjectReader.h"
#include "charts/document/Readers.h"
#include "charts/document/TransformReaders.h"
#include "charts/expressions/Expression.h"

namespace ostrel::charts {

namespace {

constexpr NamedValue<AggregateOperation> kOperations[] = {
    {"count", AggregateOperation::Count},     {"valid", AggregateOperation::Valid},
    {"missing", AggregateOperation::Missing}, {"sum", AggregateOperation::Sum},
    {"mean", AggregateOperation::Mean},       {"average", AggregateOperation::Mean},
    {"median", AggregateOperation::Median},   {"min", AggregateOperation::Min},
    {"max", AggregateOperation::Max},         {"q1", AggregateOperation::Q1},
    {"q3", AggregateOperation::Q3},           {"stdev", AggregateOperation::Stdev}};

constexpr NamedValue<StackOffset> kOffsets[] = {
    {"zero", StackOffset::Zero}, {"normalize", StackOffset::Normalize}, {"center", StackOffset::Center}};

constexpr NumberRange kBinCount{.minimum = 1, .maximum = 10'000};

struct Test {
  char const* name;
  FilterSpec::Kind kind;
};
constexpr Test kTests[] = {{"equal", FilterSpec::Kind::Equal},        {"lt", FilterSpec::Kind::Less},
                           {"lte", FilterSpec::Kind::LessOrEqual},    {"gt", FilterSpec::Kind::Greater},
                           {"gte", FilterSpec::Kind::GreaterOrEqual}, {"range", FilterSpec::Kind::Range},
                           {"oneOf", FilterSpec::Kind::OneOf},        {"valid", FilterSpec::Kind::Valid}};

constexpr Test kJoins[] = {
    {"and", FilterSpec::Kind::And}, {"or", FilterSpec::Kind::Or}, {"not", FilterSpec::Kind::Not}};

void ReadExtent(JsonValue const& value, BinSpec& bin) {
  auto const ends = value.ReadArray();
  if (ends.size() != 2) value.Fail("expects two numbers");
  bin.extentStart = ends[0].ReadNumber();
  bin.extentEnd = ends[1].ReadNumber();
  if (!(*bin.extentStart < *bin.extentEnd)) value.Fail("expects the smaller number first");
}

void ReadTestValues(JsonValue const& value, FilterSpec& filter) {
  switch (filter.kind) {
    case FilterSpec::Kind::Valid:
      filter.isValid = value.ReadBool();
      break;
    case FilterSpec::Kind::OneOf:
      filter.values = value.ReadLiterals();
      if (filter.values.empty()) value.Fail("has no values");
      break;
    case FilterSpec::Kind::Range: {
      auto const ends = value.ReadArray();
      if (ends.size() != 2) value.Fail("expects two values");
      for (auto const& end : ends) filter.values.push_back(end.IsNull() ? Literal() : end.ReadLiteral());
      if (ends[0].IsNull() && ends[1].IsNull()) value.Fail("expects an end that is not null");
      break;
    }
    default:
      filter.values = {value.ReadLiteral()};
      break;
  }
}

std::shared_ptr<Expression const> ReadExpression(JsonValue const& value) {
  try {
    return ParseExpression(value.ReadText());
  } catch (ExpressionError const& error) {
    value.Fail(error.what());
  }
}

FilterSpec ReadFilter(JsonValue const& value);

FilterSpec ReadJoined(JsonValue const& value, char const* name, FilterSpec::Kind kind) {
  FilterSpec filter;
  filter.kind = kind;
  filter.path = value.GetPath();
  JsonObjectReader(value)
      .On(name,
          [&](JsonValue const& parts) {
            if (filter.kind == FilterSpec::Kind::Not) {
              filter.parts.push_back(ReadFilter(parts));
              return;
            }
            for (auto const& part : parts.ReadArray()) filter.parts.push_back(ReadFilter(part));
            if (filter.parts.empty()) parts.Fail("has no tests");
          })
      .Read();
  return filter;
}

FilterSpec ReadFilter(JsonValue const& value) {
  FilterSpec filter;
  filter.path = value.GetPath();
  if (!value.IsObject()) {
    filter.kind = FilterSpec::Kind::Expression;
    filter.expression = ReadExpression(value);
    return filter;
  }
  for (auto const& [name, kind] : kJoins) {
    if (value.Has(name)) return ReadJoined(value, name, kind);
  }
  int tests = 0;
  JsonObjectReader reader(value);
  reader.On("field", [&](JsonValue const& field) { filter.field = ReadFieldName(field); })
      .On("timeUnit", [&](JsonValue const& unit) { filter.timeUnit = ReadTimeUnit(unit); })
      .Refuse("param", "interaction is not supported; leave it out");
  for (Test const& test : kTests) {
    reader.On(test.name, [&filter, &tests, &test](JsonValue const& values) {
      filter.kind = test.kind;
      ReadTestValues(values, filter);
      ++tests;
    });
  }
  reader.Read();
  if (filter.field.empty()) value.FailAt("field", "is missing");
  if (tests != 1) value.Fail("expects one of equal, lt, lte, gt, gte, range, oneOf, valid");
  return filter;
}

void ReadFieldNames(JsonValue const& value, std::vector<std::string>& names) {
  for (auto const& name : value.ReadArray()) names.push_back(ReadFieldName(name));
}

AggregateSpec::Field ReadAggregateField(JsonValue const& value) {
  AggregateSpec::Field field;
  JsonObjectReader(value)
      .On("op", [&](JsonValue const& operation) { field.operation = ReadAggregateOperation(operation); })
      .On("field", [&](JsonValue const& name) { field.field = ReadFieldName(name); })
      .Text("as", field.as)
      .Read();
  if (!value.Has("op")) value.FailAt("op", "is missing");
  if (field.as.empty()) value.FailAt("as", "is missing; name the new field");
  if (field.field.empty() && field.operation != AggregateOperation::Count)
    value.FailAt("field", "is missing; only a count needs none");
  return field;
}

AggregateSpec ReadAggregate(JsonValue const& value, char const* list, bool keepsRows) {
  AggregateSpec aggregate{.path = value.GetPath(), .fields = {}, .groups = {}, .keepsRows = keepsRows};
  JsonObjectReader(value)
      .On(list,
          [&](JsonValue const& fields) {
            for (auto const& field : fields.ReadArray())
              aggregate.fields.push_back(ReadAggregateField(field));
          })
      .On("groupby", [&](JsonValue const& groups) { ReadFieldNames(groups, aggregate.groups); })
      .Read();
  if (aggregate.fields.empty()) value.FailAt(list, "has no fields");
  return aggregate;
}

/// One name, or two of which the second is the end's.
void ReadEnds(JsonValue const& value, std::string& start, std::string& end) {
  if (!value.Get().is_array()) {
    start = value.ReadText();
    end = start + "_end";
    return;
  }
  auto const names = value.ReadArray();
  if (names.size() != 2) value.Fail("expects one or two names");
  start = names[0].ReadText();
  end = names[1].ReadText();
}

// What a new field is made of and called; both must be given.
template <class Transform>
void ReadNames(JsonValue const& value, JsonObjectReader& reader, Transform& transform) {
  reader.On("field", [&](JsonValue const& field) { transform.field = ReadFieldName(field); })
      .On("as", [&](JsonValue const& as) { ReadEnds(as, transform.start, transform.end); })
      .Read();
  if (transform.field.empty()) value.FailAt("field", "is missing");
  if (transform.start.empty()) value.FailAt("as", "is missing; name the new field");
}

CalculateSpec ReadCalculate(JsonValue const& value) {
  CalculateSpec calculate;
  JsonObjectReader(value)
      .On("calculate",
          [&](JsonValue const& expression) {
            calculate.path = expression.GetPath();
            calculate.expression = ReadExpression(expression);
          })
      .Text("as", calculate.as)
      .Read();
  if (calculate.as.empty()) value.FailAt("as", "is missing; name the new field");
  return calculate;
}

BinTransform ReadBinTransform(JsonValue const& value) {
  BinTransform transform{.path = value.GetPath(), .bin = {}, .field = {}, .start = {}, .end = {}};
  JsonObjectReader reader(value);
  reader.On("bin", [&](JsonValue const& bin) {
    auto const spec = ReadBin(bin);
    if (!spec || spec->isDone) bin.Fail("expects true or an object");
    transform.bin = *spec;
  });
  ReadNames(value, reader, transform);
  return transform;
}

TimeUnitTransform ReadTimeUnitTransform(JsonValue const& value) {
  TimeUnitTransform transform{.path = value.GetPath(), .unit = {}, .field = {}, .start = {}, .end = {}};
  JsonObjectReader reader(value);
  reader.On("timeUnit", [&](JsonValue const& unit) { transform.unit = ReadTimeUnit(unit); });
  ReadNames(value, reader, transform);
  return transform;
}

TransformSpec ReadTransform(JsonValue const& value) {
  if (value.Has("filter")) {
    FilterSpec filter;
    JsonObjectReader(value).On("filter", [&](JsonValue const& test) { filter = ReadFilter(test); }).Read();
    return filter;
  }
  if (value.Has("calculate")) return ReadCalculate(value);
  if (value.Has("aggregate")) return ReadAggregate(value, "aggregate", false);
  if (value.Has("joinaggregate")) return ReadAggregate(value, "joinaggregate", true);
  if (value.Has("bin")) return ReadBinTransform(value);
  if (value.Has("timeUnit")) return ReadTimeUnitTransform(value);
  value.ReadObject();
  value.Fail("is not supported; use one of filter, calculate, aggregate, joinaggregate, bin, timeUnit");
}

}  // namespace

std::vector<TransformSpec> ReadTransforms(JsonValue const& value) {
  std::vector<TransformSpec> transforms;
  for (auto const& transform : value.ReadArray()) transforms.push_back(ReadTransform(transform));
  return transforms;
}

AggregateOperation ReadAggregateOperation(JsonValue const& value) {
  return value.ReadOneOf(std::span<NamedValue<AggregateOperation> const>(kOperations));
}

char const* NameOf(AggregateOperation operation) {
  for (auto const& word : kOperations) {
    if (word.value == operation) return word.name;
  }
  return "";
}

std::optional<BinSpec> ReadBin(JsonValue const& value) {
  BinSpec bin;
  if (value.IsOff()) return std::nullopt;
  if (value.Get().is_string()) {
    if (value.ReadText() != "binned") value.Fail("expects true, \"binned\" or an object");
    bin.isDone = true;
    return bin;
  }
  if (!value.IsObject()) {
    value.ReadBool();
    return bin;
  }
  std::optional<bool> isDone;
  JsonObjectReader(value)
      .Number("maxbins", bin.maxBins, kBinCount)
      .Number("step", bin.step, kPositive)
      .Number("minstep", bin.minStep, kNotNegative)
      .On("extent", [&](JsonValue const& extent) { ReadExtent(extent, bin); })
      .Refuse("nice", "is not supported; use step and extent")
      .Refuse("base", "is not supported; use step")
      .Refuse("divide", "is not supported; use step")
      .Refuse("steps", "is not supported; use step")
      .Refuse("anchor", "is not supported; use extent")
      .Bool("binned", isDone)
      .Read();
  bin.isDone = isDone.value_or(false);
  if (bin.isDone && (bin.maxBins || bin.minStep || bin.extentStart || bin.extentEnd))
    value.FailAt("binned",
                 "takes the intervals as the data have them; only step, that of the ticks, goes with it");
  return bin;
}

StackOffset ReadStack(JsonValue const& value) {
  if (value.IsOff()) return StackOffset::None;
  if (value.Get().is_boolean()) return StackOffset::Zero;
  return value.ReadOneOf(std::span<NamedValue<StackOffset> const>(kOffsets));
}

}  // namespace ostrel::charts
