#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "pages/setup_page1.h"

// Scaling on setup page 1. The meter turns input into reading in one of three ways, and
// two bits of the image tell it which: scale and offset, coordinates (low and high input
// against low and high reading), or reading coordinates. All six values are separate
// fields of the image; the page only stores what is typed, and the method decides which
// of the boxes may be edited. The meter does all the arithmetic.
namespace dpm {

enum class ScaleMethodChoice { ScaleOffset, Coordinates, ReadingCoord };

// The method the image asks for: the reading coordinates bit wins over the input
// coordinates bit, and with neither it is scale and offset.
ScaleMethodChoice ReadScaleMethod();

// Writes the bits of a method. Scale and offset and coordinates write both bits; reading
// coordinates sets its own bit only, so that a later clearing of it, by whatever road,
// falls back to the method that was chosen before.
void WriteScaleMethod(ScaleMethodChoice choice);

// The group of boxes each method opens.
enum class ScaleGroup { ScaleOffset, InputCoord, ReadingCoord };

// One value box of the scaling frame, in the order in which they are enabled.
struct ScaleBox {
  TextBox SetupPage1::*box;
  Frame SetupPage1::*frame;
  std::string_view field;  // the image field, by its name in the image map
  ScaleGroup group;
  int16_t helpContext;  // stored when the box gets the focus
};
std::span<const ScaleBox> ScaleBoxes();

// What the value entry dialog is given for a box: the field's entry format and position.
// With the custom curve in force the low input box stands for the curve's reading at zero
// input instead.
struct EntryTarget {
  int16_t format;
  int16_t position;
};
EntryTarget EntryTargetOf(const ScaleBox& box, bool customCurveInForce);

// Help context of the three method options.
inline constexpr int16_t kScaleMethodHelp = 1325;

}  // namespace dpm
