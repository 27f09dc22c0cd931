#include "calibration/range_tables.h"

#include <array>
#include <span>

#include "platform/faults.h"

namespace dpm {
namespace {

// The texts with two blanks ("5 A  DC", "2 mA  AC") and the unit letter of "400E-3A" are
// the ranges' own and stay as they stand.

const std::vector<std::string> kTemperatureNames = {
    "Zero", "Gain J,K,N,E", "Gain T,S,R", "Cold Junction J,K,N,E", "Cold Junction T,S,R", "RTD Current Source"};
const std::vector<std::string> kDcNames = {"Zero",     "200 mV DC", "2 V DC",   "20 V DC",   "200 V DC",
                                           "660 V DC", "2 mA DC",   "20 mA DC", "200 mA DC", "5 A DC"};
const std::vector<std::string> kAcNames = {"Zero",     "200 mV AC", "2 V AC",   "20 V AC",   "200 V AC",
                                           "660 V AC", "2 mA AC",   "20 mA AC", "200 mA AC", "5 A AC"};
const std::vector<std::string> kLoadCellNames = {"Zero (Lo Range)", "Zero (Hi Range)", "20 mV DC", "50 mV DC",
                                                 "100 mV DC",       "250 mV DC",       "500 mV DC"};
const std::vector<std::string> kNoNames;

constexpr std::array<CalRange, 6> kTemperatureRanges = {{
    {kOneReading, kZeroWord, 10, "J,K,N,E", "0 V DC", "0V", "1A", "60", 0, 1},
    {kPlusAndMinus, kGainWord, 4, "75.6 mV DC", "75.6 mV DC", "756E-4V", "21", "60", 80000, 1},
    {kPlusAndMinus, kGainWord, 4, "23.3 mV DC", "23.3 mV DC", "233E-4V", "24", "63", 80000, 2},
    {kColdJunction, kZeroWord, 1, "Cold Junction", "Cold Junction", "0V", "1D", "41", 0, 1},
    {kColdJunction, kZeroWord, 1, "Cold Junction", "Cold Junction", "0V", "2D", "49", 0, 2},
    {kRtdCurrent, kZeroWord, 1, "356.13 Ohms", "356.13 Ohms", "0V", "1E", "50", 1356.4f, 3},
}};

constexpr std::array<CalRange, 10> kDcRanges = {{
    {kOneReading, kZeroWord, 10, "200 mV DC", "0 V DC", "0V", "1A", "60", 0, 11},
    {kPlusAndMinus, kGainWord, 4, "200 mV DC", "200 mV DC", "200E-3V", "1F", "60", 80000, 11},
    {kPlusAndMinus, kGainWord, 4, "2 V DC", "2 V DC", "2V", "20", "61", 80000, 12},
    {kPlusAndMinus, kGainWord, 4, "20 V DC", "20 V DC", "20V", "21", "62", 80000, 13},
    {kPlusAndMinus, kGainWord, 4, "200 V DC", "200 V DC", "200V", "22", "63", 80000, 14},
    {kPlusAndMinus, kGainWord, 4, "660 V DC", "660 V DC", "660V", "23", "64", 26400, 15},
    {kPlusAndMinus, kGainWord, 4, "2 mA DC", "2 mA DC", "1.99999E-3A", "25", "70", 80000, 16},
    {kPlusAndMinus, kGainWord, 4, "20 mA DC", "20 mA DC", "19.9999E-3A", "26", "71", 80000, 17},
    {kPlusAndMinus, kGainWord, 4, "200 mA DC", "200 mA DC", ".199999A", "27", "72", 80000, 18},
    // The 5 A range is calibrated at 2 A, below its full scale.
    {kPlusAndMinus, kGainWord, 4, "5 A  DC", "2 A  DC", "1.99999A", "28", "73", 8000, 19},
}};

constexpr std::array<CalRange, 10> kAcRanges = {{
    {kOneReading, kZeroWord, 4, "200 mV AC", "5 mV AC", "5E-3V", "1A", "80", 2000, 21},
    {kOneReading, kGainWord, 4, "200 mV AC", "200 mV AC", "200E-3V", "1F", "80", 80000, 21},
    {kOneReading, kGainWord, 4, "2 V AC", "2 V AC", "2V", "20", "81", 80000, 22},
    {kOneReading, kGainWord, 4, "20 V AC", "20 V AC", "20V", "21", "82", 80000, 23},
    {kOneReading, kGainWord, 4, "200 V AC", "200 V AC", "200V", "22", "83", 80000, 24},
    {kOneReading, kGainWord, 4, "660 V AC", "660 V AC", "660V", "23", "84", 26400, 25},
    {kOneReading, kGainWord, 4, "2 mA  AC", "2 mA  AC", "1.99999E-3A", "25", "90", 80000, 26},
    {kOneReading, kGainWord, 4, "20 mA  AC", "20 mA  AC", "19.9999E-3A", "26", "91", 80000, 27},
    {kOneReading, kGainWord, 4, "200 mA  AC", "200 mA  AC", ".199999A", "27", "92", 80000, 28},
    {kOneReading, kGainWord, 4, "5 A  AC", "5 A  AC", "5A", "28", "93", 20000, 29},
}};

// The gain ranges of the load cell are calibrated below their nominal full scale where the
// scale factor lets the applied input still read 80000.
constexpr std::array<CalRange, 7> kLoadCellRanges = {{
    {kOneReading, kZeroWord, 10, "500 mV DC", "0 V DC", "0V", "1A", "D4", 0, 35},
    {kOneReading, kZeroWord, 10, "20 mV DC", "0 V DC", "0V", "1E", "D0", 0, 31},
    {kPlusAndMinus, kGainWord, 4, "20 mV DC", "20 mV DC", "20E-3V", "1F", "D0", 80000, 31},
    {kPlusAndMinus, kGainWord, 2, "50 mV DC", "40 mV DC", "40E-3V", "20", "D1", 80000, 32},
    {kPlusAndMinus, kGainWord, 8, "100 mV DC", "100 mV DC", "100E-3V", "21", "D2", 80000, 33},
    {kPlusAndMinus, kGainWord, 4, "250 mV DC", "200 mV DC", "200E-3V", "22", "D3", 80000, 34},
    {kPlusAndMinus, kGainWord, 2, "500 mV DC", "400 mV DC", "400E-3A", "23", "D4", 80000, 35},
}};

using GainColumn = std::array<float, 10>;
constexpr GainColumn kTemperatureGains = {3.1f, 3.0945f, 3.1399f, 0, 0, 0, 0, 0, 0, 0};
constexpr GainColumn kDcGains = {0, 3.277f, 3.302f, 3.249f, 3.275f, 9.939f, 3.244f, 3.238f, 3.241f, 30.78f};
constexpr GainColumn kAcGains = {0, 3.365f, 3.354f, 3.297f, 3.326f, 10.103f, 3.407f, 3.296f, 3.287f, 8.326f};
constexpr GainColumn kLoadCellGains = {0, 0, 3.277f, 3.218f, 3.217f, 3.241f, 3.408f, 0, 0, 0};
constexpr GainColumn kNoGains = {};

// What each conditioner has, by its number.
struct ConditionerRanges {
  const std::vector<std::string>& names;
  std::span<const CalRange> ranges;
  const GainColumn& gains;
};

const std::array<ConditionerRanges, 4> kConditioners = {{
    {kTemperatureNames, kTemperatureRanges, kTemperatureGains},
    {kDcNames, kDcRanges, kDcGains},
    {kAcNames, kAcRanges, kAcGains},
    {kLoadCellNames, kLoadCellRanges, kLoadCellGains},
}};

// An unknown conditioner has no ranges and no gains.
const ConditionerRanges kUnknownConditioner = {kNoNames, {}, kNoGains};

const ConditionerRanges& ConditionerOf(int sigCond) {
  if (sigCond < 0 || static_cast<std::size_t>(sigCond) >= kConditioners.size()) return kUnknownConditioner;
  return kConditioners[static_cast<std::size_t>(sigCond)];
}

}  // namespace

const std::vector<std::string>& RangeNames(int sigCond) { return ConditionerOf(sigCond).names; }

const CalRange* FindRange(int sigCond, int listIndex) {
  const std::span<const CalRange> ranges = ConditionerOf(sigCond).ranges;
  if (listIndex < 0 || static_cast<std::size_t>(listIndex) >= ranges.size()) return nullptr;
  return &ranges[static_cast<std::size_t>(listIndex)];
}

float GainFactor(int sigCond, int listIndex) {
  const GainColumn& gains = ConditionerOf(sigCond).gains;
  if (listIndex < 0 || static_cast<std::size_t>(listIndex) >= gains.size())
    throw IndexFault("Subscript out of range: gain factor " + std::to_string(listIndex));
  return gains[static_cast<std::size_t>(listIndex)];
}

}  // namespace dpm
