#pragma once

#include <fontconfig/fontconfig.h>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "services/FontFace.h"
#include "services/FontSet.h"

namespace ostrel::services {

/// A face that a font file holds, opened when it is first used.
class FontFile {
 public:
  /// A description that fontconfig has made of the file; null for one that can't be used: bitmaps, and the
  /// variable font as a whole beside its named instances.
  static std::unique_ptr<FontFile> FromPattern(FcPattern* pattern);

  std::vector<std::string> families;  ///< as written in the file, UTF-8
  std::string path;
  int index = 0;
  int version = 0;
  int weight = 400;  ///< 1 to 1000
  int width = 100;   ///< percent of the normal width
  int slant = 0;

  bool HasCharacter(char32_t character) const { return FcCharSetHasChar(characters_.get(), character) != 0; }
  /// Throws std::runtime_error when the file can't be read.
  FontFace const& Open() const;

 private:
  std::unique_ptr<FcCharSet, Freer<FcCharSetDestroy>> characters_;
  mutable std::once_flag opened_;
  mutable std::unique_ptr<FontFace> face_;
};

/// The fonts that are there, by family. Safe from many threads.
class FontCatalog {
 public:
  /// The fonts of the given folders; without any, those of the machine's usual font folders. Throws
  /// std::runtime_error when a folder can't be read or there is no font.
  explicit FontCatalog(std::vector<std::string> const& directories);
  ~FontCatalog();

  /// Tells catalogs apart over the life of the process.
  std::uint64_t GetId() const { return id_; }
  /// The first family of a CSS list that is there, else the default one, as its files write it. Throws
  /// std::runtime_error when neither is.
  std::string ResolveFamily(std::string const& list) const;
  /// The fallback families that are there, in their order.
  std::vector<std::string> const& GetFallbackFamilies() const { return fallbacks_; }
  /// The fonts for a text in a family and its fallback; lives as long as the catalog.
  FontSet const& GetFontSet(std::string const& list, int weight, int slant) const;

 private:
  struct SetKey {
    std::string family;
    int weight;
    int slant;
    auto operator<=>(SetKey const&) const = default;
  };

  void Add(FcPattern* pattern);
  void AddDirectory(std::string const& directory);
  void AddSystemFonts();
  void Sort();
  FontFile const* Match(std::string const& family, int weight, int slant) const;
  std::string const* FindFamily(std::string_view name) const;

  std::uint64_t id_;
  std::string place_;  ///< where the fonts come from, for messages
  std::vector<std::unique_ptr<FontFile>> files_;
  std::unordered_map<std::string, std::vector<FontFile const*>> families_;  ///< by lower-case name
  std::unordered_map<std::string, std::string> names_;                      ///< lower-case to written name
  std::vector<std::string> fallbacks_;
  mutable std::mutex setsLock_;
  mutable std::map<SetKey, std::unique_ptr<FontSet>> sets_;
};

}  // namespace ostrel::services
