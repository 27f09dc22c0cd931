#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>

#include "forms_gui_fixture.h"
#include "help/app_help.h"
#include "pages/setup_page1.h"
#include "pages/setup_page2.h"
#include "pages/setup_page3.h"
#include "panelmenu/menu_view.h"
#include "panelmenu/value_entry.h"
#include "setup/main_menu.h"

namespace dpm::testing {
namespace {

class SetupPagesWindows : public GuiOnDefaultSetup {
 protected:
  // Clicks a button of the active window and waits for the window of `next` to be active.
  static QWidget* ClickThrough(QWidget* window, const char* button, const Form& next) {
    QPushButton* widget = Find<QPushButton>(window, button);
    if (widget == nullptr) return nullptr;
    QTest::mouseClick(widget, Qt::LeftButton);
    QWidget* nextWindow = qt::WindowOf(next);
    EXPECT_NE(nextWindow, nullptr) << next.Name();
    if (nextWindow == nullptr) return nullptr;
    EXPECT_TRUE(QTest::qWaitForWindowActive(nextWindow)) << next.Name();
    EXPECT_FALSE(window->isVisible()) << "the page left is hidden";
    return nextWindow;
  }

  // Types into whichever widget has the focus, as a user's keyboard does.
  static void Type(const QString& keys) {
    for (const QChar c : keys) {
      QWidget* focused = QApplication::focusWidget();
      ASSERT_NE(focused, nullptr);
      if (c == '\r') {
        QTest::keyClick(focused, Qt::Key_Return);
      } else {
        QTest::keyClick(focused, c.toLatin1());
      }
    }
  }
};

TEST_F(SetupPagesWindows, EveryControlOfThePagesTheEntryDialogAndTheMenuViewHasItsWidget) {
  g.RelayOption = 1;
  g.TedsHardware = 1;
  g.HelpContext = 2156;  // the help window opens on an item
  for (Form* form : std::initializer_list<Form*>{&frmSetup1(), &frmEntVal(), &frmSetup2(), &frmSetup3(), &frmDPMMenu(),
                                                 &frmAppHelp()}) {
    ShowActive(*form);
    ExpectEveryControlHasItsWidget(*form);
  }
}

TEST_F(SetupPagesWindows, TypingDigitsAndEnterChangesTheImageAndTheBox) {
  SetupPage1& page = frmSetup1();
  QWidget* window = ShowActive(page);
  auto* scale = Find<QLineEdit>(window, "txtScale");
  QTest::mouseClick(scale, Qt::LeftButton);

  QWidget* dialog = qt::WindowOf(frmEntVal());
  ASSERT_NE(dialog, nullptr);
  ASSERT_TRUE(QTest::qWaitForWindowActive(dialog));
  EXPECT_EQ(scale->palette().color(QPalette::Base), QColor(0xC0, 0xFF, 0xC0)) << "the field being edited";
  EXPECT_EQ(Find<QLineEdit>(dialog, "txtDigit_5")->text(), "1.");
  EXPECT_EQ(QApplication::focusWidget(), Find<QLineEdit>(dialog, "txtDigit_0"));

  // The point goes into the third place, then the digits follow.
  Type("+0.2500\r");
  EXPECT_FALSE(dialog->isVisible());
  EXPECT_EQ(g.SetupImage.substr(102, 6), "4009C4");
  EXPECT_EQ(scale->text(), " +02. 500");
  EXPECT_EQ(scale->palette().color(QPalette::Base), QColor(Qt::white));
  EXPECT_EQ(page.txtScale.Text(), " +02. 500");
}

TEST_F(SetupPagesWindows, PagesOneTwoThreeTwoAndTheMainMenu) {
  MainMenu& menu = frmMMenu();
  QWidget* main = ShowActive(menu);
  auto* view = Find<QMenu>(main, "mnuView");
  EXPECT_FALSE(view->isEnabled());
  menu.mnuDefaultSet.UserClick();
  EXPECT_TRUE(view->isEnabled()) << "the menu itself opens, not only its heading";
  Find<QAction>(main, "mnuSetup")->trigger();
  QWidget* page1 = qt::WindowOf(frmSetup1());
  ASSERT_NE(page1, nullptr);
  ASSERT_TRUE(QTest::qWaitForWindowActive(page1));
  EXPECT_FALSE(main->isVisible());
  EXPECT_EQ(Find<QComboBox>(page1, "cboMode")->currentText(), "DC V");
  EXPECT_TRUE(Find<QLineEdit>(page1, "txtScale")->isReadOnly()) << "value boxes take no typing";
  EXPECT_TRUE(Find<QRadioButton>(page1, "optExtend")->isChecked());
  EXPECT_FALSE(frmSetup1().optBasic.HasFocus()) << "the page does not open on an option that acts on the focus";

  QWidget* page2 = ClickThrough(page1, "cmdNextPage", frmSetup2());
  ASSERT_NE(page2, nullptr);
  EXPECT_EQ(page2->windowTitle(), "DPM SETUP  PAGE  2");
  EXPECT_EQ(Find<QComboBox>(page2, "cboTimConst")->currentText(), " 1.2 Sec");
  EXPECT_TRUE(Find<QGroupBox>(page2, "fraAlarm1")->isVisible()) << "the default setup has a relay board";
  EXPECT_FALSE(Find<QGroupBox>(page2, "fraTare")->isVisible()) << "and no data sheet hardware";

  // The user picks "Devn Disabled": the deviation frames go grey at once.
  auto* status = Find<QComboBox>(page2, "cboDevStatus");
  status->setCurrentIndex(1);
  emit status->activated(1);
  EXPECT_FALSE(Find<QGroupBox>(page2, "fraDev1")->isEnabled());
  EXPECT_EQ(g.SetupImage.substr(56, 2), "20");

  QWidget* page3 = ClickThrough(page2, "cmdNextPage", frmSetup3());
  ASSERT_NE(page3, nullptr);
  EXPECT_EQ(page3->windowTitle(), "DPM SETUP  PAGE  3  ");
  EXPECT_EQ(Find<QComboBox>(page3, "cboBaudRate")->currentText(), " 9600");
  EXPECT_EQ(Find<QCheckBox>(page3, "chkLock_13")->text(), "Serial Number");
  EXPECT_EQ(Find<QLabel>(page3, "lblTranStop")->text(), "cr ");
  EXPECT_FALSE(Find<QGroupBox>(page3, "fraSerNo")->isVisible());

  // A lockout ticked by the user lands in the image.
  auto* inputType = Find<QCheckBox>(page3, "chkLock_0");
  QTest::mouseClick(inputType, Qt::LeftButton, {}, QPoint(8, inputType->height() / 2));
  EXPECT_EQ(g.SetupImage.substr(42, 2), "10");

  ASSERT_EQ(ClickThrough(page3, "cmdPrevPage", frmSetup2()), page2);
  EXPECT_FALSE(Find<QGroupBox>(page2, "fraDev1")->isEnabled()) << "rebuilt from the image";
  ASSERT_EQ(ClickThrough(page2, "cmdMMenu", menu), main);
  EXPECT_TRUE(Forms().IsLoaded(SetupPage2::kName));
  EXPECT_TRUE(Forms().IsLoaded(SetupPage3::kName));
  EXPECT_FALSE(page3->isVisible());
}

}  // namespace
}  // namespace dpm::testing
