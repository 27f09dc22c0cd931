#include <algorithm>
#include <string>
#include <vector>

#include "help/app_help.h"
#include "pages_fixture.h"
#include "setup/main_menu.h"

namespace dpm::testing {
namespace {

// A meter that answers the data sheet request with a sheet of its own.
class DataSheetMeter : public fake::SerialPeer {
 public:
  DataSheetMeter(fake::FakeSerialLine& line, std::string sheet) : line_(line), sheet_(std::move(sheet)) {
    line.SetPeer(this);
  }
  ~DataSheetMeter() override { line_.SetPeer(nullptr); }
  void OnBytesFromHost(const std::string& bytes, uint32_t) override {
    if (bytes.rfind("*1XTA0", 0) == 0) line_.ArriveAfter(5, sheet_ + CR);
  }

 private:
  fake::FakeSerialLine& line_;
  std::string sheet_;
};

class Page3Test : public PagesTest {
 protected:
  // Lockout boxes 0 to 17 as ticks ("1") and blanks ("0").
  static std::string Ticks(const SetupPage3& page) {
    std::string ticks;
    for (int i = 0; i < 18; ++i) ticks += page.chkLock[i].Value() == kChecked ? '1' : '0';
    return ticks;
  }
  // The page built anew, as on the way back from page 2.
  static void Revisit(SetupPage3& page) {
    page.cmdPrevPage.UserClick();
    frmSetup2().cmdNextPage.UserClick();
    ASSERT_TRUE(page.IsActive());
  }
  int DataSheetRequests() const {
    const auto sent = line.SentCommands();
    return static_cast<int>(std::count_if(sent.begin(), sent.end(), [](const auto& c) { return c.text == "*1XTA0"; }));
  }
};

// Each field of the image in its words; filling a page writes nothing.
TEST_F(PagesTest, PagesTwoAndThreeShowEachFieldOfTheImageInItsWords) {
  struct Case {
    const char* what;
    int page;
    const char* digits;                                      // set in the default setup before the page opens
    std::vector<std::pair<const char*, const char*>> shown;  // control, text
  };
  const Case cases[] = {
      // clang-format off
      {"page 2, default setup", 2, "",
       {{"cboTimConst", " 1.2 Sec"}, {"cboState1", "Hi Active"}, {"cboNoRdgsAlm", "  1"},
        {"txtSetpt1", " +01000."}, {"txtSetPt2", " +02000."}, {"txtDev1", " +00000."},
        {"chkFPTare", "clear"}, {"chkAutoTare", "clear"}, {"chkTEDSIndicator", "ticked"},
        {"chkTEDSPlugPlay", "ticked"}}},
      {"page 2, every field off its default", 2, "39=03 51=DA 53=06 57=3D 59=E6 21=FFFF38 129=03",
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
      {"page 3, default setup", 3, "",
       {{"cboBaudRate", " 9600"}, {"cboAddress", " 1 (1)"}, {"cboTranChars", "Normal"},
        {"txtTranStop", "13"}, {"lblTranStop", "cr "}, {"txtTranStart", "0"}, {"lblTranStart", "nul"},
        {"lblLockout", "  Lockout  jumper IS NOT installed"}}},
      {"page 3, every field off its default", 3, "33=06 37=01 45=DF 47=39 49=F9 53=10 61=FFFC18 125=41 127=20",
       {{"cboBaudRate", " 2400"}, {"cboAddress", "31 (F.)"}, {"cboOutVal", "Unfiltered"},
        {"cboOutRate", "Read Rate/256"}, {"cboSerMode", "Continuous"}, {"chkAlmData", "ticked"},
        {"chkLF", "ticked"}, {"cboRTS", "Latching"}, {"cboDuplex", "Half Duplex"},
        {"cboCircuit", "Current Output"}, {"cboAnaValue", "Filtered"}, {"txtAnaHi", " - 01000."},
        {"txtAnaLo", " +00000."}, {"cboTranChars", "Start/StopChars"},
        {"txtTranStop", "65"}, {"lblTranStop", "A"}, {"txtTranStart", "32"}, {"lblTranStart", "sp "},
        {"lblLockout", "  Lockout  jumper IS installed"}}},
      {"page 3, a character above 127", 3, "127=C8", {{"txtTranStart", "200"}, {"lblTranStart", "\xC3\x88"}}},
      // clang-format on
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Forms().Reset();
    DefaultData();
    SetDigits(c.digits);
    const std::string image = g.SetupImage;
    Form& page = c.page == 2 ? static_cast<Form&>(OpenPage2()) : OpenPage3();
    ASSERT_TRUE(page.IsActive());
    EXPECT_EQ(page.Caption(), c.page == 2 ? "DPM SETUP  PAGE  2" : "DPM SETUP  PAGE  3  ");
    for (const auto& [name, text] : c.shown) EXPECT_EQ(Shown(*page.FindControl(name)), text) << name;
    EXPECT_EQ(g.SetupImage, image) << "filling the page writes nothing";
  }
  // clang-format off
  const char* const captions[] = {
      "Input Type", "Setup, Config, DP", "Filter", "Scale, Lo/Hi In", "Offset, Lo/Hi Rd",
      "Alarm Config, Deviation", "Change Alarm Setpoints", "Analog Output Scaling", "SerialCommunication",
      "Tare, View Peak", "View Alarm Setpoints", "FP Function Resets", "FP Meter Reset",
      "Serial Number", "Measurand Units", "Calibration Date", "Calib Initials, M-ID", "Calibration Period"};
  // clang-format on
  for (int i = 0; i < 18; ++i) EXPECT_EQ(frmSetup3().chkLock[i].Caption(), captions[i]) << i;
}

TEST_F(PagesTest, EachControlOfPagesTwoAndThreeWritesItsBitsAndStoresItsHelp) {
  struct Case {
    int page;
    const char* control;
    int pick;  // the entry of a list, the value of a check box; -1 for none
    int position;
    const char* digits;  // the byte afterwards; the default setup has 33=00 37=02 43=00 45=21 47=D0 51=36
                         // 53=00 57=00 59=00 129=0C
    int16_t help;
  };
  const Case cases[] = {
      {2, "cboTimConst", 2, 51, "32", 1329},      {2, "cboThresh", 0, 51, "26", 1362},
      {2, "cboPeakVal", 1, 51, "76", 1330},       {2, "cboAlmValue", 1, 51, "B6", 1334},
      {2, "cboExtAB", 5, 53, "05", 1331},         {2, "cboNoRdgsAlm", 7, 57, "07", 1207},
      {2, "cboDev1Typ", 1, 57, "08", 1208},       {2, "cboDev2Typ", 1, 57, "10", 1208},
      {2, "cboDevStatus", 1, 57, "20", 1335},     {2, "cboState1", 2, 59, "02", 1204},
      {2, "cboState2", 1, 59, "04", 1204},        {2, "cboAlm1Type", 1, 59, "10", 1206},
      {2, "cboAlm2Type", 1, 59, "20", 1206},      {2, "cboRly1State", 1, 59, "40", 1333},
      {2, "cboRly2State", 1, 59, "80", 1333},     {2, "chkFPTare", 1, 129, "04", 1383},
      {2, "chkAutoTare", 1, 129, "08", 1383},     {2, "chkTEDSIndicator", 0, 129, "0E", 1383},
      {2, "chkTEDSPlugPlay", 0, 129, "0D", 1383}, {2, "txtSetpt1", -1, 115, "00", 1332},
      {2, "txtDev2", -1, 21, "00", 1202},         {3, "cboBaudRate", 6, 47, "E0", 1336},
      {3, "cboAddress", 31, 45, "3F", 1337},      {3, "cboOutVal", 0, 47, "50", 1338},
      {3, "cboOutRate", 9, 47, "D9", 1339},       {3, "cboSerMode", 0, 45, "01", 1340},
      {3, "chkAlmData", 1, 45, "61", 1341},       {3, "cboRTS", 1, 33, "04", 1342},
      {3, "cboDuplex", 1, 33, "02", 1343},        {3, "chkLF", 1, 45, "A1", 1344},
      {3, "cboCircuit", 0, 37, "00", 1345},       {3, "cboAnaValue", 1, 37, "03", 1346},
      {3, "cboTranChars", 1, 53, "10", 1381},     {3, "chkLock_3", 1, 43, "02", 1351},
      {3, "chkLock_17", 1, 9, "00", 1365},        {3, "txtAnaHi", -1, 61, "00", 1347},
      {3, "txtAnaLo", -1, 67, "00", 1347},        {3, "txtTranStart", -1, 127, "00", 1381},
      {3, "txtTranStop", -1, 125, "0D", 1381},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.control);
    Forms().Reset();
    DefaultData();
    if (c.page == 2) {
      g.TedsHardware = 1;
      g.TedsPresent = 1;
    } else {
      SetDigits("49=79");  // an RS485 board: every serial control answers
    }
    Form& page = c.page == 2 ? static_cast<Form&>(OpenPage2()) : OpenPage3();
    Control& control = *page.FindControl(c.control);
    g.HelpContext = 0;
    control.UserFocus();
    EXPECT_EQ(g.HelpContext, c.help);
    if (control.Kind() == ControlKind::ComboBox) static_cast<ComboBox&>(control).UserSelect(c.pick);
    if (control.Kind() == ControlKind::CheckBox) static_cast<CheckBox&>(control).UserSetValue(c.pick);
    EXPECT_EQ(Digits(c.position), c.digits);
  }

  // The two labels that take clicks store their help item; the ASCII table opens at once.
  SetupPage3& page = frmSetup3();
  time.Post([] { frmAppHelp().cmdOK.UserClick(); });
  page.lblAscTbl.UserClick();
  EXPECT_EQ(g.HelpContext, 1138);
  page.lblLockout.UserClick();
  EXPECT_EQ(g.HelpContext, 1361);
}

TEST_F(Page3Test, CommOptionDecidesWhatAnswers) {
  struct Case {
    const char* optionByte;
    const char* answering;
  };
  const Case cases[] = {
      {"71", ""},  // no board: the group is hidden
      {"75",
       "cboBaudRate cboAddress cboSerMode cboRTS chkAlmData chkLF cboOutRate cboOutVal cboTranChars "
       "txtTranStart txtTranStop"},
      {"79",
       "cboBaudRate cboAddress cboSerMode cboRTS chkAlmData chkLF cboDuplex cboOutRate cboOutVal cboTranChars "
       "txtTranStart txtTranStop"},
      {"7D", "cboOutRate cboOutVal cboTranChars txtTranStart txtTranStop"},  // Parallel BCD
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.optionByte);
    Forms().Reset();
    DefaultData();
    SetDigits(std::string("49=") + c.optionByte);
    SetupPage3& page = OpenPage3();
    EXPECT_EQ(Answering({&page.cboBaudRate, &page.cboAddress, &page.cboSerMode, &page.cboRTS, &page.chkAlmData,
                         &page.chkLF, &page.cboDuplex, &page.cboOutRate, &page.cboOutVal, &page.cboTranChars,
                         &page.txtTranStart, &page.txtTranStop}),
              c.answering);
    EXPECT_TRUE(page.fraAnaOut.Visible());
  }

  // The boards changed on page 1 while this page stays loaded: it follows on the way back.
  SetupPage3& page = frmSetup3();
  page.cmdPrevPage.UserClick();
  frmSetup2().cmdPrevPage.UserClick();
  frmSetup1().cboComOpt.UserSelect(2);
  frmSetup1().cboAnaOpt.UserSelect(0);
  frmSetup1().cmdNextPage.UserClick();
  frmSetup2().cmdNextPage.UserClick();
  ASSERT_EQ(&frmSetup3(), &page);
  EXPECT_TRUE(page.cboDuplex.AcceptsUser());
  EXPECT_TRUE(page.cboBaudRate.AcceptsUser());
  EXPECT_FALSE(page.fraAnaOut.Visible());
}

TEST_F(Page3Test, LockoutBoxesReadTheirBits) {
  // The bit that ticks each box, boxes 0 to 17 in order.
  const std::pair<int, const char*> bits[] = {{43, "10"}, {43, "08"}, {43, "04"}, {43, "02"}, {43, "01"}, {41, "08"},
                                              {41, "04"}, {41, "02"}, {41, "01"}, {41, "80"}, {41, "40"}, {41, "20"},
                                              {41, "10"}, {9, "10"},  {9, "08"},  {9, "04"},  {9, "02"},  {9, "01"}};
  for (std::size_t box = 0; box < std::size(bits); ++box) {
    const auto& [position, digits] = bits[box];
    SCOPED_TRACE(box);
    Forms().Reset();
    DefaultData();
    SetDigits(std::to_string(position) + "=" + digits);
    std::string ticks(18, '0');
    ticks[box] = '1';
    EXPECT_EQ(Ticks(OpenPage3()), ticks);
  }
}

TEST_F(Page3Test, LockoutBoxesWriteByTheirOwnRule) {
  struct Case {
    int index;
    const char* lockouts;  // digits 9, 41 and 43 after the box is ticked
  };
  const Case cases[] = {
      {0, "00 00 10"},  {4, "00 00 01"},  {5, "00 08 00"},  {8, "00 01 00"},  {9, "00 80 00"},
      {12, "00 10 00"}, {13, "00 08 00"}, {16, "00 01 00"}, {17, "00 00 00"},  // a data sheet box
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.index);
    Forms().Reset();
    DefaultData();
    SetupPage3& page = OpenPage3();
    page.chkLock[c.index].UserSetValue(kChecked);
    EXPECT_EQ(Digits(9) + " " + Digits(41) + " " + Digits(43), c.lockouts);
  }

  // Box 13 ticked lands on the bit of box 5: after a rebuild that box shows it, box 13 not.
  SetupPage3& page = frmSetup3();
  Revisit(page);
  EXPECT_EQ(Ticks(page), "000000000000000000");
  page.chkLock[13].UserSetValue(kChecked);
  Revisit(page);
  EXPECT_EQ(Ticks(page), "000001000000000000");
}

TEST_F(Page3Test, WithoutRelayBoardTheAlarmLockoutsShowTickedButKeepTheirBits) {
  SetDigits("49=35");
  SetupPage3& page = OpenPage3();
  EXPECT_EQ(Ticks(page), "000001100010000000");
  EXPECT_EQ(Digits(41), "00");
  page.chkLock[5].UserSetValue(kUnchecked);
  EXPECT_EQ(Digits(41), "00");
  page.chkLock[5].UserSetValue(kChecked);
  EXPECT_EQ(Digits(41), "08");
}

TEST_F(Page3Test, CustomCharactersOnlyAfterTheFirstFirmware) {
  SetDigits("53=10");
  g.FirmwareRev = 0;
  SetupPage3& page = OpenPage3();
  EXPECT_EQ(page.cboTranChars.Text(), "Normal") << "the bit is the leading zeros there";
  for (const Frame* frame : {&page.fraTranChars, &page.fraTranStart, &page.fraTranStop}) {
    EXPECT_FALSE(frame->Visible()) << frame->Name();
  }
  EXPECT_EQ(Answering({&page.cboTranChars, &page.txtTranStart, &page.lblTranStop}), "");

  g.FirmwareRev = 4;
  Revisit(page);
  EXPECT_EQ(page.cboTranChars.Text(), "Start/StopChars");
  EXPECT_EQ(Answering({&page.cboTranChars, &page.txtTranStart, &page.txtTranStop}),
            "cboTranChars txtTranStart txtTranStop");
}

TEST_F(Page3Test, StartAndStopCharactersGoThroughTheByteEntry) {
  SetupPage3& page = OpenPage3();
  page.txtTranStop.UserClick();
  ValueEntry& dialog = frmEntVal();
  ASSERT_TRUE(dialog.IsActive());
  EXPECT_EQ(g.EntryFormat, 7);
  EXPECT_EQ(g.EntryPosition, 125);
  EXPECT_EQ(g.CharCode, 13);
  EXPECT_TRUE(page.cmdMMenu.HasFocus());
  EXPECT_EQ(dialog.txtDigit[3].Text() + dialog.txtDigit[4].Text() + dialog.txtDigit[5].Text(), "013");
  Type("065\r");
  ASSERT_TRUE(page.IsActive());
  EXPECT_EQ(Digits(125), "41");
  EXPECT_EQ(page.txtTranStop.Text(), "65");
  EXPECT_EQ(page.lblTranStop.Caption(), "A") << "the page rebuilds itself on the dialog's return";

  page.txtTranStart.UserClick();
  EXPECT_EQ(g.EntryPosition, 127);
  Type("255\r");
  EXPECT_EQ(Digits(127), "FF");
  EXPECT_EQ(page.txtTranStart.Text(), "255");
  EXPECT_EQ(page.lblTranStart.Caption(), "\xC3\xBF");

  // Closed while an entry is open: the main menu shows, and the dialog serves no box of it.
  page.txtTranStop.UserClick();
  page.UserClose();
  EXPECT_FALSE(Forms().IsLoaded(SetupPage3::kName));
  EXPECT_TRUE(frmMMenu().IsActive());
  EXPECT_EQ(g.EntryBox, nullptr);
}

TEST_F(Page3Test, DataSheetIsFetchedOncePerVisitToTheMainMenu) {
  // Units code 6 (bits 425-430) and serial number 1234567 (bits 441-464); the rest zeros.
  DataSheetMeter meter(line, std::string(106, '0') + "18" + "00" + "12D687");
  g.TedsHardware = 1;
  g.TedsPresent = 1;
  g.TedsTemplate = 99;
  SetupPage3& page = OpenPage3();
  EXPECT_EQ(DataSheetRequests(), 1);
  const std::vector<std::pair<const Label*, const char*>> labels = {
      {&page.lblSerNo, "1234567"},    {&page.lblUnits, "   KgF "},  {&page.lblDate, "010198 "},
      {&page.lblInitials, "       "}, {&page.lblPeriod, "      0"}, {&page.lblMID, " Brdg-A"},
  };
  for (const auto& [label, text] : labels) {
    EXPECT_EQ(label->Caption(), text) << label->Name();
    EXPECT_TRUE(label->IsEffectivelyVisible()) << label->Name();
  }

  Revisit(page);
  EXPECT_EQ(DataSheetRequests(), 1) << "fetched already";

  page.cmdMMenu.UserClick();
  MainMenu& menu = frmMMenu();
  ASSERT_TRUE(menu.IsActive());
  EXPECT_TRUE(Forms().IsLoaded(SetupPage3::kName)) << "the pages are hidden, not unloaded";
  EXPECT_FALSE(page.Visible());
  menu.mnuView.SetEnabled(true);
  menu.mnuSetup.UserClick();
  frmSetup1().cmdNextPage.UserClick();
  frmSetup2().cmdNextPage.UserClick();
  ASSERT_EQ(&frmSetup3(), &page);
  EXPECT_EQ(DataSheetRequests(), 2) << "the main menu marks the sheet as not fetched";
}

TEST_F(Page3Test, WithoutDataSheetNothingIsSentAndItsFramesAreHidden) {
  g.TedsTemplate = 99;
  SetupPage3& page = OpenPage3();
  EXPECT_TRUE(line.SentCommands().empty());
  for (const Frame* frame :
       {&page.fraSerNo, &page.fraUnits, &page.fraDate, &page.fraInitials, &page.fraPeriod, &page.fraMID}) {
    EXPECT_FALSE(frame->Visible()) << frame->Name();
  }
}

}  // namespace
}  // namespace dpm::testing
