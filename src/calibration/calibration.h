#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "calibration/correction.h"
#include "calibration/range_tables.h"
#include "platform/forms/control_array.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "platform/forms/grid.h"
#include "platform/forms/picture.h"

// The calibration screen: the technician picks a range, applies the input the screen asks
// for and presses Ready; the screen reads what the meter shows, computes a new calibration
// word, writes it into the meter's non-volatile memory and reads the result back. Each
// further row (Repeat) starts from the word just written, and the Accept button of the best
// row writes that row's word once more. Every pause of a run serves events, so Stop can be
// pressed; the run sees it at its next test.
namespace dpm {

class Calibration : public Form {
 public:
  static constexpr const char* kName = "frmCalib";
  static constexpr int kGridRows = 10;
  static constexpr int kGridCols = 8;

  Calibration();

  // The range in hand.
  int16_t CalcMod = 0;
  int16_t CalcTyp = 0;
  int16_t ScaleF = 0;
  std::string P;
  std::string INb;
  std::string F;
  std::string NVAdr;
  std::string InpTyp;
  float VDesired = 0;
  int16_t JIndx = 0;

  // The state of a run.
  int16_t CalStep = 0;
  int16_t StopFlag = 0;
  int16_t BusyFlag = 0;
  float RdgLimit = 0;
  float PosRdg = 0;
  float NegRdg = 0;
  float CurRdg = 0;
  float CurCal = 0;
  std::string CurCalHex;
  NewWord New;  // NewCal and NewCalHex
  float SavedCal = 0;
  std::string SavedCalHex;
  std::string PosRdgText;
  std::string NegRdgText;
  std::string NewPosText;
  std::string NewNegText;
  int16_t RowPol = 0;
  std::array<std::string, 2> Polar;
  float ProgBase = 0;
  float ProgRate = 0;

  Frame fraRange{*this, "fraRange", "Select Range"};
  ComboBox cboRange{*this, "cboRange", &fraRange};
  Label lblRange{*this, "lblRange", "DC 660 V"};
  Label lblLine1{*this, "lblLine1", "Apply the following accurate input signal"};
  TextBox txtInput{*this, "txtInput"};
  Label lblJump{*this, "lblJump"};
  PictureBox imgJump{*this, "imgJump"};
  Label lblScaleF{*this, "lblScaleF"};
  Label lblOutRange{*this, "lblOutRange", "* * *  Calculated Correction Exceeds Allowable Range"};
  Grid grdList{*this, "grdList"};
  Frame shpAccept{*this, "shpAccept", ""};
  Label Label1{*this, "Label1", "Accept", &shpAccept};
  ControlArray<CommandButton> cmd{*this, "cmd", 1, kGridRows, &shpAccept};
  CommandButton cmdReady{*this, "cmdReady", "Ready"};
  CommandButton cmdRepeat{*this, "cmdRepeat", "Repeat"};
  CommandButton cmdStop{*this, "cmdStop", "Stop"};
  CommandButton cmdEnd{*this, "cmdEnd", "End"};
  ProgressBar ProgBar{*this, "ProgBar"};
  // The board revision; a frame of its own keeps the two choices apart from the cold
  // junction's two.
  Frame fraRev{*this, "fraRev", ""};
  OptionButton optM{*this, "optM", "Rev M", &fraRev};
  OptionButton optPrior{*this, "optPrior", "Prior Rev", &fraRev};
  OptionButton optNew{*this, "optNew", "New Calibration"};
  OptionButton optFine{*this, "optFine", "Fine Adjustment"};
  PictureBox picQD{*this, "picQD"};

  void Form_Load();
  void Form_Unload(int& cancel);
  void cboRange_Click();
  void cmdReady_Click();
  void cmdRepeat_Click();
  void cmdStop_Click();
  void cmdEnd_Click();
  void cmd_Click(int index);

  void CalibCont();
  void RangeList();
  void FullScale(const CalRange& range);
  void InitRange();
  void SendCal();
  void DelayC(float seconds);
  void StopRoutine();

  // The cold junction and RTD current source rows, run on the text page.
  void TCHeader();
  void RTDHeader();
  void optNew_Click();
  void optFine_Click();
  void QDRoutine();
  void RTDRoutine();

 private:
  enum class Outcome { EndOfRun, Stopped, SignalError };

  // Reply lengths, in characters with the echo and the line end.
  static constexpr int16_t kWordReplyChars = 12;
  static constexpr int16_t kReadingReplyChars = 15;
  static constexpr int16_t kOptionReplyChars = 10;

  Outcome FirstReading();
  Outcome MinusReading();
  Outcome Correct();
  Outcome NewPlus();
  Outcome NewMinus();
  Outcome Finish();
  void EndRun(Outcome outcome);
  void ShowInputSignalError();
  void ShowErrorLine();
  void ResetAndSettle(float progressRate);
  void WipeRows(int first, int last);
  void RepeatFromPlus(int row);
  void RepeatFromMinus(int row);
  void RepeatError(int row);
  void AskForInput(const char* sign, int setInputCol, int16_t nextStep);

  int16_t ListIndex() const { return static_cast<int16_t>(cboRange.ListIndex()); }
  int Row() const { return grdList.Row(); }
  // Writes a cell of the current row and makes it the current cell, so that the next Ready
  // clears the "Set Input" it may hold.
  void SetCell(int col, const std::string& text) {
    grdList.SetCol(col);
    grdList.SetText(text);
  }
  void ClearCells(int row, int fromCol);
  void DisableAccept(int row);
  void ShowJumperPicture();
  void ShowGridPage(bool grid);
  void SendAndRead(const std::string& command, int16_t replyChars);
  // "B1": the latest reading, its point taken out; its value.
  float ReadReading();
  std::string SignedReplyText(float value) const;
  void SetProgress(float percent);
  bool Abandoned() const;
};

// The calibration screen, created on first use.
Calibration& frmCalib();

}  // namespace dpm
