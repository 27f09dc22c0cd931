#include "pages/setup_page1.h"

#include <array>
#include <initializer_list>
#include <vector>

#include "help/app_help.h"
#include "link/globals.h"
#include "link/image_access.h"
#include "pages/page_fields.h"
#include "pages/setup_page2.h"
#include "panelmenu/value_entry.h"
#include "platform/forms/form_manager.h"
#include "setup/image_map.h"
#include "setup/image_positions.h"
#include "setup/input_facts.h"
#include "setup/main_menu.h"

namespace dpm {
namespace {

constexpr int16_t kRtdShort = 12;

// Help contexts stored when a field gets the focus.
constexpr int16_t kMeterKindHelp = 1301;
constexpr int16_t kConditionerHelp = 1302;
constexpr int16_t kFirstModeHelp = 1305;   // plus the conditioner
constexpr int16_t kFirstRangeHelp = 1309;  // plus the input mode
constexpr int16_t kDisplayValueHelp = 1322;
constexpr int16_t kDecimalPointHelp = 1323;

constexpr const char* kF1HelpText = " <  Select box and use F1 Key for Help  >";

// The option boards: each list sets the program's shadow of its board too.
int16_t ReadOption(std::string_view name, int16_t& shadow) {
  shadow = ReadFieldValue(FindField(name));
  return shadow;
}

// The lists that write one field each; custom curve and resolution change what exists, and
// rebuild the page.
constexpr std::array<FieldList<SetupPage1>, 8> kFieldLists = {{
    {&SetupPage1::cboCusCrv, "CustomCurve", 1318, &SetupPage1::RefreshPage1},
    {&SetupPage1::cboRate, "Rate", 1319},
    {&SetupPage1::cboHz, "LineFreq", 1320},
    {&SetupPage1::cboResol, "Resolution", 1321, &SetupPage1::RefreshPage1},
    {&SetupPage1::cboLeadZ, "LeadingZeros", 1324},
    {&SetupPage1::cboRlyOpt, "RelayOptionBit", 1102, nullptr, &Globals::RelayOption},
    {&SetupPage1::cboComOpt, "CommOptionBits", 1303, nullptr, &Globals::CommOption},
    {&SetupPage1::cboAnaOpt, "AnalogOptionBit", 1304, nullptr, &Globals::AnalogOption},
}};

}  // namespace

SetupPage1::SetupPage1() : Form(kName, "DPM SETUP  PAGE  1  ") {
  txtF1Help.SetText(kF1HelpText);
  ConnectHandlers();
  ConnectScaling();
}

// A box of this page may still be the one the value entry dialog serves.
SetupPage1::~SetupPage1() { ForgetEntryBox(*this); }

void SetupPage1::ConnectHandlers() {
  on.Load = [this] { Form_Load(); };
  on.Activate = [this] { Form_Activate(); };
  on.KeyDown = [this](int& keyCode, int shift) { Form_KeyDown(keyCode, shift); };
  on.Unload = [this](int& cancel) { Form_Unload(cancel); };

  ConnectFieldLists<SetupPage1>(*this, kFieldLists);
  cboSCOpt.on.Click = [this] { cboSCOpt_Click(); };
  cboSCOpt.on.GotFocus = [] { g.HelpContext = kConditionerHelp; };
  cboMode.on.Click = [this] { cboMode_Click(); };
  cboMode.on.GotFocus = [] { g.HelpContext = static_cast<int16_t>(kFirstModeHelp + g.SigCond); };
  cboFunc.on.Click = [this] { cboFunc_Click(); };
  cboFunc.on.GotFocus = [] { g.HelpContext = static_cast<int16_t>(kFirstRangeHelp + g.InputMode); };
  cboDVal.on.Click = [this] { cboDVal_Click(); };
  cboDVal.on.GotFocus = [] { g.HelpContext = kDisplayValueHelp; };
  cboDecPt.on.Click = [this] { cboDecPt_Click(); };
  cboDecPt.on.GotFocus = [] { g.HelpContext = kDecimalPointHelp; };

  optBasic.on.GotFocus = [this] { optBasic_GotFocus(); };
  optExtend.on.GotFocus = [this] { optExtend_GotFocus(); };
  cmdMMenu.on.Click = [this] { cmdMMenu_Click(); };
  cmdNextPage.on.Click = [this] { cmdNextPage_Click(); };
}

// The rebuild.

void SetupPage1::RefreshPage1() {
  filled_ = true;
  PageReady = false;
  DeriveInputFacts();
  OptBoardsList();
  ModeFuncList();
  Get1List();
  Get1Text();
  ScaleMethod();
  Rules1();
  if (g.MeterKind == "1") {
    optExtend.SetValue(true);
  } else {
    optBasic.SetValue(true);
  }
  PageReady = true;
}

void SetupPage1::OptBoardsList() {
  FillList(cboSCOpt, ConditionerNames, g.SigCond);
  FillList(cboRlyOpt, FindField("RelayOptionBit").texts, ReadOption("RelayOptionBit", g.RelayOption));
  FillList(cboComOpt, FindField("CommOptionBits").texts, ReadOption("CommOptionBits", g.CommOption));
  FillList(cboAnaOpt, FindField("AnalogOptionBit").texts, ReadOption("AnalogOptionBit", g.AnalogOption));
}

void SetupPage1::ModeFuncList() {
  FillList(cboMode, ModeTexts(g.SigCond), ModeComboIndex.at(static_cast<std::size_t>(g.InputMode)));
  FillList(cboFunc, RangeTexts(g.InputMode), g.InputRange);
}

void SetupPage1::Get1List() {
  FillFromField(cboCusCrv, "CustomCurve");
  FillFromField(cboRate, "Rate");
  FillFromField(cboHz, "LineFreq");
  FillList(cboResol, ResolutionTexts(g.SigCond), g.Resolution);
  FillFromField(cboDVal, "DisplayValue");
  FillList(cboDecPt, FindField("DecimalPoint").texts, g.DisplayDp - 1);
  FillFromField(cboLeadZ, "LeadingZeros");
  // Later firmware uses the leading zeros bit for the start and stop characters, which
  // page 3 shows instead.
  const bool leadingZeros = LeadingZerosOffered();
  fraLeadZ.SetEnabled(leadingZeros);
  fraLeadZ.SetVisible(leadingZeros);
  cboLeadZ.SetEnabled(leadingZeros);
}

void SetupPage1::Rules1() {
  for (Control* c : std::initializer_list<Control*>{&fraDecPt, &cboDecPt, &fraCusCrv, &cboCusCrv, &fraRate, &cboRate,
                                                    &optSclOff, &optCoord, &optRdCoord}) {
    c->SetEnabled(true);
  }
  fraLoIn.SetCaption("Low In");
  g.CustomCurveInForce = 0;

  if (g.SigCond == 0) {
    // A temperature meter scales by its offset alone (and its scale factor, but for a
    // thermocouple); the method bits in the image are left as they are.
    SclOffOn = true;
    RdCoordOn = false;
    InCoordOn = false;
    ScaleOffEnable();
    for (Control* c : std::initializer_list<Control*>{&fraDecPt, &cboDecPt, &fraCusCrv, &cboCusCrv}) {
      c->SetEnabled(false);
    }
    optSclOff.SetValue(true);
    optCoord.SetEnabled(false);
    optRdCoord.SetEnabled(false);
    if (g.InputMode == 0) {
      fraScale.SetEnabled(false);
      txtScale.SetEnabled(false);
    } else if (g.InputRange == kRtdShort) {
      // "RTD" "Short": the low input box takes the resistance of the leads.
      fraLoIn.SetCaption("Lead");
      fraLoIn.SetEnabled(true);
      txtLoIn.SetEnabled(true);
    }
  }

  if (g.MeterKind == "0") {
    for (Control* c : std::initializer_list<Control*>{&fraCusCrv, &cboCusCrv, &fraRate, &cboRate}) {
      c->SetEnabled(false);
    }
  }

  // Comes after the BASIC rule on purpose: a BASIC meter whose image has the custom curve
  // on still gets the curve's treatment, though it cannot switch it.
  if (CustomCurveActive()) {
    g.CustomCurveInForce = 1;
    for (Control* c : std::initializer_list<Control*>{&optSclOff, &optCoord, &optRdCoord}) c->SetEnabled(false);
    SclOffOn = false;
    RdCoordOn = false;
    InCoordOn = false;
    ScaleOffEnable();
    // Only the reading at zero input can be edited, in the low input box.
    fraLoIn.SetCaption("Rd0");
    txtLoIn.SetText(g.CustomCurveRd0Text);
    fraLoIn.SetEnabled(true);
    txtLoIn.SetEnabled(true);
  }
}

// The conditioner, mode and range chain: each change writes the mode and range byte and
// rebuilds the page. Each acts only on a real change, since refilling the lists selects
// entries and so raises these same clicks.

void SetupPage1::cboSCOpt_Click() {
  const int index = cboSCOpt.ListIndex();
  if (index < 0 || index == g.SigCond) return;
  g.SigCond = static_cast<int16_t>(index);
  g.InputMode = FirstInputModeOf(g.SigCond);
  g.InputRange = 0;
  ModeFuncList();
  // Temperature and DC share a code: the mode code tells them apart.
  WriteField(1, 0, kSigCondCode, g.SigCond == 0 ? int16_t{1} : g.SigCond);
  WriteModeRangeByte();
  RefreshPage1();
}

void SetupPage1::cboMode_Click() {
  const int index = cboMode.ListIndex();
  if (index < 0 || index == ModeComboIndex.at(static_cast<std::size_t>(g.InputMode))) return;
  g.InputMode = InputModeFromList(g.SigCond, static_cast<int16_t>(index));
  g.InputRange = 0;
  ModeFuncList();
  WriteModeRangeByte();
  RefreshPage1();
}

void SetupPage1::cboFunc_Click() {
  const int index = cboFunc.ListIndex();
  if (index < 0 || index == g.InputRange) return;
  g.InputRange = static_cast<int16_t>(index);
  WriteModeRangeByte();
  RefreshPage1();
}

void SetupPage1::cboDVal_Click() {
  if (!PageReady) return;
  // With no filter the meter has nothing but the filtered value to display.
  const int16_t value = AllowedDisplayValue(static_cast<int16_t>(cboDVal.ListIndex()));
  WriteFieldValue(FindField("DisplayValue"), value);
  cboDVal.SetListIndex(value);
}

void SetupPage1::cboDecPt_Click() {
  if (!PageReady) return;
  const auto code = static_cast<int16_t>(cboDecPt.ListIndex() + 1);
  WriteField(2, 0, kDecimalPoint, code);
  g.DisplayDp = code;
  Get1Text();
}

// BASIC and EXTENDED act when they get the focus, whether or not their value changes.

void SetupPage1::optBasic_GotFocus() {
  g.HelpContext = kMeterKindHelp;
  if (!PageReady) return;
  g.MeterKind = "0";
  ClearExtendedFields();
  RefreshPage1();
}

void SetupPage1::optExtend_GotFocus() {
  g.HelpContext = kMeterKindHelp;
  if (!PageReady) return;
  g.MeterKind = "1";
  // Nothing else comes back: custom curve and rate stay as BASIC left them. The bit makes
  // a comm option of "None" read as "RS232 Board".
  WriteField(2, 2, kOptionByte, 1);
  RefreshPage1();
}

// Navigation and the form's events.

void SetupPage1::cmdMMenu_Click() { BackToMainMenu(*this); }

void SetupPage1::cmdNextPage_Click() { GoToPage(*this, frmSetup2()); }

void SetupPage1::Form_Load() { PageReady = false; }

void SetupPage1::Form_Activate() {
  // Back from the value entry dialog the page shows what it showed, the dialog having
  // updated its box; every other arrival rebuilds the page from the image. A page loaded
  // afresh (closed during an entry and opened again) has nothing to show yet.
  if (g.EntryReturnFlag != 1 || !filled_) RefreshPage1();
}

void SetupPage1::Form_KeyDown(int& keyCode, int /*shift*/) {
  if (keyCode != kKeyF1) return;
  // The help on g.HelpContext, stored by the field that has the focus.
  ShowAppHelp();
}

void SetupPage1::Form_Unload(int& /*cancel*/) { frmMMenu().Show(); }

SetupPage1& frmSetup1() { return Forms().Use<SetupPage1>(); }

}  // namespace dpm
