#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <map>
#include <string>
#include <vector>

#include "calibration/calibration.h"
#include "link/globals.h"
#include "platform/fake/fake_serial_line.h"
#include "platform/fake/scripted_dialogs.h"
#include "platform/fake/virtual_time.h"
#include "platform/forms/form_manager.h"
#include "platform/services.h"
#include "setup/main_menu.h"

namespace dpm::testing {

// A meter on the bench as the calibration screen meets it: it names its board, keeps the
// words written to it, and answers "B1" with the readings the test lines up (the last one
// again when they run out).
class BenchMeter : public fake::SerialPeer {
 public:
  struct Heard {
    uint32_t atMs;
    std::string body;  // the command without "*" and the address
  };

  explicit BenchMeter(fake::FakeSerialLine& line) : line_(line) { line.SetPeer(this); }
  ~BenchMeter() override { line_.SetPeer(nullptr); }

  void OnBytesFromHost(const std::string& bytes, uint32_t nowMs) override {
    const std::string command = bytes.substr(0, bytes.find('\r'));
    if (command.size() < 3) return;
    const std::string body = command.substr(2);
    heard.push_back({nowMs, body});
    if (silent) return;
    if (body.rfind("W1", 0) == 0 && body.size() == 8) words[body.substr(2, 2)] = body.substr(4);
    const std::string reply = ReplyTo(body);
    if (!reply.empty()) line_.ArriveAfter(20, reply + "\r");
  }

  std::string ReplyTo(const std::string& body) {
    if (body == "XL24") {
      // 21 words from 24 down: the board's code ends at character 64, the input mode is
      // character 83.
      std::string digits(84, '0');
      digits.replace(62, 2, boardCode);
      digits[82] = modeDigit;
      return digits;
    }
    if (body == "G130") return "75";
    if (body == "B1") {
      if (readingsSilent) return {};
      if (!readings.empty()) {
        lastReading = readings.front();
        readings.pop_front();
      }
      return lastReading;
    }
    if (body.size() == 4 && body.rfind("X1", 0) == 0) {
      const auto word = words.find(body.substr(2));
      return word == words.end() ? "0000" : word->second;
    }
    return {};
  }

  // The commands heard from `from` on, without their times.
  std::vector<std::string> Bodies(std::size_t from = 0) const {
    std::vector<std::string> bodies;
    for (std::size_t i = from; i < heard.size(); ++i) bodies.push_back(heard[i].body);
    return bodies;
  }

  std::string boardCode = "01";
  char modeDigit = '6';
  std::deque<std::string> readings;
  std::string lastReading = "+00000.";
  std::map<std::string, std::string> words;
  bool silent = false;
  bool readingsSilent = false;
  std::vector<Heard> heard;

 private:
  fake::FakeSerialLine& line_;
};

// The main menu on an in-memory line at 9600 baud, address "1", with the bench meter at the
// far end, in virtual time early in the day.
class CalibrationTest : public ::testing::Test {
 protected:
  CalibrationTest() : line(time), meter(line) {
    ResetGlobals();
    Forms().Reset();
    Platform() = Services{&time, &time, &line, &dialogs};
    g.LinkEnabled = 1;
    g.BaudIndex = 5;
    g.CharTime = 1;
    g.MeterAddress = "1";
    line.SetPortOpen(true);
    frmMMenu().Show();
  }
  ~CalibrationTest() override {
    Forms().Reset();
    Platform() = Services{};
  }

  // The Calibration heading, for a meter that names this board.
  Calibration& Open(const std::string& boardCode, char modeDigit) {
    meter.boardCode = boardCode;
    meter.modeDigit = modeDigit;
    frmMMenu().mnuCalib.UserClick();
    Calibration* form = Forms().FindLoaded<Calibration>();
    EXPECT_NE(form, nullptr);
    return *form;
  }

  Calibration& OpenAt(const std::string& boardCode, char modeDigit, int listIndex) {
    Calibration& form = Open(boardCode, modeDigit);
    form.cboRange.UserSelect(listIndex);
    return form;
  }

  // Does `action` at `atMs` virtual milliseconds from now, in the middle of whatever runs.
  void At(uint32_t fromNowMs, std::function<void()> action) {
    const uint32_t at = time.Milliseconds() + fromNowMs;
    time.AddTicker([at, action = std::move(action), done = false](uint32_t now) mutable {
      if (!done && now >= at) {
        done = true;
        action();
      }
    });
  }

  static std::vector<std::string> Row(const Calibration& form, int row) {
    std::vector<std::string> cells;
    for (int col = 0; col < Calibration::kGridCols; ++col) cells.push_back(form.grdList.TextMatrix(row, col));
    return cells;
  }

  fake::VirtualTime time{1000, 3600.0};
  fake::ScriptedDialogs dialogs;
  fake::FakeSerialLine line;
  BenchMeter meter;
};

}  // namespace dpm::testing
