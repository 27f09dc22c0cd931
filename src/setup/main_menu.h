#pragma once

#include <string>

#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "platform/forms/picture.h"

namespace dpm {

// The main menu, the hub of the program: every screen is reached from its menu bar and
// returns by showing it. Each time it becomes the active window it closes the screens
// that were left and sets its menus anew. The meter's serial line and the file dialogs it
// owns are the platform's services (Platform().meterLink, Platform().dialogs).
class MainMenu : public Form {
 public:
  static constexpr const char* kName = "frmMMenu";

  MainMenu();

  // The name of the setup file in hand, set by Open and Save As.
  std::string SetupFileName;

  Label lblGPText{*this, "lblGPText", "Getting data from the DPM."};
  // How far a Get or Put Setup has come; shown only while one runs.
  ProgressBar prgTransfer{*this, "prgTransfer"};
  PictureBox picInitText{*this, "picInitText"};
  CommandButton cmdMenuHelp{*this, "cmdMenuHelp", "Menu Help"};
  CommandButton cmdOK{*this, "cmdOK", "OK"};

  MenuItem mnuFile{*this, "mnuFile", "&File"};
  MenuItem mnuDefaultSet{*this, "mnuDefaultSet", "&Default  Setup", &mnuFile};
  MenuItem mnuOpen{*this, "mnuOpen", "&Open Setup", &mnuFile};
  MenuItem mnuSave{*this, "mnuSave", "&Save Setup", &mnuFile};
  MenuItem mnuSaveAs{*this, "mnuSaveAs", "Save Setup &As", &mnuFile};
  MenuItem mnuF2Sep{*this, "mnuF2Sep", "-", &mnuFile};
  MenuItem mnuExit{*this, "mnuExit", "E&xit", &mnuFile};

  MenuItem mnuDPM{*this, "mnuDPM", "DP&M"};
  MenuItem mnuGet{*this, "mnuGet", "&Get Setup", &mnuDPM};
  MenuItem mnuPut{*this, "mnuPut", "&Put Setup", &mnuDPM};

  MenuItem mnuView{*this, "mnuView", "&View"};
  MenuItem mnuSetup{*this, "mnuSetup", "&Setup", &mnuView};
  MenuItem mnuMenu{*this, "mnuMenu", "Men&u", &mnuView};

  MenuItem mnuCmds{*this, "mnuCmds", "Co&mmands"};
  MenuItem mnuCmdsGo{*this, "mnuCmdsGo", "Comman&ds", &mnuCmds};

  MenuItem mnuMRdgs{*this, "mnuMRdgs", "&Readings"};
  MenuItem mnuList{*this, "mnuList", "&List", &mnuMRdgs};
  MenuItem mnuPlot{*this, "mnuPlot", "&Plot", &mnuMRdgs};
  MenuItem mnuGraph{*this, "mnuGraph", "&Graph", &mnuMRdgs};

  MenuItem mnuJmps{*this, "mnuJmps", "&Jumpers"};
  MenuItem mnuDC{*this, "mnuDC", "&DC", &mnuJmps};
  MenuItem mnuDCM{*this, "mnuDCM", "DC Rev &M", &mnuJmps};
  MenuItem mnuTemperature{*this, "mnuTemperature", "&Temperature", &mnuJmps};
  MenuItem mnuRMS{*this, "mnuRMS", "True &RMS", &mnuJmps};
  MenuItem mnuLoadCell{*this, "mnuLoadCell", "&Load Cell", &mnuJmps};
  MenuItem mnuPS{*this, "mnuPS", "Po&wer Supply", &mnuJmps};
  MenuItem mnuRS232F{*this, "mnuRS232F", "RS232/485  Rev &F", &mnuJmps};
  MenuItem mnuRS232G{*this, "mnuRS232G", "RS232  Rev &G", &mnuJmps};
  MenuItem mnuRS485G{*this, "mnuRS485G", "RS485  Re&v G", &mnuJmps};

  MenuItem mnuCalib{*this, "mnuCalib", "&Calibration"};
  MenuItem mnuMHelp{*this, "mnuMHelp", "&Help"};

  // Form events.
  void Form_Activate();
  void Form_KeyDown(int& keyCode, int shift);
  void Form_Unload(int& cancel);

  // Buttons.
  void cmdMenuHelp_Click();
  void cmdOK_Click();

  // Menu headings: each clears the help page and sets the help context of its heading.
  void mnuFile_Click();
  void mnuDPM_Click();
  void mnuView_Click();
  void mnuCmds_Click();
  void mnuMRdgs_Click();
  void mnuJmps_Click();
  void mnuCalib_Click();
  void mnuMHelp_Click();

  // Setup transfers and files.
  void mnuDefaultSet_Click();
  void mnuOpen_Click();
  void mnuSave_Click();
  void mnuSaveAs_Click();
  void mnuGet_Click();
  void mnuPut_Click();
  void mnuExit_Click();

  // The other screens.
  void mnuSetup_Click();
  void mnuMenu_Click();
  void mnuCmdsGo_Click();
  void mnuList_Click();
  void mnuPlot_Click();
  void mnuGraph_Click();
  void mnuDC_Click();
  void mnuDCM_Click();
  void mnuTemperature_Click();
  void mnuRMS_Click();
  void mnuLoadCell_Click();
  void mnuPS_Click();
  void mnuRS232F_Click();
  void mnuRS232G_Click();
  void mnuRS485G_Click();
  void mnuRS232_Click();

 private:
  void ShowJumpers(const char* form);
  void ConnectHandlers();
  void OnHeading(int helpContext);
};

// The main menu, created on first use.
MainMenu& frmMMenu();

// The lines of the Menu Help page, in order; empty texts are the blank lines.
const std::vector<std::string>& MenuHelpLines();

// Help context numbers of the main menu.
inline constexpr int16_t kMenuHelpContext = 3101;

}  // namespace dpm
