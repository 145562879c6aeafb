#pragma once

#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "inventory/entry.h"

// What the lines of the files are made of that people may read, UTF-8: fields with tabs between
// them. "\x1B" stands for a character that cannot be seen, "\\" for the backslash.

namespace kelvo {

/// A wire text as a field, byte b as code point b.
std::string EscapedWire(std::string_view wire);
std::optional<std::string> PlainWire(std::string_view field);
/// A UTF-8 text as a field.
std::string EscapedText(std::string_view text);
std::optional<std::string> PlainText(std::string_view field);

/// What stands between the separators.
std::vector<std::string_view> SplitAt(std::string_view text, char separator);

/// UTC, "2026-11-22T15:31:02.123Z"
std::string TimeText(JournalTime time);
std::optional<JournalTime> TimeIn(std::string_view text);

/// A number and nothing else.
template <typename Number>
std::optional<Number> NumberIn(std::string_view text) {
  Number number{};
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
  return number;
}

/// The line with a tab and FNV-1a of it behind it, eight hexadecimal digits.
std::string Sealed(std::string line);
/// A line without these; nothing when it is torn, so that they do not fit.
std::optional<std::string_view> Unsealed(std::string_view line);

}  // namespace kelvo
