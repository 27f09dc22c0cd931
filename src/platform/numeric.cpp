#include "platform/numeric.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <limits>

#include "platform/faults.h"

namespace dpm {
namespace {

template <typename Int>
Int RoundToInteger(double value, const char* typeName) {
  const double rounded = std::nearbyint(value);  // the default rounding mode is ties-to-even
  if (std::isnan(rounded) || rounded < static_cast<double>(std::numeric_limits<Int>::min()) ||
      rounded > static_cast<double>(std::numeric_limits<Int>::max())) {
    throw OverflowFault(std::string("Overflow: ") + NumberText(value) + " does not fit a " + typeName);
  }
  return static_cast<Int>(rounded);
}

bool IsSkippedBlank(char c) { return c == ' ' || c == '\t' || c == '\n'; }

// The characters of the text that take part in reading a number: every blank removed.
std::string WithoutBlanks(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    if (!IsSkippedBlank(c)) out.push_back(c);
  }
  return out;
}

std::size_t SkipDigits(const std::string& s, std::size_t i) {
  while (i < s.size() && std::isdigit(static_cast<unsigned char>(s[i]))) ++i;
  return i;
}

// Removes the zeros that follow the point, and the point itself when nothing follows it.
std::string TrimFraction(std::string mantissa) {
  if (mantissa.find('.') == std::string::npos) return mantissa;
  while (!mantissa.empty() && mantissa.back() == '0') mantissa.pop_back();
  if (!mantissa.empty() && mantissa.back() == '.') mantissa.pop_back();
  return mantissa;
}

std::string GeneralNumberText(double value, int significantDigits) {
  if (value == 0.0) return " 0";
  if (!std::isfinite(value)) return std::isnan(value) ? " NaN" : (value < 0 ? "-Infinity" : " Infinity");
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.*E", significantDigits - 1, std::fabs(value));
  const std::string scientific(buffer);
  const int exponent = std::stoi(scientific.substr(scientific.find('E') + 1));
  std::string body;
  if (exponent >= significantDigits || exponent < -significantDigits) {
    std::string mantissa = TrimFraction(scientific.substr(0, scientific.find('E')));
    char expText[16];
    std::snprintf(expText, sizeof expText, "E%c%02d", exponent < 0 ? '-' : '+', std::abs(exponent));
    body = mantissa + expText;
  } else {
    const int decimals = std::max(0, significantDigits - 1 - exponent);
    std::snprintf(buffer, sizeof buffer, "%.*f", decimals, std::fabs(value));
    body = TrimFraction(buffer);
    if (body.size() > 1 && body[0] == '0' && body[1] == '.') body.erase(0, 1);
  }
  return (value < 0 ? "-" : " ") + body;
}

}  // namespace

int16_t ToInt16(double value) { return RoundToInteger<int16_t>(value, "16-bit integer"); }

int32_t ToInt32(double value) { return RoundToInteger<int32_t>(value, "32-bit integer"); }

double LeadingNumber(std::string_view text) {
  const std::string s = WithoutBlanks(text);
  std::size_t i = 0;
  if (i < s.size() && (s[i] == '+' || s[i] == '-')) ++i;
  const std::size_t intStart = i;
  i = SkipDigits(s, i);
  bool haveDigits = i > intStart;
  if (i < s.size() && s[i] == '.') {
    const std::size_t fracStart = i + 1;
    const std::size_t fracEnd = SkipDigits(s, fracStart);
    haveDigits = haveDigits || fracEnd > fracStart;
    i = fracEnd;
  }
  if (!haveDigits) return 0.0;
  std::string number = s.substr(0, i);
  if (i < s.size() && (s[i] == 'E' || s[i] == 'e' || s[i] == 'D' || s[i] == 'd')) {
    std::size_t j = i + 1;
    if (j < s.size() && (s[j] == '+' || s[j] == '-')) ++j;
    const std::size_t expEnd = SkipDigits(s, j);
    if (expEnd > j) number += "E" + s.substr(i + 1, expEnd - i - 1);
  }
  const double value = std::strtod(number.c_str(), nullptr);
  if (std::isinf(value)) throw OverflowFault("Overflow: the number \"" + std::string(text) + "\" is too large");
  return value;
}

std::string NumberText(double value) { return GeneralNumberText(value, 15); }

std::string NumberText(int64_t value) { return (value < 0 ? "" : " ") + std::to_string(value); }

std::string SingleNumberText(float value) { return GeneralNumberText(value, 7); }

std::string HexText(int64_t value) {
  char buffer[32];
  if (value < 0) {
    std::snprintf(buffer, sizeof buffer, "%X", static_cast<uint32_t>(static_cast<int32_t>(value)));
  } else {
    std::snprintf(buffer, sizeof buffer, "%llX", static_cast<unsigned long long>(value));
  }
  return buffer;
}

int HexDigitValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

int64_t LeadingHexValue(std::string_view text) {
  uint64_t value = 0;
  for (char c : text) {
    const int digit = HexDigitValue(c);
    if (digit < 0) break;
    value = value << 4 | static_cast<uint64_t>(digit);
  }
  return static_cast<int64_t>(value);
}

std::string FormatWithPicture(double value, std::string_view picture) {
  const std::size_t point = picture.find('.');
  const std::string_view whole = picture.substr(0, point);
  const std::string_view fraction = point == std::string_view::npos ? std::string_view{} : picture.substr(point + 1);
  const int decimals = static_cast<int>(fraction.size());
  char buffer[512];
  std::snprintf(buffer, sizeof buffer, "%.*f", decimals, std::fabs(value));
  std::string digits(buffer);
  std::string intPart = digits.substr(0, digits.find('.'));
  std::string fracPart = decimals > 0 ? digits.substr(digits.find('.') + 1) : std::string{};

  // Whole digits: as many as the value needs, at least as many as the picture forces with "0".
  const std::size_t forcedWhole = whole.size() - std::min(whole.size(), whole.find('0'));
  if (intPart == "0" && forcedWhole == 0) intPart.clear();
  while (intPart.size() < forcedWhole) intPart.insert(0, "0");
  // Fraction digits: trailing "#" places drop their insignificant zeros.
  std::size_t keep = fracPart.size();
  while (keep > 0 && fraction[keep - 1] == '#' && fracPart[keep - 1] == '0') --keep;
  fracPart.resize(keep);

  std::string out = intPart;
  if (point != std::string_view::npos) out += "." + fracPart;
  const bool negative = value < 0 && out.find_first_not_of("0.") != std::string::npos;
  return (negative ? "-" : "") + out;
}

std::string Mid(std::string_view text, std::size_t start, std::size_t length) {
  if (start == 0 || start > text.size()) return {};
  return std::string(text.substr(start - 1, length));
}

}  // namespace dpm
