#include "setup/setup_files.h"

#include <gtest/gtest.h>

#include <random>

#include "link/globals.h"
#include "platform/faults.h"
#include "setup/default_image.h"
#include "temp_folder.h"

namespace dpm {
namespace {

namespace fs = std::filesystem;
using testing::FileText;

class SetupFilesTest : public ::testing::Test {
 protected:
  SetupFilesTest() { ResetGlobals(); }

  fs::path File(const std::string& contents) {
    std::ofstream(dir / "f.DPM", std::ios::binary) << contents;
    return dir / "f.DPM";
  }

  testing::TempFolder temp;
  const fs::path& dir = temp.Path();
};

const std::string kBody(120, '5');

TEST_F(SetupFilesTest, ReadingTheVersionsOfTheFirstLine) {
  struct Case {
    std::string contents, image;
    int16_t revision;  // 7 before
  };
  const Case cases[] = {
      {kBody + "\r\n0\r\n", kBody + "0001000D", 7},          // an old file gains the fields behind
      {kBody + "00770D00\r\n0\r\n", kBody + "01010D00", 0},  // revision 0 is stored as 1
      {kBody + "0A000D000C00\r\n0\r\n", kBody + "0A010D000C00", 10},
      {"555\r\n0\r\n", "555", 0},                           // too short for the fields
      {kBody + ",FFFF\n0,1\n", kBody + "0001000D", 7},      // a field ends at a comma, a line at LF
      {"  \"" + kBody + "\"  \r0", kBody + "0001000D", 7},  // or at a lone CR, or at the end
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.image);
    g.FirmwareRev = 7;
    ASSERT_TRUE(LoadSetupFile(File(c.contents)));
    EXPECT_EQ(g.SetupImage, c.image);
    EXPECT_EQ(g.FirmwareRev, c.revision);
    EXPECT_EQ(g.MeterKind, "0");
  }
}

TEST_F(SetupFilesTest, WritingNeverMakesAnOldFile) {
  g.MeterKind = "1";
  for (const auto& [image, line] : {std::pair<std::string, std::string>{kBody, kBody + "00000000"},
                                    {kBody + "04010D00", kBody + "04010D00"},
                                    {DefaultSetupImage(4), DefaultSetupImage(4)}}) {
    g.SetupImage = image;
    SaveSetupFile(dir / "w.DPM");
    EXPECT_EQ(FileText(dir / "w.DPM"), line + "\r\n1\r\n");
    EXPECT_EQ(g.SetupImage, line) << "the image in hand is padded too";
  }
  // An old file keeps the suffix it gained on reading.
  ASSERT_TRUE(LoadSetupFile(File(kBody + "\r\n1\r\n")));
  SaveSetupFile(dir / "w.DPM");
  EXPECT_EQ(FileText(dir / "w.DPM"), kBody + "0001000D\r\n1\r\n");
}

// Whatever a file holds, reading it ends; a file that fails leaves the setup in hand.
TEST_F(SetupFilesTest, FilesThatAreNoSetupFiles) {
  std::mt19937 random(7);
  std::string binary(4096, '\0');
  for (char& c : binary) c = static_cast<char>(random() % 256);
  std::erase_if(binary, [](char c) { return c == '\r' || c == '\n'; });
  const std::string megabytes(3 << 20, '7');
  struct Case {
    const char* what;
    std::string contents;
    bool opens;
  };
  const Case cases[] = {
      {"empty", "", false},
      {"no second line", DefaultSetupImage(4) + "\r\n", false},
      {"binary without line ends", binary, false},
      {"binary lines", binary + "\r\n" + binary + "\r\n", true},
      {"text that is not hexadecimal", "This is not a setup file.\r\nReally not.\r\n", true},
      {"a first line of megabytes", megabytes + "\r\n1\r\n", true},
      {"a first line of megabytes and nothing else", megabytes, false},
      {"a line longer than any setup", std::string(kMaxSetupLineLength + 1, '7') + "\r\n1\r\n", false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    g.SetupImage = "previous";
    g.FirmwareRev = 5;
    EXPECT_EQ(LoadSetupFile(File(c.contents)), c.opens);
    if (!c.opens) {
      EXPECT_EQ(std::tie(g.SetupImage, g.FirmwareRev), std::make_tuple(std::string("previous"), 5));
    }
  }
  EXPECT_FALSE(LoadSetupFile(dir / "missing.DPM"));
  EXPECT_FALSE(LoadSetupFile(dir)) << "a folder";
  EXPECT_FALSE(LoadSetupFile("/dev/zero")) << "an endless device";
}

TEST_F(SetupFilesTest, FailedSaveLeavesNoFileBehind) {
  fs::create_directories(dir / "taken.DPM" / "inside");  // a folder cannot be replaced by a file
  g.SetupImage = DefaultSetupImage(4);
  EXPECT_THROW(SaveSetupFile(dir / "taken.DPM"), FileFault);
  EXPECT_THROW(SaveSetupFile(dir / "no" / "folder.DPM"), FileFault);
  std::vector<fs::path> left;
  for (const auto& entry : fs::directory_iterator(dir)) left.push_back(entry.path().filename());
  EXPECT_EQ(left, std::vector<fs::path>{"taken.DPM"});
}

}  // namespace
}  // namespace dpm
