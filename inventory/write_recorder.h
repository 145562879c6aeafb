#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "inventory/journal.h"
#include "inventory/settings_trace.h"
#include "link/line_state.h"
#include "link/line_watch.h"

namespace kelvo {

/// Follows the line and records in the journal what changes an EEPROM, whoever sends it: that it
/// is begun before the first character leaves, and what came of it before who has sent it goes on.
class WriteRecorder {
 public:
  struct Services {
    LineWatch& line;
    LineState& state;
    const Exchange& exchange;
    const EventLoop& loop;
    WriteJournal& journal;
    std::function<std::string()> device;  ///< of the port that is open
  };
  explicit WriteRecorder(Services services);
  WriteRecorder(const WriteRecorder&) = delete;
  WriteRecorder& operator=(const WriteRecorder&) = delete;

  /// The Terminal that listens now; not known where one answers to the address that closes a
  /// transfer.
  TerminalId Listener() const;
  /// What was set on a Terminal since it was started.
  const Settings& SetOn(const TerminalId& terminal) const { return settings_.Of(terminal); }

 private:
  void Sent(std::string_view command);
  void Begin(std::string_view command, const ItemChange& change);
  void RunMacro(int number);
  void RunMacro(const TerminalId& terminal, int number, int depth);
  void RunDoubtful(const TerminalId& terminal, const ItemKey& key, const Doubt& macro, int depth);
  void RunText(const TerminalId& terminal, const Item& macro, int depth);
  void CountSum(std::string_view characters);
  void Settle(const Outcome& outcome);
  void End(const Outcome& outcome);
  void LeaveCounts(std::string_view asked);
  bool StaysOpen(Event event);
  void Prove(const Reply& reply);
  void NoteFreeBytes(const Reply& reply);
  void Record(JournalEntry entry, Event event);
  bool& TornAt(const std::string& device);

  struct Pending {
    JournalEntry entry;
    std::string command;
    bool counts = false;  ///< it is answered by numbers first
    bool told = false;    ///< that so far nothing good has come
    bool unsure = false;  ///< a macro cut off before may have taken it for a part of its text
    Settings settings{};  ///< that the configuration before it is known to keep
  };
  std::string StoredText(const Pending& pending) const;
  /// What has been sent since the Terminal's sum was set to 0.
  struct Proof {
    std::uint16_t sum = 0;
    std::vector<Pending> acknowledged;
  };

  Services services_;
  std::vector<Pending> pending_;
  std::optional<Proof> proof_;
  SettingsTrace settings_;
  std::map<std::string, bool> torn_;  // devices; the last write has not got through to its end
};

}  // namespace kelvo
