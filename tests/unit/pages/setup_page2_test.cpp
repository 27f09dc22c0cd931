#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include "pages_fixture.h"
#include "setup/main_menu.h"

namespace dpm::testing {
namespace {

using Page2Test = PagesTest;

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
