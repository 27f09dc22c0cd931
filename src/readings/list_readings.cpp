#include "readings/list_readings.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <ctime>

#include "link/globals.h"
#include "link/image_access.h"
#include "link/transport.h"
#include "platform/dialogs.h"
#include "platform/events.h"
#include "platform/faults.h"
#include "platform/file_writing.h"
#include "platform/forms/form_manager.h"
#include "platform/numeric.h"
#include "platform/serial.h"
#include "platform/services.h"
#include "setup/image_positions.h"
#include "setup/main_menu.h"

namespace dpm {
namespace {

constexpr const char* kTitle = "LIST READINGS";
// Room beside the text in each column, in twips.
constexpr double kCellMargin = 90.0;

// A lone start character ends the records and leaves no start character to show: the list
// cannot tell where a record begins.
constexpr const char* kNoStartCharText =
    "The readings cannot be listed: the meter's setup sends transmission characters with a "
    "custom stop character of 0. Give the Cust Stop Char on setup page 3 a value, or set "
    "Transmission Chars to none, and put the setup into the meter.";

bool TranCharsOn() { return ReadField(4, 4, kDisplayByte) == 1; }

std::string IsoTime(std::chrono::system_clock::time_point when) {
  using namespace std::chrono;
  const auto ms = duration_cast<milliseconds>(when.time_since_epoch()).count();
  const std::time_t seconds = static_cast<std::time_t>(ms >= 0 ? ms / 1000 : (ms - 999) / 1000);
  std::tm utc{};
  gmtime_r(&seconds, &utc);
  char text[40];
  std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &utc);
  char fraction[8];
  std::snprintf(fraction, sizeof fraction, ".%03dZ", static_cast<int>(ms - static_cast<long long>(seconds) * 1000));
  return std::string(text) + fraction;
}

std::string CsvField(std::string_view text) {
  std::string field = "\"";
  for (char c : text) {
    if (c == '"') field += '"';
    field += c;
  }
  return field + '"';
}

std::string NumberField(std::string_view text) {
  if (std::none_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; })) return {};
  const std::optional<float> value = RecordNumber(text);
  if (!value) return {};
  char buffer[32];
  const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, *value);
  return error == std::errc() ? std::string(buffer, end) : std::string();
}

void Hourglass(bool on) {
  if (Dialogs* dialogs = Platform().dialogs) dialogs->SetHourglass(on);
}

}  // namespace

std::string ReadingsCsv(const std::deque<ListedReading>& readings) {
  std::string csv = "time,record,number\r\n";
  for (const ListedReading& reading : readings)
    csv += IsoTime(reading.received) + "," + CsvField(reading.text) + "," + NumberField(reading.text) + "\r\n";
  return csv;
}

void KeepReading(std::deque<ListedReading>& readings, std::string_view text) {
  if (readings.size() == kSavedReadingsLimit) readings.pop_front();
  readings.push_back({std::chrono::system_clock::now(), std::string(text)});
}

void SaveReadingsAs(const std::deque<ListedReading>& readings, const std::string& screenTitle) {
  Dialogs* dialogs = Platform().dialogs;
  if (dialogs == nullptr) return;
  const std::optional<std::string> path = dialogs->SaveFileName("Save Readings", "Readings (*.csv)|*.csv");
  if (!path) return;
  try {
    WriteFileKeepingIt(*path, ReadingsCsv(readings));
  } catch (const FileFault& fault) {
    dialogs->MessageBox(MessageIcon::Exclamation, screenTitle, fault.what());
  }
}

ListReadings::ListReadings() : Form(kName, kTitle) {
  picMeasure.SetVisible(false);
  grdList.SetFixedRows(0);
  grdList.SetFixedCols(0);
  grdList.SetRows(kListRows);
  grdList.SetCols(1);
  grdList.SetScrollBars(0);
  on.Activate = [this] { Form_Activate(); };
  on.Unload = [this](int& cancel) { Form_Unload(cancel); };
  cmdPause.on.Click = [this] { cmdPause_Click(); };
  cmdContin.on.Click = [this] { cmdContin_Click(); };
  cmdEnd.on.Click = [this] { cmdEnd_Click(); };
  cmdPrint.on.Click = [this] { cmdPrint_Click(); };
  cmdSave.on.Click = [this] { cmdSave_Click(); };
  grdList.on.Click = [this] { grdList_Click(); };
  tmrShow.on.Timer = [this] { tmrShow_Timer(); };
}

ListReadings::~ListReadings() = default;

void ListReadings::SendStreamCommand(const char* code) {
  SendBody(code);
}

// The meter starts talking at once; the list takes the first whole record to size its
// columns and shows from the one after it.
void ListReadings::Form_Activate() {
  if (started_) return;
  started_ = true;
  SendStreamCommand("A0");
  SerialPort* line = Platform().meterLink;
  if (line == nullptr) return;
  if (line->PortOpen()) line->SetRTSEnable(true);
  ListRow = 0;
  ListCol = 0;
  SetRecordChars();
  if (Readings().RecordStartChar.empty()) {
    if (Dialogs* dialogs = Platform().dialogs) dialogs->MessageBox(MessageIcon::Exclamation, kTitle, kNoStartCharText);
    cmdEnd_Click();
    return;
  }
  capture_ = std::make_unique<Capture>(*line, *this, Capture::Kind::List);
  if (line->PortOpen()) capture_->Start();
}

// Closing the window ends the list as End does; the main menu unloading it after End has
// nothing more to do.
void ListReadings::Form_Unload(int& /*cancel*/) {
  if (!ending_) cmdEnd_Click();
}

// The meter goes on sending; what comes until Continue is dropped.
void ListReadings::cmdPause_Click() {
  grdList.SetFocus();
  Readings().ReadingPaused = 1;
}

void ListReadings::cmdContin_Click() {
  const std::optional<Capture::Hold> hold =
      capture_ ? std::optional<Capture::Hold>(std::in_place, *capture_) : std::nullopt;
  Readings().ReadingPaused = 0;
  grdList.SetFocus();
  SendStreamCommand("A0");
}

// Nothing is waited for: the records still on their way stay in the port until the next
// command clears it.
void ListReadings::cmdEnd_Click() {
  ending_ = true;
  if (capture_) capture_->Stop();
  SendStreamCommand("A1");
  if (SerialPort* line = Platform().meterLink; line != nullptr && line->PortOpen()) line->SetRTSEnable(false);
  if (EventPump* events = Platform().events) events->Serve();
  Hourglass(true);
  frmMMenu().Show();
  Hourglass(false);
  Unload();
}

void ListReadings::cmdPrint_Click() {
  tmrShow_Timer();
  if (Dialogs* dialogs = Platform().dialogs) dialogs->PrintForm(*this);
}

void ListReadings::cmdSave_Click() { SaveReadingsAs(saved_, kTitle); }

void ListReadings::grdList_Click() {
  if (Dialogs* dialogs = Platform().dialogs) dialogs->Beep();
}

void ListReadings::OnMeasuringRecord(std::string_view sample) {
  const int rowHeight = ToInt32(grdList.Height() / static_cast<double>(kListRows));
  for (int row = 0; row < kListRows; ++row) grdList.SetRowHeight(row, rowHeight);
  const double width = picMeasure.TextWidth(std::string(sample) + "p") + kCellMargin;
  ListCols = static_cast<int16_t>(std::floor(grdList.Width() / width));
  // A record wider than the grid still gets one column, clipped, rather than none.
  ListCols = std::max<int16_t>(ListCols, 1);
  grdList.SetCols(ListCols);
  for (int col = 0; col < ListCols; ++col) grdList.SetColWidth(col, ToInt32(width));
}

void ListReadings::OnRecord(std::string_view record) {
  KeepReading(saved_, record.substr(0, record.size() - 1));
  std::string text(record);
  if (TranCharsOn()) {
    const ReadingState& framing = Readings();
    const char start = framing.RecordStartChar[0];
    const char stop = framing.RecordStopChar[0];
    for (char& c : text) {
      if (start != '\0' && c == start) c = 't';
      if (stop != '\0' && c == stop) c = 'p';
    }
  } else {
    text.pop_back();
  }
  unshown_.push_back(std::move(text));
  if (!tmrShow.Enabled()) tmrShow.SetEnabled(true);
}

void ListReadings::tmrShow_Timer() {
  tmrShow.SetEnabled(false);
  for (const std::string& text : unshown_) ListAddCell(text);
  unshown_.clear();
}

void ListReadings::ListAddCell(const std::string& text) {
  grdList.SetRow(ListRow);
  grdList.SetCol(ListCol);
  grdList.SetText(text);
  if (++ListRow > kListRows - 1) {
    ListRow = 0;
    if (++ListCol > ListCols - 1) ListCol = 0;
  }
  grdList.SetRow(ListRow);
  grdList.SetCol(ListCol);
  grdList.SetText(" ");
}

ListReadings& frmList() { return Forms().Use<ListReadings>(); }

}  // namespace dpm
