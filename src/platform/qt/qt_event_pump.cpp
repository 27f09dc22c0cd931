#include "platform/qt/qt_event_pump.h"

#include <QCoreApplication>
#include <QEventLoop>

namespace dpm::qt {

QtEventPump::QtEventPump() {
  wakeUp_.setSingleShot(true);
  wakeUp_.setTimerType(Qt::PreciseTimer);
  wakeUp_.setInterval(1);
}

void QtEventPump::Serve() {
  if (!QCoreApplication::instance()) return;
  wakeUp_.start();
  // With WaitForMoreEvents the loop handles what is pending and returns; with nothing
  // pending it blocks until an event comes, at the latest the wake-up timer.
  QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

}  // namespace dpm::qt
