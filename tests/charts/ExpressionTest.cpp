#include <fmt/format.h>

#include "ChartDrawing.h"
#include "charts/data/ConvertColumn.h"
#include "charts/expressions/ExpressionCompiler.h"

namespace ostrel::charts {
namespace {

/// Five rows: numbers, a number that may be missing, texts, dates, truth values.
constexpr char kRows[] = R"([
  {"n": 7.5, "i": 3, "m": 1, "s": "Ann Lee", "d": "2020-03-01", "t": "2020-03-01T12:34:56.5", "b": true,
   "v": "12", "o": {"p": 1}, "a b": 1},
  {"n": -2.5, "i": 4, "m": null, "s": "", "d": "2021-12-31", "t": "1999-01-01T00:00:00", "b": false,
   "v": "x", "o": {"p": 2}, "a b": 2},
  {"n": 0, "i": 0, "s": "zoë", "d": null, "t": "2000-02-29T23:59:59", "b": null,
   "v": "-1e2", "o": {"p": 3}, "a b": 3}])";

class Expressions : public testing::Test {
 protected:
  Expressions() {
    OstrelTransforms::RegisterAllRuntimeFunctions(registry_);
    RegisterChartFunctions(registry_, services_.ShareMeasurer());
  }

  /// "7.5|-2.5|-": every row's value, or what is wrong.
  std::string Evaluate(std::string const& source, bool isTest = false) const {
    try {
      GraphBuilder graph(registry_);
      LayerRows rows(std::make_shared<DataTable>(LoadText(kRows, "rows.json")), "");
      RowStep step(graph, rows, "$.transform[0]");
      auto const expression = ParseExpression(source);
      NodeId const node = isTest ? CompileTest(step, *expression, "$") : CompileValue(step, *expression, "$");
      return Describe(graph.Peek(node));
    } catch (ort::core::EvaluationError const& error) {
      return error.what();
    } catch (std::runtime_error const& error) {
      return error.what();
    }
  }

 private:
  static std::string Describe(Value const& column) {
    Value const texts = ConvertToString({"c", column}).values;
    std::string described;
    for (int row = 0; row < texts->AsColumn().GetCount(); ++row) {
      bool const isSpecial = texts->AsColumn().IsSpecial(row);
      described +=
          (row == 0 ? "" : "|") +
          (isSpecial ? "-"
                     : texts->AsTypedArray<ort::core::RIndirectString>().GetElement(row).Get().toUtf8());
    }
    return described;
  }

  services::InstalledServices services_{services::MakeFixedMeasurer()};
  ort::core::FunctionRegistry registry_;
};

TEST_F(Expressions, HaveAValueForEveryRow) {
  struct {
    char const* source;
    char const* values;
  } const cases[] = {
      // Literals and constants.
      {"1.5e1", "15|15|15"},
      {"0x1F", "31|31|31"},
      {R"('it\'s' + "\u00e9\x41\u{1F600}\t")", "it'sé\x41😀\t|it'sé\x41😀\t|it'sé\x41😀\t"},
      {"null", "-|-|-"},
      {"1 / 0", "Infinity|Infinity|Infinity"},
      {"0 / 0", "-|-|-"},
      {"round(PI * 1000) + ' ' + true", "3142 true|3142 true|3142 true"},
      // Fields.
      {"datum.i", "3|4|0"},
      {"datum['n'] + datum[\"i\"]", "10.5|1.5|0"},
      {"datum.o.p + datum['o']['p'] + datum['a b']", "3|6|9"},
      {"datum.s[0] + datum.s.length", "A7|-|z3"},
      // Strength of operators.
      {"1 + 2 * 3 - 4 / 2", "5|5|5"},
      {"(1 + 2) * -(3 ** 1)", "-9|-9|-9"},
      {"2 ** 3 ** 2 + 7 % 4", "515|515|515"},
      {"-7 % 3", "-1|-1|-1"},
      {"10 - 3 - 2", "5|5|5"},
      {"1 < 2 == true && !false || null", "true|true|true"},
      {"datum.n > 0 ? 'up' : datum.n < 0 ? 'down' : 'level'", "up|down|level"},
      // Null is 0 and "null", what is missing otherwise is NaN and "undefined".
      {"datum.m * 2", "2|0|-"},
      {"'m' + datum.m", "m1|mnull|mundefined"},
      {"datum.m > 0", "true|false|false"},
      {"datum.m <= 5", "true|true|false"},
      {"'a' + null + 0 / 0 + 1 / (0 - 0)", "anullNaNInfinity|anullNaNInfinity|anullNaNInfinity"},
      {"null + 1 < 2 && !(null == 0)", "true|true|true"},
      {"datum.m === null", "false|true|false"},
      {"isNaN(datum.m * 1) + '' + isValid(datum.m * 1)", "falsetrue|falsetrue|truefalse"},
      {"datum.n > 0 ? datum.m : 0.5", "1|0.5|0.5"},
      {"datum.n < 0 ? datum.m : 'x'", "x|-|x"},
      {"datum.s * 1", "-|0|-"},
      {"'' == 0", "true|true|true"},
      {"'' == null", "false|false|false"},
      {"datum.d < datetime(1980, 0, 1)", "false|false|true"},
      {"format(datum.m, '.1f') + timeFormat(datum.d, '%Y')", "1.02020|null2021|nullnull"},
      {"upper(datum.m)", "1|NULL|UNDEFINED"},
      {"toNumber(datum.s)", "-|-|-"},
      {"datum.n > 0 && datum.i", "3|0|0"},
      {"(datum.b ? 1 : datum.d) + 1", "2|1640908800001|1"},
      {"datum.m == null", "false|true|true"},
      {"datum.m !== null && datum.m != undefined", "true|false|false"},
      {"datum.m != 2", "true|true|true"},
      {"datum.m == datum.m", "true|true|true"},
      {"datum.m || 9", "1|9|9"},
      {"isValid(datum.m) ? datum.m : null", "1|-|-"},
      {"max(datum.m, -1)", "1|0|-"},
      // Numbers among other types.
      {"datum.v * 1", "12|-|-100"},
      {"datum.v == 12", "true|false|false"},
      {"datum.v === 12", "false|false|false"},
      {"datum.b + 1", "2|1|1"},
      {"datum.i + '%'", "3%|4%|0%"},
      {"datum.i + datum.v", "312|4x|0-1e2"},
      {"+datum.v", "12|-|-100"},
      // Truth.
      {"!datum.s", "false|true|false"},
      {"!datum.n", "false|false|true"},
      {"datum.s || 'none'", "Ann Lee|none|zoë"},
      {"datum.i && datum.n", "7.5|-2.5|0"},
      {"datum.b === true", "true|false|false"},
      {"if(datum.b, 1, 2)", "1|2|2"},
      {"toString(datum.b)", "true|false|-"},
      {"toBoolean(datum.i)", "true|true|false"},
      {"toBoolean('0')", "false|false|false"},
      // Functions of numbers.
      {"abs(datum.n) + ceil(0.2) + floor(0.9) + sign(-3)", "7.5|2.5|0"},
      {"round(datum.n)", "8|-2|0"},
      {"clamp(datum.n, -1, 5)", "5|-1|0"},
      {"min(datum.n, datum.i, 2)", "2|-2.5|0"},
      {"sqrt(pow(datum.i, 2)) + exp(0) + log(1) + sin(0) + cos(0) + tan(0) + hypot(3, 4)", "10|11|7"},
      {"log(datum.i - 5)", "-|-|-"},
      {"atan2(0, 1) + asin(0) + acos(1) + atan(0)", "0|0|0"},
      {"isNaN(datum.v) || isNaN(datum.v * 1)", "false|true|false"},
      {"isFinite(1 / datum.i)", "true|true|false"},
      {"isValid(datum.i / datum.i)", "true|true|false"},
      {"inrange(datum.i, [4, 3])", "true|true|false"},
      {"inrange(datum.i, [3, 4], false)", "false|true|false"},
      {"isNumber(datum.m) + '' + isString(datum.s) + isDate(datum.d) + isBoolean(datum.n)",
       "truetruetruefalse|falsetruetruefalse|falsetruefalsefalse"},
      // Functions of texts.
      {"upper(datum.s) + lower('ÀB')", "ANN LEEàb|àb|ZOËàb"},
      {"trim('  a b ') + length('abc')", "a b3|a b3|a b3"},
      {"substring('abcdef', 4, 1) + slice('abcdef', -2) + slice('abcdef', 1, -3)", "bcdefbc|bcdefbc|bcdefbc"},
      {"indexof(datum.s, 'e') + lastindexof('banana', 'an')", "8|2|2"},
      {"indexof(['', 'zoë'], datum.s)", "-1|0|1"},
      {"replace(datum.s, 'n', '-')", "A-n Lee||zoë"},
      {"split(datum.s, ' ')[1]", "Lee|-|-"},
      {"length(split(datum.s, ' '))", "2|1|1"},
      {"pad(datum.i, 3, '0', 'left') + pad('a', 2) + '.'", "003a .|004a .|000a ."},
      {"truncate('Antarctica', 6) + truncate('Antarctica', 5, 'left', '.')",
       "Antar….tica|Antar….tica|Antar….tica"},
      {"format(datum.n, '.2f')", "7.50|−2.50|0.00"},
      {"format(1234.5, ',.1f')", "1,234.5|1,234.5|1,234.5"},
      {"toNumber(datum.v) + parseFloat('1.5em') + parseInt('7.9')", "20.5|-|-91.5"},
      {"toString(1e11) + ' ' + 1e21 + ' ' + 1.5e-7 + ' ' + 0.000123 + ' ' + (0 - 0.5)",
       "100000000000 1e+21 1.5e-7 0.000123 -0.5|100000000000 1e+21 1.5e-7 0.000123 -0.5|"
       "100000000000 1e+21 1.5e-7 0.000123 -0.5"},
      // Dates.
      {"year(datum.d) + month(datum.d) / 100", "2020.02|2021.11|1970"},
      {"date(datum.d) + day(datum.d) / 10 + quarter(datum.d) / 100", "1.01|31.54|1.41"},
      {"dayofyear(datum.d) + week(datum.d) / 100", "61.09|365.52|1"},
      {"hours(datum.t) + ':' + minutes(datum.t) + ':' + seconds(datum.t) + '.' + milliseconds(datum.t)",
       "12:34:56.500|0:0:0.0|23:59:59.0"},
      {"datum.d < datetime(2021, 0, 1)", "true|false|true"},
      {"datum.d >= '2021-12-31'", "false|true|false"},
      {"datum.d == '2020-03-01'", "true|false|false"},
      {"(datetime(2020, 0, 31) - datetime(2020, 0, 1)) / 864e5", "30|30|30"},
      {"datetime(2020, 0, 31 + datum.i)", "2020-02-03|2020-02-04|2020-01-31"},
      {"datetime(99, 0)", "1999-01-01|1999-01-01|1999-01-01"},
      {"toDate(864e5 * datum.i)", "1970-01-04|1970-01-05|1970-01-01"},
      {"time('1970-01-02') + utc(1970, 0, 1)", "86400000|86400000|86400000"},
      {"timeFormat(datum.t, '%d %b')", "01 Mar|01 Jan|29 Feb"},
      {"monthFormat(month(datum.t)) + dayAbbrevFormat(0)", "MarchSun|JanuarySun|FebruarySun"},
      {"datum.b ? datum.d : datum.t", "2020-03-01|1999-01-01|2000-02-29T23:59:59"},
  };
  for (auto const& [source, values] : cases) {
    std::string described = Evaluate(source);
    // What of a date-time is not needed to tell it apart.
    for (std::string const zeros : {"T00:00:00.0000", "T00:00:00", ".0000"}) {
      for (auto at = described.find(zeros); at != std::string::npos; at = described.find(zeros))
        described.erase(at, zeros.size());
    }
    EXPECT_EQ(described, values) << source;
  }
}

TEST_F(Expressions, TestRows) {
  struct {
    char const* source;
    char const* values;
  } const cases[] = {
      {"datum.n", "true|true|false"},
      {"datum.s && datum.m", "true|false|false"},
      {"datum.s || datum.m || datum.b", "true|false|true"},
      {"true", "true|true|true"},
      {"null", "false|false|false"},
      {"datum.b", "true|false|false"},
  };
  for (auto const& [source, values] : cases) EXPECT_EQ(Evaluate(source, true), values) << source;
}

TEST_F(Expressions, TellWhatIsWrongAndWhere) {
  struct {
    std::string source;
    std::string message;
  } const cases[] = {
      {"", "column 1: expected a value, but found the end"},
      {"1 +", "column 4: expected a value, but found the end"},
      {"'é' + )", "column 7: expected a value, but found ')'"},
      {"(1", "column 3: expected ')', but found the end"},
      {"1 2", "column 3: expected an operator or the end, but found a number"},
      {"datum.a = 1", "column 9: expected an operator or the end, but found '='; compare with =="},
      {"/a/",
       "column 1: expected a value, but found '/'; regular expressions are not supported; search with "
       "indexof"},
      {"'abc", "column 1: the text has no closing quote"},
      {"'\\", "column 2: the text has no closing quote"},
      {"'\\u12'", "column 2: the escape needs 4 hexadecimal digits"},
      {"'\\0'", "column 2: this escape is not supported; use \\u and four digits"},
      {"12abc", "column 1: ill-formed number"},
      {"1 # 2", "column 3: the character '#' has no meaning here"},
      {"-2 ** 2", "column 1: put brackets around the power or what is raised, as in -(2 ** 2)"},
      {"flor(1)", "column 1: no function is named 'flor'; did you mean 'floor'?"},
      {"now()", "column 1: now is not supported; a chart does not depend on when it is drawn; write a date"},
      {"pow(1)", "column 1: pow takes 2 values, not 1"},
      {"substring('a')", "column 1: substring takes 2 to 3 values, not 1"},
      {"datum.s.toUpperCase()",
       "column 20: a value has no functions of its own; write toUpperCase(...) with the value in it"},
      {"people", "column 1: no value is named 'people'; a field is written datum.people"},
      {"Pi", "column 1: no value is named 'Pi'; did you mean 'PI'?"},
      {"floor + 1", "column 1: 'floor' is a function; write floor(...)"},
      {"1 + datum.nn",
       "$: column 5: no field 'nn' in rows.json; did you mean 'n'? Its fields are n, i, m, s, d, t, "
       "b, v, o.p, a b"},
      {"datum", "$: column 1: datum is the whole row; name a field, as in datum.name"},
      {"datum[datum.s]", "$: column 1: the name of a field must be written out, as in datum['name']"},
      {"split(datum.s, 'a')",
       "$: column 1: a list is no value to calculate with; take one of its parts, as in list[0]"},
      {"datum.d > 'soon'", "$: column 1: the text is no date; write one such as '2020-03-01'"},
      {"format(1, datum.s)", "$: column 1: a pattern must be a text that is the same in every row"},
      {"format(1, '.z')", "$: column 1: "},
      {"inrange(1, 2)",
       "$: column 1: the range of inrange is a list of two values, as in inrange(datum.a, [0, 10])"},
      {"1" + std::string(Expression::kMostBytes, ' '), "10001 bytes of an expression are more than 10000"},
      {std::string(200, '(') + "1", "column 101: more than 100 brackets or operators within one another"},
      {std::string(200, '!') + "1", "column 101: more than 100 brackets or operators within one another"},
  };
  for (auto const& [source, message] : cases) {
    std::string const told = Evaluate(source);
    EXPECT_EQ(message.ends_with(": ") ? told.substr(0, message.size()) : told, message) << source;
  }
  std::string sum = "1";
  for (int i = 0; i < 1'200; ++i) sum += "+1";
  EXPECT_EQ(Evaluate(sum), "column 1: more than 500 levels");
  EXPECT_EQ(Evaluate(sum.substr(0, 801)), "401|401|401");
}

TEST(ExpressionTransforms, WorkInSequence) {
  ChartDrawing const drawing;
  auto const draw = [&](std::string const& transform, std::string const& encoding) {
    return MakeDocument("\"text\"", R"("a" 1|"b" 2|"c" 3)", encoding, "\"transform\":[" + transform + "],");
  };
  std::string const text = R"("text":{"field":"label"})";
  std::string const label = R"({"calculate":"datum.f0 + datum.twice","as":"label"})";
  struct {
    std::string transform;
    char const* texts;
  } const cases[] = {
      {R"({"calculate":"datum.f1 * 2","as":"twice"},)" + label, "a2|b4|c6"},
      {R"({"filter":"datum.f1 > 1"},{"calculate":"datum.f1 * 2","as":"twice"},)" + label, "b4|c6"},
      {R"({"calculate":"datum.f1 * 2","as":"twice"},{"filter":{"or":["datum.twice > 5",{"field":"f0","equal":"a"}]}},)" +
           label,
       "a2|c6"},
      {R"({"filter":{"not":"datum.f0 == 'b'"}},{"calculate":"1","as":"twice"},)" + label, "a1|c1"},
      {R"({"calculate":"datum.f1 > 1 ? 'more' : 'one'","as":"f0"},{"aggregate":[{"op":"sum","field":"f1","as":"twice"}],)"
       R"("groupby":["f0"]},)" +
           label,
       "one1|more5"},
      {R"({"calculate":"datum.f1 % 2","as":"f1"},{"calculate":"datum.f1","as":"twice"},)" + label,
       "a1|b0|c1"},
  };
  for (auto const& [transform, texts] : cases) {
    Scene const scene = drawing.Draw(draw(transform, text)).scene;
    EXPECT_EQ(ReadTexts(scene, "marks"), texts) << transform;
  }
  EXPECT_EQ(drawing.DescribeError(draw(R"({"calculate":"datum.f1 +","as":"x"})", text)),
            "chart.vl.json: $.transform[0].calculate: column 11: expected a value, but found the end");
  EXPECT_EQ(
      drawing.DescribeError(draw(R"({"filter":{"and":["datum.f9"]}})", text)),
      "chart.vl.json: $.transform[0].filter.and[0]: column 1: no field 'f9' in $.data.values; did you mean "
      "'f0'? Its fields are f0, f1");
  EXPECT_EQ(drawing.DescribeError(draw(R"({"filter":"datum.f1 > 9"})", text)),
            "chart.vl.json: $.transform[0].filter: no row of $.data.values passes the filter");
  EXPECT_EQ(drawing.DescribeError(draw(R"({"calculate":"1"})", text)),
            "chart.vl.json: $.transform[0].as: is missing; name the new field");
}

}  // namespace
}  // namespace ostrel::charts
