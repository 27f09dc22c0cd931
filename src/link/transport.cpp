#include "link/transport.h"

#include <string>

#include "link/globals.h"
#include "platform/clock.h"
#include "platform/events.h"
#include "platform/faults.h"
#include "platform/numeric.h"
#include "platform/serial.h"
#include "platform/services.h"

namespace dpm {
namespace {

constexpr int kMaxPieces = 50;
constexpr double kPieceWaitSeconds = 0.5;
constexpr double kFirstByteWaitSeconds = 3.0;

SerialPort& Link() { return *Platform().meterLink; }
void ServeEvents() { Platform().events->Serve(); }

// Milliseconds the command spends on the line, with its line end.
int32_t CommandLineTimeMs() { return g.CharTime * static_cast<int32_t>(g.CommandText.size() + 1); }

bool IsReadingCommand() { return Mid(g.CommandText, 3, 1) == "B"; }

// A port that faulted is closed and marked lost: an unplugged adapter, a device that went
// away. Closing a dead device cannot fail in a way that matters here.
void LoseLine() {
  g.LinkLost = true;
  try {
    if (Link().PortOpen()) Link().SetPortOpen(false);
  } catch (const SerialFault&) {
  }
}

// Whether a command can go out. A lost port is opened again by the same name, so that an
// adapter plugged back in works on the next command. A port the settings never opened
// stays closed: the program was told to work without a meter.
bool LineUsable() {
  SerialPort& link = Link();
  if (link.PortOpen()) return true;
  if (!g.LinkLost) return false;
  try {
    link.SetPortOpen(true);
  } catch (const SerialFault&) {
    return false;
  }
  g.LinkLost = false;
  return true;
}

enum class PieceResult { Arrived, TimedOut };

// Waits for the next piece of the reply, at most half a second.
PieceResult WaitForPiece() {
  const float deadline = DeadlineAfter(kPieceWaitSeconds);
  do {
    if (DeadlinePassed(deadline)) return PieceResult::TimedOut;
    ServeEvents();
  } while (Link().InBufferCount() < 1);
  return PieceResult::Arrived;
}

bool WaitForFirstByte() {
  const float deadline = DeadlineAfter(CommandLineTimeMs() / 1000.0 + kFirstByteWaitSeconds);
  while (Link().InBufferCount() == 0) {
    if (DeadlinePassed(deadline)) return false;
    ServeEvents();
  }
  return true;
}

// Collects pieces until one holds the line end; the meter's echo of the command is taken
// off the front and the collecting starts again for the reply proper.
void CollectReply() {
  std::string collected;
  for (;;) {
    int pieces = 0;
    std::size_t lineEnd = std::string::npos;
    do {
      if (WaitForPiece() == PieceResult::TimedOut) {
        g.ErrFlag = kAnswerStopped;
        return;
      }
      g.ReplyText = Link().Input();
      collected += g.ReplyText;
      lineEnd = collected.find(CR);
      ++pieces;
    } while (lineEnd == std::string::npos && pieces != kMaxPieces);
    // Fifty pieces are too many even when the last one brought the line end.
    if (pieces == kMaxPieces) {
      g.ErrFlag = kNoLineEnd;
      return;
    }
    // The echo is assumed to stand at the front. A reply that came in the same piece as
    // its echo goes with it, and the wait for a further piece follows.
    if (collected.find(g.CommandText) != std::string::npos) {
      collected.erase(0, g.CommandText.size() + 1);
      continue;
    }
    g.ReplyText = collected.substr(0, lineEnd);
    return;
  }
}

// Replies are digit pairs, so a stray last character is dropped; a reading ("B"
// commands) keeps every character.
void DropOddCharacter() {
  if (!IsReadingCommand() && g.ReplyText.size() % 2 == 1) g.ReplyText.pop_back();
}

}  // namespace

float DeadlineAfter(double seconds) {
  float deadline = static_cast<float>(Platform().clock->SecondsSinceMidnight() + seconds);
  if (deadline > 86400.0f) deadline -= 86400.0f;
  return deadline;
}

// A deadline that wrapped past midnight stands far below the clock a few seconds before
// midnight; the 10000-second bound keeps it from passing at once.
bool DeadlinePassed(float deadline) {
  const float now = Platform().clock->SecondsSinceMidnight();
  return now > deadline && now - deadline < 10000.0f;
}

// Without a usable port the command goes nowhere, and the reply that follows finds the
// meter silent.
void SendCommand() {
  if (!LineUsable()) return;
  SerialPort& link = Link();
  try {
    link.SetRTSEnable(true);
    const int32_t holdMs = CommandLineTimeMs() + 3;
    link.Input();  // an old answer must not be taken for the new one
    DelayMs(100);
    link.Output(g.CommandText + CR);
    if (g.HalfDuplexFlag == 1) {
      DelayMs(holdMs);
      link.SetRTSEnable(false);
      DelayMs(8);
      link.Input();  // our own transmission, heard back on a two-wire line
    }
  } catch (const SerialFault&) {
    LoseLine();
  }
}

void ReceiveReply() {
  g.ErrFlag = kReplyOk;
  if (!Link().PortOpen()) {
    g.ErrFlag = kNoAnswer;
    return;
  }
  try {
    if (!WaitForFirstByte()) {
      g.ErrFlag = kNoAnswer;
      return;
    }
    CollectReply();
    if (g.ErrFlag != kReplyOk) return;
    DropOddCharacter();
    ServeEvents();
    if (g.ReplyText == g.CommandText) g.ErrFlag = kOnlyEcho;
  } catch (const SerialFault&) {
    // A port that fails mid-exchange fails the exchange as a silent meter does.
    LoseLine();
    g.ErrFlag = kNoAnswer;
  }
}

void DelayMs(int32_t ms) {
  Clock& clock = *Platform().clock;
  const uint32_t until = clock.Milliseconds() + static_cast<uint32_t>(ms);
  while (static_cast<int32_t>(until - clock.Milliseconds()) > 0) ServeEvents();
}

void DelayChars(int16_t characters) {
  const int16_t lineTime = ToInt16(static_cast<double>(characters) * g.CharTime);
  DelayMs(ToInt16(static_cast<double>(lineTime) + 100));
}

void SendBody(const std::string& body, bool withZ) {
  g.CommandText = "*" + g.MeterAddress + body;
  if (withZ && g.FirmwareRev > 8) g.CommandText += "Z";
  SendCommand();
}

void DelaySeconds(float seconds) {
  // Zero asks for the pause the baud rate needs; at 19200 baud it is negative, no pause.
  const double wait = seconds == 0.0f ? 0.55 - 0.1 * g.BaudIndex : seconds;
  const float deadline = DeadlineAfter(static_cast<float>(wait));
  while (!DeadlinePassed(deadline)) ServeEvents();
}

void FlushLink() {
  SerialPort& link = Link();
  try {
    link.SetHandshaking(0);
    // Without an open port there is nothing to drain.
    if (link.PortOpen()) {
      while (link.OutBufferCount() > 0) ServeEvents();
    }
  } catch (const SerialFault&) {
    LoseLine();  // what was queued for a vanished device is gone with it
  }
  DelayMs(200);
  if (link.PortOpen()) link.SetPortOpen(false);
}

}  // namespace dpm
