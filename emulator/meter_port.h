#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include "emulator/meter.h"

// The meter's end of the serial line, in time: bytes from the host reach the meter one
// character time apart, a command is carried out when its CR is in, and everything the
// meter says (echo, reply, records of the continuous output, garbage) leaves it one
// character time apart, so the host sees it arrive as on a real line. Times are in
// microseconds on any clock that only moves forward.
namespace dpm::emulator {

struct PortOptions {
  bool echo = false;  // the command and its CR come back before the reply
  // From the end of a command to the first character of the answer. Long enough for a
  // host on a two-wire line to turn its line round before the answer comes.
  uint32_t latencyMs = 20;
  int baud = 9600;       // characters of 10 bits (start, 8 data, stop); 0 carries them at once
  bool silent = false;   // the meter sends nothing; what it hears still takes effect
  bool babble = false;   // a burst of garbage every few milliseconds, besides the answers
  bool twoWire = false;  // a half-duplex line: the host hears its own characters as it sends them
  // Records a second of the continuous output: nothing for the pace the setup's output rate
  // gives, 0 for back to back, as fast as the line carries them.
  std::optional<double> recordRate{};
  bool logRecords = false;  // one log line for each record sent
};

class MeterPort {
 public:
  using Logger = std::function<void(const std::string& line)>;

  explicit MeterPort(Meter& meter, PortOptions options = {});

  PortOptions& Options() { return options_; }
  const PortOptions& Options() const { return options_; }
  Meter& Device() { return meter_; }
  // One line for each command heard and each answer given, and for the stream going on and off.
  void SetLogger(Logger logger) { logger_ = std::move(logger); }

  // Bytes the host put on the line at `nowUs`.
  void FromHost(std::string_view bytes, uint64_t nowUs);
  // Lets the meter act up to `nowUs` and returns what has reached the host by then.
  std::string Poll(uint64_t nowUs);
  // The next time Poll has something to do, if any.
  std::optional<uint64_t> NextDueUs() const;

  // Microseconds from the start of a character to the end of the k-th one after it.
  uint64_t CharactersTimeUs(uint64_t characters) const;

 private:
  struct Timed {
    uint64_t atUs;
    char c;
  };
  enum class Due { None, Incoming, Record, Babble };
  Due NextDue(uint64_t nowUs, uint64_t& atUs) const;
  void Hear(char c, uint64_t atUs);
  void HearBack(const Timed& timed);
  void Command(const std::string& line, uint64_t atUs);
  void LogCommand(const std::string& line, const Meter::Answer& answer);
  uint64_t RecordIntervalUs() const;
  void SendRecord(uint64_t atUs);
  void SendBabble(uint64_t atUs);
  // Queues the text to leave the meter no earlier than `startUs`; returns when it is through.
  uint64_t Send(const std::string& text, uint64_t startUs);
  void Log(const std::string& line) const;

  Meter& meter_;
  PortOptions options_;
  Logger logger_;
  std::deque<Timed> incoming_;
  std::deque<Timed> outgoing_;
  uint64_t hostLineFreeUs_ = 0;
  uint64_t meterLineFreeUs_ = 0;
  std::string heard_;
  std::optional<uint64_t> nextRecordUs_;
  std::optional<uint64_t> nextBabbleUs_;
  std::mt19937 random_{7};
};

// The text with its control characters spelled out, as "*1G130<CR>".
std::string Printable(std::string_view text);

}  // namespace dpm::emulator
