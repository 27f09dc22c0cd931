// dpm-emulator: a meter on a pseudo-terminal, for trying the program without a meter.

#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

#include "emulator/control.h"
#include "emulator/meter.h"
#include "emulator/meter_port.h"
#include "emulator/pty_link.h"

namespace dpm::emulator {
namespace {

volatile std::sig_atomic_t stopSignal = 0;

void OnStopSignal(int signal) { stopSignal = signal; }

void CatchStopSignals() {
  struct sigaction action {};
  action.sa_handler = OnStopSignal;
  sigemptyset(&action.sa_mask);
  // No SA_RESTART: the wait in poll() ends at once.
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
  sigaction(SIGHUP, &action, nullptr);
  std::signal(SIGPIPE, SIG_IGN);
}

// Microseconds since the program started.
class Stopwatch {
 public:
  uint64_t NowUs() const {
    return static_cast<uint64_t>(
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start_).count());
  }

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

// The longest wait between two looks at the line, signals and standard input.
constexpr int kLongestWaitMs = 50;

class Emulator {
 public:
  Emulator(Meter& meter, MeterPort& port, PtyLink& link) : meter_(meter), port_(port), link_(link) {
    port_.SetLogger([this](const std::string& line) { Print(line); });
    lastSetupBaud_ = meter_.SetupBaud();
  }

  void Print(const std::string& line) const {
    std::printf("%10.3f  %s\n", static_cast<double>(clock_.NowUs()) / 1e6, line.c_str());
    std::fflush(stdout);  // a log file or a pipe sees each line as it happens
    std::fflush(stdout);
  }

  int Run() {
    std::vector<pollfd> fds = {{link_.MasterFd(), POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
    while (!stopSignal && !quit_) {
      const int count = readingStdin_ ? 2 : 1;
      if (poll(fds.data(), static_cast<nfds_t>(count), WaitMs()) < 0 && errno != EINTR) {
        Print("poll failed; stopping");
        return 1;
      }
      if (fds[0].revents & POLLIN) ReadLine();
      if (readingStdin_ && (fds[1].revents & (POLLIN | POLLHUP))) ReadControls();
      WriteLine(port_.Poll(clock_.NowUs()));
      FollowSetupBaud();
    }
    if (stopSignal) Print("stopped by signal " + std::to_string(stopSignal));
    Print("image " + meter_.Image());
    return 0;
  }

 private:
  int WaitMs() const {
    const auto next = port_.NextDueUs();
    if (!next) return kLongestWaitMs;
    const uint64_t now = clock_.NowUs();
    if (*next <= now) return 0;
    return static_cast<int>(std::min<uint64_t>((*next - now + 999) / 1000, kLongestWaitMs));
  }

  void ReadLine() {
    char buffer[4096];
    const ssize_t length = read(link_.MasterFd(), buffer, sizeof buffer);
    if (length > 0) port_.FromHost(std::string_view(buffer, static_cast<std::size_t>(length)), clock_.NowUs());
  }

  // Nobody listening at the other end: what does not fit into the terminal is lost, as
  // on a line with nothing attached.
  void WriteLine(const std::string& bytes) const {
    std::size_t done = 0;
    while (done < bytes.size()) {
      const ssize_t written = write(link_.MasterFd(), bytes.data() + done, bytes.size() - done);
      if (written <= 0) return;
      done += static_cast<std::size_t>(written);
    }
  }

  void ReadControls() {
    char buffer[1024];
    const ssize_t length = read(STDIN_FILENO, buffer, sizeof buffer);
    if (length <= 0) {
      // The end of typed input (Ctrl-D) means stop; the end of a file or /dev/null only
      // means there is nothing more to be told.
      readingStdin_ = false;
      if (isatty(STDIN_FILENO)) quit_ = true;
      return;
    }
    pending_.append(buffer, static_cast<std::size_t>(length));
    for (std::size_t end = pending_.find('\n'); end != std::string::npos; end = pending_.find('\n')) {
      const ControlResult result = ApplyControlLine(pending_.substr(0, end), port_);
      pending_.erase(0, end + 1);
      if (!result.message.empty()) Print(result.message);
      if (result.quit) quit_ = true;
    }
  }

  // After a setup that changes the baud rate the meter talks at the new rate.
  void FollowSetupBaud() {
    const int baud = meter_.SetupBaud();
    if (baud == lastSetupBaud_) return;
    lastSetupBaud_ = baud;
    if (baud > 0) {
      port_.Options().baud = baud;
      Print("line speed now " + std::to_string(baud) + " baud, as the setup says");
    }
  }

  Meter& meter_;
  MeterPort& port_;
  PtyLink& link_;
  Stopwatch clock_;
  std::string pending_;
  int lastSetupBaud_ = 0;
  bool readingStdin_ = true;
  bool quit_ = false;
};

int Main(const std::vector<std::string>& args) {
  ProgramOptions options;
  if (auto error = ParseArguments(args, options)) {
    std::fprintf(stderr, "dpm-emulator: %s\nTry dpm-emulator --help\n", error->c_str());
    return 2;
  }
  if (options.help) {
    std::fputs(UsageText().c_str(), stdout);
    return 0;
  }
  std::string image;
  if (!options.imageFile.empty()) {
    if (auto error = ReadSetupFile(options, image)) {
      std::fprintf(stderr, "dpm-emulator: %s\n", error->c_str());
      return 2;
    }
  }
  Meter meter(options.meter, image);
  meter.SetNoise(options.noise);
  meter.ApplyInput(options.input);
  MeterPort port(meter, options.port);

  CatchStopSignals();
  PtyLink link;
  std::string error;
  if (!link.Open(options.linkPath, error)) {
    std::fprintf(stderr, "dpm-emulator: %s\n", error.c_str());
    return 1;
  }
  Emulator emulator(meter, port, link);
  emulator.Print(StatusText(meter, port));
  emulator.Print("listening on " + link.TerminalPath() + ", linked at " + options.linkPath);
  const int status = emulator.Run();
  link.Close();
  emulator.Print("link removed; bye");
  return status;
}

}  // namespace
}  // namespace dpm::emulator

int main(int argc, char** argv) { return dpm::emulator::Main(std::vector<std::string>(argv + 1, argv + argc)); }
