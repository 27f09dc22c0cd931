#include "cli/setup_listing.h"

#include <algorithm>
#include <map>
#include <optional>

#include "cli/cli_options.h"
#include "link/globals.h"
#include "pages/page_fields.h"
#include "setup/image_map.h"
#include "setup/input_facts.h"
#include "setup/setup_files.h"

namespace dpm::cli {
namespace {

std::string Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

// The lists that put two columns into one entry (what input A and input B do) line them up
// with runs of blanks; one line shows them as "A / B".
std::string OneLine(std::string_view text) {
  std::string line;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t run =
        text.find_first_not_of(' ', i) == std::string_view::npos ? text.size() - i : text.find_first_not_of(' ', i) - i;
    if (run >= 3) {
      line += " / ";
      i += run;
    } else if (run > 0) {
      line.append(run, ' ');
      i += run;
    } else {
      line += text[i++];
    }
  }
  return Trimmed(line);
}

std::string ListText(std::span<const std::string_view> texts, int index) {
  if (index < 0 || static_cast<std::size_t>(index) >= texts.size()) return std::to_string(index);
  return OneLine(texts[static_cast<std::size_t>(index)]);
}

std::string LockoutText(const ImageField& field) {
  std::string text;
  for (const LockoutBit& lock : LockoutBits) {
    if (lock.position != field.position || lock.bit < field.lo || lock.bit > field.hi) continue;
    if (ReadField(lock.bit, lock.bit, lock.position) == 0) continue;
    text += (text.empty() ? "" : "; ") + std::string(lock.caption);
  }
  return text.empty() ? "none" : text;
}

std::string BitsText(const ImageField& field) {
  const int value = ReadFieldValue(field);
  if (field.name.starts_with("Lockouts")) return LockoutText(field);
  if (field.name == "SigCondCode") return std::string(ConditionerNames[static_cast<std::size_t>(g.SigCond)]);
  if (field.name == "ModeCode") {
    for (const InputModeInfo& mode : InputModes)
      if (mode.modeCode == value) return std::string(mode.text);
    return "code " + std::to_string(value);
  }
  if (field.name == "Range") {
    const std::vector<std::string> ranges =
        RangeTexts(InputModeOfCode(ReadField(7, 4, FindField("ModeCode").position)));
    return value < static_cast<int>(ranges.size()) ? Trimmed(ranges[static_cast<std::size_t>(value)])
                                                   : std::to_string(value);
  }
  if (field.name == "Resolution") return ListText(ResolutionTexts(g.SigCond), value);
  if (field.texts.empty()) return CheckBoxBit(field, value) == 1 ? "On" : "Off";
  return ListText(field.texts, value - field.firstValue);
}

std::string ByteText(const ImageField& field) {
  const int16_t value = ReadFieldValue(field);
  // The custom start and stop characters are shown with their names.
  if (field.name.ends_with("Char") && value < 0x80)
    return std::to_string(value) + " (" + Trimmed(CharName(value)) + ")";
  return std::to_string(value);
}

std::string CarriedName(const ImageField& field) {
  std::string name = "Byte" + std::to_string(field.position);
  if (field.hi == 7 && field.lo == 0) return name;
  name += "." + std::to_string(field.hi);
  if (field.lo != field.hi) name += "-" + std::to_string(field.lo);
  return name;
}

// A whole byte as its two digits, a part of one as its bits, highest first.
std::string CarriedText(const ImageField& field) {
  const int value = ReadFieldValue(field);
  if (field.hi == 7 && field.lo == 0) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    return {kDigits[(value >> 4) & 0xF], kDigits[value & 0xF]};
  }
  std::string bits;
  for (int bit = field.hi - field.lo; bit >= 0; --bit) bits += ((value >> bit) & 1) ? '1' : '0';
  return bits;
}

// Two names for the same bit: the revision decides which one the meter means.
bool Shadowed(const ImageField& field) {
  if (field.name == "LeadingZeros") return !LeadingZerosOffered();
  if (field.name == "TranChars") return !TranCharsOffered();
  return false;
}

bool IsUpperHex(char c) { return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F'); }

}  // namespace

void LoadCheckedSetupFile(const std::filesystem::path& path) {
  const std::string name = path.string();
  std::error_code error;
  if (!std::filesystem::exists(path, error)) throw UsageError(name + ": no such file");
  const std::optional<SetupFileContents> contents = ReadSetupFile(path);
  if (!contents) throw UsageError(name + ": not a setup file (it needs two lines, the setup and the meter kind)");
  const std::string& image = contents->image;
  if (image.size() != 120 && image.size() != 128 && image.size() != 132) {
    throw UsageError(name + ": the setup on line 1 has " + std::to_string(image.size()) +
                     " characters; a setup has 120, 128 or 132 hexadecimal digits");
  }
  const auto bad = std::find_if_not(image.begin(), image.end(), IsUpperHex);
  if (bad != image.end()) {
    throw UsageError(name + ": character " + std::to_string(bad - image.begin() + 1) +
                     " of the setup on line 1 is not a hexadecimal digit 0-9, A-F");
  }
  if (contents->meterKind != "0" && contents->meterKind != "1")
    throw UsageError(name + ": line 2 should be the meter kind, 0 (BASIC) or 1 (EXTENDED)");
  if (!LoadSetupFile(path)) throw UsageError(name + ": the file changed while it was read");
}

std::vector<FieldLine> ListFields() {
  DeriveInputFacts();
  std::vector<FieldLine> lines;
  lines.push_back({"MeterKind", g.MeterKind == "1" ? "EXTENDED" : "BASIC"});
  for (const ImageField& field : ImageFields()) {
    switch (field.kind) {
      case FieldKind::Value:
        lines.push_back({std::string(field.name), Trimmed(ValueFieldText(field))});
        break;
      case FieldKind::Byte:
        lines.push_back({std::string(field.name), ByteText(field)});
        break;
      case FieldKind::Carried:
        lines.push_back({CarriedName(field), CarriedText(field)});
        break;
      case FieldKind::Bits:
        if (!Shadowed(field)) lines.push_back({std::string(field.name), BitsText(field)});
        break;
    }
  }
  return lines;
}

std::vector<FieldChange> DiffFields(const std::vector<FieldLine>& before, const std::vector<FieldLine>& after) {
  std::map<std::string, std::string> afterTexts;
  for (const FieldLine& line : after) afterTexts[line.name] = line.text;
  std::vector<FieldChange> changes;
  for (const FieldLine& line : before) {
    const auto other = afterTexts.find(line.name);
    // A field that one revision names and the other does not stands as "-" on that side.
    const std::string text = other == afterTexts.end() ? "-" : other->second;
    if (text != line.text) changes.push_back({line.name, line.text, text});
    if (other != afterTexts.end()) afterTexts.erase(other);
  }
  for (const FieldLine& line : after) {
    if (afterTexts.contains(line.name)) changes.push_back({line.name, "-", line.text});
  }
  return changes;
}

std::vector<std::string> FormatFields(const std::vector<FieldLine>& fields) {
  std::size_t width = 0;
  for (const FieldLine& f : fields) width = std::max(width, f.name.size());
  std::vector<std::string> lines;
  for (const FieldLine& f : fields) lines.push_back(f.name + std::string(width + 2 - f.name.size(), ' ') + f.text);
  return lines;
}

std::vector<std::string> FormatChanges(const std::vector<FieldChange>& changes) {
  std::size_t width = 0;
  for (const FieldChange& c : changes) width = std::max(width, c.name.size());
  std::vector<std::string> lines;
  for (const FieldChange& c : changes) {
    lines.push_back(c.name + std::string(width + 2 - c.name.size(), ' ') + c.before + "  ->  " + c.after);
  }
  return lines;
}

}  // namespace dpm::cli
