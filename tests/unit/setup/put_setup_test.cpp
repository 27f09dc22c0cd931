#include "setup/put_setup.h"

#include <gtest/gtest.h>

#include "link/image_access.h"
#include "platform/faults.h"
#include "setup/default_image.h"
#include "transfer_fixture.h"

namespace dpm {
namespace {

using testing::Commands;

const std::string kDefault = DefaultSetupImage(4);
constexpr const char* kTransferred = "Putting data to the DPM.  Data Transferred O.K.";

class PutSetupTest : public testing::TransferTest {
 protected:
  PutSetupTest() { g.SetupImage = kDefault; }

  // The commands with their times, and the line settings changed between them.
  std::vector<std::string> LineEvents() const {
    std::vector<std::string> events;
    for (const auto& e : line.Transcript()) {
      const std::string at = std::to_string(e.atMs) + " ";
      if (e.kind == fake::FakeSerialLine::Kind::Sent) events.push_back(at + e.text.substr(0, e.text.size() - 1));
      if (e.kind == fake::FakeSerialLine::Kind::Settings) events.push_back(at + "settings " + e.text);
    }
    return events;
  }
};

TEST_F(PutSetupTest, DefaultSetupToADcMeter) {
  meter.Answer("*1G12D", "60");
  PutSetup(menu.screen);
  // The meter needs two seconds to store each large block and one for each small one.
  const Commands expected = {
      {100, "*1A1"},
      {501, "*1G12D"},  // reply read at 613
      {713, "*1WA18" + kDefault.substr(20, 40)},
      {2814, "*1WF0E" + kDefault.substr(60, 60)},
      {4915, "*1W31D" + kDefault.substr(0, 12)},
      {6016, "*1W1360C00"},  // the tare byte
      {7117, "*1W26D04010D00"},
  };
  EXPECT_EQ(Sent(), expected);
  EXPECT_EQ(time.Elapsed(), 7618u);
  EXPECT_EQ(Status(), kTransferred);
  EXPECT_EQ(g.SetupImage, kDefault);
  EXPECT_TRUE(dialogs.messages.empty());
  EXPECT_EQ(dialogs.pointerChanges, (std::vector<bool>{true, false}));
}

// A revision 8 meter needs a second after each small block and takes no "Z"; revision 9
// is the first that takes "Z" and commits in 0.2 s.
TEST_F(PutSetupTest, SmallBlocksEitherSideOfRevisionNine) {
  struct Case {
    int16_t revision;
    std::vector<std::string> smallBlocks;
  };
  const Case cases[] = {
      {8, {"4915 *1W31D" + kDefault.substr(0, 12), "6016 *1W1360C00", "7117 *1W26D08010D00"}},
      {9, {"4915 *1W31D" + kDefault.substr(0, 12) + "Z", "5216 *1W1360C00Z", "5517 *1W26D09010D00"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.revision);
    const uint32_t start = StartAfresh();
    g.FirmwareRev = c.revision;
    ReplaceImageDigits(121, c.revision == 8 ? "08" : "09");
    meter.Answer("*1G12D", "60");
    PutSetup(menu.screen);
    std::vector<std::string> smallBlocks;
    for (const auto& command : Sent()) {
      if (command.atMs - start > 4000) smallBlocks.push_back(std::to_string(command.atMs - start) + " " + command.text);
    }
    EXPECT_EQ(smallBlocks, c.smallBlocks);
  }
}

TEST_F(PutSetupTest, LineFollowsANewBaudRateAndAddressBetweenTheBlocks) {
  // 19200 baud and address 10 in a revision 9 image.
  ReplaceImageDigits(45, "2A");
  ReplaceImageDigits(47, "E0");
  ReplaceImageDigits(121, "09");
  g.FirmwareRev = 9;
  meter.Answer("*1G12D", "60");
  PutSetup(menu.screen);
  const std::string& image = g.SetupImage;
  EXPECT_EQ(LineEvents(), (std::vector<std::string>{
                              "100 *1A1",
                              "501 *1G12D",
                              "713 *1WA18" + image.substr(20, 40),
                              "2814 *1WF0E" + image.substr(60, 60),
                              "4815 settings 19200,n,8,1",
                              "4915 *AW31D" + image.substr(0, 12) + "Z",
                              "5216 *AW1360C00Z",
                              "5517 *AW26D09010D00",
                          }));
  EXPECT_EQ(std::tie(g.BaudIndex, g.CharTime, g.MeterAddressNumber), std::make_tuple(6, 1, 1))
      << "the character time and the address of the settings stay";
  EXPECT_EQ(g.MeterAddress, "A");
  EXPECT_EQ(Status(), kTransferred);

  for (const auto& [digits, address] : {std::pair{"29", "9"}, {"3F", "V"}, {"21", "1"}}) {
    g.MeterAddress = "1";
    ReplaceImageDigits(45, digits);
    PutSetup(menu.screen);
    EXPECT_EQ(g.MeterAddress, address);
  }
}

TEST_F(PutSetupTest, OldImageIsPaddedTo128Digits) {
  g.SetupImage = kDefault.substr(0, 120);
  meter.Answer("*1G12D", "60");
  PutSetup(menu.screen);
  const Commands sent = Sent();
  ASSERT_EQ(sent.size(), 7u);
  EXPECT_EQ(sent[5].text, "*1W136") << "no tare byte to send";
  EXPECT_EQ(sent[6].text, "*1W26D00000000");
  EXPECT_EQ(g.SetupImage, kDefault.substr(0, 120) + "00000000");
}

TEST_F(PutSetupTest, KindsMustMatch) {
  struct Case {
    const char* what;
    const char* reply;  // nullptr: the meter does not answer
    const char* imageByte;
    const char* refusal;  // nullptr: the image is written, in so many commands
    std::size_t commands;
  };
  const Case cases[] = {
      {"DC image on a load cell meter", "C0", "60", "You cannot write DC meter data\rto a LC meter.", 2},
      {"temperature image on a DC meter", "A0", "40", "You cannot write TC meter data\rto a DC meter.", 2},
      {"no answer counts as no kind", nullptr, "60", "You cannot write DC meter data\rto a  meter.", 2},
      {"an image without kind on a silent meter", nullptr, "30", nullptr, 7},
      {"ratio image on a DC meter", "60", "A2", nullptr, 7},
      {"RTD image on a thermocouple meter, which gets no custom curve words", "4C", "5C", nullptr, 6},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    dialogs.messages.clear();
    line.ClearTranscript();
    testing::ScriptedMeter scripted(line);
    if (c.reply) scripted.Answer("*1G12D", c.reply);
    g.SetupImage = kDefault;
    ReplaceImageDigits(55, c.imageByte);
    menu.lblGPText.SetCaption("as before");
    PutSetup(menu.screen);
    EXPECT_EQ(Sent().size(), c.commands);
    EXPECT_FALSE(dialogs.hourglass);
    if (!c.refusal) {
      EXPECT_TRUE(dialogs.messages.empty());
      continue;
    }
    ASSERT_EQ(dialogs.messages.size(), 1u);
    const auto& box = dialogs.messages[0];
    EXPECT_EQ(
        std::tie(box.icon, box.title, box.text, box.buttons),
        std::make_tuple(MessageIcon::Critical, std::string("Put Data"), std::string(c.refusal), MessageButtons::Ok));
    EXPECT_EQ(menu.lblGPText.Caption(), "as before");
  }
}

TEST_F(PutSetupTest, FaultsThatEndTheProgram) {
  meter.Answer("*1G12D", "60");
  ReplaceImageDigits(47, "F0");  // baud rate 7 has no rate
  EXPECT_THROW(PutSetup(menu.screen), SerialFault);
  ReplaceImageDigits(47, "D0");
  ReplaceImageDigits(55, "E0");  // mode code 14 has no board kind
  EXPECT_THROW(PutSetup(menu.screen), IndexFault);
}

}  // namespace
}  // namespace dpm
