#include "pages/setup_page2.h"

#include <array>
#include <initializer_list>
#include <utility>

#include "help/app_help.h"
#include "link/globals.h"
#include "pages/page_fields.h"
#include "pages/setup_page1.h"
#include "pages/setup_page3.h"
#include "panelmenu/value_entry.h"
#include "platform/forms/form_manager.h"
#include "setup/image_map.h"
#include "setup/input_facts.h"
#include "setup/main_menu.h"

namespace dpm {
namespace {

constexpr int16_t kNoFilter = 10;
constexpr int16_t kAlarmStateDisabled = 2;
constexpr int16_t kAlarmStateBothBits = 3;

// The lists in the order the page fills them.
constexpr std::array<FieldList<SetupPage2>, 15> kFieldLists = {{
    {&SetupPage2::cboTimConst, "TimeConstant", 1329, &SetupPage2::NoFilterForcesDisplayValue},
    {&SetupPage2::cboThresh, "Threshold", 1362},
    {&SetupPage2::cboPeakVal, "PeakValue", 1330},
    {&SetupPage2::cboExtAB, "ExternalInputs", 1331},
    {&SetupPage2::cboAlmValue, "AlarmValue", 1334},
    {&SetupPage2::cboDevStatus, "DevStatus", 1335, &SetupPage2::Rules2},
    {&SetupPage2::cboDev1Typ, "Dev1Type", 1208},
    {&SetupPage2::cboDev2Typ, "Dev2Type", 1208},
    {&SetupPage2::cboState1, "AlarmState1", 1204},
    {&SetupPage2::cboState2, "AlarmState2", 1204},
    {&SetupPage2::cboAlm1Type, "Alarm1Type", 1206},
    {&SetupPage2::cboAlm2Type, "Alarm2Type", 1206},
    {&SetupPage2::cboRly1State, "Relay1State", 1333},
    {&SetupPage2::cboRly2State, "Relay2State", 1333},
    {&SetupPage2::cboNoRdgsAlm, "ReadingsToAlarm", 1207},
}};

// The tare and data sheet boxes, in the order the page fills them; each is ticked when its
// bit is 0.
constexpr std::array<FieldCheck<SetupPage2>, 4> kFieldChecks = {{
    {&SetupPage2::chkFPTare, "FrontPanelTare", 1383},
    {&SetupPage2::chkAutoTare, "AutoTare", 1383},
    {&SetupPage2::chkTEDSIndicator, "TedsIndicator", 1383},
    {&SetupPage2::chkTEDSPlugPlay, "TedsPlugPlay", 1383, &SetupPage2::PlugPlayEnablesIndicator},
}};

// Setpoints are entered signed; the deviations, shown signed as well, are entered unsigned.
constexpr std::array<ValueBox<SetupPage2>, 4> kValueBoxes = {{
    {&SetupPage2::txtSetpt1, "Setpoint1", 1332},
    {&SetupPage2::txtDev1, "Deviation1", 1202},
    {&SetupPage2::txtSetPt2, "Setpoint2", 1332},
    {&SetupPage2::txtDev2, "Deviation2", 1202},
}};

// The alarm boxes lie low on the page: the dialog stands in the lower position.
constexpr int16_t kEntrySide = 1;

}  // namespace

SetupPage2::SetupPage2() : Form(kName, "DPM SETUP  PAGE  2") { ConnectHandlers(); }

// A box of this page may still be the one the value entry dialog serves.
SetupPage2::~SetupPage2() { ForgetEntryBox(*this); }

void SetupPage2::ConnectHandlers() {
  on.Load = [this] { Form_Load(); };
  on.Activate = [this] { Form_Activate(); };
  on.KeyDown = [this](int& keyCode, int shift) { Form_KeyDown(keyCode, shift); };
  on.Unload = [this](int& cancel) { Form_Unload(cancel); };
  ConnectFieldLists<SetupPage2>(*this, kFieldLists);
  ConnectFieldChecks<SetupPage2>(*this, kFieldChecks);
  ConnectValueBoxes<SetupPage2>(*this, kValueBoxes, kEntrySide);
  cmdMMenu.on.Click = [this] { cmdMMenu_Click(); };
  cmdPrevPage.on.Click = [this] { cmdPrevPage_Click(); };
  cmdNextPage.on.Click = [this] { cmdNextPage_Click(); };
}

void SetupPage2::Get2List() {
  for (const auto& list : kFieldLists) FillFromField(this->*list.combo, list.field);
  // An alarm state of 3 has no entry of its own. The meter takes either state bit 1 as the
  // alarm switched off, and so does the program's front-panel menu view, which leaves such
  // an alarm's setpoint out: the list says "Disabled" too, so that both views of the setup
  // agree. Nothing is written: the image keeps its 3 until the user picks a state.
  for (const auto& [state, field] : {std::pair{&cboState1, "AlarmState1"}, std::pair{&cboState2, "AlarmState2"}}) {
    if (ReadFieldValue(FindField(field)) == kAlarmStateBothBits) state->SetListIndex(kAlarmStateDisabled);
  }
  for (const auto& check : kFieldChecks) FillFromField(this->*check.box, check.field);
}

void SetupPage2::Get2Text() {
  for (const auto& row : kValueBoxes) (this->*row.box).SetText(ValueFieldText(FindField(row.field)));
}

void SetupPage2::Rules2() {
  const bool on = ReadFieldValue(FindField("DevStatus")) == 0;
  for (Frame* frame : {&fraDev1, &fraDev1Typ, &fraDev2, &fraDev2Typ}) frame->SetEnabled(on);
  for (Control* control : std::initializer_list<Control*>{&txtDev1, &cboDev1Typ, &txtDev2, &cboDev2Typ}) {
    control->SetForeColor(on ? ColBlack : ColLightGrey);
  }
}

// With no filter the meter has nothing but the filtered value to display. Another time
// constant later leaves the display value as it is.
void SetupPage2::NoFilterForcesDisplayValue() {
  if (cboTimConst.ListIndex() == kNoFilter) WriteFieldValue(FindField("DisplayValue"), 1);
}

// The indicator shows the state of plug and play, and can be set only while that is on.
void SetupPage2::PlugPlayEnablesIndicator() {
  g.TedsEnabled = static_cast<int16_t>(chkTEDSPlugPlay.Value());
  chkTEDSIndicator.SetEnabled(g.TedsEnabled == 1);
}

void SetupPage2::Form_Load() {
  PageReady = false;
  Get2Text();
}

void SetupPage2::Form_Activate() {
  // Back from the value entry dialog the page shows what it showed, the dialog having
  // updated its box; every other arrival rebuilds the page from the image.
  if (g.EntryReturnFlag == 1 && filled_) return;
  filled_ = true;
  PageReady = false;
  const bool alarms = AlarmsOffered();
  for (Frame* frame : {&fraAlarm1, &fraAlarm2, &fraBothAlm}) frame->SetVisible(alarms);
  fraTare.SetVisible(TareOffered());
  Get2List();
  Get2Text();
  Rules2();
  if (g.TedsPresent == 1) {
    chkTEDSPlugPlay.SetEnabled(true);
    g.TedsEnabled = static_cast<int16_t>(1 - ReadFieldValue(FindField("TedsPlugPlay")));
    chkTEDSIndicator.SetEnabled(g.TedsEnabled != 0);
  } else {
    // No data sheet to play with: the boxes show the image's bits and take no clicks.
    chkTEDSPlugPlay.SetEnabled(false);
    chkTEDSIndicator.SetEnabled(false);
  }
  PageReady = true;
}

void SetupPage2::Form_KeyDown(int& keyCode, int /*shift*/) {
  if (keyCode != kKeyF1) return;
  // The help on g.HelpContext, stored by the field that has the focus.
  ShowAppHelp();
}

void SetupPage2::Form_Unload(int& /*cancel*/) { frmMMenu().Show(); }

void SetupPage2::cmdMMenu_Click() { BackToMainMenu(*this); }
void SetupPage2::cmdPrevPage_Click() { GoToPage(*this, frmSetup1()); }
void SetupPage2::cmdNextPage_Click() { GoToPage(*this, frmSetup3()); }

SetupPage2& frmSetup2() { return Forms().Use<SetupPage2>(); }

}  // namespace dpm
