#include <benchmark/benchmark.h>
#include <pango/pangoft2.h>

#include <memory>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "ostrelrtcore/Factory.h"
#include "render/TextComposer.h"
#include "services/InstallServices.h"

using namespace runtime;
using namespace ort::core;
namespace services = ostrel::services;

namespace {

constexpr std::size_t kLabels = 10'000;
constexpr std::size_t kLength = 60;
constexpr float kWidth = 120;
constexpr int kFontSize = 12;

std::vector<OStringCore> MakeLabels(std::size_t count, std::size_t length, char16_t first) {
  constexpr std::u16string_view letters = u"eeeeetttaaooiinnsshhrrddlluucmwfgypbvkjxqzTAVWo";
  std::mt19937 random(3);
  std::set<std::u16string> labels;
  while (labels.size() < count) {
    std::u16string label;
    while (label.size() < length) {
      for (auto i = 2 + random() % 8; i > 0; --i) {
        label +=
            first == 0 ? letters[random() % letters.size()] : static_cast<char16_t>(first + random() % 32);
      }
      label += random() % 8 == 0 ? u", " : u" ";
    }
    label.resize(length);
    label.back() = u'x';
    labels.insert(label);
  }
  std::vector<OStringCore> result;
  for (auto const& label : labels) result.emplace_back(label);
  std::shuffle(result.begin(), result.end(), random);
  return result;
}

services::Value MakeStyles(services::TextMeasurer const& measurer) {
  auto const column = [](StoreTypeInfo const& type, auto value) {
    auto rows = factory::MakeColumnBuilder<decltype(value)>(type, 1);
    rows.GetValues()[0] = value;
    return rows.Finish();
  };
  services::FontRequest const request{OStringCore(u"DejaVu Sans"), kFontSize, 400, 0};
  auto const metrics = measurer.GetMetrics(request);
  return factory::MakeTable({
      {OStringCore(u"text_font"), column(StoreTypeInfo::Tuple, services::MakeFont(request))},
      {OStringCore(u"ascent"), column(StoreTypeInfo::Real64, metrics.ascent)},
      {OStringCore(u"font_height"), column(StoreTypeInfo::Real64, metrics.height)},
      {OStringCore(u"leading"), column(StoreTypeInfo::Real64, metrics.leading)},
      {OStringCore(u"text_orientation"), column(StoreTypeInfo::Int32, 0)},
      {OStringCore(u"hAlign"), column(StoreTypeInfo::Int32, 0)},
      {OStringCore(u"vAlign"), column(StoreTypeInfo::Int32, 0)},
  });
}

// The number of lines of all labels.
std::size_t ComposeAll(std::vector<OStringCore> const& labels, services::Value const& styles) {
  TextComposer composer(styles);
  composer.SetWrapMode(WordWrap);
  std::size_t lines = 0;
  for (OStringCore const& label : labels) {
    FormattedText text;
    text.append({0, label});
    ComposedText composed;
    composer.compose(text, {kWidth, 1000}, composed);
    lines += composed.GetLineCount();
  }
  return lines;
}

struct Unref {
  void operator()(void* object) const { g_object_unref(object); }
};
template <class T>
using Object = std::unique_ptr<T, Unref>;

std::size_t PangoAll(std::vector<std::string> const& labels, PangoContext* context) {
  Object<PangoLayout> const layout(pango_layout_new(context));
  PangoFontDescription* const font = pango_font_description_from_string("DejaVu Sans");
  pango_font_description_set_absolute_size(font, kFontSize * PANGO_SCALE);
  pango_layout_set_font_description(layout.get(), font);
  pango_layout_set_width(layout.get(), static_cast<int>(kWidth) * PANGO_SCALE);
  pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
  std::size_t lines = 0;
  for (std::string const& label : labels) {
    pango_layout_set_text(layout.get(), label.data(), static_cast<int>(label.size()));
    PangoRectangle extents;
    pango_layout_get_extents(layout.get(), nullptr, &extents);
    lines += static_cast<std::size_t>(pango_layout_get_line_count(layout.get()));
  }
  pango_font_description_free(font);
  return lines;
}

// What a label says stays the same; two layouts of it may differ by a line where a word fits narrowly.
void CheckLines(std::size_t lines) {
  if (lines < kLabels * 3 || lines > kLabels * 6) throw std::logic_error("the labels are not wrapped");
}

// Every label is new, and nothing is known of the font: services are made anew for each round.
void Compose(benchmark::State& state, char16_t first) {
  auto const labels = MakeLabels(kLabels, kLength, first);
  for (auto _ : state) {
    state.PauseTiming();
    auto fresh = std::make_unique<services::InstalledServices>(std::make_shared<services::FontService>());
    auto const styles = MakeStyles(fresh->GetMeasurer());
    state.ResumeTiming();
    CheckLines(ComposeAll(labels, styles));
    state.PauseTiming();
    fresh.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(labels.size()));
}

void Pango(benchmark::State& state, char16_t first) {
  std::vector<std::string> labels;
  for (OStringCore const& label : MakeLabels(kLabels, kLength, first)) labels.push_back(label.toUtf8());
  for (auto _ : state) {
    state.PauseTiming();
    Object<PangoFontMap> fonts(pango_ft2_font_map_new());
    pango_ft2_font_map_set_resolution(PANGO_FT2_FONT_MAP(fonts.get()), 96, 96);
    Object<PangoContext> context(pango_font_map_create_context(fonts.get()));
    state.ResumeTiming();
    CheckLines(PangoAll(labels, context.get()));
    state.PauseTiming();
    context.reset();
    fonts.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(labels.size()));
}

// One word without end: its lines are broken between any characters.
void ComposeLongWord(benchmark::State& state) {
  services::InstalledServices const installed(services::MakeFixedMeasurer());
  TextComposer composer(MakeStyles(installed.GetMeasurer()));
  composer.SetWrapMode(WordWrap);
  auto const length = static_cast<std::size_t>(state.range(0));
  FormattedText text;
  text.append({0, OStringCore(std::u16string(length, u'x'))});
  for (auto _ : state) {
    ComposedText composed;
    composer.compose(text, {kWidth, 1000}, composed);
    if (composed.GetLineCount() != (length + 11) / 12) throw std::logic_error("the word is not wrapped");
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

constexpr char16_t kCyrillic = u'\u0430';

BENCHMARK_CAPTURE(Compose, latin, u'\0')->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Pango, latin, u'\0')->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Compose, cyrillic, kCyrillic)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Pango, cyrillic, kCyrillic)->Unit(benchmark::kMillisecond);

BENCHMARK(ComposeLongWord)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

}  // namespace
