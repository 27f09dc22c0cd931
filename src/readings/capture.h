#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Capture of the meter's continuous output. Once a reading screen has switched the meter
// to continuous output, the meter sends records without being asked; the capture reads
// them off the line as the serial port reports data, frames them by the setup's record
// characters and hands them to the screen. It never waits and never polls: between two
// pieces of data it costs nothing.
//
// What reaches the screen follows the meter's own pace rules: the first record of a run is
// most likely cut and is never shown, and when several records have gathered by the time
// a piece of data is looked at, only the oldest whole one is used and the rest of that
// multiple is dropped, so that the screen never falls behind the meter.
namespace dpm {

class SerialPort;

// The record framing and the pause flag that the reading screens share.
struct ReadingState {
  std::string RecordStopChar;   // one character: what ends a record
  std::string RecordStartChar;  // one character, or empty when a lone start character ends the records
  int16_t ReadingPaused = 0;    // 1: everything that arrives is dropped
};
ReadingState& Readings();
void ResetReadings();

// The framing of the setup image in hand (g.SetupImage, g.FirmwareRev): records end in CR,
// or in LF when the high bit of the resolution byte is set; a meter with firmware that
// knows them may send configured start and stop characters instead. A stop character of
// code 0 leaves the start character to end the records, and no start character.
struct RecordChars {
  std::string stop;
  std::string start;
};
RecordChars RecordCharsOf(std::string_view image, int16_t firmwareRev);
// Puts the framing of the image in hand into Readings().
void SetRecordChars();

// What a reading screen does with the records.
class RecordConsumer {
 public:
  virtual ~RecordConsumer() = default;
  // The list's measuring record: the first whole record, which sizes the list's cells and
  // is not shown. `sample` is its text without the stop character.
  virtual void OnMeasuringRecord(std::string_view /*sample*/) {}
  // A record for the screen. The list gets it with its stop character; a chart gets it
  // cleaned for a number (see CleanRecord).
  virtual void OnRecord(std::string_view record) = 0;
};

// Stream states of a run.
inline constexpr int kStreamStart = 1;      // the first, probably cut, record is still to come
inline constexpr int kStreamMeasuring = 2;  // the list's measuring record is still to come
inline constexpr int kStreamRunning = 0;

class Capture {
 public:
  // A list keeps its records as text and measures the first; a chart (plot, graph) reads a
  // number from each.
  enum class Kind { List, Chart };

  Capture(SerialPort& line, RecordConsumer& consumer, Kind kind);
  ~Capture();
  Capture(const Capture&) = delete;
  Capture& operator=(const Capture&) = delete;

  // Starts a run: the pause is lifted, the framing taken from the image in hand, what is
  // waiting on the line thrown away, and from now on every piece of data is looked at.
  void Start();
  // Stops looking at the line; what arrives from now on stays in the port.
  void Stop();
  bool Running() const { return running_; }

  // A piece of data as the port delivers it. Start() makes the port's data notification
  // call this with what Input() returns; tests and benchmarks call it directly.
  void Feed(std::string_view bytes);

  // While a hold lasts the line is not read, as while a button's handler runs: what comes
  // meanwhile is read when the last hold ends.
  class Hold {
   public:
    explicit Hold(Capture& capture);
    ~Hold();
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

   private:
    Capture& capture_;
  };

  int StreamState() const { return state_; }
  const std::string& Buffer() const { return buffer_; }
  // Records of a chart that hold nothing a number could be read from (letters only, or
  // nothing at all): skipped rather than shown.
  uint64_t SkippedRecords() const { return skipped_; }

 private:
  void OnDataReady();
  void TakeRecord(std::size_t stopIndex);
  void StartTurn();

  SerialPort& line_;
  RecordConsumer& consumer_;
  Kind kind_;
  std::string buffer_;
  char stop_ = '\r';
  int state_ = kStreamStart;
  int holds_ = 0;
  bool running_ = false;
  bool reading_ = false;
  uint64_t skipped_ = 0;
};

// A record cleaned for its number: everything before the first blank, sign, point or
// digit taken off. Nothing when no such character is left.
std::optional<std::string_view> CleanRecord(std::string_view record);

// The number of a record: the longest numeric prefix of its cleaned text, blanks ignored,
// 0 when there is none. Nothing for a record that CleanRecord leaves nothing of.
std::optional<float> RecordNumber(std::string_view record);

}  // namespace dpm
