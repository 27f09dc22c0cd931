#pragma once

#include <string>

// The arithmetic of a calibration: from a reading to a new calibration word, the word's
// four hexadecimal digits, and the reading's text as counts. Everything is worked in single
// precision, as the meter's correction tables were made.
namespace dpm {

// The word just computed, as a number and as the four digits that go to the meter, and
// whether the correction ran past what the word can hold (the out-of-range line).
struct NewWord {
  float NewCal = 0;
  std::string NewCalHex;
  bool outOfRange = false;
};

// Unsigned form, 0 to 65535, clamped without a word.
void MakeHex(NewWord& word, float value);
// Signed form, -32768 to 32767 as its 16-bit two's complement, clamped without a word.
void MakeHex2(NewWord& word, float value);
// Holds NewCal to 0..65535 and says so when it had to.
void ChkLimits(NewWord& word);

// A gain correction: the reading is brought to the wanted reading by the range's factor.
// The limit check looks at the word as the previous computation left it, before the new
// value is stored, so that a gain correction never raises the out-of-range line itself.
void CalcFS(NewWord& word, float vDesired, float curRdg, float curCal, int sigCond, int listIndex);

// A zero correction by the rule of the conditioner; a result beyond the word's limits is
// clamped and raises the out-of-range line.
void CalcZero(NewWord& word, float posRdg, float curCal, int sigCond, int listIndex);

// The reading's text without its decimal point: "+12.345" becomes "+12345", "+80000."
// becomes "+80000"; a text without a point stays.
std::string RmvDP(const std::string& replyText);

// A calibration word as the meter reports it: its hexadecimal digits as a signed 16-bit
// number ("FFFF" is -1), made unsigned for a gain word.
float CalWordValue(const std::string& replyText, bool unsignedWord);

}  // namespace dpm
