#pragma once

#include "platform/forms/controls.h"
#include "platform/forms/form.h"

namespace dpm {

// The meter type screen: the user says what the program serves, a panel meter, a weight
// meter or a counter, and the choice becomes g.AppClass. Start-up takes the meter type from
// the settings file, so nothing in the program opens this screen; it is kept complete for
// a start-up that asks.
class MeterType : public Form {
 public:
  static constexpr const char* kName = "frmApp";
  static constexpr const char* kCaption = "SELECT METER TYPE";

  MeterType();

  Label lblSelect{*this, "lblSelect", "Select Meter Type"};
  CommandButton cmdDPM{*this, "cmdDPM", "DPM"};
  CommandButton cmdWtMeter{*this, "cmdWtMeter", "Weight Meter"};
  CommandButton cmdCounter{*this, "cmdCounter", "Counter"};
  CommandButton cmdQuit{*this, "cmdQuit", "Quit"};

  void cmdDPM_Click();
  void cmdWtMeter_Click();
  void cmdCounter_Click();
  void cmdQuit_Click();

 private:
  void Choose(int16_t appClass);
};

// The screen, created on first use.
MeterType& frmApp();

}  // namespace dpm
