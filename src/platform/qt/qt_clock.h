#pragma once

#include "platform/clock.h"

namespace dpm::qt {

// The machine's clocks: a monotonic millisecond counter that no change of the wall clock
// disturbs, and the local time of day.
class QtClock : public Clock {
 public:
  uint32_t Milliseconds() override;
  float SecondsSinceMidnight() override;
};

}  // namespace dpm::qt
