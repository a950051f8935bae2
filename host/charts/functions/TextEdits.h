#pragma once

#include <string>
#include <string_view>

/// Texts cut and put together. Positions count UTF-16 units; a position that is NaN is 0, and fractions are
/// cut off.
namespace ostrel::charts {

/// From one position up to another; both are held within the text, and the smaller comes first.
std::u16string_view Substring(std::u16string_view text, double start, double end);
/// The same, but a position below 0 counts from the text's end, and an end before the start gives nothing.
std::u16string_view SliceText(std::u16string_view text, double start, double end);

/// -1 where there is none.
double FindText(std::u16string_view text, std::u16string_view part);
double FindLastText(std::u16string_view text, std::u16string_view part);
/// The first place where the part stands.
std::u16string ReplaceFirst(std::u16string_view text, std::u16string_view part,
                            std::u16string_view replacement);

/// How many parts a separator divides the text into; the empty one parts all units.
int CountParts(std::u16string_view text, std::u16string_view separator);
/// One of them; false when there is none of this number (from 0).
bool FindPart(std::u16string_view text, std::u16string_view separator, double number,
              std::u16string_view& part);

std::u16string_view TrimText(std::u16string_view text);

enum class TextSide { Left, Center, Right };

/// The text with as many copies of a character at one side, or at both (the odd one at the right), as make it
/// so long.
std::u16string PadText(std::u16string_view text, double length, std::u16string_view character, TextSide side);
/// A text longer than `length` with an ellipsis in the place of what is cut off at one side or in the middle.
std::u16string TruncateText(std::u16string_view text, double length, TextSide side,
                            std::u16string_view ellipsis);

/// The shortest digits that read back to the number, with an exponent from 1e21 on and below 1e-6.
std::string DescribeNumber(double number);
/// The number that a text begins with, behind blanks: "12.5 kg" is 12.5. NaN when there is none.
double ReadLeadingNumber(std::string_view text);
/// The same for a whole number.
double ReadLeadingInteger(std::string_view text);

}  // namespace ostrel::charts
