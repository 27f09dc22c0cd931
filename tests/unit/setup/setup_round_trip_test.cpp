// A person's whole road through the setup: from the meter to a file and back, and without
// a meter from the default setup to a file, through the main menu's own items.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <sstream>

#include "emulator/in_process_meter.h"
#include "link/image_access.h"
#include "link_fixture.h"
#include "platform/fake/scripted_dialogs.h"
#include "platform/forms/form_manager.h"
#include "setup/default_image.h"
#include "setup/main_menu.h"

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
    dir = fs::temp_directory_path() / ("dpm_round_trip_" + std::to_string(std::random_device{}()));
    fs::create_directories(dir);
  }
  ~SetupRoundTripTest() override {
    Forms().Reset();
    fs::remove_all(dir);
  }

  MainMenu& Start(int16_t linkEnabled) {
    g.LinkEnabled = linkEnabled;
    frmMMenu().Show();
    return frmMMenu();
  }
  static std::string Contents(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
  }

  fake::ScriptedDialogs user;
  fs::path dir;
};

TEST_F(SetupRoundTripTest, FromTheMeterToAFileAndBack) {
  // A DC meter of revision 4 whose first setpoint is 1234.
  std::string stored = DefaultSetupImage(4);
  stored.replace(114, 6, "0004D2");
  emulator::InProcessMeter meter(line, emulator::MeterOptions{.conditioner = emulator::Conditioner::Dc}, stored);
  MainMenu& menu = Start(1);

  const uint32_t start = time.Elapsed();
  menu.mnuGet.UserClick();
  const uint32_t getMs = time.Elapsed() - start;
  // The pauses the dialogue itself asks for at 9600 baud come to 5464 ms: 100 before each
  // of six commands, 228 + 116 + 110 + 110 for the replies, three seconds between and
  // after the blocks, 0.1, 1.0 and 0.2 s around the probe. The rest is reading replies.
  EXPECT_GE(getMs, 5464u);
  EXPECT_LE(getMs, 5464u + 30u);
  RecordProperty("GetSetupVirtualMs", static_cast<int>(getMs));
  EXPECT_EQ(menu.lblGPText.Caption(), "Getting data from the DPM.  Data received O.K.");
  EXPECT_EQ(g.SetupImage.substr(114, 6), "0004D2");
  EXPECT_EQ(g.SetupImage.size(), 128u);
  EXPECT_TRUE(menu.mnuPut.IsEffectivelyEnabled());
  EXPECT_TRUE(menu.mnuCmds.Enabled());

  user.ChooseFile((dir / "meter.DPM").string());
  menu.mnuSaveAs.UserClick();
  const std::string fetched = g.SetupImage;
  EXPECT_EQ(Contents(dir / "meter.DPM"), fetched + "\r\n" + g.MeterKind + "\r\n");
  EXPECT_EQ(menu.SetupFileName, (dir / "meter.DPM").string());

  menu.mnuDefaultSet.UserClick();
  EXPECT_NE(g.SetupImage, fetched);
  user.ChooseFile((dir / "meter.DPM").string());
  menu.mnuOpen.UserClick();
  EXPECT_EQ(g.SetupImage, fetched);

  // A new setpoint of 2000, put back into the meter.
  WriteValue(kDisplayFormat, 115, " 2000.");
  menu.mnuPut.UserClick();
  EXPECT_EQ(menu.lblGPText.Caption(), "Putting data to the DPM.  Data Transferred O.K.");
  EXPECT_EQ(meter.Device().Image(128).substr(114, 6), "0007D0");
  EXPECT_EQ(meter.Device().Image(128).substr(20, 100), g.SetupImage.substr(20, 100));
  EXPECT_FALSE(user.hourglass);
}

TEST_F(SetupRoundTripTest, WithoutAMeterTheDefaultSetupIsSaved) {
  MainMenu& menu = Start(0);
  EXPECT_FALSE(menu.mnuGet.IsEffectivelyEnabled());
  menu.mnuDefaultSet.UserClick();
  EXPECT_TRUE(menu.mnuView.Enabled());
  EXPECT_EQ(menu.lblGPText.Caption(), "Default Setup data loaded into the 3-Page Form.");
  user.ChooseFile((dir / "default.DPM").string());
  menu.mnuSaveAs.UserClick();
  EXPECT_EQ(Contents(dir / "default.DPM"), DefaultSetupImage(4) + "\r\n1\r\n");
  user.Answer(MessageAnswer::Ok);
  menu.mnuSave.UserClick();
  EXPECT_EQ(user.messages.back().text, "Current data will be replaced.");
}

}  // namespace
}  // namespace dpm
