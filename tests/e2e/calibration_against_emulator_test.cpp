#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTableWidget>

#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "calibration/calibration.h"
#include "program_fixture.h"

namespace dpm::testing {
namespace {

namespace fs = std::filesystem;

// A range calibrated through the window against a meter whose word for it starts wrong.
struct Road {
  const char* name;
  const char* conditioner;  // of the emulator
  const char* wrongWord;    // ADDR=HHHH
  int listIndex;
  const char* caption;
  double input;  // the input the screen asks for, in the emulator's units
  bool plusAndMinus;
  float factor;  // word units per count, of the range's gain
  int jumperPicture;
};

void PrintTo(const Road& road, std::ostream* os) { *os << road.name; }

class CalibrationAgainstEmulator : public ProgramAgainstEmulatorTest, public ::testing::WithParamInterface<Road> {
 protected:
  CalibrationAgainstEmulator()
      : ProgramAgainstEmulatorTest({"--conditioner", GetParam().conditioner, "--cal-word", GetParam().wrongWord}) {
    const std::string picture = "Jumper" + std::to_string(GetParam().jumperPicture) + ".BMP";
    fs::copy_file(fs::path(DPM_PROGRAM_FOLDER) / picture, folder / picture);
    dialogs.AddPicture(GetParam().jumperPicture, 3810, 2325);
  }

  // The meter reads the input the screen shows, with its sign.
  void Apply(QWidget* screen, double magnitude) {
    const std::string shown = Find<QLineEdit>(screen, "txtInput")->text().toStdString();
    const double input = shown.front() == '-' ? -magnitude : magnitude;
    emulator.Say("input " + std::to_string(input));
    ASSERT_FALSE(emulator.WaitForLine("input ").empty());
  }

  std::string Word(const std::string& address) {
    emulator.Say("word " + address);
    const std::string line = emulator.WaitForLine("word " + address);
    return line.size() >= 12 ? line.substr(8, 4) : line;
  }

  static std::string Cell(QWidget* screen, int row, int col) {
    const QTableWidgetItem* item = Find<QTableWidget>(screen, "grdList")->item(row, col);
    return item == nullptr ? std::string() : item->text().toStdString();
  }
};

// The correction worked by hand: the mean of the two readings (or the one reading) brought
// to 80000 by the range's factor, from the word the meter held.
std::string ExpectedWord(float factor, float plus, float minus, bool plusAndMinus, int oldWord) {
  const float reading = plusAndMinus ? (std::fabs(minus) + plus) / 2 : plus;
  const float word = (80000.0f - reading) * factor + static_cast<float>(oldWord);
  char hex[8];
  std::snprintf(hex, sizeof hex, "%04X", static_cast<unsigned>(std::nearbyint(word)));
  return hex;
}

TEST_P(CalibrationAgainstEmulator, ARangeFromAWrongWordToItsAcceptedRow) {
  const Road& road = GetParam();
  const std::string address = std::string(road.wrongWord).substr(0, 2);
  const int oldWord = std::stoi(std::string(road.wrongWord).substr(3), nullptr, 16);
  ASSERT_NE(window, nullptr);
  Pick("mnuCalib");
  QWidget* screen = ActiveWindowOf(frmCalib());
  ASSERT_NE(screen, nullptr);
  EXPECT_EQ(screen->windowTitle().toStdString(), road.caption);
  EXPECT_FALSE(window->isVisible()) << "the main menu makes way";
  Choose(screen, "cboRange", road.listIndex);
  // Only the DC board has Rev M drawings; for the others the technician picks Prior Rev.
  if (road.jumperPicture < 41) QTest::mouseClick(Find<QRadioButton>(screen, "optPrior"), Qt::LeftButton);
  QTest::qWait(100);  // the picture repaints at its own pace
  EXPECT_NE(Find<QLabel>(screen, "imgJump")->grab().toImage().pixelColor(60, 60), QColor(Qt::white))
      << "the range's jumper drawing";

  Apply(screen, road.input);
  Press(screen, "cmdReady");
  if (road.plusAndMinus) {
    ASSERT_EQ(Cell(screen, 1, 3), "Set Input");
    Apply(screen, road.input);
    Press(screen, "cmdReady");
    ASSERT_EQ(Cell(screen, 1, 6), "Set Input");
    Apply(screen, road.input);
    Press(screen, "cmdReady");
  }
  ASSERT_TRUE(Find<QPushButton>(screen, "cmd_1")->isEnabled()) << Cell(screen, 1, 2);

  const float plus = std::stof(Cell(screen, 1, 2));
  const float minus = road.plusAndMinus ? std::stof(Cell(screen, 1, 3)) : 0;
  const std::string expected = ExpectedWord(road.factor, plus, minus, road.plusAndMinus, oldWord);
  EXPECT_EQ(Cell(screen, 1, 4), std::string(road.wrongWord).substr(3));
  auto* grid = Find<QTableWidget>(screen, "grdList");
  EXPECT_EQ(grid->item(1, 0)->textAlignment(), Qt::AlignCenter) << "readings and words centred";
  EXPECT_EQ(grid->item(0, 0)->textAlignment(), Qt::AlignLeft | Qt::AlignVCenter) << "headers from column 2 on";
  EXPECT_EQ(grid->item(0, 2)->textAlignment(), Qt::AlignCenter);
  EXPECT_EQ(Cell(screen, 1, 5), expected);
  EXPECT_EQ(Word(address), expected);
  EXPECT_LE(std::abs(std::stoi(Cell(screen, 1, 6)) - 80000), 1) << "the new plus reading";
  if (road.plusAndMinus) {
    EXPECT_LE(std::abs(std::stoi(Cell(screen, 1, 7)) + 80000), 1) << "the new minus reading";
  }

  Press(screen, "cmd_1");
  EXPECT_EQ(Find<QPushButton>(screen, "cmd_1")->text().toStdString(), "Saved");
  EXPECT_EQ(Word(address), expected);
  const char* shot = std::getenv("DPM_CALIBRATION_SCREENSHOT");
  if (shot != nullptr && road.jumperPicture == 42) screen->grab().save(shot);

  Press(screen, "cmdEnd");
  EXPECT_TRUE(window->isVisible());
  EXPECT_FALSE(Forms().IsLoaded("frmCalib"));
}

INSTANTIATE_TEST_SUITE_P(Ranges, CalibrationAgainstEmulator,
                         ::testing::Values(Road{"TwoVoltsDc", "dc", "20=7C00", 2, "DC Signal Conditioner Calibration",
                                                2.0, true, 3.302f, 42},
                                           Road{"TwoVoltsAc", "rms", "20=8400", 2, "AC Signal Conditioner Calibration",
                                                2.0, false, 3.354f, 22},
                                           Road{"FiftyMillivoltLoadCell", "load-cell", "20=7C80", 3,
                                                "Load Cell Signal Conditioner Calibration", 40.0, true, 3.218f, 32}),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace dpm::testing
