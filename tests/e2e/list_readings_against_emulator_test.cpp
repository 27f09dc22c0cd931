#include <QTableWidget>

#include <algorithm>
#include <string>
#include <vector>

#include "program_fixture.h"
#include "readings/list_readings.h"

namespace dpm::testing {
namespace {

// A DC meter with 0.05 V and some noise at its input, fifty records a second, each record
// it sends printed in its log.
class ListReadingsAgainstEmulator : public ProgramAgainstEmulatorTest {
 protected:
  ListReadingsAgainstEmulator()
      : ProgramAgainstEmulatorTest({"--input", "0.05", "--noise", "0.002", "--rate", "50", "--log-records"}) {}

  // The records the emulator has sent, without their line end, once it has stopped
  // sending them; nothing when it has not.
  std::vector<std::string> SentRecords() {
    std::vector<std::string> sent;
    for (std::string line; !(line = emulator.WaitForLine("", 1000)).empty();) {
      if (line == "continuous output off") return sent;
      const std::size_t end = line.find("<CR>   (record)");
      if (line.starts_with("-> ") && end != std::string::npos) sent.push_back(line.substr(3, end - 3));
    }
    return {};
  }

  // The grid's cells column by column, up to the first blank one.
  static std::vector<std::string> Cells(const QTableWidget& grid) {
    std::vector<std::string> cells;
    for (int col = 0; col < grid.columnCount(); ++col) {
      for (int row = 0; row < grid.rowCount(); ++row) {
        const QTableWidgetItem* item = grid.item(row, col);
        const std::string text = item == nullptr ? std::string() : item->text().toStdString();
        if (text.empty() || text == " ") return cells;
        cells.push_back(text);
      }
    }
    return cells;
  }
};

TEST_F(ListReadingsAgainstEmulator, TheListShowsWhatTheMeterSent) {
  ASSERT_NE(window, nullptr);
  Pick("mnuList");
  QWidget* list = qt::WindowOf(frmList());
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->windowTitle().toStdString(), "LIST READINGS");
  EXPECT_FALSE(window->isVisible()) << "the main menu hides behind the list";
  auto* grid = Find<QTableWidget>(list, "grdList");
  ASSERT_NE(grid, nullptr);
  EXPECT_EQ(grid->rowCount(), 20);
  ASSERT_TRUE(QTest::qWaitFor([&] { return Cells(*grid).size() >= 25; }, 10000));
  EXPECT_GE(grid->columnCount(), 2) << "columns as wide as a record leave room for several";
  const std::vector<std::string> cells = Cells(*grid);

  Press(list, "cmdEnd");
  EXPECT_FALSE(Forms().IsLoaded("frmList"));
  EXPECT_TRUE(window->isVisible());

  // The first record is cut off, the second measures the columns; from the third on,
  // every cell holds a record the meter sent, in the order sent.
  const std::vector<std::string> sent = SentRecords();
  ASSERT_GE(sent.size(), 3u) << "End stops the meter's output";
  ASSERT_FALSE(cells.empty());
  EXPECT_EQ(cells.front(), sent[2]);
  auto next = sent.begin() + 2;
  for (const std::string& cell : cells) {
    next = std::find(next, sent.end(), cell);
    ASSERT_NE(next, sent.end()) << cell << " was not sent, or not in this order";
    ++next;
  }
}

}  // namespace
}  // namespace dpm::testing
