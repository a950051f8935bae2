#include <gtest/gtest.h>

#include "ostrelrtcore/ErrorOf.h"
#include "ostrelrtcore/Factory.h"
#include "ostrelrtcore/FunctionRegistry.h"
#include "ostrelrtcore/OrtUnaryFunctor.h"

namespace ort::core {
namespace {

using Info = StoreTypeInfo;
using Unary = RegistryOfUnaryFunctions::Type;
using Binary = RegistryOfBinaryFunctions::Type;

OStringCore Name(char const* name) { return OStringCore::fromUtf8(name); }
KeySegmentType ArrayOf(Info const& element) { return {Info::Array, Info::Empty, element, Info::Empty}; }
KeySegmentType KeySetOf(Info const& key, Info const& value) {
  return {Info::KeySet, key, value, Info::Empty};
}

class Times {
 public:
  explicit Times(double factor) : factor_(factor) {}
  double Apply(double value) const { return value * factor_; }

 private:
  double factor_;
};
using TimesFunctor = OrtUnaryFunctor<double, double, Times>;
auto TimesFactory(double factor) {
  return [factor] { return std::make_unique<TimesFunctor>(factor); };
}
double ApplyToOne(OrtFunctor& functor) {
  return dynamic_cast<IUnaryFunctor<double, double>&>(functor).Apply(1);
}

TEST(KeySegmentType, ComparesByAllFourComponentsAndMatchesWithGaps) {
  struct {
    KeySegmentType registered;
    KeySegmentType call;
    bool isEqual;
    bool matches;
    char const* text;
  } const cases[] = {
      {Info::Int32, Info::Int32, true, true, "Int32"},
      {Info::Int32, KeySegmentType(StoreType::Int32, false), true, true, "Int32"},
      {Info::Int32, KeySegmentType(StoreType::Int32, true), false, true, "Int32"},
      {Info::Int32, Info::Int64, false, false, "Int32"},
      {ArrayOf(Info::Real64), ArrayOf(Info::Real64), true, true, "Array of Real64"},
      {ArrayOf(Info::Real64), ArrayOf(Info::Int64), false, false, "Array of Real64"},
      {Info::Array, ArrayOf(Info::Int64), false, true, "Array"},
      {ArrayOf(Info::Real64), Info::Array, false, true, "Array of Real64"},
      {ArrayOf(Info::Real64), Info::MakeArrayType(StoreType::Real64), true, true, "Array of Real64"},
      {ArrayOf(Info::Real64), Info::MakeArrayType(StoreType::Int64), false, false, "Array of Real64"},
      {ArrayOf(Info::Tuple), Info::Tuple, false, false, "Array of Tuple"},
      {KeySetOf(Info::String, Info::Real64), KeySetOf(Info::String, Info::Real64), true, true,
       "KeySet of String to Real64"},
      {KeySetOf(Info::String, Info::Real64), KeySetOf(Info::Int64, Info::Real64), false, false,
       "KeySet of String to Real64"},
      {KeySetOf(Info::String, Info::Real64), KeySetOf(Info::String, Info::Int64), false, false,
       "KeySet of String to Real64"},
      {{Info::KeySet, Info::Int32, Info::Array, Info::Int32},
       {Info::KeySet, Info::Int32, Info::Array, Info::Int64},
       false,
       false,
       "KeySet of Int32 to Array"},
      // A registered slot without a type takes any value; a call without a type is no such value.
      {KeySegmentType(), Info::Tuple, false, true, "Empty"},
      {KeySegmentType(), ArrayOf(Info::Int32), false, true, "Empty"},
      {Info::Tuple, KeySegmentType(), false, false, "Tuple"},
      {KeySegmentType(), KeySegmentType(), true, true, "Empty"}};
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    auto const& c = cases[i];
    EXPECT_EQ(c.registered == c.call, c.isEqual) << i;
    EXPECT_EQ(Matches(c.registered, c.call), c.matches) << i;
    EXPECT_EQ(c.registered.ToString(), Name(c.text)) << i;
  }
  auto const segments = KeySegmentType::MakeVector({Info::Int32, ArrayOf(Info::Bool)});
  EXPECT_EQ(segments.size(), 2u);
  EXPECT_EQ(segments[1].GetMainType(), Info::Array);
  EXPECT_EQ(segments[1].GetElementType(), Info::Bool);
  EXPECT_EQ(KeySegmentType(Info::MakeArrayType(StoreType::Bool)).GetMainType(), Info::Array);
}

// The factors of the entries, each made by its factory.
std::vector<double> Factors(std::vector<RegistryEntry<Unary>> const& entries) {
  std::vector<double> factors;
  for (auto const& entry : entries) factors.push_back(ApplyToOne(*entry.GetFactory()()));
  return factors;
}

TEST(FunctionRegistry, FindsTheLatestRegistrationFirst) {
  FunctionRegistry registry;
  auto& unary = registry.GetUnaryFunctions();
  struct {
    char const* name;
    KeySegmentType input;
    double factor;
  } const entries[] = {{"scale", Info::Real64, 1},         {"scale", Info::Int32, 2},
                       {"other", Info::Real64, 3},         {"scale", Info::Real64, 4},
                       {"scale", KeySegmentType(), 5},     {"Scale", Info::Real64, 6},
                       {"scale", ArrayOf(Info::Empty), 7}, {"scale", ArrayOf(Info::Real64), 8}};
  for (auto const& e : entries)
    unary.Register(FunctionKey(Name(e.name), e.input), Info::Real64, Unary::Plain, TimesFactory(e.factor));
  struct {
    char const* name;
    KeySegmentType input;
    std::vector<double> expected;
  } const cases[] = {{"scale", Info::Real64, {5, 4, 1}},
                     {"scale", Info::Int32, {5, 2}},
                     {"scale", Info::Tuple, {5}},
                     {"Scale", Info::Real64, {6}},
                     {"scale", ArrayOf(Info::Real64), {8, 7, 5}},
                     {"scale", ArrayOf(Info::Int32), {7, 5}},
                     {"SCALE", Info::Real64, {}},
                     {"other", Info::Int32, {}},
                     {"", Info::Int32, {}}};
  for (auto const& c : cases)
    EXPECT_EQ(Factors(unary.Find(FunctionKey(Name(c.name), c.input))), c.expected) << c.name;
  EXPECT_TRUE(unary.Find(FunctionKey(Name("scale"), Info::Real64, Info::Real64)).empty());
  EXPECT_EQ(Factors(unary.Find(Name("scale"))), (std::vector<double>{1, 2, 4, 5, 7, 8}));
  EXPECT_EQ(Factors(unary.GetEntries()), (std::vector<double>{1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_TRUE(unary.Find(Name("none")).empty());
  EXPECT_TRUE(registry.GetBinaryFunctions().GetEntries().empty());
  EXPECT_TRUE(registry.GetMultinaryFunctions().Find(Name("scale")).empty());
}

TEST(FunctionRegistry, KeepsWhatARegistrationTells) {
  FunctionRegistry registry;
  auto const make = TimesFactory(2);
  {
    // All arguments are gone when the entries are read.
    std::vector<KeySegmentType> const parameters = {Info::Real64, KeySetOf(Info::String, Info::Int64)};
    registry.GetUnaryFunctions().Register(Name("a"), StoreType::Int64, StoreType::Color, Unary::Special,
                                          make);
    registry.GetUnaryFunctions().Register(FunctionKey(Name("b"), Info::Tuple), Info::Bool, parameters,
                                          Unary::Operation, true, make);
    registry.GetBinaryFunctions().Register(Name("c"), StoreType::Int32, StoreType::Int64, StoreType::Real32,
                                           Binary::Plain, make);
    registry.GetBinaryFunctions().Register(FunctionKey(Name("d"), Info::Tuple, Info::Bool), Info::Tuple,
                                           parameters, Binary::SpecialOperation, true, make);
    registry.GetBinaryFunctions().Register(FunctionKey(Name("e"), Info::Tuple, Info::Bool), Info::Tuple,
                                           Binary::Operation, make);
    registry.GetMultinaryFunctions().Register(FunctionKey(Name("f"), parameters), Info::KeyMap, make);
  }
  auto const a = registry.GetUnaryFunctions().Find(Name("a")).front();
  EXPECT_EQ(a.GetKey(), FunctionKey(Name("a"), Info::Int64));
  EXPECT_EQ(a.GetOutput(), KeySegmentType(Info::Color));
  EXPECT_EQ(a.GetType(), Unary::Special);
  EXPECT_FALSE(a.IsOrderDependent());
  EXPECT_TRUE(a.GetParameters().empty());
  auto const b = registry.GetUnaryFunctions().Find(FunctionKey(Name("b"), Info::Tuple)).front();
  EXPECT_TRUE(b->IsOrderDependent());
  EXPECT_EQ(b->GetType(), static_cast<Unary>(2));
  EXPECT_EQ(b->GetParameters(),
            KeySegmentType::MakeVector({Info::Real64, KeySetOf(Info::String, Info::Int64)}));
  auto const& binary = registry.GetBinaryFunctions().GetEntries();
  EXPECT_EQ(binary[0].GetKey(), FunctionKey(Name("c"), Info::Int32, Info::Int64));
  EXPECT_EQ(binary[0].GetOutput(), KeySegmentType(Info::Real32));
  EXPECT_EQ(binary[1].GetType(), static_cast<Binary>(3));
  EXPECT_TRUE(binary[1].IsOrderDependent());
  EXPECT_FALSE(binary[2].IsOrderDependent());
  auto const f = registry.GetMultinaryFunctions().Find(
      FunctionKey(Name("f"), {Info::Real64, KeySetOf(Info::String, Info::Int64)}));
  ASSERT_EQ(f.size(), 1u);
  EXPECT_EQ(f.front().GetKey().GetInputTypes().size(), 2u);
  EXPECT_EQ(f.front().GetKey().GetName(), Name("f"));
}

TEST(FunctorFactory, MakesAFreshFunctorFromItsParameters) {
  FunctorFactory const factory([](ParameterSpan parameters) {
    if (parameters.size() != 1) throw OrtRuntimeException(OrtError_WrongValueKind);
    return std::make_unique<TimesFunctor>(FetchStoreValue<double>(parameters[0]));
  });
  std::vector<std::shared_ptr<StoreValue>> const parameters = {factory::MakeReal64(2.5)};
  auto const one = factory(parameters);
  auto const two = factory(parameters);
  EXPECT_NE(one, two);
  EXPECT_EQ(ApplyToOne(*two), 2.5);
  EXPECT_EQ(ErrorOf([&] { factory(); }), Error(55, ""));
  EXPECT_EQ(ApplyToOne(*FunctorFactory(TimesFactory(3))(parameters)), 3.0);
}

TEST(FunctorFactory, IsRefusedWhenItIsEmpty) {
  FunctionRegistry registry;
  auto& unary = registry.GetUnaryFunctions();
  std::unique_ptr<OrtFunctor> (*const noFunction)() = nullptr;
  std::function<std::unique_ptr<OrtFunctor>(ParameterSpan)> const noParameterised;
  for (auto const& factory : {FunctorFactory(), FunctorFactory(noFunction), FunctorFactory(noParameterised),
                              FunctorFactory(std::function<std::unique_ptr<OrtFunctor>()>())}) {
    EXPECT_FALSE(factory);
    EXPECT_EQ(ErrorOf([&] {
                unary.Register(Name("x"), StoreType::Int32, StoreType::Int32, Unary::Plain, factory);
              }),
              Error(55, "x"));
  }
  EXPECT_TRUE(unary.GetEntries().empty());
  EXPECT_TRUE(unary.Find(Name("x")).empty());
}

}  // namespace
}  // namespace ort::core
