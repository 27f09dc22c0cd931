#include <QLabel>
#include <QPixmap>

#include <string>

#include "program_fixture.h"
#include "readings/commands.h"

namespace dpm::testing {
namespace {

namespace fs = std::filesystem;

// The program's folder holds the pictures that the build drew; this one gets copies. The
// scripted dialogs stand in for the lookup by name; the windows paint the files themselves.
class CommandsAgainstEmulator : public ProgramAgainstEmulatorTest {
 protected:
  CommandsAgainstEmulator() {
    for (const char* picture : {"LRCurr.BMP", "RLCurr.BMP", "Blank.BMP", "Computer.BMP", "Meter.BMP"}) {
      fs::copy_file(fs::path(DPM_PROGRAM_FOLDER) / picture, folder / picture);
      dialogs.AddPicture(picture);
    }
  }
};

TEST_F(CommandsAgainstEmulator, LatestReadingAndAResetFromTheCommandsScreen) {
  ASSERT_NE(window, nullptr);
  Pick("mnuGet");
  ASSERT_EQ(window->findChild<QLabel*>("lblGPText")->text().toStdString(),
            "Getting data from the DPM.  Data received O.K.");
  Pick("mnuCmdsGo");
  QWidget* screen = ActiveWindowOf(frmCmds());
  ASSERT_NE(screen, nullptr);
  EXPECT_FALSE(window->isVisible()) << "the main menu makes way";
  EXPECT_EQ(screen->windowTitle().toStdString(), "COMMANDS");

  // The drawings are the build's BMP files, read by the program's own picture loader: the
  // computer's screen is dark blue.
  const QImage computer = Find<QLabel>(screen, "picCmptrCtr")->grab().toImage();
  ASSERT_FALSE(computer.isNull());
  EXPECT_EQ(computer.pixelColor(40, 45), QColor(0x1E, 0x3C, 0x78));

  Press(screen, "cmdLatest");
  ASSERT_EQ(emulator.WaitForLine("<- *1B1<CR>"), "<- *1B1<CR>");
  const std::string answer = emulator.WaitForLine("-> ");
  ASSERT_GT(answer.size(), 7u);
  const std::string reading = answer.substr(3, answer.size() - 3 - 4);  // without "-> " and "<CR>"
  EXPECT_EQ(frmCmds().picLatest.PrintedLines(), std::vector<std::string>{reading});
  auto* status = Find<QLabel>(screen, "lblErrText");
  ASSERT_NE(status, nullptr);
  EXPECT_TRUE(status->isVisible());
  EXPECT_EQ(status->text().toStdString(), "Latest Reading request sent.    Latest Reading received.");
  EXPECT_EQ(status->palette().color(QPalette::WindowText), QColor(0, 255, 0));
  EXPECT_EQ(Find<QLabel>(screen, "picCurrent")->x(), 175) << "the picture rests at the computer's end";

  Press(screen, "cmdMRst");
  EXPECT_EQ(emulator.WaitForLine("<- *1C0"), "<- *1C0<CR>");
  EXPECT_EQ(status->text().toStdString(), "Meter Reset Command sent.");

  // OK goes back to the main menu and leaves this screen where it is.
  Press(screen, "cmdOK");
  EXPECT_TRUE(window->isVisible());
  EXPECT_TRUE(Forms().IsLoaded("frmCmds"));
}

}  // namespace
}  // namespace dpm::testing
