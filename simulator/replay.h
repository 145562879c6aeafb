#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/line.h"
#include "simulator/replay_plan.h"

namespace kelvo::sim {

/// What came back to one step, and when, in the capture's time.
struct ReplayHeard {
  std::string characters;
  std::vector<Time> at;  ///< of each of them
};

/// An answer that differs.
struct ReplayDifference {
  std::size_t line;  ///< of the capture: of the answer, or of what was sent when none was there
  std::size_t sentLine;
  std::string sent;
  std::string recorded{};
  std::string replayed{};
};

struct ReplayReport {
  std::size_t answers = 0;  ///< texts that something came back to, there or here
  std::vector<ReplayDifference> differences;
  std::size_t unaskedCharacters = 0;  ///< of the capture
  std::vector<std::size_t> unaskedLines;
  std::size_t notCompared = 0;  ///< texts during which the line went away
};

/// Holds what has come back to each of the plan's steps against the capture. An answer whose end
/// came behind the next text there and before it here, or the other way round, is the same.
ReplayReport CompareReplay(const ReplayPlan& plan, const std::vector<ReplayHeard>& heard);

/// For people, German: each difference and what there was in all.
std::string ReplayText(const ReplayReport& report);

/// Sends what the host sent in a capture, in its time. All depends on the times that it is given
/// events for and on nothing else, so it goes as well at once as in real time.
class Replay {
 public:
  /// Before the first text, for Terminals that have something to do when they are switched on.
  static constexpr Time kLead = std::chrono::seconds(1);
  /// What may still come behind the last one.
  static constexpr Time kTrail = std::chrono::seconds(1);
  /// An answer that was recorded is waited for, however much later than there it comes; what
  /// follows is sent later then. At most this long.
  static constexpr Time kPatience = std::chrono::seconds(60);

  /// The bus and its line must outlive it. The Terminals are on since `start`.
  Replay(ReplayPlan plan, Bus& bus, Line& line, Time start);

  /// Lets pass what has become due.
  void Advance(Time now);
  /// When Advance has something to do; nothing when all has been played.
  std::optional<Time> NextEvent() const;
  bool Done() const { return done_; }
  ReplayReport Report() const { return CompareReplay(plan_, heard_); }

 private:
  bool Waits() const;
  Time NextSend() const;
  void Hear(Time now);
  void Send();
  void FollowInterface();

  const ReplayPlan plan_;
  Bus& bus_;
  Line& line_;
  Time start_;  // of the capture's time; later by each wait
  std::size_t step_ = 0;
  Time sentAt_;
  std::vector<ReplayHeard> heard_;
  // Since a text was sent that met no answer still on its way.
  std::string heardLately_;
  std::string recordedLately_;
  bool done_ = false;
};

}  // namespace kelvo::sim
