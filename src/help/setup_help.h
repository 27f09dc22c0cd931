#pragma once

#include <string>
#include <vector>

#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "platform/forms/picture.h"

namespace dpm {

// The setup help page of the main menu's Help heading: how help is had on the setup
// pages and on the front-panel menu view.
class SetupHelp : public Form {
 public:
  static constexpr const char* kName = "frmMHELP";
  static constexpr const char* kCaption = "SETUP  HELP";

  SetupHelp();

  PictureBox picText{*this, "picText"};
  CommandButton cmdMHelp{*this, "cmdMHelp", "OK"};

  void Form_Activate();
  void cmdMHelp_Click();
};

// The page, created on first use.
SetupHelp& frmMHELP();

// The lines of the page, in order; an empty text is an empty line.
const std::vector<std::string>& SetupHelpLines();

}  // namespace dpm
