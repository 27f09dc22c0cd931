#include <QLineEdit>

#include <string>

#include "platform/fake/drawing_recorder.h"
#include "program_fixture.h"
#include "readings/plot.h"

namespace dpm::testing {
namespace {

// A DC meter at 0.05 V with some noise, fifty records a second.
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

  TypeInto(form, "txtMidVal", "0.05");
  TypeInto(form, "txtSmallVal", "0.001");
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
  // The window holds the trace in its image; the picture keeps none of it.
  EXPECT_TRUE(frmPlot().Picture1.Ops().empty());
  EXPECT_EQ(frmPlot().Picture1.DrawnCount(), drawn->size());

  Press(form, "cmdEnd");
  EXPECT_FALSE(Forms().IsLoaded(Plot::kName));
  EXPECT_TRUE(window->isVisible());
}

}  // namespace
}  // namespace dpm::testing
