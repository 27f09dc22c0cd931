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
#include <string>
#include <thread>

#include <QEventLoop>
#include <QTimer>

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

}  // namespace bench
