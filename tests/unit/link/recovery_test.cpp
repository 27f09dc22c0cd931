#include "link/recovery.h"

#include <gtest/gtest.h>

#include "link/globals.h"
#include "platform/faults.h"
#include "temp_folder.h"

namespace dpm {
namespace {

using testing::FileText;

class RecoveryFile : public ::testing::Test {
 protected:
  RecoveryFile() { ResetGlobals(); }
  ~RecoveryFile() override { ResetGlobals(); }
  testing::TempFolder temp;
  const std::filesystem::path& folder = temp.Path();
};

TEST_F(RecoveryFile, HoldsTheImageAndMeterKindAsASetupFile) {
  struct Case {
    std::string image, kind, written;
  };
  const std::string full = std::string(128, 'A') + "0C00";
  const std::string old = std::string(120, '5');
  const Case cases[] = {
      {full, "1", full + "\r\n1\r\n"},
      {std::string(128, '0'), "0", std::string(128, '0') + "\r\n0\r\n"},  // the start-up image
      {old, "0", old + "00000000\r\n0\r\n"},  // never 120 digits, which would read as the old format
      {"", "0", "\r\n0\r\n"},
  };
  for (const auto& c : cases) {
    g.SetupImage = c.image;
    g.MeterKind = c.kind;
    EXPECT_EQ(WriteRecoveryFile(folder), folder / "Recovery.DPM");
    EXPECT_EQ(FileText(folder / "Recovery.DPM"), c.written) << c.image.size() << " digits";
  }
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1) << "no temporary file is left";
}

TEST_F(RecoveryFile, OnlyAnImageBeyondTheStartUpOneIsWorthKeeping) {
  EXPECT_FALSE(SetupInHand()) << "before start-up";
  g.SetupImage = std::string(128, '0');
  EXPECT_FALSE(SetupInHand()) << "the untouched start-up image";
  g.SetupImage[40] = '1';
  EXPECT_TRUE(SetupInHand());
  g.SetupImage = std::string(132, '0');
  EXPECT_TRUE(SetupInHand()) << "a loaded image of zeros";
}

TEST_F(RecoveryFile, AFolderThatCannotTakeItIsAFileFault) {
  g.SetupImage = std::string(132, '1');
  EXPECT_THROW(WriteRecoveryFile(folder / "missing"), FileFault);
  std::filesystem::create_directory(folder / "Recovery.DPM");  // the name is taken by a folder
  EXPECT_THROW(WriteRecoveryFile(folder), FileFault);
  EXPECT_FALSE(std::filesystem::exists(folder / "Recovery.DPM.tmp"));
}

}  // namespace
}  // namespace dpm
