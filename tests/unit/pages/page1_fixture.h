#pragma once

#include <string>

#include "forms/forms_fixture.h"
#include "link/image_access.h"
#include "pages/setup_page1.h"
#include "panelmenu/value_entry.h"
#include "setup/setup_files.h"

namespace dpm::testing {

// The default setup (a DC voltmeter on an EXTENDED meter of revision 4) in hand, and
// setup page 1 ready to be opened on it.
class Page1Test : public FormsTest {
 protected:
  Page1Test() {
    g.DefaultFirmwareRev = 4;
    DefaultData();
    g.FirmwareRev = 4;
  }

  SetupPage1& OpenPage() {
    SetupPage1& page = frmSetup1();
    page.Show();
    return page;
  }

  static std::string Digits(int position, int count = 2) { return g.SetupImage.substr(position - 1, count); }

  // The scaling boxes the user can click, in the order of the frame.
  static std::string EnabledBoxes(const SetupPage1& page) {
    std::string names;
    for (const TextBox* box :
         {&page.txtScale, &page.txtOffset, &page.txtLoIn, &page.txtLoRd, &page.txtHiIn, &page.txtHiRd}) {
      if (!box->AcceptsUser()) continue;
      if (!names.empty()) names += " ";
      names += box->Name();
    }
    return names;
  }

  // Types into the value entry dialog, from the place that has the focus on.
  static void Type(const std::string& keys) {
    ValueEntry& dialog = frmEntVal();
    for (char c : keys) dialog.txtDigit[dialog.FocusedControl()->Index()].UserKeyPress(c);
  }
};

}  // namespace dpm::testing
