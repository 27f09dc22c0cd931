#pragma once

#include "setup/transfer.h"

namespace dpm {

// Get Setup: fetches the meter's setup into g.SetupImage and finds out what the meter is:
// its option boards, its load cell data sheet hardware, its firmware revision and whether
// it is BASIC or EXTENDED. Reports on the status line; a meter that does not answer the
// first request leaves the image as it was.
void GetSetup(const TransferScreen& screen);

}  // namespace dpm
