#pragma once

namespace dpm {

// Runs the pending user-interface events once. Every wait of the program is a loop
// around this, so the screens stay alive during a transfer.
class EventPump {
 public:
  virtual ~EventPump() = default;
  virtual void Serve() = 0;
};

}  // namespace dpm
