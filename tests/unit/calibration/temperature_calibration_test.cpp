#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "calibration/calibration.h"
#include "calibration_fixture.h"

namespace dpm::testing {
namespace {

using Lines = std::vector<std::string>;
using Bodies = std::vector<std::string>;

const Lines kJkneHeader = {"Connect a J,K,E or N thermocouple to the input and place",
                           "the thermocouple junction into an ice-point cell.", ""};
const Lines kTsrHeader = {"Connect a T,S,R thermocouple to the input and place",
                          "the thermocouple junction into an ice-point cell.", ""};
const Lines kRtdHeader = {"Connect an accurate 356.13 ohm resistor to the + - Signal inputs.",
                          "Connect the + - Excitation outputs across the resistor with the",
                          "+ Excitation connected to the same end of the resistor as the + Signal Input.",
                          "Click on Ready when the connections are complete.", ""};

Lines Join(Lines first, const Lines& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

TEST_F(CalibrationTest, ColdJunctionRowsRunOnTheTextPage) {
  Calibration& form = OpenAt("01", '4', 3);
  EXPECT_TRUE(form.picQD.Visible());
  EXPECT_FALSE(form.grdList.Visible());
  EXPECT_FALSE(form.cmdReady.Enabled());
  EXPECT_FALSE(form.txtInput.Visible());
  EXPECT_TRUE(form.optNew.Visible());
  EXPECT_EQ(form.picQD.PrintedLines(), Join(kJkneHeader, {"Select either New Calibration or Fine Adjustment    "}));
  EXPECT_EQ(form.lblJump.Caption(), "                                       Place the jumpers as shown.");
}

// New calibration at the ice point: input type, starting gain and zero offset first; Ready
// then computes the gain from a reading of 0 and the offset from 0.1 (25.6 counts).
TEST_F(CalibrationTest, NewColdJunctionCalibrationOfEachGroup) {
  struct Case {
    int listIndex;
    Bodies initialising;
    Bodies calibrating;
    const Lines& header;
    const char* gainLine;
    const char* offsetLine;
  };
  const std::vector<Case> cases = {
      {3,
       {"W1100041", "W21D6F100000"},
       {"B1", "W21D6F100000", "B1", "W11C001A"},
       kJkneHeader,
       "Cold Junction Gain = 6F10  Saved",
       "Cold Junction Offset = 001A  Saved"},
      // The T,S,R group starts from 6F10 and computes from 28136 (6DE8).
      {4,
       {"W1100049", "W22D6F100000"},
       {"B1", "W22D6DE80000", "B1", "W12C001A"},
       kTsrHeader,
       "Cold Junction Gain = 6DE8  Saved",
       "Cold Junction Offset = 001A  Saved"},
  };
  for (const Case& c : cases) {
    Calibration& form = OpenAt("01", '4', c.listIndex);
    meter.heard.clear();
    form.optNew.UserChoose();
    EXPECT_EQ(meter.Bodies(), c.initialising);
    EXPECT_GE(meter.heard[1].atMs - meter.heard[0].atMs, 2500u);
    EXPECT_TRUE(form.cmdReady.Enabled());

    meter.readings = {"+000.0", "+000.1"};
    meter.heard.clear();
    form.cmdReady.UserClick();
    EXPECT_EQ(meter.Bodies(), c.calibrating) << c.listIndex;
    EXPECT_EQ(form.picQD.PrintedLines(),
              Join(c.header, {"Wait while calibrating", c.gainLine, c.offsetLine,
                              "Select either New Calibration, Fine Adjustment, Range or Exit"}));
    EXPECT_FALSE(form.optNew.Value());
    EXPECT_FALSE(form.optFine.Value());
    EXPECT_TRUE(form.cmdReady.Enabled());
    EXPECT_EQ(form.BusyFlag, 0);
    form.Unload();
  }
}

TEST_F(CalibrationTest, FineAdjustmentKeepsTheGainAndCorrectsTheOffset) {
  Calibration& form = OpenAt("01", '4', 3);
  meter.words["1C"] = "0010";
  meter.readings = {"+000.1"};
  form.optFine.UserChoose();
  EXPECT_EQ(form.picQD.PrintedLines().back(), "Click 'Ready' when the meter reading has thermally settled.");
  meter.heard.clear();
  form.cmdReady.UserClick();
  // 16 + 0.1 / 0.003906 = 41.6
  EXPECT_EQ(meter.Bodies(), (Bodies{"X11C", "B1", "W11C002A"}));
  EXPECT_EQ(form.picQD.PrintedLines(),
            Join(kJkneHeader, {"Wait while calibrating", "Cold Junction Offset = 002A  Saved",
                               "Select either New Calibration, Fine Adjustment, Range or Exit"}));
}

TEST_F(CalibrationTest, RtdCurrentSourceBringsTheResistorTo13564Counts) {
  struct Case {
    const char* oldWord;
    const char* reading;
    const char* newWord;
    const char* readingLine;
  };
  const std::vector<Case> cases = {
      {"1000", "+13564.", "1000", "Reading is  13564"},
      // (13564 - 13464) x 11.3 = 1130 on top of 4096
      {"1000", "+13464.", "146A", "Reading is  13464"},
      // a word above 32767 saturates at 7FFF
      {"8000", "+13464.", "7FFF", "Reading is  13464"},
  };
  for (const Case& c : cases) {
    Calibration& form = OpenAt("01", '4', 5);
    EXPECT_EQ(form.picQD.PrintedLines(), kRtdHeader);
    EXPECT_TRUE(form.cmdReady.Enabled());
    meter.words["1E"] = c.oldWord;
    meter.readings = {c.reading};
    meter.heard.clear();
    form.cmdReady.UserClick();
    EXPECT_EQ(meter.Bodies(), (Bodies{"W62A800080008000800080008000", "W1100050", "G130", "W1117537",
                                      "W305000000100001", "X11E", "B1", std::string("W11E") + c.newWord, "B1"}));
    EXPECT_EQ(form.picQD.PrintedLines(),
              Join(kRtdHeader,
                   {"Wait while calibrating", std::string("Old Calibration is ") + c.oldWord,
                    std::string("New Calibration is ") + c.newWord, "Reading should be 13564 counts", c.readingLine, "",
                    "Click on Ready to repeat this calibration, select another Range or Exit"}));
    EXPECT_GE(meter.heard[6].atMs - meter.heard[5].atMs, 3000u);
    EXPECT_TRUE(form.cmdReady.Enabled());
    form.Unload();
  }
}

TEST_F(CalibrationTest, TextPageRoutinesEndWithASilentMeter) {
  for (int listIndex : {3, 5}) {
    Calibration& form = OpenAt("01", '4', listIndex);
    if (listIndex == 3) form.optFine.UserChoose();
    meter.silent = true;
    const uint32_t pressed = time.Milliseconds();
    form.cmdReady.UserClick();
    EXPECT_EQ(form.BusyFlag, 0);
    EXPECT_LT(time.Milliseconds() - pressed, 40000u);
    EXPECT_TRUE(form.cmdReady.Enabled());
    meter.silent = false;
    form.Unload();
  }
}

}  // namespace
}  // namespace dpm::testing
