#include "cli/readings_csv.h"

#include "platform/faults.h"

namespace dpm::cli {
namespace {

std::string LineOf(const ListedReading& reading) {
  const std::string csv = ReadingsCsv({reading});
  return csv.substr(csv.find('\n') + 1);
}

}  // namespace

std::string CaptureCsv(const std::deque<ListedReading>& readings) {
  std::string csv = ReadingsCsv({});
  for (const ListedReading& reading : readings) {
    try {
      csv += LineOf(reading);
    } catch (const OverflowFault&) {
      std::string line = LineOf({reading.received, {}});  // time,"",
      std::string quoted;
      for (char c : reading.text) {
        if (c == '"') quoted += '"';
        quoted += c;
      }
      csv += line.insert(line.find('"') + 1, quoted);
    }
  }
  return csv;
}

}  // namespace dpm::cli
