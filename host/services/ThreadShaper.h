#pragma once

#include <hb.h>

#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "services/FontFace.h"

struct UBiDi;

namespace ostrel::services {

class FontSet;

/// The shaping objects of one thread.
class ThreadShaper {
 public:
  static ThreadShaper& Get();

  struct PlainResult {
    int count;  ///< glyphs
    int advance;
    int lastAdvance;
  };
  /// A left-to-right text of few characters in one face.
  PlainResult ShapePlain(FontFace const& face, hb_script_t script, std::u16string_view text);

  /// The width in ems of a text without control characters, cut by direction, script and what faces have.
  double MeasureEms(std::u16string_view text, FontSet const& fonts);

  ThreadShaper(ThreadShaper const&) = delete;
  ThreadShaper& operator=(ThreadShaper const&) = delete;
  ~ThreadShaper();

 private:
  using BufferHandle = std::unique_ptr<hb_buffer_t, Freer<hb_buffer_destroy>>;
  struct Run {
    int start;
    int end;
    hb_script_t script;
    bool rightToLeft;
  };
  struct Range {
    int start;
    int end;
  };

  ThreadShaper();
  hb_font_t* GetFont(FontFace const& face);
  void Shape(FontFace const& face, Run const& run, std::u16string_view text);
  void FindRuns(std::u16string_view text);
  void AddScriptRuns(std::u16string_view text, Range range, bool rightToLeft);
  double MeasureRun(std::u16string_view text, Run const& run, FontSet const& fonts, std::size_t from);
  void FindMissing(Run const& run, std::vector<Range>& missing, std::int64_t& units);

  BufferHandle buffer_;
  hb_language_t language_;
  UBiDi* bidi_ = nullptr;
  std::unordered_map<std::uint64_t, FontHandle> fonts_;
  std::vector<Run> runs_;
};

}  // namespace ostrel::services
