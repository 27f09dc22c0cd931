#include "platform/qt/qt_serial_port.h"

#include <gtest/gtest.h>
#include <termios.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "platform/faults.h"
#include "pseudo_terminal.h"

namespace dpm::qt {
namespace {

using testing::PseudoTerminal;
using testing::TempFolder;

std::string FaultText(const std::function<void()>& action) {
  try {
    action();
  } catch (const SerialFault& fault) {
    return fault.what();
  }
  return "(no fault)";
}

TEST(LineSettingsText, ReadsEveryField) {
  struct Case {
    const char* text;
    LineSettings expected;
  };
  const Case cases[] = {
      {"9600,n,8,1", {9600, QSerialPort::NoParity, QSerialPort::Data8, QSerialPort::OneStop}},
      {"300,E,7,2", {300, QSerialPort::EvenParity, QSerialPort::Data7, QSerialPort::TwoStop}},
      {"19200,o,5,1.5", {19200, QSerialPort::OddParity, QSerialPort::Data5, QSerialPort::OneAndHalfStop}},
      {"1200,m,6,1", {1200, QSerialPort::MarkParity, QSerialPort::Data6, QSerialPort::OneStop}},
      {" 4800 , s , 8 , 1 ", {4800, QSerialPort::SpaceParity, QSerialPort::Data8, QSerialPort::OneStop}},
      {"2400", {2400, QSerialPort::NoParity, QSerialPort::Data8, QSerialPort::OneStop}},
  };
  for (const auto& c : cases) EXPECT_EQ(ParseLineSettings(c.text), c.expected) << c.text;
}

TEST(LineSettingsText, RefusesWhatNoPortCanTakeAndSaysWhy) {
  struct Case {
    const char* text;
    const char* cause;
  };
  const Case cases[] = {
      {",n,8,1", "baud rate is missing"}, {"", "baud rate is missing"},
      {"96OO,n,8,1", "\"96OO\""},         {"0,n,8,1", "\"0\""},
      {"-300,n,8,1", "\"-300\""},         {"99999999999,n,8,1", "\"99999999999\""},
      {"9600,x,8,1", "parity \"x\""},     {"9600,n,9,1", "data bits \"9\""},
      {"9600,n,8,3", "stop bits \"3\""},  {"9600,n,8,1,1", "more than four"},
  };
  for (const auto& c : cases) {
    const std::string text = FaultText([&] { ParseLineSettings(c.text); });
    EXPECT_NE(text.find(c.cause), std::string::npos) << c.text << " gave: " << text;
  }
}

TEST(PortNumbers, FolderEntryFirstThenTheMachinesSerialDevices) {
  TempFolder folder;
  PseudoTerminal pty;
  std::filesystem::create_symlink(pty.SlavePath(), folder.Path() / "COM3");
  std::filesystem::create_symlink(folder.Path() / "nowhere", folder.Path() / "COM4");
  QtSerialPort port(folder.Path());

  EXPECT_EQ(port.DeviceForPort(3), std::filesystem::canonical(pty.SlavePath()));
  EXPECT_EQ(port.DeviceForPort(1), "/dev/ttyS0");
  EXPECT_EQ(port.DeviceForPort(12), "/dev/ttyS11");
  const std::string dangling = FaultText([&] { port.DeviceForPort(4); });
  EXPECT_NE(dangling.find("COM4"), std::string::npos) << dangling;
  EXPECT_NE(dangling.find("nowhere"), std::string::npos) << dangling;

  EXPECT_THROW(port.SetCommPort(0), SerialFault);
  EXPECT_THROW(port.SetCommPort(-1), SerialFault);
  EXPECT_EQ(port.CommPort(), 1) << "numbers below one are refused";
  // A port without a device faults, naming both.
  port.SetCommPort(99);
  const std::string missing = FaultText([&] { port.SetPortOpen(true); });
  EXPECT_NE(missing.find("COM99"), std::string::npos) << missing;
  EXPECT_NE(missing.find("/dev/ttyS98"), std::string::npos) << missing;
  EXPECT_FALSE(port.PortOpen());
}

// The Qt port on a pseudo-terminal, opened as port 1 through a COM1 link.
class QtPortOnPty : public ::testing::Test {
 protected:
  QtPortOnPty() : port(folder.Path()) {
    std::filesystem::create_symlink(pty.SlavePath(), folder.Path() / "COM1");
    port.SetCommPort(1);
  }

  termios DeviceTermios() {
    termios t{};
    EXPECT_EQ(::tcgetattr(port.Device().handle(), &t), 0);
    return t;
  }
  speed_t DeviceSpeed() {
    const termios t = DeviceTermios();
    return cfgetospeed(&t);
  }

  TempFolder folder;
  PseudoTerminal pty;
  QtSerialPort port;
};

TEST_F(QtPortOnPty, SettingsReachTheDeviceOnOpeningAndAtOnceWhileOpen) {
  port.SetSettings("9600,n,8,1");
  port.SetRTSEnable(true);  // refused by a pseudo-terminal, which is no fault
  port.SetPortOpen(true);
  port.SetDTREnable(true);
  ASSERT_TRUE(port.PortOpen());
  EXPECT_EQ(DeviceSpeed(), B9600);
  port.Output("*1B1\r");
  EXPECT_EQ(pty.Receive(5), "*1B1\r") << "the line still works after the refused modem lines";

  port.SetSettings("19200,n,8,1");
  termios t = DeviceTermios();
  EXPECT_EQ(cfgetospeed(&t), B19200);
  EXPECT_EQ(t.c_cflag & CSIZE, static_cast<tcflag_t>(CS8));
  EXPECT_FALSE(t.c_cflag & PARENB);
  EXPECT_FALSE(t.c_cflag & CSTOPB);

  // A pseudo-terminal keeps 8 data bits without parity whatever it is told, so only the
  // baud rate and the stop bits show here.
  port.SetSettings("300,n,8,2");
  t = DeviceTermios();
  EXPECT_EQ(cfgetospeed(&t), B300);
  EXPECT_TRUE(t.c_cflag & CSTOPB);
  EXPECT_EQ(port.Settings(), "300,n,8,2");

  EXPECT_THROW(port.SetSettings(",n,8,1"), SerialFault);
  EXPECT_EQ(DeviceSpeed(), B300) << "a refused text leaves the device alone";
}

TEST_F(QtPortOnPty, ASettingTheDeviceRefusesIsAFault) {
  port.SetPortOpen(true);
  port.SetSettings("9600,n,8,1");
  const std::string text = FaultText([&] { port.SetSettings("9600,e,7,1"); });
  EXPECT_NE(text.find("9600,e,7,1"), std::string::npos) << text;
  EXPECT_NE(text.find("COM1"), std::string::npos) << text;
  EXPECT_EQ(port.Settings(), "9600,n,8,1");
  EXPECT_EQ(DeviceSpeed(), B9600);
  port.Output("ok");
  EXPECT_EQ(pty.Receive(2), "ok") << "the port stays usable";
}

TEST_F(QtPortOnPty, ADeviceThatGoesAwayIsAFault) {
  port.SetPortOpen(true);
  pty.HangUp();
  EXPECT_THROW(
      {
        for (int i = 0; i < 1000; ++i) {
          port.InBufferCount();
          std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
      },
      SerialFault);
}

}  // namespace
}  // namespace dpm::qt
