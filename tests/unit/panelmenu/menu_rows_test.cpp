#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "emulator/in_process_meter.h"
#include "link_fixture.h"
#include "menu_fixture.h"
#include "panelmenu/menu_rows.h"
#include "teds/teds.h"

namespace dpm::testing {
namespace {

// A line of the printed menu: the label in twelve columns, then the six places.
std::string L(const std::string& label, const std::string& places, const std::string& range = "") {
  std::string line = label + std::string(12 - label.size(), ' ') + places;
  if (!range.empty()) line += "  " + range;
  return line;
}
const std::string kHeader = L("MENU KEY", "S12345");
const std::string kAlarmHeader = L("ALARM KEY", "S12345");

struct Meter {
  int16_t tedsHardware = 0;
  int16_t tedsPresent = 0;
  int16_t tedsEnabled = 0;
  int16_t firmwareRev = 4;
};

class MenuRowsTest : public LinkTest {
 protected:
  PanelMenu Build(const std::string& changes, Meter meter = {}) {
    LoadSetup(changes);
    g.TedsHardware = meter.tedsHardware;
    g.TedsPresent = meter.tedsPresent;
    g.TedsEnabled = meter.tedsEnabled;
    g.FirmwareRev = meter.firmwareRev;
    return BuildPanelMenu();
  }

  static const MenuRow& RowNamed(const PanelMenu& menu, const std::string& name) {
    for (const MenuRow& row : menu.rows) {
      if (row.name == name) return row;
    }
    ADD_FAILURE() << "no key " << name;
    static const MenuRow none;
    return none;
  }
};

// Whole menus of several meters, worked out from the meter's key tables.
TEST_F(MenuRowsTest, WholeMenusOfEachConditionerAndScaleMethod) {
  struct Case {
    const char* what;
    const char* changes;
    Meter meter;
    std::vector<std::string> lines;
  };
  const Case cases[] = {
      {"DC voltmeter with relay, RS232 and analog boards, scale and offset",
       "",
       {},
       {"DC Signal Conditioner",
        kHeader,
        L(" InPut", " dC V ", "  0 .2V"),
        L(" SEtuP", " 00000"),
        L("ConFiG", " 00000"),
        L("FiLtEr", " 00116"),
        L(" DecPt", " dddd. "),
        L("SCALE", " 00001"),
        L("OFFSt", " 00000"),
        L("AL SEt", " 00000"),
        L("dEUn1b", " 00000"),
        L("dEUn2b", " 00000"),
        L("An SEt", "    10"),
        L(" An Lo", " 00000"),
        L(" An Hi", " 20000"),
        L(" SEr 1", "   150"),
        L(" SEr 2", "  0011"),
        L(" Loc 1", " 00000"),
        L(" Loc 2", "  0000"),
        L(" Loc 3", "  0000"),
        kAlarmHeader,
        L("SETPT1", " 01000"),
        L("SETPT2", " 02000")}},

      // Temperature ignores the scale method bits and shows ConFiG's coordinate and curve
      // places as 0; a thermocouple has no scale factor; alarm 2 disabled has no setpoint.
      {"thermocouple J with a relay board only, relay 1 de-energized, alarm 2 disabled",
       "55=40 49=51 33=29 59=48",
       {},
       {"Temperature Signal Conditioner", kHeader, L(" InPut", " tC   ", "  J ^F"), L(" SEtuP", " 00000"),
        L("ConFiG", " 20000"), L("FiLtEr", " 00116"), L("OFFSt", " 0000.0"), L("AL SEt", " 10600"),
        L("dEUn1b", " 0000.0"), L("dEUn2b", " 0000.0"), L(" Loc 1", " 00000"), L(" Loc 2", "  0000"),
        L(" Loc 3", "  0000"), kAlarmHeader, L("SETPT1", " 0100.0")}},

      // The lead resistance follows the offset and takes its lock; the jumper marks the
      // lockout keys.
      {"RTD short, no boards, lockout jumper in, offset locked",
       "55=5C 49=91 43=01 91=000019",
       {},
       {"Temperature Signal Conditioner", kHeader, L(" InPut", "rtd   ", " SHort"), L(" SEtuP", " 00000"),
        L("ConFiG", " 00000"), L("FiLtEr", " 00116"), L("SCALE", " 00001"), L("*OFFSt", " 0000.0"),
        L("* LEAd", " 0002.5"), L("* Loc 1", " 00001"), L("* Loc 2", "  0000"), L("* Loc 3", "  0000")}},

      {"DC 2 V with reading coordinates: the four coordinates come first, once",
       "33=08 55=61 39=03 43=02 49=11",
       {},
       {"DC Signal Conditioner", kHeader, L("*Lo In", " 0.0000"), L("*Hi In", " 2.0000"), L("Lo rd", " 000.00"),
        L("Hi rd", " 200.00"), L(" InPut", " dC V ", "  2 .0V"), L(" SEtuP", " 00010"), L("ConFiG", " 01000"),
        L("FiLtEr", " 00116"), L(" DecPt", " dd.dd "), L(" Loc 1", " 00010"), L(" Loc 2", "  0000"),
        L(" Loc 3", "  0000")}},

      {"DC coordinates, in the order low in, low reading, high in, high reading",
       "53=08 43=01 49=11",
       {},
       {"DC Signal Conditioner", kHeader, L(" InPut", " dC V ", "  0 .2V"), L(" SEtuP", " 00010"),
        L("ConFiG", " 00000"), L("FiLtEr", " 00116"), L(" DecPt", " dddd. "), L("Lo In", " .00000"),
        L("*Lo rd", " 00000"), L("Hi In", " .20000"), L("*Hi rd", " 20000"), L(" Loc 1", " 00001"),
        L(" Loc 2", "  0000"), L(" Loc 3", "  0000")}},

      {"DC with the custom curve: its reading at zero stands for all scaling",
       "33=09 43=08 49=11 01=FFFF9C",
       {},
       {"DC Signal Conditioner", kHeader, L(" InPut", " dC V ", "  0 .2V"), L("* SEtuP", " 00000"),
        L("*ConFiG", " 00001"), L("FiLtEr", " 00116"), L("* DecPt", " dddd. "), L("*rd0", "-00100"),
        L(" Loc 1", " 01000"), L(" Loc 2", "  0000"), L(" Loc 3", "  0000")}},

      {"True RMS amperes, 200 mA, 3 1/2 digits, all boards with RS485, alarm 1 disabled, setpoints locked",
       "55=92 53=C0 39=02 49=79 59=02 41=40",
       {},
       {"True RMS Signal Conditioner",
        kHeader,
        L(" InPut", " AC A ", "200 .0a"),
        L(" SEtuP", " 30000"),
        L("ConFiG", " 00000"),
        L("FiLtEr", " 00116"),
        L(" DecPt", " ddd.d "),
        L("SCALE", " 00001"),
        L("OFFSt", " 0000.0"),
        L("AL SEt", " 00200"),
        L("dEUn1b", " 0000.0"),
        L("dEUn2b", " 0000.0"),
        L("An SEt", "    10"),
        L(" An Lo", " 0000.0"),
        L(" An Hi", " 2000.0"),
        L(" SEr 1", "   150"),
        L(" SEr 2", "  0011"),
        L(" Loc 1", " 00000"),
        L(" Loc 2", "  0000"),
        L(" Loc 3", "  0100"),
        kAlarmHeader,
        L("*SETPT2", " 0200.0")}},

      {"load cell strain with data sheet hardware but no sheet",
       "55=C2 49=11",
       {1, 0, 0, 4},
       {"Load Cell Signal Conditioner", kHeader, L(" InPut", "trAin ", " 100 .0"), L(" SEtuP", " 00000"),
        L("ConFiG", " 00000"), L("FiLtEr", " 00116"), L(" DecPt", " dddd. "), L("SCALE", " 00001"),
        L("OFFSt", " 00000"), L(" TArE", "  11  "), L(" Loc 1", " 00000"), L(" Loc 2", "  0000"), L(" Loc 3", "  0000"),
        L(" Loc 4", " 00000")}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(PanelMenuLines(Build(c.changes, c.meter)), c.lines);
  }
}

// The cells as the grid gets them, where a place holds more than one character.
TEST_F(MenuRowsTest, CellsOfPointsAndCodesWithPoints) {
  struct Case {
    const char* changes;
    const char* key;
    std::array<std::string, 7> cells;
  };
  const Case cases[] = {
      // Address 31: code 31 is F with its point; with LF, alarm data and command mode.
      {"45=FF", " SEr 2", {" ", " ", " ", "1", "1", "1", "F."}},
      {"45=10", " SEr 2", {" ", " ", " ", "0", "0", "0", "0."}},
      // A point ahead of the first digit stays in the sign's place, as a character of its own.
      {"53=08", "Hi In", {" ", "  .", " 2", " 0", " 0", " 0", " 0"}},
      {"", "SETPT1", {}},
      // The decimal point key: digits as "d", the point beside the fifth, the sign place blank.
      {"", " DecPt", {" d", "  ", " d", " d", " d", " d .", " "}},
      {"39=06", " DecPt", {" d .", "  ", " d", " d", " d", " d", " "}},
      // Both alarms disabled, states 2 and 2: counted without the state 3 that cannot occur.
      {"59=0A", "AL SEt", {" ", " ", "0", "0", "8", "0", "0"}},
      // A negative value shows its sign in the sign's place.
      {"97=FFFF85", "OFFSt", {" ", " -", " 0", " 0", " 1", " 2", " 3"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.changes) + " " + c.key);
    const PanelMenu menu = Build(c.changes);
    if (std::string(c.key) == "SETPT1") {
      ASSERT_FALSE(menu.setpointRows.empty());
      EXPECT_EQ(menu.setpointRows[0].GridItem(), " SETPT1\t \t  \t 0\t 1\t 0\t 0\t 0");
      continue;
    }
    EXPECT_EQ(RowNamed(menu, c.key).cells, c.cells);
  }
}

TEST_F(MenuRowsTest, LockoutBoxesOfThePageMarkTheReadingCoordinatesAndTare) {
  LoadSetup("33=08 43=03");
  g.TedsHardware = 1;
  const PanelMenu fromImage = BuildPanelMenu();
  EXPECT_TRUE(RowNamed(fromImage, "Lo In").locked);
  EXPECT_TRUE(RowNamed(fromImage, "Lo rd").locked);
  EXPECT_TRUE(RowNamed(fromImage, " TArE").locked);

  const PanelMenu fromPage = BuildPanelMenu(PageLockBoxes{false, true});
  EXPECT_FALSE(RowNamed(fromPage, "Lo In").locked);
  EXPECT_FALSE(RowNamed(fromPage, "Hi In").locked);
  EXPECT_TRUE(RowNamed(fromPage, "Hi rd").locked);
  EXPECT_TRUE(RowNamed(fromPage, " TArE").locked);
  EXPECT_EQ(RowNamed(fromPage, "Hi rd").Label(), "*Hi rd");
}

// The data sheet's six read-only keys (shown against the emulator end to end) come from
// revision 8 on, the sheet fetched once.
TEST_F(MenuRowsTest, DataSheetKeysFromRevisionEight) {
  emulator::MeterOptions options;
  options.conditioner = emulator::Conditioner::LoadCell;
  options.tedsHardware = options.tedsPresent = true;
  emulator::InProcessMeter meter(line, options);
  for (const int16_t revision : {7, 8}) {
    g.TedsTemplate = kTedsNotFetched;
    int sheetRows = 0;
    for (const MenuRow& row : Build("55=C0", {1, 1, 1, revision}).rows) {
      if (row.helpNumber >= 21 && row.helpNumber <= 26 && row.kind == MenuRowKind::Text) ++sheetRows;
    }
    EXPECT_EQ(sheetRows, revision < 8 ? 0 : 6) << revision;
  }
  const std::size_t sent = line.SentCommands().size();
  BuildPanelMenu();
  EXPECT_EQ(line.SentCommands().size(), sent) << "fetched once per visit to the main menu";
}

}  // namespace
}  // namespace dpm::testing
