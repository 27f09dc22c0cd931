#include "setup/image_map.h"

#include <algorithm>

#include "link/image_access.h"
#include "platform/faults.h"

namespace dpm {
namespace {

using Texts = std::span<const std::string_view>;

// The texts of the list fields.
constexpr std::array<std::string_view, 2> kDisabledEnabled = {"Disabled", "Enabled"};
constexpr std::array<std::string_view, 2> kDuplexTexts = {"Full Duplex", "Half Duplex"};
constexpr std::array<std::string_view, 2> kRtsTexts = {"Non-Latching", "Latching"};
constexpr std::array<std::string_view, 7> kRateTexts = {"Disabled",   "Rate X 0.1",  "Rate X 1",     "Rate X 10",
                                                        "Rate X 100", "Rate X 1000", "Rate X 10,000"};
constexpr std::array<std::string_view, 2> kFilteredTexts = {"Unfiltered", "Filtered"};
constexpr std::array<std::string_view, 2> kCircuitTexts = {"Current Output", "Voltage Output"};
constexpr std::array<std::string_view, 6> kDecimalPointTexts = {"ddddd .",  "dddd . d", "ddd . dd",
                                                                "dd . ddd", "d . dddd", " . ddddd"};
constexpr std::array<std::string_view, 32> kAddressTexts = {
    " 0 (0)",  " 1 (1)",  " 2 (2)",  " 3 (3)",  " 4 (4)",  " 5 (5)",  " 6 (6)",  " 7 (7)",
    " 8 (8)",  " 9 (9)",  "10 (A)",  "11 (b)",  "12 (C)",  "13 (d)",  "14 (E)",  "15 (F)",
    "16 (0.)", "17 (1.)", "18 (2.)", "19 (3.)", "20 (4.)", "21 (5.)", "22 (6.)", "23 (7.)",
    "24 (8.)", "25 (9.)", "26 (A.)", "27 (b.)", "28 (C.)", "29 (d.)", "30 (E.)", "31 (F.)"};
constexpr std::array<std::string_view, 2> kOutputModeTexts = {"Continuous", "Command"};
constexpr std::array<std::string_view, 10> kOutputRateTexts = {
    "Line Rate",    "Read Rate",    "Read Rate/2",  "Read Rate/4",   "Read Rate/8",
    "Read Rate/16", "Read Rate/32", "Read Rate/64", "Read Rate/128", "Read Rate/256"};
constexpr std::array<std::string_view, 7> kBaudTexts = {"  300", "  600", " 1200", " 2400", " 4800", " 9600", "19200"};
constexpr std::array<std::string_view, 4> kCommOptionTexts = {"None", "RS232 Board", "RS485 Board", "Parallel BCD"};
constexpr std::array<std::string_view, 2> kAnalogOptionTexts = {"None", "Analog Out Bd"};
constexpr std::array<std::string_view, 2> kRelayOptionTexts = {"None", "Relay Board"};
constexpr std::array<std::string_view, 2> kLockoutJumperTexts = {"  Lockout  jumper IS NOT installed",
                                                                 "  Lockout  jumper IS installed"};
constexpr std::array<std::string_view, 11> kTimeConstantTexts = {"Automatic", "Batch",    " 75 mSec", "150 mSec",
                                                                 "300 mSec",  "600 mSec", " 1.2 Sec", " 2.4 Sec",
                                                                 " 4.8 Sec",  " 9.6 Sec", "No Filter"};
constexpr std::array<std::string_view, 2> kThresholdTexts = {"Low Adaptive", "High Adaptive"};
constexpr std::array<std::string_view, 2> kDisplayValueTexts = {"Batch 16 Avg", "Filtered"};
// What external input A does, then, lined up under the heading of input B, what B does.
constexpr std::array<std::string_view, 8> kExternalInputTexts = {
    "Meter Reset                                      Meter Hold",
    "Function Reset                                  Peak Display",
    "Meter Hold                                         Peak Display",
    "Meter Hold                                         Tare",
    "Peak Display                                     Tare",
    "Tare                                                     Meter Reset",
    "DP2  (Neither = DP1)                       DP3 (Both = DP4)",
    "DP3  (Neither = DP2)                       DP4 (Both = DP5)",
};
constexpr std::array<std::string_view, 2> kLeadingZerosTexts = {"Blank Zeros", "Display Zeros"};
constexpr std::array<std::string_view, 2> kTranCharsTexts = {"Normal", "Start/StopChars"};
constexpr std::array<std::string_view, 2> kLineFreqTexts = {"60 Hz", "50 Hz"};
constexpr std::array<std::string_view, 4> kResolutionTexts = {"4. 5 Digits", "Remote Slave", "4. 5 Dig Cnt/10",
                                                              "3. 5 Digits"};
constexpr std::array<std::string_view, 4> kTemperatureResolutionTexts = {"0.1 Deg", "Remote Slave", "0.01 Deg",
                                                                         " 1 Deg"};
constexpr std::array<std::string_view, 8> kReadingsToAlarmTexts = {"  1", "  2", "  4", "  8",
                                                                   " 16", " 32", " 64", "128"};
constexpr std::array<std::string_view, 2> kDevTypeTexts = {"Band", "Hysteresis"};
constexpr std::array<std::string_view, 2> kDevStatusTexts = {"Devn Enabled", "Devn Disabled"};
constexpr std::array<std::string_view, 3> kAlarmStateTexts = {"Hi Active", "Lo Active", "Disabled"};
constexpr std::array<std::string_view, 2> kAlarmTypeTexts = {"Non-latching", "Latching"};
constexpr std::array<std::string_view, 2> kRelayStateTexts = {"Energized", "De-energized"};

// The single byte of the value entry dialog, for the custom start and stop characters.
constexpr int16_t kByteFormat = 7;

constexpr ImageField Bits(std::string_view name, std::string_view byteName, int16_t position, int16_t hi, int16_t lo,
                          std::string_view control, Texts texts, uint32_t defaultValue, int16_t firstValue = 0) {
  return {name, byteName,          position,     hi,    lo, FieldKind::Bits, control, texts, firstValue, 0,
          0,    PointSource::None, defaultValue, false, {}};
}

constexpr ImageField Check(std::string_view name, std::string_view byteName, int16_t position, int16_t bit,
                           std::string_view control, uint32_t defaultValue, bool inverted = false) {
  return {name, byteName,          position,     bit,      bit, FieldKind::Bits, control, {}, 0, 0,
          0,    PointSource::None, defaultValue, inverted, {}};
}

constexpr ImageField Value(std::string_view name, int16_t position, int16_t readFormat, int16_t entryFormat,
                           PointSource point, std::string_view control, uint32_t defaultValue) {
  return {name,        {},    position,     7,     0, FieldKind::Value, control, {}, 0, readFormat,
          entryFormat, point, defaultValue, false, {}};
}

constexpr ImageField Byte(std::string_view name, int16_t position, std::string_view control, uint32_t defaultValue,
                          int16_t format = 0) {
  return {name,         {},    position, 7, 0, FieldKind::Byte, control, {}, 0, format, format, PointSource::None,
          defaultValue, false, {}};
}

constexpr ImageField Carried(int16_t position, int16_t hi, int16_t lo, uint32_t defaultValue = 0) {
  return {{}, {}, position, hi, lo, FieldKind::Carried, {}, {}, 0, 0, 0, PointSource::None, defaultValue, false, {}};
}

constexpr ImageField SameBits(ImageField field, std::string_view as) {
  field.sameBitsAs = as;
  return field;
}

constexpr auto D = PointSource::Display;
constexpr auto I = PointSource::Input;

constexpr std::array kFields = {
    Value("CustomCurveRd0", 1, kDisplayFormat, kDisplayFormat, D, "txtLoIn", 0),
    Carried(7, 7, 0),
    Bits("LockoutsC", {}, 9, 4, 0, "chkLock", {}, 0),
    Carried(9, 7, 5),
    Carried(11, 7, 0),
    // Fetched and kept, but never sent back to the meter.
    Carried(13, 7, 0),
    Carried(15, 7, 0),
    Carried(17, 7, 0),
    Carried(19, 7, 0),
    Value("Deviation2", 21, kDisplayFormat, kUnsignedFormat, D, "txtDev2", 0),
    Value("Deviation1", 27, kDisplayFormat, kUnsignedFormat, D, "txtDev1", 0),
    Bits("CustomCurve", "ConfigLow", 33, 0, 0, "cboCusCrv", kDisabledEnabled, 0),
    Bits("Duplex", "ConfigLow", 33, 1, 1, "cboDuplex", kDuplexTexts, 0),
    Bits("RtsType", "ConfigLow", 33, 2, 2, "cboRTS", kRtsTexts, 0),
    Check("ReadingCoord", "ConfigLow", 33, 3, "optRdCoord", 0),
    Bits("Rate", "ConfigLow", 33, 6, 4, "cboRate", kRateTexts, 0),
    Carried(33, 7, 7),
    // Temperature and DC share the code 1; only the mode code tells them apart.
    Bits("SigCondCode", {}, 35, 1, 0, "cboSCOpt", ConditionerNames, 1),
    Carried(35, 7, 2),
    Bits("AnalogValue", "AnalogFlags", 37, 0, 0, "cboAnaValue", kFilteredTexts, 0),
    Bits("AnalogCircuit", "AnalogFlags", 37, 1, 1, "cboCircuit", kCircuitTexts, 1),
    Carried(37, 7, 2),
    Bits("DecimalPoint", {}, 39, 2, 0, "cboDecPt", kDecimalPointTexts, 1, 1),
    Carried(39, 7, 3),
    Bits("LockoutsA", {}, 41, 7, 0, "chkLock", {}, 0),
    Bits("LockoutsB", {}, 43, 4, 0, "chkLock", {}, 0),
    Carried(43, 7, 5),
    Bits("Address", "SerialA", 45, 4, 0, "cboAddress", kAddressTexts, 1),
    Bits("OutputMode", "SerialA", 45, 5, 5, "cboSerMode", kOutputModeTexts, 1),
    Check("IncludeAlarmData", "SerialA", 45, 6, "chkAlmData", 0),
    Check("IncludeLF", "SerialA", 45, 7, "chkLF", 0),
    Bits("OutputRate", "SerialB", 47, 3, 0, "cboOutRate", kOutputRateTexts, 0),
    Bits("BaudRate", "SerialB", 47, 6, 4, "cboBaudRate", kBaudTexts, 5),
    Bits("OutputValue", "SerialB", 47, 7, 7, "cboOutVal", kFilteredTexts, 1),
    // The option register as the meter reports it on Get Setup.
    Carried(49, 1, 0, 1),
    Bits("CommOptionBits", "OptionByte", 49, 3, 2, "cboComOpt", kCommOptionTexts, 1),
    Carried(49, 4, 4, 1),
    Bits("AnalogOptionBit", "OptionByte", 49, 5, 5, "cboAnaOpt", kAnalogOptionTexts, 1),
    Bits("RelayOptionBit", "OptionByte", 49, 6, 6, "cboRlyOpt", kRelayOptionTexts, 1),
    Bits("LockoutJumper", "OptionByte", 49, 7, 7, "lblLockout", kLockoutJumperTexts, 0),
    Bits("TimeConstant", "FilterByte", 51, 3, 0, "cboTimConst", kTimeConstantTexts, 6),
    Bits("Threshold", "FilterByte", 51, 4, 4, "cboThresh", kThresholdTexts, 1),
    Bits("DisplayValue", "FilterByte", 51, 5, 5, "cboDVal", kDisplayValueTexts, 1),
    Bits("PeakValue", "FilterByte", 51, 6, 6, "cboPeakVal", kFilteredTexts, 0),
    Bits("AlarmValue", "FilterByte", 51, 7, 7, "cboAlmValue", kFilteredTexts, 0),
    Bits("ExternalInputs", "DisplayByte", 53, 2, 0, "cboExtAB", kExternalInputTexts, 0),
    Check("InputCoord", "DisplayByte", 53, 3, "optCoord", 0),
    // Revision 0 meters use the bit for leading zeros, later ones for the start and stop characters.
    Bits("LeadingZeros", "DisplayByte", 53, 4, 4, "cboLeadZ", kLeadingZerosTexts, 0),
    SameBits(Bits("TranChars", "DisplayByte", 53, 4, 4, "cboTranChars", kTranCharsTexts, 0), "LeadingZeros"),
    Bits("LineFreq", "DisplayByte", 53, 5, 5, "cboHz", kLineFreqTexts, 0),
    Bits("Resolution", "DisplayByte", 53, 7, 6, "cboResol", kResolutionTexts, 0),
    Bits("Range", "ModeRangeByte", 55, 3, 0, "cboFunc", {}, 0),
    Bits("ModeCode", "ModeRangeByte", 55, 7, 4, "cboMode", {}, 6),
    Bits("ReadingsToAlarm", "AlarmByteA", 57, 2, 0, "cboNoRdgsAlm", kReadingsToAlarmTexts, 0),
    Bits("Dev1Type", "AlarmByteA", 57, 3, 3, "cboDev1Typ", kDevTypeTexts, 0),
    Bits("Dev2Type", "AlarmByteA", 57, 4, 4, "cboDev2Typ", kDevTypeTexts, 0),
    Bits("DevStatus", "AlarmByteA", 57, 5, 5, "cboDevStatus", kDevStatusTexts, 0),
    Carried(57, 7, 6),
    Bits("AlarmState1", "AlarmByteB", 59, 1, 0, "cboState1", kAlarmStateTexts, 0),
    Bits("AlarmState2", "AlarmByteB", 59, 3, 2, "cboState2", kAlarmStateTexts, 0),
    Bits("Alarm1Type", "AlarmByteB", 59, 4, 4, "cboAlm1Type", kAlarmTypeTexts, 0),
    Bits("Alarm2Type", "AlarmByteB", 59, 5, 5, "cboAlm2Type", kAlarmTypeTexts, 0),
    Bits("Relay1State", "AlarmByteB", 59, 6, 6, "cboRly1State", kRelayStateTexts, 0),
    Bits("Relay2State", "AlarmByteB", 59, 7, 7, "cboRly2State", kRelayStateTexts, 0),
    Value("AnalogHigh", 61, kDisplayFormat, kDisplayFormat, D, "txtAnaHi", 20000),
    Value("AnalogLow", 67, kDisplayFormat, kDisplayFormat, D, "txtAnaLo", 0),
    Value("HighRead", 73, kDisplayFormat, kDisplayFormat, D, "txtHiRd", 20000),
    Value("HighIn", 79, kInputFormat, kInputFormat, I, "txtHiIn", 20000),
    Value("LowRead", 85, kDisplayFormat, kDisplayFormat, D, "txtLoRd", 0),
    Value("LowIn", 91, kInputFormat, kInputFormat, I, "txtLoIn", 0),
    Value("Offset", 97, kDisplayFormat, kDisplayFormat, D, "txtOffset", 0),
    Value("Scale", 103, kScaleFormat, kScaleFormat, PointSource::Own, "txtScale", 0x100001),
    Value("Setpoint2", 109, kDisplayFormat, kDisplayFormat, D, "txtSetPt2", 2000),
    Value("Setpoint1", 115, kDisplayFormat, kDisplayFormat, D, "txtSetpt1", 1000),
    // The default setup takes the default revision in place of this one.
    Byte("FirmwareRev", 121, {}, 4),
    Byte("GetMarker", 123, {}, 1),
    Byte("StopChar", 125, "txtTranStop", 0x0D, kByteFormat),
    Byte("StartChar", 127, "txtTranStart", 0, kByteFormat),
    Check("TedsPlugPlay", "TedsTareByte", 129, 0, "chkTEDSPlugPlay", 0, true),
    Check("TedsIndicator", "TedsTareByte", 129, 1, "chkTEDSIndicator", 0, true),
    Check("AutoTare", "TedsTareByte", 129, 2, "chkAutoTare", 1, true),
    Check("FrontPanelTare", "TedsTareByte", 129, 3, "chkFPTare", 1, true),
    Carried(129, 7, 4),
    Carried(131, 7, 0),
};

}  // namespace

const std::array<LockoutBit, 18> LockoutBits = {{
    {"Input Type", 43, 4},
    {"Setup, Config, DP", 43, 3},
    {"Filter", 43, 2},
    {"Scale, Lo/Hi In", 43, 1},
    {"Offset, Lo/Hi Rd", 43, 0},
    {"Alarm Config, Deviation", 41, 3},
    {"Change Alarm Setpoints", 41, 2},
    {"Analog Output Scaling", 41, 1},
    {"SerialCommunication", 41, 0},
    {"Tare, View Peak", 41, 7},
    {"View Alarm Setpoints", 41, 6},
    {"FP Function Resets", 41, 5},
    {"FP Meter Reset", 41, 4},
    {"Serial Number", 9, 4},
    {"Measurand Units", 9, 3},
    {"Calibration Date", 9, 2},
    {"Calib Initials, M-ID", 9, 1},
    {"Calibration Period", 9, 0},
}};

std::span<const ImageField> ImageFields() { return kFields; }

const ImageField& FindField(std::string_view name) {
  const auto found = std::find_if(kFields.begin(), kFields.end(),
                                  [name](const ImageField& f) { return !name.empty() && f.name == name; });
  if (found == kFields.end()) throw IndexFault("No field named \"" + std::string(name) + "\" in the setup image");
  return *found;
}

std::string_view FieldText(const ImageField& field, int value) {
  const int index = value - field.firstValue;
  if (index < 0 || static_cast<std::size_t>(index) >= field.texts.size()) return {};
  return field.texts[static_cast<std::size_t>(index)];
}

int16_t BoardKindOf(int modeCode) {
  if (modeCode < 0 || static_cast<std::size_t>(modeCode) >= BoardKindTable.size()) {
    throw IndexFault("Subscript out of range: mode code " + std::to_string(modeCode) + " has no board kind");
  }
  return BoardKindTable[static_cast<std::size_t>(modeCode)];
}

std::vector<std::string> ModeTexts(int16_t sigCond) {
  // The modes of one conditioner stand in the table in the order of their list.
  std::vector<std::string> texts;
  for (const auto& mode : InputModes) {
    if (mode.sigCond == sigCond) texts.emplace_back(mode.text);
  }
  return texts;
}

std::vector<std::string> RangeTexts(int16_t inputMode) {
  static constexpr std::array<std::string_view, 7> kThermocouples = {"J", "K", "N", "E", "t", "S", "r"};
  static constexpr std::array<std::string_view, 6> kRtds = {"4d", "4A", "3d", "3A", "2d", "2A"};
  static constexpr std::array<std::string_view, 5> kVolts = {"  0.2V", "  2.0V", " 20.0V", "200.0V", "660.0V"};
  static constexpr std::array<std::string_view, 4> kAmps = {"  2.0mA", " 20.0mA", "200.0mA", "  5.0A "};
  static constexpr std::array<std::string_view, 5> kMillivolts = {"  20.0mV", "  50.0mV", " 100.0mV", " 250.0mV",
                                                                  " 500.0mV"};
  auto degrees = [](std::span<const std::string_view> types) {
    std::vector<std::string> texts;
    for (const auto type : types) {
      texts.push_back(std::string(type) + " deg F");
      texts.push_back(std::string(type) + " deg C");
    }
    return texts;
  };
  auto plain = [](std::span<const std::string_view> texts, std::size_t count) {
    return std::vector<std::string>(texts.begin(), texts.begin() + static_cast<std::ptrdiff_t>(count));
  };
  switch (inputMode) {
    case 0:
      return degrees(kThermocouples);
    case 1: {
      auto texts = degrees(kRtds);
      texts.emplace_back("Short");
      return texts;
    }
    case 2:
    case 4:
      return plain(kVolts, kVolts.size());
    case 3:
    case 5:
      return plain(kAmps, kAmps.size());
    case 6:
      return plain(kVolts, 3);
    case 7:
    case 8:
      return plain(kMillivolts, kMillivolts.size());
    default:
      return {};
  }
}

std::span<const std::string_view> ResolutionTexts(int16_t sigCond) {
  if (sigCond == 0) return kTemperatureResolutionTexts;
  return kResolutionTexts;
}

}  // namespace dpm
