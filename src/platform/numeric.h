#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The number rules every part of the program shares: how numbers become integers, how
// text is read as a number and how numbers are written as text.
namespace dpm {

// Rounds to the nearest integer, ties to even; OverflowFault when it does not fit.
int16_t ToInt16(double value);
int32_t ToInt32(double value);

// Reads the longest numeric prefix of the text: blanks, tabs and line feeds anywhere are
// skipped, then an optional sign, digits, an optional point with digits and an optional
// exponent (E or D). A text with no number counts 0.
double LeadingNumber(std::string_view text);

// Number text: a leading blank when not negative, "-" when negative. Fractions show no
// zero before the point (" .5"), whole numbers show no point, at most 15 significant
// digits (7 for the single-precision form), an exponent "E+nn" for very large or small values.
std::string NumberText(double value);
std::string NumberText(int64_t value);
std::string SingleNumberText(float value);

// Upper-case hexadecimal without leading zeros; a negative value is shown as its 32-bit
// two's complement ("FFFFFB2E" for -1234).
std::string HexText(int64_t value);

// The value of one hexadecimal digit, or -1 when the character is none.
int HexDigitValue(char c);

// The value of the leading hexadecimal digits of the text; reading stops at the first
// character that is not a hexadecimal digit, and a text without one counts 0. Of a run
// longer than 16 digits (a long reply where a word was awaited) the last 16 count.
int64_t LeadingHexValue(std::string_view text);

// Text with a numeric picture: "0" a digit that is always shown, "#" a digit shown only
// when significant, "." the decimal point. "0.00" gives "3.14" for 3.14159, "#####0"
// gives "12" for 12.4.
std::string FormatWithPicture(double value, std::string_view picture);

// The characters of the text from one-based position `start`, at most `length` of them;
// a start past the end gives an empty text.
std::string Mid(std::string_view text, std::size_t start, std::size_t length = std::string::npos);

}  // namespace dpm
