#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Names of font families, in UTF-8.
namespace ostrel::services::FamilyList {

/// The names of a CSS list without quotes and outer blanks; empty ones are left out.
std::vector<std::string> Split(std::string_view list);
/// The form in which names are compared: ASCII letters in lower case.
std::string ToKey(std::string_view name);
/// The families that stand for a generic name such as "serif", by preference; none for another name.
std::span<std::string_view const> GetGeneric(std::string_view name);
/// The generic name that ends a CSS list for a family: "monospace", "serif" or "sans-serif".
std::string_view GetKind(std::string_view family);
/// The families in which is set what a text's own font does not have, in order; the first is the default
/// font.
std::span<std::string_view const> GetFallbacks();

}  // namespace ostrel::services::FamilyList
