#include "setup/get_setup.h"

#include <gtest/gtest.h>

#include "link/image_access.h"
#include "link/transport.h"
#include "setup/default_image.h"
#include "transfer_fixture.h"

namespace dpm {
namespace {

using testing::Commands;

// The meter's main block: a DC voltmeter as shipped, whose stored option byte (75) is
// older than what the option register reports.
const std::string kDcBlock = DefaultSetupImage(4).substr(0, 120);

std::string WithDigits(std::string image, int position, const std::string& digits) {
  image.replace(static_cast<std::size_t>(position - 1), digits.size(), digits);
  return image;
}

// The same meter with a load cell conditioner on its 20 mV strain range.
const std::string kLoadCellBlock = WithDigits(WithDigits(kDcBlock, 35, "03"), 55, "C0");

class GetSetupTest : public testing::TransferTest {
 protected:
  // A meter of the given revision that answers the whole dialogue; `z` is the suffix it
  // expects on the commands that carry one.
  void ScriptMeter(const std::string& block, const std::string& revision, const std::string& z,
                   const std::string& kind = "10") {
    meter.Answer("*1XU1D" + z, block);
    meter.Answer("*1X26D" + z, revision + "010D00");
    meter.Answer("*1G130", "F5");
    meter.Answer("*1G1DE", kind);
  }
};

TEST_F(GetSetupTest, DcMeter) {
  ScriptMeter(kDcBlock, "04", "");
  GetSetup(menu.screen);
  // 100 ms before each command; 128, 16 and 10 characters plus 100 ms before the
  // replies, each read 2 ms later; a second after each block for a meter before revision
  // 9, and a second after the last one on every meter.
  const Commands expected = {
      {100, "*1XU1D"},       // reply read at 330, then 1 s
      {1431, "*1X26D"},      // reply read at 1549, then 1 s and 1 s
      {3651, "*1G130"},      // reply read at 3763, then 0.1 s
      {3964, "*1W1151001"},  // the first digit of word 15 set to 1, then 1 s
      {5065, "*1G1DE"},      // reply read at 5177, then 0.2 s
      {5478, "*1W1150001"},  // the word as it was
  };
  EXPECT_EQ(Sent(), expected);
  EXPECT_EQ(g.SetupImage, WithDigits(kDcBlock, 49, "F5") + "04010D00");
  EXPECT_EQ(g.FirmwareRev, 4);
  EXPECT_EQ(g.MeterKind, "1");
  EXPECT_EQ(g.AppClass, 1);
  EXPECT_EQ(g.ImageLoaded, 1);
  EXPECT_EQ(g.TedsHardware, 0);
  EXPECT_EQ(g.TedsEnabled, 0);
  EXPECT_EQ(Status(), "Getting data from the DPM.  Data received O.K.");
  EXPECT_EQ(menu.lblGPText.ForeColor(), ColGreen);
  EXPECT_TRUE(menu.mnuCmds.Enabled());
  EXPECT_TRUE(menu.mnuView.Enabled());
  EXPECT_TRUE(menu.mnuPut.Enabled());
  EXPECT_EQ(dialogs.pointerChanges, (std::vector<bool>{true, false}));
}

TEST_F(GetSetupTest, LoadCellMeterWithDataSheetHardware) {
  ScriptMeter(kLoadCellBlock, "04", "");
  meter.Answer("*1R17F", "03");
  meter.Answer("*1X136", "0C00");
  GetSetup(menu.screen);
  // The hardware question is read at once, without a pause for the reply's length.
  const Commands expected = {
      {100, "*1XU1D"},  {1431, "*1X26D"},     {2650, "*1R17F"},  // reply read at 2657
      {2757, "*1X136"},                                          // reply read at 2764, then 0.5 s and 1 s
      {4365, "*1G130"}, {4678, "*1W1151003"}, {5779, "*1G1DE"}, {6192, "*1W1150003"},
  };
  EXPECT_EQ(Sent(), expected);
  EXPECT_EQ(g.SetupImage, WithDigits(kLoadCellBlock, 49, "F5") + "04010D00" + "0C00");
  EXPECT_EQ(g.TedsHardware, 1);
  EXPECT_EQ(g.TedsPresent, 1);
  EXPECT_EQ(g.TedsEnabled, 1) << "plug and play is on while its bit is 0";
}

TEST_F(GetSetupTest, LoadCellMeterWithoutDataSheetHardware) {
  ScriptMeter(kLoadCellBlock, "04", "");
  meter.Answer("*1R17F", "01");
  // What an earlier meter left.
  g.TedsHardware = 1;
  g.TedsPresent = 1;
  GetSetup(menu.screen);
  const Commands expected = {
      {100, "*1XU1D"},  {1431, "*1X26D"},     {2650, "*1R17F"},  // reply read at 2657, then 1 s
      {3758, "*1G130"}, {4071, "*1W1151003"}, {5172, "*1G1DE"}, {5585, "*1W1150003"},
  };
  EXPECT_EQ(Sent(), expected);
  EXPECT_EQ(g.SetupImage.size(), 128u);
  EXPECT_EQ(g.TedsHardware, 0);
  EXPECT_EQ(g.TedsPresent, 1) << "only a meter with the hardware says whether a data sheet is there";
}

TEST_F(GetSetupTest, TheMetersOwnRevisionTakesOverAfterTheBlocks) {
  struct Case {
    int16_t revisionBefore;
    std::string z;
    Commands expected;
  };
  const Case cases[] = {
      // Known as revision 4: the blocks go without "Z" and with the pauses of old meters;
      // the probe, after the revision was read, with "Z" and the short pause.
      {4,
       "",
       {{100, "*1XU1D"},
        {1431, "*1X26D"},
        {3651, "*1G130"},
        {3964, "*1W1151001Z"},
        {4265, "*1G1DE"},
        {4678, "*1W1150001"}}},
      // Known as revision 10 from an earlier setup: no pauses between the blocks.
      {10,
       "Z",
       {{100, "*1XU1DZ"},
        {430, "*1X26DZ"},
        {1649, "*1G130"},
        {1962, "*1W1151001Z"},
        {2262, "*1G1DE"},
        {2675, "*1W1150001"}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.revisionBefore);
    line.ClearTranscript();
    time.Run(10000 - time.Elapsed() % 10000);
    const uint32_t start = time.Elapsed();
    g.FirmwareRev = c.revisionBefore;
    ScriptMeter(kDcBlock, "0A", c.z);
    GetSetup(menu.screen);
    Commands sent = Sent();
    for (auto& command : sent) command.atMs -= start;
    EXPECT_EQ(sent, c.expected);
    EXPECT_EQ(g.FirmwareRev, 10);
    EXPECT_EQ(Status(), "Getting data from the DPM.  Data received O.K.");
  }
}

TEST_F(GetSetupTest, MeterSilentAfterTheFirstReplyStillEndsReceived) {
  ScriptMeter(kDcBlock, "04", "");
  meter.SilentAfter(1);
  GetSetup(menu.screen);
  // Each unanswered request waits 3.007 s; the later blocks take the stale reply, which
  // also reads as revision 0.
  const Commands expected = {
      {100, "*1XU1D"},       {1431, "*1X26D"},  // no answer until 4555, then 1 s and 1 s
      {6657, "*1G130"},                         // no answer until 9775, then 0.1 s
      {9976, "*1W1151001"},                     // 1 s
      {11077, "*1G1DE"},                        // no answer until 14195, then 0.2 s
      {14496, "*1W1150001"},
  };
  EXPECT_EQ(Sent(), expected);
  std::string image = kDcBlock + kDcBlock;
  image = WithDigits(WithDigits(image, 49, "00"), 123, "01");
  EXPECT_EQ(g.SetupImage, image);
  EXPECT_EQ(g.FirmwareRev, 0);
  EXPECT_EQ(g.MeterKind, "0");
  EXPECT_EQ(g.ErrFlag, kNoAnswer);
  EXPECT_EQ(Status(), "Getting data from the DPM.  Data received O.K.");
  EXPECT_EQ(menu.lblGPText.ForeColor(), ColGreen);
  EXPECT_TRUE(menu.mnuCmds.Enabled());
}

TEST_F(GetSetupTest, NoAnswerToTheFirstRequest) {
  g.SetupImage = "before";
  GetSetup(menu.screen);
  EXPECT_EQ(Sent(), (Commands{{100, "*1XU1D"}}));
  EXPECT_EQ(time.Elapsed(), 328u + 3008u);
  EXPECT_EQ(Status(), "ErrFlag =  4Failed to Get data, check connections and restart program.");
  EXPECT_EQ(menu.lblGPText.ForeColor(), ColRed);
  EXPECT_EQ(g.SetupImage, "before");
  EXPECT_EQ(g.ImageLoaded, 0);
  EXPECT_FALSE(menu.mnuCmds.Enabled());
  EXPECT_FALSE(menu.mnuView.Enabled());
  EXPECT_FALSE(menu.mnuPut.Enabled());
  EXPECT_FALSE(dialogs.hourglass);
}

TEST_F(GetSetupTest, MeterKindFromTheFirstDigitOfTheProbe) {
  struct Case {
    const char* reply;
    const char* kind;
  };
  // A lone "1" never arrives as such: replies are digit pairs and the odd digit is dropped.
  for (const Case c : {Case{"10", "1"}, Case{"1F", "1"}, Case{"01", "0"}, Case{"1", "0"}}) {
    SCOPED_TRACE(c.reply);
    ScriptMeter(kDcBlock, "04", "", c.reply);
    GetSetup(menu.screen);
    EXPECT_EQ(g.MeterKind, c.kind);
  }
}

TEST_F(GetSetupTest, StatusLineAdvancesWhileTheHourglassShows) {
  ScriptMeter(kLoadCellBlock, "04", "");
  meter.Answer("*1R17F", "00");
  std::vector<std::string> shown;
  time.AddTicker([&](uint32_t) {
    if (shown.empty() || shown.back() != menu.lblGPText.Caption()) shown.push_back(menu.lblGPText.Caption());
    EXPECT_TRUE(dialogs.hourglass);
  });
  GetSetup(menu.screen);
  EXPECT_EQ(shown, (std::vector<std::string>{
                       "Getting data from the DPM",
                       "Getting data from the DPM  (revision)",
                       "Getting data from the DPM  (load cell)",
                       "Getting data from the DPM  (option boards)",
                       "Getting data from the DPM  (meter kind)",
                   }));
  EXPECT_EQ(Status(), "Getting data from the DPM.  Data received O.K.");
}

}  // namespace
}  // namespace dpm
