#include "emulator/reading_model.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "emulator/calibration_model.h"
#include "setup/image_positions.h"

namespace dpm::emulator {
namespace {

// Ranges of each input mode.
constexpr std::array<int, 9> kRangeCount = {14, 13, 5, 4, 5, 4, 3, 5, 5};
constexpr std::array<int, 9> kConditionerOfMode = {0, 0, 1, 1, 2, 2, 1, 3, 3};

constexpr int kDcVoltsMode = 2;
constexpr double kFullScaleCounts = 20000.0;

int InputModeOf(int modeCode) {
  int mode = modeCode - 4;
  if (mode == 7 || mode < 0 || mode > 9) return 2;
  return mode > 7 ? mode - 1 : mode;
}

int InputDpOf(const InputFacts& f) {
  int dp = 0;
  switch (f.conditioner) {
    case 0:
      dp = f.resolution == 2 ? 3 : 2;
      break;
    case 3:
      dp = f.range < 2 ? 4 : 3;
      break;
    default:
      if (f.inputMode == 3 || f.inputMode == 5) {
        dp = f.range == 3 ? 4 : 5 - f.range;
      } else {
        dp = 6 - f.range;
      }
  }
  // A display of three and a half digits shows one decimal less.
  return f.resolution == 3 ? dp - 1 : dp;
}

int ValidDp(int code) { return code >= 1 && code <= 6 ? code : 1; }

double PowerOfTen(int exponent) { return std::pow(10.0, exponent); }

// The scale factor: a sign bit and a decimal point code in the first digit, five
// hexadecimal digits of magnitude.
double ScaleFactor(const SetupMemory& memory) {
  const int first = memory.Bits(7, 4, kScale);
  const int32_t magnitude =
      (memory.Bits(3, 0, kScale) << 16) | (memory.Byte(kScale + 2) << 8) | memory.Byte(kScale + 4);
  const double factor = magnitude / PowerOfTen(ValidDp(first & 7) - 1);
  return (first & 8) ? -factor : factor;
}

double ScaledCounts(double counts, const SetupMemory& memory) {
  const bool readingCoordinates = memory.Bits(3, 3, kConfigLow) == 1;
  const bool coordinates = memory.Bits(3, 3, kDisplayByte) == 1;
  if (!readingCoordinates && !coordinates) return counts * ScaleFactor(memory) + memory.Signed24(kOffset);
  // Two points, each an input in input counts and the reading wanted there.
  const double lowIn = memory.Signed24(kLowIn);
  const double highIn = memory.Signed24(kHighIn);
  const double lowRead = memory.Signed24(kLowRead);
  const double highRead = memory.Signed24(kHighRead);
  if (highIn == lowIn) return lowRead;
  return lowRead + (counts - lowIn) * (highRead - lowRead) / (highIn - lowIn);
}

}  // namespace

Conditioner ConditionerOfInputMode(int inputMode) {
  return static_cast<Conditioner>(kConditionerOfMode[static_cast<std::size_t>(inputMode)]);
}

InputFacts DecodeInputFacts(const SetupMemory& memory, std::optional<Conditioner> board) {
  InputFacts f;
  f.inputMode = InputModeOf(memory.Bits(7, 4, kModeRangeByte));
  f.conditioner = kConditionerOfMode[static_cast<std::size_t>(f.inputMode)];
  f.range = memory.Bits(3, 0, kModeRangeByte);
  if (f.range >= kRangeCount[static_cast<std::size_t>(f.inputMode)]) f.range = 0;
  f.resolution = memory.Bits(7, 6, kDisplayByte);
  f.inputDp = InputDpOf(f);
  f.displayDp = f.conditioner == 0 ? ValidDp(f.inputDp) : ValidDp(memory.Bits(2, 0, kDecimalPoint));
  f.countsPerUnit = PowerOfTen(f.inputDp - 1);
  if (board == Conditioner::Temperature && f.inputMode == kDcVoltsMode) {
    if (f.range == kThermocoupleVoltRangeJkne) f.countsPerUnit = kFullScaleCounts / kThermocoupleVoltFullScaleJkne;
    if (f.range == kThermocoupleVoltRangeTsr) f.countsPerUnit = kFullScaleCounts / kThermocoupleVoltFullScaleTsr;
  }
  return f;
}

DisplayReading ReadingFor(double input, const SetupMemory& memory, std::optional<Conditioner> board) {
  const InputFacts facts = DecodeInputFacts(memory, board);
  const Conditioner fitted = board.value_or(ConditionerOfInputMode(facts.inputMode));
  const double inputCounts =
      CorrectedCounts(input * facts.countsPerUnit, memory, CorrectionOf(fitted, facts), facts.inputDp);
  double counts = ScaledCounts(inputCounts, memory);
  // "Count by ten": the last digit of a reading stays 0.
  if (facts.resolution == 2 && facts.conditioner != 0) counts = std::nearbyint(counts / 10.0) * 10.0;
  counts = std::nearbyint(counts);
  if (std::isnan(counts)) return {0, true};
  if (std::fabs(counts) > kDisplayLimit) return {counts < 0 ? -1 : 1, true};
  return {static_cast<int32_t>(counts), false};
}

std::string DisplayText(const DisplayReading& reading, int displayDp) {
  const char sign = reading.counts < 0 ? '-' : '+';
  if (reading.overload) return sign + std::string("OVLOAD");
  char digits[16];
  std::snprintf(digits, sizeof digits, "%05d", std::abs(reading.counts) % (kDisplayLimit + 1));
  const int left = 6 - ValidDp(displayDp);
  std::string text(1, sign);
  text.append(digits, static_cast<std::size_t>(left));
  text += '.';
  text.append(digits + left);
  return text;
}

}  // namespace dpm::emulator
