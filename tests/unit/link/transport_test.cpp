#include "link/transport.h"

#include <gtest/gtest.h>

#include "link_fixture.h"
#include "platform/faults.h"

namespace dpm {
namespace {

using Kind = fake::FakeSerialLine::Kind;
using Event = fake::FakeSerialLine::Event;

class TransportTest : public testing::LinkTest {
 protected:
  // Runs ReceiveReply and returns how long it took in virtual milliseconds.
  uint32_t TimedReceive() {
    const uint32_t start = time.Elapsed();
    ReceiveReply();
    return time.Elapsed() - start;
  }
  void Command(const std::string& body) { g.CommandText = "*1" + body; }
};

TEST_F(TransportTest, SilentMeterTimesOutAfterThreeSecondsPlusTheCommandTime) {
  struct Case {
    int16_t baudIndex, charTime;
    uint32_t tookMs;  // six characters and the line end
  };
  for (const Case c : {Case{5, 1, 3008}, Case{0, 33, 3000 + 33 * 7}}) {
    SCOPED_TRACE(c.baudIndex);
    g.BaudIndex = c.baudIndex;
    g.CharTime = c.charTime;
    Command("XU1D");
    g.ReplyText = "previous";
    const uint32_t took = TimedReceive();
    EXPECT_EQ(g.ErrFlag, kNoAnswer);
    EXPECT_NEAR(took, c.tookMs, 2);
    EXPECT_EQ(g.ReplyText, "previous") << "a failure before the first byte keeps the old reply";
  }
}

// Splits `reply` into pieces arriving 10 ms apart, starting 20 ms from now.
void ArriveInPieces(fake::FakeSerialLine& line, const std::vector<std::string>& pieces) {
  uint32_t delay = 20;
  for (const auto& piece : pieces) {
    line.ArriveAfter(delay, piece);
    delay += 10;
  }
}

std::vector<std::string> DigitPiecesThenLineEnd(int count) {
  std::vector<std::string> pieces(static_cast<std::size_t>(count - 1), "0");
  pieces.push_back("\r");
  return pieces;
}

TEST_F(TransportTest, PieceCountLimit) {
  struct Case {
    int pieces;
    int16_t errFlag;
  };
  for (const Case c : {Case{2, kReplyOk}, Case{49, kReplyOk}, Case{50, kNoLineEnd}, Case{51, kNoLineEnd}}) {
    SCOPED_TRACE(c.pieces);
    Command("G130");
    ArriveInPieces(line, DigitPiecesThenLineEnd(c.pieces));
    ReceiveReply();
    EXPECT_EQ(g.ErrFlag, c.errFlag);
    if (c.errFlag == kReplyOk) {
      EXPECT_EQ(g.ReplyText, std::string(static_cast<std::size_t>(c.pieces - 1) & ~std::size_t{1}, '0'));
    }
    time.Run(1000);
    line.Input();
  }
}

// A failure leaves the last piece as the reply; a reply stops half a second after its last piece.
TEST_F(TransportTest, EchoesAndRepliesThatStop) {
  struct Case {
    const char* what;
    std::vector<std::string> pieces;
    int16_t errFlag;
    const char* reply;
    uint32_t tookMs;
  };
  const Case cases[] = {
      {"the echo is taken off and the reply follows", {"*1G1", "30\r", "C1\r"}, kReplyOk, "C1", 40},
      {"an echo followed by silence", {"*1G130\r"}, kAnswerStopped, "*1G130\r", 20 + 500},
      {"a reply in the same piece as its echo is not seen", {"*1G130\rC1\r"}, kAnswerStopped, "*1G130\rC1\r", 520},
      {"a reply that stops midway", {"0123", "4567"}, kAnswerStopped, "4567", 30 + 500},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Command("G130");
    ArriveInPieces(line, c.pieces);
    const uint32_t took = TimedReceive();
    EXPECT_EQ(g.ErrFlag, c.errFlag);
    EXPECT_EQ(g.ReplyText, c.reply);
    EXPECT_NEAR(took, c.tookMs, 3);
    time.Run(1000);
    line.Input();
  }
}

TEST_F(TransportTest, OddLengthIsCutExceptForReadings) {
  struct Case {
    const char* body;
    const char* reply;
    const char* expected;
  };
  for (const Case c : {Case{"G130", "1234567\r", "123456"}, Case{"B1", "1234567\r", "1234567"},
                       Case{"B2", " 12.5\r", " 12.5"}, Case{"XU1D", "123456\r", "123456"}, Case{"R17F", "3\r", ""}}) {
    SCOPED_TRACE(c.body);
    Command(c.body);
    line.ArriveAfter(20, c.reply);
    ReceiveReply();
    EXPECT_EQ(g.ErrFlag, kReplyOk);
    EXPECT_EQ(g.ReplyText, c.expected);
  }
}

// An adapter pulled out mid-exchange: the exchange fails as with a silent meter, at once,
// and so does every exchange until the device is back; then the port opens again by name.
TEST_F(TransportTest, LostPortFailsLikeASilentMeterAndReopensOnTheNextCommand) {
  Command("G130");
  g.ReplyText = "old";
  line.FailFromNowOn(true);
  const uint32_t took = TimedReceive();
  EXPECT_EQ(g.ErrFlag, kNoAnswer);
  EXPECT_LT(took, 10u) << "a vanished port is not waited for";
  EXPECT_FALSE(line.PortOpen());

  EXPECT_NO_THROW(SendCommand()) << "the device is still away";
  EXPECT_EQ(TimedReceive(), 0u);
  EXPECT_EQ(g.ErrFlag, kNoAnswer);

  line.FailFromNowOn(false);
  line.ClearTranscript();
  line.ArriveAfter(150, "00\r");
  SendCommand();
  ReceiveReply();
  EXPECT_EQ(g.ErrFlag, kReplyOk);
  EXPECT_EQ(g.ReplyText, "00");
  EXPECT_EQ(line.Transcript().front(), (Event{0, Kind::Open, "COM1"}));
  EXPECT_EQ(line.SentCommands().front().text, "*1G130");
}

TEST_F(TransportTest, PortThatFailsWhileSendingIsClosedAndTheReplyFails) {
  Command("G130");
  line.FailFromNowOn(true);
  EXPECT_NO_THROW(SendCommand());
  EXPECT_FALSE(line.PortOpen());
  ReceiveReply();
  EXPECT_EQ(g.ErrFlag, kNoAnswer);
}

TEST_F(TransportTest, FullDuplexSendKeepsRtsRaised) {
  Command("XU1D");
  line.Arrive("stale");
  SendCommand();
  const std::vector<Event> expected = {
      {0, Kind::RtsOn, ""}, {0, Kind::Discarded, "stale"}, {100, Kind::Sent, "*1XU1D\r"}};
  EXPECT_EQ(line.Transcript(), expected);
  EXPECT_TRUE(line.RTSEnable());
}

TEST_F(TransportTest, HalfDuplexSendDropsRtsAndDiscardsItsOwnTransmission) {
  g.HalfDuplexFlag = 1;
  Command("XU1D");
  line.ArriveAfter(105, "*1XU1D\r");  // the computer hears itself on a two-wire line
  SendCommand();
  // Hold time: CharTime x (6 + 1) + 3 = 10 ms after the send, then 8 ms before the read.
  const std::vector<Event> expected = {
      {0, Kind::RtsOn, ""}, {100, Kind::Sent, "*1XU1D\r"}, {110, Kind::RtsOff, ""}, {118, Kind::Discarded, "*1XU1D\r"}};
  EXPECT_EQ(line.Transcript(), expected);
  EXPECT_FALSE(line.RTSEnable());
}

// Settings that keep the port closed but the menus open: commands find a silent meter,
// and the port stays closed as the settings say.
TEST_F(TransportTest, PortTheSettingsKeptClosedStaysClosed) {
  line.SetPortOpen(false);
  line.ClearTranscript();
  Command("G130");
  EXPECT_NO_THROW(SendCommand());
  ReceiveReply();
  EXPECT_EQ(g.ErrFlag, kNoAnswer);
  EXPECT_TRUE(line.Transcript().empty());
}

TEST_F(TransportTest, DelaySecondsOfZeroDependsOnTheBaudRate) {
  struct Case {
    int16_t baudIndex;
    uint32_t expectedMs;
  };
  for (const Case c : {Case{0, 550}, Case{3, 250}, Case{5, 50}, Case{6, 0}}) {
    SCOPED_TRACE(c.baudIndex);
    g.BaudIndex = c.baudIndex;
    const uint64_t serves = time.ServeCount();
    const uint32_t start = time.Elapsed();
    DelaySeconds(0.0f);
    EXPECT_NEAR(time.Elapsed() - start, c.expectedMs, 2);
    if (c.expectedMs == 0) {
      EXPECT_EQ(time.ServeCount(), serves) << "no wait: returns after the first clock test";
    }
  }
}

TEST_F(TransportTest, DelayCharsWaitsTheLineTimePlusATenthOfASecond) {
  struct Case {
    int16_t charTime;
    int16_t characters;
    uint32_t expectedMs;
  };
  for (const Case c : {Case{1, 128, 228}, Case{33, 128, 4324}, Case{8, 10, 180}}) {
    g.CharTime = c.charTime;
    const uint32_t start = time.Elapsed();
    DelayChars(c.characters);
    EXPECT_EQ(time.Elapsed() - start, c.expectedMs);
  }
  g.CharTime = 33;
  EXPECT_THROW(DelayChars(1000), OverflowFault) << "33000 does not fit 16 bits";
}

TEST_F(TransportTest, DelayMsServesNothingWhenTheTimeIsReached) {
  const uint64_t serves = time.ServeCount();
  DelayMs(0);
  DelayMs(-5);
  EXPECT_EQ(time.ServeCount(), serves);
  DelayMs(100);
  EXPECT_EQ(time.ServeCount(), serves + 100);
}

TEST_F(TransportTest, FlushLinkDrainsTheOutputThenClosesThePortTwoHundredMillisecondsLater) {
  line.SetOutputPace(1);
  line.Output("*1C0\r");  // five bytes still on their way
  FlushLink();
  EXPECT_FALSE(line.PortOpen());
  EXPECT_EQ(line.Handshaking(), 0);
  EXPECT_EQ(line.Transcript().back(), (Event{205, Kind::Close, "COM1"}));
  EXPECT_NO_THROW(FlushLink()) << "a closed port is left as it is";
}

TEST(Midnight, WrappedDeadlineDoesNotPassBeforeMidnight) {
  fake::VirtualTime time(1000, 86399.0);
  Platform() = Services{&time, &time, nullptr};
  const float deadline = DeadlineAfter(2.0);  // 86401.0 wraps to 1.0
  EXPECT_FLOAT_EQ(deadline, 1.0f);
  time.Run(500);  // 86399.5
  EXPECT_FALSE(DeadlinePassed(deadline));
  time.Run(1400);  // 0.9 after midnight
  EXPECT_FALSE(DeadlinePassed(deadline));
  time.Run(150);
  EXPECT_TRUE(DeadlinePassed(deadline));

  fake::VirtualTime second(1000, 86399.0);
  Platform() = Services{&second, &second, nullptr};
  DelaySeconds(2.0f);
  EXPECT_NEAR(second.Elapsed(), 2000, 2);
  Platform() = Services{};
}

}  // namespace
}  // namespace dpm
