#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>

#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "platform/forms/grid.h"
#include "platform/forms/picture.h"
#include "readings/capture.h"

// The meter's continuous output as text, in a grid of 20 rows that fills column by column
// and wraps round to overwrite the oldest cells; a blank cell always follows the newest
// reading. Records are shown as they came; with transmission characters on, the start and
// stop characters show as "t" and "p".
namespace dpm {

inline constexpr int kListRows = 20;
// Readings kept for Save: the latest this many, also those the grid has overwritten.
inline constexpr std::size_t kSavedReadingsLimit = 100'000;

// One reading as it came: when, and the record's text without its stop character.
struct ListedReading {
  std::chrono::system_clock::time_point received;
  std::string text;
};

// The readings as a CSV file: a heading line, then time received (ISO 8601, UTC, with
// milliseconds), the record's text, and its number (empty for a record without a digit).
std::string ReadingsCsv(const std::deque<ListedReading>& readings);

class ListReadings : public Form, public RecordConsumer {
 public:
  static constexpr const char* kName = "frmList";

  ListReadings();
  ~ListReadings() override;

  Grid grdList{*this, "grdList"};
  CommandButton cmdPrint{*this, "cmdPrint", "Print"};
  CommandButton cmdEnd{*this, "cmdEnd", "End"};
  CommandButton cmdContin{*this, "cmdContin", "Continue"};
  CommandButton cmdPause{*this, "cmdPause", "Pause"};
  CommandButton cmdSave{*this, "cmdSave", "Save..."};
  // Never shown: measures the measuring record's text in the screen's font.
  PictureBox picMeasure{*this, "picMeasure"};

  // The next cell, and the number of columns the measuring record left room for.
  int16_t ListRow = 0;
  int16_t ListCol = 0;
  int16_t ListCols = 0;

  void Form_Activate();
  void Form_Unload(int& cancel);
  void cmdPause_Click();
  void cmdContin_Click();
  void cmdEnd_Click();
  void cmdPrint_Click();
  void cmdSave_Click();
  void grdList_Click();

  // Writes the text into the next cell and blanks the one after it.
  void ListAddCell(const std::string& text);

  // The capture of this run; nothing before the screen was first activated.
  const Capture* Capturing() const { return capture_.get(); }
  const std::deque<ListedReading>& SavedReadings() const { return saved_; }

  // RecordConsumer
  void OnMeasuringRecord(std::string_view sample) override;
  void OnRecord(std::string_view record) override;

 private:
  void SendStreamCommand(const char* code);
  void Keep(std::string_view text);

  std::unique_ptr<Capture> capture_;
  std::deque<ListedReading> saved_;
  bool started_ = false;
  bool ending_ = false;
};

// The list screen, created on first use.
ListReadings& frmList();

}  // namespace dpm
