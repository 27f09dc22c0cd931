// The capture's framing on any stream a meter might send: the setup's record characters
// (from the first bytes), then pieces of data as the port would deliver them, with the
// pause switched on and off between them. A list's record must end with the stop
// character, a chart's must hold something a number is read from, and either must go
// into dpm-cli's CSV.
//
// Input: byte 0 the display byte's framing bits and the kind of screen, byte 1 the stop
// character, byte 2 the start character, then pieces split at "|"; a piece whose first
// byte is "P" toggles the pause before the rest of it arrives.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

#include "cli/readings_csv.h"
#include "link/globals.h"
#include "platform/fake/fake_serial_line.h"
#include "platform/fake/virtual_time.h"
#include "readings/capture.h"

namespace {

class Checker : public dpm::RecordConsumer {
 public:
  explicit Checker(bool list) : list_(list) {}
  void OnRecord(std::string_view record) override {
    if (list_ && (record.empty() || record.back() != dpm::Readings().RecordStopChar[0])) __builtin_trap();
    if (!list_ && !dpm::CleanRecord(record)) __builtin_trap();
    // dpm-cli's CSV takes any record.
    readings_.push_back({{}, std::string(record)});
    dpm::cli::CaptureCsv(readings_);
    readings_.clear();
  }

 private:
  bool list_;
  std::deque<dpm::ListedReading> readings_;
};

std::string Hex(uint8_t byte) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  return {kDigits[byte >> 4], kDigits[byte & 15]};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  if (size < 3) return 0;
  dpm::ResetGlobals();
  dpm::ResetReadings();
  // Revision 4 and a setup image whose display byte and custom characters come from the input.
  std::string image(128, '0');
  image.replace(52, 2, Hex(data[0] & 0x90));
  image.replace(120, 2, "04");
  image.replace(124, 4, Hex(data[1]) + Hex(data[2]));
  dpm::g.SetupImage = image;
  dpm::g.FirmwareRev = 4;
  const bool list = (data[0] & 1) == 0;

  const std::string_view stream(reinterpret_cast<const char*>(data + 3), size - 3);
  dpm::fake::VirtualTime time;
  dpm::fake::FakeSerialLine line(time);
  line.SetPortOpen(true);
  Checker checker(list);
  dpm::Capture capture(line, checker, list ? dpm::Capture::Kind::List : dpm::Capture::Kind::Chart);
  capture.Start();
  for (std::size_t start = 0; start <= stream.size();) {
    const std::size_t bar = std::min(stream.find('|', start), stream.size());
    std::string_view piece = stream.substr(start, bar - start);
    if (!piece.empty() && piece.front() == 'P') {
      dpm::Readings().ReadingPaused = static_cast<int16_t>(1 - dpm::Readings().ReadingPaused);
      piece.remove_prefix(1);
    }
    capture.Feed(piece);
    start = bar + 1;
  }
  capture.Stop();
  return 0;
}
