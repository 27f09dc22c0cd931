#include <QLabel>
#include <QTableWidget>

#include <string>
#include <vector>

#include "panelmenu/menu_view.h"
#include "program_fixture.h"

namespace dpm::testing {
namespace {

// The program against a load cell meter with a data sheet: serial number 1234567, pounds,
// calibrated 14 March 2023 by ABC for a year, bridge C.
class MenuViewAgainstEmulator : public ProgramAgainstEmulatorTest {
 protected:
  MenuViewAgainstEmulator()
      : ProgramAgainstEmulatorTest({"--conditioner", "load-cell", "--teds", "present", "--revision", "10",
                                    "--teds-serial", "1234567", "--teds-units", "5", "--teds-date", "2023-03-14",
                                    "--teds-initials", "ABC", "--teds-period", "365", "--teds-id", "2"}) {}

  // Each row of the grid that shows something: the key's name, then its six places,
  // separated by "|".
  static std::vector<std::string> Keys(const QTableWidget& grid) {
    std::vector<std::string> rows;
    for (int row = 1; row < grid.rowCount(); ++row) {
      std::string text = grid.item(row, 0)->text().toStdString();
      if (text.empty()) continue;
      for (int col = 2; col < 8; ++col) text += "|" + grid.item(row, col)->text().toStdString();
      rows.push_back(text);
    }
    return rows;
  }
};

TEST_F(MenuViewAgainstEmulator, GetSetupThenTheMenuOfALoadCellWithItsDataSheet) {
  ASSERT_NE(window, nullptr);
  Pick("mnuGet");
  ASSERT_EQ(window->findChild<QLabel*>("lblGPText")->text().toStdString(),
            "Getting data from the DPM.  Data received O.K.");
  Pick("mnuMenu");
  QWidget* view = qt::WindowOf(frmDPMMenu());
  ASSERT_NE(view, nullptr);
  ASSERT_TRUE(QTest::qWaitForWindowExposed(view));

  // The data sheet is in force, so the input and configuration keys are the sheet's
  // business and not shown; its six fields follow the serial keys, read only.
  EXPECT_EQ(Keys(*view->findChild<QTableWidget*>("grdMain")),
            (std::vector<std::string>{
                "  SEtuP| | |0|0| |0",           " FiLtEr| |0|0|1|1|6",
                "  DecPt|  | d| d| d| d .| ",    " AL SEt| |0|0|0|0|0",
                " dEUn1b|  | 0| 0| 0| 0| 0",     " dEUn2b|  | 0| 0| 0| 0| 0",
                " An SEt| | | | |1|0",           "  An Lo|  | 0| 0| 0| 0| 0",
                "  An Hi|  | 2| 0| 0| 0| 0",     "  TArE| | |1|1|0|0",
                "  SEr 1| | | |1|5|0",           "  SEr 2| | |0|0|1|1",
                " * SerNo  1| 2| 3| 4| 5| 6| 7", " # UnitS|  |  | L| b|  |  ",
                " # CALdAt| 3| 1| 4| 2| 3|  ",   " # CALInt|  | A|  | B|  | C",
                " # CALPEr|  |  |  | 3| 6| 5",   " # M - Id| B| r| d| g| -| C",
                "  Loc 1| |0|0|0|0|0",           "  Loc 2| | |0|0|0|0",
                "  Loc 3| | |0|0|0|0",           "  Loc 4| |0|0|0|0|0",
            }));
  EXPECT_EQ(Keys(*view->findChild<QTableWidget*>("grdSetPt")),
            (std::vector<std::string>{" SETPT1|  | 0| 1| 0| 0| 0", " SETPT2|  | 0| 2| 0| 0| 0"}));
  EXPECT_TRUE(view->findChild<QLabel*>("Label1")->isVisible());
  EXPECT_EQ(g.TedsTemplate, 0) << "the data sheet was fetched on opening";

  // Back to the main menu and in again: the sheet is fetched anew, the keys the same.
  QTest::mouseClick(view->findChild<QWidget*>("cmdMainMenu"), Qt::LeftButton);
  EXPECT_FALSE(Forms().IsLoaded("frmDPMMenu"));
  EXPECT_EQ(g.MenuViewUp, 0);
  EXPECT_EQ(g.TedsTemplate, 99) << "the main menu forgets the sheet";
  Pick("mnuMenu");
  EXPECT_EQ(g.TedsTemplate, 0);
  view = qt::WindowOf(frmDPMMenu());
  ASSERT_NE(view, nullptr);
  EXPECT_EQ(view->findChild<QTableWidget*>("grdMain")->item(13, 0)->text().toStdString(), " * SerNo  1");
}

}  // namespace
}  // namespace dpm::testing
