#include "setup/setup_files.h"

#include <fstream>

#include "link/globals.h"
#include "link/image_access.h"
#include "link/startup.h"
#include "platform/file_writing.h"
#include "setup/default_image.h"
#include "setup/image_positions.h"

namespace dpm {
namespace {

constexpr std::size_t kOldImageLength = 120;
// What an old file lacks: revision 00, fetched, and the two custom characters.
constexpr const char* kOldFileSuffix = "0001000D";
// The same fields zeroed, as a 120-digit image is stored and sent.
constexpr const char* kOldImagePadding = "00000000";

enum class LineRead { Line, EndOfFile, TooLong };

// Reads the next line, ended by CR LF, by CR or LF alone, or by the end of the file.
LineRead NextLine(std::streambuf& in, std::string& line) {
  line.clear();
  using Traits = std::streambuf::traits_type;
  int c = in.sbumpc();
  if (Traits::eq_int_type(c, Traits::eof())) return LineRead::EndOfFile;
  for (; !Traits::eq_int_type(c, Traits::eof()); c = in.sbumpc()) {
    const char ch = Traits::to_char_type(c);
    if (ch == '\n') break;
    if (ch == '\r') {
      if (Traits::eq_int_type(in.sgetc(), Traits::to_int_type('\n'))) in.sbumpc();
      break;
    }
    if (line.size() == kMaxSetupLineLength) return LineRead::TooLong;
    line.push_back(ch);
  }
  return LineRead::Line;
}

}  // namespace

void DefaultData() {
  g.SetupImage = DefaultSetupImage(g.DefaultFirmwareRev);
  g.FirmwareRev = g.DefaultFirmwareRev;
  g.MeterKind.assign(1, '1');  // assign(): g++ 12 warns wrongly about "= \"1\"" here
}

std::optional<SetupFileContents> ReadSetupFile(const std::filesystem::path& path) {
  // A folder, a device or a pipe is no setup file; a pipe could wait for ever.
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
  std::string first;
  std::string second;
  try {
    std::ifstream file(path, std::ios::binary);
    if (!file) return std::nullopt;
    if (NextLine(*file.rdbuf(), first) != LineRead::Line) return std::nullopt;
    if (NextLine(*file.rdbuf(), second) != LineRead::Line) return std::nullopt;
  } catch (const std::exception&) {
    return std::nullopt;  // the file went away or could not be read
  }
  // Each line is one field, up to its first comma, as the settings file is read.
  return SetupFileContents{FirstFieldOf(first), FirstFieldOf(second)};
}

void ApplyFileVersion() {
  if (g.SetupImage.size() == kOldImageLength) {
    g.SetupImage += kOldFileSuffix;
  } else {
    g.FirmwareRev = ReadField(7, 0, kFirmwareRev);
    // Revision 0 is read as such but stored as 1.
    if (g.FirmwareRev == 0) ReplaceImageDigits(kFirmwareRev, "01");
    ReplaceImageDigits(kGetMarker, "01");
  }
}

bool LoadSetupFile(const std::filesystem::path& path) {
  std::optional<SetupFileContents> contents = ReadSetupFile(path);
  if (!contents) return false;
  g.SetupImage = std::move(contents->image);
  ApplyFileVersion();
  g.MeterKind = std::move(contents->meterKind);
  return true;
}

void PadOldImage() {
  if (g.SetupImage.size() == kOldImageLength) g.SetupImage += kOldImagePadding;
}

void SaveSetupFile(const std::filesystem::path& path) {
  PadOldImage();
  std::string text = g.SetupImage;
  text.append("\r\n").append(g.MeterKind).append("\r\n");
  WriteFileKeepingIt(path, text);
}

}  // namespace dpm
