#include <QLineEdit>

#include <string>

#include "platform/fake/drawing_recorder.h"
#include "program_fixture.h"
#include "readings/plot.h"

namespace dpm::testing {
namespace {

// A DC meter at 0.05 V with some noise, fifty records a second. It shows 0.05 V as
// "+05000.", and its noise of 0.002 V is 200 counts, four divisions of 50.
class PlotAgainstEmulator : public ProgramAgainstEmulatorTest {
 protected:
  PlotAgainstEmulator() : ProgramAgainstEmulatorTest({"--input", "0.05", "--noise", "0.002", "--rate", "50"}) {}
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

  TypeInto(form, "txtMidVal", "5000");
  TypeInto(form, "txtSmallVal", "50");
  TypeInto(form, "txtHorzTime", "20");
  const auto drawn = fake::RecordDrawing(frmPlot().Picture1);
  Press(form, "cmdOK");
  EXPECT_FALSE(Find<QLineEdit>(form, "txtMidVal")->isVisible());

  // The frame and labels are drawn at once; each reading then adds one segment.
  const std::size_t frame = drawn->size();
  ASSERT_TRUE(QTest::qWaitFor([&] { return drawn->size() >= frame + 20; }, 10000));
  const DrawOp& last = drawn->back();
  EXPECT_EQ(last.kind, DrawOp::Kind::Line);
  EXPECT_GT(last.x2, (*drawn)[frame].x2) << "the trace moves to the right with time";
  EXPECT_EQ(frmPlot().TimeExpired, 0);
  // Mid-scale is the middle of the grid, and each division of 50 counts 10 of the grid's
  // 400 up and down: the trace wanders round the middle, never out to the edges.
  const PictureBox& picture = frmPlot().Picture1;
  for (std::size_t i = frame; i < drawn->size(); ++i) {
    const double y = 215 - (*drawn)[i].y2 * 465 / picture.Height();
    EXPECT_TRUE(y > -200 && y < 200) << "segment " << i - frame << " ends at " << y;
  }
  // The window holds the trace in its image; the picture keeps none of it.
  EXPECT_TRUE(picture.Ops().empty());
  EXPECT_EQ(picture.DrawnCount(), drawn->size());

  Press(form, "cmdEnd");
  EXPECT_FALSE(Forms().IsLoaded(Plot::kName));
  EXPECT_TRUE(window->isVisible());
}

}  // namespace
}  // namespace dpm::testing
