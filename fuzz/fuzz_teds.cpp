// The load cell's data sheet as any reply the meter might give: expanded to bits and
// decoded field by field, under every template and either side of revision 10. The
// decoders are total: nothing may escape them.

#include <cstddef>
#include <cstdint>
#include <string>

#include "link/globals.h"
#include "teds/teds.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  dpm::ResetGlobals();
  // The first byte picks the template the sheet is read with (including ones no sheet
  // names) and the revision; the rest is the reply.
  static constexpr int16_t kTemplates[] = {0, 1, 2, 3, -1, 4, dpm::kTedsNotFetched, 0};
  dpm::g.TedsTemplate = kTemplates[data[0] & 7];
  dpm::g.FirmwareRev = static_cast<int16_t>((data[0] >> 3) & 15);
  dpm::g.TedsHex.assign(reinterpret_cast<const char*>(data + 1), size - 1);

  dpm::TedsFetch();
  if (dpm::g.TedsBits.size() != 464) __builtin_trap();
  std::string rowLabel;
  dpm::TedsSerialDigits();
  dpm::TedsSerialNumber(rowLabel);
  dpm::TedsUnits();
  dpm::TedsCalDate();
  dpm::TedsCalPeriod();
  dpm::TedsCalInitials();
  dpm::TedsBridgeId();
  return 0;
}
