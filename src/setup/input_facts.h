#pragma once

#include <cstdint>

// What the image says about the input, and which fields the screens may offer.
namespace dpm {

// Decodes mode, conditioner, range, resolution and the two decimal point codes from the
// image into g.InputMode, g.SigCond, g.InputRange, g.Resolution, g.InputDp and g.DisplayDp.
void DeriveInputFacts();

// The mode code of an input mode: the mode + 4, one more for the last two modes so that
// 11 is never used.
int16_t ModeCodeOf(int16_t inputMode);

// The input mode of a mode code; codes that name no mode give "DC V".
int16_t InputModeOfCode(int modeCode);

// ModeRangeByte from an input mode and a range: mode code x 16 + range.
int16_t FormModeRangeByte(int16_t inputMode, int16_t inputRange);

// Writes ModeRangeByte for g.InputMode and g.InputRange at digit 55.
void WriteModeRangeByte();

// The input mode chosen at `listIndex` in the mode list of the conditioner.
int16_t InputModeFromList(int16_t sigCond, int16_t listIndex);

// The mode a conditioner starts with when it is chosen: 0, 2, 4 or 7.
int16_t FirstInputModeOf(int16_t sigCond);

// Where the screens offer a field. Every field exists in every image; these say whether
// the meter as described by the image and the derived facts makes use of it.
bool CustomCurveActive();      // a conditioner other than Temperature with its custom curve enabled
bool CustomCurveOffered();     // CustomCurve
bool RateOffered();            // Rate
bool DecimalPointOffered();    // DecimalPoint
bool ScaleOffered();           // Scale
bool OffsetOffered();          // Offset
bool CoordinatesOffered();     // HighIn, HighRead, LowRead, ReadingCoord, InputCoord
bool LowInOffered();           // LowIn: as the coordinates, or as the lead resistance of "RTD" "Short"
bool CustomCurveRd0Offered();  // CustomCurveRd0
bool LeadingZerosOffered();    // LeadingZeros
bool TranCharsOffered();       // TranChars, StartChar, StopChar
bool AlarmsOffered();  // the setpoints, alarm states and types, relay states, AlarmValue, ReadingsToAlarm, DevStatus
bool DeviationsOffered();     // Deviation1, Deviation2, Dev1Type, Dev2Type
bool OutputRateOffered();     // OutputRate, OutputValue
bool SerialLinkOffered();     // BaudRate, Address, OutputMode, RtsType, IncludeAlarmData, IncludeLF
bool DuplexOffered();         // Duplex
bool AnalogOffered();         // AnalogHigh, AnalogLow, AnalogValue, AnalogCircuit
bool TareOffered();           // FrontPanelTare, AutoTare
bool TedsPlugPlayOffered();   // TedsPlugPlay
bool TedsIndicatorOffered();  // TedsIndicator

// With no filter the display value must be the filtered one: the value to write for `chosen`.
int16_t AllowedDisplayValue(int16_t chosen);

// A BASIC meter has neither custom curve nor rate: clears both in the image.
void ClearExtendedFields();

}  // namespace dpm
