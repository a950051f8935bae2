#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <random>
#include <set>
#include <sstream>
#include <thread>

#include "RowDriver.h"
#include "Texts.h"
#include "ostrelsys/OLogicException.h"
#include "ostreltransforms/composer/ComposeText.h"
#include "render/CompositionCache.h"
#include "string/TextFitStyle.h"

namespace runtime {
namespace {

using namespace TestValues;
using RowDriver::ErrorOf;
using Texts::Style;

Value Strings(std::vector<std::string> const& rows, std::vector<SpecialKind> const& kinds = {}) {
  std::vector<RIndirectString> texts;
  for (std::string const& row : rows) texts.push_back(RIndirectString(Texts::Utf8(row)));
  return Column(StoreTypeInfo::String, texts, kinds);
}

// composeText's inputs in their order.
struct Inputs {
  Value firsts = Ints({0});
  Value counts = Ints({1});
  Value texts = Strings({"hello"});
  Value styles = Ints({0});
  Value table = Texts::MakeTable({{}});
  Value width = R64(0);
  Value height = R64(0);
  Value fitStyle = I32(Overflow);
  Value wrapMode = I32(NoWrap);

  // One text a notation (see Texts::Make).
  Inputs& With(std::vector<std::string> const& notations) {
    std::vector<int> first, count, style;
    std::vector<std::string> text;
    for (std::string const& notation : notations) {
      first.push_back(static_cast<int>(style.size()));
      FormattedText const formatted = Texts::Make(notation);
      for (TextRun const& run : formatted.GetRuns()) {
        style.push_back(static_cast<int>(run.styleIndex));
        text.push_back(run.text.toUtf8());
      }
      count.push_back(static_cast<int>(style.size()) - first.back());
    }
    firsts = Ints(first);
    counts = Ints(count);
    texts = Strings(text);
    styles = Ints(style);
    return *this;
  }
  Inputs& In(double w, double h, int fit = Overflow, int wrap = NoWrap) {
    width = R64(w);
    height = R64(h);
    fitStyle = I32(fit);
    wrapMode = I32(wrap);
    return *this;
  }
  std::vector<Value> List() const {
    return {firsts, counts, texts, styles, table, width, height, fitStyle, wrapMode};
  }
};

std::string Number(double value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

// The result, a line a text: "width x height: style text x,y (remote x,y) | ...".
std::string Write(Value const& result) {
  auto const& columns = result->AsNamedValues();
  auto const ints = [&](wchar_t const* name) { return columns.Get(name)->AsTypedArray<int>().GetValues(); };
  auto const reals = [&](wchar_t const* name) {
    return columns.Get(name)->AsTypedArray<double>().GetValues();
  };
  auto const texts = columns.Get(L"text_run")->AsTypedArray<RIndirectString>().GetValues();
  EXPECT_EQ(columns.GetCount(), 10);
  std::string lines;
  std::size_t next = 0;
  for (std::size_t text = 0; text < reals(L"width").size(); ++text) {
    lines += Number(reals(L"width")[text]) + "x" + Number(reals(L"height")[text]) + ":";
    EXPECT_EQ(ints(L"text_run_offset")[text], static_cast<int>(next));
    for (int i = 0; i < ints(L"text_run_count")[text]; ++i, ++next) {
      lines += (i == 0 ? " " : " | ") + std::to_string(ints(L"text_style_id")[next]) + " " +
               texts[next].Get().toUtf8() + " " + Number(reals(L"text_run_x")[next]) + "," +
               Number(reals(L"text_run_y")[next]) + " (" + Number(reals(L"text_run_x_remote")[next]) + "," +
               Number(reals(L"text_run_y_remote")[next]) + ")";
    }
    lines += "\n";
  }
  EXPECT_EQ(next, texts.size());
  return lines;
}

class ComposeText : public testing::Test {
 protected:
  ComposeText() { cache_->clear(); }
  std::string Compose(Inputs const& inputs) { return Write(OstrelTransforms::ComposeText(inputs.List())); }

  OstrelTransforms::TestCallbackScope measuring_ = Texts::MeasureByCounting();
  std::shared_ptr<CompositionCache> cache_ = GetCompositionCache();
};

TEST_F(ComposeText, TellsWhereRunsStand) {
  Inputs inputs;
  inputs.table =
      Texts::MakeTable({{}, {.hAlign = 1, .height = 20, .ascent = 15}, {.hAlign = 2, .vAlign = 2}});
  EXPECT_EQ(Compose(inputs.With({"hello", "", "0:ab|1:c", "2:ab"}).In(0, 0)),
            "50x10: 0 hello 0,8 (0,8)\n"
            "0x0:\n"
            "30x20: 0 ab 0,15 (0,15) | 1 c 20,15 (20,15)\n"
            "20x10: 2 ab -20,-2 (-20,-2)\n");
  EXPECT_EQ(Compose(inputs.With({"1:one two", "2:one two"}).In(50, 100, Overflow, WordWrap)),
            "30x40: 1 one 10,15 (-15,15) | 1 two 10,35 (-15,35)\n"
            "30x20: 2 one 20,8 (-30,-12) | 2 two 20,18 (-30,-2)\n");
  EXPECT_EQ(Compose(inputs.With({"hello world", "hi"}).In(70, 20, DotsRight)),
            "70x10: 0 hello.. 0,8 (0,8)\n"
            "20x10: 0 hi 0,8 (0,8)\n");
  EXPECT_EQ(Compose(inputs.With({"hello", "hi"}).In(20, 20, HideIfOverflow)),
            "0x0:\n"
            "20x10: 0 hi 0,8 (0,8)\n");
  // Lines beyond the bottom do not fit: of three lines two stay, less what the dots need.
  EXPECT_EQ(Compose(inputs.With({"one two six"}).In(40, 21, DotsRight, WordWrap)),
            "40x20: 0 one 0,8 (0,8) | 0 tw.. 0,18 (0,18)\n");
}

// An anchor is the same point of the text whichever way it is turned.
TEST_F(ComposeText, AnchorsTurnWithTheText) {
  struct {
    int orientation;  // of the style
    int hAlign, vAlign;
    std::string expected;
  } const cases[] = {
      {0, 0, 0, "50x10: 0 hello 0,8 (0,8)\n"},     {0, 1, 1, "50x10: 0 hello 25,8 (-25,3)\n"},
      {0, 2, 2, "50x10: 0 hello 50,8 (-50,-2)\n"}, {3, 0, 0, "10x50: 0 hello 91,0 (-8,0)\n"},
      {3, 2, 2, "10x50: 0 hello 91,50 (2,-50)\n"}, {2, 0, 0, "10x50: 0 hello 8,99 (8,0)\n"},
      {2, 2, 2, "10x50: 0 hello 8,49 (-2,50)\n"},
  };
  for (auto const& [orientation, hAlign, vAlign, expected] : cases) {
    Inputs inputs;
    inputs.table = Texts::MakeTable({{.orientation = orientation, .hAlign = hAlign, .vAlign = vAlign}});
    EXPECT_EQ(Compose(inputs.In(100, 100)), expected) << orientation << hAlign << vAlign;
    // Without a box the anchor is the origin, where turned lines begin at its last pixel.
    Value const result = OstrelTransforms::ComposeText(inputs.In(0, 0).List());
    auto const read = [&](wchar_t const* name) {
      Value const column = result->AsNamedValues().Get(OStringCore(name));
      return column->AsTypedArray<double>().GetElement(0);
    };
    double const pen = orientation == 0 ? 0 : -1;
    EXPECT_EQ(read(L"text_run_x"), read(L"text_run_x_remote") + (orientation == 3 ? pen : 0));
    EXPECT_EQ(read(L"text_run_y"), read(L"text_run_y_remote") + (orientation == 2 ? pen : 0));
  }
}

TEST_F(ComposeText, TakesTheStylesWrapMode) {
  auto const table = Texts::MakeTable({{}, {}});
  factory::NamedValues columns;
  for (auto const& name : table->AsNamedValues().GetNames()) {
    columns.emplace(name, table->AsNamedValues().Get(name));
  }
  columns.emplace(L"text_wrap_mode", Ints({0, 3}));
  Inputs inputs;
  inputs.table = factory::MakeTable(columns);
  EXPECT_EQ(Compose(inputs.With({"0:a b", "1:a b", "1:a |0:b"}).In(20, 50, Overflow, -1)),
            "30x10: 0 a b 0,8 (0,8)\n"
            "10x20: 1 a 0,8 (0,8) | 1 b 0,18 (0,18)\n"
            "10x20: 1 a 0,8 (0,8) | 0 b 0,18 (0,18)\n");
}

TEST_F(ComposeText, SpecialRowsAreEmptyTexts) {
  Inputs inputs;
  inputs.With({"ab", "cd"});
  inputs.counts = Ints({1, 1}, {kNull, kNone});
  EXPECT_EQ(Compose(inputs), "0x0:\n20x10: 0 cd 0,8 (0,8)\n");
  inputs.With({"ab", "cd"});
  inputs.texts = Strings({"", "cd"}, {kMissing});
  EXPECT_EQ(Compose(inputs), "0x0:\n20x10: 0 cd 0,8 (0,8)\n");
  EXPECT_EQ(Compose(Inputs().With({})), "");
}

TEST_F(ComposeText, RefusesWhatDoesNotFitTogether) {
  auto const with = [](Value Inputs::*member, Value value) {
    Inputs inputs;
    inputs.*member = std::move(value);
    return inputs.List();
  };
  constexpr int kMost = std::numeric_limits<int>::max();
  struct {
    std::vector<Value> inputs;
    int error;
    char const* message;
  } const cases[] = {
      {{}, 219, "0 inputs given, 9 needed"},
      {with(&Inputs::table, nullptr), 55, "a null pointer was given"},
      {with(&Inputs::firsts, Reals({0})), 55, "a column of Int32 is needed, one of Real64 was given"},
      {with(&Inputs::firsts, Ints({0, 0})), 259, "the numbers of runs"},
      {with(&Inputs::styles, Ints({0, 0})), 259, "the styles"},
      {with(&Inputs::firsts, Ints({-1})), 55, "row 0 names runs outside of the 1 that there are"},
      {with(&Inputs::firsts, Ints({1})), 55, "row 0 names runs outside of the 1 that there are"},
      {with(&Inputs::firsts, Ints({kMost})), 55, "row 0 names runs outside of the 1 that there are"},
      {with(&Inputs::counts, Ints({kMost})), 55, "row 0 names runs outside of the 1 that there are"},
      {with(&Inputs::counts, Ints({-1})), 55, "row 0 names runs outside of the 1 that there are"},
      {with(&Inputs::styles, Ints({1})), 55, "run 0 names a style that is none of the 1 of the table"},
      {with(&Inputs::styles, Ints({-1})), 55, "run 0 names a style that is none of the 1 of the table"},
      {with(&Inputs::styles, Ints({0}, {kNull})), 55,
       "run 0 names a style that is none of the 1 of the table"},
      {with(&Inputs::table, R64(1)), 55, "Real64"},
      {with(&Inputs::table, Texts::MakeTable({{}}, {"text_font"})), 219, "text_font"},
      {with(&Inputs::table, Texts::MakeTable({{}}, {"ascent"})), 219, "ascent"},
      {with(&Inputs::table, Texts::MakeTable({{}}, {"hAlign"})), 219, "hAlign"},
      {with(&Inputs::width, R64(kNaN)), 2, "width"},
      {with(&Inputs::width, R64(-1)), 2, "width"},
      {with(&Inputs::height, R64(kInfinity)), 2, "height"},
      {with(&Inputs::height, R64(1e300)), 2, "height"},
      {with(&Inputs::wrapMode, I32(4)), 2, "wrapMode"},
      {with(&Inputs::wrapMode, I32(-2)), 2, "wrapMode"},
      {with(&Inputs::wrapMode, I32(-1)), 219, "text_wrap_mode"},
  };
  int place = 0;
  for (auto const& [inputs, error, message] : cases) {
    SCOPED_TRACE(place++);
    try {
      OstrelTransforms::ComposeText(inputs);
      ADD_FAILURE() << "taken";
    } catch (OrtRuntimeException const& exception) {
      EXPECT_EQ(exception.GetError(), error);
      EXPECT_EQ(exception.GetMessage().toUtf8(), message);
    }
  }
  EXPECT_THROW(Compose(Inputs().In(1, 1, 7)), OLogicException);
  EXPECT_THROW(Compose(Inputs().In(1, 1, -1)), OLogicException);
}

TEST_F(ComposeText, PassesOnWhatTheMeasurerThrows) {
  Inputs const inputs = Inputs().In(20, 10, DotsRight);
  auto const failing = OstrelTransforms::SetMeasureTextWidthCallbackForTest(
      [](OStringCore const&, Value const&) -> float { throw std::runtime_error("no font"); });
  EXPECT_THROW(Compose(inputs), std::runtime_error);
  std::vector<std::string> const many(1000, "text");
  EXPECT_THROW(Compose(Inputs().With(many)), std::runtime_error);
  EXPECT_EQ(cache_->GetSize(), 0U);
}

TEST_F(ComposeText, EndsWithAnyMeasureOfAnyText) {
  for (float const width : {std::numeric_limits<float>::quiet_NaN(), -5.0F, 0.0F,
                            std::numeric_limits<float>::infinity(), 1e30F}) {
    auto const odd = OstrelTransforms::SetMeasureTextWidthCallbackForTest(
        [width](OStringCore const&, Value const&) { return width; });
    for (int fit = 0; fit <= 6; ++fit) {
      for (int wrap = 0; wrap <= 2; ++wrap) {
        EXPECT_NO_THROW(Compose(Inputs().With({"one two, three", "x"}).In(30, 10, fit, wrap)));
      }
    }
  }
  Inputs inputs = Inputs().With({std::string(1'000'000, 'a')});
  EXPECT_EQ(Compose(inputs.In(45, 10, DotsRight, NoWrap)), "40x10: 0 aa.. 0,8 (0,8)\n");
  EXPECT_EQ(Compose(inputs.In(45, 10, PoundFill, WordWrap)), "40x10: 0 #### 0,8 (0,8)\n");
}

TEST_F(ComposeText, TakesAsManyStylesAsThereAreTexts) {
  constexpr int count = 100'000;
  std::vector<int> rows(count);
  std::iota(rows.begin(), rows.end(), 0);
  std::vector<Style> styles(count);
  for (int i = 0; i < count; ++i) styles[static_cast<std::size_t>(i)].ascent = i % 1000;
  Inputs inputs;
  inputs.table = Texts::MakeTable(styles);
  inputs.firsts = inputs.styles = Ints(rows);
  inputs.counts = Ints(std::vector<int>(count, 1));
  inputs.texts = Strings(std::vector<std::string>(count, "ab"));
  Value result = OstrelTransforms::ComposeText(inputs.List());
  EXPECT_TRUE(result->AsNamedValues().Get(L"text_style_id")->Equals(*inputs.styles));
  auto const y = result->AsNamedValues().Get(L"text_run_y")->AsTypedArray<double>().GetValues();
  ASSERT_EQ(y.size(), rows.size());
  for (std::size_t i = 0; i < y.size(); ++i) ASSERT_EQ(y[i], static_cast<double>(i % 1000)) << i;
  // All of them in one text, which has one line.
  inputs.firsts = Ints({0});
  inputs.counts = Ints({count});
  result = OstrelTransforms::ComposeText(inputs.List());
  EXPECT_TRUE(result->AsNamedValues().Get(L"text_style_id")->Equals(*inputs.styles));
  EXPECT_EQ(result->AsNamedValues().Get(L"width")->AsTypedArray<double>().GetElement(0), 20.0 * count);
}

// Many texts go to several threads; a model composes them one by one without the cache.
TEST_F(ComposeText, ManyTextsComeOutAsOneByOne) {
  std::mt19937 random(3);
  std::vector<std::string> notations;
  for (int i = 0; i < 3000; ++i) {
    std::string text;
    for (unsigned run = 0; run <= random() % 3; ++run) {
      text += (run == 0 ? "" : "|") + std::to_string(random() % 2) + ":";
      for (unsigned n = random() % 6; n > 0; --n) text += "ab ,"[random() % 4];
    }
    notations.push_back(text);
  }
  Inputs all;
  all.table = Texts::MakeTable({{}, {.hAlign = 2, .vAlign = 1, .height = 14, .ascent = 11}});
  for (int const wrap : {NoWrap, WordWrap}) {
    all.With(notations).In(60, 40, DotsRight, wrap);
    std::string const together = Compose(all);
    EXPECT_EQ(Compose(all), together) << "from the cache";
    std::string alone;
    for (std::string const& notation : notations) {
      Inputs one;
      one.table = all.table;
      cache_->clear();
      alone += Compose(one.With({notation}).In(60, 40, DotsRight, wrap));
    }
    EXPECT_EQ(together, alone);
  }
}

class Compositions : public ComposeText {
 protected:
  Size Compose(Value const& table, std::string const& notation, Size const& size = {100, 100},
               std::uint32_t wrapMode = WordWrap, bool clipHeight = false) {
    TextComposer composer(table);
    composer.SetWrapMode(wrapMode);
    composer.SetClipHeight(clipHeight);
    last_ = CachedComposer(composer, size).Compose(Texts::Make(notation));
    return last_->GetSize();
  }

  std::shared_ptr<ComposedText> last_;
};

TEST_F(Compositions, AreSharedByEqualTexts) {
  EXPECT_EQ(cache_->GetName(), OStringCore(L"Runtime Composition Cache"));
  EXPECT_EQ(cache_->GetCapacity(), 2048U);
  Compose(Texts::MakeTable({{}}), "hello");
  auto const first = last_;
  // Another table with an equal style.
  Compose(Texts::MakeTable({{}, {.height = 30}}), "hello");
  EXPECT_EQ(last_, first);
  Compose(Texts::MakeTable({{}}), "hello", {100, -0.0F});
  auto const unbounded = last_;
  EXPECT_NE(unbounded, first);
  Compose(Texts::MakeTable({{}}), "hello", {100, 0.0F});
  EXPECT_EQ(last_, unbounded);
}

TEST_F(Compositions, DifferByEverythingThatTheyDependOn) {
  auto const table = [](Style const& first, Style const& second = {}) {
    return Texts::MakeTable({first, second});
  };
  std::string const text = "0:ab|1:cd";
  std::set<std::shared_ptr<ComposedText>> seen;
  auto const add = [&](Value const& styles, std::string const& notation, auto... settings) {
    Compose(styles, notation, settings...);
    EXPECT_TRUE(seen.insert(last_).second) << "variant " << seen.size();
  };
  add(table({}), text);
  add(table({}), "1:ab|0:cd");
  add(table({}), "0:abcd");
  add(table({}), "0:a|1:bcd");
  add(table({}), "0:ab|0:cd");
  add(table({}), text, Size{101, 100});
  add(table({}), text, Size{100, 101});
  add(table({}), text, Size{100, 100}, NoWrap);
  add(table({}), text, Size{100, 100}, WordWrap, true);
  add(table({.hAlign = 1}), text);
  add(table({.vAlign = 1}), text);
  add(table({.orientation = 2}), text);
  add(table({.height = 11}), text);
  add(table({.ascent = 9}), text);
  add(table({.leading = 1}), text);
  add(table({}, {.height = 12}), text);
  add(table({}, {.ascent = 9.5}), text);
  EXPECT_EQ(cache_->GetSize(), seen.size());
  // Of a later run the alignment says nothing.
  Compose(table({}, {.hAlign = 2}), text);
  EXPECT_EQ(seen.count(last_), 1U);
}

TEST_F(Compositions, AreNotOfAnEarlierMeasurer) {
  EXPECT_EQ(Compose(Texts::MakeTable({{}}), "hello").width, 50);
  {
    auto const wider = OstrelTransforms::SetMeasureTextWidthCallbackForTest(
        [](OStringCore const& text, Value const&) { return 12 * static_cast<float>(text.length()); });
    EXPECT_EQ(Compose(Texts::MakeTable({{}}), "hello").width, 60);
  }
  EXPECT_EQ(Compose(Texts::MakeTable({{}}), "hello").width, 50);
}

TEST_F(Compositions, OfLongTextsAreNotKept) {
  Compose(Texts::MakeTable({{}}), std::string(CachedComposer::kLongestText, 'a'));
  EXPECT_EQ(cache_->GetSize(), 1U);
  Compose(Texts::MakeTable({{}}), std::string(CachedComposer::kLongestText + 1, 'a'));
  EXPECT_EQ(cache_->GetSize(), 1U);
}

// Of a result made from the cache, which holds compositions in place of counting their texts.
TEST_F(ComposeText, TextsLiveAsLongAsTheResultAndNoLonger) {
  auto const countTexts = [] { return RIndirectString::GetPoolStatistics().entries; };
  std::size_t const before = countTexts();
  {
    auto inputs = std::make_unique<Inputs>();
    std::vector<std::string> texts;
    for (int i = 0; i < 300; ++i) texts.push_back("label of " + std::to_string(1000 + i));
    inputs->With(texts).In(60, 100, DotsRight, WordWrap);
    std::string const cold = Compose(*inputs);
    cache_->clear();
    // One half is found, the other composed.
    Compose(Inputs().With({texts.begin(), texts.begin() + 150}).In(60, 100, DotsRight, WordWrap));
    Value const result = OstrelTransforms::ComposeText(inputs->List());
    EXPECT_EQ(Write(result), cold);
    inputs.reset();
    cache_->clear();
    EXPECT_EQ(Write(result), cold);
  }
  EXPECT_EQ(countTexts(), before);
}

TEST_F(ComposeText, ThreadsShareTheCache) {
  Inputs const inputs = [] {
    std::vector<std::string> texts;
    for (int i = 0; i < 400; ++i) texts.push_back("label " + std::to_string(i % 150));
    return Inputs().With(texts).In(70, 20, DotsRight);
  }();
  std::string const expected = Compose(inputs);
  std::uint32_t const lookups = cache_->GetLookups();
  std::uint32_t const hits = cache_->GetHits();
  std::vector<std::string> results(3);
  std::vector<std::thread> threads;
  for (std::string& result : results) {
    threads.emplace_back([&] {
      for (int round = 0; round < 3; ++round) result = Compose(inputs);
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (std::string const& result : results) EXPECT_EQ(result, expected);
  EXPECT_EQ(cache_->GetHits() - hits, cache_->GetLookups() - lookups) << "something was composed again";
}

}  // namespace
}  // namespace runtime
