#pragma once

#include <stdexcept>
#include <string>

namespace dpm {

// A fault that ends the program. The top of the program saves the setup in hand to a
// recovery file, shows the cause and stops; nothing else catches it unless it recovers
// on purpose (the transport catches serial faults while waiting for a reply).
class RuntimeFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A fault of the serial control: a closed port, an unknown baud rate, a device error.
class SerialFault : public RuntimeFault {
 public:
  using RuntimeFault::RuntimeFault;
};

// A number that does not fit the integer it is converted to.
class OverflowFault : public RuntimeFault {
 public:
  using RuntimeFault::RuntimeFault;
};

// An index outside a table.
class IndexFault : public RuntimeFault {
 public:
  using RuntimeFault::RuntimeFault;
};

// A file that is missing or cannot be read or written.
class FileFault : public RuntimeFault {
 public:
  using RuntimeFault::RuntimeFault;
};

}  // namespace dpm
