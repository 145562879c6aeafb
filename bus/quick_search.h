#pragma once

#include <vector>

#include "bus/terminal_search.h"

namespace kelvo {

/// The search in a hurry. It asks the same questions, but waits for the first character only as
/// long as the slowest answer so far makes sensible. Whatever comes at a wrong time or cannot be
/// read makes the addresses of the last half second doubtful: they are asked again in the usual
/// way, once the line is quiet. So are, at the end, absent addresses between present ones, the
/// narrowest gaps first.
class QuickSearch {
 public:
  struct Services {
    Exchange& exchange;
    SerialPort& com1;
    EventLoop& loop;
    TerminalState& state;
    std::function<bool()> reopenPort;
  };
  explicit QuickSearch(Services services);

  /// As TerminalSearch::Run, but the listener may be told of an address again.
  TerminalSearch::End Run(int last, double checksumFrom, const TerminalSearch::Listener& listener);
  void Stop() { stopping_ = true; }

 private:
  using Time = std::chrono::nanoseconds;

  void Pass(int address);
  void NoteStray();
  bool Doubtful(const SearchResult& result) const;
  void AwaitStray();
  void AskDoubtfulAgain();
  void AskGapsAgain();
  std::vector<int> Gaps() const;
  void AskAgain(int address);
  void Took(Time time);

  Services services_;
  TerminalSearch search_;
  TerminalSearch::Listener listener_;
  double checksumFrom_ = 0;
  std::vector<SearchResult> results_;  // by address
  std::vector<Time> asked_;            // at the latest, by address
  Time lastAsked_{0};                  // at the earliest
  Time quiet_{0};                      // when nothing was found to have come at a wrong time
  Time slowest_{0};
  std::size_t dropped_ = 0;  // characters that the port had dropped when this was looked at last
  bool stray_ = false;
  bool connected_ = false;
  bool stopping_ = false;
};

}  // namespace kelvo
