#include <hb-aat.h>
#include <hb-ot.h>

#include <vector>

#include "services/ContextRules.h"
#include "services/FontFace.h"
#include "services/LayoutTable.h"
#include "services/PairAdvances.h"

namespace ostrel::services {

namespace {

using SetHandle = std::unique_ptr<hb_set_t, Freer<hb_set_destroy>>;
using Slots = std::bitset<PairSlots::kCount>;

// What the shaper turns on by itself for horizontal text.
constexpr hb_tag_t kFeatures[] = {HB_TAG('a', 'b', 'v', 'm'),
                                  HB_TAG('b', 'l', 'w', 'm'),
                                  HB_TAG('c', 'a', 'l', 't'),
                                  HB_TAG('c', 'c', 'm', 'p'),
                                  HB_TAG('c', 'l', 'i', 'g'),
                                  HB_TAG('c', 'u', 'r', 's'),
                                  HB_TAG('d', 'i', 's', 't'),
                                  HB_TAG('k', 'e', 'r', 'n'),
                                  HB_TAG('l', 'i', 'g', 'a'),
                                  HB_TAG('l', 'o', 'c', 'l'),
                                  HB_TAG('l', 't', 'r', 'a'),
                                  HB_TAG('l', 't', 'r', 'm'),
                                  HB_TAG('m', 'a', 'r', 'k'),
                                  HB_TAG('m', 'k', 'm', 'k'),
                                  HB_TAG('r', 'a', 'n', 'd'),
                                  HB_TAG('r', 'c', 'l', 't'),
                                  HB_TAG('r', 'l', 'i', 'g'),
                                  HB_TAG('r', 'v', 'r', 'n'),
                                  HB_TAG_NONE};
constexpr hb_tag_t kScripts[] = {HB_TAG('D', 'F', 'L', 'T'), HB_TAG('d', 'f', 'l', 't'),
                                 HB_TAG('l', 'a', 't', 'n'), HB_TAG_NONE};

constexpr unsigned kLigatureSubstitution = 4;
constexpr unsigned kLastMarkPositioning = 6;

class Analysis {
 public:
  Analysis(hb_face_t* face, hb_font_t* font) : face_(face) {
    for (int slot = 0; slot < PairSlots::kCount; ++slot) {
      hb_codepoint_t glyph = 0;
      char16_t const character = PairSlots::GetCharacter(slot);
      if (character == 0 || !hb_font_get_nominal_glyph(font, character, &glyph)) glyph = 0;
      glyphs_[static_cast<std::size_t>(slot)] = glyph;
      if (glyph == 0) limits_.toBeShaped.set(static_cast<std::size_t>(slot));
    }
  }

  PairLimits Run() {
    // Apple's tables are state machines over whole texts.
    if (hb_aat_layout_has_substitution(face_) || hb_aat_layout_has_positioning(face_)) {
      limits_.toBeShaped.set();
      return limits_;
    }
    AddSubstitutions();
    AddPositioning();
    return limits_;
  }

 private:
  SetHandle CollectLookups(hb_tag_t table) const {
    SetHandle lookups(hb_set_create());
    hb_ot_layout_collect_lookups(face_, table, kScripts, nullptr, kFeatures, lookups.get());
    return lookups;
  }

  // The slots whose glyphs the lookup matches, or also looks at before and behind those that it changes.
  Slots FindSlots(hb_tag_t table, unsigned lookup, bool context) const {
    SetHandle const before(hb_set_create());
    SetHandle const input(hb_set_create());
    SetHandle const after(hb_set_create());
    hb_ot_layout_lookup_collect_glyphs(face_, table, lookup, before.get(), input.get(), after.get(), nullptr);
    if (context) {
      hb_set_union(input.get(), before.get());
      hb_set_union(input.get(), after.get());
    }
    Slots result;
    for (std::size_t slot = 0; slot < glyphs_.size(); ++slot) {
      if (glyphs_[slot] != 0 && hb_set_has(input.get(), glyphs_[slot])) result.set(slot);
    }
    return result;
  }

  void AddSubstitutions() {
    auto const types = ReadLookupTypes(face_, HB_OT_TAG_GSUB);
    SetHandle const lookups = CollectLookups(HB_OT_TAG_GSUB);
    hb_codepoint_t lookup = HB_SET_VALUE_INVALID;
    while (hb_set_next(lookups.get(), &lookup)) {
      unsigned const type = lookup < types.size() ? types[lookup] : 0;
      if (type == kLigatureSubstitution) {
        AddLigatures(lookup, FindSlots(HB_OT_TAG_GSUB, lookup, false));
      } else if (type >= 1 && type < kLigatureSubstitution) {
        limits_.toBeShaped |= FindSlots(HB_OT_TAG_GSUB, lookup, false);
      } else {
        AddContext(HB_OT_TAG_GSUB, lookup);
      }
    }
  }

  void AddContext(hb_tag_t table, unsigned lookup) {
    auto const starts = FindContextStarts(face_, table, lookup, glyphs_);
    limits_.toBeShaped |= starts ? *starts : FindSlots(table, lookup, true);
  }

  void AddLigatures(unsigned lookup, Slots const& parts) {
    std::vector<std::size_t> slots;
    for (std::size_t slot = 0; slot < glyphs_.size(); ++slot) {
      if (parts[slot]) slots.push_back(slot);
    }
    // A font that joins many characters would take long to ask; all of them may begin something then.
    constexpr std::size_t most = 12;
    for (std::size_t const first : slots) {
      if (slots.size() > most || MayBegin(lookup, first, slots)) limits_.ligatureStarts.set(first);
    }
    limits_.ligatureParts |= parts;
  }

  bool MayBegin(unsigned lookup, std::size_t first, std::vector<std::size_t> const& parts) const {
    hb_codepoint_t glyphs[4] = {glyphs_[first]};
    auto const substitutes = [&](unsigned count) {
      return hb_ot_layout_lookup_would_substitute(face_, lookup, glyphs, count, false) != 0;
    };
    for (std::size_t const second : parts) {
      glyphs[1] = glyphs_[second];
      if (substitutes(2)) return true;
      for (std::size_t const third : parts) {
        glyphs[2] = glyphs_[third];
        if (substitutes(3)) return true;
        for (std::size_t const fourth : parts) {
          glyphs[3] = glyphs_[fourth];
          if (substitutes(4)) return true;
        }
      }
    }
    return false;
  }

  void AddPositioning() {
    auto const types = ReadLookupTypes(face_, HB_OT_TAG_GPOS);
    SetHandle const lookups = CollectLookups(HB_OT_TAG_GPOS);
    hb_codepoint_t lookup = HB_SET_VALUE_INVALID;
    while (hb_set_next(lookups.get(), &lookup)) {
      unsigned const type = lookup < types.size() ? types[lookup] : 0;
      // Single values, pairs and the places of marks; a mark has no slot.
      if (type >= 1 && type <= kLastMarkPositioning && type != 3) continue;
      AddContext(HB_OT_TAG_GPOS, lookup);
    }
  }

  hb_face_t* face_;
  SlotGlyphs glyphs_{};
  PairLimits limits_;
};

}  // namespace

PairLimits FindPairLimits(hb_face_t* face, hb_font_t* font) { return Analysis(face, font).Run(); }

}  // namespace ostrel::services
