#include "emulator/data_sheet.h"

namespace dpm::emulator {
namespace {

// The data sheet as a row of bits, most significant first, positions counted from 1.
class BitRow {
 public:
  BitRow() : bits_(4 * kDataSheetDigits, '0') {}

  // Writes the low `width` bits of the value at positions first .. first + width - 1.
  void Put(int first, int width, uint32_t value) {
    for (int i = 0; i < width; ++i) {
      const bool set = (value >> (width - 1 - i)) & 1u;
      bits_[static_cast<std::size_t>(first - 1 + i)] = set ? '1' : '0';
    }
  }

  std::string Hex() const {
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string hex;
    for (std::size_t i = 0; i < bits_.size(); i += 4) {
      int digit = 0;
      for (std::size_t j = 0; j < 4; ++j) digit = digit * 2 + (bits_[i + j] == '1');
      hex += kHex[digit];
    }
    return hex;
  }

 private:
  std::string bits_;
};

uint32_t InitialCode(char c) { return c >= 'A' && c <= 'Z' ? static_cast<uint32_t>(c - 64) : 0; }

}  // namespace

std::string EncodeDataSheet(const DataSheetFields& fields) {
  BitRow row;
  row.Put(359, 2, 0);  // template 0
  row.Put(441, 24, fields.serialNumber);
  row.Put(425, 6, static_cast<uint32_t>(fields.unitsCode));
  row.Put(2, 7, static_cast<uint32_t>(fields.extendedUnitsCode));
  row.Put(268, 16, static_cast<uint32_t>(fields.calibrationDay));
  row.Put(233, 12, static_cast<uint32_t>(fields.calibrationPeriod));
  const uint32_t initials =
      InitialCode(fields.initials[0]) << 10 | InitialCode(fields.initials[1]) << 5 | InitialCode(fields.initials[2]);
  // The initials run across a byte that holds something else: 4 bits, then 11 after it.
  row.Put(245, 4, initials >> 11);
  row.Put(257, 11, initials & 0x7FF);
  row.Put(222, 11, static_cast<uint32_t>(fields.measurementId));
  return row.Hex();
}

std::string SampleDataSheet() {
  DataSheetFields fields;
  fields.serialNumber = 204518;
  fields.unitsCode = 5;  // pounds
  fields.calibrationDay = 9203;
  fields.calibrationPeriod = 365;
  fields.initials[0] = 'J';
  fields.initials[1] = 'K';
  fields.initials[2] = 'L';
  fields.measurementId = 1;
  return EncodeDataSheet(fields);
}

}  // namespace dpm::emulator
