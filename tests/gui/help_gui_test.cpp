#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

#include <string>
#include <vector>

#include "forms_gui_fixture.h"
#include "help/app_help.h"
#include "help/help_files.h"
#include "pages/setup_page1.h"
#include "setup/setup_files.h"

namespace dpm::testing {
namespace {

class HelpWindow : public GuiFormsTest {
 protected:
  HelpWindow() {
    g.DefaultFirmwareRev = 4;
    DefaultData();
    g.FirmwareRev = 4;
  }
};

// F1 on a field of setup page 1 opens the help window, modal, on the field's item, the
// field's name in bold; OK returns to the page.
TEST_F(HelpWindow, F1OnAFieldOfPage1ShowsItsHelp) {
  QWidget* page = ShowActive(frmSetup1());
  auto* rate = Find<QComboBox>(page, "cboRate");
  rate->setFocus();
  QCoreApplication::processEvents();
  ASSERT_EQ(g.HelpContext, 1319);

  bool seen = false;
  QTimer::singleShot(0, [&] {
    QWidget* help = qt::WindowOf(frmAppHelp());
    ASSERT_NE(help, nullptr);
    EXPECT_TRUE(help->isVisible());
    EXPECT_TRUE(frmAppHelp().Modal());
    EXPECT_EQ(help->windowTitle(), "APPLICATION  HELP");
    // The item's second line names the field, in bold.
    const std::string item = ReadHelpItem(1319).text;
    const std::size_t first = item.find('$');
    const std::vector<DrawOp>& ops = frmAppHelp().picText.Ops();
    ASSERT_GE(ops.size(), 3u);
    EXPECT_EQ(ops[1].text, item.substr(first + 1, item.find('$', first + 1) - first - 1));
    EXPECT_TRUE(ops[1].font.bold);
    const QImage shown = Find<QLabel>(help, "picText")->grab().toImage();
    bool painted = false;
    for (int y = 0; y < shown.height() && !painted; ++y)
      for (int x = 0; x < shown.width() && !painted; ++x) painted = shown.pixel(x, y) != shown.pixel(0, 0);
    EXPECT_TRUE(painted) << "the text is painted";
    seen = true;
    QTest::mouseClick(Find<QPushButton>(help, "cmdOK"), Qt::LeftButton);
  });
  QTest::keyClick(rate, Qt::Key_F1);
  EXPECT_TRUE(seen);
  EXPECT_FALSE(qt::WindowOf(frmAppHelp())->isVisible());
  EXPECT_TRUE(frmSetup1().IsActive());
}

}  // namespace
}  // namespace dpm::testing
