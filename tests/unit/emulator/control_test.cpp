#include "emulator/control.h"

#include <gtest/gtest.h>

#include "temp_folder.h"

namespace dpm::emulator {
namespace {

TEST(EmulatorControlTest, CommandLine) {
  ProgramOptions options;
  EXPECT_EQ(
      ParseArguments({"--link",    "bin/COM1", "--conditioner", "load-cell",    "--kind",  "basic", "--revision", "10",
                      "--teds",    "present",  "--echo",        "--latency=20", "--baud",  "19200", "--address",  "C",
                      "--options", "F5",       "--input",       "1.5",          "--noise", "0.01"},
                     options),
      std::nullopt);
  EXPECT_EQ(options.linkPath, "bin/COM1");
  EXPECT_EQ(options.meter.conditioner, Conditioner::LoadCell);
  EXPECT_FALSE(options.meter.extended);
  EXPECT_EQ(options.meter.firmwareRev, 10);
  EXPECT_TRUE(options.meter.tedsHardware && options.meter.tedsPresent);
  EXPECT_TRUE(options.port.echo);
  EXPECT_EQ(options.port.latencyMs, 20u);
  EXPECT_EQ(options.port.baud, 19200);
  EXPECT_EQ(options.meter.baudIndex, 6) << "a rate of the meter's table goes into its setup";
  EXPECT_EQ(options.meter.address, 12);
  EXPECT_EQ(options.meter.optionRegister, 0xF5);
  EXPECT_EQ(options.input, 1.5);
  EXPECT_EQ(options.noise, 0.01);

  // The sheet's fields themselves are decoded by the program's own data sheet tests.
  ProgramOptions sheet;
  EXPECT_EQ(ParseArguments({"--link", "x", "--teds-serial", "1234567"}, sheet), std::nullopt);
  EXPECT_TRUE(sheet.meter.tedsHardware && sheet.meter.tedsPresent) << "a field of the sheet puts the sheet on";
  EXPECT_EQ(sheet.meter.dataSheet, EncodeDataSheet(sheet.dataSheet));
  for (const auto& [date, day] :
       {std::pair{"1998-01-01", 0}, {"2000-02-29", 789}, {"2000-03-01", 790}, {"2177-06-06", 65535}}) {
    EXPECT_EQ(CalibrationDayOf(date), day) << date;
  }
  ProgramOptions without;
  EXPECT_EQ(ParseArguments({"--link", "x", "--teds-serial", "5", "--teds", "hardware"}, without), std::nullopt);
  EXPECT_TRUE(without.meter.tedsHardware);
  EXPECT_FALSE(without.meter.tedsPresent) << "--teds wins over the sheet's fields";

  for (const std::vector<std::string>& wrong : {std::vector<std::string>{},
                                                {"--link"},
                                                {"--link", "x", "--kind", "medium"},
                                                {"--link", "x", "--revision", "300"},
                                                {"--link", "x", "--address", "W"},
                                                {"--link", "x", "--teds", "maybe"},
                                                {"--link", "x", "--teds-template", "4"},
                                                {"--link", "x", "--teds-serial", "16777216"},
                                                {"--link", "x", "--teds-units", "64"},
                                                {"--link", "x", "--teds-extended-units", "-1"},
                                                {"--link", "x", "--teds-date", "2023-02-29"},
                                                {"--link", "x", "--teds-date", "1997-12-31"},
                                                {"--link", "x", "--teds-date", "2177-06-07"},
                                                {"--link", "x", "--teds-date", "24-02-29"},
                                                {"--link", "x", "--teds-initials", "ABCD"},
                                                {"--link", "x", "--teds-initials", "A1"},
                                                {"--link", "x", "--teds-period", "4096"},
                                                {"--link", "x", "--teds-id", "2048"},
                                                {"--link", "x", "--teds-colour", "red"},
                                                {"--link", "x", "--options", "7"},
                                                {"--link", "x", "--conditioner", "ac"},
                                                {"--link", "x", "--baud", "fast"},
                                                {"--link", "x", "extra"}}) {
    ProgramOptions ignored;
    EXPECT_NE(ParseArguments(wrong, ignored), std::nullopt) << ::testing::PrintToString(wrong);
  }
  ProgramOptions help;
  EXPECT_EQ(ParseArguments({"--help"}, help), std::nullopt) << "help needs no link";
  EXPECT_TRUE(help.help);
}

TEST(EmulatorControlTest, SetupFileGivesImageAndKind) {
  const testing::TempFolder folder;
  const auto path = folder / "setup.DPM";
  std::ofstream(path, std::ios::binary) << std::string(128, '1') << "\r\n0\r\n";
  ProgramOptions options;
  options.imageFile = path.string();
  std::string image;
  EXPECT_EQ(ReadSetupFile(options, image), std::nullopt);
  EXPECT_EQ(image, std::string(128, '1'));
  EXPECT_FALSE(options.meter.extended);
  options.meter.extended = true;
  options.kindGiven = true;
  EXPECT_EQ(ReadSetupFile(options, image), std::nullopt);
  EXPECT_TRUE(options.meter.extended) << "the command line wins over the file";
  std::filesystem::remove(path);
  EXPECT_NE(ReadSetupFile(options, image), std::nullopt);
}

TEST(EmulatorControlTest, ControlLines) {
  Meter meter;
  MeterPort port(meter);
  EXPECT_FALSE(ApplyControlLine("input 0.05", port).quit);
  EXPECT_EQ(meter.Input(), 0.05);
  ApplyControlLine("  noise 0.002 ", port);
  EXPECT_EQ(meter.Noise(), 0.002);
  ApplyControlLine("silent", port);
  ApplyControlLine("echo on", port);
  ApplyControlLine("babble on", port);
  ApplyControlLine("latency 40", port);
  EXPECT_TRUE(port.Options().silent && port.Options().echo && port.Options().babble);
  EXPECT_EQ(port.Options().latencyMs, 40u);
  ApplyControlLine("silent off", port);
  EXPECT_FALSE(port.Options().silent);
  EXPECT_EQ(ApplyControlLine("image", port).message, "image " + meter.Image());
  for (const char* wrong : {"input", "input x", "noise -1", "echo maybe", "jump"}) {
    const ControlResult result = ApplyControlLine(wrong, port);
    EXPECT_FALSE(result.quit);
    EXPECT_FALSE(result.message.empty()) << wrong;
  }
  EXPECT_EQ(meter.Input(), 0.05) << "a wrong line changes nothing";
  EXPECT_TRUE(ApplyControlLine("quit", port).quit);
}

TEST(EmulatorControlTest, CalibrationWordsFromTheCommandLineAndWhileRunning) {
  ProgramOptions options;
  ASSERT_EQ(ParseArguments({"--link", "x", "--miscalibrate", "--cal-word", "1F=7E95", "--cal-word=1a=fff6"}, options),
            std::nullopt);
  Meter meter(options.meter);
  EXPECT_EQ(meter.Memory().Word(0x1F), 0x7E95) << "a word given wins over the miscalibration";
  EXPECT_EQ(meter.Memory().Word(0x1A), 0xFFF6);
  EXPECT_NE(meter.Memory().Word(0x20), 0x8000) << "the other gains are off";

  for (const char* wrong : {"1F", "1F=7E9", "1F=7E950", "11F=7E95", "G1=0000", "1F=XXXX"}) {
    ProgramOptions ignored;
    EXPECT_NE(ParseArguments({"--link", "x", "--cal-word", wrong}, ignored), std::nullopt) << wrong;
  }

  // On the 200 mV range at scale 1, 0.1 V reads 10000; a gain word 2621 units low (1 % of
  // 3.277 x 80000) takes 1 % off.
  Meter factory;
  MeterPort port(factory);
  factory.ApplyInput(0.1);
  EXPECT_EQ(ApplyControlLine("word 1F", port).message, "word 1F 8000");
  EXPECT_EQ(ApplyControlLine("word 1f 75c3", port).message, "word 1F 75C3");
  EXPECT_EQ(factory.Memory().Word(0x1F), 0x75C3);
  EXPECT_EQ(factory.TakeReading().counts, 9900);
  const std::string listing = ApplyControlLine("calibration", port).message;
  EXPECT_NE(listing.find("word 1A 0000  zero\n"), std::string::npos) << listing;
  EXPECT_NE(listing.find("word 1F 75C3  gain (factory 8000)"), std::string::npos) << listing;
  for (const char* wrong : {"word", "word 1", "word 1FF", "word 1F 12", "word 1F zzzz"})
    EXPECT_NE(ApplyControlLine(wrong, port).message.substr(0, 5), "word ") << wrong;
  EXPECT_EQ(factory.Memory().Word(0x1F), 0x75C3) << "a wrong line changes nothing";
}

}  // namespace
}  // namespace dpm::emulator
