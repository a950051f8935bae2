#include <limits>

#include "charts/functions/ChartFamilies.h"
#include "charts/functions/LabelVisibility.h"
#include "charts/functions/TextBoxes.h"
#include "charts/functions/TickFormat.h"
#include "charts/texts/TextDirection.h"
#include "ostrelrtcore/builtins/Columns.h"
#include "services/BreakHints.h"
#include "services/DateFormat.h"

/// What ticks and marks say, how wide that is, and which labels are shown. Special rows stay special; a label
/// at a special position or of special size is not shown.
namespace ostrel::charts {
namespace {

using namespace ort::core;
using namespace ort::core::builtins;
using services::NumberFormat;
using services::TextMeasurer;

OStringCore ReadText(Value const& value) { return FetchStoreValue<OStringCore>(value); }

/// A column of what `map` gives for each ordinary row.
template <class Out, class In, class Map>
Value MapRows(Value const& column, StoreTypeInfo const& outputType, Map const& map) {
  auto const& rows = column->AsTypedArray<In>();
  RowKinds const kinds(rows);
  auto builder = factory::MakeColumnBuilder<Out>(outputType, rows.GetCount());
  auto const out = builder.GetValues();
  for (int row = 0; row < rows.GetCount(); ++row) {
    auto const at = static_cast<std::size_t>(row);
    if (kinds[row] == SpecialKind::None) {
      out[at] = map(rows.GetElement(row));
    } else {
      out[at] = Out();
      builder.SetSpecial(row, kinds[row]);
    }
  }
  return builder.Finish();
}

template <class In, class Format>
Value FormatRows(Value const& column, Format const& format) {
  return MapRows<RIndirectString, In>(column, StoreTypeInfo::String,
                                      [&](In const& value) { return RIndirectString(format(value)); });
}

/// The ordinary rows; special ones are NaN.
std::vector<double> ReadNumbers(Value const& column, char const* what) {
  RowKinds const kinds(RequireColumn(*column, StoreType::Real64, what));
  auto const& rows = column->AsTypedArray<double>();
  std::vector<double> numbers(static_cast<std::size_t>(rows.GetCount()));
  for (int row = 0; row < rows.GetCount(); ++row) {
    bool const isOrdinary = kinds[row] == SpecialKind::None;
    numbers[static_cast<std::size_t>(row)] =
        isOrdinary ? rows.GetElement(row) : std::numeric_limits<double>::quiet_NaN();
  }
  return numbers;
}

Value HintBreaks(Value const& texts) {
  RequireColumn(*texts, StoreType::String, "texts");
  return FormatRows<RIndirectString>(
      texts, [](RIndirectString const& text) { return services::InsertZeroWidthSpaces(text.Get()); });
}

Value ReadFromRight(Value const& texts) {
  RowKinds const kinds(RequireColumn(*texts, StoreType::String, "texts"));
  auto const& rows = texts->AsTypedArray<RIndirectString>();
  auto builder = factory::MakeColumnBuilder<uint8>(StoreTypeInfo::Bool, rows.GetCount());
  for (int row = 0; row < rows.GetCount(); ++row) {
    bool const isText = kinds[row] == SpecialKind::None;
    builder.GetValues()[static_cast<std::size_t>(row)] =
        isText && ReadsFromRight(rows.GetElement(row).Get()) ? 1 : 0;
  }
  return builder.Finish();
}

Value FormatTicks(Value const& ticks, Value const& pattern) {
  TickFormat const format(ReadNumbers(ticks, "ticks"), ReadText(pattern).view());
  return FormatRows<double>(ticks, [&](double tick) { return format.Format(tick); });
}

Value FormatNumbers(Value const& values, Value const& pattern) {
  RequireColumn(*values, StoreType::Real64, "values");
  NumberFormat const format(ReadText(pattern).view());
  return FormatRows<double>(values, [&](double value) { return format.Format(value); });
}

Value FormatDates(Value const& dates, Value const& pattern) {
  RequireColumn(*dates, StoreType::DateTime, "dates");
  OStringCore const text = ReadText(pattern);
  return FormatRows<OrtDateTime>(dates, [&](OrtDateTime date) {
    return text.isEmpty() ? services::FormatAxisDate(date) : services::FormatDate(date, text.view());
  });
}

Value MeasureTexts(Value const& texts, Value const& font, TextMeasurer const& measurer) {
  RequireColumn(*texts, StoreType::String, "texts");
  auto const request = services::ReadFont(font);
  return MapRows<double, RIndirectString>(texts, StoreTypeInfo::Real64, [&](RIndirectString const& text) {
    return measurer.MeasureTextWidth(text.Get().view(), request);
  });
}

/// Of a text the widest part between blanks.
Value MeasureWords(Value const& texts, Value const& font, TextMeasurer const& measurer) {
  RequireColumn(*texts, StoreType::String, "texts");
  auto const request = services::ReadFont(font);
  return MapRows<double, RIndirectString>(texts, StoreTypeInfo::Real64, [&](RIndirectString const& text) {
    return MeasureWidestWord(text.Get().view(), request, measurer);
  });
}

Value MeasureFont(Value const& font, TextMeasurer const& measurer) {
  services::FontMetrics const metrics = measurer.GetMetrics(services::ReadFont(font));
  return factory::MakeKeyMap({{L"ascent", factory::MakeReal64(metrics.ascent)},
                              {L"height", factory::MakeReal64(metrics.height)},
                              {L"leading", factory::MakeReal64(metrics.leading)}});
}

/// Row by row; a scalar counts for every row, a special row for nothing.
Value JoinTexts(Values const& parts) {
  int count = -1;
  for (Value const& part : parts) {
    if (!IsColumn(*part)) continue;
    RequireColumn(*part, StoreType::String, "texts");
    if (count >= 0) RequireOneLength(part->AsColumn().GetCount(), count, "texts");
    count = part->AsColumn().GetCount();
  }
  if (count < 0) ThrowError(OrtError_WrongValueKind, "no part is a column of texts");
  std::vector<std::u16string> joined(static_cast<std::size_t>(count));
  for (Value const& part : parts) {
    if (!IsColumn(*part)) {
      OStringCore const text = ReadText(part);
      for (std::u16string& row : joined) row += text.view();
      continue;
    }
    RowKinds const kinds(part->AsColumn());
    auto const& rows = part->AsTypedArray<RIndirectString>();
    for (int row = 0; row < count; ++row) {
      if (kinds[row] == SpecialKind::None)
        joined[static_cast<std::size_t>(row)] += rows.GetElement(row).Get().view();
    }
  }
  auto texts = std::make_unique<std::vector<RIndirectString>>();
  for (std::u16string const& row : joined) texts->emplace_back(OStringCore(row));
  return factory::MakeArray<RIndirectString>(StoreTypeInfo::String, std::move(texts));
}

/// A function that measures and takes so many inputs.
template <auto measure, std::size_t count>
class MeasureFunctor final : public IMultinaryFunctor {
 public:
  explicit MeasureFunctor(std::shared_ptr<TextMeasurer const> measurer) : measurer_(std::move(measurer)) {
    if (measurer_ == nullptr) ThrowError(OrtError_WrongValueKind, "there is nothing to measure texts with");
  }
  Value Apply(Values const& inputs) override {
    builtins::detail::RequireInputs(inputs, count);
    return [&]<std::size_t... I>(std::index_sequence<I...>) { return measure(inputs[I]..., *measurer_); }
    (std::make_index_sequence<count>());
  }

 private:
  std::shared_ptr<TextMeasurer const> measurer_;
};

// A width for each text of a column in one font.
template <auto measure>
Registration MeasureTextsBy(std::shared_ptr<TextMeasurer const> const& measurer) {
  return {Arity::Multinary,
          0,
          {ArrayOf(StoreType::String), Segment(StoreType::Tuple)},
          ArrayOf(StoreType::Real64),
          {},
          [measurer] { return std::make_unique<MeasureFunctor<measure, 2>>(measurer); }};
}

LabelStrategy ReadStrategy(Value const& value) {
  OStringCore const text = ReadText(value);
  if (text == OStringCore(u"parity")) return LabelStrategy::Parity;
  if (text == OStringCore(u"greedy")) return LabelStrategy::Greedy;
  ThrowError(OrtError_InputKindNotAccepted,
             "the strategy is \"parity\" or \"greedy\", not \"" + text.toUtf8() + "\"");
}

Value ShowLabels(Value const& positions, Value const& sizes, Value const& gap, Value const& strategy) {
  std::vector<double> const centres = ReadNumbers(positions, "positions");
  std::vector<double> const extents = ReadNumbers(sizes, "sizes");
  RequireOneLength(positions->AsColumn().GetCount(), sizes->AsColumn().GetCount(), "sizes");
  std::vector<uint8> shown =
      VisibleLabels(centres, extents, FetchStoreValue<double>(gap), ReadStrategy(strategy));
  return factory::MakeArray<uint8>(StoreTypeInfo::Bool,
                                   std::make_unique<std::vector<uint8>>(std::move(shown)));
}

}  // namespace

BuiltinFamily LabelFamily(std::shared_ptr<TextMeasurer const> const& measurer) {
  using enum StoreType;
  KeySegmentType const text = Segment(String);
  return {
      "labels",
      {
          {.name = "formatTicks",
           .inputs = {"ticks", "pattern"},
           .help =
               "The texts of an axis' ticks by a number pattern, its precision taken from the distance "
               "between ticks; under the empty pattern evenly spaced ticks share their number of decimals "
               "and others get each its shortest text.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [0, 0.5, 1]}}, {"String": ""}])",
           .registrations = {Multinary<FormatTicks>({ArrayOf(Real64), text}, ArrayOf(String))}},
          {.name = "formatNumbers",
           .inputs = {"values", "pattern"},
           .help = "Each number by a number pattern, such as \",.2f\"; an ill-formed one throws 55.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1234.5]}}, {"String": "$,.2f"}])",
           .registrations = {Multinary<FormatNumbers>({ArrayOf(Real64), text}, ArrayOf(String))}},
          {.name = "formatDates",
           .inputs = {"dates", "pattern"},
           .help =
               "Each date by a pattern of directives, such as \"%Y-%m-%d\"; under the empty pattern by the "
               "largest unit of the calendar that begins with it.",
           .example = R"("inputs": [{"Array": {"type": "DateTime", "values": ["2020-01-01T00:00:00.0000", )"
                      R"("2020-02-01T00:00:00.0000"]}}, {"String": ""}])",
           .registrations = {Multinary<FormatDates>({ArrayOf(DateTime), text}, ArrayOf(String))}},
          {.name = "hintBreaks",
           .inputs = {"texts"},
           .help =
               "Each text with U+200B where a line may end in scripts without blanks; others as they are.",
           .example =
               R"("inputs": [{"Array": {"type": "String", "values": ["British Indian", "英領インド洋地域"]}}])",
           .registrations = {Multinary<HintBreaks>({ArrayOf(String)}, ArrayOf(String))}},
          {.name = "readsFromRight",
           .inputs = {"texts"},
           .help = "Whether each text is read from the right, by its first letter of a direction; a "
                   "special row is not.",
           .example = R"("inputs": [{"Array": {"type": "String", "values": ["abc", "אבג"]}}])",
           .registrations = {Multinary<ReadFromRight>({ArrayOf(String)}, ArrayOf(Bool))}},
          {.name = "joinTexts",
           .inputs = {"first", "others..."},
           .help = "Each row's texts one after the other; a scalar counts for every row, a special row is "
                   "passed over, and without a column 55 is thrown.",
           .example =
               R"("inputs": [{"String": "a = "}, {"Array": {"type": "String", "values": ["1", "2"]}}])",
           .registrations = {Multinary<JoinTexts>({AnyValue(), AnyValue()}, ArrayOf(String))}},
          {.name = "measureTexts",
           .inputs = {"texts", "font"},
           .help = "The width in pixels of each text in a font: a tuple of family, size, weight and slant.",
           .example = R"("inputs": [{"Array": {"type": "String", "values": ["10", "200"]}}, {"Tuple": )"
                      R"([{"String": "sans-serif"}, {"Real64": 10}, {"Int32": 400}, {"Int32": 0}]}])",
           .registrations = {MeasureTextsBy<MeasureTexts>(measurer)}},
          {.name = "measureWords",
           .inputs = {"texts", "font"},
           .help = "The width in pixels of each text's widest word, which ends at blanks and at U+200B, in a "
                   "font: a tuple of family, size, weight and slant.",
           .example = R"("inputs": [{"Array": {"type": "String", "values": ["far off"]}}, {"Tuple": )"
                      R"([{"String": "sans-serif"}, {"Real64": 10}, {"Int32": 400}, {"Int32": 0}]}])",
           .registrations = {MeasureTextsBy<MeasureWords>(measurer)}},
          {.name = "measureFont",
           .inputs = {"font"},
           .help =
               "The \"ascent\" of a font above its baseline, the \"height\" of a line and the \"leading\" "
               "between two lines, in pixels; the font is a tuple of family, size, weight and slant.",
           .example = R"("inputs": [{"Tuple": [{"String": "sans-serif"}, {"Real64": 10}, {"Int32": 400}, )"
                      R"({"Int32": 0}]}])",
           .registrations = {{Arity::Multinary,
                              0,
                              {Segment(Tuple)},
                              Segment(KeyMap),
                              {},
                              [measurer] {
                                return std::make_unique<MeasureFunctor<MeasureFont, 1>>(measurer);
                              }}}},
          {.name = "visibleLabels",
           .inputs = {"positions", "sizes", "gap", "strategy"},
           .help = "Which labels to show so that none come closer than the gap, in pixels: \"parity\" drops "
                   "every other one until they clear, \"greedy\" keeps each that clears the last one kept.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [0, 10, 20]}}, {"Array": )"
                      R"({"type": "Real64", "values": [12, 12, 12]}}, {"Real64": 2}, {"String": "parity"}])",
           .registrations = {Multinary<ShowLabels>({ArrayOf(Real64), ArrayOf(Real64), Segment(Real64), text},
                                                   ArrayOf(Bool))}},
      }};
}

}  // namespace ostrel::charts
