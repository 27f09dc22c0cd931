#pragma once

#include <istream>
#include <vector>

#include "picture_maker.h"

// The jumper table: the boards of the meter and, for each picture of a jumper setting,
// which jumpers sit where. Whoever has a board in hand corrects the table, and the build
// draws the pictures again. A source holds:
//
//   board NAME "TITLE"                          a board, drawn into a picture of 254 x 155
//     outline X Y W H                           the edge of the board
//     part X Y W H COLOUR "LABEL"               a component as a box, its label inside ("")
//     block NAME X Y POSITIONS across|down      a jumper block: POSITIONS pairs of pins
//                                               10 pixels apart, numbered from 1, the
//                                               block's name above it
//     connector NAME X Y PINS across|down       a terminal block, its pins 12 pixels apart
//                                               and numbered from PINS down to 1
//   end
//   jumpers NUMBER BOARD "RANGE" [BLOCK=P[,P...] ...]
//       the picture Jumper<NUMBER>.BMP: the board with a jumper on each position P of each
//       block named, the board's title above and RANGE below
//   diagram FILE BOARD SCALE [BLOCK=P[,P...] ...]
//       the picture FILE: the board alone with its jumpers, each pixel SCALE by SCALE
//
// Coordinates are pixels from the top left corner of the 254 x 155 picture; colours are
// RRGGBB in hexadecimal; everything after "#" is a comment. A board is defined before the
// pictures that use it.
namespace dpm::tools {

inline constexpr int kJumperPictureWidth = 254;
inline constexpr int kJumperPictureHeight = 155;

// Colours of the drawing, for readers of the pictures.
inline constexpr uint32_t kJumperBackground = 0xF4F4F0;
inline constexpr uint32_t kBoardColour = 0x2F7D4A;
inline constexpr uint32_t kPinColour = 0xD8B040;
inline constexpr uint32_t kShuntColour = 0x2050D0;

// Reads a whole jumper table and draws each of its pictures.
std::vector<Picture> DrawJumperTable(std::istream& source);

}  // namespace dpm::tools
