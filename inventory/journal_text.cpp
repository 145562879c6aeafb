#include "inventory/journal_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <utility>

#include "base/wire_text.h"
#include "link/addresses.h"

namespace kelvo {
namespace {

using enum Event;

constexpr char kHex[] = "0123456789ABCDEF";
constexpr std::string_view kDelete = " löschen";
constexpr std::string_view kErase = "alles löschen";
constexpr std::string_view kRoom = "freier Platz";
constexpr std::string_view kAll = "alle";
constexpr std::string_view kUnknown = "?";
constexpr std::string_view kNone = "-";
constexpr std::size_t kCheckLength = 8;
constexpr std::size_t kFields = 8;  // without the check

constexpr std::pair<Event, std::string_view> kEvents[] = {{Begun, "begonnen"},
                                                          {Acknowledged, "bestätigt"},
                                                          {Proven, "geprüft"},
                                                          {Refused, "abgelehnt"},
                                                          {Silent, "keine Antwort"},
                                                          {Unclear, "unklare Antwort"},
                                                          {LineLost, "Verbindung verloren"},
                                                          {WrongSum, "falsche Prüfsumme"},
                                                          {ByMacro, "durch Makro"},
                                                          {FreeBytes, "gelesen"},
                                                          {NotRecorded, "nicht aufgezeichnet"}};

constexpr ItemKind kKinds[] = {ItemKind::Config, ItemKind::Macro, ItemKind::MatrixTable,
                               ItemKind::AtTable, ItemKind::Bitmap};

bool Unseen(unsigned char code) {
  return code < 0x20 || (code >= 0x7F && code <= 0xA0) || code == 0xAD || code == '\\';
}

void AppendEscaped(std::string& out, unsigned char code) {
  out += '\\';
  if (code == '\\') {
    out += '\\';
    return;
  }
  out += 'x';
  out += kHex[code >> 4];
  out += kHex[code & 15];
}

std::string EscapedWire(std::string_view wire) {
  std::string out;
  for (const char c : wire) {
    const auto code = static_cast<unsigned char>(c);
    if (Unseen(code)) {
      AppendEscaped(out, code);
    } else {
      out += ScreenText(std::string_view(&c, 1));
    }
  }
  return out;
}

// Of UTF-8 only what would break the line.
std::string EscapedText(std::string_view text) {
  std::string out;
  for (const char c : text) {
    const auto code = static_cast<unsigned char>(c);
    if (code < 0x20 || code == 0x7F || code == '\\') {
      AppendEscaped(out, code);
    } else {
      out += c;
    }
  }
  return out;
}

int HexDigit(char c) {
  const std::string_view digits(kHex, 16);
  const std::size_t value = digits.find(c);
  return value == std::string_view::npos ? -1 : static_cast<int>(value);
}

// One escape behind its backslash; false when it is none.
bool TakeEscape(std::string_view& text, std::string& out) {
  if (text.starts_with('\\')) {
    out += '\\';
    text.remove_prefix(1);
    return true;
  }
  if (text.size() < 3 || text.front() != 'x') return false;
  const int high = HexDigit(text[1]);
  const int low = HexDigit(text[2]);
  if (high < 0 || low < 0) return false;
  out += static_cast<char>(high * 16 + low);
  text.remove_prefix(3);
  return true;
}

std::optional<std::string> Plain(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    const char c = text.front();
    text.remove_prefix(1);
    if (c != '\\') {
      out += c;
    } else if (!TakeEscape(text, out)) {
      return std::nullopt;
    }
  }
  return out;
}

// An escape stands for a byte, all else for a code point below 256.
std::optional<std::string> PlainWire(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    const std::size_t escape = std::min(text.find('\\'), text.size());
    const auto before = WireText(text.substr(0, escape));
    if (!before) return std::nullopt;
    out += *before;
    text.remove_prefix(escape);
    if (text.empty()) break;
    text.remove_prefix(1);
    if (!TakeEscape(text, out)) return std::nullopt;
  }
  return out;
}

std::string Check(std::string_view text) {
  std::uint32_t sum = 2166136261U;
  for (const char c : text) sum = (sum ^ static_cast<unsigned char>(c)) * 16777619U;
  char digits[kCheckLength + 1];
  std::snprintf(digits, sizeof digits, "%08X", sum);
  return digits;
}

std::string TimeText(JournalTime time) {
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(time - day);
  char text[40];
  std::snprintf(
      text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ", static_cast<int>(date.year()),
      static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
      static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
      static_cast<int>(clock.seconds().count()), static_cast<int>(clock.subseconds().count()));
  return text;
}

template <typename Number>
std::optional<Number> NumberIn(std::string_view text) {
  Number number{};
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
  return number;
}

std::optional<JournalTime> TimeIn(std::string_view text) {
  using namespace std::chrono;
  constexpr std::string_view kForm = "dddd-dd-ddTdd:dd:dd.dddZ";
  if (text.size() != kForm.size()) return std::nullopt;
  for (std::size_t i = 0; i < kForm.size(); ++i) {
    const bool digit = text[i] >= '0' && text[i] <= '9';
    if (kForm[i] == 'd' ? !digit : text[i] != kForm[i]) return std::nullopt;
  }
  const auto number = [text](std::size_t at, std::size_t length) {
    return NumberIn<unsigned>(text.substr(at, length)).value_or(0);
  };
  const year_month_day date(year(static_cast<int>(number(0, 4))), month(number(5, 2)),
                            day(number(8, 2)));
  if (!date.ok()) return std::nullopt;
  return sys_days(date) + hours(number(11, 2)) + minutes(number(14, 2)) + seconds(number(17, 2)) +
         milliseconds(number(20, 3));
}

std::string WhatText(const JournalEntry& entry) {
  if (entry.event == FreeBytes) return std::string(kRoom);
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
  if (entry.event == FreeBytes) return std::to_string(entry.bytes);
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
  return line + '\t' + Check(line) + '\n';
}

std::optional<JournalEntry> ReadJournalLine(std::string_view line) {
  if (line.size() <= kCheckLength) return std::nullopt;
  const std::string_view body = line.substr(0, line.size() - kCheckLength - 1);
  if (line[body.size()] != '\t' || Check(body) != line.substr(body.size() + 1)) return std::nullopt;
  const auto columns = Split(body);
  if (!columns) return std::nullopt;
  const auto& [time, device, address, event, what, bytes, name, command] = *columns;
  const auto readTime = TimeIn(time);
  const auto readAddress = AddressIn(address);
  const auto readEvent = EventIn(event);
  const auto readChange = ChangeIn(what);
  const auto readDevice = Plain(device);
  const auto readName = Plain(name);
  const auto readCommand = PlainWire(command);
  if (!readTime || !readAddress || !readEvent || !readChange) return std::nullopt;
  if (!readDevice || !readName || !readCommand) return std::nullopt;
  const std::int64_t room = *readEvent == FreeBytes ? NumberIn<std::int64_t>(bytes).value_or(0) : 0;
  return JournalEntry{
      *readTime, {*readDevice, *readAddress}, *readEvent, *readChange, *readName, *readCommand,
      room};
}

}  // namespace kelvo
