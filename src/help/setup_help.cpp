#include "help/setup_help.h"

#include "link/globals.h"
#include "platform/forms/form_manager.h"
#include "setup/main_menu.h"

namespace dpm {

SetupHelp::SetupHelp() : Form(kName, kCaption) {
  on.Activate = [this] { Form_Activate(); };
  cmdMHelp.on.Click = [this] { cmdMHelp_Click(); };
}

const std::vector<std::string>& SetupHelpLines() {
  static const std::vector<std::string> lines = {
      "   Setup Help is provided when 'View' is selected. ",
      "   There are two viewing modes.",
      "      1. Setup.  ",
      "         When Setup is selected, Help is provided by selecting a function",
      "         while Viewing the Setup (Pages 1,2 or 3) and pressing the F1 key.",
      "",
      "      2. Menu (Corresponds to the DPM front panel menu display). ",
      "         When Menu is selected, Help is provided automatically when one of",
      "         the Menu items is selected.",
  };
  return lines;
}

void SetupHelp::Form_Activate() {
  picText.Cls();
  for (const std::string& line : SetupHelpLines()) picText.Print(line);
  g.HelpContext = kMenuHelpContext;
}

void SetupHelp::cmdMHelp_Click() {
  Hide();
  frmMMenu().Show();
}

SetupHelp& frmMHELP() { return Forms().Use<SetupHelp>(); }

}  // namespace dpm
