#pragma once

#include <cstdint>

namespace dpm {

class Clock {
 public:
  virtual ~Clock() = default;
  // A free-running millisecond counter; it wraps after 2^32 ms.
  virtual uint32_t Milliseconds() = 0;
  // Seconds since local midnight, 0 up to 86400.
  virtual float SecondsSinceMidnight() = 0;
};

}  // namespace dpm
