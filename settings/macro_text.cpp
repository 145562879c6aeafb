#include "settings/macro_text.h"

#include <algorithm>

#include "link/control_characters.h"

namespace kelvo {
namespace {

using Close = PlacedCommand::Close;

// Nobody knows how many letters an unknown command has; two are the usual.
constexpr std::size_t kUnknownLetters = 2;

char EndMark(Ending ending) {
  switch (ending) {
    case Ending::Etx:
      return kEtx;
    case Ending::Eot:
      return kEot;
    case Ending::Semicolon:
    case Ending::AtOnce:
    case Ending::Open:
      break;
  }
  return ';';
}

// Of a command that runs to an end mark, which the next ESC may forestall. Not so a raw text's.
void FindEnd(std::string_view text, PlacedCommand& command, Ending ending) {
  const std::size_t mark = std::min(text.find(EndMark(ending), command.parameters), text.size());
  const std::size_t esc = ending == Ending::Etx
                              ? text.size()
                              : std::min(text.find(kEsc, command.parameters), text.size());
  command.end = std::min(mark, esc);
  const bool closed = mark < esc;
  command.next = command.end + (closed ? 1 : 0);
  command.close = closed ? Close::Closed : esc < text.size() ? Close::ByEsc : Close::ByEnd;
}

PlacedCommand Unknown(std::string_view text, std::size_t begin) {
  PlacedCommand command{nullptr, begin, begin + 1, begin + 1, begin + 1, Close::Closed};
  const std::size_t stop = std::min(text.find_first_of(",;\x1b", begin + 1), text.size());
  command.parameters = std::min(stop, begin + 1 + kUnknownLetters);
  FindEnd(text, command, Ending::Semicolon);
  return command;
}

PlacedCommand Known(std::string_view text, std::size_t begin, const CommandRow& row) {
  const std::size_t behind = begin + 1 + row.letters.size();
  PlacedCommand command{&row, begin, behind, behind, behind, Close::Closed};
  if (row.ending == Ending::AtOnce) return command;
  FindEnd(text, command, row.ending);
  // The operator types the end that the further device expects.
  if (row.ending == Ending::Open) command.close = Close::Closed;
  return command;
}

bool TakesRest(Form form) {
  return form == Form::Text || form == Form::HexList || form == Form::HexBytes;
}

bool IsControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }

// Control characters stand out of the text that they are in.
void AddText(std::vector<Piece>& pieces, std::string_view text, std::size_t begin, std::size_t end,
             bool graphic) {
  for (std::size_t at = begin; at < end;) {
    const bool control = IsControl(text[at]);
    std::size_t past = at + 1;
    while (past < end && IsControl(text[past]) == control) ++past;
    if (control) pieces.push_back({PieceKind::Control, at, past - at});
    if (!control && graphic) pieces.push_back({PieceKind::GraphicText, at, past - at});
    at = past;
  }
}

void AddParameters(std::vector<Piece>& pieces, std::string_view text,
                   const PlacedCommand& command) {
  std::size_t at = command.parameters;
  for (const PlacedValue& value : PlacedValues(text, command)) {
    if (value.begin > at) pieces.push_back({PieceKind::Mark, at, value.begin - at});
    if (!value.text.empty()) {
      pieces.push_back({PieceKind::Parameter, value.begin, value.text.size()});
    }
    at = value.begin + value.text.size();
  }
}

void AddCommand(std::vector<Piece>& pieces, std::string_view text, const PlacedCommand& command) {
  const bool known = command.row != nullptr;
  pieces.push_back({known ? PieceKind::Letters : PieceKind::Unknown, command.begin,
                    (known ? command.parameters : command.end) - command.begin});
  if (known && command.row->ending == Ending::Eot) {
    AddText(pieces, text, command.parameters, command.end, true);
  } else if (known) {
    AddParameters(pieces, text, command);
  }
  if (command.next > command.end) {
    pieces.push_back({PieceKind::Mark, command.end, command.next - command.end});
  }
}

}  // namespace

std::vector<PlacedCommand> PlacedCommands(std::string_view text) {
  std::vector<PlacedCommand> commands;
  for (std::size_t at = text.find(kEsc); at != std::string_view::npos; at = text.find(kEsc, at)) {
    const CommandRow* const row = FindCommand(text.substr(at + 1));
    commands.push_back(row != nullptr ? Known(text, at, *row) : Unknown(text, at));
    at = commands.back().next;
  }
  return commands;
}

std::vector<PlacedValue> PlacedValues(std::string_view text, const PlacedCommand& command) {
  std::vector<PlacedValue> values;
  if (command.parameters == command.end) return values;
  for (std::size_t at = command.parameters; at <= command.end;) {
    const std::size_t number = values.size();
    const bool rest =
        number < command.row->parameters.size() && TakesRest(command.row->parameters[number].form);
    const std::size_t end = rest ? command.end : std::min(text.find(',', at), command.end);
    values.push_back({at, text.substr(at, end - at)});
    at = end + 1;
  }
  return values;
}

std::vector<Piece> PiecesOf(std::string_view text) {
  std::vector<Piece> pieces;
  std::size_t at = 0;
  for (const PlacedCommand& command : PlacedCommands(text)) {
    AddText(pieces, text, at, command.begin, false);
    AddCommand(pieces, text, command);
    at = command.next;
  }
  AddText(pieces, text, at, text.size(), false);
  return pieces;
}

Completion CompletionAt(std::string_view text, std::size_t caret) {
  Completion completion;
  const std::string_view before = text.substr(0, caret);
  const std::size_t esc = before.rfind(kEsc);
  if (esc == std::string_view::npos) return completion;
  const std::string_view typed = before.substr(esc + 1);
  completion.typed = typed.size();
  for (const CommandRow& row : CommandTable()) {
    if (row.letters.size() > typed.size() && row.letters.starts_with(typed)) {
      completion.rows.push_back(&row);
    }
  }
  return completion;
}

}  // namespace kelvo
