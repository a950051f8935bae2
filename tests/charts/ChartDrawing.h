#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "charts/RenderChart.h"
#include "charts/functions/ChartFunctions.h"
#include "charts/writer/SvgWriter.h"
#include "ostreltransforms/OstrelTransforms.h"
#include "services/InstallServices.h"

namespace ostrel::charts {

/// Draws documents with every UTF-16 unit 10 pixels wide, so that no font matters.
class ChartDrawing {
 public:
  ChartDrawing() {
    OstrelTransforms::RegisterAllRuntimeFunctions(registry_);
    RegisterChartFunctions(registry_, services_.ShareMeasurer());
  }

  DrawnChart Draw(std::string const& json, std::filesystem::path const& folder = ".") const {
    ChartDocument const document = ParseChartDocument(json, "chart.vl.json");
    return DrawChart(document, {folder, folder}, {}, {registry_, services_.GetMeasurer()});
  }
  std::string DrawSvg(std::string const& json, std::filesystem::path const& folder = ".") const {
    StringSink sink;
    WriteSvg(Draw(json, folder).scene, services_.GetMeasurer(), sink);
    return sink.GetText();
  }
  std::string DescribeError(std::string const& json) const {
    try {
      Draw(json);
    } catch (DocumentError const& error) {
      return error.what();
    } catch (DataError const& error) {
      return error.what();
    }
    return "no error";
  }

 private:
  services::InstalledServices services_{services::MakeFixedMeasurer()};
  ort::core::FunctionRegistry registry_;
};

/// A document of one mark over rows "a b c|a b c" of fields f0, f1, ...: each cell is JSON.
inline std::string MakeDocument(std::string const& mark, std::string const& rows, std::string const& encoding,
                                std::string const& more = "") {
  std::string values;
  std::string cell;
  int field = 0;
  auto const endCell = [&] {
    values += (field == 0 ? "{" : ",") + ("\"f" + std::to_string(field)) + "\":" + cell;
    cell.clear();
    ++field;
  };
  for (char const byte : rows) {
    if (byte != ' ' && byte != '|') {
      cell += byte;
      continue;
    }
    endCell();
    if (byte != '|') continue;
    values += "},";
    field = 0;
  }
  endCell();
  return "{" + more + R"("width":100,"height":100,"data":{"values":[)" + values + R"(}]},"mark":)" + mark +
         R"(,"encoding":{)" + encoding + "}}";
}

/// The group of a role, searched in depth; null when there is none.
inline Group const* FindGroup(Group const& group, std::string_view role) {
  if (group.role == role) return &group;
  for (SceneNode const& node : group.nodes) {
    auto const* child = std::get_if<std::unique_ptr<Group>>(&node);
    if (child == nullptr) continue;
    if (Group const* found = FindGroup(**child, role)) return found;
  }
  return nullptr;
}

template <class Mark>
std::vector<Mark const*> FindMarks(Scene const& scene, std::string_view role) {
  std::vector<Mark const*> marks;
  Group const* const group = FindGroup(scene.root, role);
  if (group == nullptr) return marks;
  for (SceneNode const& node : group->nodes) {
    if (auto const* mark = std::get_if<Mark>(&node)) marks.push_back(mark);
  }
  return marks;
}

/// The texts of a group: "a|b|c".
inline std::string ReadTexts(Scene const& scene, std::string_view role) {
  std::string texts;
  for (TextMark const* mark : FindMarks<TextMark>(scene, role))
    texts += (texts.empty() ? "" : "|") + mark->text;
  return texts;
}

}  // namespace ostrel::charts
