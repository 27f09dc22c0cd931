#pragma once

#include <cstdint>
#include <string>

#include "link/globals.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"

// Setup page 1: the signal conditioner and option boards, the input (mode, range, custom
// curve, rate, line frequency) and how the reading is displayed (resolution, display
// value, decimal point, leading zeros, scaling). The page holds no data of its own: every
// list is rebuilt from the setup image and every change goes into the image at once.
// A change of conditioner, mode, range, custom curve or resolution rebuilds the whole
// page, since it changes which entries exist and what may be touched.
namespace dpm {

struct ScaleBox;

class SetupPage1 : public Form {
 public:
  static constexpr const char* kName = "frmSetup1";

  SetupPage1();
  ~SetupPage1() override;

  // False while the page fills its lists: setting a list's entry raises its click, and
  // the click handlers must not write that back into the image.
  bool PageReady = false;

  // Which scaling boxes the method in force opens (see scaling.h).
  bool SclOffOn = false;
  bool RdCoordOn = false;
  bool InCoordOn = false;

  Frame fraSCOpt{*this, "fraSCOpt", "SigCond Option"};
  ComboBox cboSCOpt{*this, "cboSCOpt", &fraSCOpt};
  Frame fraRlyOpt{*this, "fraRlyOpt", "Relay Option"};
  ComboBox cboRlyOpt{*this, "cboRlyOpt", &fraRlyOpt};
  Frame fraComOpt{*this, "fraComOpt", "Comm Option"};
  ComboBox cboComOpt{*this, "cboComOpt", &fraComOpt};
  Frame fraAnaOpt{*this, "fraAnaOpt", "Analog Option"};
  ComboBox cboAnaOpt{*this, "cboAnaOpt", &fraAnaOpt};
  OptionButton optBasic{*this, "optBasic", "BASIC"};
  OptionButton optExtend{*this, "optExtend", "EXTENDED"};

  Frame fraInMode{*this, "fraInMode", "Input Mode"};
  ComboBox cboMode{*this, "cboMode", &fraInMode};
  Frame fraFunc{*this, "fraFunc", "Range"};
  ComboBox cboFunc{*this, "cboFunc", &fraFunc};
  Frame fraCusCrv{*this, "fraCusCrv", "Custom Curve"};
  ComboBox cboCusCrv{*this, "cboCusCrv", &fraCusCrv};
  Frame fraRate{*this, "fraRate", "Rate"};
  ComboBox cboRate{*this, "cboRate", &fraRate};
  Frame fraHz{*this, "fraHz", "50/60 Hz Line Freq"};
  ComboBox cboHz{*this, "cboHz", &fraHz};

  Frame fraResol{*this, "fraResol", "Resolution"};
  ComboBox cboResol{*this, "cboResol", &fraResol};
  Frame fraDVal{*this, "fraDVal", "Display Value"};
  ComboBox cboDVal{*this, "cboDVal", &fraDVal};
  Frame fraDecPt{*this, "fraDecPt", "Decimal Point "};
  ComboBox cboDecPt{*this, "cboDecPt", &fraDecPt};
  Frame fraLeadZ{*this, "fraLeadZ", "Leading Zeros"};
  ComboBox cboLeadZ{*this, "cboLeadZ", &fraLeadZ};

  // Scaling: the method and the six value boxes, each box in a frame of its own.
  Frame fraSclOff{*this, "fraSclOff", "Scale/Offset"};
  OptionButton optSclOff{*this, "optSclOff", "Scale,Offset  >", &fraSclOff};
  OptionButton optCoord{*this, "optCoord", "Coordinates  >", &fraSclOff};
  OptionButton optRdCoord{*this, "optRdCoord", "Reading Coord >", &fraSclOff};
  Frame fraScale{*this, "fraScale", "Scale ", &fraSclOff};
  TextBox txtScale{*this, "txtScale", &fraScale};
  Frame fraOffset{*this, "fraOffset", "Offset ", &fraSclOff};
  TextBox txtOffset{*this, "txtOffset", &fraOffset};
  Frame fraLoIn{*this, "fraLoIn", "Low In ", &fraSclOff};
  TextBox txtLoIn{*this, "txtLoIn", &fraLoIn};
  Frame fraHiIn{*this, "fraHiIn", "High In ", &fraSclOff};
  TextBox txtHiIn{*this, "txtHiIn", &fraHiIn};
  Frame fraLoRd{*this, "fraLoRd", "Low Read ", &fraSclOff};
  TextBox txtLoRd{*this, "txtLoRd", &fraLoRd};
  Frame fraHiRd{*this, "fraHiRd", "High Read ", &fraSclOff};
  TextBox txtHiRd{*this, "txtHiRd", &fraHiRd};

  CommandButton cmdMMenu{*this, "cmdMMenu", "Main Menu"};
  CommandButton cmdNextPage{*this, "cmdNextPage", "Page 2    >"};
  TextBox txtF1Help{*this, "txtF1Help"};

  // The full rebuild from the image.
  void RefreshPage1();
  void OptBoardsList();
  void ModeFuncList();
  void Get1List();
  void Get1Text();
  void Rules1();
  // Scaling (scaling.cpp).
  void ScaleMethod();
  void ScaleOffEnable();

  // Handlers.
  void Form_Load();
  void Form_Activate();
  void Form_KeyDown(int& keyCode, int shift);
  void Form_Unload(int& cancel);
  void cboSCOpt_Click();
  void cboMode_Click();
  void cboFunc_Click();
  void cboDVal_Click();
  void cboDecPt_Click();
  void optBasic_GotFocus();
  void optExtend_GotFocus();
  void cmdMMenu_Click();
  void cmdNextPage_Click();
  void optSclOff_GotFocus();
  void optCoord_GotFocus();
  void optRdCoord_GotFocus();

 private:
  void ConnectHandlers();
  void ConnectScaling();
  void ValueBox_Click(const ScaleBox& row);

  bool filled_ = false;  // the page has been filled from the image once
};

// The page, created on first use.
SetupPage1& frmSetup1();

}  // namespace dpm
