#pragma once

#include <cstdint>
#include <string>

#include "emulator/setup_memory.h"

// How the meter turns the signal at its input into what it displays: the conditioner
// converts the input to counts of the selected range, the calibration words correct them,
// and the setup's scaling makes display counts of them.
namespace dpm::emulator {

// The measuring setup, decoded from the setup memory the way the meter reads it.
struct InputFacts {
  int inputMode = 2;    // 0 thermocouple, 1 RTD, 2 DC V, 3 DC A, 4 RMS V, 5 RMS A, 6 ratio, 7 strain, 8 DC mV
  int conditioner = 1;  // 0 temperature, 1 DC, 2 true RMS, 3 load cell
  int range = 0;
  int resolution = 0;
  int inputDp = 6;    // decimal point code of the input counts, 1 to 6
  int displayDp = 1;  // decimal point code of the display
};

InputFacts DecodeInputFacts(const SetupMemory& memory);

// The largest count the five-digit display shows; beyond it the meter reads overload.
inline constexpr int32_t kDisplayLimit = 99999;

// A reading in display counts. An overload keeps only its sign, in `counts`.
struct DisplayReading {
  int32_t counts = 0;
  bool overload = false;
  bool operator==(const DisplayReading&) const = default;
};

// The reading for an input in the units of the selected range: volts on a volt range,
// milliamperes on a milliampere range, degrees on a temperature range.
DisplayReading ReadingFor(double input, const SetupMemory& memory);

// The reading as the meter sends it: a sign and five digits with the display's decimal
// point, as "+012.34" or "-00001.", or "+OVLOAD" / "-OVLOAD".
std::string DisplayText(const DisplayReading& reading, int displayDp);

// Input counts corrected by the calibration words of the selected range. The zero word of
// the range shifts the counts and its gain word stretches them; the words of an
// uncalibrated meter leave them as they are.
double CalibratedCounts(double inputCounts, const SetupMemory& memory, const InputFacts& facts);

}  // namespace dpm::emulator
