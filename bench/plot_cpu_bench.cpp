// The program's processor use while a PLOT runs against dpm-emulator sending records back
// to back at 19200 baud, over a pseudo-terminal, the screen offscreen. The sweep is long
// enough not to run out while it is measured.
//
//   QT_QPA_PLATFORM=offscreen bench_plot_cpu [seconds]

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include <QApplication>

#include "emulator_harness.h"
#include "link/startup.h"
#include "platform/fake/scripted_dialogs.h"
#include "platform/forms/form_manager.h"
#include "platform/qt/form_binder.h"
#include "platform/qt/qt_clock.h"
#include "platform/qt/qt_event_pump.h"
#include "platform/qt/qt_serial_port.h"
#include "platform/services.h"
#include "readings/plot.h"
#include "setup/main_menu.h"

namespace fs = std::filesystem;

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  const double seconds = argc > 1 ? std::stod(argv[1]) : 10.0;

  const fs::path folder = fs::temp_directory_path() / ("dpm-bench-plot-" + std::to_string(getpid()));
  fs::create_directories(folder);
  std::ofstream(folder / "Settings.SSS") << "\"1601000100000041010000\"\r\n";
  const pid_t emulator = bench::StartEmulator(folder / "COM1");

  dpm::qt::QtClock clock;
  dpm::qt::QtEventPump events;
  dpm::qt::QtSerialPort port(folder);
  dpm::fake::ScriptedDialogs dialogs;
  dpm::Platform() = dpm::Services{&clock, &events, &port, &dialogs};
  dpm::qt::InstallFormBinder();
  dpm::Main(folder, [] { dpm::frmMMenu().Show(); });

  dpm::frmMMenu().mnuPlot_Click();
  bench::RunEventsFor(0.2);
  dpm::Plot& plot = dpm::frmPlot();
  plot.txtMidVal.SetText("0.05");
  plot.txtSmallVal.SetText("0.001");
  plot.txtHorzTime.SetText("3600");
  plot.cmdOK_Click();
  bench::RunEventsFor(1.0);
  if (plot.Capturing() == nullptr) {
    std::printf("the plot did not start (port %s)\n", port.PortOpen() ? "open" : "closed");
    return 1;
  }
  const std::size_t before = plot.Picture1.Ops().size();
  const double cpuBefore = bench::CpuSeconds();
  const auto start = std::chrono::steady_clock::now();
  bench::RunEventsFor(seconds);
  const double wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  const double cpu = bench::CpuSeconds() - cpuBefore;
  const std::size_t drawn = plot.Picture1.Ops().size() - before;
  std::printf("PLOT at 19200 baud, records back to back, %s\n", app.platformName().toStdString().c_str());
  std::printf("wall %.2f s, processor %.3f s: %.2f%% of one core; %zu segments drawn (%.0f a second)\n", wall, cpu,
              100.0 * cpu / wall, drawn, drawn / wall);

  plot.cmdEnd_Click();
  port.SetPortOpen(false);
  kill(emulator, SIGTERM);
  waitpid(emulator, nullptr, 0);
  dpm::Forms().Reset();
  fs::remove_all(folder);
  return 0;
}
