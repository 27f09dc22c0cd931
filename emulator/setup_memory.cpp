#include "emulator/setup_memory.h"

#include <algorithm>

#include "platform/numeric.h"

namespace dpm::emulator {
namespace {

// The runs of the image, in image order; each run holds its words from the highest address down.
struct Run {
  int firstPosition;
  int highAddress;
  int words;
};
constexpr std::array<Run, 3> kRuns = {Run{1, 0x1D, 30}, Run{121, 0x6D, 2}, Run{129, 0x36, 1}};

uint16_t WordFromDigits(std::string_view digits) {
  uint16_t word = 0;
  for (char c : digits) word = static_cast<uint16_t>(word * 16 + std::max(HexDigitValue(c), 0));
  return word;
}

}  // namespace

std::string WordText(uint16_t word) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  return {kHex[(word >> 12) & 0xF], kHex[(word >> 8) & 0xF], kHex[(word >> 4) & 0xF], kHex[word & 0xF]};
}

SetupMemory::Place SetupMemory::PlaceOfDigit(int position) {
  for (const Run& run : kRuns) {
    const int offset = position - run.firstPosition;
    if (offset >= 0 && offset < 4 * run.words) return {run.highAddress - offset / 4, offset % 4 < 2};
  }
  return {-1, false};
}

void SetupMemory::LoadImage(std::string_view image) {
  for (const Run& run : kRuns) {
    for (int i = 0; i < run.words; ++i) {
      const std::size_t at = static_cast<std::size_t>(run.firstPosition - 1 + 4 * i);
      if (at + 4 > image.size()) return;
      SetWord(run.highAddress - i, WordFromDigits(image.substr(at, 4)));
    }
  }
}

std::string SetupMemory::Image(int digits) const {
  std::string image;
  for (const Run& run : kRuns) {
    for (int i = 0; i < run.words; ++i) image += WordText(Word(run.highAddress - i));
  }
  image.resize(static_cast<std::size_t>(std::clamp(digits, 0, kFullImageDigits)));
  return image;
}

uint8_t SetupMemory::Byte(int position) const {
  const Place place = PlaceOfDigit(position);
  if (place.address < 0) return 0;
  const uint16_t word = Word(place.address);
  return static_cast<uint8_t>(place.highByte ? word >> 8 : word & 0xFF);
}

void SetupMemory::SetByte(int position, uint8_t value) {
  const Place place = PlaceOfDigit(position);
  if (place.address < 0) return;
  const uint16_t word = Word(place.address);
  SetWord(place.address, place.highByte ? static_cast<uint16_t>((word & 0x00FF) | (value << 8))
                                        : static_cast<uint16_t>((word & 0xFF00) | value));
}

int SetupMemory::Bits(int hi, int lo, int position) const {
  const int width = hi - lo + 1;
  return (Byte(position) >> lo) & ((1 << width) - 1);
}

int32_t SetupMemory::Signed24(int position) const {
  const int32_t raw = (Byte(position) << 16) | (Byte(position + 2) << 8) | Byte(position + 4);
  return raw >= 0x800000 ? raw - 0x1000000 : raw;
}

}  // namespace dpm::emulator
