#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

#include <QPointer>
#include <QWidget>

#include "platform/forms/form.h"

class QEvent;
class QFocusEvent;
class QKeyEvent;

namespace dpm::qt {

class ControlBinding;
class WindowFilter;

// Gives every form loaded from now on a window made from its layout, the Qt Designer file
// named after the form (":/forms/frmMMenu.ui"), built into the program as a resource.
void InstallFormBinder();

// The window of a loaded form that has one, else nullptr.
QWidget* WindowOf(const Form& form);

// The window of one form: the layout loaded, each control bound to the widget of its
// name, and the window's own events (keys, focus, closing, a click that brings it to the
// front) passed to the form.
//
// Keys: key-down and key-press go to the form first, then to the control whose widget
// has the focus; a handler that sets the key to 0 keeps it from the widget. F1 is a key
// like any other. Alt with a letter opens the menu whose caption has that letter after "&".
class BoundForm : public FormView {
 public:
  explicit BoundForm(Form& form);
  ~BoundForm() override;
  BoundForm(const BoundForm&) = delete;
  BoundForm& operator=(const BoundForm&) = delete;

  void Update(FormProperty property) override;
  QWidget* Window() const { return window_; }

  // From the window's event filter; true swallows the event.
  bool OnEvent(QObject* watched, QEvent* event);

 private:
  void Load();
  void Bind();
  ControlBinding* BindingOf(QObject* object) const;
  bool OnKey(QObject* watched, QKeyEvent& event);
  void OnFocusIn(QObject* watched, const QFocusEvent& event);
  void ShowWindow();

  Form& form_;
  QPointer<QWidget> window_;
  WindowFilter* filter_ = nullptr;         // owned by the window
  std::vector<ControlBinding*> bindings_;  // owned by the window
  std::unordered_map<const QObject*, ControlBinding*> byWidget_;
  // Expires when this binding goes; a handler may unload the form in the middle of an event.
  std::shared_ptr<int> alive_ = std::make_shared<int>(0);
};

}  // namespace dpm::qt
