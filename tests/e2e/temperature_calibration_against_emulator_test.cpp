#include <QLabel>
#include <QRadioButton>

#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "calibration/calibration.h"
#include "calibration/correction.h"
#include "program_fixture.h"

namespace dpm::testing {
namespace {

// A temperature board whose cold junction and RTD current source words all start off.
class TemperatureCalibrationAgainstEmulator : public ProgramAgainstEmulatorTest {
 protected:
  TemperatureCalibrationAgainstEmulator()
      : ProgramAgainstEmulatorTest({"--conditioner", "temperature", "--miscalibrate"}) {
    std::filesystem::copy_file(std::filesystem::path(DPM_PROGRAM_FOLDER) / "Jumper3.BMP", folder / "Jumper3.BMP");
    dialogs.AddPicture(3, 3810, 2325);
  }

  std::string Word(const std::string& address) {
    emulator.Say("word " + address);
    const std::string line = emulator.WaitForLine("word " + address);
    return line.size() >= 12 ? line.substr(8, 4) : line;
  }

  // The next reading the meter sent, as it sent it.
  std::string NextReading() {
    const std::string line = emulator.WaitForLine("-> ", 100);
    if (line.size() > 3 && (line[3] == '+' || line[3] == '-')) return line.substr(3, line.size() - 3 - 4);
    return line.empty() ? line : NextReading();
  }

  static std::string Hex(float value) {
    char hex[16];
    std::snprintf(hex, sizeof hex, "%04X", static_cast<unsigned>(std::nearbyint(value)) & 0xFFFFu);
    return hex;
  }

  static std::vector<std::string> Page() { return frmCalib().picQD.PrintedLines(); }
};

TEST_F(TemperatureCalibrationAgainstEmulator, ColdJunctionsAndRtdCurrentSourceFromWrongWords) {
  ASSERT_NE(window, nullptr);
  Pick("mnuCalib");
  QWidget* screen = ActiveWindowOf(frmCalib());
  ASSERT_NE(screen, nullptr);
  EXPECT_EQ(screen->windowTitle().toStdString(), "Temperature Signal Conditioner Calibration");
  emulator.Say("input 0");  // the junction in an ice-point cell

  struct Group {
    int listIndex;
    const char* gainWord;
    const char* offsetWord;
    float gainBase;
  };
  for (const Group& group : {Group{3, "1D", "1C", 28432}, Group{4, "2D", "2C", 28136}}) {
    Choose(screen, "cboRange", group.listIndex);
    EXPECT_TRUE(Find<QLabel>(screen, "picQD")->isVisible());
    QTest::mouseClick(Find<QRadioButton>(screen, "optNew"), Qt::LeftButton);
    ASSERT_TRUE(frmCalib().cmdReady.Enabled());
    emulator.WaitForLine("", 10);  // what the set-up printed is behind us
    Press(screen, "cmdReady");
    const std::string gainReading = NextReading();
    const std::string offsetReading = NextReading();
    ASSERT_FALSE(offsetReading.empty()) << group.listIndex;
    const std::string gain = Hex(static_cast<float>(std::stod(gainReading)) * 106.5f + group.gainBase);
    const std::string offset = Hex(static_cast<float>(std::stod(offsetReading)) / 0.003906f);
    const std::vector<std::string> page = Page();
    ASSERT_GE(page.size(), 3u);
    EXPECT_EQ(page[page.size() - 3], "Cold Junction Gain = " + gain + "  Saved") << gainReading;
    EXPECT_EQ(page[page.size() - 2], "Cold Junction Offset = " + offset + "  Saved") << offsetReading;
    EXPECT_EQ(Word(group.gainWord), gain);
    EXPECT_EQ(Word(group.offsetWord), offset);
  }

  Choose(screen, "cboRange", 5);
  QTest::mouseClick(Find<QRadioButton>(screen, "optPrior"), Qt::LeftButton);  // the temperature board's own drawing
  emulator.Say("input 1356.4");                                               // 356.13 ohm across the inputs
  const std::string oldWord = Word("1E");
  Press(screen, "cmdReady");
  const float reading = static_cast<float>(std::stod(RmvDP(NextReading())));
  const std::string newWord = Hex(CalWordValue(oldWord, true) + std::nearbyint((13564 - reading) * 11.3f));
  const std::vector<std::string> page = Page();
  ASSERT_GE(page.size(), 6u);
  EXPECT_EQ(page[page.size() - 6], "Old Calibration is " + oldWord);
  EXPECT_EQ(page[page.size() - 5], "New Calibration is " + newWord);
  EXPECT_EQ(Word("1E"), newWord);
  const std::string readingLine = page[page.size() - 3];
  ASSERT_EQ(readingLine.substr(0, 11), "Reading is ");
  EXPECT_LE(std::abs(std::stoi(readingLine.substr(11)) - 13564), 1) << readingLine;
  if (const char* shot = std::getenv("DPM_CALIBRATION_TEXT_SCREENSHOT")) {
    QTest::qWait(300);
    screen->grab().save(shot);
  }

  Press(screen, "cmdEnd");
  EXPECT_TRUE(window->isVisible());
}

}  // namespace
}  // namespace dpm::testing
