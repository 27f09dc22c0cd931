#include "setup/transfer.h"

#include "link/globals.h"
#include "link/transport.h"
#include "platform/dialogs.h"
#include "platform/forms/controls.h"
#include "platform/services.h"

namespace dpm {

void ShowStatus(const TransferScreen& screen, const std::string& text, int32_t colour) {
  screen.lblGPText.SetVisible(true);
  screen.lblGPText.SetForeColor(colour);
  screen.lblGPText.SetCaption(text);
}

TransferProgress::TransferProgress(const TransferScreen& screen, int steps) : bar_(screen.prgTransfer) {
  bar_.SetRange(0, steps);
  bar_.SetValue(0);
  bar_.SetVisible(true);
}

TransferProgress::~TransferProgress() { bar_.SetVisible(false); }

void TransferProgress::Step() {
  if (bar_.Value() < bar_.Max()) bar_.SetValue(bar_.Value() + 1);
}

void Hourglass(bool on) {
  if (Dialogs* dialogs = Platform().dialogs) dialogs->SetHourglass(on);
}

}  // namespace dpm
