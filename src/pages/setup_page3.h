#pragma once

#include <cstdint>
#include <optional>

#include "platform/forms/control_array.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"

// Setup page 3: the serial communications, the analog output, the lockouts, and the
// calibration data of a connected load cell's data sheet. The only setup page that talks to
// the meter: it fetches the data sheet when the meter has one that was not fetched since the
// main menu was last shown. Everything else is an edit of the setup image, at once. Unlike
// the other pages it rebuilds itself at every activation, also on the return from the
// value entry dialog, which is how a start or stop character's name catches up with the
// value just entered.
namespace dpm {

inline constexpr int kLockoutCount = 18;

// Where a click on lockout box `index` writes its value: digit position and bit. The boxes
// of the data sheet lockouts (13 to 16) land on the bits of boxes 5 to 8, and box 17 on no
// bit at all: the data sheet lockouts are shown here but cannot be changed from here.
struct LockoutTarget {
  int position;
  int bit;
};
std::optional<LockoutTarget> LockoutWriteTarget(int index);

class SetupPage3 : public Form {
 public:
  static constexpr const char* kName = "frmSetup3";

  SetupPage3();
  ~SetupPage3() override;

  // False while the page fills its controls, whose clicks then write nothing.
  bool PageReady = false;

  Frame fraSerComm{*this, "fraSerComm", "Serial Communications"};
  Frame fraBaudRate{*this, "fraBaudRate", "Baud Rate", &fraSerComm};
  ComboBox cboBaudRate{*this, "cboBaudRate", &fraBaudRate};
  Frame fraAddress{*this, "fraAddress", "Address", &fraSerComm};
  ComboBox cboAddress{*this, "cboAddress", &fraAddress};
  Frame fraOutVal{*this, "fraOutVal", "Output Value", &fraSerComm};
  ComboBox cboOutVal{*this, "cboOutVal", &fraOutVal};
  Frame fraOutRate{*this, "fraOutRate", "Output Rate", &fraSerComm};
  ComboBox cboOutRate{*this, "cboOutRate", &fraOutRate};
  Frame fraSerMode{*this, "fraSerMode", "Output Mode", &fraSerComm};
  ComboBox cboSerMode{*this, "cboSerMode", &fraSerMode};
  CheckBox chkAlmData{*this, "chkAlmData", "Incl Alarm Data", &fraSerComm};
  CheckBox chkLF{*this, "chkLF", "Include LF", &fraSerComm};
  Frame fraRTS{*this, "fraRTS", "RTS Type", &fraSerComm};
  ComboBox cboRTS{*this, "cboRTS", &fraRTS};
  Frame fraDuplex{*this, "fraDuplex", "Full/Half Duplex", &fraSerComm};
  ComboBox cboDuplex{*this, "cboDuplex", &fraDuplex};
  Frame fraTranChars{*this, "fraTranChars", "Transmission Chars", &fraSerComm};
  ComboBox cboTranChars{*this, "cboTranChars", &fraTranChars};
  Frame fraTranStart{*this, "fraTranStart", "Cust Start Char", &fraSerComm};
  TextBox txtTranStart{*this, "txtTranStart", &fraTranStart};
  Label lblTranStart{*this, "lblTranStart", {}, &fraTranStart};
  Frame fraTranStop{*this, "fraTranStop", "Cust Stop Char", &fraSerComm};
  TextBox txtTranStop{*this, "txtTranStop", &fraTranStop};
  Label lblTranStop{*this, "lblTranStop", {}, &fraTranStop};

  Frame fraAnaOut{*this, "fraAnaOut", "Analog Out"};
  Frame fraAnaValue{*this, "fraAnaValue", "Analog Value", &fraAnaOut};
  ComboBox cboAnaValue{*this, "cboAnaValue", &fraAnaValue};
  Frame fraCircuit{*this, "fraCircuit", "Circuit", &fraAnaOut};
  ComboBox cboCircuit{*this, "cboCircuit", &fraCircuit};
  Frame fraAnaHI{*this, "fraAnaHI", "High Reading", &fraAnaOut};
  TextBox txtAnaHi{*this, "txtAnaHi", &fraAnaHI};
  Frame fraAnaLo{*this, "fraAnaLo", "Low Reading", &fraAnaOut};
  TextBox txtAnaLo{*this, "txtAnaLo", &fraAnaLo};

  Frame fraLockOut{*this, "fraLockOut", "Lockouts"};
  ControlArray<CheckBox> chkLock{*this, "chkLock", 0, kLockoutCount - 1, &fraLockOut};
  Label lblLockout{*this, "lblLockout"};

  // The calibration data of the data sheet.
  Frame fraSerNo{*this, "fraSerNo", " Serial Number"};
  Label lblSerNo{*this, "lblSerNo", {}, &fraSerNo};
  Frame fraUnits{*this, "fraUnits", "Measure Units"};
  Label lblUnits{*this, "lblUnits", {}, &fraUnits};
  Frame fraDate{*this, "fraDate", "Calib Date"};
  Label lblDate{*this, "lblDate", {}, &fraDate};
  Frame fraInitials{*this, "fraInitials", "Calib Initials"};
  Label lblInitials{*this, "lblInitials", {}, &fraInitials};
  Frame fraPeriod{*this, "fraPeriod", "Calib Period"};
  Label lblPeriod{*this, "lblPeriod", {}, &fraPeriod};
  Frame fraMID{*this, "fraMID", "Measure ID"};
  Label lblMID{*this, "lblMID", {}, &fraMID};

  // A label that works as a button: the ASCII character table of the help.
  Label lblAscTbl{*this, "lblAscTbl", "  ASCII Character            Table "};
  CommandButton cmdMMenu{*this, "cmdMMenu", "Main Menu"};
  CommandButton cmdPrevPage{*this, "cmdPrevPage", "<    Page 2"};

  // The fill from the image.
  void Get3List();
  void Get3Text();
  void Lock1();
  // The focus leaves a box that opened the value entry dialog.
  void EndText();

  // Handlers.
  void Form_Load();
  void Form_Activate();
  void Form_KeyDown(int& keyCode, int shift);
  void Form_Unload(int& cancel);
  void chkLock_Click(int index);
  void txtTranStart_Click();
  void txtTranStop_Click();
  void lblAscTbl_Click();
  void lblLockout_Click();
  void cmdMMenu_Click();
  void cmdPrevPage_Click();

 private:
  void ConnectHandlers();
  void ShowDataSheet();
  void CommRules();
  void TranCharsRules();
  void CharBox_Click(TextBox& box, Label& name, int position);
};

// The page, created on first use.
SetupPage3& frmSetup3();

}  // namespace dpm
