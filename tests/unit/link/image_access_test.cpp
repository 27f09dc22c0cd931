#include "link/image_access.h"

#include <gtest/gtest.h>

#include "link/globals.h"

namespace dpm {
namespace {

class ImageAccessTest : public ::testing::Test {
 protected:
  ImageAccessTest() {
    ResetGlobals();
    g.SetupImage = std::string(132, '0');
  }
  void PutDigits(int position, const std::string& digits) { g.SetupImage.replace(position - 1, digits.size(), digits); }
};

struct ReadCase {
  const char* digits;
  int16_t format;
  int16_t dp;
  const char* text;
  int16_t dpAfter;
};

TEST_F(ImageAccessTest, ReadValueWorkedExamples) {
  const ReadCase cases[] = {
      {"0004D2", 2, 3, " +012. 34", 3}, {"0004D2", 12, 3, " 012.34", 3},  {"FFFB2E", 2, 3, " - 012. 34", 3},
      {"FFFB2E", 12, 3, "-012.34", 3},  {"00FFFF", 2, 2, " +6553. 5", 2}, {"00FFFF", 0, 2, " +000-. 1", 2},
      {"0186A0", 3, 1, " +00000.", 1},  {"100001", 4, 3, " +00001.", 1},  {"C00FA0", 4, 2, " - 04. 000", 4},
      {"C00FA0", 14, 2, "-04.000", 4},  {"60FFFF", 4, 1, " +. 65535", 6}, {"000000", 2, 9, " +. 00000", 6},
      {"000000", 2, -3, " +00000.", 1}, {"0004D2", 1, 3, " +000. 00", 3}, {"80FFFF", 4, 6, " - 65535.", 1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.digits) + " format " + std::to_string(c.format));
    PutDigits(61, c.digits);
    int16_t format = c.format;
    int16_t dp = c.dp;
    EXPECT_EQ(ReadValue(format, 61, dp), c.text);
    EXPECT_EQ(dp, c.dpAfter);
    EXPECT_EQ(format, c.format > 9 ? c.format - 10 : c.format);
  }
}

TEST_F(ImageAccessTest, ValueBeyondTheImageReadsAsZeroInItsFormat) {
  g.SetupImage = std::string(120, '0');
  int16_t format = 2;
  int16_t dp = 3;
  EXPECT_EQ(ReadValue(format, 125, dp), " +000. 00");
  format = 14;
  EXPECT_EQ(ReadValue(format, 130, dp), " 00000.") << "an empty scale digit is code 0, brought to 1";
}

struct WriteCase {
  const char* text;
  int16_t format;
  const char* digits;
};

TEST_F(ImageAccessTest, WriteValueWorkedExamples) {
  const WriteCase cases[] = {
      {" 012.34", 2, "0004D2"}, {"-012.34", 2, "FFFB2E"}, {" 00001.", 4, "100001"}, {"-12.345", 4, "C03039"},
      {" .12345", 4, "603039"}, {"-000.00", 2, "000000"}, {"-000.00", 4, "B00000"}, {" 12345", 4, "603039"},
      {"12345", 2, "000929"},  // the first character is the sign place, never a digit
      {" 6553.5", 3, "00FFFF"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    PutDigits(103, "ABCDEF");
    WriteValue(c.format, 103, c.text);
    EXPECT_EQ(g.SetupImage.substr(102, 6), c.digits);
    EXPECT_EQ(g.SetupImage.substr(96, 6), "000000") << "neighbours untouched";
    EXPECT_EQ(g.SetupImage.substr(108, 6), "000000");
  }
}

TEST_F(ImageAccessTest, EveryMagnitudeSurvivesAWriteAndARead) {
  for (int16_t format : {int16_t{2}, int16_t{3}, int16_t{4}}) {
    for (int16_t code = 1; code <= 6; ++code) {
      for (int magnitude : {0, 1, 9, 10, 4660, 65535, 65536, 99999}) {
        for (int sign : {0, 8}) {
          if (format != 4 && sign == 8 && magnitude == 0) continue;  // negative zero is lost outside format 4
          std::string digits;
          char buffer[8];
          std::snprintf(buffer, sizeof buffer, "%05X", magnitude);
          if (format == 4) {
            digits = std::string(1, "0123456789ABCDEF"[code + sign]) + buffer;
          } else {
            std::snprintf(buffer, sizeof buffer, "%06X", sign ? (0x1000000 - magnitude) & 0xFFFFFF : magnitude);
            digits = buffer;
          }
          PutDigits(85, digits);
          int16_t plain = static_cast<int16_t>(format + 10);
          int16_t dp = code;
          const std::string text = ReadValue(plain, 85, dp);
          PutDigits(85, "777777");
          WriteValue(format, 85, text);
          EXPECT_EQ(g.SetupImage.substr(84, 6), digits) << "format " << format << " text '" << text << "'";
        }
      }
    }
  }
}

TEST_F(ImageAccessTest, FieldWorkedExamples) {
  struct Case {
    const char* before;
    int hi, lo;
    int16_t read, value;
    const char* after;
  };
  const Case cases[] = {
      {"A5", 6, 4, 2, 5, "D5"},   {"A5", 0, 0, 1, 0, "A4"},
      {"A5", 1, 1, 0, 1, "A7"},   {"A5", 7, 0, 165, 0x3C, "3C"},  // a whole byte keeps nothing
      {"A5", 7, 0, 165, 7, "07"},                                 // one hexadecimal digit gets its leading zero
      {"00", 1, 0, 0, 5, "05"},                                   // too large for the field: spills into the bits above
      {"FF", 3, 2, 3, 0, "F3"},   {"80", 7, 4, 8, 0x1F, "1F"},    // three digits: only the first two are written
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.before) + " bits " + std::to_string(c.hi) + "-" + std::to_string(c.lo));
    PutDigits(55, c.before);
    EXPECT_EQ(ReadField(c.hi, c.lo, 55), c.read);
    WriteField(c.hi, c.lo, 55, c.value);
    EXPECT_EQ(g.SetupImage.substr(54, 2), c.after);
    EXPECT_EQ(g.SetupImage.substr(52, 2) + g.SetupImage.substr(56, 2), "0000");
  }
}

TEST_F(ImageAccessTest, FieldsPastTheEndReadZeroAndWriteNothing) {
  g.SetupImage = std::string(128, 'F');
  EXPECT_EQ(ReadField(7, 0, 129), 0);
  WriteField(7, 0, 129, 0x12);
  EXPECT_EQ(g.SetupImage, std::string(128, 'F'));
  WriteValue(2, 125, " 00001.");
  EXPECT_EQ(g.SetupImage.substr(124), "0000") << "only the digits the image has are written";
  EXPECT_EQ(g.SetupImage.size(), 128u);
}

TEST_F(ImageAccessTest, NonHexadecimalDigitsEndTheNumber) {
  PutDigits(47, "7Z");
  EXPECT_EQ(ReadField(7, 0, 47), 7);
  PutDigits(61, "00G4D2");
  int16_t format = 2;
  int16_t dp = 1;
  EXPECT_EQ(ReadValue(format, 61, dp), " +00000.");
}

}  // namespace
}  // namespace dpm
