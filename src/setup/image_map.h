#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// The map of the setup image: where every field lies, how it is read, which control shows
// it, the texts of its values and its value in the default setup. The screens take their
// lists and formats from here, so that each text exists once.
namespace dpm {

enum class FieldKind {
  Bits,     // a run of bits in one byte, read and written with ReadField and WriteField
  Value,    // six digits, read and written with ReadValue and WriteValue
  Byte,     // a whole byte, shown as a number or a character code
  Carried,  // bits no screen uses; they must survive a Get, a file and a Put unchanged
};

// Which decimal point code a value field is shown with.
enum class PointSource { None, Display, Input, Own };

struct ImageField {
  std::string_view name;
  std::string_view byteName;  // the byte the field lies in, where it has a name of its own
  int16_t position;           // digit position of the byte, or of the first of six digits
  int16_t hi;                 // highest bit; 7 for a whole byte and for value fields
  int16_t lo;                 // lowest bit
  FieldKind kind;
  std::string_view control;                 // the control that shows it, empty when none does
  std::span<const std::string_view> texts;  // the text of each value, from `firstValue` on
  int16_t firstValue;                       // the value of texts[0]; the list index is value - firstValue
  int16_t readFormat;                       // value fields: the format they are shown with
  int16_t entryFormat;                      // value fields: the format they are entered with
  PointSource point;
  uint32_t defaultValue;        // field value in the default setup (value fields: the 24-bit number)
  bool inverted;                // a check box that is ticked when the bit is 0
  std::string_view sameBitsAs;  // another reading of bits that an earlier entry already maps
};

// Every field of the image in order of position; together they cover all 132 digits.
std::span<const ImageField> ImageFields();

// The field of that name; an unknown name is an IndexFault.
const ImageField& FindField(std::string_view name);

// The text of a field's value, empty when the value has none.
std::string_view FieldText(const ImageField& field, int value);

// The conditioners by SigCond, and the short names of the board kinds by board kind.
inline constexpr std::array<std::string_view, 4> ConditionerNames = {"Temperature", "DC", "True RMS", "Load Cell"};
inline constexpr std::array<std::string_view, 5> BoardKindNames = {"", "TC", "DC", "RMS", "LC"};

// The board kind of each mode code 0 to 13 (the high nibble of ModeRangeByte).
inline constexpr std::array<int16_t, 14> BoardKindTable = {0, 0, 0, 0, 1, 1, 2, 2, 3, 3, 2, 0, 4, 4};

// BoardKindTable at a mode code; 14 and 15 lie outside it and are an IndexFault.
int16_t BoardKindOf(int modeCode);

// The input modes 0 to 8.
struct InputModeInfo {
  std::string_view text;  // in cboMode
  int16_t modeCode;       // high nibble of ModeRangeByte
  int16_t sigCond;
  int16_t listIndex;   // place in cboMode
  int16_t rangeCount;  // entries of cboFunc
};
inline constexpr std::array<InputModeInfo, 9> InputModes = {{
    {"Thermocouple", 4, 0, 0, 14},
    {"RTD", 5, 0, 1, 13},
    {"DC V", 6, 1, 0, 5},
    {"DC A", 7, 1, 1, 4},
    {"RMS V", 8, 2, 0, 5},
    {"RMS A", 9, 2, 1, 4},
    {"Ratio", 10, 1, 2, 3},
    {"Strain", 12, 3, 0, 5},
    {"DC mV", 13, 3, 1, 5},
}};

// The texts of cboMode for a conditioner, in list order.
std::vector<std::string> ModeTexts(int16_t sigCond);

// The texts of cboFunc for an input mode, in list order.
std::vector<std::string> RangeTexts(int16_t inputMode);

// The texts of cboResol: the temperature list for SigCond 0, the digits list otherwise.
std::span<const std::string_view> ResolutionTexts(int16_t sigCond);

// One lockout check box of the chkLock array: ticked when its bit is 1.
struct LockoutBit {
  std::string_view caption;
  int16_t position;
  int16_t bit;
};
extern const std::array<LockoutBit, 18> LockoutBits;

}  // namespace dpm
