#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QGroupBox>
#include <QTest>
#include <QWidget>

#include "link/globals.h"
#include "platform/fake/virtual_time.h"
#include "platform/forms/controls.h"
#include "platform/forms/form_manager.h"
#include "platform/qt/form_binder.h"
#include "platform/qt/qt_dialogs.h"
#include "platform/services.h"
#include "setup/setup_files.h"

namespace dpm::testing {

// Serves Qt's events and moves a virtual clock on by a millisecond each turn, so that the
// program's waits cost no real time while the windows stay alive.
class QtEventsInVirtualTime : public EventPump {
 public:
  explicit QtEventsInVirtualTime(fake::VirtualTime& time) : time_(time) {}
  void Serve() override {
    QCoreApplication::processEvents();
    time_.Serve();
  }

 private:
  fake::VirtualTime& time_;
};

// Forms with real windows from their layouts, real dialogs, and virtual time.
class GuiFormsTest : public ::testing::Test {
 protected:
  GuiFormsTest() {
    ResetGlobals();
    Forms().Reset();
    Platform() = Services{&time, &events, nullptr, &dialogs};
    qt::InstallFormBinder();
    Forms().SetEndAction([this] { ++endings; });
  }
  ~GuiFormsTest() override {
    Forms().Reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    Platform() = Services{};
  }

  // Shows the window of the form and waits until it is the active window.
  static QWidget* ShowActive(Form& form) {
    form.Show();
    QWidget* window = qt::WindowOf(form);
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window));
    return window;
  }

  template <class W>
  static W* Find(QWidget* window, const char* name) {
    W* widget = window->findChild<W*>(name);
    EXPECT_NE(widget, nullptr) << name;
    return widget;
  }

  // The window of the form has its caption, and every control but the menu items a widget
  // of its kind, inside the widget of its frame.
  static void ExpectEveryControlHasItsWidget(const Form& form) {
    QWidget* window = qt::WindowOf(form);
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->windowTitle().toStdString(), form.Caption());
    for (const Control* control : form.Controls()) {
      if (control->Kind() == ControlKind::MenuItem) continue;
      SCOPED_TRACE(form.Name() + " " + control->ObjectName());
      QWidget* widget = window->findChild<QWidget*>(QString::fromStdString(control->ObjectName()));
      ASSERT_NE(widget, nullptr);
      EXPECT_STREQ(widget->metaObject()->className(), WidgetClassFor(control->Kind()));
      if (const Control* frame = control->Container()) {
        EXPECT_EQ(widget->parentWidget()->objectName().toStdString(), frame->ObjectName());
      }
      if (auto* box = qobject_cast<QGroupBox*>(widget)) {
        EXPECT_EQ(box->title().toStdString(), static_cast<const Frame*>(control)->Caption());
      }
    }
  }
  static const char* WidgetClassFor(ControlKind kind) {
    switch (kind) {
      case ControlKind::Label:
      case ControlKind::PictureBox:
        return "QLabel";
      case ControlKind::Frame:
        return "QGroupBox";
      case ControlKind::ComboBox:
        return "QComboBox";
      case ControlKind::TextBox:
        return "QLineEdit";
      case ControlKind::OptionButton:
        return "QRadioButton";
      case ControlKind::CheckBox:
        return "QCheckBox";
      case ControlKind::CommandButton:
        return "QPushButton";
      case ControlKind::ProgressBar:
        return "QProgressBar";
      case ControlKind::Grid:
        return "QTableWidget";
      default:
        return "?";
    }
  }

  fake::VirtualTime time;
  QtEventsInVirtualTime events{time};
  qt::QtDialogs dialogs;
  int endings = 0;
};

// The same, with the default setup of a revision 4 meter in hand.
class GuiOnDefaultSetup : public GuiFormsTest {
 protected:
  GuiOnDefaultSetup() {
    g.DefaultFirmwareRev = 4;
    DefaultData();
    g.FirmwareRev = 4;
  }
};

}  // namespace dpm::testing
