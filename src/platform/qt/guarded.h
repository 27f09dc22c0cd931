#pragma once

#include <exception>
#include <utility>

#include "platform/qt/fatal_fault.h"

namespace dpm::qt {

// Runs a call from Qt into the program. A fault must not unwind through Qt's event loop:
// it ends the program with its cause, the setup in hand saved first.
template <class F>
void Guarded(F&& call) {
  try {
    std::forward<F>(call)();
  } catch (const std::exception& fault) {
    HandleFatalFault(fault);
  } catch (...) {
    HandleUnknownFatalFault();
  }
}

}  // namespace dpm::qt
