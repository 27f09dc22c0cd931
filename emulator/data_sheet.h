#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// The transducer data sheet of a load cell, as the meter passes it through: 29 words, 116
// hexadecimal digits, read from word A0 downward.
namespace dpm::emulator {

inline constexpr int kDataSheetHighAddress = 0xA0;
inline constexpr int kDataSheetWords = 29;
inline constexpr int kDataSheetDigits = 4 * kDataSheetWords;

// The fields of a data sheet. The defaults make a plausible load cell: serial number
// 204518, pounds, calibrated on 14 March 2023 for a year by "JKL", bridge B.
struct DataSheetFields {
  int templateNumber = 0;          // 0 to 3: where the calibration fields lie; 3 holds none of them
  uint32_t serialNumber = 204518;  // 24 bits
  int unitsCode = 5;               // 6 bits; 63 (and 0 on newer meters) refers to the extended code
  int extendedUnitsCode = 0;       // 7 bits
  int calibrationDay = 9203;       // days since 1 January 1998, 16 bits
  int calibrationPeriod = 365;     // days, 12 bits
  std::string initials = "JKL";    // up to three letters A to Z as the calibrator signs; a blank for none
  int measurementId = 1;           // 11 bits: 0 bridge A, 1 bridge B, ...
};

// 116 hexadecimal digits holding the fields.
std::string EncodeDataSheet(const DataSheetFields& fields);

// The sheet of the default fields.
std::string SampleDataSheet();

// The calibration day of a date written YYYY-MM-DD; none when it is no date or lies
// outside what 16 bits of days from 1 January 1998 can hold (up to 6 June 2177).
std::optional<int> CalibrationDayOf(std::string_view date);

}  // namespace dpm::emulator
