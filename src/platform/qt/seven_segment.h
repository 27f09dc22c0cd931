#pragma once

#include <cstdint>
#include <optional>

#include <QColor>
#include <QRectF>
#include <QStyledItemDelegate>

class QPainter;

// The face of a meter's seven-segment display, drawn segment by segment: for the grids
// that show the meter's own menu, so that the keys read as the meter spells them.
namespace dpm::qt {

// Segments of a glyph, one bit each: a (top) 1, b (top right) 2, c (bottom right) 4,
// d (bottom) 8, e (bottom left) 16, f (top left) 32, g (middle) 64.
using Segments = uint8_t;

// The segments that spell the character; 0 for a blank; nothing for a character that
// the display cannot form, which is then written as text.
std::optional<Segments> SegmentsOf(char c);

// Draws one glyph in `box`, its point to the right of the box's bottom corner; segments
// that are off are drawn in `off`, as an unlit display shows them faintly.
void PaintGlyph(QPainter& painter, const QRectF& box, Segments segments, bool point, const QColor& on,
                const QColor& off);

// Paints the cells of a grid in the display's face. Header rows keep the ordinary look;
// header columns (the key names) are spelled glyph by glyph; every other cell is one
// place of the display: one character and its point.
class SevenSegmentDelegate : public QStyledItemDelegate {
 public:
  explicit SevenSegmentDelegate(QObject* parent) : QStyledItemDelegate(parent) {}

  void SetFixed(int rows, int cols) {
    fixedRows_ = rows;
    fixedCols_ = cols;
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
  void PaintText(QPainter& painter, const QRectF& rect, const QString& text) const;
  void PaintPlace(QPainter& painter, const QRectF& rect, const QString& text) const;

  int fixedRows_ = 0;
  int fixedCols_ = 0;
};

}  // namespace dpm::qt
