#pragma once

#include <cstdint>
#include <string>

#include "link/transport.h"

namespace dpm {

class Label;
class MenuItem;
class ProgressBar;

// The parts of the main menu that the transfers and the setup file handlers report on:
// the status line, the progress bar beside it and the menus that a loaded setup opens.
struct TransferScreen {
  Label& lblGPText;
  MenuItem& mnuCmds;
  MenuItem& mnuView;
  MenuItem& mnuPut;
  ProgressBar& prgTransfer;
};

// The status line, shown, in a colour and with a text.
void ShowStatus(const TransferScreen& screen, const std::string& text, int32_t colour);

// The progress bar of a transfer: shown from its first step, moved on at each step, and
// hidden when the transfer ends in whatever way. The status line keeps its own words.
class TransferProgress {
 public:
  TransferProgress(const TransferScreen& screen, int steps);
  ~TransferProgress();
  TransferProgress(const TransferProgress&) = delete;
  TransferProgress& operator=(const TransferProgress&) = delete;

  // One more step done.
  void Step();

 private:
  ProgressBar& bar_;
};

// The hourglass pointer on or off.
void Hourglass(bool on);

}  // namespace dpm
