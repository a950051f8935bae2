#include <fmt/format.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "charts/document/DocumentErrors.h"

namespace ostrel::charts {

TEST(DocumentErrors, MalformedTextNamesLineAndColumn) {
  struct Text {
    std::string text;
    std::string message;
  };
  std::vector<Text> const cases = {
      {"",
       "a.vl.json:1:1: syntax error while parsing value - unexpected end of input; expected '[', '{', or a "
       "literal"},
      {"{\n  \"mark\": point\n}",
       "a.vl.json:2:11: syntax error while parsing value - invalid literal; last read: '\"mark\": p'"},
      {"{\"a\": 1,}",
       "a.vl.json:1:9: syntax error while parsing object key - unexpected '}'; expected string literal"},
      {"{} {}", "a.vl.json:1:4: syntax error while parsing value - unexpected '{'; expected end of input"},
      {"{\"width\": 1e999}", "a.vl.json:1:15: number overflow parsing '1e999'"},
      {std::string("{\n\"a\0\": 1}", 10), "a.vl.json:2:3: a NUL byte (offset 4)"},
      {"{\"\xC3\xA9\xFF\": 1}", "a.vl.json:1:4: byte 0xFF is not valid UTF-8 here (offset 4)"},
      {"{\"name\": \"\\ud800\"}",
       "a.vl.json:1:17: syntax error while parsing value - invalid string: surrogate U+D800..U+DBFF must be "
       "followed by U+DC00..U+DFFF; last read: '\"\\ud800\"'"},
      {"[]", "a.vl.json: $: expects an object, not an array"},
      {"null", "a.vl.json: $: expects an object, not null"},
  };
  for (auto const& [text, message] : cases) EXPECT_EQ(MessageOf(text), message) << text;
}

TEST(DocumentErrors, DepthAndSizeAreLimited) {
  auto const nested = [](std::size_t levels, std::string const& open, std::string const& close) {
    std::string text;
    for (std::size_t i = 0; i < levels; ++i) text += open;
    for (std::size_t i = 0; i < levels; ++i) text += close;
    return text;
  };
  auto const deep = std::string("a.vl.json: nested deeper than 200 levels");
  EXPECT_EQ(MessageOf(nested(200, "[", "]")), "a.vl.json: $: expects an object, not an array");
  EXPECT_EQ(MessageOf(nested(201, "[", "]")), deep);
  EXPECT_EQ(MessageOf(nested(1'000'000, "[", "")), deep);
  EXPECT_EQ(MessageOf(nested(300'000, "{\"data\":", "")), deep);
  EXPECT_EQ(MessageOf(std::string((64 << 20) + 1, ' ')),
            "a.vl.json: 67108865 bytes are more than 64 MiB; keep the data in a file of its own");
}

TEST(DocumentErrors, LongListsAndTextsAreRefusedWithoutTheirContent) {
  std::string list = "0";
  for (int i = 0; i < 10'000; ++i) list += ",0";
  std::string members;
  for (int i = 0; i < 10'001; ++i) members += fmt::format("{}\"m{}\": 0", i > 0 ? "," : "", i);
  auto const lines = [](std::size_t bytes) { return "\"" + std::string(bytes, 'x') + "\""; };
  ExpectOfX({{"\"axis\": {\"values\": [" + list + "]}",
              "$.encoding.x.axis.values: 10001 elements are more than 10000"}});
  ExpectOfRoot({
      {"\"title\": " + lines(65'536), ""},
      {"\"title\": " + lines(65'537), "$.title: 65537 bytes of text are more than 65536"},
      {"\"title\": [" + lines(40'000) + "," + lines(40'000) + "]",
       "$.title: the lines have more than 65536 bytes"},
      {"\"encoding\": {" + members + "}", "$.encoding: 10001 properties are more than 10000"},
      {lines(500) + ": 1",
       "$['" + std::string(64, 'x') +
           "...']: is not supported; use one of $schema, name, title, "
           "description, width, height, background, padding, projection, config, view, data, mark, "
           "encoding, layer, transform, facet, spec, columns, spacing, resolve"},
      {R"("width": )" + lines(100),
       "$.width: \"" + std::string(64, 'x') + "...\" is not supported; use a number of pixels"},
  });
}

TEST(DocumentErrors, TheFirstInTheDocumentIsReported) {
  ExpectMessages("{", "}",
                 {{R"("width": "w", "height": "h", "mark": "arc")",
                   "$.width: \"w\" is not supported; use a number of pixels"},
                  {R"("mark": "arc", "height": "h", "width": "w")",
                   "$.mark: \"arc\" is not supported; use one of " + ListMarkNames()},
                  {R"("encoding": {"y": {"field": ""}, "x": {"field": ""}})",
                   "$.encoding.y.field: expects the name of a field"}});
}

TEST(DocumentErrors, APropertyStandsOnce) {
  ExpectOfRoot({{R"("mark": "line")", "$: the property \"mark\" stands twice"}});
  ExpectOfEncoding(
      {{R"("x": {"field": "a", "field": "b"})", "$.encoding.x: the property \"field\" stands twice"}});
  ExpectMessages("", "",
                 {{R"({"data": {"values": [{"a": 1}, {"a": 1, "b": [{"c d": {"e": 1, "e": 2}}]}]}})",
                   "$.data.values[1].b[0]['c d']: the property \"e\" stands twice"}});
}

TEST(DocumentErrors, TopLevel) {
  auto const plots =
      std::string("several plots in one document are not supported; write a document for each");
  auto const schema =
      std::string(" is not supported; use \"https://vega.github.io/schema/vega-lite/v6.json\" or v5");
  ExpectOfRoot({
      {R"("$schema": "https://vega.github.io/schema/vega-lite/v5.json")", ""},
      {R"("$schema": "https://vega.github.io/schema/vega-lite/v6.1.0.json")", ""},
      {R"("$schema": "http://vega.github.io/schema/vega-lite/v5.20.1-rc.1.json")", ""},
      {R"("$schema": "https://vega.github.io/schema/vega-lite/v4.json")",
       "$.$schema: \"https://vega.github.io/schema/vega-lite/v4.json\"" + schema},
      {R"("$schema": "https://vega.github.io/schema/vega-lite/v55.json")",
       "$.$schema: \"https://vega.github.io/schema/vega-lite/v55.json\"" + schema},
      {R"("$schema": "https://vega.github.io/schema/vega/v5.json")",
       "$.$schema: \"https://vega.github.io/schema/vega/v5.json\"" + schema},
      {R"("title": 5)", "$.title: expects a text, not 5"},
      {R"("title": ["a", null])", "$.title[1]: expects a text, not null"},
      {R"("title": {"subtitle": "s"})", "$.title.text: is missing"},
      {R"("title": {"text": "t", "anchor": "left"})",
       "$.title.anchor: \"left\" is not supported; use one of start, middle, end"},
      {R"("title": "a\u0000b")", "$.title: the text has a NUL character"},
      {R"("width": 0)", "$.width: expects a number above 0 and at most 20000, not 0"},
      {R"("width": -3)", "$.width: expects a number above 0 and at most 20000, not -3"},
      {R"("height": 20000)", ""},
      {R"("height": 20000.5)", "$.height: expects a number above 0 and at most 20000, not 20000.5"},
      {R"("height": 1e308)", "$.height: expects a number above 0 and at most 20000, not 1e+308"},
      {R"("width": "container")", "$.width: \"container\" is not supported; use a number of pixels"},
      {R"("width": {"step": 17})", ""},
      {R"("width": {})", "$.width.step: is missing"},
      {R"("width": {"step": 0})", "$.width.step: expects a number above 0 and at most 20000, not 0"},
      {R"("background": 3)", "$.background: expects a text, not 3"},
      {R"("padding": {"left": 5})", ""},
      {R"("padding": {"left": -5})", "$.padding.left: expects a number from 0 to 20000, not -5"},
      {R"("padding": -1)", "$.padding: expects a number from 0 to 20000, not -1"},
      {R"("autosize": "fit")",
       "$.autosize: is not supported; use width and height, which measure the plotting area"},
      {R"("config": {})", ""},
      {R"("config": {"view": {"stroke": null, "step": 8, "discreteWidth": {"step": 5}}})", ""},
      {R"("config": {"axis": {"grid": false, "labelLimit": 0, "domain": true}, "legend": {"tickCount": 3}})",
       ""},
      {R"("config": {"axis": {"title": "t"}})",
       "$.config.axis.title: is no default; set it for the axis itself"},
      {R"("config": {"legend": {"labelAngle": 9}})",
       "$.config.legend.labelAngle: is not supported; use one of labelLimit, tickCount, orient, offset, "
       "labelFontSize, labelColor, titleFontSize, titlePadding, titleLimit, titleFontWeight, titleColor, "
       "direction, columns, symbolType, symbolSize"},
      {R"("config": {"axisX": {"gridDash": [2], "domainColor": null}, "axisY": {"tickSize": 0}})", ""},
      {R"("config": {"axisX": {"gridDash": [2, -1]}})",
       "$.config.axisX.gridDash[1]: expects a number of at least 0, not -1"},
      {R"("config": {"axis": {"gridColor": "reddish"}})",
       "$.config.axis.gridColor: \"reddish\" is no colour"},
      {R"("config": {"axisLeft": {}})",
       "$.config.axisLeft: is not supported; use config.axisX or axisY, or set it for the axis itself"},
      {R"("config": {"title": {"anchor": "middle", "fontWeight": 500}, "background": "#eee", "padding": 3})",
       ""},
      {R"("config": {"bar": {"color": "red"}})",
       "$.config.bar: is not supported; set the properties of the mark itself"},
      {R"("config": {"view": {"continuousWidth": 0}})",
       "$.config.view.continuousWidth: expects a number above 0 and at most 20000, not 0"},
      {R"("config": {"view": {"fill": "red", "strokeWidth": 2}})", ""},
      {R"("config": {"view": {"cornerRadius": 3}})",
       "$.config.view.cornerRadius: is not supported; leave it out"},
      {R"("view": {"stroke": null})", ""},
      {R"("config": [])", "$.config: expects an object, not an array"},
      {R"("layer": [])", "$.layer: is given beside mark; leave one of them out"},
      {R"("hconcat": [])", "$.hconcat: " + plots},
      {R"("repeat": {})", "$.repeat: " + plots},
      {R"("resolve": {})", ""},
      {R"("transform": [])", ""},
      {R"("params": [])", "$.params: interaction is not supported; leave it out"},
      {R"("datasets": {})", "$.datasets: named data are not supported; use data.values"},
      {R"("wdith": 5)", "$.wdith: unknown property; did you mean \"width\"?"},
  });
}

TEST(DocumentErrors, DataAndMarkAreNeeded) {
  ExpectMessages("{", "}",
                 {{R"("mark": "point")", "$.data: is missing; give {\"url\": ...} or {\"values\": [...]}"},
                  {R"("data": {"values": []})", "$.mark: is missing; use one of " + ListMarkNames()}});
  ExpectMessages(
      R"({"mark": "point", "data": )", "}",
      {{"null", "$.data: expects an object, not null"},
       {"{}", "$.data: expects url or values"},
       {R"({"name": "table"})", "$.data: expects url or values"},
       {R"({"url": "a.csv", "values": []})", "$.data.values: is given beside url; leave one of them out"},
       {R"({"url": 5})", "$.data.url: expects a text, not 5"},
       {R"({"sequence": {"stop": 5}})",
        "$.data.sequence: generated data are not supported; use url or values"},
       {R"({"uri": "a.csv"})", "$.data.uri: unknown property; did you mean \"url\"?"}});
}

TEST(DocumentErrors, Transforms) {
  std::vector<ErrorCase> cases = {
      {R"({"filter": {"field": "a", "equal": 1}})", ""},
      {R"({"filter": {"field": "a", "range": [null, 3]}})", ""},
      {R"({"filter": {"and": [{"field": "a", "gt": 1}, {"not": {"field": "b", "valid": true}}]}})", ""},
      {R"({"aggregate": [{"op": "mean", "field": "a", "as": "m"}], "groupby": ["b"]})", ""},
      {R"({"bin": true, "field": "a", "as": ["s", "e"]})", ""},
      {R"({"timeUnit": "year", "field": "a", "as": "y"})", ""},
      {R"({"lookup": "a"})",
       "$.transform[0]: is not supported; use one of filter, calculate, aggregate, joinaggregate, bin, "
       "timeUnit"},
      {R"({"filter": "datum.a > 1"})", ""},
      {R"({"filter": "datum.a > "})",
       "$.transform[0].filter: column 11: expected a value, but found the end"},
      {R"({"filter": {"equal": 1}})", "$.transform[0].filter.field: is missing"},
      {R"({"filter": {"field": "a"}})",
       "$.transform[0].filter: expects one of equal, lt, lte, gt, gte, range, oneOf, valid"},
      {R"({"filter": {"field": "a", "gt": 1, "lt": 2}})",
       "$.transform[0].filter: expects one of equal, lt, lte, gt, gte, range, oneOf, valid"},
      {R"({"filter": {"field": "a", "range": [1]}})", "$.transform[0].filter.range: expects two values"},
      {R"({"filter": {"field": "a", "oneOf": []}})", "$.transform[0].filter.oneOf: has no values"},
      {R"({"filter": {"or": []}})", "$.transform[0].filter.or: has no tests"},
      {R"({"aggregate": [{"op": "mean", "as": "m"}]})",
       "$.transform[0].aggregate[0].field: is missing; only a count needs none"},
      {R"({"aggregate": [{"op": "count"}]})",
       "$.transform[0].aggregate[0].as: is missing; name the new field"},
      {R"({"bin": false, "field": "a", "as": "b"})", "$.transform[0].bin: expects true or an object"},
      {R"({"bin": true, "as": "b"})", "$.transform[0].field: is missing"},
  };
  ExpectMessages(R"({"data": {"url": "a.csv"}, "mark": "point", "transform": [)", "]}", cases);
}

TEST(DocumentErrors, Marks) {
  ExpectOfMark({
      {"null", "$.mark: null is not supported; use one of " + ListMarkNames()},
      {"{}", "$.mark.type: is missing; use one of " + ListMarkNames()},
      {R"({"type": "arc"})", "$.mark.type: \"arc\" is not supported; use one of " + ListMarkNames()},
      {R"({"type": "point", "opacity": 1.01})", "$.mark.opacity: expects a number from 0 to 1, not 1.01"},
      {R"({"type": "point", "size": -1})", "$.mark.size: expects a number of at least 0, not -1"},
      {R"({"type": "point", "size": "9"})", "$.mark.size: expects a number, not \"9\""},
      {R"({"type": "point", "color": {"gradient": "linear"}})",
       "$.mark.color: expects a text, not an object"},
      {R"({"type": "point", "shape": "star"})",
       "$.mark.shape: \"star\" is not supported; use one of circle, square, triangle-up, cross, "
       "diamond, triangle-right, triangle-down, triangle-left"},
      {R"({"type": "line", "strokeDash": [4, -2]})",
       "$.mark.strokeDash[1]: expects a number of at least 0, not -2"},
      {R"({"type": "point", "tooltip": true})", ""},
      {R"({"type": "point", "tooltip": {"content": "encoding"}})", ""},
      {R"({"type": "point", "tooltip": {"content": "data"}})", ""},
      {R"({"type": "point", "tooltip": {"content": "row"}})",
       "$.mark.tooltip.content: \"row\" is not supported; use one of encoding, data"},
      {R"({"type": "point", "tooltip": 1})",
       "$.mark.tooltip: expects true, false, a text or {\"content\": ...}, not 1"},
      {R"({"type": "point", "tooltip": null})", ""},
      {R"({"type": "point", "filed": true})", "$.mark.filed: unknown property; did you mean \"filled\"?"},
      {R"({"type": "circle", "shape": "cross"})", "$.mark.shape: is for the mark point only; leave it out"},
      {R"({"type": "square", "interpolate": "step"})",
       "$.mark.interpolate: is for the marks line and area only; leave it out"},
      {R"({"type": "point", "point": true})",
       "$.mark.point: is for the marks line and area only; leave it out"},
      {R"({"type": "line", "point": "red"})", "$.mark.point: expects true or false, not \"red\""},
      {R"({"type": "line", "point": {"interpolate": "step"}})",
       "$.mark.point.interpolate: is for the marks line and area only; leave it out"},
      {R"({"type": "area", "line": null, "point": "transparent"})", ""},
      {R"({"type": "bar", "width": {"step": 5}})", "$.mark.width.step: is not supported; use one of band"},
      {R"({"type": "bar", "width": {}})",
       "$.mark.width.band: is missing; give a share of the band, from 0 to 1"},
      {R"({"type": "rect", "cornerRadiusEnd": 3})",
       "$.mark.cornerRadiusEnd: is for the mark bar only; leave it out"},
      {R"({"type": "text", "font": "serif"})",
       "$.mark.font: is not supported; all texts of a chart have one font"},
      {R"({"type": "line", "interpolate": "basis"})",
       "$.mark.interpolate: \"basis\" is not supported; use one of linear, step-before, step-after, step, "
       "monotone"},
      {R"({"type": "line", "size": 3})",
       "$.mark.size: is for the marks point, circle, square, bar and tick only; leave it out"},
      {R"({"type": "text", "strokeDash": [1]})",
       "$.mark.strokeDash: is for the marks point, circle, square, line, bar, area, rect, rule, tick and "
       "geoshape only; leave it out"},
  });
  ExpectOfMark({
      {R"("circle", "encoding": {"shape": {"field": "a"}})",
       "$.encoding.shape: is for the mark point only; leave it out"},
      {R"("line", "encoding": {"size": {"field": "a", "type": "quantitative"}})",
       "$.encoding.size: is for the marks point, circle, square, treemap, packedBubbles and wordCloud only; "
       "leave it out"},
  });
}

TEST(DocumentErrors, Layers) {
  ExpectMessages(
      R"({"data": {"url": "a.csv"}, "encoding": {"x": {"field": "a"}, "y": {"value": 5}}, "layer": )", "}",
      {{"[]", R"($.layer: has no layers; give {"mark": ..., "encoding": {...}})"},
       {R"([{"mark": "point"}])", ""},
       {R"([{"mark": "point"}, {}])", "$.layer[1].mark: is missing; use one of " + ListMarkNames()},
       {R"([{"mark": "point", "layer": []}])",
        "$.layer[0].layer: is given beside mark; leave one of them out"},
       {R"([{"layer": [{"mark": "dot"}]}])",
        "$.layer[0].layer[0].mark: \"dot\" is not supported; use one of " + ListMarkNames()},
       {R"([{"mark": "point", "width": 5}])",
        "$.layer[0].width: is for the whole chart; set it beside layer"},
       {R"([{"mark": "point", "marks": 5}])", "$.layer[0].marks: unknown property; did you mean \"mark\"?"},
       {R"([{"mark": "point", "encoding": {"order": {"field": "a"}}}])",
        "$.layer[0].encoding.order: is for the marks line, bar and area only; leave it out"},
       // What a layer says of a channel of the view is read with the view's own part.
       {R"([{"mark": "point", "encoding": {"x": {"type": "temporal", "scale": {"type": "log"}}}}])",
        "$.layer[0].encoding.x.scale.type: \"log\" does not suit a temporal field in this channel; use time "
        "or "
        "utc"},
       {R"([{"mark": "point", "encoding": {"x": {"value": 5}, "y": {"field": "b"}}}])", ""}});
}

TEST(DocumentErrors, Panes) {
  ExpectMessages(
      R"({"data": {"url": "a.csv"}, )", "}",
      {{R"("facet": {"field": "a"})", R"($.spec: is missing; give {"mark": ..., "encoding": {...}})"},
       {R"("spec": {"mark": "point"})", R"($.facet: is missing; give {"field": ...}, or row and column)"},
       {R"("facet": {}, "spec": {"mark": "point"})", "$.facet: expects a field"},
       {R"("facet": {"row": {"field": "a"}, "x": {}}, "spec": {"mark": "point"})",
        "$.facet.x: is not supported; use one of row, column"},
       {R"("facet": {"field": "a"}, "mark": "point", "spec": {"mark": "point"})",
        "$.spec: is given beside mark or layer; move these into spec"},
       {R"("facet": {"field": "a"}, "columns": 0, "spec": {"mark": "point"})",
        "$.columns: expects a number from 1 to 1000, not 0"},
       {R"("facet": {"field": "a"}, "spec": {"mark": "point", "encoding": {"row": {"field": "b"}}})",
        "$.spec.encoding.row: is for the whole chart; set it in $.encoding, or use facet with spec"},
       {R"("mark": "point", "encoding": {"facet": {"field": "a"}, "row": {"field": "b"}})",
        "$.encoding.row: is given beside facet; leave one of them out"},
       {R"("mark": "point", "encoding": {"row": {"field": "a", "header": {"labelAngle": 45}}})",
        "$.encoding.row.header.labelAngle: expects 0, 90 or -90"},
       {R"("mark": "point", "encoding": {"row": {"value": 1}})",
        "$.encoding.row.value: a constant has no effect here; use a field"},
       {R"("mark": "point", "resolve": {"scale": {"x": "own"}})",
        "$.resolve.scale.x: \"own\" is not supported; use one of shared, independent"},
       {R"("mark": "point", "resolve": {"axis": {"y": "independent"}})",
        "$.resolve.axis.y: layers share an axis with its scale; set resolve.scale"},
       {R"("mark": "point", "encoding": {"color": {"field": "a", "type": "quantitative", "scale": {"fit": true}}})",
        "$.encoding.color.scale.fit: is for positions only; leave it out"},
       {R"("mark": "point", "encoding": {"x": {"field": "a", "type": "nominal", "scale": {"fit": true}}})",
        "$.encoding.x.scale.fit: is for quantitative and temporal fields only; leave it out"},
       {R"("mark": "point", "encoding": {"x": {"field": "a", "type": "quantitative", "scale": {"type": "sqrt", "fit": true}}})",
        "$.encoding.x.scale.fit: is not supported on a square root scale; widen the domain instead"},
       {R"("mark": "point", "resolve": {"zero": {"y": "shared"}})",
        "$.resolve.zero.y: layers of one scale share its zero; set resolve.scale"},
       {R"("mark": "point", "encoding": {"row": {"field": "a"}}, "resolve": {"zero": {"y": "shared"}})",
        "$.resolve.zero.y: panes have their zeros where their scales have them; leave it out"},
       {R"("mark": "point", "resolve": {"legend": {}})",
        "$.resolve.legend: is not supported; every scale has its legend, so set scale"}});
}

TEST(DocumentErrors, FilesThatCannotBeRead) {
  auto const messageOf = [](std::filesystem::path const& path) {
    try {
      ReadChartDocument(path);
    } catch (DocumentError const& error) {
      return std::string(error.what());
    }
    return std::string("accepted");
  };
  auto const folder = std::filesystem::path(testing::TempDir());
  EXPECT_EQ(messageOf(folder), folder.string() + ": is not a file");
  auto const absent = folder / "absent.vl.json";
  EXPECT_EQ(messageOf(absent), absent.string() + ": there is no such file");
  auto const large = folder / "large.vl.json";
  std::ofstream(large) << "{}";
  std::filesystem::resize_file(large, (64 << 20) + 1);
  EXPECT_EQ(messageOf(large), large.string() + ": is larger than 64 MiB; keep the data in a file of its own");
  std::filesystem::remove(large);
}

}  // namespace ostrel::charts
