#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// The setup image as the meter's own front-panel menu shows it: one row for each menu key
// the meter offers, in the meter's order, spelled in the letters of its seven-segment
// display, with the digit codes a user keys in on the front panel. Which keys exist
// follows the conditioner, the input mode, the scale method, the option boards and the
// data sheet hardware, as on the meter. The menu view window and the printed record of a
// meter's programming are both made from these rows.
namespace dpm {

enum class MenuRowKind {
  Value,   // a six-digit value: sign place and five digits, the point inside a digit's place
  Text,    // letters of the display, one a place
  Digits,  // one code a place, each a digit 0 to 9, a letter A to F, or either with a point
};

// A place of a digit row that shows nothing.
inline constexpr int16_t kBlankPlace = -1;

// Number of places of the display: the sign place S and the digits 1 to 5.
inline constexpr std::size_t kDisplayPlaces = 6;

struct MenuRow {
  std::string name;  // the key as the display spells it (" SEtuP", "Lo In"), without the lockout mark
  bool locked = false;
  MenuRowKind kind = MenuRowKind::Digits;
  int16_t helpNumber = 0;                        // the item of the menu help this key has
  std::string value;                             // value and text rows: the text the places are cut from
  std::array<int16_t, kDisplayPlaces> digits{};  // digit rows: the code of each place S, 1 to 5
  // The cells of the grid's columns 1 to 7: the one-blank skip column, then the places S,
  // 1 to 5. A place holds its character with a blank ahead (" 7"), a digit with its point
  // (" 7.", "F."), or only a point.
  std::array<std::string, 7> cells;

  // The key's name as the grid shows it: a locked key has a "*" ahead of its name.
  std::string Label() const { return (locked ? "*" : "") + name; }
  // All eight cells joined by tabs, as a grid row takes them: the label with a blank
  // ahead, then the cells.
  std::string GridItem() const;
};

// The lockout boxes of setup page 3 that lock the reading coordinates and the tare key:
// box 3 "Scale, Lo/Hi In" and box 4 "Offset, Lo/Hi Rd". Those rows take their mark from
// the boxes, not from the image, which differ while the page shows an older image.
struct PageLockBoxes {
  bool scaleLoHiIn = false;
  bool offsetLoHiRd = false;
};

struct PanelMenu {
  std::string conditionerText;  // names the conditioner; empty when the input key is left out
  bool readOnlyNote = false;    // the data sheet keys are shown, read only
  bool customCurveOn = false;   // the custom curve is in force (a conditioner other than Temperature)
  std::vector<MenuRow> rows;    // the main menu keys
  // The input range, one character a place S, 1 to 5; empty when the input key is left out.
  std::vector<std::string> inputRangeCells;
  std::vector<MenuRow> setpointRows;  // the alarm keys
};

// The menu of the setup image in hand (g.SetupImage with g.TedsHardware, g.TedsPresent,
// g.TedsEnabled and g.FirmwareRev). Derives the input facts and the option board shadows
// into the globals first, as every screen that opens on the image does. When the meter
// has a data sheet that has not been fetched since the last visit to the main menu, it is
// fetched from the meter here, once. `pageLocks`: the boxes of setup page 3 when that page
// is loaded; without it the boxes read as the image has them.
PanelMenu BuildPanelMenu(const std::optional<PageLockBoxes>& pageLocks = std::nullopt);

// The alarm keys alone: the setpoints of the alarms that are not disabled, when the meter
// has a relay board. Needs the derived facts and shadows in force.
std::vector<MenuRow> SetpointRows();

// The menu as plain text, a line a key: the label, then the six places as the display
// shows them (" 0010.0"); the input key also shows its range. The conditioner comes
// first, the alarm keys last under a heading of their own.
std::vector<std::string> PanelMenuLines(const PanelMenu& menu);

// The character and point of one place's cell: {'7', true} for " 7.", {' ', true} for "  .".
struct DisplayPlace {
  char glyph = ' ';
  bool point = false;
};
DisplayPlace PlaceOfCell(const std::string& cell);

}  // namespace dpm
