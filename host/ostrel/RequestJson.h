#pragma once

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

namespace ostrel::program {

using Json = nlohmann::json;

/// What is wrong with a request, and where in it: "$.inputs[0].Array.values[3]: ...".
class InvalidRequest : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A member or element on the way from a request's root to what is being read. Lives on the stack: the path
/// is put together only when there is something to say of it.
class JsonPlace {
 public:
  JsonPlace() = default;
  JsonPlace(JsonPlace const& parent, std::string_view member) : parent_(&parent), member_(member) {}
  JsonPlace(JsonPlace const& parent, std::size_t index) : parent_(&parent), index_(index) {}

  std::string GetPath() const;
  [[noreturn]] void Fail(std::string const& cause) const;

 private:
  JsonPlace const* parent_ = nullptr;
  std::string_view member_;
  std::size_t index_ = 0;
};

/// Reads one line of JSON. Throws InvalidRequest for text that is malformed, of ill-formed UTF-8, deeper than
/// 200 levels, or that has a property twice.
Json ParseRequest(std::string_view line);

/// A short form of a JSON value for messages: `"text"`, `12`, `an array`.
std::string DescribeJson(Json const& json);

}  // namespace ostrel::program
