#include "readings/plot_chart.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "link/globals.h"
#include "link/transport.h"
#include "platform/dialogs.h"
#include "platform/events.h"
#include "platform/faults.h"
#include "platform/numeric.h"
#include "platform/serial.h"
#include "platform/services.h"
#include "setup/main_menu.h"

namespace dpm {
namespace {

constexpr const char* kBlankBox = "         ";

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

int DecimalsOf(std::string_view text) {
  const std::size_t point = text.find('.');
  return point == std::string_view::npos ? 0 : static_cast<int>(text.size() - (point + 1));
}

void Hourglass(bool on) {
  if (Dialogs* dialogs = Platform().dialogs) dialogs->SetHourglass(on);
}

}  // namespace

float ScaleNumber(std::string_view text) { return static_cast<float>(LeadingNumber(Trimmed(text))); }

std::string ScaleFormat(std::string_view midText, std::string_view smallText) {
  const int decimals = std::max(DecimalsOf(Trimmed(midText)), DecimalsOf(Trimmed(smallText)));
  return "0." + std::string(static_cast<std::size_t>(std::clamp(decimals, 0, 6)), '0');
}

int16_t ToCoordinate(double value) {
  constexpr double kLow = std::numeric_limits<int16_t>::min();
  constexpr double kHigh = std::numeric_limits<int16_t>::max();
  if (std::isnan(value)) return 0;
  return ToInt16(std::clamp(value, kLow, kHigh));
}

ChartScreen::ChartScreen(const char* name, const char* title, const char* countBox, const char* countLabel,
                         const char* countCaption)
    : Form(name, title), countBox_(*this, countBox), countLabel_(*this, countLabel, countCaption) {
  Picture1.SetBackColor(kWhite);
  on.Activate = [this] { Form_Activate(); };
  on.Unload = [this](int& cancel) { Form_Unload(cancel); };
  cmdNewScale.on.GotFocus = [this] { cmdNewScale_GotFocus(); };
  cmdOK.on.Click = [this] { cmdOK_Click(); };
  cmdEnd.on.Click = [this] { cmdEnd_Click(); };
  cmdSave.on.Click = [this] { cmdSave_Click(); };
  cmdSaveReadings.on.Click = [this] { cmdSaveReadings_Click(); };
  cmdPrint.on.Click = [this] { cmdPrint_Click(); };
  cmdPause.on.Click = [this] { cmdPause_Click(); };
  cmdContinue.on.Click = [this] { cmdContinue_Click(); };
  // Enter moves on through the scale boxes to OK.
  const auto enterMovesTo = [](Control& next) {
    return [&next](int& keyAscii) {
      if (keyAscii != kKeyReturn) return;
      keyAscii = 0;
      next.SetFocus();
    };
  };
  txtMidVal.on.KeyPress = enterMovesTo(txtSmallVal);
  txtSmallVal.on.KeyPress = enterMovesTo(countBox_);
  countBox_.on.KeyPress = enterMovesTo(cmdOK);
}

ChartScreen::~ChartScreen() = default;

void ChartScreen::SendStreamCommand(const char* code) {
  SendBody(code);
}

// The meter starts talking at once; nothing is drawn before a scale is given, and the focus
// on New Scale asks for one.
void ChartScreen::Form_Activate() {
  if (started_) return;
  started_ = true;
  SendStreamCommand("A0");
  if (SerialPort* line = Platform().meterLink; line != nullptr && line->PortOpen()) line->SetRTSEnable(true);
  cmdNewScale.SetFocus();
}

void ChartScreen::Form_Unload(int& /*cancel*/) {
  if (!ending_) cmdEnd_Click();
}

// New Scale acts when it gets the focus, and sends the focus on at once: its click then
// never comes.
void ChartScreen::cmdNewScale_GotFocus() {
  Picture1.Cls();
  Readings().ReadingPaused = 1;
  for (TextBox* box : {&txtMidVal, &txtSmallVal, &countBox_}) box->SetText(kBlankBox);
  cmdOK.SetEnabled(true);
  ShowScaleGroup(true);
  txtMidVal.SetFocus();
}

// The focus leaves OK for the picture before OK goes away: the window would otherwise hand
// it on to the next button, New Scale, which would ask for a scale again at once.
void ChartScreen::cmdOK_Click() {
  Picture1.SetFocus();
  Readings().ReadingPaused = 0;
  cmdOK.SetEnabled(false);
  ShowScaleGroup(false);
  StartLoop();
}

void ChartScreen::ShowScaleGroup(bool shown) {
  for (Control* control : std::initializer_list<Control*>{&txtMidVal, &txtSmallVal, &countBox_, &cmdOK, &lblMidVal,
                                                          &lblSmallVal, &countLabel_})
    control->SetVisible(shown);
}

void ChartScreen::StartCapture() {
  SerialPort* line = Platform().meterLink;
  if (line == nullptr) return;
  if (!capture_) capture_ = std::make_unique<Capture>(*line, *this, Capture::Kind::Chart);
  if (line->PortOpen()) capture_->Start();
}

std::optional<Capture::Hold> ChartScreen::HoldCapture() {
  if (!capture_) return std::nullopt;
  return std::optional<Capture::Hold>(std::in_place, *capture_);
}

// The meter is told to stop but not waited for; the request line stays raised.
void ChartScreen::cmdEnd_Click() {
  ending_ = true;
  if (capture_) capture_->Stop();
  SendStreamCommand("A1");
  if (EventPump* events = Platform().events) events->Serve();
  Picture1.Cls();
  Picture1.SetAutoRedraw(false);
  Hourglass(true);
  frmMMenu().Show();
  Hourglass(false);
  Unload();
}

// Cancel, or a file that cannot be written, leaves without a word.
void ChartScreen::cmdSave_Click() {
  Dialogs* dialogs = Platform().dialogs;
  if (dialogs == nullptr) return;
  const std::optional<std::string> path = dialogs->SaveFileName("Save Graph As", ".BMP files (*.BMP)|*.BMP");
  if (!path) return;
  try {
    Picture1.SaveImage(*path);
  } catch (const FileFault&) {
  }
}

void ChartScreen::cmdSaveReadings_Click() { SaveReadingsAs(saved_, Caption()); }

void ChartScreen::cmdPrint_Click() {
  if (Dialogs* dialogs = Platform().dialogs) dialogs->PrintForm(*this);
}

void ChartScreen::OnRecord(std::string_view record) {
  KeepReading(saved_, record);
  const std::optional<float> value = RecordNumber(record);
  if (value) OnNumber(*value);
}

void ChartScreen::PrintAt(double x, double y, const std::string& text) {
  Picture1.SetCurrentX(x);
  Picture1.SetCurrentY(y);
  Picture1.Print(text);
}

}  // namespace dpm
