#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "emulator/control.h"
#include "emulator/in_process_meter.h"
#include "link/globals.h"
#include "link/transport.h"
#include "link_fixture.h"
#include "teds/data_sheet_bits.h"
#include "teds/teds.h"

namespace dpm {
namespace {

using testing::DataSheetBits;

// Answers every command with the same bytes, a few milliseconds later.
class CannedReply : public fake::SerialPeer {
 public:
  CannedReply(fake::FakeSerialLine& line, std::string bytes) : line_(line), bytes_(std::move(bytes)) {
    line.SetPeer(this);
  }
  ~CannedReply() override { line_.SetPeer(nullptr); }
  void OnBytesFromHost(const std::string&, uint32_t) override { line_.ArriveAfter(5, bytes_); }

 private:
  fake::FakeSerialLine& line_;
  std::string bytes_;
};

class TedsFetchTest : public testing::LinkTest {
 protected:
  TedsFetchTest() {
    g.TedsHardware = 1;
    g.TedsPresent = 1;
    g.TedsTemplate = kTedsNotFetched;
    g.FirmwareRev = 10;
  }

  std::vector<std::string> SentTexts() const {
    std::vector<std::string> texts;
    for (const auto& command : line.SentCommands()) texts.push_back(command.text);
    return texts;
  }

  // Every decoded field, in the order of the menu view's rows.
  std::string Decoded() {
    std::string label;
    const std::string serial = TedsSerialNumber(label);
    return label + "|" + serial + "|" + TedsUnits() + "|" + TedsCalDate() + "|" + TedsCalInitials() + "|" +
           TedsCalPeriod() + "|" + TedsBridgeId();
  }
};

// At 9600 baud the sheet trickles in about a character a millisecond; the fetch waits for
// the whole of it before reading.
TEST_F(TedsFetchTest, FetchesOnceFromTheMeterAtItsAddress) {
  const std::string sheet = DataSheetBits().Put(359, 2, 2).Put(441, 24, 4711).Hex();
  emulator::MeterOptions options;
  options.conditioner = emulator::Conditioner::LoadCell;
  options.address = 12;
  options.tedsHardware = options.tedsPresent = true;
  options.dataSheet = sheet;
  emulator::InProcessMeter meter(line, options);
  g.MeterAddress = "C";

  FetchTedsIfNeeded();
  EXPECT_EQ(SentTexts(), std::vector<std::string>{"*CXTA0"});
  EXPECT_EQ(g.ErrFlag, kReplyOk);
  EXPECT_EQ(g.TedsHex, sheet);
  EXPECT_EQ(g.TedsTemplate, 2);
  EXPECT_EQ(TedsSerialDigits(), "4711");

  line.ClearTranscript();
  FetchTedsIfNeeded();
  EXPECT_TRUE(SentTexts().empty()) << "fetched already";
  g.TedsTemplate = kTedsNotFetched;
  g.TedsPresent = 0;
  FetchTedsIfNeeded();
  EXPECT_TRUE(SentTexts().empty()) << "no data sheet on the meter";
  EXPECT_EQ(g.TedsTemplate, kTedsNotFetched);
}

// The emulator's data sheet options, encoded by the emulator and decoded by the program.
TEST_F(TedsFetchTest, EmulatorSheetsDecodeAsTheyWereGiven) {
  struct Case {
    std::vector<std::string> args;
    std::string decoded;
  };
  for (const Case& c : {
           Case{{}, "# Ser No | 204518|   Lb  |031423 |  J K L|    365| Brdg-B"},
           Case{{"--teds-template", "1", "--teds-serial", "1234567", "--teds-units", "5", "--teds-date", "2024-02-29",
                 "--teds-initials", "ABC", "--teds-period", "365", "--teds-id", "3"},
                "* SerNo  1| 234567|   Lb  |022924 |  A B C|    365| Brdg-D"},
           Case{{"--teds-template", "2", "--teds-units", "63", "--teds-extended-units", "7", "--teds-date",
                 "2000-03-01", "--teds-initials", "xy", "--teds-period", "30"},
                "# Ser No | 204518|   bar |030100 |  X Y  |     30| Brdg-B"},
           Case{{"--teds-template", "0", "--teds-serial", "12345678", "--teds-date", "1998-01-01", "--teds-initials",
                 "A", "--teds-id", "0", "--teds-units", "13"},
                "* SerNo 12| 345678|   psi |010198 |  A    |    365| Brdg-A"},
           Case{{"--teds-template", "3", "--teds-units", "0", "--teds-extended-units", "3"},
                "# Ser No |      0|   ton |010198 |       |      0| Brdg-A"},
       }) {
    SCOPED_TRACE(::testing::PrintToString(c.args));
    std::vector<std::string> args = {"--link", "x", "--teds", "present"};
    args.insert(args.end(), c.args.begin(), c.args.end());
    emulator::ProgramOptions options;
    ASSERT_EQ(emulator::ParseArguments(args, options), std::nullopt);
    emulator::InProcessMeter meter(line, options.meter);
    g.TedsTemplate = kTedsNotFetched;
    FetchTedsIfNeeded();
    EXPECT_EQ(g.ErrFlag, kReplyOk);
    EXPECT_EQ(Decoded(), c.decoded);
  }
}

// Whatever comes back is decoded without a complaint: what is missing or no hexadecimal
// digit counts as zero bits.
TEST_F(TedsFetchTest, AnyReplyDecodes) {
  const std::string zeros = "# Ser No |      0|   None|010198 |       |      0| Brdg-A";
  std::string allOnes(116, 'F');
  allOnes[89] = 'C';  // bits 357-360: the template bits 359-360 read 0
  std::string withGarbage = allOnes;
  withGarbage[89] = 'G';
  struct Case {
    const char* name;
    std::string staleReply;  // the reply text an earlier exchange left
    std::string answer;      // empty: the meter stays silent
    std::string hex;
    int16_t templateNumber;
    std::string decoded;
  };
  for (const Case& c : {
           Case{"silent", "", "", "", 0, zeros},
           Case{"silent after another reply", "00FF", "", "00FF", 0, zeros},
           Case{"empty", "", "\r", "", 0, zeros},
           Case{"short", "", "7F00\r", "7F00", 0, "# Ser No |      0| Error |010198 |       |      0| Brdg-A"},
           Case{"odd length", "", "0123456\r", "012345", 0,
                "# Ser No |      0|    g  |010198 |       |      0| Brdg-A"},
           Case{"stopped without a line end", "", "12", "12", 0,
                "# Ser No |      0| Error |010198 |       |      0| Brdg-A"},
           Case{"not hexadecimal", "", "xyz!\r", "xyz!", 0, zeros},
           Case{"all ones", "", allOnes + "\r", allOnes, 0,
                "* SerNo 16| 777215| Error |060677 |  _ _ _|   4095| Brdg-?"},
           Case{"garbage in the template digit", "", withGarbage + "\r", withGarbage, 0,
                "* SerNo 16| 777215| Error |060677 |  _ _ _|   4095| Brdg-?"},
       }) {
    SCOPED_TRACE(c.name);
    g.TedsTemplate = kTedsNotFetched;
    g.ReplyText = c.staleReply;
    line.ClearTranscript();
    std::unique_ptr<CannedReply> meter;
    if (!c.answer.empty()) meter = std::make_unique<CannedReply>(line, c.answer);
    const uint32_t start = time.Elapsed();

    FetchTedsIfNeeded();
    EXPECT_EQ(line.SentCommands().size(), 1u);
    // 100 ms before the command, the sheet's line time (228 ms) and the reply's time-out.
    EXPECT_LE(time.Elapsed() - start, 3340u) << "no wait beyond the reply's time-out";
    EXPECT_EQ(g.TedsHex, c.hex);
    EXPECT_EQ(g.TedsBits.size(), 464u);
    EXPECT_EQ(g.TedsTemplate, c.templateNumber);
    EXPECT_EQ(Decoded(), c.decoded);
  }
}

}  // namespace
}  // namespace dpm
