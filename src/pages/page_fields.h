#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "link/globals.h"
#include "link/image_access.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "setup/image_map.h"

// What the three setup pages share: lists and check boxes that stand for one field of the
// setup image each, the road from a value box to the value entry dialog, and the moves
// between the pages and the main menu. A page fills its controls from the image when it
// becomes active, with its PageReady false; the controls' clicks write the image at once,
// but only while PageReady is true, since filling a control raises its click too.
namespace dpm {

// The value of a field as the image holds it, and its replacement.
int16_t ReadFieldValue(const ImageField& field);
void WriteFieldValue(const ImageField& field, int16_t value);

// Refills a list and selects an entry. A stored value that has no entry (a rate of 7, a
// decimal point code of 0 or 7) leaves the list showing none: nothing is written back, so
// the image keeps those bits until the user picks an entry of the list.
template <class Texts>
void FillList(ComboBox& combo, const Texts& texts, int selected) {
  combo.Clear();
  for (const auto& text : texts) combo.AddItem(std::string(text));
  combo.SetListIndex(selected);
}

// A list of one field's texts, showing the value the image holds.
void FillFromField(ComboBox& combo, std::string_view name);

// A check box of one field: ticked when the bit is 1, or, for the tare and data sheet boxes,
// when it is 0.
void FillFromField(CheckBox& box, std::string_view name);
int16_t CheckBoxBit(const ImageField& field, int boxValue);

// A list that stands for one image field: a pick writes the field, then sets the shadow
// the program keeps of it, if any, and runs what must follow, if anything.
template <class Page>
struct FieldList {
  ComboBox Page::*combo;
  std::string_view field;  // the image field, by its name in the image map
  int16_t helpContext;     // stored when the list gets the focus
  void (Page::*after)() = nullptr;
  int16_t Globals::*shadow = nullptr;
};

// A check box that stands for one bit of the image.
template <class Page>
struct FieldCheck {
  CheckBox Page::*box;
  std::string_view field;
  int16_t helpContext;
  void (Page::*after)() = nullptr;
};

// Attaches the click and focus handlers of a page's field lists. The table must outlive
// the page: the handlers keep references into it.
template <class Page>
void ConnectFieldLists(Page& page, std::span<const FieldList<Page>> lists) {
  for (const FieldList<Page>& list : lists) {
    ComboBox& combo = page.*list.combo;
    combo.on.Click = [&page, &list] {
      if (!page.PageReady) return;
      const ImageField& field = FindField(list.field);
      const auto value = static_cast<int16_t>((page.*list.combo).ListIndex() + field.firstValue);
      WriteFieldValue(field, value);
      if (list.shadow != nullptr) g.*list.shadow = value;
      if (list.after != nullptr) (page.*list.after)();
    };
    combo.on.GotFocus = [&list] { g.HelpContext = list.helpContext; };
  }
}

template <class Page>
void ConnectFieldChecks(Page& page, std::span<const FieldCheck<Page>> checks) {
  for (const FieldCheck<Page>& check : checks) {
    CheckBox& box = page.*check.box;
    box.on.Click = [&page, &check] {
      if (!page.PageReady) return;
      const ImageField& field = FindField(check.field);
      WriteFieldValue(field, CheckBoxBit(field, (page.*check.box).Value()));
      if (check.after != nullptr) (page.*check.after)();
    };
    box.on.GotFocus = [&check] { g.HelpContext = check.helpContext; };
  }
}

// A value box that opens the value entry dialog on a field.
template <class Page>
struct ValueBox {
  TextBox Page::*box;
  std::string_view field;  // the image field; the dialog takes its entry format and position
  int16_t helpContext;
};

// The click of a value box: the box's text, the entry format and the digit position go to
// the value entry dialog, which writes the image and the box when the user accepts. The
// dialog is not modal: this returns at once, and the focus moves to `park` so that the box
// never keeps the caret.
void OpenValueBox(TextBox& box, int16_t format, int16_t position, int16_t side, Control& park);

template <class Page>
void ConnectValueBoxes(Page& page, std::span<const ValueBox<Page>> boxes, int16_t side) {
  for (const ValueBox<Page>& row : boxes) {
    TextBox& box = page.*row.box;
    box.on.Click = [&page, &row, side] {
      const ImageField& field = FindField(row.field);
      OpenValueBox(page.*row.box, field.entryFormat, field.position, side, page.cmdMMenu);
    };
    box.on.GotFocus = [&row] { g.HelpContext = row.helpContext; };
  }
}

// The text of a value field as the pages show it, with the decimal point its field takes.
std::string ValueFieldText(const ImageField& field);

// Moves from one page to another: the next page rebuilds itself from the image when it
// becomes active, whatever the value entry dialog did before.
void GoToPage(Form& from, Form& to);

// Back to the main menu; the page stays loaded, and keeps its state, until the next visit.
void BackToMainMenu(Form& from);

}  // namespace dpm
