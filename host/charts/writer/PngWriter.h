#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel::charts {

/// Which fonts the pictures of this process are drawn with: those of the given folders, or, without any,
/// those of the machine's usual font folders. As for measuring, only names, weights and slants of the files
/// decide, not the machine's font rules. To be called once, before the first picture. Throws
/// std::runtime_error for a folder that can't be read.
void UsePngFonts(std::vector<std::string> const& directories);

/// Draws an SVG document, as WriteSvg makes it, with `scale` pixels for each of its own. The file stands only
/// when it is complete. Throws std::runtime_error "cannot draw FILE: CAUSE" for a document that is no SVG, a
/// scale that is not above 0 or a picture of more than 32767 pixels a side, and "cannot write FILE: CAUSE".
void WritePng(std::string_view svg, double scale, std::filesystem::path const& path);

}  // namespace ostrel::charts
