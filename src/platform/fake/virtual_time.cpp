#include "platform/fake/virtual_time.h"

#include <cmath>

namespace dpm::fake {

VirtualTime::VirtualTime(uint32_t msAtStart, double secondsSinceMidnightAtStart)
    : startMs_(msAtStart), nowMs_(msAtStart), midnightOffsetMs_(secondsSinceMidnightAtStart * 1000.0) {}

float VirtualTime::SecondsSinceMidnight() {
  const double ms = std::fmod(midnightOffsetMs_ + static_cast<double>(nowMs_ - startMs_), 86400000.0);
  return static_cast<float>(ms / 1000.0);
}

void VirtualTime::Serve() {
  ++serveCount_;
  ++nowMs_;
  Tick();
}

void VirtualTime::Advance(uint32_t ms) {
  nowMs_ += ms;
  Tick();
}

void VirtualTime::Run(uint32_t ms) {
  const uint32_t until = nowMs_ + ms;
  while (static_cast<int32_t>(until - nowMs_) > 0) Serve();
}

void VirtualTime::Tick() {
  for (auto& ticker : tickers_) ticker(nowMs_);
  std::vector<std::function<void()>> actions;
  actions.swap(posted_);
  for (auto& action : actions) action();
}

}  // namespace dpm::fake
