#include "services/ContextRules.h"

#include <hb-ot.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "services/TableBytes.h"

namespace ostrel::services {

namespace {

using Slots = std::bitset<PairSlots::kCount>;
using SlotValues = std::array<int, PairSlots::kCount>;

class Scanner {
 public:
  Scanner(hb_face_t* face, hb_tag_t table, SlotGlyphs const& glyphs)
      : bytes_(face, table), first_(table == HB_OT_TAG_GSUB ? 5U : 7U) {
    for (std::size_t slot = 0; slot < glyphs.size(); ++slot) {
      if (glyphs[slot] != 0) byGlyph_.emplace_back(glyphs[slot], slot);
    }
    std::sort(byGlyph_.begin(), byGlyph_.end());
  }

  std::optional<Slots> Scan(unsigned lookup) const {
    std::size_t const list = bytes_.UInt16(8);
    std::size_t const at = bytes_.Follow(list, list + 2 + 2 * std::size_t{lookup});
    Slots result;
    unsigned const extension = first_ == 5 ? 7 : 9;
    for (unsigned i = 0; i < bytes_.UInt16(at + 4); ++i) {
      std::size_t subtable = bytes_.Follow(at, at + 6 + 2 * std::size_t{i});
      unsigned type = bytes_.UInt16(at);
      if (type == extension) {
        type = bytes_.UInt16(subtable + 2);
        subtable += bytes_.UInt32(subtable + 4);
      }
      if (type != first_ && type != first_ + 1) return std::nullopt;
      bool const chained = type == first_ + 1;
      unsigned const format = bytes_.UInt16(subtable);
      if (format < 1 || format > 3) return std::nullopt;
      result |= format == 3 ? ScanCoverages(subtable, chained) : ScanRuleSets(subtable, chained, format == 2);
    }
    return result;
  }

 private:
  // Sets a value for each slot whose glyph lies in a range.
  template <typename GetValue>
  void ForRange(unsigned first, unsigned last, SlotValues& values, GetValue getValue) const {
    auto at =
        std::lower_bound(byGlyph_.begin(), byGlyph_.end(), std::pair<hb_codepoint_t, std::size_t>(first, 0));
    for (; at != byGlyph_.end() && at->first <= last; ++at) values[at->second] = getValue(at->first);
  }

  // The place of each slot's glyph in a coverage table; -1 for one that is not covered.
  SlotValues ReadCoverage(std::size_t at) const {
    SlotValues places;
    places.fill(-1);
    bool const ranges = bytes_.UInt16(at) == 2;
    for (unsigned i = 0; i < bytes_.UInt16(at + 2); ++i) {
      std::size_t const entry = at + 4 + (ranges ? 6 : 2) * std::size_t{i};
      unsigned const first = bytes_.UInt16(entry);
      unsigned const last = ranges ? bytes_.UInt16(entry + 2) : first;
      unsigned const place = ranges ? bytes_.UInt16(entry + 4) : i;
      ForRange(first, last, places, [&](unsigned glyph) { return static_cast<int>(place + glyph - first); });
    }
    return places;
  }

  // The class of each slot's glyph, 0 for those that the table does not name, and -1 for slots without one.
  SlotValues ReadClasses(std::size_t at) const {
    SlotValues classes;
    classes.fill(-1);
    ForRange(0, 0xFFFF, classes, [](unsigned) { return 0; });
    bool const ranges = bytes_.UInt16(at) == 2;
    unsigned const start = ranges ? 0 : bytes_.UInt16(at + 2);
    for (unsigned i = 0; i < bytes_.UInt16(at + (ranges ? 2 : 4)); ++i) {
      std::size_t const entry = at + (ranges ? 4 + 6 * std::size_t{i} : 6 + 2 * std::size_t{i});
      unsigned const first = ranges ? bytes_.UInt16(entry) : start + i;
      unsigned const last = ranges ? bytes_.UInt16(entry + 2) : first;
      int const value = static_cast<int>(bytes_.UInt16(ranges ? entry + 4 : entry));
      ForRange(first, last, classes, [value](unsigned) { return value; });
    }
    return classes;
  }

  static Slots Covered(SlotValues const& places) {
    Slots slots;
    for (std::size_t slot = 0; slot < places.size(); ++slot) slots[slot] = places[slot] >= 0;
    return slots;
  }

  Slots ScanCoverages(std::size_t at, bool chained) const {
    bool possible = true;
    Slots starts;
    std::size_t cursor = at + 2;
    for (int part = 0; part < (chained ? 3 : 1); ++part) {
      unsigned const count = bytes_.UInt16(cursor);
      // Plain rules count their actions in between.
      cursor += chained ? 2 : 4;
      for (unsigned i = 0; i < count; ++i, cursor += 2) {
        Slots const slots = Covered(ReadCoverage(bytes_.Follow(at, cursor)));
        possible = possible && slots.any();
        if (i == 0 && part == (chained ? 1 : 0)) starts = slots;
      }
    }
    return possible ? starts : Slots();
  }

  // Rules by glyph or by class. `values` holds, for the places before, in and behind the input, what each
  // slot's glyph is to a rule.
  Slots ScanRuleSets(std::size_t at, bool chained, bool classes) const {
    SlotValues const covered = ReadCoverage(bytes_.Follow(at, at + 2));
    std::array<SlotValues, 3> values;
    for (std::size_t part = 0; part < 3; ++part) {
      std::size_t const definition = at + 4 + (chained ? 2 * part : 0);
      if (classes) {
        values[part] = ReadClasses(bytes_.Follow(at, definition));
      } else {
        values[part].fill(-1);
        ForRange(0, 0xFFFF, values[part], [](unsigned glyph) { return static_cast<int>(glyph); });
      }
    }
    std::size_t const sets = at + 4 + (classes ? (chained ? 6 : 2) : 0);
    Slots result;
    for (unsigned i = 0; i < bytes_.UInt16(sets); ++i) {
      std::size_t const offset = sets + 2 + 2 * std::size_t{i};
      if (bytes_.UInt16(offset) == 0 || !CanMatch(bytes_.Follow(at, offset), chained, values)) continue;
      for (std::size_t slot = 0; slot < covered.size(); ++slot) {
        int const set = classes ? values[1][slot] : covered[slot];
        if (covered[slot] >= 0 && set == static_cast<int>(i)) result.set(slot);
      }
    }
    return result;
  }

  // Whether any rule of a set asks for nothing that slots do not have.
  bool CanMatch(std::size_t set, bool chained, std::array<SlotValues, 3> const& values) const {
    for (unsigned i = 0; i < bytes_.UInt16(set); ++i) {
      std::size_t cursor = bytes_.Follow(set, set + 2 + 2 * std::size_t{i});
      bool possible = true;
      for (std::size_t part = chained ? 0 : 1; part < (chained ? 3U : 2U); ++part) {
        unsigned count = bytes_.UInt16(cursor);
        cursor += chained ? 2 : 4;
        // The set stands for the first of the input.
        if (part == 1 && count > 0) --count;
        for (unsigned k = 0; k < count; ++k, cursor += 2) {
          int const wanted = static_cast<int>(bytes_.UInt16(cursor));
          auto const& there = values[part];
          possible = possible && std::find(there.begin(), there.end(), wanted) != there.end();
        }
      }
      if (possible) return true;
    }
    return false;
  }

  TableBytes bytes_;
  unsigned first_;
  std::vector<std::pair<hb_codepoint_t, std::size_t>> byGlyph_;
};

}  // namespace

std::optional<Slots> FindContextStarts(hb_face_t* face, hb_tag_t table, unsigned lookup,
                                       SlotGlyphs const& glyphs) {
  try {
    return Scanner(face, table, glyphs).Scan(lookup);
  } catch (TableBytes::OutOfTable const&) {
    return std::nullopt;
  }
}

}  // namespace ostrel::services
