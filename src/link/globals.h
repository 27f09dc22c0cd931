#pragma once

#include <array>
#include <cstdint>
#include <string>

// The program-wide state: one instance, reachable from every part of the program, under
// the names the whole program uses. ResetGlobals() returns it to the state before start-up,
// so that each test starts afresh.
namespace dpm {

class TextBox;

struct Globals {
  // Link settings, read from "Settings.SSS" at start.
  std::string LinkSettings;
  int16_t AppClass = 0;
  int16_t BaudIndex = 0;
  int16_t ComPortNumber = 0;
  std::string MeterAddress;
  int16_t MeterAddressNumber = 0;
  int16_t HalfDuplexFlag = 0;
  int16_t FirmwareRev = 0;
  int16_t LinkEnabled = 0;
  int16_t CalibSetting = 0;
  int16_t CharTime = 0;
  std::string MeterTitle;
  int16_t ImageLoaded = 0;
  int16_t DefaultFirmwareRev = 0;

  // The transport.
  std::string CommandText;
  std::string ReplyText;
  int16_t ErrFlag = 0;
  // The port faulted or its device went away; the next command opens it again by name.
  bool LinkLost = false;

  // The setup image and what is derived from it.
  std::string SetupImage;
  std::string MeterKind = "0";
  int16_t SigCond = 0;
  int16_t InputMode = 0;
  int16_t InputRange = 0;
  int16_t Resolution = 0;
  int16_t InputDp = 0;
  int16_t DisplayDp = 0;
  int16_t RelayOption = 0;
  int16_t AnalogOption = 0;
  int16_t CommOption = 0;

  // The transducer data sheet.
  int16_t TedsHardware = 0;
  int16_t TedsPresent = 0;
  int16_t TedsEnabled = 0;
  int16_t TedsTemplate = 0;
  std::string TedsHex;   // the meter's reply: 116 hexadecimal digits
  std::string TedsBits;  // TedsHex as 464 characters "0" and "1"

  // Help.
  int16_t HelpContext = 0;
  int16_t MenuViewUp = 0;

  // The value entry dialog: what the page that opens it hands over, and what it gives back.
  std::string EntryText;        // the box's text in, the accepted text out
  int16_t EntryFormat = 0;      // the value format of the field
  TextBox* EntryBox = nullptr;  // the box the dialog serves
  int16_t EntryPosition = 0;    // digit position of the field in the image
  int16_t EntryReturnFlag = 0;  // 1 from opening the dialog until a page button or help clears it
  int16_t CharCode = 0;         // the byte accepted in the single-byte format

  // Setup page 1.
  int16_t CustomCurveInForce = 0;  // 1 when the custom curve takes over the scaling boxes
  std::string CustomCurveRd0Text;  // the custom curve's reading at zero input, as shown
};

extern Globals g;

void ResetGlobals();

// Tables built once at start; they never change.
inline constexpr std::array<const char*, 8> BaudTable = {"300", "600", "1200", "2400", "4800", "9600", "19200", ""};
inline constexpr char CR = '\r';

// Colours as red + 256 x green + 65536 x blue.
constexpr int32_t Rgb(int red, int green, int blue) { return red + 256 * green + 65536 * blue; }
inline constexpr int32_t ColWhite = Rgb(255, 255, 255);
inline constexpr int32_t ColPaleYellow = Rgb(255, 255, 224);
inline constexpr int32_t ColLightGrey = Rgb(192, 192, 192);
inline constexpr int32_t ColGrey = Rgb(128, 128, 128);
inline constexpr int32_t ColBlack = Rgb(0, 0, 0);
inline constexpr int32_t ColRed = Rgb(255, 0, 0);
inline constexpr int32_t ColDarkRed = Rgb(128, 0, 0);
inline constexpr int32_t ColGreen = Rgb(0, 255, 0);
inline constexpr int32_t ColPaleGreen = 0xC0FFC0;

// Which entry of the mode list belongs to each input mode 0 to 8.
inline constexpr std::array<int16_t, 9> ModeComboIndex = {0, 1, 0, 1, 0, 1, 2, 0, 1};

// Three-letter names of the control characters 0 to 32.
const std::array<std::string, 33>& ControlNames();

// The name of a character code: the character itself from 33 up, else its control name.
// A negative code is an IndexFault.
std::string CharName(int16_t code);

}  // namespace dpm
