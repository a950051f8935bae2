#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include "Bytes.h"
#include "ostrelrtcore/Factory.h"
#include "ostrelsys/OCType.h"
#include "ostreltransforms/Callbacks.h"
#include "render/ComplexTokenizer.h"
#include "render/SimpleTokenizer.h"
#include "render/TextComposer.h"

using namespace runtime;
using namespace ort::core;

namespace {

constexpr std::uint32_t kStyles = 4;

float MakeLength(std::uint8_t byte) {
  constexpr float odd[] = {std::numeric_limits<float>::quiet_NaN(),
                           std::numeric_limits<float>::infinity(),
                           -std::numeric_limits<float>::infinity(),
                           -10.0F,
                           1e30F,
                           0.0F};
  return byte < std::size(odd) ? odd[byte] : static_cast<float>(byte) * 2.5F;
}

// What tokenizers and clusters tell apart, and any unit that two bytes make.
char16_t MakeUnit(Bytes& bytes) {
  constexpr char16_t kinds[] =
      u"ab c.-,#\t\n\r\f\u0301\u200D\uFE0F\u20E3\u200B\u3000\u6F22\u3002\u0E33\u05D0"
      u"\U0001F468\U0001F469\U0001F1E9";
  auto const byte = bytes.Next();
  if (byte < std::size(kinds)) return kinds[byte];
  return static_cast<char16_t>(byte << 8 | bytes.Next());
}

FormattedText MakeText(Bytes& bytes) {
  FormattedText text;
  while (!bytes.AtEnd()) {
    auto const head = bytes.Next();
    std::u16string units;
    for (auto length = head / kStyles; length > 0 && !bytes.AtEnd(); --length) units += MakeUnit(bytes);
    text.append({head % kStyles, OStringCore(std::move(units))});
  }
  return text;
}

template <class T>
std::shared_ptr<StoreValue> MakeColumn(StoreTypeInfo const& type, T const& value) {
  return factory::MakeArray<T>(type, std::make_unique<std::vector<T>>(kStyles, value), nullptr, nullptr);
}

std::shared_ptr<StoreValue> MakeStyles(Bytes& bytes) {
  std::shared_ptr<StoreValue> const font = factory::MakeTuple({factory::MakeInt32(1)});
  auto const alignments = bytes.Next();
  auto const lengths = [&bytes] {
    return MakeColumn<double>(StoreTypeInfo::Real64, static_cast<double>(MakeLength(bytes.Next())));
  };
  auto const number = [](int value) { return MakeColumn<int>(StoreTypeInfo::Int32, value); };
  return factory::MakeTable({{OStringCore(u"text_font"), MakeColumn(StoreTypeInfo::Tuple, font)},
                             {OStringCore(u"ascent"), lengths()},
                             {OStringCore(u"font_height"), lengths()},
                             {OStringCore(u"leading"), lengths()},
                             {OStringCore(u"hAlign"), number(alignments % 4)},
                             {OStringCore(u"vAlign"), number(alignments / 4 % 4)},
                             {OStringCore(u"text_orientation"), number(alignments / 16 % 4)}});
}

bool IsInk(char16_t unit) { return unit != 0 && !OCType::isSpace(unit); }

// What counts of a text: of each run what stands before a zero, where runs do.
std::u16string GetInk(FormattedText const& text, bool untilZero) {
  std::u16string ink;
  for (TextRun const& run : text.GetRuns()) {
    for (char16_t const unit : run.text.view()) {
      if (untilZero && unit == 0) break;
      if (IsInk(unit)) ink += unit;
    }
  }
  return ink;
}

// Nothing is lost or doubled but blanks and line ends, and no token is empty.
void CheckTokens(FormattedText const& text) {
  ComplexTokenizer tokenizer(text, false);
  auto const expected = GetInk(text, true);
  for (std::uint32_t const mode : {2U, 0U, 1U}) {
    tokenizer.SetBreakMode(mode);
    tokenizer.reset();
    std::u16string ink;
    while (auto const token = tokenizer.next()) {
      Check(!token->segments.empty());
      for (TokenSegment const& segment : token->segments) {
        Check(!segment.text.isEmpty() && segment.styleIndex < kStyles);
        for (char16_t const unit : segment.text.view()) {
          if (IsInk(unit)) ink += unit;
        }
      }
    }
    Check(ink == expected);
  }
}

void CheckComposed(TextComposer& composer, FormattedText const& text, Size const& size) {
  ComposedText composed;
  composer.compose(text, size, composed);
  Check(composed.GetStatus() <= HeightCut);
  std::u16string ink;
  for (ComposedTextRun const& run : composed.GetRuns()) {
    Check(run.styleIndex < kStyles);
    for (char16_t const unit : run.text.view()) {
      if (IsInk(unit)) ink += unit;
    }
  }
  bool const isSimple = text.HasSingleStyle() && composer.GetWrapMode() != WordWrap;
  auto const expected = GetInk(text, !isSimple);
  bool const isCut = composer.GetWrapMode() == Clip || composer.GetClipWidth();
  if (isCut) {
    Check(ink.size() <= expected.size());
    return;
  }
  // With lines left out a beginning stands.
  if (composer.GetClipHeight()) {
    Check(expected.starts_with(ink));
  } else {
    Check(ink == expected);
  }
}

}  // namespace

/// Any text in any styles, sizes and measures: it ends, and shows all of the text that it should.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  Bytes bytes(data, size);
  auto const settings = bytes.Next();
  float const unitWidth = MakeLength(bytes.Next());
  OstrelTransforms::SetRuntimeFunctionCallbacks(
      {},
      [unitWidth](OStringCore const& text, std::shared_ptr<StoreValue> const&) {
        return unitWidth * static_cast<float>(text.length());
      },
      {}, {});
  TextComposer composer(MakeStyles(bytes));
  composer.SetWrapMode(settings % 4);
  composer.SetClipHeight((settings & 4) != 0);
  composer.SetClipWidth((settings & 8) != 0);
  if ((settings & 16) != 0) composer.SetInsets(MakeLength(bytes.Next()), MakeLength(bytes.Next()), 3);
  Size const box{MakeLength(bytes.Next()), MakeLength(bytes.Next())};
  FormattedText const text = MakeText(bytes);
  CheckTokens(text);
  CheckComposed(composer, text, box);
  return 0;
}
