#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include "pages_fixture.h"
#include "setup/main_menu.h"

namespace dpm::testing {
namespace {

using Page2Test = PagesTest;

TEST_F(Page2Test, ShowsEachFieldOfTheImageInItsWords) {
  struct Case {
    const char* what;
    const char* digits;                                      // set in the default setup before the page opens
    std::vector<std::pair<const char*, const char*>> shown;  // control, text
  };
  const Case cases[] = {
      // clang-format off
      {"default setup", "",
       {{"cboTimConst", " 1.2 Sec"}, {"cboState1", "Hi Active"}, {"cboNoRdgsAlm", "  1"},
        {"txtSetpt1", " +01000."}, {"txtSetPt2", " +02000."}, {"txtDev1", " +00000."},
        {"chkFPTare", "clear"}, {"chkAutoTare", "clear"}, {"chkTEDSIndicator", "ticked"},
        {"chkTEDSPlugPlay", "ticked"}}},
      {"every field off its default", "39=03 51=DA 53=06 57=3D 59=E6 21=FFFF38 129=03",
       {{"cboTimConst", "No Filter"}, {"cboThresh", "High Adaptive"}, {"cboPeakVal", "Filtered"},
        {"cboAlmValue", "Filtered"}, {"cboNoRdgsAlm", " 32"},
        {"cboExtAB", "DP2  (Neither = DP1)                       DP3 (Both = DP4)"},
        {"cboDev1Typ", "Hysteresis"}, {"cboDev2Typ", "Hysteresis"}, {"cboDevStatus", "Devn Disabled"},
        {"cboState1", "Disabled"}, {"cboState2", "Lo Active"},
        {"cboAlm1Type", "Non-latching"}, {"cboAlm2Type", "Latching"},
        {"cboRly1State", "De-energized"}, {"cboRly2State", "De-energized"},
        {"txtSetpt1", " +010. 00"}, {"txtDev2", " - 002. 00"},
        {"chkFPTare", "ticked"}, {"chkAutoTare", "ticked"}, {"chkTEDSIndicator", "clear"},
        {"chkTEDSPlugPlay", "clear"}}},
      // clang-format on
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Forms().Reset();
    DefaultData();
    SetDigits(c.digits);
    const std::string image = g.SetupImage;
    SetupPage2& page = OpenPage2();
    ASSERT_TRUE(page.IsActive());
    EXPECT_EQ(page.Caption(), "DPM SETUP  PAGE  2");
    for (const auto& [name, text] : c.shown) EXPECT_EQ(Shown(*page.FindControl(name)), text) << name;
    EXPECT_EQ(g.SetupImage, image) << "filling the page writes nothing";
  }
}

TEST_F(Page2Test, EachControlWritesItsBitsAndStoresItsHelp) {
  struct Case {
    const char* control;
    int pick;  // the entry of a list, the value of a check box
    int position;
    const char* digits;  // the byte afterwards; the default setup has 51=36 53=00 57=00 59=00 129=0C
    int16_t help;
  };
  const Case cases[] = {
      {"cboTimConst", 2, 51, "32", 1329},      {"cboThresh", 0, 51, "26", 1362},
      {"cboPeakVal", 1, 51, "76", 1330},       {"cboAlmValue", 1, 51, "B6", 1334},
      {"cboExtAB", 5, 53, "05", 1331},         {"cboNoRdgsAlm", 7, 57, "07", 1207},
      {"cboDev1Typ", 1, 57, "08", 1208},       {"cboDev2Typ", 1, 57, "10", 1208},
      {"cboDevStatus", 1, 57, "20", 1335},     {"cboState1", 2, 59, "02", 1204},
      {"cboState2", 1, 59, "04", 1204},        {"cboAlm1Type", 1, 59, "10", 1206},
      {"cboAlm2Type", 1, 59, "20", 1206},      {"cboRly1State", 1, 59, "40", 1333},
      {"cboRly2State", 1, 59, "80", 1333},     {"chkFPTare", 1, 129, "04", 1383},
      {"chkAutoTare", 1, 129, "08", 1383},     {"chkTEDSIndicator", 0, 129, "0E", 1383},
      {"chkTEDSPlugPlay", 0, 129, "0D", 1383}, {"txtSetpt1", -1, 115, "00", 1332},
      {"txtDev2", -1, 21, "00", 1202},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.control);
    Forms().Reset();
    DefaultData();
    g.TedsHardware = 1;
    g.TedsPresent = 1;
    SetupPage2& page = OpenPage2();
    Control& control = *page.FindControl(c.control);
    g.HelpContext = 0;
    control.UserFocus();
    EXPECT_EQ(g.HelpContext, c.help);
    if (control.Kind() == ControlKind::ComboBox) static_cast<ComboBox&>(control).UserSelect(c.pick);
    if (control.Kind() == ControlKind::CheckBox) static_cast<CheckBox&>(control).UserSetValue(c.pick);
    EXPECT_EQ(Digits(c.position), c.digits);
  }
}

TEST_F(Page2Test, NoFilterForcesTheFilteredDisplayValueOnce) {
  SetDigits("51=16");  // 1.2 s, display value "Batch 16 Avg"
  SetupPage2& page = OpenPage2();
  page.cboTimConst.UserSelect(10);
  EXPECT_EQ(Digits(51), "3A");
  page.cboTimConst.UserSelect(3);
  EXPECT_EQ(Digits(51), "33") << "another time constant leaves the display value filtered";
  page.cmdPrevPage.UserClick();
  EXPECT_EQ(frmSetup1().cboDVal.Text(), "Filtered");
}

// A state of 3 has no entry: the list says "Disabled", as the meter takes it, and the image
// keeps its bits until the user picks a state.
TEST_F(Page2Test, AlarmStateThreeShowsDisabledAndKeepsItsBits) {
  SetDigits("59=0F");
  SetupPage2& page = OpenPage2();
  EXPECT_EQ(page.cboState1.Text(), "Disabled");
  EXPECT_EQ(page.cboState2.Text(), "Disabled");
  EXPECT_EQ(page.cboState1.ListCount(), 3);
  EXPECT_EQ(Digits(59), "0F");
  page.cboState1.UserSelect(0);
  EXPECT_EQ(Digits(59), "0C");
}

TEST_F(Page2Test, DeviationStatusGreysAndRestoresTheDeviationsOnTheOpenPage) {
  SetupPage2& page = OpenPage2();
  const auto deviations = [&page] {
    return Answering({&page.txtDev1, &page.cboDev1Typ, &page.txtDev2, &page.cboDev2Typ, &page.txtSetpt1});
  };
  EXPECT_EQ(deviations(), "txtDev1 cboDev1Typ txtDev2 cboDev2Typ txtSetpt1");
  page.cboDevStatus.UserSelect(1);
  EXPECT_EQ(deviations(), "txtSetpt1");
  for (const Control* c :
       std::initializer_list<const Control*>{&page.txtDev1, &page.cboDev1Typ, &page.txtDev2, &page.cboDev2Typ}) {
    EXPECT_EQ(c->ForeColor(), ColLightGrey) << c->Name();
  }
  page.cboDevStatus.UserSelect(0);
  EXPECT_EQ(deviations(), "txtDev1 cboDev1Typ txtDev2 cboDev2Typ txtSetpt1");
  EXPECT_EQ(page.txtDev2.ForeColor(), ColBlack);
  EXPECT_EQ(Digits(57), "00");
}

TEST_F(Page2Test, RelayBoardRemovedOnPageOneHidesTheAlarmsOnTheWayBack) {
  SetDigits("59=A5");
  SetupPage2& page = OpenPage2();
  EXPECT_TRUE(page.fraAlarm1.Visible() && page.fraAlarm2.Visible() && page.fraBothAlm.Visible());
  page.cmdPrevPage.UserClick();
  ASSERT_TRUE(frmSetup1().IsActive());
  EXPECT_FALSE(page.Visible());
  frmSetup1().cboRlyOpt.UserSelect(0);
  frmSetup1().cmdNextPage.UserClick();
  ASSERT_EQ(&frmSetup2(), &page) << "the page stays loaded between visits";
  EXPECT_FALSE(page.fraAlarm1.IsEffectivelyVisible());
  EXPECT_FALSE(page.fraAlarm2.IsEffectivelyVisible());
  EXPECT_FALSE(page.fraBothAlm.IsEffectivelyVisible());
  EXPECT_TRUE(page.fraFilter.Visible());
  EXPECT_EQ(Digits(59), "A5") << "the alarms stay in the image";
}

TEST_F(Page2Test, TareAndDataSheetBoxesFollowTheHardware) {
  struct Case {
    int16_t hardware, present;
    const char* tareByte;
    bool tareShown;
    const char* answering;  // of the four boxes
  };
  const Case cases[] = {
      {0, 0, "0C", false, ""},
      {1, 0, "0C", true, "chkFPTare chkAutoTare"},
      {1, 1, "0C", true, "chkFPTare chkAutoTare chkTEDSIndicator chkTEDSPlugPlay"},
      {1, 1, "01", true, "chkFPTare chkAutoTare chkTEDSPlugPlay"},  // plug and play off
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.hardware) + std::to_string(c.present) + c.tareByte);
    Forms().Reset();
    DefaultData();
    g.TedsHardware = c.hardware;
    g.TedsPresent = c.present;
    SetDigits(std::string("129=") + c.tareByte);
    SetupPage2& page = OpenPage2();
    EXPECT_EQ(page.fraTare.Visible(), c.tareShown);
    EXPECT_EQ(Answering({&page.chkFPTare, &page.chkAutoTare, &page.chkTEDSIndicator, &page.chkTEDSPlugPlay}),
              c.answering);
  }

  // Plug and play switched off and on again on the open page: the indicator keeps its tick.
  Forms().Reset();
  DefaultData();
  SetupPage2& page = OpenPage2();
  page.chkTEDSPlugPlay.UserSetValue(kUnchecked);
  EXPECT_EQ(Digits(129), "0D");
  EXPECT_EQ(g.TedsEnabled, 0);
  EXPECT_FALSE(page.chkTEDSIndicator.Enabled());
  EXPECT_EQ(page.chkTEDSIndicator.Value(), kChecked);
  page.chkTEDSPlugPlay.UserSetValue(kChecked);
  EXPECT_EQ(Digits(129), "0C");
  EXPECT_TRUE(page.chkTEDSIndicator.AcceptsUser());
}

TEST_F(Page2Test, ValueBoxesEnterSetpointsSignedAndDeviationsUnsigned) {
  SetupPage2& page = OpenPage2();
  const std::tuple<TextBox*, int16_t, int> boxes[] = {
      {&page.txtSetpt1, 2, 115}, {&page.txtSetPt2, 2, 109}, {&page.txtDev1, 0, 27}, {&page.txtDev2, 0, 21}};
  for (const auto& [box, format, position] : boxes) {
    SCOPED_TRACE(box->Name());
    box->UserClick();
    EXPECT_TRUE(frmEntVal().IsActive());
    EXPECT_EQ(g.EntryFormat, format);
    EXPECT_EQ(g.EntryPosition, position);
    EXPECT_TRUE(page.cmdMMenu.HasFocus()) << "the box never keeps the caret";
    frmEntVal().cmdCancel.UserClick();
    EXPECT_TRUE(page.IsActive());
  }
  page.txtSetpt1.UserClick();
  Type("-00050\r");
  EXPECT_EQ(Digits(115, 6), "FFFFCE");
  EXPECT_EQ(page.txtSetpt1.Text(), " - 00050.");

  // Back from the dialog the page is not rebuilt: a change behind its back stays unseen
  // until the next arrival from another page.
  SetDigits("51=35");
  page.txtSetPt2.UserClick();
  frmEntVal().cmdCancel.UserClick();
  EXPECT_EQ(page.cboTimConst.Text(), " 1.2 Sec");
  page.cmdPrevPage.UserClick();
  frmSetup1().cmdNextPage.UserClick();
  EXPECT_EQ(page.cboTimConst.Text(), "600 mSec");
}

}  // namespace
}  // namespace dpm::testing
