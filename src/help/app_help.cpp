#include "help/app_help.h"

#include "link/globals.h"
#include "platform/forms/form_manager.h"

namespace dpm {

std::string HelpItemText(int helpContext) { return "Help context " + std::to_string(helpContext); }

AppHelp::AppHelp() : Form(kName, kCaption) {
  on.Activate = [this] { Form_Activate(); };
  cmdOK.on.Click = [this] { cmdOK_Click(); };
}

void AppHelp::ShowItem() { lblText.SetCaption(HelpItemText(g.HelpContext)); }

void AppHelp::ShowContext() {
  ShowItem();
  Show();
}

void AppHelp::Form_Activate() { ShowItem(); }

void AppHelp::cmdOK_Click() { Hide(); }

AppHelp& frmAppHelp() { return Forms().Use<AppHelp>(); }

}  // namespace dpm
