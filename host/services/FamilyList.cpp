#include "services/FamilyList.h"

namespace ostrel::services::FamilyList {

namespace {

constexpr std::string_view kSans[] = {"DejaVu Sans", "Noto Sans", "Liberation Sans"};
constexpr std::string_view kSerif[] = {"DejaVu Serif", "Noto Serif", "Liberation Serif"};
constexpr std::string_view kMonospace[] = {"DejaVu Sans Mono", "Noto Sans Mono", "Liberation Mono"};

struct Generic {
  std::string_view name;
  std::span<std::string_view const> families;
};

constexpr Generic kGenerics[] = {
    {"sans-serif", kSans},    {"serif", kSerif},    {"monospace", kMonospace},   {"system-ui", kSans},
    {"ui-sans-serif", kSans}, {"ui-serif", kSerif}, {"ui-monospace", kMonospace}};

// The fonts of some scripts have the punctuation of Han texts, too, in forms of their own: they come behind
// the Han fonts, and those behind the symbols. DejaVu Sans has Latin, Greek, Cyrillic, Armenian, Hebrew,
// Arabic, Lao and Georgian.
constexpr std::string_view kFallbacks[] = {"DejaVu Sans",          "Noto Sans",
                                           "Noto Sans Hebrew",     "Noto Sans Arabic",
                                           "Noto Sans Devanagari", "Noto Sans Bengali",
                                           "Noto Sans Gurmukhi",   "Noto Sans Gujarati",
                                           "Noto Sans Oriya",      "Noto Sans Tamil",
                                           "Noto Sans Telugu",     "Noto Sans Kannada",
                                           "Noto Sans Malayalam",  "Noto Sans Sinhala",
                                           "Noto Sans Thai",       "Noto Sans Lao",
                                           "Noto Serif Tibetan",   "Noto Sans Myanmar",
                                           "Noto Sans Khmer",      "Noto Sans Ethiopic",
                                           "Noto Sans Cherokee",   "Noto Sans Canadian Aboriginal",
                                           "Noto Sans Symbols",    "Noto Sans Symbols2",
                                           "Noto Sans Math",       "Droid Sans Fallback",
                                           "Noto Sans CJK JP",     "Noto Sans Mongolian",
                                           "Noto Sans Syriac",     "Noto Sans Thaana",
                                           "Noto Sans NKo",        "Noto Sans Tifinagh",
                                           "Noto Sans Javanese",   "Noto Sans Meetei Mayek",
                                           "Noto Sans Ol Chiki",   "Noto Sans Yi",
                                           "Noto Emoji",           "Noto Color Emoji"};

constexpr std::string_view kBlanks = " \t\r\n\f";

std::string_view Trim(std::string_view text) {
  auto const first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool Contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

}  // namespace

std::vector<std::string> Split(std::string_view list) {
  std::vector<std::string> names;
  char quote = 0;
  std::size_t start = 0;
  for (std::size_t at = 0; at <= list.size(); ++at) {
    char const c = at < list.size() ? list[at] : ',';
    if (quote == 0 && (c == '"' || c == '\'')) {
      quote = c;
    } else if (c == quote && quote != 0) {
      quote = 0;
    } else if ((c == ',' && quote == 0) || at == list.size()) {
      auto name = Trim(list.substr(start, at - start));
      if (name.size() >= 2 && (name.front() == '"' || name.front() == '\'') && name.back() == name.front()) {
        name = Trim(name.substr(1, name.size() - 2));
      }
      if (!name.empty()) names.emplace_back(name);
      start = at + 1;
    }
  }
  return names;
}

std::string ToKey(std::string_view name) {
  std::string key(name);
  for (char& c : key) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return key;
}

std::span<std::string_view const> GetGeneric(std::string_view name) {
  std::string const key = ToKey(name);
  for (Generic const& generic : kGenerics) {
    if (generic.name == key) return generic.families;
  }
  return {};
}

std::string_view GetKind(std::string_view family) {
  std::string const key = ToKey(family);
  if (Contains(key, "mono")) return "monospace";
  return Contains(key, "serif") && !Contains(key, "sans") ? "serif" : "sans-serif";
}

std::span<std::string_view const> GetFallbacks() { return kFallbacks; }

}  // namespace ostrel::services::FamilyList
