#include <string>
#include <vector>

#include "forms/forms_fixture.h"
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
