#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "link/exchange.h"
#include "link/traffic_record.h"

namespace kelvo {

/// Hands what happens on the line to everybody who follows it. Takes the listeners of the port and
/// the exchange, both of which must outlive it; who follows must outlive it too.
class LineWatch {
 public:
  using Outcomes = std::function<void(const Outcome&)>;

  LineWatch(SerialPort& port, Exchange& exchange) : port_(port), exchange_(exchange) {
    port_.SetTrafficListener([this](Direction direction, std::string_view characters) {
      for (const auto& follow : traffic_) follow(direction, characters);
    });
    port_.SetBreakListener([this](LineBreak how) {
      for (const auto& follow : breaks_) follow(how);
    });
    exchange_.SetOutcomeListener([this](const Outcome& outcome) {
      for (const auto& follow : outcomes_) follow(outcome);
    });
  }
  ~LineWatch() {
    port_.SetTrafficListener({});
    port_.SetBreakListener({});
    exchange_.SetOutcomeListener({});
  }
  LineWatch(const LineWatch&) = delete;
  LineWatch& operator=(const LineWatch&) = delete;

  /// Every stretch of characters that crosses the line, whoever sent it.
  void FollowTraffic(TrafficListener listener) { traffic_.push_back(std::move(listener)); }
  /// Where what was handed to the line may not have reached the Terminals.
  void FollowBreaks(BreakListener listener) { breaks_.push_back(std::move(listener)); }
  /// What came of each question and each acknowledged command.
  void FollowOutcomes(Outcomes listener) { outcomes_.push_back(std::move(listener)); }

 private:
  SerialPort& port_;
  Exchange& exchange_;
  std::vector<TrafficListener> traffic_;
  std::vector<BreakListener> breaks_;
  std::vector<Outcomes> outcomes_;
};

/// Keeps what crosses the line and what came of it in `record` from now on.
inline void RecordTraffic(LineWatch& line, const EventLoop& loop, TrafficRecord& record) {
  line.FollowTraffic([&](Direction direction, std::string_view characters) {
    record.Add(loop.WallClock(), direction, characters);
  });
  line.FollowOutcomes([&](const Outcome& outcome) { record.Note(loop.WallClock(), outcome); });
}

}  // namespace kelvo
