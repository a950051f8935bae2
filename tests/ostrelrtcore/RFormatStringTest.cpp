#include <gtest/gtest.h>

#include <climits>
#include <cstdint>

#include "ostrelrtcore/RFormatString.h"

namespace {

using ort::core::RFormatString;

TEST(RFormatString, FillsTheLowestOpenPlaceWhereverItOccurs) {
  auto const fill = [](wchar_t const* format, std::initializer_list<int> values) {
    RFormatString message(format);
    for (int const value : values) message = message.arg(value, 0, 10, L' ');
    return OStringCore(message);
  };
  struct {
    wchar_t const* format;
    std::initializer_list<int> values;
    wchar_t const* expected;
  } const cases[] = {
      {L"row %1 of %2", {3, 7}, L"row 3 of 7"},
      {L"%2 before %1", {3, 7}, L"7 before 3"},
      {L"%1%1 %3", {1, 2}, L"11 2"},
      {L"%9", {-5}, L"-5"},
      {L"%1 %2", {4}, L"4 %2"},
      {L"%1", {4, 5}, L"4"},
      {L"none", {4}, L"none"},
      {L"", {4}, L""},
      {L"%12", {4}, L"42"},
      {L"100% %0 %a %%1 %", {4}, L"100% %0 %a %4 %"},
      {L"%1%2", {INT_MIN, INT_MAX}, L"-21474836482147483647"},
  };
  for (auto const& c : cases)
    EXPECT_EQ(fill(c.format, c.values), OStringCore(c.expected)) << OStringCore(c.format);
}

TEST(RFormatString, NeverSearchesWhatItFilledIn) {
  EXPECT_EQ(RFormatString(L"%1 %2").arg(OStringCore(L"%2")).arg(OStringCore(L"%1")).ToString(),
            OStringCore(L"%2 %1"));
  EXPECT_EQ(RFormatString(L"%%1 %1").arg(OStringCore(L"1%")).arg(5).ToString(), OStringCore(L"%1% 1%"));
}

TEST(RFormatString, LeavesTheMessageItWasAskedOfAsItWas) {
  RFormatString const message(L"<%1>");
  EXPECT_EQ(message.arg(1).ToString(), OStringCore(L"<1>"));
  EXPECT_EQ(message.arg(2).ToString(), OStringCore(L"<2>"));
  EXPECT_EQ(message.ToString(), OStringCore(L"<%1>"));
}

TEST(RFormatString, WritesNumbersInBasesAndFields) {
  struct {
    int value;
    int fieldWidth;
    int base;
    wchar_t fill;
    wchar_t const* expected;
  } const cases[] = {
      {42, 5, 10, L' ', L"   42"},
      {42, -5, 10, L' ', L"42   "},
      {42, 2, 10, L'*', L"42"},
      {42, 1, 10, L'*', L"42"},
      {-42, 5, 10, L'*', L"**-42"},
      {-42, 5, 10, L'0', L"-0042"},
      {-42, -5, 10, L'0', L"-4200"},
      {255, 0, 16, L' ', L"ff"},
      {-255, 0, 16, L' ', L"-ff"},
      {5, 0, 2, L' ', L"101"},
      {35, 0, 36, L' ', L"z"},
      {35, 0, 37, L' ', L"35"},
      {35, 0, 1, L' ', L"35"},
      {35, 0, -16, L' ', L"35"},
      {1, 3, 10, L'\U0001F600', L"\U0001F600\U0001F6001"},
      {INT_MIN, 0, 2, L' ', L"-10000000000000000000000000000000"},
  };
  for (auto const& c : cases) {
    EXPECT_EQ(RFormatString(L"%1").arg(c.value, c.fieldWidth, c.base, c.fill).ToString(),
              OStringCore(c.expected));
  }
  EXPECT_EQ(RFormatString(L"%1").arg(UINT64_MAX, 0, 10, L' ').ToString(),
            OStringCore(L"18446744073709551615"));
  EXPECT_EQ(RFormatString(L"%1").arg(UINT64_MAX, -66, 2, L'.').ToString().right(3), OStringCore(L"1.."));
}

TEST(RFormatString, BoundsTheWidthOfAField) {
  for (int const width : {INT_MAX, INT_MIN, 4097}) {
    EXPECT_EQ(RFormatString(L"%1").arg(1, width).ToString().length(), 4096);
  }
}

}  // namespace
