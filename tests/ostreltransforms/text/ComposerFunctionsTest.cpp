#include <gtest/gtest.h>

#include <map>
#include <random>

#include "RowDriver.h"
#include "Texts.h"
#include "ostreltransforms/Registration.h"
#include "ostreltransforms/TransformNames.h"

namespace {

using namespace TestValues;
using RowDriver::ErrorOf;

class ComposerFunctions : public testing::Test {
 protected:
  ComposerFunctions() { OstrelTransforms::RegisterOstrelComposerFunctions(registry_); }
  Value Ask(wchar_t const* name, std::vector<Value> const& inputs) { return Call(registry_, name, inputs); }

  FunctionRegistry registry_;
};

// "key: rows" for each key, special ones as "!kind: rows".
std::string WriteIndex(Value const& keySet) {
  std::string text;
  auto const write = [&](std::string const& key, Value const& rows) {
    text += key + ":";
    EXPECT_EQ(rows->GetTypeInfo().GetElementType(), StoreType::Int32);
    for (int const row : rows->AsTypedArray<int>().GetValues()) text += " " + std::to_string(row);
    text += "\n";
  };
  auto const& index = keySet->AsDictionary<uint32, Value>();
  for (auto const& [key, rows] : index.GetEntries()) write(std::to_string(static_cast<int>(key)), rows);
  for (auto const& [kind, rows] : index.GetSpecialEntries()) {
    write("!" + std::to_string(static_cast<int>(kind)), rows);
  }
  return text;
}

TEST_F(ComposerFunctions, IndexListsTheRowsOfEachNumber) {
  auto const index = [&](Value const& numbers) {
    return WriteIndex(Ask(TransformNames::BUILD_INDEX_KEYSET_INT32, {numbers}));
  };
  EXPECT_EQ(index(Ints({})), "");
  EXPECT_EQ(index(Ints({3, 1, 3, 3})), "1: 1\n3: 0 2 3\n");
  EXPECT_EQ(index(Ints({0, -1, INT_MIN, INT_MAX, 0})), "-2147483648: 2\n-1: 1\n0: 0 4\n2147483647: 3\n");
  EXPECT_EQ(index(Ints({0, 5, 0, 0, 5}, {kMissing, kNone, kNull, kMissing, kNone})),
            "5: 1 4\n!1: 0 3\n!9: 2\n");
  EXPECT_EQ(index(factory::MakeConstantArray<int>(StoreTypeInfo::Int32, 7, 3)), "7: 0 1 2\n");
  EXPECT_EQ(index(factory::MakeConstantArray<int>(StoreTypeInfo::Int32, 2, kNull)), "!9: 0 1\n");

  std::mt19937 random(5);
  // Numbers from so narrow and so wide a range that one digit, two and three order them.
  for (unsigned const range : {1U, 700U, 100'000U, 0xFFFFFFFFU}) {
    std::vector<int> numbers;
    std::map<int, std::vector<int>> rows;
    for (int row = 0; row < 5000; ++row) {
      numbers.push_back(static_cast<int>(random() % range - range / 2));
      rows[numbers.back()].push_back(row);
    }
    std::string expected;
    for (auto const& [number, places] : rows) {
      expected += std::to_string(number) + ":";
      for (int const row : places) expected += " " + std::to_string(row);
      expected += "\n";
    }
    EXPECT_EQ(index(Ints(numbers)), expected);
  }

  EXPECT_EQ(ErrorOf([&] { index(Reals({1})); }), 55);
  EXPECT_EQ(ErrorOf([&] { index(I32(1)); }), 55);
  EXPECT_EQ(ErrorOf([&] { Ask(TransformNames::BUILD_INDEX_KEYSET_INT32, {}); }), 219);
}

// Resolves fonts as a host does, with metrics from the size, and colours by two names.
Value Convert(Value const& value) {
  if (value->GetStoreType() == StoreType::String) {
    if (value->GetString() == OStringCore(L"red")) return factory::MakeColor(static_cast<int>(0xFFFF0000U));
    return value;
  }
  IStoreTuple const& font = value->AsTuple();
  double const size = font.GetMember(1)->GetReal64();
  return Tuple({Text(L"Resolved"), R64(size), font.GetMember(2), font.GetMember(3), R64(size * 0.75),
                R64(size * 1.25), R64(size * 0.5)});
}

class TextStyleTable : public ComposerFunctions {
 protected:
  TextStyleTable() { Install(Convert); }
  ~TextStyleTable() override { OstrelTransforms::SetRuntimeFunctionCallbacks({}, {}, {}, {}); }

  void Install(OstrelTransforms::ValueConverter converter) {
    OstrelTransforms::SetRuntimeFunctionCallbacks(
        {},
        [this](OStringCore const&, Value const& font) {
          ++measured_;
          return font->GetStoreType() == StoreType::Tuple ? 0.0F : throw std::runtime_error("no font");
        },
        std::move(converter), {});
  }

  Value Update(factory::NamedValues columns) {
    return Ask(TransformNames::UPDATE_TEXT_STYLE_TABLE, {factory::MakeTable(std::move(columns))});
  }
  static void ExpectColumns(Value const& table, factory::NamedValues const& expected) {
    for (auto const& [name, column] : expected) {
      ExpectEqual(table->AsNamedValues().Get(name), column, name.toUtf8());
    }
  }

  int measured_ = 0;
};

Value Names(std::vector<wchar_t const*> const& rows) {
  std::vector<RIndirectString> texts;
  for (wchar_t const* const row : rows) texts.push_back(RIndirectString(OStringCore(row)));
  return Column(StoreTypeInfo::String, texts);
}

TEST_F(TextStyleTable, HasAllColumns) {
  Value const table = Update({{L"font_size", Reals({8, 0, 8}, {kNone, kNull})}, {L"extra", Ints({4, 5, 6})}});
  EXPECT_EQ(table->GetStoreType(), StoreType::Table);
  EXPECT_EQ(table->AsNamedValues().GetCount(), 16);
  EXPECT_EQ(measured_, 2) << "each different font once";
  auto const font = [](double size) {
    return Tuple({Text(L"Resolved"), R64(size), I32(400), I32(0), R64(size * 0.75), R64(size * 1.25),
                  R64(size * 0.5)});
  };
  auto const zeros = [] { return Ints({0, 0, 0}); };
  ExpectColumns(table,
                {{L"font", Names({L"sans-serif", L"sans-serif", L"sans-serif"})},
                 {L"font_size", Reals({8, 11, 8})},
                 {L"font_weight", Ints({400, 400, 400})},
                 {L"font_style", zeros()},
                 {L"text_decoration", zeros()},
                 {L"text_alignment", zeros()},
                 {L"text_orientation", zeros()},
                 {L"hAlign", zeros()},
                 {L"vAlign", zeros()},
                 {L"text_wrap_mode", zeros()},
                 {L"text_style_color",
                  Column(StoreTypeInfo::Color, std::vector<OrtColor>(3, static_cast<int>(0xFF000000U)))},
                 {L"text_font", Tuples({font(8), font(11), font(8)})},
                 {L"ascent", Reals({6, 8.25, 6})},
                 {L"font_height", Reals({10, 13.75, 10})},
                 {L"leading", Reals({4, 5.5, 4})},
                 {L"extra", Ints({4, 5, 6})}});
  // What was made once is made the same again.
  ExpectEqual(Ask(TransformNames::UPDATE_TEXT_STYLE_TABLE, {table}), table);
}

TEST_F(TextStyleTable, KeepsWhatIsGiven) {
  Value const given = Tuple({Text(L"Mine"), R64(20), I32(700), I32(1)});
  factory::NamedValues const columns{
      {L"text_font", Column(StoreTypeInfo::Tuple, std::vector<Value>{given, given})},
      {L"font_weight", Ints({500, 0}, {kNone, kMissing})},
      {L"hAlign", Ints({2, 1})},
      {L"text_style_color", Names({L"red", L"red"})},
      {L"ascent", Reals({1, 1})}};
  ExpectColumns(Update(columns),
                {{L"font", Names({L"Resolved", L"Resolved"})},
                 {L"font_size", Reals({20, 20})},
                 {L"font_weight", Ints({500, 700})},
                 {L"font_style", Ints({1, 1})},
                 {L"hAlign", Ints({2, 1})},
                 {L"ascent", Reals({15, 15})},
                 {L"text_style_color",
                  Column(StoreTypeInfo::Color, std::vector<OrtColor>(2, static_cast<int>(0xFFFF0000U)))}});
}

// A host whose fonts tell nothing leaves the metrics to the table.
TEST_F(TextStyleTable, TakesMetricsFromTheTableWhereTheHostHasNone) {
  Install([](Value const& font) { return font; });
  ExpectColumns(
      Update({{L"font_size", Reals({10, 20})}, {L"ascent", Reals({9, 0}, {kNone, kNull})}}),
      {{L"ascent", Reals({9, 16})}, {L"font_height", Reals({10, 20})}, {L"leading", Reals({2, 4})}});
}

TEST_F(TextStyleTable, OfNothingHasNoRows) {
  Value const table = Update({});
  EXPECT_EQ(table->AsNamedValues().GetCount(), 15);
  for (OStringCore const& name : table->AsNamedValues().GetNames()) {
    EXPECT_EQ(table->AsNamedValues().Get(name)->AsColumn().GetCount(), 0) << name;
  }
}

TEST_F(TextStyleTable, RefusesWhatIsNoStyle) {
  struct {
    factory::NamedValues columns;
    int error;
    char const* message;
  } const cases[] = {
      {{{L"font_size", Reals({1})}, {L"hAlign", Ints({1, 2})}}, 259, "hAlign"},
      {{{L"font_size", Ints({1})}}, 55, "a column of Real64 is needed, one of Int32 was given"},
      {{{L"hAlign", Reals({1})}}, 55, "a column of Int32 is needed, one of Real64 was given"},
      {{{L"text_style_color", Ints({1})}}, 55, "a column of Color is needed, one of Int32 was given"},
      {{{L"text_style_color", Names({L"reddish"})}}, 55, nullptr},
      {{{L"text_font", Ints({1})}}, 55, nullptr},
      {{{L"hAlign", I32(1)}}, 55, nullptr},
      {{{L"font_size", Reals({kNaN})}}, 2, "font_size"},
      {{{L"font_size", Reals({-1})}}, 2, "font_size"},
      {{{L"font_size", Reals({kInfinity})}}, 2, "font_size"},
  };
  for (auto const& [columns, error, message] : cases) {
    try {
      Update(columns);
      ADD_FAILURE() << "taken";
    } catch (OrtRuntimeException const& exception) {
      EXPECT_EQ(exception.GetError(), error);
      if (message != nullptr) {
        EXPECT_EQ(exception.GetMessage().toUtf8(), message);
      }
    }
  }
  EXPECT_EQ(ErrorOf([&] {
              Ask(TransformNames::UPDATE_TEXT_STYLE_TABLE, {factory::MakeKeyMap(factory::NamedValues{})});
            }),
            55);
  EXPECT_EQ(ErrorOf([&] { Ask(TransformNames::UPDATE_TEXT_STYLE_TABLE, {}); }), 219);
  Install([](Value const&) { return Text(L"no tuple"); });
  EXPECT_THROW(Update({{L"font_size", Reals({1})}}), std::runtime_error) << "the measurer refuses the font";
}

class ComposeShapes : public ComposerFunctions {
 protected:
  struct Row {
    double width = 0, height = 0;
    int orientation = 0, hAlign = 0;
  };
  Value Compose(Value const& firsts, Value const& counts, Row const& row) {
    return Ask(TransformNames::COMPOSE_SHAPES,
               {firsts, counts, Ints({7, 8, 9}), Reals({10, 20, 10}), Reals({8, 12, 8}), R64(row.width),
                R64(row.height), I32(row.orientation), I32(row.hAlign)});
  }
};

TEST_F(ComposeShapes, StandOnTheLowerEdgeOfTheirLines) {
  Value const result = Compose(Ints({0, 1, 0}), Ints({3, 2, 0}), {30, 40, 0, 2});
  auto const& columns = result->AsNamedValues();
  EXPECT_EQ(columns.GetCount(), 10);
  auto const expect = [&](wchar_t const* name, Value const& column) {
    ExpectEqual(columns.Get(OStringCore(name)), column, OStringCore(name).toUtf8());
  };
  expect(L"text_run_offset", Ints({0, 3, 5}));
  expect(L"text_run_count", Ints({3, 2, 0}));
  expect(L"shape_id", Ints({7, 8, 9, 8, 9}));
  expect(L"text_style_id", Ints({0, 1, 2, 1, 2}));
  expect(L"text_run_x", Reals({0, 10, 20, 0, 20}));
  expect(L"text_run_y", Reals({40, 40, 28, 40, 40}));
  expect(L"text_run_x_remote", Reals({-30, -20, -10, -30, -10}));
  expect(L"text_run_y_remote", Reals({0, 0, -12, 0, 0}));
  expect(L"width", Reals({30, 30, 0}));
  expect(L"height", Reals({20, 12, 0}));
}

TEST_F(ComposeShapes, RefuseBadLengthsAndLists) {
  EXPECT_EQ(ErrorOf([&] { Compose(Ints({0}), Ints({4}), {}); }), 55);
  EXPECT_EQ(ErrorOf([&] { Compose(Ints({0}), Ints({1, 1}), {}); }), 259);
  for (Row const& row : {Row{kNaN, 1}, Row{1, -1}, Row{kInfinity, 1}, Row{1, 1, 3}, Row{1, 1, 0, -1}}) {
    EXPECT_EQ(ErrorOf([&] { Compose(Ints({0}), Ints({1}), row); }), 2);
  }
  for (double const side : {kNaN, -1.0, kInfinity}) {
    EXPECT_EQ(ErrorOf([&] {
                Ask(TransformNames::COMPOSE_SHAPES, {Ints({0}), Ints({1}), Ints({1}), Reals({side}),
                                                     Reals({1}), R64(1), R64(1), I32(0), I32(0)});
              }),
              2);
  }
  EXPECT_EQ(ErrorOf([&] { Ask(TransformNames::COMPOSE_SHAPES, {}); }), 219);
}

// Rows are laid out by several threads; each comes out as it does alone.
TEST_F(ComposeShapes, ManyThreadsGiveTheSameRows) {
  constexpr int kRows = 500;
  std::vector<int> firsts, counts;
  for (int row = 0; row < kRows; ++row) {
    firsts.push_back(row % 3);
    counts.push_back(3 - row % 3);
  }
  Value const all = Compose(Ints(firsts), Ints(counts), {25, 40, 0, 1});
  auto const& xs = all->AsNamedValues().Get(OStringCore(L"text_run_x"))->AsTypedArray<double>();
  int next = 0;
  for (int row = 0; row < 3; ++row) {
    Value const alone = Compose(Ints({firsts[static_cast<std::size_t>(row)]}),
                                Ints({counts[static_cast<std::size_t>(row)]}), {25, 40, 0, 1});
    auto const& x = alone->AsNamedValues().Get(OStringCore(L"text_run_x"))->AsTypedArray<double>();
    for (int i = 0; i < x.GetCount(); ++i, ++next) {
      for (int at = next; at < xs.GetCount(); at += 6) EXPECT_EQ(xs.GetElement(at), x.GetElement(i));
    }
  }
}

}  // namespace
