#include <benchmark/benchmark.h>

#include <random>
#include <stdexcept>
#include <string>

#include "render/ComplexTokenizer.h"
#include "render/SimpleTokenizer.h"

using namespace runtime;

namespace {

constexpr std::u16string_view kLatin = u"eeeeetttaaooiinnsshhrrddlluucmwfgypbvkjxqz";

// A text of words, with a comma or a full stop after some and a line end after others.
std::u16string MakeText(std::size_t length, char16_t first, std::uint32_t letters) {
  std::mt19937 random(11);
  std::u16string text;
  while (text.size() < length) {
    for (auto i = 2 + random() % 8; i > 0; --i) {
      text +=
          first == 0 ? kLatin[random() % kLatin.size()] : static_cast<char16_t>(first + random() % letters);
    }
    auto const end = random() % 12;
    if (end == 0) text += u',';
    if (end == 1) text += u'.';
    text += end == 2 ? u'\n' : u' ';
  }
  text.resize(length);
  return text;
}

FormattedText Cut(std::u16string const& text, std::size_t runs) {
  FormattedText result;
  auto const length = text.size() / runs;
  for (std::size_t i = 0; i < runs; ++i) {
    result.append({static_cast<std::uint32_t>(i % 2), OStringCore(text.substr(i * length, length))});
  }
  return result;
}

std::size_t CountUnits(Tokenizer& tokenizer) {
  std::size_t units = 0;
  while (auto const token = tokenizer.next()) {
    for (auto const& segment : token->segments) units += static_cast<std::size_t>(segment.text.length());
  }
  return units;
}

void CutComplex(benchmark::State& state, FormattedText const& text, BreakMode mode) {
  ComplexTokenizer checked(text, false);
  checked.SetBreakMode(mode);
  auto const expected = CountUnits(checked);
  // Line ends are in no token.
  if (expected * 10 < text.GetCharacterCount() * 9ULL || expected > text.GetCharacterCount()) {
    throw std::logic_error("the tokens are not the text");
  }
  for (auto _ : state) {
    ComplexTokenizer tokenizer(text, false);
    tokenizer.SetBreakMode(mode);
    if (CountUnits(tokenizer) != expected) throw std::logic_error("another reading has other tokens");
  }
  state.SetBytesProcessed(state.iterations() * text.GetCharacterCount() * 2);
}

std::u16string const& Latin() {
  static auto const text = MakeText(1'000'000, 0, 0);
  return text;
}
std::u16string const& Ideographs() {
  static auto const text = MakeText(1'000'000, u'\u4E00', 5000);
  return text;
}
std::u16string const& Thai() {
  static auto const text = MakeText(100'000, u'\u0E01', 70);
  return text;
}

void CutWords(benchmark::State& state) { CutComplex(state, Cut(Latin(), 1), SpacesOnly); }
void CutWordsOfManyStyles(benchmark::State& state) { CutComplex(state, Cut(Latin(), 100'000), SpacesOnly); }
void CutAfterPunctuation(benchmark::State& state) { CutComplex(state, Cut(Latin(), 1), AfterPunctuation); }
void CutCharacters(benchmark::State& state) { CutComplex(state, Cut(Latin(), 1), AnyCharacter); }
void CutIdeographicWords(benchmark::State& state) { CutComplex(state, Cut(Ideographs(), 1), SpacesOnly); }
void CutIdeographs(benchmark::State& state) { CutComplex(state, Cut(Ideographs(), 1), AnyCharacter); }
void CutThaiClusters(benchmark::State& state) { CutComplex(state, Cut(Thai(), 1), AnyCharacter); }
BENCHMARK(CutWords)->Unit(benchmark::kMillisecond);
BENCHMARK(CutWordsOfManyStyles)->Unit(benchmark::kMillisecond);
BENCHMARK(CutAfterPunctuation)->Unit(benchmark::kMillisecond);
BENCHMARK(CutCharacters)->Unit(benchmark::kMillisecond);
BENCHMARK(CutIdeographicWords)->Unit(benchmark::kMillisecond);
BENCHMARK(CutIdeographs)->Unit(benchmark::kMillisecond);
BENCHMARK(CutThaiClusters)->Unit(benchmark::kMillisecond);

void CutLabels(benchmark::State& state) {
  auto const text = Cut(Latin().substr(0, 60), 1);
  for (auto _ : state) {
    ComplexTokenizer tokenizer(text, false);
    benchmark::DoNotOptimize(CountUnits(tokenizer));
  }
  state.SetBytesProcessed(state.iterations() * 120);
}
BENCHMARK(CutLabels);

void CutLines(benchmark::State& state) {
  auto const text = Cut(Latin(), 1);
  for (auto _ : state) {
    SimpleTokenizer tokenizer(text);
    benchmark::DoNotOptimize(CountUnits(tokenizer));
  }
  state.SetBytesProcessed(state.iterations() * text.GetCharacterCount() * 2);
}
BENCHMARK(CutLines)->Unit(benchmark::kMillisecond);

}  // namespace
