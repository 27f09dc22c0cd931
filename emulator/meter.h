#pragma once

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "emulator/reading_model.h"
#include "emulator/setup_memory.h"

// A digital panel meter as it looks from its serial port: setup memory, registers, the
// command interpreter, readings of an applied input and the continuous output. The line
// itself (timing, echo, pacing) is MeterPort's business.
namespace dpm::emulator {

struct MeterOptions {
  // The plug-in conditioner; without it, the one the setup's mode belongs to.
  std::optional<Conditioner> conditioner{};
  // EXTENDED or BASIC: only an EXTENDED meter owns up to its extended features.
  bool extended = true;
  // Written into the setup when given: firmware revision (0-255), address (0-31), baud
  // rate index (0-6).
  std::optional<int> firmwareRev{};
  std::optional<int> address{};
  std::optional<int> baudIndex{};
  // The option register: boards fitted and the lockout jumper. Without it, as the setup says.
  std::optional<uint8_t> optionRegister{};
  // The data sheet of a load cell: the hardware that reads it, and a sheet to read.
  bool tedsHardware = false;
  bool tedsPresent = false;
  std::string dataSheet{};  // 116 hexadecimal digits; empty gives a sample sheet
  uint32_t noiseSeed = 1;
  // Every calibration word of the board a little off, so that the meter needs calibrating.
  bool miscalibrate = false;
  // Words put into memory after all else, as (address, value): calibration words of one's
  // own choosing.
  std::vector<std::pair<int, uint16_t>> words{};
};

class Meter {
 public:
  // `image` is a setup image of 120, 128 or 132 digits; empty gives the built-in default.
  explicit Meter(MeterOptions options = {}, std::string_view image = {});

  // What became of one command line (without its CR).
  struct Answer {
    enum class Status { Done, NotForMe, Garbage };
    Status status = Status::Garbage;
    std::string reply;  // with its CR; empty when the command has none
    bool suffixZ = false;
  };
  Answer Execute(std::string_view line);

  // Setup memory.
  SetupMemory& Memory() { return memory_; }
  const SetupMemory& Memory() const { return memory_; }
  std::string Image(int digits = SetupMemory::kFullImageDigits) const { return memory_.Image(digits); }
  char AddressChar() const;
  // The baud rate the setup asks for, 0 when the field holds no rate.
  int SetupBaud() const;

  Conditioner FittedConditioner() const { return conditioner_; }
  const MeterOptions& Options() const { return options_; }
  // Two hexadecimal digits of a register ("G1" + address); an unknown register reads 00.
  std::string Register(int address) const;
  void SetDataSheet(std::string_view hexDigits);

  // The signal at the input, in the units of the selected range, and the spread of the
  // noise on it (one standard deviation, same units).
  void ApplyInput(double value);
  double Input() const { return input_; }
  void SetNoise(double sigma) { noise_ = sigma; }
  double Noise() const { return noise_; }

  // A fresh reading of the input, which also feeds the peak.
  DisplayReading TakeReading();
  std::string ReadingText(const DisplayReading& reading) const;
  std::optional<DisplayReading> Peak() const { return peak_; }
  const std::string& RemoteText() const { return remoteText_; }

  // Continuous output.
  bool Streaming() const { return streaming_; }
  void SetStreaming(bool on) { streaming_ = on; }
  // Milliseconds between records as the setup's output rate says; 0 means as fast as
  // the line carries them.
  uint32_t RecordIntervalMs() const;
  // The next record: a fresh reading framed as the setup says.
  std::string NextRecord();
  std::string Frame(const std::string& value) const;

 private:
  bool Dispatch(char letter, std::string_view rest, std::string& reply);
  std::string ReadWords(std::string_view body) const;
  void WriteWords(std::string_view body);
  std::string ModeRangeRegister() const;
  std::string KindRegister() const;
  std::string DataSheetStatus() const;
  void OperatingCommand(char which);
  void FitConditioner();
  void InstallCalibration();

  MeterOptions options_;
  SetupMemory memory_;
  Conditioner conditioner_ = Conditioner::Dc;
  uint8_t optionRegister_ = 0;
  double input_ = 0.0;
  double noise_ = 0.0;
  std::mt19937 random_;
  std::optional<DisplayReading> peak_;
  std::string remoteText_;
  bool streaming_ = false;
};

// The character of an address or count 0 to 31: "0" to "9", then "A" to "V"; and back,
// -1 for a character outside the set.
char DigitSetChar(int value);
int DigitSetValue(char c);

}  // namespace dpm::emulator
