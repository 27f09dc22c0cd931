#pragma once

#include <functional>
#include <string>

namespace dpm {

// The serial control that talks to the meter. Setting a property can raise SerialFault
// (an unknown device, a baud rate outside the table, writing to a closed port).
class SerialPort {
 public:
  virtual ~SerialPort() = default;

  // Port number N: the entry "COMN" in the program's folder when there is one, else
  // the N-th serial device of the machine.
  virtual void SetCommPort(int number) = 0;
  virtual int CommPort() const = 0;

  // "baud,parity,data bits,stop bits", as "9600,n,8,1".
  virtual void SetSettings(const std::string& settings) = 0;
  virtual std::string Settings() const = 0;

  virtual void SetPortOpen(bool open) = 0;
  virtual bool PortOpen() const = 0;

  virtual void SetRTSEnable(bool on) = 0;
  virtual bool RTSEnable() const = 0;
  virtual void SetDTREnable(bool on) = 0;
  virtual bool DTREnable() const = 0;

  // 0: no handshaking.
  virtual void SetHandshaking(int mode) = 0;

  // Bytes waiting to be read.
  virtual int InBufferCount() = 0;
  // Bytes queued but not yet on the line.
  virtual int OutBufferCount() = 0;
  // Returns and removes every waiting byte.
  virtual std::string Input() = 0;
  // Queues the bytes for sending.
  virtual void Output(const std::string& bytes) = 0;

  // Called from the event loop when bytes have arrived, never from inside a call on the
  // port; an empty handler stops the calls. A handler that leaves bytes unread is not
  // called again for them, only for bytes that arrive later.
  virtual void SetDataReadyHandler(std::function<void()> handler) = 0;
};

}  // namespace dpm
