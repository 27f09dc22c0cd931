#include <QAction>
#include <QDir>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPrinterInfo>
#include <QPushButton>
#include <QTemporaryDir>

#include "forms_gui_fixture.h"
#include "platform/fake/fake_serial_line.h"
#include "setup/main_menu.h"

namespace dpm::testing {
namespace {

class MainMenuWindow : public GuiFormsTest {
 protected:
  MainMenuWindow() : line(time) { Platform().meterLink = &line; }

  MainMenu& Start(int16_t linkEnabled, int16_t calibSetting = 0) {
    g.LinkEnabled = linkEnabled;
    g.CalibSetting = calibSetting;
    MainMenu& menu = frmMMenu();
    window = ShowActive(menu);
    return menu;
  }
  QAction* Heading(const char* name) const {
    if (auto* menu = window->findChild<QMenu*>(name)) return menu->menuAction();
    return window->findChild<QAction*>(name);
  }

  fake::FakeSerialLine line;
  QWidget* window = nullptr;
};

TEST_F(MainMenuWindow, EveryControlHasAWidgetOfItsKindInTheLayout) {
  MainMenu& menu = Start(1);
  ExpectEveryControlHasItsWidget(menu);
  auto* bar = Find<QMenuBar>(window, "menubar");
  for (Control* control : menu.Controls()) {
    if (control->Kind() != ControlKind::MenuItem) continue;
    SCOPED_TRACE(control->ObjectName());
    auto& item = static_cast<MenuItem&>(*control);
    auto* heading = item.IsHeading() ? nullptr : Find<QMenu>(window, item.Container()->ObjectName().c_str());
    if (item.IsSeparator()) {
      EXPECT_TRUE(heading->actions().at(4)->isSeparator());
      continue;
    }
    QAction* action = Heading(control->ObjectName().c_str());
    ASSERT_NE(action, nullptr);
    EXPECT_TRUE((heading != nullptr ? heading->actions() : bar->actions()).contains(action));
    EXPECT_EQ(action->text().toStdString(), item.Caption());
  }
}

// The rules are the menu's own; here the window follows them, a hidden heading included.
TEST_F(MainMenuWindow, TheHeadingsAreGreyLiveOrHiddenAsTheMenuSays) {
  MainMenu& menu = Start(1, 7);
  for (const char* heading : {"mnuDPM", "mnuMRdgs", "mnuFile", "mnuJmps", "mnuMHelp"}) {
    EXPECT_TRUE(Heading(heading)->isEnabled()) << heading;
  }
  for (const char* heading : {"mnuView", "mnuCmds"}) EXPECT_FALSE(Heading(heading)->isEnabled()) << heading;
  EXPECT_FALSE(Heading("mnuCalib")->isVisible());
  EXPECT_FALSE(Heading("mnuCalib")->isEnabled()) << "a hidden action counts as disabled in Qt";
  EXPECT_FALSE(Find<QLabel>(window, "lblGPText")->isVisible());
  EXPECT_FALSE(Find<QPushButton>(window, "cmdOK")->isVisible());
  // And it follows each change: a setup loaded later brings View to life, and so on.
  menu.mnuView.SetEnabled(true);
  menu.mnuDPM.SetEnabled(false);
  menu.mnuCalib.SetVisible(true);
  EXPECT_TRUE(Heading("mnuView")->isEnabled());
  EXPECT_FALSE(Heading("mnuDPM")->isEnabled());
  EXPECT_TRUE(Heading("mnuCalib")->isVisible() && Heading("mnuCalib")->isEnabled());
}

TEST_F(MainMenuWindow, MenuHelpPrintsItsPageAndOkClearsIt) {
  Start(0);
  auto* help = Find<QPushButton>(window, "cmdMenuHelp");
  auto* ok = Find<QPushButton>(window, "cmdOK");
  auto* page = Find<QLabel>(window, "picInitText");
  const QImage blank = page->pixmap().toImage();

  QTest::mouseClick(help, Qt::LeftButton);
  EXPECT_FALSE(help->isVisible());
  EXPECT_TRUE(ok->isVisible());
  EXPECT_TRUE(ok->hasFocus());
  EXPECT_NE(page->pixmap().toImage(), blank);

  QTest::mouseClick(ok, Qt::LeftButton);
  EXPECT_TRUE(help->isVisible());
  EXPECT_FALSE(ok->isVisible());
  EXPECT_EQ(page->pixmap().toImage(), blank);
}

TEST_F(MainMenuWindow, AltFOpensFileAndXExits) {
  Start(1);
  QTest::keyClick(window, Qt::Key_F, Qt::AltModifier);
  auto* file = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(file->objectName(), "mnuFile");
  EXPECT_EQ(g.HelpContext, 3107);
  EXPECT_EQ(endings, 0);
  QTest::keyClick(file, Qt::Key_X);
  EXPECT_EQ(endings, 1);
  EXPECT_GE(time.Elapsed(), 200u);  // the line was let go before the end
}

TEST_F(MainMenuWindow, F1ReachesTheFormsKeyHandler) {
  MainMenu& menu = Start(0);
  std::vector<int> keys;
  menu.on.KeyDown = [&](int& code, int shift) {
    keys.push_back(code);
    menu.Form_KeyDown(code, shift);
  };
  QTest::keyClick(window->focusWidget() != nullptr ? window->focusWidget() : window, Qt::Key_F1);
  EXPECT_EQ(keys, std::vector<int>{kKeyF1});
}

TEST_F(MainMenuWindow, PrintingWithoutAPrinterWritesAPdfIntoTheProgramsFolder) {
  if (!QPrinterInfo::availablePrinters().isEmpty()) GTEST_SKIP() << "this machine has a printer; nothing is wasted";
  QTemporaryDir folder;
  const QString before = QDir::currentPath();
  QDir::setCurrent(folder.path());
  MainMenu& menu = Start(0);
  menu.cmdMenuHelp.UserClick();
  dialogs.PrintForm(menu);
  QDir::setCurrent(before);
  const QStringList pdfs = QDir(folder.path()).entryList({"frmMMenu-*.pdf"});
  ASSERT_EQ(pdfs.size(), 1);
  QFile pdf(QDir(folder.path()).filePath(pdfs.front()));
  ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
  EXPECT_TRUE(pdf.read(5) == "%PDF-");
  EXPECT_GT(pdf.size(), 1000);
}

}  // namespace
}  // namespace dpm::testing
