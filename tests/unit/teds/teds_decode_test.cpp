#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "link/globals.h"
#include "teds/data_sheet_bits.h"
#include "teds/teds.h"

namespace dpm {
namespace {

using testing::DataSheetBits;

// Bit positions of each field by template, as the data sheet layout gives them.
struct Layout {
  std::vector<DataSheetBits::Run> serial, units, extendedUnits, date, period, initials, id;
};
const Layout kTemplate0{{{441, 24}},           {{425, 6}}, {{2, 7}}, {{268, 16}}, {{233, 12}},
                        {{245, 4}, {257, 11}}, {{222, 11}}};
const Layout kTemplate1{{{441, 24}}, {{425, 6}},  {{7, 7}},   {{244, 5}, {257, 11}},
                        {{217, 12}}, {{229, 15}}, {{206, 11}}};
const Layout kTemplate2{{{441, 24}}, {{425, 6}}, {{2, 7}}, {{218, 16}}, {{191, 12}}, {{203, 15}}, {{180, 11}}};

DataSheetBits& PutRuns(DataSheetBits& sheet, const std::vector<DataSheetBits::Run>& runs, uint32_t value) {
  if (runs.size() == 1) return sheet.Put(runs[0].first, runs[0].width, value);
  return sheet.Put({runs[0], runs[1]}, value);
}

// Initials as five-bit groups from the left; A is 1.
uint32_t Initials(uint32_t left, uint32_t middle, uint32_t right) { return left << 10 | middle << 5 | right; }

class TedsDecodeTest : public ::testing::Test {
 protected:
  TedsDecodeTest() {
    ResetGlobals();
    g.FirmwareRev = 10;
  }

  void Load(const DataSheetBits& sheet, int16_t templateNumber) {
    g.TedsHex = sheet.Hex();
    TedsFetch();
    g.TedsTemplate = templateNumber;
  }

  // A template 0 sheet with just these fields set.
  void LoadTemplate0(uint32_t units, uint32_t extended, uint32_t day = 0) {
    DataSheetBits sheet;
    sheet.Put(425, 6, units).Put(2, 7, extended).Put(268, 16, day);
    Load(sheet, 0);
  }

  std::string SerialRow() {
    std::string label = "(unset)";
    std::string value = TedsSerialNumber(label);
    return label + "|" + value;
  }
};

TEST(TedsBitsTest, BitsToHexFillsOnTheLeftAndBitsToNumberIsUnsigned) {
  struct Case {
    std::string bits, filled, hex, number;
  };
  for (const Case& c : {
           Case{"", "", "", " 0"},
           Case{"1", "0001", "1", " 1"},
           Case{"10110", "00010110", "16", " 22"},
           Case{"0111111111111111", "0111111111111111", "7FFF", " 32767"},
           Case{"1000000000000000", "1000000000000000", "8000", " 32768"},  // a negative 16-bit reading, made good
           Case{"1111111111111111", "1111111111111111", "FFFF", " 65535"},
           Case{"10000000000000000", "00010000000000000000", "10000", " 65536"},
           Case{std::string(24, '1'), std::string(24, '1'), "FFFFFF", " 16777215"},
       }) {
    SCOPED_TRACE("bits \"" + c.bits + "\"");
    std::string bits = c.bits;
    EXPECT_EQ(BitsToHex(bits), c.hex);
    EXPECT_EQ(bits, c.filled);
    EXPECT_EQ(BitsToNumber(c.bits), c.number);
  }
}

TEST(TedsBitsTest, FetchAlwaysGives464BitsAndReadsNonHexDigitsAsZero) {
  struct Case {
    std::string hex, leadingBits;  // the rest of the 464 bits are "0"
  };
  for (const Case& c : {
           Case{"", ""}, Case{"A5", "10100101"}, Case{"a5", "10100101"}, Case{"G1", "00000001"},
           Case{"1-F ", "0001000011110000"},
           Case{std::string(116, 'F') + "123", std::string(464, '1')},  // digits beyond the sheet are ignored
       }) {
    SCOPED_TRACE("hex \"" + c.hex + "\"");
    ResetGlobals();
    g.TedsHex = c.hex;
    TedsFetch();
    EXPECT_EQ(g.TedsBits, c.leadingBits + std::string(464 - c.leadingBits.size(), '0'));
  }
}

// The same calibration record placed by each template's layout decodes the same.
TEST_F(TedsDecodeTest, EachTemplateReadsItsOwnBitPositions) {
  for (const auto& [number, layout] : {std::pair{0, kTemplate0}, {1, kTemplate1}, {2, kTemplate2}}) {
    SCOPED_TRACE("template " + std::to_string(number));
    DataSheetBits sheet;
    sheet.Put(359, 2, static_cast<uint32_t>(number));
    sheet.Put(249, 8, 0xFF);  // the byte that the split fields pass over
    PutRuns(sheet, layout.serial, 1234567);
    PutRuns(sheet, layout.units, 63);
    PutRuns(sheet, layout.extendedUnits, 7);
    PutRuns(sheet, layout.date, 9555);  // 29 February 2024
    PutRuns(sheet, layout.period, 365);
    PutRuns(sheet, layout.initials, Initials(3, 2, 1));
    PutRuns(sheet, layout.id, 3);
    Load(sheet, static_cast<int16_t>(number));

    EXPECT_EQ(TedsSerialDigits(), "1234567");
    EXPECT_EQ(SerialRow(), "* SerNo  1| 234567");
    EXPECT_EQ(TedsUnits(), "   bar ");
    EXPECT_EQ(TedsCalDate(), "022924 ");
    EXPECT_EQ(TedsCalPeriod(), "    365");
    EXPECT_EQ(TedsCalInitials(), "  A B C");
    EXPECT_EQ(TedsBridgeId(), " Brdg-D");
  }
}

TEST_F(TedsDecodeTest, Template3HasNoFieldsButTheExtendedUnitsOfTemplate0) {
  DataSheetBits sheet;
  sheet.Put(359, 2, 3);
  // Values where template 0 would find them: template 3 must not read them.
  PutRuns(sheet, kTemplate0.serial, 999);
  PutRuns(sheet, kTemplate0.units, 5);
  PutRuns(sheet, kTemplate0.extendedUnits, 2);
  PutRuns(sheet, kTemplate0.date, 100);
  PutRuns(sheet, kTemplate0.period, 30);
  PutRuns(sheet, kTemplate0.initials, Initials(1, 1, 1));
  PutRuns(sheet, kTemplate0.id, 4);
  Load(sheet, 3);

  EXPECT_EQ(TedsSerialDigits(), "0");
  EXPECT_EQ(SerialRow(), "# Ser No |      0");
  EXPECT_EQ(TedsUnits(), "   oz  ") << "units code 0 on revision 10: extended code 2";
  EXPECT_EQ(TedsCalDate(), "010198 ");
  EXPECT_EQ(TedsCalPeriod(), "      0");
  EXPECT_EQ(TedsCalInitials(), "       ");
  EXPECT_EQ(TedsBridgeId(), " Brdg-A");
  g.FirmwareRev = 9;
  EXPECT_EQ(TedsUnits(), "   None");
}

TEST_F(TedsDecodeTest, UnitsByThePlainAndTheExtendedTable) {
  struct Case {
    uint32_t units, extended;
    int16_t firmwareRev;
    const char* text;
  };
  for (const Case& c : {
           Case{0, 5, 9, "   None"},     Case{0, 5, 10, "  ft-Lb"},  Case{0, 0, 10, "   None"},
           Case{4, 5, 10, "    N  "},    Case{5, 0, 4, "   Lb  "},   Case{6, 0, 9, "   KgF "},
           Case{10, 0, 9, "    Nm "},    Case{11, 0, 9, "  oz-in"},  Case{12, 0, 9, "    Pa "},
           Case{13, 0, 9, "   psi "},    Case{1, 0, 9, " Error "},   Case{3, 0, 9, " Error "},
           Case{7, 0, 9, " Error "},     Case{9, 0, 9, " Error "},   Case{14, 0, 9, " Error "},
           Case{62, 0, 9, " Error "},    Case{63, 0, 4, "   None"},  Case{63, 1, 9, "    g  "},
           Case{63, 2, 9, "   oz  "},    Case{63, 3, 9, "   ton "},  Case{63, 4, 9, "  ton m"},
           Case{63, 6, 9, "  in-Lb"},    Case{63, 7, 10, "   bar "}, Case{63, 8, 10, " Error "},
           Case{63, 127, 10, " Error "},
       }) {
    SCOPED_TRACE("units " + std::to_string(c.units) + ", extended " + std::to_string(c.extended) + ", revision " +
                 std::to_string(c.firmwareRev));
    g.FirmwareRev = c.firmwareRev;
    LoadTemplate0(c.units, c.extended);
    EXPECT_EQ(TedsUnits(), c.text);
  }
}

TEST_F(TedsDecodeTest, CalibrationDateCountsDaysFrom1998) {
  struct Case {
    uint32_t days;
    const char* text;
  };
  for (const Case& c :
       {Case{0, "010198 "}, Case{1, "010298 "}, Case{31, "020198 "}, Case{365, "010199 "}, Case{423, "022899 "},
        Case{424, "030199 "}, Case{730, "010100 "}, Case{789, "022900 "}, Case{790, "030100 "}, Case{1095, "123100 "},
        Case{1096, "010101 "}, Case{9555, "022924 "}, Case{36524, "123197 "}, Case{65535, "060677 "}}) {
    SCOPED_TRACE(c.days);
    LoadTemplate0(4, 0, c.days);
    EXPECT_EQ(TedsCalDate(), c.text);
  }
}

TEST_F(TedsDecodeTest, SerialNumberMovesDigitsBeyondSixIntoTheLabel) {
  struct Case {
    uint32_t serial;
    const char* row;
  };
  for (const Case& c : {Case{0, "# Ser No |      0"}, Case{42, "# Ser No |     42"}, Case{123456, "# Ser No | 123456"},
                        Case{1000000, "* SerNo  1| 000000"}, Case{1234567, "* SerNo  1| 234567"},
                        Case{12345678, "* SerNo 12| 345678"}, Case{16777215, "* SerNo 16| 777215"}}) {
    SCOPED_TRACE(c.serial);
    Load(DataSheetBits().Put(441, 24, c.serial), 0);
    EXPECT_EQ(SerialRow(), c.row);
    EXPECT_EQ(TedsSerialDigits(), std::to_string(c.serial));
  }
}

TEST_F(TedsDecodeTest, InitialsPeriodAndBridgeId) {
  struct Case {
    uint32_t initials, period, id;
    const char* initialsText;
    const char* periodText;
    const char* idText;
  };
  for (const Case& c : {
           Case{Initials(1, 2, 3), 0, 0, "  C B A", "      0", " Brdg-A"},
           Case{Initials(0, 0, 0), 1, 1, "       ", "      1", " Brdg-B"},
           Case{Initials(10, 0, 12), 30, 25, "  L   J", "     30", " Brdg-Z"},
           Case{Initials(26, 26, 26), 999, 61, "  Z Z Z", "    999", " Brdg-~"},
           Case{Initials(31, 27, 0), 4095, 62, "    [ _", "   4095", " Brdg-?"},
           Case{Initials(0, 0, 1), 100, 2047, "  A    ", "    100", " Brdg-?"},
       }) {
    SCOPED_TRACE(c.initialsText);
    DataSheetBits sheet;
    PutRuns(sheet, kTemplate0.initials, c.initials);
    PutRuns(sheet, kTemplate0.period, c.period);
    PutRuns(sheet, kTemplate0.id, c.id);
    Load(sheet, 0);
    EXPECT_EQ(TedsCalInitials(), c.initialsText);
    EXPECT_EQ(TedsCalPeriod(), c.periodText);
    EXPECT_EQ(TedsBridgeId(), c.idText);
  }
}

}  // namespace
}  // namespace dpm
