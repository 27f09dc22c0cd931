#include "emulator/meter_port.h"

#include <algorithm>
#include <cstdio>

namespace dpm::emulator {
namespace {

constexpr uint64_t kBitsPerCharacter = 10;
constexpr uint64_t kMicrosecondsPerSecond = 1'000'000;
// A command line longer than this is noise: the oldest part of it is forgotten.
constexpr std::size_t kLongestLine = 256;
constexpr uint64_t kBabblePeriodUs = 20'000;
constexpr std::size_t kBabbleLength = 8;
// Even at line rate with no pacing, records leave at most once a millisecond.
constexpr uint64_t kShortestRecordGapUs = 1'000;

uint64_t Ms(uint32_t ms) { return uint64_t{ms} * 1000; }

}  // namespace

std::string Printable(std::string_view text) {
  std::string shown;
  for (char c : text) {
    if (c == '\r') {
      shown += "<CR>";
    } else if (c == '\n') {
      shown += "<LF>";
    } else if (static_cast<unsigned char>(c) < 32 || static_cast<unsigned char>(c) > 126) {
      char code[8];
      std::snprintf(code, sizeof code, "<%02X>", static_cast<unsigned>(static_cast<unsigned char>(c)));
      shown += code;
    } else {
      shown += c;
    }
  }
  return shown;
}

MeterPort::MeterPort(Meter& meter, PortOptions options) : meter_(meter), options_(options) {}

uint64_t MeterPort::CharactersTimeUs(uint64_t characters) const {
  if (options_.baud <= 0) return 0;
  return characters * kBitsPerCharacter * kMicrosecondsPerSecond / static_cast<uint64_t>(options_.baud);
}

void MeterPort::FromHost(std::string_view bytes, uint64_t nowUs) {
  const uint64_t begin = std::max(nowUs, hostLineFreeUs_);
  for (std::size_t k = 0; k < bytes.size(); ++k) {
    const Timed timed{begin + CharactersTimeUs(k + 1), bytes[k]};
    incoming_.push_back(timed);
    if (options_.twoWire) HearBack(timed);
  }
  hostLineFreeUs_ = begin + CharactersTimeUs(bytes.size());
}

// On a two-wire line the host's receiver sees every character the host puts on it.
void MeterPort::HearBack(const Timed& timed) {
  const auto later = std::upper_bound(outgoing_.begin(), outgoing_.end(), timed.atUs,
                                      [](uint64_t at, const Timed& t) { return at < t.atUs; });
  outgoing_.insert(later, timed);
}

std::string MeterPort::Poll(uint64_t nowUs) {
  if (!options_.babble)
    nextBabbleUs_.reset();
  else if (!nextBabbleUs_)
    nextBabbleUs_ = nowUs;
  if (!meter_.Streaming())
    nextRecordUs_.reset();
  else if (!nextRecordUs_)
    nextRecordUs_ = nowUs;

  // What happens before `nowUs` happens in its own order, so that a reply and a record
  // share the line as they would.
  uint64_t atUs = 0;
  for (Due due = NextDue(nowUs, atUs); due != Due::None; due = NextDue(nowUs, atUs)) {
    switch (due) {
      case Due::Incoming:
        Hear(incoming_.front().c, atUs);
        incoming_.pop_front();
        break;
      case Due::Record:
        SendRecord(atUs);
        break;
      case Due::Babble:
        SendBabble(atUs);
        break;
      case Due::None:
        break;
    }
  }
  std::string arrived;
  while (!outgoing_.empty() && outgoing_.front().atUs <= nowUs) {
    arrived += outgoing_.front().c;
    outgoing_.pop_front();
  }
  return arrived;
}

MeterPort::Due MeterPort::NextDue(uint64_t nowUs, uint64_t& atUs) const {
  Due due = Due::None;
  atUs = nowUs;
  const auto consider = [&](std::optional<uint64_t> at, Due what) {
    if (at && *at <= atUs && (due == Due::None || *at < atUs)) {
      atUs = *at;
      due = what;
    }
  };
  if (!incoming_.empty()) consider(incoming_.front().atUs, Due::Incoming);
  if (meter_.Streaming()) consider(nextRecordUs_, Due::Record);
  if (options_.babble) consider(nextBabbleUs_, Due::Babble);
  return due;
}

std::optional<uint64_t> MeterPort::NextDueUs() const {
  std::optional<uint64_t> next;
  const auto consider = [&](std::optional<uint64_t> at) {
    if (at && (!next || *at < *next)) next = at;
  };
  if (!incoming_.empty()) consider(incoming_.front().atUs);
  if (!outgoing_.empty()) consider(outgoing_.front().atUs);
  if (meter_.Streaming()) consider(nextRecordUs_);
  if (options_.babble) consider(nextBabbleUs_);
  return next;
}

void MeterPort::Hear(char c, uint64_t atUs) {
  if (c != '\r') {
    heard_ += c;
    if (heard_.size() > kLongestLine) heard_.erase(0, heard_.size() - kLongestLine);
    return;
  }
  const std::string line = std::move(heard_);
  heard_.clear();
  Command(line, atUs);
}

void MeterPort::Command(const std::string& line, uint64_t atUs) {
  const bool wasStreaming = meter_.Streaming();
  const Meter::Answer answer = meter_.Execute(line);
  LogCommand(line, answer);
  if (answer.status != Meter::Answer::Status::Done) return;
  if (options_.echo) {
    Send(line + '\r', atUs);
    if (!options_.silent) Log("-> " + Printable(line + '\r') + "   (echo)");
  }
  if (!answer.reply.empty()) {
    Send(answer.reply, std::max(atUs, meterLineFreeUs_) + Ms(options_.latencyMs));
    if (!options_.silent) Log("-> " + Printable(answer.reply));
  }
  if (!wasStreaming && meter_.Streaming()) {
    nextRecordUs_ = std::max(atUs, meterLineFreeUs_) + Ms(options_.latencyMs);
    const uint64_t interval = RecordIntervalUs();
    Log(interval == 0 ? "continuous output on, records back to back"
                      : "continuous output on, a record every " + std::to_string(interval / 1000) + " ms");
  } else if (wasStreaming && !meter_.Streaming()) {
    nextRecordUs_.reset();
    Log("continuous output off");
  }
}

void MeterPort::LogCommand(const std::string& line, const Meter::Answer& answer) {
  std::string text = "<- " + Printable(line + '\r');
  switch (answer.status) {
    case Meter::Answer::Status::NotForMe:
      text += "   (for another address, ignored)";
      break;
    case Meter::Answer::Status::Garbage:
      text += "   (not understood, ignored)";
      break;
    case Meter::Answer::Status::Done:
      if (options_.silent) text += "   (silent: no answer)";
      break;
  }
  Log(text);
}

uint64_t MeterPort::RecordIntervalUs() const {
  if (!options_.recordRate) return Ms(meter_.RecordIntervalMs());
  if (*options_.recordRate <= 0.0) return 0;
  return static_cast<uint64_t>(kMicrosecondsPerSecond / *options_.recordRate);
}

void MeterPort::SendRecord(uint64_t atUs) {
  const std::string record = meter_.NextRecord();
  const uint64_t through = Send(record, atUs);
  if (options_.logRecords && !options_.silent) Log("-> " + Printable(record) + "   (record)");
  const uint64_t interval = RecordIntervalUs();
  nextRecordUs_ = std::max({atUs + interval, through, atUs + kShortestRecordGapUs});
}

void MeterPort::SendBabble(uint64_t atUs) {
  std::uniform_int_distribution<int> printable('!', '~');
  std::string garbage;
  while (garbage.size() < kBabbleLength) {
    const char c = static_cast<char>(printable(random_));
    if (c != '*') garbage += c;
  }
  Send(garbage, atUs);
  nextBabbleUs_ = atUs + kBabblePeriodUs;
}

uint64_t MeterPort::Send(const std::string& text, uint64_t startUs) {
  const uint64_t begin = std::max(startUs, meterLineFreeUs_);
  if (!options_.silent) {
    for (std::size_t k = 0; k < text.size(); ++k) outgoing_.push_back({begin + CharactersTimeUs(k + 1), text[k]});
  }
  meterLineFreeUs_ = begin + CharactersTimeUs(text.size());
  return meterLineFreeUs_;
}

void MeterPort::Log(const std::string& line) const {
  if (logger_) logger_(line);
}

}  // namespace dpm::emulator
