#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ostrel::charts {

/// Throws DataError with line, column and offset of the first NUL byte or ill-formed UTF-8 sequence. Gives
/// the number of CR and LF bytes.
std::size_t CheckText(std::string_view text, std::string const& sourceName);

/// "cars.csv:17:8" of a byte's offset; columns count characters, a line ends with LF, CR or both.
std::string DescribePlace(std::string_view text, std::size_t offset, std::string const& sourceName);

/// The text without the byte order mark that it may begin with.
std::string_view WithoutByteOrderMark(std::string_view text);

}  // namespace ostrel::charts
