#include <gtest/gtest.h>

#include <QAction>
#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QTimer>
#include <QWidget>

#include <filesystem>
#include <fstream>
#include <sstream>

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
#include "setup/default_image.h"
#include "setup/main_menu.h"
#include "setup/setup_files.h"

namespace dpm::testing {
namespace {

namespace fs = std::filesystem;

std::string FileText(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

// The program started as main() starts it, in a program folder of its own whose COM1 is
// the emulator's line; the user's file choices come from a script.
class ProgramAgainstEmulator : public ::testing::Test {
 protected:
  ProgramAgainstEmulator()
      : folder(fs::temp_directory_path() / ("dpm-e2e-" + std::to_string(getpid()))),
        made(fs::create_directories(folder)),
        emulator(folder / "COM1"),
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
  ~ProgramAgainstEmulator() override {
    if (meterLink.PortOpen()) meterLink.SetPortOpen(false);
    Forms().Reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    Platform() = Services{};
    fs::current_path(fs::temp_directory_path());
    fs::remove_all(folder);
  }

  // Picks a menu item as the user would, through its action in the window.
  void Pick(const char* item) {
    QAction* action = window->findChild<QAction*>(item);
    ASSERT_NE(action, nullptr) << item;
    ASSERT_TRUE(action->isEnabled()) << item;
    action->trigger();
  }
  std::string StatusLine() const { return window->findChild<QLabel*>("lblGPText")->text().toStdString(); }

  fs::path folder;
  bool made;
  EmulatorProcess emulator;
  qt::QtClock clock;
  qt::QtEventPump events;
  qt::QtSerialPort meterLink;
  fake::ScriptedDialogs dialogs;
  QWidget* window = nullptr;
  bool ended = false;
};

TEST_F(ProgramAgainstEmulator, GetSaveOpenPutAndExit) {
  ASSERT_NE(window, nullptr);
  ASSERT_TRUE(meterLink.PortOpen());

  Pick("mnuGet");
  EXPECT_EQ(StatusLine(), "Getting data from the DPM.  Data received O.K.");
  EXPECT_EQ(g.SetupImage, DefaultSetupImage(4).substr(0, 128)) << "a DC meter without data sheet: 128 digits";
  EXPECT_EQ(g.MeterKind, "1");
  EXPECT_TRUE(window->findChild<QAction*>("mnuPut")->isEnabled());

  const fs::path saved = folder / "meter.DPM";
  dialogs.ChooseFile(saved.string());
  Pick("mnuSaveAs");
  EXPECT_EQ(FileText(saved), g.SetupImage + "\r\n1\r\n");

  // The technician changes the first setpoint in the file, and opens it again.
  std::string edited = g.SetupImage;
  edited.replace(114, 6, "000457");
  const fs::path changed = folder / "changed.DPM";
  std::ofstream(changed, std::ios::binary) << edited << "\r\n1\r\n";
  dialogs.ChooseFile(changed.string());
  Pick("mnuOpen");
  EXPECT_EQ(g.SetupImage.substr(114, 6), "000457");
  EXPECT_EQ(fs::current_path(), folder) << "the program's folder is the working directory again";

  Pick("mnuPut");
  EXPECT_EQ(StatusLine(), "Putting data to the DPM.  Data Transferred O.K.");
  const std::string meterImage = emulator.Image();
  ASSERT_GE(meterImage.size(), 128u);
  EXPECT_EQ(meterImage.substr(0, 12), edited.substr(0, 12));
  EXPECT_EQ(meterImage.substr(20, 108), edited.substr(20, 108)) << "every block that Put sends is in the meter";

  Pick("mnuExit");
  EXPECT_TRUE(ended);
  EXPECT_FALSE(meterLink.PortOpen());
}

TEST_F(ProgramAgainstEmulator, SilentMeterReportsTheFailureAndKeepsTheImage) {
  emulator.Say("silent on");
  emulator.WaitForLine("silent", 1000);
  const std::string before = g.SetupImage;
  Pick("mnuGet");
  EXPECT_EQ(StatusLine(), "ErrFlag =  4Failed to Get data, check connections and restart program.");
  EXPECT_EQ(g.SetupImage, before);
  EXPECT_FALSE(window->findChild<QAction*>("mnuPut")->isEnabled());
}

// The meter's line goes away while Get Setup waits for the meter, and comes back under the
// same name: the failed Get is reported as a silent meter's, the setup in hand stays, and
// the next Get opens the line again and works, with no restart.
TEST_F(ProgramAgainstEmulator, LineLostMidGetAndBackAgain) {
  DefaultData();
  const std::string before = g.SetupImage;
  emulator.Say("silent on");
  emulator.WaitForLine("silent", 1000);
  QTimer::singleShot(400, [this] { emulator.Stop(); });
  Pick("mnuGet");
  EXPECT_EQ(StatusLine(), "ErrFlag =  4Failed to Get data, check connections and restart program.");
  EXPECT_EQ(g.SetupImage, before);
  EXPECT_FALSE(ended);
  EXPECT_FALSE(meterLink.PortOpen()) << "the lost line is let go";

  Pick("mnuGet");
  EXPECT_EQ(StatusLine(), "ErrFlag =  4Failed to Get data, check connections and restart program.")
      << "still unplugged";

  EmulatorProcess again(folder / "COM1");
  Pick("mnuGet");
  EXPECT_EQ(StatusLine(), "Getting data from the DPM.  Data received O.K.");
  EXPECT_TRUE(meterLink.PortOpen());
  EXPECT_EQ(g.SetupImage, DefaultSetupImage(4).substr(0, 128));
}

}  // namespace
}  // namespace dpm::testing
