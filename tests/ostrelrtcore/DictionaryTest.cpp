#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cmath>
#include <limits>
#include <random>
#include <thread>

#include "ostrelrtcore/ErrorOf.h"
#include "ostrelrtcore/Factory.h"

namespace ort::core {
namespace {

using factory::Value;

template <class K, class V>
Value KeySet(StoreTypeInfo const& keyType, std::unordered_map<K, V> entries,
             std::unordered_map<SpecialKind, V> specials = {},
             StoreTypeInfo const& valueType = StoreTypeInfo::Int64) {
  return factory::MakeKeySet<K, V>(keyType, valueType, valueType,
                                   std::make_unique<std::unordered_map<K, V>>(std::move(entries)),
                                   std::make_unique<std::unordered_map<SpecialKind, V>>(std::move(specials)));
}

// Keys of one type in the order in which they are listed; all different.
template <class K>
void CheckKeys(StoreTypeInfo const& type, std::vector<K> const& ascending, std::vector<K> const& absent) {
  std::unordered_map<K, uint64> numbers;
  std::unordered_map<K, Value> values;
  for (std::size_t i = 0; i < ascending.size(); ++i) {
    numbers[ascending[i]] = i + 1;
    values[ascending[i]] = factory::MakeInt64(static_cast<int64>(i));
  }
  auto const kind = [](int k) { return static_cast<SpecialKind>(k); };
  Value const toNumber = KeySet<K, uint64>(type, numbers, {{kind(9), 90}, {kind(1), 10}});
  Value const toValue = KeySet<K, Value>(type, values, {{kind(1), factory::MakeBool(true)}});
  auto const& a = toNumber->AsDictionary<K, uint64>();
  auto const& b = toValue->AsDictionary<K, Value>();
  ASSERT_EQ(a.GetCount(), static_cast<int>(ascending.size()));
  ASSERT_EQ(b.GetEntries().size(), ascending.size());
  for (std::size_t i = 0; i < ascending.size(); ++i) {
    EXPECT_EQ(a.Lookup(ascending[i]), i + 1);
    EXPECT_EQ(b.Lookup(ascending[i]), values[ascending[i]]);
    EXPECT_EQ(a.GetEntries()[i].second, i + 1) << "key " << i;
    EXPECT_TRUE(b.GetEntries()[i].first == ascending[i]);
  }
  for (auto const& key : absent) {
    EXPECT_EQ(a.Lookup(key), 0u);
    EXPECT_EQ(b.Lookup(key), nullptr);
  }
  EXPECT_EQ(a.LookupSpecial(kind(9)), 90u);
  EXPECT_EQ(a.LookupSpecial(kind(2)), 0u);
  EXPECT_TRUE(b.LookupSpecial(kind(1))->GetBool());
  EXPECT_EQ(b.LookupSpecial(kind(9)), nullptr);
  EXPECT_EQ(a.GetSpecialEntries().front().first, kind(1));
  EXPECT_EQ(toNumber->GetKeySetTypes().keyType, type);

  Error const refusal(55, "KeySet read as a dictionary of other keys or payloads");
  EXPECT_EQ(ErrorOf([&] { toNumber->AsDictionary<K, Value>(); }), refusal);
  EXPECT_EQ(ErrorOf([&] { toValue->AsDictionary<K, uint64>(); }), refusal);
  using OtherKey = std::conditional_t<std::is_same_v<K, uint8>, uint64, uint8>;
  EXPECT_EQ(ErrorOf([&] { toNumber->AsDictionary<OtherKey, uint64>(); }), refusal);
}

uint64 Bits(double value) { return std::bit_cast<uint64>(value); }
uint32 Bits(float value) { return std::bit_cast<uint32>(value); }
Value Tuple(std::vector<Value> members) { return factory::MakeTuple(std::move(members)); }

TEST(Dictionary, ListsByTheOrderOfItsKeysAndLooksUpByStorage) {
  double const infinity = std::numeric_limits<double>::infinity();
  double const nan = std::numeric_limits<double>::quiet_NaN();
  auto const text = [](wchar_t const* t) { return RIndirectString(OStringCore(t)); };
  auto const number = [](int64 n) { return factory::MakeInt64(n); };
  CheckKeys<uint8>(StoreTypeInfo::Bool, {0, 1}, {2, 255});
  CheckKeys<uint32>(StoreTypeInfo::Int32, {0x80000000u, 0xFFFFFFFFu, 0, 1, 0x7FFFFFFFu}, {2});
  CheckKeys<uint32>(StoreTypeInfo::Color, {0, 1, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}, {2});
  CheckKeys<uint32>(StoreTypeInfo::Real32, {Bits(-2.0F), Bits(-1.0F), Bits(0.5F)}, {Bits(2.0F)});
  CheckKeys<uint64>(StoreTypeInfo::Int64, {uint64{1} << 63, ~uint64{0}, 0, 1, ~uint64{0} >> 1},
                    {2, uint64{1} << 62});
  CheckKeys<uint64>(StoreTypeInfo::DateTime, {0, 1, uint64{1} << 63, ~uint64{0}}, {2});
  CheckKeys<uint64>(
      StoreTypeInfo::Real64,
      {Bits(-infinity), Bits(-1.0), Bits(0.0), Bits(-0.0), Bits(1e-300), Bits(infinity), Bits(nan)},
      {Bits(2.0)});
  CheckKeys<RIndirectString>(StoreTypeInfo::String, {text(L""), text(L"B"), text(L"a"), text(L"ab")},
                             {text(L"b"), text(L"A")});
  CheckKeys<Value>(
      StoreTypeInfo::Tuple,
      {Tuple({}), Tuple({number(-1), number(5)}), Tuple({number(0)}), Tuple({number(0), number(0)}),
       Tuple({factory::MakeReal64(-1)}), Tuple({factory::MakeString(OStringCore(L"a"))}),
       Tuple({factory::MakeSpecial(StoreTypeInfo::Int64, SpecialKind::Missing)}),
       Tuple({factory::MakeSpecial(StoreTypeInfo::Real64, SpecialKind::Missing)}),
       Tuple({factory::MakeSpecial(StoreTypeInfo::Int64, SpecialKind::Null)})},
      {Tuple({number(1)}), Tuple({factory::MakeInt32(0)}), nullptr});
  CheckKeys<uint64>(StoreTypeInfo::Int64, {}, {0, 1});
}

TEST(Dictionary, AgreesWithAMapOverManyKeys) {
  std::mt19937_64 random(7);
  for (int shift : {0, 20, 52}) {
    std::unordered_map<uint64, uint64> model;
    for (int i = 0; i < 3000; ++i) model[(random() % 5000) << shift] = random();
    auto const keySet = KeySet<uint64, uint64>(StoreTypeInfo::Int64, model);
    auto const& dictionary = keySet->AsDictionary<uint64, uint64>();
    EXPECT_EQ(static_cast<std::size_t>(dictionary.GetCount()), model.size());
    for (uint64 i = 0; i < 5000; ++i) {
      auto const found = model.find(i << shift);
      EXPECT_EQ(dictionary.Lookup(i << shift), found == model.end() ? 0 : found->second);
    }
  }
}

TEST(Dictionary, ComparesWholeKeysByValueAndKeepsOneOfEqualKeys) {
  auto const make = [](double a, double b) {
    return Tuple({factory::MakeReal64(a), factory::MakeReal64(b)});
  };
  double const nan = std::numeric_limits<double>::quiet_NaN();
  auto const keySet = KeySet<Value, uint64>(
      StoreTypeInfo::Tuple,
      {{make(0.0, 1), 5}, {make(-0.0, 0), 6}, {make(-0.0, 1), 5}, {make(nan, 1), 7}, {make(-nan, 1), 7}});
  auto const& dictionary = keySet->AsDictionary<Value, uint64>();
  EXPECT_EQ(dictionary.GetCount(), 3);
  EXPECT_EQ(dictionary.Lookup(make(0, 1)), 5u);
  EXPECT_EQ(dictionary.Lookup(make(0, 0)), 6u);
  EXPECT_EQ(dictionary.Lookup(make(std::nan("9"), 1)), 7u);
}

TEST(Dictionary, OfAKeyMapHasItsNamesAsKeys) {
  auto const name = [](wchar_t const* n) { return OStringCore(n); };
  auto const scalars = factory::MakeKeyMap(factory::NamedValues{{name(L"b"), factory::MakeReal64(2.5)},
                                                                {name(L"a"), factory::MakeInt32(-1)},
                                                                {name(L"c"), factory::MakeBool(true)}});
  auto const& bits = scalars->AsDictionary<RIndirectString, uint64>();
  EXPECT_EQ(bits.Lookup(RIndirectString(name(L"b"))), Bits(2.5));
  EXPECT_EQ(static_cast<int>(bits.Lookup(RIndirectString(name(L"a")))), -1);
  EXPECT_EQ(bits.GetEntries()[2].second, 1u);
  EXPECT_EQ(bits.Lookup(RIndirectString(name(L"d"))), 0u);

  auto const mixed =
      factory::MakeKeyMap(factory::NamedValues{{name(L"a"), factory::MakeInt32(1)}, {name(L"t"), Tuple({})}});
  auto const& values = mixed->AsDictionary<RIndirectString, Value>();
  EXPECT_EQ(values.Lookup(RIndirectString(name(L"a")))->GetInt32(), 1);
  EXPECT_EQ(values.GetEntries()[1].second->GetStoreType(), StoreType::Tuple);
  Error const refusal(55, "KeyMap read as a dictionary of other keys or payloads");
  EXPECT_EQ(ErrorOf([&] { mixed->AsDictionary<RIndirectString, uint64>(); }), refusal);
  EXPECT_EQ(ErrorOf([&] { mixed->AsDictionary<uint64, Value>(); }), refusal);
  auto const table = factory::MakeTable(factory::NamedValues{{name(L"a"), factory::MakeInt32(1)}});
  EXPECT_EQ(ErrorOf([&] { table->AsDictionary<RIndirectString, Value>(); }).first, 55);
}

TEST(KeySet, EqualsByKeysPayloadsAndTypes) {
  auto const make = [](uint64 key, uint64 payload, StoreTypeInfo const& type, uint64 special) {
    return KeySet<uint64, uint64>(StoreTypeInfo::Int64, {{key, payload}, {7, 7}},
                                  {{SpecialKind::Null, special}}, type);
  };
  double const nan = std::numeric_limits<double>::quiet_NaN();
  auto const zero = make(1, Bits(0.0), StoreTypeInfo::Real64, Bits(nan));
  auto const minus = make(1, Bits(-0.0), StoreTypeInfo::Real64, Bits(-nan));
  EXPECT_TRUE(zero->Equals(*minus));
  EXPECT_EQ(zero->GetHash(), minus->GetHash());
  EXPECT_TRUE(zero->Equals(*zero->Clone()));
  EXPECT_FALSE(
      make(1, Bits(0.0), StoreTypeInfo::Int64, 1)->Equals(*make(1, Bits(-0.0), StoreTypeInfo::Int64, 1)));
  for (auto const& other :
       {make(2, Bits(0.0), StoreTypeInfo::Real64, Bits(nan)),
        make(1, Bits(1.0), StoreTypeInfo::Real64, Bits(nan)),
        make(1, Bits(0.0), StoreTypeInfo::Int64, Bits(nan)), make(1, Bits(0.0), StoreTypeInfo::Real64, 0)}) {
    EXPECT_FALSE(zero->Equals(*other));
  }
}

TEST(KeySet, RefusesWhatDoesNotFit) {
  EXPECT_EQ(ErrorOf([] { KeySet<uint32, uint64>(StoreTypeInfo::Int64, {}); }),
            Error(55, "keys of another width than their type"));
  EXPECT_EQ(ErrorOf([] {
              KeySet<Value, uint64>(StoreTypeInfo::Tuple, {{nullptr, 1}});
            }),
            Error(55, "a key that is no value"));
  Error const noPayload(55, "a payload of a key set is no value");
  EXPECT_EQ(ErrorOf([] { KeySet<uint64, Value>(StoreTypeInfo::Int64, {{1, nullptr}}); }), noPayload);
  EXPECT_EQ(ErrorOf([] {
              KeySet<uint64, Value>(StoreTypeInfo::Int64, {}, {{SpecialKind::Null, nullptr}});
            }),
            noPayload);
  auto const empty = factory::MakeKeySet<uint32, Value>(StoreTypeInfo::Int32, StoreTypeInfo::Array,
                                                        StoreTypeInfo::Int32, nullptr, nullptr);
  auto const& dictionary = empty->AsDictionary<uint32, Value>();
  EXPECT_EQ(dictionary.GetCount(), 0);
}

Value KeySetOfSlices(std::vector<int> const& keys, std::vector<int> starts) {
  auto const column = factory::MakeArray<int>(
      StoreTypeInfo::Int32, std::make_unique<std::vector<int>>(std::vector{10, 11, 12, 13, 14}));
  return factory::MakeKeySetOfSlices(StoreTypeInfo::Int32, {keys.begin(), keys.end()}, std::move(starts),
                                     column, nullptr);
}

std::vector<int> RowsOf(Value const& column) {
  auto const rows = column->AsTypedArray<int>().GetValues();
  return {rows.begin(), rows.end()};
}

TEST(KeySetOfSlices, ListsOnceForAllThreadsWhatItMakesForEachLookup) {
  std::vector<std::vector<int>> const slices{{11, 12}, {}, {13, 14}};
  auto const keySet = KeySetOfSlices({-3, 0, 7}, {1, 3, 3});
  auto const& dictionary = keySet->AsDictionary<uint32, Value>();
  EXPECT_EQ(dictionary.GetCount(), 3);
  EXPECT_EQ(dictionary.Lookup(1), nullptr);
  std::vector<std::vector<std::pair<uint32, Value>> const*> listings(4);
  std::vector<std::thread> threads;
  for (auto& listing : listings) {
    threads.emplace_back([&] {
      EXPECT_EQ(RowsOf(dictionary.Lookup(static_cast<uint32>(-3))), slices[0]);
      listing = &dictionary.GetEntries();
      EXPECT_EQ(dictionary.Lookup(7), listing->at(2).second);
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (std::size_t i = 0; i < slices.size(); ++i) EXPECT_EQ(RowsOf(listings[0]->at(i).second), slices[i]);
  EXPECT_TRUE(keySet->Equals(*KeySetOfSlices({-3, 0, 7}, {1, 3, 3})));
  EXPECT_FALSE(keySet->Equals(*KeySetOfSlices({-3, 0, 7}, {1, 2, 3})));
}

TEST(KeySetOfSlices, RefusesKeysAndSlicesOutOfOrder) {
  Error const slices(55, "slices that the column does not have");
  EXPECT_EQ(ErrorOf([] { KeySetOfSlices({0, -1}, {0, 1}); }), Error(55, "keys that do not ascend"));
  EXPECT_EQ(ErrorOf([] { KeySetOfSlices({1, 1}, {0, 1}); }), Error(55, "keys that do not ascend"));
  EXPECT_EQ(ErrorOf([] { KeySetOfSlices({1}, {}); }), Error(55, "keys and slices of unequal number"));
  EXPECT_EQ(ErrorOf([] { KeySetOfSlices({1, 2}, {-1, 2}); }), slices);
  EXPECT_EQ(ErrorOf([] { KeySetOfSlices({1, 2}, {3, 2}); }), slices);
  EXPECT_EQ(ErrorOf([] { KeySetOfSlices({1}, {6}); }), slices);
  auto const column = factory::MakeConstantArray<int>(StoreTypeInfo::Int32, 4, 3);
  EXPECT_EQ(RowsOf(factory::MakeSlice(column, 1, 2)), (std::vector{4, 4}));
  Error const rows(55, "a slice of rows that the column does not have");
  for (auto const& slice : {std::pair{-1, 1}, {0, 4}, {4, 0}, {2, INT_MAX}, {0, -1}}) {
    EXPECT_EQ(ErrorOf([&] { factory::MakeSlice(column, slice.first, slice.second); }), rows)
        << slice.first << " " << slice.second;
  }
}

}  // namespace
}  // namespace ort::core
