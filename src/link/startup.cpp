#include "link/startup.h"

#include <fstream>
#include <sstream>

#include "link/globals.h"
#include "platform/faults.h"
#include "platform/numeric.h"
#include "platform/serial.h"
#include "platform/services.h"

namespace dpm {
namespace {

constexpr const char* kSettingsFile = "Settings.SSS";

std::string ReadSettingsFile() {
  const auto where = std::filesystem::current_path().string();
  std::error_code error;
  if (!std::filesystem::exists(kSettingsFile, error)) {
    throw FileFault("File not found: \"" + std::string(kSettingsFile) + "\" in " + where);
  }
  if (!std::filesystem::is_regular_file(kSettingsFile, error)) {
    throw FileFault("Cannot read \"" + std::string(kSettingsFile) + "\" in " + where + ": it is not a file");
  }
  std::ifstream file(kSettingsFile, std::ios::binary);
  if (!file) throw FileFault("Cannot open \"" + std::string(kSettingsFile) + "\" in " + where + " for reading");
  std::ostringstream contents;
  contents << file.rdbuf();
  if (file.bad()) throw FileFault("Cannot read \"" + std::string(kSettingsFile) + "\"");
  const std::string text = contents.str();
  if (text.empty()) throw FileFault("Input past end of file: \"" + std::string(kSettingsFile) + "\" is empty");
  return text;
}

int16_t DigitAt(const std::string& text, std::size_t position, std::size_t length = 1) {
  return ToInt16(LeadingNumber(Mid(text, position, length)));
}

// The place of the baud character in "0123456", less 1. A position past the end of a
// short text is empty, which counts as the first place, as every other empty position
// counts 0; any other character is outside the baud table.
int16_t BaudIndexOf(const std::string& character) {
  if (character.empty()) return 0;
  const std::size_t place = std::string("0123456").find(character);
  if (place == std::string::npos) {
    throw IndexFault("Subscript out of range: baud rate character \"" + character + "\" in \"" + kSettingsFile +
                     "\" is not one of 0123456");
  }
  return static_cast<int16_t>(place);
}

// "A" and later count from 10 ("A" 10, "V" 31), digits from 0. An empty address (a very
// short settings text) counts 0.
int16_t AddressNumberOf(const std::string& address) {
  if (address.empty()) return 0;
  const int code = static_cast<unsigned char>(address[0]);
  return static_cast<int16_t>(code >= 'A' ? code - 55 : code - 48);
}

int16_t CharTimeFor(int16_t baudIndex) {
  return ToInt16(10000.0 / LeadingNumber(BaudTable[static_cast<std::size_t>(baudIndex)]));
}

}  // namespace

std::string RepairLinkSettings(std::string text) {
  if (text.size() == 17) text += "10000";
  if (text.size() < 22) text = (text + "000000").substr(0, 22);
  return text;
}

std::string FirstFieldOf(const std::string& fileText) {
  std::size_t i = fileText.find_first_not_of(" \t");
  if (i == std::string::npos) return {};
  if (fileText[i] == '"') {
    const std::size_t close = fileText.find('"', i + 1);
    return fileText.substr(i + 1, close == std::string::npos ? std::string::npos : close - i - 1);
  }
  const std::size_t end = fileText.find_first_of(",\r\n", i);
  std::string field = fileText.substr(i, end == std::string::npos ? std::string::npos : end - i);
  return field;
}

void ApplyLinkSettings(const std::string& linkSettings) {
  g.LinkSettings = linkSettings;
  g.AppClass = DigitAt(linkSettings, 1);
  if (g.AppClass == 4 || g.AppClass >= 8) g.AppClass = 0;
  g.ComPortNumber = DigitAt(linkSettings, 3, 2);
  g.BaudIndex = BaudIndexOf(Mid(linkSettings, 2, 1));
  g.MeterAddress = Mid(linkSettings, 8, 1);
  g.MeterAddressNumber = AddressNumberOf(g.MeterAddress);
  g.HalfDuplexFlag = DigitAt(linkSettings, 12);
  g.LinkEnabled = DigitAt(linkSettings, 16);
}

void OpenMeterLink() {
  SerialPort& link = *Platform().meterLink;
  if (link.PortOpen()) link.SetPortOpen(false);
  link.SetCommPort(g.ComPortNumber);
  link.SetSettings(std::string(BaudTable.at(static_cast<std::size_t>(g.BaudIndex))) + ",n,8,1");
  link.SetRTSEnable(true);
  link.SetPortOpen(true);
  link.SetDTREnable(true);
}

void Main(const std::filesystem::path& programFolder, const std::function<void()>& showMainMenu) {
  g.ImageLoaded = 0;
  g.DefaultFirmwareRev = 4;
  g.FirmwareRev = 0;
  std::filesystem::current_path(programFolder);

  ApplyLinkSettings(RepairLinkSettings(FirstFieldOf(ReadSettingsFile())));
  if (g.LinkEnabled == 1) OpenMeterLink();
  g.CharTime = CharTimeFor(g.BaudIndex);
  g.FirmwareRev = DigitAt(g.LinkSettings, 13, 3);
  g.MeterTitle = " DPM";
  if (g.AppClass > 4) g.MeterTitle += " Transmitter";
  g.CalibSetting = DigitAt(g.LinkSettings, 17);
  g.SetupImage = std::string(128, '0');

  if (showMainMenu) showMainMenu();
}

}  // namespace dpm
