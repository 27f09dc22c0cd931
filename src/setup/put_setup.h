#pragma once

#include "setup/transfer.h"

namespace dpm {

// Put Setup: writes g.SetupImage to the meter in five blocks, after making sure that the
// image was made for the meter's kind of conditioner. When the image changes the baud rate
// or the address, the line follows between the blocks, as the meter does.
void PutSetup(const TransferScreen& screen);

}  // namespace dpm
