#include "emulator/calibration_model.h"

#include <array>
#include <cmath>
#include <span>

namespace dpm::emulator {
namespace {

// A gain word of a range and the span of that word: the program's correction factor for
// the range (word units per reading count) times the reading it calibrates the range to.
struct GainOfRange {
  int address;
  double factor;
  double calibrationReading;
  double Span() const { return factor * calibrationReading; }
};

// Voltage and current ranges of the DC board, by input mode and range.
constexpr std::array<GainOfRange, 5> kDcVoltGains = {GainOfRange{0x1F, 3.277, 80000},
                                                     {0x20, 3.302, 80000},
                                                     {0x21, 3.249, 80000},
                                                     {0x22, 3.275, 80000},
                                                     {0x23, 9.939, 26400}};
constexpr std::array<GainOfRange, 4> kDcAmpGains = {
    GainOfRange{0x25, 3.244, 80000}, {0x26, 3.238, 80000}, {0x27, 3.241, 80000}, {0x28, 30.78, 8000}};
constexpr std::array<GainOfRange, 5> kRmsVoltGains = {GainOfRange{0x1F, 3.365, 80000},
                                                      {0x20, 3.354, 80000},
                                                      {0x21, 3.297, 80000},
                                                      {0x22, 3.326, 80000},
                                                      {0x23, 10.103, 26400}};
constexpr std::array<GainOfRange, 4> kRmsAmpGains = {
    GainOfRange{0x25, 3.407, 80000}, {0x26, 3.296, 80000}, {0x27, 3.287, 80000}, {0x28, 8.326, 20000}};
constexpr std::array<GainOfRange, 5> kLoadCellGains = {GainOfRange{0x1F, 3.277, 80000},
                                                       {0x20, 3.218, 80000},
                                                       {0x21, 3.217, 80000},
                                                       {0x22, 3.241, 80000},
                                                       {0x23, 3.408, 80000}};

// The thermocouple amplifier of the temperature board is calibrated on two voltage
// ranges, one for each group of types. Each type has a gain word of its own; calibration
// writes the same value to every word of a group.
constexpr GainOfRange kJkneGain{0x21, 3.0945, 80000};
constexpr GainOfRange kTsrGain{0x24, 3.1399, 80000};
// J, K, N, E, T, S, R.
constexpr std::array<int, 7> kThermocoupleGainWord = {0x21, 0x20, 0x1F, 0x2E, 0x24, 0x23, 0x22};
constexpr int kFirstTsrType = 4;

// The RTD current source is calibrated to 13564 counts, at 11.3 word units a count.
constexpr GainOfRange kRtdCurrent{0x1E, 11.3, 13564};

// Word units of the zero word per input count of shift: the program's zero factor times the
// scale factor the zero is calibrated at (10, or 4 on the true RMS board).
constexpr double kDcZeroPerCount = 123.0;
constexpr double kTemperatureZeroPerCount = 113.0;
constexpr double kRmsZeroPerCount = 30.0 * 4.0;
constexpr double kLoadCellLowGainZeroPerCount = 47.0;
constexpr double kLoadCellHighGainZeroPerCount = 122.0;

constexpr int kZeroWord = 0x1A;
constexpr int kLoadCellHighGainZeroWord = 0x1E;
constexpr int kColdJunctionGainJkneWord = 0x1D;
constexpr int kColdJunctionOffsetJkneWord = 0x1C;
constexpr int kColdJunctionGainTsrWord = 0x2D;
constexpr int kColdJunctionOffsetTsrWord = 0x2C;

// Input modes, as InputFacts numbers them.
enum Mode {
  kThermocouple = 0,
  kRtd = 1,
  kDcVolts = 2,
  kDcAmps = 3,
  kRmsVolts = 4,
  kRmsAmps = 5,
  kRatio = 6,
  kStrain = 7,
  kDcMv = 8
};

void TakeGain(std::span<const GainOfRange> table, int range, RangeCorrection& c) {
  if (range < 0 || static_cast<std::size_t>(range) >= table.size()) return;
  const GainOfRange& gain = table[static_cast<std::size_t>(range)];
  c.gainAddress = gain.address;
  c.gainSpan = gain.Span();
}

void TakeGain(const GainOfRange& gain, RangeCorrection& c) {
  c.gainAddress = gain.address;
  c.gainSpan = gain.Span();
}

RangeCorrection TemperatureCorrection(const InputFacts& facts) {
  RangeCorrection c;
  switch (facts.inputMode) {
    case kDcVolts:
      c.zeroAddress = kZeroWord;
      c.zeroWordsPerCount = kTemperatureZeroPerCount;
      if (facts.range == kThermocoupleVoltRangeJkne) TakeGain(kJkneGain, c);
      if (facts.range == kThermocoupleVoltRangeTsr) TakeGain(kTsrGain, c);
      break;
    case kThermocouple: {
      const int type = facts.range / 2;
      c.zeroAddress = kZeroWord;
      c.zeroWordsPerCount = kTemperatureZeroPerCount;
      c.gainAddress = kThermocoupleGainWord[static_cast<std::size_t>(type)];
      c.gainSpan = (type < kFirstTsrType ? kJkneGain : kTsrGain).Span();
      const bool tsr = type >= kFirstTsrType;
      c.coldJunctionGainAddress = tsr ? kColdJunctionGainTsrWord : kColdJunctionGainJkneWord;
      c.coldJunctionOffsetAddress = tsr ? kColdJunctionOffsetTsrWord : kColdJunctionOffsetJkneWord;
      c.coldJunctionGainNominal = tsr ? kColdJunctionGainTsr : kColdJunctionGainJkne;
      c.fahrenheit = facts.range % 2 == 0;
      break;
    }
    case kRtd:
      TakeGain(kRtdCurrent, c);
      c.gainNominal = kNominalRtdCurrent;
      break;
    default:
      break;
  }
  return c;
}

}  // namespace

std::vector<CalibrationWord> CalibrationWordsOf(Conditioner board) {
  const auto gains = [](std::initializer_list<int> addresses, std::vector<CalibrationWord>& words) {
    for (int address : addresses) words.push_back({address, WordRole::Gain, kNominalGain});
  };
  std::vector<CalibrationWord> words = {{kZeroWord, WordRole::Zero, kNominalZero}};
  switch (board) {
    case Conditioner::Dc:
    case Conditioner::TrueRms:
      gains({0x1F, 0x20, 0x21, 0x22, 0x23, 0x25, 0x26, 0x27, 0x28}, words);
      break;
    case Conditioner::LoadCell:
      words.push_back({kLoadCellHighGainZeroWord, WordRole::Zero, kNominalZero});
      gains({0x1F, 0x20, 0x21, 0x22, 0x23}, words);
      break;
    case Conditioner::Temperature:
      words.push_back({kColdJunctionOffsetJkneWord, WordRole::ColdJunctionOffset, kNominalZero});
      words.push_back({kColdJunctionGainJkneWord, WordRole::ColdJunctionGain, kColdJunctionGainJkne});
      words.push_back({kRtdCurrent.address, WordRole::RtdCurrent, kNominalRtdCurrent});
      gains({0x1F, 0x20, 0x21, 0x22, 0x23, 0x24}, words);
      words.push_back({kColdJunctionOffsetTsrWord, WordRole::ColdJunctionOffset, kNominalZero});
      words.push_back({kColdJunctionGainTsrWord, WordRole::ColdJunctionGain, kColdJunctionGainTsr});
      gains({0x2E}, words);
      break;
  }
  return words;
}

bool IsSignedRole(WordRole role) { return role == WordRole::Zero || role == WordRole::ColdJunctionOffset; }

std::string RoleName(WordRole role) {
  switch (role) {
    case WordRole::Zero:
      return "zero";
    case WordRole::Gain:
      return "gain";
    case WordRole::ColdJunctionGain:
      return "cold junction gain";
    case WordRole::ColdJunctionOffset:
      return "cold junction offset";
    case WordRole::RtdCurrent:
      return "RTD current";
  }
  return "?";
}

uint16_t MiscalibratedWord(const CalibrationWord& word) {
  // Neighbouring words err the other way, so that no two ranges are off alike.
  const int sign = word.address % 2 == 0 ? 1 : -1;
  int error = 0;
  switch (word.role) {
    case WordRole::Gain:
      error = 0x0400;  // about 0.4 %
      break;
    case WordRole::Zero:
      error = 0x0200;  // four input counts on the DC board
      break;
    case WordRole::ColdJunctionGain:
      error = 0x0100;  // 2.4 degrees
      break;
    case WordRole::ColdJunctionOffset:
      error = 0x0080;  // half a degree
      break;
    case WordRole::RtdCurrent:
      error = 0x0300;  // half a percent
      break;
  }
  return static_cast<uint16_t>(word.factory + sign * error);
}

RangeCorrection CorrectionOf(Conditioner board, const InputFacts& facts) {
  RangeCorrection c;
  switch (board) {
    case Conditioner::Dc:
      if (facts.inputMode == kDcVolts || facts.inputMode == kDcAmps || facts.inputMode == kRatio) {
        c.zeroAddress = kZeroWord;
        c.zeroWordsPerCount = kDcZeroPerCount;
      }
      if (facts.inputMode == kDcVolts) TakeGain(kDcVoltGains, facts.range, c);
      if (facts.inputMode == kDcAmps) TakeGain(kDcAmpGains, facts.range, c);
      break;
    case Conditioner::TrueRms:
      if (facts.inputMode == kRmsVolts || facts.inputMode == kRmsAmps) {
        c.zeroAddress = kZeroWord;
        c.zeroWordsPerCount = kRmsZeroPerCount;
      }
      if (facts.inputMode == kRmsVolts) TakeGain(kRmsVoltGains, facts.range, c);
      if (facts.inputMode == kRmsAmps) TakeGain(kRmsAmpGains, facts.range, c);
      break;
    case Conditioner::LoadCell:
      if (facts.inputMode == kStrain || facts.inputMode == kDcMv) {
        // The two most sensitive ranges have a zero of their own.
        const bool highGain = facts.range < 2;
        c.zeroAddress = highGain ? kLoadCellHighGainZeroWord : kZeroWord;
        c.zeroWordsPerCount = highGain ? kLoadCellHighGainZeroPerCount : kLoadCellLowGainZeroPerCount;
        TakeGain(kLoadCellGains, facts.range, c);
      }
      break;
    case Conditioner::Temperature:
      c = TemperatureCorrection(facts);
      break;
  }
  return c;
}

double CorrectedCounts(double inputCounts, const SetupMemory& memory, const RangeCorrection& c, int inputDp) {
  double counts = inputCounts;
  if (c.gainAddress >= 0)
    counts *= 1.0 + (memory.Word(c.gainAddress) - static_cast<double>(c.gainNominal)) / c.gainSpan;
  if (c.zeroAddress >= 0) counts += static_cast<int16_t>(memory.Word(c.zeroAddress)) / c.zeroWordsPerCount;
  if (c.coldJunctionGainAddress >= 0) {
    // The junction's temperature is added to the thermocouple's: a gain above its ice-point
    // value or a positive offset makes the meter think the junction colder than it is.
    const double gainError = (c.coldJunctionGainNominal - static_cast<double>(memory.Word(c.coldJunctionGainAddress))) /
                             kColdJunctionGainSlope;
    const double offsetError = static_cast<int16_t>(memory.Word(c.coldJunctionOffsetAddress)) * kColdJunctionOffsetStep;
    const double degreesC = gainError - offsetError;
    counts += (c.fahrenheit ? degreesC * 1.8 : degreesC) * std::pow(10.0, inputDp - 1);
  }
  return counts;
}

}  // namespace dpm::emulator
