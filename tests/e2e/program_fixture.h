#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QWidget>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "emulator_process.h"
#include "link/globals.h"
#include "link/startup.h"
#include "platform/fake/scripted_dialogs.h"
#include "platform/forms/form_manager.h"
#include "platform/qt/form_binder.h"
#include "platform/qt/qt_clock.h"
#include "platform/qt/qt_event_pump.h"
#include "platform/qt/qt_serial_port.h"
#include "platform/services.h"
#include "setup/main_menu.h"

namespace dpm::testing {

// The program started as main() starts it, in a program folder of its own whose COM1 is
// the line of a dpm-emulator started with `emulatorOptions`; the user's file choices come
// from a script, everything else is the real program.
class ProgramAgainstEmulatorTest : public ::testing::Test {
 protected:
  explicit ProgramAgainstEmulatorTest(std::vector<std::string> emulatorOptions = {})
      : folder(std::filesystem::temp_directory_path() /
               ("dpm-e2e-" + std::to_string(getpid()) + "-" +
                ::testing::UnitTest::GetInstance()->current_test_info()->name())),
        made(std::filesystem::create_directories(folder)),
        emulator(folder / "COM1", std::move(emulatorOptions)),
        meterLink(folder) {
    std::ofstream(folder / "Settings.SSS") << "\"1501000100000041010000\"\r\n";
    ResetGlobals();
    Forms().Reset();
    Platform() = Services{&clock, &events, &meterLink, &dialogs};
    qt::InstallFormBinder();
    Forms().SetEndAction([this] { ended = true; });
    Main(folder, [] { frmMMenu().Show(); });
    window = qt::WindowOf(frmMMenu());
  }
  ~ProgramAgainstEmulatorTest() override {
    if (meterLink.PortOpen()) meterLink.SetPortOpen(false);
    Forms().Reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    Platform() = Services{};
    std::filesystem::current_path(std::filesystem::temp_directory_path());
    std::filesystem::remove_all(folder);
  }

  template <class W>
  static W* Find(QWidget* window, const char* name) {
    W* widget = window == nullptr ? nullptr : window->findChild<W*>(name);
    EXPECT_NE(widget, nullptr) << name;
    return widget;
  }
  // The window of a form once it is the active one.
  static QWidget* ActiveWindowOf(const Form& form) {
    QWidget* active = qt::WindowOf(form);
    EXPECT_NE(active, nullptr) << form.Name();
    if (active != nullptr) {
      EXPECT_TRUE(QTest::qWaitForWindowActive(active)) << form.Name();
    }
    return active;
  }
  // Picks a menu item as the user would, through its action in the window.
  static void Pick(QWidget* window, const char* item) {
    QAction* action = Find<QAction>(window, item);
    ASSERT_NE(action, nullptr);
    ASSERT_TRUE(action->isEnabled()) << item;
    action->trigger();
  }
  void Pick(const char* item) { Pick(window, item); }
  // The user picks an entry of a list.
  static void Choose(QWidget* window, const char* list, int index) {
    auto* combo = Find<QComboBox>(window, list);
    ASSERT_NE(combo, nullptr);
    combo->setCurrentIndex(index);
    emit combo->activated(index);
  }
  // Types over the box's blanks and moves on with Enter, as the user does.
  static void TypeInto(QWidget* window, const char* box, const char* text) {
    auto* edit = Find<QLineEdit>(window, box);
    ASSERT_NE(edit, nullptr) << box;
    ASSERT_TRUE(edit->hasFocus()) << box;
    edit->selectAll();
    QTest::keyClicks(edit, text);
    QTest::keyClick(edit, Qt::Key_Return);
  }
  static void Press(QWidget* window, const char* button) {
    auto* widget = Find<QPushButton>(window, button);
    ASSERT_NE(widget, nullptr);
    QTest::mouseClick(widget, Qt::LeftButton);
  }

  std::filesystem::path folder;
  bool made;
  EmulatorProcess emulator;
  qt::QtClock clock;
  qt::QtEventPump events;
  qt::QtSerialPort meterLink;
  fake::ScriptedDialogs dialogs;
  QWidget* window = nullptr;  // the main menu's
  bool ended = false;
};

}  // namespace dpm::testing
