#include "platform/qt/qt_clock.h"

#include <chrono>

#include <QTime>

namespace dpm::qt {

uint32_t QtClock::Milliseconds() {
  const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
  // Kept to 32 bits on purpose: the waits compare the counter with wrap-around arithmetic.
  return static_cast<uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count());
}

float QtClock::SecondsSinceMidnight() {
  return static_cast<float>(QTime::currentTime().msecsSinceStartOfDay()) / 1000.0f;
}

}  // namespace dpm::qt
