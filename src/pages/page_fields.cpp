#include "pages/page_fields.h"

#include "panelmenu/value_entry.h"
#include "setup/main_menu.h"
#include "setup/transfer.h"

namespace dpm {

int16_t ReadFieldValue(const ImageField& field) { return ReadField(field.hi, field.lo, field.position); }

void WriteFieldValue(const ImageField& field, int16_t value) { WriteField(field.hi, field.lo, field.position, value); }

void FillFromField(ComboBox& combo, std::string_view name) {
  const ImageField& field = FindField(name);
  FillList(combo, field.texts, ReadFieldValue(field) - field.firstValue);
}

// An inverted box shows 1 less its bit, and writes 1 less its value: the same sum both ways.
int16_t CheckBoxBit(const ImageField& field, int boxValue) {
  return static_cast<int16_t>(field.inverted ? 1 - boxValue : boxValue);
}

void FillFromField(CheckBox& box, std::string_view name) {
  const ImageField& field = FindField(name);
  box.SetValue(CheckBoxBit(field, ReadFieldValue(field)));
}

void OpenValueBox(TextBox& box, int16_t format, int16_t position, int16_t side, Control& park) {
  g.EntryText = box.Text();
  g.EntryFormat = format;
  g.EntryPosition = position;
  g.EntryBox = &box;
  OpenValueEntry(side);
  park.SetFocus();
}

std::string ValueFieldText(const ImageField& field) {
  int16_t format = field.readFormat;
  int16_t ownCode = 0;
  int16_t& dp = field.point == PointSource::Display ? g.DisplayDp
                : field.point == PointSource::Input ? g.InputDp
                                                    : ownCode;
  return ReadValue(format, field.position, dp);
}

void GoToPage(Form& from, Form& to) {
  Hourglass(true);
  g.EntryReturnFlag = 0;
  to.Show();
  from.Hide();
  Hourglass(false);
}

void BackToMainMenu(Form& from) {
  Hourglass(true);
  frmMMenu().Show();
  from.Hide();
  Hourglass(false);
}

}  // namespace dpm
