#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "emulator/reading_model.h"
#include "emulator/setup_memory.h"

// The calibration words in the meter's memory and what they do to a reading.
//
// Each range is corrected by a zero word, which shifts the input counts, and a gain word,
// which stretches them:
//
//   counts = input counts x (1 + (gain - nominal gain) / span) + zero / wordsPerCount
//
// The span of a range is the number of word units that stretch its full-scale reading by
// its whole size; it is chosen so that one word unit moves the calibration reading of the
// range by the inverse of the correction factor the program uses for it, so that one
// correction lands on the right word. A zero word of w moves the reading by w /
// wordsPerCount input counts, the inverse of the program's zero rule at the scale factor
// the zero is calibrated with. A factory meter holds the nominal words and reads exactly.
//
// The temperature board adds its cold junction (a gain and an offset word for each of the
// two groups of thermocouple types) and the current source of its RTD input.
namespace dpm::emulator {

inline constexpr uint16_t kNominalGain = 0x8000;
inline constexpr uint16_t kNominalZero = 0x0000;
// The current source word is written as a signed word, so its nominal value sits in the
// middle of the positive half.
inline constexpr uint16_t kNominalRtdCurrent = 0x4000;
// This meter's cold junction gains, for the J, K, N, E and the T, S, R groups. Its junction
// sensor reads half a degree off, so they stand 53 units above the nominal ice-point words
// 6F10 and 6DE8, and a calibration that starts from those has something to find.
inline constexpr uint16_t kColdJunctionGainJkne = 0x6F45;
inline constexpr uint16_t kColdJunctionGainTsr = 0x6E1D;
// Degrees of cold junction error per gain word unit and per offset word unit.
inline constexpr double kColdJunctionGainSlope = 106.5;
inline constexpr double kColdJunctionOffsetStep = 0.003906;

enum class WordRole { Zero, Gain, ColdJunctionGain, ColdJunctionOffset, RtdCurrent };

// One calibration word of a board.
struct CalibrationWord {
  int address;
  WordRole role;
  uint16_t factory;
};

// Every calibration word the board has, in ascending address order.
std::vector<CalibrationWord> CalibrationWordsOf(Conditioner board);

// Words signed in the meter: zeros and cold junction offsets.
bool IsSignedRole(WordRole role);
std::string RoleName(WordRole role);

// A deliberately wrong value of a word, for a meter that needs calibrating: gains off by
// some tenths of a percent, zeros by a couple of counts, the cold junction by a few degrees.
uint16_t MiscalibratedWord(const CalibrationWord& word);

// How the words act on the range in force.
struct RangeCorrection {
  int zeroAddress = -1;  // -1: no zero word
  double zeroWordsPerCount = 0.0;
  int gainAddress = -1;  // -1: no gain word
  double gainSpan = 0.0;
  uint16_t gainNominal = kNominalGain;
  int coldJunctionGainAddress = -1;  // -1: no cold junction
  int coldJunctionOffsetAddress = -1;
  uint16_t coldJunctionGainNominal = 0;
  bool fahrenheit = false;  // the range reads in degrees F
};
RangeCorrection CorrectionOf(Conditioner board, const InputFacts& facts);

// Input counts as the board reports them after its corrections.
double CorrectedCounts(double inputCounts, const SetupMemory& memory, const RangeCorrection& correction, int inputDp);

}  // namespace dpm::emulator
