#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include <QSerialPort>

#include "platform/serial.h"

namespace dpm::qt {

// A line format taken apart: "9600,n,8,1" is 9600 baud, no parity, 8 data bits, 1 stop bit.
struct LineSettings {
  int baud = 9600;
  QSerialPort::Parity parity = QSerialPort::NoParity;
  QSerialPort::DataBits dataBits = QSerialPort::Data8;
  QSerialPort::StopBits stopBits = QSerialPort::OneStop;
  bool operator==(const LineSettings&) const = default;
};

// Reads "baud,parity,data bits,stop bits". The baud rate must be a positive whole number;
// parity is one of n, e, o, m, s; data bits 5 to 8; stop bits 1, 1.5 or 2. Fields after the
// baud rate may be left out and then keep the values of "9600,n,8,1". Anything else is a
// SerialFault that names the offending field.
LineSettings ParseLineSettings(const std::string& settings);

// The meter's serial control on a real serial device.
//
// Port number N is the entry "COMN" in the program's folder when there is one (normally a
// symbolic link such as COM1 -> /dev/ttyUSB0, or to a pseudo-terminal), else /dev/ttyS(N-1).
//
// Modem-control lines are best effort: a pseudo-terminal or a three-wire adapter refuses
// RTS and DTR, and the meter doesn't need them, so the requested state is kept and the
// device's refusal is ignored.
//
// The counts and Input look at the device directly (without blocking), so bytes that
// arrived are seen even when no event loop has run since. That polling may emit
// QSerialPort::readyRead from inside InBufferCount or Input.
class QtSerialPort : public SerialPort {
 public:
  // `programFolder` is where the "COMN" entries are looked for; empty means the folder of
  // the running program.
  explicit QtSerialPort(std::filesystem::path programFolder = {});
  ~QtSerialPort() override;

  // The device that port number `number` stands for, symbolic links resolved. A "COMN"
  // entry whose target does not exist is a SerialFault.
  std::filesystem::path DeviceForPort(int number) const;

  // The Qt port, for a reader that wants its readyRead signal.
  QSerialPort& Device() { return port_; }

  void SetCommPort(int number) override;
  int CommPort() const override { return commPort_; }
  void SetSettings(const std::string& settings) override;
  std::string Settings() const override { return settings_; }
  void SetPortOpen(bool open) override;
  bool PortOpen() const override { return port_.isOpen(); }
  void SetRTSEnable(bool on) override;
  bool RTSEnable() const override { return rts_; }
  void SetDTREnable(bool on) override;
  bool DTREnable() const override { return dtr_; }
  void SetHandshaking(int mode) override;
  int Handshaking() const { return handshaking_; }
  int InBufferCount() override;
  int OutBufferCount() override;
  std::string Input() override;
  void Output(const std::string& bytes) override;
  // On the port's readyRead, queued, so that the handler runs from the event loop. While a
  // handler is set, InBufferCount and Input leave reading the device to the event loop.
  void SetDataReadyHandler(std::function<void()> handler) override;

 private:
  std::filesystem::path ProgramFolder() const;
  std::string PortName() const;
  void Open();
  void ApplyLineSettings();
  void ApplyModemLines();
  void RequireOpen(const char* operation) const;
  void PollDevice(const char* operation);
  void ThrowOnDeviceError(const char* operation);

  QSerialPort port_;
  std::function<void()> dataReady_;
  QMetaObject::Connection dataReadyConnection_;
  std::filesystem::path programFolder_;
  std::filesystem::path device_;
  std::string settings_ = "9600,n,8,1";
  LineSettings lineSettings_;
  int commPort_ = 1;
  // The port number was last opened through an entry of the program's folder. Should the
  // entry go away (the emulator's line, an adapter's udev link), the port is away with
  // it: it does not fall back to a serial device of the machine.
  bool openedThroughEntry_ = false;
  int handshaking_ = 0;
  bool rts_ = false;
  bool dtr_ = false;
};

}  // namespace dpm::qt
