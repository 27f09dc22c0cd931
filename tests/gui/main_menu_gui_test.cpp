#include <QAction>
#include <QDir>
#include <QFontMetrics>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPrinterInfo>
#include <QPushButton>
#include <QTemporaryDir>

#include "forms_gui_fixture.h"
#include "link/globals.h"
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
      QAction* separator = window->findChild<QAction*>(control->ObjectName().c_str());
      ASSERT_NE(separator, nullptr) << "the layout names its separator";
      EXPECT_TRUE(separator->isSeparator());
      EXPECT_EQ(heading->actions().indexOf(separator), 4);
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

// WCAG's contrast ratio of two colours.
double Contrast(const QColor& a, const QColor& b) {
  auto luminance = [](const QColor& c) {
    auto channel = [](double v) { return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4); };
    return 0.2126 * channel(c.redF()) + 0.7152 * channel(c.greenF()) + 0.0722 * channel(c.blueF());
  };
  const double la = luminance(a);
  const double lb = luminance(b);
  return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

// Every text the status line can carry shows whole in the label's own font, and each of
// its colours reads on the line's panel.
TEST_F(MainMenuWindow, StatusLineShowsEachOfItsTextsWholeAndReadable) {
  MainMenu& menu = Start(1);
  auto* label = Find<QLabel>(window, "lblGPText");
  const char* const texts[] = {
      "Getting data from the DPM.",
      "Getting data from the DPM",
      "Getting data from the DPM.  Data received O.K.",
      "ErrFlag =  4Failed to Get data, check connections and restart program.",
      "ErrFlag =  5Failed to Get data, check connections and restart program.",
      "ErrFlag =  6Failed to Get data, check connections and restart program.",
      "ErrFlag =  9Failed to Get data, check connections and restart program.",
      "Failed to Get data, check connections and restart program.",
      "Putting data to the DPM.",
      "Putting data to the DPM.  Data Transferred O.K.",
      "Data transfer unsuccessful. Check connections and try again.",
      "Default Setup data loaded into the 3-Page Form.",
  };
  menu.lblGPText.SetVisible(true);
  for (const char* text : texts) {
    SCOPED_TRACE(text);
    menu.lblGPText.SetCaption(text);
    EXPECT_EQ(label->text().toStdString(), text);
    EXPECT_LE(QFontMetrics(label->font()).horizontalAdvance(label->text()), label->contentsRect().width());
    EXPECT_LE(label->sizeHint().width(), label->width());
  }
  for (const int32_t colour : {ColWhite, ColGreen, ColRed}) {
    menu.lblGPText.SetForeColor(colour);
    const QColor panel = label->grab().toImage().pixelColor(label->width() / 2, 2);
    EXPECT_GE(Contrast(label->palette().color(QPalette::WindowText), panel), 4.5) << std::hex << colour;
  }
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
