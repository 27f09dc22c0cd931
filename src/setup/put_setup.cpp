#include "setup/put_setup.h"

#include "link/globals.h"
#include "link/image_access.h"
#include "link/transport.h"
#include "platform/dialogs.h"
#include "platform/forms/controls.h"
#include "platform/numeric.h"
#include "platform/serial.h"
#include "platform/services.h"
#include "setup/image_map.h"
#include "setup/image_positions.h"
#include "setup/setup_files.h"

namespace dpm {
namespace {

constexpr const char* kPutting = "Putting data to the DPM.";
constexpr const char* kTransferred = "Putting data to the DPM.  Data Transferred O.K.";
constexpr const char* kFailed = "Data transfer unsuccessful. Check connections and try again.";

constexpr int16_t kTemperatureBoard = 1;
// No write is answered, so nothing ever sets this; the checks stay as the dialogue's guard.
constexpr int16_t kTransferFailed = 1;
// The board kind question and the five blocks.
constexpr int kPutSteps = 6;

int16_t BoardKindOfDigit(const std::string& text, int position) {
  return BoardKindOf(static_cast<int>(LeadingHexValue(Mid(text, static_cast<std::size_t>(position), 1))));
}

// The meter's conditioner, from the high digit of its mode and range register.
int16_t MeterBoardKind() {
  SendBody("A1");  // back to command mode, in case the meter is streaming readings
  DelaySeconds(0.3f);
  g.ReplyText.clear();
  SendBody("G12D");
  DelayChars(10);
  ReceiveReply();
  return BoardKindOfDigit(g.ReplyText, 1);
}

void Refuse(int16_t imageKind, int16_t meterKind) {
  Platform().dialogs->MessageBox(
      MessageIcon::Critical, "Put Data",
      "You cannot write " + std::string(BoardKindNames[static_cast<std::size_t>(imageKind)]) + " meter data" + CR +
          "to a " + std::string(BoardKindNames[static_cast<std::size_t>(meterKind)]) + " meter.");
  Hourglass(false);
}

void SendBlock(const std::string& command, int position, std::size_t digits, bool withZ = false) {
  SendBody(command + Mid(g.SetupImage, static_cast<std::size_t>(position), digits), withZ);
}

// The meter takes a new baud rate and address as soon as it has them; the line follows.
// The character time stays that of the old rate.
void FollowNewLineSettings() {
  const int16_t baudIndex = ReadField(6, 4, kSerialB);
  if (baudIndex != g.BaudIndex) {
    g.BaudIndex = baudIndex;
    Platform().meterLink->SetSettings(std::string(BaudTable.at(static_cast<std::size_t>(baudIndex))) + ",n,8,1");
  }
  // The comparison is with the address of the settings file, which stays as it was.
  const int16_t address = ReadField(4, 0, kSerialA);
  if (address != g.MeterAddressNumber) {
    g.MeterAddress = std::string(1, static_cast<char>(address >= 10 ? address + 55 : address + 48));
  }
}

// Meters from revision 9 commit a small block faster.
void PauseAfterSmallBlock() { DelaySeconds(g.FirmwareRev >= 9 ? 0.2f : 1.0f); }

void Fail(const TransferScreen& screen) {
  ShowStatus(screen, kFailed, ColRed);
  Hourglass(false);
}

}  // namespace

void PutSetup(const TransferScreen& screen) {
  Hourglass(true);
  TransferProgress progress(screen, kPutSteps);
  const int16_t meterKind = MeterBoardKind();
  const int16_t imageKind = BoardKindOfDigit(g.SetupImage, kModeRangeByte);
  if (imageKind != meterKind) return Refuse(imageKind, meterKind);
  progress.Step();

  ShowStatus(screen, kPutting, ColGreen);
  PadOldImage();
  SendBlock("WA18", 21, 40);
  DelaySeconds(2.0f);
  if (g.ErrFlag == kTransferFailed) return Fail(screen);
  progress.Step();
  SendBlock("WF0E", 61, 60);
  DelaySeconds(2.0f);
  if (g.ErrFlag == kTransferFailed) return Fail(screen);
  progress.Step();

  FollowNewLineSettings();

  // A temperature meter has no custom curve and never gets these words.
  if (meterKind != kTemperatureBoard) {
    SendBlock("W31D", 1, 12, true);
    PauseAfterSmallBlock();
    if (g.ErrFlag == kTransferFailed) return Fail(screen);
  }
  progress.Step();
  SendBlock("W136", 129, 4, true);
  PauseAfterSmallBlock();
  if (g.ErrFlag == kTransferFailed) return Fail(screen);
  progress.Step();
  SendBlock("W26D", 121, 8);
  DelaySeconds(0.5f);
  if (g.ErrFlag == kTransferFailed) return Fail(screen);

  screen.lblGPText.SetCaption(kTransferred);
  Hourglass(false);
}

}  // namespace dpm
