#pragma once

#include <string>
#include <vector>

#include "readings/plot_chart.h"
#include "readings/reading_screen_fixture.h"

namespace dpm::testing {

// A drawing call back in the picture's user coordinates.
struct Drawn {
  DrawOp::Kind kind;
  double x1, y1, x2, y2;
  int width = 0;
  int style = 0;
  int32_t color = 0;
  std::string text;
};

// Plot and graph opened from the main menu on an in-memory line, address "1", records ending
// in CR. The picture is sized to ten twips a user unit both ways and measures every
// character as 120 x 240 twips, so that a character is 12 units wide and 24 high.
class ChartTest : public ReadingScreenTest {
 protected:
  // Types the scale into the boxes as the user does, Enter after each, and presses OK.
  void GiveScale(ChartScreen& chart, const std::string& mid, const std::string& small, const std::string& count) {
    EXPECT_TRUE(chart.txtMidVal.HasFocus());
    chart.txtMidVal.UserSetText(mid);
    chart.txtMidVal.UserKeyPress(kKeyReturn);
    chart.txtSmallVal.UserSetText(small);
    chart.txtSmallVal.UserKeyPress(kKeyReturn);
    Control* countBox = chart.FocusedControl();
    static_cast<TextBox*>(countBox)->UserSetText(count);
    countBox->UserKeyPress(kKeyReturn);
    ASSERT_TRUE(chart.cmdOK.HasFocus());
    chart.cmdOK.UserClick();
  }

  // Everything drawn since the op numbered `from`, in user units for the picture's scale
  // with `left` and `top` at its top left corner.
  static std::vector<Drawn> DrawnSince(const PictureBox& picture, std::size_t from, double left, double top) {
    std::vector<Drawn> drawn;
    const auto& ops = picture.Ops();
    for (std::size_t i = from; i < ops.size(); ++i) {
      const DrawOp& op = ops[i];
      drawn.push_back({op.kind, op.x1 / 10 + left, top - op.y1 / 10, op.x2 / 10 + left, top - op.y2 / 10, op.width,
                       op.style, op.color, op.text});
    }
    return drawn;
  }
};

}  // namespace dpm::testing
