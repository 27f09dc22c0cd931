#include "emulator/pty_link.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace dpm::emulator {
namespace {

std::string SystemError(const std::string& what) { return what + ": " + std::strerror(errno); }

// Raw mode on the terminal side: no echo, no line editing, no translation of CR.
bool MakeRaw(int fd) {
  termios settings{};
  if (tcgetattr(fd, &settings) != 0) return false;
  cfmakeraw(&settings);
  cfsetispeed(&settings, B9600);
  cfsetospeed(&settings, B9600);
  return tcsetattr(fd, TCSANOW, &settings) == 0;
}

std::string LinkTarget(const std::string& path) {
  char target[4096];
  const ssize_t length = readlink(path.c_str(), target, sizeof target - 1);
  return length < 0 ? std::string() : std::string(target, static_cast<std::size_t>(length));
}

}  // namespace

bool PtyLink::Open(const std::string& linkPath, std::string& error) {
  master_ = posix_openpt(O_RDWR | O_NOCTTY);
  if (master_ < 0) return error = SystemError("posix_openpt"), false;
  char name[256];
  if (grantpt(master_) != 0 || unlockpt(master_) != 0 || ptsname_r(master_, name, sizeof name) != 0) {
    error = SystemError("preparing the pseudo-terminal");
    Close();
    return false;
  }
  terminalPath_ = name;
  terminal_ = open(name, O_RDWR | O_NOCTTY);
  if (terminal_ < 0 || !MakeRaw(terminal_)) {
    error = SystemError("opening " + terminalPath_);
    Close();
    return false;
  }
  fcntl(master_, F_SETFL, fcntl(master_, F_GETFL) | O_NONBLOCK);

  struct stat existing {};
  if (lstat(linkPath.c_str(), &existing) == 0) {
    if (!S_ISLNK(existing.st_mode)) {
      error = linkPath + " exists and is not a symbolic link; it is left alone";
      Close();
      return false;
    }
    unlink(linkPath.c_str());
  }
  if (symlink(terminalPath_.c_str(), linkPath.c_str()) != 0) {
    error = SystemError("linking " + linkPath);
    Close();
    return false;
  }
  linkPath_ = linkPath;
  return true;
}

void PtyLink::Close() {
  if (!linkPath_.empty() && LinkTarget(linkPath_) == terminalPath_) unlink(linkPath_.c_str());
  linkPath_.clear();
  if (terminal_ >= 0) close(terminal_);
  if (master_ >= 0) close(master_);
  terminal_ = master_ = -1;
}

}  // namespace dpm::emulator
