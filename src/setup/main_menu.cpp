#include "setup/main_menu.h"

#include "calibration/calibration.h"

#include <initializer_list>

#include "help/app_help.h"
#include "help/jumper_diagrams.h"
#include "help/setup_help.h"
#include "link/globals.h"
#include "link/transport.h"
#include "pages/setup_page1.h"
#include "panelmenu/menu_view.h"
#include "platform/dialogs.h"
#include "platform/forms/form_manager.h"
#include "platform/services.h"
#include "readings/commands.h"
#include "readings/graph.h"
#include "readings/list_readings.h"
#include "readings/plot.h"
#include "teds/teds.h"

namespace dpm {
namespace {

// Help context of each menu heading, so that F1 after opening a heading tells of it.
constexpr int16_t kFileHelp = 3107;
constexpr int16_t kDpmHelp = 3108;
constexpr int16_t kViewHelp = 3109;
constexpr int16_t kCommandsHelp = 3110;
constexpr int16_t kReadingsHelp = 3111;
constexpr int16_t kJumpersHelp = 3112;
constexpr int16_t kCalibrationHelp = 3113;

// The calibration setting that takes the Calibration menu away.
constexpr int16_t kNoCalibrationMenu = 7;

void DefaultPointer() {
  if (Dialogs* dialogs = Platform().dialogs) dialogs->SetHourglass(false);
}

}  // namespace

const std::vector<std::string>& MenuHelpLines() {
  static const std::vector<std::string> lines = {
      "    If the Main Menu is reached without establishing communications, then click on 'File'",
      "    to load Setup data to the program from either",
      "         1. A Default Setup file furnished with the program, or",
      "         2. A previously saved Setup file.",
      "    Once a Setup file is loaded, the View menu item becomes active to allow viewing the",
      "    Setup data.  Since communications has not been established, the 'DPM', 'Commands'",
      "    and 'Readings' Menu items are not active.",
      "",
      "    If the Main Menu is reached after establishing communications, then in addition to the",
      "    above two methods, a common choice for loading Setup data to the program is to",
      "         3. Click on the 'DPM' menu item and select 'Get Setup' to load the Setup data",
      "             currently in the DPM.",
      "    If Setup data is loaded to the program by method 3, the 'Commands' menu item becomes active.",
      "    'DPM' and 'Readings' Menu items become active immediately because communications is",
      "    established.",
      "",
      "    Click a Menu heading on and off, then press the F1 key for specific information.",
      "    If the Menu heading is Calibration, a form appears. Click End and then the F1 key.  ",
      "    When ready to exit program, click on File and select Exit.",
  };
  return lines;
}

MainMenu::MainMenu() : Form(kName, "DPM MAIN  MENU") {
  // The menus that need a meter or a loaded setup start grey.
  for (MenuItem* item : {&mnuDPM, &mnuPut, &mnuView, &mnuCmds, &mnuMRdgs, &mnuCalib}) item->SetEnabled(false);
  // The status line and the OK button show only when there is something to say.
  lblGPText.SetVisible(false);
  prgTransfer.SetVisible(false);
  cmdOK.SetVisible(false);
  ConnectHandlers();
}

void MainMenu::ConnectHandlers() {
  on.Activate = [this] { Form_Activate(); };
  on.KeyDown = [this](int& keyCode, int shift) { Form_KeyDown(keyCode, shift); };
  on.Unload = [this](int& cancel) { Form_Unload(cancel); };

  cmdMenuHelp.on.Click = [this] { cmdMenuHelp_Click(); };
  cmdOK.on.Click = [this] { cmdOK_Click(); };

  const std::initializer_list<std::pair<MenuItem*, void (MainMenu::*)()>> handlers = {
      {&mnuFile, &MainMenu::mnuFile_Click},
      {&mnuDPM, &MainMenu::mnuDPM_Click},
      {&mnuView, &MainMenu::mnuView_Click},
      {&mnuCmds, &MainMenu::mnuCmds_Click},
      {&mnuMRdgs, &MainMenu::mnuMRdgs_Click},
      {&mnuJmps, &MainMenu::mnuJmps_Click},
      {&mnuCalib, &MainMenu::mnuCalib_Click},
      {&mnuMHelp, &MainMenu::mnuMHelp_Click},
      {&mnuDefaultSet, &MainMenu::mnuDefaultSet_Click},
      {&mnuOpen, &MainMenu::mnuOpen_Click},
      {&mnuSave, &MainMenu::mnuSave_Click},
      {&mnuSaveAs, &MainMenu::mnuSaveAs_Click},
      {&mnuExit, &MainMenu::mnuExit_Click},
      {&mnuGet, &MainMenu::mnuGet_Click},
      {&mnuPut, &MainMenu::mnuPut_Click},
      {&mnuSetup, &MainMenu::mnuSetup_Click},
      {&mnuMenu, &MainMenu::mnuMenu_Click},
      {&mnuCmdsGo, &MainMenu::mnuCmdsGo_Click},
      {&mnuList, &MainMenu::mnuList_Click},
      {&mnuPlot, &MainMenu::mnuPlot_Click},
      {&mnuGraph, &MainMenu::mnuGraph_Click},
      {&mnuDC, &MainMenu::mnuDC_Click},
      {&mnuDCM, &MainMenu::mnuDCM_Click},
      {&mnuTemperature, &MainMenu::mnuTemperature_Click},
      {&mnuRMS, &MainMenu::mnuRMS_Click},
      {&mnuLoadCell, &MainMenu::mnuLoadCell_Click},
      {&mnuPS, &MainMenu::mnuPS_Click},
      {&mnuRS232F, &MainMenu::mnuRS232F_Click},
      {&mnuRS232G, &MainMenu::mnuRS232G_Click},
      {&mnuRS485G, &MainMenu::mnuRS485G_Click},
  };
  for (const auto& [item, handler] : handlers) item->on.Click = [this, handler] { (this->*handler)(); };
}

void MainMenu::Form_Activate() {
  cmdMenuHelp.SetVisible(true);
  // The screens left behind start afresh next time; the setup pages keep their state.
  for (const char* screen : {"frmList", "frmPlot", "frmGRAPH", "frmDPMMenu", "frmCalib"}) Forms().Unload(screen);
  g.MenuViewUp = 0;
  Forms().Unload("frmMHELP");
  DefaultPointer();

  mnuDPM.SetEnabled(true);
  const bool linked = g.LinkEnabled != 0;
  for (MenuItem* heading : {&mnuDPM, &mnuMRdgs, &mnuCalib}) heading->SetEnabled(linked);
  if (g.CalibSetting == kNoCalibrationMenu) mnuCalib.SetVisible(false);

  g.TedsTemplate = kTedsNotFetched;
}

void MainMenu::Form_KeyDown(int& keyCode, int /*shift*/) {
  if (keyCode != kKeyF1) return;
  ShowAppHelp();
}

void MainMenu::Form_Unload(int& /*cancel*/) { mnuExit_Click(); }

void MainMenu::cmdMenuHelp_Click() {
  cmdMenuHelp.SetVisible(false);
  picInitText.Cls();
  for (const std::string& line : MenuHelpLines()) picInitText.Print(line);
  g.HelpContext = kMenuHelpContext;
  DefaultPointer();
  cmdOK.SetVisible(true);
  cmdOK.SetFocus();
  lblGPText.SetVisible(false);
}

void MainMenu::cmdOK_Click() {
  picInitText.Cls();
  cmdMenuHelp.SetVisible(true);
  cmdOK.SetVisible(false);
}

void MainMenu::OnHeading(int helpContext) {
  picInitText.Cls();
  cmdOK.SetVisible(false);
  lblGPText.SetVisible(false);
  g.HelpContext = static_cast<int16_t>(helpContext);
}

void MainMenu::mnuFile_Click() { OnHeading(kFileHelp); }
void MainMenu::mnuDPM_Click() { OnHeading(kDpmHelp); }
void MainMenu::mnuView_Click() { OnHeading(kViewHelp); }
void MainMenu::mnuCmds_Click() { OnHeading(kCommandsHelp); }
void MainMenu::mnuMRdgs_Click() { OnHeading(kReadingsHelp); }
void MainMenu::mnuJmps_Click() { OnHeading(kJumpersHelp); }

// The calibration screen asks the meter what board it carries as it loads, and shows.
void MainMenu::mnuCalib_Click() {
  OnHeading(kCalibrationHelp);
  frmCalib();
}

void MainMenu::mnuMHelp_Click() {
  picInitText.Cls();
  cmdOK.SetVisible(false);
  if (Dialogs* dialogs = Platform().dialogs) dialogs->SetHourglass(true);
  frmMHELP().Show();
  Hide();
  DefaultPointer();
}

void MainMenu::mnuExit_Click() {
  FlushLink();
  Forms().End();
}

// The setup pages stay loaded between visits; the value entry dialog starts afresh. The
// hourglass is this window's, and this window is out of sight once the page shows: the
// page is worked with the normal pointer.
void MainMenu::mnuSetup_Click() {
  if (Dialogs* dialogs = Platform().dialogs) dialogs->SetHourglass(true);
  frmSetup1().Show();
  Forms().Unload("frmEntVal");
  Hide();
  DefaultPointer();
}

// The menu view opens beside the main menu, built afresh from the image in hand; the main
// menu stays up and unloads it on its next activation.
void MainMenu::mnuMenu_Click() { frmDPMMenu().Show(); }

// The list switches the meter to continuous output as it shows; a list that could not
// start has already brought this window back.
void MainMenu::mnuList_Click() {
  if (Dialogs* dialogs = Platform().dialogs) dialogs->SetHourglass(true);
  frmList().Show();
  if (Forms().IsLoaded(ListReadings::kName)) Hide();
  DefaultPointer();
}

void MainMenu::mnuCmdsGo_Click() {
  if (Dialogs* dialogs = Platform().dialogs) dialogs->SetHourglass(true);
  frmCmds().Show();
  Hide();
  DefaultPointer();
}

// The plot and the graph switch the meter to continuous output as they show, and ask for
// a scale before they draw.
void MainMenu::mnuPlot_Click() {
  if (Dialogs* dialogs = Platform().dialogs) dialogs->SetHourglass(true);
  frmPlot().Show();
  Hide();
  DefaultPointer();
}

void MainMenu::mnuGraph_Click() {
  if (Dialogs* dialogs = Platform().dialogs) dialogs->SetHourglass(true);
  frmGRAPH().Show();
  Hide();
  DefaultPointer();
}

// The jumper screens open beside the main menu, which stays up; OK on a screen unloads it.
// The hourglass covers the loading of the board's picture and help text.
void MainMenu::ShowJumpers(const char* form) {
  if (Dialogs* dialogs = Platform().dialogs) dialogs->SetHourglass(true);
  JumperScreen(form).Show();
  DefaultPointer();
}

void MainMenu::mnuDC_Click() { ShowJumpers("frmJDCSC"); }
void MainMenu::mnuDCM_Click() { ShowJumpers("frmJDCSCM"); }
void MainMenu::mnuTemperature_Click() { ShowJumpers("frmJTempSC"); }
void MainMenu::mnuRMS_Click() { ShowJumpers("frmJRMSSC"); }
void MainMenu::mnuLoadCell_Click() { ShowJumpers("frmJLCSC"); }
void MainMenu::mnuPS_Click() { ShowJumpers("frmJPS"); }
void MainMenu::mnuRS232F_Click() { ShowJumpers("frmJRS232F"); }
void MainMenu::mnuRS232G_Click() { ShowJumpers("frmJRS232G"); }
void MainMenu::mnuRS485G_Click() { ShowJumpers("frmJRS485G"); }
// The RS232/485 board before its revision letters: no item of the menu leads here.
void MainMenu::mnuRS232_Click() { ShowJumpers("frmJRS232"); }

MainMenu& frmMMenu() { return Forms().Use<MainMenu>(); }

}  // namespace dpm
