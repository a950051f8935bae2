#pragma once

#include <span>
#include <string>
#include <string_view>

namespace ostrel::charts {

struct Operand;
class CallCompiler;

/// A function of the expression language.
struct LanguageFunction {
  char const* name;
  int least;  ///< values that it takes
  int most;
  Operand (*compile)(CallCompiler& call);
};

// One table for each kind of function.
std::span<LanguageFunction const> MathFunctions();
std::span<LanguageFunction const> TestFunctions();
std::span<LanguageFunction const> TextFunctions();
std::span<LanguageFunction const> DateFunctions();

/// Null when there is none of this name.
LanguageFunction const* FindLanguageFunction(std::string_view name);
/// The name that was probably meant; empty when none is near.
std::string NearestLanguageFunction(std::string_view name);

inline constexpr int kAnyCount = 1'000;

}  // namespace ostrel::charts
