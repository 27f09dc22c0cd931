#pragma once

#include "platform/forms/controls.h"
#include "platform/forms/form.h"

// Setup page 2: the filter, the peak value, the external inputs, tare and the transducer
// data sheet's behaviour, and the two alarms with their deviations. Like page 1 it holds
// no data: its lists are filled from the setup image when it becomes active, and each
// change goes into the image at once. The alarm groups show only with a relay board, the
// tare group only on a meter with data sheet hardware.
namespace dpm {

class SetupPage2 : public Form {
 public:
  static constexpr const char* kName = "frmSetup2";

  SetupPage2();
  ~SetupPage2() override;

  // False while the page fills its controls, whose clicks then write nothing.
  bool PageReady = false;

  Frame fraFilter{*this, "fraFilter", "Filter"};
  Frame fraTimConst{*this, "fraTimConst", "Time Constant", &fraFilter};
  ComboBox cboTimConst{*this, "cboTimConst", &fraTimConst};
  Frame fraThresh{*this, "fraThresh", "Threshold", &fraFilter};
  ComboBox cboThresh{*this, "cboThresh", &fraThresh};
  Frame fraPeakVal{*this, "fraPeakVal", "Peak Value", &fraFilter};
  ComboBox cboPeakVal{*this, "cboPeakVal", &fraPeakVal};

  Frame fraExtIn{*this, "fraExtIn", "External Inputs"};
  Frame fraExtAB{*this, "fraExtAB", " External Input A  --------------------  External Input B", &fraExtIn};
  ComboBox cboExtAB{*this, "cboExtAB", &fraExtAB};

  // The tare boxes are ticked when their bit is 0.
  Frame fraTare{*this, "fraTare", "Tare"};
  CheckBox chkFPTare{*this, "chkFPTare", "Front Panel Tare", &fraTare};
  CheckBox chkAutoTare{*this, "chkAutoTare", "Auto-Tare", &fraTare};
  CheckBox chkTEDSIndicator{*this, "chkTEDSIndicator", "TEDS LED Indicator", &fraTare};
  CheckBox chkTEDSPlugPlay{*this, "chkTEDSPlugPlay", "TEDS Plug and Play", &fraTare};

  Frame fraAlarm1{*this, "fraAlarm1", "Alarm 1"};
  Frame fraSetpt1{*this, "fraSetpt1", "Setpoint 1", &fraAlarm1};
  TextBox txtSetpt1{*this, "txtSetpt1", &fraSetpt1};
  Frame fraState1{*this, "fraState1", "Alarm State 1", &fraAlarm1};
  ComboBox cboState1{*this, "cboState1", &fraState1};
  Frame fraAlm1Type{*this, "fraAlm1Type", "Alarm 1 Type", &fraAlarm1};
  ComboBox cboAlm1Type{*this, "cboAlm1Type", &fraAlm1Type};
  Frame fraRly1State{*this, "fraRly1State", "Relay1 Alrm State", &fraAlarm1};
  ComboBox cboRly1State{*this, "cboRly1State", &fraRly1State};
  Frame fraDev1{*this, "fraDev1", "Deviation 1", &fraAlarm1};
  TextBox txtDev1{*this, "txtDev1", &fraDev1};
  Frame fraDev1Typ{*this, "fraDev1Typ", "Deviation 1 Type", &fraAlarm1};
  ComboBox cboDev1Typ{*this, "cboDev1Typ", &fraDev1Typ};

  Frame fraAlarm2{*this, "fraAlarm2", "Alarm 2"};
  Frame fraSetpt2{*this, "fraSetpt2", "Setpoint 2", &fraAlarm2};
  TextBox txtSetPt2{*this, "txtSetPt2", &fraSetpt2};
  Frame fraState2{*this, "fraState2", "Alarm State 2", &fraAlarm2};
  ComboBox cboState2{*this, "cboState2", &fraState2};
  Frame fraAlm2Type{*this, "fraAlm2Type", "Alarm 2 Type", &fraAlarm2};
  ComboBox cboAlm2Type{*this, "cboAlm2Type", &fraAlm2Type};
  Frame fraRly2State{*this, "fraRly2State", "Relay2 Alrm State", &fraAlarm2};
  ComboBox cboRly2State{*this, "cboRly2State", &fraRly2State};
  Frame fraDev2{*this, "fraDev2", "Deviation 2", &fraAlarm2};
  TextBox txtDev2{*this, "txtDev2", &fraDev2};
  Frame fraDev2Typ{*this, "fraDev2Typ", "Deviation 2 Type", &fraAlarm2};
  ComboBox cboDev2Typ{*this, "cboDev2Typ", &fraDev2Typ};

  Frame fraBothAlm{*this, "fraBothAlm", "Both Alarms"};
  Frame fraAlmValue{*this, "fraAlmValue", "Alarm Value ", &fraBothAlm};
  ComboBox cboAlmValue{*this, "cboAlmValue", &fraAlmValue};
  Frame fraNoRdgsAlm{*this, "fraNoRdgsAlm", "No. Rdgs to Alarm", &fraBothAlm};
  ComboBox cboNoRdgsAlm{*this, "cboNoRdgsAlm", &fraNoRdgsAlm};
  Frame fraDevStatus{*this, "fraDevStatus", "Deviation Status", &fraBothAlm};
  ComboBox cboDevStatus{*this, "cboDevStatus", &fraDevStatus};

  CommandButton cmdMMenu{*this, "cmdMMenu", "Main Menu"};
  CommandButton cmdPrevPage{*this, "cmdPrevPage", "<    Page 1"};
  CommandButton cmdNextPage{*this, "cmdNextPage", "Page 3    >"};

  // The fill from the image.
  void Get2List();
  void Get2Text();
  // Greys the deviations while they are switched off.
  void Rules2();

  // Handlers.
  void Form_Load();
  void Form_Activate();
  void Form_KeyDown(int& keyCode, int shift);
  void Form_Unload(int& cancel);
  void cmdMMenu_Click();
  void cmdPrevPage_Click();
  void cmdNextPage_Click();

  // What follows a pick in cboTimConst, and a click on chkTEDSPlugPlay.
  void NoFilterForcesDisplayValue();
  void PlugPlayEnablesIndicator();

 private:
  void ConnectHandlers();

  bool filled_ = false;  // the page has been filled from the image once
};

// The page, created on first use.
SetupPage2& frmSetup2();

}  // namespace dpm
