#pragma once

#include <exception>
#include <filesystem>

namespace dpm::qt {

// Ends the program on a fault it cannot recover from (a RuntimeFault, or anything else
// that escapes a handler). The setup in hand is saved to the recovery file in the
// program's folder first, so nothing the user loaded or edited is lost; then the cause and
// where the setup went are shown in a critical message box (on stderr as well; without a
// screen, as under the offscreen platform, on stderr only), and the program exits with
// status 1.
//
// The top of main() calls it around start-up, and the form binder calls it from every
// handler it dispatches, since a fault must not unwind through Qt's event loop.
[[noreturn]] void HandleFatalFault(const std::exception& fault);

// The same for a fault that is not a std::exception.
[[noreturn]] void HandleUnknownFatalFault();

// HandleFatalFault with the recovery file written to `programFolder`.
[[noreturn]] void HandleFatalFault(const std::exception& fault, const std::filesystem::path& programFolder);

}  // namespace dpm::qt
