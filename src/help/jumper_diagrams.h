#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "platform/forms/picture.h"

// The jumper screens of the Jumpers menu: each shows one board of the meter as drawn at
// build time (data/jumpers.txt), the names of its connector pins, the board's help text, a
// Print and an OK button. They read nothing from the meter. All of them are one screen,
// JumperDiagram, told apart by a sheet of the table JumperSheets().
namespace dpm {

// A label of a jumper screen: the widget's name (element `index` of a label array, or a
// plain label when -1) and its text. A label that lists several pins is one text, laid out
// in a narrow label so that its lines break between the pins.
struct JumperLabel {
  std::string name;
  int index = -1;
  std::string caption;
};

// What sets one jumper screen apart from the others.
struct JumperSheet {
  std::string form;
  std::string caption;
  int16_t helpContext = 0;
  std::string board;    // the drawing of the board, a picture file of the program's folder
  bool hasText = true;  // whether the screen shows its help text in "lblText"
  std::string note;     // a note printed under the help text, which is then cut short
  std::vector<JumperLabel> labels;
};

// The help text of a screen with a note keeps this many characters before the note.
inline constexpr std::size_t kTextBeforeNote = 534;

// The screens, in the order of the Jumpers menu; the RS232/485 board without revision
// letter, which no menu item leads to, last.
inline constexpr std::array<const char*, 10> kJumperForms = {
    "frmJDCSC", "frmJDCSCM",  "frmJTempSC", "frmJRMSSC",  "frmJLCSC",
    "frmJPS",   "frmJRS232F", "frmJRS232G", "frmJRS485G", "frmJRS232",
};

const std::vector<JumperSheet>& JumperSheets();
// The sheet of a screen; a name of no jumper screen is a RuntimeFault.
const JumperSheet& JumperSheetOf(const std::string& form);

class JumperDiagram : public Form {
 public:
  explicit JumperDiagram(const JumperSheet& sheet);

  const JumperSheet& Sheet() const { return sheet_; }

  PictureBox imgBoard{*this, "imgBoard"};
  CommandButton cmdPrinter{*this, "cmdPrinter", "Print"};
  CommandButton cmdOK{*this, "cmdOK", "OK"};
  // Null on a screen without help text.
  std::unique_ptr<Label> lblText;
  // The pin labels and board words of the sheet, in its order.
  std::vector<std::unique_ptr<Label>> labels;

  void Form_Load();
  void Form_Activate();
  void cmdOK_Click();
  void cmdPrinter_Click();

 private:
  const JumperSheet& sheet_;
};

// One jumper screen as a form of its own name, so that each is loaded and unloaded alone.
template <std::size_t I>
class JumperForm : public JumperDiagram {
 public:
  static constexpr const char* kName = kJumperForms[I];
  JumperForm() : JumperDiagram(JumperSheetOf(kName)) {}
};

// The jumper screen of that name, created on first use; a name of no jumper screen is a
// RuntimeFault.
JumperDiagram& JumperScreen(const std::string& form);

}  // namespace dpm
