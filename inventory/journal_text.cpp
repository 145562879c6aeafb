#include "inventory/journal_text.h"

#include <algorithm>
#include <array>
#include <utility>

#include "inventory/line_text.h"
#include "link/addresses.h"

namespace kelvo {
namespace {

constexpr std::string_view kDelete = " löschen";
constexpr std::string_view kErase = "alles löschen";
constexpr std::string_view kRoom = "freier Platz";
constexpr std::string_view kAll = "alle";
constexpr std::string_view kUnknown = "?";
constexpr std::string_view kNone = "-";
constexpr std::size_t kFields = 8;  // without the check

constexpr std::pair<Event, std::string_view> kEvents[] = {
    {Event::Begun, "begonnen"},
    {Event::Acknowledged, "bestätigt"},
    {Event::Proven, "geprüft"},
    {Event::Refused, "abgelehnt"},
    {Event::Silent, "keine Antwort"},
    {Event::Unclear, "unklare Antwort"},
    {Event::LineLost, "Verbindung verloren"},
    {Event::WrongSum, "falsche Prüfsumme"},
    {Event::ByMacro, "durch Makro"},
    {Event::FreeBytes, "gelesen"},
    {Event::NotRecorded, "nicht aufgezeichnet"}};

constexpr ItemKind kKinds[] = {ItemKind::Config, ItemKind::Macro, ItemKind::MatrixTable,
                               ItemKind::AtTable, ItemKind::Bitmap};

std::string WhatText(const JournalEntry& entry) {
  if (entry.event == Event::FreeBytes) return std::string(kRoom);
  switch (entry.change.kind) {
    case ItemChange::Kind::Erased:
      return std::string(kErase);
    case ItemChange::Kind::Deleted:
      return ItemText(entry.change.key) + std::string(kDelete);
    case ItemChange::Kind::Written:
      break;
  }
  return ItemText(entry.change.key);
}

std::optional<ItemKey> KeyIn(std::string_view text) {
  for (const ItemKind kind : kKinds) {
    const std::string name = ItemKindText(kind);
    if (kind == ItemKind::Config && text == name) return ItemKey{kind, 0};
    if (!text.starts_with(name + " ")) continue;
    const auto number = NumberIn<int>(text.substr(name.size() + 1));
    if (number && *number >= 0 && *number <= 255) return ItemKey{kind, *number};
  }
  return std::nullopt;
}

std::optional<ItemChange> ChangeIn(std::string_view text) {
  using Kind = ItemChange::Kind;
  if (text == kRoom) return ItemChange{};
  if (text == kErase) return ItemChange{Kind::Erased, {}};
  const bool deleted = text.ends_with(kDelete);
  if (deleted) text.remove_suffix(kDelete.size());
  const auto key = KeyIn(text);
  if (!key) return std::nullopt;
  return ItemChange{deleted ? Kind::Deleted : Kind::Written, *key};
}

std::optional<Event> EventIn(std::string_view text) {
  for (const auto& [event, word] : kEvents) {
    if (text == word) return event;
  }
  return std::nullopt;
}

std::optional<int> AddressIn(std::string_view text) {
  if (text == kAll) return kAllAddresses;
  if (text == kUnknown) return kUnknownAddress;
  return NumberIn<int>(text);
}

std::string BytesText(const JournalEntry& entry) {
  if (entry.event == Event::FreeBytes) return std::to_string(entry.bytes);
  if (entry.command.empty()) return std::string(kNone);
  return std::to_string(ItemBytes({entry.change.key, entry.command, {}}));
}

using Columns = std::array<std::string_view, kFields>;

std::optional<Columns> Split(std::string_view line) {
  Columns columns;
  for (std::size_t i = 0; i < kFields; ++i) {
    const std::size_t tab = line.find('\t');
    if ((tab == std::string_view::npos) != (i + 1 == kFields)) return std::nullopt;
    columns[i] = line.substr(0, tab);
    if (tab != std::string_view::npos) line.remove_prefix(tab + 1);
  }
  return columns;
}

}  // namespace

std::string EventText(Event event) {
  for (const auto& [known, word] : kEvents) {
    if (known == event) return std::string(word);
  }
  return {};
}

std::string AddressText(int address) {
  if (address == kAllAddresses) return std::string(kAll);
  return address == kUnknownAddress ? std::string(kUnknown) : std::to_string(address);
}

std::string JournalLine(const JournalEntry& entry) {
  std::string line = TimeText(entry.time);
  for (const std::string& field :
       {EscapedText(entry.terminal.device), AddressText(entry.terminal.address),
        EventText(entry.event), WhatText(entry), BytesText(entry), EscapedText(entry.name),
        EscapedWire(entry.command)}) {
    line += '\t' + field;
  }
  return Sealed(std::move(line)) + '\n';
}

std::optional<JournalEntry> ReadJournalLine(std::string_view line) {
  const auto body = Unsealed(line);
  const auto columns = body ? Split(*body) : std::nullopt;
  if (!columns) return std::nullopt;
  const auto& [time, device, address, event, what, bytes, name, command] = *columns;
  const auto readTime = TimeIn(time);
  const auto readAddress = AddressIn(address);
  const auto readEvent = EventIn(event);
  const auto readChange = ChangeIn(what);
  const auto readDevice = PlainText(device);
  const auto readName = PlainText(name);
  const auto readCommand = PlainWire(command);
  if (!readTime || !readAddress || !readEvent || !readChange) return std::nullopt;
  if (!readDevice || !readName || !readCommand) return std::nullopt;
  const std::int64_t room =
      *readEvent == Event::FreeBytes ? NumberIn<std::int64_t>(bytes).value_or(0) : 0;
  return JournalEntry{
      *readTime, {*readDevice, *readAddress}, *readEvent, *readChange, *readName, *readCommand,
      room};
}

}  // namespace kelvo
