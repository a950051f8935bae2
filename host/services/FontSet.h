#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace ostrel::services {

class FontFace;
class FontFile;

/// The faces that a text is set in: that of its own font, then the fallback faces in their order.
class FontSet {
 public:
  FontSet(std::uint64_t id, std::vector<FontFile const*> files) : id_(id), files_(std::move(files)) {}

  /// Tells sets apart over the life of the process.
  std::uint64_t GetId() const { return id_; }
  std::size_t GetCount() const { return files_.size(); }
  FontFile const& GetFile(std::size_t position) const { return *files_[position]; }
  FontFace const& GetFace(std::size_t position) const;
  /// The first face from a position on that has a character of the text; GetCount() when there is none.
  std::size_t FindFaceWith(std::u16string_view text, std::size_t from) const;

 private:
  std::uint64_t id_;
  std::vector<FontFile const*> files_;
};

}  // namespace ostrel::services
