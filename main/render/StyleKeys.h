#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <unordered_map>

#include "ostrelrtcore/StoreValue.h"
#include "ostreltransforms/Export.h"

namespace runtime {

// A number that a value is known by. Values that are found to be equal take the lower of their numbers, so
// that those which are compared again and again soon share one and are not compared in full any more.
class OSTREL_API SharedIdentity {
 public:
  SharedIdentity() noexcept;
  SharedIdentity(SharedIdentity const&) = delete;
  SharedIdentity& operator=(SharedIdentity const&) = delete;

  bool IsShared(SharedIdentity const& other) const noexcept { return Get() == other.Get(); }
  void Share(SharedIdentity const& other) const noexcept;

 private:
  std::uint64_t Get() const noexcept { return number_.load(std::memory_order_relaxed); }

  std::atomic<std::uint64_t> mutable number_;
};

// What a row of a text style table says about a composition, apart from the wrap mode. A column that the
// table does not have counts as zeros.
struct StyleKey : std::enable_shared_from_this<StyleKey> {
  // All that the runs of the style are laid out by.
  std::shared_ptr<ort::core::StoreValue> textFont;
  double ascent = 0;
  double fontHeight = 0;
  double leading = 0;
  std::uint64_t layoutHash = 0;

  // What is asked of a text's first run.
  ort::core::RIndirectString font;
  double fontSize = 0;
  int color = 0;
  int fontStyle = 0;
  int fontWeight = 0;
  int textDecoration = 0;
  int textOrientation = 0;
  int hAlign = 0;
  int vAlign = 0;
  std::uint64_t hash = 0;  // of everything

  SharedIdentity identity;

  bool HasEqualLayout(StyleKey const& other) const;
  // Reals by their bits.
  friend bool operator==(StyleKey const& a, StyleKey const& b);
};

// The keys of a table's styles, each made when it is first asked for. One thread's object.
class OSTREL_API StyleKeys {
 public:
  explicit StyleKeys(std::shared_ptr<ort::core::StoreValue> table);
  ~StyleKeys();
  StyleKeys(StyleKeys const&) = delete;
  StyleKeys& operator=(StyleKeys const&) = delete;

  // Throws 55 for a style that the table does not have.
  std::shared_ptr<StyleKey const> const& Get(std::uint32_t style);

 private:
  struct Columns;

  std::shared_ptr<ort::core::StoreValue> table_;
  std::unique_ptr<Columns> columns_;
  std::unordered_map<std::uint32_t, std::shared_ptr<StyleKey const>> keys_;
  std::uint32_t lastStyle_ = 0;
  std::shared_ptr<StyleKey const> const* last_ = nullptr;
};

}  // namespace runtime
