#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/dialogs.h"
#include "platform/forms/control.h"

namespace dpm {

struct FontSpec {
  std::string name = "Arial";
  double size = 9.0;  // points
  bool bold = false;

  bool operator==(const FontSpec&) const = default;
};

// One thing drawn on a picture, in twips from the picture's top left corner, so that a
// later change of scale does not move what is already drawn.
struct DrawOp {
  enum class Kind { Line, Box, FilledBox, Text };
  Kind kind = Kind::Line;
  double x1 = 0, y1 = 0, x2 = 0, y2 = 0;  // a text stands with its top left at x1, y1
  int32_t color = 0;
  int width = 1;  // pen width in pixels
  int style = 0;  // 0 solid, 1 dash, 2 dot, 3 dash-dot, 4 dash-dot-dot
  std::string text;
  FontSpec font;

  bool operator==(const DrawOp&) const = default;
};

// A picture: a drawing surface with its own coordinates, and optionally a loaded picture
// beneath the drawing. The drawing is kept as a list of operations that the view paints.
// A picture that keeps what was drawn (AutoRedraw) lets go of the operations once its view
// has taken them into an image of its own, so that a drawing that grows by a segment a
// reading for hours costs no more memory than the image.
class PictureBox : public Control {
 public:
  // Width and height of a text in twips, in a font.
  using TextMeasure = std::function<std::pair<double, double>(const std::string& text, const FontSpec& font)>;
  // Writes the picture as an image file; the name's ending chooses the format.
  using ImageSaver = std::function<void(const PictureBox& picture, const std::string& path)>;
  // Told of each operation as it is drawn, and with nullptr of each Cls.
  using DrawObserver = std::function<void(const DrawOp* drawn)>;

  PictureBox(Form& owner, std::string name, Control* container = nullptr, int index = -1);

  // User coordinates: the left, top, right and bottom edges. With bottom below top the y
  // axis points up. Without Scale the coordinates are twips from the top left corner.
  void Scale(double left, double top, double right, double bottom);
  void ScaleReset();

  // Clears the drawing and puts the current point at the top left corner.
  void Cls();
  // A line; the current point moves to its end. `color` kDesignColor draws in ForeColor.
  void Line(double x1, double y1, double x2, double y2, int32_t color = kDesignColor);
  // A line from the current point.
  void LineTo(double x2, double y2, int32_t color = kDesignColor);
  void Box(double x1, double y1, double x2, double y2, int32_t color = kDesignColor, bool filled = false);
  // The text at the current point; then the current point goes to the start of the next line.
  void Print(const std::string& text);

  double CurrentX() const { return currentX_; }
  double CurrentY() const { return currentY_; }
  void SetCurrentX(double x) { currentX_ = x; }
  void SetCurrentY(double y) { currentY_ = y; }

  // Sizes of a text in the current font, in user units (never negative).
  double TextWidth(const std::string& text) const;
  double TextHeight(const std::string& text) const;

  int DrawWidth() const { return drawWidth_; }
  void SetDrawWidth(int pixels) { drawWidth_ = pixels; }
  int DrawStyle() const { return drawStyle_; }
  void SetDrawStyle(int style) { drawStyle_ = style; }
  bool AutoRedraw() const { return autoRedraw_; }
  void SetAutoRedraw(bool on) { autoRedraw_ = on; }
  const FontSpec& Font() const { return font_; }
  void SetFont(const FontSpec& font) { font_ = font; }
  void SetFontName(const std::string& name) { font_.name = name; }
  void SetFontBold(bool bold) { font_.bold = bold; }

  // The loaded picture shown beneath the drawing; an empty reference shows none.
  const PictureRef& Picture() const { return picture_; }
  void SetPicture(const PictureRef& picture);

  // The operations drawn since the last Cls that the picture still holds: all of them
  // unless a view has taken them into its image (see TakenIntoImage).
  const std::vector<DrawOp>& Ops() const { return ops_; }
  // How many operations were drawn since the last Cls, held or taken.
  std::size_t DrawnCount() const { return taken_ + ops_.size(); }
  // How many times the picture was cleared: a view that holds taken operations in its image
  // sees by this that the image must start afresh.
  std::uint64_t Clears() const { return clears_; }
  // The lines of text printed since the last Cls that the picture still holds, in order.
  std::vector<std::string> PrintedLines() const;

  // A view that keeps the drawing in an image calls this once every operation the picture
  // holds is painted into it. While the picture keeps what was drawn, it lets go of them
  // then; otherwise it holds them on, since the view may have to paint them anew.
  void TakenIntoImage();
  // Sees the whole drawing, also what a view has taken: for tests and recorders.
  void SetDrawObserver(DrawObserver observer) { observer_ = std::move(observer); }

  // The view measures texts in its real font; without a view a fixed cell of 120 x 240
  // twips a character is used.
  void SetTextMeasure(TextMeasure measure) { measure_ = std::move(measure); }

  // Saves what the picture shows: a name ending in ".png" (any case) as PNG, any other as a
  // 24-bit BMP. Only a view can render the picture; without one, or when the file cannot be
  // written, a FileFault.
  void SaveImage(const std::string& path) const;
  void SetImageSaver(ImageSaver saver) { saver_ = std::move(saver); }

 private:
  double ToTwipsX(double x) const;
  double ToTwipsY(double y) const;
  double UnitsPerTwipX() const;
  double UnitsPerTwipY() const;
  std::pair<double, double> MeasureTwips(const std::string& text) const;
  int32_t ColorOr(int32_t color) const;
  void Add(DrawOp op);
  void AddShape(DrawOp::Kind kind, double x1, double y1, double x2, double y2, int32_t color);

  bool userScale_ = false;
  double scaleLeft_ = 0, scaleTop_ = 0, scaleRight_ = 0, scaleBottom_ = 0;
  double currentX_ = 0, currentY_ = 0;
  int drawWidth_ = 1;
  int drawStyle_ = 0;
  bool autoRedraw_ = false;
  FontSpec font_;
  PictureRef picture_;
  std::vector<DrawOp> ops_;
  std::size_t taken_ = 0;
  std::uint64_t clears_ = 0;
  DrawObserver observer_;
  TextMeasure measure_;
  ImageSaver saver_;
};

// The file of the program's picture number N: "Jumper<N>.BMP" in the program's folder, the
// jumper setting of a calibration range.
inline std::string PictureFileOfNumber(int number) { return "Jumper" + std::to_string(number) + ".BMP"; }

// Loads a picture file from the program's folder, or a picture of the program's own by
// number. A missing picture is a FileFault.
PictureRef LoadPicture(const std::string& fileName);
PictureRef LoadPicture(int number);

}  // namespace dpm
