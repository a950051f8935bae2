#pragma once

#include <cstddef>

#include "ostrelrtcore/StoreValue.h"

// Checks of the values that a host hands to a factory or to a multinary functor.
namespace OstrelTransforms {

using Value = std::shared_ptr<ort::core::StoreValue>;

namespace detail {

// Throws 55 unless as many parameters were given as the operation has.
void RequireParameterCount(std::size_t given, std::size_t wanted);
// Throws 219 unless as many inputs were given as the function takes.
void RequireInputCount(std::size_t given, std::size_t wanted);
// Throws 55 for a null pointer.
void RequireValue(Value const& value);

}  // namespace detail
}  // namespace OstrelTransforms
