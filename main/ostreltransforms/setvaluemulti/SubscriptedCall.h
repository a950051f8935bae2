#pragma once

#include <stdexcept>
#include <tuple>
#include <vector>

#include "ostreltransforms/MultinaryCall.h"

namespace OstrelTransforms {
namespace detail {

template <class T>
T FetchAt(std::vector<Value> const& inputs, std::size_t position) {
  if (position >= inputs.size()) throw std::out_of_range("invalid vector<T> subscript");
  if constexpr (std::is_same_v<T, Value>) {
    RequireValue(inputs[position]);
    return inputs[position];
  } else {
    return ort::core::FetchStoreValue<T>(inputs[position]);
  }
}

template <class Out, class... In, std::size_t... I>
Out CallSubscripted(Out (*fn)(In...), std::vector<Value> const& inputs, std::index_sequence<I...>) {
  // Braces read the inputs in their order.
  std::tuple<std::remove_cvref_t<In>...> const arguments{FetchAt<std::remove_cvref_t<In>>(inputs, I)...};
  return std::apply(fn, arguments);
}

}  // namespace detail

// A function of scalars and whole values that reads its inputs one by one and does not mind further ones; too
// few throw std::out_of_range "invalid vector<T> subscript".
template <auto fn>
auto Subscripted(std::vector<Value> const& inputs) {
  return detail::CallSubscripted(fn, inputs,
                                 std::make_index_sequence<decltype(detail::SignatureOf(fn))::kCount>());
}

}  // namespace OstrelTransforms
