#pragma once

#include <string_view>

#include "emulator/meter.h"
#include "emulator/meter_port.h"
#include "platform/fake/fake_serial_line.h"

namespace dpm::emulator {

// A meter at the far end of the in-memory line, in virtual time: it hears what the
// program sends and answers through the line at the times a real line would carry the
// answer, paced at the baud rate the line is set to.
class InProcessMeter : public fake::SerialPeer {
 public:
  explicit InProcessMeter(fake::FakeSerialLine& line, MeterOptions options = {}, std::string_view image = {},
                          PortOptions port = {});
  ~InProcessMeter() override;
  InProcessMeter(const InProcessMeter&) = delete;
  InProcessMeter& operator=(const InProcessMeter&) = delete;

  Meter& Device() { return meter_; }
  MeterPort& Port() { return port_; }

  void OnBytesFromHost(const std::string& bytes, uint32_t nowMs) override;
  void Tick(uint32_t nowMs) override;

 private:
  void FollowLineSpeed();

  fake::FakeSerialLine& line_;
  Meter meter_;
  MeterPort port_;
};

// The baud rate of a settings text such as "9600,n,8,1"; 0 when it names none.
int BaudOfSettings(std::string_view settings);

}  // namespace dpm::emulator
