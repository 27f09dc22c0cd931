#include "setup/input_facts.h"

#include <array>

#include "link/globals.h"
#include "link/image_access.h"
#include "platform/numeric.h"
#include "setup/image_map.h"
#include "setup/image_positions.h"

namespace dpm {
namespace {

constexpr int16_t kThermocouple = 0;
constexpr int16_t kRtd = 1;
constexpr int16_t kRtdShort = 12;
constexpr int16_t kDcVolts = 2;
constexpr int16_t kThreeAndAHalfDigits = 3;
constexpr int16_t kNoFilter = 10;

constexpr std::array<int16_t, 4> kFirstModes = {0, 2, 4, 7};

int16_t InputDpOf(int16_t sigCond, int16_t inputMode, int16_t inputRange, int16_t resolution) {
  int16_t dp = 0;
  switch (sigCond) {
    case 0:
      dp = resolution == 2 ? 3 : 2;
      break;
    case 1:
    case 2:
      if (inputMode == 3 || inputMode == 5) {
        dp = inputRange == 3 ? 4 : static_cast<int16_t>(5 - inputRange);  // the 5 A range
      } else {
        dp = static_cast<int16_t>(6 - inputRange);
      }
      break;
    default:
      dp = inputRange < 2 ? 4 : 3;
      break;
  }
  // A 3 1/2 digit display shows one decimal less.
  if (resolution == kThreeAndAHalfDigits) --dp;
  return dp;
}

}  // namespace

int16_t ModeCodeOf(int16_t inputMode) {
  const int16_t code = static_cast<int16_t>(inputMode + 4);
  return code > 10 ? static_cast<int16_t>(code + 1) : code;
}

int16_t InputModeOfCode(int modeCode) {
  int mode = modeCode - 4;
  if (mode == 7 || mode < 0 || mode > 9) mode = kDcVolts;
  if (mode > 7) --mode;
  return static_cast<int16_t>(mode);
}

void DeriveInputFacts() {
  g.InputMode = InputModeOfCode(ReadField(7, 4, kModeRangeByte));
  g.SigCond = InputModes[static_cast<std::size_t>(g.InputMode)].sigCond;
  g.InputRange = ReadField(3, 0, kModeRangeByte);
  if (g.InputRange >= InputModes[static_cast<std::size_t>(g.InputMode)].rangeCount) g.InputRange = 0;
  g.Resolution = ReadField(7, 6, kDisplayByte);
  g.InputDp = InputDpOf(g.SigCond, g.InputMode, g.InputRange, g.Resolution);
  g.DisplayDp = g.SigCond == 0 ? g.InputDp : ReadField(2, 0, kDecimalPoint);
}

int16_t FormModeRangeByte(int16_t inputMode, int16_t inputRange) {
  return static_cast<int16_t>(ModeCodeOf(inputMode) * 16 + inputRange);
}

void WriteModeRangeByte() {
  // Mode codes are at least 4, so the byte always has two digits.
  ReplaceImageDigits(kModeRangeByte, HexText(FormModeRangeByte(g.InputMode, g.InputRange)));
}

int16_t InputModeFromList(int16_t sigCond, int16_t listIndex) {
  if (listIndex == 2) return 6;  // "Ratio", the third DC mode, stands apart in the numbering
  const int16_t mode = static_cast<int16_t>(sigCond * 2 + listIndex);
  return mode > 5 ? static_cast<int16_t>(mode + 1) : mode;
}

int16_t FirstInputModeOf(int16_t sigCond) { return kFirstModes.at(static_cast<std::size_t>(sigCond)); }

bool CustomCurveActive() { return g.SigCond != 0 && ReadField(0, 0, kConfigLow) == 1; }
bool CustomCurveOffered() { return g.MeterKind == "1" && g.SigCond != 0; }
bool RateOffered() { return g.MeterKind == "1"; }
bool DecimalPointOffered() { return g.SigCond != 0; }
bool ScaleOffered() { return g.InputMode != kThermocouple && !CustomCurveActive(); }
bool OffsetOffered() { return !CustomCurveActive(); }
bool CoordinatesOffered() { return g.SigCond != 0 && !CustomCurveActive(); }
bool LowInOffered() { return CoordinatesOffered() || (g.InputMode == kRtd && g.InputRange == kRtdShort); }
bool CustomCurveRd0Offered() { return CustomCurveActive(); }
bool LeadingZerosOffered() { return g.FirmwareRev == 0; }
bool TranCharsOffered() { return g.FirmwareRev > 0; }
bool AlarmsOffered() { return g.RelayOption != 0; }
bool DeviationsOffered() { return AlarmsOffered() && ReadField(5, 5, kAlarmByteA) == 0; }
bool OutputRateOffered() { return g.CommOption != 0; }
bool SerialLinkOffered() { return g.CommOption == 1 || g.CommOption == 2; }
bool DuplexOffered() { return g.CommOption == 2; }
bool AnalogOffered() { return g.AnalogOption != 0; }
bool TareOffered() { return g.TedsHardware == 1; }
bool TedsPlugPlayOffered() { return g.TedsHardware == 1 && g.TedsPresent == 1; }
// The plug-and-play box is ticked when its bit is 0.
bool TedsIndicatorOffered() { return TedsPlugPlayOffered() && ReadField(0, 0, kTedsTareByte) == 0; }

int16_t AllowedDisplayValue(int16_t chosen) { return ReadField(3, 0, kFilterByte) == kNoFilter ? int16_t{1} : chosen; }

void ClearExtendedFields() {
  WriteField(0, 0, kConfigLow, 0);
  WriteField(6, 4, kConfigLow, 0);
}

}  // namespace dpm
