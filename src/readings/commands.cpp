#include "readings/commands.h"

#include "link/globals.h"
#include "link/transport.h"
#include "platform/dialogs.h"
#include "platform/events.h"
#include "platform/forms/form_manager.h"
#include "platform/services.h"
#include "setup/main_menu.h"

namespace dpm {
namespace {

// The last left edges at which the picture still takes a step, on the way to the meter and
// on the way back: the road ends at 4425 and at 2625.
constexpr int kLastLeftToMeter = 4415;
constexpr int kLastLeftFromMeter = 2635;

// Where a reading is printed in its display, in twips.
constexpr double kReadingX = 230;
constexpr double kReadingY = 60;

// The wait for a reading's reply, in characters (plus 100 ms).
constexpr int16_t kReadingReplyChars = 15;

void ServeEvents() { Platform().events->Serve(); }

void Hourglass(bool on) {
  if (Dialogs* dialogs = Platform().dialogs) dialogs->SetHourglass(on);
}

}  // namespace

Commands::Commands() : Form(kName, "COMMANDS") {
  lblErrText.SetVisible(false);
  on.Load = [this] { Form_Load(); };
  on.Unload = [this](int& cancel) { Form_Unload(cancel); };
  cmdMRst.on.Click = [this] { cmdMRst_Click(); };
  cmdFRst.on.Click = [this] { cmdFRst_Click(); };
  cmdLARst.on.Click = [this] { cmdLARst_Click(); };
  cmdPeak.on.Click = [this] { cmdPeak_Click(); };
  cmdRmtDspy.on.Click = [this] { cmdRmtDspy_Click(); };
  cmdLatest.on.Click = [this] { cmdLatest_Click(); };
  cmdPeakRd.on.Click = [this] { cmdPeakRd_Click(); };
  cmdSend.on.Click = [this] { cmdSend_Click(); };
  txtRmtDspy.on.GotFocus = [this] { txtRmtDspy_GotFocus(); };
  cmdOK.on.Click = [this] { cmdOK_Click(); };
  Timer1.on.Timer = [this] { Timer1_Timer(); };
}

// The computer and the meter are drawn at build time into the program's folder, from the
// same source and by the same tool as the current pictures, and found by name like them:
// one road for every picture of the screen, and a drawing is changed by editing text.
void Commands::Form_Load() {
  picCmptrCtr.SetPicture(LoadPicture(kComputerPicture));
  Picture3.SetPicture(LoadPicture(kMeterPicture));
}

void Commands::Form_Unload(int& /*cancel*/) { frmMMenu().Show(); }

// The resets: the line turns green with what went out, and nothing comes back.

void Commands::cmdMRst_Click() { SendReset("C0", "Meter Reset Command sent."); }
void Commands::cmdFRst_Click() { SendReset("C1", "Function Reset Command sent."); }
void Commands::cmdLARst_Click() { SendReset("C2", "Latched Alarms Reset Command sent."); }
void Commands::cmdPeak_Click() { SendReset("C3", "Peak Reset Command sent."); }
void Commands::cmdRmtDspy_Click() { SendReset("C4", "Remote Display Reset Command sent."); }

void Commands::ShowSent(const char* status) {
  lblErrText.SetVisible(true);
  lblErrText.SetForeColor(ColGreen);
  lblErrText.SetCaption(status);
}

void Commands::SendReset(const char* code, const char* status) {
  ShowSent(status);
  SendBody(code);
  AnimateToMeter();
}

// The readings.

void Commands::cmdLatest_Click() {
  RequestReading("B1", "Latest Reading request sent.", picLatest,
                 "Latest Reading request sent.    Latest Reading received.");
}

void Commands::cmdPeakRd_Click() {
  RequestReading("B2", "Peak Request sent.", picPeakRd, "Peak Request sent.    Peak received.");
}

// Both displays are wiped whichever reading is asked for, and the status line is let show
// before the traffic starts.
void Commands::RequestReading(const char* code, const char* status, PictureBox& display, const char* received) {
  ClearReadings();
  ShowSent(status);
  ServeEvents();
  SendBody(code);
  AnimateToMeter();
  DelayChars(kReadingReplyChars);
  ReceiveReply();
  // ReceiveReply never reports 1, so a failed exchange takes this road as well and prints
  // whatever the reply text holds: the text of an earlier exchange, or nothing.
  if (g.ErrFlag != 1) {
    AnimateFromMeter();
    lblErrText.SetCaption(received);
    display.SetCurrentX(kReadingX);
    display.SetCurrentY(kReadingY);
    display.Print(g.ReplyText);
  } else {
    lblErrText.SetForeColor(ColRed);
    lblErrText.SetCaption("Communications failure.  Program may have to be re-started.");
  }
}

void Commands::ClearReadings() {
  picLatest.Cls();
  picPeakRd.Cls();
}

// The remote display: the text goes out as typed, of any length. It stays in the box, so a
// second Send sends it again, until the box gets the focus to take the next one.
void Commands::cmdSend_Click() {
  RemoteTextSent = true;
  ShowSent("Remote data sent to Display.");
  ServeEvents();
  SendBody("H" + txtRmtDspy.Text());
  AnimateToMeter();
}

void Commands::txtRmtDspy_GotFocus() {
  if (!RemoteTextSent) return;
  txtRmtDspy.SetText("");
  RemoteTextSent = false;
}

// Back to the main menu; this screen stays where it is, behind it.
void Commands::cmdOK_Click() {
  Hourglass(true);
  frmMMenu().Show();
  Hourglass(false);
}

void Commands::Timer1_Timer() { TickFlag = 1; }

// The animation.

// Waits for the next tick of Timer1. Another animation that ran meanwhile has turned the
// timer off at its end: it is turned on again, so that this one goes on at its pace instead
// of standing still. Closing the screen or ending the program ends the wait.
void Commands::WaitForTick() {
  while (TickFlag != 1 && !IsUnloaded() && !Forms().Ended()) {
    if (!Timer1.Enabled()) Timer1.SetEnabled(true);
    ServeEvents();
  }
}

void Commands::AnimateToMeter() {
  picCurrent.Move(kCurrentAtComputer, kCurrentTop);
  picCurrent.SetPicture(LoadPicture("LRCurr.BMP"));
  TickFlag = 0;
  Timer1.SetEnabled(true);
  WaitForTick();
  do {
    picCurrent.SetLeft(picCurrent.Left() + kCurrentStep);
    TickFlag = 0;
    WaitForTick();
  } while (picCurrent.Left() <= kLastLeftToMeter);
  picCurrent.SetPicture(LoadPicture("Blank.BMP"));
  Timer1.SetEnabled(false);
}

void Commands::AnimateFromMeter() {
  picCurrent.Move(kCurrentAtMeter, kCurrentTop);
  picCurrent.SetPicture(LoadPicture("RLCurr.BMP"));
  TickFlag = 0;
  Timer1.SetEnabled(true);
  WaitForTick();
  do {
    picCurrent.SetLeft(picCurrent.Left() - kCurrentStep);
    TickFlag = 0;
    WaitForTick();
  } while (picCurrent.Left() >= kLastLeftFromMeter);
  picCurrent.SetPicture(LoadPicture("Blank.BMP"));
  Timer1.SetEnabled(false);
}

Commands& frmCmds() { return Forms().Use<Commands>(); }

}  // namespace dpm
