#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "services/FamilyList.h"
#include "services/FontCatalog.h"
#include "services/FontService.h"

using namespace ostrel::services;
namespace fs = std::filesystem;

namespace {

class FontFolder {
 public:
  FontFolder() : path_(fs::temp_directory_path() / ("ostrel-fonts-" + std::to_string(getpid()))) {
    fs::remove_all(path_);
    fs::create_directories(path_ / "below");
  }
  ~FontFolder() { fs::remove_all(path_); }
  std::string GetPath() const { return path_.string(); }

  void Link(std::string const& family) const {
    fs::path const file = FontCatalog({}).GetFontSet(family, 400, 0).GetFile(0).path;
    fs::create_symlink(file, path_ / "below" / file.filename());
  }
  void Write(std::string const& name, std::string const& bytes) const {
    std::ofstream(path_ / name) << bytes;
  }

 private:
  fs::path path_;
};

std::string MessageOf(FontOptions const& options) {
  try {
    FontService const service(options);
  } catch (std::runtime_error const& error) {
    return error.what();
  }
  return {};
}

TEST(FamilyList, IsSplitAsInCss) {
  using Names = std::vector<std::string>;
  EXPECT_EQ(FamilyList::Split("A"), Names{"A"});
  EXPECT_EQ(FamilyList::Split(" 'A, B' , \"C\",D E "), (Names{"A, B", "C", "D E"}));
  EXPECT_EQ(FamilyList::Split(""), Names{});
  EXPECT_EQ(FamilyList::Split(" , ''x,,"), Names{"''x"});
  EXPECT_EQ(FamilyList::Split("'open, B"), Names{"'open, B"});
}

TEST(FontCatalog, ResolvesFamilies) {
  struct {
    char const* list;
    char const* family;
  } const rows[] = {{"", "DejaVu Sans"},
                    {"No Such Font", "DejaVu Sans"},
                    {"dejavu SANS mono", "DejaVu Sans Mono"},
                    {"No Such Font, serif", "DejaVu Serif"},
                    {"monospace, DejaVu Sans", "DejaVu Sans Mono"},
                    {"'Noto Sans', DejaVu Sans", "Noto Sans"},
                    {"system-ui", "DejaVu Sans"}};
  FontCatalog const catalog({});
  for (auto const& row : rows) EXPECT_EQ(catalog.ResolveFamily(row.list), row.family) << row.list;
}

TEST(FontCatalog, MatchesWeightAndSlant) {
  FontCatalog const catalog({});
  auto const weight = [&](int wanted) {
    return catalog.GetFontSet("Noto Sans", wanted, 0).GetFile(0).weight;
  };
  for (int const light : {-5, 100, 400, 500}) EXPECT_EQ(weight(light), 400) << light;
  for (int const bold : {600, 700, 900, 5000}) EXPECT_EQ(weight(bold), 700) << bold;
  EXPECT_EQ(catalog.GetFontSet("Noto Sans", 400, 1).GetFile(0).slant, 1);
  EXPECT_EQ(catalog.GetFontSet("Noto Sans", 400, 0).GetFile(0).slant, 0);
  EXPECT_EQ(&catalog.GetFontSet("Noto Sans", 400, 0), &catalog.GetFontSet("no font, noto sans", 420, 0));
}

TEST(FontService, NamesItsFontsForTheBrowser) {
  FontService const service;
  std::string const list = service.GetCssFontFamilyList(OStringCore(u"serif"));
  EXPECT_EQ(list.rfind("'DejaVu Serif', 'DejaVu Sans', 'Noto Sans', ", 0), 0U) << list;
  EXPECT_EQ(list.substr(list.size() - 7), ", serif");
  EXPECT_LT(list.find("'Noto Sans Devanagari'"), list.find("'Droid Sans Fallback'"));
  std::string const sans = service.GetCssFontFamilyList(OStringCore(u"Arial"));
  EXPECT_EQ(sans.find("'DejaVu Sans'"), sans.rfind("'DejaVu Sans'"));
}

TEST(FontService, UsesNothingButTheGivenFolders) {
  FontFolder const folder;
  folder.Link("DejaVu Serif");
  folder.Write("notes.txt", "no font");
  FontService const service({{folder.GetPath()}});
  EXPECT_EQ(service.ResolveFamily(OStringCore(u"DejaVu Sans")), OStringCore(u"DejaVu Serif"));
  EXPECT_EQ(service.GetCssFontFamilyList(OStringCore(u"x")), "'DejaVu Serif', serif");
  FontRequest const font{OStringCore(u"monospace"), 16, 400, 0};
  EXPECT_NEAR(service.MeasureTextWidth(u"AVATAR To Wave", font), 137.641, 0.001);
  EXPECT_GT(service.MeasureTextWidth(u"\u4F60", font), 0);
}

TEST(FontService, SaysWhichFontsAreMissing) {
  EXPECT_EQ(MessageOf({{"/no/such/folder"}}),
            "the font folder /no/such/folder can't be read: No such file or directory");
  FontFolder const folder;
  folder.Write("broken.ttf", std::string("\0\1\0\0\0\20 not really", 18));
  EXPECT_EQ(MessageOf({{folder.GetPath()}}),
            "no font in " + folder.GetPath() +
                "; install fonts-dejavu-core or pass --font-dir with a folder of fonts");
}

TEST(FontService, SurvivesDamagedFonts) {
  std::ifstream file(FontCatalog({}).GetFontSet("DejaVu Sans Mono", 400, 0).GetFile(0).path,
                     std::ios::binary);
  std::string const whole((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  ASSERT_GT(whole.size(), 100'000U);
  for (std::size_t part = 1; part <= 16; ++part) {
    FontFolder const folder;
    std::string bytes = whole.substr(0, part == 16 ? whole.size() : whole.size() * part / 16);
    for (std::size_t at = 5000 * part; at < bytes.size(); at += 4001)
      bytes[at] = static_cast<char>(~bytes[at]);
    folder.Write("damaged.ttf", bytes);
    try {
      FontService const service({{folder.GetPath()}});
      FontRequest const font{OStringCore(u"x"), 16, 400, 0};
      for (char16_t const* text : {u"Hello AVATAR fi", u"\u0628\u0628 \u4F60"})
        service.MeasureTextWidth(text, font);
    } catch (std::runtime_error const& error) {
      EXPECT_NE(std::string(error.what()).find(folder.GetPath()), std::string::npos) << error.what();
    }
  }
}

}  // namespace
