#pragma once

// Digit positions (counted from 1) of the bytes and value fields of the setup image, for
// code that reads or writes a field by hand. The image map's table says the same, field
// by field, with bits, texts and defaults.
namespace dpm {

inline constexpr int kCustomCurveRd0 = 1;
inline constexpr int kLockoutsC = 9;
inline constexpr int kDeviation2 = 21;
inline constexpr int kDeviation1 = 27;
inline constexpr int kConfigLow = 33;
inline constexpr int kSigCondCode = 35;
inline constexpr int kAnalogFlags = 37;
inline constexpr int kDecimalPoint = 39;
inline constexpr int kLockoutsA = 41;
inline constexpr int kLockoutsB = 43;
inline constexpr int kSerialA = 45;
inline constexpr int kSerialB = 47;
inline constexpr int kOptionByte = 49;
inline constexpr int kFilterByte = 51;
inline constexpr int kDisplayByte = 53;
inline constexpr int kModeRangeByte = 55;
inline constexpr int kAlarmByteA = 57;
inline constexpr int kAlarmByteB = 59;
inline constexpr int kAnalogHigh = 61;
inline constexpr int kAnalogLow = 67;
inline constexpr int kHighRead = 73;
inline constexpr int kHighIn = 79;
inline constexpr int kLowRead = 85;
inline constexpr int kLowIn = 91;
inline constexpr int kOffset = 97;
inline constexpr int kScale = 103;
inline constexpr int kSetpoint2 = 109;
inline constexpr int kSetpoint1 = 115;
inline constexpr int kFirmwareRev = 121;
inline constexpr int kGetMarker = 123;
inline constexpr int kStopChar = 125;
inline constexpr int kStartChar = 127;
inline constexpr int kTedsTareByte = 129;

}  // namespace dpm
