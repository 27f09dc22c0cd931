#include <algorithm>
#include <cmath>
#include <fstream>

#include "readings/plot.h"
#include "readings/plot_fixture.h"
#include "temp_folder.h"

namespace dpm::testing {
namespace {

class PlotTest : public ChartTest {
 protected:
  // The plot open with its scale group, the picture 11700 x 4650 twips for 1170 x 465 units.
  Plot& Open() {
    frmMMenu().mnuPlot_Click();
    Plot& plot = frmPlot();
    plot.Picture1.Move(0, 0, 11700, 4650);
    return plot;
  }
  std::vector<Drawn> Since(const Plot& plot, std::size_t from) const {
    return DrawnSince(plot.Picture1, from, kPlotLeft, kPlotTop);
  }
};

bool Near(double a, double b) { return std::fabs(a - b) < 1e-6; }

bool HasLine(const std::vector<Drawn>& drawn, double x1, double y1, double x2, double y2, int width, int style) {
  return std::any_of(drawn.begin(), drawn.end(), [&](const Drawn& d) {
    return d.kind == DrawOp::Kind::Line && Near(d.x1, x1) && Near(d.y1, y1) && Near(d.x2, x2) && Near(d.y2, y2) &&
           d.width == width && d.style == style;
  });
}

TEST(PlotScale, LabelFormatTakesTheMostDecimalsOfTheTwoTrimmedTexts) {
  struct Case {
    const char* mid;
    const char* small;
    const char* format;
  } cases[] = {
      {"100", "5", "0."},     {"         ", "         ", "0."}, {" 0 ", " 0.1 ", "0.0"},
      {"2.50", ".1", "0.00"}, {"1.2345678", "1", "0.000000"},   {"-3.", "7", "0."},
  };
  for (const Case& c : cases) EXPECT_EQ(ScaleFormat(c.mid, c.small), c.format) << c.mid << "|" << c.small;
}

TEST(PlotScale, PointsRoundHalfToEvenAndFarOffReadingsStayWithin16Bits) {
  // Mid 100, Small 5: 0 at the bottom of the grid, 40 small divisions of 10 each.
  EXPECT_EQ(PlotY(100, 100, 5), 0);
  EXPECT_EQ(PlotY(200, 100, 5), 200);
  EXPECT_EQ(PlotY(0, 100, 5), -200);
  EXPECT_EQ(PlotY(100.25f, 100, 5), 0);  // 0.5
  EXPECT_EQ(PlotY(100.75f, 100, 5), 2);  // 1.5
  EXPECT_EQ(PlotY(101.25f, 100, 5), 2);  // 2.5
  EXPECT_EQ(PlotY(1e9f, 0, 0.001f), 32767);
  EXPECT_EQ(PlotY(-1e9f, 0, 0.001f), -32768);
  EXPECT_EQ(PlotX(1.5f, 1000), 2);
  EXPECT_EQ(PlotX(2.5f, 1000), 2);
  EXPECT_EQ(PlotX(0.5f, 400), 1);
  EXPECT_EQ(PlotX(5, 10), 500);
  EXPECT_EQ(PlotX(3600, 0.001f), 32767);
}

TEST_F(PlotTest, ScaleGroupFrameAndLabelsStandWhereTheyAreWorkedOut) {
  Plot& plot = Open();
  EXPECT_EQ(plot.Caption(), "PLOT");
  EXPECT_EQ(Commands(), std::vector<std::string>{"*1A0"});
  EXPECT_TRUE(line.RTSEnable());
  EXPECT_EQ(plot.txtMidVal.Text(), "         ");
  EXPECT_TRUE(plot.txtHorzTime.Visible());
  EXPECT_EQ(Readings().ReadingPaused, 1);

  GiveScale(plot, "100", "5", "10");
  EXPECT_FALSE(plot.txtHorzTime.Visible());
  EXPECT_FALSE(plot.cmdOK.Visible());
  EXPECT_FALSE(plot.cmdOK.Enabled());
  EXPECT_EQ(Readings().ReadingPaused, 0);

  const std::vector<Drawn> drawn = Since(plot, 0);
  const auto lines =
      std::count_if(drawn.begin(), drawn.end(), [](const Drawn& d) { return d.kind == DrawOp::Kind::Line; });
  EXPECT_EQ(lines, 2 + 42 + 11 + 10 + 10 + 11);
  // Axes, ticks and a half tick with the pen as it came (1, solid); dotted grid lines.
  struct Segment {
    double x1, y1, x2, y2;
  };
  for (const Segment& d :
       {Segment{0, 210, 0, -210}, Segment{0, -210, 1000, -210}, Segment{-15, 30, 0, 30}, Segment{-30, -50, 0, -50},
        Segment{-30, 200, 0, 200}, Segment{700, -210, 700, -220}, Segment{950, -210, 950, -215}})
    EXPECT_TRUE(HasLine(drawn, d.x1, d.y1, d.x2, d.y2, 1, 0)) << d.x1 << "," << d.y1 << " " << d.x2 << "," << d.y2;
  EXPECT_TRUE(HasLine(drawn, 0, -150, 1000, -150, 1, 2));
  EXPECT_TRUE(HasLine(drawn, 1000, -210, 1000, 210, 1, 2));
  EXPECT_EQ(plot.Picture1.DrawWidth(), 2);
  EXPECT_EQ(plot.Picture1.DrawStyle(), 0);

  // Heights count along the y axis, which points up: -24. Value labels: x -35 less the
  // width, y 10i - 12 + 18. Time labels: centred under their tick, the last flush with the
  // right edge; y -230 + 12.
  struct Label {
    std::string text;
    double x, y;
  };
  std::vector<Label> labels;
  for (const Drawn& d : drawn)
    if (d.kind == DrawOp::Kind::Text) labels.push_back({d.text, d.x1, d.y1});
  const std::vector<Label> expected = {
      {"0.", -59, -194}, {"25.", -71, -144}, {"50.", -71, -94},  {"75.", -71, -44},  {"100.", -83, 6},
      {"125.", -83, 56}, {"150.", -83, 106}, {"175.", -83, 156}, {"200.", -83, 206}, {"0", -6, -218},
      {"1.", 88, -218},  {"2.", 188, -218},  {"3.", 288, -218},  {"4.", 388, -218},  {"5.", 488, -218},
      {"6.", 588, -218}, {"7.", 688, -218},  {"8.", 788, -218},  {"9.", 888, -218},  {"10.", 984, -218},
  };
  ASSERT_EQ(labels.size(), expected.size());
  for (std::size_t i = 0; i < labels.size(); ++i) {
    EXPECT_EQ(labels[i].text, expected[i].text) << i;
    EXPECT_TRUE(Near(labels[i].x, expected[i].x) && Near(labels[i].y, expected[i].y))
        << labels[i].text << " at " << labels[i].x << "," << labels[i].y;
  }
}

TEST_F(PlotTest, SweepDrawsOneSegmentAReadingAndRunsThinAlongTheEdges) {
  Plot& plot = Open();
  time.Advance(30'000);  // the first point is at the left however long the meter has talked
  GiveScale(plot, "100", "5", "10");
  const std::size_t frame = plot.Picture1.Ops().size();
  struct Step {
    uint32_t afterMs;
    const char* record;
  } steps[] = {
      {0, "cut.0\r"},   {0, "+100.00\r"}, {2500, "+200.00\r"}, {2500, "V+300.00\r"}, {1000, "+99999999\r"},
      {1000, "-300\r"}, {1000, "-300\r"}, {1000, "+100.5\r"},  {2500, "+150\r"},     {250, "+160\r"},
  };
  for (const Step& s : steps) {
    time.Advance(s.afterMs);
    line.Arrive(s.record);
  }
  const std::vector<Drawn> drawn = Since(plot, frame);
  struct Segment {
    double x1, y1, x2, y2;
    int width;
  };
  // 10 s across 1000: 100 a second. 100.5 is 0.1 of a division, 1 unit, from the middle.
  const std::vector<Segment> expected = {
      {0, 0, 0, 0, 2},          {0, 0, 250, 200, 2},       {250, 200, 500, 210, 2}, {500, 210, 600, 210, 1},
      {600, 210, 700, -205, 2}, {700, -205, 800, -205, 1}, {800, -205, 900, 1, 2},  {900, 1, 1150, 100, 2},
  };
  ASSERT_EQ(drawn.size(), expected.size());
  for (std::size_t i = 0; i < drawn.size(); ++i) {
    const Segment& e = expected[i];
    EXPECT_TRUE(Near(drawn[i].x1, e.x1) && Near(drawn[i].y1, e.y1) && Near(drawn[i].x2, e.x2) &&
                Near(drawn[i].y2, e.y2) && drawn[i].width == e.width)
        << i << ": " << drawn[i].x1 << "," << drawn[i].y1 << " " << drawn[i].x2 << "," << drawn[i].y2 << " w"
        << drawn[i].width;
  }
  // Past the end of the sweep the point is still drawn, then everything is dropped.
  EXPECT_EQ(plot.TimeExpired, 1);
  EXPECT_TRUE(plot.cmdContinue.HasFocus());
  EXPECT_EQ(plot.SavedReadings().size(), 8u);

  // Continue after the sweep starts a new one from the left with the same scale.
  plot.cmdContinue.UserClick();
  EXPECT_EQ(Commands().back(), "*1A0");
  EXPECT_EQ(plot.TimeExpired, 0);
  const std::size_t again = plot.Picture1.Ops().size();
  EXPECT_EQ(again, frame);
  line.Arrive("cut\r");
  line.Arrive("+150\r");
  EXPECT_TRUE(HasLine(Since(plot, again), 0, 100, 0, 100, 2, 0));
}

TEST_F(PlotTest, PausedTimeDoesNotCountAndASecondPauseCountsTheRunAgain) {
  Plot& plot = Open();
  GiveScale(plot, "0", "1", "100");
  line.Arrive("cut\r");
  line.Arrive("0\r");
  time.Advance(10'000);
  plot.cmdPause.UserClick();
  EXPECT_FLOAT_EQ(plot.ElapsedTime, 10);
  line.Arrive("5\r");  // dropped
  time.Advance(20'000);
  plot.cmdContinue.UserClick();
  time.Advance(5'000);
  line.Arrive("5\r");
  const std::size_t afterFirst = plot.Picture1.Ops().size();
  EXPECT_TRUE(HasLine(Since(plot, afterFirst - 1), 0, 0, 150, 50, 2, 0));

  time.Advance(5'000);
  plot.cmdPause.UserClick();  // 10 s since Continue: 20
  time.Advance(5'000);
  plot.cmdPause.UserClick();  // 15 s since that same Continue: 35
  EXPECT_FLOAT_EQ(plot.ElapsedTime, 35);
  EXPECT_EQ(plot.SavedReadings().size(), 2u);
}

TEST_F(PlotTest, SavesThePictureUnderTheChosenNameAndEndsAsAsked) {
  Plot& plot = Open();
  GiveScale(plot, "", "", "");
  std::vector<std::string> saved;
  plot.Picture1.SetImageSaver([&](const PictureBox&, const std::string& path) { saved.push_back(path); });
  dialogs.ChooseFile(std::nullopt);
  plot.cmdSave.UserClick();
  dialogs.ChooseFile("trace.png");
  plot.cmdSave.UserClick();
  EXPECT_EQ(saved, std::vector<std::string>{"trace.png"});
  ASSERT_EQ(dialogs.fileQuestions.size(), 2u);
  EXPECT_EQ(dialogs.fileQuestions[1].title, "Save Graph As");
  EXPECT_EQ(dialogs.fileQuestions[1].filter, ".BMP files (*.BMP)|*.BMP");

  // The readings go to CSV as the list writes them.
  line.Arrive("cut\r");
  line.Arrive("V-1.5\r");
  TempFolder folder;
  dialogs.ChooseFile((folder / "trace.csv").string());
  plot.cmdSaveReadings.UserClick();
  std::ifstream file(folder / "trace.csv");
  std::string heading, row;
  std::getline(file, heading);
  std::getline(file, row);
  EXPECT_EQ(heading, "time,record,number\r");
  EXPECT_TRUE(row.ends_with(",\"-1.5\",-1.5\r")) << row;

  plot.cmdEnd.UserClick();
  EXPECT_EQ(Commands(), (std::vector<std::string>{"*1A0", "*1A1"}));
  EXPECT_TRUE(line.RTSEnable());  // the plot leaves the request line raised
  EXPECT_FALSE(Forms().IsLoaded(Plot::kName));
  EXPECT_TRUE(frmMMenu().Visible());
}

}  // namespace
}  // namespace dpm::testing
