#include "emulator/in_process_meter.h"

#include <gtest/gtest.h>

#include <memory>

#include "link/transport.h"
#include "link_fixture.h"
#include "setup/default_image.h"

namespace dpm::emulator {
namespace {

// The program on the in-memory line with an emulated meter at the far end.
class InProcessMeterTest : public testing::LinkTest {
 protected:
  InProcessMeterTest() { Plug(); }

  void Plug(MeterOptions options = {}, PortOptions port = {}, const std::string& image = {}) {
    meter.reset();
    meter = std::make_unique<InProcessMeter>(line, std::move(options), image, port);
  }

  // Sends the command and returns the virtual milliseconds until the whole answer of
  // `length` characters is in, at most a second.
  uint32_t MsUntilAnswered(const std::string& body, std::size_t length) {
    g.CommandText = "*1" + body;
    SendCommand();
    const uint32_t sent = time.Elapsed();
    while (line.InBufferCount() < static_cast<int>(length) && time.Elapsed() - sent < 1000) time.Serve();
    return time.Elapsed() - sent;
  }

  std::unique_ptr<InProcessMeter> meter;
};

TEST_F(InProcessMeterTest, AnswersArePacedAtTheLineSpeedAfterTheLatency) {
  struct Case {
    const char* settings;
    uint32_t latencyMs;
    uint32_t expectedMs;  // from the send until "75<CR>" is in
  };
  // The command is 7 characters, the answer 3; a character is 10 bits.
  for (const Case& c : {Case{"9600,n,8,1", 3, 14}, Case{"9600,n,8,1", 0, 11}, Case{"9600,n,8,1", 50, 61},
                        Case{"19200,n,8,1", 3, 9}, Case{"300,n,8,1", 3, 337}}) {
    SCOPED_TRACE(std::string(c.settings) + " latency " + std::to_string(c.latencyMs));
    line.SetSettings(c.settings);
    PortOptions port;
    port.latencyMs = c.latencyMs;
    Plug({}, port);
    EXPECT_EQ(MsUntilAnswered("G130", 3), c.expectedMs);
    EXPECT_EQ(line.Input(), "75\r");
  }
}

TEST_F(InProcessMeterTest, EchoComesAheadOfTheReply) {
  PortOptions port;
  port.echo = true;
  Plug({}, port);
  EXPECT_EQ(MsUntilAnswered("G130", 10), 38u) << "7 characters of echo, 20 ms, 3 characters of answer";
  EXPECT_EQ(line.Input(), "*1G130\r75\r");
}

TEST_F(InProcessMeterTest, TwoWireLineGivesTheProgramItsOwnCommandBack) {
  PortOptions port;
  port.twoWire = true;
  Plug({}, port);
  g.CommandText = "*1G130";
  SendCommand();
  time.Run(50);
  EXPECT_EQ(line.Input(), "*1G130\r75\r");
}

TEST_F(InProcessMeterTest, BabbleWithoutALineEndRunsTheReplyOutOfPieces) {
  meter->Port().Options().babble = true;
  g.CommandText = "*1C3";
  SendCommand();
  ReceiveReply();
  EXPECT_EQ(g.ErrFlag, kNoLineEnd);
}

TEST_F(InProcessMeterTest, ContinuousOutputRunsAtTheSetupRateUntilStopped) {
  std::string image = DefaultSetupImage(4);
  image.replace(46, 2, "D1");  // output at the read rate: a record every 50 ms
  Plug({}, {}, image);
  meter->Device().ApplyInput(0.0125);
  g.CommandText = "*1A0";
  SendCommand();
  time.Run(1000);
  const std::string stream = line.Input();
  EXPECT_EQ(stream.size() % 8, 0u);
  EXPECT_EQ(stream.size() / 8, 20u) << "one record each 50 ms";
  EXPECT_EQ(stream.substr(0, 16), "+01250.\r+01250.\r");
  g.CommandText = "*1A1";
  SendCommand();
  time.Run(100);
  line.Input();
  time.Run(500);
  EXPECT_EQ(line.InBufferCount(), 0) << "no records after A1";
}

TEST_F(InProcessMeterTest, ContinuousOutputAtLineRateFillsTheLine) {
  g.CommandText = "*1A0";
  SendCommand();
  time.Run(1000);
  // 960 characters a second at 9600 baud, less the command and the latency.
  EXPECT_NEAR(static_cast<double>(line.Input().size()), 960 - 7 - 20, 8);
}

}  // namespace
}  // namespace dpm::emulator
