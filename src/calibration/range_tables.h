#pragma once

#include <cstdint>
#include <string>
#include <vector>

// What the calibration of each range asks for: the input to apply, the reading wanted, the
// word in the meter's non-volatile memory that is corrected, and how the meter is set for
// the range. One table per signal conditioner, in the order of its range list.
namespace dpm {

// Signal conditioners, as the shared SigCond counts them.
inline constexpr int16_t kTemperatureConditioner = 0;
inline constexpr int16_t kDcConditioner = 1;
inline constexpr int16_t kAcConditioner = 2;
inline constexpr int16_t kLoadCellConditioner = 3;

// How a range is run.
inline constexpr int16_t kOneReading = 0;    // one reading, one polarity
inline constexpr int16_t kPlusAndMinus = 1;  // a plus and a minus reading
inline constexpr int16_t kColdJunction = 2;  // the cold junction routine
inline constexpr int16_t kRtdCurrent = 3;    // the RTD current source routine

// What is corrected.
inline constexpr int16_t kZeroWord = 0;  // signed, by the zero rule of the conditioner
inline constexpr int16_t kGainWord = 1;  // unsigned, by the gain factor of the range

struct CalRange {
  int16_t CalcMod;
  int16_t CalcTyp;
  int16_t ScaleF;      // scale factor set in the meter for the range
  const char* P;       // the range in words
  const char* INb;     // the input to apply
  const char* F;       // the calibrator setting; only "0V" matters
  const char* NVAdr;   // address of the calibration word, two hex digits
  const char* InpTyp;  // the mode and range byte of the input
  float VDesired;      // the reading wanted, in counts
  int16_t JIndx;       // the jumper picture of the range
};

// The range list of a conditioner; an unknown conditioner has none.
const std::vector<std::string>& RangeNames(int sigCond);

// The range at a list index, or nullptr beyond the conditioner's table.
const CalRange* FindRange(int sigCond, int listIndex);

// Calibration word units per reading count of a gain range. Ranges without a gain word
// have 0; an index of 10 or more is an IndexFault.
float GainFactor(int sigCond, int listIndex);

}  // namespace dpm
