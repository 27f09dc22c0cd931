#include "link/startup.h"

#include <gtest/gtest.h>

#include "link/globals.h"
#include "link_fixture.h"
#include "platform/faults.h"
#include "temp_folder.h"

namespace dpm {
namespace {

TEST(LinkSettings, LengthRepair) {
  struct Case {
    const char* text;
    const char* repaired;
  };
  const Case cases[] = {
      {"1501000100000041010000", "1501000100000041010000"},  // full form
      {"15010001000000410", "1501000100000041010000"},       // 17: "10000" appended
      {"150100010000004101", "1501000100000041010000"},      // 18 to 21: zeros up to 22
      {"150100010000004101000", "1501000100000041010000"},
      {"1501000100000041", "1501000100000041000000"},  // 16: six zeros make 22
      {"150100010000004", "150100010000004000000"},    // 15 and fewer stay short
      {"", "000000"},
      {"15010001000000410100001234", "15010001000000410100001234"},  // longer texts are kept
  };
  for (const auto& c : cases) EXPECT_EQ(RepairLinkSettings(c.text), c.repaired) << c.text;
}

TEST(LinkSettings, FirstFieldOfTheFile) {
  EXPECT_EQ(FirstFieldOf("\"1501000100000041010000\"\r\n"), "1501000100000041010000");
  EXPECT_EQ(FirstFieldOf("  1501000100000041010000,second\n"), "1501000100000041010000");
  EXPECT_EQ(FirstFieldOf("150100 \r\nnext line"), "150100 ") << "trailing blanks belong to the text";
  EXPECT_EQ(FirstFieldOf("\"15,01\""), "15,01") << "a comma inside quotation marks belongs to the text";
}

struct Derived {
  const char* settings;
  int16_t appClass, baudIndex, port;
  const char* address;
  int16_t addressNumber, halfDuplex, linkEnabled;
};

TEST(LinkSettings, ValuesByPosition) {
  const Derived cases[] = {
      {"1501000100000041010000", 1, 5, 1, "1", 1, 0, 1},
      {"4612000A00010001000000", 0, 6, 12, "A", 10, 1, 1},  // class 4 counts 0
      {"8300000000000000000000", 0, 3, 0, "0", 0, 0, 0},    // 8 and up count 0
      {"9000000V00000000000000", 0, 0, 0, "V", 31, 0, 0},
      {"X5xx00010000004 110000", 0, 5, 0, "1", 1, 0, 0},  // non-digits count 0; a blank link flag too
      {"7500000:000000", 7, 5, 0, ":", 10, 0, 0},         // ":" sorts before "A": its code less 48
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.settings);
    ResetGlobals();
    ApplyLinkSettings(RepairLinkSettings(c.settings));
    EXPECT_EQ(g.AppClass, c.appClass);
    EXPECT_EQ(g.BaudIndex, c.baudIndex);
    EXPECT_EQ(g.ComPortNumber, c.port);
    EXPECT_EQ(g.MeterAddress, c.address);
    EXPECT_EQ(g.MeterAddressNumber, c.addressNumber);
    EXPECT_EQ(g.HalfDuplexFlag, c.halfDuplex);
    EXPECT_EQ(g.LinkEnabled, c.linkEnabled);
  }
}

TEST(LinkSettings, BaudCharacterOutsideTheTableIsFatal) {
  ResetGlobals();
  EXPECT_THROW(ApplyLinkSettings("1701000100000041010000"), IndexFault);
  EXPECT_THROW(ApplyLinkSettings("1 01000100000041010000"), IndexFault);
}

TEST(Tables, ControlNamesAndCharName) {
  EXPECT_EQ(CharName(13), "cr ");
  EXPECT_EQ(CharName(32), "sp ");
  EXPECT_EQ(CharName(0), "nul");
  EXPECT_EQ(CharName(17), "dc1");
  EXPECT_EQ(CharName(31), "us ");
  EXPECT_EQ(CharName(65), "A");
  EXPECT_THROW(CharName(-1), IndexFault);
  for (const auto& name : ControlNames()) EXPECT_EQ(name.size(), 3u);
}

// Start-up against a settings file in a folder of its own, with the in-memory line.
class StartUpTest : public testing::LinkTest {
 protected:
  StartUpTest() {
    line.SetPortOpen(false);
    line.ClearTranscript();
    ResetGlobals();
  }
  ~StartUpTest() override { std::filesystem::current_path(std::filesystem::temp_directory_path()); }
  void WriteSettings(const std::string& contents) { std::ofstream(folder / "Settings.SSS") << contents; }

  testing::TempFolder temp;
  const std::filesystem::path& folder = temp.Path();
};

TEST_F(StartUpTest, OpensThePortInOrderAndPreparesTheProgram) {
  WriteSettings("\"6601000100000091700000\"\r\n");
  bool menuShown = false;
  Main(folder, [&] { menuShown = true; });
  using Kind = fake::FakeSerialLine::Kind;
  const std::vector<fake::FakeSerialLine::Event> expected = {
      {0, Kind::Settings, "19200,n,8,1"}, {0, Kind::Open, "COM1"}, {0, Kind::DtrOn, ""}};
  EXPECT_EQ(line.Transcript(), expected);
  EXPECT_TRUE(line.RTSEnable());
  EXPECT_TRUE(menuShown);
  EXPECT_EQ(g.CharTime, 1);
  EXPECT_EQ(g.FirmwareRev, 9);
  EXPECT_EQ(g.CalibSetting, 7);
  EXPECT_EQ(g.MeterTitle, " DPM Transmitter");
  EXPECT_EQ(g.SetupImage, std::string(128, '0'));
  EXPECT_EQ(g.ImageLoaded, 0);
  EXPECT_EQ(g.DefaultFirmwareRev, 4);
  EXPECT_EQ(std::filesystem::current_path(), folder);
}

// The port number and the address come from their positions, blanks and all.
TEST_F(StartUpTest, PortNumberAndAddressOfTheSettingsReachTheLine) {
  WriteSettings("1512000A00000041010000");
  Main(folder);
  EXPECT_EQ(line.CommPort(), 12);
  EXPECT_EQ(line.Transcript().at(1), (fake::FakeSerialLine::Event{0, fake::FakeSerialLine::Kind::Open, "COM12"}));
  EXPECT_EQ(g.MeterAddress, "A");

  line.SetPortOpen(false);
  WriteSettings("1501000 \r\n");
  Main(folder);
  EXPECT_EQ(g.MeterAddress, " ");
}

TEST_F(StartUpTest, CharTimeFollowsTheBaudRate) {
  const int16_t expected[] = {33, 17, 8, 4, 2, 1, 1};
  for (int baud = 0; baud <= 6; ++baud) {
    WriteSettings("1" + std::to_string(baud) + "01000100000040010000");
    Main(folder);
    EXPECT_EQ(g.CharTime, expected[baud]) << baud;
    EXPECT_EQ(g.MeterTitle, " DPM");
  }
}

TEST_F(StartUpTest, PortStaysClosedUnlessTheLinkFlagIsOne) {
  for (const char* settings : {"1501000100000040010000", "150100010000004 010000", "15010001000000"}) {
    WriteSettings(settings);
    Main(folder);
    EXPECT_FALSE(line.PortOpen()) << settings;
    EXPECT_TRUE(line.Transcript().empty());
  }
}

TEST_F(StartUpTest, FatalFaultsNameTheirCause) {
  try {
    Main(folder);
    FAIL() << "a missing settings file must stop the program";
  } catch (const FileFault& fault) {
    EXPECT_NE(std::string(fault.what()).find("Settings.SSS"), std::string::npos);
  }
  WriteSettings("1901000100000041010000");
  EXPECT_THROW(Main(folder), IndexFault);
  WriteSettings("");
  EXPECT_THROW(Main(folder), FileFault);
  std::filesystem::remove(folder / "Settings.SSS");
  std::filesystem::create_directory(folder / "Settings.SSS");
  try {
    Main(folder);
    FAIL() << "a folder in place of the settings file must stop the program";
  } catch (const FileFault& fault) {
    EXPECT_NE(std::string(fault.what()).find("not a file"), std::string::npos) << fault.what();
  }
  std::filesystem::remove(folder / "Settings.SSS");
  WriteSettings("1501000100000041010000");
  line.FailFromNowOn(true);
  EXPECT_THROW(Main(folder), SerialFault) << "a port that cannot be opened";
}

}  // namespace
}  // namespace dpm
