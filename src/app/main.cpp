#include <exception>

#include <QApplication>
#include <QMainWindow>

#include "link/startup.h"
#include "platform/qt/fatal_fault.h"
#include "platform/qt/qt_clock.h"
#include "platform/qt/qt_event_pump.h"
#include "platform/qt/qt_serial_port.h"
#include "platform/services.h"

int main(int argc, char** argv) {
  QApplication app(argc, argv);

  dpm::qt::QtClock clock;
  dpm::qt::QtEventPump events;
  dpm::qt::QtSerialPort meterLink;
  dpm::Platform() = dpm::Services{&clock, &events, &meterLink};

  QMainWindow mainMenu;
  const auto showMainMenu = [&mainMenu] {
    mainMenu.setWindowTitle("DPM MAIN  MENU");
    mainMenu.resize(640, 480);
    mainMenu.show();
  };

  try {
    dpm::Main(QCoreApplication::applicationDirPath().toStdString(), showMainMenu);
    return app.exec();
  } catch (const std::exception& fault) {
    dpm::qt::HandleFatalFault(fault);
  } catch (...) {
    dpm::qt::HandleUnknownFatalFault();
  }
}
