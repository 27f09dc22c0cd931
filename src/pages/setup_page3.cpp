#include "pages/setup_page3.h"

#include <array>
#include <initializer_list>
#include <span>
#include <string>

#include "help/app_help.h"
#include "link/globals.h"
#include "link/image_access.h"
#include "pages/page_fields.h"
#include "pages/setup_page2.h"
#include "panelmenu/value_entry.h"
#include "platform/forms/form_manager.h"
#include "platform/numeric.h"
#include "setup/image_map.h"
#include "setup/image_positions.h"
#include "setup/input_facts.h"
#include "setup/main_menu.h"
#include "teds/teds.h"

namespace dpm {
namespace {

constexpr int16_t kParallelBcd = 3;
constexpr int16_t kRs485 = 2;

// Help contexts.
constexpr int16_t kFirstLockoutHelp = 1348;  // plus the box's index
constexpr int16_t kCharBoxHelp = 1381;
constexpr int16_t kLockoutJumperHelp = 1361;

// The lists in the order the page fills them; the check boxes come after the output mode.
constexpr std::array<FieldList<SetupPage3>, 10> kFieldLists = {{
    {&SetupPage3::cboBaudRate, "BaudRate", 1336},
    {&SetupPage3::cboAddress, "Address", 1337},
    {&SetupPage3::cboOutVal, "OutputValue", 1338},
    {&SetupPage3::cboOutRate, "OutputRate", 1339},
    {&SetupPage3::cboSerMode, "OutputMode", 1340},
    {&SetupPage3::cboRTS, "RtsType", 1342},
    {&SetupPage3::cboDuplex, "Duplex", 1343},
    {&SetupPage3::cboCircuit, "AnalogCircuit", 1345},
    {&SetupPage3::cboAnaValue, "AnalogValue", 1346},
    // Filled apart: on the first firmware the bit is the leading zeros of page 1.
    {&SetupPage3::cboTranChars, "TranChars", kCharBoxHelp},
}};
constexpr std::size_t kListsBeforeChecks = 5;
constexpr std::size_t kListsFilledFromImage = 9;

constexpr std::array<FieldCheck<SetupPage3>, 2> kFieldChecks = {{
    {&SetupPage3::chkAlmData, "IncludeAlarmData", 1341},
    {&SetupPage3::chkLF, "IncludeLF", 1344},
}};

constexpr std::array<ValueBox<SetupPage3>, 2> kValueBoxes = {{
    {&SetupPage3::txtAnaHi, "AnalogHigh", 1347},
    {&SetupPage3::txtAnaLo, "AnalogLow", 1347},
}};

// The analog boxes and the character boxes lie low on the page: the dialog stands in the
// lower position.
constexpr int16_t kEntrySide = 1;

// The lockouts of alarm items, which mean nothing without a relay board.
constexpr std::array<int, 3> kAlarmLockouts = {5, 6, 10};

// A byte of the image as the character boxes show it: its decimal number.
std::string ByteText(const ImageField& field) { return std::to_string(ReadFieldValue(field)); }

// The name of a character as a label shows it. Codes above 127 are the Latin-1 characters,
// which a label's text carries in two bytes.
std::string CharCaption(int16_t code) {
  if (code < 0x80) return CharName(code);
  return {static_cast<char>(0xC0 | (code >> 6)), static_cast<char>(0x80 | (code & 0x3F))};
}

}  // namespace

std::optional<LockoutTarget> LockoutWriteTarget(int index) {
  const LockoutTarget target = index <= 4   ? LockoutTarget{kLockoutsB, 4 - index}
                               : index <= 8 ? LockoutTarget{kLockoutsA, 8 - index}
                                            : LockoutTarget{kLockoutsA, 16 - index};
  if (target.bit < 0) return std::nullopt;
  return target;
}

SetupPage3::SetupPage3() : Form(kName, "DPM SETUP  PAGE  3  ") {
  for (int i = 0; i < kLockoutCount; ++i) chkLock[i].SetCaption(std::string(LockoutBits.at(i).caption));
  ConnectHandlers();
}

// A box of this page may still be the one the value entry dialog serves.
SetupPage3::~SetupPage3() { ForgetEntryBox(*this); }

void SetupPage3::ConnectHandlers() {
  on.Load = [this] { Form_Load(); };
  on.Activate = [this] { Form_Activate(); };
  on.KeyDown = [this](int& keyCode, int shift) { Form_KeyDown(keyCode, shift); };
  on.Unload = [this](int& cancel) { Form_Unload(cancel); };
  ConnectFieldLists<SetupPage3>(*this, kFieldLists);
  ConnectFieldChecks<SetupPage3>(*this, kFieldChecks);
  ConnectValueBoxes<SetupPage3>(*this, kValueBoxes, kEntrySide);
  chkLock.on.Click = [this](int index) { chkLock_Click(index); };
  chkLock.on.GotFocus = [](int index) { g.HelpContext = static_cast<int16_t>(kFirstLockoutHelp + index); };
  txtTranStart.on.Click = [this] { txtTranStart_Click(); };
  txtTranStop.on.Click = [this] { txtTranStop_Click(); };
  for (TextBox* box : {&txtTranStart, &txtTranStop}) box->on.GotFocus = [] { g.HelpContext = kCharBoxHelp; };
  lblAscTbl.on.Click = [this] { lblAscTbl_Click(); };
  lblLockout.on.Click = [this] { lblLockout_Click(); };
  cmdMMenu.on.Click = [this] { cmdMMenu_Click(); };
  cmdPrevPage.on.Click = [this] { cmdPrevPage_Click(); };
}

// The fill from the image.

void SetupPage3::Get3List() {
  const std::span<const FieldList<SetupPage3>> lists(kFieldLists);
  for (const auto& list : lists.first(kListsBeforeChecks)) FillFromField(this->*list.combo, list.field);
  for (const auto& check : kFieldChecks) FillFromField(this->*check.box, check.field);
  for (const auto& list : lists.subspan(kListsBeforeChecks, kListsFilledFromImage - kListsBeforeChecks)) {
    FillFromField(this->*list.combo, list.field);
  }
}

void SetupPage3::Get3Text() {
  txtAnaLo.SetText(ValueFieldText(FindField("AnalogLow")));
  txtAnaHi.SetText(ValueFieldText(FindField("AnalogHigh")));
  const ImageField& stop = FindField("StopChar");
  txtTranStop.SetText(ByteText(stop));
  lblTranStop.SetCaption(CharCaption(ReadFieldValue(stop)));
  const ImageField& start = FindField("StartChar");
  txtTranStart.SetText(ByteText(start));
  lblTranStart.SetCaption(CharCaption(ReadFieldValue(start)));
}

void SetupPage3::Lock1() {
  for (int i = 0; i < kLockoutCount; ++i) {
    const LockoutBit& lockout = LockoutBits.at(i);
    chkLock[i].SetValue(ReadField(lockout.bit, lockout.bit, lockout.position));
  }
  // Without a relay board the alarm items are shown locked, whatever the image says. The
  // page is not ready, so the ticks write nothing: the image keeps its bits.
  if (g.RelayOption == 0) {
    for (const int i : kAlarmLockouts) chkLock[i].SetValue(kChecked);
  }
  const ImageField& jumper = FindField("LockoutJumper");
  lblLockout.SetCaption(std::string(FieldText(jumper, ReadFieldValue(jumper))));
}

void SetupPage3::ShowDataSheet() {
  FetchTedsIfNeeded();
  lblSerNo.SetCaption(TedsSerialDigits());
  lblUnits.SetCaption(TedsUnits());
  lblDate.SetCaption(TedsCalDate());
  lblInitials.SetCaption(TedsCalInitials());
  lblPeriod.SetCaption(TedsCalPeriod());
  lblMID.SetCaption(TedsBridgeId());
}

// A Parallel BCD board has no serial line: only its output rate and value remain, with the
// custom characters. Duplex exists only on RS485.
void SetupPage3::CommRules() {
  if (g.CommOption == 0) {
    fraSerComm.SetVisible(false);
    return;
  }
  fraSerComm.SetVisible(true);
  const bool serial = g.CommOption != kParallelBcd;
  for (Control* c : std::initializer_list<Control*>{&fraBaudRate, &cboBaudRate, &fraAddress, &cboAddress, &fraSerMode,
                                                    &cboSerMode, &fraRTS, &cboRTS, &chkAlmData, &chkLF}) {
    c->SetEnabled(serial);
  }
  fraDuplex.SetEnabled(g.CommOption == kRs485);
  cboDuplex.SetEnabled(g.CommOption == kRs485);
}

// The first firmware knows no custom characters, and uses their bit for leading zeros.
void SetupPage3::TranCharsRules() {
  const bool custom = TranCharsOffered();
  const ImageField& field = FindField("TranChars");
  FillList(cboTranChars, field.texts, custom ? ReadFieldValue(field) : 0);
  for (Control* c : std::initializer_list<Control*>{&fraTranChars, &cboTranChars, &fraTranStart, &txtTranStart,
                                                    &lblTranStart, &fraTranStop, &txtTranStop, &lblTranStop}) {
    c->SetEnabled(custom);
  }
  for (Frame* frame : {&fraTranChars, &fraTranStart, &fraTranStop}) frame->SetVisible(custom);
}

void SetupPage3::Form_Load() { PageReady = false; }

void SetupPage3::Form_Activate() {
  PageReady = false;
  Get3List();
  Get3Text();
  if (g.TedsPresent == 1) ShowDataSheet();
  Lock1();
  CommRules();
  fraAnaOut.SetVisible(AnalogOffered());
  TranCharsRules();
  for (Frame* frame : {&fraSerNo, &fraUnits, &fraDate, &fraInitials, &fraPeriod, &fraMID}) {
    frame->SetVisible(g.TedsPresent == 1);
  }
  PageReady = true;
}

// The handlers.

void SetupPage3::chkLock_Click(int index) {
  if (!PageReady) return;
  if (const auto target = LockoutWriteTarget(index)) {
    WriteField(target->bit, target->bit, target->position, static_cast<int16_t>(chkLock[index].Value()));
  }
}

// A character box opens the value entry dialog on its byte. The dialog is not modal: what
// follows here runs at once and rewrites the byte as it stands, and the name of the new
// character follows when the page is rebuilt on the dialog's return.
void SetupPage3::CharBox_Click(TextBox& box, Label& name, int position) {
  g.CharCode = ToInt16(LeadingNumber(box.Text()));
  OpenValueBox(box, kByteEntryFormat, static_cast<int16_t>(position), kEntrySide, cmdMMenu);
  WriteField(7, 0, position, g.CharCode);
  name.SetCaption(CharCaption(g.CharCode));
  EndText();
}

void SetupPage3::txtTranStart_Click() { CharBox_Click(txtTranStart, lblTranStart, FindField("StartChar").position); }
void SetupPage3::txtTranStop_Click() { CharBox_Click(txtTranStop, lblTranStop, FindField("StopChar").position); }

void SetupPage3::EndText() { cmdMMenu.SetFocus(); }

// The label works as a button: it opens the ASCII table at once.
void SetupPage3::lblAscTbl_Click() {
  g.HelpContext = kAsciiTableHelp;
  ShowAppHelp();
}

void SetupPage3::lblLockout_Click() { g.HelpContext = kLockoutJumperHelp; }

void SetupPage3::Form_KeyDown(int& keyCode, int /*shift*/) {
  if (keyCode != kKeyF1) return;
  // The help on g.HelpContext, stored by the field that has the focus.
  ShowAppHelp();
}

void SetupPage3::Form_Unload(int& /*cancel*/) { frmMMenu().Show(); }

void SetupPage3::cmdMMenu_Click() { BackToMainMenu(*this); }
void SetupPage3::cmdPrevPage_Click() { GoToPage(*this, frmSetup2()); }

SetupPage3& frmSetup3() { return Forms().Use<SetupPage3>(); }

}  // namespace dpm
