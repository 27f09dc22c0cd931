#include "cli/meter_line.h"

#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>

#include "link/globals.h"
#include "link/startup.h"
#include "link/transport.h"
#include "platform/faults.h"
#include "platform/numeric.h"
#include "platform/services.h"

namespace dpm::cli {
namespace {

namespace fs = std::filesystem;

constexpr int kBarWidth = 30;

std::string ReadSettingsText(const fs::path& file) {
  std::error_code error;
  if (!fs::is_regular_file(file, error)) throw UsageError(file.string() + ": no link settings file");
  std::ifstream in(file, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  if (!in || text.str().empty()) throw UsageError(file.string() + ": cannot be read, or is empty");
  return text.str();
}

// The link globals as start-up sets them, from the settings text with the command line's
// changes. The port opens whatever position 16 says: every command that builds a line is
// one the user gave to talk to the meter.
void ApplySettings(const fs::path& settingsFile, const LinkOverrides& overrides) {
  try {
    ApplyLinkSettings(RepairLinkSettings(FirstFieldOf(ReadSettingsText(settingsFile))));
  } catch (const IndexFault& fault) {
    throw UsageError(settingsFile.string() + ": " + fault.what());
  }
  if (overrides.baudIndex) g.BaudIndex = static_cast<int16_t>(*overrides.baudIndex);
  if (overrides.address) {
    const char address = *overrides.address;
    g.MeterAddress.assign(1, address);
    g.MeterAddressNumber = static_cast<int16_t>(address >= 'A' ? address - 55 : address - 48);
  }
  g.ImageLoaded = 0;
  g.DefaultFirmwareRev = 4;
  g.CharTime = ToInt16(10000.0 / LeadingNumber(BaudTable[static_cast<std::size_t>(g.BaudIndex)]));
  g.FirmwareRev = ToInt16(LeadingNumber(Mid(g.LinkSettings, 13, 3)));
  g.CalibSetting = ToInt16(LeadingNumber(Mid(g.LinkSettings, 17, 1)));
  g.SetupImage = std::string(128, '0');
}

}  // namespace

MessageAnswer LineDialogs::MessageBox(MessageIcon, const std::string& title, const std::string& text, MessageButtons) {
  lastMessage_ = title + ": " + text;
  for (char& c : lastMessage_) {
    if (c == '\r' || c == '\n') c = ' ';
  }
  return MessageAnswer::Ok;
}

// Draws the progress bar and the status line beside it on standard error, over and over
// on one line, and wipes the line when the bar goes away.
class TransferPieces::TerminalBar : public ControlView {
 public:
  TerminalBar(const Label& status, const ProgressBar& bar) : status_(status), bar_(bar) {}

  void Update(Property property) override {
    if (property != Property::Value && property != Property::Visible) return;
    if (!bar_.Visible()) {
      std::fputs("\r\033[K", stderr);
      return;
    }
    const int span = std::max(1, bar_.Max() - bar_.Min());
    const int done = (bar_.Value() - bar_.Min()) * kBarWidth / span;
    std::fprintf(stderr, "\r\033[K[%s%s] %d/%d %s", std::string(static_cast<std::size_t>(done), '#').c_str(),
                 std::string(static_cast<std::size_t>(kBarWidth - done), '.').c_str(), bar_.Value() - bar_.Min(), span,
                 status_.Caption().c_str());
    std::fflush(stderr);
  }

 private:
  const Label& status_;
  const ProgressBar& bar_;
};

TransferPieces::TransferPieces() : Form("frmMMenu", "DPM MAIN  MENU") {
  prgTransfer.SetVisible(false);
  if (isatty(STDERR_FILENO)) {
    bar_ = std::make_unique<TerminalBar>(lblGPText, prgTransfer);
    prgTransfer.AttachView(bar_.get());
  }
}

TransferPieces::~TransferPieces() { prgTransfer.AttachView(nullptr); }

bool TransferPieces::Failed() const { return lblGPText.ForeColor() == ColRed; }

MeterLine::MeterLine(const fs::path& programFolder, const LinkOverrides& overrides) {
  ApplySettings(programFolder / "Settings.SSS", overrides);
  fs::path portFolder = programFolder;
  if (overrides.port && overrides.port->find('/') != std::string::npos) {
    const fs::path device = fs::absolute(*overrides.port);
    std::error_code error;
    if (!fs::exists(device, error)) throw UsageError("--port " + *overrides.port + ": no such device");
    std::string pattern = (fs::temp_directory_path() / "dpm-cli-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) throw SerialFault("Cannot make a folder for the port's link");
    deviceFolder_.path = pattern;
    fs::create_symlink(device, deviceFolder_.path / "COM1");
    portFolder = deviceFolder_.path;
    g.ComPortNumber = 1;
  } else if (overrides.port) {
    g.ComPortNumber = static_cast<int16_t>(std::stoi(*overrides.port));
  }
  port_ = std::make_unique<qt::QtSerialPort>(portFolder);
  Platform() = Services{&clock_, &events_, port_.get(), &dialogs};
  try {
    OpenMeterLink();
  } catch (...) {
    Platform() = Services{};
    throw;
  }
}

MeterLine::~MeterLine() {
  try {
    // As the program's Exit does: what is queued goes out before the port closes.
    if (port_->PortOpen()) FlushLink();
  } catch (const std::exception&) {
    // The line is going away with the program; there is nothing left to save.
  }
  Platform() = Services{};
}

MeterLine::DeviceFolder::~DeviceFolder() {
  std::error_code ignored;
  if (!path.empty()) fs::remove_all(path, ignored);
}

}  // namespace dpm::cli
