#include <random>
#include <stdexcept>

#include "ostreltransforms/Registration.h"
#include "ostreltransforms/RowDriver.h"
#include "ostreltransforms/TestValues.h"
#include "ostreltransforms/TransformNames.h"

namespace {

using namespace TestValues;
using RowDriver::ErrorOf;

class DateFunctions : public testing::Test {
 protected:
  DateFunctions() { OstrelTransforms::RegisterOstrelSetValueMultiFunctions(registry_); }
  Value Ask(wchar_t const* name, std::vector<Value> const& inputs) { return Call(registry_, name, inputs); }
  int AskInt(wchar_t const* name, std::vector<Value> const& inputs) { return Ask(name, inputs)->GetInt32(); }
  OrtDateTime Start(int period, OrtDateTime date, int startMonth = 1, int weekStart = 1) {
    return Ask(TransformNames::START_OF_PERIOD,
               {I32(period), factory::MakeDateTime(date), I32(startMonth), I32(weekStart)})
        ->GetDateTime();
  }

  FunctionRegistry registry_;
};

Value Instant(OrtDateTime date) { return factory::MakeDateTime(date); }
OrtDateTime const kLast = OrtDateTime::FromValue(UINT64_MAX);

TEST_F(DateFunctions, DifferencesAreTruncatedTowardZero) {
  OrtDateTime const noon(2020, 3, 1, 12);
  struct {
    OrtDateTime a, b;
    int64 days, hours, minutes, seconds;
  } const cases[] = {
      {OrtDateTime(2020, 3, 2, 11, 59, 59, 9999), noon, 0, 23, 1439, 86399},
      {OrtDateTime(2020, 3, 2, 12), noon, 1, 24, 1440, 86400},
      {OrtDateTime(2020, 3, 1, 12, 0, 1, 9999), noon, 0, 0, 0, 1},
      {OrtDateTime(2020, 2, 28, 10, 29, 30), noon, -2, -49, -2970, -178230},
      {noon, noon, 0, 0, 0, 0},
      {kLast, OrtDateTime(), 21350398233, 512409557603, 30744573456182, 1844674407370955},
  };
  for (auto const& [a, b, days, hours, minutes, seconds] : cases) {
    struct {
      wchar_t const* name;
      int64 expected;
    } const units[] = {{TransformNames::DAYS_DIFFERENCE, days},
                       {TransformNames::HOURS_DIFFERENCE, hours},
                       {TransformNames::MINUTES_DIFFERENCE, minutes},
                       {TransformNames::SECONDS_DIFFERENCE, seconds}};
    for (auto const& [name, expected] : units) {
      ExpectEqual(Ask(name, {Instant(a), Instant(b)}), I64(expected), OStringCore(name).toUtf8());
      ExpectEqual(Ask(name, {Instant(b), Instant(a)}), I64(-expected), OStringCore(name).toUtf8());
    }
  }
}

TEST_F(DateFunctions, WeekStartIsNotBroughtBack) {
  // A Sunday, and the six days that follow.
  for (int day = 0; day < 7; ++day) {
    for (int const weekStart : {1, 3, 7, 0, -2, 9}) {
      EXPECT_EQ(AskInt(TransformNames::DAYS_TO_WEEK_START,
                       {Instant(OrtDateTime(2020, 3, 1 + day, 23)), I32(weekStart)}),
                day - weekStart + 1);
    }
  }
  EXPECT_EQ(AskInt(TransformNames::DAYS_TO_WEEK_START, {Instant(OrtDateTime(2020, 3, 1)), I32(INT_MIN)}),
            INT_MIN + 1);
}

TEST_F(DateFunctions, FiscalYearIsNamedAfterItsEnd) {
  struct {
    int startMonth, month, expected;
  } const cases[] = {{1, 1, 2020}, {1, 12, 2020}, {7, 7, 2021}, {7, 6, 2020}, {12, 11, 2020}, {12, 12, 2021}};
  for (auto const& [startMonth, month, expected] : cases) {
    EXPECT_EQ(AskInt(TransformNames::FISCAL_YEAR, {I32(startMonth), Instant(OrtDateTime(2020, month, 30))}),
              expected);
  }
  for (int const startMonth : {0, 13, -1, INT_MIN}) {
    EXPECT_EQ(ErrorOf([&] {
                Ask(TransformNames::FISCAL_YEAR, {I32(startMonth), Instant(OrtDateTime(2020, 1, 1))});
              }),
              0);
  }
}

TEST_F(DateFunctions, HasTimeChecksThePartsAskedFor) {
  OrtDateTime const dates[] = {
      {2020, 3, 1, 5}, {2020, 3, 1, 0, 5}, {2020, 3, 1, 0, 0, 5}, {2020, 3, 1, 0, 0, 0, 5}};
  for (std::size_t part = 0; part < 4; ++part) {
    for (unsigned checks = 0; checks < 16; ++checks) {
      std::vector<Value> inputs = {Instant(dates[part])};
      for (unsigned i = 0; i < 4; ++i) inputs.push_back(Flag((checks >> i & 1) != 0));
      EXPECT_EQ(Ask(TransformNames::HAS_TIME, inputs)->GetBool(), (checks >> part & 1) != 0)
          << part << " " << checks;
    }
  }
}

TEST_F(DateFunctions, PeriodsBeginWhereTheirRuleSays) {
  OrtDateTime const instant(2021, 2, 10, 13, 14, 15, 16);
  struct {
    int period;
    OrtDateTime date;
    int startMonth, weekStart;
    OrtDateTime expected;
  } const cases[] = {
      {0, OrtDateTime(2021, 3, 15), 4, 1, OrtDateTime(2020, 4, 1)},
      {0, OrtDateTime(2021, 4, 15), 4, 1, OrtDateTime(2021, 4, 1)},
      {1, OrtDateTime(2020, 2, 29), 1, 1, OrtDateTime(2020, 1, 1)},
      {1, OrtDateTime(2020, 5, 1), 1, 1, OrtDateTime(2020, 4, 1)},
      {1, OrtDateTime(2020, 12, 31, 23), 1, 1, OrtDateTime(2020, 10, 1)},
      {1, OrtDateTime(2021, 2, 3), 4, 1, OrtDateTime(2021, 1, 1)},
      {1, OrtDateTime(2021, 5, 3), 4, 1, OrtDateTime(2021, 4, 1)},
      {1, OrtDateTime(2021, 1, 3), 12, 1, OrtDateTime(2020, 12, 1)},
      {2, OrtDateTime(2020, 12, 1, 7), 1, 1, OrtDateTime(2020, 12, 1)},
      {2, OrtDateTime(2020, 12, 15), 1, 1, OrtDateTime(2021, 1, 1)},
      {2, OrtDateTime(2020, 1, 31), 1, 1, OrtDateTime(2020, 2, 1)},
      {3, OrtDateTime(2020, 3, 4, 5), 1, 1, OrtDateTime(2020, 3, 1)},
      {3, OrtDateTime(2020, 3, 1, 5), 1, 3, OrtDateTime(2020, 3, 3)},
      {4, instant, 1, 1, OrtDateTime(2021, 2, 10)},
      {5, instant, 1, 1, OrtDateTime(2021, 2, 10, 13)},
      {6, instant, 1, 1, OrtDateTime(2021, 2, 10, 13, 14)},
      {7, instant, 1, 1, OrtDateTime(2021, 2, 10, 13, 14, 15)},
      {8, instant, 1, 1, OrtDateTime()},
      {-1, instant, 1, 1, OrtDateTime()},
  };
  int place = 0;
  for (auto const& [period, date, startMonth, weekStart, expected] : cases) {
    EXPECT_EQ(Start(period, date, startMonth, weekStart).GetValue(), expected.GetValue()) << "case " << place;
    ++place;
  }
}

// Fiscal quarters are three months long, hold their date and tile the fiscal year.
TEST_F(DateFunctions, FiscalQuartersTileTheirYear) {
  std::mt19937 random(9);
  for (int i = 0; i < 500; ++i) {
    OrtDateTime const date(static_cast<int>(1600 + random() % 800), static_cast<int>(1 + random() % 12),
                           static_cast<int>(1 + random() % 28));
    int const startMonth = static_cast<int>(1 + random() % 12);
    OrtDateTime const year = Start(0, date, startMonth), quarter = Start(1, date, startMonth);
    OrtDateTimeParts const parts = quarter.GetOrtDateTimeParts();
    OrtDateTime const next(parts.GetYear(), parts.GetMonth() + 3, 1);
    EXPECT_LE(quarter, date);
    EXPECT_GT(next, date);
    EXPECT_LE(year, quarter);
    EXPECT_EQ(parts.GetDay(), 1);
    EXPECT_EQ((parts.GetMonth() - startMonth + 12) % 3, 0);
    EXPECT_EQ(Start(1, quarter, startMonth), quarter);
  }
}

// Months far outside 1 to 12 and dates at both ends neither fault nor hang.
TEST_F(DateFunctions, ExtremeInputsSaturate) {
  for (int period = 0; period < 8; ++period) {
    for (int const startMonth : {INT_MIN, -5, 0, 13, INT_MAX}) {
      for (int const weekStart : {INT_MIN, INT_MAX}) {
        for (OrtDateTime const date : {OrtDateTime(), kLast, OrtDateTime(2020, 3, 1)}) {
          OrtDateTime const start = Start(period, date, startMonth, weekStart);
          EXPECT_TRUE(period < 4 || start <= date) << period;
        }
      }
    }
  }
  EXPECT_EQ(Start(3, kLast, 1, INT_MAX), kLast);
}

TEST_F(DateFunctions, TooFewInputsAreOutOfRange) {
  struct {
    wchar_t const* name;
    std::vector<Value> inputs;
  } const cases[] = {
      {TransformNames::DAYS_DIFFERENCE, {Instant(kLast), Instant(kLast)}},
      {TransformNames::HOURS_DIFFERENCE, {Instant(kLast), Instant(kLast)}},
      {TransformNames::MINUTES_DIFFERENCE, {Instant(kLast), Instant(kLast)}},
      {TransformNames::SECONDS_DIFFERENCE, {Instant(kLast), Instant(kLast)}},
      {TransformNames::DAYS_TO_WEEK_START, {Instant(kLast), I32(1)}},
      {TransformNames::FISCAL_YEAR, {I32(1), Instant(kLast)}},
      {TransformNames::HAS_TIME, {Instant(kLast), Flag(true), Flag(true), Flag(true), Flag(true)}},
      {TransformNames::START_OF_PERIOD, {I32(1), Instant(kLast), I32(1), I32(1)}},
      {TransformNames::TEMPORAL_TICK_FREQUENCY, {I32(1), R32(1), I32(1), Ints({})}},
  };
  for (auto const& [name, inputs] : cases) {
    for (std::size_t count = 0; count < inputs.size(); ++count) {
      try {
        Ask(name, {inputs.begin(), inputs.begin() + static_cast<std::ptrdiff_t>(count)});
        ADD_FAILURE() << OStringCore(name).toUtf8() << " " << count;
      } catch (std::out_of_range const& error) {
        EXPECT_STREQ(error.what(), "invalid vector<T> subscript");
      }
      // An input that is there is read before the count of those that follow.
      std::vector<Value> wrong(inputs.begin(), inputs.begin() + static_cast<std::ptrdiff_t>(count));
      wrong.push_back(Text(L"a"));
      EXPECT_EQ(ErrorOf([&, &called = name] { Ask(called, wrong); }), 55);
    }
    std::vector<Value> more = inputs;
    more.push_back(Text(L"a"));
    EXPECT_NO_THROW(Ask(name, more));
  }
}

}  // namespace
