#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <map>
#include <numeric>
#include <random>
#include <thread>

#include "ostrelrtcore/ErrorOf.h"
#include "ostrelrtcore/Factory.h"

namespace ort::core {
namespace {

using factory::MakeArray;
using factory::MakeConstantArray;
using factory::Value;

template <class T>
std::unique_ptr<std::vector<T>> Rows(std::vector<T> values) {
  return std::make_unique<std::vector<T>>(std::move(values));
}

auto Kinds(std::vector<int> const& kinds) {
  auto result = std::make_unique<std::vector<SpecialKind>>();
  for (int const kind : kinds) result->push_back(static_cast<SpecialKind>(kind));
  return result;
}

template <class As, class T>
void ExpectPattern(Value const& column, std::vector<T> const& values) {
  auto const& view = column->AsTypedArray<As>();
  ASSERT_EQ(view.GetCount(), static_cast<int>(values.size()));
  for (std::size_t i = 0; i < values.size(); ++i) {
    EXPECT_EQ(std::bit_cast<T>(view.GetElement(static_cast<int>(i))), values[i]);
    EXPECT_EQ(std::bit_cast<T>(view.GetValues()[i]), values[i]);
  }
}

TEST(Column, ReadAsAnotherTypeOfItsWidthGivesTheBitPattern) {
  std::vector<float> const floats = {1.5F, -0.0F, 1e38F};
  auto const real32 = MakeArray(StoreTypeInfo::Real32, Rows(floats));
  ExpectPattern<uint32>(real32, floats);
  ExpectPattern<int>(real32, floats);
  ExpectPattern<OrtColor>(real32, floats);
  std::vector<double> const doubles = {1.5, -0.0, 1e308};
  auto const real64 = MakeArray(StoreTypeInfo::Real64, Rows(doubles));
  ExpectPattern<uint64>(real64, doubles);
  ExpectPattern<int64>(real64, doubles);
  ExpectPattern<OrtDateTime>(real64, doubles);
  auto const bits = MakeArray(StoreTypeInfo::Real64, Rows<uint64>({std::bit_cast<uint64>(2.5)}));
  EXPECT_EQ(bits->AsTypedArray<double>().GetElement(0), 2.5);

  Error const refusal(55, "Array of Real32 read as elements of another width");
  EXPECT_EQ(ErrorOf([&] { real32->AsTypedArray<double>(); }), refusal);
  EXPECT_EQ(ErrorOf([&] { real32->AsTypedArray<bool>(); }), refusal);
  EXPECT_EQ(ErrorOf([&] { real32->AsTypedArray<RIndirectString>(); }), refusal);
  EXPECT_EQ(ErrorOf([&] { real32->AsTypedArray<Value>(); }), refusal);
}

TEST(Column, KeepsTruthAsZeroAndOne) {
  auto const bools = MakeArray(StoreTypeInfo::Bool, Rows<uint8>({0, 1, 2, 255}));
  auto const& bytes = bools->AsTypedArray<uint8>();
  EXPECT_EQ(std::vector<uint8>(bytes.GetValues().begin(), bytes.GetValues().end()),
            (std::vector<uint8>{0, 1, 1, 1}));
  EXPECT_TRUE(bools->AsTypedArray<bool>().GetElement(3));
  EXPECT_EQ(MakeConstantArray<uint8>(StoreTypeInfo::Bool, 4, 2)->AsTypedArray<uint8>().GetElement(1), 1);
  EXPECT_TRUE(MakeConstantArray<bool>(StoreTypeInfo::Bool, true, 2)->AsTypedArray<bool>().GetElement(1));
}

TEST(Column, TakesTheVectorWithoutACopyAndClonesShareIt) {
  auto values = Rows<double>({1, 2, 3});
  double const* const storage = values->data();
  auto column = MakeArray(StoreTypeInfo::Real64, std::move(values), Rows<int>({1}), Kinds({9}));
  auto const clone = column->Clone();
  EXPECT_EQ(column->AsTypedArray<double>().GetValues().data(), storage);
  column.reset();
  EXPECT_EQ(clone->AsTypedArray<double>().GetValues().data(), storage);
  EXPECT_EQ(clone->AsColumn().GetSpecialKind(1), SpecialKind::Null);
  EXPECT_EQ(clone->AsTypedArray<double>().GetElement(2), 3.0);
  EXPECT_EQ(clone->GetTypeInfo().GetElementType(), StoreTypeInfo::Real64);
  EXPECT_EQ(clone->GetTypeInfo(), StoreTypeInfo::MakeArrayType(StoreType::Real64));
}

// Lists of any order, with doubles and kinds of 0, against a map that takes one entry after the other.
template <class T>
void CheckSpecialRows(StoreTypeInfo const& type, T const& ordinary) {
  std::mt19937 random(20200301);
  for (int round = 0; round < 50; ++round) {
    int const count = 1 + static_cast<int>(random() % 40);
    std::map<int, int> model;
    std::vector<int> rows;
    std::vector<int> kinds;
    for (unsigned i = random() % 30; i > 0; --i) {
      rows.push_back(static_cast<int>(random() % static_cast<unsigned>(count)));
      kinds.push_back(random() % 3 == 0 ? 0 : 1 + static_cast<int>(random() % 255));
    }
    if (round % 3 == 0) std::ranges::sort(rows);
    for (std::size_t i = 0; i < rows.size(); ++i) model[rows[i]] = kinds[i];
    std::erase_if(model, [](auto const& entry) { return entry.second == 0; });

    Value const column = MakeArray(type, Rows(std::vector<T>(static_cast<std::size_t>(count), ordinary)),
                                   Rows(rows), Kinds(kinds));
    auto const& view = column->AsTypedArray<T>();
    EXPECT_EQ(view.HasSpecials(), !model.empty());
    for (int row = 0; row < count; ++row) {
      bool const isSpecial = model.contains(row);
      EXPECT_EQ(static_cast<int>(view.GetSpecialKind(row)), isSpecial ? model[row] : 0) << "round " << round;
      EXPECT_EQ(view.IsSpecial(row), isSpecial);
      EXPECT_TRUE(view.GetElement(row) == (isSpecial ? T{} : ordinary));
    }
    std::vector<std::pair<int, int>> listed;
    for (std::size_t i = 0; i < view.GetSpecialRows().size(); ++i) {
      listed.emplace_back(view.GetSpecialRows()[i], static_cast<int>(view.GetSpecialKinds()[i]));
    }
    EXPECT_EQ(listed, (std::vector<std::pair<int, int>>(model.begin(), model.end())));
  }
}

TEST(Column, NormalisesItsSpecialRowsAndClearsTheirSlots) {
  CheckSpecialRows<uint8>(StoreTypeInfo::Bool, 1);
  CheckSpecialRows<int>(StoreTypeInfo::Int32, -7);
  CheckSpecialRows<double>(StoreTypeInfo::Real64, 2.5);
  CheckSpecialRows<RIndirectString>(StoreTypeInfo::String, RIndirectString(OStringCore(L"text")));
  CheckSpecialRows<Value>(StoreTypeInfo::Tuple, factory::MakeTuple(std::vector<Value>{}));
}

TEST(Column, RefusesWhatDoesNotFit) {
  auto const make = [](std::unique_ptr<std::vector<int>> rows,
                       std::unique_ptr<std::vector<SpecialKind>> kinds) {
    return ErrorOf([&] {
      MakeArray(StoreTypeInfo::Int32, Rows<int>({1, 2}), std::move(rows), std::move(kinds));
    });
  };
  Error const unequal(55, "special rows and kinds of unequal length");
  Error const outside(55, "a special row outside the column");
  EXPECT_EQ(make(Rows<int>({0}), Kinds({})), unequal);
  EXPECT_EQ(make(Rows<int>({0}), nullptr), unequal);
  EXPECT_EQ(make(nullptr, Kinds({1})), unequal);
  EXPECT_EQ(make(Rows<int>({2}), Kinds({1})), outside);
  EXPECT_EQ(make(Rows<int>({-1}), Kinds({0})), outside);
  EXPECT_EQ(make(nullptr, nullptr), Error(-1, "no error"));

  EXPECT_EQ(ErrorOf([] { MakeArray(StoreTypeInfo::Real64, Rows<int>({1})); }),
            Error(55, "a column of Real64 in elements of another width"));
  EXPECT_EQ(ErrorOf([] { MakeArray(StoreTypeInfo::Empty, Rows<Value>({})); }),
            Error(55, "a column of Empty in elements of another width"));
  EXPECT_EQ(ErrorOf([] { MakeArray(StoreTypeInfo::Tuple, Rows<Value>({nullptr})); }),
            Error(55, "a row of a column holds no value"));
  EXPECT_EQ(ErrorOf([] { MakeConstantArray<Value>(StoreTypeInfo::Tuple, nullptr, 3); }),
            Error(55, "a row of a column holds no value"));
  EXPECT_EQ(ErrorOf([] { MakeConstantArray<int>(StoreTypeInfo::Int32, 1, -1); }),
            Error(55, "a column of a negative count"));

  auto const column = MakeArray(StoreTypeInfo::Int32, Rows<int>({1, 2}));
  for (int const row : {-1, 2, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
    Error const range(55, "row " + std::to_string(row) + " of a column of 2 rows");
    EXPECT_EQ(ErrorOf([&] { column->AsTypedArray<int>().GetElement(row); }), range);
    EXPECT_EQ(ErrorOf([&] { column->AsTypedArray<int>().GetSpecialKind(row); }), range);
  }
  auto const empty = MakeArray<double>(StoreTypeInfo::Real64, nullptr);
  EXPECT_TRUE(empty->AsTypedArray<double>().GetValues().empty());
}

TEST(ConstantColumn, NeedsNoMemoryUntilItIsSpelledOut) {
  constexpr int kMost = std::numeric_limits<int>::max();
  auto const ones = MakeConstantArray<uint64>(StoreTypeInfo::Int64, 1, kMost);
  auto const missing = MakeConstantArray<uint64>(StoreTypeInfo::Int64, kMost, SpecialKind::Null);
  EXPECT_EQ(ones->AsTypedArray<int64>().GetElement(kMost - 1), 1);
  EXPECT_EQ(missing->AsTypedArray<int64>().GetElement(kMost - 1), 0);
  EXPECT_EQ(missing->AsColumn().GetSpecialKind(kMost - 1), SpecialKind::Null);
  EXPECT_TRUE(missing->AsColumn().HasSpecials());
  EXPECT_TRUE(ones->Equals(*MakeConstantArray<uint64>(StoreTypeInfo::Int64, 1, kMost)));
  EXPECT_FALSE(ones->Equals(*MakeConstantArray<uint64>(StoreTypeInfo::Int64, 2, kMost)));
  EXPECT_FALSE(ones->Equals(*missing));
  EXPECT_TRUE(missing->Equals(*missing->Clone()));
  EXPECT_FALSE(
      MakeConstantArray<uint64>(StoreTypeInfo::Int64, 0, SpecialKind::Null)->AsColumn().HasSpecials());
  EXPECT_EQ(MakeConstantArray<int>(StoreTypeInfo::Int32, 2, SpecialKind::None)->AsColumn().GetSpecialKind(1),
            SpecialKind::Missing);
}

template <class T>
void CheckConstant(StoreTypeInfo const& type, T const& value) {
  for (int const count : {0, 1, 5}) {
    auto const size = static_cast<std::size_t>(count);
    Value const constant = MakeConstantArray<T>(type, value, count);
    Value const spelled = MakeArray(type, Rows(std::vector<T>(size, value)));
    EXPECT_TRUE(constant->Equals(*spelled) && spelled->Equals(*constant));
    EXPECT_EQ(constant->GetHash(), spelled->GetHash());
    auto const raw = constant->AsTypedArray<T>().GetValues();
    EXPECT_TRUE(std::ranges::equal(raw, spelled->AsTypedArray<T>().GetValues()));
    EXPECT_EQ(raw.data(), constant->AsTypedArray<T>().GetValues().data());

    Value const special = MakeConstantArray<T>(type, count, SpecialKind::Null);
    std::vector<int> rows(size);
    std::iota(rows.begin(), rows.end(), 0);
    Value const listed =
        MakeArray(type, Rows(std::vector<T>(size, value)), Rows(rows), Kinds(std::vector<int>(size, 9)));
    EXPECT_TRUE(special->Equals(*listed) && listed->Equals(*special));
    EXPECT_EQ(special->GetHash(), listed->GetHash());
    EXPECT_TRUE(std::ranges::equal(special->AsColumn().GetSpecialRows(), rows));
  }
}

TEST(ConstantColumn, EqualsTheColumnThatSpellsItOut) {
  CheckConstant<uint8>(StoreTypeInfo::Bool, 1);
  CheckConstant<float>(StoreTypeInfo::Real32, -2.5F);
  CheckConstant<uint64>(StoreTypeInfo::DateTime, 77);
  CheckConstant<RIndirectString>(StoreTypeInfo::String, RIndirectString(OStringCore(L"a")));
  CheckConstant<Value>(StoreTypeInfo::Array, factory::MakeInt32(3));
}

TEST(ConstantColumnThreads, SpellItOutOnce) {
  for (int round = 0; round < 50; ++round) {
    auto const column =
        MakeConstantArray<RIndirectString>(StoreTypeInfo::String, RIndirectString(OStringCore(L"a")), 1000);
    auto const special = MakeConstantArray<uint64>(StoreTypeInfo::Int64, 1000, SpecialKind::Null);
    std::array<void const*, 4> seen{};
    std::vector<std::thread> threads;
    for (auto& address : seen) {
      threads.emplace_back([&] {
        address = column->AsTypedArray<RIndirectString>().GetValues().data();
        EXPECT_EQ(column->AsTypedArray<RIndirectString>().GetValues()[999].Get(), OStringCore(L"a"));
        EXPECT_EQ(special->AsColumn().GetSpecialRows()[999], 999);
      });
    }
    for (auto& thread : threads) thread.join();
    for (auto const* address : seen) EXPECT_EQ(address, seen[0]);
  }
}

TEST(ColumnBuilder, BecomesAColumnAndIsEmptyAfterwards) {
  auto builder = factory::MakeColumnBuilder<double>(StoreTypeInfo::Real64, 3);
  std::ranges::fill(builder.GetValues(), 4.5);
  double const* const storage = builder.GetValues().data();
  builder.SetSpecial(2, SpecialKind::Null);
  builder.SetSpecial(0, SpecialKind::None);
  auto const column = builder.Finish();
  auto const& view = column->AsTypedArray<double>();
  EXPECT_EQ(view.GetValues().data(), storage);
  EXPECT_EQ(view.GetElement(0), 4.5);
  EXPECT_EQ(view.GetElement(2), 0.0);
  EXPECT_EQ(view.GetSpecialRows().size(), 1u);
  EXPECT_EQ(builder.GetValues().data(), nullptr);
  EXPECT_TRUE(builder.GetValues().empty());
  EXPECT_TRUE(builder.Finish()->Equals(*MakeArray<double>(StoreTypeInfo::Real64, nullptr)));

  auto truths = factory::MakeColumnBuilder<bool>(StoreTypeInfo::Bool, 2);
  std::ranges::fill(truths.GetValues(), true);
  EXPECT_TRUE(truths.Finish()->AsTypedArray<bool>().GetElement(1));
  EXPECT_EQ(factory::MakeColumnBuilder<RIndirectString>(StoreTypeInfo::String, 2).GetValues()[1].Get(),
            OStringCore());
}

TEST(ColumnBuilder, RefusesWhatDoesNotFit) {
  for (int const row : {-1, 2}) {
    auto builder = factory::MakeColumnBuilder<RIndirectString>(StoreTypeInfo::String, 2);
    builder.SetSpecial(row, SpecialKind::Missing);
    EXPECT_EQ(ErrorOf([&] { builder.Finish(); }), Error(55, "a special row outside the column"));
    EXPECT_TRUE(builder.GetValues().empty());
  }
  EXPECT_EQ(ErrorOf([] { factory::MakeColumnBuilder<int>(StoreTypeInfo::Real64, 1); }), Error(55, "Real64"));
  EXPECT_EQ(ErrorOf([] { factory::MakeColumnBuilder<int>(StoreTypeInfo::Int32, -1); }),
            Error(55, "a column of a negative count"));
  EXPECT_EQ(ErrorOf([] { factory::MakeColumnBuilder<Value>(StoreTypeInfo::Tuple, 1).Finish(); }),
            Error(55, "a row of a column holds no value"));
}

}  // namespace
}  // namespace ort::core
