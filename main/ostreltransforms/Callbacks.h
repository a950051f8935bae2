#pragma once

#include <functional>
#include <memory>

#include "ostrelrtcore/StoreValue.h"
#include "ostrelsys/OStringCore.h"
#include "ostreltransforms/Export.h"

namespace OstrelTransforms {

// Services that only the host has. Callbacks are called from whichever thread runs a function, several at a
// time, so they must be safe for that. Setting them is not: it belongs to start-up, or to a test on one
// thread.

// Formats a number; what the members of the format tuple mean is the host's.
using NumberFormatter = std::function<OStringCore(double value, ort::core::IStoreTuple const& format)>;

// The width in pixels of a text without line ends, set in the font that the value describes to the host.
using TextWidthMeasurer =
    std::function<float(OStringCore const& text, std::shared_ptr<ort::core::StoreValue> const& font)>;

// Converts a style's font value into the form in which it is measured and drawn.
using ValueConverter = std::function<std::shared_ptr<ort::core::StoreValue>(
    std::shared_ptr<ort::core::StoreValue> const& value)>;

// Changes a text before it is taken apart into tokens, for example to mark places where it may break.
using StringTransformer = std::function<OStringCore(OStringCore const& text)>;

// Installs the four callbacks. They start empty, and any may be set to an empty one: a function that needs an
// empty callback throws std::bad_function_call. A call that is under way ends with the callback it began
// with. The host sets all four to empty ones before it unloads the library.
OSTREL_API void SetRuntimeFunctionCallbacks(NumberFormatter numberFormatter,
                                            TextWidthMeasurer textWidthMeasurer,
                                            ValueConverter valueConverter,
                                            StringTransformer stringTransformer);

// Keeps a text measurer and installs it again when the scope ends. A scope that keeps an empty one, because
// none was installed when it began or because it was moved from, leaves the installed measurer where it is.
class OSTREL_API TestCallbackScope {
 public:
  explicit TestCallbackScope(TextWidthMeasurer saved) noexcept;
  TestCallbackScope(TestCallbackScope&& other) noexcept;
  ~TestCallbackScope();

  TestCallbackScope(TestCallbackScope const&) = delete;
  TestCallbackScope& operator=(TestCallbackScope const&) = delete;
  TestCallbackScope& operator=(TestCallbackScope&&) = delete;

 private:
  TextWidthMeasurer saved_;
};

// Installs a text measurer for the life of the returned scope.
OSTREL_API TestCallbackScope SetMeasureTextWidthCallbackForTest(TextWidthMeasurer callback);

}  // namespace OstrelTransforms
