#include <gtest/gtest.h>

#include <functional>

#include "ostrelrtcore/ErrorOf.h"
#include "ostrelrtcore/Factory.h"

namespace ort::core {
namespace {

using factory::NamedValues;
using factory::Value;

OStringCore Text(wchar_t const* text) { return OStringCore(text); }

TEST(Tuple, GivesItsMembersByPosition) {
  auto const one = factory::MakeInt32(1);
  auto const missing = factory::MakeSpecial(StoreTypeInfo::Int32, SpecialKind::Missing);
  std::vector<Value> const members = {one, missing, one};
  for (auto const& tuple :
       {factory::MakeTuple(members), factory::MakeTuple(std::make_unique<std::vector<Value>>(members))}) {
    EXPECT_EQ(tuple->GetStoreType(), StoreType::Tuple);
    EXPECT_EQ(tuple->AsTuple().GetCount(), 3);
    EXPECT_EQ(tuple->AsTuple().GetMember(1), missing);
    EXPECT_EQ(tuple->AsTuple().GetMember(2), one);
    EXPECT_EQ(ErrorOf([&] { tuple->AsTuple().GetMember(3); }), Error(219, "member 3 of a tuple of 3"));
    EXPECT_EQ(ErrorOf([&] { tuple->AsTuple().GetMember(-1); }), Error(219, "member -1 of a tuple of 3"));
  }
  EXPECT_EQ(ErrorOf([&] {
              factory::MakeTuple(std::vector<Value>{one, nullptr});
            }),
            Error(55, "a member of a tuple is no value"));
  EXPECT_EQ(ErrorOf([] { factory::MakeTuple(std::unique_ptr<std::vector<Value>>()); }),
            Error(55, "no members"));
}

TEST(TableAndKeyMap, GiveTheirValuesByName) {
  // Code units decide: U+FF00 stands above the surrogates of U+1F600.
  std::vector<OStringCore> const names = {Text(L""),     Text(L"B"),          Text(L"a"),     Text(L"ab"),
                                          Text(L"\xE9"), Text(L"\U0001F600"), Text(L"\xFF00")};
  NamedValues values;
  for (std::size_t i = 0; i < names.size(); ++i) values[names[i]] = factory::MakeInt32(static_cast<int>(i));
  for (auto const& value :
       {factory::MakeTable(values), factory::MakeTable(std::make_unique<NamedValues>(values)),
        factory::MakeKeyMap(values), factory::MakeKeyMap(std::make_unique<NamedValues>(values))}) {
    auto const& named = value->AsNamedValues();
    EXPECT_EQ(named.GetCount(), 7);
    EXPECT_EQ(named.GetNames(), names);
    for (std::size_t i = 0; i < names.size(); ++i) {
      EXPECT_EQ(named.Find(names[i]), values[names[i]]);
      EXPECT_EQ(named.Get(names[i])->GetInt32(), static_cast<int>(i));
    }
    for (auto const& absent : {Text(L"A"), Text(L"abc"), Text(L"\xFF01")}) {
      EXPECT_EQ(named.Find(absent), nullptr);
      EXPECT_EQ(ErrorOf([&] { named.Get(absent); }), Error(219, absent.toUtf8()));
    }
  }
  EXPECT_TRUE(factory::MakeTable(NamedValues())->AsNamedValues().GetNames().empty());
  for (auto const& make : {+[](NamedValues v) { return factory::MakeTable(std::move(v)); },
                           +[](NamedValues v) { return factory::MakeKeyMap(std::move(v)); }}) {
    EXPECT_EQ(ErrorOf([&] { make({{Text(L"x"), nullptr}}); }), Error(55, "x"));
  }
  EXPECT_EQ(ErrorOf([] { factory::MakeTable(std::unique_ptr<NamedValues>()); }), Error(55, "no members"));
  EXPECT_EQ(ErrorOf([] { factory::MakeKeyMap(std::unique_ptr<NamedValues>()); }), Error(55, "no members"));
}

TEST(Container, NestedWithoutLimitIsDestroyedWithoutRecursion) {
  using Wrap = std::function<Value(Value)>;
  auto const column = [](Value inner) {
    auto rows = std::make_unique<std::vector<Value>>(1, std::move(inner));
    return factory::MakeArray(StoreTypeInfo::Tuple, std::move(rows));
  };
  auto const tuple = [](Value inner) { return factory::MakeTuple(std::vector<Value>{std::move(inner)}); };
  auto const constant = [](Value inner) {
    return factory::MakeConstantArray<Value>(StoreTypeInfo::Tuple, inner, 2);
  };
  struct {
    char const* name;
    int levels;
    Wrap wrap;
  } const cases[] = {
      {"tuple in tuple", 1'000'000, tuple},
      {"tuple in column", 1'000'000, [&](Value inner) { return column(tuple(std::move(inner))); }},
      {"constant column in constant column", 300'000, constant},
      {"the same, spelled out", 300'000,
       [&](Value inner) {
         auto value = constant(std::move(inner));
         value->AsTypedArray<Value>().GetValues();
         return value;
       }},
      {"table in table", 200'000,
       [](Value inner) {
         return factory::MakeTable(NamedValues{{Text(L"a"), std::move(inner)}});
       }},
      {"key map in key map", 1'000'000,
       [](Value inner) {
         return factory::MakeKeyMap(NamedValues{{Text(L"a"), std::move(inner)}});
       }},
      {"key set in key set", 200'000,
       [](Value inner) {
         auto entries = std::make_unique<std::unordered_map<uint64, Value>>();
         entries->emplace(1, std::move(inner));
         return factory::MakeKeySet<uint64, Value>(StoreTypeInfo::Int64, StoreTypeInfo::KeySet,
                                                   StoreTypeInfo::KeySet, std::move(entries), nullptr);
       }},
  };
  for (auto const& c : cases) {
    auto const leaf = factory::MakeInt32(1);
    Value value = leaf;
    for (int level = 0; level < c.levels; ++level) value = c.wrap(std::move(value));
    EXPECT_GT(leaf.use_count(), 1) << c.name;
    value.reset();
    EXPECT_EQ(leaf.use_count(), 1) << c.name;
  }
}

}  // namespace
}  // namespace ort::core
