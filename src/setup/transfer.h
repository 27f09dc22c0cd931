#pragma once

#include <cstdint>
#include <string>

namespace dpm {

class Label;
class MenuItem;

// The parts of the main menu that the transfers and the setup file handlers report on:
// the status line and the menus that a loaded setup opens.
struct TransferScreen {
  Label& lblGPText;
  MenuItem& mnuCmds;
  MenuItem& mnuView;
  MenuItem& mnuPut;
};

// Puts "*", the meter's address and the body in g.CommandText and sends it. `withZ` adds
// the "Z" that meters above revision 8 expect on those commands.
void SendBody(const std::string& body, bool withZ = false);

// The status line, shown, in a colour and with a text.
void ShowStatus(const TransferScreen& screen, const std::string& text, int32_t colour);

// Moves the status line on while a transfer runs: the base text and the part in hand.
void ShowProgress(const TransferScreen& screen, const std::string& baseText, const std::string& part);

// The hourglass pointer on or off.
void Hourglass(bool on);

}  // namespace dpm
