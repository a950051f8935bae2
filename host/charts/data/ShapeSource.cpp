#include "charts/data/ShapeSource.h"

#include <fmt/format.h>

#include <bit>
#include <cmath>
#include <nlohmann/json.hpp>
#include <optional>

#include "charts/data/RowBuilder.h"
#include "charts/data/TextCheck.h"

namespace ostrel::charts {
namespace {

using nlohmann::json;
using ort::core::StoreType;

constexpr int kMostLevels = 200;
constexpr int kMostPoints = 10'000'000;

// How outlines are found in a document.
struct ShapeFormat {
  bool isTopology = false;
  std::string feature;
  std::string property;
};

struct Position {
  double longitude = 0;
  double latitude = 0;
};

using Ring = std::vector<Position>;

RowCell RealCell(double value) { return {StoreType::Real64, std::bit_cast<std::uint64_t>(value), {}}; }
RowCell IntegerCell(std::int64_t value) {
  return {StoreType::Int64, std::bit_cast<std::uint64_t>(value), {}};
}

// A scalar as a cell; none for arrays, objects and null.
std::optional<RowCell> ScalarCell(json const& value) {
  if (value.is_boolean()) return RowCell{StoreType::Bool, value.get<bool>() ? 1U : 0U, {}};
  if (value.is_number_integer()) return IntegerCell(value.get<std::int64_t>());
  if (value.is_number()) return RealCell(value.get<double>());
  auto const* const text = value.get_ptr<std::string const*>();
  if (text == nullptr) return std::nullopt;
  return RowCell{StoreType::String, 0, ort::core::RIndirectString::FromUtf8(*text)};
}

// Puts polygons into a table and says where a document is wrong.
class ShapeReader {
 public:
  explicit ShapeReader(std::string sourceName) : sourceName_(std::move(sourceName)), rows_(sourceName_) {}
  virtual ~ShapeReader() = default;
  ShapeReader(ShapeReader const&) = delete;
  ShapeReader& operator=(ShapeReader const&) = delete;

  DataTable Finish() {
    if (rows_.GetRowCount() == 0) throw DataError(sourceName_ + ": there are no polygons");
    return rows_.Finish();
  }

 protected:
  [[noreturn]] void Fail(std::string const& cause) const { throw DataError(sourceName_ + ": " + cause); }

  // A member that must be there, of a kind.
  json const& Member(json const& object, char const* name, json::value_t kind) const {
    auto const found = object.is_object() ? object.find(name) : object.end();
    if (!object.is_object() || found == object.end() || found->type() != kind)
      Fail(fmt::format("an object with '{}' as {} is expected", name,
                       kind == json::value_t::array ? "an array" : "a text or an object"));
    return *found;
  }

  std::string ReadType(json const& object) const {
    return Member(object, "type", json::value_t::string).get<std::string>();
  }

  Position ReadPosition(json const& value) const {
    if (!value.is_array() || value.size() < 2 || !value[0].is_number() || !value[1].is_number())
      Fail("a position is an array of two numbers");
    return {value[0].get<double>(), value[1].get<double>()};
  }

  // The geometry's polygons with what its feature says of them.
  void AddGeometry(json const& geometry, json const& feature) {
    std::string const type = ReadType(geometry);
    if (type == "GeometryCollection") {
      for (json const& part : Member(geometry, "geometries", json::value_t::array))
        AddGeometry(part, feature);
      return;
    }
    if (type != "Polygon" && type != "MultiPolygon")
      Fail(fmt::format("geometries of the type '{}' have no outline; Polygon and MultiPolygon are supported",
                       type.substr(0, 64)));
    json const& rings = Member(geometry, RingsName(), json::value_t::array);
    if (type == "Polygon") return AddPolygon(rings, feature);
    for (json const& polygon : rings) AddPolygon(polygon, feature);
  }

  virtual char const* RingsName() const = 0;
  virtual Ring ReadRing(json const& ring) const = 0;

 private:
  void AddPolygon(json const& polygon, json const& feature) {
    if (!polygon.is_array()) Fail("a polygon is an array of rings");
    std::vector<std::pair<std::string, RowCell>> const cells = ReadCells(feature);
    for (json const& ring : polygon) {
      for (Position const& position : ReadRing(ring)) AddPoint(position, cells);
      ++ring_;
    }
    ++polygon_;
  }

  void AddPoint(Position const& position, std::vector<std::pair<std::string, RowCell>> const& cells) {
    if (rows_.GetRowCount() == kMostPoints) Fail(fmt::format("more than {} points", kMostPoints));
    rows_.SetField(kShapeLongitude, RealCell(position.longitude));
    rows_.SetField(kShapeLatitude, RealCell(position.latitude));
    rows_.SetField(kShapeRing, IntegerCell(ring_));
    rows_.SetField(kShapePolygon, IntegerCell(polygon_));
    for (auto const& [name, cell] : cells) rows_.SetField(name, cell);
    rows_.EndRow();
  }

  static std::vector<std::pair<std::string, RowCell>> ReadCells(json const& feature) {
    std::vector<std::pair<std::string, RowCell>> cells;
    if (!feature.is_object()) return cells;
    if (auto const id = feature.find("id"); id != feature.end()) {
      if (auto const cell = ScalarCell(*id)) cells.emplace_back("id", *cell);
    }
    auto const properties = feature.find("properties");
    if (properties == feature.end() || !properties->is_object()) return cells;
    for (auto const& [name, value] : properties->items()) {
      if (auto const cell = ScalarCell(value)) cells.emplace_back("properties." + name, *cell);
    }
    return cells;
  }

  std::string sourceName_;
  RowBuilder rows_;
  std::int64_t ring_ = 0;
  std::int64_t polygon_ = 0;
};

class GeoJsonReader final : public ShapeReader {
 public:
  using ShapeReader::ShapeReader;

  // A collection, a feature, a geometry, or an array of these.
  void Add(json const& value) {
    if (value.is_array()) {
      for (json const& part : value) Add(part);
      return;
    }
    std::string const type = ReadType(value);
    if (type == "FeatureCollection") {
      for (json const& feature : Member(value, "features", json::value_t::array)) Add(feature);
    } else if (type == "Feature") {
      auto const geometry = value.find("geometry");
      if (geometry != value.end() && !geometry->is_null()) AddGeometry(*geometry, value);
    } else {
      AddGeometry(value, nullptr);
    }
  }

 private:
  char const* RingsName() const override { return "coordinates"; }
  Ring ReadRing(json const& ring) const override {
    if (!ring.is_array()) Fail("a ring is an array of positions");
    Ring positions;
    for (json const& position : ring) positions.push_back(ReadPosition(position));
    return positions;
  }
};

class TopologyReader final : public ShapeReader {
 public:
  using ShapeReader::ShapeReader;

  void Add(json const& topology, std::string const& feature) {
    json const& objects = Member(topology, "objects", json::value_t::object);
    auto const found = objects.find(feature);
    if (found == objects.end()) Fail(fmt::format("the topology has no object '{}'", feature));
    ReadArcs(topology);
    AddObject(*found);
  }

 private:
  void AddObject(json const& object) {
    auto const type = object.is_object() ? object.find("type") : object.end();
    if (object.is_object() && type != object.end() && type->is_null()) return;
    if (ReadType(object) != "GeometryCollection") return AddGeometry(object, object);
    for (json const& part : Member(object, "geometries", json::value_t::array)) AddObject(part);
  }

  // Positions of a quantized topology are differences of whole numbers.
  void ReadArcs(json const& topology) {
    Position scale{1, 1};
    Position translate;
    auto const transform = topology.find("transform");
    bool const isQuantized = transform != topology.end();
    if (isQuantized) {
      scale = ReadPosition(Member(*transform, "scale", json::value_t::array));
      translate = ReadPosition(Member(*transform, "translate", json::value_t::array));
    }
    for (json const& arc : Member(topology, "arcs", json::value_t::array)) {
      if (!arc.is_array()) Fail("an arc is an array of positions");
      Ring& positions = arcs_.emplace_back();
      Position sum;
      for (json const& value : arc) {
        Position const position = ReadPosition(value);
        sum = isQuantized ? Position{sum.longitude + position.longitude, sum.latitude + position.latitude}
                          : position;
        positions.push_back({sum.longitude * scale.longitude + translate.longitude,
                             sum.latitude * scale.latitude + translate.latitude});
      }
    }
  }

  char const* RingsName() const override { return "arcs"; }
  // Arcs one after the other, of which each begins where the one before ends; ~i is arc i backwards.
  Ring ReadRing(json const& ring) const override {
    if (!ring.is_array()) Fail("a ring is an array of arcs");
    Ring positions;
    for (json const& value : ring) {
      auto const number = value.is_number_integer() ? value.get<std::int64_t>() : -1 - std::ssize(arcs_);
      auto const index = static_cast<std::size_t>(number < 0 ? ~number : number);
      if (index >= arcs_.size()) Fail(fmt::format("there is no arc {}", value.dump()));
      Ring arc = arcs_[index];
      if (number < 0) std::ranges::reverse(arc);
      positions.insert(positions.end(), arc.begin() + (positions.empty() || arc.empty() ? 0 : 1), arc.end());
      if (positions.size() > kMostPoints) Fail(fmt::format("a ring of more than {} points", kMostPoints));
    }
    return positions;
  }

  std::vector<Ring> arcs_;
};

ShapeFormat ReadShapeFormat(json const& data, std::string const& jsonPath) {
  ShapeFormat format;
  auto const found = data.find("format");
  if (found == data.end()) return format;
  if (!found->is_object()) throw DataError(jsonPath + ".format: an object is expected");
  for (auto const& [name, value] : found->items()) {
    auto const path = fmt::format("{}.format.{}", jsonPath, name);
    if (!value.is_string()) throw DataError(path + ": a text is expected");
    auto const& text = value.get_ref<std::string const&>();
    if (name == "type") {
      if (text != "json" && text != "topojson")
        throw DataError(
            fmt::format("{}: {} has no outlines; json and topojson are supported", path, value.dump()));
      format.isTopology = text == "topojson";
    } else if (name == "feature") {
      format.feature = text;
    } else if (name == "property") {
      format.property = text;
    } else {
      throw DataError(path + ": is not supported; type, feature and property are");
    }
  }
  if (format.isTopology && format.feature.empty())
    throw DataError(jsonPath + ".format.feature: is missing; name an object of the topology");
  return format;
}

json ParseJson(std::string_view text, std::string const& sourceName) {
  CheckText(text, sourceName);
  auto const check = [&](int depth, json::parse_event_t, json&) {
    if (depth > kMostLevels)
      throw DataError(fmt::format("{}: is nested deeper than {}", sourceName, kMostLevels));
    return true;
  };
  try {
    return json::parse(WithoutByteOrderMark(text), check);
  } catch (json::parse_error const& error) {
    throw DataError(DescribePlace(text, std::min(error.byte, text.size()), sourceName) + ": is not JSON");
  }
}

DataTable ReadShapes(json const& document, std::string const& sourceName, ShapeFormat const& format) {
  if (format.isTopology) {
    TopologyReader reader(sourceName);
    reader.Add(document, format.feature);
    return reader.Finish();
  }
  GeoJsonReader reader(sourceName);
  if (format.property.empty()) {
    reader.Add(document);
  } else {
    auto const found = document.is_object() ? document.find(format.property) : document.end();
    if (!document.is_object() || found == document.end())
      throw DataError(fmt::format("{}: has no '{}'", sourceName, format.property));
    reader.Add(*found);
  }
  return reader.Finish();
}

}  // namespace

DataTable LoadShapes(json const& data, std::string const& jsonPath, DataRoots const& roots) {
  ShapeFormat const format = ReadShapeFormat(data, jsonPath);
  if (auto const url = data.find("url"); url != data.end()) {
    auto const& path = url->get_ref<std::string const&>();
    DataText const text = ReadDataFile(path, roots);
    return ReadShapes(ParseJson(text.Get(), path), path, format);
  }
  return ReadShapes(data.at("values"), jsonPath + ".values", format);
}

}  // namespace ostrel::charts
