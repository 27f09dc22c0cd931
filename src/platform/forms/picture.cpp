#include "platform/forms/picture.h"

#include <cmath>

#include "platform/faults.h"
#include "platform/services.h"

namespace dpm {
namespace {

// Without a view: a fixed character cell, about that of a small system font.
constexpr double kCellWidthTwips = 120.0;
constexpr double kCellHeightTwips = 240.0;

}  // namespace

PictureBox::PictureBox(Form& owner, std::string name, Control* container, int index)
    : Control(owner, ControlKind::PictureBox, std::move(name), container, index) {}

void PictureBox::Scale(double left, double top, double right, double bottom) {
  userScale_ = true;
  scaleLeft_ = left;
  scaleTop_ = top;
  scaleRight_ = right;
  scaleBottom_ = bottom;
}

void PictureBox::ScaleReset() { userScale_ = false; }

double PictureBox::ToTwipsX(double x) const {
  if (!userScale_) return x;
  if (Width() <= 0 || scaleRight_ == scaleLeft_) return x - scaleLeft_;
  return (x - scaleLeft_) * Width() / (scaleRight_ - scaleLeft_);
}

double PictureBox::ToTwipsY(double y) const {
  if (!userScale_) return y;
  if (Height() <= 0 || scaleBottom_ == scaleTop_) return y - scaleTop_;
  return (y - scaleTop_) * Height() / (scaleBottom_ - scaleTop_);
}

double PictureBox::UnitsPerTwipX() const {
  if (!userScale_ || Width() <= 0) return 1.0;
  return std::fabs(scaleRight_ - scaleLeft_) / Width();
}

double PictureBox::UnitsPerTwipY() const {
  if (!userScale_ || Height() <= 0) return 1.0;
  return std::fabs(scaleBottom_ - scaleTop_) / Height();
}

std::pair<double, double> PictureBox::MeasureTwips(const std::string& text) const {
  if (measure_) return measure_(text, font_);
  return {kCellWidthTwips * static_cast<double>(text.size()), kCellHeightTwips};
}

int32_t PictureBox::ColorOr(int32_t color) const {
  if (color != kDesignColor) return color;
  return ForeColor() == kDesignColor ? 0 : ForeColor();
}

void PictureBox::Add(DrawOp op) {
  op.width = drawWidth_;
  op.style = drawStyle_;
  ops_.push_back(std::move(op));
  if (observer_) observer_(&ops_.back());
  Notify(Property::Drawing);
}

void PictureBox::TakenIntoImage() {
  if (!autoRedraw_) return;
  taken_ += ops_.size();
  ops_.clear();
}

void PictureBox::Cls() {
  ops_.clear();
  taken_ = 0;
  ++clears_;
  if (observer_) observer_(nullptr);
  currentX_ = userScale_ ? scaleLeft_ : 0.0;
  currentY_ = userScale_ ? scaleTop_ : 0.0;
  Notify(Property::Drawing);
}

void PictureBox::Line(double x1, double y1, double x2, double y2, int32_t color) {
  AddShape(DrawOp::Kind::Line, x1, y1, x2, y2, color);
}

void PictureBox::LineTo(double x2, double y2, int32_t color) { Line(currentX_, currentY_, x2, y2, color); }

void PictureBox::Box(double x1, double y1, double x2, double y2, int32_t color, bool filled) {
  AddShape(filled ? DrawOp::Kind::FilledBox : DrawOp::Kind::Box, x1, y1, x2, y2, color);
}

// A line or a box from one corner to the other, in user units; the pen stays at the second.
void PictureBox::AddShape(DrawOp::Kind kind, double x1, double y1, double x2, double y2, int32_t color) {
  DrawOp op;
  op.kind = kind;
  op.x1 = ToTwipsX(x1);
  op.y1 = ToTwipsY(y1);
  op.x2 = ToTwipsX(x2);
  op.y2 = ToTwipsY(y2);
  op.color = ColorOr(color);
  currentX_ = x2;
  currentY_ = y2;
  Add(std::move(op));
}

void PictureBox::Print(const std::string& text) {
  const auto [width, height] = MeasureTwips(text);
  (void)width;
  {
    DrawOp op;
    op.kind = DrawOp::Kind::Text;
    op.x1 = ToTwipsX(currentX_);
    op.y1 = ToTwipsY(currentY_);
    op.color = ColorOr(kDesignColor);
    op.text = text;
    op.font = font_;
    Add(std::move(op));
  }
  // The next line starts at the left edge, one text height further down the picture.
  const double down = (userScale_ && scaleBottom_ < scaleTop_) ? -1.0 : 1.0;
  currentX_ = userScale_ ? scaleLeft_ : 0.0;
  currentY_ += down * height * UnitsPerTwipY();
}

double PictureBox::TextWidth(const std::string& text) const { return MeasureTwips(text).first * UnitsPerTwipX(); }

double PictureBox::TextHeight(const std::string& text) const { return MeasureTwips(text).second * UnitsPerTwipY(); }

void PictureBox::SetPicture(const PictureRef& picture) {
  picture_ = picture;
  Notify(Property::Drawing);
}

void PictureBox::SaveImage(const std::string& path) const {
  if (!saver_) throw FileFault("No view to render \"" + path + "\"");
  saver_(*this, path);
}

std::vector<std::string> PictureBox::PrintedLines() const {
  std::vector<std::string> lines;
  for (const DrawOp& op : ops_) {
    if (op.kind == DrawOp::Kind::Text) lines.push_back(op.text);
  }
  return lines;
}

namespace {

Dialogs& PictureService() {
  Dialogs* dialogs = Platform().dialogs;
  if (dialogs == nullptr) throw RuntimeFault("No picture service");
  return *dialogs;
}

}  // namespace

PictureRef LoadPicture(const std::string& fileName) {
  std::optional<PictureRef> picture = PictureService().FindPicture(fileName);
  if (!picture) throw FileFault("File not found: \"" + fileName + "\"");
  return *picture;
}

PictureRef LoadPicture(int number) {
  std::optional<PictureRef> picture = PictureService().FindPicture(number);
  if (!picture) throw FileFault("Resource not found: picture " + std::to_string(number));
  return *picture;
}

}  // namespace dpm
