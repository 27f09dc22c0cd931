#include "panelmenu/menu_rows.h"

#include "link/globals.h"
#include "link/image_access.h"
#include "platform/numeric.h"
#include "setup/image_positions.h"
#include "setup/input_facts.h"
#include "teds/teds.h"

namespace dpm {
namespace {

// Help numbers of the keys whose cells are made in a way of their own.
constexpr int16_t kInputHelp = 1;
constexpr int16_t kDecimalPointHelp = 5;
constexpr int16_t kBridgeIdHelp = 26;

constexpr int16_t kThermocouple = 0;
constexpr int16_t kRtd = 1;
constexpr int16_t kRtdShort = 12;

constexpr std::array<const char*, 4> kConditionerTexts = {" Temperature Signal Conditioner", " DC Signal Conditioner",
                                                          " True RMS Signal Conditioner",
                                                          " Load Cell Signal Conditioner"};

// The input modes 0 to 8 as the display spells them.
constexpr std::array<const char*, 9> kModeTexts = {"  tC  ", " rtd  ", "  dC V", "  dC A", "  AC V",
                                                   "  AC A", " rAtio", "strAin", "  dC v"};

// The ranges of each input mode as the display spells them; "^" is the degree sign.
const std::vector<const char*>& RangeTextsOf(int16_t inputMode) {
  static const std::vector<const char*> kThermocouples = {"  J ^F", "  J ^C", "  K ^F", "  K ^C", "  n ^F",
                                                          "  n ^C", "  E ^F", "  E ^C", "  t ^F", "  t ^C",
                                                          "  S ^F", "  S ^C", "  r ^F", "  r ^C"};
  static const std::vector<const char*> kRtds = {" 4d ^F", " 4d ^C", " 4A ^F", " 4A ^C", " 3d ^F", " 3d ^C", " 3A ^F",
                                                 " 3A ^C", " 2d ^F", " 2d ^C", " 2A ^F", " 2A ^C", " SHort"};
  static const std::vector<const char*> kVolts = {"  0.2V", "  2.0V", " 20.0V", "200.0V", "660.0V"};
  static const std::vector<const char*> kAmps = {"  2.0a", " 20.0a", "200.0a", "  5.0A"};
  static const std::vector<const char*> kRatio = {"  0.2V", "  2.0V", " 20.0V"};
  static const std::vector<const char*> kMillivolts = {"  20.0", "  50.0", " 100.0", " 250.0", " 500.0"};
  switch (inputMode) {
    case 0:
      return kThermocouples;
    case 1:
      return kRtds;
    case 3:
    case 5:
      return kAmps;
    case 6:
      return kRatio;
    case 7:
    case 8:
      return kMillivolts;
    default:
      return kVolts;
  }
}

// The point of the display as the decimal point key shows it, by code 1 to 6.
constexpr std::array<const char*, 6> kDecimalPointTexts = {"ddddd.", "dddd.d", "ddd.dd", "dd.ddd", "d.dddd", ".ddddd"};

int16_t Bit(int position, int bit) { return ReadField(bit, bit, position); }

// The character at a one-based place of a text, empty past its end.
std::string CharAt(const std::string& text, std::size_t place) { return Mid(text, place, 1); }

// A value of six places: the point, where the text has one inside, moves into the cell
// of the digit before it, as the display lights the point beside that digit.
std::array<std::string, 7> ValueCells(std::string text, bool rightmostSixWithoutPoint) {
  std::size_t p = text.find('.');
  p = p == std::string::npos ? 0 : p + 1;
  if (p == 0 && rightmostSixWithoutPoint && text.size() > 6) text = text.substr(text.size() - 6);
  if (p >= 2 && p <= 6) {
    text.erase(p - 1, 1);
  } else if (p == 7) {
    text = text.substr(0, 6);  // a point behind the last digit is not shown
  }
  std::array<std::string, 7> cells;
  cells[0] = " ";
  for (std::size_t i = 1; i <= 6; ++i) {
    cells[i] = " " + CharAt(text, i);
    if (p >= 2 && i == p - 1 && i != 6) cells[i] += ".";
  }
  return cells;
}

// Letters, a place each from the skip column on. The decimal point key draws its digits
// as "d" with the point beside the digit it follows; its sign place shows only a point.
std::array<std::string, 7> TextCells(const std::string& text, int16_t helpNumber) {
  std::array<std::string, 7> cells;
  for (std::size_t i = 1; i <= 7; ++i) {
    std::string c = CharAt(text, i);
    if (helpNumber == kDecimalPointHelp) {
      if (i == 2 && c != ".") c = " ";
      if (i != 2 && c == ".") c = "d .";
    }
    cells[i - 1] = " " + c;
  }
  return cells;
}

// A code of a digit place: 0 to 15 a digit or letter, 16 to 31 the same with its point.
std::string PlaceGlyph(int16_t code) {
  static constexpr char kGlyphs[] = "0123456789AbCdEF";
  if (code == kBlankPlace) return " ";
  if (code < 0 || code > 31) return "";
  std::string glyph(1, kGlyphs[code % 16]);
  if (code >= 16) glyph += ".";
  return glyph;
}

std::array<std::string, 7> DigitCells(const std::array<int16_t, kDisplayPlaces>& digits) {
  std::array<std::string, 7> cells;
  cells[0] = " ";
  for (std::size_t i = 0; i < kDisplayPlaces; ++i) cells[i + 1] = PlaceGlyph(digits[i]);
  return cells;
}

// The rows in the making. The lockout mark carries over from one row to the next: a key
// whose lock "is that of the key before it" leaves it as it stands.
class RowBuilder {
 public:
  explicit RowBuilder(std::vector<MenuRow>& rows) : rows_(rows) {}

  void Lock(int16_t bit) { locked_ = bit != 0; }

  void Value(const char* name, int16_t helpNumber, int16_t format, int position, int16_t dp) {
    int16_t plainFormat = static_cast<int16_t>(format + kPlainForm);
    MenuRow& row = Add(name, MenuRowKind::Value, helpNumber);
    row.value = ReadValue(plainFormat, static_cast<int16_t>(position), dp);
    row.cells = ValueCells(row.value, false);
  }

  void Text(const std::string& name, int16_t helpNumber, const std::string& text) {
    MenuRow& row = Add(name, MenuRowKind::Text, helpNumber);
    row.value = text;
    row.cells = helpNumber == kBridgeIdHelp ? ValueCells(text, true) : TextCells(text, helpNumber);
  }

  void Digits(const char* name, int16_t helpNumber, const std::array<int16_t, kDisplayPlaces>& digits) {
    MenuRow& row = Add(name, MenuRowKind::Digits, helpNumber);
    row.digits = digits;
    row.cells = DigitCells(digits);
  }

 private:
  MenuRow& Add(std::string name, MenuRowKind kind, int16_t helpNumber) {
    MenuRow& row = rows_.emplace_back();
    row.name = std::move(name);
    row.locked = locked_;
    row.kind = kind;
    row.helpNumber = helpNumber;
    return row;
  }

  std::vector<MenuRow>& rows_;
  bool locked_ = false;
};

constexpr int16_t B = kBlankPlace;

// What the image says that decides which keys exist.
struct MenuFacts {
  bool customCurveOn;
  int16_t readingCoord;
  int16_t inputCoord;
  bool lockBox3;
  bool lockBox4;
};

class MenuMaker {
 public:
  MenuMaker(PanelMenu& menu, const MenuFacts& facts) : menu_(menu), f_(facts), add_(menu.rows) {}

  void MakeRows() {
    const bool noTeds = g.TedsEnabled == 0;
    if (f_.readingCoord == 1 && !f_.customCurveOn && g.SigCond != 0) ReadingCoordinates();
    if (noTeds) Input();
    Setup();
    if (g.TedsPresent == 0) Config();
    FilterAndPoint();
    if (noTeds && f_.customCurveOn) ReadingAtZero();
    if (noTeds && !f_.customCurveOn && g.SigCond != 0 && f_.readingCoord == 0 && f_.inputCoord == 1) Coordinates();
    if (noTeds && (g.SigCond == 0 || (!f_.customCurveOn && f_.readingCoord == 0 && f_.inputCoord == 0))) {
      ScaleAndOffset();
    }
    if (noTeds && g.SigCond == 0 && g.InputMode == kRtd && g.InputRange == kRtdShort) LeadResistance();
    if (g.RelayOption != 0) AlarmSetup();
    if (g.RelayOption != 0 && Bit(kAlarmByteA, 5) == 0) Deviations();
    if (g.AnalogOption == 1) Analog();
    if (g.TedsHardware == 1) Tare();
    if (g.CommOption != 0) Serial();
    if (g.TedsPresent == 1 && g.FirmwareRev >= 8) DataSheet();
    Lockouts();
    if (g.TedsHardware == 1) DataSheetLockouts();
  }

 private:
  // The four coordinates ahead of everything else, when the reading coordinates are the
  // scale method; their locks are those of the lockout boxes.
  void ReadingCoordinates() {
    add_.Lock(f_.lockBox3);
    add_.Value("Lo In", 8, kInputFormat, kLowIn, g.InputDp);
    add_.Value("Hi In", 10, kInputFormat, kHighIn, g.InputDp);
    add_.Lock(f_.lockBox4);
    add_.Value("Lo rd", 9, kDisplayFormat, kLowRead, g.DisplayDp);
    add_.Value("Hi rd", 11, kDisplayFormat, kHighRead, g.DisplayDp);
  }

  void Input() {
    menu_.conditionerText = kConditionerTexts.at(static_cast<std::size_t>(g.SigCond));
    const std::string range = RangeTextsOf(g.InputMode).at(static_cast<std::size_t>(g.InputRange));
    for (std::size_t i = 1; i <= kDisplayPlaces; ++i) menu_.inputRangeCells.push_back(" " + CharAt(range, i));
    add_.Lock(Bit(kLockoutsB, 4));
    add_.Text(" InPut", kInputHelp, std::string(kModeTexts.at(static_cast<std::size_t>(g.InputMode))) + " ");
  }

  void Setup() {
    std::array<int16_t, kDisplayPlaces> d = {B,
                                             ReadField(7, 6, kDisplayByte),
                                             ReadField(5, 5, kDisplayByte),
                                             ReadField(4, 4, kDisplayByte),
                                             ReadField(3, 3, kDisplayByte),
                                             ReadField(2, 0, kDisplayByte)};
    // The reading coordinates count as coordinates on the meter's own key.
    if (f_.readingCoord == 1 && ReadField(0, 0, kConfigLow) == 0 && g.SigCond != 0) d[4] = 1;
    if (g.TedsEnabled == 1) d[1] = d[4] = B;
    add_.Lock(Bit(kLockoutsB, 3));
    add_.Digits(" SEtuP", 2, d);
  }

  void Config() {
    std::array<int16_t, kDisplayPlaces> d = {B,
                                             ReadField(6, 4, kConfigLow),
                                             ReadField(3, 3, kConfigLow),
                                             ReadField(2, 2, kConfigLow),
                                             ReadField(1, 1, kConfigLow),
                                             ReadField(0, 0, kConfigLow)};
    if (f_.customCurveOn) d[2] = 0;
    if (g.SigCond == 0) d[2] = d[5] = 0;
    add_.Lock(Bit(kLockoutsB, 3));
    add_.Digits("ConFiG", 3, d);
  }

  void FilterAndPoint() {
    add_.Lock(Bit(kLockoutsB, 2));
    add_.Digits("FiLtEr", 4,
                {B, ReadField(7, 7, kFilterByte), ReadField(6, 6, kFilterByte), ReadField(5, 5, kFilterByte),
                 ReadField(4, 4, kFilterByte), ReadField(3, 0, kFilterByte)});
    if (g.SigCond == 0) return;
    const int16_t code = ReadField(2, 0, kDecimalPoint);
    g.DisplayDp = code;
    // A code outside 1 to 6 names no point: the key shows nothing.
    const std::string text = code >= 1 && code <= 6 ? kDecimalPointTexts[static_cast<std::size_t>(code - 1)] : "";
    add_.Lock(Bit(kLockoutsB, 3));
    add_.Text(" DecPt", kDecimalPointHelp, text);
  }

  void ReadingAtZero() { add_.Value("rd0", 8, kDisplayFormat, kCustomCurveRd0, g.DisplayDp); }

  void Coordinates() {
    add_.Lock(Bit(kLockoutsB, 1));
    add_.Value("Lo In", 8, kInputFormat, kLowIn, g.InputDp);
    add_.Lock(Bit(kLockoutsB, 0));
    add_.Value("Lo rd", 9, kDisplayFormat, kLowRead, g.DisplayDp);
    add_.Lock(Bit(kLockoutsB, 1));
    add_.Value("Hi In", 10, kInputFormat, kHighIn, g.InputDp);
    add_.Lock(Bit(kLockoutsB, 0));
    add_.Value("Hi rd", 11, kDisplayFormat, kHighRead, g.DisplayDp);
  }

  void ScaleAndOffset() {
    // A thermocouple has no scale factor.
    if (!(g.SigCond == 0 && g.InputMode == kThermocouple)) {
      add_.Lock(Bit(kLockoutsB, 1));
      add_.Value("SCALE", 6, kScaleFormat, kScale, g.DisplayDp);
    }
    add_.Lock(Bit(kLockoutsB, 0));
    add_.Value("OFFSt", 7, kDisplayFormat, kOffset, g.DisplayDp);
  }

  // "RTD" "Short": the low input holds the resistance of the leads.
  void LeadResistance() { add_.Value(" LEAd", 8, kDisplayFormat, kLowIn, g.DisplayDp); }

  void AlarmSetup() {
    // The two alarm states as one number, without the state 3 that does not occur.
    int16_t states = ReadField(3, 0, kAlarmByteB);
    if (states > 7) --states;
    if (states > 3) --states;
    add_.Lock(Bit(kLockoutsA, 3));
    add_.Digits("AL SEt", 12,
                {B, ReadField(7, 6, kAlarmByteB), ReadField(5, 4, kAlarmByteB), states, ReadField(5, 3, kAlarmByteA),
                 ReadField(2, 0, kAlarmByteA)});
  }

  void Deviations() {
    add_.Lock(Bit(kLockoutsA, 3));
    add_.Value(Bit(kAlarmByteA, 3) == 1 ? "dEUn1H" : "dEUn1b", 13, kDisplayFormat, kDeviation1, g.DisplayDp);
    add_.Value(Bit(kAlarmByteA, 4) == 1 ? "dEUn2H" : "dEUn2b", 14, kDisplayFormat, kDeviation2, g.DisplayDp);
  }

  void Analog() {
    add_.Lock(Bit(kLockoutsA, 1));
    add_.Digits("An SEt", 15, {B, B, B, B, ReadField(1, 1, kAnalogFlags), ReadField(0, 0, kAnalogFlags)});
    add_.Value(" An Lo", 16, kDisplayFormat, kAnalogLow, g.DisplayDp);
    add_.Value(" An Hi", 17, kDisplayFormat, kAnalogHigh, g.DisplayDp);
  }

  void Tare() {
    std::array<int16_t, kDisplayPlaces> d = {B,
                                             B,
                                             ReadField(3, 3, kTedsTareByte),
                                             ReadField(2, 2, kTedsTareByte),
                                             ReadField(1, 1, kTedsTareByte),
                                             ReadField(0, 0, kTedsTareByte)};
    if (g.TedsPresent == 0) d[4] = d[5] = B;
    add_.Lock(f_.lockBox4);
    add_.Digits(" TArE", 18, d);
  }

  void Serial() {
    add_.Lock(Bit(kLockoutsA, 0));
    add_.Digits(" SEr 1", 18,
                {B, B, B, ReadField(7, 7, kSerialB), ReadField(6, 4, kSerialB), ReadField(3, 0, kSerialB)});
    add_.Digits(" SEr 2", 19,
                {B, B, ReadField(7, 7, kSerialA), ReadField(6, 6, kSerialA), ReadField(5, 5, kSerialA),
                 ReadField(4, 0, kSerialA)});
  }

  // The data sheet keys, read only; fetched from the meter on first need.
  void DataSheet() {
    FetchTedsIfNeeded();
    std::string serialLabel;
    const std::string serial = TedsSerialNumber(serialLabel);
    add_.Text(serialLabel, 21, serial);
    add_.Text("# UnitS", 22, TedsUnits());
    add_.Text("# CALdAt", 23, TedsCalDate());
    add_.Text("# CALInt", 24, TedsCalInitials());
    add_.Text("# CALPEr", 25, TedsCalPeriod());
    add_.Text("# M - Id", kBridgeIdHelp, TedsBridgeId());
  }

  // The lockouts as the meter's three lockout keys show them; all are marked while the
  // lockout jumper is in.
  void Lockouts() {
    add_.Lock(ReadField(7, 7, kOptionByte));
    add_.Digits(
        " Loc 1", 20,
        {B, Bit(kLockoutsB, 4), Bit(kLockoutsB, 3), Bit(kLockoutsB, 2), Bit(kLockoutsB, 1), Bit(kLockoutsB, 0)});
    add_.Digits(" Loc 2", 21, {B, B, Bit(kLockoutsA, 3), Bit(kLockoutsA, 2), Bit(kLockoutsA, 1), Bit(kLockoutsA, 0)});
    add_.Digits(" Loc 3", 22, {B, B, Bit(kLockoutsA, 7), Bit(kLockoutsA, 6), Bit(kLockoutsA, 5), Bit(kLockoutsA, 4)});
  }

  void DataSheetLockouts() {
    add_.Digits(
        " Loc 4", 30,
        {B, Bit(kLockoutsC, 4), Bit(kLockoutsC, 3), Bit(kLockoutsC, 2), Bit(kLockoutsC, 1), Bit(kLockoutsC, 0)});
  }

  PanelMenu& menu_;
  const MenuFacts& f_;
  RowBuilder add_;
};

// One place of the display as a line of text shows it: the character, then its point.
std::string PlaceText(const std::string& cell) {
  const DisplayPlace place = PlaceOfCell(cell);
  return std::string(1, place.glyph) + (place.point ? "." : "");
}

std::string PlacesText(const std::array<std::string, 7>& cells) {
  std::string text;
  for (std::size_t i = 1; i < cells.size(); ++i) text += PlaceText(cells[i]);
  return text;
}

std::string PaddedLabel(const std::string& label) {
  constexpr std::size_t kLabelWidth = 12;
  return label.size() >= kLabelWidth ? label + " " : label + std::string(kLabelWidth - label.size(), ' ');
}

}  // namespace

std::string MenuRow::GridItem() const {
  std::string item = " " + Label();
  for (const std::string& cell : cells) item += "\t" + cell;
  return item;
}

DisplayPlace PlaceOfCell(const std::string& cell) {
  DisplayPlace place;
  for (const char c : cell) {
    if (c == '.') {
      place.point = true;
    } else if (c != ' ' && place.glyph == ' ') {
      place.glyph = c;
    }
  }
  return place;
}

std::vector<MenuRow> SetpointRows() {
  std::vector<MenuRow> rows;
  RowBuilder add(rows);
  // Either lockout of the setpoints marks both keys.
  add.Lock(static_cast<int16_t>(Bit(kLockoutsA, 6) | Bit(kLockoutsA, 2)));
  // A set bit in an alarm's state means "Disabled": that alarm has no setpoint key.
  if (Bit(kAlarmByteB, 1) == 0 && g.RelayOption != 0) {
    add.Value("SETPT1", 23, kDisplayFormat, kSetpoint1, g.DisplayDp);
  }
  if (Bit(kAlarmByteB, 3) == 0 && g.RelayOption != 0) {
    add.Value("SETPT2", 24, kDisplayFormat, kSetpoint2, g.DisplayDp);
  }
  return rows;
}

PanelMenu BuildPanelMenu(const std::optional<PageLockBoxes>& pageLocks) {
  DeriveInputFacts();
  g.RelayOption = ReadField(6, 6, kOptionByte);
  g.CommOption = ReadField(3, 2, kOptionByte);
  g.AnalogOption = ReadField(5, 5, kOptionByte);

  PanelMenu menu;
  const PageLockBoxes boxes = pageLocks.value_or(PageLockBoxes{Bit(kLockoutsB, 1) != 0, Bit(kLockoutsB, 0) != 0});
  const MenuFacts facts{ReadField(0, 0, kConfigLow) == 1 && g.SigCond != 0, ReadField(3, 3, kConfigLow),
                        ReadField(3, 3, kDisplayByte), boxes.scaleLoHiIn, boxes.offsetLoHiRd};
  menu.customCurveOn = facts.customCurveOn;
  menu.readOnlyNote = g.TedsPresent == 1;
  MenuMaker(menu, facts).MakeRows();
  menu.setpointRows = SetpointRows();
  return menu;
}

std::vector<std::string> PanelMenuLines(const PanelMenu& menu) {
  std::vector<std::string> lines;
  if (!menu.conditionerText.empty()) lines.push_back(menu.conditionerText.substr(1));
  lines.push_back(PaddedLabel("MENU KEY") + "S12345");
  for (const MenuRow& row : menu.rows) {
    std::string line = PaddedLabel(row.Label()) + PlacesText(row.cells);
    if (row.helpNumber == kInputHelp && !menu.inputRangeCells.empty()) {
      line += "  ";
      for (const std::string& cell : menu.inputRangeCells) line += PlaceText(cell);
    }
    lines.push_back(line);
  }
  if (!menu.setpointRows.empty()) {
    lines.push_back(PaddedLabel("ALARM KEY") + "S12345");
    for (const MenuRow& row : menu.setpointRows) lines.push_back(PaddedLabel(row.Label()) + PlacesText(row.cells));
  }
  return lines;
}

}  // namespace dpm
