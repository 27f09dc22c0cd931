// The temperature board's own calibrations, run on the text page instead of the grid: the
// cold junction of each thermocouple group (gain and offset) and the RTD current source.
#include <algorithm>

#include "calibration/calibration.h"
#include "link/globals.h"
#include "link/transport.h"
#include "platform/numeric.h"

namespace dpm {
namespace {

constexpr int kJkneListIndex = 3;

// The cold junction gain written by a new calibration, and the gain at the ice point each
// group computes from. The T,S,R group computes from a base other than the one it starts
// from.
constexpr const char* kStartingGain = "6F10";
constexpr float kJkneGainBase = 28432;
constexpr float kTsrGainBase = 28136;
constexpr float kGainSlope = 106.5f;
// Reading units per count of the offset word.
constexpr float kOffsetStep = 0.003906f;

// The RTD current source is right when 356.13 ohm read this many counts.
constexpr float kRtdTarget = 13564;
constexpr float kRtdFactor = 11.3f;

constexpr const char* kSettledText = "Click 'Ready' when the meter reading has thermally settled.";

}  // namespace

void Calibration::TCHeader() {
  txtInput.SetVisible(false);
  picQD.Cls();
  picQD.Print(ListIndex() == kJkneListIndex ? "Connect a J,K,E or N thermocouple to the input and place"
                                            : "Connect a T,S,R thermocouple to the input and place");
  picQD.Print("the thermocouple junction into an ice-point cell.");
  picQD.Print("");
}

void Calibration::RTDHeader() {
  picQD.Cls();
  picQD.Print("Connect an accurate 356.13 ohm resistor to the + - Signal inputs.");
  picQD.Print("Connect the + - Excitation outputs across the resistor with the");
  picQD.Print("+ Excitation connected to the same end of the resistor as the + Signal Input.");
  picQD.Print("Click on Ready when the connections are complete.");
  picQD.Print("");
  txtInput.SetVisible(false);
}

// Fine adjustment trusts the input type and the gain already in the meter.
void Calibration::optFine_Click() {
  cmdReady.SetEnabled(true);
  picQD.Print("");
  picQD.Print(kSettledText);
}

// A new calibration writes the group's input type, the starting gain and a zero offset, and
// asks the technician to wait until the junction has settled.
void Calibration::optNew_Click() {
  cmdReady.SetEnabled(false);
  picQD.Print("Wait while initializing");
  const bool jkne = ListIndex() == kJkneListIndex;
  SendBody(jkne ? "W1100041" : "W1100049");
  DelaySeconds(2.5f);
  SendBody(std::string(jkne ? "W21D" : "W22D") + kStartingGain + "0000");
  picQD.Print("");
  picQD.Print(kSettledText);
  cmdReady.SetEnabled(true);
}

// With the junction at the ice point: the gain from the reading (unless fine adjustment),
// then the offset from the next reading, so that the meter reads 0 there.
void Calibration::QDRoutine() {
  BusyFlag = 1;
  TCHeader();
  if (!optNew.Value() && !optFine.Value()) picQD.Print("Select either New Calibration or Fine Adjustment");
  picQD.Print("Wait while calibrating");
  const bool jkne = ListIndex() == kJkneListIndex;
  const auto finish = [this] {
    optNew.SetValue(false);
    optFine.SetValue(false);
    StopRoutine();
    BusyFlag = 0;
  };
  if (!optFine.Value()) {
    SendAndRead("B1", kReadingReplyChars);
    PosRdg = static_cast<float>(LeadingNumber(g.ReplyText));
    MakeHex(New, PosRdg * kGainSlope + (jkne ? kJkneGainBase : kTsrGainBase));
    SavedCalHex = New.NewCalHex;
    if (StopFlag == 1) return finish();
    SendBody(std::string(jkne ? "W21D" : "W22D") + New.NewCalHex + "0000");
    DelaySeconds(2.5f);
    if (StopFlag == 1) return finish();
    picQD.Print("Cold Junction Gain = " + New.NewCalHex + "  Saved");
    CurCal = 0;
  }
  if (!optNew.Value()) {
    SendAndRead(jkne ? "X11C" : "X12C", kWordReplyChars);
    CurCal = CalWordValue(g.ReplyText, false);
    DelaySeconds(2.5f);
    if (StopFlag == 1) return finish();
  }
  SendAndRead("B1", kReadingReplyChars);
  PosRdg = static_cast<float>(LeadingNumber(g.ReplyText));
  CurCal = PosRdg / kOffsetStep + CurCal;
  MakeHex2(New, CurCal);
  SavedCalHex = New.NewCalHex;
  SendBody(std::string(jkne ? "W11C" : "W12C") + New.NewCalHex);
  DelaySeconds(2.5f);
  if (StopFlag != 1) {
    picQD.Print("Cold Junction Offset = " + New.NewCalHex + "  Saved");
    optNew.SetValue(false);
    optFine.SetValue(false);
    cmdReady.SetEnabled(false);
    picQD.Print("Select either New Calibration, Fine Adjustment, Range or Exit");
  }
  finish();
}

// With 356.13 ohm across the inputs and the excitation: the meter is put into the RTD
// range, and the current source word is corrected until the resistor reads 13564 counts.
void Calibration::RTDRoutine() {
  BusyFlag = 1;
  RTDHeader();
  picQD.Print("Wait while calibrating");
  const auto finish = [this] {
    StopRoutine();
    BusyFlag = 0;
  };
  SendBody("W62A800080008000800080008000");
  DelaySeconds(2.5f);
  if (StopFlag == 1) return finish();
  SendBody("W1100050");
  DelaySeconds(2.5f);
  if (StopFlag == 1) return finish();
  SendAndRead("G130", kOptionReplyChars);
  SendBody("W111" + g.ReplyText + "37");
  DelaySeconds(2.5f);
  if (StopFlag == 1) return finish();
  SendBody("W305000000100001");
  DelaySeconds(2.5f);
  if (StopFlag == 1) return finish();
  SendAndRead("X11E", kWordReplyChars);
  picQD.Print("Old Calibration is " + g.ReplyText);
  CurCal = CalWordValue(g.ReplyText, true);
  DelaySeconds(3);
  if (StopFlag == 1) return finish();
  CurRdg = ReadReading();
  // A correction beyond what a 16-bit step can hold (a reading far from the target, or
  // none at all) is taken at the step's limit instead of ending the program.
  const float step = std::clamp((kRtdTarget - CurRdg) * kRtdFactor, -32768.0f, 32767.0f);
  New.NewCal = static_cast<float>(ToInt16(step)) + CurCal;
  MakeHex2(New, New.NewCal);
  if (StopFlag == 1) return finish();
  SendBody("W11E" + New.NewCalHex);
  DelaySeconds(2.5f);
  if (StopFlag == 1) return finish();
  picQD.Print("New Calibration is " + New.NewCalHex);
  picQD.Print("Reading should be 13564 counts");
  CurRdg = ReadReading();
  cmdReady.SetEnabled(true);
  picQD.Print("Reading is " + SingleNumberText(CurRdg));
  picQD.Print("");
  picQD.Print("Click on Ready to repeat this calibration, select another Range or Exit");
  finish();
}

}  // namespace dpm
