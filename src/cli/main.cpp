// dpm-cli: the meter's setup and readings from the command line, on the program's own core.

#include <chrono>
#include <csignal>
#include <cstdio>
#include <deque>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include <QCoreApplication>

#include "cli/cli_options.h"
#include "cli/meter_line.h"
#include "cli/readings_csv.h"
#include "cli/setup_listing.h"
#include "link/globals.h"
#include "link/transport.h"
#include "panelmenu/menu_rows.h"
#include "platform/events.h"
#include "platform/faults.h"
#include "platform/file_writing.h"
#include "platform/numeric.h"
#include "platform/serial.h"
#include "platform/services.h"
#include "readings/capture.h"
#include "readings/list_readings.h"
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
  return changes.empty() ? kSuccess : kFilesDiffer;
}

// A file is written after the meter has been talked to; a folder that is not there is
// found out before.
void RequireFolderOf(const std::string& file) {
  const fs::path path = fs::absolute(file);
  std::error_code error;
  if (!fs::is_directory(path.parent_path(), error))
    throw UsageError(file + ": no folder " + path.parent_path().string() + " to write it in");
}

// The setup file given for a command that talks to the meter: checked and loaded before
// the line opens, and in force after it, as when a setup file is opened after start-up.
class SetupInHand {
 public:
  explicit SetupInHand(const std::string& file) : file_(file) {
    if (file_.empty()) return;
    LoadCheckedSetupFile(file_);
    image_ = g.SetupImage;
    revision_ = g.FirmwareRev;
  }
  void Restore() const {
    if (file_.empty()) return;
    g.SetupImage = image_;
    g.FirmwareRev = revision_;
  }

 private:
  std::string file_;
  std::string image_;
  int16_t revision_ = 0;
};

int RunGet(const Options& options, const fs::path& programFolder) {
  RequireFolderOf(options.output);
  const fs::path output = fs::absolute(options.output);
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
  const SetupInHand setup(file);
  ForFile(file, [] { return BoardKindOf(static_cast<int>(LeadingHexValue(Mid(g.SetupImage, kModeRangeByte, 1)))); });
  MeterLine line(programFolder, options.link);
  setup.Restore();
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

volatile std::sig_atomic_t interrupted = 0;

void OnInterrupt(int) { interrupted = 1; }

// Keeps every record the capture hands over, with the time it came and without its stop
// character; the measuring record of a list is a whole record like the others.
class CsvRecorder : public RecordConsumer {
 public:
  void OnMeasuringRecord(std::string_view sample) override { Keep(sample); }
  void OnRecord(std::string_view record) override { Keep(record.substr(0, record.size() - 1)); }

  std::deque<ListedReading> readings;

 private:
  void Keep(std::string_view text) { readings.push_back({std::chrono::system_clock::now(), std::string(text)}); }
};

int RunCapture(const Options& options, const fs::path& programFolder) {
  if (options.csv != "-") RequireFolderOf(options.csv);
  const SetupInHand setup(options.setup);
  MeterLine line(programFolder, options.link);
  setup.Restore();
  SerialPort& port = *Platform().meterLink;
  CsvRecorder recorder;
  {
    Capture capture(port, recorder, Capture::Kind::List);
    SendBody("A0");
    port.SetRTSEnable(true);
    capture.Start();
    // Ctrl-C ends the capture early, with the meter back on commands and the file written.
    interrupted = 0;
    const auto previousInt = std::signal(SIGINT, OnInterrupt);
    const auto previousTerm = std::signal(SIGTERM, OnInterrupt);
    const auto until = std::chrono::steady_clock::now() + std::chrono::duration<double>(options.seconds);
    while (interrupted == 0 && capture.Running() && std::chrono::steady_clock::now() < until) {
      Platform().events->Serve();
    }
    std::signal(SIGINT, previousInt);
    std::signal(SIGTERM, previousTerm);
    capture.Stop();
  }
  SendBody("A1");
  if (port.PortOpen()) port.SetRTSEnable(false);

  if (recorder.readings.empty()) {
    std::cerr << "No readings came from the meter; check connections, and that the framing of the setup (--setup) "
                 "is the meter's.\n";
    return kMeterFailed;
  }
  const std::string csv = CaptureCsv(recorder.readings);
  if (options.csv == "-") {
    std::cout << csv;
  } else {
    WriteFileKeepingIt(options.csv, csv);
  }
  std::cerr << recorder.readings.size() << " readings\n";
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
    case Command::Capture:
      return RunCapture(options, programFolder);
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
