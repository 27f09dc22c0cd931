#include "setup/main_menu.h"
#include "forms/forms_fixture.h"
#include "platform/fake/fake_serial_line.h"

namespace dpm::testing {
namespace {

// Stand-ins for the screens the main menu closes or keeps when it comes back.
template <const char* kScreenName>
class Stub : public Form {
 public:
  static constexpr const char* kName = kScreenName;
  Stub() : Form(kScreenName, kScreenName) {}
};
inline constexpr char kList[] = "frmList";
inline constexpr char kDpmMenu[] = "frmDPMMenu";
inline constexpr char kCalib[] = "frmCalib";
inline constexpr char kMHelp[] = "frmMHELP";
inline constexpr char kSetup1[] = "frmSetup1";

class MainMenuTest : public FormsTest {
 protected:
  MainMenuTest() : line(time) { Platform().meterLink = &line; }

  // Start-up: the menu shown for the first time.
  MainMenu& Start(int16_t linkEnabled, int16_t calibSetting = 0) {
    g.LinkEnabled = linkEnabled;
    g.CalibSetting = calibSetting;
    MainMenu& menu = frmMMenu();
    menu.Show();
    return menu;
  }

  fake::FakeSerialLine line;
};

struct Enabling {
  bool dpm, readings, calib, calibShown;
};

TEST_F(MainMenuTest, ActivationSetsTheHeadingsByTheLinkAndTheCalibrationSetting) {
  struct Case {
    int16_t linkEnabled;
    int16_t calibSetting;
    Enabling expected;
  };
  const Case cases[] = {
      {0, 0, {false, false, false, true}}, {1, 0, {true, true, true, true}},
      {2, 0, {true, true, true, true}},  // anything but 0 counts as a link
      {1, 7, {true, true, true, false}},   {0, 7, {false, false, false, false}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE("LinkEnabled " + std::to_string(c.linkEnabled) + ", CalibSetting " + std::to_string(c.calibSetting));
    MainMenu& menu = Start(c.linkEnabled, c.calibSetting);
    EXPECT_EQ(menu.mnuDPM.Enabled(), c.expected.dpm);
    EXPECT_EQ(menu.mnuMRdgs.Enabled(), c.expected.readings);
    EXPECT_EQ(menu.mnuCalib.Enabled(), c.expected.calib);
    EXPECT_EQ(menu.mnuCalib.Visible(), c.expected.calibShown);
    // What needs a loaded setup stays grey; File, Jumpers and Help are always there.
    for (MenuItem* item : {&menu.mnuView, &menu.mnuPut, &menu.mnuCmds}) EXPECT_FALSE(item->Enabled());
    for (MenuItem* item : {&menu.mnuFile, &menu.mnuJmps, &menu.mnuMHelp, &menu.mnuGet}) EXPECT_TRUE(item->Enabled());
    EXPECT_TRUE(menu.mnuView.IsHeading());
    EXPECT_FALSE(menu.mnuSetup.IsEffectivelyEnabled());
    menu.Unload();
  }
}

TEST_F(MainMenuTest, EachReturnClosesTheScreensLeftBehindAndResetsItsState) {
  MainMenu& menu = Start(1, 7);
  Forms().Use<Stub<kList>>().Show();
  Forms().Use<Stub<kDpmMenu>>();
  Forms().Use<Stub<kCalib>>();
  Forms().Use<Stub<kMHelp>>();
  Forms().Use<Stub<kSetup1>>().Show();
  menu.Hide();
  g.MenuViewUp = 1;
  g.TedsTemplate = 3;
  menu.mnuCalib.SetVisible(true);
  dialogs.SetHourglass(true);

  menu.Show();
  EXPECT_TRUE(menu.IsActive());
  for (const char* closed : {kList, kDpmMenu, kCalib, kMHelp}) EXPECT_FALSE(Forms().IsLoaded(closed)) << closed;
  EXPECT_TRUE(Forms().IsLoaded(kSetup1));
  EXPECT_EQ(g.MenuViewUp, 0);
  EXPECT_EQ(g.TedsTemplate, 99);
  EXPECT_FALSE(menu.mnuCalib.Visible());
  EXPECT_FALSE(dialogs.hourglass);
  EXPECT_TRUE(menu.cmdMenuHelp.Visible());
}

TEST_F(MainMenuTest, OpeningAHeadingSetsItsHelpContextAndClearsThePage) {
  const std::pair<MenuItem MainMenu::*, int16_t> headings[] = {
      {&MainMenu::mnuFile, 3107},  {&MainMenu::mnuDPM, 3108},  {&MainMenu::mnuView, 3109},  {&MainMenu::mnuCmds, 3110},
      {&MainMenu::mnuMRdgs, 3111}, {&MainMenu::mnuJmps, 3112}, {&MainMenu::mnuCalib, 3113},
  };
  MainMenu& menu = Start(1);
  menu.mnuView.SetEnabled(true);
  menu.mnuCmds.SetEnabled(true);
  for (const auto& [heading, context] : headings) {
    SCOPED_TRACE(context);
    menu.cmdMenuHelp.UserClick();
    menu.lblGPText.SetVisible(true);
    (menu.*heading).UserClick();
    EXPECT_EQ(g.HelpContext, context);
    EXPECT_TRUE(menu.picInitText.Ops().empty());
    EXPECT_FALSE(menu.cmdOK.Visible());
    EXPECT_FALSE(menu.lblGPText.Visible());
    menu.cmdMenuHelp.SetVisible(true);
  }
}

TEST_F(MainMenuTest, MenuHelpPrintsItsPageOnceUntilOkIsPressed) {
  MainMenu& menu = Start(0);
  menu.lblGPText.SetVisible(true);
  dialogs.SetHourglass(true);

  menu.cmdMenuHelp.UserClick();
  EXPECT_EQ(menu.picInitText.PrintedLines(), MenuHelpLines());
  EXPECT_EQ(g.HelpContext, 3101);
  EXPECT_FALSE(menu.cmdMenuHelp.Visible());
  EXPECT_TRUE(menu.cmdOK.Visible());
  EXPECT_TRUE(menu.cmdOK.HasFocus());
  EXPECT_FALSE(menu.lblGPText.Visible());
  EXPECT_FALSE(dialogs.hourglass);

  // The button has hidden itself: a second click does not reach it.
  menu.cmdMenuHelp.UserClick();
  EXPECT_EQ(menu.picInitText.PrintedLines().size(), MenuHelpLines().size());

  menu.cmdOK.UserClick();
  EXPECT_TRUE(menu.picInitText.Ops().empty());
  EXPECT_TRUE(menu.cmdMenuHelp.Visible());
  EXPECT_FALSE(menu.cmdOK.Visible());
  menu.cmdMenuHelp.UserClick();
  EXPECT_EQ(menu.picInitText.PrintedLines(), MenuHelpLines());
}

TEST_F(MainMenuTest, ExitAndClosingTheWindowTakeTheLineDownAndEndTheProgram) {
  for (const bool byClosing : {false, true}) {
    SCOPED_TRACE(byClosing ? "closing the window" : "File > Exit");
    MainMenu& menu = Start(1);
    line.SetPortOpen(true);
    line.ClearTranscript();
    const uint32_t before = time.Elapsed();
    if (byClosing) {
      menu.UserClose();
    } else {
      menu.mnuExit.UserClick();
    }
    EXPECT_TRUE(Forms().Ended());
    EXPECT_FALSE(line.PortOpen());
    EXPECT_GE(time.Elapsed() - before, 200u);
    ASSERT_FALSE(line.Transcript().empty());
    EXPECT_EQ(line.Transcript().back().kind, fake::FakeSerialLine::Kind::Close);
    Forms().Reset();
  }
}

}  // namespace
}  // namespace dpm::testing
