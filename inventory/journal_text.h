#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "inventory/journal.h"

// An entry of the journal as a line of text, UTF-8, for people too:
//
//   time TAB device TAB address TAB event TAB what TAB bytes TAB record TAB command TAB check
//
//   time     UTC, "2026-11-22T15:31:02.123Z"
//   address  a number, "alle" or "?" where it was not known who listened
//   event    "begonnen", "bestätigt", "geprüft", …
//   what     "Makro 7", "Makro 7 löschen", "alles löschen"; of free bytes "freier Platz"
//   bytes    how many of them; "-" where there are none to tell
//   record   the record's name
//   command  what was written, byte b as code point b; of what was acknowledged, and also as it is
//            begun of a macro that changes the EEPROM when it runs
//   check    FNV-1a of all before it, eight hexadecimal digits: a torn line has none that fits
//
// "\x1B" stands for a character that cannot be seen, "\\" for the backslash.

namespace kelvo {

/// With the line's end.
std::string JournalLine(const JournalEntry& entry);
/// Nothing for a line (without its end) that is torn or no entry.
std::optional<JournalEntry> ReadJournalLine(std::string_view line);

/// "bestätigt", "keine Antwort", UTF-8.
std::string EventText(Event event);
/// "alle", "?", "7"
std::string AddressText(int address);

}  // namespace kelvo
