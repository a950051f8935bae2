#include <benchmark/benchmark.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <random>
#include <unordered_map>
#include <vector>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

#include "maps/MapUtil.h"
#include "ostrelrtcore/Factory.h"
#include "ostrelrtcore/FunctionRegistry.h"
#include "ostrelrtcore/OrtFunctor.h"
#include "ostrelrtcore/RowLoop.h"
#include "ostreltransforms/Registration.h"
#include "ostreltransforms/TransformNames.h"

// Every benchmark checks its answers against a plain loop before it is timed. The first argument is the
// vector level (0 baseline, 1 AVX2, 2 AVX-512), the second the number of rows: 4,096 stay in the caches.
namespace {

using namespace ort::core;
using Value = std::shared_ptr<StoreValue>;

constexpr std::int64_t kInCache = 4'096;
constexpr std::int64_t kOutOfCache = 10'000'000;

void Levels(benchmark::internal::Benchmark* bench) {
  for (std::int64_t const rows : {kInCache, kOutOfCache}) {
    for (std::int64_t const level : {0, 1, 2}) bench->Args({level, rows});
  }
}

// Keeps a vector level for one benchmark; false when the processor lacks it.
class LevelScope {
 public:
  explicit LevelScope(benchmark::State& state) {
    auto const level = static_cast<VectorLevel>(state.range(0));
    LimitVectorLevel(level);
    isThere_ = GetVectorLevel() == level;
    if (!isThere_) state.SkipWithError("the processor has no such instructions");
  }
  ~LevelScope() { LimitVectorLevel(VectorLevel::Avx512); }
  LevelScope(LevelScope const&) = delete;
  LevelScope& operator=(LevelScope const&) = delete;
  explicit operator bool() const { return isThere_; }

 private:
  bool isThere_;
};

template <class Interface>
class MapFunctor {
 public:
  MapFunctor(wchar_t const* name, StoreTypeInfo const& input, std::vector<Value> const& parameters = {}) {
    FunctionRegistry registry;
    OstrelTransforms::RegisterOstrelMapFunctions(registry);
    for (auto const& entry : registry.GetUnaryFunctions().Find(FunctionKey(OStringCore(name), input))) {
      owner_ = entry.GetFactory()(parameters);
      functor_ = dynamic_cast<Interface*>(owner_.get());
      if (functor_ != nullptr) return;
    }
  }
  Interface* operator->() const { return functor_; }

 private:
  std::unique_ptr<OrtFunctor> owner_;
  Interface* functor_ = nullptr;
};

std::vector<double> Numbers(std::int64_t rows, double least, double most) {
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> distribution(least, most);
  std::vector<double> made(static_cast<std::size_t>(rows));
  for (double& number : made) number = distribution(random);
  return made;
}

void Report(benchmark::State& state, std::int64_t rows, std::int64_t bytesPerRow) {
  state.SetItemsProcessed(state.iterations() * rows);
  state.SetBytesProcessed(state.iterations() * rows * bytesPerRow);
  state.counters["ns_per_row"] =
      benchmark::Counter(static_cast<double>(rows) * 1e-9,
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// Times run(); isRight(row) must hold for every row after it ran once.
template <class Run, class IsRight>
void Time(benchmark::State& state, std::int64_t rows, std::int64_t bytesPerRow, Run run, IsRight isRight) {
  run();
  for (std::int64_t row = 0; row < rows; ++row) {
    if (!isRight(static_cast<std::size_t>(row))) return state.SkipWithError("wrong answer");
  }
  for (auto _ : state) {
    run();
    benchmark::ClobberMemory();
  }
  Report(state, rows, bytesPerRow);
}

template <class In, class Out, class Expected>
void RunPlain(benchmark::State& state, MapFunctor<IUnaryFunctor<In, Out>> const& functor,
              std::vector<In> const& input, Expected expected) {
  LevelScope const level(state);
  if (!level) return;
  std::vector<Out> output(input.size());
  Time(
      state, state.range(1), sizeof(In) + sizeof(Out), [&] { functor->ApplyToArray(input, output); },
      [&](std::size_t row) { return output[row] == expected(input[row]); });
}

template <class In, class Expected>
void RunSpecial(benchmark::State& state, MapFunctor<IUnarySpecialFunctor<In, double>> const& functor,
                std::vector<In> const& input, Expected isRight) {
  LevelScope const level(state);
  if (!level) return;
  std::vector<double> output(input.size());
  std::vector<SpecialKind> kinds(input.size()), outputKinds(input.size());
  Time(
      state, state.range(1), 18, [&] { functor->ApplyToArray(input, kinds, output, outputKinds); },
      [&](std::size_t row) {
        return outputKinds[row] == SpecialKind::None && isRight(input[row], output[row]);
      });
}

// ---- Arithmetic against loops written with intrinsics, and against a copy of the same bytes.

constexpr double kLower = 3.0;
constexpr double kUpper = 10.0;

void Invlerp(benchmark::State& state) {
  MapFunctor<IUnaryFunctor<double, double>> const functor(
      TransformNames::INVLERP, StoreTypeInfo::Real64,
      {factory::MakeReal64(kLower), factory::MakeReal64(kUpper)});
  RunPlain<double, double>(state, functor, Numbers(state.range(1), 0, 20),
                           [](double x) { return (x - kLower) / (kUpper - kLower); });
}
BENCHMARK(Invlerp)->Apply(Levels);

void ClampMin(benchmark::State& state) {
  MapFunctor<IUnaryFunctor<double, double>> const functor(TransformNames::CLAMP_MIN, StoreTypeInfo::Real64,
                                                          {factory::MakeReal64(kLower)});
  RunPlain<double, double>(state, functor, Numbers(state.range(1), 0, 20),
                           [](double x) { return x > kLower ? x : kLower; });
}
BENCHMARK(ClampMin)->Apply(Levels);

#if defined(__x86_64__)
__attribute__((noinline)) void InvlerpSse2(double const* in, double* out, std::size_t count) {
  __m128d const lower = _mm_set1_pd(kLower), range = _mm_set1_pd(kUpper - kLower);
  for (std::size_t i = 0; i + 2 <= count; i += 2)
    _mm_storeu_pd(out + i, _mm_div_pd(_mm_sub_pd(_mm_loadu_pd(in + i), lower), range));
}
__attribute__((noinline, target("avx2"))) void InvlerpAvx2(double const* in, double* out, std::size_t count) {
  __m256d const lower = _mm256_set1_pd(kLower), range = _mm256_set1_pd(kUpper - kLower);
  for (std::size_t i = 0; i + 4 <= count; i += 4)
    _mm256_storeu_pd(out + i, _mm256_div_pd(_mm256_sub_pd(_mm256_loadu_pd(in + i), lower), range));
}
__attribute__((noinline, target("avx512f"))) void InvlerpAvx512(double const* in, double* out,
                                                                std::size_t count) {
  __m512d const lower = _mm512_set1_pd(kLower), range = _mm512_set1_pd(kUpper - kLower);
  for (std::size_t i = 0; i + 8 <= count; i += 8)
    _mm512_storeu_pd(out + i, _mm512_div_pd(_mm512_sub_pd(_mm512_loadu_pd(in + i), lower), range));
}
__attribute__((noinline)) void ClampSse2(double const* in, double* out, std::size_t count) {
  __m128d const bound = _mm_set1_pd(kLower);
  for (std::size_t i = 0; i + 2 <= count; i += 2)
    _mm_storeu_pd(out + i, _mm_max_pd(_mm_loadu_pd(in + i), bound));
}
__attribute__((noinline, target("avx2"))) void ClampAvx2(double const* in, double* out, std::size_t count) {
  __m256d const bound = _mm256_set1_pd(kLower);
  for (std::size_t i = 0; i + 4 <= count; i += 4)
    _mm256_storeu_pd(out + i, _mm256_max_pd(_mm256_loadu_pd(in + i), bound));
}
__attribute__((noinline, target("avx512f"))) void ClampAvx512(double const* in, double* out,
                                                              std::size_t count) {
  __m512d const bound = _mm512_set1_pd(kLower);
  for (std::size_t i = 0; i + 8 <= count; i += 8)
    _mm512_storeu_pd(out + i, _mm512_maskz_max_pd(0xFF, _mm512_loadu_pd(in + i), bound));
}

using NumberLoop = void (*)(double const*, double*, std::size_t);

void RunByHand(benchmark::State& state, NumberLoop const (&loops)[3], double (*expected)(double)) {
  LevelScope const level(state);
  if (!level) return;
  auto const input = Numbers(state.range(1), 0, 20);
  std::vector<double> output(input.size());
  Time(
      state, state.range(1), 16, [&] { loops[state.range(0)](input.data(), output.data(), input.size()); },
      [&](std::size_t row) { return output[row] == expected(input[row]); });
}

void InvlerpByHand(benchmark::State& state) {
  RunByHand(state, {InvlerpSse2, InvlerpAvx2, InvlerpAvx512},
            [](double x) { return (x - kLower) / (kUpper - kLower); });
}
BENCHMARK(InvlerpByHand)->Apply(Levels);

void ClampMinByHand(benchmark::State& state) {
  RunByHand(state, {ClampSse2, ClampAvx2, ClampAvx512}, [](double x) { return x > kLower ? x : kLower; });
}
BENCHMARK(ClampMinByHand)->Apply(Levels);
#endif

void CopyOfTheSameBytes(benchmark::State& state) {
  auto const input = Numbers(state.range(1), 0, 20);
  std::vector<double> output(input.size());
  Time(
      state, state.range(1), 16, [&] { std::memcpy(output.data(), input.data(), input.size() * 8); },
      [&](std::size_t row) { return output[row] == input[row]; });
}
BENCHMARK(CopyOfTheSameBytes)->Args({2, kInCache})->Args({2, kOutOfCache});

// ---- Logarithm and exponential against the standard library's.

bool IsNear(double got, double expected) {
  return std::fabs(got - expected) <= std::fabs(expected) * 0x1p-51;
}

void LnSpecial(benchmark::State& state) {
  MapFunctor<IUnarySpecialFunctor<double, double>> const functor(TransformNames::LN_SPECIAL,
                                                                 StoreTypeInfo::Real64);
  RunSpecial<double>(state, functor, Numbers(state.range(1), 2.0, 1e6),
                     [](double x, double ln) { return IsNear(ln, std::log(x)); });
}
BENCHMARK(LnSpecial)->Apply(Levels);

void LnSpecialOfIntegers(benchmark::State& state) {
  MapFunctor<IUnarySpecialFunctor<int64, double>> const functor(TransformNames::LN_SPECIAL,
                                                                StoreTypeInfo::Int64);
  auto const numbers = Numbers(state.range(1), 2.0, 1e15);
  RunSpecial<int64>(state, functor, std::vector<int64>(numbers.begin(), numbers.end()),
                    [](int64 x, double ln) { return IsNear(ln, std::log(static_cast<double>(x))); });
}
BENCHMARK(LnSpecialOfIntegers)->Apply(Levels);

void ExpSpecial(benchmark::State& state) {
  MapFunctor<IUnarySpecialFunctor<double, double>> const functor(TransformNames::EXP_SPECIAL,
                                                                 StoreTypeInfo::Real64);
  RunSpecial<double>(state, functor, Numbers(state.range(1), -20.0, 20.0),
                     [](double x, double exp) { return IsNear(exp, std::exp(x)); });
}
BENCHMARK(ExpSpecial)->Apply(Levels);

void StdLogLoop(benchmark::State& state) {
  auto const input = Numbers(state.range(1), 2.0, 1e6);
  std::vector<double> output(input.size());
  Time(
      state, state.range(1), 16,
      [&] {
        for (std::size_t row = 0; row < input.size(); ++row) output[row] = std::log(input[row]);
      },
      [&](std::size_t row) { return output[row] > 0; });
}
BENCHMARK(StdLogLoop)->Args({0, kInCache})->Args({0, kOutOfCache});

void StdExpLoop(benchmark::State& state) {
  auto const input = Numbers(state.range(1), -20.0, 20.0);
  std::vector<double> output(input.size());
  Time(
      state, state.range(1), 16,
      [&] {
        for (std::size_t row = 0; row < input.size(); ++row) output[row] = std::exp(input[row]);
      },
      [&](std::size_t row) { return output[row] > 0; });
}
BENCHMARK(StdExpLoop)->Args({0, kInCache})->Args({0, kOutOfCache});

// ---- Numbers and dates.

void Round(benchmark::State& state) {
  MapFunctor<IUnaryFunctor<double, int64>> const functor(TransformNames::ROUND, StoreTypeInfo::Real64);
  RunPlain<double, int64>(state, functor, Numbers(state.range(1), -1e6, 1e6),
                          [](double x) { return static_cast<int64>(std::llround(x)); });
}
BENCHMARK(Round)->Apply(Levels);

double PlainNiceNumber(double x) {
  double const scale = std::pow(10.0, std::floor(std::log10(x)));
  double const f = x / scale;
  return (f < 1.5 ? 1 : f < 3.0 ? 2 : f < 7.0 ? 5 : 10) * scale;
}

void NiceNumRound(benchmark::State& state) {
  MapFunctor<IUnaryFunctor<double, double>> const functor(TransformNames::NICE_NUM_ROUND,
                                                          StoreTypeInfo::Real64);
  RunPlain<double, double>(state, functor, Numbers(state.range(1), 1, 1e6), PlainNiceNumber);
}
BENCHMARK(NiceNumRound)->Apply(Levels);

std::vector<OrtDateTime> Dates(std::int64_t rows) {
  std::mt19937_64 random(7);
  std::uint64_t const first = OrtDateTime(1900, 1, 1).GetValue();
  std::uint64_t const span = OrtDateTime(2100, 1, 1).GetValue() - first;
  std::vector<OrtDateTime> made(static_cast<std::size_t>(rows));
  for (OrtDateTime& date : made) date = OrtDateTime::FromValue(first + random() % span);
  return made;
}

void GetMonth(benchmark::State& state) {
  MapFunctor<IUnaryFunctor<OrtDateTime, int>> const functor(TransformNames::GET_MONTH,
                                                            StoreTypeInfo::DateTime);
  RunPlain<OrtDateTime, int>(state, functor, Dates(state.range(1)),
                             [](OrtDateTime date) { return date.GetOrtDateTimeParts().GetMonth(); });
}
BENCHMARK(GetMonth)->Apply(Levels);

void GetYear(benchmark::State& state) {
  MapFunctor<IUnaryFunctor<OrtDateTime, int>> const functor(TransformNames::GET_YEAR,
                                                            StoreTypeInfo::DateTime);
  RunPlain<OrtDateTime, int>(state, functor, Dates(state.range(1)),
                             [](OrtDateTime date) { return date.GetOrtDateTimeParts().GetYear(); });
}
BENCHMARK(GetYear)->Apply(Levels);

void ToReal64(benchmark::State& state) {
  MapFunctor<IUnaryFunctor<OrtDateTime, double>> const functor(TransformNames::TO_REAL64,
                                                               StoreTypeInfo::DateTime);
  RunPlain<OrtDateTime, double>(state, functor, Dates(state.range(1)),
                                [](OrtDateTime date) { return date.ToDouble(); });
}
BENCHMARK(ToReal64)->Apply(Levels);

void ToReal64Special(benchmark::State& state) {
  MapFunctor<IUnarySpecialFunctor<OrtDateTime, double>> const functor(TransformNames::TO_REAL64,
                                                                      StoreTypeInfo::DateTime);
  RunSpecial<OrtDateTime>(state, functor, Dates(state.range(1)),
                          [](OrtDateTime date, double number) { return number == date.ToDouble(); });
}
BENCHMARK(ToReal64Special)->Apply(Levels);

// ---- Colours, look-ups, projection.

void ColorInterpolate(benchmark::State& state) {
  auto palette = std::make_unique<std::vector<int>>();
  std::mt19937 random(7);
  for (int i = 0; i < 256; ++i) palette->push_back(static_cast<int>(random()));
  std::vector<int> const colors = *palette;
  MapFunctor<IUnaryFunctor<double, OrtColor>> const functor(
      TransformNames::CINTERP, StoreTypeInfo::Real64,
      {factory::MakeArray<int>(StoreTypeInfo::Int32, std::move(palette))});
  RunPlain<double, OrtColor>(state, functor, Numbers(state.range(1), -0.01, 1.01), [&](double x) {
    auto const position = static_cast<float>(255 * x);
    if (position < 0) return OrtColor(colors.front());
    if (position >= 255) return OrtColor(colors.back());
    auto const place = static_cast<std::size_t>(position);
    float const fraction = position - static_cast<float>(place);
    OrtColor const from(colors[place]), to(colors[place + 1]);
    auto const blend = [&](int a, int b) {
      return static_cast<int>(static_cast<float>(b - a) * fraction) + a;
    };
    OrtColor blended;
    blended.SetA(blend(from.GetA(), to.GetA()));
    blended.SetR(blend(from.GetR(), to.GetR()));
    blended.SetG(blend(from.GetG(), to.GetG()));
    blended.SetB(blend(from.GetB(), to.GetB()));
    return blended;
  });
}
BENCHMARK(ColorInterpolate)->Apply(Levels);

void LookupOf100000Keys(benchmark::State& state) {
  constexpr std::uint64_t keys = 100'000;
  auto entries = std::make_unique<std::unordered_map<uint64, uint64>>();
  for (std::uint64_t key = 0; key < keys; ++key)
    entries->emplace(key * 977, std::bit_cast<uint64>(static_cast<double>(key)));
  MapFunctor<IUnarySpecialFunctor<int64, double>> const functor(
      TransformNames::LOOKUP_REAL64_SPECIAL, StoreTypeInfo::Int64,
      {factory::MakeKeySet<uint64, uint64>(StoreTypeInfo::Int64, StoreTypeInfo::Real64, StoreTypeInfo::Real64,
                                           std::move(entries), nullptr)});
  std::mt19937_64 random(7);
  std::vector<int64> input(static_cast<std::size_t>(state.range(1)));
  for (int64& key : input) key = static_cast<int64>(random() % keys * 977);
  RunSpecial<int64>(state, functor, input,
                    [](int64 key, double payload) { return payload == static_cast<double>(key / 977); });
}
BENCHMARK(LookupOf100000Keys)->Args({2, 1'000'000});

struct Points {
  explicit Points(std::int64_t count)
      : longitudes(Numbers(count, -180.0, 180.0)),
        latitudes(Numbers(count, -85.0, 85.0)),
        x(longitudes.size()),
        y(longitudes.size()) {}
  std::vector<double> longitudes, latitudes, x, y;
};

void MercatorForward(benchmark::State& state) {
  Points points(state.range(1));
  Time(
      state, state.range(1), 32,
      [&] {
        for (std::size_t row = 0; row < points.x.size(); ++row) {
          points.x[row] = MercatorProjections::GetX(points.longitudes[row]);
          points.y[row] = MercatorProjections::GetY(points.latitudes[row], 0.0);
        }
      },
      [&](std::size_t row) {
        double const phi = points.latitudes[row] * M_PI / 180;
        return std::fabs(points.y[row] - std::asinh(std::tan(phi)) * 6378137.0) < 1e-7 &&
               std::fabs(points.x[row] - points.longitudes[row] / 180 * M_PI * 6378137.0) < 1e-7;
      });
}
BENCHMARK(MercatorForward)->Args({2, kInCache})->Args({2, 1'000'000});

// What the tangent and the logarithm of the plain formula take.
void PlainMercatorForward(benchmark::State& state) {
  Points points(state.range(1));
  Time(
      state, state.range(1), 32,
      [&] {
        for (std::size_t row = 0; row < points.x.size(); ++row) {
          points.x[row] = points.longitudes[row] * M_PI / 180 * 6378137.0;
          points.y[row] = std::log(std::tan(M_PI / 4 + points.latitudes[row] * M_PI / 180 / 2)) * 6378137.0;
        }
      },
      [](std::size_t) { return true; });
}
BENCHMARK(PlainMercatorForward)->Args({2, kInCache})->Args({2, 1'000'000});

}  // namespace
