#include "platform/forms/controls.h"

#include <algorithm>

#include "platform/clock.h"
#include "platform/faults.h"
#include "platform/forms/form.h"
#include "platform/services.h"

namespace dpm {

CaptionedControl::CaptionedControl(Form& owner, ControlKind kind, std::string name, std::string caption,
                                   Control* container, int index)
    : Control(owner, kind, std::move(name), container, index), caption_(std::move(caption)) {}

void CaptionedControl::SetCaption(const std::string& caption) {
  if (caption == caption_) return;
  caption_ = caption;
  Notify(Property::Caption);
}

// Text box.

void TextBox::SetText(const std::string& text) {
  if (text == text_) return;
  text_ = text;
  selStart_ = 0;
  selLength_ = 0;
  Notify(Property::Text);
  RaiseChange();
}

void TextBox::SetSelStart(int start) {
  selStart_ = std::clamp(start, 0, static_cast<int>(text_.size()));
  selLength_ = 0;
  Notify(Property::Selection);
}

void TextBox::SetSelLength(int length) {
  selLength_ = std::clamp(length, 0, static_cast<int>(text_.size()) - selStart_);
  Notify(Property::Selection);
}

void TextBox::UserSetText(const std::string& text) {
  if (text == text_ || !AcceptsUser()) return;
  text_ = text;
  RaiseChange();
}

void TextBox::UserSetSelection(int start, int length) {
  selStart_ = start;
  selLength_ = length;
}

// Lists.

void ListControl::Clear() {
  items_.clear();
  listIndex_ = -1;
  editText_.clear();
  Notify(Property::List);
}

void ListControl::AddItem(const std::string& text, int at) {
  if (at < 0 || at > ListCount()) at = ListCount();
  items_.insert(items_.begin() + at, text);
  if (listIndex_ >= at) ++listIndex_;
  Notify(Property::List);
}

void ListControl::RemoveItem(int at) {
  if (at < 0 || at >= ListCount()) {
    throw IndexFault("Invalid procedure call: " + ObjectName() + " has no entry " + std::to_string(at));
  }
  items_.erase(items_.begin() + at);
  if (listIndex_ == at) {
    listIndex_ = -1;
  } else if (listIndex_ > at) {
    --listIndex_;
  }
  Notify(Property::List);
}

std::string ListControl::List(int i) const {
  if (i < 0 || i >= ListCount()) return {};
  return items_[static_cast<std::size_t>(i)];
}

void ListControl::SetListIndex(int index) {
  if (index < -1 || index >= ListCount()) {
    // An entry that does not exist: the list shows none, and nothing is picked.
    if (listIndex_ == -1) return;
    listIndex_ = -1;
    Notify(Property::ListIndex);
    return;
  }
  if (index == listIndex_) return;
  listIndex_ = index;
  Notify(Property::ListIndex);
  RaiseClick();
}

std::string ListControl::Text() const { return listIndex_ >= 0 ? List(listIndex_) : editText_; }

void ListControl::UserSelect(int index) {
  if (index < -1 || index >= ListCount() || index == listIndex_ || !AcceptsUser()) return;
  listIndex_ = index;
  RaiseClick();
}

void ComboBox::UserSetText(const std::string& text) {
  editText_ = text;
  RaiseChange();
}

void ComboBox::UserDropDown() {
  if (AcceptsUser()) Raise(on.DropDown);
}

// Check box and option button.

void CheckBox::SetValue(int value) {
  if (value < kUnchecked || value > kGrayed) {
    throw RuntimeFault("Invalid property value: " + std::to_string(value) + " for " + ObjectName());
  }
  if (value == value_) return;
  value_ = value;
  Notify(Property::Value);
  RaiseClick();
}

void CheckBox::UserSetValue(int value) {
  if (value == value_ || !AcceptsUser()) return;
  value_ = value;
  RaiseClick();
}

void OptionButton::SetValue(bool on) {
  if (on == value_) return;
  if (!on) {
    value_ = false;
    Notify(Property::Value);
    return;
  }
  TurnOn();
  RaiseClick();
}

void OptionButton::UserChoose() {
  if (value_ || !AcceptsUser()) return;
  TurnOn();
  RaiseClick();
}

void OptionButton::TurnOn() {
  for (Control* c : Owner().Controls()) {
    if (c == this || c->Kind() != ControlKind::OptionButton || c->Container() != Container()) continue;
    auto* other = static_cast<OptionButton*>(c);
    if (other->value_) {
      other->value_ = false;
      other->Notify(Property::Value);
    }
  }
  value_ = true;
  Notify(Property::Value);
}

// Menu item.

void MenuItem::SetChecked(bool checked) {
  if (checked == checked_) return;
  checked_ = checked;
  Notify(Property::Checked);
}

void MenuItem::UserClick() {
  if (IsSeparator() || !AcceptsUser()) return;
  RaiseClick();
}

// Progress bar.

void ProgressBar::SetRange(int min, int max) {
  min_ = min;
  max_ = std::max(min, max);
  value_ = std::clamp(value_, min_, max_);
  Notify(Property::Range);
}

void ProgressBar::SetValue(int value) {
  if (value < min_ || value > max_) {
    throw RuntimeFault("Invalid property value: " + std::to_string(value) + " for " + ObjectName());
  }
  if (value == value_) return;
  value_ = value;
  Notify(Property::Value);
}

// Timer.

Timer::Timer(Form& owner, std::string name, int intervalMs, bool enabled)
    : Control(owner, ControlKind::Timer, std::move(name)), interval_(intervalMs) {
  SetVisible(false);
  if (enabled) {
    Restart();
  } else {
    SetEnabled(false);
  }
}

void Timer::SetInterval(int ms) {
  if (ms == interval_) return;
  interval_ = std::max(0, ms);
  Restart();
}

void Timer::Restart() {
  Clock* clock = Platform().clock;
  dueMs_ = (clock != nullptr ? clock->Milliseconds() : 0) + static_cast<uint32_t>(interval_);
  Notify(Property::Timing);
}

void Timer::Fire() {
  if (Enabled() && interval_ > 0) Raise(on.Timer);
}

void Timer::Poll(uint32_t nowMs) {
  if (!Enabled() || interval_ <= 0 || static_cast<int32_t>(nowMs - dueMs_) < 0) return;
  dueMs_ = nowMs + static_cast<uint32_t>(interval_);
  Fire();
}

}  // namespace dpm
