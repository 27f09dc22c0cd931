#include "emulator/in_process_meter.h"

namespace dpm::emulator {
namespace {

uint64_t Microseconds(uint32_t ms) { return uint64_t{ms} * 1000; }

}  // namespace

int BaudOfSettings(std::string_view settings) {
  int baud = 0;
  for (char c : settings) {
    if (c < '0' || c > '9') break;
    baud = baud * 10 + (c - '0');
    if (baud > 10'000'000) return 0;
  }
  return baud;
}

InProcessMeter::InProcessMeter(fake::FakeSerialLine& line, MeterOptions options, std::string_view image,
                               PortOptions port)
    : line_(line), meter_(std::move(options), image), port_(meter_, port) {
  line_.SetPeer(this);
}

InProcessMeter::~InProcessMeter() { line_.SetPeer(nullptr); }

void InProcessMeter::FollowLineSpeed() { port_.Options().baud = BaudOfSettings(line_.Settings()); }

void InProcessMeter::OnBytesFromHost(const std::string& bytes, uint32_t nowMs) {
  FollowLineSpeed();
  port_.FromHost(bytes, Microseconds(nowMs));
}

void InProcessMeter::Tick(uint32_t nowMs) {
  FollowLineSpeed();
  const std::string arrived = port_.Poll(Microseconds(nowMs));
  if (!arrived.empty()) line_.Arrive(arrived);
}

}  // namespace dpm::emulator
