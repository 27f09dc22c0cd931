#include "setup/setup_files.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <sstream>

#include "link/globals.h"
#include "platform/faults.h"
#include "setup/default_image.h"

namespace dpm {
namespace {

namespace fs = std::filesystem;

class SetupFilesTest : public ::testing::Test {
 protected:
  SetupFilesTest() {
    ResetGlobals();
    dir = fs::temp_directory_path() / ("dpm_setup_files_" + std::to_string(std::random_device{}()));
    fs::create_directories(dir);
  }
  ~SetupFilesTest() override { fs::remove_all(dir); }

  fs::path File(const std::string& name, const std::string& contents) {
    const fs::path path = dir / name;
    std::ofstream(path, std::ios::binary) << contents;
    return path;
  }
  static std::string Contents(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
  }

  fs::path dir;
};

std::string Digits(std::size_t count, char digit = '5') { return std::string(count, digit); }

TEST_F(SetupFilesTest, FirstLineVersions) {
  struct Case {
    const char* what;
    std::string line;
    int16_t revisionBefore;
    std::string image;
    int16_t revision;
  };
  const std::string body = Digits(120);
  const Case cases[] = {
      {"old file of 120 digits", body, 7, body + "0001000D", 7},
      {"revision 0 is stored as 1", body + "00770D00", 7, body + "01010D00", 0},
      {"revision and marker", body + "0A000D00" + "0C00", 7, body + "0A010D00" + "0C00", 10},
      {"short line keeps its length", Digits(50), 7, Digits(50), 0},
      {"121 digits: the revision digit alone", body + "3", 7, body + "3", 3},
      {"empty line", "", 7, "", 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    g.FirmwareRev = c.revisionBefore;
    ASSERT_TRUE(LoadSetupFile(File("v.DPM", c.line + "\r\n0\r\n")));
    EXPECT_EQ(g.SetupImage, c.image);
    EXPECT_EQ(g.FirmwareRev, c.revision);
    EXPECT_EQ(g.MeterKind, "0");
  }
}

TEST_F(SetupFilesTest, WrittenFiles) {
  struct Case {
    std::string image;
    std::string line;
  };
  const std::string body = Digits(120);
  for (const Case& c : {Case{body, body + "00000000"}, Case{body + "04010D00", body + "04010D00"},
                        Case{DefaultSetupImage(4), DefaultSetupImage(4)}, Case{"", ""}}) {
    g.SetupImage = c.image;
    g.MeterKind = "1";
    const fs::path path = dir / "w.DPM";
    SaveSetupFile(path);
    EXPECT_EQ(Contents(path), c.line + "\r\n1\r\n");
    EXPECT_EQ(g.SetupImage, c.line) << "the image in hand is padded too";
  }
}

TEST_F(SetupFilesTest, OldFileComesBackWithItsSuffix) {
  const std::string body = Digits(120, 'A');
  g.FirmwareRev = 9;
  ASSERT_TRUE(LoadSetupFile(File("old.DPM", body + "\r\n1\r\n")));
  SaveSetupFile(dir / "new.DPM");
  EXPECT_EQ(Contents(dir / "new.DPM"), body + "0001000D\r\n1\r\n");
  EXPECT_EQ(g.FirmwareRev, 9);
}

TEST_F(SetupFilesTest, LinesAreFieldsUpToTheFirstComma) {
  struct Case {
    std::string contents;
    std::string image, kind;
  };
  const std::string image = DefaultSetupImage(4);
  const Case cases[] = {
      {image + ",FFFF\r\n1,0\r\n", image, "1"},
      {image + "\n0\n", image, "0"},  // bare line feeds
      {image + "\r0", image, "0"},    // bare carriage return, no end on the last line
      {"  " + image + "  \r\n 1 \r\n", image, "1"},
      {"\"" + image + "\"\r\n\"0\"\r\n", image, "0"},
      {image + "\r\n\r\n", image, ""},  // an empty second line is still a line
  };
  for (const Case& c : cases) {
    g.SetupImage.clear();
    ASSERT_TRUE(LoadSetupFile(File("f.DPM", c.contents)));
    EXPECT_EQ(g.SetupImage, c.image);
    EXPECT_EQ(g.MeterKind, c.kind);
  }
}

// Whatever a file holds, reading it ends, and a file that fails leaves the setup in hand.
TEST_F(SetupFilesTest, FilesThatAreNoSetupFiles) {
  std::mt19937 random(7);
  std::string binary(4096, '\0');
  for (char& c : binary) c = static_cast<char>(random());
  binary.erase(std::remove_if(binary.begin(), binary.end(), [](char c) { return c == '\r' || c == '\n'; }),
               binary.end());
  struct Case {
    const char* what;
    std::string contents;
    bool opens;
  };
  const Case cases[] = {
      {"empty", "", false},
      {"only a line end", "\r\n", false},
      {"no second line", DefaultSetupImage(4) + "\r\n", false},
      {"no line end at all", DefaultSetupImage(4), false},
      {"binary without line ends", binary, false},
      {"binary lines", binary + "\r\n" + binary + "\r\n", true},
      {"text that is not hexadecimal", "This is not a setup file.\r\nReally not.\r\n", true},
      {"a first line of megabytes", std::string(3 * 1024 * 1024, '7') + "\r\n1\r\n", true},
      {"a first line of megabytes and nothing else", std::string(3 * 1024 * 1024, '7'), false},
      {"a first line beyond the longest line", std::string(kMaxSetupLineLength + 1, '7') + "\r\n1\r\n", false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    g.SetupImage = "previous";
    g.MeterKind = "1";
    g.FirmwareRev = 5;
    const bool opened = LoadSetupFile(File("x.DPM", c.contents));
    EXPECT_EQ(opened, c.opens);
    if (!opened) {
      EXPECT_EQ(g.SetupImage, "previous");
      EXPECT_EQ(g.MeterKind, "1");
      EXPECT_EQ(g.FirmwareRev, 5);
    }
  }
  EXPECT_FALSE(LoadSetupFile(dir / "missing.DPM"));
  EXPECT_FALSE(LoadSetupFile(dir));
  EXPECT_FALSE(LoadSetupFile("/dev/zero")) << "an endless device is no file";
}

TEST_F(SetupFilesTest, FailedSaveLeavesTheOldFileAndNoLeftovers) {
  // A directory of the target's name cannot be replaced by a file.
  fs::create_directories(dir / "taken.DPM" / "inside");
  g.SetupImage = DefaultSetupImage(4);
  g.MeterKind = "1";
  EXPECT_THROW(SaveSetupFile(dir / "taken.DPM"), FileFault);
  EXPECT_THROW(SaveSetupFile(dir / "no" / "such" / "folder.DPM"), FileFault);
  std::vector<fs::path> left;
  for (const auto& entry : fs::directory_iterator(dir)) left.push_back(entry.path().filename());
  EXPECT_EQ(left, std::vector<fs::path>{"taken.DPM"});

  const fs::path kept = File("kept.DPM", "old contents");
  g.SetupImage = "new";
  SaveSetupFile(kept);
  EXPECT_EQ(Contents(kept), "new\r\n1\r\n") << "a save replaces the file whole";
}

}  // namespace
}  // namespace dpm
