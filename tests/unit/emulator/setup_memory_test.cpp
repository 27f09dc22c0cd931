#include "emulator/setup_memory.h"

#include <gtest/gtest.h>

#include "setup/default_image.h"

namespace dpm::emulator {
namespace {

// An image whose every word is different, so that a word in the wrong place shows.
std::string DistinctImage(std::size_t digits) {
  std::string image;
  for (uint16_t word = 0x1000; image.size() < digits; word = static_cast<uint16_t>(word + 0x0101))
    image += WordText(word);
  return image.substr(0, digits);
}

TEST(SetupMemoryTest, ImagesOfEveryLengthRoundTrip) {
  for (const std::size_t digits : {std::size_t{120}, std::size_t{128}, std::size_t{132}}) {
    SCOPED_TRACE(digits);
    SetupMemory memory;
    memory.LoadImage(DefaultSetupImage(7));
    const std::string image = DistinctImage(digits);
    memory.LoadImage(image);
    EXPECT_EQ(memory.Image(static_cast<int>(digits)), image);
    // Words a short image does not reach keep what they held.
    const std::string full = memory.Image();
    EXPECT_EQ(full.substr(digits), DefaultSetupImage(7).substr(digits));
  }
}

TEST(SetupMemoryTest, PartialWordsAndNonDigitsAreHandledAsAMeterWould) {
  SetupMemory memory;
  memory.SetWord(0x6D, 0x4444);
  memory.LoadImage(std::string(120, '0') + "12");  // half a word: not taken
  EXPECT_EQ(memory.Word(0x6D), 0x4444);
  memory.LoadImage("G0F1");
  EXPECT_EQ(memory.Word(0x1D), 0x00F1);
}

TEST(SetupMemoryTest, BytesAndFieldsByDigitPosition) {
  SetupMemory memory;
  memory.LoadImage(DefaultSetupImage(4));
  EXPECT_EQ(memory.Byte(45), 0x21);
  EXPECT_EQ(memory.Byte(47), 0xD0);
  EXPECT_EQ(memory.Bits(6, 4, 47), 5) << "baud rate index";
  EXPECT_EQ(memory.Byte(121), 0x04);
  EXPECT_EQ(memory.Byte(129), 0x0C);
  EXPECT_EQ(memory.Signed24(61), 20000);
  memory.SetByte(55, 0xC2);
  EXPECT_EQ(memory.Word(0x10), 0x00C2) << "digits 53-56 are word 10";
  memory.SetByte(115, 0xFF);
  memory.SetByte(117, 0xFF);
  memory.SetByte(119, 0xFE);
  EXPECT_EQ(memory.Signed24(115), -2);
  EXPECT_EQ(memory.Image().substr(114, 6), "FFFFFE");
}

}  // namespace
}  // namespace dpm::emulator
