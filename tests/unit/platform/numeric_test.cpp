#include "platform/numeric.h"

#include <gtest/gtest.h>

#include <cmath>

#include "platform/faults.h"

namespace dpm {
namespace {

TEST(Numeric, RoundingIsHalfToEven) {
  struct Case {
    double value;
    int32_t rounded;
  };
  for (const Case c : {Case{0.5, 0}, Case{1.5, 2}, Case{2.5, 2}, Case{-0.5, 0}, Case{-1.5, -2}, Case{-2.5, -2},
                       Case{2.4999, 2}, Case{2.5001, 3}, Case{33.333, 33}, Case{16.667, 17}}) {
    EXPECT_EQ(ToInt16(c.value), c.rounded) << c.value;
    EXPECT_EQ(ToInt32(c.value), c.rounded) << c.value;
  }
}

TEST(Numeric, OutOfRangeIsAnOverflowFault) {
  EXPECT_EQ(ToInt16(32767.4), 32767);
  EXPECT_EQ(ToInt16(-32768.5), -32768);  // ties to even stays inside
  EXPECT_THROW(ToInt16(32767.5), OverflowFault);
  EXPECT_THROW(ToInt16(-32769), OverflowFault);
  EXPECT_EQ(ToInt32(2147483647.0), 2147483647);
  EXPECT_THROW(ToInt32(2147483647.5), OverflowFault);
  EXPECT_THROW(ToInt32(std::nan("")), OverflowFault);
}

TEST(Numeric, LeadingNumberReadsTheLongestPrefix) {
  struct Case {
    const char* text;
    double value;
  };
  const Case cases[] = {
      {"", 0},         {"abc", 0},         {"12", 12},
      {" 1 2 3", 123}, {"-12.5 V", -12.5}, {"+7", 7},
      {".5", 0.5},     {"5.", 5},          {"1.2.3", 1.2},
      {"1e3", 1000},   {"1E+2x", 100},     {"2D2", 200},
      {"3E", 3},       {"-", 0},           {" - 012. 34", -12.34},
      {"12ab34", 12},  {"\t4\n2", 42},     {"  +0012.50 kg", 12.5},
      {"0x1F", 0},     {"-.", 0},
  };
  for (const auto& c : cases) EXPECT_DOUBLE_EQ(LeadingNumber(c.text), c.value) << '"' << c.text << '"';
}

TEST(Numeric, NumberTextHasALeadingBlankWhenNotNegative) {
  EXPECT_EQ(NumberText(int64_t{0}), " 0");
  EXPECT_EQ(NumberText(int64_t{1234}), " 1234");
  EXPECT_EQ(NumberText(int64_t{-1}), "-1");
  EXPECT_EQ(NumberText(0.0), " 0");
  EXPECT_EQ(NumberText(12.5), " 12.5");
  EXPECT_EQ(NumberText(0.25), " .25");
  EXPECT_EQ(NumberText(-0.25), "-.25");
  EXPECT_EQ(NumberText(100.0), " 100");
  EXPECT_EQ(NumberText(1e20), " 1E+20");
  EXPECT_EQ(NumberText(1.5e-20), " 1.5E-20");
  EXPECT_EQ(SingleNumberText(0.1f), " .1");
  EXPECT_EQ(SingleNumberText(3.14159274f), " 3.141593");
}

TEST(Numeric, HexTextIsUpperCase) {
  EXPECT_EQ(HexText(0), "0");
  EXPECT_EQ(HexText(255), "FF");
  EXPECT_EQ(HexText(0xABCDE), "ABCDE");
  EXPECT_EQ(HexText(-1234), "FFFFFB2E");
  EXPECT_EQ(LeadingHexValue("1fZ9"), 0x1F);
  EXPECT_EQ(LeadingHexValue("Z"), 0);
  // A reply of many words read as one number keeps its last sixteen digits.
  EXPECT_EQ(LeadingHexValue(std::string(84, '1')), 0x1111111111111111);
  EXPECT_EQ(LeadingHexValue("123" + std::string(16, 'F')), -1);
  EXPECT_EQ(HexDigitValue('g'), -1);
}

TEST(Numeric, Pictures) {
  struct Case {
    double value;
    const char* picture;
    const char* text;
  };
  const Case cases[] = {
      {3.14159, "0.00", "3.14"},      {0.005, "0.00", "0.01"},  {-2.5, "0.00", "-2.50"},
      {12.4, "#####0", "12"},         {0.0, "#####0", "0"},     {1.5, "######.######", "1.5"},
      {0.25, "######.######", ".25"}, {-0.001, "0.00", "0.00"}, {123456, "0.00", "123456.00"},
  };
  for (const auto& c : cases) EXPECT_EQ(FormatWithPicture(c.value, c.picture), c.text) << c.value << " " << c.picture;
}

TEST(Numeric, MidIsOneBasedAndForgiving) {
  EXPECT_EQ(Mid("ABCDEF", 2, 3), "BCD");
  EXPECT_EQ(Mid("ABCDEF", 5, 10), "EF");
  EXPECT_EQ(Mid("ABCDEF", 7, 1), "");
  EXPECT_EQ(Mid("ABCDEF", 0, 1), "");
  EXPECT_EQ(Mid("ABCDEF", 3), "CDEF");
}

}  // namespace
}  // namespace dpm
