#pragma once

#include <random>

#include "ostreltransforms/Registration.h"
#include "ostreltransforms/RowDriver.h"
#include "ostreltransforms/TestValues.h"
#include "ostreltransforms/TransformNames.h"

// Short names for ranges, and calls of the functions of ranges and axes.
namespace TestValues {

inline Value Date(double day) { return factory::MakeDateTime(OrtDateTime::FromDouble(day)); }
inline Value Log(double minimum, double maximum, int mode = 0) {
  return Range(R64(minimum), R64(maximum), mode, 4, true);
}
inline Value Real(double minimum, double maximum, int mode = 0) {
  return Range(R64(minimum), R64(maximum), mode);
}
inline Value Missing() { return Special(StoreTypeInfo::Real64); }

struct Ends {
  double minimum;
  double maximum;
  double GetFraction(double value) const { return (value - minimum) / (maximum - minimum); }
};
inline Ends ReadEnds(Value const& range) {
  auto const& tuple = range->AsTuple();
  return {FetchStoreValue<double>(tuple.GetMember(0)), FetchStoreValue<double>(tuple.GetMember(1))};
}
inline Ends ReadEnds(Value const& ranges, std::size_t row) {
  return ReadEnds(ranges->AsTypedArray<Value>().GetElement(static_cast<int>(row)));
}

// Axes with the pixels that the labels of their bars need.
inline Value AxisTable(std::vector<int> const& ids, std::vector<Ends> const& overflow) {
  std::vector<Value> tuples;
  for (Ends const& pixels : overflow) tuples.push_back(Tuple({R64(pixels.minimum), R64(pixels.maximum)}));
  return factory::MakeTable({{L"UniqueID", Ints(ids)}, {L"BarLabelsOverflow", Tuples(tuples)}});
}

class RangeCalls : public testing::Test {
 protected:
  RangeCalls() { OstrelTransforms::RegisterOstrelSetValueMultiFunctions(registry_); }
  Value Ask(wchar_t const* name, std::vector<Value> const& inputs) { return Call(registry_, name, inputs); }
  double Uniform(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random_);
  }
  int Below(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }

 private:
  FunctionRegistry registry_;
  std::mt19937 random_{7};
};

}  // namespace TestValues
