#include <benchmark/benchmark.h>

#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "services/BreakHints.h"
#include "services/FontService.h"
#include "services/NumberFormat.h"

using namespace ostrel::services;

namespace {

FontService const& Service() {
  static FontService const service;
  return service;
}

FontRequest Font() { return {OStringCore(u"DejaVu Sans"), 12, 400, 0}; }

// Words of letters as frequent as in English, so that a share of the texts has the ligatures of f.
std::vector<OStringCore> MakeTexts(int count, int length, char16_t shift) {
  constexpr std::u16string_view letters =
      u"eeeeeetttttaaaaooooiiiinnnnsssshhhrrrddllluuccmmwwffggyyppbbvkjxqzTAVWo.";
  std::mt19937 random(7);
  std::vector<OStringCore> texts;
  for (int i = 0; i < count; ++i) {
    std::u16string text;
    while (static_cast<int>(text.size()) < length) {
      auto const word = 2 + random() % 8;
      for (unsigned k = 0; k < word; ++k) {
        auto const unit = letters[random() % letters.size()];
        text += shift == 0 ? unit : static_cast<char16_t>(shift + unit % 24);
      }
      text += u' ';
    }
    texts.emplace_back(text.substr(0, static_cast<std::size_t>(length)));
  }
  return texts;
}

constexpr char16_t kCyrillic = u'\u0430';

void Measure(benchmark::State& state, std::vector<OStringCore> const& texts) {
  auto const font = MakeFont(Font());
  double const expected = Service().MeasureTextWidth(texts[0].view(), Font());
  if (!(expected > 0) || Service().MeasureTextWidth(texts[0], font) != static_cast<float>(expected)) {
    throw std::logic_error("a text has two widths");
  }
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(Service().MeasureTextWidth(texts[next], font));
    if (++next == texts.size()) next = 0;
  }
}

// Texts that were measured before: plain Latin ones are summed anew, others are found in the cache.
void MeasureKnownLatin(benchmark::State& state) {
  Measure(state, MakeTexts(100, static_cast<int>(state.range(0)), 0));
}
void MeasureKnownCyrillic(benchmark::State& state) {
  Measure(state, MakeTexts(100, static_cast<int>(state.range(0)), kCyrillic));
}
// More texts than the cache holds, so that each is new.
void MeasureNewLatin(benchmark::State& state) {
  Measure(state, MakeTexts(200'000, static_cast<int>(state.range(0)), 0));
}
void MeasureNewCyrillic(benchmark::State& state) {
  Measure(state, MakeTexts(200'000, static_cast<int>(state.range(0)), kCyrillic));
}
BENCHMARK(MeasureKnownLatin)->Arg(6)->Arg(20)->Arg(60)->Threads(1)->Threads(2);
BENCHMARK(MeasureKnownCyrillic)->Arg(6)->Arg(20)->Arg(60)->Threads(1)->Threads(2);
BENCHMARK(MeasureNewLatin)->Arg(6)->Arg(20)->Arg(60);
BENCHMARK(MeasureNewCyrillic)->Arg(6)->Arg(20)->Arg(60);

void StartService(benchmark::State& state) {
  for (auto _ : state) {
    FontService const service;
    benchmark::DoNotOptimize(service.MeasureTextWidth(u"first text", Font()));
  }
}
BENCHMARK(StartService)->Unit(benchmark::kMicrosecond);

void FormatNumbers(benchmark::State& state, std::u16string_view pattern) {
  double value = 0.123;
  for (auto _ : state) {
    benchmark::DoNotOptimize(FormatNumber(value, pattern));
    value += 1234.567;
  }
}
BENCHMARK_CAPTURE(FormatNumbers, plain, u"");
BENCHMARK_CAPTURE(FormatNumbers, grouped, u",.2f");
BENCHMARK_CAPTURE(FormatNumbers, prefixed, u"~s");

void InsertHints(benchmark::State& state) {
  auto const texts = MakeTexts(100, 60, 0);
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(InsertBreakHints(texts[next]));
    next = (next + 1) % texts.size();
  }
}
BENCHMARK(InsertHints);

}  // namespace
