#include <string>
#include <vector>

#include "forms/forms_fixture.h"
#include "help/app_help.h"
#include "help/help_files.h"
#include "menu_fixture.h"
#include "pages/setup_page3.h"
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
    const HelpItem item = ReadHelpItem(c.context);
    ASSERT_TRUE(item.Read()) << item.fault;
    EXPECT_EQ(help->picText.PrintedLines().front(), item.text.substr(0, item.text.find('$')));
  }
}

// Printing goes to the platform's printer; each opening is built from the image of the moment.
TEST_F(MenuViewTest, PrintsAndIsBuiltAfreshEachTime) {
  Open("").CmdPrinter.UserClick();
  EXPECT_EQ(dialogs.printedForms, std::vector<std::string>{"frmDPMMenu"});
  frmDPMMenu().cmdMainMenu.UserClick();
  EXPECT_FALSE(Forms().IsLoaded("frmDPMMenu"));
  EXPECT_EQ(g.MenuViewUp, 0);
  EXPECT_EQ(Open("55=40").lblSigCond.Caption(), " Temperature Signal Conditioner");
  EXPECT_EQ(g.MenuViewUp, 1);
}

// Setup page 3, loaded and hidden, still shows the lockouts of the setup it was filled
// from; the scaling keys take their mark from its boxes, not from the image.
TEST_F(MenuViewTest, ScalingKeysTakeTheirLockFromTheLoadedPage3) {
  auto lockMarks = [](DpmMenu& view) {
    std::string marks;
    for (int row = 1; !view.grdMain.TextMatrix(row, 0).empty(); ++row) {
      const std::string& name = view.grdMain.TextMatrix(row, 0);
      if (name.find("Lo rd") != std::string::npos || name.find("Lo In") != std::string::npos) marks += name + ";";
    }
    return marks;
  };
  g.MeterKind = "1";
  EXPECT_EQ(lockMarks(Open("33=08")), " Lo In; Lo rd;");
  frmDPMMenu().cmdMainMenu.UserClick();

  LoadSetup("33=08 43=01");  // "Offset, Lo/Hi Rd" locked
  g.MeterKind = "1";
  frmSetup3().Show();
  frmSetup3().Hide();
  LoadSetup("33=08");  // a setup without the lock, the page not shown since
  EXPECT_EQ(lockMarks(Open("33=08")), " Lo In; *Lo rd;");
}

}  // namespace
}  // namespace dpm::testing
