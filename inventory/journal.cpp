#include "inventory/journal.h"

#include <utility>

#include "inventory/journal_text.h"
#include "link/addresses.h"

namespace kelvo {
namespace {

// What a Terminal that is not there has, too.
bool TellsNothing(const JournalEntry& entry) {
  return entry.event == Event::Begun || entry.event == Event::Silent;
}

}  // namespace

WriteJournal::WriteJournal(const std::string& path) : file_(path) { TakeLines(); }

bool WriteJournal::Add(JournalEntry entry) {
  const auto failed = file_ ? file_->Append(JournalLine(entry)) : std::nullopt;
  if (!file_ || failed) {
    // What only adds to what is known is left out.
    const bool adds = entry.event == Event::FreeBytes || entry.event == Event::Proven;
    if (failed) entry.event = Event::NotRecorded;
    if (!failed || !adds) entries_.push_back(std::move(entry));
  } else {
    TakeLines();
  }
  if (listener_) listener_();
  if (failed && !std::exchange(told_, true) && failure_) failure_(*failed);
  return !failed;
}

void WriteJournal::Refresh() {
  const std::size_t before = entries_.size();
  TakeLines();
  if (entries_.size() != before && listener_) listener_();
}

// What is not in the file goes on to count, also when that has been exchanged.
void WriteJournal::TakeLines() {
  if (!file_) return;
  const JournalFile::Lines news = file_->Read();
  if (news.anew) {
    std::erase_if(entries_,
                  [](const JournalEntry& entry) { return entry.event != Event::NotRecorded; });
    unreadable_ = 0;
    folded_.clear();
  }
  for (const std::string& line : news.lines) {
    if (auto entry = ReadJournalLine(line)) {
      entries_.push_back(*std::move(entry));
    } else if (!line.empty()) {
      ++unreadable_;
    }
  }
}

Inventory WriteJournal::Of(const TerminalId& terminal) const {
  auto& [inventory, taken] = folded_[terminal];
  for (; taken < entries_.size(); ++taken) {
    const JournalEntry& entry = entries_[taken];
    if (entry.terminal.device != terminal.device) continue;
    if (entry.terminal.address == kAllAddresses) {
      inventory.Take(entry, true);
    } else if (entry.terminal.address == terminal.address) {
      inventory.Take(entry);
    } else if (entry.terminal.address == kUnknownAddress || terminal.address == kUnknownAddress ||
               terminal.address == kAllAddresses) {
      inventory.TakeUncertain(entry);
    }
  }
  return inventory;
}

std::vector<TerminalId> WriteJournal::Terminals() const {
  std::set<TerminalId> all;
  std::map<TerminalId, Event> last;
  std::set<std::string> single;  // lines of which a Terminal is known
  for (const JournalEntry& entry : entries_) {
    last[entry.terminal] = entry.event;
    if (TellsNothing(entry) || entry.terminal.address == kClosingAddress) continue;
    all.insert(entry.terminal);
    if (entry.terminal.address != kAllAddresses) single.insert(entry.terminal.device);
  }
  for (const auto& [terminal, event] : last) {
    if (event == Event::Begun && terminal.address != kClosingAddress) all.insert(terminal);
  }
  std::erase_if(all, [&single](const TerminalId& id) {
    return id.address == kAllAddresses && single.contains(id.device);
  });
  return {all.begin(), all.end()};
}

}  // namespace kelvo
