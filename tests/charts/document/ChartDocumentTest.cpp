#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "TestPaths.h"
#include "charts/document/Readers.h"

namespace ostrel::charts {

namespace {

std::filesystem::path const kDocuments = OSTREL_SOURCE_DIR "/tests/charts/document/documents";

ChartDocument Parse(std::string const& json) { return ParseChartDocument(json, "a.vl.json"); }

Encoding ParseEncoding(std::string const& channel, std::string const& encoding) {
  std::string const mark = channel == "order" ? "line" : "point";
  return Parse(R"({"data": {"url": "a.csv"}, "mark": ")" + mark + R"(", "encoding": {")" + channel +
               "\": " + encoding + "}}")
      .layers.at(0)
      .encodings.at(0);
}

MarkSpec ParseMark(std::string const& mark) {
  return Parse(R"({"data": {"url": "a.csv"}, "mark": )" + mark + "}").layers.at(0).mark;
}

Literal Text(char const* text) { return std::string(text); }

}  // namespace

TEST(ChartDocument, TopLevelPropertiesAreKept) {
  auto const document = Parse(R"({"$schema": "https://vega.github.io/schema/vega-lite/v5.json", "name": "n",
      "title": {"text": ["first", "second"], "subtitle": "sub"}, "description": "d", "width": 300,
      "height": 200.5, "background": "#eee", "padding": 7, "mark": "line", "encoding": {}, "config": {},
      "data": {"values": [{"b": 9007199254740993, "a": 1.0}], "name": "rows"}})");
  EXPECT_EQ(document.path, "a.vl.json");
  EXPECT_EQ(document.name, "n");
  EXPECT_EQ(document.title, "first\nsecond");
  EXPECT_EQ(document.subtitle, "sub");
  EXPECT_EQ(document.description, "d");
  EXPECT_EQ(document.width, 300);
  EXPECT_EQ(document.height, 200.5);
  EXPECT_EQ(document.padding.value().left, 7);
  EXPECT_EQ(document.padding.value().bottom, 7);
  EXPECT_EQ(static_cast<unsigned>(document.background.value().GetValue()), 0xFFEEEEEEU);
  ASSERT_EQ(document.layers.size(), 1u);
  EXPECT_EQ(document.layers[0].mark.type, "line");
  EXPECT_TRUE(document.layers[0].encodings.empty());
  EXPECT_EQ(document.layers[0].data->dump(), R"({"name":"rows","values":[{"a":1.0,"b":9007199254740993}]})");
}

TEST(ChartDocument, WhatIsLeftOutStaysOpen) {
  auto const document = Parse(
      "\xEF\xBB\xBF"
      R"({"mark": "point", "data": {"url": "a.csv"},
      "encoding": {"x": {"field": "a"}}})");
  EXPECT_TRUE(document.title.empty());
  EXPECT_FALSE(document.width || document.height || document.padding);
  auto const& mark = document.layers.at(0).mark;
  EXPECT_FALSE(mark.size || mark.opacity || mark.filled || mark.shape);
  auto const& x = document.layers[0].encodings.at(0);
  EXPECT_FALSE(x.title.isGiven || x.axis.isHidden || x.axis.title.isGiven || x.legend.isHidden);
  EXPECT_FALSE(x.scale.type || x.scale.zero || x.scale.nice || x.isDescending || x.keepsDataOrder);
  EXPECT_TRUE(std::holds_alternative<std::monostate>(x.value));
}

TEST(ChartDocument, MarkPropertiesAreKept) {
  auto const mark =
      ParseMark(R"({"type": "point", "color": "red", "fill": "#0f0", "stroke": "blue", "size": 30,
      "opacity": 0.5, "strokeWidth": 2, "filled": false, "shape": "triangle-down",
      "clip": true})");
  EXPECT_EQ(mark.type, "point");
  EXPECT_EQ(mark.color, "red");
  EXPECT_EQ(mark.fill, "#0f0");
  EXPECT_EQ(mark.stroke, "blue");
  EXPECT_EQ(mark.size, 30);
  EXPECT_EQ(mark.opacity, 0.5);
  EXPECT_EQ(mark.strokeWidth, 2);
  EXPECT_EQ(mark.filled, false);
  EXPECT_EQ(mark.shape, SymbolShape::TriangleDown);
  EXPECT_EQ(mark.clip, true);
  auto const line = ParseMark(R"({"point": true, "interpolate": "step-after", "type": "line",
      "strokeDash": [4, 2.5]})");
  EXPECT_EQ(line.type, "line");
  EXPECT_NE(line.point, nullptr);
  EXPECT_EQ(line.strokeDash, (std::vector<double>{4, 2.5}));
  EXPECT_EQ(line.interpolation, LineInterpolation::StepAfter);
  EXPECT_EQ(ParseMark("\"circle\"").type, "circle");
  EXPECT_EQ(ParseMark("\"square\"").type, "square");
}

TEST(ChartDocument, ScalePropertiesAreKept) {
  auto const log =
      ParseEncoding("x", R"({"field": "a", "scale": {"type": "log", "domain": [1, 100], "nice": 5,
      "base": 2, "clamp": true, "reverse": false, "zero": false}})");
  EXPECT_EQ(log.scale.type, ScaleType::Log);
  EXPECT_EQ(log.scale.domain, (std::vector<Literal>{1.0, 100.0}));
  EXPECT_EQ(log.scale.niceCount, 5);
  EXPECT_EQ(log.scale.nice, std::nullopt);
  EXPECT_EQ(log.scale.base, 2);
  EXPECT_EQ(log.scale.clamp, true);
  EXPECT_EQ(log.scale.reverse, false);
  EXPECT_EQ(log.scale.zero, false);
  auto const size = ParseEncoding("size", R"({"field": "a", "scale": {"type": "sqrt", "domainMin": -1,
      "domainMax": 9, "range": [0, 400], "nice": true}})");
  EXPECT_EQ(size.scale.domainMin, -1);
  EXPECT_EQ(size.scale.domainMax, 9);
  EXPECT_EQ(size.scale.range, (std::vector<Literal>{0.0, 400.0}));
  EXPECT_EQ(size.scale.nice, true);
  auto const color = ParseEncoding("color", R"({"field": "a", "scale": {"scheme": {"name": "set1"},
      "domain": ["p", 2, true]}})");
  EXPECT_EQ(color.scale.scheme, "set1");
  EXPECT_EQ(color.scale.domain, (std::vector<Literal>{Text("p"), 2.0, true}));
  EXPECT_EQ(ParseEncoding("color", R"({"field": "a", "scale": {"scheme": "blues"}})").scale.scheme, "blues");
}

TEST(ChartDocument, GuidesTitlesAndOrderAreKept) {
  auto const x =
      ParseEncoding("x", R"({"field": "a", "type": "quantitative", "title": null, "sort": "descending",
      "axis": {"title": ["u", "v"], "format": ".2f", "labelAngle": -45, "tickCount": 5, "values": [1, 2.5],
      "grid": false, "orient": "top"}})");
  EXPECT_TRUE(x.title.isGiven && x.title.text.empty());
  EXPECT_EQ(x.isDescending, true);
  EXPECT_TRUE(x.axis.title.isGiven);
  EXPECT_EQ(x.axis.title.text, "u\nv");
  EXPECT_EQ(x.axis.format, ".2f");
  EXPECT_EQ(x.axis.labelAngle, -45);
  EXPECT_EQ(x.axis.tickCount, 5);
  EXPECT_EQ(x.axis.values, (std::vector<Literal>{1.0, 2.5}));
  EXPECT_EQ(x.axis.grid, false);
  EXPECT_EQ(x.axis.orient, "top");
  auto const color = ParseEncoding("color", R"({"field": "a", "type": "temporal", "sort": "ascending",
      "legend": {"title": "L", "format": "%Y", "values": ["2020-01-01"], "tickCount": 3}})");
  EXPECT_EQ(color.isDescending, false);
  EXPECT_EQ(color.legend.title.text, "L");
  EXPECT_EQ(color.legend.format, "%Y");
  EXPECT_EQ(color.legend.values, (std::vector<Literal>{Text("2020-01-01")}));
  EXPECT_EQ(color.legend.tickCount, 3);
  EXPECT_TRUE(ParseEncoding("x", R"({"field": "a", "axis": null})").axis.isHidden);
  EXPECT_TRUE(ParseEncoding("size", R"({"field": "a", "legend": null})").legend.isHidden);
  auto const sorted = ParseEncoding("y", R"({"field": "a", "title": "t", "sort": ["q", 2, false]})");
  EXPECT_EQ(sorted.title.text, "t");
  EXPECT_EQ(sorted.sort, (std::vector<Literal>{Text("q"), 2.0, false}));
  EXPECT_TRUE(ParseEncoding("y", R"({"field": "a", "sort": null})").keepsDataOrder);
}

TEST(ChartDocument, ConstantsAreKeptInTheChannelsTerms) {
  EXPECT_EQ(ParseEncoding("x", R"({"value": -3})").value, Literal(-3.0));
  EXPECT_EQ(ParseEncoding("y", R"({"value": 3.5})").value, Literal(3.5));
  EXPECT_EQ(ParseEncoding("color", R"({"value": "#123456"})").value, Text("#123456"));
  EXPECT_EQ(ParseEncoding("size", R"({"value": 100})").value, Literal(100.0));
  EXPECT_EQ(ParseEncoding("opacity", R"({"value": 0.25})").value, Literal(0.25));
  EXPECT_EQ(ParseEncoding("shape", R"({"value": "cross"})").value, Text("cross"));
  EXPECT_TRUE(ParseEncoding("shape", R"({"value": "cross"})").field.empty());
}

TEST(ChartDocument, ChannelsComeInTheOrderOfTheDocument) {
  auto const document = Parse(R"({"data": {"url": "a.csv"}, "mark": "line", "encoding": {"y": {"field": "b"},
      "opacity": {"value": 1}, "detail": {"field": "d"}, "x": {"field": "a"}, "order": {"field": "o"}}})");
  LayerSpec const& layer = document.layers.at(0);
  std::vector<Channel> channels;
  for (auto const& encoding : layer.encodings) channels.push_back(encoding.channel);
  EXPECT_EQ(channels, (std::vector<Channel>{Channel::Y, Channel::Opacity, Channel::Detail, Channel::X,
                                            Channel::Order}));
  ASSERT_NE(layer.Find(Channel::X), nullptr);
  EXPECT_EQ(layer.Find(Channel::X)->field, "a");
  EXPECT_EQ(layer.Find(Channel::X)->path, "$.encoding.x");
  EXPECT_EQ(layer.Find(Channel::Color), nullptr);
}

TEST(ChartDocument, LayersInheritDataAndChannels) {
  auto const document = Parse(R"({"data": {"url": "a.csv"},
      "encoding": {"x": {"field": "a", "type": "temporal", "title": "T"}, "color": {"value": "red"}},
      "layer": [
        {"mark": "line", "encoding": {"x": {"title": null}, "y": {"field": "b"}}},
        {"data": {"url": "b.csv"}, "encoding": {"y": {"field": "c", "axis": null}}, "layer": [
          {"mark": "point", "encoding": {"color": {"field": "d"}}},
          {"mark": "circle", "encoding": {"y": {"value": 3}}}]}]})");
  ASSERT_EQ(document.layers.size(), 3u);
  auto const describe = [&](std::size_t layer) {
    LayerSpec const& spec = document.layers[layer];
    std::string text = spec.path + " " + spec.dataPath + " " + spec.data->at("url").get<std::string>();
    for (Encoding const& encoding : spec.encodings)
      text += " " + encoding.path.substr(encoding.path.rfind('.') + 1) + ":" + encoding.field;
    return text;
  };
  EXPECT_EQ(describe(0), "$.layer[0] $.data a.csv x:a color: y:b");
  EXPECT_EQ(describe(1), "$.layer[1].layer[0] $.layer[1].data b.csv x:a color:d y:c");
  EXPECT_EQ(describe(2), "$.layer[1].layer[1] $.layer[1].data b.csv x:a color: y:");
  EXPECT_EQ(document.layers[0].encodings[0].path, "$.layer[0].encoding.x");
  EXPECT_EQ(document.layers[1].encodings[0].path, "$.encoding.x");
  EXPECT_EQ(document.layers[0].encodings[0].type, FieldType::Temporal);
  EXPECT_TRUE(document.layers[0].encodings[0].title.isGiven &&
              document.layers[0].encodings[0].title.text.empty());
  EXPECT_EQ(document.layers[2].Find(Channel::X)->title.text, "T");
  EXPECT_TRUE(document.layers[1].Find(Channel::Y)->axis.isHidden);
  EXPECT_EQ(document.layers[2].Find(Channel::Y)->value, Literal(3.0));
}

TEST(ChartDocument, FieldTypesFollowTheEncodingAlone) {
  struct Case {
    char const* channel;
    char const* encoding;
    FieldType type;
  };
  for (auto const& [channel, encoding, type] :
       std::vector<Case>{{"x", R"({"field": "a"})", FieldType::Nominal},
                         {"x", R"({"field": "a", "type": "temporal"})", FieldType::Temporal},
                         {"x", R"({"field": "a", "scale": {}})", FieldType::Nominal},
                         {"x", R"({"field": "a", "scale": {"type": "linear"}})", FieldType::Quantitative},
                         {"x", R"({"field": "a", "scale": {"type": "log"}})", FieldType::Quantitative},
                         {"size", R"({"field": "a", "scale": {"type": "sqrt"}})", FieldType::Quantitative},
                         {"x", R"({"field": "a", "scale": {"type": "time"}})", FieldType::Temporal},
                         {"x", R"({"field": "a", "scale": {"type": "utc"}})", FieldType::Temporal},
                         {"x", R"({"field": "a", "scale": {"type": "point"}})", FieldType::Nominal},
                         {"color", R"({"field": "a", "scale": {"type": "ordinal"}})", FieldType::Nominal},
                         {"x", R"({"field": "a", "sort": ["p", "q"]})", FieldType::Ordinal},
                         {"x", R"({"field": "a", "sort": "descending"})", FieldType::Nominal},
                         {"shape", R"({"field": "a", "sort": ["p", "q"]})", FieldType::Nominal},
                         {"order", R"({"field": "a"})", FieldType::Ordinal},
                         {"detail", R"({"field": "a"})", FieldType::Nominal}}) {
    EXPECT_EQ(ParseEncoding(channel, encoding).type, type) << channel << " " << encoding;
  }
}

TEST(ChartDocument, FieldAccessorsNameColumns) {
  struct Case {
    char const* accessor;
    char const* name;  ///< or the error's cause
  };
  for (auto const& [accessor, name] :
       std::vector<Case>{{"Miles per Gallon", "Miles per Gallon"},
                         {"outer.inner", "outer.inner"},
                         {"a\\\\.b", "a.b"},
                         {"a\\\\[0\\\\]", "a[0]"},
                         {"a\\\\\\\\b", "a\\b"},
                         {"outer[0]", "outer[0]"},
                         {"outer[12][3].z", "outer[12][3].z"},
                         {"outer['in ner']", "outer.in ner"},
                         {"outer[\\\"a.b\\\"].c", "outer.a.b.c"},
                         {"outer['it\\\\'s']", "outer.it's"},
                         {"outer[key]", "outer.key"},
                         {"['first'].b", "first.b"},
                         {"[0]", "0"},
                         {"caf\u00e9", "caf\u00e9"},
                         {"trailing\\\\", "trailing\\"},
                         {"", "expects the name of a field"},
                         {"a.", "a name is missing after the last point"},
                         {"a[0].", "a name is missing after the last point"},
                         {".a", "a name between two points or brackets is missing"},
                         {"a..b", "a name between two points or brackets is missing"},
                         {"a[]", "a name between two points or brackets is missing"},
                         {"a[0", "a closing bracket is missing"},
                         {"a['b'", "a closing bracket is missing"},
                         {"a['b", "a closing quote is missing"}}) {
    try {
      EXPECT_EQ(ParseEncoding("x", std::string("{\"field\": \"") + accessor + "\"}").field, name) << accessor;
    } catch (DocumentError const& error) {
      EXPECT_EQ(error.what(), std::string("a.vl.json: $.encoding.x.field: ") + name) << accessor;
    }
  }
}

TEST(ChartDocument, GivenDocumentsAreReadOrRefused) {
  std::map<std::string, std::string> const expected = {
      {"area.vl.json", ""},
      {"bar_aggregate.vl.json", ""},
      {"bar_month.vl.json", ""},
      {"geo_point.vl.json",
       "$.projection.type: \"albersUsa\" is not supported; use one of mercator, identity"},
      {"histogram.vl.json", ""},
      {"histogram_log.vl.json", ""},
      {"line.vl.json", ""},
      {"line_mean_month.vl.json", ""},
      {"point_2d.vl.json", ""},
      {"point_bubble.vl.json", ""},
      {"point_color_quantitative.vl.json", ""},
      {"point_log.vl.json", ""},
      {"rect_heatmap.vl.json", ""},
      {"stacked_area.vl.json", ""},
      {"stacked_bar_normalize.vl.json", ""},
      {"stacked_bar_weather.vl.json", ""},
      {"text_format.vl.json", ""},
  };
  std::size_t count = 0;
  for (auto const& entry : std::filesystem::directory_iterator(kDocuments)) {
    if (entry.path().extension() != ".json") continue;
    ++count;
    auto const& message = expected.at(entry.path().filename().string());
    try {
      EXPECT_EQ(ReadChartDocument(entry.path()).layers.at(0).encodings.size() >= 2, message.empty())
          << entry.path();
    } catch (DocumentError const& error) {
      EXPECT_EQ(error.what(), entry.path().string() + ": " + message);
    }
  }
  EXPECT_EQ(count, expected.size());
  auto const log = ReadChartDocument(kDocuments / "point_log.vl.json").layers.at(0);
  EXPECT_EQ(log.Find(Channel::Y)->type, FieldType::Quantitative);
  EXPECT_EQ(log.data->at("values").size(), 8U);
}

}  // namespace ostrel::charts
