// Labels of a chart from texts to positioned runs, measured with the fonts of the machine: first with nothing
// in the composition cache, then with what fits it there, then with more than fits.

#include <benchmark/benchmark.h>
#include <tbb/global_control.h>

#include <random>

#include "ostrelrtcore/Factory.h"
#include "ostrelrtcore/FunctionRegistry.h"
#include "ostrelrtcore/OrtFunctor.h"
#include "ostreltransforms/Registration.h"
#include "ostreltransforms/TransformNames.h"
#include "ostreltransforms/VisualKey.h"
#include "ostreltransforms/composer/ComposeText.h"
#include "render/CompositionCache.h"
#include "services/InstallServices.h"
#include "string/InternalTrim.h"

namespace {

using namespace ort::core;
using namespace runtime;
using Value = std::shared_ptr<StoreValue>;

void MeasureWithFonts() {
  static ostrel::services::InstalledServices const services = ostrel::services::InstallServices();
}

// So many styles, of 11 to 20 pixels.
Value MakeStyles(int count = 1) {
  auto sizes = factory::MakeColumnBuilder<double>(StoreTypeInfo::Real64, count);
  for (int i = 0; i < count; ++i) sizes.GetValues()[static_cast<std::size_t>(i)] = 11 + i % 10;
  factory::NamedValues columns;
  columns.emplace(VisualKey::FontSize, sizes.Finish());
  FunctionRegistry registry;
  OstrelTransforms::RegisterOstrelComposerFunctions(registry);
  OStringCore const name(TransformNames::UPDATE_TEXT_STYLE_TABLE);
  auto const functor = registry.GetMultinaryFunctions().Find(name).at(0).GetFactory()();
  return dynamic_cast<IMultinaryFunctor&>(*functor).Apply({factory::MakeTable(std::move(columns))});
}

// Words of random letters, `length` characters in all give or take the spread; all texts differ.
std::vector<RIndirectString> MakeTexts(unsigned seed, std::size_t count, int shortest, int longest) {
  constexpr int kWordLength = 7;
  std::mt19937 random(seed);
  std::vector<RIndirectString> texts;
  for (std::size_t i = 0; i < count; ++i) {
    int const length = shortest + static_cast<int>(random() % static_cast<unsigned>(longest - shortest + 1));
    std::u16string text;
    for (int at = 0; at < length; ++at) {
      bool const isBlank = at % (kWordLength + 1) == kWordLength;
      text += isBlank ? u' ' : static_cast<char16_t>(u'a' + random() % 26);
    }
    texts.push_back(RIndirectString::FromView(text));
  }
  return texts;
}

Value MakeRows(std::size_t count, int step) {
  auto column = factory::MakeColumnBuilder<int>(StoreTypeInfo::Int32, static_cast<int>(count));
  for (std::size_t i = 0; i < count; ++i) column.GetValues()[i] = static_cast<int>(i) * step;
  return column.Finish();
}

std::vector<Value> MakeInputs(std::vector<RIndirectString> const& texts, double width, double height,
                              TextFitStyle fitStyle, WrapMode wrapMode) {
  auto column =
      factory::MakeColumnBuilder<RIndirectString>(StoreTypeInfo::String, static_cast<int>(texts.size()));
  std::ranges::copy(texts, column.GetValues().begin());
  int const count = static_cast<int>(texts.size());
  return {MakeRows(texts.size(), 1),
          factory::MakeConstantArray<int>(StoreTypeInfo::Int32, 1, count),
          column.Finish(),
          factory::MakeConstantArray<int>(StoreTypeInfo::Int32, 0, count),
          MakeStyles(),
          factory::MakeReal64(width),
          factory::MakeReal64(height),
          factory::MakeInt32(fitStyle),
          factory::MakeInt32(wrapMode)};
}

int CountRuns(Value const& composed) {
  return composed->AsNamedValues().Get(VisualKey::TextRun)->AsColumn().GetCount();
}

struct Case {
  std::size_t count;
  int shortest, longest;
  double width, height;
  TextFitStyle fitStyle;
  WrapMode wrapMode;
};
constexpr Case kLabels{100'000, 8, 12, 300, 20, DotsRight, NoWrap};
constexpr Case kCutLabels{10'000, 40, 60, 100, 20, DotsRight, NoWrap};
constexpr Case kFewWrapped{2'000, 60, 60, 120, 300, DotsRight, WordWrap};
constexpr Case kManyWrapped{10'000, 60, 60, 120, 300, DotsRight, WordWrap};

void Compose(benchmark::State& state, Case const& labels, bool isWarm) {
  MeasureWithFonts();
  tbb::global_control const limit(tbb::global_control::max_allowed_parallelism,
                                  static_cast<std::size_t>(state.range(0)));
  unsigned seed = 0;
  auto const makeInputs = [&] {
    return MakeInputs(MakeTexts(++seed, labels.count, labels.shortest, labels.longest), labels.width,
                      labels.height, labels.fitStyle, labels.wrapMode);
  };
  auto inputs = makeInputs();
  GetCompositionCache()->clear();
  int const runs = CountRuns(OstrelTransforms::ComposeText(inputs));
  if (runs < static_cast<int>(labels.count)) state.SkipWithError("too few runs");
  for (auto _ : state) {
    if (!isWarm) {
      // Neither the cache nor the measurer has seen these.
      state.PauseTiming();
      inputs = makeInputs();
      GetCompositionCache()->clear();
      state.ResumeTiming();
    }
    benchmark::DoNotOptimize(OstrelTransforms::ComposeText(inputs));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(labels.count));
}
BENCHMARK_CAPTURE(Compose, labels_cold, kLabels, false)
    ->Arg(1)
    ->Arg(2)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(Compose, cut_labels_cold, kCutLabels, false)
    ->Arg(1)
    ->Arg(2)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(Compose, few_wrapped_cold, kFewWrapped, false)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(Compose, few_wrapped_warm, kFewWrapped, true)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(Compose, many_wrapped_cold, kManyWrapped, false)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(Compose, many_wrapped_warm, kManyWrapped, true)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// Texts of a style each: the time of a text does not depend on how many styles there are.
void ComposeManyStyles(benchmark::State& state) {
  MeasureWithFonts();
  auto const count = static_cast<int>(state.range(0));
  auto inputs = MakeInputs(MakeTexts(5, static_cast<std::size_t>(count), 8, 12), 300, 40, DotsRight, NoWrap);
  inputs[3] = MakeRows(static_cast<std::size_t>(count), 1);
  for (auto _ : state) {
    inputs[4] = MakeStyles(count);
    if (CountRuns(OstrelTransforms::ComposeText(inputs)) < count) state.SkipWithError("too few runs");
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(ComposeManyStyles)
    ->Arg(1000)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// One look-up after the other; of two threads each asks for texts of its own, as the threads of composeText
// do.
void FindInCache(benchmark::State& state) {
  constexpr int kThreads = 2;
  MeasureWithFonts();
  TextComposer composer(MakeStyles());
  CachedComposer const cached(composer, {120, 300});
  std::vector<FormattedText> texts;
  for (RIndirectString const& text : MakeTexts(7, 1000, 60, 60))
    texts.push_back(FormattedText({{0, text.Get()}}));
  auto const cache = GetCompositionCache();
  if (state.thread_index() == 0) {
    cache->clear();
    for (FormattedText const& text : texts) cached.Compose(text);
  }
  std::uint32_t const insertions = cache->GetInsertions();
  std::size_t const count = texts.size() / kThreads;
  std::size_t const first = count * static_cast<std::size_t>(state.thread_index());
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(cached.Compose(texts[first + next]));
    if (++next == count) next = 0;
  }
  if (state.thread_index() == 0 && cache->GetInsertions() != insertions) {
    state.SkipWithError("not all were found");
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(FindInCache)->Threads(1)->Threads(2)->UseRealTime();

}  // namespace
