// One contract for every serial control the program can be given: the in-memory line of
// the tests and the Qt port on a real pseudo-terminal must behave alike wherever the
// transport relies on them.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <thread>

#include "platform/fake/fake_serial_line.h"
#include "platform/fake/virtual_time.h"
#include "platform/faults.h"
#include "platform/qt/qt_serial_port.h"
#include "pseudo_terminal.h"

namespace dpm {
namespace {

using testing::PseudoTerminal;
using testing::TempFolder;

// The in-memory line; what the program sent is read back from its transcript.
class FakeLineHarness {
 public:
  SerialPort& Port() { return line_; }
  void FarEndSends(const std::string& bytes) { line_.Arrive(bytes); }
  std::string FarEndHears(std::size_t /*count*/) {
    std::string heard;
    for (const auto& e : line_.Transcript())
      if (e.kind == fake::FakeSerialLine::Kind::Sent) heard += e.text;
    line_.ClearTranscript();
    return heard;
  }

 private:
  fake::VirtualTime time_;
  fake::FakeSerialLine line_{time_};
};

// The Qt port on the slave side of a pseudo-terminal, reached as port number 1 through a
// COM1 link in a folder of its own. No event loop runs in these tests: the port must see
// the device by itself.
class QtPortHarness {
 public:
  QtPortHarness() : port_(folder_.Path()) {
    std::filesystem::create_symlink(pty_.SlavePath(), folder_.Path() / "COM1");
    port_.SetCommPort(1);
  }
  SerialPort& Port() { return port_; }
  void FarEndSends(const std::string& bytes) { pty_.Send(bytes); }
  std::string FarEndHears(std::size_t count) { return pty_.Receive(count); }

 private:
  TempFolder folder_;
  PseudoTerminal pty_;
  qt::QtSerialPort port_;
};

template <typename Harness>
class SerialContract : public ::testing::Test {
 protected:
  SerialPort& port() { return harness.Port(); }

  // The pseudo-terminal hands bytes over a moment after they were written; the in-memory
  // line at once. Bounded at one second.
  int WaitForInBuffer(int count) {
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(1);
    int waiting = port().InBufferCount();
    while (waiting < count && std::chrono::steady_clock::now() < until) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
      waiting = port().InBufferCount();
    }
    return waiting;
  }

  Harness harness;
};

using Implementations = ::testing::Types<FakeLineHarness, QtPortHarness>;
TYPED_TEST_SUITE(SerialContract, Implementations);

TYPED_TEST(SerialContract, DataOperationsOnAClosedPortFault) {
  const std::pair<const char*, std::function<void(SerialPort&)>> operations[] = {
      {"InBufferCount", [](SerialPort& p) { p.InBufferCount(); }},
      {"OutBufferCount", [](SerialPort& p) { p.OutBufferCount(); }},
      {"Input", [](SerialPort& p) { p.Input(); }},
      {"Output", [](SerialPort& p) { p.Output("*1B1\r"); }},
  };
  for (const auto& [name, operation] : operations) {
    SCOPED_TRACE(name);
    try {
      operation(this->port());
      ADD_FAILURE() << "no fault";
    } catch (const SerialFault& fault) {
      EXPECT_NE(std::string(fault.what()).find("closed"), std::string::npos) << fault.what();
    }
  }
  this->port().SetPortOpen(true);
  this->port().SetPortOpen(false);
  EXPECT_THROW(this->port().Input(), SerialFault) << "closed again after being open";
}

TYPED_TEST(SerialContract, OpenAndCloseRules) {
  EXPECT_FALSE(this->port().PortOpen());
  EXPECT_NO_THROW(this->port().SetPortOpen(false)) << "closing a closed port is quiet";
  this->port().SetPortOpen(true);
  EXPECT_TRUE(this->port().PortOpen());
  EXPECT_THROW(this->port().SetPortOpen(true), SerialFault);
  EXPECT_THROW(this->port().SetCommPort(2), SerialFault) << "the port number is fixed while open";
  EXPECT_EQ(this->port().CommPort(), 1);
  this->port().SetPortOpen(false);
  EXPECT_FALSE(this->port().PortOpen());
  this->port().SetPortOpen(true);
  EXPECT_TRUE(this->port().PortOpen()) << "the device can be opened again";
}

TYPED_TEST(SerialContract, SettingsAreKeptAndAMissingBaudRateIsRefused) {
  for (bool open : {false, true}) {
    SCOPED_TRACE(open ? "open" : "closed");
    if (open) this->port().SetPortOpen(true);
    this->port().SetSettings("19200,n,8,1");
    EXPECT_EQ(this->port().Settings(), "19200,n,8,1");
    EXPECT_THROW(this->port().SetSettings(",n,8,1"), SerialFault);
    EXPECT_THROW(this->port().SetSettings(""), SerialFault);
    EXPECT_EQ(this->port().Settings(), "19200,n,8,1") << "a refused text leaves the settings as they were";
    this->port().SetSettings("9600,n,8,1");
  }
}

TYPED_TEST(SerialContract, ModemLinesKeepTheRequestedState) {
  this->port().SetRTSEnable(true);
  this->port().SetPortOpen(true);
  EXPECT_TRUE(this->port().RTSEnable());
  this->port().SetDTREnable(true);
  EXPECT_TRUE(this->port().DTREnable());
  this->port().SetRTSEnable(false);
  EXPECT_FALSE(this->port().RTSEnable());
  EXPECT_TRUE(this->port().DTREnable());
  this->port().SetHandshaking(0);
  EXPECT_TRUE(this->port().PortOpen());
}

// Every byte value passes untouched (no echo, no line editing, no CR/LF translation), Input
// takes everything that is waiting, and everything queued leaves the output buffer.
TYPED_TEST(SerialContract, EveryByteTravelsBothWaysUntouched) {
  std::string all;
  for (int c = 0; c < 256; ++c) all += static_cast<char>(c);
  this->port().SetPortOpen(true);
  this->port().Output(all);
  EXPECT_EQ(this->harness.FarEndHears(all.size()), all);
  EXPECT_EQ(this->port().OutBufferCount(), 0);

  this->harness.FarEndSends(all.substr(0, 100));
  EXPECT_EQ(this->WaitForInBuffer(100), 100);
  this->harness.FarEndSends(all.substr(100));
  EXPECT_EQ(this->WaitForInBuffer(256), 256);
  EXPECT_EQ(this->port().Input(), all);
  EXPECT_EQ(this->port().InBufferCount(), 0);
  EXPECT_EQ(this->port().Input(), "");
}

}  // namespace
}  // namespace dpm
