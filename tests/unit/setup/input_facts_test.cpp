#include "setup/input_facts.h"

#include <gtest/gtest.h>

#include "link/globals.h"
#include "link/image_access.h"
#include "setup/image_map.h"
#include "setup/setup_files.h"

namespace dpm {
namespace {

class InputFactsTest : public ::testing::Test {
 protected:
  InputFactsTest() {
    ResetGlobals();
    DefaultData();
  }
};

TEST_F(InputFactsTest, DerivedFacts) {
  struct Case {
    const char* modeRangeByte;
    int16_t resolution, decimalPoint;
    int16_t mode, sigCond, range, inputDp, displayDp;
  };
  const Case cases[] = {
      {"60", 0, 3, 2, 1, 0, 6, 3},   // DC V 0.2 V
      {"64", 3, 1, 2, 1, 4, 1, 1},   // DC V 660 V on a 3 1/2 digit display
      {"73", 3, 2, 3, 1, 3, 3, 2},   // DC A 5 A, one decimal less
      {"C1", 0, 5, 7, 3, 1, 4, 5},   // Strain 50 mV
      {"4D", 2, 6, 0, 0, 13, 3, 3},  // thermocouple at 0.01 degree: the stored point is ignored
      {"5C", 3, 6, 1, 0, 12, 1, 1},  // RTD "Short" at 1 degree
      {"B0", 0, 1, 2, 1, 0, 6, 1},   // unused mode codes read as DC V
      {"30", 0, 1, 2, 1, 0, 6, 1},  {"E2", 0, 1, 2, 1, 2, 4, 1},
      {"A3", 0, 1, 6, 1, 0, 6, 1},  // a range beyond the list reads as the first
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.modeRangeByte);
    ReplaceImageDigits(55, c.modeRangeByte);
    WriteField(7, 6, 53, c.resolution);
    WriteField(2, 0, 39, c.decimalPoint);
    DeriveInputFacts();
    EXPECT_EQ(std::vector<int16_t>({g.InputMode, g.SigCond, g.InputRange, g.Resolution, g.InputDp, g.DisplayDp}),
              std::vector<int16_t>({c.mode, c.sigCond, c.range, c.resolution, c.inputDp, c.displayDp}));
    EXPECT_EQ(g.SetupImage.substr(54, 2), c.modeRangeByte) << "deriving never writes the image";
  }
}

// Every mode and range written as the mode list forms it reads back the same, with the
// input decimal point of that range.
TEST_F(InputFactsTest, ModesAndRangesRoundTrip) {
  const std::vector<std::vector<int16_t>> codes = {std::vector<int16_t>(14, 2),
                                                   std::vector<int16_t>(13, 2),
                                                   {6, 5, 4, 3, 2},
                                                   {5, 4, 3, 4},
                                                   {6, 5, 4, 3, 2},
                                                   {5, 4, 3, 4},
                                                   {6, 5, 4},
                                                   {4, 4, 3, 3, 3},
                                                   {4, 4, 3, 3, 3}};
  for (int16_t mode = 0; mode < 9; ++mode) {
    const InputModeInfo& info = InputModes[static_cast<std::size_t>(mode)];
    EXPECT_EQ(InputModeFromList(info.sigCond, info.listIndex), mode) << info.text;
    for (int16_t range = 0; range < info.rangeCount; ++range) {
      g.InputMode = mode;
      g.InputRange = range;
      WriteModeRangeByte();
      DeriveInputFacts();
      EXPECT_EQ(std::tie(g.InputMode, g.InputRange), std::tie(mode, range));
      EXPECT_EQ(g.InputDp, codes[static_cast<std::size_t>(mode)][static_cast<std::size_t>(range)])
          << mode << "/" << range;
      EXPECT_EQ(ReadField(7, 4, 55), info.modeCode);
    }
  }
}

TEST_F(InputFactsTest, CustomCurveDecidesTheScalingFields) {
  struct Case {
    const char* kind;
    const char* modeRangeByte;
    int16_t curveBit;
    bool offered, active, scale, offset, coordinates, lowIn;
  };
  const Case cases[] = {
      {"1", "60", 0, true, false, true, true, true, true},     {"1", "60", 1, true, true, false, false, false, false},
      {"0", "60", 1, false, true, false, false, false, false},  // a BASIC image may still hold the bit
      {"1", "40", 1, false, false, false, true, false, false},  // a thermocouple has neither curve nor scale
      {"1", "5C", 0, false, false, true, true, false, true},    // "RTD" "Short": the lead resistance
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.kind) + " " + c.modeRangeByte + " " + std::to_string(c.curveBit));
    g.MeterKind = c.kind;
    ReplaceImageDigits(55, c.modeRangeByte);
    WriteField(0, 0, 33, c.curveBit);
    DeriveInputFacts();
    EXPECT_EQ(std::vector<bool>({CustomCurveOffered(), CustomCurveActive(), ScaleOffered(), OffsetOffered(),
                                 CoordinatesOffered(), LowInOffered()}),
              std::vector<bool>({c.offered, c.active, c.scale, c.offset, c.coordinates, c.lowIn}));
  }
}

}  // namespace
}  // namespace dpm
