#include "emulator/control.h"

#include <array>
#include <cctype>
#include <charconv>
#include <fstream>
#include <sstream>

#include "emulator/calibration_model.h"

namespace dpm::emulator {
namespace {

std::string_view Trimmed(std::string_view text);

constexpr std::array<int, 7> kBaudTable = {300, 600, 1200, 2400, 4800, 9600, 19200};

struct ConditionerName {
  const char* name;
  Conditioner conditioner;
};
constexpr std::array<ConditionerName, 8> kConditionerNames = {ConditionerName{"temperature", Conditioner::Temperature},
                                                              {"tc", Conditioner::Temperature},
                                                              {"dc", Conditioner::Dc},
                                                              {"rms", Conditioner::TrueRms},
                                                              {"true-rms", Conditioner::TrueRms},
                                                              {"load-cell", Conditioner::LoadCell},
                                                              {"loadcell", Conditioner::LoadCell},
                                                              {"lc", Conditioner::LoadCell}};

const char* NameOf(Conditioner c) {
  switch (c) {
    case Conditioner::Temperature:
      return "Temperature";
    case Conditioner::Dc:
      return "DC";
    case Conditioner::TrueRms:
      return "True RMS";
    case Conditioner::LoadCell:
      return "Load Cell";
  }
  return "?";
}

template <typename Number>
std::optional<Number> ParseNumber(std::string_view text) {
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::optional<std::string> ParseConditioner(std::string_view text, MeterOptions& meter) {
  for (const auto& entry : kConditionerNames) {
    if (text == entry.name) {
      meter.conditioner = entry.conditioner;
      return std::nullopt;
    }
  }
  return "unknown conditioner \"" + std::string(text) + "\" (temperature, dc, rms, load-cell)";
}

std::optional<std::string> ParseTeds(std::string_view text, MeterOptions& meter) {
  meter.tedsHardware = text == "hardware" || text == "present";
  meter.tedsPresent = text == "present";
  if (text == "none" || meter.tedsHardware) return std::nullopt;
  return "unknown data sheet setting \"" + std::string(text) + "\" (none, hardware, present)";
}

// A whole number from `low` to `high` into `field`; a message naming the option otherwise.
template <typename Number>
std::optional<std::string> ParseInRange(std::string_view name, std::string_view text, Number low, Number high,
                                        Number& field) {
  const auto number = ParseNumber<Number>(text);
  if (!number || *number < low || *number > high)
    return std::string(name) + " is a number " + std::to_string(low) + " to " + std::to_string(high);
  field = *number;
  return std::nullopt;
}

std::optional<std::string> ParseInitials(std::string_view text, std::string& initials) {
  if (text.empty() || text.size() > 3) return "initials are one to three letters";
  std::string letters;
  for (char c : text) {
    if (!std::isalpha(static_cast<unsigned char>(c))) return "initials are one to three letters";
    letters += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  }
  initials = letters;
  return std::nullopt;
}

// The data sheet's fields, "--teds-" and a name.
std::optional<std::string> ParseDataSheetField(std::string_view name, std::string_view value, DataSheetFields& sheet) {
  if (name == "--teds-template") return ParseInRange(name, value, 0, 3, sheet.templateNumber);
  if (name == "--teds-serial") return ParseInRange(name, value, 0u, 0xFFFFFFu, sheet.serialNumber);
  if (name == "--teds-units") return ParseInRange(name, value, 0, 63, sheet.unitsCode);
  if (name == "--teds-extended-units") return ParseInRange(name, value, 0, 127, sheet.extendedUnitsCode);
  if (name == "--teds-period") return ParseInRange(name, value, 0, 4095, sheet.calibrationPeriod);
  if (name == "--teds-id") return ParseInRange(name, value, 0, 2047, sheet.measurementId);
  if (name == "--teds-initials") return ParseInitials(value, sheet.initials);
  if (name == "--teds-date") {
    const auto day = CalibrationDayOf(value);
    if (!day) return "calibration date is YYYY-MM-DD, from 1998-01-01 to 2177-06-06";
    sheet.calibrationDay = *day;
    return std::nullopt;
  }
  return "unknown option " + std::string(name);
}

std::optional<std::string> ParseBaud(std::string_view text, ProgramOptions& options) {
  const auto baud = ParseNumber<int>(text);
  if (!baud || *baud <= 0) return "bad baud rate \"" + std::string(text) + "\"";
  options.port.baud = *baud;
  for (std::size_t i = 0; i < kBaudTable.size(); ++i)
    if (kBaudTable[i] == *baud) options.meter.baudIndex = static_cast<int>(i);
  return std::nullopt;
}

bool IsHex2(std::string_view text) {
  return text.size() == 2 && std::isxdigit(static_cast<unsigned char>(text[0])) &&
         std::isxdigit(static_cast<unsigned char>(text[1]));
}

std::optional<int> HexNumber(std::string_view text, std::size_t digits) {
  if (text.size() != digits) return std::nullopt;
  int value = 0;
  for (char c : text) {
    if (!std::isxdigit(static_cast<unsigned char>(c))) return std::nullopt;
    value = value * 16 + (std::isdigit(static_cast<unsigned char>(c)) ? c - '0' : std::toupper(c) - 'A' + 10);
  }
  return value;
}

// "ADDR=HHHH" or "ADDR HHHH": two hexadecimal digits of address, four of value.
std::optional<std::pair<int, uint16_t>> ParseWordSetting(std::string_view text) {
  const std::size_t separator = text.find_first_of("= ");
  if (separator == std::string_view::npos) return std::nullopt;
  const auto address = HexNumber(text.substr(0, separator), 2);
  const auto value = HexNumber(Trimmed(text.substr(separator + 1)), 4);
  if (!address || !value) return std::nullopt;
  return std::pair{*address, static_cast<uint16_t>(*value)};
}

std::string AddressText(int address) { return WordText(static_cast<uint16_t>(address)).substr(2); }

// The calibration words of the fitted board, one a line, with the values they hold.
std::string CalibrationWordsText(const Meter& meter) {
  std::string text;
  for (const CalibrationWord& word : CalibrationWordsOf(meter.FittedConditioner())) {
    if (!text.empty()) text += '\n';
    const uint16_t value = meter.Memory().Word(word.address);
    text += "word " + AddressText(word.address) + " " + WordText(value) + "  " + RoleName(word.role) +
            (value == word.factory ? "" : " (factory " + WordText(word.factory) + ")");
  }
  return text;
}

// "word AA" shows a word of the meter's memory, "word AA HHHH" sets it.
ControlResult WordControl(std::string_view value, Meter& meter) {
  const std::string usage = "usage: word AA [HHHH], an address 00-FF and four hexadecimal digits to set it";
  if (value.size() == 2) {
    const auto address = HexNumber(value, 2);
    if (!address) return {false, usage};
    return {false, "word " + AddressText(*address) + " " + WordText(meter.Memory().Word(*address))};
  }
  const auto word = ParseWordSetting(value);
  if (!word) return {false, usage};
  meter.Memory().SetWord(word->first, word->second);
  return {false, "word " + AddressText(word->first) + " " + WordText(word->second)};
}

// Records a second: a number, 0 or "max" for back to back, "setup" for the setup's own rate.
std::optional<std::string> ParseRate(std::string_view text, PortOptions& port) {
  if (text == "setup") {
    port.recordRate.reset();
    return std::nullopt;
  }
  if (text == "max") {
    port.recordRate = 0.0;
    return std::nullopt;
  }
  const auto rate = ParseNumber<double>(text);
  if (!rate || *rate < 0) return "rate is a number of records a second, max or setup";
  port.recordRate = *rate;
  return std::nullopt;
}

// One option with its value.
std::optional<std::string> ParseValued(std::string_view name, std::string_view value, ProgramOptions& options) {
  MeterOptions& meter = options.meter;
  if (name == "--link") {
    options.linkPath = value;
  } else if (name == "--image") {
    options.imageFile = value;
  } else if (name == "--conditioner") {
    return ParseConditioner(value, meter);
  } else if (name == "--kind") {
    if (value != "basic" && value != "extended") return "kind is basic or extended";
    meter.extended = value == "extended";
    options.kindGiven = true;
  } else if (name == "--revision") {
    const auto rev = ParseNumber<int>(value);
    if (!rev || *rev < 0 || *rev > 255) return "revision is a number 0 to 255";
    meter.firmwareRev = *rev;
  } else if (name == "--teds") {
    options.tedsGiven = true;
    return ParseTeds(value, meter);
  } else if (name.starts_with("--teds-")) {
    options.dataSheetGiven = true;
    return ParseDataSheetField(name, value, options.dataSheet);
  } else if (name == "--latency") {
    const auto ms = ParseNumber<uint32_t>(value);
    if (!ms) return "latency is a number of milliseconds";
    options.port.latencyMs = *ms;
  } else if (name == "--baud") {
    return ParseBaud(value, options);
  } else if (name == "--address") {
    if (value.size() != 1 || DigitSetValue(value[0]) < 0) return "address is one character 0-9 or A-V";
    meter.address = DigitSetValue(value[0]);
  } else if (name == "--options") {
    if (!IsHex2(value)) return "options register is two hexadecimal digits";
    meter.optionRegister = static_cast<uint8_t>(std::stoi(std::string(value), nullptr, 16));
  } else if (name == "--rate") {
    if (auto error = ParseRate(value, options.port)) return error;
  } else if (name == "--cal-word") {
    const auto word = ParseWordSetting(value);
    if (!word) return "--cal-word is ADDR=HHHH: a word address 00-FF and four hexadecimal digits";
    meter.words.push_back(*word);
  } else if (name == "--input" || name == "--noise") {
    const auto number = ParseNumber<double>(value);
    if (!number) return std::string(name) + " takes a number";
    (name == "--input" ? options.input : options.noise) = *number;
  } else {
    return "unknown option " + std::string(name);
  }
  return std::nullopt;
}

// "on", "off", or nothing for "on".
std::optional<bool> OnOff(std::string_view text) {
  if (text.empty() || text == "on") return true;
  if (text == "off") return false;
  return std::nullopt;
}

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front()))) text.remove_prefix(1);
  while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back()))) text.remove_suffix(1);
  return text;
}

}  // namespace

std::optional<std::string> ParseArguments(const std::vector<std::string>& args, ProgramOptions& options) {
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string& arg = args[i];
    if (arg == "--help" || arg == "-h") {
      options.help = true;
    } else if (arg == "--echo") {
      options.port.echo = true;
    } else if (arg == "--two-wire") {
      options.port.twoWire = true;
    } else if (arg == "--miscalibrate") {
      options.meter.miscalibrate = true;
    } else if (arg == "--log-records") {
      options.port.logRecords = true;
    } else if (arg.starts_with("--")) {
      const std::size_t equals = arg.find('=');
      std::string name = arg.substr(0, equals);
      std::string value;
      if (equals != std::string::npos) {
        value = arg.substr(equals + 1);
      } else if (i + 1 < args.size()) {
        value = args[++i];
      } else {
        return name + " needs a value";
      }
      if (auto error = ParseValued(name, value, options)) return error;
    } else {
      return "unexpected argument \"" + arg + "\"";
    }
  }
  if (!options.help && options.linkPath.empty()) return "--link PATH is required";
  if (options.dataSheetGiven) {
    options.meter.dataSheet = EncodeDataSheet(options.dataSheet);
    if (!options.tedsGiven) options.meter.tedsHardware = options.meter.tedsPresent = true;
  }
  return std::nullopt;
}

std::optional<std::string> ReadSetupFile(ProgramOptions& options, std::string& image) {
  std::ifstream file(options.imageFile, std::ios::binary);
  if (!file) return "cannot read the setup file " + options.imageFile;
  std::string kind;
  std::getline(file, image);
  std::getline(file, kind);
  // Each line is one field: up to a comma or the line end.
  const auto field = [](std::string& line) { line = std::string(Trimmed(line.substr(0, line.find(',')))); };
  field(image);
  field(kind);
  if (image.empty()) return "the setup file " + options.imageFile + " holds no image";
  if (!options.kindGiven && (kind == "0" || kind == "1")) options.meter.extended = kind == "1";
  return std::nullopt;
}

std::string StatusText(const Meter& meter, const MeterPort& port) {
  const Meter& m = meter;
  const MeterOptions& o = m.Options();
  const PortOptions& p = port.Options();
  std::ostringstream text;
  text << NameOf(m.FittedConditioner()) << " meter, " << (o.extended ? "EXTENDED" : "BASIC") << ", revision "
       << int{m.Memory().Byte(121)} << ", address " << m.AddressChar() << ", options " << m.Register(0x30)
       << ", data sheet "
       << (o.tedsPresent    ? "present"
           : o.tedsHardware ? "hardware only"
                            : "none")
       << "; " << p.baud << " baud, latency " << p.latencyMs << " ms" << (p.echo ? ", echo" : "")
       << (p.twoWire ? ", two-wire" : "") << (p.silent ? ", silent" : "") << (p.babble ? ", babbling" : "")
       << "; records "
       << (!p.recordRate        ? std::string("at the setup's rate")
           : *p.recordRate <= 0 ? std::string("back to back")
                                : std::to_string(*p.recordRate) + " a second")
       << "; input " << m.Input() << ", noise " << m.Noise();
  return text.str();
}

ControlResult ApplyControlLine(std::string_view line, MeterPort& port) {
  line = Trimmed(line);
  const std::size_t space = line.find(' ');
  const std::string_view word = line.substr(0, space);
  const std::string_view value = space == std::string_view::npos ? std::string_view{} : Trimmed(line.substr(space));
  Meter& meter = port.Device();
  PortOptions& options = port.Options();
  if (word.empty()) return {};
  if (word == "quit" || word == "exit") return {true, "quitting"};
  if (word == "help") return {false, ControlHelpText()};
  if (word == "status") return {false, StatusText(meter, port)};
  if (word == "image") return {false, "image " + meter.Image()};
  if (word == "word") return WordControl(value, meter);
  if (word == "calibration") return {false, CalibrationWordsText(meter)};
  if (word == "input" || word == "noise" || word == "latency") {
    const auto number = ParseNumber<double>(value);
    if (!number || (word != "input" && *number < 0)) return {false, std::string(word) + " takes a number"};
    if (word == "input") meter.ApplyInput(*number);
    if (word == "noise") meter.SetNoise(*number);
    if (word == "latency") options.latencyMs = static_cast<uint32_t>(*number);
    return {false, std::string(word) + " " + std::string(value)};
  }
  if (word == "rate") {
    if (auto error = ParseRate(value, options)) return {false, *error};
    return {false, "rate " + std::string(value)};
  }
  if (word == "silent" || word == "babble" || word == "echo") {
    const auto on = OnOff(value);
    if (!on) return {false, std::string(word) + " takes on or off"};
    (word == "silent" ? options.silent : word == "babble" ? options.babble : options.echo) = *on;
    return {false, std::string(word) + (*on ? " on" : " off")};
  }
  return {false, "unknown control \"" + std::string(line) + "\"; type help"};
}

std::string UsageText() {
  return R"(Usage: dpm-emulator --link PATH [options]

A digital panel meter on a pseudo-terminal. The meter answers the serial command
protocol (setup memory reads and writes, registers, readings, continuous output,
resets, remote display, load cell data sheet) at the pace of a real line. PATH
becomes a symbolic link to the terminal, so a program can open it as its port
(for instance COM1 in the program's folder). The link is removed on quit.

Options:
  --link PATH            where to put the link to the terminal (required)
  --conditioner NAME     temperature, dc, rms or load-cell (default: as the setup
                         says, which for the built-in setup is dc)
  --kind basic|extended  the meter's kind (default extended)
  --revision N           firmware revision, 0 to 255 (default: the setup's, 4)
  --teds none|hardware|present
                         load cell data sheet hardware, and a data sheet on it
                         (default none)
  --teds-template N      layout of the data sheet, 0 to 3; 3 holds no calibration
                         fields (default 0)
  --teds-serial N        serial number, 0 to 16777215 (default 204518)
  --teds-units N         units code, 0 to 63: 0 none, 4 N, 5 Lb, 6 KgF, 10 Nm,
                         11 oz-in, 12 Pa, 13 psi; 63, and 0 from revision 10 on,
                         refer to the extended code (default 5)
  --teds-extended-units N
                         extended units code, 0 to 127: 0 none, 1 g, 2 oz, 3 ton,
                         4 ton m, 5 ft-Lb, 6 in-Lb, 7 bar (default 0)
  --teds-date YYYY-MM-DD calibration date, 1998-01-01 to 2177-06-06
                         (default 2023-03-14)
  --teds-initials ABC    the calibrator's initials, one to three letters
                         (default JKL)
  --teds-period N        calibration period in days, 0 to 4095 (default 365)
  --teds-id N            measurement id, 0 to 2047: 0 bridge A, 1 bridge B, ...
                         (default 1)
                         Any --teds-... option puts the data sheet on the
                         meter, as --teds present does, unless --teds is given.
  --echo                 send every command back before its reply
  --two-wire             a half-duplex line: the program hears its own commands
  --latency MS           milliseconds from a command to its answer (default 20)
  --baud N               line speed the answers are paced at, 10 bits a
                         character (default 9600); a rate of the meter's table
                         (300 to 19200) is also put into its setup
  --address C            the meter's address, 0-9 or A-V (default: the setup's, 1)
  --image FILE           start from a setup file (.DPM): its first line is the
                         setup image, its second the kind (0 basic, 1 extended)
  --options HH           the option register: boards fitted and lockout jumper
                         (default: digits 49-50 of the setup)
  --miscalibrate         start with every calibration word of the board a little
                         off (gains by about 0.4 %, zeros by a few counts), so
                         that the meter needs calibrating
  --cal-word AA=HHHH     start with word AA (00-FF) holding HHHH; repeatable, and
                         applied after --miscalibrate. The factory words are 0000
                         for zeros and offsets, 8000 for gains, 4000 for the RTD
                         current source, 6F45 and 6E1D for the cold junction gains
  --input X              the input applied at start, in the units of the range
  --noise X              noise on the input, one standard deviation
  --rate N|max|setup     records a second of the continuous output ("A0"); max
                         sends them back to back, as fast as the baud rate
                         carries them (default setup: the setup's output rate)
  --log-records          print each record of the continuous output as it goes
  --help                 this text

Each command heard and each answer is printed on one line. While it runs, the
emulator takes control lines on standard input:
)" + ControlHelpText() +
         R"(
It stops on quit, on end of input from a terminal, and on SIGINT or SIGTERM.
With input that is not a terminal (such as </dev/null) it keeps running after
the end of input.
)";
}

std::string ControlHelpText() {
  return R"(  input X         apply X at the input (volts on a volt range, mA on a
                  milliampere range, degrees on a temperature range); beyond
                  the display the meter reads +OVLOAD or -OVLOAD
  noise X         noise on the input, one standard deviation; 0 for none
  silent on|off   stop answering (commands still take effect)
  babble on|off   put bursts of garbage on the line
  echo on|off     send every command back before its reply
  latency MS      milliseconds from a command to its answer
  rate N          records a second of the continuous output; max for back
                  to back, setup for the setup's own output rate
  status          show how the meter is set
  image           print the setup image the meter holds
  word AA [HHHH]  show word AA (00-FF) of the meter's memory, or set it
  calibration     list the board's calibration words and what they hold
  quit            remove the link and stop)";
}

}  // namespace dpm::emulator
