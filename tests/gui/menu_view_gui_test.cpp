#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>

#include <string>

#include "forms_gui_fixture.h"
#include "help/app_help.h"
#include "help/help_files.h"
#include "link/image_access.h"
#include "panelmenu/menu_view.h"
#include "platform/qt/seven_segment.h"
#include "setup/main_menu.h"

namespace dpm::testing {
namespace {

// The first line of a help item of the program's files.
std::string TitleOfItem(int context) {
  const std::string item = ReadHelpItem(context).text;
  return item.substr(0, item.find('$'));
}

class MenuViewWindow : public GuiOnDefaultSetup {
 protected:
  // Whether any pixel of the cell is lit in the display's red.
  static bool Lit(QTableWidget& table, int row, int col) {
    const QImage image = table.viewport()->grab().toImage();
    const QRect cell = table.visualItemRect(table.item(row, col)) & image.rect();
    for (int y = cell.top(); y <= cell.bottom(); ++y) {
      for (int x = cell.left(); x <= cell.right(); ++x) {
        const QColor c = image.pixelColor(x, y);
        if (c.red() > 200 && c.green() < 100 && c.blue() < 100) return true;
      }
    }
    return false;
  }
};

// From the main menu's View > Menu to the keys in the display's face, and a click on a
// key to its help.
TEST_F(MenuViewWindow, ViewMenuShowsTheKeysAndAClickShowsHelp) {
  MainMenu& menu = frmMMenu();
  QWidget* main = ShowActive(menu);
  menu.mnuDefaultSet.UserClick();
  Find<QAction>(main, "mnuMenu")->trigger();
  QWidget* window = qt::WindowOf(frmDPMMenu());
  ASSERT_NE(window, nullptr);
  ASSERT_TRUE(QTest::qWaitForWindowActive(window));
  EXPECT_EQ(window->windowTitle(), "DPM  MENU");
  EXPECT_TRUE(main->isVisible());
  EXPECT_EQ(Find<QLabel>(window, "lblSigCond")->text(), " DC Signal Conditioner");

  auto* keys = Find<QTableWidget>(window, "grdMain");
  ASSERT_NE(dynamic_cast<qt::SevenSegmentDelegate*>(keys->itemDelegate()), nullptr);
  EXPECT_EQ(keys->item(0, 0)->text(), " MENU KEY   ");
  EXPECT_EQ(keys->item(1, 0)->text(), "  InPut");
  EXPECT_EQ(keys->item(6, 0)->text(), " SCALE");
  EXPECT_EQ(keys->item(6, 7)->text(), " 1");
  EXPECT_EQ(keys->item(15, 0)->text(), "  SEr 2");
  EXPECT_EQ(keys->item(15, 7)->text(), "1");
  EXPECT_EQ(keys->columnWidth(1), 0) << "the skip column takes no room";
  EXPECT_TRUE(Lit(*keys, 6, 7)) << "the scale's last digit, 1";
  EXPECT_FALSE(Lit(*keys, 6, 2)) << "the scale's sign place, blank";
  EXPECT_TRUE(Lit(*keys, 1, 0)) << "the key's name is spelled in segments too";
  EXPECT_EQ(Find<QTableWidget>(window, "grdInput")->item(0, 5)->text(), " V");
  EXPECT_EQ(Find<QTableWidget>(window, "grdSetPt")->item(2, 0)->text(), " SETPT2");

  QTest::mouseClick(keys->viewport(), Qt::LeftButton, {}, keys->visualItemRect(keys->item(6, 4)).center());
  QWidget* help = qt::WindowOf(frmAppHelp());
  ASSERT_NE(help, nullptr);
  ASSERT_TRUE(QTest::qWaitForWindowActive(help));
  EXPECT_EQ(g.HelpContext, 2156);
  EXPECT_EQ(help->windowTitle(), "Menu Help");
  EXPECT_EQ(frmAppHelp().picText.PrintedLines().front(), TitleOfItem(2156));

  QTest::mouseClick(Find<QPushButton>(help, "cmdOK"), Qt::LeftButton);
  EXPECT_FALSE(help->isVisible());
  auto* setpoints = Find<QTableWidget>(window, "grdSetPt");
  QTest::mouseClick(setpoints->viewport(), Qt::LeftButton, {},
                    setpoints->visualItemRect(setpoints->item(1, 3)).center());
  EXPECT_EQ(frmAppHelp().picText.PrintedLines().front(), TitleOfItem(2173));

  QTest::mouseClick(Find<QPushButton>(window, "cmdMainMenu"), Qt::LeftButton);
  EXPECT_EQ(qt::WindowOf(frmMMenu()), main);
  EXPECT_FALSE(Forms().IsLoaded("frmDPMMenu"));
}

// The shapes of the characters the keys use, segment by segment.
TEST(SevenSegmentFace, CharactersOfTheKeys) {
  const std::pair<char, const char*> shapes[] = {
      {'0', "abcdef"}, {'1', "bc"},     {'2', "abdeg"}, {'4', "bcfg"}, {'7', "abc"},
      {'9', "abcdfg"}, {'A', "abcefg"}, {'b', "cdefg"}, {'C', "adef"}, {'d', "bcdeg"},
      {'r', "eg"},     {'t', "defg"},   {'-', "g"},     {'^', "abfg"}, {' ', ""},
  };
  for (const auto& [c, expected] : shapes) {
    const auto segments = qt::SegmentsOf(c);
    ASSERT_TRUE(segments.has_value()) << c;
    std::string names;
    for (int bit = 0; bit < 7; ++bit) {
      if ((*segments >> bit) & 1) names += static_cast<char>('a' + bit);
    }
    EXPECT_EQ(names, expected) << c;
  }
  EXPECT_FALSE(qt::SegmentsOf('*').has_value()) << "the lockout mark is written, not segmented";
  EXPECT_FALSE(qt::SegmentsOf('#').has_value());
}

}  // namespace
}  // namespace dpm::testing
