#include "services/ThreadShaper.h"

#include <unicode/ubidi.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <cassert>
#include <new>

#include "services/FontSet.h"

namespace ostrel::services {

namespace {

// Beyond these the objects of a thread are made anew, so that one odd text or many fonts don't stay for good.
constexpr std::size_t kMostUnitsKept = 1U << 16U;
constexpr std::size_t kMostFontsKept = 128;

bool IsNeutral(hb_script_t script) {
  return script == HB_SCRIPT_COMMON || script == HB_SCRIPT_INHERITED || script == HB_SCRIPT_UNKNOWN;
}

bool MayHaveRightToLeft(std::u16string_view text) {
  return std::any_of(text.begin(), text.end(), [](char16_t unit) {
    return (unit >= 0x0590 && unit < 0x0900) || (unit >= 0x200E && unit < 0x2070) ||
           (unit >= 0xD800 && unit < 0xE000) || unit >= 0xFB1D;
  });
}

}  // namespace

ThreadShaper& ThreadShaper::Get() {
  thread_local ThreadShaper shaper;
  return shaper;
}

// The language is fixed, since fonts may draw some languages' letters in forms of their own.
ThreadShaper::ThreadShaper() : buffer_(hb_buffer_create()), language_(hb_language_from_string("en", -1)) {}

ThreadShaper::~ThreadShaper() {
  if (bidi_ != nullptr) ubidi_close(bidi_);
}

hb_font_t* ThreadShaper::GetFont(FontFace const& face) {
  auto const found = fonts_.find(face.GetId());
  if (found != fonts_.end()) return found->second.get();
  if (fonts_.size() >= kMostFontsKept) fonts_.clear();
  return fonts_.emplace(face.GetId(), face.MakeFont()).first->second.get();
}

void ThreadShaper::Shape(FontFace const& face, Run const& run, std::u16string_view text) {
  hb_buffer_t* const buffer = buffer_.get();
  hb_buffer_clear_contents(buffer);
  hb_buffer_set_direction(buffer, run.rightToLeft ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
  hb_buffer_set_script(buffer, run.script);
  hb_buffer_set_language(buffer, language_);
  hb_buffer_add_utf16(buffer, reinterpret_cast<std::uint16_t const*>(text.data()),
                      static_cast<int>(text.size()), static_cast<unsigned>(run.start), run.end - run.start);
  hb_shape(GetFont(face), buffer, nullptr, 0);
  if (!hb_buffer_allocation_successful(buffer)) {
    buffer_.reset(hb_buffer_create());
    throw std::bad_alloc();
  }
}

ThreadShaper::PlainResult ThreadShaper::ShapePlain(FontFace const& face, hb_script_t script,
                                                   std::u16string_view text) {
  Shape(face, {0, static_cast<int>(text.size()), script, false}, text);
  unsigned count = 0;
  auto const* const positions = hb_buffer_get_glyph_positions(buffer_.get(), &count);
  PlainResult result{static_cast<int>(count), 0, count > 0 ? positions[count - 1].x_advance : 0};
  for (unsigned i = 0; i < count; ++i) result.advance += positions[i].x_advance;
  return result;
}

// Neutral characters take the script before them, those at the start the first that comes.
void ThreadShaper::AddScriptRuns(std::u16string_view text, Range range, bool rightToLeft) {
  auto* const unicode = hb_unicode_funcs_get_default();
  Run run{range.start, range.start, HB_SCRIPT_COMMON, rightToLeft};
  for (int at = range.start; at < range.end;) {
    int const start = at;
    UChar32 character = 0;
    U16_NEXT(text.data(), at, range.end, character);
    hb_script_t const script = hb_unicode_script(unicode, static_cast<hb_codepoint_t>(character));
    if (IsNeutral(script) || script == run.script) continue;
    if (run.script != HB_SCRIPT_COMMON) {
      run.end = start;
      runs_.push_back(run);
      run.start = start;
    }
    run.script = script;
  }
  run.end = range.end;
  runs_.push_back(run);
}

void ThreadShaper::FindRuns(std::u16string_view text) {
  runs_.clear();
  auto const length = static_cast<int>(text.size());
  if (!MayHaveRightToLeft(text)) {
    AddScriptRuns(text, {0, length}, false);
    return;
  }
  if (bidi_ == nullptr) bidi_ = ubidi_open();
  UErrorCode status = U_ZERO_ERROR;
  ubidi_setPara(bidi_, text.data(), length, 0, nullptr, &status);
  int const count = ubidi_countRuns(bidi_, &status);
  if (U_FAILURE(status)) throw std::bad_alloc();
  for (int i = 0; i < count; ++i) {
    int start = 0;
    int units = 0;
    bool const rightToLeft = ubidi_getVisualRun(bidi_, i, &start, &units) == UBIDI_RTL;
    AddScriptRuns(text, {start, start + units}, rightToLeft);
  }
}

// Adds up the clusters of which the face has everything, and lists the stretches of the others in text order.
void ThreadShaper::FindMissing(Run const& run, std::vector<Range>& missing, std::int64_t& units) {
  unsigned count = 0;
  auto const* const infos = hb_buffer_get_glyph_infos(buffer_.get(), &count);
  auto const* const positions = hb_buffer_get_glyph_positions(buffer_.get(), &count);
  auto const at = [&](unsigned i) { return run.rightToLeft ? count - 1 - i : i; };
  for (unsigned i = 0; i < count;) {
    unsigned const cluster = infos[at(i)].cluster;
    std::int64_t advance = 0;
    bool complete = true;
    for (; i < count && infos[at(i)].cluster == cluster; ++i) {
      complete = complete && infos[at(i)].codepoint != 0;
      advance += positions[at(i)].x_advance;
    }
    if (complete) {
      units += advance;
      continue;
    }
    auto const start = static_cast<int>(cluster);
    int const end = i < count ? static_cast<int>(infos[at(i)].cluster) : run.end;
    if (!missing.empty() && missing.back().end == start) {
      missing.back().end = end;
    } else {
      missing.push_back({start, end});
    }
  }
}

double ThreadShaper::MeasureRun(std::u16string_view text, Run const& run, FontSet const& fonts,
                                std::size_t from) {
  FontFace const& face = fonts.GetFace(from);
  Shape(face, run, text);
  std::vector<Range> missing;
  std::int64_t units = 0;
  FindMissing(run, missing, units);
  double ems = static_cast<double>(units) / face.GetUnitsPerEm();
  for (Range const& range : missing) {
    Run const part{range.start, range.end, run.script, run.rightToLeft};
    auto const stretch =
        text.substr(static_cast<std::size_t>(range.start), static_cast<std::size_t>(range.end - range.start));
    std::size_t const next = fonts.FindFaceWith(stretch, from + 1);
    if (next < fonts.GetCount()) {
      ems += MeasureRun(text, part, fonts, next);
      continue;
    }
    // No font has it: the first one draws its empty boxes.
    FontFace const& first = fonts.GetFace(0);
    Shape(first, part, text);
    unsigned count = 0;
    auto const* const positions = hb_buffer_get_glyph_positions(buffer_.get(), &count);
    std::int64_t boxes = 0;
    for (unsigned i = 0; i < count; ++i) boxes += positions[i].x_advance;
    ems += static_cast<double>(boxes) / first.GetUnitsPerEm();
  }
  return ems;
}

double ThreadShaper::MeasureEms(std::u16string_view text, FontSet const& fonts) {
  FindRuns(text);
  double ems = 0;
  for (Run const& run : runs_) ems += MeasureRun(text, run, fonts, 0);
  if (text.size() > kMostUnitsKept) {
    buffer_.reset(hb_buffer_create());
    if (bidi_ != nullptr) ubidi_close(bidi_);
    bidi_ = nullptr;
    runs_ = {};
  }
  return ems;
}

}  // namespace ostrel::services
