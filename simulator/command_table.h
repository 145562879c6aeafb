#pragma once

#include <span>
#include <string_view>

// The Terminal's command language as the Terminal knows it. No name is the beginning of another
// one, so a command without parameters is complete with its last letter and needs no end mark.

namespace kelvo::sim {

enum class Command {
  // identity, ports, interfaces
  AskVersion,
  AskInfo,
  AskAddress,
  AskPort,
  SelectAddress,
  SetPort,
  SetResolution,
  Restart,
  AskFlash,
  SetInterface1,
  SetBuffer1,
  SetInterface2,
  SetBuffer2,
  SetReceive2,
  Send2,
  ResetChecksum,
  AskChecksum,
  // EEPROM
  AskFreeBytes,
  WriteConfig,
  DeleteConfig,
  Erase,
  EraseCounting,
  WriteMacro,
  DeleteMacro,
  RunMacro,
  WriteKeyTable,
  DeleteKeyTable,
  WriteBitmap,
  // keyboards
  ActivateMatrixTable,
  ActivateAtTable,
  AskMatrixTable,
  AskAtTable,
  MatrixSize,
  MatrixConfig,
  MatrixOn,
  MatrixOff,
  // text layer and cursor
  DefineCursor,
  SwitchCursor,
  AskCursor,
  AskCursorShape,
  TextPosition,
  TextHome,
  TextFont,
  TextAttribute,
  TextMode,
  TextZoom,
  AskTextPosition,
  AskTextFont,
  AskTextAttribute,
  AskTextMode,
  AskTextZoom,
  // graphics
  Clear,
  GraphicPosition,
  GraphicHome,
  AskGraphicPosition,
  DrawMode,
  Line,
  Rectangle,
  FilledRectangle,
  Ellipse,
  FilledEllipse,
  Bitmap,
  GraphicFont,
  GraphicZoom,
  GraphicAttribute,
  GraphicText,
};

/// What ends a command behind its name.
enum class Ending {
  AtOnce,     ///< nothing follows the name
  Semicolon,  ///< parameters up to ";"
  Etx,        ///< raw text up to character 3; ESC is part of it
  Text,       ///< text up to character 4 or the next ESC, drawn as it comes
};

/// What the host hears after the command.
enum class Reply { None, Value, Acknowledge };

struct CommandRow {
  std::string_view name;
  Command command;
  Ending ending;
  Reply reply;
  int parameters;            ///< fewest that the command needs; with fewer it is ignored
  std::string_view meaning;  ///< for the window, German
};

std::span<const CommandRow> CommandRows();

/// A name that has been read so far, letter by letter.
struct NameMatch {
  const CommandRow* row = nullptr;  ///< the command of exactly this name
  bool mayGrow = false;             ///< a longer name begins with these letters
};
/// At least one letter.
NameMatch FindCommand(std::string_view letters);

}  // namespace kelvo::sim
