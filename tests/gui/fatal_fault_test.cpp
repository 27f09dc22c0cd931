#include "platform/qt/fatal_fault.h"

#include <gtest/gtest.h>

#include <fstream>

#include "link/globals.h"
#include "platform/faults.h"
#include "temp_folder.h"

namespace dpm::qt {
namespace {

using testing::FileText;

class FatalFault : public ::testing::Test {
 protected:
  FatalFault() {
    // The child must share this fixture's folder, so it is forked, not started afresh.
    GTEST_FLAG_SET(death_test_style, "fast");
    ResetGlobals();
    g.SetupImage = std::string(130, '0') + "0C";
    g.MeterKind = "1";
  }
  ~FatalFault() override { ResetGlobals(); }
  testing::TempFolder folder;
};

TEST_F(FatalFault, SavesTheSetupNamesTheCauseAndStops) {
  EXPECT_EXIT(HandleFatalFault(FileFault("File not found: \"Settings.SSS\""), folder.Path()),
              ::testing::ExitedWithCode(1), "Settings\\.SSS.*\n*.*Recovery\\.DPM");
  EXPECT_EQ(FileText(folder.Path() / "Recovery.DPM"), g.SetupImage + "\r\n1\r\n");
}

TEST_F(FatalFault, StopsEvenWhenTheSetupCannotBeSaved) {
  EXPECT_EXIT(HandleFatalFault(SerialFault("Cannot open COM1"), folder.Path() / "missing"),
              ::testing::ExitedWithCode(1), "Cannot open COM1.*\n*.*could not be saved");
}

TEST_F(FatalFault, AStopBeforeAnySetupKeepsTheEarlierRecoveryFile) {
  std::ofstream(folder.Path() / "Recovery.DPM", std::ios::binary) << "earlier\r\n1\r\n";
  for (const std::string& image : {std::string(), std::string(128, '0')}) {
    g.SetupImage = image;
    EXPECT_EXIT(HandleFatalFault(FileFault("File not found: \"Settings.SSS\""), folder.Path()),
                ::testing::ExitedWithCode(1), "Settings\\.SSS.*\n*.*none was saved");
  }
  EXPECT_EQ(FileText(folder.Path() / "Recovery.DPM"), "earlier\r\n1\r\n");
}

}  // namespace
}  // namespace dpm::qt
