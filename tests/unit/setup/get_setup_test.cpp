#include "setup/get_setup.h"

#include <gtest/gtest.h>

#include <tuple>

#include "link/transport.h"
#include "setup/default_image.h"
#include "transfer_fixture.h"

namespace dpm {
namespace {

using testing::Commands;

std::string WithDigits(std::string image, int position, const std::string& digits) {
  return image.replace(static_cast<std::size_t>(position - 1), digits.size(), digits);
}

// The meter's main block: a DC voltmeter as shipped, whose stored option byte (75) is
// older than what its option register reports (F5).
const std::string kDcBlock = DefaultSetupImage(4).substr(0, 120);
// The same meter with a load cell conditioner on its 20 mV strain range.
const std::string kLoadCellBlock = WithDigits(WithDigits(kDcBlock, 35, "03"), 55, "C0");
constexpr const char* kReceived = "Getting data from the DPM.  Data received O.K.";

class GetSetupTest : public testing::TransferTest {
 protected:
  // A meter that answers the whole dialogue; `z` is the suffix it expects on the blocks.
  void ScriptMeter(const std::string& block, const std::string& revision = "04", const std::string& z = "",
                   const std::string& kind = "10") {
    meter.Answer("*1XU1D" + z, block);
    meter.Answer("*1X26D" + z, revision + "010D00");
    meter.Answer("*1G130", "F5");
    meter.Answer("*1G1DE", kind);
  }
  // The commands of a run that started at `start`, with times counted from there.
  Commands SentSince(uint32_t start) const {
    Commands sent = Sent();
    for (auto& command : sent) command.atMs -= start;
    return sent;
  }
};

TEST_F(GetSetupTest, DcMeter) {
  ScriptMeter(kDcBlock);
  GetSetup(menu.screen);
  // 100 ms before each command; 128, 16 and 10 characters plus 100 ms before the replies,
  // each read 2 ms later; a second after each block for a meter before revision 9, and a
  // second after the last block on every meter.
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
  EXPECT_EQ(std::tie(g.FirmwareRev, g.AppClass, g.ImageLoaded, g.TedsEnabled), std::make_tuple(4, 1, 1, 0));
  EXPECT_EQ(g.MeterKind, "1");
  EXPECT_EQ(Status(), kReceived);
  EXPECT_EQ(menu.lblGPText.ForeColor(), ColGreen);
  EXPECT_TRUE(menu.mnuCmds.Enabled() && menu.mnuView.Enabled() && menu.mnuPut.Enabled());
  EXPECT_EQ(dialogs.pointerChanges, (std::vector<bool>{true, false}));
}

TEST_F(GetSetupTest, LoadCellMeter) {
  struct Case {
    const char* what;
    const char* facts;  // the reply to R17F: bit 1 hardware, bit 0 data sheet
    Commands expected;
    std::string tail;                            // what follows the 120 digits of the main block
    std::tuple<int16_t, int16_t, int16_t> teds;  // hardware, present, enabled
  };
  const Case cases[] = {
      {"with data sheet hardware",
       "03",
       {{100, "*1XU1D"},
        {1431, "*1X26D"},
        {2650, "*1R17F"},  // read at once, without a pause for its length: at 2657
        {2757, "*1X136"},  // read at 2764, then 0.5 s and 1 s
        {4365, "*1G130"},
        {4678, "*1W1151003"},
        {5779, "*1G1DE"},
        {6192, "*1W1150003"}},
       "04010D000C00",
       {1, 1, 1}},
      // The data sheet flag stays as an earlier meter left it (1 here).
      {"without",
       "01",
       {{100, "*1XU1D"},
        {1431, "*1X26D"},
        {2650, "*1R17F"},
        {3758, "*1G130"},
        {4071, "*1W1151003"},
        {5172, "*1G1DE"},
        {5585, "*1W1150003"}},
       "04010D00",
       {0, 1, 1}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const uint32_t start = StartAfresh();
    g.TedsHardware = 1;
    g.TedsPresent = 1;
    ScriptMeter(kLoadCellBlock);
    meter.Answer("*1R17F", c.facts);
    meter.Answer("*1X136", "0C00");
    GetSetup(menu.screen);
    EXPECT_EQ(SentSince(start), c.expected);
    EXPECT_EQ(g.SetupImage, WithDigits(kLoadCellBlock, 49, "F5") + c.tail);
    EXPECT_EQ(std::tie(g.TedsHardware, g.TedsPresent, g.TedsEnabled), c.teds);
  }
}

TEST_F(GetSetupTest, TheMetersOwnRevisionTakesOverAfterTheBlocks) {
  // A meter known to take "Z": no pauses between the blocks, the probe committed in 0.2 s.
  const Commands kWithZ = {{100, "*1XU1DZ"},      {430, "*1X26DZ"}, {1649, "*1G130"},
                           {1962, "*1W1151001Z"}, {2262, "*1G1DE"}, {2675, "*1W1150001"}};
  struct Case {
    int16_t revisionBefore;
    const char* meterRevision;
    std::string z;
    Commands expected;
  };
  const Case cases[] = {
      // Known as revision 4: the blocks go without "Z" and with the pauses of old meters;
      // the probe, once the meter's revision 10 is read, with "Z" and the short pause.
      {4,
       "0A",
       "",
       {{100, "*1XU1D"},
        {1431, "*1X26D"},
        {3651, "*1G130"},
        {3964, "*1W1151001Z"},
        {4265, "*1G1DE"},
        {4678, "*1W1150001"}}},
      // Known as revision 10 from an earlier setup: no pauses between the blocks.
      {10, "0A", "Z", kWithZ},
      // Either side of revision 9, the first to take "Z", to need no second between the
      // blocks and to commit the probe word in 0.2 s.
      {8,
       "08",
       "",
       {{100, "*1XU1D"},
        {1431, "*1X26D"},
        {3651, "*1G130"},
        {3964, "*1W1151001"},
        {5065, "*1G1DE"},
        {5478, "*1W1150001"}}},
      {9, "09", "Z", kWithZ},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.revisionBefore);
    const uint32_t start = StartAfresh();
    g.FirmwareRev = c.revisionBefore;
    ScriptMeter(kDcBlock, c.meterRevision, c.z);
    GetSetup(menu.screen);
    EXPECT_EQ(SentSince(start), c.expected);
    EXPECT_EQ(g.FirmwareRev, std::stoi(c.meterRevision, nullptr, 16));
    EXPECT_EQ(Status(), kReceived);
  }
}

TEST_F(GetSetupTest, MeterSilentAfterTheFirstReplyStillEndsReceived) {
  ScriptMeter(kDcBlock);
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
  EXPECT_EQ(g.SetupImage, WithDigits(WithDigits(kDcBlock + kDcBlock, 49, "00"), 123, "01"));
  EXPECT_EQ(std::tie(g.FirmwareRev, g.ErrFlag), std::make_tuple(0, kNoAnswer));
  EXPECT_EQ(g.MeterKind, "0");
  EXPECT_EQ(Status(), kReceived);
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
  EXPECT_FALSE(menu.mnuCmds.Enabled() || menu.mnuView.Enabled() || menu.mnuPut.Enabled());
  EXPECT_FALSE(dialogs.hourglass);
}

TEST_F(GetSetupTest, MeterKindFromTheFirstDigitOfTheProbe) {
  // A lone "1" never arrives as such: replies are digit pairs and the odd digit is dropped.
  for (const auto& [reply, kind] : {std::pair{"10", "1"}, {"1F", "1"}, {"01", "0"}, {"1", "0"}}) {
    ScriptMeter(kDcBlock, "04", "", reply);
    GetSetup(menu.screen);
    EXPECT_EQ(g.MeterKind, kind) << reply;
  }
}

// The status line keeps its words while the dialogue runs; the bar beside it moves on.
TEST_F(GetSetupTest, ProgressShowsOnTheBarNotInTheStatusWords) {
  ScriptMeter(kLoadCellBlock);
  meter.Answer("*1R17F", "00");
  std::vector<std::string> captions;
  std::vector<int> steps;
  time.AddTicker([&](uint32_t) {
    if (captions.empty() || captions.back() != menu.lblGPText.Caption()) captions.push_back(menu.lblGPText.Caption());
    if (steps.empty() || steps.back() != menu.prgTransfer.Value()) steps.push_back(menu.prgTransfer.Value());
    EXPECT_TRUE(dialogs.hourglass);
    EXPECT_TRUE(menu.prgTransfer.Visible());
  });
  GetSetup(menu.screen);
  EXPECT_EQ(captions, std::vector<std::string>{"Getting data from the DPM"});
  EXPECT_EQ(steps, (std::vector<int>{0, 1, 2, 3, 4}));
  EXPECT_EQ(Status(), kReceived);
  EXPECT_FALSE(menu.prgTransfer.Visible());

  meter.SilentAfter(0);
  GetSetup(menu.screen);
  EXPECT_FALSE(menu.prgTransfer.Visible()) << "a failed Get takes the bar away too";
}

}  // namespace
}  // namespace dpm
