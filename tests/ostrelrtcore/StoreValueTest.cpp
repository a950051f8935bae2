#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "ostrelrtcore/ErrorOf.h"
#include "ostrelrtcore/Factory.h"

namespace ort::core {
namespace {

using factory::Value;

// Before any dynamic initialiser: the constants are there when the first one runs.
StoreType const seenAtStart = StoreTypeInfo::Table.GetStoreType();

TEST(StoreType, HasFixedNumbersAndNames) {
  EXPECT_EQ(seenAtStart, StoreType::Table);
  struct {
    StoreTypeInfo info;
    int number;
    wchar_t const* name;
    bool isPrimitive;
  } const cases[] = {
      {StoreTypeInfo::Empty, 0, L"Empty", false},    {StoreTypeInfo::Int32, 1, L"Int32", true},
      {StoreTypeInfo::Int64, 2, L"Int64", true},     {StoreTypeInfo::Real32, 3, L"Real32", true},
      {StoreTypeInfo::Real64, 4, L"Real64", true},   {StoreTypeInfo::String, 5, L"String", true},
      {StoreTypeInfo::Date, 6, L"Date", true},       {StoreTypeInfo::DateTime, 7, L"DateTime", true},
      {StoreTypeInfo::Color, 8, L"Color", true},     {StoreTypeInfo::Bool, 9, L"Bool", true},
      {StoreTypeInfo::Array, 10, L"Array", false},   {StoreTypeInfo::KeySet, 11, L"KeySet", false},
      {StoreTypeInfo::KeyMap, 12, L"KeyMap", false}, {StoreTypeInfo::Tuple, 13, L"Tuple", false},
      {StoreTypeInfo::Table, 14, L"Table", false}};
  for (auto const& c : cases) {
    EXPECT_EQ(static_cast<int>(c.info.GetStoreType()), c.number);
    EXPECT_EQ(StoreTypeToString(c.info), OStringCore(c.name));
    EXPECT_EQ(IsPrimitiveStoreType(c.info), c.isPrimitive) << c.number;
    EXPECT_FALSE(c.info.GetFlag());
  }
  EXPECT_EQ(StoreTypeToString(static_cast<StoreType>(15)), OStringCore(L"Unknown"));
  EXPECT_EQ(StoreTypeInfo(), StoreTypeInfo::Empty);
  EXPECT_NE(StoreTypeInfo(StoreType::Int32, true), StoreTypeInfo::Int32);
}

struct Accessor {
  char const* name;
  std::function<void(Value const&)> read;
  std::function<void(Value const&)> fetch;
};
std::vector<Accessor> const accessors = {
    {"Int32", [](Value const& v) { v->GetInt32(); }, FetchStoreValue<int>},
    {"Int64", [](Value const& v) { v->GetInt64(); }, FetchStoreValue<int64>},
    {"Real32", [](Value const& v) { v->GetReal32(); }, FetchStoreValue<float>},
    {"Real64", [](Value const& v) { v->GetReal64(); }, FetchStoreValue<double>},
    {"String", [](Value const& v) { v->GetString(); }, FetchStoreValue<RIndirectString>},
    {"Date", [](Value const& v) { v->GetDate(); }, nullptr},
    {"DateTime", [](Value const& v) { v->GetDateTime(); }, FetchStoreValue<OrtDateTime>},
    {"Bool", [](Value const& v) { v->GetBool(); }, FetchStoreValue<bool>},
    {"Color", [](Value const& v) { v->GetColor(); }, FetchStoreValue<OrtColor>},
    {"String", [](Value const& v) { v->GetString(); }, FetchStoreValue<OStringCore>}};

OrtDateTime const instant(2020, 3, 1, 12, 0, 0, 7);

std::vector<Value> ScalarsOfAllTypes() {
  return {factory::MakeInt32(-5),
          factory::MakeInt64(-6),
          factory::MakeReal32(1.5F),
          factory::MakeReal64(-2.5),
          factory::MakeString(OStringCore(L"x")),
          factory::MakeDate(instant),
          factory::MakeDateTime(instant),
          factory::MakeColor(OrtColor(-1)),
          factory::MakeBool(true)};
}

TEST(StoreValue, GivesItsScalarToItsOwnAccessor) {
  auto const v = ScalarsOfAllTypes();
  EXPECT_EQ(v[0]->GetInt32(), -5);
  EXPECT_EQ(v[1]->GetInt64(), -6);
  EXPECT_EQ(v[2]->GetReal32(), 1.5F);
  EXPECT_EQ(v[3]->GetReal64(), -2.5);
  EXPECT_EQ(v[4]->GetString().Get(), OStringCore(L"x"));
  EXPECT_EQ(v[5]->GetDate().GetValue(), instant.GetValue());
  EXPECT_EQ(v[5]->GetDateTime().GetValue(), instant.GetValue());
  EXPECT_EQ(v[6]->GetDateTime().GetValue(), instant.GetValue());
  EXPECT_EQ(v[7]->GetColor().GetValue(), -1);
  EXPECT_TRUE(v[8]->GetBool());
  for (std::size_t i = 0; i < v.size(); ++i) EXPECT_EQ(static_cast<std::size_t>(v[i]->GetStoreType()), i + 1);
}

TEST(StoreValue, RefusesEveryOtherAccessor) {
  auto values = ScalarsOfAllTypes();
  values.push_back(factory::MakeTuple(std::vector<Value>{}));
  for (auto const& value : values) {
    std::string const own = StoreTypeToString(value->GetStoreType()).toUtf8();
    for (auto const& accessor : accessors) {
      std::string const wanted = accessor.name;
      if (own == wanted || (own == "Date" && wanted == "DateTime")) continue;
      Error const refusal(55, own + " read as " + wanted);
      EXPECT_EQ(ErrorOf([&] { accessor.read(value); }), refusal);
      if (accessor.fetch == nullptr) continue;
      EXPECT_EQ(ErrorOf([&] { accessor.fetch(value); }), refusal);
    }
    EXPECT_EQ(ErrorOf([&] { value->AsTypedArray<uint64>(); }), Error(55, own + " read as Array"));
    EXPECT_EQ(ErrorOf([&] { value->AsNamedValues(); }), Error(55, own + " read as Table or KeyMap"));
    EXPECT_EQ(ErrorOf([&] { value->GetKeySetTypes(); }), Error(55, own + " read as KeySet"));
  }
}

TEST(StoreValue, RefusesToReadASpecialValueAsAScalarOrContainer) {
  for (int type = 1; type <= 14; ++type) {
    StoreTypeInfo const info(static_cast<StoreType>(type), false);
    auto const special = factory::MakeSpecial(info, static_cast<SpecialKind>(9));
    std::string const name = "special " + StoreTypeToString(info).toUtf8() + " read as ";
    EXPECT_TRUE(special->IsSpecial());
    EXPECT_EQ(special->GetTypeInfo(), info);
    for (auto const& accessor : accessors) {
      Error error = ErrorOf([&] { accessor.read(special); });
      // An instant of type Date is asked for under its own type.
      if (info == StoreType::Date && error.second == name + "Date") error.second = name + accessor.name;
      EXPECT_EQ(error, Error(55, name + accessor.name));
    }
    EXPECT_EQ(ErrorOf([&] { special->AsTuple(); }), Error(55, name + "Tuple"));
    EXPECT_EQ(ErrorOf([&] { special->AsColumn(); }), Error(55, name + "Array"));
    EXPECT_EQ(ErrorOf([&] { special->AsDictionary<uint64, uint64>(); }).first, 55);
  }
  for (auto const& accessor : accessors) {
    if (accessor.fetch == nullptr) continue;
    EXPECT_EQ(ErrorOf([&] { accessor.fetch(nullptr); }), Error(55, "no value"));
  }
}

TEST(StoreValue, MakesASpecialValueOfKindNoneOneOfKindOne) {
  auto const kindOf = [](int kind) {
    return factory::MakeSpecial(StoreTypeInfo::Real64, static_cast<SpecialKind>(kind))->GetSpecialKind();
  };
  EXPECT_EQ(kindOf(0), SpecialKind::Missing);
  for (int const kind : {1, 2, 9, 255}) EXPECT_EQ(kindOf(kind), static_cast<SpecialKind>(kind));
}

double Nan(char const* payload) { return -std::nan(payload); }

Value Column(std::vector<double> values) {
  return factory::MakeArray(StoreTypeInfo::Real64, std::make_unique<std::vector<double>>(std::move(values)));
}

TEST(StoreValue, EqualsByTypeAndContentAndHashesAlike) {
  using Values = std::vector<Value>;
  auto const special = [](StoreTypeInfo const& type, int kind) {
    return factory::MakeSpecial(type, static_cast<SpecialKind>(kind));
  };
  auto const table = [](OStringCore const& name, Value const& value) {
    return factory::MakeTable(factory::NamedValues{{name, value}});
  };
  double const nan = std::numeric_limits<double>::quiet_NaN();
  // Values are equal within a class and nowhere else.
  std::vector<Values> classes = {
      {factory::MakeReal64(0.0), factory::MakeReal64(-0.0)},
      {factory::MakeReal64(nan), factory::MakeReal64(Nan("7"))},
      {factory::MakeReal32(0.0F), factory::MakeReal32(-0.0F)},
      {factory::MakeReal32(std::nanf("1")), factory::MakeReal32(-std::nanf("2"))},
      {factory::MakeReal64(1.0)},
      {factory::MakeReal32(1.0F)},
      {factory::MakeInt32(1)},
      {factory::MakeInt64(1)},
      {factory::MakeBool(true)},
      {factory::MakeColor(OrtColor(1))},
      {factory::MakeDate(OrtDateTime::FromValue(1))},
      {factory::MakeDateTime(OrtDateTime::FromValue(1))},
      {factory::MakeInt32(0)},
      {factory::MakeString(OStringCore(L"1")), factory::MakeString(RIndirectString(OStringCore(L"1")))},
      {factory::MakeString(OStringCore())},
      {special(StoreTypeInfo::Int32, 1), special(StoreTypeInfo(StoreType::Int32, true), 1)},
      {special(StoreTypeInfo::Int32, 9)},
      {special(StoreTypeInfo::Int64, 1)},
      {special(StoreTypeInfo::String, 1)},
      {special(StoreTypeInfo::Tuple, 1)},
      {Column({0.0, nan}), Column({-0.0, Nan("3")})},
      {Column({0.0})},
      {Column({nan, 0.0})},
      {factory::MakeTuple(Values{factory::MakeReal64(0.0)}),
       factory::MakeTuple(Values{factory::MakeReal64(-0.0)})},
      {factory::MakeTuple(Values{})},
      {factory::MakeTuple(Values{factory::MakeInt32(0)})},
      {table(OStringCore(L"a"), Column({nan})), table(OStringCore(L"a"), Column({nan}))},
      {table(OStringCore(L"b"), Column({nan}))},
      {factory::MakeKeyMap(factory::NamedValues{{OStringCore(L"a"), Column({nan})}})}};
  for (auto& values : classes) values.push_back(values.front()->Clone());
  for (std::size_t i = 0; i < classes.size(); ++i) {
    for (std::size_t j = 0; j < classes.size(); ++j) {
      for (auto const& a : classes[i]) {
        for (auto const& b : classes[j]) {
          EXPECT_EQ(a->Equals(*b), i == j) << i << " against " << j;
          EXPECT_TRUE(i != j || a->GetHash() == b->GetHash()) << i;
        }
      }
    }
  }
}

}  // namespace
}  // namespace ort::core
