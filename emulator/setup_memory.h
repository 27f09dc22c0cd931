#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

// The meter's memory: 256 words of 16 bits at word addresses 00 to FF. The setup lives in
// three runs of it, and the setup image (the text of hexadecimal digits the program keeps)
// is a view of those runs: digits 1-120 are words 1D down to 00, 121-128 words 6D and 6C,
// 129-132 word 36.
namespace dpm::emulator {

class SetupMemory {
 public:
  static constexpr int kWords = 256;
  static constexpr int kFullImageDigits = 132;

  uint16_t Word(int address) const { return words_[Index(address)]; }
  void SetWord(int address, uint16_t value) { words_[Index(address)] = value; }

  // Takes every whole word the image holds; words it does not reach keep their value.
  // A character that is no hexadecimal digit counts 0.
  void LoadImage(std::string_view image);
  // The image as the meter would give it back, the first `digits` digits (120, 128 or 132).
  std::string Image(int digits = kFullImageDigits) const;

  // The byte at an odd digit position of the image, 1 to 131.
  uint8_t Byte(int position) const;
  void SetByte(int position, uint8_t value);
  // Bits lo to hi of the byte at the digit position, shifted down.
  int Bits(int hi, int lo, int position) const;
  // Six digits at the position as a 24-bit two's complement number.
  int32_t Signed24(int position) const;

  // Where a digit position of the image lives: the word address and whether it is in the
  // word's high byte.
  struct Place {
    int address;
    bool highByte;
  };
  static Place PlaceOfDigit(int position);

 private:
  static std::size_t Index(int address) { return static_cast<std::size_t>(address) & (kWords - 1); }

  std::array<uint16_t, kWords> words_{};
};

// Digit position of a word of the main run (00 to 1D).
constexpr int MainRunPosition(int address) { return 1 + 4 * (0x1D - address); }

// Four upper-case hexadecimal digits.
std::string WordText(uint16_t word);

}  // namespace dpm::emulator
