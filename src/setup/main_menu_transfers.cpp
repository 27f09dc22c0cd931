#include "setup/main_menu.h"

namespace dpm {

// The main menu's setup transfers and setup files: Get and Put over the meter's line, the
// default setup, and opening and saving setup files.

void MainMenu::mnuGet_Click() {}

void MainMenu::mnuPut_Click() {}

void MainMenu::mnuDefaultSet_Click() {}

void MainMenu::mnuOpen_Click() {}

void MainMenu::mnuSave_Click() {}

void MainMenu::mnuSaveAs_Click() {}

}  // namespace dpm
