#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "charts/document/JsonValue.h"

namespace ostrel::charts {

/// Reads an object by a table of its properties:
///
///     JsonObjectReader(value)
///         .Number("size", mark.size, kNotNegative)
///         .Refuse("tooltip", "tooltips are not supported; leave it out")
///         .Read();
///
/// Read takes the members in the order of the document. It throws DocumentError for the first that is
/// unknown, refused, or of a wrong kind.
class JsonObjectReader {
 public:
  using Handler = std::function<void(JsonValue const&)>;

  explicit JsonObjectReader(JsonValue const& object) : object_(object) {}

  JsonObjectReader& On(char const* name, Handler handler);
  JsonObjectReader& Number(char const* name, std::optional<double>& target,
                           NumberRange const& range = kAnyNumber);
  JsonObjectReader& Bool(char const* name, std::optional<bool>& target);
  JsonObjectReader& Text(char const* name, std::string& target);
  JsonObjectReader& Title(char const* name, TitleSpec& target);
  JsonObjectReader& Literals(char const* name, std::vector<Literal>& target);
  template <class Target, class T>
  JsonObjectReader& OneOf(char const* name, Target& target, std::span<NamedValue<T> const> words) {
    return On(name, [&target, words](JsonValue const& value) { target = value.ReadOneOf(words); });
  }
  /// Of all properties those that messages list beside an unknown one; all where nothing is said.
  JsonObjectReader& List(std::vector<std::string> names) {
    listed_ = std::move(names);
    return *this;
  }
  /// A property of the grammar that is not supported, and what to use instead.
  JsonObjectReader& Refuse(char const* name, char const* cause);
  /// The same, but null and false, which say that it is not wanted, are fine.
  JsonObjectReader& RefuseUnlessOff(char const* name, char const* cause);

  void Read() const { Read(object_.ReadObject()); }
  /// The same for members that were gathered otherwise.
  void Read(std::vector<std::pair<std::string const*, JsonValue>> const& members) const;

 private:
  struct Property {
    std::string name;
    Handler handler;
    bool isRefused = false;
  };

  [[noreturn]] void FailUnknown(std::string const& name, JsonValue const& value) const;

  JsonValue const& object_;
  std::vector<Property> properties_;
  std::vector<std::string> listed_;
};

}  // namespace ostrel::charts
