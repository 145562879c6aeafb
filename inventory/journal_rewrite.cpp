#include <set>

#include "inventory/journal.h"
#include "inventory/journal_text.h"

// Entries of others among the own ones, and out again.

namespace kelvo {
namespace {

using Lines = std::vector<std::string>;

std::string LineOf(const JournalEntry& entry) {
  std::string line = JournalLine(entry);
  line.pop_back();
  return line;
}

// A damaged line stays behind the one that it follows.
Lines Inserted(Lines lines, const std::vector<JournalEntry>& entries) {
  Lines all;
  auto next = entries.begin();
  for (std::string& line : lines) {
    const auto here = ReadJournalLine(line);
    for (; here && next != entries.end() && next->time < here->time; ++next) {
      all.push_back(LineOf(*next));
    }
    all.push_back(std::move(line));
  }
  for (; next != entries.end(); ++next) all.push_back(LineOf(*next));
  return all;
}

Lines Removed(Lines lines, const std::vector<JournalEntry>& entries) {
  std::multiset<std::string> gone;
  for (const JournalEntry& entry : entries) gone.insert(LineOf(entry));
  std::erase_if(lines, [&gone](const std::string& line) {
    const auto found = gone.find(line);
    if (found == gone.end()) return false;
    gone.erase(found);
    return true;
  });
  return lines;
}

}  // namespace

std::optional<std::string> WriteJournal::Rewrite(const JournalFile::Change& change) {
  if (file_) {
    if (auto reason = file_->Rewrite(change)) return reason;
    TakeLines();
  } else {
    Lines lines;
    for (const JournalEntry& entry : entries_) lines.push_back(LineOf(entry));
    entries_.clear();
    folded_.clear();
    for (const std::string& line : change(std::move(lines))) {
      if (auto entry = ReadJournalLine(line)) entries_.push_back(*std::move(entry));
    }
  }
  if (listener_) listener_();
  return std::nullopt;
}

std::optional<std::string> WriteJournal::Insert(const std::vector<JournalEntry>& entries) {
  return Rewrite([&entries](Lines lines) { return Inserted(std::move(lines), entries); });
}

std::optional<std::string> WriteJournal::Remove(const std::vector<JournalEntry>& entries) {
  return Rewrite([&entries](Lines lines) { return Removed(std::move(lines), entries); });
}

}  // namespace kelvo
