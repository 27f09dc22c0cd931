#pragma once

#include <cstdint>
#include <functional>
#include <string>

// The controls of the program's screens, without a toolkit. A screen is a Form whose members
// are controls; the screen's handlers are attached to the controls' events. A view (the Qt
// binder, or nothing in tests) shows the controls and reports the user's actions back
// through the User...() functions.
namespace dpm {

class Form;

enum class ControlKind {
  Label,
  TextBox,
  ComboBox,
  ListBox,
  CheckBox,
  OptionButton,
  Frame,
  CommandButton,
  MenuItem,
  Grid,
  PictureBox,
  ProgressBar,
  Timer,
};

const char* KindName(ControlKind kind);

// What a view is told has changed; it reads the new state from the control.
enum class Property {
  Caption,
  Enabled,
  Visible,
  Colors,
  Geometry,
  Focus,
  List,       // entries of a list
  ListIndex,  // selection of a list
  Value,      // check box, option button, progress bar
  Text,       // text box, or the edit text of a combo box
  Selection,  // caret and selection of a text box
  Checked,    // menu item
  Cells,      // a grid's shape, sizes or every cell
  Cell,       // one grid cell: Grid::LastChangedRow/Col
  Drawing,    // a picture's drawing or loaded picture
  Range,      // a progress bar's limits
  Timing,     // a timer's interval or enabling
};

// The screen side of one control.
class ControlView {
 public:
  virtual ~ControlView() = default;
  virtual void Update(Property property) = 0;
};

// Shift state of a key event: 1 shift, 2 control, 4 alt, added together.
inline constexpr int kShiftMask = 1;
inline constexpr int kCtrlMask = 2;
inline constexpr int kAltMask = 4;

// Key codes of key-down events (characters of key-press events are plain character codes).
inline constexpr int kKeyBack = 8;
inline constexpr int kKeyTab = 9;
inline constexpr int kKeyReturn = 13;
inline constexpr int kKeyEscape = 27;
inline constexpr int kKeySpace = 32;
inline constexpr int kKeyPageUp = 33;
inline constexpr int kKeyPageDown = 34;
inline constexpr int kKeyEnd = 35;
inline constexpr int kKeyHome = 36;
inline constexpr int kKeyLeft = 37;
inline constexpr int kKeyUp = 38;
inline constexpr int kKeyRight = 39;
inline constexpr int kKeyDown = 40;
inline constexpr int kKeyInsert = 45;
inline constexpr int kKeyDelete = 46;
inline constexpr int kKeyF1 = 112;

// "Not set": the colour or position the screen's design gives.
inline constexpr int32_t kDesignColor = -1;

// The events a control can raise. A handler left empty is not called. Keys are passed by
// reference: setting the code to 0 swallows the key.
struct ControlEvents {
  std::function<void()> Click;
  std::function<void()> DblClick;
  std::function<void()> GotFocus;
  std::function<void()> LostFocus;
  std::function<void()> Change;
  std::function<void()> SelChange;  // a grid's current cell moved by the user
  std::function<void()> DropDown;   // a combo box's list is about to open
  std::function<void()> Timer;
  std::function<void(int& keyCode, int shift)> KeyDown;
  std::function<void(int& keyCode, int shift)> KeyUp;
  std::function<void(int& keyAscii)> KeyPress;
};

class Control {
 public:
  // `container` is the frame that holds the control (or, for a menu item, its heading);
  // nullptr when the form itself holds it. `index` is the element number inside a control
  // array, -1 outside arrays.
  Control(Form& owner, ControlKind kind, std::string name, Control* container = nullptr, int index = -1);
  virtual ~Control();
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  ControlKind Kind() const { return kind_; }
  const std::string& Name() const { return name_; }
  int Index() const { return index_; }
  // The name of the control's widget: the name, with "_<index>" for an array element.
  std::string ObjectName() const;
  Form& Owner() const { return owner_; }
  Control* Container() const { return container_; }
  // Puts the control into another frame; for a screen's constructor, before any view.
  void SetContainer(Control* container) { container_ = container; }

  bool Enabled() const { return enabled_; }
  void SetEnabled(bool enabled);
  bool Visible() const { return visible_; }
  void SetVisible(bool visible);
  // With the containers: a disabled or hidden frame disables or hides what it holds.
  bool IsEffectivelyEnabled() const;
  bool IsEffectivelyVisible() const;

  int32_t ForeColor() const { return foreColor_; }
  void SetForeColor(int32_t color);
  int32_t BackColor() const { return backColor_; }
  void SetBackColor(int32_t color);

  // Position and size in twips (15 to a pixel), relative to the container. The view gives
  // the design values when it binds; code may move the control.
  int Left() const { return left_; }
  int Top() const { return top_; }
  int Width() const { return width_; }
  int Height() const { return height_; }
  void Move(int left, int top);
  void Move(int left, int top, int width, int height);
  void SetLeft(int left) { Move(left, top_); }
  void SetTop(int top) { Move(left_, top); }
  // The design geometry as the view finds it; no update goes back to the view.
  void SetDesignGeometry(int left, int top, int width, int height);

  // Gives the focus to this control: lost-focus on the form's focused control, then
  // got-focus here. A control that is disabled or hidden, or already focused, is left alone.
  void SetFocus();
  bool HasFocus() const;
  // Whether the control can take the focus at all (labels, frames, menus and timers cannot).
  bool TakesFocus() const;

  ControlEvents on;

  // The user's actions, as the view reports them. A control that is disabled or hidden,
  // or held by a disabled or hidden frame, takes none.
  bool AcceptsUser() const { return IsEffectivelyEnabled() && IsEffectivelyVisible(); }
  virtual void UserClick();
  void UserDblClick();
  void UserFocus();
  // Key down, then key press for a character; false when a handler swallowed the key
  // (set its code to 0), so that the view drops it. The form's own key handlers see each
  // key first.
  bool UserKeyDown(int keyCode, int shift);
  bool UserKeyPress(int keyAscii);
  void UserKeyUp(int keyCode, int shift);

  void AttachView(ControlView* view) { view_ = view; }
  ControlView* View() const { return view_; }

 protected:
  // Called after SetEnabled changed the state.
  virtual void EnabledChanged() {}
  void Notify(Property property);
  // Runs one handler of this control; the form stays alive until the handler returns,
  // even if the handler unloads it.
  void Raise(const std::function<void()>& handler);
  void RaiseClick() { Raise(on.Click); }
  void RaiseChange() { Raise(on.Change); }

 private:
  friend class Form;
  Form& owner_;
  ControlKind kind_;
  std::string name_;
  Control* container_;
  int index_;
  bool enabled_ = true;
  bool visible_ = true;
  int32_t foreColor_ = kDesignColor;
  int32_t backColor_ = kDesignColor;
  int left_ = 0, top_ = 0, width_ = 0, height_ = 0;
  ControlView* view_ = nullptr;
};

}  // namespace dpm
