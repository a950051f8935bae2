#include "charts/scales/GuideValues.h"

#include <algorithm>

#include "charts/graph/PeriodNodes.h"
#include "charts/scene/Scene.h"
#include "ostrelrtcore/OrtDateTime.h"

namespace ostrel::charts {
namespace {

namespace factory = ort::core::factory;
using ort::core::StoreTypeInfo;

constexpr int kLogLabelGap = 8;
constexpr double kDefaultLogBase = 10;

std::unique_ptr<std::vector<double>> ReadGivenNumbers(Compilation const& compilation,
                                                      Encoding const& encoding, GuideRequest const& request) {
  auto numbers = std::make_unique<std::vector<double>>();
  for (Literal const& literal : request.values) {
    numbers->push_back(ReadFieldNumber(compilation, encoding, literal, request.place));
  }
  return numbers;
}

GuideValues PlanDates(Compilation& compilation, Encoding const& encoding, ScaledField const& field,
                      GuideRequest const& request) {
  GraphBuilder& graph = compilation.graph;
  std::optional<TickInterval> interval = encoding.axis.tickInterval;
  if (!interval && encoding.timeUnit.IsPeriod()) interval = {encoding.timeUnit, std::nullopt};
  NodeId dates = -1;
  if (request.values.empty() && interval) {
    dates = PlanUnitTicks(graph, request.name, {interval->unit, interval->step, request.count}, field.minimum,
                          field.maximum);
  } else if (request.values.empty()) {
    dates = graph.Call(request.name + " dates", "timeTicks",
                       {field.minimum, field.maximum, graph.Real(request.count)});
  } else {
    auto const days = graph.Constant(
        request.name + " days",
        factory::MakeArray<double>(StoreTypeInfo::Real64, ReadGivenNumbers(compilation, encoding, request)));
    dates = graph.Map(request.name + " dates", "toDateTime", days);
  }
  return {graph.Map(request.name + " values", "toReal64", dates),
          interval
              ? FormatUnitTicks(graph, request.name + " labels", interval->unit, dates, request.format)
              : graph.Call(request.name + " labels", "formatDates", {dates, graph.Text(request.format)})};
}

NodeId PlanLogNumbers(GraphBuilder& graph, Encoding const& encoding, ScaledField const& field,
                      GuideRequest const& request) {
  NodeId const format = graph.Constant(
      "label format", factory::MakeTuple({factory::MakeString(OStringCore::fromUtf8(request.format))}));
  NodeId const positions =
      graph.Call(request.name + " places", "calcLogTicks",
                 {field.minimum, field.maximum, graph.Int(std::max(static_cast<int>(request.length), 1)),
                  graph.Bool(request.isHorizontal), graph.Int(kLogLabelGap), format, request.font,
                  graph.Real(1), graph.Real(encoding.scale.base.value_or(kDefaultLogBase))});
  return graph.Call(request.name + " values", "logTickValues",
                    {positions, field.minimum, field.maximum, graph.Real(request.count)});
}

// From the minimum on, as many whole steps as the domain has room for.
NodeId PlanSteps(GraphBuilder& graph, ScaledField const& field, GuideRequest const& request) {
  NodeId const span = graph.Zip(request.name + " span", "subtract", field.maximum, field.minimum);
  NodeId const steps = graph.Map(request.name + " steps", "round",
                                 graph.Zip(request.name + " room", "divide", span, request.step));
  NodeId const count = graph.Map(
      request.name + " count", "toInt32",
      graph.Zip(request.name + " ends", "add", steps, graph.Constant("one", factory::MakeInt64(1))));
  return graph.Call(request.name + " values", "sequence", {field.minimum, request.step, count});
}

}  // namespace

GuideValues PlanGuideValues(Compilation& compilation, Encoding const& encoding, ScaledField const& field,
                            GuideRequest const& request) {
  if (field.scaleType == ScaleType::Time) return PlanDates(compilation, encoding, field, request);
  GraphBuilder& graph = compilation.graph;
  GuideValues values;
  if (!request.values.empty()) {
    values.numbers = graph.Constant(
        request.name + " values",
        factory::MakeArray<double>(StoreTypeInfo::Real64, ReadGivenNumbers(compilation, encoding, request)));
  } else if (field.scaleType == ScaleType::Log) {
    values.numbers = PlanLogNumbers(graph, encoding, field, request);
  } else if (request.step >= 0) {
    values.numbers = PlanSteps(graph, field, request);
  } else {
    values.numbers = graph.Call(request.name + " values", "linearTicks",
                                {field.minimum, field.maximum, graph.Real(request.count)});
  }
  values.labels =
      graph.Call(request.name + " labels", "formatTicks", {values.numbers, graph.Text(request.format)});
  return values;
}

}  // namespace ostrel::charts
