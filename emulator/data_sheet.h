#pragma once

#include <cstdint>
#include <string>

// The transducer data sheet of a load cell, as the meter passes it through: 29 words, 116
// hexadecimal digits, read from word A0 downward.
namespace dpm::emulator {

inline constexpr int kDataSheetHighAddress = 0xA0;
inline constexpr int kDataSheetWords = 29;
inline constexpr int kDataSheetDigits = 4 * kDataSheetWords;

// The fields of a data sheet in the layout of template 0.
struct DataSheetFields {
  uint32_t serialNumber = 0;           // 24 bits
  int unitsCode = 0;                   // 6 bits
  int extendedUnitsCode = 0;           // 7 bits
  int calibrationDay = 0;              // days since 1 January 1998, 16 bits
  int calibrationPeriod = 0;           // days, 12 bits
  char initials[3] = {' ', ' ', ' '};  // upper-case letters or blanks, in stored order
  int measurementId = 0;               // 11 bits
};

// 116 hexadecimal digits holding the fields.
std::string EncodeDataSheet(const DataSheetFields& fields);

// A plausible data sheet of a load cell: serial number 204518, pounds, calibrated on
// 14 March 2023 for a year by "JKL", bridge B.
std::string SampleDataSheet();

}  // namespace dpm::emulator
