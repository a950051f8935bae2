#pragma once

#include <span>
#include <vector>

// The layout of word clouds on plain numbers.
namespace OstrelTransforms::WordCloud {

struct Words {
  std::span<double const> widths, heights, starts;
};

struct Bounds {
  double width, height;
};

struct Place {
  double left, top;
  bool isShown;
};

// Where each word goes, in the order of the words. The spiral of a word begins at
//
//   x0 = (W - w) * f,  yc = (H + h) / 2
//
// and its candidate at the angle a is the rectangle (x0 + r sin a, yc + r cos a - h, w, h) with r = 5a / 2pi;
// a grows from 0 by 5 / r (5 where r is 0). The first candidate is taken that lies within the bounds and
// overlaps no word placed before, and if there is none up to the reach of the word (the distance from
// (x0, yc) to the farthest corner of the bounds widened by w to the left and by h downwards) the first from
// the first that was not within the bounds on that has a visible part. A word wider or higher than the bounds
// needs but a visible part from the start. Overlap is tested with both rectangles grown by half the gap on
// all sides; it takes more than touching.
//
// A word is not shown if it finds no place, if its reach is not finite, if 10^7 candidates have failed, or if
// the words before have tried 10^10.
//
// What it remembers to search faster takes at most 64 MiB for maps of blocked positions, as much for answers
// kept of candidates, and 24 bytes for each candidate that any word gets to.
std::vector<Place> LayOut(Words const& words, Bounds const& bounds, double gap);

// The largest scale at which the words' area is at most 60 percent of that of the bounds and the widest and
// the highest word fit into them; 1 where nothing limits it, 0 where the bounds are empty. Sizes that are not
// above 0, or not finite, count as none.
double FindScale(std::span<double const> widths, std::span<double const> heights, Bounds const& bounds);

}  // namespace OstrelTransforms::WordCloud
