#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>

#include "ChartDrawing.h"
#include "TestPaths.h"

namespace ostrel::charts {
namespace {

namespace fs = std::filesystem;

/// Set to write the pictures anew instead of comparing them; refused where CI is set.
constexpr char const* kRegenerate = "OSTREL_REGENERATE_GOLDEN";
constexpr std::size_t kLargestPicture = 20'000;

fs::path GoldenFolder() { return fs::path(OSTREL_SOURCE_DIR) / "tests/charts/golden"; }

std::string ReadFile(fs::path const& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Every document of the folder, NAME.vl.json, is drawn and compared with NAME.svg.
TEST(GoldenPictures, AreDrawnAsTheyStand) {
  bool const isRegenerating = std::getenv(kRegenerate) != nullptr;
  ASSERT_FALSE(isRegenerating && std::getenv("CI") != nullptr) << kRegenerate << " is refused in CI";
  ChartDrawing const drawing;
  std::set<fs::path> documents;
  std::set<fs::path> pictures;
  for (auto const& entry : fs::directory_iterator(GoldenFolder())) {
    (entry.path().extension() == ".svg" ? pictures : documents).insert(entry.path());
  }
  ASSERT_FALSE(documents.empty());
  for (fs::path const& document : documents) {
    fs::path const picture = GoldenFolder() / (document.stem().stem().string() + ".svg");
    std::string const svg = drawing.DrawSvg(ReadFile(document), GoldenFolder());
    EXPECT_LT(svg.size(), kLargestPicture) << picture;
    if (isRegenerating) {
      std::ofstream(picture, std::ios::binary) << svg;
      continue;
    }
    EXPECT_EQ(pictures.erase(picture), 1u) << picture << " is missing";
    EXPECT_EQ(svg, ReadFile(picture)) << picture;
  }
  for (fs::path const& picture : pictures) {
    if (!isRegenerating) ADD_FAILURE() << picture << " belongs to no document";
  }
}

}  // namespace
}  // namespace ostrel::charts
