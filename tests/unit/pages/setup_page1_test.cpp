#include <functional>
#include <sstream>
#include <vector>

#include "page1_fixture.h"
#include "setup/main_menu.h"

namespace dpm::testing {
namespace {

// Checks digits of the image given as "position=digits" pairs, as "55=C0 35=03".
void ExpectDigits(const std::string& pairs) {
  std::istringstream in(pairs);
  for (std::string pair; in >> pair;) {
    const std::size_t equals = pair.find('=');
    const int position = std::stoi(pair.substr(0, equals));
    EXPECT_EQ(g.SetupImage.substr(position - 1, pair.size() - equals - 1), pair.substr(equals + 1)) << pair;
  }
}

struct RuleCase {
  const char* what;
  std::function<void()> image;                      // changes to the default setup before the page opens
  std::function<void(SetupPage1&)> act;             // what the user does on the page
  const char* digits;                               // of the image afterwards
  std::function<void(SetupPage1&)> more = nullptr;  // further checks
  const char* boxes = "txtScale txtOffset";         // the scaling boxes left to click
  const char* loInCaption = "Low In";
};

TEST_F(Page1Test, ConditionerModeRangeAndTheRulesOfThePage) {
  const RuleCase cases[] = {
      {"default setup", nullptr, nullptr, "55=60 35=01",
       [](SetupPage1& p) {
         EXPECT_EQ(p.cboSCOpt.Text(), "DC");
         EXPECT_EQ(p.cboMode.Text(), "DC V");
         EXPECT_EQ(p.cboFunc.Text(), "  0.2V");
         EXPECT_EQ(p.cboResol.Text(), "4. 5 Digits");
         EXPECT_EQ(p.cboDecPt.Text(), "ddddd .");
         EXPECT_EQ(p.cboComOpt.Text(), "RS232 Board");
         EXPECT_EQ(p.cboDVal.Text(), "Filtered");
         EXPECT_TRUE(p.optExtend.Value());
         EXPECT_TRUE(p.optSclOff.Value());
         EXPECT_EQ(p.txtScale.Text(), " +00001.");
         EXPECT_EQ(p.txtHiIn.Text(), " +. 20000");
       }},
      {"Load Cell from DC V range 3", [] { ReplaceImageDigits(55, "63"); },
       [](SetupPage1& p) { p.cboSCOpt.UserSelect(3); }, "55=C0 35=03",
       [](SetupPage1& p) {
         EXPECT_EQ(g.InputMode, 7);
         EXPECT_EQ(g.InputRange, 0);
         EXPECT_EQ(p.cboMode.Items(), (std::vector<std::string>{"Strain", "DC mV"}));
         EXPECT_EQ(p.cboFunc.Text(), "  20.0mV");
       }},
      {"Temperature writes code 1, thermocouple keeps only the offset", nullptr,
       [](SetupPage1& p) { p.cboSCOpt.UserSelect(0); }, "55=40 35=01",
       [](SetupPage1& p) {
         EXPECT_EQ(p.cboFunc.ListCount(), 14);
         EXPECT_EQ(p.cboResol.Text(), "0.1 Deg");
         EXPECT_FALSE(p.cboDecPt.AcceptsUser());
         EXPECT_FALSE(p.cboCusCrv.AcceptsUser());
         EXPECT_FALSE(p.optCoord.AcceptsUser());
       },
       "txtOffset"},
      {"True RMS", nullptr, [](SetupPage1& p) { p.cboSCOpt.UserSelect(2); }, "55=80 35=02"},
      {"RTD Short takes the lead resistance", [] { ReplaceImageDigits(55, "5C"); }, nullptr, "55=5C", nullptr,
       "txtScale txtOffset txtLoIn", "Lead"},
      {"mode DC A", nullptr, [](SetupPage1& p) { p.cboMode.UserSelect(1); }, "55=70",
       [](SetupPage1& p) { EXPECT_EQ(p.cboFunc.ListCount(), 4); }},
      {"mode Ratio starts at the first range", [] { ReplaceImageDigits(55, "64"); },
       [](SetupPage1& p) { p.cboMode.UserSelect(2); }, "55=A0",
       [](SetupPage1& p) { EXPECT_EQ(p.cboFunc.ListCount(), 3); }},
      {"mode DC mV of the load cell", [] { ReplaceImageDigits(55, "C2"); },
       [](SetupPage1& p) { p.cboMode.UserSelect(1); }, "55=D0"},
      {"range 200 V", nullptr, [](SetupPage1& p) { p.cboFunc.UserSelect(3); }, "55=63",
       [](SetupPage1& p) { EXPECT_EQ(p.txtHiIn.Text(), " +200. 00"); }},
      {"a range beyond the list shows the first and keeps the byte", [] { ReplaceImageDigits(55, "69"); }, nullptr,
       "55=69", [](SetupPage1& p) { EXPECT_EQ(p.cboFunc.ListIndex(), 0); }},
      {"custom curve leaves only Rd0", nullptr, [](SetupPage1& p) { p.cboCusCrv.UserSelect(1); }, "33=01",
       [](SetupPage1& p) {
         EXPECT_EQ(g.CustomCurveInForce, 1);
         EXPECT_FALSE(p.optSclOff.AcceptsUser());
         EXPECT_FALSE(p.optRdCoord.AcceptsUser());
         EXPECT_EQ(p.txtLoIn.Text(), g.CustomCurveRd0Text);
       },
       "txtLoIn", "Rd0"},
      {"custom curve on a temperature meter changes nothing",
       [] { ReplaceImageDigits(55, "41"), ReplaceImageDigits(33, "01"); }, nullptr, "33=01",
       [](SetupPage1&) { EXPECT_EQ(g.CustomCurveInForce, 0); }, "txtOffset"},
      {"a BASIC meter with the curve bit still gets Rd0", [] { g.MeterKind = "0", ReplaceImageDigits(33, "01"); },
       nullptr, "33=01", [](SetupPage1& p) { EXPECT_FALSE(p.cboCusCrv.AcceptsUser()); }, "txtLoIn", "Rd0"},
      {"BASIC clears custom curve and rate", [] { ReplaceImageDigits(33, "B1"); },
       [](SetupPage1& p) { p.optBasic.UserFocus(); }, "33=80",
       [](SetupPage1& p) {
         EXPECT_EQ(g.MeterKind, "0");
         EXPECT_TRUE(p.optBasic.Value());
         EXPECT_FALSE(p.cboRate.AcceptsUser());
         EXPECT_EQ(g.HelpContext, 1301);
       }},
      {"EXTENDED sets digit 49 bit 2", [] { g.MeterKind = "0", ReplaceImageDigits(49, "71"); },
       [](SetupPage1& p) { p.optExtend.UserFocus(); }, "49=75",
       [](SetupPage1& p) {
         EXPECT_EQ(g.MeterKind, "1");
         EXPECT_EQ(p.cboComOpt.Text(), "RS232 Board");
         EXPECT_TRUE(p.cboRate.AcceptsUser());
       }},
      {"resolution rebuilds the input point", nullptr, [](SetupPage1& p) { p.cboResol.UserSelect(3); }, "53=C0",
       [](SetupPage1& p) { EXPECT_EQ(p.txtHiIn.Text(), " +2. 0000"); }},
      {"decimal point re-reads the display values", nullptr, [](SetupPage1& p) { p.cboDecPt.UserSelect(2); }, "39=03",
       [](SetupPage1& p) {
         EXPECT_EQ(g.DisplayDp, 3);
         EXPECT_EQ(p.txtHiRd.Text(), " +200. 00");
       }},
      {"rate, line frequency and leading zeros", nullptr,
       [](SetupPage1& p) { p.cboRate.UserSelect(4), p.cboHz.UserSelect(1); }, "33=40 53=20"},
      {"option boards and their shadows", nullptr,
       [](SetupPage1& p) { p.cboRlyOpt.UserSelect(0), p.cboComOpt.UserSelect(3), p.cboAnaOpt.UserSelect(0); }, "49=1D",
       [](SetupPage1&) {
         EXPECT_EQ(g.RelayOption, 0);
         EXPECT_EQ(g.CommOption, 3);
         EXPECT_EQ(g.AnalogOption, 0);
       }},
  };
  for (const RuleCase& c : cases) {
    SCOPED_TRACE(c.what);
    Forms().Reset();
    DefaultData();
    if (c.image) c.image();
    SetupPage1& page = OpenPage();
    if (c.act) c.act(page);
    ExpectDigits(c.digits);
    EXPECT_EQ(EnabledBoxes(page), c.boxes);
    EXPECT_EQ(page.fraLoIn.Caption(), c.loInCaption);
    EXPECT_TRUE(page.PageReady);
    if (c.more) c.more(page);
  }
}

// A display value that no filter allows is shown as stored: filling the page selects it and
// raises the list's click, which must not write the forced value back. A pick by the user is
// forced to the filtered value.
TEST_F(Page1Test, NoFilterKeepsTheDisplayValueFiltered) {
  struct Case {
    const char* filterByte;
    const char* opened;
    int pick;
    const char* written;
    const char* shown;
  };
  const Case cases[] = {
      {"36", "Filtered", 0, "16", "Batch 16 Avg"},  // 1.2 s filter: the pick stands
      {"3A", "Filtered", 0, "3A", "Filtered"},      // no filter: snaps back
      {"1A", "Batch 16 Avg", 1, "3A", "Filtered"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.filterByte);
    Forms().Reset();
    ReplaceImageDigits(51, c.filterByte);
    const std::string image = g.SetupImage;
    SetupPage1& page = OpenPage();
    page.RefreshPage1();
    EXPECT_EQ(page.cboDVal.Text(), c.opened);
    EXPECT_EQ(g.SetupImage, image) << "filling the page writes nothing";
    page.cboDVal.UserSelect(c.pick);
    EXPECT_EQ(Digits(51), c.written);
    EXPECT_EQ(page.cboDVal.Text(), c.shown);
  }
}

TEST_F(Page1Test, AStoredValueWithoutAnEntryShowsNoneAndKeepsItsBits) {
  // Rate 7 and decimal point code 7 have no entry in their lists.
  ReplaceImageDigits(33, "70");
  ReplaceImageDigits(39, "07");
  SetupPage1& page = OpenPage();
  EXPECT_EQ(page.cboRate.ListIndex(), -1);
  EXPECT_EQ(page.cboDecPt.ListIndex(), -1);
  EXPECT_EQ(page.cboRate.ListCount(), 7);
  // Other changes, and rebuilds, leave those bits alone.
  page.cboHz.UserSelect(1);
  page.cboResol.UserSelect(2);
  EXPECT_EQ(Digits(33), "70");
  EXPECT_EQ(Digits(39), "07");
  // Until the user picks an entry.
  page.cboRate.UserSelect(2);
  EXPECT_EQ(Digits(33), "20");
  EXPECT_EQ(page.cboRate.Text(), "Rate X 1");
}

TEST_F(Page1Test, LeadingZerosOnlyOnTheFirstFirmware) {
  for (const int16_t revision : {0, 1, 4}) {
    Forms().Reset();
    g.FirmwareRev = revision;
    SetupPage1& page = OpenPage();
    EXPECT_EQ(page.fraLeadZ.Visible(), revision == 0) << revision;
    EXPECT_EQ(page.cboLeadZ.AcceptsUser(), revision == 0) << revision;
  }
  SetupPage1& page = frmSetup1();
  g.FirmwareRev = 0;
  page.RefreshPage1();
  page.cboLeadZ.UserSelect(1);
  EXPECT_EQ(Digits(53), "10");
}

TEST_F(Page1Test, ReturnFromTheValueEntryDialogKeepsThePage) {
  SetupPage1& page = OpenPage();
  page.txtOffset.UserClick();
  EXPECT_TRUE(frmEntVal().IsActive());
  // Something changes the image behind the page's back.
  WriteField(6, 4, 33, 3);
  frmEntVal().cmdCancel.UserClick();
  EXPECT_TRUE(page.IsActive());
  EXPECT_EQ(page.cboRate.Text(), "Disabled") << "closing the dialog rebuilds nothing";

  // The main menu and back through its View item: the flag still stands, the page stays
  // loaded and the dialog is dropped.
  page.cmdMMenu.UserClick();
  MainMenu& menu = frmMMenu();
  EXPECT_TRUE(menu.IsActive());
  EXPECT_FALSE(page.Visible());
  menu.mnuView.SetEnabled(true);
  menu.mnuSetup.UserClick();
  EXPECT_TRUE(page.IsActive());
  EXPECT_EQ(&frmSetup1(), &page);
  EXPECT_FALSE(Forms().IsLoaded(ValueEntry::kName)) << "the dialog starts afresh";
  EXPECT_EQ(page.cboRate.Text(), "Disabled");

  // Any other arrival rebuilds the page from the image.
  page.Hide();
  g.EntryReturnFlag = 0;
  page.Show();
  EXPECT_EQ(page.cboRate.Text(), "Rate X 10");
}

TEST_F(Page1Test, NavigationAndClosing) {
  SetupPage1& page = OpenPage();
  page.cmdMMenu.UserClick();
  EXPECT_TRUE(frmMMenu().IsActive());
  EXPECT_FALSE(dialogs.hourglass);
  page.Show();
  page.txtScale.UserClick();
  page.UserClose();
  EXPECT_FALSE(Forms().IsLoaded(SetupPage1::kName));
  EXPECT_TRUE(frmMMenu().IsActive());
  EXPECT_EQ(g.EntryBox, nullptr) << "the dialog no longer serves a box of the closed page";
  // Opened again while the flag of the entry still stands, the new page fills itself.
  ASSERT_EQ(g.EntryReturnFlag, 1);
  EXPECT_EQ(OpenPage().cboSCOpt.Text(), "DC");
}

// Changes undone on a page that stays open: what one choice took away, the next gives back.
TEST_F(Page1Test, ChoicesUndoneOnTheOpenPageGiveBackWhatTheyTook) {
  SetupPage1& page = OpenPage();
  auto userControls = [&] {
    std::vector<bool> open;
    for (const Control* c : std::initializer_list<const Control*>{&page.cboDecPt, &page.cboCusCrv, &page.optCoord,
                                                                  &page.optRdCoord, &page.txtScale}) {
      open.push_back(c->AcceptsUser());
    }
    return open;
  };
  page.cboSCOpt.UserSelect(0);  // Temperature, thermocouple
  EXPECT_EQ(userControls(), (std::vector<bool>{false, false, false, false, false}));
  page.cboSCOpt.UserSelect(1);  // DC again
  EXPECT_EQ(userControls(), (std::vector<bool>{true, true, true, true, true}));

  // The RTD "Short" range calls the low input box "Lead"; the next range calls it "Low In".
  page.cboSCOpt.UserSelect(0);
  page.cboMode.UserSelect(1);
  page.cboFunc.UserSelect(12);
  EXPECT_EQ(page.fraLoIn.Caption(), "Lead");
  page.cboFunc.UserSelect(0);
  EXPECT_EQ(page.fraLoIn.Caption(), "Low In");
  page.cboSCOpt.UserSelect(1);

  // The custom curve turns the low input box into the reading at zero input; turned off,
  // the box is the low input of digit 91 again.
  page.cboCusCrv.UserSelect(1);
  EXPECT_EQ(page.fraLoIn.Caption(), "Rd0");
  page.txtLoIn.UserClick();
  EXPECT_NE(g.EntryPosition, 91);
  frmEntVal().cmdCancel.UserClick();
  page.cboCusCrv.UserSelect(0);
  EXPECT_EQ(page.fraLoIn.Caption(), "Low In");
  EXPECT_EQ(g.CustomCurveInForce, 0);
  page.optCoord.UserClick();
  page.optCoord.UserFocus();
  ASSERT_TRUE(page.txtLoIn.AcceptsUser());
  page.txtLoIn.UserClick();
  EXPECT_EQ(g.EntryPosition, 91);
  EXPECT_EQ(g.EntryText, page.txtLoIn.Text());
}

}  // namespace
}  // namespace dpm::testing
