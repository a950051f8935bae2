#include "charts/document/JsonObjectReader.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "ostrelrtcore/NearestName.h"

namespace ostrel::charts {

JsonObjectReader& JsonObjectReader::On(char const* name, Handler handler) {
  properties_.push_back({name, std::move(handler)});
  return *this;
}

JsonObjectReader& JsonObjectReader::Number(char const* name, std::optional<double>& target,
                                           NumberRange const& range) {
  return On(name, [&target, range](JsonValue const& value) { target = value.ReadNumber(range); });
}

JsonObjectReader& JsonObjectReader::Bool(char const* name, std::optional<bool>& target) {
  return On(name, [&target](JsonValue const& value) { target = value.ReadBool(); });
}

JsonObjectReader& JsonObjectReader::Text(char const* name, std::string& target) {
  return On(name, [&target](JsonValue const& value) { target = value.ReadText(); });
}

JsonObjectReader& JsonObjectReader::Title(char const* name, TitleSpec& target) {
  return On(name, [&target](JsonValue const& value) { target = value.ReadTitle(); });
}

JsonObjectReader& JsonObjectReader::Literals(char const* name, std::vector<Literal>& target) {
  return On(name, [&target](JsonValue const& value) { target = value.ReadLiterals(); });
}

JsonObjectReader& JsonObjectReader::Refuse(char const* name, char const* cause) {
  properties_.push_back({name, [cause](JsonValue const& value) { value.Fail(cause); }, true});
  return *this;
}

JsonObjectReader& JsonObjectReader::RefuseUnlessOff(char const* name, char const* cause) {
  auto const refuse = [cause](JsonValue const& value) {
    if (!value.IsOff()) value.Fail(cause);
  };
  properties_.push_back({name, refuse, true});
  return *this;
}

void JsonObjectReader::Read(std::vector<std::pair<std::string const*, JsonValue>> const& members) const {
  for (auto const& [name, value] : members) {
    auto const isMeant = [&key = *name](Property const& property) { return property.name == key; };
    auto const property = std::find_if(properties_.begin(), properties_.end(), isMeant);
    if (property == properties_.end()) FailUnknown(*name, value);
    property->handler(value);
  }
}

void JsonObjectReader::FailUnknown(std::string const& name, JsonValue const& value) const {
  std::vector<std::string> names = listed_;
  for (auto const& property : properties_) {
    if (!property.isRefused && listed_.empty()) names.push_back(property.name);
  }
  auto const nearest = ort::core::NearestName(name, names);
  if (!nearest.empty()) value.Fail(fmt::format("unknown property; did you mean \"{}\"?", nearest));
  value.Fail(fmt::format("is not supported; use one of {}", fmt::join(names, ", ")));
}

}  // namespace ostrel::charts
