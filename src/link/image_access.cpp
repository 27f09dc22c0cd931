#include "link/image_access.h"

#include <algorithm>

#include "link/globals.h"
#include "platform/numeric.h"

namespace dpm {
namespace {

int64_t ImageNumber(int position, std::size_t digits) {
  return LeadingHexValue(Mid(g.SetupImage, static_cast<std::size_t>(position), digits));
}

int BitMask(int hi, int lo) {
  int mask = 0;
  for (int bit = lo; bit <= hi; ++bit) mask += 1 << bit;
  return mask;
}

std::string LastCharacters(const std::string& text, std::size_t count) {
  return text.size() <= count ? text : text.substr(text.size() - count);
}

std::string LeftTrimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  return first == std::string::npos ? std::string{} : text.substr(first);
}

// The digits of the value as text, before the point is placed.
std::string ValueDigits(int16_t format, const std::string& six) {
  const int64_t whole = LeadingHexValue(six);
  switch (format) {
    case kUnsignedFormat: {
      // Four hexadecimal digits from 8000 up read as a negative 16-bit number, and that
      // reading is kept: such a value shows a "-" among its digits.
      const int64_t value = (whole >= 0x8000 && whole <= 0xFFFF) ? whole - 65536 : whole;
      return NumberText(value);
    }
    case kDisplayFormat:
    case kInputFormat: {
      const int64_t value = whole >= 0x800000 ? whole - 0x1000000 : whole;
      std::string text = NumberText(value);
      text.erase(std::remove(text.begin(), text.end(), '-'), text.end());
      return text;
    }
    case kScaleFormat:
      // The five digits of the magnitude are unsigned: the band above 7FFFF stays positive.
      return NumberText(LeadingHexValue(Mid(six, 2, 5)));
    default:
      return {};
  }
}

std::string PlacePoint(const std::string& fiveDigits, int16_t dp) {
  return fiveDigits.substr(0, static_cast<std::size_t>(6 - dp)) + "." + LastCharacters(fiveDigits, dp - 1);
}

std::string NormalForm(std::string text, bool negative) {
  text = (negative ? " - " : " +") + text;
  const std::size_t point = text.find('.');
  if (point + 1 < text.size()) text.insert(point + 1, " ");  // the blank after the point is intended
  return text;
}

std::string WithoutPoint(const std::string& text, std::size_t point) {
  if (point == 0) return text.substr(1);
  if (point == text.size() - 1) return text.substr(0, text.size() - 1);
  return text.substr(0, point) + text.substr(point + 1);
}

}  // namespace

int16_t ReadField(int hi, int lo, int position) {
  int64_t result = ImageNumber(position, 2) & BitMask(hi, lo);
  if (lo != 0) result /= (int64_t{1} << lo);
  return static_cast<int16_t>(result);
}

void WriteField(int hi, int lo, int position, int16_t value) {
  const int keep = 0xFF & ~BitMask(hi, lo);
  const int64_t byte = (ImageNumber(position, 2) & keep) | (static_cast<int64_t>(value) * (int64_t{1} << lo));
  std::string digits = HexText(byte);
  if (digits.size() == 1) digits.insert(0, "0");
  ReplaceImageDigits(position, digits.substr(0, 2));
}

std::string ReadValue(int16_t& format, int16_t position, int16_t& dp) {
  const bool plain = format > 9;
  if (plain) format = static_cast<int16_t>(format - 10);
  const std::string six = Mid(g.SetupImage, static_cast<std::size_t>(position), 6);
  const int firstDigit = six.empty() ? 0 : std::max(0, HexDigitValue(six[0]));
  const bool negative = (firstDigit & 8) != 0;
  if (format == kScaleFormat) dp = static_cast<int16_t>(firstDigit & 7);

  const std::string five = LastCharacters("00000" + LeftTrimmed(ValueDigits(format, six)), 5);
  dp = std::clamp<int16_t>(dp, 1, 6);
  const std::string text = PlacePoint(five, dp);
  if (plain) return (negative ? "-" : " ") + text;
  return NormalForm(text, negative);
}

void WriteValue(int16_t format, int16_t position, const std::string& text) {
  const std::size_t point = text.find('.');
  const int pointPlace = point == std::string::npos ? 0 : static_cast<int>(point) + 1;
  const int code = std::clamp(8 - pointPlace, 1, 6);
  const std::string digits = point == std::string::npos ? text : WithoutPoint(text, point);

  // The first character is the sign place, never a digit.
  const int signValue = Mid(digits, 1, 1) == "-" ? 8 : 0;
  const int32_t number = ToInt32(LeadingNumber(Mid(digits, 2)));
  const std::string six = LastCharacters("000000" + HexText(number), 6);

  std::string result;
  if (format == kScaleFormat) {
    result = HexText(code + signValue) + six.substr(1);
  } else if (number != 0 && signValue == 8) {
    result = LastCharacters(HexText(-static_cast<int64_t>(number)), 6);
  } else {
    result = six;
  }
  ReplaceImageDigits(position, result);
}

void ReplaceImageDigits(int position, const std::string& digits) {
  if (position < 1 || static_cast<std::size_t>(position) > g.SetupImage.size()) return;
  const std::size_t start = static_cast<std::size_t>(position) - 1;
  const std::size_t count = std::min(digits.size(), g.SetupImage.size() - start);
  g.SetupImage.replace(start, count, digits, 0, count);
}

}  // namespace dpm
