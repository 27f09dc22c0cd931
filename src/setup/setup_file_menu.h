#pragma once

#include <string>

#include "setup/transfer.h"

// The File menu's setup handlers. The main menu holds the name of the current setup file
// and passes it in.
namespace dpm {

// Default Setup: the built-in setup, with View and Put opened.
void DefaultSetup(const TransferScreen& screen);

// Open Setup: asks for a setup file until one can be read. Cancel, or a file that is no
// setup file, brings the dialog back; only a usable file, or the end of the program, ends
// the question.
void OpenSetup(const TransferScreen& screen, std::string& setupFileName);

// Save Setup: writes the setup to the current file after the user agreed to replace it. A
// file that cannot be written is a FileFault.
void SaveSetup(const std::string& setupFileName);

// Save Setup As: asks for a name and writes the setup there. Cancel writes nothing; a file
// that cannot be written is left as it was.
void SaveSetupAs(std::string& setupFileName);

}  // namespace dpm
