#pragma once

#include <functional>
#include <optional>
#include <string>

#include "cli/bench.h"
#include "interfaces/port_control.h"
#include "inventory/journal.h"
#include "inventory/write_recorder.h"
#include "link/exchange.h"
#include "link/line_state.h"
#include "link/line_watch.h"
#include "terminal/terminal_state.h"

namespace kelvo::cli {

/// Where the line is and how it is set.
struct LineSetting {
  int number = 0;  ///< "Com `number`"; 0 for a device that was named
  std::string device;
  PortSettings settings;
};
/// The stored one, with what was asked for in its place. Throws WrongRequest when there is none.
LineSetting LineSettingOf(Bench& bench);

/// The line to the Terminals, with what follows it: writes are recorded as the window does.
class Connection {
 public:
  explicit Connection(Bench& bench);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// False when the port cannot be opened, which has been said.
  bool Open();
  /// Closes the port and opens it again.
  bool Reopen();
  const std::string& Device() const { return line_.device; }

  /// What stops the present work between two commands; a second interruption ends every wait.
  void SetStop(std::function<void()> stop) { stop_ = std::move(stop); }
  bool Interrupted() const { return interrupted_; }

  /// Whether the device went away under the work.
  bool Lost() const;
  /// Says so, once. What has been lost and not been told is told at the end.
  void TellLoss();

  Exchange exchange;
  TerminalState terminal;
  WriteJournal journal;

 private:
  void Interrupt();
  void ReadPause();

  Bench& bench_;
  const LineSetting line_;
  PortControl control_;
  LineWatch watch_;
  LineState state_;
  WriteRecorder recorder_;
  std::function<void()> stop_;
  bool opened_ = false;  // and not closed from here
  bool lossTold_ = false;
  bool interrupted_ = false;
};

}  // namespace kelvo::cli
