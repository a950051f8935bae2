#pragma once

#include <compare>
#include <cstdint>
#include <limits>

namespace ort::core {

/// A signed length of time in ticks of 100 microseconds. All arithmetic saturates at the ends of the
/// signed 64-bit range.
class OrtTimeSpan {
 public:
  static constexpr std::int64_t kTicksPerSecond = 10'000;
  static constexpr std::int64_t kTicksPerMinute = 60 * kTicksPerSecond;
  static constexpr std::int64_t kTicksPerHour = 60 * kTicksPerMinute;
  static constexpr std::int64_t kTicksPerDay = 24 * kTicksPerHour;

  constexpr OrtTimeSpan() noexcept = default;

  /// The sum of the parts; each may be negative and of any size. `fraction` is in ticks. Only the sum
  /// saturates: parts that cancel each other give the exact result.
  constexpr OrtTimeSpan(std::int64_t days, std::int64_t hours, std::int64_t minutes, std::int64_t seconds,
                        std::int64_t fraction = 0) noexcept
      : ticks_(Saturate(Wide{days} * kTicksPerDay + Wide{hours} * kTicksPerHour +
                        Wide{minutes} * kTicksPerMinute + Wide{seconds} * kTicksPerSecond + fraction)) {}

  static constexpr OrtTimeSpan FromTicks(std::int64_t ticks) noexcept {
    OrtTimeSpan span;
    span.ticks_ = ticks;
    return span;
  }

  constexpr std::int64_t GetTicks() const noexcept { return ticks_; }

  /// Whole units of the span, truncated toward zero: -25 hours are -1 whole day and -25 whole hours.
  constexpr std::int64_t GetWholeDays() const noexcept { return ticks_ / kTicksPerDay; }
  constexpr std::int64_t GetWholeHours() const noexcept { return ticks_ / kTicksPerHour; }
  constexpr std::int64_t GetWholeMinutes() const noexcept { return ticks_ / kTicksPerMinute; }
  constexpr std::int64_t GetWholeSeconds() const noexcept { return ticks_ / kTicksPerSecond; }

  constexpr OrtTimeSpan operator-() const noexcept { return FromTicks(Saturate(-Wide{ticks_})); }
  friend constexpr OrtTimeSpan operator+(OrtTimeSpan a, OrtTimeSpan b) noexcept {
    return FromTicks(Saturate(Wide{a.ticks_} + b.ticks_));
  }
  friend constexpr OrtTimeSpan operator-(OrtTimeSpan a, OrtTimeSpan b) noexcept {
    return FromTicks(Saturate(Wide{a.ticks_} - b.ticks_));
  }

  friend constexpr auto operator<=>(OrtTimeSpan, OrtTimeSpan) noexcept = default;

 private:
  __extension__ using Wide = __int128;

  static constexpr std::int64_t Saturate(Wide ticks) noexcept {
    using Limits = std::numeric_limits<std::int64_t>;
    if (ticks > Limits::max()) return Limits::max();
    if (ticks < Limits::min()) return Limits::min();
    return static_cast<std::int64_t>(ticks);
  }

  std::int64_t ticks_ = 0;
};

}  // namespace ort::core
