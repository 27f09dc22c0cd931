#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

namespace dpm::testing {

// Builds a data sheet the way a test thinks of it: field values placed at bit positions
// (counted from 1, most significant bit first), read back as the 116 hexadecimal digits
// the meter would send. A value may be split over several runs of bits, filled in order.
class DataSheetBits {
 public:
  struct Run {
    int first;
    int width;
  };

  DataSheetBits& Put(std::initializer_list<Run> runs, uint32_t value) {
    int total = 0;
    for (const Run& run : runs) total += run.width;
    int bit = total;
    for (const Run& run : runs) {
      for (int i = 0; i < run.width; ++i) {
        --bit;
        bits_[static_cast<std::size_t>(run.first - 1 + i)] = (value >> bit) & 1u ? '1' : '0';
      }
    }
    return *this;
  }
  DataSheetBits& Put(int first, int width, uint32_t value) { return Put({{first, width}}, value); }

  std::string Hex() const {
    std::string hex;
    for (std::size_t i = 0; i < bits_.size(); i += 4) {
      const int digit =
          (bits_[i] - '0') * 8 + (bits_[i + 1] - '0') * 4 + (bits_[i + 2] - '0') * 2 + (bits_[i + 3] - '0');
      hex += "0123456789ABCDEF"[digit];
    }
    return hex;
  }

 private:
  std::string bits_ = std::string(464, '0');
};

}  // namespace dpm::testing
