#include "calibration/correction.h"

#include "calibration/range_tables.h"
#include "platform/numeric.h"

namespace dpm {
namespace {

constexpr float kUnsignedTop = 65535;
constexpr float kSignedTop = 32767;
constexpr float kSignedBottom = -32768;
// The load cell's zero words stop one short of the signed bottom.
constexpr float kLoadCellZeroBottom = -32767;

// The last four digits of the value rounded to an integer, in upper-case hexadecimal; a
// negative value gives its two's complement.
std::string FourDigits(float value) {
  const std::string digits = "000" + HexText(ToInt32(value));
  return digits.substr(digits.size() - 4);
}

// The zero correction of each conditioner, in the order its rule is written.
float ZeroCorrected(float posRdg, float curCal, int sigCond, int listIndex) {
  switch (sigCond) {
    case kTemperatureConditioner:
      return curCal - posRdg * 113.0f / 10.0f;
    case kDcConditioner:
      return curCal - posRdg * 123.0f / 10.0f;
    case kAcConditioner:
      return curCal + 30.0f * (2000.0f - posRdg);
    case kLoadCellConditioner: {
      const float factor = listIndex == 0 ? 47.0f : 122.0f;
      return curCal - posRdg * factor / 10.0f;
    }
    default:
      return curCal;
  }
}

}  // namespace

void MakeHex(NewWord& word, float value) {
  if (value >= kUnsignedTop) value = kUnsignedTop;
  if (value < 0) value = 0;
  word.NewCal = value;
  word.NewCalHex = FourDigits(value);
}

void MakeHex2(NewWord& word, float value) {
  if (value > kSignedTop) value = kSignedTop;
  if (value < kSignedBottom) value = kSignedBottom;
  word.NewCal = value;
  word.NewCalHex = FourDigits(value);
}

void ChkLimits(NewWord& word) {
  if (word.NewCal > kUnsignedTop) {
    word.NewCal = kUnsignedTop;
    word.outOfRange = true;
  }
  if (word.NewCal < 0) {
    word.NewCal = 0;
    word.outOfRange = true;
  }
}

void CalcFS(NewWord& word, float vDesired, float curRdg, float curCal, int sigCond, int listIndex) {
  const float x = (vDesired - curRdg) * GainFactor(sigCond, listIndex) + curCal;
  ChkLimits(word);
  MakeHex(word, x);
}

void CalcZero(NewWord& word, float posRdg, float curCal, int sigCond, int listIndex) {
  word.NewCal = ZeroCorrected(posRdg, curCal, sigCond, listIndex);
  const float bottom = sigCond == kLoadCellConditioner ? kLoadCellZeroBottom : kSignedBottom;
  if (word.NewCal > kSignedTop) {
    word.NewCal = kSignedTop;
    word.outOfRange = true;
  }
  if (word.NewCal < bottom) {
    word.NewCal = bottom;
    word.outOfRange = true;
  }
  MakeHex2(word, word.NewCal);
}

std::string RmvDP(const std::string& replyText) {
  const std::size_t point = replyText.find('.');
  if (point == std::string::npos) return replyText;
  return replyText.substr(0, point) + replyText.substr(point + 1);
}

float CalWordValue(const std::string& replyText, bool unsignedWord) {
  int64_t value = LeadingHexValue(replyText);
  // Four digits read as a signed 16-bit number; more digits are a long number as they are.
  if (value >= 0x8000 && value <= 0xFFFF) value -= 0x10000;
  if (unsignedWord && value < 0) value += 65536;
  return static_cast<float>(value);
}

}  // namespace dpm
