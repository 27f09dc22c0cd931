#include "forms_fixture.h"
#include "platform/fake/drawing_recorder.h"
#include "platform/faults.h"

namespace dpm::testing {
namespace {

class Drawing : public Form {
 public:
  static constexpr const char* kName = "frmDrawing";
  Drawing() : Form(kName, "DRAWING") { Picture1.SetDesignGeometry(0, 0, 11700, 4650); }
  PictureBox Picture1{*this, "Picture1"};
};

TEST_F(FormsTest, UserScaleMapsOntoThePictureWithTheYAxisUp) {
  PictureBox& pic = Forms().Use<Drawing>().Picture1;
  pic.Scale(-150, 215, 1020, -250);
  pic.Line(-150, 215, 1020, -250, ColRed);
  pic.SetDrawWidth(2);
  pic.LineTo(-150, -250);
  ASSERT_EQ(pic.Ops().size(), 2u);
  const DrawOp& first = pic.Ops()[0];
  EXPECT_DOUBLE_EQ(first.x1, 0);
  EXPECT_DOUBLE_EQ(first.y1, 0);
  EXPECT_DOUBLE_EQ(first.x2, 11700);
  EXPECT_DOUBLE_EQ(first.y2, 4650);
  EXPECT_EQ(first.color, ColRed);
  const DrawOp& second = pic.Ops()[1];
  EXPECT_DOUBLE_EQ(second.x1, 11700);  // from the end of the last line
  EXPECT_DOUBLE_EQ(second.x2, 0);
  EXPECT_EQ(second.width, 2);
  EXPECT_EQ(second.color, 0);  // the fore colour, black by design

  // Text sizes come in user units and are never negative: 120 x 240 twips a character.
  EXPECT_DOUBLE_EQ(pic.TextWidth("ab"), 240 * 1170.0 / 11700);
  EXPECT_DOUBLE_EQ(pic.TextHeight("ab"), 240 * 465.0 / 4650);
}

TEST_F(FormsTest, PrintWritesLineUnderLineAndClsStartsAtTheTop) {
  PictureBox& pic = Forms().Use<Drawing>().Picture1;
  pic.SetCurrentX(300);
  pic.Print("one");
  pic.Print("");
  pic.Print("three");
  EXPECT_EQ(pic.PrintedLines(), (std::vector<std::string>{"one", "", "three"}));
  EXPECT_DOUBLE_EQ(pic.Ops()[0].x1, 300);
  EXPECT_DOUBLE_EQ(pic.Ops()[2].x1, 0);
  EXPECT_DOUBLE_EQ(pic.Ops()[2].y1, 480);
  EXPECT_DOUBLE_EQ(pic.CurrentY(), 720);

  pic.Cls();
  EXPECT_TRUE(pic.Ops().empty());
  EXPECT_DOUBLE_EQ(pic.CurrentY(), 0);
}

// A view with an image of its own takes a kept drawing off the picture; the picture still
// counts it, a recorder still sees it, and Cls starts the count again.
TEST_F(FormsTest, AKeptDrawingIsLetGoOnceTheViewHasItInItsImage) {
  PictureBox& pic = Forms().Use<Drawing>().Picture1;
  const auto seen = fake::RecordDrawing(pic);
  pic.Line(0, 0, 10, 10);
  pic.TakenIntoImage();
  EXPECT_EQ(pic.Ops().size(), 1u) << "not kept: the view may have to paint it again";

  pic.SetAutoRedraw(true);
  pic.Line(10, 10, 20, 20);
  pic.TakenIntoImage();
  EXPECT_TRUE(pic.Ops().empty());
  pic.Print("x");
  EXPECT_EQ(pic.PrintedLines(), std::vector<std::string>{"x"});
  EXPECT_EQ(pic.DrawnCount(), 3u);
  ASSERT_EQ(seen->size(), 3u);
  EXPECT_EQ(seen->at(1).x2, 20);

  const std::uint64_t clears = pic.Clears();
  pic.Cls();
  EXPECT_EQ(pic.DrawnCount(), 0u);
  EXPECT_EQ(pic.Clears(), clears + 1);
  EXPECT_TRUE(seen->empty());
}

TEST_F(FormsTest, PicturesAreFoundThroughTheServiceOrAreFaults) {
  dialogs.AddPicture("LRCurr.BMP");
  dialogs.AddPicture(7);
  PictureBox& pic = Forms().Use<Drawing>().Picture1;
  pic.SetPicture(LoadPicture("LRCurr.BMP"));
  EXPECT_EQ(pic.Picture().fileName, "LRCurr.BMP");
  EXPECT_EQ(LoadPicture(7).number, 7);
  EXPECT_THROW(LoadPicture("Blank.BMP"), FileFault);
  EXPECT_THROW(LoadPicture(8), FileFault);
}

}  // namespace
}  // namespace dpm::testing
