#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QRadioButton>

#include "forms_gui_fixture.h"
#include "link/image_access.h"
#include "pages/setup_page1.h"
#include "panelmenu/value_entry.h"
#include "setup/main_menu.h"
#include "setup/setup_files.h"

namespace dpm::testing {
namespace {

class SetupPage1Window : public GuiFormsTest {
 protected:
  SetupPage1Window() {
    g.DefaultFirmwareRev = 4;
    DefaultData();
    g.FirmwareRev = 4;
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

TEST_F(SetupPage1Window, EveryControlOfBothFormsHasItsWidget) {
  ShowActive(frmSetup1());
  ExpectEveryControlHasItsWidget(frmSetup1());
  ShowActive(frmEntVal());
  ExpectEveryControlHasItsWidget(frmEntVal());
}

TEST_F(SetupPage1Window, TypingDigitsAndEnterChangesTheImageAndTheBox) {
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

TEST_F(SetupPage1Window, TheViewMenuOpensThePageAsTheImageHasIt) {
  MainMenu& menu = frmMMenu();
  QWidget* main = ShowActive(menu);
  auto* view = Find<QMenu>(main, "mnuView");
  EXPECT_FALSE(view->isEnabled());
  menu.mnuDefaultSet.UserClick();
  EXPECT_TRUE(view->isEnabled()) << "the menu itself opens, not only its heading";
  Find<QAction>(main, "mnuSetup")->trigger();
  QWidget* window = qt::WindowOf(frmSetup1());
  ASSERT_NE(window, nullptr);
  ASSERT_TRUE(QTest::qWaitForWindowActive(window));
  EXPECT_FALSE(main->isVisible());
  EXPECT_EQ(Find<QComboBox>(window, "cboMode")->currentText(), "DC V");
  EXPECT_EQ(Find<QLineEdit>(window, "txtScale")->text(), " +00001.");
  EXPECT_TRUE(Find<QLineEdit>(window, "txtScale")->isReadOnly()) << "value boxes take no typing";
  EXPECT_TRUE(Find<QRadioButton>(window, "optExtend")->isChecked());
  EXPECT_FALSE(frmSetup1().optBasic.HasFocus()) << "the page does not open on an option that acts on the focus";
  EXPECT_EQ(g.MeterKind, "1");

  // The user picks Load Cell: the whole page follows.
  auto* conditioner = Find<QComboBox>(window, "cboSCOpt");
  conditioner->setCurrentIndex(3);
  emit conditioner->activated(3);
  EXPECT_EQ(g.SetupImage.substr(54, 2), "C0");
  EXPECT_EQ(Find<QComboBox>(window, "cboMode")->currentText(), "Strain");
}

}  // namespace
}  // namespace dpm::testing
