#pragma once

#include <cstdint>
#include <string>

#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "platform/forms/picture.h"

// Field help: the application help window, which prints the help item of g.HelpContext,
// and the help text that a reference screen shows in its own "lblText" label.
namespace dpm {

// The help item of the ASCII character table: a table laid out in columns, printed as it
// stands in a fixed-pitch face, its "$" characters and all.
inline constexpr int16_t kAsciiTableHelp = 1138;

class AppHelp : public Form {
 public:
  static constexpr const char* kName = "frmAppHelp";
  static constexpr const char* kCaption = "APPLICATION  HELP";
  static constexpr const char* kTextFont = "Arial";
  static constexpr const char* kTableFont = "Courier New";

  AppHelp();

  PictureBox picText{*this, "picText"};
  CommandButton cmdOK{*this, "cmdOK", "OK"};

  // Shows the window on the item of g.HelpContext without waiting for it, also when it is
  // up already: the front-panel menu view keeps it beside its keys. A context of record 0,
  // a row without a key, leaves the window as it is.
  void ShowContext();

  void Form_Activate();
  void cmdOK_Click();

  // Prints an item: a line for each "$", the second line, which names the field, in bold.
  // The ASCII table is printed line by line as it stands, in the fixed-pitch face.
  void PrintItem(const std::string& item, int context);

 private:
  void ShowItemOfContext();
};

// The window, created on first use.
AppHelp& frmAppHelp();

// F1 on a screen: the help window on the item of g.HelpContext, modal. When the item cannot
// be read, a short message says why and the screen goes on.
void ShowAppHelp();

// The form whose "lblText" label takes the text of the next ShowHelpText.
extern Form* HelpForm;

// Puts the item of g.HelpContext into the "lblText" label of HelpForm, its "$" line ends
// turned into blanks, for the label to wrap as it fits. False, after a short message to the
// user, when the item could not be read.
bool ShowHelpText();

// Tells the user that a help item could not be read.
void ReportHelpFault(const std::string& fault);

}  // namespace dpm
