#include "platform/fake/fake_serial_line.h"

#include <algorithm>

#include "platform/faults.h"

namespace dpm::fake {

FakeSerialLine::FakeSerialLine(VirtualTime& time) : time_(time) {
  time_.AddTicker([this](uint32_t nowMs) { Tick(nowMs); });
}

void FakeSerialLine::ArriveAt(uint32_t elapsedMs, std::string bytes) {
  Arrival arrival{elapsedMs, std::move(bytes)};
  auto later = std::upper_bound(pending_.begin(), pending_.end(), arrival.atMs,
                                [](uint32_t at, const Arrival& a) { return at < a.atMs; });
  pending_.insert(later, std::move(arrival));
}

void FakeSerialLine::ArriveAfter(uint32_t delayMs, std::string bytes) {
  ArriveAt(time_.Elapsed() + delayMs, std::move(bytes));
}

void FakeSerialLine::Arrive(std::string bytes) { Received(bytes); }

void FakeSerialLine::Received(const std::string& bytes) {
  if (bytes.empty()) return;
  received_ += bytes;
  if (dataReady_) {
    // The handler may replace itself; it runs to its end all the same.
    const std::function<void()> handler = dataReady_;
    handler();
  }
}

std::vector<FakeSerialLine::Command> FakeSerialLine::SentCommands() const {
  std::vector<Command> commands;
  for (const auto& e : transcript_) {
    if (e.kind != Kind::Sent) continue;
    std::string text = e.text;
    if (!text.empty() && text.back() == '\r') text.pop_back();
    commands.push_back({e.atMs, text});
  }
  return commands;
}

void FakeSerialLine::SetCommPort(int number) {
  if (open_) throw SerialFault("Port already open");
  commPort_ = number;
}

void FakeSerialLine::SetSettings(const std::string& settings) {
  CheckFault("Settings");
  if (settings.empty() || settings.front() == ',') throw SerialFault("Invalid port settings \"" + settings + "\"");
  settings_ = settings;
  Record(Kind::Settings, settings);
}

void FakeSerialLine::SetPortOpen(bool open) {
  // Closing always works, also on a device that has gone away.
  if (open) CheckFault("PortOpen");
  if (open == open_) {
    if (open) throw SerialFault("Port already open");
    return;
  }
  open_ = open;
  Record(open ? Kind::Open : Kind::Close, "COM" + std::to_string(commPort_));
}

void FakeSerialLine::SetRTSEnable(bool on) {
  rts_ = on;
  if (open_) Record(on ? Kind::RtsOn : Kind::RtsOff);
}

void FakeSerialLine::SetDTREnable(bool on) {
  dtr_ = on;
  if (open_) Record(on ? Kind::DtrOn : Kind::DtrOff);
}

int FakeSerialLine::InBufferCount() {
  CheckFault("InBufferCount");
  return static_cast<int>(received_.size());
}

int FakeSerialLine::OutBufferCount() {
  CheckFault("OutBufferCount");
  if (outputMsPerByte_ == 0 || outputDoneAtMs_ <= time_.Elapsed()) return 0;
  return static_cast<int>((outputDoneAtMs_ - time_.Elapsed() + outputMsPerByte_ - 1) / outputMsPerByte_);
}

std::string FakeSerialLine::Input() {
  CheckFault("Input");
  std::string bytes;
  bytes.swap(received_);
  if (!bytes.empty()) Record(Kind::Discarded, bytes);
  return bytes;
}

void FakeSerialLine::Output(const std::string& bytes) {
  CheckFault("Output");
  const uint32_t start = std::max(outputDoneAtMs_, time_.Elapsed());
  outputDoneAtMs_ = start + outputMsPerByte_ * static_cast<uint32_t>(bytes.size());
  Record(Kind::Sent, bytes);
  if (peer_) peer_->OnBytesFromHost(bytes, time_.Milliseconds());
}

void FakeSerialLine::Tick(uint32_t nowMs) {
  std::string due;
  while (!pending_.empty() && pending_.front().atMs <= time_.Elapsed()) {
    due += pending_.front().bytes;
    pending_.pop_front();
  }
  Received(due);
  if (peer_) peer_->Tick(nowMs);
}

void FakeSerialLine::Record(Kind kind, std::string text) {
  transcript_.push_back({time_.Elapsed(), kind, std::move(text)});
}

void FakeSerialLine::CheckFault(const char* operation) const {
  if (failing_) throw SerialFault(std::string("The serial device stopped responding (") + operation + ")");
  if (!open_ && std::string_view(operation) != "PortOpen" && std::string_view(operation) != "Settings")
    throw SerialFault(std::string("Operation not valid while the port is closed (") + operation + ")");
}

}  // namespace dpm::fake
