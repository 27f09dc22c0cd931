#pragma once

#include <sstream>
#include <string>

#include "link/globals.h"
#include "link/image_access.h"

namespace dpm::testing {

// The default setup of a revision 4 meter, digit for digit: a DC voltmeter on the 0.2 V
// range with relay, RS232 and analog boards, scale 1, offset 0, setpoints 1000 and 2000.
inline const std::string kDefaultSetup =
    "00000000000000000000"                              // 1-20
    "000000000000"                                      // 21-32: deviations 2 and 1
    "000102010000"                                      // 33-44: config, conditioner, analog, point, lockouts
    "21D0753600600000"                                  // 45-60: serial, options, filter, display, mode, alarms
    "004E20000000004E20004E20000000000000000000100001"  // 61-108: analog, coordinates, offset, scale
    "0007D00003E8"                                      // 109-120: setpoints 2 and 1
    "04010D000C00";                                     // 121-132: revision, marker, characters, tare

// The default setup with digits replaced, given as "position=digits" pairs: "55=40 49=51".
inline void LoadSetup(const std::string& changes) {
  g.SetupImage = kDefaultSetup;
  std::istringstream in(changes);
  for (std::string pair; in >> pair;) {
    const std::size_t equals = pair.find('=');
    ReplaceImageDigits(std::stoi(pair.substr(0, equals)), pair.substr(equals + 1));
  }
}

}  // namespace dpm::testing
