#include "readings/commands.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "link/globals.h"
#include "link/transport.h"
#include "link_fixture.h"
#include "platform/fake/scripted_dialogs.h"
#include "platform/faults.h"
#include "platform/forms/form_manager.h"

namespace dpm::testing {
namespace {

const std::vector<std::string> kPictures = {"LRCurr.BMP", "RLCurr.BMP", "Blank.BMP", "Computer.BMP", "Meter.BMP"};

// What went on the line, and how the status line looked at that moment.
struct Heard {
  std::string command;
  std::string status;
  int32_t color;
  bool operator==(const Heard&) const = default;
};

void PrintTo(const Heard& h, std::ostream* os) { *os << "{" << h.command << " | " << h.status << "}"; }

// A meter that answers the two reading requests a few milliseconds after hearing them and
// notes what the screen showed when each command arrived.
class WitnessMeter : public fake::SerialPeer {
 public:
  explicit WitnessMeter(fake::FakeSerialLine& line) : line_(line) { line.SetPeer(this); }
  ~WitnessMeter() override { line_.SetPeer(nullptr); }

  void OnBytesFromHost(const std::string& bytes, uint32_t) override {
    const std::string command = bytes.substr(0, bytes.find(CR));
    const Commands* form = Forms().FindLoaded<Commands>();
    const bool shown = form != nullptr && form->lblErrText.Visible();
    heard.push_back({command, shown ? form->lblErrText.Caption() : "(hidden)",
                     shown ? form->lblErrText.ForeColor() : kDesignColor});
    if (silent) return;
    if (const auto reply = replies.find(command.substr(2)); reply != replies.end())
      line_.ArriveAfter(5, reply->second + CR);
  }

  std::map<std::string, std::string> replies = {{"B1", "  12.34"}, {"B2", " 199.99"}};
  bool silent = false;
  std::vector<Heard> heard;

 private:
  fake::FakeSerialLine& line_;
};

// Where the moving picture stands, and which picture it shows, since when.
struct Frame {
  uint32_t ms;
  int left;
  std::string picture;
  bool operator==(const Frame&) const = default;
};

void PrintTo(const Frame& f, std::ostream* os) { *os << "{" << f.ms << ", " << f.left << ", " << f.picture << "}"; }

class FrameRecorder : public ControlView {
 public:
  FrameRecorder(PictureBox& picture, fake::VirtualTime& time) : picture_(picture), time_(time) {
    picture.AttachView(this);
  }
  ~FrameRecorder() override { picture_.AttachView(nullptr); }
  void Update(Property) override {
    const Frame frame{time_.Elapsed(), picture_.Left(), picture_.Picture().fileName};
    if (frames.empty() || frames.back().left != frame.left || frames.back().picture != frame.picture)
      frames.push_back(frame);
  }
  std::vector<Frame> frames;

 private:
  PictureBox& picture_;
  fake::VirtualTime& time_;
};

// The commands screen on a line to meter address "C", its pictures present, in virtual time.
class CommandsTest : public LinkTest {
 protected:
  CommandsTest() {
    Forms().Reset();
    Platform().dialogs = &dialogs;
    g.MeterAddress = "C";
    time.AddTicker([](uint32_t) { Forms().ServeTimers(); });
  }
  ~CommandsTest() override { Forms().Reset(); }

  Commands& Screen(const std::string& missingPicture = {}) {
    for (const std::string& name : kPictures)
      if (name != missingPicture) dialogs.AddPicture(name);
    return frmCmds();
  }
  void Press(const std::string& button) {
    Control* control = frmCmds().FindControl(button);
    ASSERT_NE(control, nullptr) << button;
    control->UserClick();
  }
  std::string Status() const {
    const Commands& form = *Forms().FindLoaded<Commands>();
    return form.lblErrText.Visible() ? form.lblErrText.Caption() : "(hidden)";
  }

  fake::ScriptedDialogs dialogs;
  WitnessMeter meter{line};
};

// The picture's road from `start`: from one end with its picture, 18 steps of 100 twips at
// 50 ms, then blank where it stopped.
std::vector<Frame> Road(uint32_t start, int from, int step, const std::string& picture) {
  std::vector<Frame> road;
  for (int i = 0; i <= 18; ++i) road.push_back({start + 50u * i, from + step * i, picture});
  road.push_back({start + 950, from + 18 * step, "Blank.BMP"});
  return road;
}

TEST_F(CommandsTest, EachButtonSendsItsCommandAfterShowingItsLineInGreen) {
  using Lines = std::vector<std::string>;
  struct Case {
    const char* button;
    const char* typed;  // in the remote display's box
    const char* sent;
    const char* statusWhileSent;
    const char* statusAfter;
    Lines latest, peak;  // the two displays afterwards
  };
  const Case cases[] = {
      {"cmdMRst", "", "*CC0", "Meter Reset Command sent.", "Meter Reset Command sent.", {}, {}},
      {"cmdFRst", "", "*CC1", "Function Reset Command sent.", "Function Reset Command sent.", {}, {}},
      {"cmdLARst", "", "*CC2", "Latched Alarms Reset Command sent.", "Latched Alarms Reset Command sent.", {}, {}},
      {"cmdPeak", "", "*CC3", "Peak Reset Command sent.", "Peak Reset Command sent.", {}, {}},
      {"cmdRmtDspy", "", "*CC4", "Remote Display Reset Command sent.", "Remote Display Reset Command sent.", {}, {}},
      {"cmdPeakRd", "", "*CB2", "Peak Request sent.", "Peak Request sent.    Peak received.", {}, {" 199.99"}},
      {"cmdLatest",
       "",
       "*CB1",
       "Latest Reading request sent.",
       "Latest Reading request sent.    Latest Reading received.",
       {"  12.34"},
       {}},
      {"cmdSend", "", "*CH", "Remote data sent to Display.", "Remote data sent to Display.", {"  12.34"}, {}},
      {"cmdSend",
       "Hi, *1C0 & 3.5 degrees of anything at all!",
       "*CHHi, *1C0 & 3.5 degrees of anything at all!",
       "Remote data sent to Display.",
       "Remote data sent to Display.",
       {"  12.34"},
       {}},
  };
  Commands& form = Screen();
  EXPECT_EQ(Status(), "(hidden)");
  for (const Case& c : cases) {
    SCOPED_TRACE(c.button);
    form.txtRmtDspy.SetText(c.typed);
    meter.heard.clear();
    Press(c.button);
    EXPECT_EQ(meter.heard, (std::vector<Heard>{{c.sent, c.statusWhileSent, ColGreen}}));
    EXPECT_EQ(Status(), c.statusAfter);
    EXPECT_EQ(form.lblErrText.ForeColor(), ColGreen);
    EXPECT_EQ(form.picLatest.PrintedLines(), c.latest);
    EXPECT_EQ(form.picPeakRd.PrintedLines(), c.peak);
    EXPECT_FALSE(form.Timer1.Enabled());
  }
  const DrawOp& reading = form.picLatest.Ops().at(0);
  EXPECT_EQ(std::pair(reading.x1, reading.y1), std::pair(230.0, 60.0));
}

// Without a meter a reading request reports a reading received after the reply's time-out,
// and shows whatever the last exchange left.
TEST_F(CommandsTest, NoMeterOnTheLine) {
  Commands& form = Screen();
  meter.silent = true;
  g.ReplyText = "  55.55";
  const uint32_t start = time.Elapsed();
  Press("cmdLatest");
  EXPECT_EQ(g.ErrFlag, kNoAnswer);
  EXPECT_GT(time.Elapsed() - start, 3000u);
  EXPECT_EQ(Status(), "Latest Reading request sent.    Latest Reading received.");
  EXPECT_EQ(form.lblErrText.ForeColor(), ColGreen);
  EXPECT_EQ(form.picLatest.PrintedLines(), std::vector<std::string>{"  55.55"});
}

// A sent text stays in the box, so Send sends it again, until the box takes the focus.
TEST_F(CommandsTest, TheRemoteTextStaysUntilTheBoxIsEntered) {
  Commands& form = Screen();
  form.txtRmtDspy.UserFocus();
  form.txtRmtDspy.UserSetText("TARE");
  form.cmdSend.UserFocus();
  form.txtRmtDspy.UserFocus();
  EXPECT_EQ(form.txtRmtDspy.Text(), "TARE") << "nothing was sent yet";
  form.cmdSend.UserFocus();
  Press("cmdSend");
  Press("cmdSend");
  EXPECT_EQ(form.txtRmtDspy.Text(), "TARE");
  form.txtRmtDspy.UserFocus();
  EXPECT_EQ(form.txtRmtDspy.Text(), "");
  form.txtRmtDspy.UserSetText("NEXT");
  form.cmdSend.UserFocus();
  form.txtRmtDspy.UserFocus();
  EXPECT_EQ(form.txtRmtDspy.Text(), "NEXT");
  std::vector<std::string> sent;
  for (const Heard& h : meter.heard) sent.push_back(h.command);
  EXPECT_EQ(sent, (std::vector<std::string>{"*CHTARE", "*CHTARE"}));
}

TEST_F(CommandsTest, TheCurrentTravelsToTheMeterAndBackInStepsOf50Ms) {
  Commands& form = Screen();
  FrameRecorder recorder(form.picCurrent, time);

  Press("cmdFRst");
  ASSERT_GE(recorder.frames.size(), 2u);
  EXPECT_EQ(recorder.frames.front(), (Frame{recorder.frames.front().ms, 2625, ""})) << "moved before its picture";
  std::vector<Frame> frames(recorder.frames.begin() + 1, recorder.frames.end());
  EXPECT_EQ(frames, Road(frames.front().ms, 2625, 100, "LRCurr.BMP"));
  EXPECT_EQ(form.picCurrent.Top(), 4010);

  recorder.frames.clear();
  Press("cmdPeakRd");
  ASSERT_EQ(recorder.frames.size(), 41u);
  EXPECT_EQ(recorder.frames.front(), (Frame{recorder.frames.front().ms, 2625, "Blank.BMP"}));
  frames.assign(recorder.frames.begin() + 1, recorder.frames.begin() + 21);
  EXPECT_EQ(frames, Road(frames.front().ms, 2625, 100, "LRCurr.BMP")) << "the request";
  frames.assign(recorder.frames.begin() + 21, recorder.frames.end());
  EXPECT_EQ(frames, Road(frames.front().ms, 4425, -100, "RLCurr.BMP")) << "the reply";
  EXPECT_FALSE(form.Timer1.Enabled());
}

// A reading requested while a reset's picture is on its way runs its animations inside the
// reset's, and turns the timer off at their end with the picture back at the computer. The
// reset's animation then goes on at its pace to the meter instead of standing still.
TEST_F(CommandsTest, AButtonPressedDuringAnAnimationLetsTheFirstFinish) {
  Commands& form = Screen();
  bool pressed = false;
  time.AddTicker([&](uint32_t) {
    if (!pressed && form.picCurrent.Left() == 3125) {
      pressed = true;
      form.cmdLatest.UserClick();
    }
    if (time.Elapsed() > 60000) Forms().End();  // a stuck animation must not hang the test
  });
  FrameRecorder recorder(form.picCurrent, time);
  Press("cmdMRst");
  ASSERT_TRUE(pressed);
  EXPECT_FALSE(Forms().Ended());
  EXPECT_EQ(Status(), "Latest Reading request sent.    Latest Reading received.");
  EXPECT_EQ(form.picLatest.PrintedLines(), std::vector<std::string>{"  12.34"});
  EXPECT_FALSE(form.Timer1.Enabled());
  // After the reading's road back, the reset's picture takes its remaining 17 steps.
  const std::vector<Frame> last(recorder.frames.end() - 18, recorder.frames.end());
  EXPECT_EQ(last.front(), (Frame{last.front().ms, 2725, "Blank.BMP"}));
  EXPECT_EQ(last.back(), (Frame{last.front().ms + 50 * 17, 4425, "Blank.BMP"}));
  ASSERT_EQ(meter.heard.size(), 2u);
  EXPECT_EQ(meter.heard[1], (Heard{"*CB1", "Latest Reading request sent.", ColGreen}));
}

// A picture that is not in the program's folder ends the program with its name.
TEST_F(CommandsTest, AMissingPictureIsAFaultThatNamesIt) {
  struct Case {
    const char* missing;
    const char* button;  // nullptr: opening the screen
  };
  for (const Case& c : {Case{"Computer.BMP", nullptr}, Case{"Meter.BMP", nullptr}, Case{"LRCurr.BMP", "cmdMRst"},
                        Case{"Blank.BMP", "cmdSend"}, Case{"RLCurr.BMP", "cmdLatest"}}) {
    SCOPED_TRACE(c.missing);
    Forms().Reset();
    dialogs = fake::ScriptedDialogs();
    try {
      Screen(c.missing);
      if (c.button != nullptr) Press(c.button);
      ADD_FAILURE() << "no fault";
    } catch (const FileFault& fault) {
      EXPECT_NE(std::string(fault.what()).find(std::string("\"") + c.missing + "\""), std::string::npos)
          << fault.what();
    }
  }
}

}  // namespace
}  // namespace dpm::testing
