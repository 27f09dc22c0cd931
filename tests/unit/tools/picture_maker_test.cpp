#include "picture_maker.h"

#include <gtest/gtest.h>

#include "help/help_files.h"
#include "jumper_table.h"

#include <cstdint>
#include <sstream>
#include <string>

#include "temp_folder.h"

namespace dpm::testing {
namespace {

using tools::DrawJumperTable;
using tools::DrawPictures;
using tools::SourceError;

// A 24-bit BMP file as a reader sees it, from the bytes alone.
class BmpFile {
 public:
  explicit BmpFile(std::string bytes) : bytes_(std::move(bytes)) {}
  uint32_t U(std::size_t at, int size) const {
    uint32_t value = 0;
    for (int i = size - 1; i >= 0; --i) value = value << 8 | static_cast<uint8_t>(bytes_.at(at + i));
    return value;
  }
  std::string Magic() const { return bytes_.substr(0, 2); }
  uint32_t FileSize() const { return U(2, 4); }
  int Width() const { return static_cast<int32_t>(U(18, 4)); }
  int Height() const { return static_cast<int32_t>(U(22, 4)); }
  int Bits() const { return static_cast<int>(U(28, 2)); }
  // RRGGBB of a pixel counted from the top left; rows are stored bottom-up, blue first,
  // each padded to a multiple of 4 bytes.
  uint32_t Pixel(int x, int y) const {
    const std::size_t row = (static_cast<std::size_t>(Width()) * 3 + 3) / 4 * 4;
    const std::size_t at =
        U(10, 4) + row * static_cast<std::size_t>(Height() - 1 - y) + 3 * static_cast<std::size_t>(x);
    return U(at, 3);
  }
  std::size_t Size() const { return bytes_.size(); }

 private:
  std::string bytes_;
};

BmpFile Draw(const std::string& source) {
  std::istringstream in(source);
  const auto pictures = DrawPictures(in);
  EXPECT_EQ(pictures.size(), 1u);
  TempFolder folder;
  tools::WriteBmp(pictures.at(0).image, folder / pictures.at(0).name);
  return BmpFile(FileText(folder / pictures.at(0).name));
}

TEST(PictureMaker, WritesA24BitBmpThatReadsBackPixelForPixel) {
  // An odd width, so that every row carries padding.
  const BmpFile bmp = Draw(
      "# a test picture\n"
      "picture Test.BMP 7 5 102030\n"
      "  fill 1 0 2 2 FF0000     # top left corner\n"
      "  line 0 4 6 4 00FF00\n"
      "  triangle 4 0 6 0 6 2 0000FF\n"
      "end\n");
  EXPECT_EQ(bmp.Magic(), "BM");
  EXPECT_EQ(bmp.Width(), 7);
  EXPECT_EQ(bmp.Height(), 5);
  EXPECT_EQ(bmp.Bits(), 24);
  EXPECT_EQ(bmp.U(30, 4), 0u) << "no compression";
  EXPECT_EQ(bmp.FileSize(), bmp.Size());
  EXPECT_EQ(bmp.Size(), 54u + 5 * 24);

  const struct {
    int x, y;
    uint32_t colour;
  } pixels[] = {
      {0, 0, 0x102030}, {1, 0, 0xFF0000}, {2, 1, 0xFF0000}, {3, 1, 0x102030}, {1, 2, 0x102030},
      {0, 4, 0x00FF00}, {6, 4, 0x00FF00}, {6, 3, 0x102030}, {5, 0, 0x0000FF}, {4, 1, 0x102030},
  };
  for (const auto& p : pixels) EXPECT_EQ(bmp.Pixel(p.x, p.y), p.colour) << p.x << "," << p.y;
}

TEST(PictureMaker, ReportsMistakesWithTheirLine) {
  const struct {
    const char* source;
    int line;
  } cases[] = {
      {"picture A.BMP 4 4 000000\n  fill 0 0 2 2 red\nend\n", 2},
      {"\n  fill 0 0 2 2 FFFFFF\n", 2},
      {"picture A.BMP 4 4 000000\nend\npicture A.BMP 2 2 000000\nend\n", 3},
      {"picture A.BMP 4 4 000000\n  digits 0 0 8 FFFFFF 1x\n", 2},
  };
  for (const auto& c : cases) {
    std::istringstream in(c.source);
    try {
      DrawPictures(in);
      ADD_FAILURE() << "accepted: " << c.source;
    } catch (const SourceError& e) {
      EXPECT_EQ(e.Line(), c.line) << c.source << e.what();
    }
  }
}

// Text in the built-in font: a capital I is a bar three pixels wide on top, its stem in
// the middle; at scale 2 each pixel is a square of two.
TEST(PictureMaker, WritesTextInItsPixelFont) {
  const BmpFile bmp = Draw("picture T.BMP 12 16 FFFFFF\n  text 0 0 2 000000 I\nend\n");
  EXPECT_EQ(bmp.Pixel(2, 0), 0x000000u);
  EXPECT_EQ(bmp.Pixel(7, 1), 0x000000u);
  EXPECT_EQ(bmp.Pixel(0, 0), 0xFFFFFFu);
  EXPECT_EQ(bmp.Pixel(4, 6), 0x000000u) << "the stem";
  EXPECT_EQ(bmp.Pixel(2, 6), 0xFFFFFFu);
  std::istringstream unknown("picture T.BMP 8 8 FFFFFF\n  text 0 0 1 000000 \xC4\nend\n");
  EXPECT_THROW(DrawPictures(unknown), SourceError);
}

// A jumper table: a board with a block of three positions laid across, a jumper on the
// second. The picture is 254 x 155 at 24 bits; the shunt covers both pins of its position
// and leaves the others' pins bare.
TEST(PictureMaker, DrawsAJumperPictureFromTheTable) {
  std::istringstream table(
      "board B \"Test Board\"\n"
      "  outline 8 14 238 112\n"
      "  block JP1 100 50 3 across\n"
      "end\n"
      "jumpers 7 B \"2 V DC\" JP1=2\n"
      "diagram Board.BMP B 2\n");
  const auto pictures = DrawJumperTable(table);
  ASSERT_EQ(pictures.size(), 2u);
  EXPECT_EQ(pictures[0].name, "Jumper7.BMP");
  TempFolder folder;
  tools::WriteBmp(pictures[0].image, folder / "Jumper7.BMP");
  const BmpFile bmp(FileText(folder / "Jumper7.BMP"));
  EXPECT_EQ(bmp.Width(), 254);
  EXPECT_EQ(bmp.Height(), 155);
  EXPECT_EQ(bmp.Bits(), 24);
  EXPECT_EQ(bmp.FileSize(), bmp.Size());
  // Position p's pins stand at x = 100 + 10 (p - 1), y = 50 and 58.
  const struct {
    int x, y;
    uint32_t colour;
  } pixels[] = {
      {101, 51, tools::kPinColour},       {101, 59, tools::kPinColour}, {112, 54, tools::kShuntColour},
      {111, 60, tools::kShuntColour},     {121, 51, tools::kPinColour}, {30, 100, tools::kBoardColour},
      {2, 100, tools::kJumperBackground},
  };
  for (const auto& p : pixels) EXPECT_EQ(bmp.Pixel(p.x, p.y), p.colour) << p.x << "," << p.y;
  EXPECT_EQ(pictures[1].image.width, 508);
  EXPECT_EQ(pictures[1].image.At(203, 103), tools::kPinColour) << "twice the size";
}

TEST(PictureMaker, ReportsMistakesOfTheJumperTable) {
  const std::string board = "board B \"Test\"\n  block JP1 10 20 3 down\nend\n";
  const struct {
    std::string source;
    int line;
  } cases[] = {
      {board + "jumpers 7 B \"x\" JP2=1\n", 4},  // no such block
      {board + "jumpers 7 B \"x\" JP1=4\n", 4},  // no such position
      {board + "jumpers 7 C \"x\"\n", 4},        // no such board
      {board + "jumpers 7 B \"x\nend\n", 4},     // no closing quote
      {board + "jumpers 7 B \"x\"\njumpers 7 B \"y\"\n", 5},
      {"board B \"Test\"\n  block JP1 10 20 3 sideways\nend\n", 2},
  };
  for (const auto& c : cases) {
    std::istringstream in(c.source);
    try {
      DrawJumperTable(in);
      ADD_FAILURE() << "accepted: " << c.source;
    } catch (const SourceError& e) {
      EXPECT_EQ(e.Line(), c.line) << c.source << e.what();
    }
  }
}

// The build draws a picture for every number the calibration screen can show, and none
// for the numbers that have no board.
TEST(PictureMaker, TheBuildDrawsEveryCalibrationJumperPicture) {
  std::vector<int> numbers = {1, 2, 3, 4};
  for (int first : {11, 21, 41})
    for (int n = first; n < first + 9; ++n) numbers.push_back(n);
  for (int n = 31; n <= 35; ++n) numbers.push_back(n);
  ASSERT_EQ(numbers.size(), 36u);
  const std::filesystem::path programFolder = HelpFolder();
  for (int n : numbers) {
    const BmpFile bmp(FileText(programFolder / ("Jumper" + std::to_string(n) + ".BMP")));
    ASSERT_EQ(bmp.Magic(), "BM") << n;
    EXPECT_EQ(bmp.Width(), 254) << n;
    EXPECT_EQ(bmp.Height(), 155) << n;
    EXPECT_EQ(bmp.Bits(), 24) << n;
  }
  for (int n : {5, 10, 20, 30, 36, 50, 51, 65})
    EXPECT_FALSE(std::filesystem::exists(programFolder / ("Jumper" + std::to_string(n) + ".BMP"))) << n;
}

}  // namespace
}  // namespace dpm::testing
