#pragma once

#include <cstddef>
#include <vector>

// The spiral of Archimedes along which words look for a place: its turns are 5 units apart and so are, about,
// its candidates. The angles do not depend on a word, so the candidates' offsets from the start point are
// worked out once for all words, as far as any of them gets.
namespace OstrelTransforms::WordCloud {

class Spiral {
 public:
  struct Offset {
    double x, y;
  };

  // Candidates come in blocks, so that what is known of a block fits a word of bits.
  static constexpr std::size_t kBlockSize = 64;
  // No word tries more candidates than these.
  static constexpr std::size_t kMostCandidates = 10'000'000;

  // The offsets of a block's candidates; they move when a further block is asked for.
  Offset const* GetBlock(std::size_t block) {
    while (block >= angles_.size()) AddBlock();
    return offsets_.data() + block * kBlockSize;
  }

  // The least and the greatest offsets of a block that was asked for.
  struct Extent {
    Offset least, greatest;
  };
  Extent const& GetExtent(std::size_t block) const { return extents_[block]; }

  // Whether all candidates of a block that was asked for lie within a radius.
  bool IsWithin(std::size_t block, double radius) const { return lastRadii_[block] <= radius; }

  // How many candidates of a block that was asked for lie within a radius.
  std::size_t CountWithin(std::size_t block, double radius) const;

  // A block before which all candidates lie within a radius, among the blocks known.
  std::size_t FindBlock(double radius) const;

 private:
  void AddBlock();

  std::vector<Offset> offsets_;
  std::vector<Extent> extents_;
  std::vector<double> angles_;     // of each block's first candidate
  std::vector<double> lastRadii_;  // of each block's last candidate
  double nextAngle_ = 0;
};

}  // namespace OstrelTransforms::WordCloud
