#pragma once

#include <filesystem>
#include <string>
#include <vector>

// A setup as text: every field of the image by name with the text the setup pages show
// for it, and the fields that differ between two setups.
namespace dpm::cli {

struct FieldLine {
  std::string name;
  std::string text;
};

struct FieldChange {
  std::string name;
  std::string before;
  std::string after;
};

// Loads a setup file into g.SetupImage and g.MeterKind, as Open Setup does, after making
// sure that it is one: a first line of 120, 128 or 132 upper-case hexadecimal digits and a
// second line "0" or "1". Anything else is a UsageError that names the file and the fault.
void LoadCheckedSetupFile(const std::filesystem::path& path);

// Every field of the setup in hand, in the order of the image: the meter kind first, then
// the named fields, and the bits no screen shows under the name of their byte
// ("Byte13", "Byte33.7", "Byte9.7-5").
std::vector<FieldLine> ListFields();

// The fields whose text differs, in the order of the image.
std::vector<FieldChange> DiffFields(const std::vector<FieldLine>& before, const std::vector<FieldLine>& after);

// The lines of a listing, the texts in a column of their own.
std::vector<std::string> FormatFields(const std::vector<FieldLine>& fields);
std::vector<std::string> FormatChanges(const std::vector<FieldChange>& changes);

}  // namespace dpm::cli
