#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace dpm {

// Brings the text of "Settings.SSS" to its full length: 17 characters get "10000", and
// anything shorter than 22 gets "000000" and is cut to 22.
std::string RepairLinkSettings(std::string text);

// The first field of the settings file: up to the first comma or line end, leading
// blanks skipped, quotation marks taken away.
std::string FirstFieldOf(const std::string& fileText);

// Sets the link globals from the repaired settings text, without touching the port.
void ApplyLinkSettings(const std::string& linkSettings);

// Opens the meter's port with the link globals: port number, baud rate, RTS, DTR.
void OpenMeterLink();

// Start-up: builds the tables, reads "Settings.SSS" from the program's folder, opens the
// port when the settings say so and prepares an empty setup image; then shows the main
// menu through `showMainMenu`. Faults name their cause (missing file, bad baud rate,
// a port that cannot be opened).
void Main(const std::filesystem::path& programFolder, const std::function<void()>& showMainMenu = {});

}  // namespace dpm
