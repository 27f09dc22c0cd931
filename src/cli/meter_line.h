#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "cli/cli_options.h"
#include "platform/dialogs.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "platform/qt/qt_clock.h"
#include "platform/qt/qt_event_pump.h"
#include "platform/qt/qt_serial_port.h"
#include "setup/transfer.h"

// The meter's line for a program without windows: the link settings of the program's
// folder with the command line's changes, the Qt serial port, clock and event loop, and
// the status line and progress bar that Get and Put report on, drawn on standard error.
namespace dpm::cli {

// The questions Put may ask: the one it asks is a refusal, which is kept for the caller.
// Nothing else is ever asked without a window.
class LineDialogs : public Dialogs {
 public:
  MessageAnswer MessageBox(MessageIcon icon, const std::string& title, const std::string& text,
                           MessageButtons buttons) override;
  std::optional<std::string> OpenFileName(const std::string&, const std::string&) override { return std::nullopt; }
  std::optional<std::string> SaveFileName(const std::string&, const std::string&) override { return std::nullopt; }
  void Beep() override {}
  void SetHourglass(bool) override {}
  void PrintForm(const Form&) override {}
  std::optional<PictureRef> FindPicture(const std::string&) override { return std::nullopt; }
  std::optional<PictureRef> FindPicture(int) override { return std::nullopt; }

  // The text of the last message, its line breaks as blanks; empty when there was none.
  const std::string& LastMessage() const { return lastMessage_; }

 private:
  std::string lastMessage_;
};

// The status line, the progress bar and the menus of the main menu, in a form that no
// window shows. While standard error is a terminal, the bar is drawn there on one line.
class TransferPieces : public Form {
 public:
  TransferPieces();
  ~TransferPieces() override;

  Label lblGPText{*this, "lblGPText"};
  MenuItem mnuCmds{*this, "mnuCmds", "Co&mmands"};
  MenuItem mnuView{*this, "mnuView", "&View"};
  MenuItem mnuPut{*this, "mnuPut", "&Put Setup"};
  ProgressBar prgTransfer{*this, "prgTransfer"};
  TransferScreen screen{lblGPText, mnuCmds, mnuView, mnuPut, prgTransfer};

  // The transfer ended in failure: the status line turned red.
  bool Failed() const;

 private:
  class TerminalBar;
  std::unique_ptr<TerminalBar> bar_;
};

// The platform of a command that talks to the meter. Reads Settings.SSS of the program's
// folder (a missing or bad one is a UsageError), applies the command line's port, baud rate
// and address, and opens the port (a port that cannot be opened is a SerialFault).
class MeterLine {
 public:
  MeterLine(const std::filesystem::path& programFolder, const LinkOverrides& overrides);
  ~MeterLine();
  MeterLine(const MeterLine&) = delete;
  MeterLine& operator=(const MeterLine&) = delete;

  LineDialogs dialogs;

 private:
  // A device given by its path is reached through a COM1 entry of a folder of our own,
  // which goes away with the line.
  struct DeviceFolder {
    std::filesystem::path path;
    ~DeviceFolder();
  };
  DeviceFolder deviceFolder_;
  qt::QtClock clock_;
  qt::QtEventPump events_;
  std::unique_ptr<qt::QtSerialPort> port_;
};

}  // namespace dpm::cli
