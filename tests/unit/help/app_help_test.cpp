#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "help/setup_help.h"
#include "help_fixture.h"
#include "setup/main_menu.h"
#include "temp_folder.h"

namespace dpm::testing {
namespace {

// The texts printed, each with "*" ahead of it when it is bold, and the faces used.
std::string Printed(const std::vector<DrawOp>& ops) {
  std::string out;
  for (const DrawOp& op : ops) {
    if (op.kind != DrawOp::Kind::Text) continue;
    out += (op.font.bold ? "*" : "") + op.text + "|";
  }
  return out;
}

// The window counts its lines down to the second, which it prints in bold; the text after
// the last "$" is always plain.
TEST_F(HelpTest, PrintsALineForEachDollarAndTheSecondLineInBold) {
  struct Case {
    std::string item;
    const char* printed;
  };
  const Case cases[] = {
      {"One line only", "One line only|"},
      {"Title$Second", "Title|Second|"},
      {"Title$Field$Meaning$More", "Title|*Field|Meaning|More|"},
      {"$$Third", "|*|Third|"},
  };
  AppHelp& help = frmAppHelp();
  for (const Case& c : cases) {
    help.PrintItem(c.item, 1302);
    EXPECT_EQ(Printed(help.picText.Ops()), c.printed) << c.item;
    for (const DrawOp& op : help.picText.Ops()) EXPECT_EQ(op.font.name, AppHelp::kTextFont);
  }
}

// The ASCII table is printed as it stands, line by line, in the fixed-pitch face, its "$"
// a character like any other; the next item is back in the usual face.
TEST_F(HelpTest, TheAsciiTableKeepsItsColumnsAndItsDollar) {
  AppHelp& help = frmAppHelp();
  help.PrintItem("ASCII$Table\r\n 36 $   37 %\r\n 38 &", kAsciiTableHelp);
  EXPECT_EQ(help.picText.PrintedLines(), (std::vector<std::string>{"ASCII$Table", " 36 $   37 %", " 38 &"}));
  for (const DrawOp& op : help.picText.Ops()) {
    EXPECT_EQ(op.font.name, AppHelp::kTableFont);
    EXPECT_FALSE(op.font.bold);
  }
  help.PrintItem("Title$Field$Text", 1336);
  EXPECT_EQ(help.picText.Ops().front().font.name, AppHelp::kTextFont);

  // From the program's own files: the label of page 3 opens the table at once.
  SetupPage3& page = OpenPage3();
  const Seen seen = WhileHelpIsUp([&] { page.lblAscTbl.UserClick(); });
  EXPECT_TRUE(seen.up && seen.modal);
  ASSERT_GT(seen.lines.size(), 20u);
  EXPECT_NE(seen.lines[15].find(" 36 $ "), std::string::npos) << seen.lines[15];
  EXPECT_EQ(seen.ops.back().font.name, AppHelp::kTableFont);
  EXPECT_TRUE(page.IsActive());
}

// A reference screen shows its text in its own label, as one paragraph.
TEST_F(HelpTest, ShowHelpTextPutsTheItemIntoTheLabelOfTheHelpForm) {
  TempFolder folder;
  std::ofstream(folder / "Help13.S10", std::ios::binary) << "Board$Jumpers$Set J1 for 10 V.";
  std::ofstream(folder / "Help13.R10", std::ios::binary) << std::string("\x01\0\0\0\x1e\0", 6);
  SetHelpFolder(folder.Path());
  SetupPage1& form = OpenPage();  // any form with a label named lblText stands in
  Label lblText{form, "lblText"};
  HelpForm = &form;
  g.HelpContext = 1301;
  g.EntryReturnFlag = 1;
  ShowHelpText();
  EXPECT_EQ(lblText.Caption(), "Board Jumpers Set J1 for 10 V.");
  EXPECT_EQ(g.EntryReturnFlag, 0);

  g.HelpContext = 1302;  // no such record: the label keeps its text
  ShowHelpText();
  EXPECT_EQ(lblText.Caption(), "Board Jumpers Set J1 for 10 V.");
  ASSERT_EQ(dialogs.messages.size(), 1u);
  EXPECT_EQ(dialogs.messages[0].text, "Help13.R10 has no record 2 (help context 1302).");
  HelpForm = nullptr;
}

// F1 before any field had the focus, or with the help files gone: a message that names
// the file and the context, no window, and the screen goes on.
TEST_F(HelpTest, AnItemThatCannotBeReadIsToldAndTheScreenGoesOn) {
  SetupPage1& page = OpenPage();
  g.HelpContext = 0;
  page.UserKeyDown(nullptr, kKeyF1, 0);
  TempFolder empty;
  SetHelpFolder(empty.Path());
  page.cboRate.UserFocus();
  page.UserKeyDown(nullptr, kKeyF1, 0);

  ASSERT_EQ(dialogs.messages.size(), 2u);
  EXPECT_NE(dialogs.messages[0].text.find("Help 0.R10"), std::string::npos);
  EXPECT_NE(dialogs.messages[0].text.find("help context 0"), std::string::npos);
  EXPECT_EQ(dialogs.messages[1].text, "Help file Help13.R10 not found (help context 1319).");
  EXPECT_FALSE(frmAppHelp().Visible());
  EXPECT_TRUE(page.IsActive());
}

// The Help heading of the main menu: the page on how help works, then back.
TEST_F(HelpTest, TheHelpHeadingShowsTheSetupHelpPage) {
  MainMenu& menu = frmMMenu();
  menu.Show();
  menu.mnuMHelp.UserClick();
  SetupHelp* page = Forms().FindLoaded<SetupHelp>();
  ASSERT_NE(page, nullptr);
  EXPECT_TRUE(page->IsActive());
  EXPECT_EQ(page->Caption(), "SETUP  HELP");
  EXPECT_FALSE(menu.Visible());
  EXPECT_EQ(page->picText.PrintedLines(), SetupHelpLines());
  EXPECT_EQ(SetupHelpLines()[5], "");
  EXPECT_EQ(g.HelpContext, 3101);
  EXPECT_FALSE(dialogs.hourglass);

  page->cmdMHelp.UserClick();
  EXPECT_TRUE(menu.IsActive());
  EXPECT_FALSE(Forms().IsLoaded("frmMHELP")) << "the main menu's return unloads it";
}

}  // namespace
}  // namespace dpm::testing
