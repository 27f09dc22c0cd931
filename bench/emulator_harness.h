#pragma once

// What the processor benchmarks against dpm-emulator share: the emulator at 19200 baud
// sending records back to back over a pseudo-terminal, the program's processor time, and
// its own event loop.

#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include <QEventLoop>
#include <QTimer>

#include "link/startup.h"
#include "platform/fake/scripted_dialogs.h"
#include "platform/forms/form_manager.h"
#include "platform/qt/form_binder.h"
#include "platform/qt/qt_clock.h"
#include "platform/qt/qt_event_pump.h"
#include "platform/qt/qt_serial_port.h"
#include "platform/services.h"
#include "setup/main_menu.h"

namespace bench {

namespace fs = std::filesystem;

inline double CpuSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  auto seconds = [](const timeval& t) { return static_cast<double>(t.tv_sec) + t.tv_usec / 1e6; };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// The program's resident memory, from /proc/self/status.
inline long RssKilobytes() {
  std::FILE* status = std::fopen("/proc/self/status", "r");
  if (status == nullptr) return -1;
  long kilobytes = -1;
  char line[256];
  while (std::fgets(line, sizeof line, status) != nullptr) {
    if (std::sscanf(line, "VmRSS: %ld kB", &kilobytes) == 1) break;
  }
  std::fclose(status);
  return kilobytes;
}

inline pid_t StartEmulator(const fs::path& link) {
  const pid_t pid = fork();
  if (pid == 0) {
    std::freopen("/dev/null", "r", stdin);
    std::freopen((link.string() + ".log").c_str(), "w", stdout);
    execl(DPM_EMULATOR_PROGRAM, DPM_EMULATOR_PROGRAM, "--link", link.c_str(), "--baud", "19200", "--rate", "max",
          "--input", "0.05", "--noise", "0.002", static_cast<char*>(nullptr));
    _exit(127);
  }
  for (int i = 0; i < 200 && !fs::exists(link); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  return pid;
}

// The program's own event loop, as it runs while the user watches the screen.
inline void RunEventsFor(double seconds) {
  QEventLoop loop;
  QTimer::singleShot(static_cast<int>(seconds * 1000), &loop, &QEventLoop::quit);
  loop.exec();
}

// The program started as main() starts it, in a folder of its own whose COM1 is the
// emulator's line, with the main menu up; gone again, with the emulator, at the end.
class ProgramAgainstEmulator {
 public:
  explicit ProgramAgainstEmulator(const std::string& name)
      : folder_(fs::temp_directory_path() / ("dpm-bench-" + name + "-" + std::to_string(getpid()))),
        made_(fs::create_directories(folder_)),
        emulator_(StartWithSettings()),
        port_(folder_) {
    dpm::Platform() = dpm::Services{&clock_, &events_, &port_, &dialogs_};
    dpm::qt::InstallFormBinder();
    dpm::Main(folder_, [] { dpm::frmMMenu().Show(); });
  }
  ~ProgramAgainstEmulator() {
    port_.SetPortOpen(false);
    kill(emulator_, SIGTERM);
    waitpid(emulator_, nullptr, 0);
    dpm::Forms().Reset();
    fs::remove_all(folder_);
  }

  bool PortOpen() const { return port_.PortOpen(); }

 private:
  pid_t StartWithSettings() {
    std::ofstream(folder_ / "Settings.SSS") << "\"1601000100000041010000\"\r\n";
    return StartEmulator(folder_ / "COM1");
  }

  fs::path folder_;
  bool made_;
  pid_t emulator_;
  dpm::qt::QtClock clock_;
  dpm::qt::QtEventPump events_;
  dpm::qt::QtSerialPort port_;
  dpm::fake::ScriptedDialogs dialogs_;
};

// Wall time and the program's processor time of one stretch of the event loop.
struct Measured {
  double wall;
  double cpu;
  double Percent() const { return 100.0 * cpu / wall; }
};

inline Measured RunMeasuredFor(double seconds) {
  const double cpuBefore = CpuSeconds();
  const auto start = std::chrono::steady_clock::now();
  RunEventsFor(seconds);
  return {std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), CpuSeconds() - cpuBefore};
}

}  // namespace bench
