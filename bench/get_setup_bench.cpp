// Times whole Get Setup dialogues over a real pseudo-terminal against dpm-emulator, with
// the program's own Qt serial port, clocks and event pump: the wall time of each Get, the
// processor time the program used during it, and the pauses the dialogue itself asks for.
//
//   bench_get_setup [runs] [baud index 0-6]

#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <thread>

#include <QCoreApplication>

#include "link/globals.h"
#include "link/startup.h"
#include "platform/fake/scripted_dialogs.h"
#include "platform/forms/form_manager.h"
#include "platform/qt/qt_clock.h"
#include "platform/qt/qt_event_pump.h"
#include "platform/qt/qt_serial_port.h"
#include "platform/services.h"
#include "setup/main_menu.h"

namespace {

namespace fs = std::filesystem;

double CpuSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  auto seconds = [](const timeval& t) { return static_cast<double>(t.tv_sec) + t.tv_usec / 1e6; };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

pid_t StartEmulator(const fs::path& link, const std::string& baud) {
  const pid_t pid = fork();
  if (pid == 0) {
    std::freopen("/dev/null", "r", stdin);
    std::freopen((link.string() + ".log").c_str(), "w", stdout);
    execl(DPM_EMULATOR_PROGRAM, DPM_EMULATOR_PROGRAM, "--link", link.c_str(), "--baud", baud.c_str(),
          static_cast<char*>(nullptr));
    _exit(127);
  }
  for (int i = 0; i < 200 && !fs::exists(link); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  return pid;
}

// The pauses a Get asks for on a DC meter of revision below 9: 100 ms before each of the
// six commands, the character waits of four replies, four one-second pauses and the
// probe's waits.
double MandatedPauseSeconds(int charTime) {
  const double beforeCommands = 6 * 0.1;
  const double characterWaits = ((128 + 16 + 10 + 10) * charTime + 4 * 100) / 1000.0;
  const double pauses = 1.0 + 1.0 + 1.0 + 0.1 + 1.0 + 0.2;
  return beforeCommands + characterWaits + pauses;
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  const int runs = argc > 1 ? std::stoi(argv[1]) : 3;
  const int baudIndex = argc > 2 ? std::stoi(argv[2]) : 5;
  const std::string baud = dpm::BaudTable[static_cast<std::size_t>(baudIndex)];

  const fs::path folder = fs::temp_directory_path() / ("dpm-bench-" + std::to_string(getpid()));
  fs::create_directories(folder);
  const pid_t emulator = StartEmulator(folder / "COM1", baud);

  dpm::qt::QtClock clock;
  dpm::qt::QtEventPump events;
  dpm::qt::QtSerialPort port(folder);
  dpm::fake::ScriptedDialogs dialogs;
  dpm::Platform() = dpm::Services{&clock, &events, &port, &dialogs};

  dpm::ResetGlobals();
  std::string settings = "1501000100000041010000";
  settings[1] = static_cast<char>('0' + baudIndex);
  dpm::ApplyLinkSettings(settings);
  dpm::g.CharTime = static_cast<int16_t>(std::lround(10000.0 / std::stod(baud)));
  dpm::OpenMeterLink();

  auto& menu = dpm::Forms().Use<dpm::MainMenu>();
  std::printf("Get Setup against dpm-emulator over a pseudo-terminal at %s baud\n", baud.c_str());
  std::printf("pauses the dialogue asks for: %.3f s\n", MandatedPauseSeconds(dpm::g.CharTime));
  for (int run = 1; run <= runs; ++run) {
    dpm::g.FirmwareRev = 4;
    dpm::g.SetupImage = std::string(128, '0');
    const double cpuBefore = CpuSeconds();
    const auto start = std::chrono::steady_clock::now();
    menu.mnuGet_Click();
    const double wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const double cpu = CpuSeconds() - cpuBefore;
    std::printf("run %d: wall %.3f s, processor %.3f s (%.1f%% of one core), %zu digits, \"%s\"\n", run, wall, cpu,
                100.0 * cpu / wall, dpm::g.SetupImage.size(), menu.lblGPText.Caption().c_str());
  }

  port.SetPortOpen(false);
  kill(emulator, SIGTERM);
  waitpid(emulator, nullptr, 0);
  fs::remove_all(folder);
  return 0;
}
