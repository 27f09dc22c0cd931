#pragma once

namespace dpm {

class Clock;
class Dialogs;
class EventPump;
class SerialPort;

// The outside world as the program sees it. The program's main() fills it with the Qt
// implementations; tests fill it with fakes.
struct Services {
  Clock* clock = nullptr;
  EventPump* events = nullptr;
  SerialPort* meterLink = nullptr;
  Dialogs* dialogs = nullptr;
};

Services& Platform();

}  // namespace dpm
