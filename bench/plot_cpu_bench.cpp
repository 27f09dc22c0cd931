// The program's processor use and memory while a PLOT or a GRAPH runs against dpm-emulator
// sending records back to back at 19200 baud, over a pseudo-terminal, the screen
// offscreen. The plot's sweep is long enough not to run out while it is measured.
//
//   QT_QPA_PLATFORM=offscreen bench_plot_cpu [seconds] [plot|graph]

#include <cstdio>
#include <cstring>
#include <string>

#include <QApplication>

#include "emulator_harness.h"
#include "readings/graph.h"
#include "readings/plot.h"

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

  bench::ProgramAgainstEmulator program(graph ? "graph" : "plot");

  dpm::ChartScreen& screen = OpenScreen(graph);
  bench::RunEventsFor(1.0);
  if (screen.Capturing() == nullptr) {
    std::printf("the %s did not start (port %s)\n", graph ? "graph" : "plot", program.PortOpen() ? "open" : "closed");
    return 1;
  }
  const dpm::PictureBox& picture = screen.Picture1;
  const std::size_t before = picture.DrawnCount();
  const std::size_t readingsBefore = screen.SavedReadings().size();
  const long rssBefore = bench::RssKilobytes();
  const bench::Measured run = bench::RunMeasuredFor(seconds);
  const long rssGrowth = bench::RssKilobytes() - rssBefore;
  const std::size_t drawn = picture.DrawnCount() - before;
  const std::size_t readings = screen.SavedReadings().size() - readingsBefore;
  std::printf("%s at 19200 baud, records back to back, %s\n", graph ? "GRAPH" : "PLOT",
              app.platformName().toStdString().c_str());
  std::printf("wall %.2f s, processor %.3f s: %.2f%% of one core\n", run.wall, run.cpu, run.Percent());
  std::printf("%zu readings (%.0f a second), %zu drawing operations (%.0f a second)\n", readings, readings / run.wall,
              drawn, drawn / run.wall);
  std::printf("operations the picture holds: %zu; resident memory grew %ld kB (%.1f kB a second)\n",
              picture.Ops().size(), rssGrowth, rssGrowth / run.wall);

  screen.cmdEnd_Click();
  return 0;
}
