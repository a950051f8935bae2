#pragma once

namespace ostrel::services {

/// The machine's usual font folders, as elements of a fontconfig document: what is measured with and what
/// pictures are drawn with come from the same ones.
inline constexpr char kMachineFontFolders[] =
    R"(<dir>/usr/share/fonts</dir><dir>/usr/local/share/fonts</dir><dir prefix="xdg">fonts</dir>)";

}  // namespace ostrel::services
