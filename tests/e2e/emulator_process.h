#pragma once

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace dpm::testing {

// dpm-emulator as a child process: its line linked at `link`, its control lines fed
// through a pipe, and what it prints read back line by line.
class EmulatorProcess {
 public:
  explicit EmulatorProcess(const std::filesystem::path& link, std::vector<std::string> options = {}) {
    int toChild[2];
    int fromChild[2];
    if (pipe(toChild) != 0 || pipe(fromChild) != 0) return;
    pid_ = fork();
    if (pid_ == 0) {
      dup2(toChild[0], STDIN_FILENO);
      dup2(fromChild[1], STDOUT_FILENO);
      close(toChild[1]);
      close(fromChild[0]);
      std::vector<std::string> args = {DPM_EMULATOR_PROGRAM, "--link", link.string()};
      args.insert(args.end(), options.begin(), options.end());
      std::vector<char*> argv;
      for (auto& a : args) argv.push_back(a.data());
      argv.push_back(nullptr);
      execv(argv[0], argv.data());
      _exit(127);
    }
    close(toChild[0]);
    close(fromChild[1]);
    control_ = toChild[1];
    output_ = fromChild[0];
    fcntl(output_, F_SETFL, fcntl(output_, F_GETFL) | O_NONBLOCK);
    for (int i = 0; i < 500 && !std::filesystem::exists(link); ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
  }

  ~EmulatorProcess() { Stop(); }

  // Ends the emulator, as unplugging the meter's adapter would: its line goes away.
  void Stop() {
    if (pid_ <= 0) return;
    Say("quit");
    for (int i = 0; i < 100; ++i) {
      if (waitpid(pid_, nullptr, WNOHANG) == pid_) {
        pid_ = -1;
        return;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
    pid_ = -1;
  }

  void Say(const std::string& line) {
    const std::string text = line + "\n";
    [[maybe_unused]] const auto written = write(control_, text.data(), text.size());
  }

  // What follows the time stamp in the first line the emulator prints from now on whose
  // text starts with `prefix`, or an empty text after `timeoutMs`.
  std::string WaitForLine(const std::string& prefix, int timeoutMs = 3000) {
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    while (std::chrono::steady_clock::now() < until) {
      for (std::size_t end; (end = pending_.find('\n')) != std::string::npos;) {
        const std::string line = pending_.substr(0, end);
        pending_.erase(0, end + 1);
        const std::size_t text = line.find("  ", line.find_first_not_of(' '));
        if (text != std::string::npos && line.compare(text + 2, prefix.size(), prefix) == 0)
          return line.substr(text + 2);
      }
      pollfd poller{output_, POLLIN, 0};
      if (poll(&poller, 1, 50) > 0) {
        char buffer[4096];
        const ssize_t n = read(output_, buffer, sizeof buffer);
        if (n > 0) pending_.append(buffer, static_cast<std::size_t>(n));
      }
    }
    return {};
  }

  // The setup image the emulated meter holds now.
  std::string Image() {
    Say("image");
    const std::string line = WaitForLine("image ");
    return line.empty() ? line : line.substr(6);
  }

 private:
  pid_t pid_ = -1;
  int control_ = -1;
  int output_ = -1;
  std::string pending_;
};

}  // namespace dpm::testing
