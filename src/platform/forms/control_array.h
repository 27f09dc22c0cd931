#pragma once

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/faults.h"
#include "platform/forms/control.h"

namespace dpm {

// The events of a control array: each handler is told the index of the element.
struct ArrayEvents {
  std::function<void(int index)> Click;
  std::function<void(int index)> DblClick;
  std::function<void(int index)> GotFocus;
  std::function<void(int index)> LostFocus;
  std::function<void(int index)> Change;
  std::function<void(int index)> SelChange;
  std::function<void(int index)> Timer;
  std::function<void(int index, int& keyCode, int shift)> KeyDown;
  std::function<void(int index, int& keyCode, int shift)> KeyUp;
  std::function<void(int index, int& keyAscii)> KeyPress;
};

// Controls of one kind under one name, told apart by index (chkLock(0..17) is the
// widgets chkLock_0 to chkLock_17). An index outside first..last is an IndexFault.
template <class T>
class ControlArray {
 public:
  ControlArray(Form& owner, const std::string& name, int first, int last, Control* container = nullptr)
      : first_(first) {
    for (int i = first; i <= last; ++i) {
      if constexpr (std::is_constructible_v<T, Form&, std::string, std::string, Control*, int>) {
        elements_.push_back(std::make_unique<T>(owner, name, std::string{}, container, i));
      } else {
        elements_.push_back(std::make_unique<T>(owner, name, container, i));
      }
      Forward(*elements_.back(), i);
    }
  }
  ControlArray(const ControlArray&) = delete;
  ControlArray& operator=(const ControlArray&) = delete;

  T& operator[](int index) { return *elements_.at(Slot(index)); }
  const T& operator[](int index) const { return *elements_.at(Slot(index)); }
  int First() const { return first_; }
  int Last() const { return first_ + static_cast<int>(elements_.size()) - 1; }
  int Count() const { return static_cast<int>(elements_.size()); }

  ArrayEvents on;

 private:
  std::size_t Slot(int index) const {
    if (index < first_ || index > Last()) {
      throw IndexFault("Control array element " + std::to_string(index) + " does not exist");
    }
    return static_cast<std::size_t>(index - first_);
  }

  void Forward(T& element, int i) {
    ControlEvents& e = element.on;
    e.Click = [this, i] {
      if (on.Click) on.Click(i);
    };
    e.DblClick = [this, i] {
      if (on.DblClick) on.DblClick(i);
    };
    e.GotFocus = [this, i] {
      if (on.GotFocus) on.GotFocus(i);
    };
    e.LostFocus = [this, i] {
      if (on.LostFocus) on.LostFocus(i);
    };
    e.Change = [this, i] {
      if (on.Change) on.Change(i);
    };
    e.SelChange = [this, i] {
      if (on.SelChange) on.SelChange(i);
    };
    e.Timer = [this, i] {
      if (on.Timer) on.Timer(i);
    };
    e.KeyDown = [this, i](int& keyCode, int shift) {
      if (on.KeyDown) on.KeyDown(i, keyCode, shift);
    };
    e.KeyUp = [this, i](int& keyCode, int shift) {
      if (on.KeyUp) on.KeyUp(i, keyCode, shift);
    };
    e.KeyPress = [this, i](int& keyAscii) {
      if (on.KeyPress) on.KeyPress(i, keyAscii);
    };
  }

  int first_;
  std::vector<std::unique_ptr<T>> elements_;
};

}  // namespace dpm
