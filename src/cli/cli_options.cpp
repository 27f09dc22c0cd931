#include "cli/cli_options.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <string_view>

#include "link/globals.h"

namespace dpm::cli {
namespace {

struct CommandInfo {
  Command command;
  std::string_view name;
  std::size_t files;  // how many file arguments it takes
  bool usesLink;      // takes --port, --baud, --address
  std::string_view help;
};

constexpr std::string_view kLinkHelp =
    "The port, baud rate and address come from Settings.SSS in the program's folder\n"
    "unless these options say otherwise:\n"
    "  --port N|DEVICE   port number N (COMN in the program's folder, else\n"
    "                    /dev/ttyS(N-1)), or the path of a serial device\n"
    "  --baud RATE       300, 600, 1200, 2400, 4800, 9600 or 19200\n"
    "  --address C       the meter's address, 0-9 or A-V\n";

constexpr std::array<CommandInfo, 6> kCommands = {{
    {Command::Get, "get", 0, true,
     "Usage: dpm-cli get -o FILE.DPM [--port N|DEVICE] [--baud RATE] [--address C]\n"
     "\n"
     "Fetches the meter's setup (Get Setup) and saves it as a setup file. Progress\n"
     "shows on standard error when it is a terminal.\n"
     "\n"
     "  -o, --output FILE  the setup file to write\n"},
    {Command::Put, "put", 1, true,
     "Usage: dpm-cli put FILE.DPM [--port N|DEVICE] [--baud RATE] [--address C]\n"
     "\n"
     "Writes a setup file into the meter (Put Setup). A setup made for another kind of\n"
     "conditioner is refused, and nothing is written. When the setup changes the baud\n"
     "rate or the address, the line follows, as the meter does.\n"},
    {Command::Show, "show", 1, false,
     "Usage: dpm-cli show FILE.DPM [--menu]\n"
     "\n"
     "Lists every field of a setup file by name with its text, one a line.\n"
     "\n"
     "  --menu   the setup as the meter's front-panel menu shows it instead\n"},
    {Command::Diff, "diff", 2, false,
     "Usage: dpm-cli diff A.DPM B.DPM\n"
     "\n"
     "Lists the fields whose text differs between two setup files: name, the text in\n"
     "A, the text in B. Exit status 0 when none differs, 1 when some do.\n"},
    {Command::Read, "read", 0, true,
     "Usage: dpm-cli read [--port N|DEVICE] [--baud RATE] [--address C]\n"
     "\n"
     "Asks the meter for its latest reading and prints it as the meter sends it.\n"},
    {Command::Capture, "capture", 0, true,
     "Usage: dpm-cli capture --seconds N --csv FILE [--setup FILE.DPM] [--port N|DEVICE]\n"
     "                       [--baud RATE] [--address C]\n"
     "\n"
     "Switches the meter to continuous output for N seconds (or until Ctrl-C), then back\n"
     "to commands, and writes the readings that came as CSV: time received (ISO 8601,\n"
     "UTC, with milliseconds), the record as received, and its number (empty for a\n"
     "record without a digit). The first record, most likely cut, is left out; when\n"
     "several records arrive together only the oldest is kept, as the reading screens\n"
     "do.\n"
     "\n"
     "  --seconds N      how long to capture\n"
     "  --csv FILE       the file to write, - for standard output\n"
     "  --setup FILE     the meter's setup file: its record characters frame the\n"
     "                   records (without it, records end in CR)\n"},
}};

constexpr std::string_view kProgramHelp =
    "Usage: dpm-cli COMMAND [options]\n"
    "\n"
    "The meter's setup and readings from the command line.\n"
    "\n"
    "Commands:\n"
    "  get -o FILE.DPM     fetch the meter's setup into a setup file\n"
    "  put FILE.DPM        write a setup file into the meter\n"
    "  show FILE.DPM       list a setup file's fields (--menu: as the front panel)\n"
    "  diff A.DPM B.DPM    list the fields that differ between two setup files\n"
    "  read                one reading from the meter\n"
    "  capture --seconds N --csv FILE\n"
    "                      the meter's continuous output into a CSV file\n"
    "\n"
    "dpm-cli COMMAND --help tells more of each.\n"
    "\n"
    "Exit status: 0 success; 1 the meter failed (or diff found differences); 2 a bad\n"
    "command line, setup file or settings file.\n";

const CommandInfo& InfoOf(Command command) {
  return *std::find_if(kCommands.begin(), kCommands.end(), [command](const auto& c) { return c.command == command; });
}

std::string SeeHelp(const CommandInfo& info) { return "; see dpm-cli " + std::string(info.name) + " --help"; }

int BaudIndexOf(const std::string& rate) {
  for (std::size_t i = 0; i < BaudTable.size(); ++i) {
    if (*BaudTable[i] != '\0' && rate == BaudTable[i]) return static_cast<int>(i);
  }
  throw UsageError("--baud " + rate + ": not a rate of the meter (300, 600, 1200, 2400, 4800, 9600 or 19200)");
}

char AddressOf(const std::string& text) {
  const char c = text.size() == 1 ? static_cast<char>(std::toupper(static_cast<unsigned char>(text[0]))) : '\0';
  if ((c >= '0' && c <= '9') || (c >= 'A' && c <= 'V')) return c;
  throw UsageError("--address " + text + ": not a meter address (one character, 0-9 or A-V)");
}

double SecondsOf(const std::string& text) {
  double seconds = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
  if (text.empty() || error != std::errc() || end != text.data() + text.size() || !(seconds > 0) || seconds > 1e6)
    throw UsageError("--seconds " + text + ": not a number of seconds above 0");
  return seconds;
}

std::string PortOf(const std::string& text) {
  if (text.find('/') != std::string::npos) return text;
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (text.empty() || error != std::errc() || end != text.data() + text.size() || number < 1 || number > 99)
    throw UsageError("--port " + text + ": neither a port number 1 to 99 nor the path of a device");
  return text;
}

// Splits "--name=value" into the name and the value.
std::pair<std::string, std::optional<std::string>> SplitOption(const std::string& arg) {
  const std::size_t equals = arg.find('=');
  if (arg.rfind("--", 0) != 0 || equals == std::string::npos) return {arg, std::nullopt};
  return {arg.substr(0, equals), arg.substr(equals + 1)};
}

}  // namespace

Options ParseOptions(const std::vector<std::string>& args) {
  Options options;
  if (args.empty() || args[0] == "--help" || args[0] == "-h" || args[0] == "help") return options;
  const auto info = std::find_if(kCommands.begin(), kCommands.end(), [&](const auto& c) { return c.name == args[0]; });
  if (info == kCommands.end()) throw UsageError("unknown command \"" + args[0] + "\"; see dpm-cli --help");
  options.command = info->command;

  for (std::size_t i = 1; i < args.size(); ++i) {
    const auto [name, inlineValue] = SplitOption(args[i]);
    auto value = [&, name = name, inlineValue = inlineValue]() -> std::string {
      if (inlineValue) return *inlineValue;
      if (i + 1 >= args.size()) throw UsageError(name + " needs a value" + SeeHelp(*info));
      return args[++i];
    };
    const bool link = info->usesLink;
    if (name == "--help" || name == "-h") {
      options.help = true;
    } else if ((name == "-o" || name == "--output") && info->command == Command::Get) {
      options.output = value();
    } else if (name == "--menu" && info->command == Command::Show && !inlineValue) {
      options.menu = true;
    } else if (name == "--seconds" && info->command == Command::Capture) {
      options.seconds = SecondsOf(value());
    } else if (name == "--csv" && info->command == Command::Capture) {
      options.csv = value();
    } else if (name == "--setup" && info->command == Command::Capture) {
      options.setup = value();
    } else if (name == "--port" && link) {
      options.link.port = PortOf(value());
    } else if (name == "--baud" && link) {
      options.link.baudIndex = BaudIndexOf(value());
    } else if (name == "--address" && link) {
      options.link.address = AddressOf(value());
    } else if (name.size() > 1 && name[0] == '-') {
      throw UsageError("unknown option " + name + " for " + std::string(info->name) + SeeHelp(*info));
    } else {
      options.files.push_back(args[i]);
    }
  }
  if (options.help) return options;
  if (options.files.size() != info->files) {
    throw UsageError(std::string(info->name) + " takes " +
                     (info->files == 0 ? std::string("no file") : std::to_string(info->files) + " setup file(s)") +
                     ", not " + std::to_string(options.files.size()) + SeeHelp(*info));
  }
  if (info->command == Command::Get && options.output.empty())
    throw UsageError("get needs -o FILE.DPM, the file to write" + SeeHelp(*info));
  if (info->command == Command::Capture && (options.seconds == 0 || options.csv.empty()))
    throw UsageError("capture needs --seconds N and --csv FILE" + SeeHelp(*info));
  return options;
}

std::string HelpText(Command command) {
  if (command == Command::Help) return std::string(kProgramHelp);
  const CommandInfo& info = InfoOf(command);
  std::string text(info.help);
  if (info.usesLink) text += "\n" + std::string(kLinkHelp);
  return text;
}

}  // namespace dpm::cli
