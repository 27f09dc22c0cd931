#include "readings/plot.h"

#include <cmath>
#include <initializer_list>

#include "platform/clock.h"
#include "platform/forms/form_manager.h"
#include "platform/numeric.h"
#include "platform/services.h"

namespace dpm {
namespace {

constexpr int kDotted = 2;

float Now() {
  Clock* clock = Platform().clock;
  return clock != nullptr ? clock->SecondsSinceMidnight() : 0.0f;
}

}  // namespace

int16_t PlotX(float seconds, float total) { return ToCoordinate(static_cast<double>(seconds) * 1000.0 / total); }

int16_t PlotY(float value, float mid, float small) {
  const double bottom = static_cast<double>(mid) - 20.0 * small;
  return ToCoordinate((value - bottom) * 400.0 / (40.0 * small) - 200.0);
}

Plot::Plot() : ChartScreen(kName, "PLOT", "txtHorzTime", "lblHorzTime", "Total Plot Time (Secs)") {}

void Plot::PlotLoop() {
  Picture1.SetAutoRedraw(true);
  TimeExpired = 0;
  ElapsedTime = 0;
  Picture1.Scale(kPlotLeft, kPlotTop, kPlotRight, kPlotBottom);
  DrawFrame();
  DrawLabels();
  FirstPoint = 1;
  StartCapture();
}

void Plot::DrawFrame() {
  PictureBox& p = Picture1;
  p.Line(0, 210, 0, -210);
  p.Line(0, -210, 1000, -210);
  for (int i = 0; i <= 20; ++i) {
    const double from = i % 5 == 0 ? -30 : -15;
    p.Line(from, 10 * i, 0, 10 * i);
    p.Line(from, -10 * i, 0, -10 * i);
  }
  for (int i = 0; i <= 10; ++i) p.Line(100 * i, -210, 100 * i, -220);
  for (int i = 1; i <= 10; ++i) p.Line(100 * i - 50, -210, 100 * i - 50, -215);
  p.SetDrawWidth(1);
  p.SetDrawStyle(kDotted);
  for (int y : {0, 50, 100, 150, 200}) {
    p.Line(0, y, 1000, y);
    p.Line(0, -y, 1000, -y);
  }
  for (int x = 0; x <= 1000; x += 100) p.Line(x, -210, x, 210);
  p.SetDrawWidth(2);
  p.SetDrawStyle(0);
}

void Plot::DrawLabels() {
  mid_ = ScaleNumber(txtMidVal.Text());
  small_ = ScaleNumber(txtSmallVal.Text());
  if (small_ == 0) small_ = 1;
  const std::string format = ScaleFormat(txtMidVal.Text(), txtSmallVal.Text());
  for (int i = -20; i <= 20; i += 5) {
    const std::string text = FormatWithPicture(static_cast<double>(i) * small_ + mid_, format);
    PrintAt(-35 - Picture1.TextWidth(text), 10 * i + HeightUp(text) / 2 + 18, text);
  }
  total_ = std::fabs(ScaleNumber(txtHorzTime.Text()));
  if (total_ == 0) total_ = 1;
  const double step = total_ / 10.0;
  for (int i = 0; i <= 10; ++i) {
    const double value = i * step;
    const std::string text = value == 0 ? "0" : FormatWithPicture(value, "######.######");
    const double x = i == 10 ? 1020 - Picture1.TextWidth(text) : 100 * i - Picture1.TextWidth(text) / 2;
    PrintAt(x, -230 - HeightUp(text) / 2, text);
  }
}

// One segment a reading. A trace that leaves the grid crosses to the edge with a thick line
// and runs thin along it while it stays out.
void Plot::OnNumber(float value) {
  int16_t x = 0;
  if (FirstPoint == 0) {
    const float t = Now() - RunStart + ElapsedTime;
    x = PlotX(t, total_);
    if (x > 1000) {
      Readings().ReadingPaused = 1;
      TimeExpired = 1;
      cmdContinue.SetFocus();
    }
  }
  int16_t y = PlotY(value, mid_, small_);
  Picture1.SetDrawWidth(2);
  if (y > 200) {
    y = 210;
    if (LastY > 200) Picture1.SetDrawWidth(1);
  }
  if (y < -200) {
    y = -205;
    if (LastY < -200) Picture1.SetDrawWidth(1);
  }
  LastY = y;
  if (FirstPoint == 1) {
    RunStart = Now();
    Picture1.Line(0, y, 0, y);
    FirstPoint = 0;
  } else {
    Picture1.LineTo(x, y);
  }
  LastX = x;
  Picture1.SetDrawWidth(2);
}

void Plot::cmdPause_Click() {
  Picture1.SetFocus();
  Readings().ReadingPaused = 1;
  ElapsedTime = Now() - RunStart + ElapsedTime;
}

// After the sweep has run out, a new one starts from the left with the scale still in the
// boxes; otherwise the trace goes on, the pause not counted.
void Plot::cmdContinue_Click() {
  const auto hold = HoldCapture();
  Readings().ReadingPaused = 0;
  Picture1.SetFocus();
  SendStreamCommand("A0");
  if (TimeExpired == 1) {
    Picture1.Cls();
    PlotLoop();
  } else {
    RunStart = Now();
  }
}

Plot& frmPlot() { return Forms().Use<Plot>(); }

}  // namespace dpm
