#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/forms/control.h"

namespace dpm {

// What a form's view is told has changed.
enum class FormProperty { Caption, Visible, Geometry, Active };

// The screen side of one form: the binder's window, or nothing in tests.
class FormView {
 public:
  virtual ~FormView() = default;
  virtual void Update(FormProperty property) = 0;
};

// Why a form is being unloaded, as the QueryUnload and Unload handlers are told.
enum class UnloadMode { FormControlMenu = 0, Code = 1 };

struct FormEvents {
  std::function<void()> Load;
  std::function<void()> Activate;
  std::function<void()> Deactivate;
  // The form's key handlers see every key before the focused control does.
  std::function<void(int& keyCode, int shift)> KeyDown;
  std::function<void(int& keyAscii)> KeyPress;
  // Setting `cancel` to a value other than 0 keeps the form loaded.
  std::function<void(int& cancel, UnloadMode mode)> QueryUnload;
  std::function<void(int& cancel)> Unload;
};

// A screen. A screen class derives from Form, declares its controls as members (each one
// registers itself here) and attaches its handlers in its constructor. Forms are made and
// found through FormManager (Forms().Use<T>()), which creates one on first use and runs
// its Load handler; Unload destroys it, and the next use starts from scratch.
//
// A screen class gives its name as `static constexpr const char* kName = "frmSetup1";`.
class Form {
 public:
  Form(std::string name, std::string caption);
  virtual ~Form();
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  const std::string& Name() const { return name_; }
  const std::string& Caption() const { return caption_; }
  void SetCaption(const std::string& caption);

  // Position and size in twips; the view gives the design values.
  int Left() const { return left_; }
  int Top() const { return top_; }
  int Width() const { return width_; }
  int Height() const { return height_; }
  void Move(int left, int top);
  void SetTop(int top) { Move(left_, top); }
  void SetLeft(int left) { Move(left, top_); }
  void SetDesignGeometry(int left, int top, int width, int height);

  bool Visible() const { return visible_; }
  bool Modal() const { return modal_; }
  bool IsActive() const;
  bool IsUnloaded() const { return unloaded_; }

  // Shows the form and makes it the active one; Activate runs when it was not already.
  void Show();
  // Shows the form modally: returns when the form is hidden or unloaded, serving events
  // in the meantime.
  void ShowModal();
  // Hides the form; when it was the active one, the form that was active before it and is
  // still visible becomes active.
  void Hide();
  // Unloads the form (QueryUnload and Unload may cancel); the next use creates it anew.
  void Unload();
  // The user closed the window.
  void UserClose();

  FormEvents on;

  const std::vector<Control*>& Controls() const { return controls_; }
  // The control whose widget has this name ("chkLock_5"), or nullptr.
  Control* FindControl(const std::string& objectName) const;
  Control* FocusedControl() const { return focused_; }

  // Key handling as the view reports it: the form's handlers first, then the focused
  // control's (or `target`'s). False when a handler swallowed the key.
  bool UserKeyDown(Control* target, int keyCode, int shift);
  bool UserKeyPress(Control* target, int keyAscii);

  void SetView(std::unique_ptr<FormView> view);
  FormView* View() const { return view_.get(); }

 private:
  friend class Control;
  friend class FormManager;
  friend class HandlerScope;

  void Register(Control* control) { controls_.push_back(control); }
  void Unregister(Control* control);
  void MoveFocus(Control* to);
  void Notify(FormProperty property);
  bool RunUnloadHandlers(UnloadMode mode);

  std::string name_;
  std::string caption_;
  int left_ = 0, top_ = 0, width_ = 0, height_ = 0;
  bool visible_ = false;
  bool modal_ = false;
  bool unloading_ = false;
  bool unloaded_ = false;
  int busy_ = 0;  // handlers of this form that are running
  std::vector<Control*> controls_;
  Control* focused_ = nullptr;
  std::unique_ptr<FormView> view_;
};

// Keeps a form alive while one of its handlers runs; a form unloaded meanwhile is
// destroyed when the last of them returns.
class HandlerScope {
 public:
  explicit HandlerScope(Form& form);
  ~HandlerScope();
  HandlerScope(const HandlerScope&) = delete;
  HandlerScope& operator=(const HandlerScope&) = delete;

 private:
  Form& form_;
};

}  // namespace dpm
