#pragma once

#include <deque>
#include <memory>
#include <string>
#include <string_view>

#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "platform/forms/picture.h"
#include "readings/capture.h"
#include "readings/list_readings.h"

// What the plot and the graph share: a picture that keeps what was drawn, a scale asked
// for on the same surface before a run, and the meter's continuous output read as numbers.
namespace dpm {

inline constexpr int32_t kBlack = 0;
inline constexpr int32_t kWhite = 0xFFFFFF;

// The number a scale box holds, its blanks trimmed; a box without a number counts 0.
float ScaleNumber(std::string_view text);
// The picture of the value labels: "0." and as many zeros as the more precise of the two
// texts has decimals, at most six. The point shows even without decimals.
std::string ScaleFormat(std::string_view midText, std::string_view smallText);
// A drawing coordinate as a 16-bit integer, rounded half to even; a value beyond the 16-bit
// range (a reading far off scale) stands at the end of the range, off the picture either way.
int16_t ToCoordinate(double value);

class ChartScreen : public Form, public RecordConsumer {
 public:
  ChartScreen(const char* name, const char* title, const char* countBox, const char* countLabel,
              const char* countCaption);
  ~ChartScreen() override;

  CommandButton cmdPrint{*this, "cmdPrint", "Print"};
  PictureBox Picture1{*this, "Picture1"};
  CommandButton cmdOK{*this, "cmdOK", "OK"};
  TextBox txtSmallVal{*this, "txtSmallVal"};
  TextBox txtMidVal{*this, "txtMidVal"};
  Label lblSmallVal{*this, "lblSmallVal", "Small Division Value"};
  Label lblMidVal{*this, "lblMidVal", "Mid-Scale Value"};
  CommandButton cmdEnd{*this, "cmdEnd", "End"};
  CommandButton cmdNewScale{*this, "cmdNewScale", "New Scale"};
  CommandButton cmdContinue{*this, "cmdContinue", "Continue"};
  CommandButton cmdSave{*this, "cmdSave", "Save"};
  CommandButton cmdSaveReadings{*this, "cmdSaveReadings", "Save readings..."};
  CommandButton cmdPause{*this, "cmdPause", "Pause"};

  void Form_Activate();
  void Form_Unload(int& cancel);
  void cmdNewScale_GotFocus();
  void cmdOK_Click();
  void cmdEnd_Click();
  void cmdSave_Click();
  void cmdSaveReadings_Click();
  void cmdPrint_Click();
  virtual void cmdPause_Click() = 0;
  virtual void cmdContinue_Click() = 0;

  const Capture* Capturing() const { return capture_.get(); }
  const std::deque<ListedReading>& SavedReadings() const { return saved_; }

  // RecordConsumer: a chart's records come cleaned for their number.
  void OnRecord(std::string_view record) override;

 protected:
  // The third scale box (total time or initial count) and its label.
  TextBox& CountBox() { return countBox_; }
  Label& CountLabel() { return countLabel_; }

  // Draws the frame for the scale in the boxes and starts reading.
  virtual void StartLoop() = 0;
  virtual void OnNumber(float value) = 0;

  void SendStreamCommand(const char* code);
  // A new run: the pause lifted, the framing taken afresh, the first record thrown away.
  void StartCapture();
  // While it lasts, data that comes waits in the port.
  std::optional<Capture::Hold> HoldCapture();
  void ShowScaleGroup(bool shown);
  // Text with its top left corner at a point, as the picture's Print puts it.
  void PrintAt(double x, double y, const std::string& text);
  // A text's height along the picture's y axis. The axis points up, so the height is
  // negative: a label placed at "y plus half its height" hangs centred on y.
  double HeightUp(const std::string& text) const { return -Picture1.TextHeight(text); }

 private:
  TextBox countBox_;
  Label countLabel_;
  std::unique_ptr<Capture> capture_;
  std::deque<ListedReading> saved_;
  bool started_ = false;
  bool ending_ = false;
};

}  // namespace dpm
