#pragma once

#include <cstdint>

#include <QColor>
#include <QKeyEvent>

#include "platform/forms/control.h"

// The translations between the form layer's terms and Qt's: twips and pixels, colour
// numbers, key codes.
namespace dpm::qt {

// The form layer measures in twips, 15 to a pixel on a 96 dpi screen.
inline constexpr int kTwipsPerPixel = 15;
inline int ToPixels(double twips) { return static_cast<int>(twips / kTwipsPerPixel + (twips >= 0 ? 0.5 : -0.5)); }
inline int ToTwips(int pixels) { return pixels * kTwipsPerPixel; }

// A colour number is red + 256 x green + 65536 x blue.
inline QColor ToQColor(int32_t color) { return QColor(color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF); }

// The key code of a key-down event (0 for a key without one) and its shift state.
int KeyCodeOf(const QKeyEvent& event);
int ShiftStateOf(Qt::KeyboardModifiers modifiers);
// The character code of a key-press event, or 0 when the key types no character.
int KeyAsciiOf(const QKeyEvent& event);

}  // namespace dpm::qt
