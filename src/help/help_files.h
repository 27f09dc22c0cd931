#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

// The help items: texts kept in pairs of files in the program's folder, found by a help
// context number. The two leading digits of the number pick the pair ("Help13.S10" and
// "Help13.R10" for 1302), the two trailing digits the record of the index file.
//
// The index file (.R10) holds records of 6 bytes, numbered from 1: the position of the
// item's first character in the text file, counted from 1, as a 32-bit little-endian
// integer, then the item's length as a 16-bit little-endian integer. The text file (.S10)
// holds the items one behind the other, one byte a character; "$" ends a line.
namespace dpm {

inline constexpr std::size_t kHelpRecordSize = 6;
inline constexpr char kHelpLineEnd = '$';

// What reading an item gave: the text, or why there is none.
struct HelpItem {
  std::string text;
  // Empty when the item was read; otherwise a short message for the user that names the
  // help file and the context.
  std::string fault;

  bool Read() const { return fault.empty(); }
};

// "Help" and the last two characters of the file number as the program writes numbers
// (with a leading blank when not negative), then the extension: "Help13.S10", "Help 0.R10".
std::string HelpFileName(int fileNumber, const std::string& extension);

// Reads the item of `context` from the files in `folder`. A missing file, a record beyond
// the end of the index, a record that holds no item, or an item that runs past the end of
// the text file gives a fault instead of a text; so does context 0, which no field stores.
HelpItem ReadHelpItem(int context, const std::filesystem::path& folder);

// Reads the item of `context` from the folder of the help files (see HelpFolder).
HelpItem ReadHelpItem(int context);

// The folder of the help files: the folder of the running program, where the build puts
// them; another folder while one is set with SetHelpFolder (tests).
std::filesystem::path HelpFolder();
void SetHelpFolder(std::filesystem::path folder);

}  // namespace dpm
