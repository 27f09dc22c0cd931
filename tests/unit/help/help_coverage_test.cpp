#include <gtest/gtest.h>

#include <cctype>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "help/setup_help.h"
#include "help_fixture.h"
#include "panelmenu/menu_fixture.h"
#include "panelmenu/menu_view.h"
#include "platform/forms/control_array.h"
#include "setup/main_menu.h"
#include "teds/teds.h"

namespace dpm::testing {
namespace {

// Letters and digits only, in lower case: "Hi rd" and "HI RD" name the same key.
std::string Key(const std::string& text) {
  std::string key;
  for (unsigned char c : text) {
    if (std::isalnum(c)) key += static_cast<char>(std::tolower(c));
  }
  return key;
}

// The reference screens of the boards show these items in their text label.
const std::map<int, std::string> kJumperDiagrams = {
    {1371, "DC Signal Conditioner"},
    {1372, "Temperature Signal Conditioner"},
    {1373, "RMS Signal Conditioner"},
    {1374, "Load Cell Signal Conditioner"},
    {1375, "Power Supply"},
    {1376, "RS232/485 Digital Interface Board"},
    {1380, "RS232/485 Rev F"},
    {1383, "RS232 Rev G"},
    {1384, "RS485 Rev G"},
    {1394, "DC Signal Conditioner Rev M"},
};

// Every help context a screen can store, with the names the user knows the field by: each
// name must stand in the item's second line, the one the window prints in bold.
class HelpCoverageTest : public HelpTest {
 protected:
  // Records the context the last action stored, with the names of its field.
  // A number ending in 00 (the selection of a menu row without a key) has no item and asks
  // for none.
  void Store(std::set<std::string> names) {
    if (g.HelpContext % 100 != 0) stored[g.HelpContext].push_back(std::move(names));
    g.HelpContext = 0;
  }

  // The names a control goes by: its caption, or the caption of the frame it stands in.
  static std::set<std::string> NamesOf(const Control& control) {
    static const std::map<std::string, std::string> kLabels = {{"lblLockout", "Lockout jumper"},
                                                               {"lblAscTbl", "ASCII Character Table"}};
    if (auto it = kLabels.find(control.ObjectName()); it != kLabels.end()) return {it->second};
    std::set<std::string> names;
    if (control.Kind() == ControlKind::CheckBox || control.Kind() == ControlKind::OptionButton ||
        control.Kind() == ControlKind::MenuItem || control.Kind() == ControlKind::CommandButton) {
      names.insert(static_cast<const CaptionedControl&>(control).Caption());
    }
    if (const Control* frame = control.Container(); frame != nullptr && frame->Kind() == ControlKind::Frame) {
      names.insert(static_cast<const Frame*>(frame)->Caption());
    }
    if (names.empty()) names.insert(control.ObjectName());
    return names;
  }

  // Every field of a page chooses itself; the labels that store an item are clicked.
  void ChooseEveryField(Form& page) {
    for (Control* control : std::vector<Control*>(page.Controls())) {
      time.Post([] {
        if (AppHelp* help = Forms().FindLoaded<AppHelp>(); help != nullptr && help->Visible()) help->cmdOK.UserClick();
      });
      if (control->on.GotFocus) {
        control->on.GotFocus();
        Store(NamesOf(*control));
      }
      if (control->Kind() == ControlKind::Label && control->on.Click) {
        control->on.Click();
        Store(NamesOf(*control));
      }
    }
  }

  void ChooseEveryKey(DpmMenu& view) {
    for (int row = 0; row < view.grdMain.Rows(); ++row) {
      const std::string name = view.grdMain.TextMatrix(row, 0);
      view.grdMain.SetRow(row);
      view.grdMain.on.SelChange();
      Store({name});
      view.grdMain.SetRow(row);
      view.grdMain.on.Click();
      Store({name});
    }
    for (int row = 0; row <= 2; ++row) {  // the rows the alarm grid shows
      const std::string name = view.grdSetPt.TextMatrix(row, 0);
      view.grdSetPt.SetRow(row);
      view.grdSetPt.on.Click();
      Store({name});
    }
  }

  std::map<int, std::vector<std::set<std::string>>> stored;
};

TEST_F(HelpCoverageTest, EveryContextAScreenStoresHasAnItemThatNamesItsField) {
  // Setups that between them show every field and every key: each input mode, the scale
  // methods, the custom curve, the lead of an RTD, and a load cell with its data sheet.
  const char* setups[] = {"55=40", "55=50", "55=5C", "55=60", "55=70", "55=80", "55=90",
                          "55=A0", "55=C0", "55=D0", "33=08", "53=08", "33=01", "57=18"};
  for (const char* setup : setups) {
    // A meter of the first revision, and a later one with a load cell's data sheet.
    for (int16_t revision : {0, 10}) {
      SCOPED_TRACE(std::string(setup) + " revision " + std::to_string(revision));
      Forms().Reset();
      LoadSetup(setup);
      g.MeterKind = "1";
      g.FirmwareRev = revision;
      g.TedsHardware = g.TedsPresent = revision == 0 ? 0 : 1;
      g.TedsEnabled = 0;
      g.TedsTemplate = 0;  // as fetched: a blank sheet
      g.TedsHex = std::string(116, '0');
      g.TedsBits = std::string(464, '0');
      // The menu view first: choosing BASIC on page 1 clears the custom curve.
      DpmMenu& view = frmDPMMenu();
      view.Show();
      ChooseEveryKey(view);
      view.Unload();

      ChooseEveryField(OpenPage());
      frmSetup2().Show();
      ChooseEveryField(frmSetup2());
      frmSetup3().Show();
      ChooseEveryField(frmSetup3());

      MainMenu& menu = frmMMenu();
      menu.Show();
      for (Control* control : menu.Controls()) {
        auto* item = dynamic_cast<MenuItem*>(control);
        if (item != nullptr && item->IsHeading()) {
          item->on.Click();
          Store(NamesOf(*item));
          menu.Show();
        }
      }
      menu.cmdMenuHelp.UserClick();
      Store(NamesOf(menu.cmdMenuHelp));
    }
  }
  for (const auto& [context, name] : kJumperDiagrams) stored[context].push_back({name});

  for (const auto& [context, names] : stored) {
    SCOPED_TRACE("help context " + std::to_string(context));
    const HelpItem item = ReadHelpItem(context);
    if (!item.Read()) {
      ADD_FAILURE() << item.fault;
      continue;
    }
    const std::vector<std::string> lines = ItemLines(item.text);
    if (context == kAsciiTableHelp) {
      EXPECT_NE(Key(item.text.substr(0, item.text.find('\r'))).find("asciicharactertable"), std::string::npos);
      continue;
    }
    if (lines.size() < 3) {
      ADD_FAILURE() << "a title, the field's name, and what it means";
      continue;
    }
    EXPECT_NE(Key(lines[0]), "") << "a title";
    EXPECT_NE(Key(lines[1]), "") << "the field's name";
    for (const std::set<std::string>& field : names) {
      bool named = false;
      std::string known;
      for (const std::string& name : field) {
        named = named || Key(lines[1]).find(Key(name)) != std::string::npos;
        known += " \"" + name + "\"";
      }
      EXPECT_TRUE(named) << "\"" << lines[1] << "\" names none of" << known;
    }
  }

  // And no item stands in the files that no screen shows.
  for (int file : {11, 12, 13, 21, 31}) {
    for (int record = 1; record < 100; ++record) {
      const int context = file * 100 + record;
      if (ReadHelpItem(context).Read()) {
        EXPECT_TRUE(stored.count(context)) << "no screen shows item " << context;
      }
    }
  }
}

}  // namespace
}  // namespace dpm::testing
