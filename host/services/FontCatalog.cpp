#include "services/FontCatalog.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <tuple>

#include "services/FamilyList.h"
#include "services/FontFolders.h"

namespace ostrel::services {

namespace {

using PatternHandle = std::unique_ptr<FcPattern, Freer<FcPatternDestroy>>;
using ConfigHandle = std::unique_ptr<FcConfig, Freer<FcConfigDestroy>>;

std::uint64_t NextId() {
  static std::atomic<std::uint64_t> last{0};
  return ++last;
}

int GetInteger(FcPattern* pattern, char const* name, int otherwise) {
  int value = 0;
  return FcPatternGetInteger(pattern, name, 0, &value) == FcResultMatch ? value : otherwise;
}

bool GetBool(FcPattern* pattern, char const* name) {
  FcBool value = FcFalse;
  return FcPatternGetBool(pattern, name, 0, &value) == FcResultMatch && value == FcTrue;
}

double GetNumber(FcPattern* pattern, char const* name, double otherwise) {
  double value = 0;
  return FcPatternGetDouble(pattern, name, 0, &value) == FcResultMatch ? value : otherwise;
}

char const* GetText(FcPattern* pattern, char const* name, int position) {
  FcChar8* text = nullptr;
  if (FcPatternGetString(pattern, name, position, &text) != FcResultMatch) return nullptr;
  return reinterpret_cast<char const*>(text);
}

}  // namespace

std::unique_ptr<FontFile> FontFile::FromPattern(FcPattern* pattern) {
  FcCharSet* characters = nullptr;
  char const* const path = GetText(pattern, FC_FILE, 0);
  char const* const format = GetText(pattern, FC_FONTFORMAT, 0);
  bool const outlines =
      format != nullptr && (std::string_view(format) == "TrueType" || std::string_view(format) == "CFF");
  if (path == nullptr || !outlines || GetBool(pattern, FC_VARIABLE)) return nullptr;
  if (FcPatternGetCharSet(pattern, FC_CHARSET, 0, &characters) != FcResultMatch) return nullptr;
  auto file = std::make_unique<FontFile>();
  file->path = path;
  file->index = GetInteger(pattern, FC_INDEX, 0);
  file->version = GetInteger(pattern, FC_FONTVERSION, 0);
  double const weight = GetNumber(pattern, FC_WEIGHT, FC_WEIGHT_NORMAL);
  file->weight = static_cast<int>(std::lround(FcWeightToOpenTypeDouble(weight)));
  file->width = static_cast<int>(std::lround(GetNumber(pattern, FC_WIDTH, FC_WIDTH_NORMAL)));
  file->slant = GetInteger(pattern, FC_SLANT, FC_SLANT_ROMAN) != FC_SLANT_ROMAN ? 1 : 0;
  file->characters_.reset(FcCharSetCopy(characters));
  for (int i = 0; char const* const family = GetText(pattern, FC_FAMILY, i); ++i)
    file->families.emplace_back(family);
  return file;
}

FontFace const& FontFile::Open() const {
  std::call_once(opened_, [this] { face_ = std::make_unique<FontFace>(path, index); });
  return *face_;
}

FontCatalog::FontCatalog(std::vector<std::string> const& directories) : id_(NextId()) {
  for (std::string const& directory : directories) {
    AddDirectory(directory);
    place_ += (place_.empty() ? "" : ", ") + directory;
  }
  if (directories.empty()) AddSystemFonts();
  if (files_.empty()) {
    throw std::runtime_error("no font in " + (place_.empty() ? "the machine's font folders" : place_) +
                             "; install fonts-dejavu-core or pass --font-dir with a folder of fonts");
  }
  Sort();
}

FontCatalog::~FontCatalog() = default;

void FontCatalog::Add(FcPattern* pattern) {
  if (auto file = FontFile::FromPattern(pattern)) files_.push_back(std::move(file));
}

void FontCatalog::AddDirectory(std::string const& directory) {
  namespace fs = std::filesystem;
  try {
    for (auto const& entry : fs::recursive_directory_iterator(directory)) {
      if (!entry.is_regular_file()) continue;
      // Files that are no fonts give nothing.
      FcFontSet* const found = FcFontSetCreate();
      std::unique_ptr<FcFontSet, Freer<FcFontSetDestroy>> const owned(found);
      int count = 0;
      auto const* const path = reinterpret_cast<FcChar8 const*>(entry.path().c_str());
      FcFreeTypeQueryAll(path, static_cast<unsigned>(-1), nullptr, &count, found);
      for (int i = 0; i < found->nfont; ++i) Add(found->fonts[i]);
    }
  } catch (fs::filesystem_error const& error) {
    throw std::runtime_error("the font folder " + directory + " can't be read: " + error.code().message());
  }
}

// A configuration of our own: the machine's caches serve it, its substitution rules do not.
void FontCatalog::AddSystemFonts() {
  std::string const configuration =
      std::string("<?xml version=\"1.0\"?><!DOCTYPE fontconfig SYSTEM \"fonts.dtd\"><fontconfig>") +
      kMachineFontFolders +
      "<cachedir>/var/cache/fontconfig</cachedir><cachedir prefix=\"xdg\">fontconfig</cachedir></fontconfig>";
  ConfigHandle const config(FcConfigCreate());
  auto const* const text = reinterpret_cast<FcChar8 const*>(configuration.c_str());
  if (!FcConfigParseAndLoadFromMemory(config.get(), text, FcTrue) || !FcConfigBuildFonts(config.get())) {
    throw std::runtime_error("the machine's fonts can't be listed");
  }
  FcFontSet const* const fonts = FcConfigGetFonts(config.get(), FcSetSystem);
  for (int i = 0; fonts != nullptr && i < fonts->nfont; ++i) Add(fonts->fonts[i]);
}

void FontCatalog::Sort() {
  // Of one face in several files the newest counts, as it does for browsers.
  auto const order = [](FontFile const& file) { return std::tie(file.path, file.index); };
  std::sort(files_.begin(), files_.end(), [&](auto const& a, auto const& b) {
    return a->version != b->version ? a->version > b->version : order(*a) < order(*b);
  });
  for (auto const& file : files_) {
    for (std::string const& family : file->families) {
      std::string const key = FamilyList::ToKey(family);
      families_[key].push_back(file.get());
      names_.emplace(key, family);
    }
  }
  for (std::string_view const name : FamilyList::GetFallbacks()) {
    if (auto const* const family = FindFamily(name)) fallbacks_.push_back(*family);
  }
  // Folders that a user gives need have none of the usual fonts.
  if (fallbacks_.empty() && !place_.empty())
    fallbacks_.push_back(std::min_element(names_.begin(), names_.end())->second);
}

std::string const* FontCatalog::FindFamily(std::string_view name) const {
  auto const found = names_.find(FamilyList::ToKey(name));
  return found != names_.end() ? &found->second : nullptr;
}

std::string FontCatalog::ResolveFamily(std::string const& list) const {
  for (std::string const& name : FamilyList::Split(list)) {
    auto const* const family = FindFamily(name);
    if (family != nullptr) return *family;
    for (std::string_view const standIn : FamilyList::GetGeneric(name)) {
      if (auto const* const generic = FindFamily(standIn)) return *generic;
    }
  }
  if (!fallbacks_.empty()) return fallbacks_.front();
  throw std::runtime_error("no font for \"" + list + "\": neither it nor " +
                           std::string(FamilyList::GetFallbacks().front()) +
                           " is there; install fonts-dejavu-core or pass --font-dir with a folder of fonts");
}

// The matching of CSS Fonts Level 4, section 5.2: width, then slant, then weight.
FontFile const* FontCatalog::Match(std::string const& family, int weight, int slant) const {
  auto const penalty = [&](FontFile const& file) {
    bool const lighter = weight < 400 || (weight <= 500 && file.weight > 500);
    int distance = std::abs(file.weight - weight);
    // Weights on the side that is asked second come after all those on the first.
    if (weight >= 400 && weight <= 500) {
      if (file.weight < weight) distance += 1000;
      if (file.weight > 500) distance += 2000;
    } else if (lighter ? file.weight > weight : file.weight < weight) {
      distance += 1000;
    }
    return std::tuple(std::abs(file.width - 100), file.slant != slant, distance);
  };
  auto const& files = families_.at(FamilyList::ToKey(family));
  return *std::min_element(files.begin(), files.end(),
                           [&](FontFile const* a, FontFile const* b) { return penalty(*a) < penalty(*b); });
}

FontSet const& FontCatalog::GetFontSet(std::string const& list, int weight, int slant) const {
  // Whole hundreds keep the number of sets small whatever weights a style asks for.
  int const rounded = std::clamp((weight + 50) / 100, 1, 9) * 100;
  SetKey key{ResolveFamily(list), rounded, slant != 0 ? 1 : 0};
  std::lock_guard const lock(setsLock_);
  auto& set = sets_[key];
  if (set) return *set;
  std::vector<FontFile const*> files{Match(key.family, key.weight, key.slant)};
  for (std::string const& family : fallbacks_) {
    if (family != key.family) files.push_back(Match(family, key.weight, key.slant));
  }
  // Faces of other weights have fewer characters; browsers turn to the regular one in the end.
  if (!fallbacks_.empty()) files.push_back(Match(fallbacks_.front(), 400, 0));
  set = std::make_unique<FontSet>(NextId(), std::move(files));
  return *set;
}

}  // namespace ostrel::services
