#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "inventory/journal.h"
#include "link/exchange.h"
#include "link/line_watch.h"

namespace kelvo {

/// What came of the last question for the free bytes of a Terminal's EEPROM.
struct FreeBytes {
  TerminalId terminal;
  JournalTime time;
  std::optional<double> bytes;  ///< nothing where there was no answer
  std::string lack{};           ///< what came in place of a good answer, German, UTF-8
};

/// Follows the line and knows the free bytes of each Terminal as they were asked for last, by
/// whatever page; of one that was not asked since the start, what the journal has.
class FreeBytesMemory {
 public:
  struct Services {
    LineWatch& line;
    const Exchange& exchange;
    const EventLoop& loop;
    const WriteJournal& journal;
    std::function<TerminalId()> listener;  ///< who listens now
  };
  explicit FreeBytesMemory(Services services);
  FreeBytesMemory(const FreeBytesMemory&) = delete;
  FreeBytesMemory& operator=(const FreeBytesMemory&) = delete;

  /// Told after each answer, and each one that did not come.
  void SetListener(std::function<void()> listener) { told_ = std::move(listener); }
  /// Nothing where that Terminal was never asked.
  std::optional<FreeBytes> Of(const TerminalId& terminal) const;
  /// What the Terminal behind `device` that was asked last has said; without one, behind any.
  std::optional<FreeBytes> LastAt(const std::string& device) const;
  /// How often one was asked since the start.
  std::size_t Asked() const { return answers_; }

 private:
  void Sent(std::string_view characters);
  void Take(const Outcome& outcome);
  void TakeNameless(const TerminalId& told);
  std::optional<FreeBytes> Read(const TerminalId& terminal) const;

  Services services_;
  std::map<TerminalId, FreeBytes> asked_;
  std::optional<TerminalId> nameless_;  // who was asked without an address, and listens still
  std::size_t answers_ = 0;
  std::function<void()> told_;
};

}  // namespace kelvo
