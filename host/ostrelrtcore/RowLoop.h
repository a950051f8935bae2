#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "ostrelrtcore/Export.h"

namespace ort::core {

/// The vector instructions that row loops are compiled for, each a superset of the one before.
enum class VectorLevel { Baseline, Avx2, Avx512 };

/// The level in force: the processor's best one, or a lower one asked for with LimitVectorLevel.
ORTCORE_API VectorLevel GetVectorLevel() noexcept;
/// Keeps row loops to a level at or below the given one, so that tests and benchmarks see every level.
ORTCORE_API void LimitVectorLevel(VectorLevel level) noexcept;

namespace detail {

// The loops run on a copy of `row` that no other memory can refer to: what it holds need not be read again
// after each row that is written.
template <class Row>
void RunRowsBaseline(std::size_t count, Row const& row) {
  Row const local = row;
  for (std::size_t i = 0; i < count; ++i) local(i);
}
template <class Row>
bool AnyRowBaseline(std::size_t count, Row const& row) {
  Row const local = row;
  std::uint64_t bits = 0;
  for (std::size_t i = 0; i < count; ++i) bits |= local(i);
  return bits != 0;
}

#if defined(__x86_64__)
#if defined(__clang__)
#define ORT_TARGET_AVX512 __attribute__((target("avx512f,avx512bw,avx512dq,avx512vl"), min_vector_width(512)))
#else
#define ORT_TARGET_AVX512 \
  __attribute__((target("avx512f,avx512bw,avx512dq,avx512vl,prefer-vector-width=512")))
#endif

template <class Row>
__attribute__((target("avx2"))) void RunRowsAvx2(std::size_t count, Row const& row) {
  Row const local = row;
  for (std::size_t i = 0; i < count; ++i) local(i);
}

template <class Row>
__attribute__((target("avx2"))) bool AnyRowAvx2(std::size_t count, Row const& row) {
  Row const local = row;
  std::uint64_t bits = 0;
  for (std::size_t i = 0; i < count; ++i) bits |= local(i);
  return bits != 0;
}

template <class Row>
ORT_TARGET_AVX512 bool AnyRowAvx512(std::size_t count, Row const& row) {
  Row const local = row;
  std::uint64_t bits = 0;
  for (std::size_t i = 0; i < count; ++i) bits |= local(i);
  return bits != 0;
}

template <class Row>
ORT_TARGET_AVX512 void RunRowsAvx512(std::size_t count, Row const& row) {
  Row const local = row;
  for (std::size_t i = 0; i < count; ++i) local(i);
}
#endif

}  // namespace detail

/// Calls row(i) for i = 0 ... count - 1 in order, compiled once for each vector level. The results have the
/// same bits at every level: multiplications and additions are never fused.
template <class Row>
void RunRows(std::size_t count, Row const& row) {
#if defined(__x86_64__)
  switch (GetVectorLevel()) {
    case VectorLevel::Avx512:
      return detail::RunRowsAvx512(count, row);
    case VectorLevel::Avx2:
      return detail::RunRowsAvx2(count, row);
    case VectorLevel::Baseline:
      break;
  }
#endif
  detail::RunRowsBaseline(count, row);
}

/// Whether row(i), which gives a std::uint64_t, is other than 0 for some i = 0 ... count - 1. All rows are
/// asked, at every vector level.
template <class Row>
bool AnyRow(std::size_t count, Row const& row) {
#if defined(__x86_64__)
  switch (GetVectorLevel()) {
    case VectorLevel::Avx512:
      return detail::AnyRowAvx512(count, row);
    case VectorLevel::Avx2:
      return detail::AnyRowAvx2(count, row);
    case VectorLevel::Baseline:
      break;
  }
#endif
  return detail::AnyRowBaseline(count, row);
}

/// An operation as a row loop holds it. Where Apply changes nothing it is a copy, so that it too need not be
/// read again, else the functor's own, which carries its state from row to row.
template <class F, class... In>
struct RowOperation {
  static constexpr bool kIsCopied = std::is_trivially_copyable_v<F> && requires(F const& f, In... in) {
    f.Apply(in...);
  };
  std::conditional_t<kIsCopied, F const, F&> operation;
};

/// Whether a loop over these element types gains from vector instructions at all.
template <class... T>
inline constexpr bool kVectorizable = (std::is_trivially_copyable_v<T> && ...);

}  // namespace ort::core
