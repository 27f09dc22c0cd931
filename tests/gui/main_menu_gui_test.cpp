#include <QAction>
#include <QDir>
#include <QLabel>
#include <QMainWindow>
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

const char* WidgetClassFor(ControlKind kind) {
  switch (kind) {
    case ControlKind::Label:
    case ControlKind::PictureBox:
      return "QLabel";
    case ControlKind::CommandButton:
      return "QPushButton";
    default:
      return "?";
  }
}

TEST_F(MainMenuWindow, EveryControlHasAWidgetOfItsKindInTheLayout) {
  MainMenu& menu = Start(1);
  auto* bar = Find<QMenuBar>(window, "menubar");
  for (Control* control : menu.Controls()) {
    SCOPED_TRACE(control->ObjectName());
    const QString name = QString::fromStdString(control->ObjectName());
    if (control->Kind() != ControlKind::MenuItem) {
      QWidget* widget = window->findChild<QWidget*>(name);
      ASSERT_NE(widget, nullptr);
      EXPECT_STREQ(widget->metaObject()->className(), WidgetClassFor(control->Kind()));
      continue;
    }
    auto& item = static_cast<MenuItem&>(*control);
    if (item.IsSeparator()) {
      auto* heading = window->findChild<QMenu*>(QString::fromStdString(item.Container()->ObjectName()));
      EXPECT_EQ(heading->actions().at(4)->isSeparator(), true);
    } else if (item.IsHeading()) {
      QAction* action = Heading(control->ObjectName().c_str());
      ASSERT_NE(action, nullptr);
      EXPECT_TRUE(bar->actions().contains(action));
      EXPECT_EQ(action->text().toStdString(), item.Caption());
    } else {
      auto* action = window->findChild<QAction*>(name);
      ASSERT_NE(action, nullptr);
      auto* heading = window->findChild<QMenu*>(QString::fromStdString(item.Container()->ObjectName()));
      EXPECT_TRUE(heading->actions().contains(action));
      EXPECT_EQ(action->text().toStdString(), item.Caption());
    }
  }
}

TEST_F(MainMenuWindow, TheHeadingsAreGreyOrLiveAsTheSettingsSay) {
  struct Case {
    int16_t link, calib;
    bool live, calibShown;
  };
  for (const Case& c : {Case{0, 0, false, true}, Case{1, 0, true, true}, Case{1, 7, true, false}}) {
    SCOPED_TRACE(std::to_string(c.link) + "/" + std::to_string(c.calib));
    MainMenu& menu = Start(c.link, c.calib);
    EXPECT_EQ(window->windowTitle(), "DPM MAIN  MENU");
    for (const char* heading : {"mnuDPM", "mnuMRdgs"}) EXPECT_EQ(Heading(heading)->isEnabled(), c.live);
    // A hidden action counts as disabled in Qt.
    EXPECT_EQ(Heading("mnuCalib")->isEnabled(), c.live && c.calibShown);
    for (const char* heading : {"mnuView", "mnuCmds"}) EXPECT_FALSE(Heading(heading)->isEnabled());
    for (const char* heading : {"mnuFile", "mnuJmps", "mnuMHelp"}) EXPECT_TRUE(Heading(heading)->isEnabled());
    EXPECT_EQ(Heading("mnuCalib")->isVisible(), c.calibShown);
    EXPECT_FALSE(Find<QLabel>(window, "lblGPText")->isVisible());
    EXPECT_FALSE(Find<QPushButton>(window, "cmdOK")->isVisible());
    // A setup loaded later brings the View menu to life.
    menu.mnuView.SetEnabled(true);
    EXPECT_TRUE(Heading("mnuView")->isEnabled());
    Forms().Reset();
    qt::InstallFormBinder();
  }
}

TEST_F(MainMenuWindow, MenuHelpPrintsItsPageAndOkClearsIt) {
  MainMenu& menu = Start(0);
  auto* help = Find<QPushButton>(window, "cmdMenuHelp");
  auto* ok = Find<QPushButton>(window, "cmdOK");
  auto* page = Find<QLabel>(window, "picInitText");
  const QImage blank = page->pixmap().toImage();

  QTest::mouseClick(help, Qt::LeftButton);
  EXPECT_EQ(g.HelpContext, 3101);
  EXPECT_FALSE(help->isVisible());
  EXPECT_TRUE(ok->isVisible());
  EXPECT_TRUE(ok->hasFocus());
  EXPECT_NE(page->pixmap().toImage(), blank);
  EXPECT_EQ(menu.picInitText.PrintedLines(), MenuHelpLines());

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

TEST_F(MainMenuWindow, ClosingTheWindowIsExit) {
  Start(1);
  window->close();
  EXPECT_EQ(endings, 1);
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
