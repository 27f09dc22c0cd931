#include "emulator/meter.h"

#include <gtest/gtest.h>

#include "setup/default_image.h"

namespace dpm::emulator {
namespace {

using Status = Meter::Answer::Status;

MeterOptions With(std::optional<Conditioner> conditioner, bool tedsHardware = false, bool tedsPresent = false) {
  MeterOptions options;
  options.conditioner = conditioner;
  options.tedsHardware = tedsHardware;
  options.tedsPresent = tedsPresent;
  return options;
}

std::string Reply(Meter& meter, const std::string& line) {
  const Meter::Answer answer = meter.Execute(line);
  EXPECT_EQ(answer.status, Status::Done) << line;
  return answer.reply;
}

TEST(MeterTest, CountCharactersAndTheSuffixZ) {
  Meter meter;
  EXPECT_EQ(Reply(meter, "*1X0FF"), "\r");
  EXPECT_EQ(Reply(meter, "*1X9FF").size(), 37u);
  EXPECT_EQ(Reply(meter, "*1XV1F").size(), 4u * 31 + 1);
  const Meter::Answer withZ = meter.Execute("*1XU1DZ");
  EXPECT_TRUE(withZ.suffixZ);
  EXPECT_EQ(withZ.reply, Reply(meter, "*1XU1D"));
  EXPECT_TRUE(meter.Execute("*1W1151234Z").suffixZ);
  EXPECT_EQ(meter.Memory().Word(0x15), 0x1234);
  // "W136" with no data, as a program sends it for a 128-digit image, writes nothing.
  const uint16_t before = meter.Memory().Word(0x36);
  EXPECT_EQ(meter.Execute("*1W136").status, Status::Done);
  EXPECT_EQ(meter.Memory().Word(0x36), before);
}

TEST(MeterTest, ForeignAddressesAndGarbageAreIgnored) {
  Meter meter;
  const std::string image = meter.Image();
  for (const char* line : {"*2G130", "*AXU1D", "*0W1150000", "*VB1"}) {
    const Meter::Answer answer = meter.Execute(line);
    EXPECT_EQ(answer.status, Status::NotForMe) << line;
    EXPECT_EQ(answer.reply, "") << line;
  }
  for (const char* line : {"", "*", "G130", "*1", "*1Q", "*1X", "*1XU1", "*1XU1DD", "*1G13", "*1G230", "*1W", "*1W1",
                           "*1W115XYZW", "*1A5", "*1B3", "*1C9", "*1C", "*x", "*1XW1D"}) {
    const Meter::Answer answer = meter.Execute(line);
    EXPECT_EQ(answer.status, Status::Garbage) << line;
    EXPECT_EQ(answer.reply, "") << line;
  }
  EXPECT_EQ(meter.Image(), image);
  // Noise in front of the recognition character does not hide the command.
  EXPECT_EQ(Reply(meter, "\n~#*1G130"), "75\r");
}

TEST(MeterTest, TheMeterAnswersToTheAddressItsSetupHolds) {
  MeterOptions options;
  options.address = 10;
  Meter meter(options);
  EXPECT_EQ(meter.AddressChar(), 'A');
  EXPECT_EQ(meter.Execute("*1G130").status, Status::NotForMe);
  EXPECT_EQ(Reply(meter, "*AG130"), "75\r");
  // A new setup with address 2 (SerialA "22") takes effect at once.
  Reply(meter, "*AW11222D0");
  EXPECT_EQ(meter.Execute("*AG130").status, Status::NotForMe);
  EXPECT_EQ(Reply(meter, "*2G130"), "75\r");
}

TEST(MeterTest, KindProbe) {
  struct Case {
    bool extended;
    std::string probeWord;
    std::string kind;
  };
  for (const Case& c : {Case{true, "1001", "10"}, Case{true, "0001", "00"}, Case{true, "3001", "00"},
                        Case{false, "1001", "00"}, Case{false, "0001", "00"}}) {
    SCOPED_TRACE(c.probeWord + (c.extended ? " extended" : " basic"));
    MeterOptions options;
    options.extended = c.extended;
    Meter meter(options);
    const std::string saved = meter.Image().substr(32, 4);
    EXPECT_EQ(saved, "0001");
    Reply(meter, "*1W115" + c.probeWord + "Z");
    EXPECT_EQ(Reply(meter, "*1G1DE"), c.kind + "\r");
    Reply(meter, "*1W115" + saved);
    EXPECT_EQ(meter.Image(), DefaultSetupImage(4));
  }
}

TEST(MeterTest, ModeRegisterShowsTheFittedBoard) {
  struct Case {
    std::optional<Conditioner> conditioner;
    std::string write;  // word 10: display byte and mode/range byte
    std::string modeRange;
  };
  for (const Case& c :
       {Case{std::nullopt, "", "60"}, Case{Conditioner::Temperature, "", "40"}, Case{Conditioner::TrueRms, "", "80"},
        Case{Conditioner::LoadCell, "", "C0"}, Case{Conditioner::Dc, "00A2", "A2"}, Case{Conditioner::Dc, "0073", "73"},
        Case{Conditioner::Dc, "00C1", "60"}, Case{Conditioner::Temperature, "0053", "53"}}) {
    SCOPED_TRACE(c.modeRange);
    Meter meter(With(c.conditioner));
    if (!c.write.empty()) Reply(meter, "*1W110" + c.write);
    EXPECT_EQ(Reply(meter, "*1G12D"), c.modeRange + "\r");
  }
  // The setup of a meter with another board follows the board.
  Meter loadCell(With(Conditioner::LoadCell));
  EXPECT_EQ(loadCell.Image().substr(54, 2), "C0");
  EXPECT_EQ(loadCell.Image().substr(34, 2), "03");
}

TEST(MeterTest, OptionRegisterAndDataSheetStatus) {
  Meter plain;
  EXPECT_EQ(Reply(plain, "*1G130"), "75\r");
  MeterOptions boards;
  boards.optionRegister = 0xF5;
  Meter fitted(boards);
  EXPECT_EQ(Reply(fitted, "*1G130"), "F5\r");
  struct Case {
    bool hardware;
    bool present;
    std::string status;
  };
  for (const Case& c : {Case{false, false, "00"}, Case{true, false, "02"}, Case{true, true, "03"}}) {
    Meter meter(With(Conditioner::LoadCell, c.hardware, c.present));
    EXPECT_EQ(Reply(meter, "*1R17F"), c.status + "\r");
  }
}

TEST(MeterTest, ReadingsPeakAndOperatingCommands) {
  Meter meter;
  meter.ApplyInput(0.05);
  EXPECT_EQ(Reply(meter, "*1B1"), "+05000.\r");
  meter.ApplyInput(0.12345);
  meter.ApplyInput(-0.03);
  EXPECT_EQ(Reply(meter, "*1B1"), "-03000.\r");
  EXPECT_EQ(Reply(meter, "*1B2"), "+12345.\r");
  Reply(meter, "*1C3");
  EXPECT_EQ(Reply(meter, "*1B2"), "-03000.\r") << "after a peak reset the peak starts again";
  meter.ApplyInput(0.01);
  Reply(meter, "*1HHELLO Z");
  EXPECT_EQ(meter.RemoteText(), "HELLO Z") << "display text keeps a trailing Z";
  Reply(meter, "*1C4");
  EXPECT_EQ(meter.RemoteText(), "");
  Reply(meter, "*1HAGAIN");
  Reply(meter, "*1C0");
  EXPECT_EQ(meter.RemoteText(), "");
  EXPECT_EQ(Reply(meter, "*1B2"), "+01000.\r") << "a meter reset clears the peak as well";
}

TEST(MeterTest, NoiseSpreadsReadingsAroundTheInput) {
  Meter meter;
  meter.SetNoise(0.001);  // 100 counts on the 0.2 V range
  meter.ApplyInput(0.1);
  double sum = 0;
  int lowest = 99999;
  int highest = -99999;
  for (int i = 0; i < 400; ++i) {
    const int counts = meter.TakeReading().counts;
    sum += counts;
    lowest = std::min(lowest, counts);
    highest = std::max(highest, counts);
  }
  EXPECT_NEAR(sum / 400, 10000, 20);
  EXPECT_GT(highest - lowest, 200);
  EXPECT_LT(highest - lowest, 1000);
  EXPECT_EQ(meter.Peak()->counts, highest);
}

}  // namespace
}  // namespace dpm::emulator
