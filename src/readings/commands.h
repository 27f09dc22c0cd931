#pragma once

#include <cstdint>
#include <string>

#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "platform/forms/picture.h"

// The commands screen: a small console for one meter. Five resets, the latest and the peak
// reading, and a text for the meter's remote display. Each exchange is drawn as a picture
// that travels along the cable between the drawn computer and the drawn meter, paced by a
// 50 ms timer, so that the user sees which way the traffic goes. The waits of that
// animation serve events, so another button can be pressed meanwhile; a second animation
// then runs inside the first and both move the same picture.
namespace dpm {

// The moving picture's road, in twips of the form: along the cable from the computer's end
// to the meter's, 100 a tick.
inline constexpr int kCurrentTop = 4010;
inline constexpr int kCurrentAtComputer = 2625;
inline constexpr int kCurrentAtMeter = 4425;
inline constexpr int kCurrentStep = 100;

class Commands : public Form {
 public:
  static constexpr const char* kName = "frmCmds";

  Commands();

  // Set by each tick of Timer1; the animation clears it and waits for it.
  int16_t TickFlag = 0;
  // The text box still holds the text last sent; its next focus empties it.
  bool RemoteTextSent = false;

  CommandButton cmdSend{*this, "cmdSend", "Send"};
  Timer Timer1{*this, "Timer1", 50, false};
  PictureBox picCurrent{*this, "picCurrent"};
  PictureBox picCmptrCtr{*this, "picCmptrCtr"};
  Label Label1{*this, "Label1", "   DPM"};
  CommandButton cmdOK{*this, "cmdOK", "OK"};
  PictureBox picPeakRd{*this, "picPeakRd"};
  PictureBox Picture3{*this, "Picture3"};
  TextBox txtRmtDspy{*this, "txtRmtDspy"};
  PictureBox picLatest{*this, "picLatest"};
  CommandButton cmdPeakRd{*this, "cmdPeakRd", "Peak"};
  CommandButton cmdLatest{*this, "cmdLatest", "Latest"};
  CommandButton cmdRmtDspy{*this, "cmdRmtDspy", "Remote Display"};
  CommandButton cmdPeak{*this, "cmdPeak", "Peak"};
  CommandButton cmdLARst{*this, "cmdLARst", "Latched Alarm"};
  CommandButton cmdFRst{*this, "cmdFRst", "Function"};
  CommandButton cmdMRst{*this, "cmdMRst", "Meter"};
  Label lblErrText{*this, "lblErrText"};
  Label lblEntVal{*this, "lblEntVal", "Enter Value"};
  Label lblRmtDspy{*this, "lblRmtDspy", "REMOTE DISPLAY"};
  Label lblRdgs{*this, "lblRdgs", "READINGS"};
  Label lblResets{*this, "lblResets", "RESETS"};

  void Form_Load();
  void Form_Unload(int& cancel);

  void cmdMRst_Click();
  void cmdFRst_Click();
  void cmdLARst_Click();
  void cmdPeak_Click();
  void cmdRmtDspy_Click();
  void cmdLatest_Click();
  void cmdPeakRd_Click();
  void cmdSend_Click();
  void txtRmtDspy_GotFocus();
  void cmdOK_Click();
  void Timer1_Timer();

  void ClearReadings();
  void AnimateToMeter();
  void AnimateFromMeter();

 private:
  void ShowSent(const char* status);
  void SendReset(const char* code, const char* status);
  void RequestReading(const char* code, const char* status, PictureBox& display, const char* received);
  void WaitForTick();
};

// The commands screen, created on first use.
Commands& frmCmds();

// The drawings of the computer and the meter, files of the program's folder made at build
// time like the current pictures.
inline constexpr const char* kComputerPicture = "Computer.BMP";
inline constexpr const char* kMeterPicture = "Meter.BMP";

}  // namespace dpm
