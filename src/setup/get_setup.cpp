#include "setup/get_setup.h"

#include "link/globals.h"
#include "link/image_access.h"
#include "link/transport.h"
#include "platform/forms/controls.h"
#include "platform/numeric.h"
#include "setup/image_positions.h"

namespace dpm {
namespace {

constexpr const char* kGetting = "Getting data from the DPM";
constexpr const char* kReceived = "Getting data from the DPM.  Data received O.K.";
constexpr const char* kFailed = "Failed to Get data, check connections and restart program.";

constexpr int kProbeWord = 33;  // the four digits of meter word 15
constexpr int16_t kLoadCell = 3;
// The failure code the later blocks are checked for. The transport never gives it, so the
// checks stay as guards and a later failure passes unnoticed.
constexpr int16_t kTransferFailed = 1;
// The blocks, the load cell facts, the option boards and the kind probe.
constexpr int kGetSteps = 5;

// Meters before revision 9 need a second between the blocks to ready the next one.
void PauseForOldMeters() {
  if (g.FirmwareRev < 9) DelaySeconds(1.0f);
}

void Fail(const TransferScreen& screen, const std::string& text) {
  ShowStatus(screen, text, ColRed);
  Hourglass(false);
}

// Asks a Load Cell meter whether it has data sheet hardware and a data sheet, and fetches
// the tare and data sheet byte from a meter that has the hardware. False when it failed.
bool GetLoadCellFacts() {
  g.ReplyText.clear();
  SendBody("R17F");
  ReceiveReply();
  const int32_t facts = ToInt32(LeadingNumber(g.ReplyText));
  g.TedsHardware = static_cast<int16_t>((facts >> 1) & 1);
  if (g.TedsHardware != 1) return true;
  g.TedsPresent = static_cast<int16_t>(facts & 1);
  SendBody("X136");
  ReceiveReply();
  if (g.ErrFlag == kTransferFailed) return false;
  g.SetupImage += g.ReplyText;
  DelayMs(500);
  return true;
}

// The option register as the meter reports it now replaces the stored option byte.
void GetOptionBoards() {
  SendBody("G130");
  DelayChars(10);
  ReceiveReply();
  DelaySeconds(0.1f);
  ReplaceImageDigits(kOptionByte, Mid(g.ReplyText, 1, 2));
}

// An EXTENDED meter keeps a 1 written to the first digit of word 15; a BASIC one does not.
// The word is written back as it was, without "Z" whatever the revision.
void ProbeMeterKind() {
  g.MeterKind = "0";
  const std::string saved = Mid(g.SetupImage, kProbeWord, 4);
  SendBody("W115" + ("1" + Mid(saved, 2, 3)), true);
  DelaySeconds(g.FirmwareRev >= 9 ? 0.2f : 1.0f);
  SendBody("G1DE");
  DelayChars(10);
  ReceiveReply();
  DelaySeconds(0.2f);
  if (Mid(g.ReplyText, 1, 1) == "1") g.MeterKind = "1";
  SendBody("W115" + saved);
}

}  // namespace

void GetSetup(const TransferScreen& screen) {
  Hourglass(true);
  ShowStatus(screen, kGetting, ColGreen);
  TransferProgress progress(screen, kGetSteps);

  SendBody("XU1D", true);
  DelayChars(128);
  ReceiveReply();
  if (g.ErrFlag != kReplyOk) {
    // The number stands right against the words, as the status line has always shown it.
    Fail(screen, "ErrFlag = " + NumberText(static_cast<int64_t>(g.ErrFlag)) + kFailed);
    return;
  }
  g.SetupImage = g.ReplyText;
  PauseForOldMeters();
  progress.Step();

  SendBody("X26D", true);
  DelayChars(16);
  ReceiveReply();
  if (g.ErrFlag == kTransferFailed) return Fail(screen, kFailed);
  g.SetupImage += g.ReplyText;
  PauseForOldMeters();
  progress.Step();

  if (ReadField(1, 0, kSigCondCode) == kLoadCell) {
    if (!GetLoadCellFacts()) return Fail(screen, kFailed);
  }
  DelaySeconds(1.0f);
  progress.Step();

  // From here on the commands and pauses follow this meter's own revision.
  g.FirmwareRev = ReadField(7, 0, kFirmwareRev);
  g.AppClass = 1;
  WriteField(7, 0, kGetMarker, 1);

  GetOptionBoards();
  progress.Step();
  ProbeMeterKind();
  progress.Step();

  screen.lblGPText.SetCaption(kReceived);
  screen.mnuCmds.SetEnabled(true);
  screen.mnuView.SetEnabled(true);
  screen.mnuPut.SetEnabled(true);
  Hourglass(false);
  g.ImageLoaded = 1;
  g.TedsEnabled = g.TedsPresent == 1 ? static_cast<int16_t>(1 - ReadField(0, 0, kTedsTareByte)) : int16_t{0};
}

}  // namespace dpm
