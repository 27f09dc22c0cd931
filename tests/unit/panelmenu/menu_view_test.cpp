#include <array>
#include <string>
#include <vector>

#include "forms/forms_fixture.h"
#include "help/app_help.h"
#include "menu_fixture.h"
#include "panelmenu/menu_view.h"
#include "setup/main_menu.h"

namespace dpm::testing {
namespace {

class MenuViewTest : public FormsTest {
 protected:
  DpmMenu& Open(const std::string& changes, int16_t firmwareRev = 4) {
    LoadSetup(changes);
    g.FirmwareRev = firmwareRev;
    DpmMenu& view = frmDPMMenu();
    view.Show();
    return view;
  }
};

// A click on a key stores the key's help item and brings up the help window at once,
// whatever the key's lockout mark.
TEST_F(MenuViewTest, ClickOnAKeyShowsItsHelp) {
  struct Case {
    const char* what;
    const char* changes;
    int16_t firmwareRev;
    bool alarmGrid;
    int row;
    int16_t context;
  };
  const Case cases[] = {
      {"input key", "", 4, false, 1, 2151},
      {"setup key of later firmware", "", 4, false, 2, 2189},
      {"setup key of revision 0", "", 0, false, 2, 2152},
      {"locked scale key", "43=02", 4, false, 6, 2156},
      {"second serial key", "", 4, false, 15, 2169},
      {"low in of the coordinates", "53=08", 4, false, 6, 2158},
      {"reading at zero of the custom curve", "33=01", 4, false, 6, 2175},
      {"a row below the keys", "", 4, false, 30, 2150},
      {"first setpoint", "", 4, true, 1, 2173},
      {"second setpoint, the first disabled", "59=02", 4, true, 1, 2173},
      {"second setpoint", "", 4, true, 2, 2174},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Forms().Reset();
    DpmMenu& view = Open(c.changes, c.firmwareRev);
    Grid& grid = c.alarmGrid ? view.grdSetPt : view.grdMain;
    grid.UserClickCell(c.row, 3);
    EXPECT_EQ(g.HelpContext, c.context);
    EXPECT_EQ(grid.Row(), 0) << "the selection goes back to the header";
    AppHelp* help = Forms().FindLoaded<AppHelp>();
    ASSERT_NE(help, nullptr);
    EXPECT_TRUE(help->Visible());
    EXPECT_EQ(help->Caption(), "Menu Help");
    EXPECT_EQ(help->lblText.Caption(), "Help context " + std::to_string(c.context));
  }
}

TEST_F(MenuViewTest, GridsShowTheKeysOfTheImage) {
  DpmMenu& view = Open("");
  EXPECT_EQ(g.MenuViewUp, 1);
  EXPECT_EQ(view.Caption(), "DPM  MENU");
  EXPECT_EQ(view.lblSigCond.Caption(), " DC Signal Conditioner");
  EXPECT_FALSE(view.Label1.Visible());

  const Grid& keys = view.grdMain;
  EXPECT_EQ(keys.TextMatrix(0, 0), " MENU KEY   ");
  EXPECT_EQ(keys.TextMatrix(0, 2), "S");
  EXPECT_EQ(keys.TextMatrix(0, 7), "5");
  EXPECT_EQ(keys.ColWidth(0), 1300);
  EXPECT_EQ(keys.ColWidth(1), 1);
  EXPECT_EQ(keys.ColWidth(4), 350);
  // 18 keys go in above the 35 rows the grid starts with.
  EXPECT_EQ(keys.Rows(), 35 + 18);
  EXPECT_EQ(keys.ScrollBars(), 0);
  const char* expected[][8] = {
      {"  InPut", "  ", "  ", " d", " C", "  ", " V", "  "}, {"  SEtuP", " ", " ", "0", "0", "0", "0", "0"},
      {" SCALE", " ", "  ", " 0", " 0", " 0", " 0", " 1"},   {"  An Hi", " ", "  ", " 2", " 0", " 0", " 0", " 0"},
      {"  Loc 3", " ", " ", " ", "0", "0", "0", "0"},
  };
  const int rows[] = {1, 2, 6, 13, 18};
  for (int i = 0; i < 5; ++i) {
    for (int col = 0; col < 8; ++col) EXPECT_EQ(keys.TextMatrix(rows[i], col), expected[i][col]) << rows[i];
  }
  EXPECT_EQ(keys.TextMatrix(19, 2), "");
  EXPECT_EQ(view.MenuHelpIds[1], 1);
  EXPECT_EQ(view.MenuHelpIds[18], 22);

  // The input range on its own row, a character a place.
  ASSERT_EQ(view.grdInput.Rows(), 2);
  const std::array<const char*, 6> range = {"  ", "  ", " 0", " .", " 2", " V"};
  for (int col = 0; col < 6; ++col) EXPECT_EQ(view.grdInput.TextMatrix(0, col), range[col]);

  EXPECT_EQ(view.grdSetPt.TextMatrix(0, 0), " ALARM KEY  ");
  EXPECT_EQ(view.grdSetPt.TextMatrix(1, 0), " SETPT1");
  EXPECT_EQ(view.grdSetPt.TextMatrix(2, 0), " SETPT2");
  EXPECT_EQ(view.grdSetPt.TextMatrix(2, 4), " 2");
}

// The longest menu there is: reading coordinates, every board and a data sheet.
TEST_F(MenuViewTest, DataSheetKeysAreMarkedReadOnly) {
  g.TedsHardware = g.TedsPresent = 1;
  g.TedsTemplate = 0;  // fetched already: the sheet of zeros
  g.TedsBits = std::string(464, '0');
  DpmMenu& view = Open("33=08 55=C0", 10);
  EXPECT_TRUE(view.Label1.Visible());
  EXPECT_EQ(view.grdMain.Rows(), 35 + 27);
  EXPECT_EQ(view.grdMain.TextMatrix(18, 0), " # Ser No ");
  EXPECT_EQ(view.MenuHelpIds[23], 26);
}

TEST_F(MenuViewTest, ViewMenuOpensItAndTheMainMenuClosesIt) {
  LoadSetup("");
  MainMenu& menu = frmMMenu();
  menu.Show();
  menu.mnuMenu.SetEnabled(true);
  menu.mnuView.SetEnabled(true);
  menu.mnuMenu.UserClick();
  DpmMenu* view = Forms().FindLoaded<DpmMenu>();
  ASSERT_NE(view, nullptr);
  EXPECT_TRUE(view->IsActive());
  EXPECT_TRUE(menu.Visible()) << "the main menu stays up";
  EXPECT_EQ(g.MenuViewUp, 1);

  view->CmdPrinter.UserClick();
  EXPECT_EQ(dialogs.printedForms, std::vector<std::string>{"frmDPMMenu"});

  view->cmdMainMenu.UserClick();
  EXPECT_EQ(Forms().FindLoaded<DpmMenu>(), nullptr);
  EXPECT_TRUE(menu.IsActive());
  EXPECT_EQ(g.MenuViewUp, 0);

  // Each view is built from the image of that moment.
  LoadSetup("55=40");
  menu.mnuMenu.UserClick();
  EXPECT_EQ(frmDPMMenu().lblSigCond.Caption(), " Temperature Signal Conditioner");
}

}  // namespace
}  // namespace dpm::testing
