#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/data_sheet.h"
#include "emulator/meter.h"
#include "emulator/meter_port.h"

// What the emulator program is told: its command line, and the control lines a person
// types while it runs.
namespace dpm::emulator {

struct ProgramOptions {
  std::string linkPath;
  std::string imageFile;
  MeterOptions meter;
  PortOptions port;
  double input = 0.0;
  double noise = 0.0;
  bool kindGiven = false;
  // The data sheet's fields; any of them given puts the sheet on the meter unless --teds
  // says otherwise.
  DataSheetFields dataSheet;
  bool dataSheetGiven = false;
  bool tedsGiven = false;
  bool help = false;
};

// Fills `options` from the arguments (without the program name); a message on a mistake.
std::optional<std::string> ParseArguments(const std::vector<std::string>& args, ProgramOptions& options);

// Reads a setup file: its first line is the image, its second "0" (BASIC) or "1"
// (EXTENDED), which counts unless the kind was given on the command line.
std::optional<std::string> ReadSetupFile(ProgramOptions& options, std::string& image);

std::string UsageText();
std::string ControlHelpText();

// One line of what the meter is and how it is set, for the start and for "status".
std::string StatusText(const Meter& meter, const MeterPort& port);

struct ControlResult {
  bool quit = false;
  std::string message;  // what to print, possibly several lines
};
ControlResult ApplyControlLine(std::string_view line, MeterPort& port);

}  // namespace dpm::emulator
