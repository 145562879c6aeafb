#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

// The Terminal's command language: the one table that whoever builds, names, reads or explains
// commands takes their letters from.

namespace kelvo {

enum class CommandName {
  AskVersion,
  AskSystemInfo,
  AskAddress,
  SelectAddress,
  AskPort,
  SetPort,
  SetResolution,
  Restart,
  AskFlash,
  SetInterface1,
  SetBuffer1,
  SetInterface2,
  SetBuffer2,
  SetReceiveMode2,
  SendToInterface2,
  AskFreeBytes,
  WriteConfig,
  DeleteConfig,
  EraseEEprom,
  EraseEEpromCounting,
  WriteMakro,
  DeleteMakro,
  RunMakro,
  WriteKeyTable,
  ActivateMatrixTable,
  ActivateAtTable,
  DeleteKeyTable,
  AskMatrixTable,
  AskAtTable,
  WriteBitmap,
  SetMatrixSize,
  SetMatrixConfig,
  StartMatrix,
  StopMatrix,
  DefineCursor,
  SwitchCursor,
  AskCursor,
  AskCursorShape,
  SetTextPosition,
  MoveTextHome,
  SetTextFont,
  SetTextAttribute,
  SetTextMode,
  SetTextZoom,
  AskTextPosition,
  AskTextFont,
  AskTextAttribute,
  AskTextMode,
  AskTextZoom,
  SetGraphicPosition,
  MoveGraphicHome,
  AskGraphicPosition,
  ClearDisplay,
  PenDraws,
  PenErases,
  Line,
  Rectangle,
  FilledRectangle,
  Ellipse,
  FilledEllipse,
  Bitmap,
  SetGraphicFont,
  SetGraphicZoom,
  SetGraphicAttribute,
  GraphicText,
  ResetChecksum,
  AskChecksum,
};

/// How a parameter is written.
enum class Form {
  Number,    ///< decimal
  Hex,       ///< upper-case hexadecimal, without leading zeros
  HexList,   ///< any number of these, "," between them
  HexBytes,  ///< two hexadecimal digits a byte, nothing between them
  Text,      ///< as it stands, to the end of the command
};

struct Parameter {
  std::string_view meaning;  ///< German
  int lowest = 0;            ///< of a number; both included
  int highest = 0;
  Form form = Form::Number;
};

/// What closes a command on the wire.
enum class Ending { AtOnce, Semicolon, Etx, Eot, Open };

/// What the Terminal does with a command that has arrived.
enum class Answer {
  None,
  Acknowledge,  ///< ACK or NAK
  Value,        ///< values separated by ",", closed by ";"
  FreeText,     ///< a text without an end mark
  CountDown,    ///< numbers, each closed by CR, then ACK
};

struct CommandRow {
  CommandName name;
  std::string_view letters;  ///< what follows ESC
  std::span<const Parameter> parameters;
  Ending ending;
  Answer answer;
  std::string_view meaning;  ///< German
  /// The command in words with its parameters: "$1" is the first one, or how much it is, "&1" the
  /// text itself. Where there is none, the parameters are listed behind the meaning.
  std::string_view phrase{};
  /// The same for a line that tells what came of it, where that is worth one: what has been done,
  /// "Makro $1 gelöscht"; of what nobody acknowledges what it is, as it has only been sent.
  std::string_view done{};
  /// What a whole answer to a question consists of; none where that is any text that can be read.
  std::span<const Parameter> values{};
};

/// Every command that this program sends or explains, in the order of their names.
std::span<const CommandRow> CommandTable();
const CommandRow& RowOf(CommandName name);
/// The command that a text behind an ESC begins with; nullptr for none. The longest letters that
/// fit decide, so "GfR" is found before "GF" could be.
const CommandRow* FindCommand(std::string_view text);

/// What the commands of a text that went to the Terminal mean, in German, separated by "; "; at
/// most `limit` of them, then "…". Empty when the text holds none. Works on the text as sent: the
/// content of a stored macro or a graphic text is not taken for commands.
std::string CommandMeaning(std::string_view wire, int limit = 4);
/// A command of a text that went to the Terminal.
struct SentCommand {
  const CommandRow* row;        ///< nullptr for one that is not known
  std::string_view parameters;  ///< between letters and end; of one that is not known, all of it
  std::string_view text;        ///< behind its end, up to the next command
  bool open = false;            ///< its end has not come
};
/// Calls `visit` with each command of a text until it answers false.
void WalkCommands(std::string_view wire, const std::function<bool(const SentCommand&)>& visit);
/// The last command of a text waits for its end: what is sent next belongs to it.
bool EndsOpen(std::string_view wire);
/// The last command of a text; nullptr when it holds none that is known.
const CommandRow* LastCommand(std::string_view wire);

}  // namespace kelvo
