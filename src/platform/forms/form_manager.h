#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/forms/form.h"

namespace dpm {

// The loaded forms, which of them is active, and the end of the program.
//
// The active form is decided here and nowhere else: Show makes a form active; when the
// active form is hidden or unloaded, the visible form that was active most recently
// becomes active again. A form that becomes active runs its Activate handler. The user's
// click on another window reaches here through UserActivate, and is refused while a
// modal form is up.
class FormManager {
 public:
  using ViewFactory = std::function<std::unique_ptr<FormView>(Form&)>;

  // The form of class T (named T::kName), created and loaded on first use.
  template <class T>
  T& Use() {
    if (Form* form = Find(T::kName)) return static_cast<T&>(*form);
    return static_cast<T&>(Adopt(std::make_unique<T>()));
  }
  // The form of class T when it is loaded, else nullptr.
  template <class T>
  T* FindLoaded() {
    return static_cast<T*>(Find(T::kName));
  }

  // A loaded form by name, or nullptr.
  Form* Find(const std::string& name) const;
  bool IsLoaded(const std::string& name) const { return Find(name) != nullptr; }
  // Unloads the form of that name when it is loaded; a form that is not loaded, or not
  // part of the program, is skipped.
  void Unload(const std::string& name);
  std::vector<Form*> LoadedForms() const;

  Form* Active() const { return active_; }
  // The user brought the window of `form` to the front.
  void UserActivate(Form& form);

  // The view of each form from now on (the Qt binder); without one, forms have none.
  void SetViewFactory(ViewFactory factory) { viewFactory_ = std::move(factory); }

  // Fires the timers whose interval has passed by the program's clock (used without views).
  void ServeTimers();

  // Ends the program: modal waits return, and the end action (set by main) runs.
  void End();
  bool Ended() const { return ended_; }
  void SetEndAction(std::function<void()> action) { endAction_ = std::move(action); }

  // Drops every form without running its handlers, forgets the view factory and the end:
  // a fresh start for each test.
  void Reset();

 private:
  friend class Form;
  friend class HandlerScope;

  Form& Adopt(std::unique_ptr<Form> form);
  void Activate(Form& form);
  void Shown(Form& form);
  void Hidden(Form& form);
  void Remove(Form& form);
  void Reap();
  bool ModalBlocks(const Form& form) const;

  std::vector<std::unique_ptr<Form>> loaded_;
  std::vector<std::unique_ptr<Form>> unloaded_;  // waiting for their handlers to return
  std::vector<Form*> history_;                   // activation order, most recent last
  Form* active_ = nullptr;
  ViewFactory viewFactory_;
  std::function<void()> endAction_;
  bool ended_ = false;
};

FormManager& Forms();

}  // namespace dpm
