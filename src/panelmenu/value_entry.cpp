#include "panelmenu/value_entry.h"

#include <algorithm>

#include "help/app_help.h"
#include "link/globals.h"
#include "link/image_access.h"
#include "platform/dialogs.h"
#include "platform/forms/form_manager.h"
#include "platform/numeric.h"
#include "platform/services.h"

namespace dpm {
namespace {

constexpr int kPlaces = 6;
constexpr int kLastPlace = kPlaces - 1;
// The single-byte format uses the last three places only.
constexpr int kFirstBytePlace = 3;

// Where the dialog stands, in twips: to the right, over the lists of the page beneath,
// high or low as the caller asks.
constexpr int kEntryLeft = 6300;
constexpr int kTopForSide = 2900;
constexpr int kTopForNoSide = 1500;

void Beep() {
  if (Dialogs* dialogs = Platform().dialogs) dialogs->Beep();
}

bool IsDigit(int c) { return c >= '0' && c <= '9'; }

std::string WithoutBlanks(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), ' '), text.end());
  return text;
}

// The position of the first point counted from 1, 0 when there is none.
std::size_t PointPosition(const std::string& text) {
  const std::size_t point = text.find('.');
  return point == std::string::npos ? 0 : point + 1;
}

// Text of a value field as the setup pages show it, from the text the places hold: " +" or
// " - " for the sign, and a blank behind the point (ahead of the text when there is none).
std::string PageValueText(std::string text, int16_t format) {
  if (format != kUnsignedFormat && format != kByteEntryFormat) {
    const bool negative = !text.empty() && text[0] == '-';
    text = (negative ? " - " : " +") + Mid(text, 2);
  }
  const std::size_t point = PointPosition(text);
  if (point < text.size()) text.insert(point, " ");
  return text;
}

}  // namespace

ValueEntry::ValueEntry() : Form(kName, "Enter Dec Value") { ConnectHandlers(); }

void ValueEntry::ConnectHandlers() {
  on.Activate = [this] { Form_Activate(); };
  on.KeyDown = [this](int& keyCode, int shift) { Form_KeyDown(keyCode, shift); };
  txtDigit.on.KeyDown = [this](int index, int& keyCode, int shift) { txtDigit_KeyDown(index, keyCode, shift); };
  txtDigit.on.KeyPress = [this](int index, int& keyAscii) { txtDigit_KeyPress(index, keyAscii); };
  cmdOK.on.Click = [this] { cmdOK_Click(); };
  cmdCancel.on.Click = [this] { cmdCancel_Click(); };
}

void ValueEntry::Form_Activate() { LoadDigits(g.EntryText, g.EntryFormat); }

void ValueEntry::LoadDigits(const std::string& text, int16_t format) {
  entryAtEnd_ = false;
  std::string chars = WithoutBlanks(text);
  const std::size_t point = PointPosition(chars);
  // Only the scale factor keeps its point among the characters: everywhere else the point
  // is the field's, and the places show it where the code puts it.
  if (point != 0 && format != kScaleFormat) chars.erase(point - 1, 1);

  for (int i = 0; i < kPlaces; ++i) txtDigit[i].SetVisible(true);
  if (format == kByteEntryFormat) {
    for (int i = 0; i < kFirstBytePlace; ++i) txtDigit[i].SetVisible(false);
    GoToPlace(kFirstBytePlace);
  } else {
    GoToPlace(0);
  }

  // With the sign in the first place and the digits behind it, this is the point code of
  // the field: "+12345." gives 1, "+.12345" gives 6, no point gives 8.
  entryDpCode_ = static_cast<int16_t>(8 - point);

  if (format == kByteEntryFormat) {
    const std::string padded = "00" + chars;
    const std::string three = padded.substr(padded.size() > 3 ? padded.size() - 3 : 0);
    entryDpCode_ = 1;
    for (int i = 0; i < 3; ++i) txtDigit[kFirstBytePlace + i].SetText(Mid(three, static_cast<std::size_t>(i) + 1, 1));
    return;
  }

  std::size_t next = 0;  // the character for the next place, counted from 0
  for (int i = 0; i < kPlaces; ++i) {
    std::string place = next < chars.size() ? chars.substr(next, 1) : std::string{};
    ++next;
    if (entryDpCode_ == 7 - static_cast<int>(next)) {
      place += ".";
      if (next < chars.size() && chars[next] == '.') ++next;
    }
    txtDigit[i].SetText(place);
  }
}

void ValueEntry::GoToPlace(int index) {
  txtDigit[index].SetFocus();
  txtDigit[index].SetSelStart(0);
}

void ValueEntry::txtDigit_KeyDown(int index, int& keyCode, int /*shift*/) {
  if (keyCode == kKeyLeft) {
    // After the right arrow in the last place the caret stands behind its digit; the left
    // arrow then brings it back before the digit instead of leaving the place.
    if (index > 0) GoToPlace(index == kLastPlace && entryAtEnd_ ? kLastPlace : index - 1);
    entryAtEnd_ = false;
  } else if (keyCode == kKeyRight) {
    if (index < kLastPlace) {
      entryAtEnd_ = false;
      GoToPlace(index + 1);
    } else {
      entryAtEnd_ = true;
    }
  }
}

void ValueEntry::txtDigit_KeyPress(int index, int& keyAscii) {
  const int c = keyAscii;
  // Every key is handled here: a place never takes a key on its own.
  keyAscii = 0;
  if (c == kKeyReturn) {
    AcceptEntry();
    return;
  }
  if (g.EntryFormat == kScaleFormat) {
    if (!IsScaleKeyAllowed(index, c)) return;
    if (c == '.') {
      MovePoint(index);
      return;
    }
  } else if (!IsAllowed(index, c)) {
    // The point is not the user's to move here: refused, but without a sound.
    if (c != '.') Beep();
    return;
  }
  TypeCharacter(index, static_cast<char>(c));
}

bool ValueEntry::IsAllowed(int index, int c) const {
  const int16_t format = g.EntryFormat;
  if (index == 0 && (format == kDisplayFormat || format == kInputFormat)) return c == '+' || c == '-';
  // An unsigned field takes no minus.
  if (index == 0 && format == kUnsignedFormat) return c == '+';
  // The hundreds of a byte.
  if (index == kFirstBytePlace && format == kByteEntryFormat) return c >= '0' && c <= '2';
  return IsDigit(c);
}

bool ValueEntry::IsScaleKeyAllowed(int index, int c) const {
  if (index == 0) return c == '+' || c == '-' || c == '.';
  return IsDigit(c) || c == '.';
}

void ValueEntry::MovePoint(int index) {
  for (int i = 0; i < kPlaces; ++i) txtDigit[i].SetText(txtDigit[i].Text().substr(0, 1));
  txtDigit[index].SetText(txtDigit[index].Text() + ".");
  entryDpCode_ = static_cast<int16_t>(6 - index);
}

void ValueEntry::TypeCharacter(int index, char c) {
  // The place of the point keeps the point with its new digit.
  const bool pointPlace = index == PointPlace();
  if (pointPlace) txtDigit[index].SetText(g.EntryFormat == kByteEntryFormat ? std::string(1, c) : std::string{c, '.'});
  // Typing runs from left to right; the last place stays put, so that it can be overtyped.
  GoToPlace(std::min(index + 1, kLastPlace));
  if (!pointPlace) txtDigit[index].SetText(std::string(1, c));
}

std::string ValueEntry::JoinedPlaces() const {
  std::string text;
  const int first = g.EntryFormat == kByteEntryFormat ? kFirstBytePlace : 0;
  for (int i = first; i < kPlaces; ++i) text += txtDigit[i].Text();
  const std::size_t point = text.find('.');
  if (point != std::string::npos) {
    text.erase(std::remove(text.begin() + static_cast<std::ptrdiff_t>(point) + 1, text.end(), '.'), text.end());
  }
  return text;
}

void ValueEntry::AcceptEntry() {
  // The joined places are the entry text even when the value is refused: the dialog shows
  // them again when it comes back.
  g.EntryText = JoinedPlaces();
  std::string text = g.EntryText;
  if (g.EntryFormat == kByteEntryFormat) {
    if (!AcceptByte(text)) return;
  } else {
    WriteValue(g.EntryFormat, g.EntryPosition, text);
  }
  ReturnToBox(PageValueText(text, g.EntryFormat));
}

bool ValueEntry::AcceptByte(std::string& text) {
  const int32_t value = ToInt32(LeadingNumber(text));
  if (value >= 256) {
    Beep();
    GoToPlace(4);
    return false;
  }
  g.CharCode = static_cast<int16_t>(value);
  while (text.size() > 1 && text[0] <= '0') text.erase(0, 1);
  WriteField(7, 0, g.EntryPosition, g.CharCode);
  return true;
}

void ValueEntry::ReturnToBox(const std::string& text) {
  g.EntryText = text;
  if (g.EntryBox != nullptr) {
    g.EntryBox->SetText(text);
    g.EntryBox->SetBackColor(ColWhite);
  }
  Hide();
}

void ValueEntry::cmdOK_Click() {
  AcceptEntry();
  g.EntryReturnFlag = 1;
}

void ValueEntry::cmdCancel_Click() {
  if (g.EntryBox != nullptr) g.EntryBox->SetBackColor(ColWhite);
  Hide();
  g.EntryReturnFlag = 1;
}

void ValueEntry::Form_KeyDown(int& keyCode, int /*shift*/) {
  if (keyCode != kKeyF1) return;
  // The dialog steps aside for the help on the field; it does not come back by itself.
  Hide();
  ShowAppHelp();
}

ValueEntry& frmEntVal() { return Forms().Use<ValueEntry>(); }

void OpenValueEntry(int16_t side) {
  ValueEntry& dialog = frmEntVal();
  dialog.Move(kEntryLeft, side != 0 ? kTopForSide : kTopForNoSide);
  if (g.EntryBox != nullptr) g.EntryBox->SetBackColor(ColPaleGreen);
  g.EntryReturnFlag = 1;
  dialog.Show();
}

void ForgetEntryBox(const Form& form) {
  if (g.EntryBox != nullptr && &g.EntryBox->Owner() == &form) g.EntryBox = nullptr;
}

}  // namespace dpm
