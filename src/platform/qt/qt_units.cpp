#include "platform/qt/qt_units.h"

namespace dpm::qt {
namespace {

struct KeyPair {
  int qtKey;
  int code;
};

// Keys whose code is not their letter or digit.
constexpr KeyPair kKeys[] = {
    {Qt::Key_Backspace, kKeyBack}, {Qt::Key_Tab, kKeyTab},
    {Qt::Key_Backtab, kKeyTab},    {Qt::Key_Return, kKeyReturn},
    {Qt::Key_Enter, kKeyReturn},   {Qt::Key_Shift, 16},
    {Qt::Key_Control, 17},         {Qt::Key_Alt, 18},
    {Qt::Key_Pause, 19},           {Qt::Key_CapsLock, 20},
    {Qt::Key_Escape, kKeyEscape},  {Qt::Key_Space, kKeySpace},
    {Qt::Key_PageUp, kKeyPageUp},  {Qt::Key_PageDown, kKeyPageDown},
    {Qt::Key_End, kKeyEnd},        {Qt::Key_Home, kKeyHome},
    {Qt::Key_Left, kKeyLeft},      {Qt::Key_Up, kKeyUp},
    {Qt::Key_Right, kKeyRight},    {Qt::Key_Down, kKeyDown},
    {Qt::Key_Insert, kKeyInsert},  {Qt::Key_Delete, kKeyDelete},
    {Qt::Key_Semicolon, 186},      {Qt::Key_Equal, 187},
    {Qt::Key_Comma, 188},          {Qt::Key_Minus, 189},
    {Qt::Key_Period, 190},         {Qt::Key_Slash, 191},
    {Qt::Key_QuoteLeft, 192},      {Qt::Key_BracketLeft, 219},
    {Qt::Key_Backslash, 220},      {Qt::Key_BracketRight, 221},
    {Qt::Key_Apostrophe, 222},
};

// The number pad has codes of its own.
constexpr KeyPair kPadKeys[] = {
    {Qt::Key_Asterisk, 106}, {Qt::Key_Plus, 107}, {Qt::Key_Minus, 109}, {Qt::Key_Period, 110}, {Qt::Key_Slash, 111},
};

}  // namespace

int KeyCodeOf(const QKeyEvent& event) {
  const int key = event.key();
  const bool pad = event.modifiers().testFlag(Qt::KeypadModifier);
  if (key >= Qt::Key_0 && key <= Qt::Key_9) return (pad ? 96 : 48) + (key - Qt::Key_0);
  if (key >= Qt::Key_A && key <= Qt::Key_Z) return 65 + (key - Qt::Key_A);
  if (key >= Qt::Key_F1 && key <= Qt::Key_F16) return kKeyF1 + (key - Qt::Key_F1);
  if (pad) {
    for (const KeyPair& pair : kPadKeys) {
      if (pair.qtKey == key) return pair.code;
    }
  }
  for (const KeyPair& pair : kKeys) {
    if (pair.qtKey == key) return pair.code;
  }
  return 0;
}

int ShiftStateOf(Qt::KeyboardModifiers modifiers) {
  return (modifiers.testFlag(Qt::ShiftModifier) ? kShiftMask : 0) |
         (modifiers.testFlag(Qt::ControlModifier) ? kCtrlMask : 0) |
         (modifiers.testFlag(Qt::AltModifier) ? kAltMask : 0);
}

int KeyAsciiOf(const QKeyEvent& event) {
  switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return kKeyReturn;
    case Qt::Key_Backspace:
      return kKeyBack;
    case Qt::Key_Escape:
      return kKeyEscape;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
      return 0;  // Tab moves the focus; it types nothing
    default:
      break;
  }
  const QString text = event.text();
  if (text.size() != 1) return 0;
  const char16_t c = text.at(0).unicode();
  return c < 256 ? c : 0;
}

}  // namespace dpm::qt
