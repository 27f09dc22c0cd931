#pragma once

#include <cstdint>
#include <string>

// The request and answer dialogue with the meter: the caller puts the command in
// g.CommandText, sends it, waits for and reads the reply into g.ReplyText and looks at
// g.ErrFlag. Every wait serves user-interface events.
namespace dpm {

// g.ErrFlag values of ReceiveReply.
inline constexpr int16_t kReplyOk = 0;
inline constexpr int16_t kNoAnswer = 4;
inline constexpr int16_t kAnswerStopped = 5;
inline constexpr int16_t kOnlyEcho = 6;
inline constexpr int16_t kNoLineEnd = 9;

// A port that faults or vanishes during an exchange fails it as a silent meter does
// (g.ErrFlag kNoAnswer), is closed, and is opened again by name on the next command.
void SendCommand();
// Puts "*", the meter's address and the body in g.CommandText and sends it. `withZ` adds
// the "Z" that meters above revision 8 expect on the setup transfer's commands.
void SendBody(const std::string& body, bool withZ = false);
void ReceiveReply();
void DelayMs(int32_t ms);
void DelayChars(int16_t characters);
void DelaySeconds(float seconds);
void FlushLink();

// Seconds-since-midnight deadlines that survive midnight.
float DeadlineAfter(double seconds);
bool DeadlinePassed(float deadline);

}  // namespace dpm
