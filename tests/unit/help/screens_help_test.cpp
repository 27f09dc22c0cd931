#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "help_fixture.h"
#include "panelmenu/menu_fixture.h"
#include "panelmenu/menu_view.h"
#include "setup/main_menu.h"

namespace dpm::testing {
namespace {

// F1 on each screen that takes it opens the help window, modal, on the item of the field
// last chosen; OK brings the screen back.
TEST_F(HelpTest, F1OnEachScreenShowsTheItemOfTheChosenField) {
  struct Case {
    const char* what;
    std::function<Form&()> choose;  // opens the screen and chooses a field
    int16_t context;
  };
  const Case cases[] = {
      {"page 1, rate",
       [&]() -> Form& {
         OpenPage().cboRate.UserFocus();
         return frmSetup1();
       },
       1319},
      {"page 2, time constant",
       [&]() -> Form& {
         OpenPage2().cboTimConst.UserFocus();
         return frmSetup2();
       },
       1329},
      {"page 3, lockout box 4",
       [&]() -> Form& {
         OpenPage3().chkLock[4].UserFocus();
         return frmSetup3();
       },
       1352},
      {"main menu, File heading",
       [&]() -> Form& {
         frmMMenu().Show();
         frmMMenu().mnuFile.UserClick();
         return frmMMenu();
       },
       3107},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Forms().Reset();
    Form& screen = c.choose();
    g.EntryReturnFlag = 1;
    const Seen seen = WhileHelpIsUp([&] { screen.UserKeyDown(nullptr, kKeyF1, 0); });
    EXPECT_EQ(g.HelpContext, c.context);
    EXPECT_TRUE(seen.up && seen.modal);
    EXPECT_EQ(seen.caption, "APPLICATION  HELP");
    EXPECT_EQ(seen.lines, LinesOfItem(c.context));
    EXPECT_EQ(g.EntryReturnFlag, 0) << "help clears the flag, so that the page is built afresh";
    EXPECT_TRUE(screen.IsActive());
    EXPECT_TRUE(dialogs.messages.empty());
  }
}

// F1 in the value entry dialog: the dialog steps aside for the help on its field, and the
// field, no longer being edited, loses its mark.
TEST_F(HelpTest, F1InTheValueEntryDialogShowsTheHelpOfItsField) {
  SetupPage2& page = OpenPage2();
  page.txtSetpt1.UserFocus();
  page.txtSetpt1.UserClick();
  ValueEntry& dialog = frmEntVal();
  ASSERT_TRUE(dialog.IsActive());
  EXPECT_EQ(page.txtSetpt1.BackColor(), ColPaleGreen);

  const Seen seen = WhileHelpIsUp([&] { dialog.txtDigit[2].UserKeyDown(kKeyF1, 0); });
  EXPECT_TRUE(seen.up && seen.modal);
  EXPECT_EQ(seen.lines, LinesOfItem(1332));
  EXPECT_FALSE(dialog.Visible());
  EXPECT_EQ(page.txtSetpt1.BackColor(), ColWhite);
  EXPECT_EQ(g.EntryBox, nullptr);
  EXPECT_EQ(g.EntryReturnFlag, 0);
  EXPECT_TRUE(page.IsActive());
}

// The menu view shows help beside its keys at once. Once the user has read it, nothing
// the key grid does by itself brings it back; a click on a key does, also on the same key.
TEST_F(HelpTest, MenuViewHelpComesWithAClickAndOnlyWithAClick) {
  frmMMenu().Show();
  DpmMenu& view = frmDPMMenu();
  view.Show();
  AppHelp& help = frmAppHelp();

  view.grdMain.UserClickCell(6, 3);  // SCALE
  EXPECT_TRUE(help.Visible());
  EXPECT_FALSE(help.Modal());
  EXPECT_EQ(help.Caption(), "Menu Help");
  EXPECT_EQ(view.grdMain.Row(), 0) << "the selection goes back to the header";
  EXPECT_EQ(help.picText.PrintedLines(), LinesOfItem(2156)) << "the click's item, not the selection's";
  help.cmdOK.UserClick();
  EXPECT_FALSE(help.Visible());
  EXPECT_EQ(view.grdMain.Row(), 0);

  Forms().UserActivate(view);
  view.grdMain.UserFocus();
  EXPECT_FALSE(help.Visible());
  // The selection moved by the keyboard shows the key's item; OK leaves it on the header.
  view.grdMain.SetRow(5);
  view.grdMain.on.SelChange();
  EXPECT_EQ(help.picText.PrintedLines(), LinesOfItem(2105));
  help.cmdOK.UserClick();
  EXPECT_EQ(view.grdMain.Row(), 0);

  view.grdMain.UserClickCell(6, 3);
  EXPECT_TRUE(help.Visible());
  // Another key while the help is up, the view in front: the window follows.
  Forms().UserActivate(view);
  view.grdSetPt.UserClickCell(2, 3);
  EXPECT_TRUE(help.IsActive());
  EXPECT_EQ(help.picText.PrintedLines(), LinesOfItem(2174));
  // A row below the keys: its selection has no item and asks for none; its click has one.
  view.grdMain.UserClickCell(30, 3);
  EXPECT_EQ(help.picText.PrintedLines(), LinesOfItem(2150));
  EXPECT_TRUE(dialogs.messages.empty());

  // With the first alarm disabled the second setpoint stands in the first row, and takes
  // that row's item.
  view.Unload();
  LoadSetup("59=02");
  frmDPMMenu().Show();
  frmDPMMenu().grdSetPt.UserClickCell(1, 3);
  EXPECT_EQ(g.HelpContext, 2173);
}

}  // namespace
}  // namespace dpm::testing
