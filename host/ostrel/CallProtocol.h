#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "ostrel/RequestJson.h"
#include "ostrelrtcore/engine/Engine.h"
#include "services/InstallServices.h"

namespace ostrel::program {

/// Answers requests of the call protocol, one line of JSON each. While it lives, the services are installed.
class CallSession {
 public:
  /// Texts are measured with `measurer` unless a request asks for the fixed measure.
  explicit CallSession(std::shared_ptr<services::TextMeasurer const> measurer);

  /// The response to a request, without a line end. Nothing a line holds makes it throw.
  std::string Answer(std::string_view line);

 private:
  // What is evaluated with one way of measuring.
  struct Measure {
    explicit Measure(std::shared_ptr<services::TextMeasurer const> textMeasurer);
    std::shared_ptr<services::TextMeasurer const> measurer;
    ort::core::FunctionRegistry registry;
  };

  Measure& Choose(Json const& request);
  ort::core::FunctionCall ReadCall(Json const& request, ort::core::Engine const& engine) const;
  ort::core::EvaluationMode ReadMode(Json const& request, OStringCore const& function,
                                     ort::core::Engine const& engine) const;
  std::string Evaluate(Json const& request);

  Measure real_;
  std::optional<Measure> fixed_;
  std::set<OStringCore> reduceNames_;
  std::optional<services::InstalledServices> installed_;
  Measure* chosen_ = nullptr;
};

}  // namespace ostrel::program
