#pragma once

#include <sstream>
#include <string>

#include "page1_fixture.h"
#include "pages/setup_page2.h"
#include "pages/setup_page3.h"
#include "platform/fake/fake_serial_line.h"

namespace dpm::testing {

// The default setup in hand, as for page 1, and a meter line at 9600 baud, address "1",
// for the data sheet that page 3 fetches. Pages 2 and 3 are reached as the user reaches
// them: through page 1, which sets the program's shadows of the option boards.
class PagesTest : public Page1Test {
 protected:
  PagesTest() : line(time) {
    Platform().meterLink = &line;
    g.BaudIndex = 5;
    g.CharTime = 1;
    g.MeterAddress = "1";
    line.SetPortOpen(true);
  }
  ~PagesTest() override {
    Forms().Reset();
    Platform().meterLink = nullptr;
  }

  SetupPage2& OpenPage2() {
    OpenPage().cmdNextPage.UserClick();
    return frmSetup2();
  }
  SetupPage3& OpenPage3() {
    OpenPage2().cmdNextPage.UserClick();
    return frmSetup3();
  }

  // Sets digits of the image given as "position=digits" pairs, as "57=20 59=0F".
  static void SetDigits(const std::string& pairs) {
    std::istringstream in(pairs);
    for (std::string pair; in >> pair;) {
      const std::size_t equals = pair.find('=');
      ReplaceImageDigits(std::stoi(pair.substr(0, equals)), pair.substr(equals + 1));
    }
  }

  // The names of the controls among `controls` that take the user's clicks, in order.
  static std::string Answering(std::initializer_list<const Control*> controls) {
    std::string names;
    for (const Control* c : controls) {
      if (!c->AcceptsUser()) continue;
      if (!names.empty()) names += " ";
      names += c->ObjectName();
    }
    return names;
  }

  // What a control shows: a list's entry, a box's text, a check box's tick, a caption.
  static std::string Shown(const Control& c) {
    switch (c.Kind()) {
      case ControlKind::ComboBox:
        return static_cast<const ComboBox&>(c).Text();
      case ControlKind::TextBox:
        return static_cast<const TextBox&>(c).Text();
      case ControlKind::CheckBox:
        return static_cast<const CheckBox&>(c).Value() == kChecked ? "ticked" : "clear";
      default:
        return static_cast<const CaptionedControl&>(c).Caption();
    }
  }

  fake::FakeSerialLine line;
};

}  // namespace dpm::testing
