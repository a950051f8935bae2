#include "ostreltransforms/Registration.h"
#include "ostreltransforms/RowDriver.h"
#include "ostreltransforms/TestValues.h"
#include "ostreltransforms/TransformNames.h"

namespace {

using namespace TestValues;
using RowDriver::ErrorOf;

class WhenFunctions : public testing::Test {
 protected:
  WhenFunctions() { OstrelTransforms::RegisterOstrelWhenFunctions(registry_); }
  bool Ask(wchar_t const* name, std::vector<Value> const& inputs) {
    return Call(registry_, name, inputs)->GetBool();
  }
  int ErrorOfAsking(wchar_t const* name, std::vector<Value> const& inputs) {
    return ErrorOf([&] { Ask(name, inputs); });
  }

  FunctionRegistry registry_;
};

Value const kNoCentre = Special(StoreTypeInfo::Real64);
Value Table(factory::NamedValues columns) { return factory::MakeTable(std::move(columns)); }
Value Texts(std::vector<wchar_t const*> const& texts) {
  std::vector<RIndirectString> rows;
  for (wchar_t const* const text : texts) rows.emplace_back(OStringCore(text));
  return Column(StoreTypeInfo::String, rows);
}
Value Instant(int day) { return factory::MakeDateTime(OrtDateTime(2020, 3, day)); }

TEST_F(WhenFunctions, RangesAreComparedWithZeroAndTheCentre) {
  struct {
    wchar_t const* name;
    std::vector<Value> inputs;
    bool expected;
  } const cases[] = {
      {TransformNames::STRADDLES_ZERO, {R64(-1), R64(1)}, true},
      {TransformNames::STRADDLES_ZERO, {I32(-1), R64(1)}, true},
      {TransformNames::STRADDLES_ZERO, {R64(0), R64(1)}, false},
      {TransformNames::STRADDLES_ZERO, {R64(-1), R64(0)}, false},
      {TransformNames::STRADDLES_ZERO, {R64(kNaN), R64(1)}, false},
      {TransformNames::STRADDLES_ZERO, {Text(L"a"), Text(L"b")}, false},
      {TransformNames::STRADDLES_ZERO, {Instant(1), Instant(2)}, false},
      {TransformNames::IS_DIVERGING_AUTO, {R64(-5), R64(5), kNoCentre}, true},
      {TransformNames::IS_DIVERGING_AUTO, {R64(1), R64(5), kNoCentre}, false},
      {TransformNames::IS_DIVERGING_AUTO, {R64(0), R64(10), R64(5)}, true},
      {TransformNames::IS_DIVERGING_AUTO, {R64(5), R64(10), R64(5)}, false},
      {TransformNames::IS_DIVERGING_AUTO, {R64(0), R64(5), R64(5)}, false},
      {TransformNames::IS_DIVERGING_AUTO, {I64(0), I64(10), R64(0.5)}, true},
      {TransformNames::IS_DIVERGING_AUTO, {Instant(1), Instant(9), Instant(5)}, true},
      {TransformNames::IS_REVERSED_AUTO, {R64(-5), R64(0), kNoCentre}, true},
      {TransformNames::IS_REVERSED_AUTO, {R64(-5), R64(1), kNoCentre}, false},
      {TransformNames::IS_REVERSED_AUTO, {R64(0), R64(0), kNoCentre}, false},
      {TransformNames::IS_REVERSED_AUTO, {R64(-5), R64(kNaN), kNoCentre}, false},
      {TransformNames::IS_REVERSED_AUTO, {Text(L"a"), Text(L"b"), kNoCentre}, false},
      {TransformNames::IS_REVERSED_AUTO, {R64(1), R64(5), R64(5)}, true},
      {TransformNames::IS_REVERSED_AUTO, {R64(1), R64(4), R64(5)}, true},
      {TransformNames::IS_REVERSED_AUTO, {R64(5), R64(5), R64(5)}, false},
      {TransformNames::IS_REVERSED_AUTO, {R64(1), R64(6), R64(5)}, false},
      // Equality wants one type, the order does not.
      {TransformNames::IS_REVERSED_AUTO, {R64(1), I64(5), R64(5)}, false},
      {TransformNames::IS_REVERSED_AUTO, {R64(1), I64(4), R64(5)}, true},
  };
  int place = 0;
  for (auto const& [name, inputs, expected] : cases) {
    EXPECT_EQ(Ask(name, inputs), expected) << "case " << place;
    ++place;
  }
}

TEST_F(WhenFunctions, ColumnsAreSearchedAndCompared) {
  Value const rows = Ints({4, 0, 7, 0, 4}, {kNone, kNull, kNone, kMissing});
  struct {
    wchar_t const* name;
    std::vector<Value> inputs;
    bool expected;
  } const cases[] = {
      {TransformNames::ARRAY_CONTAINS, {rows, I32(7)}, true},
      {TransformNames::ARRAY_CONTAINS, {rows, I32(5)}, false},
      {TransformNames::ARRAY_CONTAINS, {rows, I32(0)}, false},
      {TransformNames::ARRAY_CONTAINS, {Ints({0, 0}, {kNull}), I32(0)}, true},
      {TransformNames::ARRAY_CONTAINS, {Ints({}), I32(0)}, false},
      {TransformNames::ARRAY_CONTAINS,
       {factory::MakeConstantArray<int>(StoreTypeInfo::Int32, 3, INT_MAX), I32(3)},
       true},
      {TransformNames::ARRAY_CONTAINS,
       {factory::MakeConstantArray<int>(StoreTypeInfo::Int32, 9, kNull), I32(0)},
       false},
      {TransformNames::SHOULD_ADJUST_FONT_SIZE, {R64(1), R64(1.5), Ints({})}, true},
      {TransformNames::SHOULD_ADJUST_FONT_SIZE, {R64(kNaN), R64(1), Reals({})}, true},
      {TransformNames::SHOULD_ADJUST_FONT_SIZE, {R64(1), R64(1), Reals({})}, false},
      {TransformNames::SHOULD_ADJUST_FONT_SIZE, {R64(1), R64(1), Reals({9})}, false},
      {TransformNames::SHOULD_ADJUST_FONT_SIZE, {R64(1), R64(1), Reals({9, 9, 9})}, false},
      {TransformNames::SHOULD_ADJUST_FONT_SIZE, {R64(1), R64(1), Reals({9, 9, 8})}, true},
      {TransformNames::SHOULD_ADJUST_FONT_SIZE, {R64(1), R64(1), Reals({0, -0.0, 0})}, false},
      {TransformNames::SHOULD_ADJUST_FONT_SIZE, {R64(1), R64(1), Reals({0, 0}, {kNone, kNull})}, true},
  };
  int place = 0;
  for (auto const& [name, inputs, expected] : cases) {
    EXPECT_EQ(Ask(name, inputs), expected) << "case " << place;
    ++place;
  }
}

TEST_F(WhenFunctions, NeighbouringRowsAreCompared) {
  struct {
    factory::NamedValues columns;
    bool expected;
  } const cases[] = {
      {{}, true},
      {{{L"a", Texts({})}}, true},
      {{{L"a", Texts({L"a"})}}, true},
      {{{L"a", Texts({L"a", L"b", L"a"})}}, true},
      {{{L"a", Texts({L"a", L"a", L"b"})}}, false},
      {{{L"a", Texts({L"a", L"a"})}, {L"b", Ints({1, 2})}}, true},
      {{{L"a", Texts({L"a", L"b", L"b"})}, {L"b", Ints({1, 2, 2})}}, false},
      {{{L"a", Reals({kNaN, kNaN})}}, false},
      {{{L"a", Reals({0.0, -0.0})}}, false},
      {{{L"a", Longs({1, int64{1} << 40})}}, true},
      {{{L"a", Column(StoreTypeInfo::Real32, std::vector<float>{0.0F, -0.0F})}}, false},
      {{{L"a", Ints({0, 0}, {kNone, kNull})}}, true},
      {{{L"a", Ints({0, 0}, {kMissing, kNull})}}, true},
      {{{L"a", Ints({0, 0}, {kNull, kNull})}}, false},
      {{{L"a", Flags({0, 1, 0})}}, true},
      {{{L"a", Tuples({Tuple({I32(1)}), Tuple({I32(1)})})}}, false},
      {{{L"a", Tuples({Tuple({I32(1)}), Tuple({I64(1)})})}}, true},
      {{{L"a", factory::MakeConstantArray<int>(StoreTypeInfo::Int32, 3, 2)}, {L"b", Ints({1, 1})}}, false},
  };
  int place = 0;
  for (auto const& [columns, expected] : cases) {
    EXPECT_EQ(Ask(TransformNames::ARE_ROWS_DISTINCT, {Table(columns)}), expected) << "case " << place;
    ++place;
  }
}

TEST_F(WhenFunctions, RefuseOtherInputs) {
  struct {
    wchar_t const* name;
    std::vector<Value> inputs;
    int error;
  } const cases[] = {
      {TransformNames::STRADDLES_ZERO, {R64(1)}, 219},
      {TransformNames::IS_DIVERGING_AUTO, {R64(1), R64(1)}, 219},
      {TransformNames::IS_REVERSED_AUTO, {R64(1), R64(1), R64(1), R64(1)}, 219},
      {TransformNames::ARRAY_CONTAINS, {Ints({})}, 219},
      {TransformNames::SHOULD_ADJUST_FONT_SIZE, {}, 219},
      {TransformNames::ARE_ROWS_DISTINCT, {}, 219},
      {TransformNames::STRADDLES_ZERO, {R64(-1), Text(L"a")}, 178},
      {TransformNames::STRADDLES_ZERO, {kNoCentre, R64(1)}, 55},
      {TransformNames::STRADDLES_ZERO, {nullptr, R64(1)}, 55},
      {TransformNames::IS_DIVERGING_AUTO, {Text(L"a"), R64(1), R64(1)}, 220},
      {TransformNames::ARRAY_CONTAINS, {Reals({0}), I32(0)}, 55},
      {TransformNames::ARRAY_CONTAINS, {Ints({0}), I64(0)}, 55},
      {TransformNames::SHOULD_ADJUST_FONT_SIZE, {R64(1), R64(1), Ints({9})}, 55},
      {TransformNames::ARE_ROWS_DISTINCT, {Ints({9})}, 55},
      {TransformNames::ARE_ROWS_DISTINCT, {Table({{L"a", Ints({1})}, {L"b", Ints({})}})}, 259},
  };
  for (auto const& [name, inputs, error] : cases) {
    EXPECT_EQ(ErrorOfAsking(name, inputs), error) << OStringCore(name).toUtf8();
  }
}

}  // namespace
