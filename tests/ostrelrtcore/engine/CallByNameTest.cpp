#include <gtest/gtest.h>

#include <array>

#include "EngineTestSupport.h"
#include "ostrelrtcore/engine/CallByName.h"

namespace enginetest {
namespace {

class SpanColumns : public testing::Test {
 protected:
  SpanColumns() { RegisterTestFunctions(registry_); }

  FunctionRegistry registry_;
};

template <class T>
constexpr bool kIsArgument = std::is_convertible_v<T, CallArgument>;
static_assert(kIsArgument<std::vector<double> const&> && kIsArgument<std::array<int, 2>&>);
static_assert(kIsArgument<std::span<float const>>);
static_assert(!kIsArgument<std::vector<double>>, "its memory would be gone");

TEST_F(SpanColumns, ShareTheMemoryTheyAreMadeOf) {
  auto const expectShared = [](auto const& values, StoreType type) {
    using T = typename std::decay_t<decltype(values)>::value_type;
    Value const column = factory::MakeSpanColumn(std::span<T const>(values));
    EXPECT_EQ(column->GetTypeInfo().GetElementType(), type);
    EXPECT_FALSE(column->AsColumn().HasSpecials());
    auto const view = column->AsTypedArray<T>().GetValues();
    EXPECT_EQ(view.data(), values.data());
    EXPECT_EQ(view.size(), values.size());
    EXPECT_TRUE(column->Clone()->Equals(*column));
  };
  static constexpr std::array<bool, 3> kFlags = {true, false, true};  // in memory that can't be written
  expectShared(kFlags, StoreType::Bool);
  expectShared(std::array{1, -2}, StoreType::Int32);
  expectShared(std::array{int64{1} << 40}, StoreType::Int64);
  expectShared(std::array{1.5F}, StoreType::Real32);
  expectShared(std::array{0.1, -0.0}, StoreType::Real64);
  expectShared(std::array{OrtDateTime(2020, 3, 1)}, StoreType::DateTime);
  expectShared(std::array{OrtColor(0xFF00FF00U)}, StoreType::Color);
  expectShared(std::vector<double>(), StoreType::Real64);
}

TEST_F(SpanColumns, HoldTheirOwnerUntilTheLastValueIsGone) {
  auto owner = std::make_shared<std::vector<double>>(std::vector{1.0, 2.0});
  std::weak_ptr<std::vector<double>> const watched = owner;
  std::span<double const> const span(*owner);
  Value column = factory::MakeSpanColumn(span, std::move(owner));
  Value copy = column->Clone();
  column.reset();
  EXPECT_EQ(ReadRows(copy), (Rows{{1.0}, {2.0}}));
  EXPECT_FALSE(watched.expired());
  copy.reset();
  EXPECT_TRUE(watched.expired());
}

TEST_F(SpanColumns, RefuseATypeOfAnotherWidth) {
  std::array<double, 1> const values = {1};
  std::span<double const> const span(values);
  EXPECT_EQ(factory::MakeSpanColumn(StoreTypeInfo::Date, span)->GetTypeInfo().GetElementType(),
            StoreType::Date);
  EXPECT_EQ(Failure([&] { factory::MakeSpanColumn(StoreTypeInfo::Int32, span); }), "55 Int32");
}

TEST_F(SpanColumns, FunctionsAreCalledByNameInTheModeOfTheirForm) {
  std::vector<double> const values = {1, 2, 4}, others = {10, 20, 40};
  auto const expectRows = [](Value const& result, std::string const& rows) {
    EXPECT_EQ(Compare(ReadRows(result), ParseRows(rows)), "same");
  };
  expectRows(CallByName(registry_, "halve", {values}), "0.5 1 2");
  expectRows(CallByName(registry_, "halve", {3.0}), "1.5");
  expectRows(CallByName(registry_, "scale", {values}, {3.0}), "3 6 12");
  expectRows(CallByName(registry_, "mix", {values, others}), "10.5 21 42");
  expectRows(CallByName(registry_, "mix", {1.0, others}), "10.5 20.5 40.5");
  expectRows(CallByName(registry_, "mix", {values}), "1 2.5 5.25");
  EXPECT_EQ(values, (std::vector<double>{1, 2, 4})) << "an input was written to";
  EXPECT_EQ(Failure([&] { CallByName(registry_, "mix", {values, std::span(others).first(2)}); }), "259");
  EXPECT_EQ(Failure([&] { CallByName(registry_, "halv", {values}); }),
            "no function is named 'halv'; did you mean 'halve'?");
}

TEST_F(SpanColumns, ArgumentsAreOfTheTypeTheyAreWrittenIn) {
  struct {
    CallArgument argument;
    StoreType type;
  } const cases[] = {{true, StoreType::Bool},
                     {1, StoreType::Int32},
                     {int64{1}, StoreType::Int64},
                     {1.5F, StoreType::Real32},
                     {1.5, StoreType::Real64},
                     {"text", StoreType::String},
                     {std::string("text"), StoreType::String},
                     {OrtDateTime(2020, 3, 1), StoreType::DateTime},
                     {OrtColor(0xFF00FF00U), StoreType::Color},
                     {factory::MakeTuple(std::vector<Value>()), StoreType::Tuple}};
  for (auto const& [argument, type] : cases) EXPECT_EQ(argument.GetValue()->GetStoreType(), type);
}

}  // namespace
}  // namespace enginetest
