#include "ostrel/CallProtocol.h"

#include <fmt/format.h>

#include <array>
#include <functional>
#include <utility>

#include "ostrel/Runtime.h"
#include "ostrel/ValueJson.h"
#include "ostrelrtcore/NearestName.h"
#include "ostrelsys/OLogicException.h"
#include "ostreltransforms/OstrelTransforms.h"

namespace ostrel::program {
namespace {

using namespace ort::core;

constexpr std::array kModes = {EvaluationMode::Map,          EvaluationMode::Zip,  EvaluationMode::Scan,
                               EvaluationMode::ScanBackward, EvaluationMode::Fold, EvaluationMode::Call};

constexpr std::array<char const*, 8> kProperties = {"function", "mode",   "inputs",  "parameters",
                                                    "initial",  "groups", "measure", "id"};

template <class Names>
std::string SuggestName(std::string const& name, Names const& names) {
  std::vector<std::string> const candidates(names.begin(), names.end());
  std::string const nearest = NearestName(name, candidates);
  return nearest.empty() ? "" : "; did you mean '" + nearest + "'?";
}

void RequireKnownProperties(Json const& request, JsonPlace const& root) {
  for (auto const& [name, ignored] : request.items()) {
    if (std::find(kProperties.begin(), kProperties.end(), name) != kProperties.end()) continue;
    JsonPlace(root, name).Fail("there is no such property" + SuggestName(name, kProperties));
  }
}

std::vector<Value> ReadValues(Json const& request, char const* name) {
  std::vector<Value> values;
  auto const found = request.find(name);
  if (found == request.end()) return values;
  JsonPlace const root;
  JsonPlace const place(root, name);
  if (!found->is_array()) place.Fail("a list of values is needed, " + DescribeJson(*found) + " was given");
  values.reserve(found->size());
  for (std::size_t i = 0; i < found->size(); ++i)
    values.push_back(ReadValue((*found)[i], JsonPlace(place, i)));
  return values;
}

Value ReadOptionalValue(Json const& request, char const* name) {
  auto const found = request.find(name);
  JsonPlace const root;
  return found == request.end() ? nullptr : ReadValue(*found, JsonPlace(root, name));
}

// Messages may quote bytes of a request that are no characters.
void AppendMessage(std::string_view message, std::string& out) {
  WriteText(OStringCore::fromUtf8(message), out);
}

std::string MakeInvalid(std::string_view message) {
  std::string out = R"("invalid":)";
  AppendMessage(message, out);
  return out;
}

std::string MakeError(OrtRuntimeException const& error) {
  std::string out = fmt::format(R"("error":{{"code":{},"message":)", static_cast<int>(error.GetError()));
  AppendMessage(error.GetMessage().isEmpty() ? DescribeError(error.GetError()) : error.GetMessage().toUtf8(),
                out);
  return out + '}';
}

std::string MakeException(char const* type, std::exception const& error) {
  std::string out = fmt::format(R"("exception":{{"type":"{}","message":)", type);
  AppendMessage(error.what(), out);
  if (auto const* logic = dynamic_cast<OLogicException const*>(&error)) {
    out += R"(,"source":)";
    AppendMessage(logic->GetSource(), out);
    out += fmt::format(R"(,"line":{},"expression":)", logic->GetLine());
    AppendMessage(logic->GetExpression(), out);
  }
  return out + '}';
}

// The outcome's member of a response, whatever the evaluation throws.
template <class Evaluate>
std::string Answered(Evaluate const& evaluate) {
  try {
    return evaluate();
  } catch (InvalidRequest const& error) {
    return MakeInvalid(error.what());
  } catch (InvalidCall const& error) {
    return MakeInvalid(error.what());
  } catch (OrtRuntimeException const& error) {
    return MakeError(error);
  } catch (OLogicException const& error) {
    return MakeException("logic", error);
  } catch (std::out_of_range const& error) {
    return MakeException("out_of_range", error);
  } catch (std::length_error const& error) {
    return MakeException("length_error", error);
  } catch (std::bad_function_call const& error) {
    return MakeException("bad_function_call", error);
  } catch (std::exception const& error) {
    return MakeException("other", error);
  }
}

template <class Functions>
void CollectNames(Functions const& functions, std::set<OStringCore>& names) {
  for (auto const& entry : functions.GetEntries()) names.insert(entry.GetKey().GetName());
}

}  // namespace

CallSession::Measure::Measure(std::shared_ptr<services::TextMeasurer const> textMeasurer)
    : measurer(std::move(textMeasurer)) {
  RegisterAllFunctions(registry, measurer);
}

CallSession::CallSession(std::shared_ptr<services::TextMeasurer const> measurer)
    : real_(std::move(measurer)) {
  FunctionRegistry reduces;
  OstrelTransforms::RegisterOstrelReduceFunctions(reduces);
  CollectNames(reduces.GetBinaryFunctions(), reduceNames_);
}

CallSession::Measure& CallSession::Choose(Json const& request) {
  bool isFixed = false;
  if (auto const found = request.find("measure"); found != request.end()) {
    JsonPlace const root;
    isFixed = *found == "fixed";
    if (!isFixed)
      JsonPlace(root, "measure")
          .Fail("the only measure is \"fixed\", " + DescribeJson(*found) + " was given");
    if (!fixed_) fixed_.emplace(services::MakeFixedMeasurer());
  }
  Measure& measure = isFixed ? *fixed_ : real_;
  if (std::exchange(chosen_, &measure) != &measure) {
    installed_.reset();
    installed_.emplace(measure.measurer);
  }
  return measure;
}

EvaluationMode CallSession::ReadMode(Json const& request, OStringCore const& function,
                                     Engine const& engine) const {
  if (auto const found = request.find("mode"); found != request.end()) {
    std::vector<std::string> names;
    for (EvaluationMode const mode : kModes) {
      if (*found == EvaluationModeToString(mode)) return mode;
      names.emplace_back(EvaluationModeToString(mode));
    }
    JsonPlace const root;
    JsonPlace(root, "mode")
        .Fail(fmt::format("{} is no mode; the modes are {}", DescribeJson(*found), fmt::join(names, ", ")));
  }
  auto const forms = engine.GetForms(function);
  if (!forms.IsKnown()) throw InvalidCall(engine.DescribeUnknownFunction(function));
  if (forms.isUnary) return EvaluationMode::Map;
  if (!forms.isBinary) return EvaluationMode::Call;
  return reduceNames_.contains(function) ? EvaluationMode::Scan : EvaluationMode::Zip;
}

FunctionCall CallSession::ReadCall(Json const& request, Engine const& engine) const {
  JsonPlace const root;
  if (!request.is_object()) root.Fail("a request is an object, " + DescribeJson(request) + " was given");
  RequireKnownProperties(request, root);
  auto const name = request.find("function");
  if (name == request.end()) root.Fail("'function' is missing");
  if (!name->is_string()) {
    JsonPlace(root, "function").Fail("a function's name is needed, " + DescribeJson(*name) + " was given");
  }
  auto const function = OStringCore::fromUtf8(name->get_ref<std::string const&>());
  EvaluationMode const mode = ReadMode(request, function, engine);
  return {function,
          mode,
          ReadValues(request, "inputs"),
          ReadValues(request, "parameters"),
          ReadOptionalValue(request, "initial"),
          ReadOptionalValue(request, "groups")};
}

std::string CallSession::Evaluate(Json const& request) {
  Engine const engine(Choose(request).registry);
  Value const result = engine.Call(ReadCall(request, engine));
  std::string out = R"("result":)";
  WriteValue(*result, out);
  return out;
}

std::string CallSession::Answer(std::string_view line) {
  Json request;
  std::string response = Answered([&] {
    request = ParseRequest(line);
    return Evaluate(request);
  });
  if (request.is_object() && request.contains("id"))
    response = "\"id\":" + request["id"].dump() + "," + response;
  return "{" + response + "}";
}

}  // namespace ostrel::program
