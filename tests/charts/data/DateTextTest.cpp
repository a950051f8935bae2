#include <gtest/gtest.h>

#include "charts/data/DateText.h"
#include "charts/data/TableText.h"

namespace ostrel::charts {
namespace {

std::string Describe(std::optional<DateText> const& date) {
  if (!date) return "none";
  return date->hasTime ? date->instant.ToIsoText() : date->instant.ToIsoDateText();
}

struct Case {
  char const* text;
  char const* date;
};

TEST(DateTextTest, PlainDatesAreThoseThatNothingElseLooksLike) {
  Case const cases[] = {{"2000-01-31", "2000-01-31"},
                        {"2000/01/31", "2000-01-31"},
                        {"2000-02", "2000-02-01"},
                        {"2000-01-31T08:00:00.000Z", "2000-01-31T08:00:00.0000"},
                        {"2000-01-31 08:05", "2000-01-31T08:05:00.0000"},
                        {"2000/01/31 08:05", "2000-01-31T08:05:00.0000"},
                        {"2000-01-31T08:00:00+02:00", "2000-01-31T06:00:00.0000"},
                        {"2000-01-31T00:00", "2000-01-31T00:00:00.0000"},
                        {"2000", "none"},
                        {"2000/01", "none"},
                        {"2000-13", "none"},
                        {"2000-00", "none"},
                        {"0000-01", "none"},
                        {"1999-02-29", "none"},
                        {"2000-1-31", "none"},
                        {"2000/01-31", "none"},
                        {"2000-01/31", "none"},
                        {"31/01/2000", "none"},
                        {"Jan 31 2000", "none"},
                        {"", "none"}};
  for (auto const& [text, date] : cases) EXPECT_EQ(Describe(ReadPlainDate(text)), date) << text;
  EXPECT_EQ(Describe(ReadPlainDate("2000/01/31 " + std::string(100, '1'))), "none");
}

TEST(DateTextTest, FreeDatesAreReadWhereADateIsAskedFor) {
  Case const cases[] = {{"2012", "2012-01-01"},
                        {" 2012-01-31 ", "2012-01-31"},
                        {"1/31/2012", "2012-01-31"},
                        {"1/31/12", "2012-01-31"},
                        {"1/31/68", "1968-01-31"},
                        {"2012/1/31", "2012-01-31"},
                        {"1/31/2012 14:05", "2012-01-31T14:05:00.0000"},
                        {"1/31/2012 2:05:09 PM", "2012-01-31T14:05:09.0000"},
                        {"1/31/2012 12:00 AM", "2012-01-31T00:00:00.0000"},
                        {"Jan 31 2012", "2012-01-31"},
                        {"january 31, 2012", "2012-01-31"},
                        {"31 Jan 2012", "2012-01-31"},
                        {"1-May-12", "2012-05-01"},
                        {"2012 Sept 9", "2012-09-09"},
                        {"Jan 2012", "2012-01-01"},
                        {"Tue, 31 Jan 2012 14:05:00 GMT", "2012-01-31T14:05:00.0000"},
                        {"Tue Jan 31 2012 14:05:00 GMT+0100", "2012-01-31T13:05:00.0000"},
                        {"Jan 31 2012 14:05:00.25 -02:30", "2012-01-31T16:35:00.2500"},
                        {"Feb 30 2012", "none"},
                        {"Feb 28 2012 23:59:59.99999", "2012-02-29T00:00:00.0000"},
                        {"13/13/2012", "none"},
                        {"1/31/2012 24:00", "none"},
                        {"1/31/2012 13:00 PM", "none"},
                        {"Jan Feb 2012", "none"},
                        {"Jan 31 2012 noon", "none"},
                        {"1/2/3/2012", "none"},
                        {"12345678901234567890", "none"},
                        {"0000", "none"},
                        {"Jan", "none"},
                        {"-", "none"},
                        {":", "none"},
                        {"1:", "none"},
                        {"Jan 1 2012 +1", "none"},
                        {"31. J\xC3\xA4n 2012", "none"}};
  for (auto const& [text, date] : cases) EXPECT_EQ(Describe(ReadFreeDate(text)), date) << text;
}

TEST(DateTextTest, PatternsMatchAWholeText) {
  struct PatternCase {
    char const* pattern;
    char const* text;
    char const* date;
  };
  PatternCase const cases[] = {{"%d %b %Y", "31 Jan 2012", "2012-01-31"},
                               {"%d.%m.%y", "31.01.68", "2068-01-31"},
                               {"%d.%m.%y", "31.01.69", "1969-01-31"},
                               {"%Y%m%d", "20120131", "2012-01-31"},
                               {"%Y-%j", "2012-366", "2012-12-31"},
                               {"%Y-%j", "2012-000", "none"},
                               {"%A, %B %e %Y", "Tuesday, January  1 2013", "2013-01-01"},
                               {"%H:%M:%S.%L", "14:05:09.5", "1900-01-01T14:05:09.5000"},
                               {"%Y %I %p", "2012 12 am", "2012-01-01T00:00:00.0000"},
                               {"%Y %H%Z", "2012 10+0130", "2012-01-01T08:30:00.0000"},
                               {"100%% %Y", "100% 2012", "2012-01-01"},
                               {"%Y", "2012x", "none"},
                               {"%Y-%m", "2012", "none"},
                               {"%m/%d/%Y", "13/01/2012", "none"},
                               {"%d %b", "31 xyz", "none"}};
  for (auto const& [pattern, text, date] : cases) {
    EXPECT_EQ(Describe(DatePattern(pattern).Read(text)), date) << pattern << " of " << text;
  }
  EXPECT_EQ(MessageOf([] { DatePattern pattern("%Y %Q"); }), "date pattern '%Y %Q': '%Q' is not supported");
  EXPECT_EQ(MessageOf([] { DatePattern pattern("%Y%"); }), "date pattern '%Y%': '%' is not supported");
}

}  // namespace
}  // namespace ostrel::charts
