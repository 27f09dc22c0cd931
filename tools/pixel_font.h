#pragma once

#include <cstdint>
#include <string>

#include "picture_maker.h"

// A small built-in pixel font for the texts drawn into pictures: printable ASCII, each
// character 5 pixels wide and 7 high in a cell of 6 by 8, every pixel `scale` by `scale`.
namespace dpm::tools {

inline constexpr int kGlyphWidth = 5;
inline constexpr int kGlyphHeight = 7;
inline constexpr int kCellWidth = 6;
inline constexpr int kCellHeight = 8;

// Whether the font has a figure for the character.
bool HasGlyph(char c);

// The width of a text in pixels, without the gap after its last character.
int TextWidth(const std::string& text, int scale);

// Draws the text with its top left corner at x, y; characters without a figure are drawn
// as an empty cell (callers that care check HasGlyph first).
void DrawText(Image& image, int x, int y, int scale, uint32_t colour, const std::string& text);

}  // namespace dpm::tools
