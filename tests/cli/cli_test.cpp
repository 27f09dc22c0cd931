// dpm-cli as a user runs it: the built program, copied into a program folder of its own
// with Settings.SSS, against dpm-emulator on a pseudo-terminal linked as COM1 there.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "cli_process.h"
#include "emulator_process.h"
#include "panelmenu/menu_fixture.h"
#include "setup/image_map.h"
#include "temp_folder.h"

namespace dpm::testing {
namespace {

namespace fs = std::filesystem;

// The setup of the emulator's DC meter as Get Setup brings it: the default setup without
// the tare byte.
const std::string kDcImage = kDefaultSetup.substr(0, 128);

std::string WithDigits(std::string image, std::size_t position, const std::string& digits) {
  return image.replace(position - 1, digits.size(), digits);
}

class CliTest : public ::testing::Test {
 protected:
  CliTest() {
    fs::copy_file(DPM_CLI_PROGRAM, folder / "dpm-cli");
    fs::permissions(folder / "dpm-cli", fs::perms::owner_all);
    WriteFile("Settings.SSS", "\"1501000100000041010000\"\r\n");
  }

  void WriteFile(const std::string& name, const std::string& text) const {
    std::ofstream(folder / name, std::ios::binary) << text;
  }
  void WriteSetup(const std::string& name, const std::string& image, const std::string& kind = "1") const {
    WriteFile(name, image + "\r\n" + kind + "\r\n");
  }
  CliResult Run(const std::vector<std::string>& args) const { return RunCli(folder / "dpm-cli", args, folder.Path()); }

  TempFolder folder;
};

class CliAgainstEmulatorTest : public CliTest {
 protected:
  // The commands the emulator heard since the last call, as "*1XU1D".
  static std::vector<std::string> Heard(EmulatorProcess& meter) {
    std::vector<std::string> commands;
    for (std::string line; !(line = meter.WaitForLine("<- ", 300)).empty();) {
      commands.push_back(line.substr(3, line.find("<CR>") - 3));
    }
    return commands;
  }

  EmulatorProcess emulator{folder / "COM1"};
};

TEST_F(CliAgainstEmulatorTest, GetSavesTheMeterSetupAndPutWritesAChangedOneBack) {
  const CliResult got = Run({"get", "-o", "meter.DPM"});
  ASSERT_EQ(got.status, 0) << got.err;
  EXPECT_EQ(got.err, "Getting data from the DPM.  Data received O.K.\n");
  EXPECT_EQ(FileText(folder / "meter.DPM"), kDcImage + "\r\n1\r\n");
  EXPECT_EQ(Heard(emulator),
            (std::vector<std::string>{"*1XU1D", "*1X26D", "*1G130", "*1W1151001", "*1G1DE", "*1W1150001"}));

  // A setpoint and the custom curve bit changed: the meter ends up with exactly that setup.
  const std::string changed = WithDigits(WithDigits(kDcImage, 115, "0004D2"), 33, "01");
  WriteSetup("changed.DPM", changed);
  const CliResult put = Run({"put", "changed.DPM"});
  ASSERT_EQ(put.status, 0) << put.err;
  EXPECT_EQ(put.err, "Putting data to the DPM.  Data Transferred O.K.\n");
  EXPECT_EQ(Heard(emulator), (std::vector<std::string>{
                                 "*1A1", "*1G12D", "*1WA18" + changed.substr(20, 40), "*1WF0E" + changed.substr(60, 60),
                                 "*1W31D" + changed.substr(0, 12), "*1W136", "*1W26D" + changed.substr(120, 8)}));
  EXPECT_EQ(emulator.Image().substr(0, 128), changed);
}

TEST_F(CliAgainstEmulatorTest, PutRefusesASetupOfAnotherConditionerAndWritesNothing) {
  WriteSetup("thermocouple.DPM", WithDigits(kDcImage, 55, "40"));
  const CliResult put = Run({"put", "thermocouple.DPM"});
  EXPECT_EQ(put.status, 1);
  EXPECT_EQ(put.err, "Put Data: You cannot write TC meter data to a DC meter.\n");
  EXPECT_EQ(Heard(emulator), (std::vector<std::string>{"*1A1", "*1G12D"}));
}

TEST_F(CliAgainstEmulatorTest, ASilentMeterFailsGetWithItsErrFlagAndNoFile) {
  emulator.Say("silent on");
  const CliResult got = Run({"get", "-o", "meter.DPM"});
  EXPECT_EQ(got.status, 1);
  EXPECT_EQ(got.err, "ErrFlag =  4Failed to Get data, check connections and restart program.\n");
  EXPECT_FALSE(fs::exists(folder / "meter.DPM"));
}

TEST_F(CliAgainstEmulatorTest, ReadPrintsTheLatestReadingAsTheMeterSentIt) {
  emulator.Say("input 0.1234");
  const CliResult read = Run({"read"});
  ASSERT_EQ(read.status, 0) << read.err;
  const std::string answer = emulator.WaitForLine("-> ");
  ASSERT_EQ(answer.substr(answer.size() - 4), "<CR>");
  EXPECT_EQ(read.out, answer.substr(3, answer.size() - 7) + "\n");
  EXPECT_NE(read.out, "+00000.\n");
}

TEST_F(CliAgainstEmulatorTest, TheCommandLineOverridesThePortBaudRateAndAddressOfTheSettings) {
  struct Case {
    std::string link;  // where the other meter's line is linked
    std::string port;  // what --port says
  };
  for (const Case& c : {Case{"COM2", "2"}, Case{"elsewhere/line", (folder / "elsewhere/line").string()}}) {
    fs::create_directories((folder / c.link).parent_path());
    EmulatorProcess other(folder / c.link, {"--address", "K", "--baud", "19200"});
    const CliResult read = Run({"read", "--port", c.port, "--baud", "19200", "--address", "k"});
    EXPECT_EQ(read.status, 0) << c.port << ": " << read.err;
    EXPECT_EQ(Heard(other), std::vector<std::string>{"*KB1"}) << c.port;
  }
  EXPECT_TRUE(Heard(emulator).empty());
}

// The records a streaming emulator sent, as its log prints them, up to the end of its
// continuous output; `stop` is how the log shows the records' stop character.
std::vector<std::string> SentRecords(EmulatorProcess& meter, const std::string& stop) {
  std::vector<std::string> sent;
  for (std::string line; !(line = meter.WaitForLine("", 1000)).empty() && line != "continuous output off";) {
    const std::size_t end = line.find(stop + "   (record)");
    if (line.starts_with("-> ") && end != std::string::npos) sent.push_back(line.substr(3, end - 3));
  }
  return sent;
}

TEST_F(CliTest, CaptureWritesTheRecordsTheMeterSentAsCsvFramedByTheSetup) {
  // Transmission characters on: records go out as "@" value "#".
  const std::string framed = WithDigits(WithDigits(kDcImage, 53, "10"), 125, "2340");
  WriteSetup("framed.DPM", framed);
  struct Case {
    std::string emulatorSetup;  // the meter's setup, when not its own
    std::vector<std::string> setupOption;
    std::string stop;  // the stop character as the emulator's log shows it
    int status;
  };
  const std::vector<Case> cases = {
      {"", {}, "<CR>", 0},
      {"framed.DPM", {"--setup", "framed.DPM"}, "#", 0},
      // Records framed otherwise than the setup in hand says never end.
      {"framed.DPM", {}, "#", 1},
  };
  for (const Case& c : cases) {
    std::vector<std::string> emulatorOptions = {"--input", "0.05", "--noise", "0.002", "--rate", "50", "--log-records"};
    if (!c.emulatorSetup.empty())
      emulatorOptions.insert(emulatorOptions.end(), {"--image", (folder / c.emulatorSetup).string()});
    EmulatorProcess meter(folder / "COM1", emulatorOptions);
    std::vector<std::string> args = {"capture", "--seconds", "1.5", "--csv", "readings.csv"};
    args.insert(args.end(), c.setupOption.begin(), c.setupOption.end());
    const CliResult capture = Run(args);
    ASSERT_EQ(capture.status, c.status) << capture.err;
    const std::vector<std::string> sent = SentRecords(meter, c.stop);
    ASSERT_GE(sent.size(), 50u) << "the meter streamed for the whole capture";
    if (c.status != 0) {
      EXPECT_NE(capture.err.find("No readings came from the meter"), std::string::npos) << capture.err;
      continue;
    }
    std::istringstream csv(FileText(folder / "readings.csv"));
    std::string line;
    std::getline(csv, line);
    EXPECT_EQ(line, "time,record,number\r");
    // From the first whole record on, each line is a record the meter sent, in order,
    // with the time it came and its number.
    auto next = sent.begin() + 1;
    std::string lastTime;
    int lines = 0;
    for (; std::getline(csv, line); ++lines) {
      const std::size_t quote = line.find(",\"");
      const std::size_t close = line.rfind("\",");
      ASSERT_TRUE(quote == 24 && close != std::string::npos) << line;
      const std::string time = line.substr(0, quote);
      const std::string record = line.substr(quote + 2, close - quote - 2);
      EXPECT_TRUE(time[4] == '-' && time[10] == 'T' && time[19] == '.' && time.back() == 'Z') << time;
      EXPECT_GE(time, lastTime);
      lastTime = time;
      if (lines == 0) {
        EXPECT_EQ(record, *next) << "the first whole record";
      }
      next = std::find(next, sent.end(), record);
      ASSERT_NE(next, sent.end()) << record << " was not sent, or not in this order";
      ++next;
      const std::size_t digits = record.find_first_of("+-0123456789");
      EXPECT_EQ(line.substr(close + 2), std::to_string(std::stoi(record.substr(digits))) + "\r") << line;
    }
    EXPECT_GE(lines, 40) << "about fifty records a second";
    EXPECT_EQ(capture.err, std::to_string(lines) + " readings\n");
  }
}

TEST_F(CliTest, BadCommandLinesAndFilesExitWithTwoAndNameTheCause) {
  WriteFile("one-line.DPM", kDcImage + "\r\n");
  WriteSetup("short.DPM", kDcImage.substr(0, 57));
  WriteSetup("lower.DPM", WithDigits(kDcImage, 3, "a"));
  WriteSetup("kind.DPM", kDcImage, "2");
  WriteSetup("mode.DPM", WithDigits(kDcImage, 55, "E0"));
  WriteSetup("good.DPM", kDcImage);
  struct Case {
    std::vector<std::string> args;
    std::string cause;          // in what the program says
    std::string settings = {};  // Settings.SSS, when not the shipped one
  };
  const std::vector<Case> cases = {
      {{"frobnicate"}, "unknown command \"frobnicate\""},
      {{"get"}, "get needs -o FILE.DPM"},
      {{"put"}, "put takes 1 setup file(s), not 0"},
      {{"diff", "good.DPM"}, "diff takes 2 setup file(s), not 1"},
      {{"show", "good.DPM", "--port", "1"}, "unknown option --port for show"},
      {{"read", "--baud"}, "--baud needs a value"},
      {{"read", "--baud", "1234"}, "--baud 1234: not a rate"},
      {{"read", "--address=W"}, "--address W: not a meter address"},
      {{"read", "--port", "0"}, "--port 0: neither a port number"},
      {{"capture", "--csv", "x.csv"}, "capture needs --seconds N and --csv FILE"},
      {{"capture", "--seconds", "-1", "--csv", "x.csv"}, "--seconds -1: not a number of seconds"},
      {{"read", "--port", "/dev/no-such-line"}, "--port /dev/no-such-line: no such device"},
      {{"show", "missing.DPM"}, "missing.DPM: no such file"},
      {{"show", "one-line.DPM"}, "one-line.DPM: not a setup file"},
      {{"show", "short.DPM"}, "short.DPM: the setup on line 1 has 57 characters"},
      {{"diff", "good.DPM", "lower.DPM"}, "lower.DPM: character 3 of the setup"},
      {{"show", "kind.DPM"}, "kind.DPM: line 2 should be the meter kind"},
      {{"put", "mode.DPM"}, "mode.DPM: Subscript out of range: mode code 14"},
      {{"get", "-o", "no-folder/x.DPM"}, "no-folder/x.DPM: no folder"},
      {{"read"}, "Settings.SSS: no link settings file", "-"},
      {{"read"}, "is not one of 0123456", "\"1901000100000041010000\"\r\n"},
  };
  for (const Case& c : cases) {
    fs::remove(folder / "Settings.SSS");
    if (c.settings != "-") WriteFile("Settings.SSS", c.settings.empty() ? "1501000100000041010000" : c.settings);
    const CliResult result = Run(c.args);
    EXPECT_EQ(result.status, 2) << c.cause;
    EXPECT_NE(result.err.find(c.cause), std::string::npos) << result.err;
    EXPECT_EQ(result.err.rfind("dpm-cli: ", 0), 0u) << result.err;
  }
}

TEST_F(CliTest, EveryCommandHasItsHelp) {
  for (const std::string command : {"get", "put", "show", "diff", "read", "capture"}) {
    const CliResult help = Run({command, "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.out.rfind("Usage: dpm-cli " + command, 0), 0u) << help.out;
    EXPECT_EQ(Run({"--help"}).out.find("  " + command + " ") != std::string::npos, true) << command;
  }
}

TEST_F(CliTest, ShowListsEveryNamedFieldOnceWithItsText) {
  WriteSetup("meter.DPM", kDcImage);
  const CliResult show = Run({"show", "meter.DPM"});
  ASSERT_EQ(show.status, 0) << show.err;
  std::map<std::string, std::string> texts;
  std::istringstream lines(show.out);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t gap = line.find(' ');
    const auto [_, added] = texts.emplace(line.substr(0, gap), line.substr(line.find_first_not_of(' ', gap)));
    EXPECT_TRUE(added) << line;
  }
  for (const ImageField& field : ImageFields()) {
    // The same bit is leading zeros before revision 1 and the custom characters after it.
    if (!field.name.empty() && field.name != "LeadingZeros") {
      EXPECT_TRUE(texts.contains(std::string(field.name))) << field.name;
    }
  }
  EXPECT_FALSE(texts.contains("LeadingZeros"));
  const std::map<std::string, std::string> expected = {
      {"MeterKind", "EXTENDED"}, {"BaudRate", "9600"},
      {"ModeCode", "DC V"},      {"Range", "0.2V"},
      {"Setpoint1", "+01000."},  {"StopChar", "13 (cr)"},
      {"AutoTare", "On"},        {"ExternalInputs", "Meter Reset / Meter Hold"},
      {"LockoutsA", "none"},     {"Byte49.1-0", "01"},
      {"Byte13", "00"},          {"FirmwareRev", "4"},
  };
  for (const auto& [name, text] : expected) EXPECT_EQ(texts[name], text) << name;

  const CliResult menu = Run({"show", "--menu", "meter.DPM"});
  ASSERT_EQ(menu.status, 0) << menu.err;
  EXPECT_EQ(menu.out.rfind("DC Signal Conditioner\nMENU KEY", 0), 0u) << menu.out;
  EXPECT_NE(menu.out.find("\nSETPT1       01000\n"), std::string::npos) << menu.out;
}

TEST_F(CliTest, DiffListsTheFieldsThatDifferWithBothTexts) {
  WriteSetup("a.DPM", kDcImage);
  WriteSetup("b.DPM", WithDigits(WithDigits(WithDigits(kDcImage, 115, "0004D2"), 47, "E0"), 9, "01"), "0");
  const CliResult diff = Run({"diff", "a.DPM", "b.DPM"});
  EXPECT_EQ(diff.status, 1) << diff.err;
  EXPECT_EQ(diff.out,
            "MeterKind  EXTENDED  ->  BASIC\n"
            "LockoutsC  none  ->  Calibration Period\n"
            "BaudRate   9600  ->  19200\n"
            "Setpoint1  +01000.  ->  +01234.\n");
  const CliResult same = Run({"diff", "a.DPM", "a.DPM"});
  EXPECT_EQ(same.status, 0);
  EXPECT_EQ(same.out, "");
}

}  // namespace
}  // namespace dpm::testing
