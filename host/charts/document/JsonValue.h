#pragma once

#include <limits>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "charts/document/ChartDocument.h"
#include "charts/document/JsonTree.h"

namespace ostrel::charts {

/// The numbers that a property takes.
struct NumberRange {
  double minimum = std::numeric_limits<double>::lowest();
  double maximum = std::numeric_limits<double>::max();
  bool isAboveMinimum = false;  ///< the minimum itself is refused
};

inline constexpr NumberRange kAnyNumber{};
inline constexpr NumberRange kNotNegative{.minimum = 0};
inline constexpr NumberRange kFraction{.minimum = 0, .maximum = 1};
inline constexpr NumberRange kPositive{.minimum = 0, .isAboveMinimum = true};

/// A word of the grammar and what it stands for.
template <class T>
struct NamedValue {
  char const* name;
  T value;
};

/// A value of a document and its place there. It must not outlive the tree. The Read functions throw
/// DocumentError with the place when the value is of another kind, too long or out of range.
class JsonValue {
 public:
  JsonValue(JsonTree const& tree, std::string const& fileName)
      : JsonValue(tree, fileName, tree.GetRoot(), "$") {}

  JsonTree::Json const& Get() const { return *value_; }
  std::string const& GetPath() const { return path_; }
  std::string const& GetFileName() const { return *fileName_; }
  bool IsNull() const { return value_->is_null(); }
  bool IsOff() const { return IsNull() || *value_ == false; }
  bool IsObject() const { return value_->is_object(); }
  bool Has(char const* name) const { return IsObject() && value_->contains(name); }

  double ReadNumber(NumberRange const& range = kAnyNumber) const;
  bool ReadBool() const;
  std::string ReadText() const;
  /// A text, or an array of texts that become lines.
  std::string ReadLines() const;
  /// A text, lines, or null.
  TitleSpec ReadTitle() const;
  /// A number, a text, true or false, or an object of a date's parts.
  Literal ReadLiteral() const;
  std::vector<Literal> ReadLiterals() const;
  /// This object with the members of another one that it lacks; its path stays.
  JsonValue WithDefaults(JsonValue const& defaults) const;
  /// At most 10,000 elements.
  std::vector<JsonValue> ReadArray() const;
  /// The members, at most 10,000, in the order of the document.
  std::vector<std::pair<std::string const*, JsonValue>> ReadObject() const;

  template <class T>
  T ReadOneOf(std::span<NamedValue<T> const> words) const {
    auto const* text = value_->get_ptr<std::string const*>();
    std::string names;
    for (auto const& word : words) {
      if (text != nullptr && *text == word.name) return word.value;
      names += (names.empty() ? "" : ", ") + std::string(word.name);
    }
    Fail(Describe() + " is not supported; use one of " + names);
  }

  /// Throws DocumentError: "cars.vl.json: $.mark.size: cause".
  [[noreturn]] void Fail(std::string const& cause) const;
  /// The same for a place below this one: "scale.domain".
  [[noreturn]] void FailAt(std::string_view below, std::string const& cause) const;
  /// The value as messages show it: "\"arc\"", "12", "an array".
  std::string Describe() const;

 private:
  JsonValue(JsonTree const& tree, std::string const& fileName, JsonTree::Json const& value, std::string path,
            std::shared_ptr<JsonTree::Json const> owned = nullptr)
      : tree_(&tree),
        fileName_(&fileName),
        value_(&value),
        path_(std::move(path)),
        owned_(std::move(owned)) {}

  JsonTree const* tree_;
  std::string const* fileName_;
  JsonTree::Json const* value_;
  std::string path_;
  std::shared_ptr<JsonTree::Json const> owned_;  // what value_ is part of where that is not the tree
};

}  // namespace ostrel::charts
