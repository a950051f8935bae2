#pragma once

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "ostrelrtcore/Factory.h"
#include "ostrelrtcore/FunctionRegistry.h"

// Short names for values, and calls of registered functions of whole values.
namespace TestValues {

using namespace ort::core;
using Value = std::shared_ptr<StoreValue>;

inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();
inline constexpr SpecialKind kNone = SpecialKind::None, kMissing = SpecialKind::Missing,
                             kNull = SpecialKind::Null;

inline Value Flag(bool value) { return factory::MakeBool(value); }
inline Value I32(int value) { return factory::MakeInt32(value); }
inline Value I64(int64 value) { return factory::MakeInt64(value); }
inline Value R32(float value) { return factory::MakeReal32(value); }
inline Value R64(double value) { return factory::MakeReal64(value); }
inline Value Text(wchar_t const* text = L"a") { return factory::MakeString(OStringCore(text)); }
inline Value Special(StoreTypeInfo const& type, SpecialKind kind = kMissing) {
  return factory::MakeSpecial(type, kind);
}
inline Value Tuple(std::vector<Value> members) { return factory::MakeTuple(std::move(members)); }
inline Value Range(Value minimum, Value maximum, int mode = 0, int fieldType = 4, bool isLog = false) {
  return Tuple({std::move(minimum), std::move(maximum), I32(mode), I32(fieldType), Flag(isLog)});
}

// A column with rows of these kinds; `kinds` may be left out.
template <class T>
Value Column(StoreTypeInfo const& type, std::vector<T> const& rows,
             std::vector<SpecialKind> const& kinds = {}) {
  factory::Value const made = [&] {
    auto column = factory::MakeColumnBuilder<T>(type, static_cast<int>(rows.size()));
    for (std::size_t row = 0; row < rows.size(); ++row) {
      column.GetValues()[row] = rows[row];
      if (row < kinds.size() && kinds[row] != kNone) column.SetSpecial(static_cast<int>(row), kinds[row]);
    }
    return column.Finish();
  }();
  return made;
}
inline Value Ints(std::vector<int> const& rows, std::vector<SpecialKind> const& kinds = {}) {
  return Column(StoreTypeInfo::Int32, rows, kinds);
}
inline Value Longs(std::vector<int64> const& rows, std::vector<SpecialKind> const& kinds = {}) {
  return Column(StoreTypeInfo::Int64, rows, kinds);
}
inline Value Reals(std::vector<double> const& rows, std::vector<SpecialKind> const& kinds = {}) {
  return Column(StoreTypeInfo::Real64, rows, kinds);
}
inline Value Flags(std::vector<uint8> const& rows) { return Column(StoreTypeInfo::Bool, rows); }
inline Value Tuples(std::vector<Value> const& rows) { return Column(StoreTypeInfo::Tuple, rows); }

// Calls the registration of a name; of several the one at a place.
inline Value Call(FunctionRegistry& registry, wchar_t const* name, std::vector<Value> const& inputs,
                  std::size_t place = 0) {
  auto const functor = registry.GetMultinaryFunctions().Find(OStringCore(name)).at(place).GetFactory()();
  return dynamic_cast<IMultinaryFunctor&>(*functor).Apply(inputs);
}

template <class Place = char const*>
void ExpectEqual(Value const& got, Value const& expected, Place const& place = "") {
  ASSERT_NE(got, nullptr) << place;
  ASSERT_EQ(got->GetTypeInfo(), expected->GetTypeInfo()) << place;
  EXPECT_TRUE(got->Equals(*expected)) << place;
}

}  // namespace TestValues
