#include "setup/setup_file_menu.h"

#include <filesystem>

#include "link/globals.h"
#include "platform/dialogs.h"
#include "platform/faults.h"
#include "platform/forms/controls.h"
#include "platform/forms/form_manager.h"
#include "platform/services.h"
#include "setup/setup_files.h"

namespace dpm {
namespace {

constexpr const char* kFilter = "Setup files (*.DPM)|*.DPM";
constexpr const char* kDefaultLoaded = "Default Setup data loaded into the 3-Page Form.";

Dialogs& Ask() { return *Platform().dialogs; }

// A file dialog may move the working directory; the program's files are found relative
// to it, so it is put back whatever happens.
class KeepWorkingDirectory {
 public:
  KeepWorkingDirectory() : folder_(std::filesystem::current_path(error_)) {}
  ~KeepWorkingDirectory() {
    if (!error_) std::filesystem::current_path(folder_, error_);
  }
  KeepWorkingDirectory(const KeepWorkingDirectory&) = delete;
  KeepWorkingDirectory& operator=(const KeepWorkingDirectory&) = delete;

 private:
  std::error_code error_;
  std::filesystem::path folder_;
};

void EnableSetupMenus(const TransferScreen& screen) {
  screen.mnuView.SetEnabled(true);
  screen.mnuPut.SetEnabled(true);
}

}  // namespace

void DefaultSetup(const TransferScreen& screen) {
  DefaultData();
  ShowStatus(screen, kDefaultLoaded, ColWhite);
  EnableSetupMenus(screen);
}

void OpenSetup(const TransferScreen& screen, std::string& setupFileName) {
  const KeepWorkingDirectory keep;
  // Each turn asks the user again, so a file that cannot be read never loops by itself.
  while (!Forms().Ended()) {
    const std::optional<std::string> chosen = Ask().OpenFileName("Open Setup File", kFilter);
    if (!chosen) continue;
    setupFileName = *chosen;
    if (!LoadSetupFile(*chosen)) continue;
    EnableSetupMenus(screen);
    g.ImageLoaded = 1;
    return;
  }
}

void SaveSetup(const std::string& setupFileName) {
  const KeepWorkingDirectory keep;
  if (setupFileName.empty()) {
    Ask().Beep();
    Ask().MessageBox(MessageIcon::Exclamation, "Continue", "No file name active, use Save Setup As");
    return;
  }
  // Asked even when the file does not exist yet.
  const MessageAnswer answer =
      Ask().MessageBox(MessageIcon::Exclamation, "", "Current data will be replaced.", MessageButtons::OkCancel);
  if (answer != MessageAnswer::Ok) return;
  SaveSetupFile(setupFileName);
}

void SaveSetupAs(std::string& setupFileName) {
  // The image is never empty after start, so a setup that was never loaded can be saved.
  if (g.SetupImage.empty()) {
    Ask().Beep();
    Ask().MessageBox(MessageIcon::Exclamation, "Continue", "No Setup data loaded");
    return;
  }
  const KeepWorkingDirectory keep;
  const std::optional<std::string> chosen = Ask().SaveFileName("Save Setup File As", kFilter);
  if (!chosen) return;
  setupFileName = *chosen;
  try {
    SaveSetupFile(*chosen);
  } catch (const FileFault&) {
    // Save As gives up quietly; the file on disk is as it was before.
  }
}

}  // namespace dpm
