#pragma once

#include <algorithm>
#include <cstring>
#include <span>
#include <tuple>
#include <utility>

#include "ostrelrtcore/OrtUnarySpecialFunctor.h"
#include "ostreltransforms/map/ElementaryFunctions.h"
#include "ostreltransforms/map/IntegerConversion.h"

namespace OstrelTransforms {

// A special row, and a number at or below zero, gives a special row of kind 1; NaN stays NaN.
template <class In, class Out>
std::pair<Out, ort::core::SpecialKind> LnSpecial(In x, ort::core::SpecialKind kind) {
  if (kind != ort::core::SpecialKind::None || x <= 0) return {Out{0}, ort::core::SpecialKind::Missing};
  return {NaturalLogarithmByBranches(ToReal64(x)), ort::core::SpecialKind::None};
}

// A special row gives a special row of kind 1; overflow gives infinity.
template <class In, class Out>
std::pair<Out, ort::core::SpecialKind> ExpSpecial(In x, ort::core::SpecialKind kind) {
  if (kind != ort::core::SpecialKind::None) return {Out{0}, ort::core::SpecialKind::Missing};
  return {Exponential(x), ort::core::SpecialKind::None};
}

namespace detail {

// Rows of eight bytes and kinds of one in a common loop, and branches, would keep a compiler from vector
// instructions. So each block of rows, small enough for the first cache, gets its numbers as if all rows were
// ordinary, then its kinds, by what was computed and what came in, and at last zeros in its special rows.
template <class In, class Compute, class IsOutside>
void ApplyBlockwise(std::span<In const> input, std::span<ort::core::SpecialKind const> inputKinds,
                    std::span<double> output, std::span<ort::core::SpecialKind> outputKinds, Compute compute,
                    IsOutside isOutside) {
  using ort::core::RunRows;
  using ort::core::SpecialKind;
  constexpr std::size_t blockRows = 1024;
  for (std::size_t first = 0; first < input.size(); first += blockRows) {
    std::size_t const count = std::min(blockRows, input.size() - first);
    In const* const in = input.data() + first;
    double* const out = output.data() + first;
    SpecialKind const* const inKinds = inputKinds.data() + first;
    SpecialKind* const outKinds = outputKinds.data() + first;
    RunRows(
        count, [=](std::size_t i) __attribute__((always_inline)) { out[i] = compute(in[i]); });
    RunRows(
        count, [=](std::size_t i) __attribute__((always_inline)) {
          int const isSpecial = isOutside(out[i]) | (inKinds[i] != SpecialKind::None);
          outKinds[i] = static_cast<SpecialKind>(isSpecial);
        });
    if (std::memchr(outKinds, static_cast<int>(SpecialKind::Missing), count) == nullptr) continue;
    RunRows(
        count, [=](std::size_t i) __attribute__((always_inline)) {
          out[i] = std::bit_cast<double>(
              BitsIf(outKinds[i] == SpecialKind::None, std::bit_cast<std::uint64_t>(out[i])));
        });
  }
}

// Blocks of ordinary rows with positive, normal, finite numbers, the usual ones, need no care at all.
template <class In>
void LnBlockwise(std::span<In const> input, std::span<ort::core::SpecialKind const> inputKinds,
                 std::span<double> output, std::span<ort::core::SpecialKind> outputKinds) {
  using ort::core::SpecialKind;
  constexpr std::size_t blockRows = 1024;
  for (std::size_t first = 0; first < input.size(); first += blockRows) {
    std::size_t const count = std::min(blockRows, input.size() - first);
    In const* const in = input.data() + first;
    SpecialKind const* const kinds = inputKinds.data() + first;
    bool const isUnusual =
        ort::core::AnyRow(
            count, [in](std::size_t i)
                       __attribute__((always_inline)) { return BitsUnlessNormal(ToReal64(in[i])); }) ||
        ort::core::AnyRow(
            count, [kinds](std::size_t i)
                       __attribute__((always_inline)) { return static_cast<std::uint64_t>(kinds[i]); });
    if (isUnusual) {
      ApplyBlockwise(
          input.subspan(first, count), inputKinds.subspan(first, count), output.subspan(first, count),
          outputKinds.subspan(first, count),
          [](In x) __attribute__((always_inline)) { return NaturalLogarithm(ToReal64(x)); },
          [](double ln) __attribute__((always_inline)) {
            return static_cast<int>(ln == -std::numeric_limits<double>::infinity());
          });
      continue;
    }
    double* const out = output.data() + first;
    ort::core::RunRows(
        count, [ in, out ](std::size_t i)
                   __attribute__((always_inline)) { out[i] = LogarithmOfNormal(ToReal64(in[i]), 0.0); });
    std::fill_n(outputKinds.data() + first, count, SpecialKind::None);
  }
}

template <class In>
struct LnOperation {
  std::pair<double, ort::core::SpecialKind> Apply(In x, ort::core::SpecialKind kind) const {
    return LnSpecial<In, double>(x, kind);
  }
  void ApplyToArray(std::span<In const> input, std::span<ort::core::SpecialKind const> inputKinds,
                    std::span<double> output, std::span<ort::core::SpecialKind> outputKinds) const {
    if (ort::core::GetVectorLevel() == ort::core::VectorLevel::Baseline) {
      for (std::size_t row = 0; row < input.size(); ++row)
        std::tie(output[row], outputKinds[row]) = Apply(input[row], inputKinds[row]);
      return;
    }
    LnBlockwise<In>(input, inputKinds, output, outputKinds);
  }
};

struct ExpOperation {
  std::pair<double, ort::core::SpecialKind> Apply(double x, ort::core::SpecialKind kind) const {
    return ExpSpecial<double, double>(x, kind);
  }
  void ApplyToArray(std::span<double const> input, std::span<ort::core::SpecialKind const> inputKinds,
                    std::span<double> output, std::span<ort::core::SpecialKind> outputKinds) const {
    ApplyBlockwise(
        input, inputKinds, output, outputKinds,
        [](double x) __attribute__((always_inline)) { return Exponential(x); },
        [](double) __attribute__((always_inline)) { return 0; });
  }
};

}  // namespace detail
}  // namespace OstrelTransforms

// The functors of these element functions, with their own loops.
namespace ort::core {
template <>
struct OrtUnarySpecialFunctorGenerator<double, double, OstrelTransforms::LnSpecial<double, double>>
    : OstrelTransforms::detail::LnOperation<double> {};
template <>
struct OrtUnarySpecialFunctorGenerator<int64, double, OstrelTransforms::LnSpecial<int64, double>>
    : OstrelTransforms::detail::LnOperation<int64> {};
template <>
struct OrtUnarySpecialFunctorGenerator<double, double, OstrelTransforms::ExpSpecial<double, double>>
    : OstrelTransforms::detail::ExpOperation {};
}  // namespace ort::core
