#include "help/app_help.h"

#include <algorithm>

#include "help/help_files.h"
#include "link/globals.h"
#include "platform/dialogs.h"
#include "platform/forms/form_manager.h"
#include "platform/forms/grid.h"
#include "platform/services.h"

namespace dpm {

Form* HelpForm = nullptr;

namespace {

// The help window's item reaches the line that names the field when this count runs out.
constexpr int kEmphasisedLine = 2;

constexpr const char* kMenuViewName = "frmDPMMenu";
constexpr const char* kMenuKeysName = "grdMain";

}  // namespace

AppHelp::AppHelp() : Form(kName, kCaption) {
  on.Activate = [this] { Form_Activate(); };
  cmdOK.on.Click = [this] { cmdOK_Click(); };
}

void AppHelp::ShowContext() {
  // A row of the menu view without a key has no item of its own (record 0, which no help
  // file holds): the window stays as it is, and the click that follows brings its item.
  if (g.HelpContext % 100 == 0) return;
  if (IsActive()) {
    ShowItemOfContext();
  } else {
    Show();
  }
}

void AppHelp::Form_Activate() {
  g.EntryReturnFlag = 0;
  // A value box left marked by an entry that help interrupted is no longer being edited.
  if (g.EntryBox != nullptr) {
    g.EntryBox->SetBackColor(ColWhite);
    g.EntryBox = nullptr;
  }
  ShowItemOfContext();
}

void AppHelp::ShowItemOfContext() {
  const int context = g.HelpContext;
  const HelpItem item = ReadHelpItem(context);
  if (!item.Read()) {
    picText.Cls();
    Hide();
    ReportHelpFault(item.fault);
    return;
  }
  PrintItem(item.text, context);
}

void AppHelp::PrintItem(const std::string& item, int context) {
  picText.Cls();
  FontSpec font = picText.Font();
  font.name = kTextFont;
  font.bold = false;
  picText.SetFont(font);
  if (context == kAsciiTableHelp) {
    picText.SetFontName(kTableFont);
    std::size_t start = 0;
    while (start <= item.size()) {
      std::size_t end = item.find('\n', start);
      if (end == std::string::npos) end = item.size();
      std::string line = item.substr(start, end - start);
      if (!line.empty() && line.back() == '\r') line.pop_back();
      picText.Print(line);
      start = end + 1;
    }
    picText.SetFontName(kTextFont);
  } else {
    int countdown = kEmphasisedLine;
    std::string rest = item;
    for (std::size_t end = rest.find(kHelpLineEnd); end != std::string::npos; end = rest.find(kHelpLineEnd)) {
      --countdown;
      picText.SetFontBold(countdown == 0);
      picText.Print(rest.substr(0, end));
      rest.erase(0, end + 1);
    }
    picText.SetFontBold(false);
    picText.Print(rest);
  }
  cmdOK.SetEnabled(true);
}

void AppHelp::cmdOK_Click() {
  // Back on the front-panel menu view, the key grid's selection goes to its header row, so
  // that nothing selected there brings this window back by itself.
  if (g.MenuViewUp == 1) {
    if (Form* view = Forms().Find(kMenuViewName)) {
      if (Control* keys = view->FindControl(kMenuKeysName); keys != nullptr && keys->Kind() == ControlKind::Grid) {
        static_cast<Grid*>(keys)->SetRow(0);
      }
    }
  }
  Hide();
}

AppHelp& frmAppHelp() { return Forms().Use<AppHelp>(); }

void ShowAppHelp() {
  AppHelp& help = frmAppHelp();
  if (help.Visible()) help.Hide();
  help.ShowModal();
}

void ReportHelpFault(const std::string& fault) {
  if (Dialogs* dialogs = Platform().dialogs) dialogs->MessageBox(MessageIcon::Exclamation, "Help", fault);
}

bool ShowHelpText() {
  g.EntryReturnFlag = 0;
  const HelpItem item = ReadHelpItem(g.HelpContext);
  if (!item.Read()) {
    ReportHelpFault(item.fault);
    return false;
  }
  std::string text = item.text;
  std::replace(text.begin(), text.end(), kHelpLineEnd, ' ');
  const std::vector<Form*> loaded = Forms().LoadedForms();
  if (HelpForm == nullptr || std::find(loaded.begin(), loaded.end(), HelpForm) == loaded.end()) return true;
  Control* label = HelpForm->FindControl("lblText");
  if (label != nullptr && label->Kind() == ControlKind::Label) static_cast<Label*>(label)->SetCaption(text);
  return true;
}

}  // namespace dpm
