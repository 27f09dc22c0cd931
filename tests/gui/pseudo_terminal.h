#pragma once

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <unistd.h>

#include <chrono>
#include <stdexcept>
#include <string>

#include "temp_folder.h"

namespace dpm::testing {

// The master side of a pseudo-terminal: the test plays the meter here while the program's
// serial port opens the slave side as its device.
class PseudoTerminal {
 public:
  PseudoTerminal() {
    master_ = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (master_ < 0 || ::grantpt(master_) != 0 || ::unlockpt(master_) != 0)
      throw std::runtime_error("no pseudo-terminal available");
    slave_ = ::ptsname(master_);
  }
  ~PseudoTerminal() { HangUp(); }
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;

  const std::string& SlavePath() const { return slave_; }

  // Closes the master side, as a meter that is unplugged.
  void HangUp() {
    if (master_ >= 0) ::close(master_);
    master_ = -1;
  }

  void Send(const std::string& bytes) {
    if (::write(master_, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
      throw std::runtime_error("write to the pseudo-terminal failed");
  }

  // What the program sent, read until `count` bytes have come or `timeoutMs` has passed.
  std::string Receive(std::size_t count, int timeoutMs = 1000) {
    std::string bytes;
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    while (bytes.size() < count) {
      const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(until - std::chrono::steady_clock::now());
      if (left.count() <= 0) break;
      pollfd fd{master_, POLLIN, 0};
      if (::poll(&fd, 1, static_cast<int>(left.count())) <= 0) break;
      char chunk[256];
      const ssize_t n = ::read(master_, chunk, sizeof chunk);
      if (n <= 0) break;
      bytes.append(chunk, static_cast<std::size_t>(n));
    }
    return bytes;
  }

 private:
  int master_ = -1;
  std::string slave_;
};

}  // namespace dpm::testing
