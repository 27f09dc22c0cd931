#include "pages/scaling.h"

#include <array>

#include "link/globals.h"
#include "link/image_access.h"
#include "pages/page_fields.h"
#include "setup/image_map.h"

namespace dpm {
namespace {

int16_t ReadFlag(std::string_view name) { return ReadFieldValue(FindField(name)); }

void WriteFlag(std::string_view name, int16_t value) { WriteFieldValue(FindField(name), value); }

constexpr std::array<ScaleBox, 6> kScaleBoxes = {{
    {&SetupPage1::txtScale, &SetupPage1::fraScale, "Scale", ScaleGroup::ScaleOffset, 1326},
    {&SetupPage1::txtOffset, &SetupPage1::fraOffset, "Offset", ScaleGroup::ScaleOffset, 1327},
    {&SetupPage1::txtLoIn, &SetupPage1::fraLoIn, "LowIn", ScaleGroup::InputCoord, 1328},
    {&SetupPage1::txtLoRd, &SetupPage1::fraLoRd, "LowRead", ScaleGroup::ReadingCoord, 1328},
    {&SetupPage1::txtHiIn, &SetupPage1::fraHiIn, "HighIn", ScaleGroup::InputCoord, 1328},
    {&SetupPage1::txtHiRd, &SetupPage1::fraHiRd, "HighRead", ScaleGroup::ReadingCoord, 1328},
}};

// The dialog stands high on the screen, clear of the scaling frame at the foot of the page.
constexpr int16_t kEntrySide = 0;

}  // namespace

ScaleMethodChoice ReadScaleMethod() {
  if (ReadFlag("ReadingCoord") == 1) return ScaleMethodChoice::ReadingCoord;
  if (ReadFlag("InputCoord") == 1) return ScaleMethodChoice::Coordinates;
  return ScaleMethodChoice::ScaleOffset;
}

void WriteScaleMethod(ScaleMethodChoice choice) {
  switch (choice) {
    case ScaleMethodChoice::ScaleOffset:
      WriteFlag("InputCoord", 0);
      WriteFlag("ReadingCoord", 0);
      break;
    case ScaleMethodChoice::Coordinates:
      WriteFlag("InputCoord", 1);
      WriteFlag("ReadingCoord", 0);
      break;
    case ScaleMethodChoice::ReadingCoord:
      WriteFlag("ReadingCoord", 1);
      break;
  }
}

std::span<const ScaleBox> ScaleBoxes() { return kScaleBoxes; }

EntryTarget EntryTargetOf(const ScaleBox& box, bool customCurveInForce) {
  const bool rd0 = customCurveInForce && box.box == &SetupPage1::txtLoIn;
  const ImageField& field = FindField(rd0 ? "CustomCurveRd0" : box.field);
  return {field.entryFormat, field.position};
}

// The page's side of scaling.

void SetupPage1::ConnectScaling() {
  optSclOff.on.GotFocus = [this] { optSclOff_GotFocus(); };
  optCoord.on.GotFocus = [this] { optCoord_GotFocus(); };
  optRdCoord.on.GotFocus = [this] { optRdCoord_GotFocus(); };
  for (const ScaleBox& row : kScaleBoxes) {
    TextBox& box = this->*row.box;
    box.on.Click = [this, &row] { ValueBox_Click(row); };
    box.on.GotFocus = [&row] { g.HelpContext = row.helpContext; };
  }
}

void SetupPage1::ScaleMethod() {
  const ScaleMethodChoice method = ReadScaleMethod();
  SclOffOn = method == ScaleMethodChoice::ScaleOffset;
  RdCoordOn = method != ScaleMethodChoice::ScaleOffset;
  InCoordOn = method == ScaleMethodChoice::Coordinates;
  switch (method) {
    case ScaleMethodChoice::ScaleOffset:
      optSclOff.SetValue(true);
      break;
    case ScaleMethodChoice::Coordinates:
      optCoord.SetValue(true);
      break;
    case ScaleMethodChoice::ReadingCoord:
      optRdCoord.SetValue(true);
      break;
  }
  ScaleOffEnable();
}

void SetupPage1::ScaleOffEnable() {
  for (const ScaleBox& row : kScaleBoxes) {
    const bool on = row.group == ScaleGroup::ScaleOffset  ? SclOffOn
                    : row.group == ScaleGroup::InputCoord ? InCoordOn
                                                          : RdCoordOn;
    (this->*row.frame).SetEnabled(on);
    (this->*row.box).SetEnabled(on);
  }
}

void SetupPage1::Get1Text() {
  for (const ScaleBox& row : kScaleBoxes) (this->*row.box).SetText(ValueFieldText(FindField(row.field)));
  g.CustomCurveRd0Text = ValueFieldText(FindField("CustomCurveRd0"));
}

// The method options act when they get the focus. Each marks the page ready first, since
// the user may reach one while the page is still being filled.

void SetupPage1::optSclOff_GotFocus() {
  PageReady = true;
  WriteScaleMethod(ScaleMethodChoice::ScaleOffset);
  ScaleMethod();
  // Scale and offset is also what a temperature meter or a custom curve forces: the rules
  // restore what those take away.
  Rules1();
  g.HelpContext = kScaleMethodHelp;
}

void SetupPage1::optCoord_GotFocus() {
  PageReady = true;
  WriteScaleMethod(ScaleMethodChoice::Coordinates);
  ScaleMethod();
  g.HelpContext = kScaleMethodHelp;
}

void SetupPage1::optRdCoord_GotFocus() {
  PageReady = true;
  WriteScaleMethod(ScaleMethodChoice::ReadingCoord);
  ScaleMethod();
  g.HelpContext = kScaleMethodHelp;
}

// The value boxes take no typing: a click opens the value entry dialog on the field, and
// the dialog writes the image and the box when the user accepts.
void SetupPage1::ValueBox_Click(const ScaleBox& row) {
  const EntryTarget target = EntryTargetOf(row, g.CustomCurveInForce == 1);
  OpenValueBox(this->*row.box, target.format, target.position, kEntrySide, cmdMMenu);
}

}  // namespace dpm
