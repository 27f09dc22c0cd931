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
    g.DefaultFirmwareRev = 4;
    DefaultData();
  }
  // Sets the mode and range byte, the resolution bits and the decimal point field.
  void Image(const std::string& modeRangeByte, int resolution, int decimalPoint = 1) {
    ReplaceImageDigits(55, modeRangeByte);
    WriteField(7, 6, 53, static_cast<int16_t>(resolution));
    WriteField(2, 0, 39, static_cast<int16_t>(decimalPoint));
  }
};

TEST_F(InputFactsTest, DerivedFacts) {
  struct Case {
    const char* byte;
    int resolution;
    int decimalPoint;
    int16_t mode, sigCond, range, inputDp, displayDp;
  };
  const Case cases[] = {
      {"60", 0, 3, 2, 1, 0, 6, 3},                                // DC V 0.2 V
      {"64", 3, 1, 2, 1, 4, 1, 1},                                // DC V 660 V on a 3 1/2 digit display: "ddddd ."
      {"73", 0, 2, 3, 1, 3, 4, 2},                                // DC A 5 A
      {"73", 3, 2, 3, 1, 3, 3, 2},                                // and one decimal less
      {"72", 0, 2, 3, 1, 2, 3, 2},                                // DC A 200 mA
      {"92", 0, 2, 5, 2, 2, 3, 2},                                // RMS A 200 mA
      {"A2", 0, 2, 6, 1, 2, 4, 2},                                // Ratio 20 V
      {"C1", 0, 5, 7, 3, 1, 4, 5},                                // Strain 50 mV
      {"D4", 0, 5, 8, 3, 4, 3, 5},                                // DC mV 500 mV
      {"40", 0, 6, 0, 0, 0, 2, 2},                                // thermocouple: the stored point has no effect
      {"4D", 2, 6, 0, 0, 13, 3, 3},                               // 0.01 degree
      {"5C", 3, 6, 1, 0, 12, 1, 1},                               // RTD "Short", 1 degree
      {"B0", 0, 1, 2, 1, 0, 6, 1},                                // mode code 11 is unused: DC V
      {"30", 0, 1, 2, 1, 0, 6, 1},                                // mode codes below 4: DC V
      {"E0", 0, 1, 2, 1, 0, 6, 1},                                // mode codes from 14: DC V
      {"F2", 0, 1, 2, 1, 2, 4, 1},  {"65", 0, 1, 2, 1, 0, 6, 1},  // a range beyond the list reads as the first
      {"A3", 0, 1, 6, 1, 0, 6, 1},  {"4E", 0, 1, 0, 0, 0, 2, 2},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.byte) + " resolution " + std::to_string(c.resolution));
    Image(c.byte, c.resolution, c.decimalPoint);
    DeriveInputFacts();
    EXPECT_EQ(g.InputMode, c.mode);
    EXPECT_EQ(g.SigCond, c.sigCond);
    EXPECT_EQ(g.InputRange, c.range);
    EXPECT_EQ(g.Resolution, c.resolution);
    EXPECT_EQ(g.InputDp, c.inputDp);
    EXPECT_EQ(g.DisplayDp, c.displayDp);
    EXPECT_EQ(g.SetupImage.substr(54, 2), c.byte) << "deriving never writes the image";
  }
}

TEST_F(InputFactsTest, InputPointCodesOfEveryRange) {
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
    for (int16_t range = 0; range < InputModes[static_cast<std::size_t>(mode)].rangeCount; ++range) {
      SCOPED_TRACE(std::to_string(mode) + "/" + std::to_string(range));
      g.InputMode = mode;
      g.InputRange = range;
      WriteModeRangeByte();
      DeriveInputFacts();
      EXPECT_EQ(g.InputMode, mode);
      EXPECT_EQ(g.InputRange, range);
      EXPECT_EQ(g.InputDp, codes[static_cast<std::size_t>(mode)][static_cast<std::size_t>(range)]);
      EXPECT_NE(ReadField(7, 4, 55), 11);
    }
  }
}

TEST_F(InputFactsTest, ModeFromTheModeList) {
  for (int16_t mode = 0; mode < 9; ++mode) {
    const InputModeInfo& info = InputModes[static_cast<std::size_t>(mode)];
    EXPECT_EQ(InputModeFromList(info.sigCond, info.listIndex), mode) << info.text;
    EXPECT_EQ(ModeCodeOf(mode), info.modeCode);
    EXPECT_EQ(InputModeOfCode(info.modeCode), mode);
  }
  // "Ratio" is the third entry whatever the conditioner.
  EXPECT_EQ(InputModeFromList(3, 2), 6);
  EXPECT_EQ((std::vector<int16_t>{FirstInputModeOf(0), FirstInputModeOf(1), FirstInputModeOf(2), FirstInputModeOf(3)}),
            (std::vector<int16_t>{0, 2, 4, 7}));
  EXPECT_EQ(FormModeRangeByte(8, 4), 0xD4);
}

TEST_F(InputFactsTest, CustomCurveRules) {
  struct Case {
    const char* kind;
    const char* modeByte;
    int curveBit;
    bool offered, inForce, scale, offset, coordinates, lowIn;
  };
  const Case cases[] = {
      {"1", "60", 0, true, false, true, true, true, true},
      {"1", "60", 1, true, true, false, false, false, false},
      {"0", "60", 1, false, true, false, false, false, false},  // a BASIC image may still hold the bit
      {"1", "40", 1, false, false, false, true, false, false},  // no curve, no scale on a thermocouple
      {"1", "50", 1, false, false, true, true, false, false},
      {"1", "5C", 0, false, false, true, true, false, true},  // "RTD" "Short": lead resistance
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.kind) + " " + c.modeByte + " " + std::to_string(c.curveBit));
    g.MeterKind = c.kind;
    ReplaceImageDigits(55, c.modeByte);
    WriteField(0, 0, 33, static_cast<int16_t>(c.curveBit));
    DeriveInputFacts();
    EXPECT_EQ(CustomCurveOffered(), c.offered);
    EXPECT_EQ(CustomCurveActive(), c.inForce);
    EXPECT_EQ(CustomCurveRd0Offered(), c.inForce);
    EXPECT_EQ(ScaleOffered(), c.scale);
    EXPECT_EQ(OffsetOffered(), c.offset);
    EXPECT_EQ(CoordinatesOffered(), c.coordinates);
    EXPECT_EQ(LowInOffered(), c.lowIn);
    EXPECT_EQ(RateOffered(), std::string(c.kind) == "1");
  }
}

TEST_F(InputFactsTest, BoardAndRevisionRules) {
  struct Case {
    int16_t relay, comm, analog, devStatus;
    bool alarms, deviations, outputRate, serial, duplex, analogOut;
  };
  const Case cases[] = {
      {0, 0, 0, 0, false, false, false, false, false, false}, {1, 0, 0, 0, true, true, false, false, false, false},
      {1, 1, 1, 1, true, false, true, true, false, true},     {0, 2, 0, 0, false, false, true, true, true, false},
      {0, 3, 0, 0, false, false, true, false, false, false},
  };
  for (const Case& c : cases) {
    g.RelayOption = c.relay;
    g.CommOption = c.comm;
    g.AnalogOption = c.analog;
    WriteField(5, 5, 57, c.devStatus);
    EXPECT_EQ(AlarmsOffered(), c.alarms);
    EXPECT_EQ(DeviationsOffered(), c.deviations);
    EXPECT_EQ(OutputRateOffered(), c.outputRate);
    EXPECT_EQ(SerialLinkOffered(), c.serial);
    EXPECT_EQ(DuplexOffered(), c.duplex);
    EXPECT_EQ(AnalogOffered(), c.analogOut);
  }
  g.FirmwareRev = 0;
  EXPECT_TRUE(LeadingZerosOffered());
  EXPECT_FALSE(TranCharsOffered());
  g.FirmwareRev = 1;
  EXPECT_FALSE(LeadingZerosOffered());
  EXPECT_TRUE(TranCharsOffered());
}

TEST_F(InputFactsTest, TedsRules) {
  struct Case {
    int16_t hardware, present, plugPlayBit;
    bool tare, plugPlay, indicator;
  };
  for (const Case c : {Case{0, 1, 0, false, false, false}, Case{1, 0, 0, true, false, false},
                       Case{1, 1, 0, true, true, true}, Case{1, 1, 1, true, true, false}}) {
    g.TedsHardware = c.hardware;
    g.TedsPresent = c.present;
    WriteField(0, 0, 129, c.plugPlayBit);
    EXPECT_EQ(TareOffered(), c.tare);
    EXPECT_EQ(TedsPlugPlayOffered(), c.plugPlay);
    EXPECT_EQ(TedsIndicatorOffered(), c.indicator);
  }
}

TEST_F(InputFactsTest, NoFilterForcesTheFilteredDisplayValue) {
  WriteField(3, 0, 51, 10);
  EXPECT_EQ(AllowedDisplayValue(0), 1);
  WriteField(3, 0, 51, 9);
  EXPECT_EQ(AllowedDisplayValue(0), 0);
}

TEST_F(InputFactsTest, ChoosingBasicClearsCurveAndRateOnly) {
  ReplaceImageDigits(33, "FF");
  ClearExtendedFields();
  EXPECT_EQ(g.SetupImage.substr(32, 2), "8E");
}

}  // namespace
}  // namespace dpm
