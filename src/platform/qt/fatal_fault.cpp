#include "platform/qt/fatal_fault.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include <QApplication>
#include <QMessageBox>

#include "link/globals.h"
#include "link/recovery.h"

namespace dpm::qt {
namespace {

std::filesystem::path ProgramFolder() {
  if (QCoreApplication::instance()) return QCoreApplication::applicationDirPath().toStdString();
  return std::filesystem::current_path();
}

// A message box needs a screen; offscreen and minimal have none anybody could see, and a
// modal box there would wait for ever.
bool CanShowMessageBox() {
  if (!qobject_cast<QApplication*>(QCoreApplication::instance())) return false;
  const QString platform = QGuiApplication::platformName();
  return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

// Saves the setup in hand and says where it went, or why it could not be saved.
std::string SaveSetupInHand(const std::filesystem::path& programFolder) {
  if (!SetupInHand()) return "No setup was loaded, so none was saved.";
  try {
    return "The setup in hand was saved to \"" + WriteRecoveryFile(programFolder).string() + "\".";
  } catch (const std::exception& e) {
    return std::string("The setup in hand could not be saved: ") + e.what();
  } catch (...) {
    return "The setup in hand could not be saved.";
  }
}

[[noreturn]] void StopWith(const std::string& cause, const std::filesystem::path& programFolder) {
  const std::string message = "The program has to stop: " + cause + "\n\n" + SaveSetupInHand(programFolder);
  std::fprintf(stderr, "dpm-companion: %s\n", message.c_str());
  std::fflush(stderr);
  if (CanShowMessageBox()) {
    const std::string title = g.MeterTitle.empty() ? " DPM" : g.MeterTitle;
    QMessageBox::critical(nullptr, QString::fromStdString(title), QString::fromStdString(message));
  }
  std::exit(1);
}

}  // namespace

void HandleFatalFault(const std::exception& fault) { StopWith(fault.what(), ProgramFolder()); }

void HandleFatalFault(const std::exception& fault, const std::filesystem::path& programFolder) {
  StopWith(fault.what(), programFolder);
}

void HandleUnknownFatalFault() { StopWith("an unknown fault", ProgramFolder()); }

}  // namespace dpm::qt
