#include <gtest/gtest.h>

#include "emulator/meter.h"
#include "emulator/reading_model.h"
#include "setup/default_image.h"

namespace dpm::emulator {
namespace {

// The default setup with some digits replaced, as (one-based position, digits) pairs.
std::string ImageWith(std::initializer_list<std::pair<int, std::string>> changes) {
  std::string image = DefaultSetupImage(4);
  for (const auto& [position, digits] : changes)
    image.replace(static_cast<std::size_t>(position - 1), digits.size(), digits);
  return image;
}

TEST(ReadingsTest, InputBecomesDisplayTextThroughRangeAndScaling) {
  struct Case {
    const char* what;
    std::string image;
    double input;
    std::string text;
  };
  const Case cases[] = {
      {"0.2 V range, scale 1", ImageWith({}), 0.12345, "+12345."},
      {"negative input", ImageWith({}), -0.00042, "-00042."},
      {"display point code 3", ImageWith({{39, "03"}}), 0.12345, "+123.45"},
      {"display point code 6", ImageWith({{39, "06"}}), 0.12345, "+.12345"},
      {"beyond the display", ImageWith({}), 1.5, "+OVLOAD"},
      {"beyond the display, negative", ImageWith({}), -1.5, "-OVLOAD"},
      {"2 V range", ImageWith({{55, "61"}}), 1.2345, "+12345."},
      {"660 V range", ImageWith({{55, "64"}}), 600.0, "+06000."},
      {"20 mA range", ImageWith({{55, "71"}}), 12.5, "+12500."},
      {"5 A range", ImageWith({{55, "73"}}), 4.25, "+04250."},
      {"scale 2 and offset 100", ImageWith({{97, "000064100002"}}), 0.01, "+02100."},
      {"scale 2.1", ImageWith({{103, "200015"}}), 0.01, "+02100."},
      {"scale -2", ImageWith({{103, "900002"}}), 0.01, "-02000."},
      {"coordinates", ImageWith({{53, "08"}, {73, "002710004E20000000000000"}}), 0.1, "+05000."},
      {"reading coordinates", ImageWith({{33, "08"}, {73, "002710004E20000000000000"}}), 0.1, "+05000."},
      {"count by ten", ImageWith({{53, "80"}}), 0.12345, "+12340."},
      {"thermocouple, tenths of a degree", ImageWith({{55, "40"}}), 100.5, "+0100.5"},
      {"strain 100 mV range", ImageWith({{35, "03"}, {55, "C2"}}), 87.65, "+08765."},
  };
  for (const Case& c : cases) {
    Meter meter({}, c.image);
    meter.ApplyInput(c.input);
    EXPECT_EQ(meter.ReadingText(meter.TakeReading()), c.text) << c.what;
  }
}

TEST(ReadingsTest, RecordFraming) {
  struct Case {
    const char* what;
    std::string image;
    std::string record;
  };
  const Case cases[] = {
      {"CR alone", ImageWith({}), "+00000.\r"},
      {"high resolution bit adds LF", ImageWith({{53, "80"}}), "+00000.\r\n"},
      {"LF flag of the serial setup", ImageWith({{45, "A1"}}), "+00000.\r\n"},
      {"start and stop characters", ImageWith({{53, "10"}, {125, "0302"}}), "\x02+00000.\x03"},
      {"start character alone", ImageWith({{53, "10"}, {125, "0023"}}), "#+00000."},
      {"stop character alone", ImageWith({{53, "10"}, {125, "2100"}}), "+00000.!"},
      {"no characters configured", ImageWith({{53, "10"}, {125, "0000"}}), "+00000.\r"},
      {"revision 0 has no start and stop characters", ImageWith({{53, "10"}, {121, "00"}, {125, "0302"}}), "+00000.\r"},
  };
  for (const Case& c : cases) {
    Meter meter({}, c.image);
    EXPECT_EQ(meter.NextRecord(), c.record) << c.what;
  }
}

TEST(ReadingsTest, RecordIntervalFollowsTheOutputRate) {
  struct Case {
    std::string serialB;
    std::string displayByte;
    uint32_t intervalMs;
  };
  for (const Case& c : {Case{"D0", "00", 0}, Case{"D1", "00", 50}, Case{"D3", "00", 200}, Case{"D1", "20", 60},
                        Case{"D9", "00", 50 * 256}, Case{"DF", "00", 50 * 256}}) {
    Meter meter({}, ImageWith({{47, c.serialB}, {53, c.displayByte}}));
    EXPECT_EQ(meter.RecordIntervalMs(), c.intervalMs) << c.serialB << " " << c.displayByte;
  }
}

}  // namespace
}  // namespace dpm::emulator
