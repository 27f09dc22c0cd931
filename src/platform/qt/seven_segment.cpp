#include "platform/qt/seven_segment.h"

#include <array>

#include <QPainter>
#include <QTransform>

namespace dpm::qt {
namespace {

constexpr Segments A = 1, B = 2, C = 4, D = 8, E = 16, F = 32, G = 64;

// The display's lit segments and background; a selected cell is a shade lighter.
const QColor kLit(255, 48, 32);
const QColor kUnlit(70, 14, 10);
const QColor kBackground(28, 4, 4);
const QColor kSelected(72, 20, 16);

// How far the glyphs lean, as the display's do.
constexpr double kSlant = -0.1;

struct Glyph {
  QChar character = ' ';
  bool point = false;
};

// The characters of a cell as the display lights them: a point joins the glyph before
// it, or stands alone when nothing comes before it.
std::vector<Glyph> GlyphsOf(const QString& text) {
  std::vector<Glyph> glyphs;
  for (const QChar c : text) {
    if (c == '.' && !glyphs.empty() && !glyphs.back().point) {
      glyphs.back().point = true;
    } else if (c == '.') {
      glyphs.push_back({' ', true});
    } else {
      glyphs.push_back({c, false});
    }
  }
  return glyphs;
}

}  // namespace

std::optional<Segments> SegmentsOf(char c) {
  switch (c) {
    case ' ':
      return Segments{0};
    case '0':
    case 'O':
    case 'D':
      return A | B | C | D | E | F;
    case '1':
      return B | C;
    case '2':
    case 'Z':
    case 'z':
      return A | B | D | E | G;
    case '3':
      return A | B | C | D | G;
    case '4':
      return B | C | F | G;
    case '5':
    case 'S':
    case 's':
      return A | C | D | F | G;
    case '6':
      return A | C | D | E | F | G;
    case '7':
      return A | B | C;
    case '8':
    case 'B':
      return A | B | C | D | E | F | G;
    case '9':
    case 'g':
      return A | B | C | D | F | G;
    case 'A':
      return A | B | C | E | F | G;
    case 'a':
      return A | B | C | D | E | G;
    case 'b':
      return C | D | E | F | G;
    case 'C':
      return A | D | E | F;
    case 'c':
      return D | E | G;
    case 'd':
      return B | C | D | E | G;
    case 'E':
      return A | D | E | F | G;
    case 'e':
      return A | B | D | E | F | G;
    case 'F':
    case 'f':
      return A | E | F | G;
    case 'G':
      return A | C | D | E | F;
    case 'H':
    case 'K':
    case 'k':
    case 'X':
    case 'x':
      return B | C | E | F | G;
    case 'h':
      return C | E | F | G;
    case 'I':
    case 'l':
      return E | F;
    case 'i':
      return E;
    case 'J':
    case 'j':
      return B | C | D | E;
    case 'L':
      return D | E | F;
    case 'M':
    case 'N':
    case 'W':
      return A | B | C | E | F;
    case 'm':
    case 'n':
      return C | E | G;
    case 'o':
      return C | D | E | G;
    case 'P':
    case 'p':
      return A | B | E | F | G;
    case 'q':
    case 'Q':
      return A | B | C | F | G;
    case 'R':
    case 'r':
      return E | G;
    case 'T':
    case 't':
      return D | E | F | G;
    case 'U':
    case 'V':
    case 'w':
      return B | C | D | E | F;
    case 'u':
    case 'v':
      return C | D | E;
    case 'Y':
    case 'y':
      return B | C | D | F | G;
    case '-':
      return G;
    case '_':
      return D;
    case '=':
      return D | G;
    case '^':
      return A | B | F | G;  // the degree sign
    case '\'':
      return F;
    case '"':
      return B | F;
    default:
      return std::nullopt;
  }
}

void PaintGlyph(QPainter& painter, const QRectF& box, Segments segments, bool point, const QColor& on,
                const QColor& off) {
  const double x = box.left();
  const double y = box.top();
  const double w = box.width();
  const double h = box.height();
  const double t = std::max(1.2, std::min(w, h / 2) * 0.2);
  const double half = h / 2;
  const double along = w - 1.2 * t;
  const double down = half - 0.9 * t;
  const std::array<QRectF, 7> bars = {
      QRectF(x + 0.6 * t, y, along, t),                 // a
      QRectF(x + w - t, y + 0.6 * t, t, down),          // b
      QRectF(x + w - t, y + half + 0.3 * t, t, down),   // c
      QRectF(x + 0.6 * t, y + h - t, along, t),         // d
      QRectF(x, y + half + 0.3 * t, t, down),           // e
      QRectF(x, y + 0.6 * t, t, down),                  // f
      QRectF(x + 0.6 * t, y + half - t / 2, along, t),  // g
  };
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const double bottom = y + h;
  painter.setTransform(QTransform().translate(0, bottom).shear(kSlant, 0).translate(0, -bottom), true);
  for (std::size_t i = 0; i < bars.size(); ++i) {
    painter.setBrush((segments >> i) & 1 ? on : off);
    painter.drawRoundedRect(bars[i], t / 2, t / 2);
  }
  painter.setBrush(point ? on : off);
  painter.drawEllipse(QRectF(x + w + 0.4 * t, y + h - 1.1 * t, 1.1 * t, 1.1 * t));
  painter.restore();
}

void SevenSegmentDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const {
  if (index.row() < fixedRows_) {
    QStyledItemDelegate::paint(painter, option, index);
    return;
  }
  const bool selected = (option.state & QStyle::State_Selected) != 0;
  painter->fillRect(option.rect, selected ? kSelected : kBackground);
  // A row with nothing in it is a dark display: not even the unlit segments show.
  bool rowEmpty = true;
  for (int col = 0; col < index.model()->columnCount() && rowEmpty; ++col) {
    rowEmpty = index.sibling(index.row(), col).data(Qt::DisplayRole).toString().isEmpty();
  }
  if (rowEmpty) return;
  const QString text = index.data(Qt::DisplayRole).toString();
  if (index.column() < fixedCols_) {
    PaintText(*painter, option.rect, text);
  } else {
    PaintPlace(*painter, option.rect, text);
  }
}

// A key's name, glyph after glyph from the left. Characters the display has no shape
// for (the marks of locked and read-only keys) are written as text in their place.
void SevenSegmentDelegate::PaintText(QPainter& painter, const QRectF& rect, const QString& text) const {
  // Narrow enough that the longest name, "* SerNo  12", fits its column.
  const double h = rect.height() * 0.6;
  const double w = h * 0.45;
  const double advance = w * 1.5;
  double x = rect.left() + 2;
  const double top = rect.top() + (rect.height() - h) / 2;
  painter.save();
  painter.setClipRect(rect);
  // Every name has one blank ahead of it, which is spacing, not a place.
  const QString name = text.startsWith(' ') ? text.mid(1) : text;
  for (const Glyph& glyph : GlyphsOf(name)) {
    const QRectF box(x, top, w, h);
    if (const auto segments = SegmentsOf(glyph.character.toLatin1())) {
      PaintGlyph(painter, box, *segments, glyph.point, kLit, Qt::transparent);
    } else {
      painter.setPen(kLit);
      painter.drawText(box.adjusted(-2, 0, 2, 0), Qt::AlignCenter, QString(glyph.character));
    }
    x += advance;
  }
  painter.restore();
}

// One place of the display: its character, whatever blanks pad the cell, and its point.
void SevenSegmentDelegate::PaintPlace(QPainter& painter, const QRectF& rect, const QString& text) const {
  Glyph place;
  for (const QChar c : text) {
    if (c == '.') {
      place.point = true;
    } else if (c != ' ' && place.character == ' ') {
      place.character = c;
    }
  }
  const double h = rect.height() * 0.7;
  const double w = std::min(h * 0.5, rect.width() * 0.5);
  if (w < 2) return;  // the skip column shows nothing
  const QRectF box(rect.left() + (rect.width() - w) / 2 - w * 0.15, rect.top() + (rect.height() - h) / 2, w, h);
  if (const auto segments = SegmentsOf(place.character.toLatin1())) {
    PaintGlyph(painter, box, *segments, place.point, kLit, kUnlit);
  } else {
    painter.setPen(kLit);
    painter.drawText(rect, Qt::AlignCenter, QString(place.character));
  }
}

}  // namespace dpm::qt
