#include <QLabel>
#include <QTimer>

#include <sstream>

#include "program_fixture.h"
#include "setup/default_image.h"
#include "setup/setup_files.h"

namespace dpm::testing {
namespace {

namespace fs = std::filesystem;

std::string FileText(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

class ProgramAgainstEmulator : public ProgramAgainstEmulatorTest {
 protected:
  std::string StatusLine() const { return window->findChild<QLabel*>("lblGPText")->text().toStdString(); }
};

TEST_F(ProgramAgainstEmulator, GetSaveOpenPutAndExit) {
  ASSERT_NE(window, nullptr);
  ASSERT_TRUE(meterLink.PortOpen());

  Pick("mnuGet");
  EXPECT_EQ(StatusLine(), "Getting data from the DPM.  Data received O.K.");
  EXPECT_EQ(g.SetupImage, DefaultSetupImage(4).substr(0, 128)) << "a DC meter without data sheet: 128 digits";
  EXPECT_EQ(g.MeterKind, "1");
  EXPECT_TRUE(window->findChild<QAction*>("mnuPut")->isEnabled());

  const fs::path saved = folder / "meter.DPM";
  dialogs.ChooseFile(saved.string());
  Pick("mnuSaveAs");
  EXPECT_EQ(FileText(saved), g.SetupImage + "\r\n1\r\n");

  // The technician changes the first setpoint in the file, and opens it again.
  std::string edited = g.SetupImage;
  edited.replace(114, 6, "000457");
  const fs::path changed = folder / "changed.DPM";
  std::ofstream(changed, std::ios::binary) << edited << "\r\n1";
  dialogs.ChooseFile(changed.string());
  Pick("mnuOpen");
  EXPECT_EQ(g.SetupImage.substr(114, 6), "000457");
  EXPECT_EQ(fs::current_path(), folder) << "the program's folder is the working directory again";
  dialogs.Answer(MessageAnswer::Ok);
  Pick("mnuSave");
  EXPECT_EQ(FileText(changed), edited + "\r\n1\r\n") << "Save writes to the file last opened";

  Pick("mnuPut");
  EXPECT_EQ(StatusLine(), "Putting data to the DPM.  Data Transferred O.K.");
  const std::string meterImage = emulator.Image();
  ASSERT_GE(meterImage.size(), 128u);
  EXPECT_EQ(meterImage.substr(0, 12), edited.substr(0, 12));
  EXPECT_EQ(meterImage.substr(20, 108), edited.substr(20, 108)) << "every block that Put sends is in the meter";

  Pick("mnuExit");
  EXPECT_TRUE(ended);
  EXPECT_FALSE(meterLink.PortOpen());
}

// The meter's line goes away while Get Setup waits for the meter, and comes back under the
// same name: the failed Get is reported as a silent meter's, the setup in hand stays, and
// the next Get opens the line again and works, with no restart.
TEST_F(ProgramAgainstEmulator, LineLostMidGetAndBackAgain) {
  DefaultData();
  const std::string before = g.SetupImage;
  emulator.Say("silent on");
  emulator.WaitForLine("silent", 1000);
  QTimer::singleShot(400, [this] { emulator.Stop(); });
  Pick("mnuGet");
  EXPECT_EQ(StatusLine(), "ErrFlag =  4Failed to Get data, check connections and restart program.");
  EXPECT_EQ(g.SetupImage, before);
  EXPECT_FALSE(ended);
  EXPECT_FALSE(meterLink.PortOpen()) << "the lost line is let go";

  Pick("mnuGet");
  EXPECT_EQ(StatusLine(), "ErrFlag =  4Failed to Get data, check connections and restart program.")
      << "still unplugged";

  EmulatorProcess again(folder / "COM1");
  Pick("mnuGet");
  EXPECT_EQ(StatusLine(), "Getting data from the DPM.  Data received O.K.");
  EXPECT_TRUE(meterLink.PortOpen());
  EXPECT_EQ(g.SetupImage, DefaultSetupImage(4).substr(0, 128));
}

}  // namespace
}  // namespace dpm::testing
