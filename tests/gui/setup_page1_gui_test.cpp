#include <QLineEdit>

#include "forms_gui_fixture.h"
#include "link/image_access.h"
#include "pages/setup_page1.h"
#include "panelmenu/value_entry.h"
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

}  // namespace
}  // namespace dpm::testing
