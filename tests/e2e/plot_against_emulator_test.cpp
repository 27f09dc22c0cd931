#include <QLineEdit>

#include <string>

#include "program_fixture.h"
#include "readings/plot.h"

namespace dpm::testing {
namespace {

// A DC meter at 0.05 V with some noise, fifty records a second.
class PlotAgainstEmulator : public ProgramAgainstEmulatorTest {
 protected:
  PlotAgainstEmulator() : ProgramAgainstEmulatorTest({"--input", "0.05", "--noise", "0.002", "--rate", "50"}) {}

  // Types over the box's blanks and moves on with Enter, as the user does.
  static void TypeInto(QWidget* form, const char* box, const char* text) {
    auto* edit = Find<QLineEdit>(form, box);
    ASSERT_NE(edit, nullptr) << box;
    ASSERT_TRUE(edit->hasFocus()) << box;
    edit->selectAll();
    QTest::keyClicks(edit, text);
    QTest::keyClick(edit, Qt::Key_Return);
  }
};

TEST_F(PlotAgainstEmulator, ReadingsDrawTheTraceAcrossTheSweep) {
  ASSERT_NE(window, nullptr);
  Pick("mnuPlot");
  QWidget* form = qt::WindowOf(frmPlot());
  ASSERT_NE(form, nullptr);
  EXPECT_EQ(form->windowTitle().toStdString(), "PLOT");
  EXPECT_FALSE(window->isVisible());
  form->activateWindow();
  ASSERT_TRUE(QTest::qWaitFor([&] { return Find<QLineEdit>(form, "txtMidVal")->hasFocus(); }, 5000));

  TypeInto(form, "txtMidVal", "0.05");
  TypeInto(form, "txtSmallVal", "0.001");
  TypeInto(form, "txtHorzTime", "20");
  Press(form, "cmdOK");
  EXPECT_FALSE(Find<QLineEdit>(form, "txtMidVal")->isVisible());

  // The frame and labels are drawn at once; each reading then adds one segment.
  const PictureBox& picture = frmPlot().Picture1;
  const std::size_t frame = picture.Ops().size();
  ASSERT_TRUE(QTest::qWaitFor([&] { return picture.Ops().size() >= frame + 20; }, 10000));
  const DrawOp& last = picture.Ops().back();
  EXPECT_EQ(last.kind, DrawOp::Kind::Line);
  EXPECT_GT(last.x2, picture.Ops()[frame].x2) << "the trace moves to the right with time";
  EXPECT_EQ(frmPlot().TimeExpired, 0);

  Press(form, "cmdEnd");
  EXPECT_FALSE(Forms().IsLoaded(Plot::kName));
  EXPECT_TRUE(window->isVisible());
}

}  // namespace
}  // namespace dpm::testing
