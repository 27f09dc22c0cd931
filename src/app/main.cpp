#include <exception>

#include <QApplication>

#include "link/startup.h"
#include "platform/forms/form_manager.h"
#include "platform/qt/fatal_fault.h"
#include "platform/qt/form_binder.h"
#include "platform/qt/qt_clock.h"
#include "platform/qt/qt_dialogs.h"
#include "platform/qt/qt_event_pump.h"
#include "platform/qt/qt_serial_port.h"
#include "platform/services.h"
#include "setup/main_menu.h"

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  // The program ends by Exit (or by closing the main menu), never because a window went away.
  QApplication::setQuitOnLastWindowClosed(false);

  dpm::qt::QtClock clock;
  dpm::qt::QtEventPump events;
  dpm::qt::QtSerialPort meterLink;
  dpm::qt::QtDialogs dialogs;
  dpm::Platform() = dpm::Services{&clock, &events, &meterLink, &dialogs};
  dpm::qt::InstallFormBinder();
  dpm::Forms().SetEndAction([] { QCoreApplication::exit(0); });

  try {
    dpm::Main(QCoreApplication::applicationDirPath().toStdString(), [] { dpm::frmMMenu().Show(); });
    const int status = app.exec();
    // The windows go before the application that shows them.
    dpm::Forms().Reset();
    return status;
  } catch (const std::exception& fault) {
    dpm::qt::HandleFatalFault(fault);
  } catch (...) {
    dpm::qt::HandleUnknownFatalFault();
  }
}
