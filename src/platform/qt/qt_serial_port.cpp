#include "platform/qt/qt_serial_port.h"

#include <cctype>
#include <charconv>
#include <system_error>
#include <utility>
#include <vector>

#include <QCoreApplication>

#include "platform/faults.h"

namespace dpm::qt {
namespace {

// One poll reads at most one chunk of QSerialPort's buffer; a few rounds empty the device
// even after a long silence of the event loop, and the bound keeps a streaming line from
// holding the caller.
constexpr int kMaxPollRounds = 16;

std::vector<std::string> SplitFields(const std::string& text) {
  std::vector<std::string> fields;
  std::size_t start = 0;
  while (true) {
    const std::size_t comma = text.find(',', start);
    std::string field = text.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
    const std::size_t first = field.find_first_not_of(' ');
    const std::size_t last = field.find_last_not_of(' ');
    fields.push_back(first == std::string::npos ? std::string() : field.substr(first, last - first + 1));
    if (comma == std::string::npos) return fields;
    start = comma + 1;
  }
}

SerialFault BadSettings(const std::string& settings, const std::string& why) {
  return SerialFault("Invalid port settings \"" + settings + "\": " + why);
}

int ParseBaud(const std::string& settings, const std::string& field) {
  if (field.empty()) throw BadSettings(settings, "the baud rate is missing");
  int baud = 0;
  const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), baud);
  if (error != std::errc() || end != field.data() + field.size() || baud <= 0)
    throw BadSettings(settings, "the baud rate \"" + field + "\" is not a positive whole number");
  return baud;
}

QSerialPort::Parity ParseParity(const std::string& settings, const std::string& field) {
  static constexpr std::pair<char, QSerialPort::Parity> kParities[] = {
      {'n', QSerialPort::NoParity},   {'e', QSerialPort::EvenParity},  {'o', QSerialPort::OddParity},
      {'m', QSerialPort::MarkParity}, {'s', QSerialPort::SpaceParity},
  };
  if (field.size() == 1) {
    const char letter = static_cast<char>(std::tolower(static_cast<unsigned char>(field[0])));
    for (const auto& [name, parity] : kParities)
      if (letter == name) return parity;
  }
  throw BadSettings(settings, "the parity \"" + field + "\" is not one of n, e, o, m, s");
}

QSerialPort::DataBits ParseDataBits(const std::string& settings, const std::string& field) {
  if (field == "5") return QSerialPort::Data5;
  if (field == "6") return QSerialPort::Data6;
  if (field == "7") return QSerialPort::Data7;
  if (field == "8") return QSerialPort::Data8;
  throw BadSettings(settings, "the data bits \"" + field + "\" are not 5 to 8");
}

QSerialPort::StopBits ParseStopBits(const std::string& settings, const std::string& field) {
  if (field == "1") return QSerialPort::OneStop;
  if (field == "1.5") return QSerialPort::OneAndHalfStop;
  if (field == "2") return QSerialPort::TwoStop;
  throw BadSettings(settings, "the stop bits \"" + field + "\" are not 1, 1.5 or 2");
}

QSerialPort::FlowControl FlowControlFor(int handshaking) {
  switch (handshaking) {
    case 0:
      return QSerialPort::NoFlowControl;
    case 1:
      return QSerialPort::SoftwareControl;
    default:
      return QSerialPort::HardwareControl;  // 2: RTS/CTS, 3: RTS/CTS and XON/XOFF
  }
}

std::string Text(const QString& text) { return text.toStdString(); }

}  // namespace

LineSettings ParseLineSettings(const std::string& settings) {
  const std::vector<std::string> fields = SplitFields(settings);
  if (fields.size() > 4) throw BadSettings(settings, "more than four fields");
  LineSettings parsed;
  parsed.baud = ParseBaud(settings, fields[0]);
  if (fields.size() > 1) parsed.parity = ParseParity(settings, fields[1]);
  if (fields.size() > 2) parsed.dataBits = ParseDataBits(settings, fields[2]);
  if (fields.size() > 3) parsed.stopBits = ParseStopBits(settings, fields[3]);
  return parsed;
}

QtSerialPort::QtSerialPort(std::filesystem::path programFolder) : programFolder_(std::move(programFolder)) {}

QtSerialPort::~QtSerialPort() {
  if (port_.isOpen()) port_.close();
}

std::filesystem::path QtSerialPort::ProgramFolder() const {
  if (!programFolder_.empty()) return programFolder_;
  if (QCoreApplication::instance()) return QCoreApplication::applicationDirPath().toStdString();
  return std::filesystem::current_path();
}

std::filesystem::path QtSerialPort::DeviceForPort(int number) const {
  namespace fs = std::filesystem;
  const fs::path entry = ProgramFolder() / ("COM" + std::to_string(number));
  std::error_code error;
  if (!fs::exists(fs::symlink_status(entry, error))) {
    if (openedThroughEntry_)
      throw SerialFault("Cannot open COM" + std::to_string(number) + ": " + entry.string() + " is gone");
    return "/dev/ttyS" + std::to_string(number - 1);
  }
  const fs::path device = fs::canonical(entry, error);
  if (error) {
    std::string target;
    if (fs::is_symlink(fs::symlink_status(entry))) target = " -> " + fs::read_symlink(entry, error).string();
    throw SerialFault("Cannot open COM" + std::to_string(number) + ": " + entry.string() + target +
                      " leads to no device");
  }
  return device;
}

std::string QtSerialPort::PortName() const { return "COM" + std::to_string(commPort_) + " (" + device_.string() + ")"; }

void QtSerialPort::SetCommPort(int number) {
  if (port_.isOpen()) throw SerialFault("Port already open");
  if (number < 1) throw SerialFault("Invalid port number " + std::to_string(number));
  if (number != commPort_) openedThroughEntry_ = false;
  commPort_ = number;
}

void QtSerialPort::SetSettings(const std::string& settings) {
  const LineSettings parsed = ParseLineSettings(settings);
  const LineSettings previous = lineSettings_;
  const std::string previousText = settings_;
  lineSettings_ = parsed;
  settings_ = settings;
  if (!port_.isOpen()) return;
  try {
    ApplyLineSettings();
  } catch (const SerialFault&) {
    // The device refused: it keeps running as it was, and so do the settings.
    lineSettings_ = previous;
    settings_ = previousText;
    ApplyLineSettings();
    throw;
  }
}

void QtSerialPort::SetPortOpen(bool open) {
  if (open == port_.isOpen()) {
    if (open) throw SerialFault("Port already open");
    return;
  }
  if (open) {
    Open();
  } else {
    port_.close();
  }
}

void QtSerialPort::Open() {
  device_ = DeviceForPort(commPort_);
  std::error_code error;
  openedThroughEntry_ = std::filesystem::exists(
      std::filesystem::symlink_status(ProgramFolder() / ("COM" + std::to_string(commPort_)), error));
  port_.setPortName(QString::fromStdString(device_.string()));
  if (!port_.open(QIODevice::ReadWrite)) {
    const std::string why = Text(port_.errorString());
    port_.clearError();
    throw SerialFault("Cannot open " + PortName() + ": " + why);
  }
  try {
    ApplyLineSettings();
  } catch (...) {
    port_.close();
    throw;
  }
  ApplyModemLines();
}

void QtSerialPort::ApplyLineSettings() {
  port_.clearError();
  const bool applied = port_.setBaudRate(lineSettings_.baud) && port_.setParity(lineSettings_.parity) &&
                       port_.setDataBits(lineSettings_.dataBits) && port_.setStopBits(lineSettings_.stopBits) &&
                       port_.setFlowControl(FlowControlFor(handshaking_));
  if (!applied) {
    const std::string why = Text(port_.errorString());
    port_.clearError();
    throw SerialFault("Cannot set \"" + settings_ + "\" on " + PortName() + ": " + why);
  }
}

void QtSerialPort::ApplyModemLines() {
  // A pseudo-terminal has no modem-control lines; its refusal is not a fault of the link.
  port_.setRequestToSend(rts_);
  port_.setDataTerminalReady(dtr_);
  port_.clearError();
}

void QtSerialPort::SetRTSEnable(bool on) {
  rts_ = on;
  if (port_.isOpen()) ApplyModemLines();
}

void QtSerialPort::SetDTREnable(bool on) {
  dtr_ = on;
  if (port_.isOpen()) ApplyModemLines();
}

void QtSerialPort::SetHandshaking(int mode) {
  if (mode < 0 || mode > 3) throw SerialFault("Invalid handshaking mode " + std::to_string(mode));
  handshaking_ = mode;
  if (!port_.isOpen()) return;
  if (!port_.setFlowControl(FlowControlFor(mode))) ThrowOnDeviceError("Handshaking");
  ApplyModemLines();
}

void QtSerialPort::RequireOpen(const char* operation) const {
  if (!port_.isOpen())
    throw SerialFault(std::string("Operation not valid while the port is closed (") + operation + ")");
}

// An error the device reported, now or while events were served, is a fault of the
// control. A poll that found nothing is not.
void QtSerialPort::ThrowOnDeviceError(const char* operation) {
  const QSerialPort::SerialPortError error = port_.error();
  if (error == QSerialPort::NoError || error == QSerialPort::TimeoutError) {
    port_.clearError();
    return;
  }
  const std::string why = Text(port_.errorString());
  port_.clearError();
  // A device that went away (an adapter pulled out) leaves nothing to talk to: the port is
  // closed, so that it can be opened again by name once the device is back.
  if (error == QSerialPort::ResourceError) port_.close();
  throw SerialFault(PortName() + ": " + why + " (" + operation + ")");
}

void QtSerialPort::PollDevice(const char* operation) {
  RequireOpen(operation);
  ThrowOnDeviceError(operation);
  port_.flush();
  // With a data-ready handler the event loop's notifier reads the device; a read of our
  // own could take the bytes from under the notifier, whose empty read the port then
  // reports as an error.
  if (!dataReady_) {
    for (int round = 0; round < kMaxPollRounds && port_.waitForReadyRead(0); ++round) {
    }
  }
  ThrowOnDeviceError(operation);
}

int QtSerialPort::InBufferCount() {
  PollDevice("InBufferCount");
  return static_cast<int>(port_.bytesAvailable());
}

int QtSerialPort::OutBufferCount() {
  RequireOpen("OutBufferCount");
  ThrowOnDeviceError("OutBufferCount");
  port_.flush();
  ThrowOnDeviceError("OutBufferCount");
  return static_cast<int>(port_.bytesToWrite());
}

std::string QtSerialPort::Input() {
  PollDevice("Input");
  return port_.readAll().toStdString();
}

void QtSerialPort::Output(const std::string& bytes) {
  RequireOpen("Output");
  ThrowOnDeviceError("Output");
  if (port_.write(bytes.data(), static_cast<qint64>(bytes.size())) < 0) ThrowOnDeviceError("Output");
  // Hand the bytes to the device now, without blocking; what it can't take yet goes out
  // while events are served.
  port_.flush();
  ThrowOnDeviceError("Output");
}

void QtSerialPort::SetDataReadyHandler(std::function<void()> handler) {
  dataReady_ = std::move(handler);
  if (dataReady_ && !dataReadyConnection_) {
    dataReadyConnection_ = QObject::connect(
        &port_, &QSerialPort::readyRead, &port_,
        [this] {
          // A copy: the handler may replace itself.
          if (const std::function<void()> handler = dataReady_) handler();
        },
        Qt::QueuedConnection);
  } else if (!dataReady_ && dataReadyConnection_) {
    QObject::disconnect(dataReadyConnection_);
    dataReadyConnection_ = {};
  }
}

}  // namespace dpm::qt
