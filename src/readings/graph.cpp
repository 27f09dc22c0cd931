#include "readings/graph.h"

#include <algorithm>

#include "platform/forms/form_manager.h"
#include "platform/numeric.h"

namespace dpm {
namespace {

constexpr int kDotted = 2;

}  // namespace

int16_t GraphBin(float value, float mid, float div) {
  return ToCoordinate((static_cast<double>(value) - mid + 15.0 * div) / div);
}

Graph::Graph() : ChartScreen(kName, "GRAPH", "txtVertScale", "lblVertScale", "Initial Vertical Scale") {}

void Graph::GraphLoop() {
  GraphScale = ScaleNumber(txtVertScale.Text());
  Picture1.SetAutoRedraw(true);
  GraphAxes();
  Counts.fill(0);
  LeftMark = 0;
  RightMark = 0;
  StartCapture();
}

void Graph::GraphAxes() {
  PictureBox& p = Picture1;
  p.Scale(kGraphLeft, kGraphTop, kGraphRight, kGraphBottom);
  p.Line(0, 1030, 0, 0);
  p.Line(0, 0, 1000, 0);
  for (int i = 0; i <= 30; ++i) {
    const double x = 30 * i + 30;
    p.Line(x, 0, x, -15);
    if (i % 5 == 0) p.LineTo(x, -30);
  }
  GraphCountAxis();
  GraphMid = ScaleNumber(txtMidVal.Text());
  GraphDiv = ScaleNumber(txtSmallVal.Text());
  if (GraphDiv == 0) GraphDiv = 1;
  const std::string format = ScaleFormat(txtMidVal.Text(), txtSmallVal.Text());
  for (int i = -15; i <= 15; i += 5) {
    const std::string text = FormatWithPicture(static_cast<double>(i) * GraphDiv + GraphMid, format);
    PrintAt(30 * i + 480 - p.TextWidth(text) / 2, -60 - HeightUp(text) / 2, text);
  }
}

// The labels are wiped with white before they are written, so that the axis can be drawn
// again over itself when the scale doubles. The step is kept in 32 bits: a long run of one
// reading doubles the scale past what 16 bits hold.
void Graph::GraphCountAxis() {
  PictureBox& p = Picture1;
  const int32_t step = ToInt32(GraphScale / 5.0);
  for (int i = 0; i <= 5; ++i) {
    const double y = 200 * i;
    p.Line(-15, y, 0, y);
    p.SetDrawWidth(1);
    p.SetDrawStyle(kDotted);
    p.Line(0, y, 1000, y);
    p.SetDrawWidth(2);
    p.SetDrawStyle(0);
    const std::string text = FormatWithPicture(static_cast<double>(step) * i, "#####0");
    const double top = y + HeightUp(text) / 2 + 49;
    // The wipe reaches up to the label's top: in a font taller than the box, the top of the
    // old digits would otherwise stand above the new ones.
    p.Box(-135, y - 10, -35, std::max(y + 25, top), kWhite, true);
    PrintAt(-35 - p.TextWidth(text), top, text);
  }
}

void Graph::OnNumber(float value) {
  const int16_t bin = GraphBin(value, GraphMid, GraphDiv);
  if (bin < 0) {
    Blink(LeftMark, -10);
  } else if (bin >= kGraphBins) {
    Blink(RightMark, 950);
  } else {
    Picture1.Box(-10, -12, 20, -40, kWhite, true);
    Picture1.Box(950, -12, 980, -40, kWhite, true);
    AddToBin(bin);
  }
}

// A bar that would pass the top doubles the scale, once a reading: the bars are drawn anew
// at half their height.
void Graph::AddToBin(int bin) {
  // A scale of 0 cannot hold a bar; the first reading in a bin sets it to 1.
  if (GraphScale == 0) GraphScale = 1;
  const float count = ++Counts[static_cast<std::size_t>(bin)];
  if (count <= GraphScale) {
    Picture1.Box(30 * bin + 20, (count - 1) * 1000.0 / GraphScale, 30 * bin + 40, count * 1000.0 / GraphScale, kBlack,
                 true);
    return;
  }
  GraphScale *= 2;
  for (int i = 0; i < kGraphBins; ++i) {
    Picture1.Box(30 * i + 20, 5, 30 * i + 40, 1000, kWhite, true);
    Picture1.Box(30 * i + 20, 0, 30 * i + 40, Counts[static_cast<std::size_t>(i)] * 1000.0 / GraphScale, kBlack, true);
  }
  GraphCountAxis();
}

void Graph::Blink(int16_t& mark, double x) {
  Picture1.SetCurrentX(x);
  Picture1.SetCurrentY(-5);
  mark = mark == 0 ? 1 : 0;
  if (mark == 1) {
    Picture1.Print(x < 0 ? "<-" : "->");
  } else {
    Picture1.Box(x, -12, x + 30, -40, kWhite, true);
  }
}

void Graph::cmdPause_Click() {
  Picture1.SetFocus();
  Readings().ReadingPaused = 1;
}

// The counts stand through a pause.
void Graph::cmdContinue_Click() {
  const auto hold = HoldCapture();
  Readings().ReadingPaused = 0;
  Picture1.SetFocus();
  SendStreamCommand("A0");
}

Graph& frmGRAPH() { return Forms().Use<Graph>(); }

}  // namespace dpm
