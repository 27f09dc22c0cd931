#pragma once

#include <gtest/gtest.h>

#include "link/globals.h"
#include "platform/fake/fake_serial_line.h"
#include "platform/fake/virtual_time.h"
#include "platform/services.h"

namespace dpm::testing {

// A program in its start-up state on an open in-memory line at 9600 baud, address "1",
// in virtual time.
class LinkTest : public ::testing::Test {
 protected:
  LinkTest() : line(time) {
    ResetGlobals();
    Platform() = Services{&time, &time, &line};
    g.BaudIndex = 5;
    g.CharTime = 1;
    g.MeterAddress = "1";
    g.SetupImage = std::string(128, '0');
    line.SetPortOpen(true);
    line.ClearTranscript();
  }
  ~LinkTest() override { Platform() = Services{}; }

  // At one in the morning a float time of day resolves well below a millisecond; at noon
  // its steps are about 4 ms, which would blur the exact timings the tests check.
  fake::VirtualTime time{1000, 3600.0};
  fake::FakeSerialLine line;
};

}  // namespace dpm::testing
