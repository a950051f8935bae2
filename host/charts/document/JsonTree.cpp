#include "charts/document/JsonTree.h"

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <limits>
#include <system_error>

#include "charts/data/DataTable.h"
#include "charts/data/TextCheck.h"
#include "charts/document/ChartDocument.h"

namespace ostrel::charts {

namespace {

/// At most so many bytes, and no part of a character.
std::string_view Beginning(std::string_view text, std::size_t mostBytes) {
  if (text.size() <= mostBytes) return text;
  while (mostBytes > 0 && (static_cast<unsigned char>(text[mostBytes]) & 0xC0U) == 0x80U) --mostBytes;
  return text.substr(0, mostBytes);
}

/// The parser's words without its name for the error and without its place, which is told in our way.
std::string ShortenCause(std::string_view cause) {
  constexpr std::size_t kMostBytes = 200;
  if (auto const label = cause.find("] "); label != std::string_view::npos) cause.remove_prefix(label + 2);
  if (cause.starts_with("parse error at")) {
    auto const place = cause.find(": ");
    if (place != std::string_view::npos) cause.remove_prefix(place + 2);
  }
  auto const beginning = Beginning(cause, kMostBytes);
  return std::string(beginning) + (beginning.size() < cause.size() ? "..." : "");
}

bool IsPlainName(std::string_view key) {
  auto const isPlain = [](char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
           (letter >= '0' && letter <= '9') || letter == '_' || letter == '$';
  };
  return !key.empty() && (key[0] < '0' || key[0] > '9') && std::all_of(key.begin(), key.end(), isPlain);
}

}  // namespace

class JsonTree::Builder : public nlohmann::json_sax<Json> {
 public:
  Builder(JsonTree& tree, std::string_view text, std::string const& fileName)
      : tree_(tree), text_(text), fileName_(fileName) {}

  bool null() override { return Put(nullptr), true; }
  bool boolean(bool value) override { return Put(value), true; }
  bool number_integer(std::int64_t value) override { return Put(value), true; }
  bool number_unsigned(std::uint64_t value) override { return Put(value), true; }
  bool number_float(double value, std::string const&) override { return Put(value), true; }
  bool string(std::string& value) override { return Put(std::move(value)), true; }
  bool binary(Json::binary_t&) override { return false; }
  bool start_object(std::size_t) override { return Open(Json::object()), true; }
  bool start_array(std::size_t) override { return Open(Json::array()), true; }
  bool end_object() override { return Close(), true; }
  bool end_array() override { return Close(), true; }

  bool key(std::string& name) override {
    auto& object = open_.back().container->get_ref<Json::object_t&>();
    auto const [member, isNew] = object.try_emplace(std::move(name), nullptr);
    if (!isNew) Fail(fmt::format("the property {} stands twice", QuoteText(member->first)));
    open_.back().member = &*member;
    if (dataDepth_ == 0) tree_.orders_[&object].push_back(&*member);
    return true;
  }

  bool parse_error(std::size_t position, std::string const&,
                   nlohmann::detail::exception const& error) override {
    auto const place = DescribePlace(text_, position > 0 ? position - 1 : 0, fileName_);
    throw DocumentError(fmt::format("{}: {}", place, ShortenCause(error.what())));
  }

 private:
  struct Level {
    Json* container = nullptr;
    Member* member = nullptr;  // of an object, the one that was begun last
  };

  [[noreturn]] void Fail(std::string const& cause) const {
    std::string path = "$";
    for (std::size_t i = 0; i + 1 < open_.size(); ++i) {
      auto const& level = open_[i];
      path = level.member != nullptr ? MemberPath(path, level.member->first)
                                     : fmt::format("{}[{}]", path, level.container->size() - 1);
    }
    throw DocumentError(fmt::format("{}: {}: {}", fileName_, path, cause));
  }

  Json* Put(Json value) {
    Json* place = &tree_.root_;
    if (!open_.empty()) {
      auto const& level = open_.back();
      if (level.member == nullptr) {
        place = &level.container->get_ref<Json::array_t&>().emplace_back(std::move(value));
        return place;
      }
      place = &level.member->second;
    }
    *place = std::move(value);
    return place;
  }

  void Open(Json container) {
    if (open_.size() == kMostLevels) {
      throw DocumentError(fmt::format("{}: nested deeper than {} levels", fileName_, kMostLevels));
    }
    bool const isData =
        !open_.empty() && open_.back().member != nullptr && open_.back().member->first == "data";
    open_.push_back({Put(std::move(container)), nullptr});
    if (dataDepth_ == 0 && isData) dataDepth_ = open_.size();
  }

  void Close() {
    if (dataDepth_ == open_.size()) dataDepth_ = 0;
    open_.pop_back();
  }

  JsonTree& tree_;
  std::string_view text_;
  std::string const& fileName_;
  std::vector<Level> open_;
  std::size_t dataDepth_ = 0;  // number of open levels at the outermost "data" member; 0 outside
};

JsonTree::JsonTree(std::string_view text, std::string const& fileName) {
  if (text.size() > kMostBytes) {
    throw DocumentError(fmt::format("{}: {} bytes are more than 64 MiB; keep the data in a file of its own",
                                    fileName, text.size()));
  }
  try {
    CheckText(text, fileName);
  } catch (DataError const& error) {
    throw DocumentError(error.what());
  }
  text = WithoutByteOrderMark(text);
  Builder builder(*this, text, fileName);
  Json::sax_parse(text.begin(), text.end(), &builder);
}

std::vector<JsonTree::Member const*> JsonTree::GetMembers(Json const& object) const {
  auto const& members = object.get_ref<Json::object_t const&>();
  if (auto const order = orders_.find(&members); order != orders_.end()) return order->second;
  std::vector<Member const*> byName;
  for (auto const& member : members) byName.push_back(&member);
  return byName;
}

std::string MemberPath(std::string const& path, std::string_view key) {
  if (IsPlainName(key) && key.size() <= 64) return fmt::format("{}.{}", path, key);
  auto quoted = QuoteText(key);
  quoted.front() = '\'';
  quoted.back() = '\'';
  return fmt::format("{}[{}]", path, quoted);
}

std::string QuoteText(std::string_view text) {
  constexpr std::size_t kMostBytes = 64;
  auto const beginning = Beginning(text, kMostBytes);
  auto const isCut = beginning.size() < text.size();
  return nlohmann::json(std::string(beginning) + (isCut ? "..." : "")).dump();
}

std::string ReadDocumentFile(std::filesystem::path const& path) {
  std::error_code error;
  auto const status = std::filesystem::status(path, error);
  if (!std::filesystem::exists(status)) throw DocumentError(path.string() + ": there is no such file");
  if (!std::filesystem::is_regular_file(status)) throw DocumentError(path.string() + ": is not a file");
  std::ifstream file(path, std::ios::binary);
  if (!file) throw DocumentError(path.string() + ": can't be opened for reading");
  // One byte more than is allowed tells that the file is too long, also one that grows meanwhile.
  auto const size = std::filesystem::file_size(path, error);
  auto const wanted = error ? JsonTree::kMostBytes : std::min<std::uintmax_t>(size, JsonTree::kMostBytes);
  std::string text(static_cast<std::size_t>(wanted) + 1, '\0');
  file.read(text.data(), static_cast<std::streamsize>(text.size()));
  if (file.bad()) throw DocumentError(path.string() + ": can't be read");
  text.resize(static_cast<std::size_t>(file.gcount()));
  if (text.size() > JsonTree::kMostBytes) {
    throw DocumentError(path.string() + ": is larger than 64 MiB; keep the data in a file of its own");
  }
  return text;
}

}  // namespace ostrel::charts
