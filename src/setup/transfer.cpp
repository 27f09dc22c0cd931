#include "setup/transfer.h"

#include "link/globals.h"
#include "link/transport.h"
#include "platform/dialogs.h"
#include "platform/forms/controls.h"
#include "platform/services.h"

namespace dpm {

void SendBody(const std::string& body, bool withZ) {
  g.CommandText = "*" + g.MeterAddress + body;
  if (withZ && g.FirmwareRev > 8) g.CommandText += "Z";
  SendCommand();
}

void ShowStatus(const TransferScreen& screen, const std::string& text, int32_t colour) {
  screen.lblGPText.SetVisible(true);
  screen.lblGPText.SetForeColor(colour);
  screen.lblGPText.SetCaption(text);
}

void ShowProgress(const TransferScreen& screen, const std::string& baseText, const std::string& part) {
  screen.lblGPText.SetCaption(baseText + "  (" + part + ")");
}

void Hourglass(bool on) {
  if (Dialogs* dialogs = Platform().dialogs) dialogs->SetHourglass(on);
}

}  // namespace dpm
