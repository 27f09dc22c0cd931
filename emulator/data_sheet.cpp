#include "emulator/data_sheet.h"

#include <array>
#include <charconv>
#include <chrono>

namespace dpm::emulator {
namespace {

// Bits 249 to 256 hold something else: a field that runs into them goes on right after.
constexpr int kGapFirst = 249;
constexpr int kGapWidth = 8;

// The data sheet as a row of bits, most significant first, positions counted from 1.
class BitRow {
 public:
  BitRow() : bits_(4 * kDataSheetDigits, '0') {}

  // Writes the low `width` bits of the value from position `first` on, stepping over the gap.
  void Put(int first, int width, uint32_t value) {
    for (int i = 0; i < width; ++i) {
      int position = first + i;
      if (first < kGapFirst && position >= kGapFirst) position += kGapWidth;
      const bool set = (value >> (width - 1 - i)) & 1u;
      bits_[static_cast<std::size_t>(position - 1)] = set ? '1' : '0';
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

// Where each template starts its fields; widths are the same in all of them.
struct Places {
  int extendedUnits, calibrationDay, calibrationPeriod, initials, measurementId;
};
constexpr std::array<Places, 3> kPlaces = {Places{2, 268, 233, 245, 222}, Places{7, 244, 217, 229, 206},
                                           Places{2, 218, 191, 203, 180}};
constexpr int kTemplateBit = 359;
constexpr int kSerialBit = 441;
constexpr int kUnitsBit = 425;

uint32_t LetterCode(char c) { return c >= 'A' && c <= 'Z' ? static_cast<uint32_t>(c - 'A' + 1) : 0; }

// Three five-bit letters; the sheet keeps the last letter in the leading group.
uint32_t InitialsCode(const std::string& initials) {
  uint32_t code = 0;
  for (std::size_t i = 3; i-- > 0;) code = code << 5 | (i < initials.size() ? LetterCode(initials[i]) : 0);
  return code;
}

uint32_t Bits(int value) { return static_cast<uint32_t>(value); }

}  // namespace

std::string EncodeDataSheet(const DataSheetFields& fields) {
  BitRow row;
  row.Put(kTemplateBit, 2, Bits(fields.templateNumber));
  row.Put(kSerialBit, 24, fields.serialNumber);
  row.Put(kUnitsBit, 6, Bits(fields.unitsCode));
  if (fields.templateNumber < 0 || fields.templateNumber > 2) {
    // A sheet of template 3 keeps only the extended units code, where template 0 has it.
    row.Put(kPlaces[0].extendedUnits, 7, Bits(fields.extendedUnitsCode));
    return row.Hex();
  }
  const Places& at = kPlaces[static_cast<std::size_t>(fields.templateNumber)];
  row.Put(at.extendedUnits, 7, Bits(fields.extendedUnitsCode));
  row.Put(at.calibrationDay, 16, Bits(fields.calibrationDay));
  row.Put(at.calibrationPeriod, 12, Bits(fields.calibrationPeriod));
  row.Put(at.initials, 15, InitialsCode(fields.initials));
  row.Put(at.measurementId, 11, Bits(fields.measurementId));
  return row.Hex();
}

std::string SampleDataSheet() { return EncodeDataSheet(DataSheetFields{}); }

std::optional<int> CalibrationDayOf(std::string_view date) {
  const auto number = [&](std::size_t at, std::size_t length) -> std::optional<int> {
    int value = 0;
    const char* begin = date.data() + at;
    const auto [end, error] = std::from_chars(begin, begin + length, value);
    if (error != std::errc{} || end != begin + length) return std::nullopt;
    return value;
  };
  if (date.size() != 10 || date[4] != '-' || date[7] != '-') return std::nullopt;
  const auto y = number(0, 4);
  const auto m = number(5, 2);
  const auto d = number(8, 2);
  if (!y || !m || !d) return std::nullopt;
  using namespace std::chrono;
  const year_month_day ymd{year{*y}, month{static_cast<unsigned>(*m)}, day{static_cast<unsigned>(*d)}};
  if (!ymd.ok()) return std::nullopt;
  const auto days = (sys_days{ymd} - sys_days{year{1998} / January / 1}).count();
  if (days < 0 || days > 0xFFFF) return std::nullopt;
  return static_cast<int>(days);
}

}  // namespace dpm::emulator
