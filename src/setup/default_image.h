#pragma once

#include <cstdint>
#include <string>

namespace dpm {

// The built-in default setup, 132 digits, with the given firmware revision in digits
// 121 to 122: a DC voltmeter on its 0.2 V range with RS232, analog output and relay
// boards, address 1 at 9600 baud.
std::string DefaultSetupImage(int16_t firmwareRev);

}  // namespace dpm
