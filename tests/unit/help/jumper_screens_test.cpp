#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "../forms/forms_fixture.h"
#include "help/app_help.h"
#include "help/help_files.h"
#include "help/jumper_diagrams.h"
#include "link/meter_type.h"
#include "setup/main_menu.h"
#include "temp_folder.h"

namespace dpm::testing {
namespace {

constexpr const char* kLoadCellNote = "      Note: Click on Jumpers/Power Supply to select jumper for 10V excitation.";

// The jumper screens with their boards' pictures present and the program's help files.
class JumperScreens : public FormsTest {
 protected:
  JumperScreens() {
    for (const JumperSheet& sheet : JumperSheets()) dialogs.AddPicture(sheet.board);
    frmMMenu().Show();
  }
  ~JumperScreens() override {
    SetHelpFolder({});
    HelpForm = nullptr;
  }

  // Opens a screen as the user does: its item of the Jumpers menu.
  JumperDiagram& Open(MenuItem& item, const char* form) {
    item.UserClick();
    JumperDiagram* screen = static_cast<JumperDiagram*>(Forms().Find(form));
    EXPECT_NE(screen, nullptr) << form;
    return *screen;
  }
  static std::string Caption(const Form& form, const std::string& name) {
    const Control* control = form.FindControl(name);
    return control != nullptr && control->Kind() == ControlKind::Label ? static_cast<const Label*>(control)->Caption()
                                                                       : "(no label " + name + ")";
  }
  // The pin labels of a screen, lblPin_0 upwards.
  static std::vector<std::string> Pins(const Form& form) {
    std::vector<std::string> pins;
    for (int i = 0; form.FindControl("lblPin_" + std::to_string(i)) != nullptr; ++i)
      pins.push_back(Caption(form, "lblPin_" + std::to_string(i)));
    return pins;
  }
  // A help file pair 13 in a folder of its own, holding `texts` by record number.
  void HelpFiles13(const std::map<int, std::string>& texts) {
    std::string index(6 * 99, '\0'), text;
    for (const auto& [record, item] : texts) {
      const uint32_t position = static_cast<uint32_t>(text.size()) + 1;
      for (int b = 0; b < 4; ++b) index[6 * (record - 1) + b] = static_cast<char>(position >> (8 * b));
      index[6 * (record - 1) + 4] = static_cast<char>(item.size() & 0xFF);
      index[6 * (record - 1) + 5] = static_cast<char>(item.size() >> 8);
      text += item;
    }
    std::ofstream(folder / "Help13.R10", std::ios::binary) << index;
    std::ofstream(folder / "Help13.S10", std::ios::binary) << text;
    SetHelpFolder(folder.Path());
  }

  TempFolder folder;
};

// Each item of the Jumpers menu opens its screen beside the main menu: its caption, its help
// text in lblText, the help context of the board, and the pins and words of the board.
TEST_F(JumperScreens, EachMenuItemOpensItsBoard) {
  MainMenu& menu = frmMMenu();
  const std::vector<std::string> signalPins = {"4 + Signal In", "3 - Signal In", "2 + Excitation", "1 - Excitation"};
  const std::string rs485 = "6 ISO GND 5 BRX     4 ARX     3 ATX     2 BTX     1 ISO GND";
  struct Case {
    MenuItem* item;
    const char* form;
    const char* caption;
    int16_t context;
    std::vector<std::string> pins;
    std::map<std::string, std::string> words;
  };
  const Case cases[] = {
      {&menu.mnuDC,
       "frmJDCSC",
       "DC Signal Conditioner Jumpers",
       1371,
       signalPins,
       {{"lblBoard", "DC Signal Conditioner"}}},
      {&menu.mnuDCM,
       "frmJDCSCM",
       "DC Signal Conditioner Rev M Jumpers",
       1394,
       signalPins,
       {{"lblBoard", "DC Signal Conditioner"}}},
      {&menu.mnuTemperature,
       "frmJTempSC",
       "Temperature Signal Conditioner Jumpers",
       1372,
       signalPins,
       {{"lblBoard", "Temperature Signal Conditioner"}}},
      {&menu.mnuRMS,
       "frmJRMSSC",
       "RMS Signal Conditioner Jumpers",
       1373,
       {"4 Signal High .2,2V, Current Inputs", "3 Signal Low - AC Neutral", "2 N/C",
        "1 Signal High 20,200,660V Inputs"},
       {{"lblBoard", "RMS Signal Conditioner"}}},
      {&menu.mnuLoadCell,
       "frmJLCSC",
       "Load Cell Signal Conditioner Jumpers",
       1374,
       {"6 + Sense", "5 +10V Excitation", "4 + Signal In", "3 - Signal In", "2 - Sense", "1 -10V Excitation"},
       {{"lblBoard", "Load Cell Signal Conditioner"}}},
      {&menu.mnuPS,
       "frmJPS",
       "Power Supply Jumpers",
       1375,
       {"Digital Ground", "Digital Input A", "Digital In B (+5V)", "Earth Ground", "AC Lo (DC Ret)", "AC Hi (+DC Hi)"},
       {{"lblBoard", "Power Supply"}}},
      {&menu.mnuRS232F,
       "frmJRS232F",
       "RS232/485 Digital Interface Board  Rev F",
       1380,
       {"6 5 4 3 2 1"},
       {{"lblRS232", "RS232"}, {"lblRS485", "RS485"}, {"lblRev", "Rev F"}}},
      {&menu.mnuRS232G,
       "frmJRS232G",
       "RS232 Digital Interface Board Revision G",
       1383,
       {"6 N/C     5 ISO GND 4 RX      3 TX      2 RTS     1 N/C"},
       {{"lblRJ11_0", "RJ11"}, {"lblBoard", "RS232/485"}, {"lblRev", "Rev G"}}},
      {&menu.mnuRS485G,
       "frmJRS485G",
       "RS485 Digital Interface Board Revision G",
       1384,
       {rs485, rs485},
       {{"lblRJ11_0", "RJ11"}, {"lblRJ11_1", "RJ11"}, {"lblBoard", "RS232/485"}, {"lblRev", "Rev G"}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.form);
    dialogs.pointerChanges.clear();
    JumperDiagram& screen = Open(*c.item, c.form);
    EXPECT_TRUE(screen.IsActive());
    EXPECT_TRUE(menu.Visible()) << "the main menu stays up beside the board";
    EXPECT_EQ(dialogs.pointerChanges, (std::vector<bool>{true, false}));
    EXPECT_EQ(screen.Caption(), c.caption);
    EXPECT_EQ(g.HelpContext, c.context);
    EXPECT_EQ(HelpForm, &screen);
    EXPECT_EQ(Pins(screen), c.pins);
    for (const auto& [name, words] : c.words) EXPECT_EQ(Caption(screen, name), words) << name;
    EXPECT_EQ(screen.cmdPrinter.Caption(), "Print");
    EXPECT_TRUE(screen.cmdOK.Enabled());
    EXPECT_FALSE(screen.imgBoard.Picture().Empty()) << "the board is drawn";

    // The help text as one paragraph; the load cell's is followed by its note.
    std::string text = ReadHelpItem(c.context).text;
    ASSERT_FALSE(text.empty());
    std::replace(text.begin(), text.end(), '$', ' ');
    if (c.context == 1374) text = text.substr(0, 534) + "\n\n" + kLoadCellNote;
    EXPECT_EQ(Caption(screen, "lblText"), text);

    screen.cmdPrinter.UserClick();
    EXPECT_EQ(dialogs.printedForms.back(), c.form);
    screen.cmdOK.UserClick();
    EXPECT_FALSE(Forms().IsLoaded(c.form));
    EXPECT_EQ(HelpForm, nullptr) << "no text goes to a screen that is gone";
    EXPECT_TRUE(menu.IsActive());
  }
  EXPECT_TRUE(dialogs.messages.empty());
}

// The RS232/485 board before its revision letters: no menu item leads to it, its help
// context is stored, and it has no text of its own.
TEST_F(JumperScreens, TheUnrevisedSerialBoardHasNoText) {
  frmMMenu().mnuRS232_Click();
  JumperDiagram& screen = JumperScreen("frmJRS232");
  EXPECT_TRUE(screen.IsActive());
  EXPECT_EQ(screen.Caption(), "RS232/485 Digital Interface Board");
  EXPECT_EQ(g.HelpContext, 1376);
  EXPECT_EQ(Pins(screen), std::vector<std::string>{"6 5 4 3 2 1"});
  EXPECT_EQ(Caption(screen, "lblBoard"), "RS232   RS485  ");
  EXPECT_EQ(screen.FindControl("lblText"), nullptr);
  EXPECT_TRUE(dialogs.messages.empty());
}

// The load cell's text keeps 534 characters before its note, however long it is; a shorter
// text is kept whole.
TEST_F(JumperScreens, TheLoadCellTextIsCutBeforeItsNote) {
  const std::string longText = "Load Cell$Jumpers$" + std::string(300, 'a') + "$" + std::string(300, 'b');
  const std::string shortText = "Load Cell$Jumpers$Short.";
  const struct {
    std::string item;
    std::string shown;
  } cases[] = {
      {longText, "Load Cell Jumpers " + std::string(300, 'a') + " " + std::string(215, 'b')},
      {shortText, "Load Cell Jumpers Short."},
  };
  for (const auto& c : cases) {
    HelpFiles13({{74, c.item}});
    JumperDiagram& screen = Open(frmMMenu().mnuLoadCell, "frmJLCSC");
    EXPECT_EQ(screen.lblText->Caption(), c.shown + "\n\n" + kLoadCellNote);
    screen.cmdOK.UserClick();
  }
}

// Opening a screen again reads its text again, from the help files as they are then.
TEST_F(JumperScreens, OpeningAgainReadsTheTextAgain) {
  HelpFiles13({{71, "DC$Jumpers$First text."}});
  Open(frmMMenu().mnuDC, "frmJDCSC").cmdOK.UserClick();
  HelpFiles13({{71, "DC$Jumpers$Second text."}});
  EXPECT_EQ(Open(frmMMenu().mnuDC, "frmJDCSC").lblText->Caption(), "DC Jumpers Second text.");

  // The same, while the screen is still up: the main menu between brings it back.
  HelpFiles13({{71, "DC$Jumpers$Third text."}});
  frmMMenu().Show();
  EXPECT_EQ(Open(frmMMenu().mnuDC, "frmJDCSC").lblText->Caption(), "DC Jumpers Third text.");
}

// Without its help file a screen says so and shows its board all the same; OK closes it.
TEST_F(JumperScreens, AMissingHelpFileIsToldAndTheBoardStays) {
  SetHelpFolder(folder.Path());
  JumperDiagram& screen = Open(frmMMenu().mnuPS, "frmJPS");
  ASSERT_EQ(dialogs.messages.size(), 1u);
  EXPECT_EQ(dialogs.messages[0].text, "Help file Help13.R10 not found (help context 1375).");
  EXPECT_TRUE(screen.IsActive());
  EXPECT_EQ(screen.lblText->Caption(), "");
  screen.cmdOK.UserClick();
  EXPECT_FALSE(Forms().IsLoaded("frmJPS"));
}

// The meter type screen: each type sets the program's class and closes it; Quit ends.
TEST_F(JumperScreens, TheMeterTypeScreenSetsTheClass) {
  int endings = 0;
  Forms().SetEndAction([&endings] { ++endings; });
  const struct {
    const char* button;
    const char* caption;
    int16_t appClass;
  } cases[] = {{"cmdDPM", "DPM", 1}, {"cmdWtMeter", "Weight Meter", 2}, {"cmdCounter", "Counter", 3}};
  for (const auto& c : cases) {
    g.AppClass = 0;
    MeterType& screen = frmApp();
    screen.Show();
    EXPECT_EQ(screen.Caption(), "SELECT METER TYPE");
    EXPECT_EQ(screen.lblSelect.Caption(), "Select Meter Type");
    auto* button = static_cast<CommandButton*>(screen.FindControl(c.button));
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->Caption(), c.caption);
    button->UserClick();
    EXPECT_EQ(g.AppClass, c.appClass);
    EXPECT_FALSE(Forms().IsLoaded("frmApp"));
  }
  frmApp().Show();
  EXPECT_EQ(frmApp().cmdQuit.Caption(), "Quit");
  frmApp().cmdQuit.UserClick();
  EXPECT_EQ(endings, 1);
}

}  // namespace
}  // namespace dpm::testing
