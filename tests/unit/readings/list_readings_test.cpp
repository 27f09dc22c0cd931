#include <fstream>
#include <regex>
#include <sstream>

#include "readings/list_readings.h"
#include "readings/reading_screen_fixture.h"
#include "temp_folder.h"

namespace dpm::testing {
namespace {

std::string Reading(int k) {
  char text[16];
  std::snprintf(text, sizeof text, "+%05d.", k);
  return text;
}

// The list opened from the main menu on an in-memory line at 9600 baud, address "1".
class ListReadingsTest : public ReadingScreenTest {
 protected:
  ListReadingsTest() {
    time.AddTicker([](uint32_t) { Forms().ServeTimers(); });
  }

  // Opens the list; its grid takes three columns of the measuring record's width: eight
  // characters of 120 twips and the margin of 90, three times, in a grid 3200 twips wide.
  ListReadings& Open() {
    frmMMenu().mnuList_Click();
    ListReadings& list = frmList();
    list.grdList.Move(0, 0, 3200, 6000);
    return list;
  }
  // The meter's records, each in a piece of its own, each shown before the next comes.
  void Send(const std::string& records, char stop = '\r') {
    std::size_t begin = 0;
    for (std::size_t end; (end = records.find(stop, begin)) != std::string::npos; begin = end + 1) {
      line.Arrive(records.substr(begin, end + 1 - begin));
      time.Run(kListShowIntervalMs);
    }
  }
};

TEST_F(ListReadingsTest, FillsColumnByColumnAndWrapsOverTheOldest) {
  ListReadings& list = Open();
  EXPECT_EQ(list.Caption(), "LIST READINGS");
  EXPECT_EQ(Commands(), std::vector<std::string>{"*1A0"});
  std::string stream = "00.\r" + Reading(0) + "\r";
  for (int k = 1; k <= 61; ++k) stream += Reading(k) + "\r";
  Send(stream);

  EXPECT_EQ(list.ListCols, 3);
  EXPECT_EQ(list.grdList.Cols(), 3);
  EXPECT_EQ(list.grdList.ColWidth(0), 1050);
  EXPECT_EQ(list.grdList.RowHeight(19), 300);
  struct Cell {
    int row, col;
    std::string text;
  };
  for (const Cell& c : {Cell{0, 0, Reading(61)}, Cell{1, 0, " "}, Cell{2, 0, Reading(3)}, Cell{19, 0, Reading(20)},
                        Cell{0, 1, Reading(21)}, Cell{19, 2, Reading(60)}})
    EXPECT_EQ(list.grdList.TextMatrix(c.row, c.col), c.text) << c.row << "," << c.col;
  EXPECT_EQ(list.ListRow, 1);
  EXPECT_EQ(list.ListCol, 0);

  // Save keeps what the grid has overwritten too.
  TempFolder folder;
  dialogs.ChooseFile((folder / "readings.csv").string());
  list.cmdSave.UserClick();
  std::ifstream file(folder / "readings.csv");
  std::string heading;
  std::getline(file, heading);
  EXPECT_EQ(heading, "time,record,number\r");
  const std::regex row(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z,"\+(\d{5})\.",(\d+)\r)");
  int k = 0;
  for (std::string text; std::getline(file, text);) {
    std::smatch match;
    ASSERT_TRUE(std::regex_match(text, match, row)) << text;
    ++k;
    EXPECT_EQ(std::stoi(match[1]), k);
    EXPECT_EQ(std::stoi(match[2]), k);
  }
  EXPECT_EQ(k, 61);
}

TEST_F(ListReadingsTest, TransmissionCharactersShowAsLetters) {
  struct Case {
    const char* what;
    const char* changes;
    int16_t firmwareRev;
    std::string record;
    std::string cell;
  };
  const Case cases[] = {
      {"no transmission characters: the stop character goes", "53=00", 4, "+00001.\r", "+00001."},
      {"start and stop characters", "53=10 125=0302", 4, "\x02+00001.\x03", "t+00001.p"},
      {"revision 0: the line end shows", "53=10 125=0302", 0, "+00001.\r", "+00001.p"},
  };
  for (const Case& c : cases) {
    LoadSetup(c.changes);
    g.FirmwareRev = c.firmwareRev;
    ListReadings& list = Open();
    const char stop = c.record.back();
    Send(c.record + c.record + c.record, stop);
    EXPECT_EQ(list.grdList.TextMatrix(0, 0), c.cell) << c.what;
    list.cmdEnd.UserClick();
  }
}

TEST_F(ListReadingsTest, PauseContinueAndEnd) {
  ListReadings& list = Open();
  Send("\r" + Reading(0) + "\r" + Reading(1) + "\r");
  list.cmdPause.UserClick();
  Send(Reading(2) + "\r" + Reading(3) + "\r");
  list.cmdContin.UserClick();
  Send(Reading(4) + "\r");
  EXPECT_EQ(list.grdList.TextMatrix(0, 0), Reading(1));
  EXPECT_EQ(list.grdList.TextMatrix(1, 0), Reading(4)) << "the next record goes to the blank cell";
  EXPECT_EQ(list.grdList.TextMatrix(2, 0), " ");

  line.ClearTranscript();
  list.cmdEnd.UserClick();
  EXPECT_EQ(Commands(), (std::vector<std::string>{"*1A1"}));
  EXPECT_EQ(line.Transcript().back().kind, fake::FakeSerialLine::Kind::RtsOff);
  EXPECT_FALSE(Forms().IsLoaded("frmList"));
  EXPECT_EQ(Forms().Active(), &frmMMenu());
  line.Arrive(Reading(5) + "\r");
  EXPECT_EQ(line.InBufferCount(), 8) << "nothing reads the line after End";
}

TEST_F(ListReadingsTest, AStartCharacterAloneIsReportedInsteadOfListed) {
  LoadSetup("53=10 125=0023");
  frmMMenu().mnuList_Click();
  ASSERT_EQ(dialogs.messages.size(), 1u);
  EXPECT_NE(dialogs.messages[0].text.find("Cust Stop Char"), std::string::npos);
  EXPECT_EQ(Commands(), (std::vector<std::string>{"*1A0", "*1A1"}));
  EXPECT_FALSE(Forms().IsLoaded("frmList"));
  EXPECT_EQ(Forms().Active(), &frmMMenu());
}

}  // namespace
}  // namespace dpm::testing
