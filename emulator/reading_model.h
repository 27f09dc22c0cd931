#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "emulator/setup_memory.h"

// How the meter turns the signal at its input into what it displays: the conditioner
// converts the input to counts of the selected range, the calibration words correct them,
// and the setup's scaling makes display counts of them.
namespace dpm::emulator {

// The plug-in signal conditioner board.
enum class Conditioner { Temperature, Dc, TrueRms, LoadCell };

// The temperature board measures thermocouple voltages on two ranges of the DC volts mode,
// one for each group of thermocouple types: full scale (20000 input counts) is 75.6 mV on
// range 0 and 23.3 mV on range 3.
inline constexpr int kThermocoupleVoltRangeJkne = 0;
inline constexpr int kThermocoupleVoltRangeTsr = 3;
inline constexpr double kThermocoupleVoltFullScaleJkne = 0.0756;
inline constexpr double kThermocoupleVoltFullScaleTsr = 0.0233;

// The measuring setup, decoded from the setup memory the way the meter reads it.
struct InputFacts {
  int inputMode = 2;    // 0 thermocouple, 1 RTD, 2 DC V, 3 DC A, 4 RMS V, 5 RMS A, 6 ratio, 7 strain, 8 DC mV
  int conditioner = 1;  // 0 temperature, 1 DC, 2 true RMS, 3 load cell
  int range = 0;
  int resolution = 0;
  int inputDp = 6;             // decimal point code of the input counts, 1 to 6
  int displayDp = 1;           // decimal point code of the display
  double countsPerUnit = 1e5;  // input counts per unit of the input
};

// The board is the one the mode belongs to unless given.
InputFacts DecodeInputFacts(const SetupMemory& memory, std::optional<Conditioner> board = std::nullopt);
Conditioner ConditionerOfInputMode(int inputMode);

// The largest count the five-digit display shows; beyond it the meter reads overload.
inline constexpr int32_t kDisplayLimit = 99999;

// A reading in display counts. An overload keeps only its sign, in `counts`.
struct DisplayReading {
  int32_t counts = 0;
  bool overload = false;
  bool operator==(const DisplayReading&) const = default;
};

// The reading for an input in the units of the selected range: volts on a volt range,
// milliamperes on a milliampere range (amperes on the 5 A range), millivolts on a load
// cell range, degrees on a temperature range; corrected by the calibration words of the
// range on the board fitted (without it, the board the mode belongs to).
DisplayReading ReadingFor(double input, const SetupMemory& memory, std::optional<Conditioner> board = std::nullopt);

// The reading as the meter sends it: a sign and five digits with the display's decimal
// point, as "+012.34" or "-00001.", or "+OVLOAD" / "-OVLOAD".
std::string DisplayText(const DisplayReading& reading, int displayDp);

}  // namespace dpm::emulator
