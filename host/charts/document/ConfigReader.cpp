#include "charts/document/JsonObjectReader.h"
#include "charts/document/Readers.h"
#include "charts/marks/MarkTable.h"

namespace ostrel::charts {

namespace {

void AddView(JsonObjectReader& reader, ViewSpec& view) {
  auto const color = [](std::optional<ort::core::OrtColor>& target) {
    return [&target](JsonValue const& value) { target = ReadColorOrNone(value); };
  };
  reader.On("stroke", color(view.stroke))
      .Number("strokeWidth", view.strokeWidth, {.minimum = 0, .maximum = 1'000})
      .On("fill", color(view.fill))
      .Refuse("cornerRadius", "is not supported; leave it out")
      .Refuse("opacity", "is not supported; use fill");
}

void ReadViewConfig(JsonValue const& value, ConfigSpec& config) {
  std::optional<double> step;
  JsonObjectReader reader(value);
  reader.Number("continuousWidth", config.width.continuous, kPictureSize)
      .Number("continuousHeight", config.height.continuous, kPictureSize)
      .On("discreteWidth",
          [&](JsonValue const& size) { ReadSize(size, config.width.discrete, config.width.discreteStep); })
      .On("discreteHeight",
          [&](JsonValue const& size) { ReadSize(size, config.height.discrete, config.height.discreteStep); })
      .Number("step", step, kPictureSize);
  AddView(reader, config.view);
  reader.Read();
  for (LengthSpec* const length : {&config.width, &config.height}) {
    if (!length->discrete && !length->discreteStep) length->discreteStep = step;
  }
}

}  // namespace

void ReadView(JsonValue const& value, ViewSpec& view) {
  JsonObjectReader reader(value);
  AddView(reader, view);
  reader.Read();
}

ConfigSpec ReadConfig(JsonValue const& value) {
  ConfigSpec config;
  JsonObjectReader reader(value);
  reader.On("axis", [&](JsonValue const& axis) { config.axis = ReadAxisConfig(axis); })
      .On("axisX", [&](JsonValue const& axis) { config.axisX = ReadAxisConfig(axis); })
      .On("axisY", [&](JsonValue const& axis) { config.axisY = ReadAxisConfig(axis); })
      .On("title",
          [&](JsonValue const& title) {
            JsonObjectReader look(title);
            AddTitleLook(look, config.title);
            look.Read();
          })
      .On("background", [&](JsonValue const& color) { config.background = ReadColorOrNone(color); })
      .On("padding", [&](JsonValue const& sides) { config.padding = ReadPadding(sides); })
      .On("legend", [&](JsonValue const& legend) { config.legend = ReadLegendConfig(legend); })
      .On("view", [&](JsonValue const& view) { ReadViewConfig(view, config); });
  for (auto const* axes : {"axisTop", "axisBottom", "axisLeft", "axisRight", "axisBand", "axisPoint",
                           "axisDiscrete", "axisQuantitative", "axisTemporal"})
    reader.Refuse(axes, "is not supported; use config.axisX or axisY, or set it for the axis itself");
  for (MarkDefinition const& mark : GetMarkTable())
    reader.Refuse(mark.name, "is not supported; set the properties of the mark itself");
  for (auto const* marks : {"mark", "style"})
    reader.Refuse(marks, "is not supported; set the properties of the mark itself");
  for (auto const* scales : {"scale", "range"})
    reader.Refuse(scales, "is not supported; set the properties of the scale itself");
  for (auto const* formats : {"numberFormat", "timeFormat", "normalizedNumberFormat", "customFormatTypes"})
    reader.Refuse(formats, "is not supported; set the format of the axis, the legend or the text");
  for (auto const* other : {"header", "facet", "concat", "font", "countTitle", "fieldTitle", "aria", "params",
                            "projection", "selection", "tooltipFormat"})
    reader.Refuse(other, "is not supported; leave it out");
  reader.Read();
  return config;
}

}  // namespace ostrel::charts
