#include "setup/default_image.h"

#include <cstdio>

namespace dpm {

std::string DefaultSetupImage(int16_t firmwareRev) {
  char revision[8];
  std::snprintf(revision, sizeof revision, "%02X", static_cast<unsigned>(firmwareRev) & 0xFFu);
  // One field a line, in the order the image holds them.
  // clang-format off
  return std::string(20, '0') +
         "000000"    // Deviation2
         "000000"    // Deviation1
         "00"        // ConfigLow
         "01"        // SigCondCode: DC
         "02"        // AnalogFlags: voltage output
         "01"        // DecimalPoint code 1
         "0000"      // LockoutsA, LockoutsB
         "21"        // SerialA: address 1, command mode
         "D0"        // SerialB: 9600 baud, filtered output
         "75"        // OptionByte: RS232, analog out and relay boards
         "36"        // FilterByte: 1.2 s, high adaptive, filtered display
         "00"        // DisplayByte
         "60"        // ModeRangeByte: DC V, range 0
         "00"        // AlarmByteA
         "00"        // AlarmByteB
         "004E20"    // AnalogHigh 20000
         "000000"    // AnalogLow
         "004E20"    // HighRead 20000
         "004E20"    // HighIn 20000
         "000000"    // LowRead
         "000000"    // LowIn
         "000000"    // Offset
         "100001"    // Scale 1, code 1
         "0007D0"    // Setpoint2 2000
         "0003E8" +  // Setpoint1 1000
         std::string(revision) +
         "01"     // GetMarker
         "0D"     // StopChar
         "00"     // StartChar
         "0C00";  // TedsTareByte: tare bits set (not ticked), then a carried byte
  // clang-format on
}

}  // namespace dpm
