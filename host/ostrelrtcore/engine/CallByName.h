#pragma once

#include <concepts>
#include <initializer_list>
#include <ranges>
#include <string_view>

#include "ostrelrtcore/SpanColumns.h"
#include "ostrelrtcore/engine/Engine.h"

namespace ort::core {

/// What CallByName takes: a value, or what makes one. Numbers become Int32, Int64, Real32 and Real64 by their
/// C++ type, texts (UTF-8) String. Contiguous ranges of numbers, dates or colours become columns over the
/// range's own memory, see factory::MakeSpanColumn: the range outlives the result.
class CallArgument {
 public:
  using Value = factory::Value;

  CallArgument(Value value) : value_(std::move(value)) {}
  CallArgument(std::same_as<bool> auto value) : value_(factory::MakeBool(value)) {}
  CallArgument(int value) : value_(factory::MakeInt32(value)) {}
  CallArgument(int64 value) : value_(factory::MakeInt64(value)) {}
  CallArgument(float value) : value_(factory::MakeReal32(value)) {}
  CallArgument(double value) : value_(factory::MakeReal64(value)) {}
  CallArgument(OrtDateTime value) : value_(factory::MakeDateTime(value)) {}
  CallArgument(OrtColor value) : value_(factory::MakeColor(value)) {}
  CallArgument(std::convertible_to<std::string_view> auto const& utf8)
      : value_(factory::MakeString(OStringCore::fromUtf8(utf8))) {}

  /// Not for a temporary that owns its elements.
  template <class Range>
  requires(std::ranges::contiguous_range<Range>&& std::ranges::borrowed_range<Range> &&
           !std::convertible_to<Range, std::string_view>) CallArgument(Range&& range)
      : value_(factory::MakeSpanColumn<std::ranges::range_value_t<Range>>(std::span(range))) {}

  Value const& GetValue() const noexcept { return value_; }

 private:
  Value value_;
};

/// Applies a function of a registry. A unary function is mapped, a binary one zipped over two inputs or
/// scanned over one, from the zero of its accumulator on, and a multinary one called; for other modes there
/// is Engine. Inputs and parameters are evaluated as by Engine::Call, which also tells what is thrown.
///
///   std::vector<double> const heights = {1.5, 12, 7};
///   auto const result = CallByName(registry, "clampMax", {heights}, {10.0});
///   for (double const height : result->AsTypedArray<double>().GetValues()) ...
ORTCORE_API factory::Value CallByName(FunctionRegistry const& registry, std::string_view function,
                                      std::initializer_list<CallArgument> inputs,
                                      std::initializer_list<CallArgument> parameters = {});

}  // namespace ort::core
