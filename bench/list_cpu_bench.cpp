// The program's processor use while LIST READINGS runs against dpm-emulator sending
// records back to back at 19200 baud, over a pseudo-terminal, the screen offscreen.
//
//   QT_QPA_PLATFORM=offscreen bench_list_cpu [seconds]

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include <QApplication>

#include "emulator_harness.h"
#include "link/globals.h"
#include "link/startup.h"
#include "platform/fake/scripted_dialogs.h"
#include "platform/forms/form_manager.h"
#include "platform/qt/form_binder.h"
#include "platform/qt/qt_clock.h"
#include "platform/qt/qt_event_pump.h"
#include "platform/qt/qt_serial_port.h"
#include "platform/services.h"
#include "readings/list_readings.h"
#include "setup/main_menu.h"

namespace fs = std::filesystem;
using bench::CpuSeconds;
using bench::RunEventsFor;
using bench::StartEmulator;

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  const double seconds = argc > 1 ? std::stod(argv[1]) : 10.0;

  const fs::path folder = fs::temp_directory_path() / ("dpm-bench-list-" + std::to_string(getpid()));
  fs::create_directories(folder);
  std::ofstream(folder / "Settings.SSS") << "\"1601000100000041010000\"\r\n";
  const pid_t emulator = StartEmulator(folder / "COM1");

  dpm::qt::QtClock clock;
  dpm::qt::QtEventPump events;
  dpm::qt::QtSerialPort port(folder);
  dpm::fake::ScriptedDialogs dialogs;
  dpm::Platform() = dpm::Services{&clock, &events, &port, &dialogs};
  dpm::qt::InstallFormBinder();
  dpm::Main(folder, [] { dpm::frmMMenu().Show(); });

  dpm::frmMMenu().mnuList_Click();
  RunEventsFor(1.0);  // the first records size the columns
  if (!dpm::Forms().IsLoaded(dpm::ListReadings::kName) || dpm::frmList().Capturing() == nullptr) {
    std::printf("the list did not start (port %s)\n", port.PortOpen() ? "open" : "closed");
    return 1;
  }
  const std::size_t before = dpm::frmList().SavedReadings().size();
  const double cpuBefore = CpuSeconds();
  const auto start = std::chrono::steady_clock::now();
  RunEventsFor(seconds);
  const double wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  const double cpu = CpuSeconds() - cpuBefore;
  const std::size_t shown = dpm::frmList().SavedReadings().size() - before;
  std::printf("LIST READINGS at 19200 baud, records back to back, %s\n", app.platformName().toStdString().c_str());
  std::printf("wall %.2f s, processor %.3f s: %.2f%% of one core; %zu records shown (%.0f a second)\n", wall, cpu,
              100.0 * cpu / wall, shown, shown / wall);

  dpm::frmList().cmdEnd_Click();
  port.SetPortOpen(false);
  kill(emulator, SIGTERM);
  waitpid(emulator, nullptr, 0);
  dpm::Forms().Reset();
  fs::remove_all(folder);
  return 0;
}
