#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

// The command line of dpm-cli: a command, its files and its options.
namespace dpm::cli {

// Exit statuses.
inline constexpr int kSuccess = 0;
inline constexpr int kMeterFailed = 1;
inline constexpr int kFilesDiffer = 1;  // diff, as diff(1) has it
inline constexpr int kBadUsage = 2;     // a bad command line, a bad file, a bad settings file

// A command line that cannot be obeyed, or a file that is not what it should be; the text
// names the cause. Ends the program with kBadUsage.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

enum class Command { Help, Get, Put, Show, Diff, Read, Capture };

// Where the meter is, when the command line says so; the rest comes from Settings.SSS.
struct LinkOverrides {
  std::optional<std::string> port;  // a port number N, or the path of a serial device
  std::optional<int> baudIndex;     // into BaudTable
  std::optional<char> address;      // "0"-"9", "A"-"V"
};

struct Options {
  Command command = Command::Help;
  bool help = false;               // --help after a command: that command's help
  std::vector<std::string> files;  // the command's file arguments
  std::string output;              // get -o
  bool menu = false;               // show --menu
  double seconds = 0;              // capture --seconds
  std::string csv;                 // capture --csv
  std::string setup;               // capture --setup: the setup whose record characters frame the readings
  LinkOverrides link;
};

// Reads the arguments after the program's name. A bad line is a UsageError.
Options ParseOptions(const std::vector<std::string>& args);

// The help of one command, or of the whole program for Command::Help.
std::string HelpText(Command command);

}  // namespace dpm::cli
