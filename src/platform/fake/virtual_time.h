#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "platform/clock.h"
#include "platform/events.h"

namespace dpm::fake {

// A clock that moves only when events are served: each Serve() is one millisecond of
// virtual time, after which everything that ticks with the clock (a scripted line, an
// in-process meter) gets its turn. A three-second wait is three thousand cheap turns.
class VirtualTime : public Clock, public EventPump {
 public:
  using Ticker = std::function<void(uint32_t nowMs)>;

  // `msAtStart` is the millisecond counter at start, `secondsSinceMidnightAtStart` the
  // time of day it stands for.
  explicit VirtualTime(uint32_t msAtStart = 1000, double secondsSinceMidnightAtStart = 43200.0);

  uint32_t Milliseconds() override { return nowMs_; }
  float SecondsSinceMidnight() override;
  void Serve() override;

  // Moves the clock on without serving anything in between, then ticks once.
  void Advance(uint32_t ms);
  // Serves events until the clock has moved `ms` on.
  void Run(uint32_t ms);
  // Milliseconds since the start of this virtual clock.
  uint32_t Elapsed() const { return nowMs_ - startMs_; }
  uint64_t ServeCount() const { return serveCount_; }

  void AddTicker(Ticker ticker) { tickers_.push_back(std::move(ticker)); }
  // Runs once during the next Serve(), as a user's click would.
  void Post(std::function<void()> action) { posted_.push_back(std::move(action)); }

 private:
  void Tick();

  uint32_t startMs_;
  uint32_t nowMs_;
  double midnightOffsetMs_;
  uint64_t serveCount_ = 0;
  std::vector<Ticker> tickers_;
  std::vector<std::function<void()>> posted_;
};

}  // namespace dpm::fake
