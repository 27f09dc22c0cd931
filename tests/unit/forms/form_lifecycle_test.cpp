#include "forms_fixture.h"

namespace dpm::testing {
namespace {

// Three screens that write their events into one log.
template <const char* kScreenName>
class Screen : public Form {
 public:
  static constexpr const char* kName = kScreenName;
  Screen() : Form(kScreenName, kScreenName) {
    on.Load = [this] { Log("load"); };
    on.Activate = [this] { Log("activate"); };
    on.Unload = [this](int& cancel) {
      Log("unload");
      cancel = keepLoaded ? 1 : 0;
    };
  }
  void Log(const std::string& what) {
    if (log != nullptr) log->push_back(std::string(kScreenName) + " " + what);
  }

  static inline std::vector<std::string>* log = nullptr;
  bool keepLoaded = false;
  CommandButton cmdGo{*this, "cmdGo", "Go"};
  TextBox txtValue{*this, "txtValue"};
};

inline constexpr char kMain[] = "frmMain";
inline constexpr char kPage[] = "frmPage";
inline constexpr char kHelp[] = "frmHelp";
using MainScreen = Screen<kMain>;
using PageScreen = Screen<kPage>;
using HelpScreen = Screen<kHelp>;

class LifecycleTest : public FormsTest {
 protected:
  LifecycleTest() {
    MainScreen::log = &log;
    PageScreen::log = &log;
    HelpScreen::log = &log;
  }
  ~LifecycleTest() override { MainScreen::log = PageScreen::log = HelpScreen::log = nullptr; }
};

TEST_F(LifecycleTest, AFormIsLoadedOnceOnFirstUseAndHidingTheActiveOneActivatesThePrevious) {
  MainScreen& main = Forms().Use<MainScreen>();
  EXPECT_EQ(&Forms().Use<MainScreen>(), &main);
  EXPECT_FALSE(main.Visible());
  EXPECT_EQ(Forms().Active(), nullptr);
  main.Show();
  main.Show();
  PageScreen& page = Forms().Use<PageScreen>();
  page.Show();
  main.Hide();  // not the active one: nothing else happens
  main.Show();
  page.Hide();
  EXPECT_TRUE(main.IsActive());
  EXPECT_EQ(log, (std::vector<std::string>{"frmMain load", "frmMain activate", "frmPage load", "frmPage activate",
                                           "frmMain activate"}));
  // With the only visible form hidden, none is active.
  main.Hide();
  EXPECT_EQ(Forms().Active(), nullptr);
}

TEST_F(LifecycleTest, TheMostRecentlyActiveVisibleFormTakesOver) {
  MainScreen& main = Forms().Use<MainScreen>();
  PageScreen& page = Forms().Use<PageScreen>();
  HelpScreen& help = Forms().Use<HelpScreen>();
  main.Show();
  page.Show();
  help.Show();
  page.Hide();  // out of the running
  log.clear();
  help.Hide();
  EXPECT_TRUE(main.IsActive());
  EXPECT_EQ(log, (std::vector<std::string>{"frmMain activate"}));
}

TEST_F(LifecycleTest, ModalShowServesEventsUntilTheFormIsHidden) {
  MainScreen& main = Forms().Use<MainScreen>();
  main.Show();
  HelpScreen& help = Forms().Use<HelpScreen>();
  help.cmdGo.on.Click = [&help] { help.Hide(); };
  bool returned = false;
  main.cmdGo.on.Click = [&] {
    help.ShowModal();
    returned = true;
  };
  time.Post([&] { time.Advance(249), time.Post([&] { help.cmdGo.UserClick(); }); });
  log.clear();

  main.cmdGo.UserClick();
  EXPECT_TRUE(returned);
  EXPECT_EQ(time.Elapsed(), 251u);
  EXPECT_FALSE(help.Modal());
  EXPECT_TRUE(main.IsActive());
  EXPECT_EQ(log, (std::vector<std::string>{"frmHelp activate", "frmMain activate"}));
}

TEST_F(LifecycleTest, WhileAModalFormIsUpTheUserCannotActivateAnother) {
  MainScreen& main = Forms().Use<MainScreen>();
  PageScreen& page = Forms().Use<PageScreen>();
  HelpScreen& help = Forms().Use<HelpScreen>();
  main.Show();
  page.Show();
  bool blocked = false;
  time.Post([&] {
    Forms().UserActivate(main);
    blocked = help.IsActive();
    Forms().UserActivate(help);
    help.Hide();
  });
  help.ShowModal();
  EXPECT_TRUE(blocked);
  EXPECT_TRUE(page.IsActive());
  Forms().UserActivate(main);
  EXPECT_TRUE(main.IsActive());
}

TEST_F(LifecycleTest, UnloadDropsTheFormUnlessItsHandlerKeepsItAndTheNextUseStartsAfresh) {
  PageScreen& page = Forms().Use<PageScreen>();
  page.txtValue.SetText("edited");
  page.Show();
  page.keepLoaded = true;
  page.UserClose();
  EXPECT_TRUE(Forms().IsLoaded("frmPage"));
  EXPECT_TRUE(page.Visible());
  page.keepLoaded = false;
  page.UserClose();
  EXPECT_FALSE(Forms().IsLoaded("frmPage"));
  EXPECT_EQ(Forms().Active(), nullptr);
  PageScreen& fresh = Forms().Use<PageScreen>();
  EXPECT_EQ(fresh.txtValue.Text(), "");
  fresh.Unload();
  EXPECT_FALSE(Forms().IsLoaded("frmPage"));
  Forms().Unload("frmPage");      // no longer loaded
  Forms().Unload("frmNotBuilt");  // not part of the program
  EXPECT_EQ(log, (std::vector<std::string>{"frmPage load", "frmPage activate", "frmPage unload", "frmPage unload",
                                           "frmPage load", "frmPage unload"}));
}

TEST_F(LifecycleTest, AFormThatUnloadsItselfLivesUntilItsHandlerReturns) {
  MainScreen& main = Forms().Use<MainScreen>();
  main.Show();
  PageScreen& page = Forms().Use<PageScreen>();
  page.Show();
  std::string seenAfterUnload;
  page.cmdGo.on.Click = [&] {
    page.txtValue.SetText("still here");
    page.Unload();
    seenAfterUnload = page.txtValue.Text();  // the object is alive until this returns
    Forms().Use<MainScreen>().Show();
  };
  log.clear();
  page.cmdGo.UserClick();
  EXPECT_EQ(seenAfterUnload, "still here");
  EXPECT_FALSE(Forms().IsLoaded("frmPage"));
  EXPECT_EQ(log, (std::vector<std::string>{"frmPage unload", "frmMain activate"}));
}

TEST_F(LifecycleTest, AModalWaitEndsWhenTheFormIsUnloadedOrTheProgramEnds) {
  HelpScreen& help = Forms().Use<HelpScreen>();
  time.Post([&] { help.Unload(); });
  help.ShowModal();
  EXPECT_FALSE(Forms().IsLoaded("frmHelp"));

  int ended = 0;
  Forms().SetEndAction([&] { ++ended; });
  PageScreen& page = Forms().Use<PageScreen>();
  time.Post([] { Forms().End(); });
  page.ShowModal();
  EXPECT_EQ(ended, 1);
  EXPECT_TRUE(Forms().Ended());
}

}  // namespace
}  // namespace dpm::testing
