#include <gtest/gtest.h>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QPushButton>
#include <QTest>
#include <QWidget>

#include <filesystem>
#include <fstream>

#include "emulator_process.h"
#include "link/globals.h"
#include "link/startup.h"
#include "pages/setup_page1.h"
#include "pages/setup_page2.h"
#include "pages/setup_page3.h"
#include "platform/fake/scripted_dialogs.h"
#include "platform/forms/form_manager.h"
#include "platform/qt/form_binder.h"
#include "platform/qt/qt_clock.h"
#include "platform/qt/qt_event_pump.h"
#include "platform/qt/qt_serial_port.h"
#include "platform/services.h"
#include "setup/main_menu.h"

namespace dpm::testing {
namespace {

namespace fs = std::filesystem;

// The program started as main() starts it, in a program folder of its own whose COM1 is
// the emulator's line.
class SetupPagesAgainstEmulator : public ::testing::Test {
 protected:
  SetupPagesAgainstEmulator()
      : folder(fs::temp_directory_path() / ("dpm-e2e-pages-" + std::to_string(getpid()))),
        made(fs::create_directories(folder)),
        emulator(folder / "COM1"),
        meterLink(folder) {
    std::ofstream(folder / "Settings.SSS") << "\"1501000100000041010000\"\r\n";
    ResetGlobals();
    Forms().Reset();
    Platform() = Services{&clock, &events, &meterLink, &dialogs};
    qt::InstallFormBinder();
    Main(folder, [] { frmMMenu().Show(); });
  }
  ~SetupPagesAgainstEmulator() override {
    if (meterLink.PortOpen()) meterLink.SetPortOpen(false);
    Forms().Reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    Platform() = Services{};
    fs::current_path(fs::temp_directory_path());
    fs::remove_all(folder);
  }

  template <class W>
  static W* Find(QWidget* window, const char* name) {
    W* widget = window == nullptr ? nullptr : window->findChild<W*>(name);
    EXPECT_NE(widget, nullptr) << name;
    return widget;
  }
  // The window of a form once it is the active one.
  static QWidget* ActiveWindowOf(const Form& form) {
    QWidget* window = qt::WindowOf(form);
    EXPECT_NE(window, nullptr) << form.Name();
    if (window != nullptr) {
      EXPECT_TRUE(QTest::qWaitForWindowActive(window)) << form.Name();
    }
    return window;
  }
  static void Pick(QWidget* window, const char* item) {
    QAction* action = Find<QAction>(window, item);
    ASSERT_NE(action, nullptr);
    ASSERT_TRUE(action->isEnabled()) << item;
    action->trigger();
  }
  // The user picks an entry of a list.
  static void Choose(QWidget* window, const char* list, int index) {
    auto* combo = Find<QComboBox>(window, list);
    ASSERT_NE(combo, nullptr);
    combo->setCurrentIndex(index);
    emit combo->activated(index);
  }
  static void Press(QWidget* window, const char* button) {
    auto* widget = Find<QPushButton>(window, button);
    ASSERT_NE(widget, nullptr);
    QTest::mouseClick(widget, Qt::LeftButton);
  }

  fs::path folder;
  bool made;
  EmulatorProcess emulator;
  qt::QtClock clock;
  qt::QtEventPump events;
  qt::QtSerialPort meterLink;
  fake::ScriptedDialogs dialogs;
};

// One field changed on each page puts exactly those bits into the meter.
TEST_F(SetupPagesAgainstEmulator, OneFieldOnEachPageReachesTheMeter) {
  QWidget* main = qt::WindowOf(frmMMenu());
  ASSERT_NE(main, nullptr);
  const std::string before = emulator.Image();
  ASSERT_GE(before.size(), 128u);

  Pick(main, "mnuGet");
  Pick(main, "mnuSetup");
  QWidget* page1 = ActiveWindowOf(frmSetup1());
  Choose(page1, "cboHz", 1);  // 50 Hz: digit 53 bit 5
  Press(page1, "cmdNextPage");

  QWidget* page2 = ActiveWindowOf(frmSetup2());
  Choose(page2, "cboPeakVal", 1);  // filtered peak value: digit 51 bit 6
  Press(page2, "cmdNextPage");

  QWidget* page3 = ActiveWindowOf(frmSetup3());
  auto* filterLock = Find<QCheckBox>(page3, "chkLock_2");  // the filter locked: digit 43 bit 2
  ASSERT_NE(filterLock, nullptr);
  QTest::mouseClick(filterLock, Qt::LeftButton, {}, QPoint(8, filterLock->height() / 2));
  Press(page3, "cmdMMenu");

  ASSERT_EQ(ActiveWindowOf(frmMMenu()), main);
  Pick(main, "mnuPut");
  EXPECT_EQ(g.ErrFlag, 0);

  auto withBit = [](std::string image, int position, int bit) {
    const int byte = std::stoi(image.substr(static_cast<std::size_t>(position - 1), 2), nullptr, 16) | (1 << bit);
    static const char* const kHex = "0123456789ABCDEF";
    image[static_cast<std::size_t>(position - 1)] = kHex[byte >> 4];
    image[static_cast<std::size_t>(position)] = kHex[byte & 15];
    return image;
  };
  ASSERT_EQ(before.substr(50, 4), "3600") << "the emulator starts from the default setup";
  std::string expected = withBit(withBit(withBit(before, 53, 5), 51, 6), 43, 2);
  EXPECT_EQ(emulator.Image(), expected);
}

}  // namespace
}  // namespace dpm::testing
