#include "ostrel/RequestJson.h"

#include <fmt/format.h>

#include <vector>

namespace ostrel::program {
namespace {

constexpr std::size_t kMostLevels = 200;

// The library's messages begin with an id for programmers: "[json.exception.parse_error.101] parse error at
// line 1, column 5: ...". A request is one line, so that the column is all there is to tell.
std::string ShortenCause(std::string cause) {
  if (auto const end = cause.find("] "); cause.starts_with('[') && end != std::string::npos) {
    cause.erase(0, end + 2);
  }
  if (auto const line = cause.find("line 1, "); line != std::string::npos) cause.erase(line, 8);
  constexpr std::size_t kMostBytes = 300;
  if (cause.size() > kMostBytes) cause = cause.substr(0, kMostBytes) + "...";
  return cause;
}

class RequestBuilder final : public nlohmann::json_sax<Json> {
 public:
  bool null() override { return Put(nullptr); }
  bool boolean(bool value) override { return Put(value); }
  bool number_integer(std::int64_t value) override { return Put(value); }
  bool number_unsigned(std::uint64_t value) override { return Put(value); }
  bool number_float(double value, std::string const&) override { return Put(value); }
  bool string(std::string& value) override { return Put(std::move(value)); }
  bool binary(Json::binary_t&) override { return false; }
  bool start_object(std::size_t) override { return Open(Json::object()); }
  bool start_array(std::size_t) override { return Open(Json::array()); }
  bool end_object() override { return Close(); }
  bool end_array() override { return Close(); }

  bool key(std::string& name) override {
    auto [member, isNew] = open_.back()->get_ref<Json::object_t&>().try_emplace(std::move(name), nullptr);
    if (!isNew) throw InvalidRequest(fmt::format("the property {} stands twice", Json(member->first).dump()));
    member_ = &member->second;
    return true;
  }

  bool parse_error(std::size_t position, std::string const&, Json::exception const& error) override {
    std::string const cause = ShortenCause(error.what());
    throw InvalidRequest(cause.starts_with("parse error at") ? cause
                                                             : fmt::format("column {}: {}", position, cause));
  }

  Json TakeRoot() { return std::move(root_); }

 private:
  template <class T>
  bool Put(T&& value) {
    *MakePlace() = std::forward<T>(value);
    return true;
  }

  Json* MakePlace() {
    if (open_.empty()) return &root_;
    if (open_.back()->is_object()) return member_;
    return &open_.back()->get_ref<Json::array_t&>().emplace_back();
  }

  bool Open(Json container) {
    if (open_.size() == kMostLevels) {
      throw InvalidRequest(fmt::format("nested deeper than {} levels", kMostLevels));
    }
    Json* const place = MakePlace();
    *place = std::move(container);
    open_.push_back(place);
    return true;
  }

  bool Close() {
    open_.pop_back();
    return true;
  }

  Json root_;
  std::vector<Json*> open_;
  Json* member_ = nullptr;
};

}  // namespace

std::string JsonPlace::GetPath() const {
  if (parent_ == nullptr) return "$";
  std::string const parent = parent_->GetPath();
  if (member_.data() == nullptr) return fmt::format("{}[{}]", parent, index_);
  bool const isWord =
      !member_.empty() && member_.find_first_not_of(
                              "abcdefghijklmnopqrstuvwxyz"
                              "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_") == std::string_view::npos;
  return isWord ? fmt::format("{}.{}", parent, member_)
                : fmt::format("{}[{}]", parent, Json(std::string(member_)).dump());
}

void JsonPlace::Fail(std::string const& cause) const { throw InvalidRequest(GetPath() + ": " + cause); }

Json ParseRequest(std::string_view line) {
  RequestBuilder builder;
  Json::sax_parse(line.begin(), line.end(), &builder);
  return builder.TakeRoot();
}

std::string DescribeJson(Json const& json) {
  if (json.is_array()) return "an array";
  if (json.is_object()) return "an object";
  std::string text = json.dump(-1, ' ', true);
  constexpr std::size_t kMostBytes = 60;
  return text.size() > kMostBytes ? text.substr(0, kMostBytes) + "..." : text;
}

}  // namespace ostrel::program
