// Starts the dpm-emulator program on a real pseudo-terminal and talks to it like the
// program does. Real time, but bounded: every wait below gives up after a few seconds.

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "temp_folder.h"

extern char** environ;

namespace {

using Clock = std::chrono::steady_clock;
constexpr auto kPatience = std::chrono::seconds(5);

class EmulatorProgramTest : public ::testing::Test {
 protected:
  void SetUp() override {
#ifndef DPM_EMULATOR_PROGRAM
    GTEST_SKIP() << "built without the dpm-emulator program";
#else
    link_ = (dir_ / "COM1").string();
    log_ = (dir_ / "emulator.log").string();
    Start({DPM_EMULATOR_PROGRAM, "--link", link_, "--latency", "1"});
#endif
  }

  void TearDown() override {
    if (terminal_ >= 0) close(terminal_);
    if (stdin_ >= 0) close(stdin_);
    if (pid_ > 0 && waitpid(pid_, nullptr, WNOHANG) == 0) {
      kill(pid_, SIGKILL);
      waitpid(pid_, nullptr, 0);
    }
  }

  void Start(std::vector<std::string> args) {
    int pipeFds[2];
    ASSERT_EQ(pipe(pipeFds), 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipeFds[0], STDIN_FILENO);
    posix_spawn_file_actions_addclose(&actions, pipeFds[1]);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, log_.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    std::vector<char*> argv;
    for (auto& arg : args) argv.push_back(arg.data());
    argv.push_back(nullptr);
    ASSERT_EQ(posix_spawn(&pid_, argv[0], &actions, nullptr, argv.data(), environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    close(pipeFds[0]);
    stdin_ = pipeFds[1];
  }

  // Waits for the link, opens the terminal behind it in raw mode.
  void Connect() {
    const auto until = Clock::now() + kPatience;
    while (!std::filesystem::is_symlink(link_) && Clock::now() < until)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    ASSERT_TRUE(std::filesystem::is_symlink(link_)) << Log();
    terminal_ = open(link_.c_str(), O_RDWR | O_NOCTTY);
    ASSERT_GE(terminal_, 0);
    termios settings{};
    ASSERT_EQ(tcgetattr(terminal_, &settings), 0);
    cfmakeraw(&settings);
    ASSERT_EQ(tcsetattr(terminal_, TCSANOW, &settings), 0);
  }

  std::string Exchange(const std::string& command) {
    const std::string line = command + "\r";
    EXPECT_EQ(write(terminal_, line.data(), line.size()), static_cast<ssize_t>(line.size()));
    std::string reply;
    const auto until = Clock::now() + kPatience;
    while (reply.find('\r') == std::string::npos && Clock::now() < until) {
      pollfd fd{terminal_, POLLIN, 0};
      if (poll(&fd, 1, 50) <= 0) continue;
      char buffer[256];
      const ssize_t length = read(terminal_, buffer, sizeof buffer);
      if (length > 0) reply.append(buffer, static_cast<std::size_t>(length));
    }
    return reply;
  }

  // The exit status, or -1 when the program did not end in time.
  int WaitForExit() {
    const auto until = Clock::now() + kPatience;
    int status = 0;
    while (Clock::now() < until) {
      if (waitpid(pid_, &status, WNOHANG) == pid_) {
        pid_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return -1;
  }

  std::string Log() const { return dpm::testing::FileText(log_); }

  dpm::testing::TempFolder dir_;
  std::string link_;
  std::string log_;
  pid_t pid_ = -1;
  int stdin_ = -1;
  int terminal_ = -1;
};

TEST_F(EmulatorProgramTest, AnswersOnThePseudoTerminalAndQuitsOnRequest) {
  Connect();
  EXPECT_EQ(Exchange("*1G130"), "75\r");
  const std::string quit = "input 0.01\nquit\n";
  ASSERT_EQ(write(stdin_, quit.data(), quit.size()), static_cast<ssize_t>(quit.size()));
  EXPECT_EQ(WaitForExit(), 0);
  EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(link_))) << "the link is removed";
  const std::string log = Log();
  EXPECT_NE(log.find("<- *1G130<CR>"), std::string::npos) << log;
  EXPECT_NE(log.find("-> 75<CR>"), std::string::npos) << log;
}

TEST_F(EmulatorProgramTest, EndsCleanlyOnTerminationSignal) {
  Connect();
  EXPECT_EQ(Exchange("*1X136"), "0C00\r");
  close(stdin_);  // the end of input that is not a terminal does not stop it
  stdin_ = -1;
  EXPECT_EQ(Exchange("*1G12D"), "60\r");
  kill(pid_, SIGTERM);
  EXPECT_EQ(WaitForExit(), 0);
  EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(link_)));
}

}  // namespace
