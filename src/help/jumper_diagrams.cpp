#include "help/jumper_diagrams.h"

#include <utility>

#include "help/app_help.h"
#include "link/globals.h"
#include "platform/dialogs.h"
#include "platform/faults.h"
#include "platform/forms/form_manager.h"
#include "platform/services.h"

namespace dpm {
namespace {

// The connector of the DC, temperature and load cell boards: four terminals, pin 4 on top.
std::vector<JumperLabel> SignalPins(const std::string& board) {
  return {{"lblPin", 0, "4 + Signal In"},
          {"lblPin", 1, "3 - Signal In"},
          {"lblPin", 2, "2 + Excitation"},
          {"lblPin", 3, "1 - Excitation"},
          {"lblBoard", -1, board}};
}

// The modular jack of the revision G serial boards, six pins in one text.
constexpr const char* kRs232Jack = "6 N/C     5 ISO GND 4 RX      3 TX      2 RTS     1 N/C";
constexpr const char* kRs485Jack = "6 ISO GND 5 BRX     4 ARX     3 ATX     2 BTX     1 ISO GND";

std::vector<JumperSheet> MakeSheets() {
  return {
      {"frmJDCSC", "DC Signal Conditioner Jumpers", 1371, "JDCSC.BMP", true, {}, SignalPins("DC Signal Conditioner")},
      {"frmJDCSCM",
       "DC Signal Conditioner Rev M Jumpers",
       1394,
       "JDCSCM.BMP",
       true,
       {},
       SignalPins("DC Signal Conditioner")},
      {"frmJTempSC",
       "Temperature Signal Conditioner Jumpers",
       1372,
       "JTempSC.BMP",
       true,
       {},
       SignalPins("Temperature Signal Conditioner")},
      {"frmJRMSSC",
       "RMS Signal Conditioner Jumpers",
       1373,
       "JRMSSC.BMP",
       true,
       {},
       {{"lblPin", 0, "4 Signal High .2,2V, Current Inputs"},
        {"lblPin", 1, "3 Signal Low - AC Neutral"},
        {"lblPin", 2, "2 N/C"},
        {"lblPin", 3, "1 Signal High 20,200,660V Inputs"},
        {"lblBoard", -1, "RMS Signal Conditioner"}}},
      // The 10 V excitation of a load cell is set on the power supply: the note says where.
      {"frmJLCSC",
       "Load Cell Signal Conditioner Jumpers",
       1374,
       "JLCSC.BMP",
       true,
       "      Note: Click on Jumpers/Power Supply to select jumper for 10V excitation.",
       {{"lblPin", 0, "6 + Sense"},
        {"lblPin", 1, "5 +10V Excitation"},
        {"lblPin", 2, "4 + Signal In"},
        {"lblPin", 3, "3 - Signal In"},
        {"lblPin", 4, "2 - Sense"},
        {"lblPin", 5, "1 -10V Excitation"},
        {"lblBoard", -1, "Load Cell Signal Conditioner"}}},
      {"frmJPS",
       "Power Supply Jumpers",
       1375,
       "JPS.BMP",
       true,
       {},
       {{"lblPin", 0, "Digital Ground"},
        {"lblPin", 1, "Digital Input A"},
        {"lblPin", 2, "Digital In B (+5V)"},
        {"lblPin", 3, "Earth Ground"},
        {"lblPin", 4, "AC Lo (DC Ret)"},
        {"lblPin", 5, "AC Hi (+DC Hi)"},
        {"lblBoard", -1, "Power Supply"}}},
      {"frmJRS232F",
       "RS232/485 Digital Interface Board  Rev F",
       1380,
       "JRS232F.BMP",
       true,
       {},
       {{"lblPin", 0, "6 5 4 3 2 1"}, {"lblRS232", -1, "RS232"}, {"lblRS485", -1, "RS485"}, {"lblRev", -1, "Rev F"}}},
      {"frmJRS232G",
       "RS232 Digital Interface Board Revision G",
       1383,
       "JRS232G.BMP",
       true,
       {},
       {{"lblRJ11", 0, "RJ11"}, {"lblPin", 0, kRs232Jack}, {"lblBoard", -1, "RS232/485"}, {"lblRev", -1, "Rev G"}}},
      {"frmJRS485G",
       "RS485 Digital Interface Board Revision G",
       1384,
       "JRS485G.BMP",
       true,
       {},
       {{"lblRJ11", 0, "RJ11"},
        {"lblPin", 0, kRs485Jack},
        {"lblRJ11", 1, "RJ11"},
        {"lblPin", 1, kRs485Jack},
        {"lblBoard", -1, "RS232/485"},
        {"lblRev", -1, "Rev G"}}},
      // The board before its revision letters; its help text is not shown on it.
      {"frmJRS232",
       "RS232/485 Digital Interface Board",
       1376,
       "JRS232F.BMP",
       false,
       {},
       {{"lblPin", 0, "6 5 4 3 2 1"}, {"lblBoard", -1, "RS232   RS485  "}}},
  };
}

template <std::size_t... I>
JumperDiagram* UseScreen(const std::string& form, std::index_sequence<I...>) {
  JumperDiagram* screen = nullptr;
  ((screen == nullptr && form == kJumperForms[I] ? (screen = &Forms().Use<JumperForm<I>>()) : nullptr), ...);
  return screen;
}

}  // namespace

const std::vector<JumperSheet>& JumperSheets() {
  static const std::vector<JumperSheet> sheets = MakeSheets();
  return sheets;
}

const JumperSheet& JumperSheetOf(const std::string& form) {
  for (const JumperSheet& sheet : JumperSheets())
    if (sheet.form == form) return sheet;
  throw RuntimeFault("No jumper screen " + form);
}

JumperDiagram::JumperDiagram(const JumperSheet& sheet) : Form(sheet.form, sheet.caption), sheet_(sheet) {
  if (sheet.hasText) lblText = std::make_unique<Label>(*this, "lblText");
  for (const JumperLabel& label : sheet.labels) {
    labels.push_back(std::make_unique<Label>(*this, label.name, label.caption, nullptr, label.index));
  }
  on.Load = [this] { Form_Load(); };
  on.Activate = [this] { Form_Activate(); };
  // The next help text must not go to a screen that is gone.
  on.Unload = [this](int&) {
    if (HelpForm == this) HelpForm = nullptr;
  };
  cmdOK.on.Click = [this] { cmdOK_Click(); };
  cmdPrinter.on.Click = [this] { cmdPrinter_Click(); };
}

void JumperDiagram::Form_Load() { imgBoard.SetPicture(LoadPicture(sheet_.board)); }

// The text is read anew at each activation, so that a screen shown again shows the help
// files as they are now. A text that cannot be read leaves the label as it was, after the
// message that says why.
void JumperDiagram::Form_Activate() {
  HelpForm = this;
  g.HelpContext = sheet_.helpContext;
  if (!ShowHelpText()) return;
  if (!sheet_.note.empty() && lblText != nullptr) {
    const std::string text = lblText->Caption().substr(0, kTextBeforeNote);
    lblText->SetCaption(text + "\n\n" + sheet_.note);
  }
  cmdOK.SetEnabled(true);
}

void JumperDiagram::cmdOK_Click() { Unload(); }

void JumperDiagram::cmdPrinter_Click() {
  if (Dialogs* dialogs = Platform().dialogs) dialogs->PrintForm(*this);
}

JumperDiagram& JumperScreen(const std::string& form) {
  JumperDiagram* screen = UseScreen(form, std::make_index_sequence<kJumperForms.size()>{});
  if (screen == nullptr) throw RuntimeFault("No jumper screen " + form);
  return *screen;
}

}  // namespace dpm
