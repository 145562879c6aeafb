#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "link/command_table.h"

// The text of a macro taken apart, with places: what checks, colours and explains it works on this.
// Positions count characters of the wire text from 0.

namespace kelvo {

/// A command in a text, from its ESC to the place behind it.
struct PlacedCommand {
  enum class Close { Closed, ByEsc, ByEnd };

  const CommandRow* row;   ///< nullptr for one that is not known
  std::size_t begin;       ///< of its ESC
  std::size_t parameters;  ///< of what follows its letters
  std::size_t end;         ///< of what closes it; where nothing does, the same as `next`
  std::size_t next;        ///< behind all of it
  Close close;             ///< what ended it; what needs no end is closed

  std::string_view Parameters(std::string_view text) const {
    return text.substr(parameters, end - parameters);
  }
};

/// All commands of a text in their order. What lies between them is text for the display. A text
/// that the Terminal would store with "EWM" is raw and not taken apart.
std::vector<PlacedCommand> PlacedCommands(std::string_view text);

/// A value between letters and end.
struct PlacedValue {
  std::size_t begin;
  std::string_view text;
};
/// The values of a known command. The last parameter of a kind that may hold "," has all the rest;
/// values beyond the parameters follow one by one.
std::vector<PlacedValue> PlacedValues(std::string_view text, const PlacedCommand& command);

enum class PieceKind {
  Letters,      ///< ESC and the letters of a known command
  Unknown,      ///< those of one that is not
  Parameter,    ///< a value
  Mark,         ///< "," and what closes a command
  GraphicText,  ///< behind "GT"
  Control,      ///< a control character in a text
};
inline constexpr std::size_t kPieceKinds = 6;
/// A run of characters that look alike; what is in none is text for the display.
struct Piece {
  PieceKind kind;
  std::size_t begin;
  std::size_t length;
};
/// In the order of the text, none over another.
std::vector<Piece> PiecesOf(std::string_view text);

/// What may be written on at a caret.
struct Completion {
  std::size_t typed = 0;  ///< letters in front of the caret that are there already
  std::vector<const CommandRow*> rows;
};
/// Nothing where the caret does not stand right behind an ESC or the first letters after it.
Completion CompletionAt(std::string_view text, std::size_t caret);

}  // namespace kelvo
