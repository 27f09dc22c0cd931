#include "platform/forms/form.h"

#include <algorithm>

#include "platform/events.h"
#include "platform/faults.h"
#include "platform/forms/form_manager.h"
#include "platform/services.h"

namespace dpm {

Form::Form(std::string name, std::string caption) : name_(std::move(name)), caption_(std::move(caption)) {}

Form::~Form() { view_.reset(); }

void Form::SetCaption(const std::string& caption) {
  if (caption == caption_) return;
  caption_ = caption;
  Notify(FormProperty::Caption);
}

void Form::Move(int left, int top) {
  if (left == left_ && top == top_) return;
  left_ = left;
  top_ = top;
  Notify(FormProperty::Geometry);
}

void Form::SetDesignGeometry(int left, int top, int width, int height) {
  left_ = left;
  top_ = top;
  width_ = width;
  height_ = height;
}

bool Form::IsActive() const { return Forms().Active() == this; }

void Form::Show() {
  if (unloaded_) return;
  if (!visible_) {
    visible_ = true;
    Notify(FormProperty::Visible);
  }
  Forms().Activate(*this);
}

void Form::ShowModal() {
  if (unloaded_) return;
  EventPump* events = Platform().events;
  if (events == nullptr) throw RuntimeFault("No event pump to wait for " + name_);
  HandlerScope keepAlive(*this);
  if (visible_) {
    // Shown before: the window has to come back as a modal one.
    visible_ = false;
    Notify(FormProperty::Visible);
  }
  modal_ = true;
  Show();
  while (visible_ && !unloaded_ && !Forms().Ended()) events->Serve();
  modal_ = false;
}

void Form::Hide() {
  if (!visible_) return;
  visible_ = false;
  Notify(FormProperty::Visible);
  Forms().Hidden(*this);
}

void Form::Unload() {
  if (unloading_ || unloaded_) return;
  unloading_ = true;
  const bool go = RunUnloadHandlers(UnloadMode::Code);
  unloading_ = false;
  if (go) Forms().Remove(*this);
}

void Form::UserClose() {
  if (unloading_ || unloaded_) return;
  unloading_ = true;
  const bool go = RunUnloadHandlers(UnloadMode::FormControlMenu);
  unloading_ = false;
  if (go) Forms().Remove(*this);
}

bool Form::RunUnloadHandlers(UnloadMode mode) {
  HandlerScope scope(*this);
  int cancel = 0;
  if (on.QueryUnload) on.QueryUnload(cancel, mode);
  if (cancel != 0 || unloaded_) return false;
  if (on.Unload) on.Unload(cancel);
  return cancel == 0 && !unloaded_;
}

Control* Form::FindControl(const std::string& objectName) const {
  for (Control* c : controls_) {
    if (c->ObjectName() == objectName) return c;
  }
  return nullptr;
}

bool Form::UserKeyDown(Control* target, int keyCode, int shift) {
  if (target == nullptr) target = focused_;
  HandlerScope scope(*this);
  if (on.KeyDown) on.KeyDown(keyCode, shift);
  if (keyCode != 0 && target != nullptr && target->on.KeyDown) target->on.KeyDown(keyCode, shift);
  return keyCode != 0;
}

bool Form::UserKeyPress(Control* target, int keyAscii) {
  if (target == nullptr) target = focused_;
  HandlerScope scope(*this);
  if (on.KeyPress) on.KeyPress(keyAscii);
  if (keyAscii != 0 && target != nullptr && target->on.KeyPress) target->on.KeyPress(keyAscii);
  return keyAscii != 0;
}

void Form::SetView(std::unique_ptr<FormView> view) { view_ = std::move(view); }

void Form::Unregister(Control* control) {
  if (focused_ == control) focused_ = nullptr;
  controls_.erase(std::remove(controls_.begin(), controls_.end(), control), controls_.end());
}

void Form::MoveFocus(Control* to) {
  if (focused_ == to) return;
  HandlerScope scope(*this);
  Control* from = focused_;
  // No control holds the focus while the old one hears of its loss; when its handler
  // sends the focus elsewhere, that stands.
  focused_ = nullptr;
  if (from != nullptr && from->on.LostFocus) from->on.LostFocus();
  if (focused_ != nullptr) return;
  focused_ = to;
  if (to == nullptr) return;
  to->Notify(Property::Focus);
  if (to->on.GotFocus) to->on.GotFocus();
}

void Form::Notify(FormProperty property) {
  if (view_ != nullptr) view_->Update(property);
}

HandlerScope::HandlerScope(Form& form) : form_(form) { ++form_.busy_; }

HandlerScope::~HandlerScope() {
  if (--form_.busy_ == 0 && form_.unloaded_) Forms().Reap();
}

}  // namespace dpm
