#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "panelmenu/menu_rows.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "platform/forms/grid.h"

// The front-panel menu view: the setup image in hand as the meter's own menu shows it,
// rebuilt each time the window is loaded. It edits nothing; a click on a key shows the
// help for that key.
namespace dpm {

class DpmMenu : public Form {
 public:
  static constexpr const char* kName = "frmDPMMenu";

  // Rows of each key grid before the keys go in: the grid's height in rows.
  static constexpr int kGridRows = 35;
  // Main keys beyond this many need the grid's scroll bar.
  static constexpr int kRowsWithoutScrolling = 26;
  static constexpr int kAlarmRowLimit = 4;

  DpmMenu();

  Grid grdInput{*this, "grdInput"};
  Grid grdMain{*this, "grdMain"};
  CommandButton CmdPrinter{*this, "CmdPrinter", "Print"};
  CommandButton cmdMainMenu{*this, "cmdMainMenu", "Main Menu"};
  Grid grdSetPt{*this, "grdSetPt"};
  Label Label1{*this, "Label1", " # Read Only Menu Item"};
  Label lblLocked{*this, "lblLocked", " * Menu item locked out  "};
  Label lblSigCond{*this, "lblSigCond"};
  Label lblInpOpt{*this, "lblInpOpt", "  INPUT OPTION"};

  // The help number of each main key, by its row in grdMain.
  std::array<int16_t, 42> MenuHelpIds{};
  int16_t MenuRowCount = 0;
  bool CustomCurveOn = false;

  void Form_Load();
  void Form_Activate();
  void Form_Unload(int& cancel);
  void grdMain_Click();
  void grdMain_SelChange();
  void grdSetPt_Click();
  void CmdPrinter_Click();
  void cmdMainMenu_Click();

  // The help context a click on a main key stores, by the key's help number.
  static int16_t MainKeyClickContext(int16_t helpNumber, bool customCurveOn);

 private:
  void ShapeKeyGrid(Grid& grid, const char* header);
  void AddMenuRow(const MenuRow& row);
  void AddAlarmRow(const MenuRow& row);
  // Would put the two setpoints among the main keys; the meter shows them under the alarm
  // key instead, so nothing calls it.
  void Row2324();
  int16_t HelpNumberAt(int row) const;
  void ShowMenuHelp(int left);

  std::vector<std::string> inputRangeCells_;
};

// The window, created and filled from the image on first use.
DpmMenu& frmDPMMenu();

}  // namespace dpm
