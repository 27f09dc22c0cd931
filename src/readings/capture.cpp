#include "readings/capture.h"

#include <cmath>
#include <limits>

#include "link/globals.h"
#include "platform/faults.h"
#include "platform/numeric.h"
#include "platform/serial.h"
#include "setup/image_positions.h"

namespace dpm {
namespace {

ReadingState readings;

// What may stand in front of a reading's number: a blank, a sign, a point, a digit.
// Anything else (a start character, units, a status letter) is taken off the front.
bool MayLeadNumber(char c) {
  const auto code = static_cast<unsigned char>(c);
  if (code == ' ') return true;
  if (code < '+' || code > '9') return false;
  return c != ',' && c != '/';
}

}  // namespace

ReadingState& Readings() { return readings; }

void ResetReadings() { readings = ReadingState{}; }

RecordChars RecordCharsOf(std::string_view image, int16_t firmwareRev) {
  const auto byteAt = [image](int position) -> int {
    if (static_cast<std::size_t>(position + 1) > image.size()) return 0;
    return HexDigitValue(image[static_cast<std::size_t>(position - 1)]) * 16 +
           HexDigitValue(image[static_cast<std::size_t>(position)]);
  };
  const int display = byteAt(kDisplayByte);
  RecordChars chars{std::string(1, (display & 0x80) == 0 ? '\r' : '\n'), std::string(1, '\0')};
  const bool tranChars = (display & 0x10) != 0;
  if (firmwareRev > 0 && tranChars) {
    chars.stop = std::string(1, static_cast<char>(byteAt(kStopChar)));
    chars.start = std::string(1, static_cast<char>(byteAt(kStartChar)));
    if (chars.stop[0] == '\0') {
      chars.stop = chars.start;
      chars.start.clear();
    }
  }
  return chars;
}

void SetRecordChars() {
  const RecordChars chars = RecordCharsOf(g.SetupImage, g.FirmwareRev);
  readings.RecordStopChar = chars.stop;
  readings.RecordStartChar = chars.start;
}

Capture::Capture(SerialPort& line, RecordConsumer& consumer, Kind kind)
    : line_(line), consumer_(consumer), kind_(kind) {}

Capture::~Capture() { Stop(); }

void Capture::Start() {
  readings.ReadingPaused = 0;
  SetRecordChars();
  stop_ = readings.RecordStopChar[0];
  state_ = kStreamStart;
  line_.Input();
  buffer_.clear();
  running_ = true;
  line_.SetDataReadyHandler([this] { OnDataReady(); });
}

void Capture::Stop() {
  if (!running_) return;
  running_ = false;
  line_.SetDataReadyHandler({});
}

Capture::Hold::Hold(Capture& capture) : capture_(capture) { ++capture_.holds_; }

Capture::Hold::~Hold() {
  if (--capture_.holds_ != 0 || !capture_.running_) return;
  // What came while the hold lasted raised its notification in vain: look now. A port
  // that failed meanwhile is the next command's business.
  try {
    if (capture_.line_.PortOpen() && capture_.line_.InBufferCount() > 0) capture_.OnDataReady();
  } catch (const SerialFault&) {
  }
}

void Capture::OnDataReady() {
  // The port may report data again while it is being read; one reader is enough.
  if (!running_ || holds_ > 0 || reading_) return;
  reading_ = true;
  std::string bytes;
  try {
    if (line_.PortOpen()) bytes = line_.Input();
  } catch (const SerialFault&) {
    // A port that failed delivers nothing more: the screen stays, as with a silent meter,
    // and the next command finds the line lost.
    Stop();
  }
  reading_ = false;
  if (!bytes.empty()) Feed(bytes);
}

void Capture::StartTurn() {
  if (readings.ReadingPaused == 1) {
    if (running_ && line_.PortOpen()) line_.Input();
    buffer_.clear();
  }
}

// One piece of data is one look for a record: a piece without a stop character only
// waits in the buffer, and a piece that brings several records still gives just one.
void Capture::Feed(std::string_view bytes) {
  buffer_.append(bytes);
  const std::size_t stopIndex = buffer_.find(stop_);
  if (stopIndex == std::string::npos) return;
  TakeRecord(stopIndex);
  StartTurn();
}

void Capture::TakeRecord(std::size_t stopIndex) {
  const std::size_t p = stopIndex + 1;
  if (state_ == kStreamStart) {
    buffer_.erase(0, p);
    state_ = kind_ == Kind::List ? kStreamMeasuring : kStreamRunning;
    return;
  }
  // Records are taken to be as long as the first one in the buffer; the newer ones of the
  // same multiple go with it.
  const std::size_t kept = (buffer_.size() / p) * p;
  if (state_ == kStreamMeasuring) {
    const std::string sample = buffer_.substr(0, p - 1);
    buffer_.erase(0, kept);
    state_ = kStreamRunning;
    consumer_.OnMeasuringRecord(sample);
    return;
  }
  const std::string record = buffer_.substr(0, kind_ == Kind::List ? p : p - 1);
  buffer_.erase(0, kept);
  if (readings.ReadingPaused == 1) return;
  if (kind_ == Kind::List) {
    consumer_.OnRecord(record);
    return;
  }
  const std::optional<std::string_view> cleaned = CleanRecord(record);
  if (!cleaned) {
    ++skipped_;
    return;
  }
  consumer_.OnRecord(*cleaned);
}

std::optional<std::string_view> CleanRecord(std::string_view record) {
  std::size_t first = 0;
  while (first < record.size() && !MayLeadNumber(record[first])) ++first;
  if (first == record.size()) return std::nullopt;
  return record.substr(first);
}

// A record garbled on the line can spell a number no reading has ("+0004d0500050." reads
// as 4 x 10^500050): it counts as a record without a number, not as a fault.
std::optional<float> RecordNumber(std::string_view record) {
  const std::optional<std::string_view> cleaned = CleanRecord(record);
  if (!cleaned) return std::nullopt;
  double value = 0.0;
  try {
    value = LeadingNumber(*cleaned);
  } catch (const OverflowFault&) {
    return std::nullopt;
  }
  if (!std::isfinite(value) || std::fabs(value) > std::numeric_limits<float>::max()) return std::nullopt;
  return static_cast<float>(value);
}

}  // namespace dpm
