#include "setup/main_menu.h"

#include "setup/get_setup.h"
#include "setup/put_setup.h"
#include "setup/setup_file_menu.h"

namespace dpm {
namespace {

// The status line and the menus that the transfers and the setup files report on.
TransferScreen TransferPiecesOf(MainMenu& menu) {
  return {menu.lblGPText, menu.mnuCmds, menu.mnuView, menu.mnuPut, menu.prgTransfer};
}

}  // namespace

// The main menu's setup transfers and setup files: Get and Put over the meter's line, the
// default setup, and opening and saving setup files.

void MainMenu::mnuGet_Click() { GetSetup(TransferPiecesOf(*this)); }

void MainMenu::mnuPut_Click() { PutSetup(TransferPiecesOf(*this)); }

void MainMenu::mnuDefaultSet_Click() { DefaultSetup(TransferPiecesOf(*this)); }

void MainMenu::mnuOpen_Click() { OpenSetup(TransferPiecesOf(*this), SetupFileName); }

void MainMenu::mnuSave_Click() { SaveSetup(SetupFileName); }

void MainMenu::mnuSaveAs_Click() { SaveSetupAs(SetupFileName); }

}  // namespace dpm
