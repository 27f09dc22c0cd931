#include <gtest/gtest.h>

#include <chrono>

#include "cli/readings_csv.h"

namespace dpm::testing {
namespace {

// Line noise can make a record whose number has an exponent past any float ("4d0500050");
// the capture keeps it, without a number, between the readings around it.
TEST(CaptureCsv, ARecordWhoseNumberOverflowsKeepsItsTextAndHasNoNumber) {
  const std::chrono::system_clock::time_point at{std::chrono::milliseconds(1'700'000'000'123)};
  const std::deque<ListedReading> readings = {
      {at, "+00051."}, {at, "+0004d0500050.\"x"}, {at + std::chrono::milliseconds(50), "OVER"}};
  EXPECT_EQ(cli::CaptureCsv(readings),
            "time,record,number\r\n"
            "2023-11-14T22:13:20.123Z,\"+00051.\",51\r\n"
            "2023-11-14T22:13:20.123Z,\"+0004d0500050.\"\"x\",\r\n"
            "2023-11-14T22:13:20.173Z,\"OVER\",\r\n");
}

}  // namespace
}  // namespace dpm::testing
