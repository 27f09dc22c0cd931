#include <QAction>
#include <QDir>
#include <QFontMetrics>
#include <QLabel>
#include <QMenu>
#include <QPushButton>

#include <cstdlib>
#include <string>

#include "forms_gui_fixture.h"
#include "help/jumper_diagrams.h"
#include "link/meter_type.h"
#include "platform/fake/fake_serial_line.h"
#include "platform/faults.h"
#include "platform/qt/qt_pictures.h"
#include "platform/qt/qt_units.h"
#include "setup/main_menu.h"

namespace dpm::testing {
namespace {

// The jumper screens with real windows, in the program's folder, where the build draws
// their boards and the calibration pictures.
class JumperWindows : public GuiFormsTest {
 protected:
  JumperWindows() : line(time), before(QDir::currentPath()) {
    Platform().meterLink = &line;
    QDir::setCurrent(QCoreApplication::applicationDirPath());
  }
  ~JumperWindows() override { QDir::setCurrent(before); }

  fake::FakeSerialLine line;
  QString before;
};

TEST_F(JumperWindows, EveryScreenHasAWidgetOfItsKindForEachControl) {
  for (const char* name : kJumperForms) {
    JumperDiagram& screen = JumperScreen(name);
    screen.Show();
    ExpectEveryControlHasItsWidget(screen);
    screen.Unload();
  }
  frmApp().Show();
  ExpectEveryControlHasItsWidget(frmApp());
}

// A label that lists the pins of a connector in one text breaks its lines between the pins:
// one line a pin, as many lines as the connector has pins.
TEST_F(JumperWindows, PinListsBreakBetweenThePins) {
  const struct {
    const char* form;
    const char* label;
  } lists[] = {{"frmJRS232F", "lblPin_0"},
               {"frmJRS232G", "lblPin_0"},
               {"frmJRS485G", "lblPin_0"},
               {"frmJRS485G", "lblPin_1"},
               {"frmJRS232", "lblPin_0"}};
  for (const auto& list : lists) {
    SCOPED_TRACE(std::string(list.form) + " " + list.label);
    JumperDiagram& screen = JumperScreen(list.form);
    screen.Show();
    auto* label = Find<QLabel>(qt::WindowOf(screen), list.label);
    ASSERT_TRUE(label->wordWrap());
    const QFontMetrics metrics(label->font());
    const QRect wrapped = metrics.boundingRect(label->contentsRect(), Qt::TextWordWrap, label->text());
    EXPECT_EQ(wrapped.height() / metrics.lineSpacing(), 6);
    EXPECT_LE(wrapped.height(), label->height()) << "every pin shows";
    screen.Unload();
  }
}

// Jumpers > Load Cell on the main menu's window: the board drawn beside the main menu; OK
// closes it and the main menu is the active window again.
TEST_F(JumperWindows, LoadCellFromTheMainMenu) {
  QWidget* menuWindow = ShowActive(frmMMenu());
  auto* jumpers = Find<QMenu>(menuWindow, "mnuJmps");
  QAction* loadCell = menuWindow->findChild<QAction*>("mnuLoadCell");
  ASSERT_NE(loadCell, nullptr);
  EXPECT_TRUE(jumpers->actions().contains(loadCell));
  loadCell->trigger();

  QWidget* window = qt::WindowOf(JumperScreen("frmJLCSC"));
  ASSERT_NE(window, nullptr);
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
  EXPECT_EQ(window->windowTitle(), "Load Cell Signal Conditioner Jumpers");
  const QImage board = Find<QLabel>(window, "imgBoard")->grab().toImage();
  ASSERT_FALSE(board.isNull());
  EXPECT_NE(board.pixelColor(200, 150), QColor(0xF4, 0xF4, 0xF0)) << "the board is painted";
  EXPECT_TRUE(menuWindow->isVisible());

  if (const char* shot = std::getenv("DPM_JUMPER_SCREENSHOT")) window->grab().save(shot);

  QTest::mouseClick(Find<QPushButton>(window, "cmdOK"), Qt::LeftButton);
  EXPECT_FALSE(Forms().IsLoaded("frmJLCSC"));
  EXPECT_TRUE(frmMMenu().IsActive());
}

// Picture N of the program is the file Jumper<N>.BMP of its folder; a number without one is
// a missing picture.
TEST_F(JumperWindows, NumberedPicturesAreTheJumperFiles) {
  const PictureRef picture = LoadPicture(41);
  EXPECT_EQ(picture.number, 41);
  EXPECT_EQ(picture.widthTwips, qt::ToTwips(254));
  EXPECT_EQ(picture.heightTwips, qt::ToTwips(155));
  EXPECT_EQ(qt::PixmapOf(picture).size(), QSize(254, 155));
  EXPECT_THROW(LoadPicture(51), FileFault);
}

}  // namespace
}  // namespace dpm::testing
