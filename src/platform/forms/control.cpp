#include "platform/forms/control.h"

#include "platform/forms/form.h"

namespace dpm {

const char* KindName(ControlKind kind) {
  switch (kind) {
    case ControlKind::Label:
      return "label";
    case ControlKind::TextBox:
      return "text box";
    case ControlKind::ComboBox:
      return "combo box";
    case ControlKind::ListBox:
      return "list box";
    case ControlKind::CheckBox:
      return "check box";
    case ControlKind::OptionButton:
      return "option button";
    case ControlKind::Frame:
      return "frame";
    case ControlKind::CommandButton:
      return "command button";
    case ControlKind::MenuItem:
      return "menu item";
    case ControlKind::Grid:
      return "grid";
    case ControlKind::PictureBox:
      return "picture";
    case ControlKind::ProgressBar:
      return "progress bar";
    case ControlKind::Timer:
      return "timer";
  }
  return "control";
}

Control::Control(Form& owner, ControlKind kind, std::string name, Control* container, int index)
    : owner_(owner), kind_(kind), name_(std::move(name)), container_(container), index_(index) {
  owner_.Register(this);
}

Control::~Control() { owner_.Unregister(this); }

std::string Control::ObjectName() const { return index_ < 0 ? name_ : name_ + "_" + std::to_string(index_); }

void Control::SetEnabled(bool enabled) {
  if (enabled == enabled_) return;
  enabled_ = enabled;
  Notify(Property::Enabled);
  EnabledChanged();
}

void Control::SetVisible(bool visible) {
  if (visible == visible_) return;
  visible_ = visible;
  Notify(Property::Visible);
}

bool Control::IsEffectivelyEnabled() const {
  for (const Control* c = this; c != nullptr; c = c->container_) {
    if (!c->enabled_) return false;
  }
  return true;
}

bool Control::IsEffectivelyVisible() const {
  for (const Control* c = this; c != nullptr; c = c->container_) {
    if (!c->visible_) return false;
  }
  return true;
}

void Control::SetForeColor(int32_t color) {
  if (color == foreColor_) return;
  foreColor_ = color;
  Notify(Property::Colors);
}

void Control::SetBackColor(int32_t color) {
  if (color == backColor_) return;
  backColor_ = color;
  Notify(Property::Colors);
}

void Control::Move(int left, int top) { Move(left, top, width_, height_); }

void Control::Move(int left, int top, int width, int height) {
  if (left == left_ && top == top_ && width == width_ && height == height_) return;
  left_ = left;
  top_ = top;
  width_ = width;
  height_ = height;
  Notify(Property::Geometry);
}

void Control::SetDesignGeometry(int left, int top, int width, int height) {
  left_ = left;
  top_ = top;
  width_ = width;
  height_ = height;
}

bool Control::TakesFocus() const {
  switch (kind_) {
    case ControlKind::Label:
    case ControlKind::Frame:
    case ControlKind::MenuItem:
    case ControlKind::ProgressBar:
    case ControlKind::Timer:
      return false;
    default:
      return true;
  }
}

void Control::SetFocus() {
  if (!TakesFocus() || !IsEffectivelyEnabled() || !IsEffectivelyVisible()) return;
  owner_.MoveFocus(this);
}

bool Control::HasFocus() const { return owner_.FocusedControl() == this; }

void Control::UserClick() {
  if (AcceptsUser()) RaiseClick();
}

void Control::UserDblClick() {
  if (AcceptsUser()) Raise(on.DblClick);
}

void Control::UserFocus() {
  if (AcceptsUser()) owner_.MoveFocus(this);
}

bool Control::UserKeyDown(int keyCode, int shift) { return owner_.UserKeyDown(this, keyCode, shift); }

bool Control::UserKeyPress(int keyAscii) { return owner_.UserKeyPress(this, keyAscii); }

void Control::UserKeyUp(int keyCode, int shift) {
  if (on.KeyUp) Raise([&] { on.KeyUp(keyCode, shift); });
}

void Control::Notify(Property property) {
  if (view_ != nullptr) view_->Update(property);
}

void Control::Raise(const std::function<void()>& handler) {
  if (!handler) return;
  HandlerScope scope(owner_);
  handler();
}

}  // namespace dpm
