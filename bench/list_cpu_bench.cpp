// The program's processor use while LIST READINGS runs against dpm-emulator sending
// records back to back at 19200 baud, over a pseudo-terminal, the screen offscreen.
//
//   QT_QPA_PLATFORM=offscreen bench_list_cpu [seconds]

#include <cstdio>
#include <string>

#include <QApplication>

#include "emulator_harness.h"
#include "readings/list_readings.h"

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  const double seconds = argc > 1 ? std::stod(argv[1]) : 10.0;
  bench::ProgramAgainstEmulator program("list");

  dpm::frmMMenu().mnuList_Click();
  bench::RunEventsFor(1.0);  // the first records size the columns
  if (!dpm::Forms().IsLoaded(dpm::ListReadings::kName) || dpm::frmList().Capturing() == nullptr) {
    std::printf("the list did not start (port %s)\n", program.PortOpen() ? "open" : "closed");
    return 1;
  }
  const std::size_t before = dpm::frmList().SavedReadings().size();
  const bench::Measured run = bench::RunMeasuredFor(seconds);
  const std::size_t shown = dpm::frmList().SavedReadings().size() - before;
  std::printf("LIST READINGS at 19200 baud, records back to back, %s\n", app.platformName().toStdString().c_str());
  std::printf("wall %.2f s, processor %.3f s: %.2f%% of one core; %zu records shown (%.0f a second)\n", run.wall,
              run.cpu, run.Percent(), shown, shown / run.wall);

  dpm::frmList().cmdEnd_Click();
  return 0;
}
