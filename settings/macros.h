#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kelvo {

/// Kinds of record in the table `Makro`, by the option button `chkMakroTyp` that shows them.
struct MakroTyp {
  int index;            ///< of the option button
  const char* typ;      ///< field `typ`
  const char* caption;  ///< German, with mnemonic
  const char* plural;   ///< the records, in the dative
};
inline constexpr MakroTyp kMakroTypen[] = {
    {1, "Makro", "&Makros", "Makros"},
    {2, "MatrixTab", "Matri&x-Tabellen", "den Matrix-Tabellen"},
    {3, "ATTab", "A&T-Tabellen", "den AT-Tabellen"},
    {4, "Grafik", "&Grafiken", "den Grafiken"}};
/// The record source for an option button; any other index gives the whole table.
std::string MakroSource(int index);

/// Longest macro text, in characters; the refusal names 1024 all the same.
inline constexpr std::size_t kLongestMakro = 1023;

/// A macro number 0..255 from a field's text, or nothing. A text without any number is none.
std::optional<int> MakroNumber(std::string_view text);
/// The number that a field's text begins with, whatever it is; nothing without one.
std::optional<std::string> AnyNumber(std::string_view text);

/// Position (from 1) of the first ETX, which would end the text on the wire; 0 if there is none.
std::size_t EtxPosition(std::string_view text);

}  // namespace kelvo
