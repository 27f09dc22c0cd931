#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "emulator/meter.h"

// The meter's calibration words against the program's calibration math: a meter whose words
// are off is corrected in one round of that math, worked here from the program's own
// factors and rules, and a meter with its factory words reads each calibration input
// exactly.
namespace dpm::emulator {
namespace {

std::string Send(Meter& meter, const std::string& body) {
  std::string reply = meter.Execute("*1" + body).reply;
  if (!reply.empty() && reply.back() == '\r') reply.pop_back();
  return reply;
}

// A reading in counts, its decimal point taken out.
double ReadCounts(Meter& meter) {
  std::string text = Send(meter, "B1");
  if (const auto point = text.find('.'); point != std::string::npos) text.erase(point, 1);
  return std::strtod(text.c_str(), nullptr);
}

int16_t SignedHex(const std::string& digits) { return static_cast<int16_t>(std::strtol(digits.c_str(), nullptr, 16)); }

std::string Hex4(long value) {
  char text[8];
  std::snprintf(text, sizeof text, "%04lX", static_cast<unsigned long>(value) & 0xFFFFu);
  return text;
}

// A temperature reading with its decimal point, in degrees.
double ReadDegrees(Meter& meter) { return std::strtod(Send(meter, "B1").c_str(), nullptr); }

std::string SignedWordHex(double value) { return Hex4(std::lrint(std::clamp(value, -32768.0, 32767.0))); }

enum class Rule { Gain, DcZero, RmsZero, LoadCellZero, TemperatureZero };

// One row of the program's range table.
struct Row {
  const char* what;
  Conditioner board;
  const char* nvAdr;
  const char* inpTyp;
  const char* scaleDigit;
  double input;  // in the units of the range
  double vDesired;
  bool plusAndMinus;
  Rule rule;
  double factor;  // gain rows: word units per count; zero rows: the rule's factor
};

// clang-format off
const Row kRows[] = {
    {"DC zero",          Conditioner::Dc, "1A", "60", "A", 0.0,   0,     false, Rule::DcZero, 123},
    {"DC 200 mV",        Conditioner::Dc, "1F", "60", "4", 0.2,   80000, true,  Rule::Gain, 3.277},
    {"DC 2 V",           Conditioner::Dc, "20", "61", "4", 2.0,   80000, true,  Rule::Gain, 3.302},
    {"DC 20 V",          Conditioner::Dc, "21", "62", "4", 20.0,  80000, true,  Rule::Gain, 3.249},
    {"DC 200 V",         Conditioner::Dc, "22", "63", "4", 200.0, 80000, true,  Rule::Gain, 3.275},
    {"DC 660 V",         Conditioner::Dc, "23", "64", "4", 660.0, 26400, true,  Rule::Gain, 9.939},
    {"DC 2 mA",          Conditioner::Dc, "25", "70", "4", 2.0,   80000, true,  Rule::Gain, 3.244},
    {"DC 20 mA",         Conditioner::Dc, "26", "71", "4", 20.0,  80000, true,  Rule::Gain, 3.238},
    {"DC 200 mA",        Conditioner::Dc, "27", "72", "4", 200.0, 80000, true,  Rule::Gain, 3.241},
    {"DC 5 A at 2 A",    Conditioner::Dc, "28", "73", "4", 2.0,   8000,  true,  Rule::Gain, 30.78},
    {"AC zero at 5 mV",  Conditioner::TrueRms, "1A", "80", "4", 0.005, 2000,  false, Rule::RmsZero, 30},
    {"AC 200 mV",        Conditioner::TrueRms, "1F", "80", "4", 0.2,   80000, false, Rule::Gain, 3.365},
    {"AC 2 V",           Conditioner::TrueRms, "20", "81", "4", 2.0,   80000, false, Rule::Gain, 3.354},
    {"AC 20 V",          Conditioner::TrueRms, "21", "82", "4", 20.0,  80000, false, Rule::Gain, 3.297},
    {"AC 200 V",         Conditioner::TrueRms, "22", "83", "4", 200.0, 80000, false, Rule::Gain, 3.326},
    {"AC 660 V",         Conditioner::TrueRms, "23", "84", "4", 660.0, 26400, false, Rule::Gain, 10.103},
    {"AC 2 mA",          Conditioner::TrueRms, "25", "90", "4", 2.0,   80000, false, Rule::Gain, 3.407},
    {"AC 20 mA",         Conditioner::TrueRms, "26", "91", "4", 20.0,  80000, false, Rule::Gain, 3.296},
    {"AC 200 mA",        Conditioner::TrueRms, "27", "92", "4", 200.0, 80000, false, Rule::Gain, 3.287},
    {"AC 5 A",           Conditioner::TrueRms, "28", "93", "4", 5.0,   20000, false, Rule::Gain, 8.326},
    {"load cell zero, 500 mV range", Conditioner::LoadCell, "1A", "D4", "A", 0.0, 0, false, Rule::LoadCellZero, 47},
    {"load cell zero, 20 mV range",  Conditioner::LoadCell, "1E", "D0", "A", 0.0, 0, false, Rule::LoadCellZero, 122},
    {"load cell 20 mV",              Conditioner::LoadCell, "1F", "D0", "4", 20.0,  80000, true, Rule::Gain, 3.277},
    {"load cell 50 mV at 40 mV",     Conditioner::LoadCell, "20", "D1", "2", 40.0,  80000, true, Rule::Gain, 3.218},
    {"load cell 100 mV",             Conditioner::LoadCell, "21", "D2", "8", 100.0, 80000, true, Rule::Gain, 3.217},
    {"load cell 250 mV at 200 mV",   Conditioner::LoadCell, "22", "D3", "4", 200.0, 80000, true, Rule::Gain, 3.241},
    {"load cell 500 mV at 400 mV",   Conditioner::LoadCell, "23", "D4", "2", 400.0, 80000, true, Rule::Gain, 3.408},
    {"temperature zero",             Conditioner::Temperature, "1A", "60", "A", 0.0,    0,     false, Rule::TemperatureZero, 113},
    {"thermocouple gain J,K,N,E",    Conditioner::Temperature, "21", "60", "4", 0.0756, 80000, true,  Rule::Gain, 3.0945},
    {"thermocouple gain T,S,R",      Conditioner::Temperature, "24", "63", "4", 0.0233, 80000, true,  Rule::Gain, 3.1399},
};
// clang-format on

// Scale factor, input and filter as the program sets them before a range is measured.
void SetUpRange(Meter& meter, const Row& row) {
  Send(meter, std::string("W30500000010000") + row.scaleDigit);
  Send(meter, std::string("W11000") + row.inpTyp);
  const std::string option = Send(meter, "G130");
  Send(meter, "W111" + option + (row.plusAndMinus ? "36" : "38"));
}

// The reading the correction works from: the mean size of a plus and a minus reading, or
// the one reading.
double CurrentReading(Meter& meter, const Row& row) {
  meter.ApplyInput(row.input);
  const double plus = ReadCounts(meter);
  if (!row.plusAndMinus) return plus;
  meter.ApplyInput(-row.input);
  const double minus = ReadCounts(meter);
  meter.ApplyInput(row.input);
  return (std::fabs(minus) + plus) / 2;
}

// The new word, as the program computes it from the word read and the reading.
long NewWord(const Row& row, const std::string& curCalHex, double reading) {
  if (row.rule == Rule::Gain) {
    const double x = (row.vDesired - reading) * row.factor + std::strtol(curCalHex.c_str(), nullptr, 16);
    return std::lrint(std::clamp(x, 0.0, 65535.0));
  }
  const double curCal = SignedHex(curCalHex);
  double x = 0;
  switch (row.rule) {
    case Rule::RmsZero:
      x = curCal + row.factor * (2000 - reading);
      break;
    default:
      x = curCal - reading * row.factor / 10;
      break;
  }
  return std::lrint(std::clamp(x, row.rule == Rule::LoadCellZero ? -32767.0 : -32768.0, 32767.0));
}

void WriteWord(Meter& meter, const Row& row, const std::string& hex) {
  const std::string address = row.nvAdr;
  if (row.board == Conditioner::Temperature && (address == "21" || address == "24")) {
    Send(meter, "W3" + address + hex + hex + hex);
    if (address == "21") Send(meter, "W12E" + hex);
  } else {
    Send(meter, "W1" + address + hex);
  }
}

TEST(EmulatorCalibrationTest, OneRoundOfCorrectionBringsEachRangeToItsReading) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.what);
    MeterOptions options;
    options.conditioner = row.board;
    options.miscalibrate = true;
    Meter meter(options);
    const std::string curCal = Send(meter, std::string("X1") + row.nvAdr);
    ASSERT_EQ(curCal.size(), 4u);
    SetUpRange(meter, row);
    const double before = CurrentReading(meter, row);
    EXPECT_GT(std::fabs(before - row.vDesired), 3) << "the meter starts off its reading";

    const std::string newWord = Hex4(NewWord(row, curCal, before));
    WriteWord(meter, row, newWord);
    EXPECT_EQ(Send(meter, std::string("X1") + row.nvAdr), newWord);
    EXPECT_NEAR(CurrentReading(meter, row), row.vDesired, 1.0);
  }
}

TEST(EmulatorCalibrationTest, FactoryWordsReadEachCalibrationInputExactly) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.what);
    MeterOptions options;
    options.conditioner = row.board;
    Meter meter(options);
    SetUpRange(meter, row);
    meter.ApplyInput(row.input);
    EXPECT_EQ(ReadCounts(meter), row.vDesired);
    if (row.plusAndMinus) {
      meter.ApplyInput(-row.input);
      EXPECT_EQ(ReadCounts(meter), -row.vDesired);
    }
  }
  // Whatever the display's decimal point, the reply carries the counts.
  Meter meter;
  Send(meter, "W305000000100004");  // scale 4
  Send(meter, "W1100061");
  meter.ApplyInput(2.0);
  EXPECT_EQ(Send(meter, "B1"), "+80000.");
  Send(meter, "W1140202");  // decimal point code 2
  EXPECT_EQ(Send(meter, "B1"), "+8000.0");
}

TEST(EmulatorCalibrationTest, ColdJunctionRoutineBringsTheIcePointToZero) {
  struct Case {
    const char* what;
    std::string modeRange;
    std::string gainWord;
    std::string offsetWord;
    double gainBase;
    bool fresh;  // New Calibration; otherwise Fine Adjustment
  };
  const Case cases[] = {
      {"J,K,N,E, new", "41", "1D", "1C", 28432, true},
      {"T,S,R, new", "49", "2D", "2C", 28136, true},
      {"J,K,N,E, fine", "41", "1D", "1C", 28432, false},
      {"T,S,R, fine", "49", "2D", "2C", 28136, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    MeterOptions options;
    options.conditioner = Conditioner::Temperature;
    options.miscalibrate = true;
    options.words = {{0x1A, 0x0000}};  // the amplifier's zero is right: only the junction is off
    Meter meter(options);
    Send(meter, "W11000" + c.modeRange);
    meter.ApplyInput(0.0);  // the thermocouple in an ice-point cell
    double offset = 0;
    if (c.fresh) {
      Send(meter, "W2" + c.gainWord + "6F100000");
      const double reading = ReadDegrees(meter);
      EXPECT_NE(reading, 0.0) << "the starting words leave something to correct";
      const std::string gain = Hex4(std::lrint(std::clamp(reading * 106.5 + c.gainBase, 0.0, 65535.0)));
      Send(meter, "W2" + c.gainWord + gain + "0000");
    } else {
      offset = SignedHex(Send(meter, "X1" + c.offsetWord));
    }
    const double reading = ReadDegrees(meter);
    if (c.fresh) {
      // From a gain worked out against the wrong base, T,S,R keeps the difference of the
      // two bases, 296 units, for the offset to take up.
      EXPECT_NEAR(reading, (28432 - c.gainBase) / 106.5, 0.1) << "after the gain step";
    } else {
      EXPECT_NE(reading, 0.0) << "the miscalibrated offset shows";
    }
    Send(meter, "W1" + c.offsetWord + SignedWordHex(reading / 0.003906 + offset));
    EXPECT_NEAR(ReadDegrees(meter), 0.0, 0.1);
  }
}

}  // namespace
}  // namespace dpm::emulator
