#pragma once

#include <cstdint>
#include <string>

// Reading and writing fields of g.SetupImage, the setup memory as upper-case hexadecimal
// text, two digits a byte, positions counted in digits from 1.
namespace dpm {

// Value formats of the six-digit value fields; 10 more asks for the plain text form.
inline constexpr int16_t kUnsignedFormat = 0;
inline constexpr int16_t kDisplayFormat = 2;
inline constexpr int16_t kInputFormat = 3;
inline constexpr int16_t kScaleFormat = 4;
inline constexpr int16_t kPlainForm = 10;

// Bits lo to hi of the byte at the digit position, shifted down to bit 0.
int16_t ReadField(int hi, int lo, int position);

// Replaces bits lo to hi of the byte at the digit position, keeping the other bits. A
// value too large for the field spills into the bits above it.
void WriteField(int hi, int lo, int position, int16_t value);

// The display text of the value at the position. `format` above 9 is lowered by 10 and
// gives the plain form; `dp` is brought into 1 to 6 and, for the scale format, taken
// from the image.
std::string ReadValue(int16_t& format, int16_t position, int16_t& dp);

// Replaces the six digits at the position from a display text.
void WriteValue(int16_t format, int16_t position, const std::string& text);

// Replaces the digits at a one-based position of the image, as far as the image reaches;
// nothing past its end is written.
void ReplaceImageDigits(int position, const std::string& digits);

}  // namespace dpm
