// A person's road through the main menu's setup items, against the emulated meter: the
// setup fetched, saved, replaced by the default, opened again, changed and put back.
#include <gtest/gtest.h>

#include "emulator/in_process_meter.h"
#include "link/image_access.h"
#include "link_fixture.h"
#include "platform/fake/scripted_dialogs.h"
#include "platform/forms/form_manager.h"
#include "setup/default_image.h"
#include "setup/main_menu.h"
#include "temp_folder.h"

namespace dpm {
namespace {

namespace fs = std::filesystem;

class SetupRoundTripTest : public testing::LinkTest {
 protected:
  SetupRoundTripTest() {
    Forms().Reset();
    Platform().dialogs = &user;
    g.MeterAddressNumber = 1;
    g.FirmwareRev = 4;
    g.DefaultFirmwareRev = 4;
    g.LinkEnabled = 1;
  }
  ~SetupRoundTripTest() override { Forms().Reset(); }
  std::string FileContents() const { return testing::FileText(file); }

  fake::ScriptedDialogs user;
  testing::TempFolder folder;
  fs::path file = folder / "setup.DPM";
};

TEST_F(SetupRoundTripTest, FromTheMeterToAFileAndBack) {
  // A DC meter of revision 4 whose first setpoint is 1234.
  const std::string stored = DefaultSetupImage(4).replace(114, 6, "0004D2");
  emulator::InProcessMeter meter(line, emulator::MeterOptions{.conditioner = emulator::Conditioner::Dc}, stored);
  MainMenu& menu = frmMMenu();
  menu.Show();

  const uint32_t start = time.Elapsed();
  menu.mnuGet.UserClick();
  const uint32_t getMs = time.Elapsed() - start;
  // The pauses the dialogue asks for at 9600 baud come to 5464 ms: 100 before each of six
  // commands, 228 + 116 + 110 + 110 for the replies, three seconds between and after the
  // blocks, 0.1, 1.0 and 0.2 s around the probe. Reading the replies adds a little.
  EXPECT_GE(getMs, 5464u);
  EXPECT_LE(getMs, 5464u + 30u);
  RecordProperty("GetSetupVirtualMs", static_cast<int>(getMs));
  EXPECT_EQ(menu.lblGPText.Caption(), "Getting data from the DPM.  Data received O.K.");
  const std::string fetched = g.SetupImage;
  EXPECT_EQ(fetched, stored.substr(0, 128)) << "a DC meter without data sheet: 128 digits";

  user.ChooseFile(file.string());
  menu.mnuSaveAs.UserClick();
  EXPECT_EQ(FileContents(), fetched + "\r\n" + g.MeterKind + "\r\n");

  menu.mnuDefaultSet.UserClick();
  EXPECT_EQ(g.SetupImage, DefaultSetupImage(4));
  user.ChooseFile(file.string());
  menu.mnuOpen.UserClick();
  EXPECT_EQ(g.SetupImage, fetched);

  WriteValue(kDisplayFormat, 115, " 2000.");
  user.Answer(MessageAnswer::Ok);
  menu.mnuSave.UserClick();
  EXPECT_EQ(FileContents().substr(114, 6), "0007D0");
  menu.mnuPut.UserClick();
  EXPECT_EQ(menu.lblGPText.Caption(), "Putting data to the DPM.  Data Transferred O.K.");
  EXPECT_EQ(meter.Device().Image(128).substr(20), g.SetupImage.substr(20)) << "every block that Put sends";
  EXPECT_FALSE(user.hourglass);
}

}  // namespace
}  // namespace dpm
