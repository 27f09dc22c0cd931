#include "emulator/meter.h"

#include <array>

#include "emulator/calibration_model.h"
#include "emulator/data_sheet.h"
#include "platform/numeric.h"
#include "setup/default_image.h"
#include "setup/image_positions.h"

namespace dpm::emulator {
namespace {

constexpr int kDefaultRevision = 4;

// Registers.
constexpr int kModeRangeRegister = 0x2D;
constexpr int kOptionRegister = 0x30;
constexpr int kKindRegister = 0xDE;
constexpr int kDataSheetStatusRegister = 0x7F;

// The word whose first digit the kind register looks at.
constexpr int kProbeWord = 0x15;

// The highest word of the setup image's main run.
constexpr int kLastImageWord = 0x1D;

constexpr std::array<int, 7> kBaudRates = {300, 600, 1200, 2400, 4800, 9600, 19200};

// The converter integrates over three mains cycles.
constexpr uint32_t kReadPeriodMs60Hz = 50;
constexpr uint32_t kReadPeriodMs50Hz = 60;

// The conditioner whose board serves a mode code, if any.
std::optional<Conditioner> ConditionerOfModeCode(int code) {
  switch (code) {
    case 4:
    case 5:
      return Conditioner::Temperature;
    case 6:
    case 7:
    case 10:
      return Conditioner::Dc;
    case 8:
    case 9:
      return Conditioner::TrueRms;
    case 12:
    case 13:
      return Conditioner::LoadCell;
    default:
      return std::nullopt;
  }
}

// The first mode of each conditioner, and its code in the setup's conditioner field.
constexpr std::array<int, 4> kFirstModeCode = {4, 6, 8, 12};
constexpr std::array<int, 4> kSigCondCodeOf = {1, 1, 2, 3};

std::string TwoHex(int value) { return WordText(static_cast<uint16_t>(value & 0xFF)).substr(2); }

bool AllHex(std::string_view text) {
  for (char c : text)
    if (HexDigitValue(c) < 0) return false;
  return true;
}

}  // namespace

char DigitSetChar(int value) {
  if (value < 0 || value > 31) return '?';
  return static_cast<char>(value < 10 ? '0' + value : 'A' + value - 10);
}

int DigitSetValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'V') return c - 'A' + 10;
  return -1;
}

Meter::Meter(MeterOptions options, std::string_view image) : options_(std::move(options)), random_(options_.noiseSeed) {
  memory_.LoadImage(DefaultSetupImage(kDefaultRevision));
  memory_.LoadImage(image);
  if (options_.firmwareRev) memory_.SetByte(kFirmwareRev, static_cast<uint8_t>(*options_.firmwareRev));
  if (options_.address)
    memory_.SetByte(kSerialA, static_cast<uint8_t>((memory_.Byte(kSerialA) & 0xE0) | (*options_.address & 0x1F)));
  if (options_.baudIndex)
    memory_.SetByte(kSerialB, static_cast<uint8_t>((memory_.Byte(kSerialB) & 0x8F) | ((*options_.baudIndex & 7) << 4)));
  FitConditioner();
  InstallCalibration();
  optionRegister_ = options_.optionRegister.value_or(memory_.Byte(kOptionByte));
  if (options_.tedsPresent) SetDataSheet(options_.dataSheet.empty() ? SampleDataSheet() : options_.dataSheet);
}

// A setup made for another board is turned to the first mode of the board that is
// fitted, since the meter can only measure with what it carries.
void Meter::FitConditioner() {
  const int modeCode = memory_.Bits(7, 4, kModeRangeByte);
  const auto ofSetup = ConditionerOfModeCode(modeCode);
  conditioner_ = options_.conditioner.value_or(ofSetup.value_or(Conditioner::Dc));
  if (ofSetup == conditioner_) return;
  const auto index = static_cast<std::size_t>(conditioner_);
  memory_.SetByte(kModeRangeByte, static_cast<uint8_t>(kFirstModeCode[index] << 4));
  memory_.SetByte(kSigCondCode, static_cast<uint8_t>((memory_.Byte(kSigCondCode) & 0xFC) | kSigCondCodeOf[index]));
}

// The board's calibration words. Those beyond the setup image hold the factory values. A
// temperature board keeps its cold junction in words the image holds; a zero gain there
// comes from a setup made for another board, and the factory value stands instead.
void Meter::InstallCalibration() {
  for (const CalibrationWord& word : CalibrationWordsOf(conditioner_)) {
    const bool inImage = word.address <= kLastImageWord;
    if (!inImage || (word.role == WordRole::ColdJunctionGain && memory_.Word(word.address) == 0))
      memory_.SetWord(word.address, word.factory);
    if (options_.miscalibrate) memory_.SetWord(word.address, MiscalibratedWord(word));
  }
  for (const auto& [address, value] : options_.words) memory_.SetWord(address, value);
}

void Meter::SetDataSheet(std::string_view hexDigits) {
  for (int i = 0; i < kDataSheetWords; ++i) {
    const std::size_t at = static_cast<std::size_t>(4 * i);
    const std::string_view digits = at < hexDigits.size() ? hexDigits.substr(at, 4) : std::string_view{};
    memory_.SetWord(kDataSheetHighAddress - i, static_cast<uint16_t>(LeadingHexValue(digits)));
  }
}

char Meter::AddressChar() const { return DigitSetChar(memory_.Bits(4, 0, kSerialA)); }

int Meter::SetupBaud() const {
  const auto index = static_cast<std::size_t>(memory_.Bits(6, 4, kSerialB));
  return index < kBaudRates.size() ? kBaudRates[index] : 0;
}

Meter::Answer Meter::Execute(std::string_view line) {
  Answer answer;
  const std::size_t star = line.find('*');
  if (star == std::string_view::npos || line.size() < star + 3) return answer;
  line.remove_prefix(star + 1);
  if (line.front() != AddressChar()) {
    answer.status = DigitSetValue(line.front()) >= 0 ? Answer::Status::NotForMe : Answer::Status::Garbage;
    return answer;
  }
  std::string_view body = line.substr(1);
  const char letter = body.front();
  if (letter != 'H' && body.size() > 1 && body.back() == 'Z') {
    answer.suffixZ = true;
    body.remove_suffix(1);
  }
  answer.status = Dispatch(letter, body.substr(1), answer.reply) ? Answer::Status::Done : Answer::Status::Garbage;
  return answer;
}

// Carries out one command body; false when the body is no command of the meter.
bool Meter::Dispatch(char letter, std::string_view rest, std::string& reply) {
  switch (letter) {
    case 'X':
      reply = ReadWords(rest);
      return !reply.empty();
    case 'W':
      if (rest.size() < 3 || DigitSetValue(rest[0]) < 0 || !AllHex(rest.substr(1))) return false;
      WriteWords(rest);
      return true;
    case 'G':
    case 'R': {
      if (rest.size() != 3 || rest[0] != '1' || !AllHex(rest.substr(1))) return false;
      const int address = static_cast<int>(LeadingHexValue(rest.substr(1)));
      if (letter == 'G')
        reply = Register(address);
      else
        reply = address == kDataSheetStatusRegister ? DataSheetStatus() : "00";
      reply += '\r';
      return true;
    }
    case 'A':
      if (rest != "0" && rest != "1") return false;
      streaming_ = rest == "0";
      return true;
    case 'B':
      if (rest != "1" && rest != "2") return false;
      if (rest == "1" || !peak_) reply = ReadingText(TakeReading());
      if (rest == "2") reply = ReadingText(*peak_);
      reply += '\r';
      return true;
    case 'C':
      if (rest.size() != 1 || rest[0] < '0' || rest[0] > '4') return false;
      OperatingCommand(rest[0]);
      return true;
    case 'H':
      remoteText_ = rest;
      return true;
    default:
      return false;
  }
}

// "X", a count of words, a word address: the words from the address downward, four
// digits each.
std::string Meter::ReadWords(std::string_view body) const {
  if (body.size() != 3 || DigitSetValue(body[0]) < 0 || !AllHex(body.substr(1))) return {};
  const int count = DigitSetValue(body[0]);
  const int address = static_cast<int>(LeadingHexValue(body.substr(1)));
  std::string reply;
  for (int i = 0; i < count; ++i) reply += WordText(memory_.Word(address - i));
  return reply + '\r';
}

// "W", a count, a word address, four digits a word: written from the address downward.
// Only whole words are taken; data for fewer words than the count writes fewer.
void Meter::WriteWords(std::string_view body) {
  const int count = DigitSetValue(body[0]);
  const int address = static_cast<int>(LeadingHexValue(body.substr(1, 2)));
  const std::string_view data = body.substr(3);
  for (int i = 0; i < count && static_cast<std::size_t>(4 * i + 4) <= data.size(); ++i)
    memory_.SetWord(address - i,
                    static_cast<uint16_t>(LeadingHexValue(data.substr(static_cast<std::size_t>(4 * i), 4))));
}

std::string Meter::Register(int address) const {
  switch (address) {
    case kOptionRegister:
      return TwoHex(optionRegister_);
    case kModeRangeRegister:
      return ModeRangeRegister();
    case kKindRegister:
      return KindRegister();
    default:
      return "00";
  }
}

// The mode and range in force, as long as the fitted board serves them; otherwise the
// board's own first mode.
std::string Meter::ModeRangeRegister() const {
  const int byte = memory_.Byte(kModeRangeByte);
  if (ConditionerOfModeCode(byte >> 4) == conditioner_) return TwoHex(byte);
  return TwoHex(kFirstModeCode[static_cast<std::size_t>(conditioner_)] << 4);
}

// Only an EXTENDED meter keeps the extended bit of word 15, and this register shows it.
std::string Meter::KindRegister() const {
  const bool extendedBitSet = (memory_.Word(kProbeWord) >> 12) == 1;
  return options_.extended && extendedBitSet ? "10" : "00";
}

// Decimal: bit 1 the data sheet hardware, bit 0 a data sheet present. Two digits, since
// every reply but a reading comes in digit pairs.
std::string Meter::DataSheetStatus() const {
  const int status = (options_.tedsHardware ? 2 : 0) + (options_.tedsHardware && options_.tedsPresent ? 1 : 0);
  return "0" + std::to_string(status);
}

void Meter::OperatingCommand(char which) {
  switch (which) {
    case '0':  // meter reset
      peak_.reset();
      remoteText_.clear();
      break;
    case '1':  // function reset
    case '3':  // peak reset
      peak_.reset();
      break;
    case '4':  // remote display reset
      remoteText_.clear();
      break;
    default:  // latched alarms: the emulator keeps no alarms
      break;
  }
}

void Meter::ApplyInput(double value) {
  input_ = value;
  TakeReading();
}

DisplayReading Meter::TakeReading() {
  double signal = input_;
  if (noise_ > 0.0) signal += std::normal_distribution<double>(0.0, noise_)(random_);
  const DisplayReading reading = ReadingFor(signal, memory_, conditioner_);
  const auto above = [](const DisplayReading& a, const DisplayReading& b) {
    if (a.overload != b.overload) return a.overload ? a.counts > 0 : b.counts < 0;
    return a.counts > b.counts;
  };
  if (!peak_ || above(reading, *peak_)) peak_ = reading;
  return reading;
}

std::string Meter::ReadingText(const DisplayReading& reading) const {
  return DisplayText(reading, DecodeInputFacts(memory_).displayDp);
}

uint32_t Meter::RecordIntervalMs() const {
  const int outputRate = memory_.Bits(3, 0, kSerialB);
  if (outputRate == 0) return 0;
  const uint32_t readPeriod = memory_.Bits(5, 5, kDisplayByte) ? kReadPeriodMs50Hz : kReadPeriodMs60Hz;
  return readPeriod << (std::min(outputRate, 9) - 1);
}

std::string Meter::NextRecord() { return Frame(ReadingText(TakeReading())); }

// A record ends with CR, and LF after it when the setup asks for one (the high resolution
// bit, which the program reads as "records end in LF", or the LF flag of the serial
// setup). From revision 1 on, start and stop characters of the setup may frame it instead.
std::string Meter::Frame(const std::string& value) const {
  const bool transmitChars = memory_.Byte(kFirmwareRev) > 0 && memory_.Bits(4, 4, kDisplayByte) == 1;
  const char start = static_cast<char>(memory_.Byte(kStartChar));
  const char stop = static_cast<char>(memory_.Byte(kStopChar));
  if (transmitChars && (start != 0 || stop != 0)) {
    std::string record;
    if (start != 0) record += start;
    record += value;
    if (stop != 0) record += stop;
    return record;
  }
  const bool lineFeed = memory_.Bits(7, 7, kDisplayByte) == 1 || memory_.Bits(7, 7, kSerialA) == 1;
  return value + (lineFeed ? "\r\n" : "\r");
}

}  // namespace dpm::emulator
