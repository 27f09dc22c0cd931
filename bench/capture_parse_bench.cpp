// Frames records out of a byte stream and reads their numbers, as plot and graph do, on
// one core: records a second through the capture, and through the number alone.
//
//   bench_capture_parse [records]

#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "link/globals.h"
#include "platform/fake/fake_serial_line.h"
#include "platform/fake/virtual_time.h"
#include "platform/services.h"
#include "readings/capture.h"

namespace {

class Summing : public dpm::RecordConsumer {
 public:
  void OnRecord(std::string_view record) override {
    if (const auto number = dpm::RecordNumber(record)) sum += *number;
    ++count;
  }
  double sum = 0;
  long count = 0;
};

double Seconds(std::chrono::steady_clock::time_point since) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count();
}

}  // namespace

int main(int argc, char** argv) {
  const long records = argc > 1 ? std::stol(argv[1]) : 2'000'000;
  // Pieces as a port delivers them at speed: each holds a record, some a record and a half.
  std::vector<std::string> pieces;
  for (int k = 0; k < 1000; ++k) {
    char text[32];
    std::snprintf(text, sizeof text, "%+06d.%d\r", (k * 7919) % 200000 - 100000, k % 10);
    pieces.emplace_back(text);
  }

  dpm::fake::VirtualTime time;
  dpm::fake::FakeSerialLine line(time);
  line.SetPortOpen(true);
  dpm::g.SetupImage = std::string(128, '0');
  Summing consumer;
  dpm::Capture capture(line, consumer, dpm::Capture::Kind::Chart);
  capture.Start();

  auto start = std::chrono::steady_clock::now();
  for (long i = 0; i < records; ++i) capture.Feed(pieces[static_cast<std::size_t>(i % 1000)]);
  const double framed = Seconds(start);
  std::printf("framing and number: %ld records in %.3f s, %.2f million records/s (sum %.1f)\n", consumer.count, framed,
              consumer.count / framed / 1e6, consumer.sum);

  start = std::chrono::steady_clock::now();
  double sum = 0;
  for (long i = 0; i < records; ++i) {
    const std::string& piece = pieces[static_cast<std::size_t>(i % 1000)];
    sum += dpm::RecordNumber(std::string_view(piece).substr(0, piece.size() - 1)).value_or(0.0f);
  }
  const double parsed = Seconds(start);
  std::printf("number alone:       %ld records in %.3f s, %.2f million records/s (sum %.1f)\n", records, parsed,
              records / parsed / 1e6, sum);
  return 0;
}
