#include <algorithm>
#include <cmath>

#include "readings/graph.h"
#include "readings/plot_fixture.h"

namespace dpm::testing {
namespace {

class GraphTest : public ChartTest {
 protected:
  // The graph open with its scale group, the picture 11500 x 11100 twips for 1150 x 1110 units.
  Graph& Open() {
    frmMMenu().mnuGraph_Click();
    Graph& graph = frmGRAPH();
    graph.Picture1.Move(0, 0, 11500, 11100);
    return graph;
  }
  std::vector<Drawn> Since(const Graph& graph, std::size_t from) const {
    return DrawnSince(graph.Picture1, from, kGraphLeft, kGraphTop);
  }
  // Readings in pieces of their own, after the cut first record.
  void Send(std::initializer_list<const char*> records) {
    for (const char* record : records) line.Arrive(std::string(record) + "\r");
  }
};

bool Near(double a, double b) { return std::fabs(a - b) < 1e-6; }

bool Has(const std::vector<Drawn>& drawn, DrawOp::Kind kind, double x1, double y1, double x2, double y2,
         int32_t color = 0) {
  return std::any_of(drawn.begin(), drawn.end(), [&](const Drawn& d) {
    return d.kind == kind && Near(d.x1, x1) && Near(d.y1, y1) && Near(d.x2, x2) && Near(d.y2, y2) && d.color == color;
  });
}

TEST(GraphBins, MidScaleFallsInBinFifteenAndHalvesRoundToEven) {
  struct Case {
    float value, mid, div;
    int bin;
  } cases[] = {
      {0, 0, 1, 15},     {-15, 0, 1, 0},       {-15.5f, 0, 1, 0},   {-16, 0, 1, -1},       {15.5f, 0, 1, 30},
      {16.5f, 0, 1, 32}, {101, 100, 0.5f, 17}, {1e9f, 0, 1, 32767}, {-1e9f, 0, 1, -32768},
  };
  for (const Case& c : cases)
    EXPECT_EQ(GraphBin(c.value, c.mid, c.div), c.bin) << c.value << " " << c.mid << " " << c.div;
}

TEST_F(GraphTest, AxesTicksAndLabelsStandWhereTheyAreWorkedOut) {
  Graph& graph = Open();
  EXPECT_EQ(graph.Caption(), "GRAPH");
  EXPECT_EQ(graph.lblVertScale.Caption(), "Initial Vertical Scale");
  GiveScale(graph, "0", "1", "10");
  const std::vector<Drawn> drawn = Since(graph, 0);
  using K = DrawOp::Kind;
  EXPECT_TRUE(Has(drawn, K::Line, 0, 1030, 0, 0));
  EXPECT_TRUE(Has(drawn, K::Line, 0, 0, 1000, 0));
  EXPECT_TRUE(Has(drawn, K::Line, 60, 0, 60, -15));
  EXPECT_TRUE(Has(drawn, K::Line, 180, -15, 180, -30));  // i = 5
  EXPECT_FALSE(Has(drawn, K::Line, 210, -15, 210, -30));
  EXPECT_TRUE(Has(drawn, K::Line, 930, -15, 930, -30));
  EXPECT_TRUE(Has(drawn, K::Line, -15, 600, 0, 600));
  EXPECT_TRUE(Has(drawn, K::Line, 0, 800, 1000, 800));
  // The wipe of a count label reaches from 10 below its tick up to the label's top, 49 above
  // the tick less half the label's height.
  EXPECT_TRUE(Has(drawn, K::FilledBox, -135, 390, -35, 437, kWhite));

  // Heights count along the y axis, which points up: -24. Counts: step 10 / 5 = 2, x -35
  // less the width, y 200i - 12 + 49. Values: centred under every fifth tick, y -60 + 12.
  std::vector<Drawn> labels;
  std::copy_if(drawn.begin(), drawn.end(), std::back_inserter(labels),
               [](const Drawn& d) { return d.kind == K::Text; });
  const std::vector<Drawn> expected = {
      {K::Text, -47, 37, 0, 0, 0, 0, 0, "0"},    {K::Text, -47, 237, 0, 0, 0, 0, 0, "2"},
      {K::Text, -47, 437, 0, 0, 0, 0, 0, "4"},   {K::Text, -47, 637, 0, 0, 0, 0, 0, "6"},
      {K::Text, -47, 837, 0, 0, 0, 0, 0, "8"},   {K::Text, -59, 1037, 0, 0, 0, 0, 0, "10"},
      {K::Text, 6, -48, 0, 0, 0, 0, 0, "-15."},  {K::Text, 156, -48, 0, 0, 0, 0, 0, "-10."},
      {K::Text, 312, -48, 0, 0, 0, 0, 0, "-5."}, {K::Text, 468, -48, 0, 0, 0, 0, 0, "0."},
      {K::Text, 618, -48, 0, 0, 0, 0, 0, "5."},  {K::Text, 762, -48, 0, 0, 0, 0, 0, "10."},
      {K::Text, 912, -48, 0, 0, 0, 0, 0, "15."},
  };
  ASSERT_EQ(labels.size(), expected.size());
  for (std::size_t i = 0; i < labels.size(); ++i)
    EXPECT_TRUE(labels[i].text == expected[i].text && Near(labels[i].x1, expected[i].x1) &&
                Near(labels[i].y1, expected[i].y1))
        << labels[i].text << " at " << labels[i].x1 << "," << labels[i].y1;
}

TEST_F(GraphTest, ABarThatPassesTheTopDoublesTheScaleOnceAReading) {
  Graph& graph = Open();
  GiveScale(graph, "0", "1", "1");
  Send({"cut", "0"});
  EXPECT_FLOAT_EQ(graph.GraphScale, 1);
  std::size_t from = graph.Picture1.Ops().size() - 1;
  EXPECT_TRUE(Has(Since(graph, from), DrawOp::Kind::FilledBox, 470, 0, 490, 1000));

  from = graph.Picture1.Ops().size();
  Send({"+0.2"});  // 2 in a scale of 1: doubled to 2, the bar redrawn full
  EXPECT_FLOAT_EQ(graph.GraphScale, 2);
  std::vector<Drawn> drawn = Since(graph, from);
  EXPECT_TRUE(Has(drawn, DrawOp::Kind::FilledBox, 470, 5, 490, 1000, kWhite));
  EXPECT_TRUE(Has(drawn, DrawOp::Kind::FilledBox, 470, 0, 490, 1000));
  EXPECT_TRUE(Has(drawn, DrawOp::Kind::FilledBox, 20, 0, 40, 0));

  Send({"-3", "0"});  // 1 in bin 12 fits; 3 in 2 doubles once, to 4
  EXPECT_FLOAT_EQ(graph.GraphScale, 4);
  EXPECT_FLOAT_EQ(graph.Counts[15], 3);
  EXPECT_FLOAT_EQ(graph.Counts[12], 1);
  drawn = Since(graph, from);
  EXPECT_TRUE(Has(drawn, DrawOp::Kind::FilledBox, 380, 0, 400, 500));  // -3 in a scale of 2
  EXPECT_TRUE(Has(drawn, DrawOp::Kind::FilledBox, 470, 0, 490, 750));
  EXPECT_TRUE(Has(drawn, DrawOp::Kind::FilledBox, 380, 0, 400, 250));

  Send({"+1"});  // bin 16, one slice of a scale of 4
  EXPECT_TRUE(Has(Since(graph, graph.Picture1.Ops().size() - 1), DrawOp::Kind::FilledBox, 500, 0, 520, 250));
}

TEST_F(GraphTest, ReadingsBeyondTheBinsBlinkAnArrowUntilOneFallsWithin) {
  Graph& graph = Open();
  GiveScale(graph, "0", "1", "5");
  const std::size_t from = graph.Picture1.Ops().size();
  Send({"cut", "-20", "-20", "+20", "-16"});
  std::vector<Drawn> drawn = Since(graph, from);
  ASSERT_EQ(drawn.size(), 4u);
  EXPECT_TRUE(drawn[0].kind == DrawOp::Kind::Text && drawn[0].text == "<-" && Near(drawn[0].x1, -10) &&
              Near(drawn[0].y1, -5));
  EXPECT_TRUE(Has({drawn[1]}, DrawOp::Kind::FilledBox, -10, -12, 20, -40, kWhite));
  EXPECT_TRUE(drawn[2].kind == DrawOp::Kind::Text && drawn[2].text == "->" && Near(drawn[2].x1, 950));
  EXPECT_EQ(drawn[3].text, "<-");
  EXPECT_EQ(std::count(graph.Counts.begin(), graph.Counts.end(), 0.0f), kGraphBins);

  Send({"+15"});
  drawn = Since(graph, from + 4);
  ASSERT_EQ(drawn.size(), 3u);
  EXPECT_TRUE(Has({drawn[0]}, DrawOp::Kind::FilledBox, -10, -12, 20, -40, kWhite));
  EXPECT_TRUE(Has({drawn[1]}, DrawOp::Kind::FilledBox, 950, -12, 980, -40, kWhite));
  EXPECT_TRUE(Has({drawn[2]}, DrawOp::Kind::FilledBox, 920, 0, 940, 200));
}

TEST_F(GraphTest, AZeroScaleStaysUntilAReadingFallsInABinAndThenCountsAsOne) {
  Graph& graph = Open();
  GiveScale(graph, "0", "1", "0");
  Send({"cut", "+40"});
  EXPECT_FLOAT_EQ(graph.GraphScale, 0);
  const std::size_t from = graph.Picture1.Ops().size();
  Send({"0"});
  EXPECT_FLOAT_EQ(graph.GraphScale, 1);
  EXPECT_TRUE(Has(Since(graph, from), DrawOp::Kind::FilledBox, 470, 0, 490, 1000));

  // New Scale wipes the picture and starts counting afresh.
  graph.cmdNewScale.SetFocus();
  EXPECT_TRUE(graph.Picture1.Ops().empty());
  EXPECT_EQ(Readings().ReadingPaused, 1);
  GiveScale(graph, "0", "1", "4");
  Send({"cut", "0"});
  EXPECT_FLOAT_EQ(graph.Counts[15], 1);
  EXPECT_TRUE(Has(Since(graph, graph.Picture1.Ops().size() - 1), DrawOp::Kind::FilledBox, 470, 0, 490, 250));
}

}  // namespace
}  // namespace dpm::testing
