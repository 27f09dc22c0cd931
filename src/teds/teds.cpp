#include "teds/teds.h"

#include <chrono>
#include <cstdio>

#include "link/globals.h"
#include "link/transport.h"
#include "platform/numeric.h"

namespace dpm {
namespace {

constexpr std::size_t kSheetDigits = 116;
constexpr std::size_t kSheetBits = 4 * kSheetDigits;
constexpr char kHexDigits[] = "0123456789ABCDEF";

// Where the template number stands; it is the same in every template.
constexpr std::size_t kTemplateFirstBit = 359;
constexpr std::size_t kTemplateWidth = 2;

// A run of bits: first position in g.TedsBits (counted from 1) and width.
struct Span {
  std::size_t first = 0;
  std::size_t width = 0;
};

// A field lies in one run, or in two that are joined in order (the byte between them
// belongs to something else).
struct Placement {
  Span head;
  Span tail{};
};

enum Field { kSerial, kUnits, kExtendedUnits, kCalDate, kCalPeriod, kInitials, kMeasurementId, kFieldCount };

// Placement of each field in templates 0, 1 and 2.
constexpr Placement kLayout[kFieldCount][3] = {
    /* serial          */ {{{441, 24}}, {{441, 24}}, {{441, 24}}},
    /* units           */ {{{425, 6}}, {{425, 6}}, {{425, 6}}},
    /* extended units  */ {{{2, 7}}, {{7, 7}}, {{2, 7}}},
    /* calibration day */ {{{268, 16}}, {{244, 5}, {257, 11}}, {{218, 16}}},
    /* period          */ {{{233, 12}}, {{217, 12}}, {{191, 12}}},
    /* initials        */ {{{245, 4}, {257, 11}}, {{229, 15}}, {{203, 15}}},
    /* measurement id  */ {{{222, 11}}, {{206, 11}}, {{180, 11}}},
};

std::string BitsOf(Span span) { return span.width == 0 ? std::string{} : Mid(g.TedsBits, span.first, span.width); }

// The bits of a field in the template of the fetched sheet. A sheet of template 3 (or one
// not fetched) has none of the fields, so each reads as no bits at all, which counts 0;
// only the extended units code is then looked for where template 0 keeps it.
std::string FieldBits(Field field) {
  int column = g.TedsTemplate;
  if (field == kExtendedUnits && column != 1) column = 0;
  if (column < 0 || column > 2) return {};
  const Placement& at = kLayout[field][column];
  return BitsOf(at.head) + BitsOf(at.tail);
}

// Fields are at most 24 bits wide, so every value fits.
int32_t FieldNumber(Field field) { return ToInt32(LeadingNumber(BitsToNumber(FieldBits(field)))); }

// Hexadecimal text read as the program reads any number: four digits or fewer make a
// 16-bit number, so 8000 to FFFF come out negative.
int64_t HexNumber(const std::string& hex) {
  const int64_t value = LeadingHexValue(hex);
  return hex.size() <= 4 && value >= 0x8000 ? value - 65536 : value;
}

std::string RightAligned(const std::string& text, std::size_t width) {
  return text.size() >= width ? text : std::string(width - text.size(), ' ') + text;
}

}  // namespace

void TedsFetch() {
  // A digit the reply lacks counts 0, so the bits always cover the whole sheet. A character
  // that is no hexadecimal digit (line noise, a stray reply) counts 0 as well: the fields it
  // touches then read as if the sheet held nothing there, rather than as some value made up
  // from a letter.
  std::string bits;
  bits.reserve(kSheetBits);
  for (std::size_t i = 0; i < kSheetDigits; ++i) {
    const int digit = i < g.TedsHex.size() ? HexDigitValue(g.TedsHex[i]) : 0;
    const int value = digit < 0 ? 0 : digit;
    for (int weight = 8; weight >= 1; weight /= 2) bits += (value & weight) ? '1' : '0';
  }
  g.TedsBits = std::move(bits);
}

std::string BitsToHex(std::string& bits) {
  const std::size_t groups = (bits.size() + 3) / 4;
  bits = ("000" + bits).substr(bits.size() + 3 - 4 * groups);
  std::string hex;
  for (std::size_t i = 0; i < bits.size(); i += 4) {
    int digit = 0;
    for (std::size_t j = 0; j < 4; ++j) digit = 2 * digit + (bits[i + j] == '1' ? 1 : 0);
    hex += kHexDigits[digit];
  }
  return hex;
}

std::string BitsToNumber(const std::string& bits) {
  std::string filled = bits;
  int64_t value = HexNumber(BitsToHex(filled));
  if (value < 0) value += 65536;
  return NumberText(value);
}

namespace {
constexpr int16_t kDataSheetLineChars = 128;
}  // namespace

void FetchTedsIfNeeded() {
  if (g.TedsPresent != 1 || g.TedsTemplate != kTedsNotFetched) return;
  SendBody("XTA0");
  // The sheet is as long as the setup's main block: read as it trickles in, a character at
  // a time at 9600 baud, it would run past the pieces a reply may come in, so the line
  // time of the whole sheet passes first, as Get Setup does for its blocks.
  DelayChars(kDataSheetLineChars);
  ReceiveReply();
  // No test of the outcome: a failed exchange leaves the reply text as it stands, and a
  // short or empty one decodes as a sheet of zeros.
  g.TedsHex = g.ReplyText;
  TedsFetch();
  const std::string templateBits = Mid(g.TedsBits, kTemplateFirstBit, kTemplateWidth);
  g.TedsTemplate = ToInt16(LeadingNumber(BitsToNumber(templateBits)));
}

std::string TedsSerialDigits() { return std::to_string(FieldNumber(kSerial)); }

std::string TedsSerialNumber(std::string& rowLabel) {
  // The row shows six digits; the one or two in front of them (24 bits give at most
  // eight) move into the row's label.
  std::string digits = TedsSerialDigits();
  std::string prefix;
  if (digits.size() > 6) {
    prefix = digits.substr(0, digits.size() - 6);
    digits = digits.substr(digits.size() - 6);
  }
  rowLabel = "# Ser No ";
  if (prefix.size() == 1) rowLabel = "* SerNo  " + prefix;
  if (prefix.size() == 2) rowLabel = "* SerNo " + prefix;
  return RightAligned(digits, 7);
}

std::string TedsUnits() {
  constexpr int kUseExtended = 63;
  constexpr std::size_t kNone = 7;
  constexpr std::size_t kError = 15;
  const int32_t units = FieldNumber(kUnits);
  // Code 0 means "none" to older firmware; from revision 10 on it, like 63, refers to the
  // extended code.
  const bool plain = units != kUseExtended && (units != 0 || g.FirmwareRev <= 9);
  std::size_t index = kError;
  if (plain) {
    if (units == 0) index = kNone;
    if (units >= 4 && units <= 6) index = static_cast<std::size_t>(units - 4);
    if (units >= 10 && units <= 13) index = static_cast<std::size_t>(units - 7);
  } else {
    const int32_t extended = FieldNumber(kExtendedUnits);
    if (extended >= 0 && extended <= 7) index = static_cast<std::size_t>(extended + 7);
  }
  return TedsUnitsTable[index];
}

std::string TedsCalDate() {
  // The field counts days from 1 January 1998 (day 0) in the civil calendar; its 16 bits
  // reach into 2177. The year shows as its last two digits only, so a date from 2098 on
  // looks like one a century earlier: the display has room for no more.
  using namespace std::chrono;
  const year_month_day date{sys_days{year{1998} / January / 1} + days{FieldNumber(kCalDate)}};
  char text[16];
  std::snprintf(text, sizeof text, "%02u%02u%02d ", static_cast<unsigned>(date.month()),
                static_cast<unsigned>(date.day()), static_cast<int>(date.year()) % 100);
  return text;
}

std::string TedsCalPeriod() { return RightAligned(std::to_string(FieldNumber(kCalPeriod)), 7); }

std::string TedsCalInitials() {
  // Three letters of five bits, A = 1; 0 is no letter. They are stored last letter first.
  const int32_t initials = FieldNumber(kInitials);
  const auto letter = [](int32_t code) { return code == 0 ? ' ' : static_cast<char>(code + 64); };
  const char first = letter((initials >> 10) & 31);
  const char second = letter((initials >> 5) & 31);
  const char third = letter(initials & 31);
  return std::string("  ") + third + ' ' + second + ' ' + first;
}

std::string TedsBridgeId() {
  // Id 0 is bridge A, 1 bridge B and so on. The 11-bit field could name a character beyond
  // the printable ones of the display's text; such an id shows as "?" rather than as a
  // byte that no screen can draw.
  const int32_t code = FieldNumber(kMeasurementId) + 65;
  return std::string(" Brdg-") + (code <= '~' ? static_cast<char>(code) : '?');
}

}  // namespace dpm
