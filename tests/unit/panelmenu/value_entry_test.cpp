#include "panelmenu/value_entry.h"

#include <functional>
#include <string>
#include <vector>

#include "forms/forms_fixture.h"
#include "link/image_access.h"
#include "setup/default_image.h"

namespace dpm::testing {
namespace {

// A screen with value boxes, as a setup page has them.
class Host : public Form {
 public:
  static constexpr const char* kName = "frmHost";
  Host() : Form(kName, "HOST") {}
  TextBox txtA{*this, "txtA"};
  TextBox txtB{*this, "txtB"};
};

class ValueEntryTest : public FormsTest {
 protected:
  ValueEntryTest() {
    g.SetupImage = DefaultSetupImage(4);
    host = &Forms().Use<Host>();
    host->Show();
  }

  ValueEntry& Open(const std::string& text, int16_t format, int16_t position = 97, TextBox* box = nullptr) {
    if (box == nullptr) box = &host->txtA;
    box->SetText(text);
    g.EntryText = text;
    g.EntryFormat = format;
    g.EntryPosition = position;
    g.EntryBox = box;
    OpenValueEntry(0);
    return frmEntVal();
  }

  // What the six places show; a hidden place as "~".
  std::vector<std::string> Places() {
    std::vector<std::string> places;
    for (int i = 0; i < 6; ++i) {
      const TextBox& place = frmEntVal().txtDigit[i];
      places.push_back(place.Visible() ? place.Text() : "~");
    }
    return places;
  }

  int FocusedPlace() {
    const Control* focused = frmEntVal().FocusedControl();
    return focused != nullptr && focused->Name() == "txtDigit" ? focused->Index() : -1;
  }

  // Types the characters into whichever place has the focus.
  void Type(const std::string& keys) {
    for (char c : keys) frmEntVal().txtDigit[FocusedPlace()].UserKeyPress(c);
  }

  void Arrow(int keyCode) { frmEntVal().txtDigit[FocusedPlace()].UserKeyDown(keyCode, 0); }

  std::string Digits(int position, int count = 6) const { return g.SetupImage.substr(position - 1, count); }

  Host* host = nullptr;
};

using PlaceTexts = std::vector<std::string>;

TEST_F(ValueEntryTest, LoadDigitsPlacesSignDigitsAndPoint) {
  struct Case {
    const char* text;
    int16_t format;
    PlaceTexts places;
    int focus;
    int16_t code;
  };
  const Case cases[] = {
      {" +1. 0000", 2, {"+", "1.", "0", "0", "0", "0"}, 0, 5},
      {" +12345.", 3, {"+", "1", "2", "3", "4", "5."}, 0, 1},   // sign, five digits, point: the last place
      {" +. 12345", 2, {"+.", "1", "2", "3", "4", "5"}, 0, 6},  // sign, point, five digits: the sign place
      {" - 012. 34", 2, {"-", "0", "1", "2.", "3", "4"}, 0, 3},
      {"+00050", 0, {"+", "0", "0", "0", "5", "0"}, 0, 8},  // no point: no place holds one
      {" +00001.", 4, {"+", "0", "0", "0", "0", "1."}, 0, 1},
      {" - 04. 000", 4, {"-", "0", "4.", "0", "0", "0"}, 0, 4},  // the scale factor keeps its own point
      {" 13", 7, {"~", "~", "~", "0", "1", "3"}, 3, 1},
      {"255", 7, {"~", "~", "~", "2", "5", "5"}, 3, 1},
      {"", 2, {"", "", "", "", "", ""}, 0, 8},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string("\"") + c.text + "\" format " + std::to_string(c.format));
    Open(c.text, c.format);
    EXPECT_EQ(Places(), c.places);
    EXPECT_EQ(FocusedPlace(), c.focus);
    EXPECT_EQ(frmEntVal().txtDigit[c.focus].SelStart(), 0);
    EXPECT_EQ(frmEntVal().EntryDpCode(), c.code);
    frmEntVal().cmdCancel.UserClick();
  }
}

TEST_F(ValueEntryTest, KeysOfEachFormat) {
  struct Case {
    const char* what;
    const char* text;
    int16_t format;
    int place;
    char key;
    bool beep;
    PlaceTexts places;
    int focus;
  };
  const Case cases[] = {
      {"unsigned field refuses a minus", "+00050", 0, 0, '-', true, {"+", "0", "0", "0", "5", "0"}, 0},
      {"unsigned field takes a plus", "+00050", 0, 0, '+', false, {"+", "0", "0", "0", "5", "0"}, 1},
      {"signed field takes a minus", " +1. 0000", 2, 0, '-', false, {"-", "1.", "0", "0", "0", "0"}, 1},
      {"sign place refuses a digit", " +1. 0000", 3, 0, '7', true, {"+", "1.", "0", "0", "0", "0"}, 0},
      {"digit place refuses a letter", " +1. 0000", 2, 2, 'a', true, {"+", "1.", "0", "0", "0", "0"}, 2},
      {"digit place refuses a sign", " +1. 0000", 2, 2, '-', true, {"+", "1.", "0", "0", "0", "0"}, 2},
      {"a point is refused quietly", " +1. 0000", 2, 3, '.', false, {"+", "1.", "0", "0", "0", "0"}, 3},
      {"the point stays with its place", " +1. 0000", 3, 1, '7', false, {"+", "7.", "0", "0", "0", "0"}, 2},
      {"a digit replaces the place", " +1. 0000", 2, 3, '9', false, {"+", "1.", "0", "9", "0", "0"}, 4},
      {"the last place keeps the focus", " +1. 0000", 2, 5, '9', false, {"+", "1.", "0", "0", "0", "9"}, 5},
      {"hundreds of a byte up to 2", "13", 7, 3, '2', false, {"~", "~", "~", "2", "1", "3"}, 4},
      {"hundreds of a byte refuse 3", "13", 7, 3, '3', true, {"~", "~", "~", "0", "1", "3"}, 3},
      {"a byte's last place takes no point", "13", 7, 5, '4', false, {"~", "~", "~", "0", "1", "4"}, 5},
      {"scale factor refuses a letter quietly", " +00001.", 4, 2, 'x', false, {"+", "0", "0", "0", "0", "1."}, 2},
      {"scale factor refuses a slash quietly", " +00001.", 4, 2, '/', false, {"+", "0", "0", "0", "0", "1."}, 2},
      {"scale factor sign place refuses a digit", " +00001.", 4, 0, '5', false, {"+", "0", "0", "0", "0", "1."}, 0},
      {"scale factor point moves", " +00001.", 4, 2, '.', false, {"+", "0", "0.", "0", "0", "1"}, 2},
      {"scale factor point to the sign place", " - 04. 000", 4, 0, '.', false, {"-.", "0", "4", "0", "0", "0"}, 0},
      {"scale factor digit at the point", " - 04. 000", 4, 2, '7', false, {"-", "0", "7.", "0", "0", "0"}, 3},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    ValueEntry& dialog = Open(c.text, c.format);
    dialog.txtDigit[c.place].UserFocus();
    const int beeps = dialogs.beeps;
    EXPECT_FALSE(dialog.txtDigit[c.place].UserKeyPress(c.key)) << "no place takes a key by itself";
    EXPECT_EQ(dialogs.beeps - beeps, c.beep ? 1 : 0);
    EXPECT_EQ(Places(), c.places);
    EXPECT_EQ(FocusedPlace(), c.focus);
    dialog.cmdCancel.UserClick();
  }
}

TEST_F(ValueEntryTest, ArrowsMoveBetweenPlaces) {
  struct Case {
    int start;
    std::vector<int> arrows;
    int focus;
  };
  const Case cases[] = {
      {2, {kKeyRight}, 3},
      {3, {kKeyLeft}, 2},
      {0, {kKeyLeft}, 0},
      {5, {kKeyRight}, 5},
      {5, {kKeyRight, kKeyLeft}, 5},  // back before the last digit, still in the last place
      {5, {kKeyRight, kKeyLeft, kKeyLeft}, 4},
      {4, {kKeyRight, kKeyRight, kKeyLeft, kKeyLeft}, 4},
      {5, {kKeyRight, kKeyUp, kKeyLeft}, 5},  // other keys leave the mark of the end alone
  };
  for (const Case& c : cases) {
    SCOPED_TRACE("from place " + std::to_string(c.start) + ", " + std::to_string(c.arrows.size()) + " keys");
    ValueEntry& dialog = Open(" +1. 0000", 2);
    dialog.txtDigit[c.start].UserFocus();
    for (int key : c.arrows) Arrow(key);
    EXPECT_EQ(FocusedPlace(), c.focus);
    EXPECT_EQ(dialog.txtDigit[c.focus].SelStart(), 0);
    dialog.cmdCancel.UserClick();
  }
}

TEST_F(ValueEntryTest, AcceptWritesTheImageAndReturnsThePageText) {
  struct Case {
    const char* what;
    const char* text;
    int16_t format;
    int16_t position;
    int startPlace;
    const char* keys;
    const char* digits;   // the field in the image afterwards
    const char* boxText;  // what the box shows
  };
  const Case cases[] = {
      {"negative display value", " +01000.", 2, 115, 0, "-01234", "FFFB2E", " - 01234."},
      {"input value with a point", " +2. 0000", 3, 79, 0, "+15000", "003A98", " +1. 5000"},
      {"point in the sign place", " +. 00000", 3, 91, 0, "+12345", "003039", " +. 12345"},
      {"minus zero is lost", " +. 00000", 2, 97, 0, "-00000", "000000", " - . 00000"},
      {"unsigned entry keeps its sign as typed", " +00000.", 0, 27, 0, "+00250", "0000FA", "+00250."},
      // The point goes into the place the caret stands in, and that place's digit follows.
      {"scale factor with the point moved", " +00001.", 4, 103, 0, "+0.2500", "4009C4", " +02. 500"},
      {"negative scale factor", " +00001.", 4, 103, 0, "-1.2345", "C03039", " - 12. 345"},
      {"scale factor point in the last place", " - 04. 000", 4, 103, 0, "+1234.5", "103039", " +12345."},
      {"byte", "13", 7, 125, 3, "255", "FF", " 255"},
      {"byte keeps no leading zeros", " 255", 7, 125, 3, "013", "0D", " 13"},
      {"byte of zero", " 13", 7, 127, 3, "000", "00", " 0"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    g.SetupImage = DefaultSetupImage(4);
    ValueEntry& dialog = Open(c.text, c.format, c.position);
    dialog.txtDigit[c.startPlace].UserFocus();
    Type(c.keys);
    g.EntryReturnFlag = 0;
    dialog.cmdOK.UserClick();
    const int count = c.format == kByteEntryFormat ? 2 : 6;
    EXPECT_EQ(Digits(c.position, count), c.digits);
    EXPECT_EQ(host->txtA.Text(), c.boxText);
    EXPECT_EQ(g.EntryText, c.boxText);
    EXPECT_EQ(host->txtA.BackColor(), ColWhite);
    EXPECT_FALSE(dialog.Visible());
    EXPECT_EQ(g.EntryReturnFlag, 1);
  }
}

TEST_F(ValueEntryTest, ByteAbove255IsRefusedAtAccept) {
  for (const char* keys : {"256", "299"}) {
    SCOPED_TRACE(keys);
    const std::string image = g.SetupImage;
    ValueEntry& dialog = Open(" 13", 7, 125);
    g.CharCode = 42;
    Type(keys);
    const int beeps = dialogs.beeps;
    dialog.cmdOK.UserClick();
    EXPECT_EQ(dialogs.beeps - beeps, 1);
    EXPECT_TRUE(dialog.Visible());
    EXPECT_EQ(FocusedPlace(), 4);
    EXPECT_EQ(g.SetupImage, image);
    EXPECT_EQ(g.CharCode, 42);
    EXPECT_EQ(host->txtA.Text(), " 13");
    EXPECT_EQ(host->txtA.BackColor(), ColPaleGreen);
    // The typed places are the entry text all the same: the dialog, shown again, has them.
    EXPECT_EQ(g.EntryText, keys);
    dialog.Hide();
    dialog.Show();
    EXPECT_EQ(Places(),
              (PlaceTexts{"~", "~", "~", std::string(1, keys[0]), std::string(1, keys[1]), std::string(1, keys[2])}));
    dialog.cmdCancel.UserClick();
  }
  Open(" 13", 7, 125);
  Type("200");
  frmEntVal().cmdOK.UserClick();
  EXPECT_EQ(g.CharCode, 200);
  EXPECT_EQ(Digits(125, 2), "C8");
}

// Enter writes like OK but leaves the return flag alone; Cancel and F1 write nothing, and the
// help that F1 opens takes the mark off the box.
TEST_F(ValueEntryTest, EnterCancelAndF1) {
  struct Case {
    const char* what;
    std::function<void(ValueEntry&)> close;
    const char* digits;  // of the field afterwards; the rest of the image stays
    const char* boxText;
    int16_t flag;
    uint32_t boxColor;
  };
  const Case cases[] = {
      {"Enter", [](ValueEntry& d) { d.txtDigit[5].UserKeyPress('\r'); }, "000007", " +00007.", 0, ColWhite},
      {"Cancel", [](ValueEntry& d) { d.cmdCancel.UserClick(); }, "0003E8", " +01000.", 1, ColWhite},
      {"F1", [](ValueEntry& d) { d.txtDigit[2].UserKeyDown(kKeyF1, 0); }, "0003E8", " +01000.", 0, ColWhite},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    g.SetupImage = DefaultSetupImage(4);
    ValueEntry& dialog = Open(" +01000.", 2, 115);
    EXPECT_EQ(g.EntryReturnFlag, 1) << "opening sets the flag";
    g.EntryReturnFlag = 0;
    Type("+00007");
    c.close(dialog);
    std::string image = DefaultSetupImage(4);
    EXPECT_EQ(g.SetupImage, image.replace(114, 6, c.digits));
    EXPECT_EQ(host->txtA.Text(), c.boxText);
    EXPECT_EQ(g.EntryText, c.boxText);
    EXPECT_EQ(g.EntryReturnFlag, c.flag);
    EXPECT_EQ(host->txtA.BackColor(), c.boxColor);
    EXPECT_FALSE(dialog.Visible());
    EXPECT_TRUE(host->IsActive());
  }
}

TEST_F(ValueEntryTest, OpeningMarksTheBoxAndPlacesTheDialog) {
  g.EntryBox = &host->txtA;
  OpenValueEntry(0);
  EXPECT_EQ(frmEntVal().Top(), 1500);
  EXPECT_TRUE(frmEntVal().IsActive());
  EXPECT_EQ(host->txtA.BackColor(), ColPaleGreen);
  // A second entry while the first is open: the dialog serves the new box, and the first
  // stays marked.
  host->Show();
  g.EntryBox = &host->txtB;
  g.EntryText = " +00042.";
  OpenValueEntry(1);
  EXPECT_EQ(frmEntVal().Top(), 2900);
  EXPECT_EQ(Places(), (PlaceTexts{"+", "0", "0", "0", "4", "2."}));
  EXPECT_EQ(host->txtA.BackColor(), ColPaleGreen);
  EXPECT_EQ(host->txtB.BackColor(), ColPaleGreen);
}

TEST_F(ValueEntryTest, ABoxThatIsGoneIsNoLongerServed) {
  Open(" +01000.", 2, 115);
  ForgetEntryBox(*host);
  EXPECT_EQ(g.EntryBox, nullptr);
  Type("+00005");
  frmEntVal().cmdOK.UserClick();
  EXPECT_EQ(Digits(115), "000005") << "the image is still written";
  EXPECT_FALSE(frmEntVal().Visible());
}

}  // namespace
}  // namespace dpm::testing
