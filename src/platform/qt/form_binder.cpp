#include "platform/qt/form_binder.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFile>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QUiLoader>

#include "platform/faults.h"
#include "platform/forms/form_manager.h"
#include "platform/qt/control_binding.h"
#include "platform/qt/guarded.h"
#include "platform/qt/qt_units.h"

namespace dpm::qt {

// Watches the window and every widget in it for its BoundForm.
class WindowFilter : public QObject {
 public:
  WindowFilter(BoundForm* owner, QObject* parent) : QObject(parent), owner_(owner) {}
  void Forget() { owner_ = nullptr; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    return owner_ != nullptr && owner_->OnEvent(watched, event);
  }

 private:
  BoundForm* owner_;
};

namespace {

std::unordered_map<const Form*, BoundForm*>& Windows() {
  static std::unordered_map<const Form*, BoundForm*> windows;
  return windows;
}

}  // namespace

void InstallFormBinder() {
  Forms().SetViewFactory([](Form& form) { return std::make_unique<BoundForm>(form); });
}

QWidget* WindowOf(const Form& form) {
  auto it = Windows().find(&form);
  return it == Windows().end() ? nullptr : it->second->Window();
}

BoundForm::BoundForm(Form& form) : form_(form) {
  Load();
  Bind();
  Windows()[&form_] = this;
}

BoundForm::~BoundForm() {
  Windows().erase(&form_);
  alive_.reset();
  for (ControlBinding* binding : bindings_) binding->Detach();
  if (filter_ != nullptr) filter_->Forget();
  // The window may be in the middle of delivering the event that unloaded the form.
  if (window_ != nullptr) {
    window_->hide();
    window_->deleteLater();
  }
}

void BoundForm::Load() {
  const QString path = QStringLiteral(":/forms/") + QString::fromStdString(form_.Name()) + QStringLiteral(".ui");
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly))
    throw RuntimeFault("The screen " + form_.Name() + " has no layout " + path.toStdString());
  QUiLoader loader;
  window_ = loader.load(&file, nullptr);
  if (window_ == nullptr) {
    throw RuntimeFault("The layout of " + form_.Name() + " cannot be loaded: " + loader.errorString().toStdString());
  }
  window_->setAttribute(Qt::WA_DeleteOnClose, false);
  window_->setWindowTitle(QString::fromStdString(form_.Caption()));
  const QRect g = window_->geometry();
  form_.SetDesignGeometry(ToTwips(g.x()), ToTwips(g.y()), ToTwips(g.width()), ToTwips(g.height()));
}

void BoundForm::Bind() {
  for (Control* control : form_.Controls()) {
    std::unique_ptr<ControlBinding> binding = BindControl(*control, *window_);
    binding->setParent(window_);
    if (QWidget* widget = binding->Widget()) byWidget_[widget] = binding.get();
    bindings_.push_back(binding.release());
  }
  for (ControlBinding* binding : bindings_) binding->SyncAll();

  filter_ = new WindowFilter(this, window_);
  window_->installEventFilter(filter_);
  for (QWidget* child : window_->findChildren<QWidget*>()) child->installEventFilter(filter_);
}

ControlBinding* BoundForm::BindingOf(QObject* object) const {
  for (QObject* o = object; o != nullptr && o != window_; o = o->parent()) {
    auto it = byWidget_.find(o);
    if (it != byWidget_.end()) return it->second;
  }
  return nullptr;
}

void BoundForm::Update(FormProperty property) {
  if (window_ == nullptr) return;
  switch (property) {
    case FormProperty::Caption:
      window_->setWindowTitle(QString::fromStdString(form_.Caption()));
      break;
    case FormProperty::Visible:
      if (form_.Visible()) {
        ShowWindow();
      } else {
        window_->hide();
      }
      break;
    case FormProperty::Geometry:
      window_->move(ToPixels(form_.Left()), ToPixels(form_.Top()));
      break;
    case FormProperty::Active:
      window_->raise();
      window_->activateWindow();
      break;
  }
}

void BoundForm::ShowWindow() {
  const Qt::WindowModality modality = form_.Modal() ? Qt::ApplicationModal : Qt::NonModal;
  if (window_->windowModality() != modality) {
    // Qt takes a new modality only while the window is hidden.
    window_->hide();
    window_->setWindowModality(modality);
  }
  window_->show();
  window_->raise();
  window_->activateWindow();
}

bool BoundForm::OnEvent(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::Close:
      if (watched != window_) return false;
      event->ignore();
      Guarded([this] { form_.UserClose(); });
      return true;
    case QEvent::KeyPress: {
      // A key the widget does not take travels on to its parents; the form hears it once,
      // at the widget that has the focus (or the window, when none has).
      QWidget* first = window_->focusWidget() != nullptr ? window_->focusWidget() : window_.data();
      if (watched != first) return false;
      return OnKey(watched, static_cast<QKeyEvent&>(*event));
    }
    case QEvent::FocusIn:
      OnFocusIn(watched, static_cast<const QFocusEvent&>(*event));
      return false;
    case QEvent::MouseButtonPress:
      if (!form_.IsActive() && form_.Visible()) Guarded([this] { Forms().UserActivate(form_); });
      return false;
    default:
      return false;
  }
}

bool BoundForm::OnKey(QObject* watched, QKeyEvent& event) {
  const int code = KeyCodeOf(event);
  const int shift = ShiftStateOf(event.modifiers());
  const int ascii = (shift & kAltMask) != 0 ? 0 : KeyAsciiOf(event);
  ControlBinding* binding = BindingOf(watched);
  Control* target = binding != nullptr ? binding->Model() : nullptr;
  const std::weak_ptr<int> alive = alive_;
  Form& form = form_;
  bool keep = true;
  Guarded([&] {
    if (code != 0) keep = form.UserKeyDown(target, code, shift);
    // The handlers may have unloaded the form: then the key goes nowhere.
    if (keep && ascii != 0 && !alive.expired()) keep = form.UserKeyPress(target, ascii);
  });
  return !keep || alive.expired();
}

void BoundForm::OnFocusIn(QObject* watched, const QFocusEvent& event) {
  auto it = byWidget_.find(watched);
  if (it == byWidget_.end() || it->second->Model() == nullptr) return;
  Control* control = it->second->Model();
  const Qt::FocusReason reason = event.reason();
  Control* focused = form_.FocusedControl();
  if ((reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason) && focused != nullptr) {
    // Qt brings back its own idea of the focus; the form's focused control is what counts.
    if (focused != control) {
      for (ControlBinding* binding : bindings_) {
        if (binding->Model() == focused && binding->Widget() != nullptr) binding->Widget()->setFocus();
      }
    }
    return;
  }
  Guarded([control] { control->UserFocus(); });
}

}  // namespace dpm::qt
