#include "pages/scaling.h"

#include <functional>

#include "page1_fixture.h"

namespace dpm::testing {
namespace {

// The two method bits: reading coordinates at digit 33 bit 3, input coordinates at digit 53 bit 3.
void SetMethodBits(int readingCoord, int inputCoord) {
  WriteField(3, 3, 33, static_cast<int16_t>(readingCoord));
  WriteField(3, 3, 53, static_cast<int16_t>(inputCoord));
}

std::pair<int, int> MethodBits() { return {ReadField(3, 3, 33), ReadField(3, 3, 53)}; }

TEST_F(Page1Test, MethodBitsDecideOptionAndBoxes) {
  struct Case {
    int readingCoord, inputCoord;
    const char* option;
    const char* boxes;
  };
  const Case cases[] = {
      {0, 0, "optSclOff", "txtScale txtOffset"},
      {0, 1, "optCoord", "txtLoIn txtLoRd txtHiIn txtHiRd"},
      {1, 0, "optRdCoord", "txtLoRd txtHiRd"},
      {1, 1, "optRdCoord", "txtLoRd txtHiRd"},  // the reading coordinates bit wins
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.option);
    Forms().Reset();
    SetMethodBits(c.readingCoord, c.inputCoord);
    SetupPage1& page = OpenPage();
    for (const OptionButton* option : {&page.optSclOff, &page.optCoord, &page.optRdCoord}) {
      EXPECT_EQ(option->Value(), option->Name() == c.option) << option->Name();
    }
    EXPECT_EQ(EnabledBoxes(page), c.boxes);
  }
}

TEST_F(Page1Test, ChoosingAMethodWritesItsBits) {
  struct Case {
    std::pair<int, int> before;
    OptionButton SetupPage1::*option;
    std::pair<int, int> after;  // reading coordinates, input coordinates
    const char* boxes;
  };
  const Case cases[] = {
      {{0, 0}, &SetupPage1::optRdCoord, {1, 0}, "txtLoRd txtHiRd"},
      {{1, 0}, &SetupPage1::optCoord, {0, 1}, "txtLoIn txtLoRd txtHiIn txtHiRd"},
      // Reading coordinates sets its own bit only: clearing it later gives coordinates again.
      {{0, 1}, &SetupPage1::optRdCoord, {1, 1}, "txtLoRd txtHiRd"},
      {{1, 1}, &SetupPage1::optSclOff, {0, 0}, "txtScale txtOffset"},
      {{0, 1}, &SetupPage1::optSclOff, {0, 0}, "txtScale txtOffset"},
  };
  for (const Case& c : cases) {
    Forms().Reset();
    SetMethodBits(c.before.first, c.before.second);
    SetupPage1& page = OpenPage();
    const std::string values = g.SetupImage.substr(60, 60);
    OptionButton& option = page.*c.option;
    SCOPED_TRACE(option.Name());
    g.HelpContext = 0;
    option.UserFocus();
    EXPECT_EQ(MethodBits(), c.after);
    EXPECT_TRUE(option.Value());
    EXPECT_EQ(EnabledBoxes(page), c.boxes);
    EXPECT_EQ(g.SetupImage.substr(60, 60), values) << "a method changes no value";
    EXPECT_EQ(g.HelpContext, 1325);
  }
}

TEST_F(Page1Test, ScaleAndOffsetRestoresWhatTheConditionerForces) {
  ReplaceImageDigits(55, "40");  // thermocouple
  SetMethodBits(0, 1);
  SetupPage1& page = OpenPage();
  EXPECT_EQ(MethodBits(), std::make_pair(0, 1)) << "the page leaves the bits of a temperature meter alone";
  EXPECT_TRUE(page.optSclOff.Value());
  page.optSclOff.UserFocus();
  EXPECT_EQ(MethodBits(), std::make_pair(0, 0));
  EXPECT_EQ(EnabledBoxes(page), "txtOffset");
  EXPECT_FALSE(page.optCoord.AcceptsUser());
}

struct BoxCase {
  TextBox SetupPage1::*box;
  std::function<void()> image;  // makes the box clickable
  const char* keys;
  int16_t format;  // given to the dialog
  int position;    // of the field written
  const char* digits;
  const char* boxText;
};

TEST_F(Page1Test, EveryValueBoxRoundTripsThroughTheDialog) {
  const auto scaleOffset = [] {};
  const auto coordinates = [] { SetMethodBits(0, 1), ReplaceImageDigits(39, "03"); };
  const auto customCurve = [] { ReplaceImageDigits(33, "01"); };
  const BoxCase cases[] = {
      {&SetupPage1::txtScale, scaleOffset, "+0.2500", 4, 103, "4009C4", " +02. 500"},
      {&SetupPage1::txtOffset, scaleOffset, "-00123", 2, 97, "FFFF85", " - 00123."},
      {&SetupPage1::txtLoIn, coordinates, "+12345", 3, 91, "003039", " +. 12345"},
      {&SetupPage1::txtHiIn, coordinates, "-00002", 3, 79, "FFFFFE", " - . 00002"},
      {&SetupPage1::txtLoRd, coordinates, "+12345", 2, 85, "003039", " +123. 45"},
      {&SetupPage1::txtHiRd, coordinates, "+99999", 2, 73, "01869F", " +999. 99"},
      // With the custom curve in force the low input box edits the reading at zero input.
      {&SetupPage1::txtLoIn, customCurve, "-00001", 2, 1, "FFFFFF", " - 00001."},
  };
  for (const BoxCase& c : cases) {
    Forms().Reset();
    DefaultData();
    c.image();
    SetupPage1& page = OpenPage();
    TextBox& box = page.*c.box;
    SCOPED_TRACE(box.Name() + " " + c.keys);
    const std::string before = g.SetupImage;

    box.UserFocus();
    box.UserClick();
    ValueEntry& dialog = frmEntVal();
    ASSERT_TRUE(dialog.IsActive());
    EXPECT_EQ(g.EntryFormat, c.format);
    EXPECT_EQ(g.EntryPosition, c.position);
    EXPECT_EQ(box.BackColor(), ColPaleGreen);
    EXPECT_TRUE(page.cmdMMenu.HasFocus()) << "the box never keeps the caret";

    Type(c.keys);
    dialog.cmdOK.UserClick();
    EXPECT_TRUE(page.IsActive());
    EXPECT_EQ(box.Text(), c.boxText);
    EXPECT_EQ(box.BackColor(), ColWhite);
    std::string expected = before;
    expected.replace(static_cast<std::size_t>(c.position) - 1, 6, c.digits);
    EXPECT_EQ(g.SetupImage, expected) << "only the field changes";

    // The page reads the field back as the dialog returned it.
    page.RefreshPage1();
    EXPECT_EQ(box.Text(), c.boxText);
  }
}

}  // namespace
}  // namespace dpm::testing
