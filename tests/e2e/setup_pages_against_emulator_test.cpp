#include <QCheckBox>

#include "pages/setup_page1.h"
#include "pages/setup_page2.h"
#include "pages/setup_page3.h"
#include "program_fixture.h"

namespace dpm::testing {
namespace {

using SetupPagesAgainstEmulator = ProgramAgainstEmulatorTest;

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
