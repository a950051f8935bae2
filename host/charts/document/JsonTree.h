#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace ostrel::charts {

/// A JSON text in memory. Objects tell their members in the order of the text, so that the first error of a
/// document is the one that is reported.
class JsonTree {
 public:
  using Json = nlohmann::json;
  using Member = Json::object_t::value_type;

  static constexpr std::size_t kMostBytes = std::size_t{64} << 20;
  static constexpr std::size_t kMostLevels = 200;

  /// Throws DocumentError with line and column for what is not well-formed JSON in UTF-8, and with the JSON
  /// path for a member that stands twice and for more than kMostLevels levels.
  JsonTree(std::string_view text, std::string const& fileName);
  JsonTree(JsonTree const&) = delete;
  JsonTree& operator=(JsonTree const&) = delete;

  Json const& GetRoot() const { return root_; }
  /// The members of an object of this tree. Those of objects within a "data" member come by name: they may be
  /// millions, and their order means nothing.
  std::vector<Member const*> GetMembers(Json const& object) const;

 private:
  class Builder;

  Json root_;
  std::unordered_map<Json::object_t const*, std::vector<Member const*>> orders_;
};

/// "$.encoding.x", or "$.encoding['a b']" for a key that is no plain name; long keys are cut.
std::string MemberPath(std::string const& path, std::string_view key);

/// A text as a quoted JSON string; a long one is cut.
std::string QuoteText(std::string_view text);

/// The whole content of a regular file of at most JsonTree::kMostBytes. Throws DocumentError.
std::string ReadDocumentFile(std::filesystem::path const& path);

}  // namespace ostrel::charts
