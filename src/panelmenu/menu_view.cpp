#include "panelmenu/menu_view.h"

#include <optional>
#include <string>

#include "help/app_help.h"
#include "link/globals.h"
#include "pages/setup_page3.h"
#include "platform/dialogs.h"
#include "platform/faults.h"
#include "platform/forms/form_manager.h"
#include "platform/services.h"
#include "setup/main_menu.h"

namespace dpm {
namespace {

// Widths in twips: the key's name, the skip column, and a place of the display.
constexpr int kNameWidth = 1300;
constexpr int kSkipWidth = 1;
constexpr int kPlaceWidth = 350;

constexpr int16_t kInputHelp = 1;

// Help contexts of the menu keys.
constexpr int16_t kMainKeySelectHelp = 2100;  // plus the key's help number
constexpr int16_t kMainKeyClickHelp = 2150;   // plus the key's help number
constexpr int16_t kSetupKeyLaterFirmwareHelp = 2189;
constexpr int16_t kCustomCurveZeroHelp = 2175;
constexpr int16_t kAlarmKeyHelp = 2172;  // plus the row
// The lockout boxes of setup page 3 that lock the scaling keys.
constexpr int kScaleLockBox = 3;   // "Scale, Lo/Hi In"
constexpr int kOffsetLockBox = 4;  // "Offset, Lo/Hi Rd"

// Where the help window stands, in twips from the left of the screen, so that it leaves
// the keys in sight.
constexpr int kHelpBesideMainKeys = 5895;
constexpr int kHelpBesideSelection = 4050;
constexpr int kHelpAtLeft = 0;

constexpr const char* kMenuHelpCaption = "Menu Help";
constexpr int kVerticalScrollBar = 2;

std::string JoinedByTabs(const std::vector<std::string>& cells) {
  std::string item;
  for (const std::string& cell : cells) item += (item.empty() ? "" : "\t") + cell;
  return item;
}

}  // namespace

DpmMenu::DpmMenu() : Form(kName, "DPM  MENU") {
  on.Load = [this] { Form_Load(); };
  on.Activate = [this] { Form_Activate(); };
  on.Unload = [this](int& cancel) { Form_Unload(cancel); };
  grdMain.on.Click = [this] { grdMain_Click(); };
  grdMain.on.SelChange = [this] { grdMain_SelChange(); };
  grdSetPt.on.Click = [this] { grdSetPt_Click(); };
  CmdPrinter.on.Click = [this] { CmdPrinter_Click(); };
  cmdMainMenu.on.Click = [this] { cmdMainMenu_Click(); };
}

void DpmMenu::ShapeKeyGrid(Grid& grid, const char* header) {
  grid.SetRows(kGridRows);
  grid.SetCols(8);
  grid.SetFixedRows(1);
  grid.SetFixedCols(1);
  grid.SetScrollBars(0);
  grid.SetColWidth(0, kNameWidth);
  grid.SetTextMatrix(0, 0, header);
  grid.SetColWidth(1, kSkipWidth);
  grid.SetTextMatrix(0, 1, " ");
  grid.SetColWidth(2, kPlaceWidth);
  grid.SetTextMatrix(0, 2, "S");
  for (int place = 1; place <= 5; ++place) {
    grid.SetColWidth(place + 2, kPlaceWidth);
    grid.SetTextMatrix(0, place + 2, std::to_string(place));
  }
}

namespace {

// The scaling keys take their lock mark from setup page 3's boxes when that page is
// loaded, since the user may have ticked them there without a Put; else from the image.
std::optional<PageLockBoxes> LockBoxesOfPage3() {
  SetupPage3* page = Forms().FindLoaded<SetupPage3>();
  if (page == nullptr) return std::nullopt;
  return PageLockBoxes{page->chkLock[kScaleLockBox].Value() == 1, page->chkLock[kOffsetLockBox].Value() == 1};
}

}  // namespace

void DpmMenu::Form_Load() {
  g.MenuViewUp = 1;
  const PanelMenu menu = BuildPanelMenu(LockBoxesOfPage3());
  CustomCurveOn = menu.customCurveOn;
  Label1.SetVisible(menu.readOnlyNote);
  if (!menu.conditionerText.empty()) lblSigCond.SetCaption(menu.conditionerText);

  grdInput.SetRows(1);
  grdInput.SetCols(6);
  grdInput.SetFixedRows(0);
  grdInput.SetFixedCols(0);
  grdInput.SetScrollBars(0);
  for (int col = 0; col < 6; ++col) grdInput.SetColWidth(col, kPlaceWidth);

  MenuRowCount = 0;
  ShapeKeyGrid(grdMain, " MENU KEY   ");
  inputRangeCells_ = menu.inputRangeCells;
  for (const MenuRow& row : menu.rows) AddMenuRow(row);
  for (int row = MenuRowCount + 1; row <= kGridRows; ++row) {
    for (int col = 1; col <= 7; ++col) grdMain.SetTextMatrix(row, col, "");
  }

  MenuRowCount = 0;
  ShapeKeyGrid(grdSetPt, " ALARM KEY  ");
  for (const MenuRow& row : menu.setpointRows) AddAlarmRow(row);
}

void DpmMenu::AddMenuRow(const MenuRow& row) {
  if (MenuRowCount > kRowsWithoutScrolling) grdMain.SetScrollBars(kVerticalScrollBar);
  if (MenuRowCount == kGridRows) throw RuntimeFault("The front-panel menu has more keys than its grid has rows");
  ++MenuRowCount;
  MenuHelpIds[static_cast<std::size_t>(MenuRowCount)] = row.helpNumber;
  grdMain.AddItem(row.GridItem(), MenuRowCount);
  // The input key's range shows beside the keys, on a row of its own.
  if (row.helpNumber == kInputHelp) grdInput.AddItem(JoinedByTabs(inputRangeCells_), 0);
}

void DpmMenu::AddAlarmRow(const MenuRow& row) {
  if (MenuRowCount == kAlarmRowLimit) throw RuntimeFault("The front-panel menu has more alarm keys than it can show");
  ++MenuRowCount;
  grdSetPt.AddItem(row.GridItem(), MenuRowCount);
}

void DpmMenu::Row2324() {
  for (const MenuRow& row : SetpointRows()) AddMenuRow(row);
}

// Rows below the keys, and the header row, have no help item of their own.
int16_t DpmMenu::HelpNumberAt(int row) const {
  if (row < 0 || row >= static_cast<int>(MenuHelpIds.size())) return 0;
  return MenuHelpIds[static_cast<std::size_t>(row)];
}

int16_t DpmMenu::MainKeyClickContext(int16_t helpNumber, bool customCurveOn) {
  // Later firmware has other setup digits, and the custom curve's reading at zero sits
  // where the low input would be: both have help items of their own.
  if (helpNumber == 2 && g.FirmwareRev >= 1) return kSetupKeyLaterFirmwareHelp;
  if (helpNumber == 8 && customCurveOn) return kCustomCurveZeroHelp;
  return static_cast<int16_t>(kMainKeyClickHelp + helpNumber);
}

void DpmMenu::ShowMenuHelp(int left) {
  AppHelp& help = frmAppHelp();
  help.SetCaption(kMenuHelpCaption);
  help.Move(left, help.Top());
  help.ShowContext();
}

// A click on a key first moves the selection, then clicks: the click's help item is the
// one the user is left with.
void DpmMenu::grdMain_SelChange() {
  g.HelpContext = static_cast<int16_t>(kMainKeySelectHelp + HelpNumberAt(grdMain.Row()));
  ShowMenuHelp(kHelpBesideSelection);
}

void DpmMenu::grdMain_Click() {
  g.HelpContext = MainKeyClickContext(HelpNumberAt(grdMain.Row()), CustomCurveOn);
  grdMain.SetRow(0);
  ShowMenuHelp(kHelpBesideMainKeys);
}

void DpmMenu::grdSetPt_Click() {
  g.HelpContext = static_cast<int16_t>(kAlarmKeyHelp + grdSetPt.Row());
  grdSetPt.SetRow(0);
  ShowMenuHelp(kHelpAtLeft);
}

void DpmMenu::CmdPrinter_Click() {
  if (Dialogs* dialogs = Platform().dialogs) dialogs->PrintForm(*this);
}

void DpmMenu::cmdMainMenu_Click() {
  Unload();
  frmMMenu().Show();
}

void DpmMenu::Form_Activate() { g.MenuViewUp = 1; }

void DpmMenu::Form_Unload(int& /*cancel*/) { frmMMenu().Show(); }

DpmMenu& frmDPMMenu() { return Forms().Use<DpmMenu>(); }

}  // namespace dpm
