#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "link/globals.h"
#include "link_fixture.h"
#include "platform/fake/scripted_dialogs.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "platform/forms/form_manager.h"
#include "setup/transfer.h"

namespace dpm::fake {
inline void PrintTo(const FakeSerialLine::Command& c, std::ostream* os) {
  *os << "{" << c.atMs << ", " << c.text << "}";
}
}  // namespace dpm::fake

namespace dpm::testing {

using Commands = std::vector<fake::FakeSerialLine::Command>;

// A meter that answers each command it knows, a few milliseconds after it heard it, and
// stays silent to everything else (the writes, which it is not asked to confirm).
class ScriptedMeter : public fake::SerialPeer {
 public:
  explicit ScriptedMeter(fake::FakeSerialLine& line) : line_(line) { line.SetPeer(this); }
  ~ScriptedMeter() override { line_.SetPeer(nullptr); }

  // `command` as sent, without the line end.
  void Answer(const std::string& command, const std::string& reply) { replies_[command] = reply; }
  // Answers only so many commands, then falls silent.
  void SilentAfter(int answers) { answersLeft_ = answers; }

  void OnBytesFromHost(const std::string& bytes, uint32_t) override {
    const std::string command = bytes.substr(0, bytes.find(CR));
    const auto reply = replies_.find(command);
    if (reply == replies_.end() || answersLeft_ == 0) return;
    if (answersLeft_ > 0) --answersLeft_;
    line_.ArriveAfter(kLatencyMs, reply->second + CR);
  }

  static constexpr uint32_t kLatencyMs = 5;

 private:
  fake::FakeSerialLine& line_;
  std::map<std::string, std::string> replies_;
  int answersLeft_ = -1;
};

// The pieces of the main menu that the transfers report on, in a form of their own.
class MenuPieces : public Form {
 public:
  MenuPieces() : Form("frmMMenu", "DPM MAIN  MENU") {
    mnuPut.SetEnabled(false);
    mnuView.SetEnabled(false);
    mnuCmds.SetEnabled(false);
  }
  Label lblGPText{*this, "lblGPText", "Getting data from the DPM."};
  MenuItem mnuDPM{*this, "mnuDPM", "DP&M"};
  MenuItem mnuPut{*this, "mnuPut", "&Put Setup", &mnuDPM};
  MenuItem mnuView{*this, "mnuView", "&View"};
  MenuItem mnuCmds{*this, "mnuCmds", "Co&mmands"};
  ProgressBar prgTransfer{*this, "prgTransfer"};
  TransferScreen screen{lblGPText, mnuCmds, mnuView, mnuPut, prgTransfer};
};

// A program at 9600 baud, address "1", with a scripted meter, scripted dialogs and the
// main menu's pieces.
class TransferTest : public LinkTest {
 protected:
  TransferTest() {
    Forms().Reset();
    Platform().dialogs = &dialogs;
    g.MeterAddressNumber = 1;
    g.FirmwareRev = 4;
    g.DefaultFirmwareRev = 4;
  }
  ~TransferTest() override { Forms().Reset(); }

  Commands Sent() const { return line.SentCommands(); }

  // The next case of a table starts on a round ten seconds with an empty transcript;
  // returns that start.
  uint32_t StartAfresh() {
    time.Run(10000 - time.Elapsed() % 10000);
    line.ClearTranscript();
    return time.Elapsed();
  }

  // The status line as a user sees it.
  std::string Status() const { return menu.lblGPText.Visible() ? menu.lblGPText.Caption() : "(hidden)"; }

  fake::ScriptedDialogs dialogs;
  ScriptedMeter meter{line};
  MenuPieces menu;
};

}  // namespace dpm::testing
