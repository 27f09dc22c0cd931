#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "link/globals.h"
#include "link_fixture.h"
#include "panelmenu/menu_fixture.h"
#include "readings/capture.h"

namespace dpm::testing {
namespace {

struct Taken {
  std::vector<std::string> measured;
  std::vector<std::string> records;
};

class Recorder : public RecordConsumer {
 public:
  void OnMeasuringRecord(std::string_view sample) override { taken.measured.emplace_back(sample); }
  void OnRecord(std::string_view record) override { taken.records.emplace_back(record); }
  Taken taken;
};

class CaptureTest : public LinkTest {
 protected:
  CaptureTest() {
    LoadSetup("");
    g.FirmwareRev = 4;
    ResetReadings();
  }

  // The records a run takes from the stream, given piece by piece.
  Taken Run(Capture::Kind kind, const std::vector<std::string>& pieces) {
    Recorder recorder;
    Capture capture(line, recorder, kind);
    capture.Start();
    for (const std::string& piece : pieces) capture.Feed(piece);
    return recorder.taken;
  }
};

using Kind = Capture::Kind;
using Texts = std::vector<std::string>;

TEST_F(CaptureTest, RecordCharsFollowTheSetup) {
  struct Case {
    const char* what;
    const char* changes;  // display byte at 53, stop and start characters at 125 and 127
    int16_t firmwareRev;
    std::string stop;
    std::string start;
  };
  const Case cases[] = {
      {"carriage return", "53=00", 4, "\r", std::string(1, '\0')},
      {"high resolution bit: line feed", "53=80", 4, "\n", std::string(1, '\0')},
      {"transmission characters", "53=10 125=0302", 4, "\x03", "\x02"},
      {"stop character 0: the start character ends the records", "53=10 125=0023", 4, "#", ""},
      {"revision 0 knows no transmission characters", "53=90 125=0302", 0, "\n", std::string(1, '\0')},
  };
  for (const Case& c : cases) {
    LoadSetup(c.changes);
    g.FirmwareRev = c.firmwareRev;
    SetRecordChars();
    EXPECT_EQ(Readings().RecordStopChar, c.stop) << c.what;
    EXPECT_EQ(Readings().RecordStartChar, c.start) << c.what;
  }
}

TEST_F(CaptureTest, FramingAndDropRules) {
  struct Case {
    const char* what;
    const char* changes;
    Kind kind;
    Texts pieces;
    Texts measured;
    Texts records;
  };
  const Case cases[] = {
      {"list: first record thrown away, second measured, the rest shown",
       "",
       Kind::List,
       {"12.\r", "+00001.\r", "+00002.\r", "+00003.\r"},
       {"+00001."},
       {"+00002.\r", "+00003.\r"}},
      {"chart: no measuring record, stop character cut off",
       "",
       Kind::Chart,
       {"12.\r", "+00001.\r", "+00002.\r"},
       {},
       {"+00001.", "+00002."}},
      {"three records in one piece: the oldest is used",
       "",
       Kind::List,
       {"1.\r", "+00001.\r", "+00002.\r+00003.\r+00004.\r", "+00005.\r"},
       {"+00001."},
       {"+00002.\r", "+00005.\r"}},
      {"a tail shorter than a record waits",
       "",
       Kind::Chart,
       {"\r", "+00001.\r+000", "02.\r"},
       {},
       {"+00001.", "+00002."}},
      {"one piece with a record and a half gives one record",
       "",
       Kind::Chart,
       {"\r", "+00001.\r+00", "002.\r+0"},
       {},
       {"+00001.", "+00002."}},
      {"records of unequal length lose their alignment",
       "",
       Kind::Chart,
       {"\r", "+00001.\r+2.\r", "+00003.\r"},
       {},
       {"+00001.", "+2."}},
      {"line feed ends the records",
       "53=80",
       Kind::Chart,
       {"\r\n", "+00001.\r\n", "+00002.\r\n"},
       {},
       {"+00001.\r", "+00002.\r"}},
      {"start and stop characters",
       "53=10 125=0302",
       Kind::List,
       {"0.\x03", "\x02+00001.\x03", "\x02+00002.\x03"},
       {"\x02+00001."},
       {"\x02+00002.\x03"}},
      {"a lone start character ends the records",
       "53=10 125=0023",
       Kind::Chart,
       {"#", "+00001.#", "+00002.#"},
       {},
       {"+00001.", "+00002."}},
  };
  for (const Case& c : cases) {
    LoadSetup(c.changes);
    const Taken taken = Run(c.kind, c.pieces);
    EXPECT_EQ(taken.measured, c.measured) << c.what;
    EXPECT_EQ(taken.records, c.records) << c.what;
  }
}

// Wherever the stream begins and wherever a record is cut, the same records come out as
// long as each piece completes at most one record.
TEST_F(CaptureTest, CutsAnywhereGiveTheSameRecords) {
  const std::string first = "+00000.\r";
  const std::string cut = "+00003.\r";
  for (std::size_t start = 0; start < first.size(); ++start) {
    for (std::size_t at = 0; at <= cut.size(); ++at) {
      const Texts pieces = {first.substr(start), "+00001.\r", "+00002.\r", cut.substr(0, at), cut.substr(at)};
      const Taken list = Run(Kind::List, pieces);
      EXPECT_EQ(list.measured, Texts{"+00001."}) << start << " " << at;
      EXPECT_EQ(list.records, (Texts{"+00002.\r", cut})) << start << " " << at;
      const Taken chart = Run(Kind::Chart, pieces);
      EXPECT_EQ(chart.records, (Texts{"+00001.", "+00002.", "+00003."})) << start << " " << at;
    }
  }
}

TEST_F(CaptureTest, PauseDropsEverythingUntilLifted) {
  Recorder recorder;
  Capture capture(line, recorder, Kind::Chart);
  capture.Start();
  for (const char* piece : {"\r", "+00001.\r", "+000"}) capture.Feed(piece);
  Readings().ReadingPaused = 1;
  for (const char* piece : {"02.\r", "+00003.\r", "+00004.\r+0"}) capture.Feed(piece);
  EXPECT_EQ(capture.Buffer(), "") << "a paused turn empties the buffer";
  Readings().ReadingPaused = 0;
  for (const char* piece : {"+00005.\r", "+00006.\r"}) capture.Feed(piece);
  EXPECT_EQ(recorder.taken.records, (Texts{"+00001.", "+00005.", "+00006."}));
}

TEST_F(CaptureTest, UnreadableChartRecordsAreSkippedAndCounted) {
  Recorder recorder;
  Capture capture(line, recorder, Kind::Chart);
  capture.Start();
  for (const char* piece : {"\r", "OVLOAD\r", "\r", "kg 12\r", "+OVLOAD\r"}) capture.Feed(piece);
  EXPECT_EQ(recorder.taken.records, (Texts{" 12", "+OVLOAD"}));
  EXPECT_EQ(capture.SkippedRecords(), 2u);
}

TEST_F(CaptureTest, NumberOfARecord) {
  struct Case {
    std::string record;
    std::optional<float> number;
  };
  const Case cases[] = {
      {"+0123 mV", 123.0f},  {" 12.5", 12.5f},   {"-.25", -0.25f}, {"\x02+00012.\x03", 12.0f},
      {"kg 12", 12.0f},      {",5", 5.0f},       {"/3", 3.0f},     {"+1 2 3", 123.0f},
      {"+OVLOAD", 0.0f},     {"OVLOAD", {}},     {"", {}},         {"\x02\x03", {}},
      {"+99999.", 99999.0f}, {"-00001.", -1.0f}, {"1E3", 1000.0f},
      // Garbled on the line: beyond any reading, so no number at all.
      {"+0004d0500050.", {}}, {"-1E39", {}},
  };
  for (const Case& c : cases) EXPECT_EQ(RecordNumber(c.record), c.number) << c.record;
}

// On the line: Start throws away what waits, records come as the port reports them, and
// a hold keeps the line unread until it ends.
TEST_F(CaptureTest, ReadsTheLineAsDataArrives) {
  Recorder recorder;
  Capture capture(line, recorder, Kind::Chart);
  line.Arrive("+00009.\r");
  capture.Start();
  for (uint32_t k = 0; k < 4; ++k) line.ArriveAfter(10 * k + 5, "+0000" + std::to_string(k) + ".\r");
  time.Run(30);
  EXPECT_EQ(recorder.taken.records, (Texts{"+00001.", "+00002."}));
  {
    Capture::Hold hold(capture);
    time.Run(10);
    EXPECT_EQ(recorder.taken.records.size(), 2u);
  }
  EXPECT_EQ(recorder.taken.records.back(), "+00003.");
  capture.Stop();
  line.Arrive("+00004.\r");
  EXPECT_EQ(recorder.taken.records.size(), 3u);
  EXPECT_EQ(line.InBufferCount(), 8);
}

}  // namespace
}  // namespace dpm::testing
