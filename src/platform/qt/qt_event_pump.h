#pragma once

#include <QTimer>

#include "platform/events.h"

namespace dpm::qt {

// Serves the Qt events of the user-interface thread. Every wait of the program is a loop
// around Serve(), so it must neither spin nor oversleep: pending events are handled at
// once, and when there are none it sleeps until the next event arrives or about a
// millisecond has passed.
class QtEventPump : public EventPump {
 public:
  QtEventPump();
  void Serve() override;

 private:
  // Wakes the sleeping event loop after a millisecond when nothing else does.
  QTimer wakeUp_;
};

}  // namespace dpm::qt
