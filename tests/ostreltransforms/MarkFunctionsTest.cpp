#include <random>
#include <stdexcept>

#include "ostreltransforms/Registration.h"
#include "ostreltransforms/RowDriver.h"
#include "ostreltransforms/TestValues.h"
#include "ostreltransforms/TransformNames.h"

namespace {

using namespace TestValues;
using RowDriver::ErrorOf;

class MarkFunctions : public testing::Test {
 protected:
  MarkFunctions() { OstrelTransforms::RegisterOstrelSetValueMultiFunctions(registry_); }
  Value Ask(wchar_t const* name, std::vector<Value> const& inputs) { return Call(registry_, name, inputs); }

  FunctionRegistry registry_;
};

Value const kNo = Special(StoreTypeInfo::Real64);

struct SizeCase {
  char const* what;
  std::vector<Value> ends;  // minimum, maximum, the legend's, the fixed ones, centre
  int mode;
  bool isReversed, isLog;
  int fieldType;
  double from, to;
  char const* flags;  // c: from centre, r: reversed, p: positive only, e: empty, l: the legend's ends differ
};

TEST_F(MarkFunctions, SizeEncodingsFollowTheirRules) {
  Value const day = factory::MakeDate(OrtDateTime(1900, 1, 1)),
              later = factory::MakeDate(OrtDateTime(1900, 1, 9));
  SizeCase const cases[] = {
      {"positive values grow from zero",
       {R64(2), R64(8), kNo, kNo, kNo, kNo, kNo},
       0,
       false,
       false,
       4,
       0,
       8,
       "pl"},
      {"both signs grow from zero both ways",
       {I32(-5), I64(3), kNo, kNo, kNo, kNo, kNo},
       0,
       false,
       false,
       2,
       0,
       5,
       "cl"},
      {"negative values too", {R64(-8), R64(-2), kNo, kNo, kNo, kNo, kNo}, 0, false, false, 4, 0, 8, "cl"},
      {"from least to greatest", {R64(-5), R64(3), kNo, kNo, kNo, kNo, kNo}, 1, false, false, 4, -5, 3, "l"},
      {"from zero on", {R64(-5), R64(3), kNo, kNo, kNo, kNo, kNo}, 2, false, false, 4, 0, 3, "pl"},
      {"nothing above zero", {R64(-5), R64(-3), kNo, kNo, kNo, kNo, kNo}, 2, false, false, 4, 0, 0, "pel"},
      {"fixed ends", {R64(2), R64(8), kNo, kNo, R64(1), R64(9), kNo}, 0, false, false, 4, 1, 9, "l"},
      {"a fixed end alone", {R64(2), R64(8), kNo, kNo, kNo, R64(20), kNo}, 0, false, false, 4, 0, 20, "pl"},
      {"from a fixed value above zero",
       {R64(2), R64(8), kNo, kNo, R64(1), kNo, kNo},
       2,
       false,
       false,
       4,
       1,
       8,
       "pl"},
      {"from a fixed value below zero",
       {R64(2), R64(8), kNo, kNo, R64(-1), kNo, kNo},
       2,
       false,
       false,
       4,
       0,
       8,
       "pl"},
      {"crossed ends", {R64(2), R64(8), kNo, kNo, R64(9), R64(1), kNo}, 1, false, false, 4, 1, 9, "rl"},
      {"crossed and reversed", {R64(2), R64(8), kNo, kNo, R64(9), R64(1), kNo}, 1, true, false, 4, 1, 9, "l"},
      {"reversed", {R64(2), R64(8), kNo, kNo, kNo, kNo, kNo}, 1, true, false, 4, 2, 8, "rl"},
      {"a centre", {R64(2), R64(8), kNo, kNo, kNo, kNo, R64(4)}, 0, false, false, 4, 4, 8, "cl"},
      {"a centre outside", {R64(2), R64(8), kNo, kNo, kNo, kNo, R64(10)}, 1, false, false, 4, 10, 18, "cl"},
      {"logarithms", {R64(1e-3), R64(100), kNo, kNo, kNo, kNo, R64(5)}, 0, false, true, 4, 1e-3, 100, "pl"},
      {"logarithms of none", {R64(-7), R64(100), kNo, kNo, kNo, kNo, kNo}, 2, false, true, 4, 1, 100, "pl"},
      {"dates", {day, later, kNo, kNo, kNo, kNo, kNo}, 0, false, false, 6, 2, 10, "l"},
      {"one value", {R64(3), R64(3), kNo, kNo, kNo, kNo, kNo}, 1, false, false, 4, 3, 3, "e"},
      {"one value from zero", {R64(3), R64(3), kNo, kNo, kNo, kNo, kNo}, 0, false, false, 4, 0, 3, "p"},
      {"zeros", {R64(0), R64(0), kNo, kNo, kNo, kNo, kNo}, 0, false, false, 4, 0, 0, "pe"},
      {"no values", {kNo, kNo, kNo, kNo, kNo, kNo, R64(4)}, 0, true, false, 4, 0, 0, "re"},
      {"no finite values",
       {R64(kNaN), R64(kInfinity), kNo, kNo, kNo, kNo, kNo},
       0,
       false,
       false,
       4,
       0,
       0,
       "e"},
      {"no values but fixed ends", {kNo, kNo, kNo, kNo, R64(1), R64(2), kNo}, 0, false, false, 4, 1, 2, "l"},
      {"a legend of its own", {R64(2), R64(8), R64(5), R64(5), kNo, kNo, kNo}, 1, false, false, 4, 2, 8, ""},
      {"a wider legend", {R64(3), R64(3), R64(0), kNo, kNo, kNo, kNo}, 1, false, false, 4, 3, 3, "el"},
  };
  for (auto const& [what, ends, mode, isReversed, isLog, fieldType, from, to, flags] : cases) {
    auto inputs = ends;
    for (Value const& rest : {I32(mode), Flag(isReversed), Flag(isLog), I32(fieldType)})
      inputs.push_back(rest);
    auto const flag = [&, &given = flags](char letter) {
      return Flag(std::string_view(given).find(letter) != std::string_view::npos);
    };
    ExpectEqual(Ask(TransformNames::RESOLVE_SIZE_ENCODING_PARAMETERS, inputs),
                factory::MakeKeyMap({{L"encodingMin", R64(from)},
                                     {L"encodingMax", R64(to)},
                                     {L"isFromCenter", flag('c')},
                                     {L"reversed", flag('r')},
                                     {L"inputPositiveValuesOnly", flag('p')},
                                     {L"encodingRangeIsEmpty", flag('e')},
                                     {L"legendMinMaxNotEqual", flag('l')}}),
                what);
  }
  auto const ask = [&](Value const& minimum, Value const& mode) {
    Ask(TransformNames::RESOLVE_SIZE_ENCODING_PARAMETERS,
        {minimum, R64(1), kNo, kNo, kNo, kNo, kNo, mode, Flag(false), Flag(false), I32(4)});
  };
  EXPECT_EQ(ErrorOf([&] { ask(R64(0), I32(3)); }), 2);
  EXPECT_EQ(ErrorOf([&] { ask(R64(0), I32(-1)); }), 2);
  EXPECT_EQ(ErrorOf([&] { ask(R64(0), R64(0)); }), 55);
  EXPECT_EQ(ErrorOf([&] { ask(nullptr, I32(0)); }), 55);
  EXPECT_EQ(ErrorOf([&] { ask(Text(L"7"), I32(0)); }), 178);
  EXPECT_EQ(ErrorOf([&] { Ask(TransformNames::RESOLVE_SIZE_ENCODING_PARAMETERS, {kNo}); }), 219);
}

TEST_F(MarkFunctions, HiddenEntriesTakeTheirMarksAway) {
  auto const ask = [&](std::vector<Value> const& inputs) {
    return Ask(TransformNames::EXCLUDE_HIDDEN_MARKS, inputs);
  };
  Value const none = Ints({}), noFlags = Flags({}), yes = Flag(true), no = Flag(false);
  Value const colors = Ints({0, 1, 2, 1, 7, -1, 0}, {kNone, kNone, kNone, kNone, kNone, kNone, kNull});
  Value const shapes = Ints({1, 1, 1, 0, 0, 0, 0});
  struct {
    std::vector<Value> inputs;
    std::vector<uint8> stays;
  } const cases[] = {
      {{colors, Flags({0, 1, 0}), none, noFlags, none, noFlags, noFlags, yes}, {1, 0, 1, 0, 1, 1, 1}},
      {{colors, Flags({0, 1, 0}), none, noFlags, none, noFlags, noFlags, no}, {1, 0, 1, 0, 0, 0, 0}},
      {{colors, Flags({1, 0, 0}), none, noFlags, none, noFlags, noFlags, yes}, {0, 1, 1, 1, 1, 1, 1}},
      {{colors, Flags({0, 1, 0}), shapes, Flags({0, 1}), none, noFlags, noFlags, yes}, {0, 0, 0, 0, 1, 1, 1}},
      {{none, Flags({1}), none, noFlags, shapes, Flags({1, 0}), noFlags, yes}, {1, 1, 1, 0, 0, 0, 0}},
      {{none, noFlags, none, noFlags, none, noFlags, Flags({0, 1}), no}, {1, 0}},
      {{none, noFlags, none, noFlags, none, noFlags,
        Column(StoreTypeInfo::Bool, std::vector<uint8>{1, 1}, {kNull}), no},
       {1, 0}},
      {{shapes, noFlags, none, noFlags, none, noFlags, noFlags, yes}, {1, 1, 1, 1, 1, 1, 1}},
      {{shapes, noFlags, none, noFlags, none, noFlags, noFlags, no}, {0, 0, 0, 0, 0, 0, 0}},
      {{none, noFlags, none, noFlags, none, noFlags, noFlags, no}, {}},
  };
  int place = 0;
  for (auto const& [inputs, stays] : cases) {
    ExpectEqual(ask(inputs), Flags(stays), "case " + std::to_string(place++));
  }
  EXPECT_EQ(ErrorOf([&] { ask({colors, noFlags, Ints({1}), noFlags, none, noFlags, noFlags, yes}); }), 259);
  EXPECT_EQ(ErrorOf([&] { ask({colors, noFlags, none, noFlags, none, noFlags, Flags({1}), yes}); }), 259);
  EXPECT_EQ(ErrorOf([&] { ask({Reals({1}), noFlags, none, noFlags, none, noFlags, noFlags, yes}); }), 55);
  EXPECT_EQ(ErrorOf([&] { ask({colors, none, none, noFlags, none, noFlags, noFlags, yes}); }), 55);
  EXPECT_EQ(ErrorOf([&] { ask({colors, noFlags, none, noFlags, none, noFlags, noFlags, I32(1)}); }), 55);
  EXPECT_EQ(ErrorOf([&] { ask({R64(1), noFlags, none, noFlags, none, noFlags, noFlags, yes}); }), 55);
  EXPECT_EQ(ErrorOf([&] { ask({colors}); }), 219);
}

TEST_F(MarkFunctions, TablesAndPairsBecomeKeyMaps) {
  auto const pair = [](wchar_t const* name, Value value) { return Tuple({Text(name), std::move(value)}); };
  auto const ask = [&](std::vector<Value> const& inputs) { return Ask(TransformNames::TO_KEYMAP, inputs); };
  Value const x = Reals({1, 2}), nothing = factory::MakeKeyMap(factory::NamedValues{});
  Value const expected = factory::MakeKeyMap({{L"x", x}, {L"n", kNo}});
  ExpectEqual(ask({factory::MakeTable({{L"x", x}, {L"y", x}})}), factory::MakeKeyMap({{L"x", x}, {L"y", x}}));
  ExpectEqual(ask({expected, R64(1), nullptr}), expected, "further inputs");
  ExpectEqual(ask({Tuple({pair(L"x", R64(9)), pair(L"n", kNo), pair(L"x", x)})}), expected,
              "the later holds");
  ExpectEqual(ask({Column<Value>(StoreTypeInfo::Tuple, {pair(L"x", x), pair(L"y", x), pair(L"n", kNo)},
                                 {kNone, kNull, kNone})}),
              expected, "a column with a special row");
  ExpectEqual(ask({factory::MakeTable(factory::NamedValues{})}), nothing);
  ExpectEqual(ask({Tuple({})}), nothing);
  ExpectEqual(ask({Tuples({})}), nothing);

  Value const notPairs[] = {nullptr,
                            R64(1),
                            Ints({1}),
                            Special(StoreTypeInfo::Tuple),
                            Tuple({R64(1)}),
                            Tuple({Tuple({Text(L"x")})}),
                            Tuple({Tuple({Text(L"x"), x, x})}),
                            Tuple({Tuple({I32(1), x})}),
                            Tuple({Tuple({Special(StoreTypeInfo::String), x})})};
  int place = 0;
  for (Value const& input : notPairs) {
    EXPECT_EQ(ErrorOf([&] { ask({input}); }), 55) << "case " << place++;
  }
  try {
    ask({});
    ADD_FAILURE() << "no input was accepted";
  } catch (std::out_of_range const& exception) {
    EXPECT_STREQ(exception.what(), "invalid vector<T> subscript");
  }
}

}  // namespace
