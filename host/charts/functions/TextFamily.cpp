#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <cmath>

#include "charts/data/NumberText.h"
#include "charts/functions/ChartFamilies.h"
#include "charts/functions/RowWise.h"
#include "charts/functions/TextEdits.h"

/// Texts cut, changed and put together, and numbers read from and written into them. Positions count UTF-16
/// units from 0. A result of more than 65,536 units throws 2, and so does a column of more than 2^28 units in
/// all.
namespace ostrel::charts {
namespace {

using namespace ort::core;
using namespace ort::core::builtins;

using Text = RIndirectString;
using View = std::u16string_view;

constexpr std::size_t kMostUnits = std::size_t{1} << 16;
constexpr std::size_t kMostUnitsOfColumn = std::size_t{1} << 28;

/// Interns results and keeps them within the limits.
class TextMaker {
 public:
  std::optional<Text> operator()(View text) {
    if (text.size() > kMostUnits)
      ThrowError(OrtError_InputKindNotAccepted, "a text of more than 65,536 characters");
    units_ += text.size();
    if (units_ > kMostUnitsOfColumn)
      ThrowError(OrtError_InputKindNotAccepted, "texts of more than 268,435,456 characters in all");
    return Text::FromView(text);
  }

 private:
  std::size_t units_ = 0;
};

/// What `edit` makes of each text beside the other inputs' elements: views, strings or optionals.
template <class Edit, class... In>
Value EditTexts(Edit const& edit, RowInput<In> const&... inputs) {
  TextMaker make;
  return MapRowsOf<Text>([&](In const&... rows) { return make(edit(rows...)); }, inputs...);
}

View ViewOf(Text const& text) { return text.Get().view(); }

Value LengthOfTexts(Value const& texts) {
  return MapRowsOf<double>([](Text const& text) { return std::optional<double>(ViewOf(text).size()); },
                           RowInput<Text>(texts, "texts"));
}

template <bool isUpper>
Value ChangeCase(Value const& texts) {
  auto const change = [](Text const& text) {
    View const view = ViewOf(text);
    icu::UnicodeString units(view.data(), static_cast<int32_t>(view.size()));
    isUpper ? units.toUpper(icu::Locale::getRoot()) : units.toLower(icu::Locale::getRoot());
    return std::u16string(units.getBuffer(), static_cast<std::size_t>(units.length()));
  };
  return EditTexts(change, RowInput<Text>(texts, "texts"));
}

Value TrimTexts(Value const& texts) {
  return EditTexts([](Text const& text) { return TrimText(ViewOf(text)); }, RowInput<Text>(texts, "texts"));
}

template <View (*cut)(View, double, double)>
Value CutTexts(Value const& texts, Value const& start, Value const& end) {
  return EditTexts([](Text const& text, double from, double to) { return cut(ViewOf(text), from, to); },
                   RowInput<Text>(texts, "texts"), RowInput<double>(start, "start"),
                   RowInput<double>(end, "end"));
}

template <double (*find)(View, View)>
Value FindTexts(Value const& texts, Value const& parts) {
  return MapRowsOf<double>(
      [](Text const& text, Text const& part) { return std::optional(find(ViewOf(text), ViewOf(part))); },
      RowInput<Text>(texts, "texts"), RowInput<Text>(parts, "parts"));
}

Value ReplaceTexts(Value const& texts, Value const& parts, Value const& replacements) {
  return EditTexts(
      [](Text const& text, Text const& part, Text const& replacement) {
        return ReplaceFirst(ViewOf(text), ViewOf(part), ViewOf(replacement));
      },
      RowInput<Text>(texts, "texts"), RowInput<Text>(parts, "parts"),
      RowInput<Text>(replacements, "replacements"));
}

Value CountTextParts(Value const& texts, Value const& separators) {
  return MapRowsOf<double>(
      [](Text const& text, Text const& separator) {
        return std::optional<double>(CountParts(ViewOf(text), ViewOf(separator)));
      },
      RowInput<Text>(texts, "texts"), RowInput<Text>(separators, "separators"));
}

Value TakeTextParts(Value const& texts, Value const& separators, Value const& numbers) {
  return MapRowsOf<Text>(
      [](Text const& text, Text const& separator, double number) {
        View part;
        bool const isFound = FindPart(ViewOf(text), ViewOf(separator), number, part);
        return isFound ? std::optional(Text::FromView(part)) : std::nullopt;
      },
      RowInput<Text>(texts, "texts"), RowInput<Text>(separators, "separators"),
      RowInput<double>(numbers, "numbers"));
}

TextSide ReadSide(Value const& value) {
  std::string const name = FetchStoreValue<OStringCore>(value).toUtf8();
  if (name == "left") return TextSide::Left;
  if (name == "center") return TextSide::Center;
  if (name == "right") return TextSide::Right;
  ThrowError(OrtError_InputKindNotAccepted,
             "a side is \"left\", \"center\" or \"right\", not \"" + name + "\"");
}

Value PadTexts(Value const& texts, Value const& lengths, Value const& characters, Value const& sideName) {
  TextSide const side = ReadSide(sideName);
  return EditTexts(
      [side](Text const& text, double length, Text const& character) {
        return PadText(ViewOf(text), length, ViewOf(character), side);
      },
      RowInput<Text>(texts, "texts"), RowInput<double>(lengths, "lengths"),
      RowInput<Text>(characters, "characters"));
}

Value TruncateTexts(Value const& texts, Value const& lengths, Value const& sideName, Value const& ellipses) {
  TextSide const side = ReadSide(sideName);
  return EditTexts(
      [side](Text const& text, double length, Text const& ellipsis) {
        return TruncateText(ViewOf(text), length, side, ViewOf(ellipsis));
      },
      RowInput<Text>(texts, "texts"), RowInput<double>(lengths, "lengths"),
      RowInput<Text>(ellipses, "ellipses"));
}

Value AppendTexts(Value const& first, Value const& second) {
  std::u16string joined;
  return EditTexts(
      [&joined](Text const& a, Text const& b) -> View {
        joined.assign(ViewOf(a)).append(ViewOf(b));
        return joined;
      },
      RowInput<Text>(first, "first"), RowInput<Text>(second, "second"));
}

Value DescribeNumbers(Value const& numbers) {
  return MapRowsOf<Text>([](double number) { return std::optional(Text::FromUtf8(DescribeNumber(number))); },
                         RowInput<double>(numbers, "numbers"));
}

template <double (*read)(std::string_view)>
Value ReadTextNumbers(Value const& texts) {
  return MapRowsOf<double>(
      [](Text const& text) {
        double const number = read(text.Get().toUtf8());
        return std::isnan(number) ? std::nullopt : std::optional(number);
      },
      RowInput<Text>(texts, "texts"));
}

double ReadWholeNumber(std::string_view text) {
  std::string_view const trimmed = TrimBlanks(text);
  if (trimmed.empty()) return 0;
  NumberText const number = ReadNumber(trimmed);
  return number.kind == NumberText::Kind::None ? std::nan("") : number.ToReal();
}

}  // namespace

BuiltinFamily TextFamily() {
  KeySegmentType const any = AnyValue();
  static constexpr char kWord[] = R"("inputs": [{"String": " Straße "}])";
  return {
      "texts",
      {
          {.name = "textLength",
           .inputs = {"texts"},
           .help = "How many UTF-16 units each text has.",
           .example = kWord,
           .registrations = {Multinary<LengthOfTexts>({any}, any)}},
          {.name = "upperCase",
           .inputs = {"texts"},
           .help = "Each text in capital letters, by the rules of no language in particular.",
           .example = kWord,
           .registrations = {Multinary<ChangeCase<true>>({any}, any)}},
          {.name = "lowerCase",
           .inputs = {"texts"},
           .help = "Each text in small letters, by the rules of no language in particular.",
           .example = kWord,
           .registrations = {Multinary<ChangeCase<false>>({any}, any)}},
          {.name = "trimText",
           .inputs = {"texts"},
           .help = "Each text without the blanks and line ends at both ends.",
           .example = kWord,
           .registrations = {Multinary<TrimTexts>({any}, any)}},
          {.name = "substring",
           .inputs = {"texts", "start", "end"},
           .help =
               "Each text from one position up to another; both are held within the text, and the smaller "
               "one comes first.",
           .example = R"("inputs": [{"String": "2020-05-17"}, {"Real64": 5}, {"Real64": 7}])",
           .registrations = {Multinary<CutTexts<Substring>>({any, any, any}, any)}},
          {.name = "sliceText",
           .inputs = {"texts", "start", "end"},
           .help = "Each text from one position up to another; one below 0 counts from the end.",
           .example = R"("inputs": [{"String": "2020-05-17"}, {"Real64": -2}, {"Real64": "Infinity"}])",
           .registrations = {Multinary<CutTexts<SliceText>>({any, any, any}, any)}},
          {.name = "findText",
           .inputs = {"texts", "parts"},
           .help = "Where in each text a part first stands; -1 where it does not.",
           .example = R"("inputs": [{"String": "banana"}, {"String": "an"}])",
           .registrations = {Multinary<FindTexts<FindText>>({any, any}, any)}},
          {.name = "findLastText",
           .inputs = {"texts", "parts"},
           .help = "Where in each text a part last stands; -1 where it does not.",
           .example = R"("inputs": [{"String": "banana"}, {"String": "an"}])",
           .registrations = {Multinary<FindTexts<FindLastText>>({any, any}, any)}},
          {.name = "replaceText",
           .inputs = {"texts", "parts", "replacements"},
           .help = "Each text with a replacement for the first place where a part stands.",
           .example = R"("inputs": [{"String": "banana"}, {"String": "an"}, {"String": "-"}])",
           .registrations = {Multinary<ReplaceTexts>({any, any, any}, any)}},
          {.name = "countTextParts",
           .inputs = {"texts", "separators"},
           .help = "Into how many parts a separator divides each text; the empty one parts all units.",
           .example = R"("inputs": [{"String": "a/b/c"}, {"String": "/"}])",
           .registrations = {Multinary<CountTextParts>({any, any}, any)}},
          {.name = "textPart",
           .inputs = {"texts", "separators", "numbers"},
           .help = "One of the parts into which a separator divides each text, counted from 0; a special row "
                   "of kind 1 where there are fewer.",
           .example = R"("inputs": [{"String": "a/b/c"}, {"String": "/"}, {"Real64": 1}])",
           .registrations = {Multinary<TakeTextParts>({any, any, any}, any)}},
          {.name = "padText",
           .inputs = {"texts", "lengths", "characters", "side"},
           .help = "Each text with copies of a character that make it so long at its \"left\" or "
                   "\"right\", or at both sides (\"center\"); another side throws 2.",
           .example = R"("inputs": [{"String": "7"}, {"Real64": 3}, {"String": "0"}, {"String": "left"}])",
           .registrations = {Multinary<PadTexts>({any, any, any, Segment(StoreType::String)}, any)}},
          {.name = "truncateText",
           .inputs = {"texts", "lengths", "side", "ellipses"},
           .help = "Each text cut to a length, an ellipsis included, that stands at its \"left\", its "
                   "\"right\" or in the middle (\"center\"); another side throws 2.",
           .example =
               R"("inputs": [{"String": "Antarctica"}, {"Real64": 6}, {"String": "right"}, {"String": "…"}])",
           .registrations = {Multinary<TruncateTexts>({any, any, Segment(StoreType::String), any}, any)}},
          {.name = "appendText",
           .inputs = {"first", "second"},
           .help = "Two texts one after the other, row by row.",
           .example = R"("inputs": [{"String": "sea"}, {"String": "side"}])",
           .registrations = {Multinary<AppendTexts>({any, any}, any)}},
          {.name = "describeNumber",
           .inputs = {"numbers"},
           .help =
               "The shortest digits that read back to each number, with an exponent from 1e21 on and below "
               "1e-6.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [0.1, 100000000000]}}])",
           .registrations = {Multinary<DescribeNumbers>({any}, any)}},
          {.name = "readNumber",
           .inputs = {"texts"},
           .help = "The number that each whole text is, blanks apart, 0 for nothing else; a special row of "
                   "kind 1 for a text that is no number.",
           .example = R"("inputs": [{"String": " 12.5 "}])",
           .registrations = {Multinary<ReadTextNumbers<ReadWholeNumber>>({any}, any)}},
          {.name = "readLeadingNumber",
           .inputs = {"texts"},
           .help = "The number that each text begins with; a special row of kind 1 without one.",
           .example = R"("inputs": [{"String": "12.5 kg"}])",
           .registrations = {Multinary<ReadTextNumbers<ReadLeadingNumber>>({any}, any)}},
          {.name = "readLeadingInteger",
           .inputs = {"texts"},
           .help = "The whole number that each text begins with; a special row of kind 1 without one.",
           .example = R"("inputs": [{"String": "12.5 kg"}])",
           .registrations = {Multinary<ReadTextNumbers<ReadLeadingInteger>>({any}, any)}},
      }};
}

}  // namespace ostrel::charts
