#include "setup/image_map.h"

#include <gtest/gtest.h>

#include <set>

#include "link/globals.h"
#include "link/image_access.h"
#include "platform/faults.h"
#include "platform/numeric.h"
#include "setup/default_image.h"
#include "setup/setup_files.h"

namespace dpm {
namespace {

constexpr std::size_t kFullImage = 132;

// The default setup as the meter's documentation lists it, revision 04.
const std::string kDefaultImage = std::string(20, '0') +
                                  "000000"
                                  "000000"
                                  "00"
                                  "01"
                                  "02"
                                  "01"
                                  "0000"
                                  "21"
                                  "D0"
                                  "75"
                                  "36"
                                  "00"
                                  "60"
                                  "00"
                                  "00"
                                  "004E20"
                                  "000000"
                                  "004E20"
                                  "004E20"
                                  "000000"
                                  "000000"
                                  "000000"
                                  "100001"
                                  "0007D0"
                                  "0003E8"
                                  "04"
                                  "01"
                                  "0D"
                                  "00"
                                  "0C00";

bool IsWholeField(const ImageField& f) { return f.kind == FieldKind::Value; }

TEST(ImageMap, EveryBitOfTheImageIsMappedExactlyOnce) {
  std::vector<int> owners(kFullImage / 2 * 8, 0);
  for (const ImageField& f : ImageFields()) {
    SCOPED_TRACE(std::string(f.name) + " at " + std::to_string(f.position));
    ASSERT_EQ(f.position % 2, 1) << "bytes start at odd positions";
    ASSERT_LE(0, f.lo);
    ASSERT_LE(f.lo, f.hi);
    ASSERT_LE(f.hi, 7);
    if (!f.sameBitsAs.empty()) {
      const ImageField& other = FindField(f.sameBitsAs);
      EXPECT_EQ(std::tie(other.position, other.hi, other.lo), std::tie(f.position, f.hi, f.lo));
      continue;
    }
    const int bytes = IsWholeField(f) ? 3 : 1;
    for (int b = 0; b < bytes; ++b) {
      for (int bit = f.lo; bit <= f.hi; ++bit) {
        const std::size_t index = static_cast<std::size_t>(((f.position - 1) / 2 + b) * 8 + bit);
        ASSERT_LT(index, owners.size());
        ++owners[index];
      }
    }
  }
  for (std::size_t i = 0; i < owners.size(); ++i) {
    EXPECT_EQ(owners[i], 1) << "digit " << (i / 8) * 2 + 1 << " bit " << i % 8;
  }
}

TEST(ImageMap, FieldDefaultsMakeTheDefaultSetup) {
  ResetGlobals();
  g.SetupImage = std::string(kFullImage, '0');
  for (const ImageField& f : ImageFields()) {
    if (!f.sameBitsAs.empty()) continue;
    if (IsWholeField(f)) {
      const std::string digits = "000000" + HexText(f.defaultValue);
      ReplaceImageDigits(f.position, digits.substr(digits.size() - 6));
    } else {
      WriteField(f.hi, f.lo, f.position, static_cast<int16_t>(f.defaultValue));
    }
  }
  EXPECT_EQ(g.SetupImage, kDefaultImage);
}

TEST(ImageMap, DefaultDataCarriesTheDefaultRevision) {
  struct Case {
    int16_t revision;
    std::string digits;
  };
  for (const Case& c : {Case{4, "04"}, Case{26, "1A"}, Case{0, "00"}}) {
    ResetGlobals();
    g.DefaultFirmwareRev = c.revision;
    g.FirmwareRev = 9;
    g.MeterKind = "0";
    DefaultData();
    std::string expected = kDefaultImage;
    expected.replace(120, 2, c.digits);
    EXPECT_EQ(g.SetupImage, expected);
    EXPECT_EQ(g.FirmwareRev, c.revision);
    EXPECT_EQ(g.MeterKind, "1");
  }
  EXPECT_EQ(DefaultSetupImage(4), kDefaultImage);
}

TEST(ImageMap, ListTextsFitTheirBits) {
  for (const ImageField& f : ImageFields()) {
    if (f.texts.empty()) continue;
    SCOPED_TRACE(f.name);
    const std::size_t values = std::size_t{1} << (f.hi - f.lo + 1);
    EXPECT_LE(f.texts.size() + static_cast<std::size_t>(f.firstValue), values);
    EXPECT_EQ(FieldText(f, f.firstValue), f.texts.front());
    EXPECT_EQ(FieldText(f, f.firstValue - 1), "");
    EXPECT_EQ(FieldText(f, f.firstValue + static_cast<int>(f.texts.size())), "");
  }
  EXPECT_EQ(FieldText(FindField("DecimalPoint"), 6), " . ddddd");
  EXPECT_EQ(FieldText(FindField("Address"), 31), "31 (F.)");
  EXPECT_EQ(FieldText(FindField("BaudRate"), 5), " 9600");
}

TEST(ImageMap, UnknownFieldIsAFault) {
  EXPECT_THROW(FindField("NoSuchField"), IndexFault);
  EXPECT_THROW(FindField(""), IndexFault);
}

TEST(ImageMap, BoardKinds) {
  const std::vector<int16_t> expected = {0, 0, 0, 0, 1, 1, 2, 2, 3, 3, 2, 0, 4, 4};
  for (int code = 0; code < 14; ++code) EXPECT_EQ(BoardKindOf(code), expected[static_cast<std::size_t>(code)]) << code;
  EXPECT_THROW(BoardKindOf(14), IndexFault);
  EXPECT_THROW(BoardKindOf(15), IndexFault);
  for (const auto& mode : InputModes) {
    const int16_t kind = BoardKindOf(mode.modeCode);
    EXPECT_EQ(BoardKindNames[static_cast<std::size_t>(kind)], mode.sigCond == 0   ? "TC"
                                                              : mode.sigCond == 1 ? "DC"
                                                              : mode.sigCond == 2 ? "RMS"
                                                                                  : "LC")
        << mode.text;
  }
}

TEST(ImageMap, ModeAndRangeLists) {
  EXPECT_EQ(ModeTexts(1), (std::vector<std::string>{"DC V", "DC A", "Ratio"}));
  EXPECT_EQ(ModeTexts(3), (std::vector<std::string>{"Strain", "DC mV"}));
  for (int16_t mode = 0; mode < 9; ++mode) {
    EXPECT_EQ(RangeTexts(mode).size(), static_cast<std::size_t>(InputModes[static_cast<std::size_t>(mode)].rangeCount));
  }
  const auto thermocouples = RangeTexts(0);
  EXPECT_EQ(thermocouples[0], "J deg F");
  EXPECT_EQ(thermocouples[1], "J deg C");
  EXPECT_EQ(thermocouples[13], "r deg C");
  EXPECT_EQ(RangeTexts(1)[11], "2A deg C");
  EXPECT_EQ(RangeTexts(1)[12], "Short");
  EXPECT_EQ(RangeTexts(6), (std::vector<std::string>{"  0.2V", "  2.0V", " 20.0V"}));
  EXPECT_EQ(RangeTexts(5)[3], "  5.0A ");
  EXPECT_EQ(RangeTexts(8)[4], " 500.0mV");
  EXPECT_EQ(ResolutionTexts(0)[3], " 1 Deg");
  EXPECT_EQ(ResolutionTexts(3)[3], "3. 5 Digits");
}

TEST(ImageMap, LockoutBitsLieInTheLockoutFields) {
  std::set<std::pair<int, int>> seen;
  for (const LockoutBit& lock : LockoutBits) {
    SCOPED_TRACE(lock.caption);
    EXPECT_TRUE(seen.insert({lock.position, lock.bit}).second) << "two boxes on one bit";
    const ImageField& field = lock.position == 9    ? FindField("LockoutsC")
                              : lock.position == 41 ? FindField("LockoutsA")
                                                    : FindField("LockoutsB");
    EXPECT_EQ(field.position, lock.position);
    EXPECT_LE(field.lo, lock.bit);
    EXPECT_LE(lock.bit, field.hi);
  }
}

}  // namespace
}  // namespace dpm
