#include <functional>

#include "forms_fixture.h"
#include "platform/fake/drawing_recorder.h"
#include "platform/faults.h"

namespace dpm::testing {
namespace {

class Sample : public Form {
 public:
  static constexpr const char* kName = "frmSample";
  Sample() : Form(kName, "SAMPLE") {
    for (const char* rate : {"Fast", "Medium", "Slow"}) cboRate.AddItem(rate);
  }

  Frame fraOuter{*this, "fraOuter", "Outer"};
  Frame fraInner{*this, "fraInner", "Inner", &fraOuter};
  ComboBox cboRate{*this, "cboRate", &fraInner};
  CommandButton cmdGo{*this, "cmdGo", "Go", &fraInner};
  CheckBox chkTare{*this, "chkTare", "Tare", &fraOuter};
  OptionButton optA{*this, "optA", "A", &fraOuter};
  OptionButton optB{*this, "optB", "B", &fraOuter};
  OptionButton optC{*this, "optC", "C"};
  TextBox txtA{*this, "txtA"};
  TextBox txtB{*this, "txtB"};
  Label lblNote{*this, "lblNote", "note"};
  ControlArray<CheckBox> chkLock{*this, "chkLock", 0, 17};
};

struct ClickCase {
  const char* what;
  std::function<void(Sample&)> act;
  int clicks;
  std::function<bool(Sample&)> state;
};

TEST_F(FormsTest, SettingByCodeRaisesClickOnlyWhenTheValueChanges) {
  const std::vector<ClickCase> cases = {
      {"list index to an entry", [](Sample& f) { f.cboRate.SetListIndex(1); }, 1,
       [](Sample& f) { return f.cboRate.ListIndex() == 1 && f.cboRate.Text() == "Medium"; }},
      {"list index to the same entry", [](Sample& f) { f.cboRate.SetListIndex(1), f.cboRate.SetListIndex(1); }, 1,
       [](Sample& f) { return f.cboRate.ListIndex() == 1; }},
      {"list index back to none", [](Sample& f) { f.cboRate.SetListIndex(2), f.cboRate.SetListIndex(-1); }, 2,
       [](Sample& f) { return f.cboRate.ListIndex() == -1 && f.cboRate.Text().empty(); }},
      {"list index beyond the list", [](Sample& f) { f.cboRate.SetListIndex(7); }, 0,
       [](Sample& f) { return f.cboRate.ListIndex() == -1; }},
      {"list index beyond the list after an entry",
       [](Sample& f) { f.cboRate.SetListIndex(0), f.cboRate.SetListIndex(3); }, 1,
       [](Sample& f) { return f.cboRate.ListIndex() == -1 && f.cboRate.Text().empty(); }},
      {"list index below -1", [](Sample& f) { f.cboRate.SetListIndex(-2); }, 0,
       [](Sample& f) { return f.cboRate.ListIndex() == -1; }},
      {"refill: clear, add, select",
       [](Sample& f) {
         f.cboRate.SetListIndex(1), f.cboRate.Clear(), f.cboRate.AddItem("X"), f.cboRate.SetListIndex(0);
       },
       2, [](Sample& f) { return f.cboRate.Text() == "X"; }},
      {"check box on", [](Sample& f) { f.chkTare.SetValue(kChecked); }, 1,
       [](Sample& f) { return f.chkTare.Value() == kChecked; }},
      {"check box to its own value", [](Sample& f) { f.chkTare.SetValue(kUnchecked); }, 0,
       [](Sample& f) { return f.chkTare.Value() == kUnchecked; }},
      {"check box on, then grey", [](Sample& f) { f.chkTare.SetValue(kChecked), f.chkTare.SetValue(kGrayed); }, 2,
       [](Sample& f) { return f.chkTare.Value() == kGrayed; }},
      {"array element on", [](Sample& f) { f.chkLock[17].SetValue(kChecked); }, 1,
       [](Sample& f) { return f.chkLock[17].Value() == kChecked && f.chkLock[16].Value() == kUnchecked; }},
      {"option on", [](Sample& f) { f.optA.SetValue(true); }, 1, [](Sample& f) { return f.optA.Value(); }},
      {"option on twice", [](Sample& f) { f.optA.SetValue(true), f.optA.SetValue(true); }, 1,
       [](Sample& f) { return f.optA.Value(); }},
      {"option off", [](Sample& f) { f.optA.SetValue(true), f.optA.SetValue(false); }, 1,
       [](Sample& f) { return !f.optA.Value() && !f.optB.Value(); }},
      {"other option of the group", [](Sample& f) { f.optA.SetValue(true), f.optB.SetValue(true); }, 2,
       [](Sample& f) { return !f.optA.Value() && f.optB.Value(); }},
      {"option of another container", [](Sample& f) { f.optA.SetValue(true), f.optC.SetValue(true); }, 2,
       [](Sample& f) { return f.optA.Value() && f.optC.Value(); }},
  };
  for (const ClickCase& c : cases) {
    SCOPED_TRACE(c.what);
    Sample& form = Forms().Use<Sample>();
    int clicks = 0;
    for (Control* control : form.Controls()) control->on.Click = [&clicks] { ++clicks; };
    form.chkLock.on.Click = [&clicks](int) { ++clicks; };
    c.act(form);
    EXPECT_EQ(clicks, c.clicks);
    EXPECT_TRUE(c.state(form));
    form.Unload();
  }
}

TEST_F(FormsTest, UserActionsRaiseTheEventsWithoutEchoingToTheView) {
  Sample& form = Forms().Use<Sample>();
  RecordingView comboView(form.cboRate);
  RecordingView checkView(form.chkTare);
  int clicks = 0;
  form.cboRate.on.Click = [&] { ++clicks; };
  form.chkTare.on.Click = [&] { ++clicks; };

  form.cboRate.UserSelect(2);
  form.chkTare.UserSetValue(kChecked);
  EXPECT_EQ(clicks, 2);
  EXPECT_EQ(form.cboRate.ListIndex(), 2);
  EXPECT_TRUE(comboView.updates.empty());
  EXPECT_TRUE(checkView.updates.empty());

  form.cboRate.SetListIndex(0);
  EXPECT_EQ(comboView.updates, std::vector<Property>{Property::ListIndex});
}

TEST_F(FormsTest, AFrameDisablesAndHidesWhatItHoldsAtAnyDepth) {
  Sample& form = Forms().Use<Sample>();
  int clicks = 0;
  form.cmdGo.on.Click = [&] { ++clicks; };

  form.fraOuter.SetEnabled(false);
  EXPECT_TRUE(form.cmdGo.Enabled());
  EXPECT_FALSE(form.cmdGo.IsEffectivelyEnabled());
  EXPECT_FALSE(form.chkTare.IsEffectivelyEnabled());
  form.cmdGo.UserClick();
  form.cboRate.UserSelect(1);
  form.cmdGo.SetFocus();
  EXPECT_EQ(clicks, 0);
  EXPECT_EQ(form.cboRate.ListIndex(), -1);
  EXPECT_FALSE(form.cmdGo.HasFocus());

  form.fraOuter.SetEnabled(true);
  form.fraInner.SetVisible(false);
  EXPECT_FALSE(form.cmdGo.IsEffectivelyVisible());
  EXPECT_TRUE(form.chkTare.IsEffectivelyVisible());
  form.cmdGo.UserClick();
  EXPECT_EQ(clicks, 0);

  form.fraInner.SetVisible(true);
  form.cmdGo.UserClick();
  EXPECT_EQ(clicks, 1);
  // Code still reaches a control in a disabled frame.
  form.fraOuter.SetEnabled(false);
  form.cboRate.SetListIndex(1);
  EXPECT_EQ(form.cboRate.ListIndex(), 1);
}

TEST_F(FormsTest, GivingFocusRaisesLostFocusOnTheOldControlThenGotFocusOnTheNew) {
  Sample& form = Forms().Use<Sample>();
  std::vector<std::string> log;
  for (Control* c : form.Controls()) {
    c->on.GotFocus = [&log, c] { log.push_back("got " + c->ObjectName()); };
    c->on.LostFocus = [&log, c] { log.push_back("lost " + c->ObjectName()); };
  }
  form.txtA.SetFocus();
  form.txtB.SetFocus();
  form.txtB.SetFocus();     // already there: nothing
  form.lblNote.SetFocus();  // a label takes no focus
  form.chkLock[5].UserFocus();
  EXPECT_EQ(log, (std::vector<std::string>{"got txtA", "lost txtA", "got txtB", "lost txtB", "got chkLock_5"}));
  EXPECT_TRUE(form.chkLock[5].HasFocus());

  // A lost-focus handler that sends the focus elsewhere has the last word.
  log.clear();
  form.chkLock[5].on.LostFocus = [&] { form.txtA.SetFocus(); };
  form.txtB.SetFocus();
  EXPECT_TRUE(form.txtA.HasFocus());
  EXPECT_EQ(log, (std::vector<std::string>{"got txtA"}));
}

TEST_F(FormsTest, TheFormSeesEachKeyFirstAndEitherSideMaySwallowIt) {
  Sample& form = Forms().Use<Sample>();
  std::vector<std::string> log;
  form.on.KeyDown = [&](int& key, int shift) {
    log.push_back("form " + std::to_string(key) + "/" + std::to_string(shift));
    if (key == kKeyF1) key = 0;
  };
  form.txtA.on.KeyDown = [&](int& key, int) { log.push_back("box " + std::to_string(key)); };
  form.txtA.on.KeyPress = [&](int& ascii) {
    log.push_back("press " + std::to_string(ascii));
    if (ascii == '.') ascii = 0;
  };
  form.txtA.SetFocus();

  EXPECT_TRUE(form.txtA.UserKeyDown(kKeyLeft, kShiftMask));
  EXPECT_FALSE(form.txtA.UserKeyDown(kKeyF1, 0));
  EXPECT_TRUE(form.txtA.UserKeyPress('5'));
  EXPECT_FALSE(form.txtA.UserKeyPress('.'));
  EXPECT_TRUE(form.UserKeyDown(nullptr, kKeyRight, 0));  // to the focused control
  EXPECT_EQ(log, (std::vector<std::string>{"form 37/1", "box 37", "form 112/0", "press 53", "press 46", "form 39/0",
                                           "box 39"}));
}

TEST_F(FormsTest, ListEditingKeepsTheSelectedEntry) {
  Sample& form = Forms().Use<Sample>();
  form.cboRate.SetListIndex(1);
  form.cboRate.AddItem("First", 0);
  EXPECT_EQ(form.cboRate.ListIndex(), 2);
  EXPECT_EQ(form.cboRate.Text(), "Medium");
  form.cboRate.AddItem("Last", 99);
  EXPECT_EQ(form.cboRate.List(4), "Last");
  EXPECT_EQ(form.cboRate.List(5), "");
  form.cboRate.RemoveItem(0);
  EXPECT_EQ(form.cboRate.Text(), "Medium");
  form.cboRate.RemoveItem(1);
  EXPECT_EQ(form.cboRate.ListIndex(), -1);
  EXPECT_THROW(form.cboRate.RemoveItem(9), IndexFault);
}

TEST_F(FormsTest, ControlArraysNameTheirElementsAndRefuseOtherIndexes) {
  Sample& form = Forms().Use<Sample>();
  std::vector<int> clicked;
  form.chkLock.on.Click = [&](int index) { clicked.push_back(index); };
  form.chkLock[0].UserSetValue(kChecked);
  form.chkLock[17].SetValue(kChecked);
  EXPECT_EQ(clicked, (std::vector<int>{0, 17}));
  EXPECT_EQ(form.FindControl("chkLock_5"), &form.chkLock[5]);
  EXPECT_EQ(form.chkLock.Count(), 18);
  EXPECT_THROW(form.chkLock[18], IndexFault);
  EXPECT_THROW(form.chkLock[-1], IndexFault);
}

TEST_F(FormsTest, ChangeFollowsTheTextWhoeverChangesIt) {
  Sample& form = Forms().Use<Sample>();
  int changes = 0;
  form.txtA.on.Change = [&] { ++changes; };
  form.txtA.SetText("12");
  form.txtA.SetText("12");
  form.txtA.UserSetText("123");
  EXPECT_EQ(changes, 2);
  form.txtA.SetSelStart(9);
  EXPECT_EQ(form.txtA.SelStart(), 3);
}

class GridForm : public Form {
 public:
  static constexpr const char* kName = "frmGrid";
  GridForm() : Form(kName, "GRID") {}
  Grid grdList{*this, "grdList"};
  ProgressBar barDone{*this, "barDone"};
  Timer Timer1{*this, "Timer1", 50};
  PictureBox Picture1{*this, "Picture1"};
};

TEST_F(FormsTest, GridRowsComeFromTabbedTextAndCellsOutsideAreFaults) {
  Grid& grid = Forms().Use<GridForm>().grdList;
  grid.SetCols(3);
  grid.AddItem("a\tb\tc\td");
  grid.AddItem("x", 1);
  EXPECT_EQ(grid.Rows(), 4);
  EXPECT_EQ(grid.TextMatrix(3, 2), "c");
  EXPECT_EQ(grid.TextMatrix(1, 0), "x");
  EXPECT_EQ(grid.TextMatrix(1, 1), "");
  EXPECT_THROW(grid.TextMatrix(4, 0), IndexFault);
  EXPECT_THROW(grid.SetTextMatrix(0, 3, "no"), IndexFault);
  grid.RemoveItem(1);
  EXPECT_EQ(grid.TextMatrix(2, 0), "a");

  std::vector<std::string> log;
  grid.on.SelChange = [&] { log.push_back("sel " + std::to_string(grid.Row())); };
  grid.on.Click = [&] { log.push_back("click"); };
  grid.UserClickCell(2, 1);
  grid.UserClickCell(2, 1);
  grid.SetRow(0);  // by code: no event
  EXPECT_EQ(log, (std::vector<std::string>{"sel 2", "click", "click"}));
}

TEST_F(FormsTest, ProgressBarRefusesValuesOutsideItsRange) {
  ProgressBar& bar = Forms().Use<GridForm>().barDone;
  bar.SetRange(0, 10);
  bar.SetValue(10);
  EXPECT_THROW(bar.SetValue(11), RuntimeFault);
  EXPECT_EQ(bar.Value(), 10);
}

TEST_F(FormsTest, TimersTickWithTheClockOnlyWhileEnabled) {
  GridForm& form = Forms().Use<GridForm>();
  std::vector<uint32_t> ticks;
  form.Timer1.on.Timer = [&] { ticks.push_back(time.Elapsed()); };
  time.AddTicker([](uint32_t) { Forms().ServeTimers(); });
  time.Run(200);
  EXPECT_TRUE(ticks.empty());
  form.Timer1.SetEnabled(true);
  time.Run(120);
  form.Timer1.SetEnabled(false);
  time.Run(200);
  EXPECT_EQ(ticks, (std::vector<uint32_t>{250, 300}));
}

TEST_F(FormsTest, PrintWritesLineUnderLineAndClsStartsAtTheTop) {
  PictureBox& pic = Forms().Use<GridForm>().Picture1;
  pic.SetCurrentX(300);
  pic.Print("one");
  pic.Print("");
  pic.Print("three");
  EXPECT_EQ(pic.PrintedLines(), (std::vector<std::string>{"one", "", "three"}));
  EXPECT_DOUBLE_EQ(pic.Ops()[0].x1, 300);
  EXPECT_DOUBLE_EQ(pic.Ops()[2].x1, 0);
  EXPECT_DOUBLE_EQ(pic.Ops()[2].y1, 480);
  EXPECT_DOUBLE_EQ(pic.CurrentY(), 720);

  pic.Cls();
  EXPECT_TRUE(pic.Ops().empty());
  EXPECT_DOUBLE_EQ(pic.CurrentY(), 0);
}

// A view with an image of its own takes a kept drawing off the picture; the picture still
// counts it, a recorder still sees it, and Cls starts the count again.
TEST_F(FormsTest, AKeptDrawingIsLetGoOnceTheViewHasItInItsImage) {
  PictureBox& pic = Forms().Use<GridForm>().Picture1;
  const auto seen = fake::RecordDrawing(pic);
  pic.Line(0, 0, 10, 10);
  pic.TakenIntoImage();
  EXPECT_EQ(pic.Ops().size(), 1u) << "not kept: the view may have to paint it again";

  pic.SetAutoRedraw(true);
  pic.Line(10, 10, 20, 20);
  pic.TakenIntoImage();
  EXPECT_TRUE(pic.Ops().empty());
  pic.Print("x");
  EXPECT_EQ(pic.PrintedLines(), std::vector<std::string>{"x"});
  EXPECT_EQ(pic.DrawnCount(), 3u);
  ASSERT_EQ(seen->size(), 3u);
  EXPECT_EQ(seen->at(1).x2, 20);

  const std::uint64_t clears = pic.Clears();
  pic.Cls();
  EXPECT_EQ(pic.DrawnCount(), 0u);
  EXPECT_EQ(pic.Clears(), clears + 1);
  EXPECT_TRUE(seen->empty());
}

}  // namespace
}  // namespace dpm::testing
