#pragma once

#include <cstdint>
#include <string>

#include "platform/forms/control_array.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"

// The value entry dialog: the one place where a numeric field of the setup image is typed
// in. It imitates entry on the meter itself: six places, the first for the sign, each
// taking one character; the decimal point belongs to the field and is not typed, except
// for the scale factor, whose point the user moves. Accepting writes the image at once and
// hands the text back to the box that opened the dialog.
namespace dpm {

// Value formats the dialog takes, besides those of the value fields.
inline constexpr int16_t kByteEntryFormat = 7;  // one byte 0 to 255, typed as three digits

// The decimal point code when the text has no point: no place holds it.
inline constexpr int16_t kNoPointCode = 8;

class ValueEntry : public Form {
 public:
  static constexpr const char* kName = "frmEntVal";

  ValueEntry();

  CommandButton cmdOK{*this, "cmdOK", "OK"};
  ControlArray<TextBox> txtDigit{*this, "txtDigit", 0, 5};
  CommandButton cmdCancel{*this, "cmdCancel", "Cancel"};
  // The grey squares where a meter's display has its points; decoration only.
  ControlArray<Label> lblDP{*this, "lblDP", 0, 5};

  // Fills the six places from a box's text in the given format.
  void LoadDigits(const std::string& text, int16_t format);
  // Takes what the six places hold: writes the image, gives the text back to the box and
  // closes; a byte above 255 is refused and the dialog stays.
  void AcceptEntry();

  // The decimal point code of what the places show: the point stands in place 6 - code.
  int16_t EntryDpCode() const { return entryDpCode_; }

  void Form_Activate();
  void Form_KeyDown(int& keyCode, int shift);
  void txtDigit_KeyDown(int index, int& keyCode, int shift);
  void txtDigit_KeyPress(int index, int& keyAscii);
  void cmdOK_Click();
  void cmdCancel_Click();

 private:
  void ConnectHandlers();
  // The place that holds the point, or -1.
  int PointPlace() const { return 6 - entryDpCode_; }
  bool IsAllowed(int index, int keyAscii) const;
  bool IsScaleKeyAllowed(int index, int keyAscii) const;
  void MovePoint(int index);
  void TypeCharacter(int index, char c);
  void GoToPlace(int index);
  // The six places joined, with every point behind the first removed.
  std::string JoinedPlaces() const;
  bool AcceptByte(std::string& text);
  void ReturnToBox(const std::string& text);

  int16_t entryDpCode_ = kNoPointCode;
  bool entryAtEnd_ = false;  // the right arrow was pressed in the last place
};

// The dialog, created on first use.
ValueEntry& frmEntVal();

// Opens the value entry dialog for g.EntryBox, which the caller has filled with
// g.EntryText, g.EntryFormat and g.EntryPosition: marks the box pale green and shows the
// dialog, high on the screen for side 0 and lower for any other side. The dialog is not
// modal; the caller goes on at once.
void OpenValueEntry(int16_t side);

// A form going away takes its boxes with it: the dialog no longer serves any of them.
void ForgetEntryBox(const Form& form);

}  // namespace dpm
