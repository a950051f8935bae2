#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "ostreltransforms/wordle/PositionMap.h"
#include "ostreltransforms/wordle/WordCloud.h"

namespace OstrelTransforms::WordCloud {

enum class Phase : std::uint8_t { Whole, PartlyVisible };

// Tells for whole stretches of the spiral that a word does not fit there, without a look at any placed word.
//
// Words of about one size form a class. A rectangle of the class' least width and height, held at the word's
// own start fraction, lies within the word, so that where it overlaps something, each word of the class does.
// The class maps the positions at which it would; for words that begin at one point the answers for the
// spiral's candidates are kept as well.
class SizeClasses {
 public:
  SizeClasses(Words const& words, Bounds const& bounds, double gap);

  // What is known for one word in one phase.
  struct Knowledge {
    PositionMap const* map;
    double x, y;                           // the start point in the map's cells
    std::vector<std::uint64_t>* rejected;  // a bit for each candidate, in blocks; null when not kept
  };

  // Makes room for a block's bits in Knowledge::rejected; false when there is no memory left to keep them in.
  bool MakeRoom(std::vector<std::uint64_t>& rejected, std::size_t block);

  // Null map where nothing is known of a word. `placed` holds all words so far, grown by half the gap.
  Knowledge Look(std::size_t word, Phase phase, double reach, std::vector<Rectangle> const& placed);

  // A word has its place; the rectangle is grown by half the gap.
  void Add(Rectangle const& placed);

  // No further look will be taken at a word.
  void Leave(std::size_t word);

 private:
  // The candidates that are rejected for every word of a class with one start fraction.
  struct SharedStart {
    double start = -1;
    std::array<std::vector<std::uint64_t>, 2> rejected;
  };
  struct Class {
    double width, height;  // the least of its words
    double mostWidth, mostHeight;
    std::size_t wordsLeft = 0;
    std::array<PositionMap, 2> maps;  // by phase
    std::array<SharedStart, 4> starts;
    std::size_t nextStart = 0;
  };

  bool IsUsable(double width, double height) const;
  void Divide();
  PositionMap const* FindMap(Class& sizes, Phase phase, std::vector<Rectangle> const& placed);
  void Block(PositionMap& map, Class const& sizes, Rectangle const& placed) const;
  static SharedStart& FindStart(Class& sizes, double start);

  Words words_;
  Bounds bounds_;
  double margin_;  // half the gap, kept within what a map can be asked for
  double slack_;
  PositionMap::Scale scale_{};
  std::vector<std::uint32_t> classOf_;
  std::vector<Class> classes_;
  std::vector<Class*> active_;
  std::size_t mapBytesLeft_;
  std::size_t rejectedBlocksLeft_;
};

}  // namespace OstrelTransforms::WordCloud
