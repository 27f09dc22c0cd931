#pragma once

#include <string>

namespace dpm::emulator {

// A pseudo-terminal in raw mode whose terminal side is reachable under a path of our
// choosing (a symbolic link), so that a program opens it like a serial port. The
// emulator keeps the terminal side open itself, so that a program may come and go.
class PtyLink {
 public:
  PtyLink() = default;
  ~PtyLink() { Close(); }
  PtyLink(const PtyLink&) = delete;
  PtyLink& operator=(const PtyLink&) = delete;

  // Opens the terminal and makes the link; an existing symbolic link at the path is
  // replaced, anything else there is left alone and counts as a failure.
  bool Open(const std::string& linkPath, std::string& error);
  // Removes the link (if it still leads to this terminal) and closes the terminal.
  void Close();

  int MasterFd() const { return master_; }
  const std::string& TerminalPath() const { return terminalPath_; }

 private:
  int master_ = -1;
  int terminal_ = -1;
  std::string terminalPath_;
  std::string linkPath_;
};

}  // namespace dpm::emulator
