#pragma once

#include <string>
#include <vector>

#include "forms/forms_fixture.h"
#include "panelmenu/menu_fixture.h"
#include "platform/fake/fake_serial_line.h"
#include "readings/capture.h"
#include "setup/main_menu.h"

namespace dpm::testing {

// The main menu of a program with a default setup on an open in-memory line, address "1",
// firmware revision 4, from which the reading screens are opened.
class ReadingScreenTest : public FormsTest {
 protected:
  ReadingScreenTest() : line(time) {
    Platform().meterLink = &line;
    g.LinkEnabled = 1;
    g.MeterAddress = "1";
    g.CharTime = 1;
    g.FirmwareRev = 4;
    LoadSetup("");
    ResetReadings();
    line.SetPortOpen(true);
    frmMMenu().Show();
  }
  // The screens let go of the line before it goes.
  ~ReadingScreenTest() override { Forms().Reset(); }

  // The commands sent, without their line ends.
  std::vector<std::string> Commands() const {
    std::vector<std::string> texts;
    for (const auto& command : line.SentCommands()) texts.push_back(command.text);
    return texts;
  }

  fake::FakeSerialLine line;
};

}  // namespace dpm::testing
