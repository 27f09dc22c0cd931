#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/forms/control.h"

// The plain controls. Grid and PictureBox have headers of their own.
namespace dpm {

// A control with a caption: label, frame, button, check box, option button, menu item.
class CaptionedControl : public Control {
 public:
  CaptionedControl(Form& owner, ControlKind kind, std::string name, std::string caption, Control* container, int index);
  const std::string& Caption() const { return caption_; }
  void SetCaption(const std::string& caption);

 private:
  std::string caption_;
};

// A text that the user cannot edit; it can take a click.
class Label : public CaptionedControl {
 public:
  Label(Form& owner, std::string name, std::string caption = {}, Control* container = nullptr, int index = -1)
      : CaptionedControl(owner, ControlKind::Label, std::move(name), std::move(caption), container, index) {}
};

// A frame: a captioned group. Disabling or hiding it disables or hides what it holds.
class Frame : public CaptionedControl {
 public:
  Frame(Form& owner, std::string name, std::string caption = {}, Control* container = nullptr, int index = -1)
      : CaptionedControl(owner, ControlKind::Frame, std::move(name), std::move(caption), container, index) {}
};

class CommandButton : public CaptionedControl {
 public:
  CommandButton(Form& owner, std::string name, std::string caption = {}, Control* container = nullptr, int index = -1)
      : CaptionedControl(owner, ControlKind::CommandButton, std::move(name), std::move(caption), container, index) {}
};

// A text box. Setting the text by code raises Change when the text changes, as typing does.
class TextBox : public Control {
 public:
  TextBox(Form& owner, std::string name, Control* container = nullptr, int index = -1)
      : Control(owner, ControlKind::TextBox, std::move(name), container, index) {}

  const std::string& Text() const { return text_; }
  void SetText(const std::string& text);
  // The caret, counted from 0 before the first character, and the length of the selection.
  int SelStart() const { return selStart_; }
  int SelLength() const { return selLength_; }
  void SetSelStart(int start);
  void SetSelLength(int length);

  // The user typed: the text the box now shows.
  void UserSetText(const std::string& text);
  void UserSetSelection(int start, int length);

 private:
  std::string text_;
  int selStart_ = 0;
  int selLength_ = 0;
};

// A list of texts with one selected entry; base of ComboBox and ListBox.
//
// Setting ListIndex by code raises Click when the selection changes, as a pick by the user
// does: code that fills a list must expect its own click handler to run. An index beyond
// the list, or below -1, selects nothing and raises nothing. -1 selects nothing on purpose.
class ListControl : public Control {
 public:
  ListControl(Form& owner, ControlKind kind, std::string name, Control* container, int index)
      : Control(owner, kind, std::move(name), container, index) {}

  void Clear();
  // Adds at the end, or before entry `at`; an `at` beyond the list adds at the end.
  void AddItem(const std::string& text, int at = -1);
  void RemoveItem(int at);
  int ListCount() const { return static_cast<int>(items_.size()); }
  // The text of entry i; an empty text for an index outside the list.
  std::string List(int i) const;
  const std::vector<std::string>& Items() const { return items_; }

  int ListIndex() const { return listIndex_; }
  void SetListIndex(int index);
  // The selected entry's text (or, for an editable combo box, what the user typed).
  std::string Text() const;

  // The user picked entry `index` (-1: none).
  void UserSelect(int index);

 protected:
  std::string editText_;

 private:
  std::vector<std::string> items_;
  int listIndex_ = -1;
};

class ComboBox : public ListControl {
 public:
  ComboBox(Form& owner, std::string name, Control* container = nullptr, int index = -1)
      : ListControl(owner, ControlKind::ComboBox, std::move(name), container, index) {}
  // The user typed into an editable combo box.
  void UserSetText(const std::string& text);
  // The user opens the list.
  void UserDropDown();
};

class ListBox : public ListControl {
 public:
  ListBox(Form& owner, std::string name, Control* container = nullptr, int index = -1)
      : ListControl(owner, ControlKind::ListBox, std::move(name), container, index) {}
};

inline constexpr int kUnchecked = 0;
inline constexpr int kChecked = 1;
inline constexpr int kGrayed = 2;

// A check box. Setting Value by code raises Click when the value changes.
class CheckBox : public CaptionedControl {
 public:
  CheckBox(Form& owner, std::string name, std::string caption = {}, Control* container = nullptr, int index = -1)
      : CaptionedControl(owner, ControlKind::CheckBox, std::move(name), std::move(caption), container, index) {}
  int Value() const { return value_; }
  void SetValue(int value);
  // The user toggled the box.
  void UserSetValue(int value);

 private:
  int value_ = kUnchecked;
};

// An option button. The option buttons of one container (frame or form) form a group in
// which one is on. Turning one on by code turns the others of its group off and raises its
// Click; turning one off raises nothing.
class OptionButton : public CaptionedControl {
 public:
  OptionButton(Form& owner, std::string name, std::string caption = {}, Control* container = nullptr, int index = -1)
      : CaptionedControl(owner, ControlKind::OptionButton, std::move(name), std::move(caption), container, index) {}
  bool Value() const { return value_; }
  void SetValue(bool on);
  // The user chose this option.
  void UserChoose();

 private:
  void TurnOn();
  bool value_ = false;
};

// An entry of the menu bar. A heading has no container; an item has its heading as
// container, so that a disabled heading disables its items. A heading's Click runs when
// the user opens it. A separator is an item with the caption "-".
class MenuItem : public CaptionedControl {
 public:
  MenuItem(Form& owner, std::string name, std::string caption, MenuItem* heading = nullptr, int index = -1)
      : CaptionedControl(owner, ControlKind::MenuItem, std::move(name), std::move(caption), heading, index) {}
  bool Checked() const { return checked_; }
  void SetChecked(bool checked);
  bool IsSeparator() const { return Caption() == "-"; }
  bool IsHeading() const { return Container() == nullptr; }

  // A disabled or hidden item cannot be chosen.
  void UserClick() override;

 private:
  bool checked_ = false;
};

class ProgressBar : public Control {
 public:
  ProgressBar(Form& owner, std::string name, Control* container = nullptr, int index = -1)
      : Control(owner, ControlKind::ProgressBar, std::move(name), container, index) {}
  int Min() const { return min_; }
  int Max() const { return max_; }
  int Value() const { return value_; }
  void SetRange(int min, int max);
  // A value outside Min..Max is an IndexFault, as the toolkit's own bar refuses it.
  void SetValue(int value);

 private:
  int min_ = 0;
  int max_ = 100;
  int value_ = 0;
};

// A timer: while enabled with an interval over 0, raises Timer every interval
// milliseconds. A view drives it with a real timer; without one, FormManager::ServeTimers
// drives it from the program's clock.
class Timer : public Control {
 public:
  Timer(Form& owner, std::string name, int intervalMs = 0, bool enabled = false);
  int Interval() const { return interval_; }
  void SetInterval(int ms);

  // The interval has passed.
  void Fire();
  // Fires when the interval has passed at `nowMs` (used without a view).
  void Poll(uint32_t nowMs);

 protected:
  void EnabledChanged() override { Restart(); }

 private:
  void Restart();
  int interval_;
  uint32_t dueMs_ = 0;
};

}  // namespace dpm
