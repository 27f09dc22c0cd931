#include <gtest/gtest.h>

#include <string>

#include "help/help_files.h"
#include "temp_folder.h"

namespace dpm::testing {
namespace {

std::string Record(uint32_t position, uint16_t length) {
  std::string bytes;
  for (int i = 0; i < 4; ++i) bytes += static_cast<char>(position >> (8 * i) & 0xFF);
  for (int i = 0; i < 2; ++i) bytes += static_cast<char>(length >> (8 * i) & 0xFF);
  return bytes;
}

void Write(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

// A pair of files made by hand: three records, the third running past the text's end, a
// gap of no text, and a text that needs a position beyond 16 bits.
TEST(ReadHelpItem, FindsTheRecordOfTheContextAndReportsEveryBadInput) {
  TempFolder folder;
  const std::string far(70000, '.');
  Write(folder / "Help13.S10", "Title$Field$Line" + std::string("One$Two") + far + "Far$Away");
  Write(folder / "Help13.R10",
        Record(1, 16) + Record(17, 7) + Record(70020, 20) + Record(0, 0) + Record(17 + 7 + 70000, 8));
  Write(folder / "Help31.S10", "xxCalibration$Heading");
  Write(folder / "Help31.R10", std::string(12 * 6, '\0') + Record(3, 19));
  Write(folder / "Help21.R10", Record(1, 1));  // its text file is missing

  struct Case {
    int context;
    const char* text;   // what is read, "$" and all
    const char* fault;  // or the message, which names the file and the context
  };
  const Case cases[] = {
      {1301, "Title$Field$Line", ""},
      {1302, "One$Two", ""},
      {1305, "Far$Away", ""},
      {3113, "Calibration$Heading", ""},
      {1303, "", "Help13.S10 ends before the text of record 3 (help context 1303)."},
      {1304, "", "Help13.R10 holds no text in record 4 (help context 1304)."},
      {1306, "", "Help13.R10 has no record 6 (help context 1306)."},
      {1201, "", "Help file Help12.R10 not found (help context 1201)."},
      {2101, "", "Help file Help21.S10 not found (help context 2101)."},
      {0, "",
       "No field has been chosen yet: Help 0.R10 has no record 0. Select a field, then press F1 (help context 0)."},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.context);
    const HelpItem item = ReadHelpItem(c.context, folder.Path());
    EXPECT_EQ(item.text, c.text);
    EXPECT_EQ(item.fault, c.fault);
    EXPECT_EQ(item.Read(), std::string(c.fault).empty());
  }
}

}  // namespace
}  // namespace dpm::testing
