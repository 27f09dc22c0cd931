#pragma once

#include <filesystem>
#include <optional>
#include <string>

// Setup files: two lines ended by CR LF, the setup image and the meter kind. There is no
// header; the version of a file shows only in the length of its first line.
namespace dpm {

// The default setup: the built-in image with the default firmware revision, EXTENDED.
void DefaultData();

struct SetupFileContents {
  std::string image;      // the first line
  std::string meterKind;  // the second line
};

// Longest line the reader takes; a longer one is not a setup file.
inline constexpr std::size_t kMaxSetupLineLength = 16 * 1024 * 1024;

// The two lines of a setup file, each up to its first comma; nothing when the file cannot
// be read, has no second line or a line beyond kMaxSetupLineLength.
std::optional<SetupFileContents> ReadSetupFile(const std::filesystem::path& path);

// Brings g.SetupImage, as read from a file, to the current layout and sets g.FirmwareRev
// from it. An old image of 120 digits gains the fields behind it; any other keeps its
// revision, with 0 stored as 1, and is marked as fetched.
void ApplyFileVersion();

// Loads a setup file into g.SetupImage and g.MeterKind; false, with nothing changed, when
// the file cannot be read.
bool LoadSetupFile(const std::filesystem::path& path);

// An image of exactly 120 digits is stored and sent with the fields behind it zeroed.
void PadOldImage();

// Writes g.SetupImage (padded by PadOldImage) and g.MeterKind into the file (links
// followed, permissions kept, never a half-written file where the folder allows a rename).
// A read-only file, a missing folder or a failed write is a FileFault.
void SaveSetupFile(const std::filesystem::path& path);

}  // namespace dpm
