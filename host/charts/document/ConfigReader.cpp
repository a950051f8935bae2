#include "charts/document/JsonObjectReader.h"
#include "charts/document/Readers.h"
#include "charts/marks/MarkTable.h"

namespace ostrel::charts {

namespace {

void ReadFrame(JsonValue const& value, std::optional<std::string>& frame) {
  frame = value.IsNull() ? std::string() : value.ReadText();
}

void RefuseOfViews(JsonObjectReader& reader) {
  reader.Refuse("fill", "is not supported; use the chart's background")
      .Refuse("cornerRadius", "is not supported; leave it out")
      .Refuse("opacity", "is not supported; leave it out")
      .Refuse("strokeWidth", "is not supported; a frame is one pixel wide");
}

void ReadViewConfig(JsonValue const& value, ConfigSpec& config) {
  std::optional<double> step;
  JsonObjectReader reader(value);
  reader.On("stroke", [&](JsonValue const& stroke) { ReadFrame(stroke, config.frame); })
      .Number("continuousWidth", config.width.continuous, kPictureSize)
      .Number("continuousHeight", config.height.continuous, kPictureSize)
      .On("discreteWidth",
          [&](JsonValue const& size) { ReadSize(size, config.width.discrete, config.width.discreteStep); })
      .On("discreteHeight",
          [&](JsonValue const& size) { ReadSize(size, config.height.discrete, config.height.discreteStep); })
      .Number("step", step, kPictureSize);
  RefuseOfViews(reader);
  reader.Read();
  for (LengthSpec* const length : {&config.width, &config.height}) {
    if (!length->discrete && !length->discreteStep) length->discreteStep = step;
  }
}

}  // namespace

void ReadView(JsonValue const& value, std::optional<std::string>& frame) {
  JsonObjectReader reader(value);
  reader.On("stroke", [&](JsonValue const& stroke) { ReadFrame(stroke, frame); });
  RefuseOfViews(reader);
  reader.Read();
}

ConfigSpec ReadConfig(JsonValue const& value) {
  ConfigSpec config;
  JsonObjectReader reader(value);
  reader.On("axis", [&](JsonValue const& axis) { config.axis = ReadAxisConfig(axis); })
      .On("legend", [&](JsonValue const& legend) { config.legend = ReadLegendConfig(legend); })
      .On("view", [&](JsonValue const& view) { ReadViewConfig(view, config); });
  for (auto const* axes : {"axisX", "axisY", "axisTop", "axisBottom", "axisLeft", "axisRight", "axisBand",
                           "axisPoint", "axisDiscrete", "axisQuantitative", "axisTemporal"})
    reader.Refuse(axes, "is not supported; use config.axis, or set it for the axis itself");
  for (MarkDefinition const& mark : GetMarkTable())
    reader.Refuse(mark.name, "is not supported; set the properties of the mark itself");
  for (auto const* marks : {"mark", "style"})
    reader.Refuse(marks, "is not supported; set the properties of the mark itself");
  for (auto const* scales : {"scale", "range"})
    reader.Refuse(scales, "is not supported; set the properties of the scale itself");
  for (auto const* formats : {"numberFormat", "timeFormat", "normalizedNumberFormat", "customFormatTypes"})
    reader.Refuse(formats, "is not supported; set the format of the axis, the legend or the text");
  for (auto const* own : {"background", "padding"})
    reader.Refuse(own, "is not supported; set it for the chart itself");
  for (auto const* other : {"title", "header", "facet", "concat", "font", "countTitle", "fieldTitle", "aria",
                            "params", "projection", "selection", "tooltipFormat"})
    reader.Refuse(other, "is not supported; leave it out");
  reader.Read();
  return config;
}

}  // namespace ostrel::charts
