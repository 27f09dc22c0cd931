#include "platform/qt/control_binding.h"

#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QTimer>

#include "platform/faults.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "platform/qt/guarded.h"
#include "platform/qt/qt_units.h"
#include "platform/qt/surface_bindings.h"

namespace dpm::qt {

// The base.

ControlBinding::ControlBinding(Control& control) : control_(&control) { control.AttachView(this); }

ControlBinding::~ControlBinding() { Detach(); }

void ControlBinding::Detach() {
  if (control_ != nullptr) control_->AttachView(nullptr);
  control_ = nullptr;
}

void ControlBinding::Update(Property property) {
  if (control_ == nullptr) return;
  const bool outer = !syncing_;
  syncing_ = true;
  Apply(property);
  if (outer) syncing_ = false;
}

void ControlBinding::FromUser(const std::function<void(Control&)>& action) {
  if (syncing_ || control_ == nullptr) return;
  Control& control = *control_;
  Guarded([&] { action(control); });
}

WidgetBinding::WidgetBinding(Control& control, QWidget& widget)
    : ControlBinding(control),
      widget_(&widget),
      designPalette_(widget.palette()),
      designAutoFill_(widget.autoFillBackground()) {
  const QRect g = widget.geometry();
  control.SetDesignGeometry(ToTwips(g.x()), ToTwips(g.y()), ToTwips(g.width()), ToTwips(g.height()));
}

void WidgetBinding::SyncAll() {
  if (Model() == nullptr || widget_ == nullptr) return;
  for (Property p : {Property::Enabled, Property::Visible, Property::Colors}) Update(p);
  SyncOwn();
  if (Model()->HasFocus()) Update(Property::Focus);
}

void WidgetBinding::Apply(Property property) {
  if (widget_ == nullptr) return;
  const Control& c = *Model();
  const QSignalBlocker blocker(widget_);
  switch (property) {
    case Property::Enabled:
      widget_->setEnabled(c.Enabled());
      break;
    case Property::Visible:
      widget_->setVisible(c.Visible());
      break;
    case Property::Colors:
      ApplyColors();
      ApplyOwn(property);
      break;
    case Property::Geometry:
      ApplyGeometry();
      ApplyOwn(property);
      break;
    case Property::Focus:
      if (c.HasFocus()) widget_->setFocus(Qt::OtherFocusReason);
      break;
    default:
      ApplyOwn(property);
      break;
  }
}

void WidgetBinding::ApplyColors() {
  const Control& c = *Model();
  QPalette palette = designPalette_;
  if (c.ForeColor() != kDesignColor) {
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
      palette.setColor(role, ToQColor(c.ForeColor()));
    }
  }
  if (c.BackColor() != kDesignColor) {
    for (QPalette::ColorRole role : {QPalette::Window, QPalette::Base, QPalette::Button}) {
      palette.setColor(role, ToQColor(c.BackColor()));
    }
  }
  widget_->setPalette(palette);
  widget_->setAutoFillBackground(designAutoFill_ || c.BackColor() != kDesignColor);
}

void WidgetBinding::ApplyGeometry() {
  const Control& c = *Model();
  widget_->setGeometry(ToPixels(c.Left()), ToPixels(c.Top()), ToPixels(c.Width()), ToPixels(c.Height()));
}

namespace {

const std::string& CaptionOf(const Control& control) { return static_cast<const CaptionedControl&>(control).Caption(); }

// Label: a text that takes clicks.
class LabelBinding : public WidgetBinding {
 public:
  LabelBinding(Control& control, QLabel& label) : WidgetBinding(control, label), label_(label) {
    label.installEventFilter(this);
  }

 protected:
  void SyncOwn() override { ApplyOwn(Property::Caption); }
  void ApplyOwn(Property property) override {
    if (property == Property::Caption) label_.setText(QString::fromStdString(CaptionOf(*Model())));
  }
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::MouseButtonRelease && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
      FromUser([](Control& c) { c.UserClick(); });
    } else if (event->type() == QEvent::MouseButtonDblClick) {
      FromUser([](Control& c) { c.UserDblClick(); });
    }
    return false;
  }

 private:
  QLabel& label_;
};

// Frame: a group box with a title, or a plain frame.
class FrameBinding : public WidgetBinding {
 public:
  FrameBinding(Control& control, QWidget& frame)
      : WidgetBinding(control, frame), box_(qobject_cast<QGroupBox*>(&frame)) {}

 protected:
  void SyncOwn() override { ApplyOwn(Property::Caption); }
  void ApplyOwn(Property property) override {
    if (property == Property::Caption && box_ != nullptr) box_->setTitle(QString::fromStdString(CaptionOf(*Model())));
  }

 private:
  QGroupBox* box_;
};

// Command button.
class ButtonBinding : public WidgetBinding {
 public:
  // Check boxes and option buttons turn a click into a value of their own.
  ButtonBinding(Control& control, QAbstractButton& button, bool plainClick = true)
      : WidgetBinding(control, button), button_(button) {
    if (plainClick) {
      connect(&button, &QAbstractButton::clicked, this, [this] { FromUser([](Control& c) { c.UserClick(); }); });
    }
  }

 protected:
  void SyncOwn() override { ApplyOwn(Property::Caption); }
  void ApplyOwn(Property property) override {
    if (property == Property::Caption) button_.setText(QString::fromStdString(CaptionOf(*Model())));
  }

 private:
  QAbstractButton& button_;
};

int ValueOf(Qt::CheckState state) {
  switch (state) {
    case Qt::Checked:
      return kChecked;
    case Qt::PartiallyChecked:
      return kGrayed;
    default:
      return kUnchecked;
  }
}

// Check boxes and option buttons: a caption and a value of their own, which a click of
// the user turns into a value change instead of a plain click.
class ValueButtonBinding : public ButtonBinding {
 public:
  ValueButtonBinding(Control& control, QAbstractButton& button) : ButtonBinding(control, button, false) {}

 protected:
  void SyncOwn() override {
    ButtonBinding::SyncOwn();
    ApplyValue();
  }
  void ApplyOwn(Property property) override {
    if (property == Property::Value) return ApplyValue();
    ButtonBinding::ApplyOwn(property);
  }
  virtual void ApplyValue() = 0;
};

class CheckBinding : public ValueButtonBinding {
 public:
  CheckBinding(Control& control, QCheckBox& box) : ValueButtonBinding(control, box), box_(box) {
    connect(&box, &QAbstractButton::clicked, this, [this] {
      const int value = ValueOf(box_.checkState());
      FromUser([value](Control& c) { static_cast<CheckBox&>(c).UserSetValue(value); });
    });
  }

 protected:
  void ApplyValue() override {
    const int value = static_cast<const CheckBox&>(*Model()).Value();
    if (value == kGrayed) box_.setTristate(true);
    box_.setCheckState(value == kChecked ? Qt::Checked : value == kGrayed ? Qt::PartiallyChecked : Qt::Unchecked);
  }

 private:
  QCheckBox& box_;
};

class OptionBinding : public ValueButtonBinding {
 public:
  OptionBinding(Control& control, QRadioButton& option) : ValueButtonBinding(control, option), option_(option) {
    connect(&option, &QAbstractButton::clicked, this, [this](bool checked) {
      if (checked) FromUser([](Control& c) { static_cast<OptionButton&>(c).UserChoose(); });
    });
  }

 protected:
  void ApplyValue() override {
    // An exclusive button cannot be turned off by itself; the group is the model's.
    const bool exclusive = option_.autoExclusive();
    option_.setAutoExclusive(false);
    option_.setChecked(static_cast<const OptionButton&>(*Model()).Value());
    option_.setAutoExclusive(exclusive);
  }

 private:
  QRadioButton& option_;
};

class LineEditBinding : public WidgetBinding {
 public:
  LineEditBinding(Control& control, QLineEdit& edit) : WidgetBinding(control, edit), edit_(edit) {
    connect(&edit, &QLineEdit::textEdited, this, [this](const QString& text) {
      FromUser([&text](Control& c) { static_cast<TextBox&>(c).UserSetText(text.toStdString()); });
    });
    connect(&edit, &QLineEdit::cursorPositionChanged, this, [this] { ReportSelection(); });
    connect(&edit, &QLineEdit::selectionChanged, this, [this] { ReportSelection(); });
    // A text box takes clicks too: the setup pages open the value entry dialog on one.
    edit.installEventFilter(this);
  }

 protected:
  void SyncOwn() override {
    ApplyOwn(Property::Text);
    ApplyOwn(Property::Selection);
  }
  void ApplyOwn(Property property) override {
    const auto& box = static_cast<const TextBox&>(*Model());
    if (property == Property::Text) {
      edit_.setText(QString::fromStdString(box.Text()));
    } else if (property == Property::Selection) {
      if (box.SelLength() > 0) {
        edit_.setSelection(box.SelStart(), box.SelLength());
      } else {
        edit_.setCursorPosition(box.SelStart());
      }
    }
  }

 private:
  void ReportSelection() {
    const int start = edit_.hasSelectedText() ? edit_.selectionStart() : edit_.cursorPosition();
    const int length = static_cast<int>(edit_.selectedText().size());
    if (Model() != nullptr && !Syncing()) static_cast<TextBox*>(Model())->UserSetSelection(start, length);
  }
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::MouseButtonRelease && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
      FromUser([](Control& c) { c.UserClick(); });
    }
    return false;
  }
  QLineEdit& edit_;
};

class PlainTextBinding : public WidgetBinding {
 public:
  PlainTextBinding(Control& control, QPlainTextEdit& edit) : WidgetBinding(control, edit), edit_(edit) {
    connect(&edit, &QPlainTextEdit::textChanged, this, [this] {
      const std::string text = edit_.toPlainText().toStdString();
      FromUser([&text](Control& c) { static_cast<TextBox&>(c).UserSetText(text); });
    });
  }

 protected:
  void SyncOwn() override { ApplyOwn(Property::Text); }
  void ApplyOwn(Property property) override {
    if (property == Property::Text)
      edit_.setPlainText(QString::fromStdString(static_cast<const TextBox&>(*Model()).Text()));
  }

 private:
  QPlainTextEdit& edit_;
};

QStringList ItemsOf(const ListControl& list) {
  QStringList items;
  for (const std::string& item : list.Items()) items << QString::fromStdString(item);
  return items;
}

class ComboBinding : public WidgetBinding {
 public:
  ComboBinding(Control& control, QComboBox& combo) : WidgetBinding(control, combo), combo_(combo) {
    connect(&combo, &QComboBox::activated, this,
            [this](int index) { FromUser([index](Control& c) { static_cast<ListControl&>(c).UserSelect(index); }); });
    if (QLineEdit* edit = combo.lineEdit()) {
      connect(edit, &QLineEdit::textEdited, this, [this](const QString& text) {
        FromUser([&text](Control& c) { static_cast<ComboBox&>(c).UserSetText(text.toStdString()); });
      });
    }
    combo.installEventFilter(this);
  }

 protected:
  void SyncOwn() override { ApplyOwn(Property::List); }
  void ApplyOwn(Property property) override {
    const auto& list = static_cast<const ListControl&>(*Model());
    if (property == Property::List) {
      combo_.clear();
      combo_.addItems(ItemsOf(list));
      combo_.setCurrentIndex(list.ListIndex());
    } else if (property == Property::ListIndex) {
      combo_.setCurrentIndex(list.ListIndex());
    } else if (property == Property::Text && combo_.isEditable()) {
      combo_.setEditText(QString::fromStdString(list.Text()));
    }
  }
  // The list opens on a press of the mouse, F4 or Alt+Down: the screen hears of it first.
  bool eventFilter(QObject*, QEvent* event) override {
    if (ListOpens(event)) FromUser([](Control& c) { static_cast<ComboBox&>(c).UserDropDown(); });
    return false;
  }

 private:
  static bool ListOpens(QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress) return static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton;
    if (event->type() != QEvent::KeyPress) return false;
    const auto* key = static_cast<QKeyEvent*>(event);
    return key->key() == Qt::Key_F4 || (key->key() == Qt::Key_Down && (key->modifiers() & Qt::AltModifier));
  }

  QComboBox& combo_;
};

class ListWidgetBinding : public WidgetBinding {
 public:
  ListWidgetBinding(Control& control, QListWidget& list) : WidgetBinding(control, list), list_(list) {
    connect(&list, &QListWidget::currentRowChanged, this,
            [this](int row) { FromUser([row](Control& c) { static_cast<ListControl&>(c).UserSelect(row); }); });
  }

 protected:
  void SyncOwn() override { ApplyOwn(Property::List); }
  void ApplyOwn(Property property) override {
    const auto& list = static_cast<const ListControl&>(*Model());
    if (property == Property::List) {
      list_.clear();
      list_.addItems(ItemsOf(list));
    }
    if (property == Property::List || property == Property::ListIndex) list_.setCurrentRow(list.ListIndex());
  }

 private:
  QListWidget& list_;
};

class ProgressBinding : public WidgetBinding {
 public:
  ProgressBinding(Control& control, QProgressBar& bar) : WidgetBinding(control, bar), bar_(bar) {}

 protected:
  void SyncOwn() override { ApplyOwn(Property::Range); }
  void ApplyOwn(Property property) override {
    const auto& model = static_cast<const ProgressBar&>(*Model());
    if (property == Property::Range) bar_.setRange(model.Min(), model.Max());
    if (property == Property::Range || property == Property::Value) bar_.setValue(model.Value());
  }

 private:
  QProgressBar& bar_;
};

// A menu heading (a menu of the menu bar, or an action on the bar itself) or a menu item.
// Opening a heading is its click.
class MenuBinding : public ControlBinding {
 public:
  MenuBinding(Control& control, QAction& action, QMenu* menu) : ControlBinding(control), action_(&action), menu_(menu) {
    if (menu != nullptr) {
      connect(menu, &QMenu::aboutToShow, this, [this] { FromUser([](Control& c) { c.UserClick(); }); });
    } else {
      connect(&action, &QAction::triggered, this, [this] { FromUser([](Control& c) { c.UserClick(); }); });
    }
  }
  void SyncAll() override {
    for (Property p : {Property::Caption, Property::Enabled, Property::Visible, Property::Checked}) Update(p);
  }

 protected:
  void Apply(Property property) override {
    if (action_ == nullptr) return;
    const auto& item = static_cast<const MenuItem&>(*Model());
    const QSignalBlocker blocker(action_);
    switch (property) {
      case Property::Caption:
        if (!item.IsSeparator()) action_->setText(QString::fromStdString(item.Caption()));
        break;
      case Property::Enabled:
        action_->setEnabled(item.Enabled());
        // A heading's menu may come disabled from its layout; it opens only when enabled itself.
        if (menu_ != nullptr) menu_->setEnabled(item.Enabled());
        break;
      case Property::Visible:
        action_->setVisible(item.Visible());
        break;
      case Property::Checked:
        action_->setCheckable(item.Checked() || action_->isCheckable());
        action_->setChecked(item.Checked());
        break;
      default:
        break;
    }
  }

 private:
  QPointer<QAction> action_;
  QPointer<QMenu> menu_;
};

class TimerBinding : public ControlBinding {
 public:
  explicit TimerBinding(Control& control) : ControlBinding(control) {
    connect(&timer_, &QTimer::timeout, this, [this] {
      if (Model() != nullptr) Guarded([this] { static_cast<Timer*>(Model())->Fire(); });
    });
  }
  void SyncAll() override { Update(Property::Timing); }

 protected:
  void Apply(Property) override {
    const auto& timer = static_cast<const Timer&>(*Model());
    if (timer.Enabled() && timer.Interval() > 0) {
      timer_.start(timer.Interval());
    } else {
      timer_.stop();
    }
  }

 private:
  QTimer timer_;
};

[[noreturn]] void WrongWidget(const Control& control, const QObject* found) {
  const std::string where = control.Owner().Name() + ": the " + KindName(control.Kind()) + " " + control.ObjectName();
  if (found == nullptr) throw RuntimeFault(where + " has no widget in the screen's layout");
  throw RuntimeFault(where + " cannot be shown by a " + found->metaObject()->className());
}

template <class W>
W& WidgetAs(const Control& control, QWidget* widget) {
  W* typed = qobject_cast<W*>(widget);
  if (typed == nullptr) WrongWidget(control, widget);
  return *typed;
}

std::unique_ptr<ControlBinding> BindMenuItem(MenuItem& item, QWidget& window) {
  const QString name = QString::fromStdString(item.ObjectName());
  if (item.IsHeading()) {
    if (auto* menu = window.findChild<QMenu*>(name))
      return std::make_unique<MenuBinding>(item, *menu->menuAction(), menu);
  }
  QAction* action = window.findChild<QAction*>(name);
  if (action == nullptr) WrongWidget(item, nullptr);
  // A layout names its separators like any item; the action is drawn as a line.
  if (item.IsSeparator()) action->setSeparator(true);
  return std::make_unique<MenuBinding>(item, *action, nullptr);
}

std::unique_ptr<ControlBinding> BindWidget(Control& control, QWidget* w) {
  switch (control.Kind()) {
    case ControlKind::Label:
      return std::make_unique<LabelBinding>(control, WidgetAs<QLabel>(control, w));
    case ControlKind::Frame:
      if (qobject_cast<QGroupBox*>(w) == nullptr && qobject_cast<QFrame*>(w) == nullptr) WrongWidget(control, w);
      return std::make_unique<FrameBinding>(control, *w);
    case ControlKind::CommandButton:
      return std::make_unique<ButtonBinding>(control, WidgetAs<QPushButton>(control, w));
    case ControlKind::CheckBox:
      return std::make_unique<CheckBinding>(control, WidgetAs<QCheckBox>(control, w));
    case ControlKind::OptionButton:
      return std::make_unique<OptionBinding>(control, WidgetAs<QRadioButton>(control, w));
    case ControlKind::TextBox:
      if (auto* plain = qobject_cast<QPlainTextEdit*>(w)) return std::make_unique<PlainTextBinding>(control, *plain);
      return std::make_unique<LineEditBinding>(control, WidgetAs<QLineEdit>(control, w));
    case ControlKind::ComboBox:
      return std::make_unique<ComboBinding>(control, WidgetAs<QComboBox>(control, w));
    case ControlKind::ListBox:
      return std::make_unique<ListWidgetBinding>(control, WidgetAs<QListWidget>(control, w));
    case ControlKind::ProgressBar:
      return std::make_unique<ProgressBinding>(control, WidgetAs<QProgressBar>(control, w));
    case ControlKind::Grid:
      return MakeGridBinding(control, w);
    case ControlKind::PictureBox:
      return MakePictureBinding(control, w);
    default:
      WrongWidget(control, w);
  }
}

}  // namespace

std::unique_ptr<ControlBinding> BindControl(Control& control, QWidget& window) {
  if (control.Kind() == ControlKind::Timer) return std::make_unique<TimerBinding>(control);
  if (control.Kind() == ControlKind::MenuItem) return BindMenuItem(static_cast<MenuItem&>(control), window);
  QWidget* widget = window.findChild<QWidget*>(QString::fromStdString(control.ObjectName()));
  if (widget == nullptr) WrongWidget(control, nullptr);
  // The frame of the control must hold its widget, or disabling the frame would not reach it.
  if (const Control* frame = control.Container()) {
    auto* frameWidget = window.findChild<QWidget*>(QString::fromStdString(frame->ObjectName()));
    if (frameWidget == nullptr || !frameWidget->isAncestorOf(widget)) {
      throw RuntimeFault(control.Owner().Name() + ": " + control.ObjectName() + " is not inside " +
                         frame->ObjectName() + " in the screen's layout");
    }
  }
  return BindWidget(control, widget);
}

}  // namespace dpm::qt
