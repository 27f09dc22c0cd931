// The program's processor use and memory while a PLOT or a GRAPH runs against dpm-emulator
// sending records back to back at 19200 baud, over a pseudo-terminal, the screen
// offscreen. The plot's sweep is long enough not to run out while it is measured.
//
//   QT_QPA_PLATFORM=offscreen bench_plot_cpu [seconds] [plot|graph]

#include <chrono>
#include <cstdio>
#include <cstring>
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
#include "readings/graph.h"
#include "readings/plot.h"
#include "setup/main_menu.h"

namespace fs = std::filesystem;

namespace {

// The emulator's 0.05 V with noise of 0.002 V reads 5000 give or take 200: both screens are
// scaled round that, so that the trace and the bars stay on the picture.
dpm::ChartScreen& OpenScreen(bool graph) {
  if (graph) {
    dpm::frmMMenu().mnuGraph_Click();
  } else {
    dpm::frmMMenu().mnuPlot_Click();
  }
  bench::RunEventsFor(0.2);
  dpm::ChartScreen& screen = graph ? static_cast<dpm::ChartScreen&>(dpm::frmGRAPH()) : dpm::frmPlot();
  screen.txtMidVal.SetText("5000");
  screen.txtSmallVal.SetText(graph ? "50" : "20");
  (graph ? dpm::frmGRAPH().txtVertScale : dpm::frmPlot().txtHorzTime).SetText(graph ? "10" : "3600");
  screen.cmdOK_Click();
  return screen;
}

}  // namespace

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  const double seconds = argc > 1 ? std::stod(argv[1]) : 10.0;
  const bool graph = argc > 2 && std::strcmp(argv[2], "graph") == 0;

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

  dpm::ChartScreen& screen = OpenScreen(graph);
  bench::RunEventsFor(1.0);
  if (screen.Capturing() == nullptr) {
    std::printf("the %s did not start (port %s)\n", graph ? "graph" : "plot", port.PortOpen() ? "open" : "closed");
    return 1;
  }
  const dpm::PictureBox& picture = screen.Picture1;
  const std::size_t before = picture.DrawnCount();
  const std::size_t readingsBefore = screen.SavedReadings().size();
  const long rssBefore = bench::RssKilobytes();
  const double cpuBefore = bench::CpuSeconds();
  const auto start = std::chrono::steady_clock::now();
  bench::RunEventsFor(seconds);
  const double wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  const double cpu = bench::CpuSeconds() - cpuBefore;
  const long rssGrowth = bench::RssKilobytes() - rssBefore;
  const std::size_t drawn = picture.DrawnCount() - before;
  const std::size_t readings = screen.SavedReadings().size() - readingsBefore;
  std::printf("%s at 19200 baud, records back to back, %s\n", graph ? "GRAPH" : "PLOT",
              app.platformName().toStdString().c_str());
  std::printf("wall %.2f s, processor %.3f s: %.2f%% of one core\n", wall, cpu, 100.0 * cpu / wall);
  std::printf("%zu readings (%.0f a second), %zu drawing operations (%.0f a second)\n", readings, readings / wall,
              drawn, drawn / wall);
  std::printf("operations the picture holds: %zu; resident memory grew %ld kB (%.1f kB a second)\n",
              picture.Ops().size(), rssGrowth, rssGrowth / wall);

  screen.cmdEnd_Click();
  port.SetPortOpen(false);
  kill(emulator, SIGTERM);
  waitpid(emulator, nullptr, 0);
  dpm::Forms().Reset();
  fs::remove_all(folder);
  return 0;
}
