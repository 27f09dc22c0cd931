#include "picture_maker.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>

#include "temp_folder.h"

namespace dpm::testing {
namespace {

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

}  // namespace
}  // namespace dpm::testing
