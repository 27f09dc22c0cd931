#pragma once

#include <cstdint>
#include <filesystem>
#include <istream>
#include <stdexcept>
#include <string>
#include <vector>

// The picture maker: draws the program's pictures from a text that people edit, and writes
// them as 24-bit BMP files. A source holds any number of pictures:
//
//   picture NAME WIDTH HEIGHT BACKGROUND
//     fill X Y W H COLOUR                  a filled rectangle
//     frame X Y W H COLOUR                 its one-pixel outline
//     line X1 Y1 X2 Y2 COLOUR [WIDTH]      a straight line, WIDTH pixels thick (1)
//     triangle X1 Y1 X2 Y2 X3 Y3 COLOUR    a filled triangle
//     digits X Y HEIGHT COLOUR TEXT        seven-segment figures: 0-9, "-", " ", "."
//     text X Y SCALE COLOUR TEXT           TEXT to the end of the line in the built-in pixel
//                                          font (pixel_font.h): printable ASCII, a character
//                                          6 by 8 pixels, each pixel SCALE by SCALE
//   end
//
// Coordinates are pixels from the top left corner; colours are RRGGBB in hexadecimal.
// Everything after "#" is a comment. Shapes are drawn in order and clipped to the picture.
//
// The jumper pictures have a source of their own, a table of boards and jumper settings
// (jumper_table.h); the tool reads it when started with --jumpers.
namespace dpm::tools {

struct Image {
  int width = 0;
  int height = 0;
  std::vector<uint32_t> pixels;  // 0xRRGGBB, row by row from the top

  Image(int w, int h, uint32_t background);
  uint32_t At(int x, int y) const { return pixels[static_cast<std::size_t>(y * width + x)]; }
  void Set(int x, int y, uint32_t colour);
  void Fill(int x, int y, int w, int h, uint32_t colour);
};

struct Picture {
  std::string name;
  Image image;
};

// A mistake in the source, with its line number.
class SourceError : public std::runtime_error {
 public:
  SourceError(int line, const std::string& what)
      : std::runtime_error("line " + std::to_string(line) + ": " + what), line_(line) {}
  int Line() const { return line_; }

 private:
  int line_;
};

// Reads a whole source and draws each picture in it.
std::vector<Picture> DrawPictures(std::istream& source);

// The BMP file of an image: bottom-up rows of blue, green, red, each padded to 4 bytes.
std::string BmpBytes(const Image& image);
void WriteBmp(const Image& image, const std::filesystem::path& path);

}  // namespace dpm::tools
