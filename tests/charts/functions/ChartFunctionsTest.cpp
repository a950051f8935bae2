#include <fmt/format.h>
#include <gtest/gtest.h>

#include <set>

#include "charts/functions/ChartFunctions.h"
#include "ostrelrtcore/ErrorOf.h"
#include "ostrelrtcore/Factory.h"
#include "ostrelrtcore/engine/Engine.h"
#include "ostreltransforms/TransformNames.h"

namespace {

using namespace ort::core;
using namespace ostrel;
using factory::Value;
using Values = std::vector<Value>;

constexpr auto kSpecial = static_cast<SpecialKind>(9);

FunctionRegistry const& Registry() {
  static auto const& registry = *[] {
    auto* made = new FunctionRegistry();
    charts::RegisterChartFunctions(*made, services::MakeFixedMeasurer());
    return made;
  }();
  return registry;
}

Value Call(std::string const& function, Values inputs, EvaluationMode mode = EvaluationMode::Call,
           FunctionRegistry const& registry = Registry()) {
  return Engine(registry).Call({OStringCore::fromUtf8(function), mode, std::move(inputs), {}});
}

/// A column whose rows from `special` on are special.
template <class T>
Value Column(StoreType type, std::vector<T> values, std::vector<int> special = {}) {
  auto kinds = std::make_unique<std::vector<SpecialKind>>(special.size(), kSpecial);
  return factory::MakeArray<T>({type, false}, std::make_unique<std::vector<T>>(std::move(values)),
                               std::make_unique<std::vector<int>>(std::move(special)), std::move(kinds));
}
Value Reals(std::vector<double> values, std::vector<int> special = {}) {
  return Column(StoreType::Real64, std::move(values), std::move(special));
}
Value Dates(std::vector<OrtDateTime> values, std::vector<int> special = {}) {
  return Column(StoreType::DateTime, std::move(values), std::move(special));
}
Value Texts(std::vector<std::string> const& texts, std::vector<int> special = {}) {
  std::vector<RIndirectString> values;
  for (std::string const& text : texts) values.emplace_back(OStringCore::fromUtf8(text));
  return Column(StoreType::String, std::move(values), std::move(special));
}
Value Real(double value) { return factory::MakeReal64(value); }
Value Date(OrtDateTime date) { return factory::MakeDateTime(date); }
Value Text(std::string const& text) { return factory::MakeString(OStringCore::fromUtf8(text)); }
Value Degrees(double low, double high) {
  return factory::MakeTuple(
      {Real(low), Real(high), factory::MakeInt32(0), factory::MakeInt32(4), factory::MakeBool(false)});
}
Value SpecialReal() { return factory::MakeSpecial({StoreType::Real64, false}, kSpecial); }
Value Font() {
  return factory::MakeTuple({Text("sans-serif"), Real(10), factory::MakeInt32(400), factory::MakeInt32(0)});
}

template <class T, class ShowRow>
std::string ShowRows(Value const& column, ShowRow const& showRow) {
  auto const& rows = column->AsTypedArray<T>();
  std::string text;
  for (int row = 0; row < rows.GetCount(); ++row) {
    auto const kind = column->AsColumn().GetSpecialKind(row);
    text += row > 0 ? "|" : "";
    text += kind == SpecialKind::None ? showRow(rows.GetElement(row))
                                      : fmt::format("<{}>", static_cast<int>(kind));
  }
  return text;
}

/// A value's rows or members, "0|0.5|<9>": special rows by their kind.
std::string Show(Value const& value) {
  if (value->GetStoreType() == StoreType::Tuple) {
    std::string text;
    auto const& tuple = value->AsTuple();
    for (int i = 0; i < tuple.GetCount(); ++i) text.append(i > 0 ? "|" : "").append(Show(tuple.GetMember(i)));
    return text;
  }
  auto const showReal = [](double number) {
    return factory::MakeReal64(number)->ConvertTo(StoreType::String)->GetString().Get().toUtf8();
  };
  if (value->GetStoreType() == StoreType::Real64) return showReal(value->GetReal64());
  switch (value->GetTypeInfo().GetElementType().GetStoreType()) {
    case StoreType::Real64:
      return ShowRows<double>(value, showReal);
    case StoreType::String:
      return ShowRows<RIndirectString>(value,
                                       [](RIndirectString const& text) { return text.Get().toUtf8(); });
    case StoreType::DateTime:
      return ShowRows<OrtDateTime>(value, [](OrtDateTime date) { return date.ToIsoText(); });
    case StoreType::Bool:
      return ShowRows<bool>(value, [](bool flag) { return std::string(flag ? "T" : "F"); });
    default:
      return ShowRows<int>(value, [](int number) { return std::to_string(number); });
  }
}

TEST(ChartFunctions, AnswerCalls) {
  struct {
    char const* function;
    Values inputs;
    char const* result;
  } const cases[] = {
      {"linearTicks", {Real(0), Real(1), Real(5)}, "0|0.2|0.4|0.6|0.8|1"},
      {"linearTicks", {Real(0), Real(1), Real(0)}, ""},
      {"niceLinearDomain", {Real(0.13), Real(9.7), Real(10)}, "0|10"},
      {"niceLogDomain", {Real(3), Real(4200), Real(10)}, "1|10000"},
      {"timeTicks",
       {Real(43'831), Real(43'833), Real(2)},
       "2020-01-01T00:00:00.0000|2020-01-02T00:00:00.0000|2020-01-03T00:00:00.0000"},
      // Special positions are passed over.
      {"logTickValues", {Reals({0, 0.5, 1}, {1}), Real(1), Real(100), Real(5)}, "1|100"},
      // Special rows stay special.
      {"formatTicks", {Reals({0, 7, 0.5, 1}, {1}), Text("")}, "0.0|<9>|0.5|1.0"},
      {"formatTicks", {Reals({}), Text("")}, ""},
      {"formatNumbers", {Reals({1234.5, 0, 2}, {1}), Text("$,.2f")}, "$1,234.50|<9>|$2.00"},
      {"formatDates",
       {Dates({OrtDateTime(2020, 1, 1), {}, OrtDateTime(2020, 2, 1)}, {1}), Text("%Y-%m")},
       "2020-01|<9>|2020-02"},
      {"formatDates", {Dates({OrtDateTime(2020, 1, 1), OrtDateTime(2020, 2, 1)}), Text("")}, "2020|February"},
      {"measureTexts", {Texts({"10", "", "200"}, {1}), Font()}, "20|<9>|30"},
      {"measureWords", {Texts({"far off", "", "a\u200bbcd", " "}, {1}), Font()}, "30|<9>|30|0"},
      {"readsFromRight", {Texts({"abc", "אבג", "1 ש!", ""}, {3})}, "F|T|T|F"},
      {"visibleLabels", {Reals({0, 10, 20}), Reals({12, 12, 12}), Real(2), Text("parity")}, "T|F|T"},
      {"visibleLabels", {Reals({0, 10, 20}, {0}), Reals({9, 9, 9}), Real(1), Text("greedy")}, "F|T|T"},
      {"visibleLabels", {Reals({0, 10, 20}), Reals({9, 9, 9}, {1}), Real(1), Text("greedy")}, "T|F|T"},
      {"colorScheme", {Text("viridis"), factory::MakeInt32(2)}, "-12320428|-137435"},
      {"discreteColorScheme", {Text("viridis"), factory::MakeInt32(1)}, "-14577267"},
      {"timeUnitFloor",
       {Dates({OrtDateTime(2020, 5, 17, 12), {}}, {1}), Text("month")},
       "2012-05-01T00:00:00.0000|<9>"},
      {"nextTimeUnit", {Dates({OrtDateTime(2020, 12, 1)}), Text("yearmonth")}, "2021-01-01T00:00:00.0000"},
      {"periodFloor",
       {Dates({OrtDateTime(2016, 2, 29, 12), {}}, {1}), Date(OrtDateTime(2010, 10, 1)),
        factory::MakeInt32(12), factory::MakeInt32(0)},
       "2015-10-01T00:00:00.0000|<9>"},
      {"nextPeriod",
       {Dates({OrtDateTime(2016, 2, 29, 12)}), Date(OrtDateTime(2016, 1, 4)), factory::MakeInt32(0),
        factory::MakeInt32(7)},
       "2016-03-07T00:00:00.0000"},
      {"periodTicks",
       {Date(OrtDateTime(2006, 1, 1)), Date(OrtDateTime(2016, 1, 1)), Date(OrtDateTime(2005, 10, 1)),
        factory::MakeInt32(12), factory::MakeInt32(0), factory::MakeInt32(2006), factory::MakeInt32(5)},
       "2009-10-01T00:00:00.0000|2014-10-01T00:00:00.0000"},
      {"moveToYear",
       {Dates({OrtDateTime(2016, 4, 1)}), Date(OrtDateTime(2015, 10, 1)), factory::MakeInt32(2016)},
       "2016-07-01T00:00:00.0000"},
      {"binRange", {Real(1.4), Real(9.3), Real(10), Real(0), Real(0)}, "1|10|1"},
      {"thresholdIndex", {Reals({-1, 0, 7, 12, NAN}), Reals({0, 10})}, "0|1|1|2|<1>"},
      {"thresholdIndex", {Reals({5}), Reals({})}, "0"},
  };
  for (auto const& [function, inputs, result] : cases) {
    EXPECT_EQ(Show(Call(function, inputs)), result) << function;
  }
}

TEST(ChartFunctions, FloorDatesToTheUnit) {
  struct {
    char const* function;
    char const* floors;
  } const cases[] = {
      {"yearFloor", "2020-01-01T00:00:00.0000|<9>|1969-01-01T00:00:00.0000"},
      {"quarterFloor", "2020-04-01T00:00:00.0000|<9>|1969-10-01T00:00:00.0000"},
      {"monthFloor", "2020-05-01T00:00:00.0000|<9>|1969-12-01T00:00:00.0000"},
      {"dayFloor", "2020-05-17T00:00:00.0000|<9>|1969-12-31T00:00:00.0000"},
      {"hourFloor", "2020-05-17T12:00:00.0000|<9>|1969-12-31T23:00:00.0000"},
      {"minuteFloor", "2020-05-17T12:34:00.0000|<9>|1969-12-31T23:59:00.0000"},
  };
  auto const dates =
      Dates({OrtDateTime(2020, 5, 17, 12, 34, 56), {}, OrtDateTime(1969, 12, 31, 23, 59, 59)}, {1});
  for (auto const& [function, floors] : cases) {
    auto const once = Call(function, {dates}, EvaluationMode::Map);
    EXPECT_EQ(Show(once), floors) << function;
    EXPECT_EQ(Show(Call(function, {once}, EvaluationMode::Map)), floors) << function;
  }
}

TEST(ChartFunctions, RefuseWithCodeAndMessage) {
  auto const noFont = factory::MakeTuple({Text("sans-serif")});
  struct {
    char const* function;
    Values inputs;
    int code;
    char const* message;
  } const cases[] = {
      {"niceLogDomain",
       {Real(0), Real(1), Real(10)},
       2,
       "a logarithmic scale needs a domain above 0, not from 0 to 1"},
      {"colorScheme",
       {Text("virids"), factory::MakeInt32(2)},
       2,
       "no colour scheme 'virids'; did you mean 'viridis'?"},
      {"colorScheme", {Text("viridis"), factory::MakeInt32(-1)}, 55, "a palette of -1 colours"},
      {"visibleLabels",
       {Reals({0}), Reals({1}), Real(0), Text("all")},
       2,
       "the strategy is \"parity\" or \"greedy\", not \"all\""},
      {"visibleLabels", {Reals({0, 1}), Reals({1}), Real(0), Text("parity")}, 259, "sizes: 1 rows beside 2"},
      {"formatNumbers",
       {Reals({}), Text("wrong")},
       55,
       "the number format \"wrong\" is not of the form "
       "[[fill]align][sign][symbol][0][width][,][.precision][~][type]"},
      {"measureTexts",
       {Texts({}), noFont},
       55,
       "a font is a tuple (family String, size Real64, weight Int32, slant Int32)"},
      {"measureFont",
       {noFont},
       55,
       "a font is a tuple (family String, size Real64, weight Int32, slant Int32)"},
      {"linearTicks", {SpecialReal(), Real(1), Real(5)}, 55, "special Real64 read as Real64"},
      {"niceLinearDomain", {Real(0), SpecialReal(), Real(5)}, 55, "special Real64 read as Real64"},
      {"timeTicks", {Real(0), Real(1), SpecialReal()}, 55, "special Real64 read as Real64"},
      {"mapView",
       {Real(0), Real(9), Degrees(0, 1), factory::MakeInt32(0), Real(0), Real(5)},
       2,
       "a map needs a width and a height above 0"},
      {"mapView",
       {Real(9), Real(9), Degrees(0, 1), factory::MakeInt32(0), Real(5), Real(5)},
       2,
       "a map's right edge must be east of its left one"},
      {"mapZoom",
       {Degrees(0, 1), Degrees(1, 0), factory::MakeInt32(0), Real(5), Real(5)},
       2,
       "a range of latitudes needs two finite ends in order"},
      {"mapBounds", {Reals({0}), Reals({0}), factory::MakeInt32(2)}, 55, "a projection is 0 or 1"},
      {"mapPixels",
       {Reals({0}), Reals({0, 1}), factory::MakeInt32(0), factory::MakeKeyMap(factory::NamedValues())},
       259,
       "latitudes: 2 rows beside 1"},
      {"timeUnitFloor", {Dates({}), Text("moon")}, 55, "no time unit is named \"moon\""},
      {"periodFloor",
       {Dates({}), Date(OrtDateTime()), factory::MakeInt32(3), factory::MakeInt32(7)},
       2,
       "a period is so many months or so many days, above 0"},
      {"binRange", {Real(1), Real(0), Real(10), Real(0), Real(0)}, 2, "bins need a range of finite numbers"},
      {"binRange", {Real(0), Real(1), Real(0), Real(0), Real(0)}, 2, "bins need a range of finite numbers"},
      {"binRange",
       {Real(0), Real(1e6), Real(10), Real(1), Real(0)},
       2,
       "a step that makes more than 10,000 bins"},
      {"thresholdIndex", {Reals({0}), Reals({1, 1})}, 2, "thresholds must be ascending"},
  };
  for (auto const& row : cases) {
    EXPECT_EQ(ErrorOf([&] { Call(row.function, row.inputs); }), Error(row.code, row.message)) << row.function;
  }
}

TEST(ChartFunctions, RefuseAnotherNumberOfInputs) {
  for (auto const& entry : Registry().GetMultinaryFunctions().GetEntries()) {
    if (entry.GetKey().GetName() == OStringCore(L"joinTexts")) continue;  // takes any number
    auto const wanted = entry.GetKey().GetInputTypes().size();
    for (std::size_t const given : {wanted - 1, wanted + 1}) {
      auto const functor = entry.GetFactory()({});
      auto& multinary = dynamic_cast<IMultinaryFunctor&>(*functor);
      EXPECT_EQ(ErrorOf([&] { multinary.Apply(Values(given, Real(1))); }),
                Error(219, fmt::format("{} input(s) wanted, {} given", wanted, given)))
          << entry.GetKey().GetName().toUtf8();
    }
  }
}

TEST(ChartFunctions, MeasureNothingWithoutAMeasurer) {
  FunctionRegistry registry;
  charts::RegisterChartFunctions(registry, nullptr);
  EXPECT_EQ(ErrorOf([&] {
              Call("measureTexts", {Texts({"a"}), Font()}, EvaluationMode::Call, registry);
            }),
            Error(55, "there is nothing to measure texts with"));
  EXPECT_EQ(Show(Call("linearTicks", {Real(0), Real(1), Real(1)}, EvaluationMode::Call, registry)), "0|1");
}

TEST(ChartFunctions, AreDocumentedEachAndNothingElse) {
  std::multiset<std::string> registered;
  auto const add = [&](auto const& functions) {
    for (auto const& entry : functions.GetEntries()) registered.insert(entry.GetKey().GetName().toUtf8());
  };
  add(Registry().GetUnaryFunctions());
  add(Registry().GetBinaryFunctions());
  add(Registry().GetMultinaryFunctions());
  std::multiset<std::string> documented;
  for (auto const& function : charts::GetChartFunctionDocumentation()) {
    documented.insert(function.name.toUtf8());
    EXPECT_EQ(function.inputNames.size(), function.inputs.size()) << function.name.toUtf8();
    EXPECT_EQ(function.help.back(), '.') << function.name.toUtf8();
  }
  EXPECT_EQ(documented, registered);
}

// All names of the plug-in, those under which it registers nothing included.
constexpr std::size_t kPluginNameCount = 121;
std::set<std::wstring> PluginNames() {
  using namespace TransformNames;
  return {ABS,
          ACCUMULATE,
          ADD_IF_LESS_THAN,
          ADD_TO_RIGHT,
          ADJUST_AXES_FOR_LOCKED_SCALES,
          ADJUST_DOMAIN_FOR_STEPPING,
          ADJUST_LEFT_WRAPPED,
          ADJUST_RIGHT_WRAPPED,
          ADJUST_TOTAL_COLOR,
          APPLY_STEPPING_FOR_DIVERGING_PALETTE,
          ARE_ROWS_DISTINCT,
          ARRAY_CONTAINS,
          ARRAY_LOOKUP_INT64,
          ARRAY_LOOKUP_REAL32,
          ARRAY_LOOKUP_REAL64,
          BITOR_REDUCE,
          BITOR_ZIPWITH,
          BUILD_INDEX_KEYSET_INT32,
          CALC_LOG_TICKS,
          CALC_MARK_HALF_SIZE,
          CALC_PIXEL_OVERFLOW,
          CALC_REFLINE_OVERFLOW,
          CINTERP,
          CLAMP_MAX,
          CLAMP_MIN,
          CLEAR_RANGES,
          COLUMN_NOT_EMPTY,
          COMBINE_ALPHA,
          COMPOSE_SHAPES,
          COMPOSE_TEXT,
          COMPUTE_AXIS_EXTENTS,
          COMPUTE_TREEMAP_NODES_LAYOUT,
          CONCAT_INTEGERS,
          CURR_STACK_VALUE,
          DAYS_DIFFERENCE,
          DAYS_TO_WEEK_START,
          DIVIDE_SPECIAL,
          END,
          EXCLUDE_HIDDEN_MARKS,
          EXPAND_AROUND_POINT,
          EXPAND_MIN_AND_MAX,
          EXP_SPECIAL,
          EXTEND_POINT_RANGES,
          EXTEND_RANGES_TO_INCLUDE_ZERO,
          EXTEND_RANGE_COLUMN,
          EXTEND_RANGE_WITH_OVERFLOW,
          EXTEND_X_RANGES_BY_DEGREE,
          EXTEND_Y_RANGES_BY_DEGREE,
          FIND_LARGEST_GAP,
          FISCAL_YEAR,
          FORMAT_NUMBER,
          GET_MONTH,
          GET_YEAR,
          GROUP_BY_RUNNING_SUM,
          HAS_TIME,
          HOURS_DIFFERENCE,
          IIF,
          INC_ON_NEW,
          INTERPOLATE,
          INTERPOLATE_INDEXED_RANGE,
          INVLERP3,
          INVLERP,
          INVLERP_MULTI_PANE,
          INVLERP_SPECIAL,
          IS_AXIS_LOCKED,
          IS_DISTINCT_PREV,
          IS_DIVERGING_AUTO,
          IS_PREV_VALUE_NULL_OR_MISSING,
          IS_REVERSED_AUTO,
          KEEP_ONLY_NON_EMPTY_RECT,
          KEEP_ONLY_UNIQUE,
          LAYOUT_BUBBLES,
          LAYOUT_WORDLE_CELLS,
          LN_SPECIAL,
          LOOKUP_INT64,
          LOOKUP_INT64_SPECIAL,
          LOOKUP_REAL64,
          LOOKUP_REAL64_SPECIAL,
          MAP_RANGE_INDICES,
          MAX_AXIS_SIZE,
          MAX_MULTI_DATETIME,
          MAX_MULTI_I64,
          MAX_MULTI_R64,
          MAX_ZIPWITH,
          MEASURE_BASELINE,
          MEASURE_EXTERNAL_LEADING,
          MEASURE_TEXT_RUN_HEIGHT,
          MEASURE_TEXT_RUN_WIDTH,
          MINUTES_DIFFERENCE,
          MIN_MULTI_DATETIME,
          MIN_MULTI_I64,
          MIN_MULTI_R64,
          MIN_ZIPWITH,
          NICE_NUM_ROUND,
          NICE_NUM_ROUND_UP,
          PAD_RANGE_TABLE,
          PBAND_EXTEND_RANGE_COLUMN,
          PIXELSCALE_BUBBLES,
          PREV_STACK_VALUE,
          RANGE_UNITS_PER_PIXEL,
          RESOLVE_MIN_MAX_DATA_TYPE_MISMATCH,
          RESOLVE_SIZE_ENCODING_PARAMETERS,
          ROUND,
          SECONDS_DIFFERENCE,
          SHOULD_ADJUST_FONT_SIZE,
          START_OF_PERIOD,
          STRADDLES_ZERO,
          SYNC_FOLDED_AXES,
          SYNC_FOLDED_AXES_ID,
          TEMPORAL_TICK_FREQUENCY,
          TO_COLOR,
          TO_KEYMAP,
          TO_REAL64,
          TO_REAL64_SVM,
          TO_UNIFORM_VALUE,
          UPDATE_TEXT_STYLE_TABLE,
          UPDATE_TO_SIZE_FOR_MAPPED_IMAGES,
          WORDLE_SCALE,
          WRAP_MAPS,
          WRAP_X_FOR_MAPS,
          ZERO_ALIGN_FOLDED_AXES};
}

TEST(ChartFunctions, AndBuiltinsCarryNoNameOfThePlugin) {
  auto const names = PluginNames();
  EXPECT_EQ(names.size(), kPluginNameCount);
  std::set<std::string> hostNames;
  for (auto const* documentation : {&GetBuiltinDocumentation(), &charts::GetChartFunctionDocumentation()}) {
    for (auto const& function : *documentation) hostNames.insert(function.name.toUtf8());
  }
  for (std::wstring const& name : names) {
    EXPECT_FALSE(hostNames.contains(std::string(name.begin(), name.end()))) << testing::PrintToString(name);
  }
}

TEST(ChartFunctions, CarryNoNameOfABuiltin) {
  std::set<std::string> builtins;
  for (auto const& function : GetBuiltinDocumentation()) builtins.insert(function.name.toUtf8());
  for (auto const& function : charts::GetChartFunctionDocumentation()) {
    EXPECT_FALSE(builtins.contains(function.name.toUtf8())) << function.name.toUtf8();
  }
}

}  // namespace
