#include <QImage>
#include <QLineEdit>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <set>
#include <string>
#include <vector>

#include "platform/fake/drawing_recorder.h"
#include "program_fixture.h"
#include "readings/graph.h"

namespace dpm::testing {
namespace {

// A DC meter at exactly 0.05 V, fifty records a second, each record it sends in its log. It
// shows 0.05 V as "+05000.": the graph is given mid-scale 5000 and a division of 100, so
// that 0.05 V belongs in the middle bar, bar 15 of 0 to 30, and 0.053 V three to its right.
class GraphAgainstEmulator : public ProgramAgainstEmulatorTest {
 protected:
  GraphAgainstEmulator() : ProgramAgainstEmulatorTest({"--input", "0.05", "--rate", "50", "--log-records"}) {}

  // The records the emulator has sent, once it has stopped sending them.
  std::vector<std::string> SentRecords() {
    std::vector<std::string> sent;
    for (std::string line; !(line = emulator.WaitForLine("", 1000)).empty();) {
      if (line == "continuous output off") return sent;
      const std::size_t end = line.find("<CR>   (record)");
      if (line.starts_with("-> ") && end != std::string::npos) sent.push_back(line.substr(3, end - 3));
    }
    return {};
  }

  // Where a reading belongs: bars one division wide, mid-scale in the middle of bar 15.
  static int BarOf(const std::string& record) {
    return static_cast<int>(std::nearbyint((std::stod(record) - 5000) / 100 + 15));
  }

  static float Total(const Graph& graph) { return std::accumulate(graph.Counts.begin(), graph.Counts.end(), 0.0f); }

  // The drawing in the graph's own units: 1150 across from -150, 1110 down from 1030.
  struct Shape {
    DrawOp::Kind kind;
    double left, bottom, right, top;
    int32_t color;
    std::string text;
  };
  static Shape InUnits(const PictureBox& picture, const DrawOp& op) {
    const double perX = 1150.0 / picture.Width();
    const double perY = 1110.0 / picture.Height();
    const double x1 = op.x1 * perX - 150, y1 = 1030 - op.y1 * perY;
    if (op.kind == DrawOp::Kind::Text) return {op.kind, x1, y1, x1, y1, op.color, op.text};
    const double x2 = op.x2 * perX - 150, y2 = 1030 - op.y2 * perY;
    return {op.kind, std::min(x1, x2), std::min(y1, y2), std::max(x1, x2), std::max(y1, y2), op.color, op.text};
  }
};

TEST_F(GraphAgainstEmulator, ReadingsFillTheirBarsAndTheCountAxisFollows) {
  ASSERT_NE(window, nullptr);
  Pick("mnuGraph");
  QWidget* form = qt::WindowOf(frmGRAPH());
  ASSERT_NE(form, nullptr);
  EXPECT_EQ(form->windowTitle().toStdString(), "GRAPH");
  EXPECT_FALSE(window->isVisible());
  form->activateWindow();
  ASSERT_TRUE(QTest::qWaitFor([&] { return Find<QLineEdit>(form, "txtMidVal")->hasFocus(); }, 5000));

  Graph& graph = frmGRAPH();
  const PictureBox& picture = graph.Picture1;
  const auto drawn = fake::RecordDrawing(graph.Picture1);
  TypeInto(form, "txtMidVal", "5000");
  TypeInto(form, "txtSmallVal", "100");
  TypeInto(form, "txtVertScale", "4");
  Press(form, "cmdOK");
  EXPECT_FALSE(Find<QLineEdit>(form, "txtVertScale")->isVisible());

  // A steady input: every reading in the middle bar, the scale doubled from 4 until the bar
  // fits, the count labels a fifth of the scale apart.
  ASSERT_TRUE(QTest::qWaitFor([&] { return Total(graph) >= 10; }, 10000));
  const float middle = graph.Counts[15];
  EXPECT_EQ(middle, Total(graph));
  float scale = 4;
  while (scale < middle) scale *= 2;
  EXPECT_EQ(graph.GraphScale, scale);
  std::vector<std::string> countLabels;
  for (const DrawOp& op : *drawn) {
    const Shape s = InUnits(picture, op);
    if (s.kind == DrawOp::Kind::Text && s.left < 0 && s.bottom > -30) countLabels.push_back(s.text);
    if (s.kind == DrawOp::Kind::FilledBox && s.color == kBlack && s.top > s.bottom) {
      EXPECT_TRUE(std::abs(s.left - 470) < 0.5 && std::abs(s.right - 490) < 0.5) << "a bar at " << s.left;
    }
  }
  ASSERT_GE(countLabels.size(), 6u);
  const int step = static_cast<int>(std::nearbyint(scale / 5));
  for (int i = 0; i <= 5; ++i) EXPECT_EQ(countLabels[countLabels.size() - 6 + i], std::to_string(step * i));
  // The window's image holds the bars; the picture lets go of what it has drawn.
  EXPECT_TRUE(picture.Ops().empty());
  EXPECT_EQ(picture.DrawnCount(), drawn->size());

  // The saved picture shows the middle bar up from the axis and nothing in the others.
  const std::string saved = (folder / "graph.bmp").string();
  dialogs.ChooseFile(saved);
  Press(form, "cmdSave");
  const QImage image(QString::fromStdString(saved));
  ASSERT_FALSE(image.isNull());
  const auto pixel = [&](double x, double y) {
    return image
        .pixelColor(static_cast<int>((x + 150) / 1150 * image.width()),
                    static_cast<int>((1030 - y) / 1110 * image.height()))
        .name()
        .toStdString();
  };
  EXPECT_EQ(pixel(480, 100), "#000000");
  EXPECT_EQ(pixel(420, 100), "#ffffff");
  EXPECT_EQ(pixel(540, 100), "#ffffff");

  // The input moves three divisions up: its readings go to bar 18.
  emulator.Say("input 0.053");
  ASSERT_TRUE(QTest::qWaitFor([&] { return graph.Counts[18] >= 3; }, 10000));
  EXPECT_EQ(graph.Counts[15] + graph.Counts[18], Total(graph));

  // Paused, the readings are let go without drawing; Continue takes them up again.
  Press(form, "cmdPause");
  EXPECT_EQ(Readings().ReadingPaused, 1);
  const std::size_t beforePause = drawn->size();
  const float countedBeforePause = Total(graph);
  QTest::qWait(500);
  EXPECT_EQ(drawn->size(), beforePause);
  EXPECT_EQ(Total(graph), countedBeforePause);
  Press(form, "cmdContinue");
  EXPECT_EQ(Readings().ReadingPaused, 0);
  ASSERT_TRUE(QTest::qWaitFor([&] { return Total(graph) > countedBeforePause; }, 10000));

  // Beyond the last bar the readings blink an arrow at the right and count nowhere.
  emulator.Say("input 0.1");
  ASSERT_TRUE(QTest::qWaitFor(
      [&] { return std::any_of(drawn->begin(), drawn->end(), [](const DrawOp& op) { return op.text == "->"; }); },
      10000));
  const float counted = Total(graph);
  QTest::qWait(200);
  EXPECT_EQ(Total(graph), counted);
  std::set<int> countedBars;
  for (int bar = 0; bar < kGraphBins; ++bar)
    if (graph.Counts[static_cast<std::size_t>(bar)] > 0) countedBars.insert(bar);
  EXPECT_EQ(countedBars, (std::set<int>{15, 18}));

  Press(form, "cmdEnd");
  EXPECT_FALSE(Forms().IsLoaded(Graph::kName));
  EXPECT_TRUE(window->isVisible());

  // Each bar that counted readings is the bar of readings the meter sent, and no more were
  // counted than were sent.
  const std::vector<std::string> sent = SentRecords();
  ASSERT_FALSE(sent.empty()) << "End stops the meter's output";
  std::set<int> bars;
  for (const std::string& record : sent) bars.insert(BarOf(record));
  for (int bar : countedBars) EXPECT_TRUE(bars.contains(bar)) << bar << ": " << sent.front() << " ... " << sent.back();
  EXPECT_LE(counted, static_cast<float>(sent.size()));
}

}  // namespace
}  // namespace dpm::testing
