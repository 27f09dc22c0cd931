#include "setup/put_setup.h"

#include <gtest/gtest.h>

#include "link/image_access.h"
#include "platform/faults.h"
#include "setup/default_image.h"
#include "transfer_fixture.h"

namespace dpm {
namespace {

using testing::Commands;
using Kind = fake::FakeSerialLine::Kind;

const std::string kDefault = DefaultSetupImage(4);

class PutSetupTest : public testing::TransferTest {
 protected:
  PutSetupTest() { g.SetupImage = kDefault; }

  // What went over the line: the commands, and the line settings changed between them.
  std::vector<std::string> LineEvents() const {
    std::vector<std::string> events;
    for (const auto& e : line.Transcript()) {
      if (e.kind == Kind::Sent) events.push_back(std::to_string(e.atMs) + " " + e.text.substr(0, e.text.size() - 1));
      if (e.kind == Kind::Settings) events.push_back(std::to_string(e.atMs) + " settings " + e.text);
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
      {6016,
       "*1W136"
       "0C00"},
      {7117,
       "*1W26D"
       "04010D00"},
  };
  EXPECT_EQ(Sent(), expected);
  EXPECT_EQ(time.Elapsed(), 7618u);
  EXPECT_EQ(Status(), "Putting data to the DPM.  Data Transferred O.K.");
  EXPECT_EQ(menu.lblGPText.ForeColor(), ColGreen);
  EXPECT_EQ(g.SetupImage, kDefault);
  EXPECT_TRUE(dialogs.messages.empty());
  EXPECT_EQ(dialogs.pointerChanges, (std::vector<bool>{true, false}));
}

TEST_F(PutSetupTest, LineFollowsANewBaudRateAndAddressBetweenTheBlocks) {
  // 19200 baud (E0 keeps the filtered output) and address 10 in a revision 9 image.
  g.SetupImage = kDefault;
  ReplaceImageDigits(45, "2A");
  ReplaceImageDigits(47, "E0");
  ReplaceImageDigits(121, "09");
  g.FirmwareRev = 9;
  meter.Answer("*1G12D", "60");
  PutSetup(menu.screen);
  const std::string image = g.SetupImage;
  EXPECT_EQ(LineEvents(), (std::vector<std::string>{
                              "100 *1A1",
                              "501 *1G12D",
                              "713 *1WA18" + image.substr(20, 40),
                              "2814 *1WF0E" + image.substr(60, 60),
                              "4815 settings 19200,n,8,1",
                              "4915 *AW31D" + image.substr(0, 12) + "Z",
                              "5216 *AW136"
                              "0C00"
                              "Z",
                              "5517 *AW26D"
                              "09010D00",
                          }));
  EXPECT_EQ(g.BaudIndex, 6);
  EXPECT_EQ(g.MeterAddress, "A");
  EXPECT_EQ(g.MeterAddressNumber, 1) << "a later Put compares with the address of the settings";
  EXPECT_EQ(g.CharTime, 1);
  EXPECT_EQ(Status(), "Putting data to the DPM.  Data Transferred O.K.");
}

TEST_F(PutSetupTest, AddressCharacters) {
  struct Case {
    const char* digits;
    const char* address;
  };
  for (const Case c : {Case{"29", "9"}, Case{"2A", "A"}, Case{"3F", "V"}, Case{"21", "1"}}) {
    g.MeterAddress = "1";
    g.SetupImage = kDefault;
    ReplaceImageDigits(45, c.digits);
    meter.Answer("*1G12D", "60");
    PutSetup(menu.screen);
    EXPECT_EQ(g.MeterAddress, c.address);
  }
}

TEST_F(PutSetupTest, OldImageIsPaddedTo128Digits) {
  g.SetupImage = kDefault.substr(0, 120);
  meter.Answer("*1G12D", "60");
  PutSetup(menu.screen);
  const Commands sent = Sent();
  ASSERT_EQ(sent.size(), 7u);
  EXPECT_EQ(sent[5].text, "*1W136") << "no data sheet byte to send";
  EXPECT_EQ(sent[6].text, "*1W26D00000000");
  EXPECT_EQ(g.SetupImage, kDefault.substr(0, 120) + "00000000");
}

TEST_F(PutSetupTest, TemperatureMeterGetsNoCustomCurveWords) {
  ReplaceImageDigits(55, "50");  // RTD
  meter.Answer("*1G12D", "41");  // a thermocouple meter: the same kind
  PutSetup(menu.screen);
  std::vector<std::string> commands;
  for (const auto& c : Sent()) commands.push_back(c.text.substr(0, 6));
  EXPECT_EQ(commands, (std::vector<std::string>{"*1A1", "*1G12D", "*1WA18", "*1WF0E", "*1W136", "*1W26D"}));
}

TEST_F(PutSetupTest, KindsMustMatch) {
  struct Case {
    const char* what;
    const char* reply;  // nullptr: the meter does not answer
    const char* imageByte;
    const char* refusal;  // nullptr: the image is written
  };
  const Case cases[] = {
      {"DC image on a load cell meter", "C0", "60", "You cannot write DC meter data\rto a LC meter."},
      {"load cell image on an RMS meter", "91", "D2", "You cannot write LC meter data\rto a RMS meter."},
      {"temperature image on a DC meter", "A0", "40", "You cannot write TC meter data\rto a DC meter."},
      {"no answer counts as no kind", nullptr, "60", "You cannot write DC meter data\rto a  meter."},
      {"an image without kind on a silent meter", nullptr, "30", nullptr},
      {"ratio image on a DC meter", "60", "A2", nullptr},
      {"RTD image on a thermocouple meter", "4C", "5C", nullptr},
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
    if (c.refusal) {
      ASSERT_EQ(dialogs.messages.size(), 1u);
      EXPECT_EQ(dialogs.messages[0].icon, MessageIcon::Critical);
      EXPECT_EQ(dialogs.messages[0].title, "Put Data");
      EXPECT_EQ(dialogs.messages[0].text, c.refusal);
      EXPECT_EQ(dialogs.messages[0].buttons, MessageButtons::Ok);
      EXPECT_EQ(Sent().size(), 2u) << "nothing written";
      EXPECT_EQ(menu.lblGPText.Caption(), "as before");
    } else {
      EXPECT_TRUE(dialogs.messages.empty());
      EXPECT_EQ(Sent().back().text.substr(0, 6), "*1W26D") << "written to the end";
    }
    EXPECT_FALSE(dialogs.hourglass);
  }
}

TEST_F(PutSetupTest, FaultsThatEndTheProgram) {
  ReplaceImageDigits(47, "F0");  // baud rate 7 has no rate
  meter.Answer("*1G12D", "60");
  EXPECT_THROW(PutSetup(menu.screen), SerialFault);
  ReplaceImageDigits(47, "D0");
  ReplaceImageDigits(55, "E0");  // mode code 14 has no board kind
  EXPECT_THROW(PutSetup(menu.screen), IndexFault);
}

}  // namespace
}  // namespace dpm
