#include "calibration/calibration.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "link/globals.h"
#include "link/transport.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/events.h"
#include "platform/forms/form_manager.h"
#include "platform/numeric.h"
#include "platform/services.h"
#include "setup/main_menu.h"

namespace dpm {
namespace {

// The grid's columns.
constexpr int kColInput = 0;
constexpr int kColDesired = 1;
constexpr int kColPlus = 2;
constexpr int kColMinus = 3;
constexpr int kColCurrentWord = 4;
constexpr int kColNewWord = 5;
constexpr int kColNewPlus = 6;
constexpr int kColNewMinus = 7;

constexpr const char* kApplyInputText = "Apply the following accurate input signal";
constexpr const char* kInputSignalErrorText = "                         Input Signal Error";
constexpr const char* kSetInputText = "Set Input";
// The word before the screen shows, far to the right of the main menu's text picture.
constexpr const char* kWaitText = "                                                                    Wait";
// The meter's Offset back to 0 and its Scale to 1, as the screen is left.
constexpr const char* kPlainScaleCommand = "W305000000100001";

constexpr int16_t kConditionerReplyChars = 92;

// Plus readings of a gain row must reach this many counts, minus readings as many below 0;
// the 5 A row is calibrated at 2 A and reads a tenth of it.
constexpr float kReadingLimit = 10000;
constexpr float kFiveAmpReadingLimit = 800;
constexpr int kFiveAmpListIndex = 9;

// The grid's row heights follow the height of a sample reading in the screen's font.
constexpr int kSampleTextHeight = 300;  // twips: "-800000" in the screen's face, with its leading
constexpr double kHeaderRowFactor = 2.3;
constexpr double kRowFactor = 1.2;

struct ColumnHeads {
  const char* plusAndMinus;
  const char* other;
};
constexpr std::array<ColumnHeads, Calibration::kGridCols> kColumnHeads = {{
    {"Calib Input", "Calib Input"},
    {"Desired Reading", "Desired Reading"},
    {"Current +Reading", "Current  Reading"},
    {"Current -Reading", "                "},
    {"Current Calib", "Current Calib"},
    {"  New   Calib", "  New   Calib"},
    {"  New   +Reading", "  New    Reading"},
    {"  New   -Reading", "                "},
}};

constexpr const char* kDcCaption = "DC Signal Conditioner Calibration";

void ServeEvents() { Platform().events->Serve(); }

float SecondsNow() { return Platform().clock->SecondsSinceMidnight(); }

}  // namespace

Calibration::Calibration() : Form(kName, kDcCaption) {
  Polar = {"+", "-"};
  ProgBar.SetRange(0, 100);
  optM.SetValue(true);
  lblOutRange.SetVisible(false);
  lblOutRange.SetForeColor(ColRed);
  picQD.SetVisible(false);
  optNew.SetVisible(false);
  optFine.SetVisible(false);
  grdList.SetRows(kGridRows + 1);
  grdList.SetCols(kGridCols);
  grdList.SetFixedRows(1);
  grdList.SetFixedCols(0);
  on.Load = [this] { Form_Load(); };
  on.Unload = [this](int& cancel) { Form_Unload(cancel); };
  cboRange.on.Click = [this] { cboRange_Click(); };
  cboRange.on.DropDown = [this] { cboRange_Click(); };
  optM.on.Click = [this] { cboRange_Click(); };
  optPrior.on.Click = [this] { cboRange_Click(); };
  cmdReady.on.Click = [this] { cmdReady_Click(); };
  cmdRepeat.on.Click = [this] { cmdRepeat_Click(); };
  cmdStop.on.Click = [this] { cmdStop_Click(); };
  cmdEnd.on.Click = [this] { cmdEnd_Click(); };
  cmd.on.Click = [this](int index) { cmd_Click(index); };
  optNew.on.Click = [this] { optNew_Click(); };
  optFine.on.Click = [this] { optFine_Click(); };
}

// Entry: what board the meter carries decides the caption and the range list; the first
// range is set up and the screen shows. The main menu goes out of sight behind it, so that
// a click on it cannot close the screen in the middle of a run.
void Calibration::Form_Load() {
  CalibCont();
  RangeList();
  cboRange.SetListIndex(0);
  Show();
  frmMMenu().Hide();
}

// A run in progress sees the screen going at its next test and ends there.
void Calibration::Form_Unload(int& /*cancel*/) {
  StopFlag = 1;
  frmMMenu().Show();
}

bool Calibration::Abandoned() const { return IsUnloaded() || Forms().Ended(); }

void Calibration::SendAndRead(const std::string& command, int16_t replyChars) {
  SendBody(command);
  DelayChars(replyChars);
  ReceiveReply();
}

// The conditioner's code is the byte that holds it in word 15 of the meter, the two digits
// ending at character 64 of the 21 words read from word 24 down; a code of 1 is told apart
// into temperature and DC by the input mode, the digit at character 83.
void Calibration::CalibCont() {
  lblScaleF.SetCaption("");
  MainMenu& menu = frmMMenu();
  menu.picInitText.Print(kWaitText);
  SendAndRead("XL24", kConditionerReplyChars);
  g.SigCond = static_cast<int16_t>(LeadingHexValue(Mid(g.ReplyText, 63, 2)));
  if (g.SigCond == kDcConditioner) {
    if (LeadingHexValue(Mid(g.ReplyText, 83, 1)) < 6) {
      g.SigCond = kTemperatureConditioner;
      SetCaption("Temperature Signal Conditioner Calibration");
    } else {
      SetCaption(kDcCaption);
    }
  } else if (g.SigCond == kAcConditioner) {
    SetCaption("AC Signal Conditioner Calibration");
  } else if (g.SigCond == kLoadCellConditioner) {
    SetCaption("Load Cell Signal Conditioner Calibration");
  }
  DelaySeconds(2.5f);
  StopFlag = 0;
  cmdStop.SetEnabled(false);
  cmdRepeat.SetEnabled(false);

  grdList.SetRowHeight(0, static_cast<int>(kSampleTextHeight * kHeaderRowFactor));
  for (int row = 1; row <= kGridRows; ++row) {
    grdList.SetRowHeight(row, static_cast<int>(kSampleTextHeight * kRowFactor));
    cmd[row].SetEnabled(false);
  }
  // Every column's text is centred, the headers from the readings on.
  for (int col = 0; col < kGridCols; ++col) {
    grdList.SetColWidth(col, grdList.Width() / kGridCols);
    grdList.SetColAlignment(col, Grid::kAlignCenterCenter);
    if (col >= kColPlus) grdList.SetFixedAlignment(col, Grid::kAlignCenterCenter);
    grdList.SetTextMatrix(0, col, kColumnHeads[static_cast<std::size_t>(col)].plusAndMinus);
  }
  menu.picInitText.Cls();
}

void Calibration::RangeList() {
  cboRange.Clear();
  for (const std::string& name : RangeNames(g.SigCond)) cboRange.AddItem(name);
}

// A range is chosen (or the list merely opened, or the board revision changed): the range
// starts afresh.
void Calibration::cboRange_Click() {
  cmdReady.SetEnabled(false);
  cmdStop.SetEnabled(false);
  lblJump.SetVisible(true);
  New.NewCal = 0;
  if (const CalRange* range = FindRange(g.SigCond, ListIndex())) {
    FullScale(*range);
    if (CalcMod == kColdJunction) cmdReady.SetEnabled(false);
  }
  if (CalcMod < kColdJunction) {
    ShowGridPage(true);
    cmdReady.SetEnabled(true);
    cmdRepeat.SetEnabled(false);
    CalStep = 1;
    txtInput.SetText(CalcMod == kPlusAndMinus ? "+" + INb : INb);
    CurCalHex.clear();
  } else {
    picQD.Cls();
    ShowGridPage(false);
    TCHeader();
    if (CalcMod == kRtdCurrent) {
      RTDHeader();
      cmdReady.SetEnabled(true);
    }
    if (CalcMod == kColdJunction) {
      optNew.SetVisible(true);
      optFine.SetVisible(true);
      optNew.SetValue(false);
      optFine.SetValue(false);
      TCHeader();
      picQD.Print("Select either New Calibration or Fine Adjustment    ");
    }
  }
  txtInput.SetEnabled(true);
  lblOutRange.SetVisible(false);
}

// The grid and its buttons for the ranges that are read, the text page for the cold
// junction and the RTD current source.
void Calibration::ShowGridPage(bool grid) {
  if (grid) txtInput.SetVisible(true);
  picQD.SetVisible(!grid);
  lblLine1.SetVisible(grid);
  ProgBar.SetVisible(grid);
  grdList.SetVisible(grid);
  shpAccept.SetVisible(grid);
  Label1.SetVisible(grid);
  cmdRepeat.SetVisible(grid);
  if (!grid) cmdRepeat.SetEnabled(false);
  for (int row = 1; row <= kGridRows; ++row) {
    cmd[row].SetVisible(grid);
    if (!grid) cmd[row].SetEnabled(false);
  }
  optNew.SetVisible(false);
  optFine.SetVisible(false);
}

void Calibration::FullScale(const CalRange& range) {
  CalcMod = range.CalcMod;
  CalcTyp = range.CalcTyp;
  ScaleF = range.ScaleF;
  P = range.P;
  INb = range.INb;
  F = range.F;
  NVAdr = range.NVAdr;
  InpTyp = range.InpTyp;
  VDesired = range.VDesired;
  JIndx = range.JIndx;
  ShowJumperPicture();
  ProgBar.SetValue(0);
  lblRange.SetCaption(P);
  cmdStop.SetEnabled(false);
  cmdEnd.SetEnabled(true);
  for (int row = 1; row <= kGridRows; ++row) {
    cmd[row].SetEnabled(false);
    cmd[row].SetCaption(" " + std::to_string(row));
    for (int col = 0; col < kGridCols; ++col) grdList.SetTextMatrix(row, col, "");
  }
  if (g.SigCond == kTemperatureConditioner && ListIndex() > 2) {
    lblJump.SetCaption("                                       Place the jumpers as shown.");
  } else {
    lblJump.SetCaption("Remove any input signal.  Place the jumpers as shown.");
  }
  lblLine1.SetCaption(kApplyInputText);
  txtInput.SetText(INb);
  for (int col : {kColPlus, kColMinus, kColNewPlus, kColNewMinus}) {
    const ColumnHeads& heads = kColumnHeads[static_cast<std::size_t>(col)];
    grdList.SetTextMatrix(0, col, CalcMod == kPlusAndMinus ? heads.plusAndMinus : heads.other);
  }
  grdList.SetRow(1);
}

// The jumper drawing of the range for the chosen board revision. Only the DC board has
// drawings of both revisions; where a revision has none the picture says so instead of
// ending the program.
void Calibration::ShowJumperPicture() {
  const int number = optM.Value() ? JIndx + 30 : JIndx;
  imgJump.Cls();
  Dialogs* dialogs = Platform().dialogs;
  const std::optional<PictureRef> picture = dialogs ? dialogs->FindPicture(number) : std::nullopt;
  imgJump.SetPicture(picture.value_or(PictureRef{}));
  if (!picture) {
    imgJump.SetCurrentX(120);
    imgJump.SetCurrentY(120);
    imgJump.Print("No jumper drawing " + std::to_string(number));
    imgJump.Print("for this board revision.");
    imgJump.Print("Choose the other revision.");
  }
}

// Ready: the next step of the row.
void Calibration::cmdReady_Click() {
  BusyFlag = 1;
  StopFlag = 0;
  RdgLimit = ListIndex() == kFiveAmpListIndex ? kFiveAmpReadingLimit : kReadingLimit;
  lblOutRange.SetVisible(false);
  lblJump.SetVisible(false);
  cmdEnd.SetEnabled(false);
  cmdStop.SetEnabled(true);
  cmdStop.SetFocus();
  cmdReady.SetEnabled(false);
  if (CalcMod == kColdJunction) return QDRoutine();
  if (CalcMod == kRtdCurrent) return RTDRoutine();
  txtInput.SetEnabled(false);
  cmdRepeat.SetEnabled(false);
  fraRange.SetEnabled(false);
  cboRange.SetEnabled(false);
  lblLine1.SetVisible(false);
  lblLine1.SetCaption(kApplyInputText);
  lblLine1.SetForeColor(ColBlack);
  grdList.SetText("");
  Outcome outcome = Outcome::EndOfRun;
  switch (CalStep) {
    case 1:
      outcome = FirstReading();
      break;
    case 2:
      outcome = MinusReading();
      break;
    case 3:
      ResetAndSettle(1.9f);
      outcome = NewPlus();
      break;
    case 4:
      ResetAndSettle(1.98f);
      outcome = NewMinus();
      break;
    default:
      break;
  }
  EndRun(outcome);
}

void Calibration::EndRun(Outcome outcome) {
  if (outcome == Outcome::SignalError) ShowInputSignalError();
  if (outcome == Outcome::Stopped || StopFlag == 1) StopRoutine();
  BusyFlag = 0;
}

void Calibration::ShowInputSignalError() {
  ShowErrorLine();
  cmdReady.SetEnabled(true);
}

void Calibration::ShowErrorLine() {
  lblLine1.SetCaption(kInputSignalErrorText);
  lblLine1.SetForeColor(ColDarkRed);
  lblLine1.SetVisible(true);
}

// The first reading of a row: the word now in the meter, the meter set up for the range,
// and the reading of the applied (plus) input.
Calibration::Outcome Calibration::FirstReading() {
  ProgBase = 0;
  ProgRate = CalcMod != kOneReading ? 0.73f : 0.41f;
  ProgBar.SetValue(0);
  SendAndRead("X1" + NVAdr, kWordReplyChars);
  CurCal = CalWordValue(g.ReplyText, CalcTyp == kGainWord);
  CurCalHex = g.ReplyText;
  DelayC(2.5f);
  InitRange();
  if (StopFlag == 1) return Outcome::Stopped;
  DelayC(2.5f);
  if (StopFlag == 1) return Outcome::Stopped;
  const float value = ReadReading();
  PosRdg = CurRdg = value;
  if (value < RdgLimit && CalcMod == kPlusAndMinus) return Outcome::SignalError;
  SetCell(kColPlus, SignedReplyText(value));
  if (CalcMod == kPlusAndMinus) {
    AskForInput("-", kColMinus, 2);
    return Outcome::EndOfRun;
  }
  return Correct();
}

// The row waits for the technician to change the input: the sign to apply, "Set Input" in
// the column the reading will fill, and Ready for the next step.
void Calibration::AskForInput(const char* sign, int setInputCol, int16_t nextStep) {
  txtInput.SetText(sign + INb);
  SetCell(setInputCol, kSetInputText);
  CalStep = nextStep;
  lblLine1.SetVisible(true);
  cmdReady.SetEnabled(true);
  cmdReady.SetFocus();
  ProgBar.SetValue(100);
}

// The meter is reset and given five seconds to settle on the input just changed.
void Calibration::ResetAndSettle(float progressRate) {
  ProgBase = 0;
  ProgRate = progressRate;
  ProgBar.SetValue(0);
  SendBody("C0");
  DelayC(5);
}

Calibration::Outcome Calibration::MinusReading() {
  ResetAndSettle(0.74f);
  NegRdg = ReadReading();
  if (NegRdg > -RdgLimit) return Outcome::SignalError;
  SetCell(kColMinus, g.ReplyText);
  CurRdg = (std::fabs(NegRdg) + PosRdg) / 2;
  if (StopFlag == 1) return Outcome::Stopped;
  return Correct();
}

// The new word, computed from the reading, written, and read back after the meter settled.
Calibration::Outcome Calibration::Correct() {
  SetCell(kColCurrentWord, CurCalHex);
  cmdRepeat.SetEnabled(false);
  if (CalcTyp != kZeroWord) {
    CalcFS(New, VDesired, CurRdg, CurCal, g.SigCond, ListIndex());
  } else {
    CalcZero(New, PosRdg, CurCal, g.SigCond, ListIndex());
  }
  if (New.outOfRange) lblOutRange.SetVisible(true);
  SavedCal = New.NewCal;
  SavedCalHex = New.NewCalHex;
  SendCal();
  SetCell(kColNewWord, SavedCalHex);
  CurCal = SavedCal;
  CurCalHex = SavedCalHex;
  if (StopFlag == 1) return Outcome::Stopped;
  DelayC(6);
  if (StopFlag == 1) return Outcome::Stopped;
  return CalcMod != kOneReading ? NewMinus() : NewPlus();
}

Calibration::Outcome Calibration::NewPlus() {
  const float value = ReadReading();
  PosRdg = CurRdg = value;
  if (value < RdgLimit && CalcMod == kPlusAndMinus) return Outcome::SignalError;
  NewPosText = SignedReplyText(value);
  SetCell(kColNewPlus, NewPosText);
  return Finish();
}

Calibration::Outcome Calibration::NewMinus() {
  NegRdg = ReadReading();
  if (NegRdg > -RdgLimit) return Outcome::SignalError;
  SetCell(kColNewMinus, g.ReplyText);
  NewNegText = g.ReplyText;
  if (CalStep == 4) return Finish();
  AskForInput("+", kColNewPlus, 3);
  return StopFlag == 1 ? Outcome::Stopped : Outcome::EndOfRun;
}

// The row is complete: its Accept button is offered, and Repeat or another range. Ready
// and End stay disabled; Stop is the way to End.
Calibration::Outcome Calibration::Finish() {
  if (CalcMod == kPlusAndMinus) CurRdg = (std::fabs(NegRdg) + PosRdg) / 2;
  ProgBar.SetValue(100);
  cmd[Row()].SetEnabled(true);
  cmd[Row()].SetFocus();
  cmdRepeat.SetEnabled(true);
  txtInput.SetEnabled(true);
  fraRange.SetEnabled(true);
  cboRange.SetEnabled(true);
  if (StopFlag == 1) return Outcome::Stopped;
  CurCal = SavedCal;
  CurCalHex = SavedCalHex;
  PosRdgText = NewPosText;
  NegRdgText = NewNegText;
  return Outcome::EndOfRun;
}

// Repeat: a further row, corrected from the readings of the last one. Each row starts from
// the polarity the last one ended on, so the technician flips the input once a row.
void Calibration::cmdRepeat_Click() {
  ProgBase = 0;
  ProgRate = 1.17f;
  ProgBar.SetValue(0);
  BusyFlag = 1;
  StopFlag = 0;
  lblOutRange.SetVisible(false);
  int row = Row() == kGridRows ? 0 : Row();
  ++row;
  const int next = row == kGridRows ? 1 : row + 1;
  grdList.SetRow(next);
  ClearCells(next, kColPlus);
  cmd[next].SetEnabled(false);
  grdList.SetRow(row);
  grdList.SetCol(kColPlus);
  RowPol = static_cast<int16_t>(row & 1);
  if (CalcMod != kOneReading) txtInput.SetText(Polar[static_cast<std::size_t>(RowPol)] + INb);
  SetCell(kColPlus, PosRdgText);
  if (CalcMod == kPlusAndMinus) SetCell(kColMinus, NegRdgText);
  cmdRepeat.SetEnabled(false);
  cmdStop.SetEnabled(true);
  cmdStop.SetFocus();
  lblLine1.SetVisible(false);
  lblLine1.SetCaption(kApplyInputText);
  lblLine1.SetForeColor(ColBlack);
  SetCell(kColCurrentWord, CurCalHex);
  if (CalcTyp != kZeroWord) {
    PosRdg = static_cast<float>(LeadingNumber(PosRdgText));
    if (CalcMod != kOneReading) {
      NegRdg = static_cast<float>(LeadingNumber(NegRdgText));
      CurRdg = (std::fabs(NegRdg) + PosRdg) / 2;
    } else {
      CurRdg = PosRdg;
    }
    CalcFS(New, VDesired, CurRdg, CurCal, g.SigCond, ListIndex());
  } else {
    CalcZero(New, PosRdg, CurCal, g.SigCond, ListIndex());
  }
  if (New.outOfRange) lblOutRange.SetVisible(true);
  SavedCal = New.NewCal;
  SavedCalHex = New.NewCalHex;
  SendCal();
  SetCell(kColNewWord, SavedCalHex);
  if (StopFlag != 1) DelayC(6);
  if (StopFlag == 1) {
    ProgBar.SetValue(0);
    StopRoutine();
    cmdRepeat.SetEnabled(true);
    BusyFlag = 0;
    return;
  }
  if (CalcMod != kOneReading && RowPol == 1) {
    RepeatFromMinus(row);
  } else {
    RepeatFromPlus(row);
  }
  if (StopFlag == 1) StopRoutine();
  BusyFlag = 0;
}

// The limits of a repeated row are the full 10000 counts for every range, the 5 A row too.
void Calibration::RepeatFromMinus(int row) {
  NegRdg = ReadReading();
  if (NegRdg > -kReadingLimit) return RepeatError(row);
  SetCell(kColNewMinus, g.ReplyText);
  NewNegText = g.ReplyText;
  txtInput.SetEnabled(true);
  AskForInput("+", kColNewPlus, 3);
}

void Calibration::RepeatFromPlus(int row) {
  PosRdg = ReadReading();
  if (PosRdg < kReadingLimit && CalcMod == kPlusAndMinus) return RepeatError(row);
  NewPosText = SignedReplyText(PosRdg);
  SetCell(kColNewPlus, NewPosText);
  if (CalcMod == kOneReading) {
    ProgBar.SetValue(100);
    cmd[row].SetEnabled(true);
    cmdRepeat.SetEnabled(true);
    cmdRepeat.SetFocus();
    CurCal = SavedCal;
    CurCalHex = SavedCalHex;
    PosRdgText = NewPosText;
    return;
  }
  txtInput.SetEnabled(true);
  AskForInput("-", kColNewMinus, 4);
}

void Calibration::RepeatError(int row) {
  ShowErrorLine();
  cmdRepeat.SetEnabled(true);
  ClearCells(row, kColPlus);
  DisableAccept(row);
  grdList.SetRow(row - 1);
}

// Accept: the row's word goes to the meter once more and stays; the rows before it, and
// those after it up to where the grid stood, are cleared.
void Calibration::cmd_Click(int index) {
  ProgBase = 0;
  ProgRate = 4;
  ProgBar.SetValue(0);
  cmdRepeat.SetEnabled(false);
  cmdStop.SetEnabled(false);
  fraRange.SetEnabled(true);
  cboRange.SetEnabled(true);
  const int stoodAt = Row();
  grdList.SetRow(index);
  grdList.SetCol(kColNewWord);
  New.NewCalHex = grdList.Text();
  SendCal();
  cmd[index].SetCaption("Saved");
  cboRange.SetFocus();
  WipeRows(1, index - 1);
  WipeRows(index + 1, stoodAt);
  ProgBar.SetValue(100);
  cmdEnd.SetEnabled(true);
}

// Stop: seen at once when nothing runs, else at the run's next test; a pause in progress
// runs to its end.
void Calibration::cmdStop_Click() {
  StopFlag = 1;
  if (BusyFlag == 0) StopRoutine();
}

void Calibration::StopRoutine() {
  StopFlag = 0;
  cmdEnd.SetEnabled(true);
  cmdStop.SetEnabled(false);
  fraRange.SetEnabled(true);
  cboRange.SetEnabled(true);
  DisableAccept(Row());
  if (Row() == 1) {
    CalStep = 1;
    cmdReady.SetEnabled(true);
    cmdRepeat.SetEnabled(false);
    ClearCells(1, kColDesired);
  } else {
    cmdRepeat.SetEnabled(true);
    cmdReady.SetEnabled(false);
    ClearCells(Row(), kColPlus);
  }
  if (Row() > 1) grdList.SetRow(Row() - 1);
  ProgBar.SetValue(0);
  txtInput.SetText(Polar[static_cast<std::size_t>(RowPol)] + INb);
  txtInput.SetEnabled(true);
}

// End: the meter's Offset and Scale go back to plain (what the range set-up wrote to its
// input, range and filter stays until the next Put Setup), and the main menu returns.
void Calibration::cmdEnd_Click() {
  SendBody(kPlainScaleCommand);
  MainMenu& menu = frmMMenu();
  menu.picInitText.Cls();
  menu.Show();
}

// Rows that no longer count: their readings and words go, and their buttons.
void Calibration::WipeRows(int first, int last) {
  for (int row = first; row <= last; ++row) {
    DisableAccept(row);
    ClearCells(row, kColPlus);
  }
}

void Calibration::ClearCells(int row, int fromCol) {
  for (int col = fromCol; col < kGridCols; ++col) grdList.SetTextMatrix(row, col, "");
}

// A row that went back past the first (a repeat refused in row 1) has no button.
void Calibration::DisableAccept(int row) {
  if (row >= cmd.First() && row <= cmd.Last()) cmd[row].SetEnabled(false);
}

float Calibration::ReadReading() {
  SendAndRead("B1", kReadingReplyChars);
  g.ReplyText = RmvDP(g.ReplyText);
  return static_cast<float>(LeadingNumber(g.ReplyText));
}

std::string Calibration::SignedReplyText(float value) const { return (value < 0 ? "-" : "+") + Mid(g.ReplyText, 2); }

// The meter put into the state of the range: no offset and the range's scale factor, its
// input, and a filter that settles within the run's pauses.
void Calibration::InitRange() {
  grdList.SetTextMatrix(1, kColInput, INb);
  grdList.SetTextMatrix(1, kColDesired, SingleNumberText(VDesired));
  const std::string factor = NumberText(static_cast<int64_t>(ScaleF));
  lblScaleF.SetCaption("Scale Factor set to" + factor);
  const std::string digit = ScaleF == 10 ? "A" : factor.substr(factor.size() - 1);
  SendBody("W30500000010000" + digit);
  DelayC(2.5f);
  if (StopFlag == 1) return;
  SendBody("W11000" + InpTyp);
  DelayC(2.5f);
  if (StopFlag == 1) return;
  SendAndRead("G130", kOptionReplyChars);
  const std::string optionByte = g.ReplyText;
  DelayC(0.3f);
  if (StopFlag == 1) return;
  const bool quickFilter = CalcMod == kPlusAndMinus || (F == "0V" && g.SigCond == kDcConditioner);
  SendBody("W111" + optionByte + (quickFilter ? "36" : "38"));
  DelayC(2.5f);
  if (StopFlag == 1) return;
  if (ListIndex() == 1 && g.SigCond == kLoadCellConditioner) {
    SendAndRead("X11A", kWordReplyChars);
    // The word is read and held, as the meter's set-up of this range has always done;
    // nothing uses it.
    [[maybe_unused]] const double heldWord = static_cast<double>(LeadingHexValue(g.ReplyText));
    DelayC(2.5f);
  }
}

// The new word into the meter. A thermocouple group's gain is held three times, the
// J,K,N,E group's once more at word 2E.
void Calibration::SendCal() {
  if (g.SigCond == kTemperatureConditioner && (NVAdr == "21" || NVAdr == "24")) {
    SendBody("W3" + NVAdr + New.NewCalHex + New.NewCalHex + New.NewCalHex);
    if (NVAdr == "21") {
      DelaySeconds(2.5f);
      SendBody("W12E" + New.NewCalHex);
    }
  } else {
    SendBody("W1" + NVAdr + New.NewCalHex);
  }
  DelayC(2.5f);
}

// A pause that moves the progress bar: ProgRate percent a tenth of a second from ProgBase,
// and the next pause of the run goes on from where this one left the bar.
void Calibration::DelayC(float seconds) {
  const float target = DeadlineAfter(seconds);
  const float start = SecondsNow() * 10;
  float progress = ProgBase;
  while (!DeadlinePassed(target) && !Abandoned()) {
    progress = (SecondsNow() * 10 - start) * ProgRate + ProgBase;
    SetProgress(progress);
    ServeEvents();
  }
  ProgBase = std::clamp(progress, 0.0f, 100.0f);
}

void Calibration::SetProgress(float percent) { ProgBar.SetValue(ToInt16(std::clamp(percent, 0.0f, 100.0f))); }

Calibration& frmCalib() { return Forms().Use<Calibration>(); }

}  // namespace dpm
