#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "inventory/proven_write.h"

// Items go to many Terminals of a line, one after the other, each proven for itself.

namespace kelvo {

/// An item with what stands around it on the wire.
struct WriteOrder {
  Item item;
  WriteFrame frame{};
};

enum class JobState : std::uint8_t {
  None,     ///< not part of the run
  Waiting,  ///< its turn is still to come
  Writing,
  Over,  ///< its result tells
  Open,  ///< the run has ended before its turn
};

/// One item for one Terminal, and how far it is.
struct WriteJob {
  std::string terminal{};  ///< its name, UTF-8
  int address = 0;
  bool canSum = false;
  bool ticked = false;  ///< it takes part; what is done is unticked
  WriteOrder order{};
  std::string why{};  ///< it is to be written, UTF-8; may be empty
  JobState state = JobState::None;
  WriteResult result{};

  bool Done() const { return state == JobState::Over && result.Done(); }
  bool Failed() const { return state == JobState::Over && !result.Done(); }
};

/// In German how it stands with a job. UTF-8.
std::string JobText(const WriteJob& job);
/// In German how many are proven, acknowledged, failed and open. UTF-8.
std::string JobSummary(const std::vector<WriteJob>& jobs);

/// It serves the event loop all the time; it ends early when it is stopped or the line is lost.
class WriteRun {
 public:
  using Listener = std::function<void(std::size_t job)>;

  WriteRun(Exchange& exchange, EventLoop& loop) : exchange_(exchange), loop_(loop) {}

  /// Writes the ticked ones. The listener is told of each job that has changed. Afterwards the
  /// Terminal `selectAfter` is selected, without one nobody.
  void Run(std::vector<WriteJob>& jobs, std::optional<int> selectAfter, const Listener& listener);
  /// Ends it after the item that is being written.
  void Stop() { stopping_ = true; }

 private:
  Exchange& exchange_;
  EventLoop& loop_;
  bool stopping_ = false;
};

}  // namespace kelvo
