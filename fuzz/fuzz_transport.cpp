// The reply collector on any bytes a line might bring, in any pieces at any times: one
// command goes out on the in-memory line in virtual time, the bytes arrive as the input
// says, and the reply is collected. Every outcome must be one of the collector's own.
//
// Input: the first byte picks the command and the line discipline; the rest is split at
// "|" into pieces, each a delay byte (its low six bits times 10 ms after the piece before)
// and the bytes that then arrive.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "link/globals.h"
#include "link/transport.h"
#include "platform/fake/fake_serial_line.h"
#include "platform/fake/virtual_time.h"
#include "platform/services.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  static constexpr const char* kCommands[] = {"*1XU1D", "*1B1", "*1G130", "*1R17F"};

  dpm::fake::VirtualTime time{1000, 3600.0};
  dpm::fake::FakeSerialLine line(time);
  dpm::ResetGlobals();
  dpm::Platform() = dpm::Services{&time, &time, &line};
  dpm::g.BaudIndex = 5;
  dpm::g.CharTime = 1;
  dpm::g.MeterAddress = "1";
  dpm::g.HalfDuplexFlag = static_cast<int16_t>((data[0] >> 2) & 1);
  line.SetPortOpen(true);

  dpm::g.CommandText = kCommands[data[0] & 3];
  dpm::SendCommand();
  const std::string_view rest(reinterpret_cast<const char*>(data + 1), size - 1);
  uint32_t at = 0;
  for (std::size_t start = 0; start < rest.size();) {
    const std::size_t bar = std::min(rest.find('|', start), rest.size());
    const std::string_view piece = rest.substr(start, bar - start);
    if (!piece.empty()) {
      at += (static_cast<uint8_t>(piece[0]) & 63u) * 10u;
      if (piece.size() > 1) line.ArriveAfter(at, std::string(piece.substr(1)));
    }
    start = bar + 1;
  }
  const uint32_t started = time.Elapsed();
  dpm::ReceiveReply();

  const int16_t flag = dpm::g.ErrFlag;
  const bool known = flag == dpm::kReplyOk || flag == dpm::kNoAnswer || flag == dpm::kAnswerStopped ||
                     flag == dpm::kOnlyEcho || flag == dpm::kNoLineEnd;
  // An accepted reply stops short of its line end.
  if (!known || (flag == dpm::kReplyOk && dpm::g.ReplyText.find(dpm::CR) != std::string::npos)) __builtin_trap();
  // However the pieces come, the wait ends: nothing is waited for longer than the first
  // byte's three seconds and a bit after the last piece has come.
  if (time.Elapsed() - started > at + 3200) __builtin_trap();
  dpm::Platform() = dpm::Services{};
  return 0;
}
