#include "platform/qt/surface_bindings.h"

#include <algorithm>

#include <QElapsedTimer>
#include <QEvent>
#include <QFontMetricsF>
#include <QHeaderView>
#include <QImage>
#include <QLabel>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QTimer>

#include "platform/faults.h"
#include "platform/forms/form.h"
#include "platform/forms/grid.h"
#include "platform/forms/picture.h"
#include "platform/qt/qt_pictures.h"
#include "platform/qt/qt_units.h"
#include "platform/qt/seven_segment.h"

namespace dpm::qt {
namespace {

// Grid.

class GridBinding : public WidgetBinding {
 public:
  GridBinding(Control& control, QTableWidget& table) : WidgetBinding(control, table), table_(table) {
    table.setEditTriggers(QAbstractItemView::NoEditTriggers);
    table.setSelectionMode(QAbstractItemView::SingleSelection);
    table.horizontalHeader()->hide();
    table.verticalHeader()->hide();
    connect(&table, &QTableWidget::cellClicked, this, [this](int row, int col) {
      FromUser([row, col](Control& c) { static_cast<Grid&>(c).UserClickCell(row, col); });
    });
    // A layout asks for the meter's display face with the property "sevenSegment".
    if (table.property("sevenSegment").toBool()) {
      segments_ = new SevenSegmentDelegate(&table);
      table.setItemDelegate(segments_);
    }
  }

 protected:
  void SyncOwn() override { ApplyOwn(Property::Cells); }
  void ApplyOwn(Property property) override {
    const auto& grid = static_cast<const Grid&>(*Model());
    switch (property) {
      case Property::Cells:
        Rebuild(grid);
        break;
      case Property::Cell:
        SetCell(grid, grid.LastChangedRow(), grid.LastChangedCol());
        break;
      case Property::Selection:
        table_.setCurrentCell(grid.Row(), grid.Col());
        break;
      default:
        break;
    }
  }

 private:
  void Rebuild(const Grid& grid) {
    if (segments_ != nullptr) segments_->SetFixed(grid.FixedRows(), grid.FixedCols());
    table_.setRowCount(grid.Rows());
    table_.setColumnCount(grid.Cols());
    for (int c = 0; c < grid.Cols(); ++c) {
      if (grid.ColWidth(c) > 0) table_.setColumnWidth(c, ToPixels(grid.ColWidth(c)));
    }
    for (int r = 0; r < grid.Rows(); ++r) {
      if (grid.RowHeight(r) > 0) table_.setRowHeight(r, ToPixels(grid.RowHeight(r)));
      for (int c = 0; c < grid.Cols(); ++c) SetCell(grid, r, c);
    }
    const int bars = grid.ScrollBars();
    table_.setHorizontalScrollBarPolicy((bars & 1) != 0 ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    table_.setVerticalScrollBarPolicy((bars & 2) != 0 ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
  }

  void SetCell(const Grid& grid, int row, int col) {
    if (row >= table_.rowCount() || col >= table_.columnCount()) return;
    QTableWidgetItem* item = table_.item(row, col);
    if (item == nullptr) {
      item = new QTableWidgetItem;
      table_.setItem(row, col, item);
    }
    item->setText(QString::fromStdString(grid.TextMatrix(row, col)));
    const bool fixed = row < grid.FixedRows() || col < grid.FixedCols();
    if (fixed) item->setBackground(table_.palette().button());
    item->setTextAlignment(AlignmentOf(row < grid.FixedRows() ? grid.FixedAlignment(col) : grid.ColAlignment(col)));
  }

  static Qt::Alignment AlignmentOf(int alignment) {
    switch (alignment) {
      case Grid::kAlignCenterCenter:
        return Qt::AlignCenter;
      case Grid::kAlignRightCenter:
        return Qt::AlignRight | Qt::AlignVCenter;
      default:
        return Qt::AlignLeft | Qt::AlignVCenter;
    }
  }

  QTableWidget& table_;
  SevenSegmentDelegate* segments_ = nullptr;  // owned by the table
};

// Picture.

QFont ToQFont(const FontSpec& spec) {
  QFont font(QString::fromStdString(spec.name));
  font.setPointSizeF(spec.size);
  font.setBold(spec.bold);
  return font;
}

Qt::PenStyle PenStyleOf(int drawStyle) {
  switch (drawStyle) {
    case 1:
      return Qt::DashLine;
    case 2:
      return Qt::DotLine;
    case 3:
      return Qt::DashDotLine;
    case 4:
      return Qt::DashDotDotLine;
    case 5:
      return Qt::NoPen;
    default:
      return Qt::SolidLine;
  }
}

QPointF ToPoint(double xTwips, double yTwips) { return {xTwips / kTwipsPerPixel, yTwips / kTwipsPerPixel}; }

// Paints one operation; returns the pixels it may have touched.
QRect Paint(QPainter& painter, const DrawOp& op) {
  const QColor color = ToQColor(op.color);
  const QRectF span = QRectF(ToPoint(op.x1, op.y1), ToPoint(op.x2, op.y2)).normalized();
  const double pen = op.width + 1;
  switch (op.kind) {
    case DrawOp::Kind::Line:
      painter.setPen(QPen(color, op.width, PenStyleOf(op.style)));
      painter.drawLine(ToPoint(op.x1, op.y1), ToPoint(op.x2, op.y2));
      return span.adjusted(-pen, -pen, pen, pen).toAlignedRect();
    case DrawOp::Kind::Box:
      painter.setPen(QPen(color, op.width, PenStyleOf(op.style)));
      painter.setBrush(Qt::NoBrush);
      painter.drawRect(span);
      return span.adjusted(-pen, -pen, pen, pen).toAlignedRect();
    case DrawOp::Kind::FilledBox:
      painter.fillRect(span, color);
      return span.adjusted(-1, -1, 1, 1).toAlignedRect();
    case DrawOp::Kind::Text: {
      const QFont font = ToQFont(op.font);
      const QFontMetricsF metrics(font);
      const QString text = QString::fromStdString(op.text);
      painter.setFont(font);
      painter.setPen(color);
      const QPointF topLeft = ToPoint(op.x1, op.y1);
      painter.drawText(topLeft + QPointF(0, metrics.ascent()), text);
      // Glyphs may reach a little beyond their advance and their line.
      const double margin = metrics.height() / 4 + 1;
      return QRectF(topLeft, QSizeF(metrics.horizontalAdvance(text), metrics.height()))
          .adjusted(-margin, -margin, margin, margin)
          .toAlignedRect();
    }
  }
  return {};
}

std::pair<double, double> MeasureText(const std::string& text, const FontSpec& font) {
  const QFontMetricsF metrics(ToQFont(font));
  return {metrics.horizontalAdvance(QString::fromStdString(text)) * kTwipsPerPixel, metrics.height() * kTwipsPerPixel};
}

// The picture rendered at its size, on white where it has no colour of its own, since a
// saved image has no background to show through. `kept` is the view's image when it holds
// operations that the picture has let go of.
void SaveImage(const PictureBox& picture, const QPixmap* kept, const std::string& path) {
  const QSize size(std::max(1, static_cast<int>(ToPixels(picture.Width()))),
                   std::max(1, static_cast<int>(ToPixels(picture.Height()))));
  QImage image(size, QImage::Format_RGB888);
  image.fill(picture.BackColor() != kDesignColor ? ToQColor(picture.BackColor()) : QColor(Qt::white));
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing, false);
  if (const QPixmap shown = PixmapOf(picture.Picture()); !shown.isNull()) painter.drawPixmap(0, 0, shown);
  if (kept != nullptr) painter.drawPixmap(0, 0, *kept);
  for (const DrawOp& op : picture.Ops()) Paint(painter, op);
  painter.end();
  const QString name = QString::fromStdString(path);
  const char* format = name.endsWith(".png", Qt::CaseInsensitive) ? "PNG" : "BMP";
  if (!image.save(name, format)) throw FileFault("Cannot write \"" + path + "\"");
}

// The drawing is painted onto a pixmap from which the label paints itself; new operations
// are painted onto it as they come, and only the pixels they touch are shown anew. A clear
// paints the pixmap anew. A picture that keeps what was drawn hands its operations over
// once they are painted, and from then on the pixmap is the only copy of them: a new size,
// colour or loaded picture paints the background afresh and the old pixmap over it.
class PictureBinding : public WidgetBinding {
 public:
  PictureBinding(Control& control, QLabel& label) : WidgetBinding(control, label), label_(label) {
    label.setAlignment(Qt::AlignLeft | Qt::AlignTop);
    label.installEventFilter(this);
    auto& picture = static_cast<PictureBox&>(control);
    picture.SetTextMeasure(&MeasureText);
    picture.SetImageSaver([this](const PictureBox& p, const std::string& path) {
      SaveImage(p, HoldsTaken() ? &canvas_ : nullptr, path);
    });
  }
  ~PictureBinding() override {
    if (Model() != nullptr) static_cast<PictureBox&>(*Model()).SetImageSaver({});
  }

 protected:
  void SyncOwn() override { PaintAll(); }
  void ApplyOwn(Property property) override {
    if (property == Property::Drawing) PaintNew();
    if (property == Property::Colors || property == Property::Geometry) PaintAll();
  }
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::MouseButtonRelease && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
      FromUser([](Control& c) { c.UserClick(); });
    } else if (event->type() == QEvent::MouseButtonDblClick) {
      FromUser([](Control& c) { c.UserDblClick(); });
    } else if (event->type() == QEvent::Resize && Model() != nullptr) {
      PaintAll();
    } else if (event->type() == QEvent::Paint) {
      // The label paints its background and frame as its layout gives them, and the drawing
      // goes inside the frame.
      static_cast<QObject&>(label_).event(event);
      const QRect contents = label_.contentsRect();
      const QRect dirty = static_cast<QPaintEvent*>(event)->rect() & contents;
      QPainter painter(&label_);
      painter.drawPixmap(dirty, canvas_, dirty.translated(-contents.topLeft()));
      return true;
    }
    return false;
  }

 private:
  PictureBox& Picture() const { return static_cast<PictureBox&>(*Model()); }

  // Whether the pixmap holds operations since the last clear that the picture no longer has.
  bool HoldsTaken() const {
    const PictureBox& picture = Picture();
    return picture.Clears() == clears_ && picture.DrawnCount() > picture.Ops().size();
  }

  void PaintAll() {
    PictureBox& picture = Picture();
    const QPixmap old = HoldsTaken() ? canvas_ : QPixmap();
    canvas_ = QPixmap(label_.size().expandedTo(QSize(1, 1)));
    // Without a colour of its own the label's designed background shows through.
    canvas_.fill(picture.BackColor() != kDesignColor ? ToQColor(picture.BackColor()) : QColor(Qt::transparent));
    shownPicture_ = picture.Picture();
    QPainter painter(&canvas_);
    if (const QPixmap image = PixmapOf(shownPicture_); !image.isNull()) painter.drawPixmap(0, 0, image);
    if (!old.isNull()) painter.drawPixmap(0, 0, old);
    for (const DrawOp& op : picture.Ops()) Paint(painter, op);
    painter.end();
    Painted(picture);
    dirty_ = QRect();
    label_.update();
  }

  void PaintNew() {
    PictureBox& picture = Picture();
    if (picture.Clears() != clears_ || picture.Ops().size() < painted_ || !(picture.Picture() == shownPicture_) ||
        canvas_.size() != label_.size()) {
      PaintAll();
      return;
    }
    QPainter painter(&canvas_);
    for (std::size_t i = painted_; i < picture.Ops().size(); ++i) dirty_ |= Paint(painter, picture.Ops()[i]);
    painter.end();
    Painted(picture);
    ShowNew();
  }

  // Everything the picture holds is on the pixmap now.
  void Painted(PictureBox& picture) {
    clears_ = picture.Clears();
    picture.TakenIntoImage();
    painted_ = picture.Ops().size();
  }

  // A drawing that grows by a segment a reading, hundreds a second, is shown at most every
  // kShowIntervalMs, the strokes since the last showing together. A stroke after a quiet
  // spell shows at once.
  void ShowNew() {
    if (showPending_) return;
    if (!sinceShown_.isValid() || sinceShown_.elapsed() >= kShowIntervalMs) {
      ShowDirty();
      return;
    }
    showPending_ = true;
    QTimer::singleShot(static_cast<int>(kShowIntervalMs - sinceShown_.elapsed()), this, [this] {
      showPending_ = false;
      ShowDirty();
    });
  }
  void ShowDirty() {
    label_.update(dirty_.translated(label_.contentsRect().topLeft()));
    dirty_ = QRect();
    sinceShown_.start();
  }

  static constexpr qint64 kShowIntervalMs = 40;

  QLabel& label_;
  QPixmap canvas_;
  PictureRef shownPicture_;
  std::size_t painted_ = 0;
  std::uint64_t clears_ = 0;
  QRect dirty_;  // painted but not yet shown
  QElapsedTimer sinceShown_;
  bool showPending_ = false;
};

[[noreturn]] void NotShownBy(const Control& control, const QWidget* widget, const char* needed) {
  throw RuntimeFault(control.Owner().Name() + ": the " + KindName(control.Kind()) + " " + control.ObjectName() +
                     " needs a " + needed + ", not a " + widget->metaObject()->className());
}

}  // namespace

std::unique_ptr<ControlBinding> MakeGridBinding(Control& grid, QWidget* widget) {
  auto* table = qobject_cast<QTableWidget*>(widget);
  if (table == nullptr) NotShownBy(grid, widget, "QTableWidget");
  return std::make_unique<GridBinding>(grid, *table);
}

std::unique_ptr<ControlBinding> MakePictureBinding(Control& picture, QWidget* widget) {
  auto* label = qobject_cast<QLabel*>(widget);
  if (label == nullptr) NotShownBy(picture, widget, "QLabel");
  return std::make_unique<PictureBinding>(picture, *label);
}

}  // namespace dpm::qt
