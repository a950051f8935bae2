#include "ostrel/FunctionErrors.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>

#include "ostrel/CallProtocol.h"

namespace ostrel::program {
namespace {

// Codes in the order of their numbers, exceptions without a code behind them.
using FoundErrors = std::map<std::pair<int, std::string>, std::vector<std::string>>;

class Trial {
 public:
  Trial(CallSession& session, FoundErrors& found) : session_(session), found_(found) {}

  void Run(Json const& example, std::string const& form) {
    Json request = example;
    if (form == "multinary") {
      request["inputs"] = Json::array();
      Try(request, "no inputs");
      request["inputs"] = example["inputs"];
      request["inputs"].push_back(MakeOther(Json::object()));
      Try(request, "an input too many");
    }
    for (std::size_t i = 0; i < example["inputs"].size(); ++i) {
      request["inputs"] = example["inputs"];
      request["inputs"][i] = MakeOther(example["inputs"][i]);
      Try(request, "an input of another kind");
    }
    TryLengths(example, form == "binary");
    TryParameters(example);
  }

 private:
  void Try(Json const& request, std::string const& what, std::optional<int> only = {}) {
    auto const response = Json::parse(session_.Answer(request.dump()));
    if (auto const error = response.find("error"); error != response.end()) {
      int const code = (*error)["code"].get<int>();
      if (code == only.value_or(code)) Note({code, std::to_string(code)}, what);
    } else if (auto const other = response.find("exception"); other != response.end()) {
      Note({std::numeric_limits<int>::max(), (*other)["type"].get<std::string>()}, what);
    }
  }

  void Note(std::pair<int, std::string> const& error, std::string const& what) {
    auto& causes = found_[error];
    if (std::find(causes.begin(), causes.end(), what) == causes.end()) causes.push_back(what);
  }

  static Json MakeOther(Json const& value) {
    return value.contains("KeyMap") ? Json{{"Tuple", Json::array()}} : Json{{"KeyMap", Json::object()}};
  }

  // A scalar as a column of one row.
  static void MakeColumn(Json& value) {
    if (value.contains("Array")) return;
    std::string const type = value.begin().key();
    Json const payload = type == "Tuple" ? value : value[type];
    value = {{"Array", {{"type", type}, {"values", Json::array({payload})}}}};
  }

  // Each column in turn a row longer. Of a pair of scalars, or a column beside a scalar, both as columns.
  void TryLengths(Json example, bool isPair) {
    auto& inputs = example["inputs"];
    if (isPair && inputs.size() == 2) std::for_each(inputs.begin(), inputs.end(), MakeColumn);
    auto const isColumn = [](Json const& input) { return input.contains("Array"); };
    if (std::count_if(inputs.begin(), inputs.end(), isColumn) < 2) return;
    for (std::size_t i = 0; i < inputs.size(); ++i) {
      if (!isColumn(inputs[i])) continue;
      Json request = example;
      auto& values = request["inputs"][i]["Array"]["values"];
      auto const ordinary =
          std::find_if(values.begin(), values.end(), [](Json const& value) { return !value.is_null(); });
      if (ordinary == values.end()) continue;
      values.push_back(Json(*ordinary));
      Try(request, "columns of different lengths", ort::core::OrtError_LengthsDiffer);
    }
  }

  void TryParameters(Json const& example) {
    auto const parameters = example.find("parameters");
    if (parameters == example.end()) return;
    Json request = example;
    request.erase("parameters");
    Try(request, "no parameters");
    for (std::size_t i = 0; i < parameters->size(); ++i) {
      request["parameters"] = *parameters;
      request["parameters"][i] = MakeOther((*parameters)[i]);
      Try(request, "a parameter of another kind");
    }
  }

  CallSession& session_;
  FoundErrors& found_;
};

}  // namespace

std::vector<FunctionError> FindErrors(std::vector<ListedFunction const*> const& registrations,
                                      CallSession& session) {
  FoundErrors found;
  std::set<std::string> seen;
  for (auto const* function : registrations) {
    auto const& example = function->documentation.example;
    if (!example.empty() && seen.insert(example).second) {
      Trial(session, found).Run(Json::parse(example), function->form);
    }
  }
  std::vector<FunctionError> errors;
  for (auto& [error, causes] : found) errors.push_back({error.second, std::move(causes)});
  return errors;
}

}  // namespace ostrel::program
