#include "platform/qt/qt_event_pump.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QCoreApplication>
#include <QTime>
#include <QTimer>
#include <chrono>
#include <cmath>
#include <iostream>

#include "link/transport.h"
#include "platform/qt/qt_clock.h"
#include "platform/services.h"

namespace dpm::qt {
namespace {

using Clock = std::chrono::steady_clock;

double Ms(Clock::duration d) { return std::chrono::duration<double, std::milli>(d).count(); }

double CpuSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

TEST(QtEventPump, PendingEventsAreServedAtOnce) {
  QtEventPump pump;
  int fired = 0;
  QTimer::singleShot(0, [&] { ++fired; });
  QMetaObject::invokeMethod(
      QCoreApplication::instance(), [&] { ++fired; }, Qt::QueuedConnection);
  const auto start = Clock::now();
  for (int i = 0; i < 5 && fired < 2; ++i) pump.Serve();
  EXPECT_EQ(fired, 2);
  EXPECT_LT(Ms(Clock::now() - start), 20.0);
}

// A one-second wait of the transport, served by the real pump and clock, must leave the
// processor to others: it sleeps between turns instead of spinning.
TEST(QtEventPump, ASecondsWaitUsesLittleProcessorTime) {
  QtClock clock;
  QtEventPump pump;
  Platform() = Services{&clock, &pump};
  const double cpuBefore = CpuSeconds();
  const auto start = Clock::now();
  DelayMs(1000);
  const double wall = Ms(Clock::now() - start);
  const double cpuShare = (CpuSeconds() - cpuBefore) * 1000.0 / wall;
  Platform() = Services{};
  std::cout << "[ cpu      ] DelayMs(1000) took " << wall << " ms of wall time and " << 100.0 * cpuShare
            << " % of one core\n";
  EXPECT_GE(wall, 990.0);
  EXPECT_LT(wall, 1100.0);
  EXPECT_LT(cpuShare, 0.15);
}

TEST(QtClock, MillisecondsAndTimeOfDayMoveTogether) {
  QtClock clock;
  QtEventPump pump;
  const uint32_t ms0 = clock.Milliseconds();
  const float day0 = clock.SecondsSinceMidnight();
  const auto start = Clock::now();
  while (Ms(Clock::now() - start) < 50) pump.Serve();
  const uint32_t elapsed = clock.Milliseconds() - ms0;
  EXPECT_GE(elapsed, 50u);
  EXPECT_LT(elapsed, 100u);
  const float day1 = clock.SecondsSinceMidnight();
  EXPECT_GE(day1, 0.0f);
  EXPECT_LT(day1, 86400.0f);
  if (day1 > day0) {  // unless midnight passed
    EXPECT_NEAR(day1 - day0, elapsed / 1000.0, 0.02);
  }
  EXPECT_NEAR(day1, QTime::currentTime().msecsSinceStartOfDay() / 1000.0, 0.02);
}

}  // namespace
}  // namespace dpm::qt
