#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "platform/fake/virtual_time.h"
#include "platform/serial.h"

namespace dpm::fake {

// What sits at the far end of the in-memory line: it hears what the program sends and
// may answer through FakeSerialLine::ArriveAt / Arrive.
class SerialPeer {
 public:
  virtual ~SerialPeer() = default;
  virtual void OnBytesFromHost(const std::string& bytes, uint32_t nowMs) = 0;
  virtual void Tick(uint32_t /*nowMs*/) {}
};

// An in-memory serial line in virtual time. The test scripts the far end (bytes that
// arrive at given times, or a peer such as the in-process meter) and reads back a
// transcript of everything the program did to the line.
class FakeSerialLine : public SerialPort {
 public:
  enum class Kind { Open, Close, Settings, RtsOn, RtsOff, DtrOn, DtrOff, Sent, Discarded };
  struct Event {
    uint32_t atMs;  // virtual milliseconds since the clock's start
    Kind kind;
    std::string text;
    bool operator==(const Event&) const = default;
  };
  struct Command {
    uint32_t atMs;
    std::string text;  // without the line end
    bool operator==(const Command&) const = default;
  };

  explicit FakeSerialLine(VirtualTime& time);

  // The far end.
  void ArriveAt(uint32_t elapsedMs, std::string bytes);   // at a virtual time since start
  void ArriveAfter(uint32_t delayMs, std::string bytes);  // so long from now
  void Arrive(std::string bytes);                         // at once
  void SetPeer(SerialPeer* peer) { peer_ = peer; }
  // The next property access raises a fault of the serial control, as an unplugged adapter would.
  void FailFromNowOn(bool fail) { failing_ = fail; }
  // Sent bytes leave the output queue at this pace (0: at once), as OutBufferCount tells.
  void SetOutputPace(uint32_t msPerByte) { outputMsPerByte_ = msPerByte; }

  // What the program did.
  const std::vector<Event>& Transcript() const { return transcript_; }
  std::vector<Command> SentCommands() const;
  void ClearTranscript() { transcript_.clear(); }

  // SerialPort
  void SetCommPort(int number) override;
  int CommPort() const override { return commPort_; }
  void SetSettings(const std::string& settings) override;
  std::string Settings() const override { return settings_; }
  void SetPortOpen(bool open) override;
  bool PortOpen() const override { return open_; }
  void SetRTSEnable(bool on) override;
  bool RTSEnable() const override { return rts_; }
  void SetDTREnable(bool on) override;
  bool DTREnable() const override { return dtr_; }
  void SetHandshaking(int mode) override { handshaking_ = mode; }
  int Handshaking() const { return handshaking_; }
  int InBufferCount() override;
  int OutBufferCount() override;
  std::string Input() override;
  void Output(const std::string& bytes) override;
  // Called when bytes arrive: a scripted arrival falling due, a peer's answer, Arrive().
  void SetDataReadyHandler(std::function<void()> handler) override { dataReady_ = std::move(handler); }

 private:
  struct Arrival {
    uint32_t atMs;
    std::string bytes;
  };
  void Tick(uint32_t nowMs);
  void Record(Kind kind, std::string text = {});
  void Received(const std::string& bytes);
  void CheckFault(const char* operation) const;

  VirtualTime& time_;
  SerialPeer* peer_ = nullptr;
  std::function<void()> dataReady_;
  std::vector<Event> transcript_;
  std::deque<Arrival> pending_;
  std::string received_;
  std::string settings_ = "9600,n,8,1";
  int commPort_ = 1;
  int handshaking_ = 0;
  bool open_ = false;
  bool rts_ = false;
  bool dtr_ = false;
  bool failing_ = false;
  uint32_t outputMsPerByte_ = 0;
  uint32_t outputDoneAtMs_ = 0;
};

}  // namespace dpm::fake
