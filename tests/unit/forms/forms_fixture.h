#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "link/globals.h"
#include "platform/fake/scripted_dialogs.h"
#include "platform/fake/virtual_time.h"
#include "platform/forms/control_array.h"
#include "platform/forms/controls.h"
#include "platform/forms/form_manager.h"
#include "platform/forms/grid.h"
#include "platform/forms/picture.h"
#include "platform/services.h"

namespace dpm::testing {

// Forms without a screen, in virtual time, with scripted dialogs; every form of the
// previous test is gone.
class FormsTest : public ::testing::Test {
 protected:
  FormsTest() {
    ResetGlobals();
    Forms().Reset();
    Platform() = Services{&time, &time, nullptr, &dialogs};
  }
  ~FormsTest() override {
    Forms().Reset();
    Platform() = Services{};
  }

  fake::VirtualTime time;
  fake::ScriptedDialogs dialogs;
  std::vector<std::string> log;
};

// A view that records what it is told, to tell code changes from user actions.
class RecordingView : public ControlView {
 public:
  explicit RecordingView(Control& control) : control_(control) { control_.AttachView(this); }
  ~RecordingView() override { control_.AttachView(nullptr); }
  void Update(Property property) override { updates.push_back(property); }
  std::vector<Property> updates;

 private:
  Control& control_;
};

}  // namespace dpm::testing
