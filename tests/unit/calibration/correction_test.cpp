#include "calibration/correction.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "calibration/range_tables.h"
#include "platform/faults.h"

namespace dpm::testing {
namespace {

// A correction as the screen computes it, with the word and the out-of-range line expected,
// worked out by hand.
struct Correction {
  const char* what;
  bool gain;
  float vDesired, reading, curCal;
  int sigCond, listIndex;
  const char* hex;
  bool outOfRange;
};

class CorrectionCase : public ::testing::TestWithParam<Correction> {};

TEST_P(CorrectionCase, GivesTheWordAndTheLine) {
  const Correction& c = GetParam();
  NewWord word;
  if (c.gain) {
    CalcFS(word, c.vDesired, c.reading, c.curCal, c.sigCond, c.listIndex);
  } else {
    CalcZero(word, c.reading, c.curCal, c.sigCond, c.listIndex);
  }
  EXPECT_EQ(word.NewCalHex, c.hex);
  EXPECT_EQ(word.outOfRange, c.outOfRange);
}

INSTANTIATE_TEST_SUITE_P(Calibration, CorrectionCase,
                         ::testing::Values(
                             // (80000 - 80110) x 3.302 + 32768 = 32404.78
                             Correction{"DcTwoVolts", true, 80000, 80110, 32768, 1, 2, "7E95", false},
                             // 5 + 30 x (2000 - 1990) = 305
                             Correction{"AcZero", false, 0, 1990, 5, 2, 0, "0131", false},
                             // -3 - 20 x 122 / 10 = -247
                             Correction{"LoadCellHiZero", false, 0, 20, -3, 3, 1, "FF09", false},
                             // -3 - 20 x 47 / 10 = -97
                             Correction{"LoadCellLoZero", false, 0, 20, -3, 3, 0, "FF9F", false},
                             // 100 - 10 x 113 / 10 = -13
                             Correction{"TemperatureZero", false, 0, 10, 100, 0, 0, "FFF3", false},
                             // (80000 - 80100) x 3.302 + 0 < 0: held at 0 without the line
                             Correction{"GainBelowZero", true, 80000, 80100, 0, 1, 2, "0000", false},
                             // 65000 + 80000 x 3.302 > 65535: held without the line
                             Correction{"GainAboveTop", true, 80000, 0, 65000, 1, 2, "FFFF", false},
                             // 32644 + 10 x 12.3 = 32767 exactly
                             Correction{"DcZeroAtTop", false, 0, -10, 32644, 1, 0, "7FFF", false},
                             // 32706 + 5 x 12.3 = 32767.5
                             Correction{"DcZeroPastTop", false, 0, -5, 32706, 1, 0, "7FFF", true},
                             // -122000: the load cell stops at -32767, the others at -32768
                             Correction{"LoadCellFarBelow", false, 0, 10000, 0, 3, 1, "8001", true},
                             Correction{"DcFarBelow", false, 0, 10000, 0, 1, 0, "8000", true},
                             // 0 + 30 x (2000 + 5000) = 210000
                             Correction{"AcFarAbove", false, 0, -5000, 0, 2, 0, "7FFF", true},
                             // (8000 - 7990) x 30.78 + 30000 = 30307.8
                             Correction{"DcFiveAmps", true, 8000, 7990, 30000, 1, 9, "7664", false}),
                         [](const auto& info) { return std::string(info.param.what); });

TEST(MakeHex, RoundsHalfToEvenAndKeepsFourDigits) {
  struct Case {
    float value;
    bool signedForm;
    const char* hex;
  };
  const std::vector<Case> cases = {{2.5f, false, "0002"},  {3.5f, false, "0004"}, {65535.4f, false, "FFFF"},
                                   {-0.4f, false, "0000"}, {-1.5f, true, "FFFE"}, {-0.5f, true, "0000"},
                                   {-40000, true, "8000"}, {40000, true, "7FFF"}, {10.0f, true, "000A"},
                                   {255.5f, false, "0100"}};
  for (const Case& c : cases) {
    NewWord word;
    if (c.signedForm) {
      MakeHex2(word, c.value);
    } else {
      MakeHex(word, c.value);
    }
    EXPECT_EQ(word.NewCalHex, c.hex) << c.value;
    EXPECT_FALSE(word.outOfRange);
  }
}

TEST(ReadingText, LosesItsPointAndWordsReadSigned) {
  EXPECT_EQ(RmvDP("+12.345"), "+12345");
  EXPECT_EQ(RmvDP("+80000."), "+80000");
  EXPECT_EQ(RmvDP("-8000.0"), "-80000");
  EXPECT_EQ(RmvDP("+80000"), "+80000");
  EXPECT_EQ(RmvDP(""), "");
  EXPECT_EQ(CalWordValue("FFFF", false), -1);
  EXPECT_EQ(CalWordValue("FFFF", true), 65535);
  EXPECT_EQ(CalWordValue("8000", false), -32768);
  EXPECT_EQ(CalWordValue("7E95", true), 32405);
  EXPECT_EQ(CalWordValue("", true), 0);
}

TEST(RangeTables, ListsAndTheRowsThatStandOut) {
  EXPECT_EQ(RangeNames(0), (std::vector<std::string>{"Zero", "Gain J,K,N,E", "Gain T,S,R", "Cold Junction J,K,N,E",
                                                     "Cold Junction T,S,R", "RTD Current Source"}));
  EXPECT_EQ(RangeNames(1).at(9), "5 A DC");
  EXPECT_EQ(RangeNames(2).at(7), "20 mA AC");
  EXPECT_EQ(RangeNames(3), (std::vector<std::string>{"Zero (Lo Range)", "Zero (Hi Range)", "20 mV DC", "50 mV DC",
                                                     "100 mV DC", "250 mV DC", "500 mV DC"}));
  EXPECT_TRUE(RangeNames(7).empty());
  EXPECT_EQ(FindRange(7, 0), nullptr);
  EXPECT_EQ(FindRange(1, 10), nullptr);

  const CalRange& fiveAmps = *FindRange(1, 9);
  EXPECT_STREQ(fiveAmps.P, "5 A  DC");
  EXPECT_STREQ(fiveAmps.INb, "2 A  DC");
  EXPECT_EQ(fiveAmps.VDesired, 8000);
  EXPECT_STREQ(fiveAmps.NVAdr, "28");
  EXPECT_STREQ(FindRange(2, 6)->P, "2 mA  AC");
  EXPECT_STREQ(FindRange(3, 3)->INb, "40 mV DC");
  EXPECT_STREQ(FindRange(3, 6)->F, "400E-3A");
  EXPECT_EQ(FindRange(3, 1)->JIndx, 31);
  EXPECT_EQ(FindRange(3, 0)->JIndx, 35);
  EXPECT_FLOAT_EQ(FindRange(0, 5)->VDesired, 1356.4f);

  EXPECT_FLOAT_EQ(GainFactor(0, 0), 3.1f);
  EXPECT_FLOAT_EQ(GainFactor(1, 9), 30.78f);
  EXPECT_FLOAT_EQ(GainFactor(2, 5), 10.103f);
  EXPECT_FLOAT_EQ(GainFactor(3, 6), 3.408f);
  EXPECT_EQ(GainFactor(3, 7), 0);
  EXPECT_THROW(GainFactor(1, 10), IndexFault);
}

}  // namespace
}  // namespace dpm::testing
