#pragma once

#include <string>

#include "platform/forms/controls.h"
#include "platform/forms/form.h"

// The application help window. For now it names the help item in force (g.HelpContext);
// the texts of the items take its place once the help files are part of the program.
namespace dpm {

class AppHelp : public Form {
 public:
  static constexpr const char* kName = "frmAppHelp";
  static constexpr const char* kCaption = "APPLICATION  HELP";

  AppHelp();

  Label lblText{*this, "lblText"};
  CommandButton cmdOK{*this, "cmdOK", "OK"};

  // Shows the window on the item of g.HelpContext, also when it is up already.
  void ShowContext();

  void Form_Activate();
  void cmdOK_Click();

 private:
  void ShowItem();
};

// The text the window shows for a help item.
std::string HelpItemText(int helpContext);

// The window, created on first use.
AppHelp& frmAppHelp();

}  // namespace dpm
