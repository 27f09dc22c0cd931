// dpm-cli: the meter's setup and readings from the command line, on the program's own core.

#include <cstdio>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include <QCoreApplication>

#include "cli/cli_options.h"
#include "cli/meter_line.h"
#include "cli/setup_listing.h"
#include "link/globals.h"
#include "link/transport.h"
#include "panelmenu/menu_rows.h"
#include "platform/faults.h"
#include "platform/numeric.h"
#include "setup/get_setup.h"
#include "setup/image_map.h"
#include "setup/image_positions.h"
#include "setup/put_setup.h"
#include "setup/setup_files.h"

namespace dpm::cli {
namespace {

namespace fs = std::filesystem;

void PrintLines(const std::vector<std::string>& lines) {
  for (const std::string& line : lines) std::cout << line << '\n';
}

std::string ErrFlagText() { return "ErrFlag = " + NumberText(static_cast<int64_t>(g.ErrFlag)); }

// A fault in reading a file's fields is a fault of the file.
template <class Body>
auto ForFile(const std::string& file, Body body) {
  try {
    return body();
  } catch (const RuntimeFault& fault) {
    throw UsageError(file + ": " + fault.what());
  }
}

int RunShow(const Options& options) {
  const std::string& file = options.files[0];
  LoadCheckedSetupFile(file);
  PrintLines(
      ForFile(file, [&] { return options.menu ? PanelMenuLines(BuildPanelMenu()) : FormatFields(ListFields()); }));
  return kSuccess;
}

int RunDiff(const Options& options) {
  const std::string& a = options.files[0];
  const std::string& b = options.files[1];
  LoadCheckedSetupFile(a);
  const std::vector<FieldLine> before = ForFile(a, ListFields);
  LoadCheckedSetupFile(b);
  const std::vector<FieldLine> after = ForFile(b, ListFields);
  const std::vector<FieldChange> changes = DiffFields(before, after);
  PrintLines(FormatChanges(changes));
  return changes.empty() ? kSuccess : kMeterFailed;
}

int RunGet(const Options& options, const fs::path& programFolder) {
  const fs::path output = fs::absolute(options.output);
  std::error_code error;
  if (!fs::is_directory(output.parent_path(), error))
    throw UsageError(options.output + ": no folder " + output.parent_path().string() + " to write it in");
  {
    MeterLine line(programFolder, options.link);
    TransferPieces pieces;
    GetSetup(pieces.screen);
    std::cerr << pieces.lblGPText.Caption() << '\n';
    if (pieces.Failed()) return kMeterFailed;
    // A meter that stops answering after the first block leaves a setup with stale parts,
    // which the status line does not tell; it is not saved as the meter's.
    if (g.ErrFlag != kReplyOk) {
      std::cerr << ErrFlagText() << ": the meter stopped answering during Get Setup; nothing was saved.\n";
      return kMeterFailed;
    }
  }
  SaveSetupFile(output);
  return kSuccess;
}

int RunPut(const Options& options, const fs::path& programFolder) {
  const std::string& file = options.files[0];
  LoadCheckedSetupFile(file);
  ForFile(file, [] { return BoardKindOf(static_cast<int>(LeadingHexValue(Mid(g.SetupImage, kModeRangeByte, 1)))); });
  const std::string image = g.SetupImage;
  const int16_t revision = g.FirmwareRev;
  MeterLine line(programFolder, options.link);
  // As when a setup file is opened after start-up: its image and revision replace those
  // that start-up set.
  g.SetupImage = image;
  g.FirmwareRev = revision;
  TransferPieces pieces;
  PutSetup(pieces.screen);
  // The meter's answer to the board kind question is the only one Put reads; without it
  // the kind compared is none, and the writes went to a meter that may not be there.
  if (g.ErrFlag != kReplyOk) {
    std::cerr << ErrFlagText() << ": the meter did not tell its kind of conditioner.\n";
    if (!line.dialogs.LastMessage().empty()) std::cerr << line.dialogs.LastMessage() << '\n';
    return kMeterFailed;
  }
  if (!line.dialogs.LastMessage().empty()) {
    std::cerr << line.dialogs.LastMessage() << '\n';
    return kMeterFailed;
  }
  std::cerr << pieces.lblGPText.Caption() << '\n';
  return pieces.Failed() ? kMeterFailed : kSuccess;
}

int RunRead(const Options& options, const fs::path& programFolder) {
  MeterLine line(programFolder, options.link);
  SendBody("B1");
  DelayChars(15);
  ReceiveReply();
  if (g.ErrFlag != kReplyOk) {
    std::cerr << ErrFlagText() << ": no reading from the meter, check connections.\n";
    return kMeterFailed;
  }
  std::cout << g.ReplyText << '\n';
  return kSuccess;
}

int Run(const Options& options, const fs::path& programFolder) {
  if (options.command == Command::Help || options.help) {
    std::cout << HelpText(options.command);
    return kSuccess;
  }
  switch (options.command) {
    case Command::Get:
      return RunGet(options, programFolder);
    case Command::Put:
      return RunPut(options, programFolder);
    case Command::Show:
      return RunShow(options);
    case Command::Diff:
      return RunDiff(options);
    case Command::Read:
      return RunRead(options, programFolder);
    case Command::Help:
      break;
  }
  return kSuccess;
}

}  // namespace
}  // namespace dpm::cli

int main(int argc, char** argv) {
  using namespace dpm::cli;
  QCoreApplication app(argc, argv);
  dpm::ResetGlobals();
  try {
    const Options options = ParseOptions(std::vector<std::string>(argv + 1, argv + argc));
    return Run(options, QCoreApplication::applicationDirPath().toStdString());
  } catch (const UsageError& error) {
    std::cerr << "dpm-cli: " << error.what() << '\n';
    return kBadUsage;
  } catch (const dpm::FileFault& fault) {
    std::cerr << "dpm-cli: " << fault.what() << '\n';
    return kBadUsage;
  } catch (const std::exception& fault) {
    std::cerr << "dpm-cli: " << fault.what() << '\n';
    return kMeterFailed;
  }
}
