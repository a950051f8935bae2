#include <algorithm>
#include <iterator>
#include <map>

#include "charts/functions/ChartFamilies.h"
#include "charts/functions/TextBoxes.h"
#include "ostrelrtcore/builtins/Columns.h"
#include "ostreltransforms/VisualKey.h"
#include "ostreltransforms/composer/ComposeText.h"
#include "render/Composer.h"

/// Texts that have boxes of their own, where composeText has one for all. A special row is an empty text.
namespace ostrel::charts {
namespace {

using namespace ort::core;
using namespace ort::core::builtins;
namespace VisualKey = runtime::VisualKey;

std::span<double const> ReadReals(Value const& column, int count, char const* what) {
  RequireOneLength(RequireColumn(*column, StoreType::Real64, what).GetCount(), count, what);
  return column->AsTypedArray<double>().GetValues();
}

/// Inputs: texts, widths, heights, isRound, styles, mostLines, share.
class FitTextBoxesFunctor final : public IMultinaryFunctor {
 public:
  explicit FitTextBoxesFunctor(std::shared_ptr<services::TextMeasurer const> measurer)
      : measurer_(std::move(measurer)) {}

  Value Apply(Values const& inputs) override {
    builtins::detail::RequireInputs(inputs, 7);
    if (measurer_ == nullptr) ThrowError(OrtError_WrongValueKind, "there is nothing to measure texts with");
    RequireColumn(*inputs[0], StoreType::String, "texts");
    auto const& texts = inputs[0]->AsTypedArray<RIndirectString>();
    int const count = texts.GetCount();
    auto const widths = ReadReals(inputs[1], count, "widths");
    auto const heights = ReadReals(inputs[2], count, "heights");
    bool const isRound = FetchStoreValue<bool>(inputs[3]);
    TextBoxFinder finder(inputs[4], FetchStoreValue<int>(inputs[5]), FetchStoreValue<double>(inputs[6]),
                         *measurer_);
    auto styles = factory::MakeColumnBuilder<int>(StoreTypeInfo::Int32, count);
    auto boxWidths = factory::MakeColumnBuilder<double>(StoreTypeInfo::Real64, count);
    auto boxHeights = factory::MakeColumnBuilder<double>(StoreTypeInfo::Real64, count);
    RowKinds const kinds(texts);
    for (int row = 0; row < count; ++row) {
      auto const at = static_cast<std::size_t>(row);
      std::optional<TextBoxChoice> box;
      if (kinds[row] == SpecialKind::None)
        box = finder.Find(texts.GetElement(row).Get(), {widths[at], heights[at], isRound});
      if (!box) boxWidths.SetSpecial(row, SpecialKind::Missing);
      styles.GetValues()[at] = box ? box->style : 0;
      boxWidths.GetValues()[at] = box ? box->width : 0;
      boxHeights.GetValues()[at] = box ? box->height : 0;
    }
    return factory::MakeKeyMap({{VisualKey::TextStyleID, styles.Finish()},
                                {VisualKey::Width, boxWidths.Finish()},
                                {VisualKey::Height, boxHeights.Finish()}});
  }

 private:
  std::shared_ptr<services::TextMeasurer const> measurer_;
};

Value MakeInts(std::size_t count, auto const& get) {
  auto column = factory::MakeColumnBuilder<int>(StoreTypeInfo::Int32, static_cast<int>(count));
  for (std::size_t row = 0; row < count; ++row) column.GetValues()[row] = static_cast<int>(get(row));
  return column.Finish();
}

template <class T>
Value Take(Value const& column, StoreTypeInfo const& type, std::vector<int> const& rows) {
  auto const& from = column->AsTypedArray<T>();
  auto taken = factory::MakeColumnBuilder<T>(type, static_cast<int>(rows.size()));
  for (std::size_t i = 0; i < rows.size(); ++i) taken.GetValues()[i] = from.GetElement(rows[i]);
  return taken.Finish();
}

/// What composeText gives for several groups of texts, put together in the order of all texts.
class JoinedCompositions {
 public:
  explicit JoinedCompositions(std::size_t count)
      : offsets_(count), counts_(count), widths_(count), heights_(count) {}

  void Add(std::vector<int> const& rows, Value const& composed) {
    auto const& columns = composed->AsNamedValues();
    auto const ints = [&](OStringCore const& name) {
      return columns.Get(name)->AsTypedArray<int>().GetValues();
    };
    auto const reals = [&](OStringCore const& name) {
      return columns.Get(name)->AsTypedArray<double>().GetValues();
    };
    auto const offsets = ints(VisualKey::TextRunOffset), counts = ints(VisualKey::TextRunCount);
    auto const widths = reals(VisualKey::Width), heights = reals(VisualKey::Height);
    for (std::size_t i = 0; i < rows.size(); ++i) {
      auto const row = static_cast<std::size_t>(rows[i]);
      offsets_[row] = runCount_ + offsets[i];
      counts_[row] = counts[i];
      widths_[row] = widths[i];
      heights_[row] = heights[i];
    }
    runCount_ += columns.Get(VisualKey::TextRun)->AsColumn().GetCount();
    parts_.push_back(composed);
  }

  Value Finish() const {
    factory::NamedValues columns;
    columns.emplace(VisualKey::TextRunOffset,
                    MakeInts(offsets_.size(), [&](std::size_t i) { return offsets_[i]; }));
    columns.emplace(VisualKey::TextRunCount,
                    MakeInts(counts_.size(), [&](std::size_t i) { return counts_[i]; }));
    columns.emplace(VisualKey::Width, MakeReals(widths_));
    columns.emplace(VisualKey::Height, MakeReals(heights_));
    Join<RIndirectString>(VisualKey::TextRun, StoreTypeInfo::String, columns);
    Join<int>(VisualKey::TextStyleID, StoreTypeInfo::Int32, columns);
    for (OStringCore const& name :
         {VisualKey::TextRunX, VisualKey::TextRunY, VisualKey::TextRunXRemote, VisualKey::TextRunYRemote})
      Join<double>(name, StoreTypeInfo::Real64, columns);
    return factory::MakeKeyMap(std::move(columns));
  }

 private:
  static Value MakeReals(std::vector<double> const& values) {
    return factory::MakeArray<double>(StoreTypeInfo::Real64, std::make_unique<std::vector<double>>(values));
  }

  template <class T>
  void Join(OStringCore const& name, StoreTypeInfo const& type, factory::NamedValues& columns) const {
    auto joined = factory::MakeColumnBuilder<T>(type, runCount_);
    auto out = joined.GetValues().begin();
    for (Value const& part : parts_)
      out = std::ranges::copy(part->AsNamedValues().Get(name)->AsTypedArray<T>().GetValues(), out).out;
    columns.emplace(name, joined.Finish());
  }

  std::vector<int> offsets_, counts_;
  std::vector<double> widths_, heights_;
  std::vector<Value> parts_;
  int runCount_ = 0;
};

Value ComposeInBoxes(Value const& texts, Value const& styles, Value const& table, Value const& widths,
                     Value const& heights, Value const& fit, Value const& wrap) {
  int const count = RequireColumn(*texts, StoreType::String, "texts").GetCount();
  RequireOneLength(RequireColumn(*styles, StoreType::Int32, "styles").GetCount(), count, "styles");
  auto const w = ReadReals(widths, count, "widths");
  auto const h = ReadReals(heights, count, "heights");
  RowKinds const ofTexts(texts->AsColumn()), ofStyles(styles->AsColumn()), ofWidths(widths->AsColumn()),
      ofHeights(heights->AsColumn());
  std::map<std::pair<double, double>, std::vector<int>> groups;
  for (int row = 0; row < count; ++row) {
    auto const at = static_cast<std::size_t>(row);
    bool const isEmpty = ofTexts[row] != SpecialKind::None || ofStyles[row] != SpecialKind::None ||
                         ofWidths[row] != SpecialKind::None || ofHeights[row] != SpecialKind::None;
    // A box without a side has room for nothing.
    if (!isEmpty && w[at] > 0 && h[at] > 0) groups[{w[at], h[at]}].push_back(row);
  }
  JoinedCompositions joined(static_cast<std::size_t>(count));
  for (auto const& [box, rows] : groups) {
    joined.Add(rows, OstrelTransforms::ComposeText({MakeInts(rows.size(), [](std::size_t i) { return i; }),
                                                    MakeInts(rows.size(), [](std::size_t) { return 1; }),
                                                    Take<RIndirectString>(texts, StoreTypeInfo::String, rows),
                                                    Take<int>(styles, StoreTypeInfo::Int32, rows), table,
                                                    factory::MakeReal64(box.first),
                                                    factory::MakeReal64(box.second), fit, wrap}));
  }
  return joined.Finish();
}

std::vector<RIndirectString> SplitLines(RIndirectString const& text) {
  std::vector<RIndirectString> lines;
  for (OStringCore const& line : text.Get().split(OStringCore(u"\n"))) lines.emplace_back(line);
  return lines;
}

Value ShortenLines(Value const& texts, Value const& table, Value const& width, Value const& height,
                   Value const& fit) {
  RequireColumn(*texts, StoreType::String, "texts");
  auto const& rows = texts->AsTypedArray<RIndirectString>();
  RowKinds const kinds(rows);
  auto lines = std::make_unique<std::vector<RIndirectString>>();
  std::vector<std::size_t> ends;
  for (int row = 0; row < rows.GetCount(); ++row) {
    if (kinds[row] == SpecialKind::None)
      std::ranges::move(SplitLines(rows.GetElement(row)), std::back_inserter(*lines));
    ends.push_back(lines->size());
  }
  std::size_t const count = lines->size();
  // Each line is a text, of which one run is left or none.
  Value const composed = OstrelTransforms::ComposeText(
      {MakeInts(count, [](std::size_t i) { return i; }), MakeInts(count, [](std::size_t) { return 1; }),
       factory::MakeArray<RIndirectString>(StoreTypeInfo::String, std::move(lines)),
       MakeInts(count, [](std::size_t) { return 0; }), table, width, height, fit,
       factory::MakeInt32(runtime::NoWrap)});
  auto const& columns = composed->AsNamedValues();
  auto const runCounts = columns.Get(VisualKey::TextRunCount)->AsTypedArray<int>().GetValues();
  auto const runs = columns.Get(VisualKey::TextRun)->AsTypedArray<RIndirectString>().GetValues();
  auto shortened = factory::MakeColumnBuilder<RIndirectString>(StoreTypeInfo::String, rows.GetCount());
  auto run = runs.begin();
  std::size_t line = 0;
  for (int row = 0; row < rows.GetCount(); ++row) {
    auto const at = static_cast<std::size_t>(row);
    if (kinds[row] != SpecialKind::None) shortened.SetSpecial(row, kinds[row]);
    OStringCore text;
    for (std::size_t const first = line; line < ends[at]; ++line) {
      if (line > first) text += u'\n';
      if (runCounts[line] > 0) text += run++->Get();
    }
    shortened.GetValues()[at] = text;
  }
  return shortened.Finish();
}

}  // namespace

BuiltinFamily TextBoxFamily(std::shared_ptr<services::TextMeasurer const> const& measurer) {
  using enum StoreType;
  return {
      "text boxes",
      {
          {.name = "fitTextBoxes",
           .inputs = {"texts", "widths", "heights", "isRound", "styles", "mostLines", "share"},
           .help =
               "The box in which each text is set within a rectangle, or the ellipse in it: "
               "\"text_style_id\", \"width\" and \"height\". It is that of the first style and the fewest "
               "lines in which the whole text has room with no word broken; else, in the last style, of "
               "the most lines in which all words have room, or of one; special where not even a line has "
               "room. A style but the last is passed over where its font is larger than a share of the "
               "height.",
           .example =
               R"("inputs": [{"Array": {"type": "String", "values": ["far"]}}, {"Array": {"type": )"
               R"("Real64", "values": [40]}}, {"Array": {"type": "Real64", "values": [40]}}, )"
               R"({"Bool": false}, {"Table": {"text_font": {"Array": {"type": "Tuple", "values": )"
               R"([{"Tuple": [{"String": "sans-serif"}, {"Real64": 10}, {"Int32": 400}, {"Int32": 0}]}]}}, )"
               R"("font_height": {"Array": {"type": "Real64", "values": [10]}}, "leading": {"Array": )"
               R"({"type": "Real64", "values": [2]}}}}, {"Int32": 3}, {"Real64": 1}])",
           .registrations = {{Arity::Multinary,
                              0,
                              {ArrayOf(String), ArrayOf(Real64), ArrayOf(Real64), Segment(Bool),
                               Segment(Table), Segment(Int32), Segment(Real64)},
                              Segment(KeyMap),
                              {},
                              [measurer] { return std::make_unique<FitTextBoxesFunctor>(measurer); }}}},
          {.name = "composeInBoxes",
           .inputs = {"texts", "styles", "styleTable", "widths", "heights", "fitStyle", "wrapMode"},
           .help =
               "Each text, of one style, composed by composeText in a box of its own; the result is that of "
               "composeText. A special text or style and a box that is special or has a side of 0 make an "
               "empty text.",
           .example =
               R"("inputs": [{"Array": {"type": "String", "values": []}}, {"Array": {"type": "Int32", )"
               R"("values": []}}, {"Table": {}}, {"Array": {"type": "Real64", "values": []}}, )"
               R"({"Array": {"type": "Real64", "values": []}}, {"Int32": 4}, {"Int32": 2}])",
           .registrations = {Multinary<ComposeInBoxes>(
               {ArrayOf(String), ArrayOf(Int32), Segment(Table), ArrayOf(Real64), ArrayOf(Real64),
                Segment(Int32), Segment(Int32)},
               Segment(KeyMap))}},
          {.name = "shortenLines",
           .inputs = {"texts", "styleTable", "width", "height", "fitStyle"},
           .help =
               "Texts of whose lines each fits a box by itself: in the first style of the table, with a fit "
               "style of composeText. A line that fits in no form is empty.",
           .example = R"("inputs": [{"Array": {"type": "String", "values": []}}, {"Table": {"text_font": )"
                      R"({"Array": {"type": "Tuple", "values": []}}}}, {"Real64": 40}, {"Real64": 20}, )"
                      R"({"Int32": 4}])",
           .registrations = {Multinary<ShortenLines>(
               {ArrayOf(String), Segment(Table), Segment(Real64), Segment(Real64), Segment(Int32)},
               ArrayOf(String))}},
      }};
}

}  // namespace ostrel::charts
