#include "setup/image_map.h"

#include <gtest/gtest.h>

#include "link/globals.h"
#include "link/image_access.h"
#include "panelmenu/menu_fixture.h"
#include "platform/faults.h"
#include "platform/numeric.h"
#include "setup/setup_files.h"

namespace dpm {
namespace {

using testing::kDefaultSetup;

TEST(ImageMap, EveryBitOfTheImageIsMappedExactlyOnce) {
  std::vector<int> owners(66 * 8, 0);
  for (const ImageField& f : ImageFields()) {
    SCOPED_TRACE(std::string(f.name) + " at " + std::to_string(f.position));
    ASSERT_TRUE(f.position % 2 == 1 && 0 <= f.lo && f.lo <= f.hi && f.hi <= 7);
    if (!f.sameBitsAs.empty()) {
      const ImageField& other = FindField(f.sameBitsAs);
      EXPECT_EQ(std::tie(other.position, other.hi, other.lo), std::tie(f.position, f.hi, f.lo));
      continue;
    }
    const int bytes = f.kind == FieldKind::Value ? 3 : 1;
    for (int b = 0; b < bytes; ++b) {
      for (int bit = f.lo; bit <= f.hi; ++bit)
        ++owners.at(static_cast<std::size_t>(((f.position - 1) / 2 + b) * 8 + bit));
    }
  }
  for (std::size_t i = 0; i < owners.size(); ++i)
    EXPECT_EQ(owners[i], 1) << "digit " << i / 8 * 2 + 1 << " bit " << i % 8;
}

TEST(ImageMap, DefaultSetupDigitForDigit) {
  ResetGlobals();
  g.SetupImage = std::string(132, '0');
  for (const ImageField& f : ImageFields()) {
    if (!f.sameBitsAs.empty()) continue;
    if (f.kind == FieldKind::Value) {
      const std::string digits = "000000" + HexText(f.defaultValue);
      ReplaceImageDigits(f.position, digits.substr(digits.size() - 6));
    } else {
      WriteField(f.hi, f.lo, f.position, static_cast<int16_t>(f.defaultValue));
    }
  }
  EXPECT_EQ(g.SetupImage, kDefaultSetup) << "the map's defaults";

  for (const auto& [revision, digits] : {std::pair<int16_t, const char*>{4, "04"}, {26, "1A"}}) {
    g.DefaultFirmwareRev = revision;
    g.MeterKind = "0";
    DefaultData();
    EXPECT_EQ(g.SetupImage, kDefaultSetup.substr(0, 120) + digits + kDefaultSetup.substr(122));
    EXPECT_EQ(g.FirmwareRev, revision);
    EXPECT_EQ(g.MeterKind, "1");
  }
}

TEST(ImageMap, ListTextsFitTheirBits) {
  for (const ImageField& f : ImageFields()) {
    if (f.texts.empty()) continue;
    SCOPED_TRACE(f.name);
    EXPECT_LE(f.texts.size() + static_cast<std::size_t>(f.firstValue), std::size_t{1} << (f.hi - f.lo + 1));
    EXPECT_EQ(FieldText(f, f.firstValue - 1), "");
    EXPECT_EQ(FieldText(f, f.firstValue + static_cast<int>(f.texts.size())), "");
  }
  EXPECT_THROW(FindField("NoSuchField"), IndexFault);
}

TEST(ImageMap, BoardKindsFollowTheConditionerOfEachMode) {
  for (const auto& mode : InputModes) {
    static constexpr std::array<std::string_view, 4> kNames = {"TC", "DC", "RMS", "LC"};
    EXPECT_EQ(BoardKindNames[static_cast<std::size_t>(BoardKindOf(mode.modeCode))],
              kNames[static_cast<std::size_t>(mode.sigCond)])
        << mode.text;
  }
  EXPECT_EQ(BoardKindOf(11), 0);
  EXPECT_THROW(BoardKindOf(14), IndexFault);
}

}  // namespace
}  // namespace dpm
