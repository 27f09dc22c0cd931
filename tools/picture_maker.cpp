#include "picture_maker.h"

#include "pixel_font.h"
#include "source_words.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <sstream>

namespace dpm::tools {

Image::Image(int w, int h, uint32_t background)
    : width(w), height(h), pixels(static_cast<std::size_t>(w) * static_cast<std::size_t>(h), background) {}

void Image::Set(int x, int y, uint32_t colour) {
  if (x < 0 || y < 0 || x >= width || y >= height) return;
  pixels[static_cast<std::size_t>(y * width + x)] = colour;
}

void Image::Fill(int x, int y, int w, int h, uint32_t colour) {
  for (int row = std::max(y, 0); row < std::min(y + h, height); ++row)
    for (int col = std::max(x, 0); col < std::min(x + w, width); ++col) Set(col, row, colour);
}

namespace {

// Bresenham's line with a square pen `thickness` pixels wide, centred on the line.
void DrawLine(Image& image, int x1, int y1, int x2, int y2, uint32_t colour, int thickness) {
  const int dx = std::abs(x2 - x1);
  const int dy = -std::abs(y2 - y1);
  const int sx = x1 < x2 ? 1 : -1;
  const int sy = y1 < y2 ? 1 : -1;
  const int back = (thickness - 1) / 2;
  for (int err = dx + dy;;) {
    image.Fill(x1 - back, y1 - back, thickness, thickness, colour);
    if (x1 == x2 && y1 == y2) break;
    const int e2 = 2 * err;
    if (e2 >= dy) {
      err += dy;
      x1 += sx;
    }
    if (e2 <= dx) {
      err += dx;
      y1 += sy;
    }
  }
}

// Every pixel whose centre lies inside the triangle (or on its edge), whichever way round
// its corners are given.
void DrawTriangle(Image& image, const std::array<int, 6>& c, uint32_t colour) {
  auto edge = [](double ax, double ay, double bx, double by, double px, double py) {
    return (bx - ax) * (py - ay) - (by - ay) * (px - ax);
  };
  const int left = std::min({c[0], c[2], c[4]});
  const int right = std::max({c[0], c[2], c[4]});
  const int top = std::min({c[1], c[3], c[5]});
  const int bottom = std::max({c[1], c[3], c[5]});
  for (int y = top; y <= bottom; ++y) {
    for (int x = left; x <= right; ++x) {
      const double px = x + 0.5, py = y + 0.5;
      const double e1 = edge(c[0], c[1], c[2], c[3], px, py);
      const double e2 = edge(c[2], c[3], c[4], c[5], px, py);
      const double e3 = edge(c[4], c[5], c[0], c[1], px, py);
      if ((e1 >= 0 && e2 >= 0 && e3 >= 0) || (e1 <= 0 && e2 <= 0 && e3 <= 0)) image.Set(x, y, colour);
    }
  }
}

// Segments a to g as bits 0 to 6.
std::optional<int> SegmentsOf(char c) {
  static constexpr std::array<int, 10> kDigits = {0x3F, 0x06, 0x5B, 0x4F, 0x66, 0x6D, 0x7D, 0x07, 0x7F, 0x6F};
  if (c >= '0' && c <= '9') return kDigits[static_cast<std::size_t>(c - '0')];
  if (c == '-') return 0x40;
  if (c == ' ') return 0;
  return std::nullopt;
}

// Figures `height` pixels high and half as wide, with a gap of two strokes between them; a
// point sits in the gap after the figure before it.
void DrawDigits(Image& image, int x, int y, int height, uint32_t colour, const std::string& text, int line) {
  const int stroke = std::max(1, height / 8);
  const int width = std::max(height / 2, 2 * stroke + 1);
  const int middle = height / 2;
  const int gap = 2 * stroke;
  for (char c : text) {
    if (c == '.') {
      image.Fill(x - gap + stroke / 2, y + height - stroke, stroke, stroke, colour);
      continue;
    }
    const std::optional<int> segments = SegmentsOf(c);
    if (!segments) throw SourceError(line, std::string("no seven-segment figure for \"") + c + "\"");
    const std::array<std::array<int, 4>, 7> rects = {{
        {x + stroke, y, width - 2 * stroke, stroke},                         // a
        {x + width - stroke, y + stroke, stroke, middle - stroke},           // b
        {x + width - stroke, y + middle, stroke, height - middle - stroke},  // c
        {x + stroke, y + height - stroke, width - 2 * stroke, stroke},       // d
        {x, y + middle, stroke, height - middle - stroke},                   // e
        {x, y + stroke, stroke, middle - stroke},                            // f
        {x + stroke, y + middle - stroke / 2, width - 2 * stroke, stroke},   // g
    }};
    for (std::size_t s = 0; s < rects.size(); ++s) {
      if (*segments & (1 << s)) image.Fill(rects[s][0], rects[s][1], rects[s][2], rects[s][3], colour);
    }
    x += width + gap;
  }
}

void DrawShape(Image& image, const std::string& shape, Words& words, int line) {
  if (shape == "fill" || shape == "frame") {
    const int x = words.Number("x"), y = words.Number("y");
    const int w = words.Size("width"), h = words.Size("height");
    const uint32_t colour = words.Colour();
    words.End();
    if (shape == "fill") {
      image.Fill(x, y, w, h, colour);
    } else {
      image.Fill(x, y, w, 1, colour);
      image.Fill(x, y + h - 1, w, 1, colour);
      image.Fill(x, y, 1, h, colour);
      image.Fill(x + w - 1, y, 1, h, colour);
    }
  } else if (shape == "line") {
    const int x1 = words.Number("x1"), y1 = words.Number("y1");
    const int x2 = words.Number("x2"), y2 = words.Number("y2");
    const uint32_t colour = words.Colour();
    const int thickness = words.OptionalNumber("width").value_or(1);
    words.End();
    if (thickness < 1 || thickness > 100) throw SourceError(line, "bad width");
    DrawLine(image, x1, y1, x2, y2, colour, thickness);
  } else if (shape == "triangle") {
    std::array<int, 6> corners{};
    for (int& c : corners) c = words.Number("corner");
    const uint32_t colour = words.Colour();
    words.End();
    DrawTriangle(image, corners, colour);
  } else if (shape == "digits") {
    const int x = words.Number("x"), y = words.Number("y");
    const int h = words.Size("height");
    const uint32_t colour = words.Colour();
    DrawDigits(image, x, y, h, colour, words.Rest(), line);
  } else if (shape == "text") {
    const int x = words.Number("x"), y = words.Number("y");
    const int scale = words.Size("scale");
    const uint32_t colour = words.Colour();
    const std::string text = words.Rest();
    for (char c : text)
      if (!HasGlyph(c)) throw SourceError(line, std::string("the font has no figure for \"") + c + "\"");
    DrawText(image, x, y, scale, colour, text);
  } else {
    throw SourceError(line, "unknown shape \"" + shape + "\"");
  }
}

void PutLE(std::string& out, uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) out += static_cast<char>((value >> (8 * i)) & 0xFF);
}

}  // namespace

std::vector<Picture> DrawPictures(std::istream& source) {
  std::vector<Picture> pictures;
  std::optional<Picture> open;
  std::string text;
  int line = 0;
  while (std::getline(source, text)) {
    ++line;
    text = WithoutComment(text);
    Words words(text, line);
    std::string first;
    if (std::istringstream(text) >> first) words.Word("keyword");
    if (first.empty()) continue;
    if (first == "picture") {
      if (open) throw SourceError(line, "picture \"" + open->name + "\" has no end");
      const std::string name = words.Word("name");
      if (name.find_first_of("/\\") != std::string::npos) throw SourceError(line, "a name is a bare file name");
      for (const Picture& p : pictures)
        if (p.name == name) throw SourceError(line, "picture \"" + name + "\" twice");
      const int w = words.Size("width"), h = words.Size("height");
      const uint32_t background = words.Colour();
      words.End();
      open = Picture{name, Image(w, h, background)};
    } else if (first == "end") {
      if (!open) throw SourceError(line, "end without picture");
      words.End();
      pictures.push_back(std::move(*open));
      open.reset();
    } else {
      if (!open) throw SourceError(line, "\"" + first + "\" outside a picture");
      DrawShape(open->image, first, words, line);
    }
  }
  if (open) throw SourceError(line, "picture \"" + open->name + "\" has no end");
  return pictures;
}

std::string BmpBytes(const Image& image) {
  const uint32_t rowBytes = (static_cast<uint32_t>(image.width) * 3 + 3) & ~3u;
  const uint32_t dataBytes = rowBytes * static_cast<uint32_t>(image.height);
  constexpr uint32_t kHeaders = 14 + 40;
  constexpr uint32_t kPixelsPerMetre = 3780;  // 96 dots an inch
  std::string out;
  out.reserve(kHeaders + dataBytes);
  out += "BM";
  PutLE(out, kHeaders + dataBytes, 4);
  PutLE(out, 0, 4);
  PutLE(out, kHeaders, 4);
  PutLE(out, 40, 4);
  PutLE(out, static_cast<uint32_t>(image.width), 4);
  PutLE(out, static_cast<uint32_t>(image.height), 4);  // positive: rows bottom-up
  PutLE(out, 1, 2);                                    // planes
  PutLE(out, 24, 2);                                   // bits a pixel
  PutLE(out, 0, 4);                                    // no compression
  PutLE(out, dataBytes, 4);
  PutLE(out, kPixelsPerMetre, 4);
  PutLE(out, kPixelsPerMetre, 4);
  PutLE(out, 0, 4);
  PutLE(out, 0, 4);
  for (int y = image.height - 1; y >= 0; --y) {
    for (int x = 0; x < image.width; ++x) PutLE(out, image.At(x, y), 3);  // blue, green, red
    out.append(rowBytes - static_cast<uint32_t>(image.width) * 3, '\0');
  }
  return out;
}

void WriteBmp(const Image& image, const std::filesystem::path& path) {
  const std::string bytes = BmpBytes(image);
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!file.flush()) throw std::runtime_error("cannot write " + path.string());
}

}  // namespace dpm::tools
