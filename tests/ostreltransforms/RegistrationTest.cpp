#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/FamilyTable.h"
#include "ostreltransforms/FamilyTables.h"
#include "ostreltransforms/FunctionDocumentation.h"
#include "ostreltransforms/Registration.h"
#include "ostreltransforms/RegistrationChecks.h"
#include "ostreltransforms/RowDriver.h"
#include "ostreltransforms/TransformNames.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;
using RowDriver::ErrorOf;

template <class Registry>
std::vector<std::pair<FunctionKey, KeySegmentType>> ListKeys(Registry const& functions) {
  std::vector<std::pair<FunctionKey, KeySegmentType>> keys;
  for (auto const& entry : functions.GetEntries()) keys.emplace_back(entry.GetKey(), entry.GetOutput());
  return keys;
}

std::vector<std::pair<FunctionKey, KeySegmentType>> ListAllKeys(FunctionRegistry& registry) {
  auto keys = ListKeys(registry.GetUnaryFunctions());
  for (auto const& more :
       {ListKeys(registry.GetBinaryFunctions()), ListKeys(registry.GetMultinaryFunctions())}) {
    keys.insert(keys.end(), more.begin(), more.end());
  }
  return keys;
}

TEST(Registration, ChecksNameTheFunctionAndTheFault) {
  OStringCore const name(L"someName");
  KeySegmentType const int32(StoreTypeInfo::Int32), real64(StoreTypeInfo::Real64), none;
  FunctionKey const unary(name, int32), binary(name, int32, real64);
  FunctionKey const unlisted(name, std::vector<KeySegmentType>());
  using namespace RegistrationChecks;
  auto const open = StoreType::Empty;
  struct {
    std::function<void()> check;
    int error;
  } const cases[] = {
      {[&] { RequireUnary(unary, real64, StoreType::Int32); }, -1},
      {[&] { RequireUnary(unary, real64, open); }, -1},
      {[&] { RequireUnary(binary, real64, StoreType::Int32); }, 128},
      {[&] { RequireUnary(unlisted, none, StoreType::Int32); }, 128},
      {[&] { RequireUnary(unary, real64, StoreType::String); }, 120},
      {[&] { RequireUnary(unary, none, StoreType::String); }, 120},
      {[&] { RequireUnary(unary, none, StoreType::Int32); }, 121},
      {[&] { RequireBinary(binary, int32, StoreType::Int32, StoreType::Real64); }, -1},
      {[&] { RequireBinary(binary, int32, StoreType::Int32, open); }, -1},
      {[&] { RequireBinary(unary, int32, StoreType::Int32, open); }, 130},
      {[&] { RequireBinary(binary, int32, StoreType::Real64, open); }, 120},
      {[&] { RequireBinary(binary, int32, open, StoreType::Int32); }, 120},
      {[&] { RequireBinary(binary, none, open, open); }, 121},
      {[&] { RequireMultinary(unlisted, int32); }, -1},
      {[&] { RequireMultinary(unlisted, none); }, 121},
  };
  for (auto const& [check, error] : cases) {
    try {
      check();
      EXPECT_EQ(error, -1);
    } catch (OrtRuntimeException const& exception) {
      EXPECT_EQ(exception.GetError(), error);
      EXPECT_EQ(exception.GetMessage(), name);
    }
  }
}

TEST(Registration, TransformFunctionsAreTheFamiliesInTheirOrder) {
  FunctionRegistry whole, parts;
  RegisterOstrelTransformFunctions(whole);
  RegisterOstrelReduceFunctions(parts);
  RegisterOstrelMapFunctions(parts);
  RegisterOstrelZipWithFunctions(parts);
  RegisterOstrelSetValueMultiFunctions(parts);
  RegisterOstrelWhenFunctions(parts);
  RegisterRows(parts, GetBubbleTable());
  RegisterOstrelComposerFunctions(parts);
  RegisterOstrelFilterFunctions(parts);
  RegisterOstrelWordleFunctions(parts);
  EXPECT_EQ(ListAllKeys(whole), ListAllKeys(parts));
}

TEST(Registration, TwiceGivesTwoOfEverything) {
  FunctionRegistry once, twice;
  RegisterAllRuntimeFunctions(once);
  RegisterAllRuntimeFunctions(twice);
  RegisterAllRuntimeFunctions(twice);
  EXPECT_EQ(ListAllKeys(twice).size(), 2 * ListAllKeys(once).size());
}

TEST(Registration, ForTestLeavesOutTheHostsOwnFunctions) {
  FunctionRegistry tested, plain, all;
  EXPECT_FALSE(RegisterFunctionsForTest(nullptr));
  EXPECT_TRUE(RegisterFunctionsForTest(&tested));
  RegisterOstrelTransformFunctions(plain);
  RegisterAllRuntimeFunctions(all);
  EXPECT_EQ(ListAllKeys(tested), ListAllKeys(plain));
  EXPECT_GT(ListAllKeys(all).size(), ListAllKeys(plain).size());
}

TEST(Registration, TenNamesStandForNoFunction) {
  FunctionRegistry registry;
  RegisterOstrelTransformFunctions(registry);
  for (wchar_t const* const name :
       {TransformNames::FORMAT_NUMBER, TransformNames::MEASURE_BASELINE,
        TransformNames::MEASURE_EXTERNAL_LEADING, TransformNames::MEASURE_TEXT_RUN_WIDTH,
        TransformNames::MEASURE_TEXT_RUN_HEIGHT, TransformNames::PBAND_EXTEND_RANGE_COLUMN,
        TransformNames::SYNC_FOLDED_AXES_ID, TransformNames::TO_REAL64_SVM, TransformNames::LOOKUP_REAL64,
        TransformNames::LOOKUP_INT64}) {
    for (auto const& [key, output] : ListAllKeys(registry)) EXPECT_NE(key.GetName(), OStringCore(name));
  }
}

// Every registration is documented, under its own types.
TEST(Registration, DocumentationFollowsTheRegistry) {
  FunctionRegistry registry;
  RegisterOstrelTransformFunctions(registry);
  auto const byText = [](OStringCore const& name, std::vector<KeySegmentType> const& inputs,
                         KeySegmentType const& output, std::vector<KeySegmentType> const& parameters) {
    std::string text = name.toUtf8() + "(";
    for (auto const& input : inputs) text += input.ToString().toUtf8() + ",";
    text += ")" + output.ToString().toUtf8();
    for (auto const& parameter : parameters) text += "," + parameter.ToString().toUtf8();
    return text;
  };
  std::multiset<std::string> registered, documented;
  auto const collect = [&](auto const& functions) {
    for (auto const& entry : functions.GetEntries()) {
      registered.insert(byText(entry.GetKey().GetName(), entry.GetKey().GetInputTypes(), entry.GetOutput(),
                               entry.GetParameters()));
    }
  };
  collect(registry.GetUnaryFunctions());
  collect(registry.GetBinaryFunctions());
  collect(registry.GetMultinaryFunctions());
  for (FunctionDocumentation const& entry : GetFunctionDocumentation()) {
    documented.insert(byText(entry.name, entry.inputs, entry.output, entry.parameters));
    EXPECT_EQ(entry.inputNames.size(), entry.inputs.size());
    EXPECT_EQ(entry.parameterNames.size(), entry.parameters.size());
    EXPECT_TRUE(entry.example.starts_with("{\"function\": \"" + entry.name.toUtf8() + "\", \"inputs\": ["));
  }
  EXPECT_EQ(documented, registered);
}

// How rows of each form arrive in the registry, and what their factories refuse.
double Half(double value) { return value / 2; }
std::pair<double, SpecialKind> KindAsNumber(double, SpecialKind kind) {
  return {static_cast<double>(kind), kind};
}
struct Scaled {
  explicit Scaled(double factorGiven) : factor(factorGiven) {}
  double Apply(double value) const { return factor * value; }
  std::pair<double, SpecialKind> Apply(double value, SpecialKind kind) const {
    return {factor * value, kind};
  }
  double factor;
};
int FirstOrSecond(bool first, Value const& members) {
  return FetchStoreValue<int>(members->AsTuple().GetMember(first ? 0 : 1));
}
int Difference(int a, StoreValue const& b) { return a - b.GetInt32(); }
Value CountInputs(std::vector<Value> const& inputs) {
  return factory::MakeInt32(static_cast<int>(inputs.size()));
}

wchar_t const* const kName = L"row";
constexpr Row kRows[] = {
    Unary<Half>({.name = kName, .inputs = {"values"}, .help = "Half.", .example = R"("inputs": [])"}),
    Unary<KindAsNumber>({.name = kName, .inputs = {"values"}, .help = "Kind.", .example = R"("inputs": [])"}),
    UnaryOperation<Scaled, double>({.name = kName,
                                    .inputs = {"values"},
                                    .parameters = {"factor"},
                                    .isOrderDependent = true,
                                    .help = "Scaled.",
                                    .example = R"("inputs": [], "parameters": [])"}),
    SpecialUnaryOperation<Scaled, double>({.name = kName,
                                           .inputs = {"values"},
                                           .parameters = {"factor"},
                                           .help = "Scaled.",
                                           .example = R"("inputs": [], "parameters": [])"}),
    Binary<FirstOrSecond>({.name = kName,
                           .inputs = {"choices", {"members", StoreType::Tuple}},
                           .help = "One of two.",
                           .example = R"("inputs": [])"}),
    Multinary<Difference>({.name = kName,
                           .inputs = {"a", {"b", ArrayOf(StoreType::Int32)}},
                           .help = "Difference.",
                           .example = R"("inputs": [])"}),
    Multinary<CountInputs>({.name = kName,
                            .inputs = {{"values...", KeySetOf(StoreType::String, StoreType::Int64)}},
                            .output = StoreType::Int32,
                            .help = "Count.",
                            .example = R"("inputs": [])"}),
};

class FamilyRows : public testing::Test {
 protected:
  FamilyRows() { RegisterRows(registry_, {"test", kRows}); }
  FunctionRegistry registry_;
};

TEST_F(FamilyRows, ArriveInTheirSubRegistryWithTypesFromTheOperation) {
  auto const& unary = registry_.GetUnaryFunctions().GetEntries();
  ASSERT_EQ(unary.size(), 4U);
  std::vector<KeySegmentType> const noParameters, oneParameter{StoreTypeInfo::Real64};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(unary[i].GetKey(), FunctionKey(OStringCore(kName), StoreTypeInfo::Real64));
    EXPECT_EQ(unary[i].GetOutput(), KeySegmentType(StoreTypeInfo::Real64));
    EXPECT_EQ(static_cast<std::size_t>(unary[i].GetType()), i);
    EXPECT_EQ(unary[i].GetParameters(), i < 2 ? noParameters : oneParameter);
    EXPECT_EQ(unary[i].IsOrderDependent(), i == 2);
  }
  auto const& binary = registry_.GetBinaryFunctions().GetEntries();
  ASSERT_EQ(binary.size(), 1U);
  EXPECT_EQ(binary[0].GetKey(), FunctionKey(OStringCore(kName), StoreTypeInfo::Bool, StoreTypeInfo::Tuple));
  auto const& multinary = registry_.GetMultinaryFunctions().GetEntries();
  ASSERT_EQ(multinary.size(), 2U);
  StoreTypeInfo const empty;
  KeySegmentType const array(StoreTypeInfo::Array, empty, StoreTypeInfo::Int32, empty);
  KeySegmentType const keySet(StoreTypeInfo::KeySet, StoreTypeInfo::String, StoreTypeInfo::Int64, empty);
  EXPECT_EQ(multinary[0].GetKey().GetInputTypes(),
            (std::vector{KeySegmentType(StoreTypeInfo::Int32), array}));
  EXPECT_EQ(multinary[0].GetOutput(), KeySegmentType(StoreTypeInfo::Int32));
  EXPECT_EQ(multinary[1].GetKey().GetInputTypes(), std::vector{keySet});
}

TEST_F(FamilyRows, FactoriesBindParameters) {
  auto const& unary = registry_.GetUnaryFunctions().GetEntries();
  auto const made = [&](std::size_t row, std::vector<Value> parameters) {
    return [&factory = unary[row].GetFactory(), parameters = std::move(parameters)] {
      return factory(parameters);
    };
  };
  auto const three = factory::MakeReal64(3.0);
  RowDriver::ExpectUnary<double, double>(made(0, {}), {4.0, -1.0}, {2.0, -0.5});
  RowDriver::ExpectUnary<double, double>(made(2, {three}), {4.0, -1.0}, {12.0, -3.0});
  RowDriver::ExpectSpecialUnary<double, double>(made(1, {}),
                                                {{4.0, SpecialKind::Null}, {2.0, SpecialKind::None}},
                                                {{9.0, SpecialKind::Null}, {0.0, SpecialKind::None}});
  RowDriver::ExpectSpecialUnary<double, double>(made(3, {three}), {{4.0, SpecialKind::Null}},
                                                {{12.0, SpecialKind::Null}});
  EXPECT_EQ(ErrorOf(made(0, {three})), 55);
  EXPECT_EQ(ErrorOf(made(2, {})), 55);
  EXPECT_EQ(ErrorOf(made(2, {three, three})), 55);
  EXPECT_EQ(ErrorOf(made(2, {factory::MakeInt32(3)})), 55);
  EXPECT_EQ(ErrorOf(made(2, {factory::MakeSpecial(StoreTypeInfo::Real64, SpecialKind::Missing)})), 55);
  EXPECT_EQ(ErrorOf(made(2, {nullptr})), 55);
}

TEST_F(FamilyRows, MultinaryCallsCountAndReadTheirInputs) {
  auto const& multinary = registry_.GetMultinaryFunctions().GetEntries();
  auto const call = [&](std::size_t row, std::vector<Value> const& inputs) {
    auto const functor = multinary[row].GetFactory()();
    return dynamic_cast<IMultinaryFunctor&>(*functor).Apply(inputs);
  };
  auto const five = factory::MakeInt32(5), three = factory::MakeInt32(3);
  EXPECT_EQ(call(0, {five, three})->GetInt32(), 2);
  EXPECT_EQ(call(1, {five, three, five})->GetInt32(), 3);
  EXPECT_EQ(ErrorOf([&] { call(0, {five}); }), 219);
  EXPECT_EQ(ErrorOf([&] { call(0, {five, three, three}); }), 219);
  EXPECT_EQ(ErrorOf([&] { call(0, {factory::MakeReal64(5.0), three}); }), 55);
  EXPECT_EQ(ErrorOf([&] { call(0, {five, nullptr}); }), 55);
}

}  // namespace
}  // namespace OstrelTransforms
