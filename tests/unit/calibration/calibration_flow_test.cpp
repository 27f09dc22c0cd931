#include <gtest/gtest.h>

#include <algorithm>

#include <string>
#include <vector>

#include "calibration/calibration.h"
#include "calibration_fixture.h"

namespace dpm::testing {
namespace {

using Cells = std::vector<std::string>;
using Bodies = std::vector<std::string>;

constexpr const char* kErrorLine = "                         Input Signal Error";

// Seconds between the command `first` and the next command `second` heard after it.
double GapSeconds(const BenchMeter& meter, const std::string& first, const std::string& second, std::size_t from = 0) {
  for (std::size_t i = from; i < meter.heard.size(); ++i) {
    if (meter.heard[i].body != first) continue;
    for (std::size_t j = i + 1; j < meter.heard.size(); ++j) {
      if (meter.heard[j].body == second) return (meter.heard[j].atMs - meter.heard[i].atMs) / 1000.0;
    }
  }
  return -1;
}

TEST_F(CalibrationTest, EntryNamesTheBoardAndListsItsRanges) {
  struct Board {
    const char* code;
    char mode;
    const char* caption;
    std::size_t ranges;
    const char* firstRange;
  };
  const std::vector<Board> boards = {
      {"01", '4', "Temperature Signal Conditioner Calibration", 6, "J,K,N,E"},
      {"01", '6', "DC Signal Conditioner Calibration", 10, "200 mV DC"},
      {"01", 'A', "DC Signal Conditioner Calibration", 10, "200 mV DC"},
      {"02", '8', "AC Signal Conditioner Calibration", 10, "200 mV AC"},
      {"03", 'D', "Load Cell Signal Conditioner Calibration", 7, "500 mV DC"},
      {"07", '6', "DC Signal Conditioner Calibration", 0, "DC 660 V"},
  };
  for (const Board& board : boards) {
    Calibration& form = Open(board.code, board.mode);
    EXPECT_EQ(form.Caption(), board.caption) << board.code << board.mode;
    EXPECT_EQ(static_cast<std::size_t>(form.cboRange.ListCount()), board.ranges);
    EXPECT_EQ(form.lblRange.Caption(), board.firstRange);
    EXPECT_EQ(meter.Bodies().front(), "XL24");
    EXPECT_TRUE(frmMMenu().picInitText.PrintedLines().empty());
    form.Unload();
    meter.heard.clear();
  }
}

// One row of the 2 V DC range from the word 8000: plus reading, minus reading, the word and
// the new minus reading, the new plus reading, then Accept and End.
class DcRowTest : public CalibrationTest {
 protected:
  DcRowTest() : form(OpenAt("01", '6', 2)) {
    meter.words["20"] = "8000";
    meter.readings = {"+80100.", "-80120.", "-80001.", "+80000."};
  }

  void CompleteFirstRow() {
    form.cmdReady.UserClick();
    form.cmdReady.UserClick();
    form.cmdReady.UserClick();
  }

  Calibration& form;
};

TEST_F(DcRowTest, ThreeReadiesMakeARowWithThePausesKept) {
  EXPECT_EQ(form.txtInput.Text(), "+2 V DC");
  EXPECT_EQ(form.grdList.TextMatrix(0, 2), "Current +Reading");
  meter.heard.clear();

  form.cmdReady.UserClick();
  EXPECT_EQ(meter.Bodies(), (Bodies{"X120", "W305000000100004", "W1100061", "G130", "W1117536", "B1"}));
  const struct {
    const char* first;
    const char* second;
    double seconds;
  } pauses[] = {{"W305000000100004", "W1100061", 2.5}, {"W1100061", "G130", 2.5}, {"W1117536", "B1", 5.0}};
  for (const auto& pause : pauses) {
    EXPECT_GE(GapSeconds(meter, pause.first, pause.second), pause.seconds) << pause.first;
    EXPECT_LT(GapSeconds(meter, pause.first, pause.second), pause.seconds + 0.25) << pause.first;
  }
  EXPECT_EQ(Row(form, 1), (Cells{"2 V DC", " 80000", "+80100", "Set Input", "", "", "", ""}));
  EXPECT_EQ(form.txtInput.Text(), "-2 V DC");
  EXPECT_EQ(form.lblScaleF.Caption(), "Scale Factor set to 4");
  EXPECT_TRUE(form.cmdReady.Enabled());
  EXPECT_FALSE(form.cmdEnd.Enabled());

  const std::size_t second = meter.heard.size();
  form.cmdReady.UserClick();
  EXPECT_EQ(meter.Bodies(second), (Bodies{"C0", "B1", "W1207E95", "B1"}));
  EXPECT_GE(GapSeconds(meter, "C0", "B1", second), 5.0);
  EXPECT_GE(GapSeconds(meter, "W1207E95", "B1", second), 8.5);
  EXPECT_LT(GapSeconds(meter, "W1207E95", "B1", second), 8.75);
  EXPECT_EQ(Row(form, 1), (Cells{"2 V DC", " 80000", "+80100", "-80120", "8000", "7E95", "Set Input", "-80001"}));
  EXPECT_EQ(form.txtInput.Text(), "+2 V DC");

  form.cmdReady.UserClick();
  EXPECT_EQ(form.grdList.TextMatrix(1, 6), "+80000");
  EXPECT_TRUE(form.cmd[1].Enabled());
  EXPECT_TRUE(form.cmdRepeat.Enabled());
  EXPECT_FALSE(form.cmdReady.Enabled());
  EXPECT_FALSE(form.cmdEnd.Enabled());

  const std::size_t accepted = meter.heard.size();
  form.cmd[1].UserClick();
  EXPECT_EQ(meter.Bodies(accepted), (Bodies{"W1207E95"}));
  EXPECT_EQ(form.cmd[1].Caption(), "Saved");
  EXPECT_TRUE(form.cmdEnd.Enabled());

  form.cmdEnd.UserClick();
  EXPECT_EQ(meter.heard.back().body, "W305000000100001");
  EXPECT_TRUE(frmMMenu().Visible());
  EXPECT_EQ(Forms().FindLoaded<Calibration>(), nullptr);
}

TEST_F(DcRowTest, RepeatStartsFromTheLastRowAndFlipsThePolarity) {
  CompleteFirstRow();
  meter.readings = {"+79999.", "-80000."};
  const std::size_t from = meter.heard.size();

  form.cmdRepeat.UserClick();
  // (80001 + 80000) / 2 = 80000.5; (80000 - 80000.5) x 3.302 + 32405 = 32403.35
  EXPECT_EQ(meter.Bodies(from), (Bodies{"W1207E93", "B1"}));
  EXPECT_EQ(form.grdList.Row(), 2);
  EXPECT_EQ(Row(form, 2), (Cells{"", "", "+80000", "-80001", "7E95", "7E93", "+79999", "Set Input"}));
  EXPECT_EQ(form.txtInput.Text(), "-2 V DC");
  EXPECT_EQ(form.CalStep, 4);

  form.cmdReady.UserClick();
  EXPECT_EQ(form.grdList.TextMatrix(2, 7), "-80000");
  EXPECT_TRUE(form.cmd[2].Enabled());

  // Accepting row 1 writes its word again and clears the rows after it.
  form.cmd[1].UserClick();
  EXPECT_EQ(meter.heard.back().body, "W1207E95");
  EXPECT_FALSE(form.cmd[2].Enabled());
  EXPECT_EQ(Row(form, 2), (Cells{"", "", "", "", "", "", "", ""}));
}

TEST_F(DcRowTest, StopIsSeenAfterThePauseAndEndIsRefusedMeanwhile) {
  meter.heard.clear();
  const uint32_t pressed = time.Milliseconds();
  At(1000, [this] { form.cmdEnd.UserClick(); });
  At(3000, [this] { form.cmdStop.UserClick(); });
  form.cmdReady.UserClick();

  EXPECT_EQ(meter.Bodies(), (Bodies{"X120", "W305000000100004"}));
  EXPECT_GE(time.Milliseconds() - pressed, 5000u);
  EXPECT_NE(Forms().FindLoaded<Calibration>(), nullptr);
  EXPECT_EQ(form.CalStep, 1);
  EXPECT_TRUE(form.cmdReady.Enabled());
  EXPECT_TRUE(form.cmdEnd.Enabled());
  EXPECT_FALSE(form.cmdStop.Enabled());
  EXPECT_EQ(form.BusyFlag, 0);
}

TEST_F(DcRowTest, StopBetweenReadiesClearsTheRowDownToItsWantedReading) {
  form.cmdReady.UserClick();
  ASSERT_EQ(form.CalStep, 2);
  form.cmdStop.UserClick();
  EXPECT_EQ(Row(form, 1), (Cells{"2 V DC", "", "", "", "", "", "", ""}));
  EXPECT_EQ(form.CalStep, 1);
  EXPECT_EQ(form.txtInput.Text(), "+2 V DC");
  // Ready again puts the wanted reading back through the range set-up.
  meter.readings = {"+80100."};
  form.cmdReady.UserClick();
  EXPECT_EQ(form.grdList.TextMatrix(1, 1), " 80000");
}

TEST_F(CalibrationTest, ReadingLimitsOfReadyAndRepeat) {
  struct Case {
    int listIndex;
    std::vector<std::string> readings;
    int refusedAtReady;  // 0: none
  };
  const std::vector<Case> cases = {
      {2, {"+09999."}, 1}, {2, {"+10000.", "-09999."}, 2}, {2, {"+10000.", "-10000."}, 0},
      {9, {"+00799."}, 1}, {9, {"+00800.", "-00800."}, 0},
  };
  for (const Case& c : cases) {
    Calibration& form = OpenAt("01", '6', c.listIndex);
    meter.readings = {c.readings.begin(), c.readings.end()};
    for (int ready = 1; ready <= static_cast<int>(c.readings.size()); ++ready) {
      const std::size_t from = meter.heard.size();
      form.cmdReady.UserClick();
      const bool refused = ready == c.refusedAtReady;
      EXPECT_EQ(form.lblLine1.Visible() && form.lblLine1.Caption() == kErrorLine, refused)
          << c.listIndex << " " << c.readings[static_cast<std::size_t>(ready - 1)];
      if (refused) {
        EXPECT_EQ(form.lblLine1.ForeColor(), ColDarkRed);
        EXPECT_TRUE(form.cmdReady.Enabled());
        EXPECT_EQ(form.CalStep, ready);
        const std::string wordWrite = c.listIndex == 2 ? "W120" : "W128";
        for (const std::string& body : meter.Bodies(from)) EXPECT_NE(body.substr(0, 4), wordWrite) << body;
      }
    }
    form.Unload();
  }
}

TEST_F(CalibrationTest, TheFiveAmpRowTakes800OnlyFromReady) {
  Calibration& form = OpenAt("01", '6', 9);
  meter.readings = {"+00900.", "-00900.", "-00810.", "+00805.", "+00900."};
  for (int i = 0; i < 3; ++i) form.cmdReady.UserClick();
  ASSERT_TRUE(form.cmd[1].Enabled());
  form.cmdRepeat.UserClick();
  EXPECT_EQ(form.lblLine1.Caption(), kErrorLine);
  EXPECT_TRUE(form.lblLine1.Visible());
  EXPECT_EQ(form.grdList.Row(), 1);
  EXPECT_FALSE(form.cmd[2].Enabled());
  EXPECT_EQ(Row(form, 2), (Cells{"", "", "", "", "", "", "", ""}));
  EXPECT_TRUE(form.cmdRepeat.Enabled());
}

TEST_F(CalibrationTest, OneReadyMakesAnAcZeroRowAndRepeatWrapsAfterRowTen) {
  Calibration& form = OpenAt("02", '8', 0);
  meter.words["1A"] = "0005";
  meter.readings = {"+01990.", "+02000."};
  meter.heard.clear();
  form.cmdReady.UserClick();
  EXPECT_EQ(meter.Bodies(),
            (Bodies{"X11A", "W305000000100004", "W1100080", "G130", "W1117538", "B1", "W11A0131", "B1"}));
  EXPECT_EQ(Row(form, 1), (Cells{"5 mV AC", " 2000", "+01990", "", "0005", "0131", "+02000", ""}));
  EXPECT_EQ(form.grdList.TextMatrix(0, 3), "                ");
  EXPECT_TRUE(form.cmd[1].Enabled());

  for (int row = 2; row <= 10; ++row) form.cmdRepeat.UserClick();
  EXPECT_EQ(form.grdList.Row(), 10);
  form.cmdRepeat.UserClick();
  EXPECT_EQ(form.grdList.Row(), 1);
  EXPECT_EQ(Row(form, 1), (Cells{"5 mV AC", " 2000", "+02000", "", "0131", "0131", "+02000", ""}));
  EXPECT_EQ(Row(form, 2), (Cells{"", "", "", "", "", "", "", ""}));
  EXPECT_FALSE(form.cmd[2].Enabled());
  EXPECT_TRUE(form.cmd[10].Enabled());
}

TEST_F(CalibrationTest, RangeSetUpByBoardAndRange) {
  struct Case {
    const char* code;
    char mode;
    int listIndex;
    Bodies setUp;
    const char* scaleLabel;
  };
  const std::vector<Case> cases = {
      {"01", '6', 0, {"W30500000010000A", "W1100060", "G130", "W1117536"}, "Scale Factor set to 10"},
      {"01", '4', 0, {"W30500000010000A", "W1100060", "G130", "W1117538"}, "Scale Factor set to 10"},
      {"02", '8', 2, {"W305000000100004", "W1100081", "G130", "W1117538"}, "Scale Factor set to 4"},
      {"03", 'D', 1, {"W30500000010000A", "W11000D0", "G130", "W1117538", "X11A"}, "Scale Factor set to 10"},
      {"03", 'D', 3, {"W305000000100002", "W11000D1", "G130", "W1117536"}, "Scale Factor set to 2"},
  };
  for (const Case& c : cases) {
    Calibration& form = OpenAt(c.code, c.mode, c.listIndex);
    meter.readings = {"+80000."};
    meter.heard.clear();
    form.cmdReady.UserClick();
    const Bodies heard = meter.Bodies();
    ASSERT_GE(heard.size(), c.setUp.size() + 2);
    EXPECT_EQ(Bodies(heard.begin() + 1, heard.begin() + 1 + static_cast<long>(c.setUp.size())), c.setUp)
        << c.code << c.mode << c.listIndex;
    EXPECT_EQ(heard[c.setUp.size() + 1], "B1");
    EXPECT_EQ(form.lblScaleF.Caption(), c.scaleLabel);
    form.Unload();
  }
}

TEST_F(CalibrationTest, AThermocoupleGainIsWrittenToEveryCopy) {
  for (int listIndex : {1, 2}) {
    Calibration& form = OpenAt("01", '4', listIndex);
    meter.words = {{"21", "8000"}, {"24", "8000"}};
    meter.readings = {"+80000.", "-80000."};
    const std::size_t from = meter.heard.size();
    form.cmdReady.UserClick();
    form.cmdReady.UserClick();
    const Bodies heard = meter.Bodies(from);
    if (listIndex == 1) {
      EXPECT_NE(std::find(heard.begin(), heard.end(), "W321800080008000"), heard.end());
      EXPECT_GE(GapSeconds(meter, "W321800080008000", "W12E8000", from), 2.5);
    } else {
      EXPECT_NE(std::find(heard.begin(), heard.end(), "W324800080008000"), heard.end());
      for (const std::string& body : heard) EXPECT_NE(body.substr(0, 4), "W12E");
    }
    form.Unload();
  }
}

TEST_F(CalibrationTest, ASilentOrBabblingMeterEndsInTheErrorLine) {
  for (bool babbling : {false, true}) {
    Calibration& form = OpenAt("01", '6', 2);
    meter.readingsSilent = !babbling;
    meter.readings = {"#&*!?"};
    const uint32_t pressed = time.Milliseconds();
    form.cmdReady.UserClick();
    EXPECT_EQ(form.lblLine1.Caption(), kErrorLine) << babbling;
    EXPECT_TRUE(form.lblLine1.Visible());
    EXPECT_EQ(form.BusyFlag, 0);
    EXPECT_LT(time.Milliseconds() - pressed, 20000u);
    form.Unload();
    meter.readingsSilent = false;
  }
}

TEST_F(CalibrationTest, JumperPictureFollowsTheBoardRevision) {
  dialogs.AddPicture(42);
  dialogs.AddPicture(12);
  Calibration& form = OpenAt("01", '6', 2);
  EXPECT_EQ(form.imgJump.Picture().number, 42);
  form.optPrior.UserChoose();
  EXPECT_EQ(form.imgJump.Picture().number, 12);
  form.Unload();

  // The true RMS board has drawings of the prior revision only.
  Calibration& ac = OpenAt("02", '8', 2);
  EXPECT_TRUE(ac.imgJump.Picture().Empty());
  EXPECT_EQ(ac.imgJump.PrintedLines(), (std::vector<std::string>{"No jumper drawing 52", "for this board revision.",
                                                                 "Choose the other revision."}));
}

}  // namespace
}  // namespace dpm::testing
