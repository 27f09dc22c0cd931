#pragma once

#include <functional>
#include <memory>

#include <QObject>
#include <QPalette>
#include <QPointer>
#include <QWidget>

#include "platform/forms/control.h"

namespace dpm::qt {

// The link between one control and its widget. Changes of the control reach the widget
// with the widget's signals blocked, so that they do not come back as the user's actions;
// the user's actions on the widget reach the control through its User...() functions.
class ControlBinding : public QObject, public ControlView {
 public:
  explicit ControlBinding(Control& control);
  ~ControlBinding() override;

  Control* Model() const { return control_; }
  // The widget that takes clicks, keys and focus; nullptr for menu items and timers.
  virtual QWidget* Widget() const { return nullptr; }

  // Gives the widget the whole state of the control.
  virtual void SyncAll() = 0;
  // The control is going away; from now on the widget's signals reach nothing.
  void Detach();

  void Update(Property property) final;

 protected:
  virtual void Apply(Property property) = 0;
  // Runs a user's action on the control, unless the binding is busy giving the widget a
  // change of the control.
  void FromUser(const std::function<void(Control&)>& action);
  bool Syncing() const { return syncing_; }

 private:
  Control* control_;
  bool syncing_ = false;
};

// A control shown by a widget: the properties that every widget has.
class WidgetBinding : public ControlBinding {
 public:
  WidgetBinding(Control& control, QWidget& widget);
  QWidget* Widget() const override { return widget_; }
  void SyncAll() override;

 protected:
  void Apply(Property property) override;
  // The properties of the kind of control.
  virtual void ApplyOwn(Property property) = 0;
  virtual void SyncOwn() = 0;

 private:
  void ApplyColors();
  void ApplyGeometry();

  QPointer<QWidget> widget_;
  QPalette designPalette_;
  bool designAutoFill_ = false;
};

// The binding of a control to the widget or action found under its object name in the
// window. A missing widget, or one of the wrong kind, is a RuntimeFault naming it.
std::unique_ptr<ControlBinding> BindControl(Control& control, QWidget& window);

}  // namespace dpm::qt
