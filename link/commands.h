#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "link/command_table.h"

// Commands as values: one named builder for each. Numbers that are taken as typed are texts here.

namespace kelvo {

/// One command of the Terminal, as it goes on the wire.
class Command {
 public:
  /// ESC, the letters, the parameters with "," between them, and what closes the command.
  explicit Command(CommandName name, std::initializer_list<std::string_view> parameters = {});

  CommandName Name() const { return name_; }
  /// The characters on the wire, ESC first.
  const std::string& Text() const { return text_; }
  bool IsAcknowledged() const { return RowOf(name_).answer == Answer::Acknowledge; }

 private:
  CommandName name_;
  std::string text_;
};

/// Several commands that go out at once.
std::string Sequence(std::initializer_list<Command> commands);
/// Appends ESC and a command's letters, for builders of long texts.
void BeginCommand(std::string& text, CommandName name);

// Status and settings.
Command AskVersion();
Command AskSystemInfo();
Command AskAddress();
/// From now on the Terminal of this address listens; 255 reaches all.
Command SelectAddress(int address);
Command SelectAddress(std::string_view address);
Command AskPort();
Command SetPort(std::string_view lines);
Command SetResolution(std::string_view x, std::string_view y, std::string_view option);
Command Restart();
Command AskFlash();

// The Terminal's two interfaces.
struct InterfaceNumbers {
  int baud;
  int parity;
  int dataBits;
  int stopBits;
  int handshake;
};
Command SetInterface1(const InterfaceNumbers& numbers);
Command SetBuffer1(int characters);
Command SetInterface2(const InterfaceNumbers& numbers);
Command SetBuffer2(int characters);
Command SetReceiveMode2(int mode);
/// Not closed: the operator types the end that the further device expects.
Command SendToInterface2(std::string_view text);

// EEPROM.
Command AskFreeBytes();
Command WriteConfig();
Command DeleteConfig();
Command EraseEEprom();
/// The Terminal counts down the blocks still to erase, then acknowledges.
Command EraseEEpromCounting();
/// The text goes out character for character and is ended by ETX.
Command WriteMakro(int number, std::string_view text);
Command DeleteMakro(std::string_view number);
Command RunMakro(int number);
/// `bitmap` is width, height and rows as `CreateBitmap` returns them, its ";" included.
Command WriteBitmap(int number, std::string_view bitmap);

// Keyboards. Codes are hexadecimal texts; a table's number is as typed.
/// `codes` is each code with a "," in front.
Command WriteKeyTable(std::string_view number, std::string_view start, std::string_view codes);
Command ActivateMatrixTable(std::string_view number);
Command ActivateAtTable(std::string_view number);
Command DeleteKeyTable(std::string_view number);
Command AskMatrixTable();
Command AskAtTable();
Command SetMatrixSize(int columns, int rows);
/// The masks are those of the lines that are not wired; the other numbers are fixed.
Command SetMatrixConfig(int inputs, int outputs);
Command StartMatrix();
Command StopMatrix();

// Cursor and text layer.
/// The kind is written with a blank in front; `shape` is the shape or size, empty for none.
Command DefineCursor(int kind, std::string_view shape);
Command SwitchCursor(int kind);
/// ESC "!C0;", without the blank: what a drawing sends in front of itself.
Command CursorOffForDrawing();
Command AskCursor();
Command AskCursorShape();
Command SetTextPosition(std::string_view column, std::string_view row);
Command MoveTextHome();
Command SetTextFont(int font);
Command SetTextAttribute(int attribute);
Command SetTextMode(int mode);
Command SetTextZoom(std::string_view x, std::string_view y);
Command AskTextPosition();
Command AskTextFont();
Command AskTextAttribute();
Command AskTextMode();
Command AskTextZoom();

// Graphics.
Command ClearDisplay();
Command SetGraphicPosition(std::string_view x, std::string_view y);
Command MoveGraphicHome();
Command AskGraphicPosition();
Command SetGraphicFont(int font);
Command SetGraphicZoom(int x, int y);
Command SetGraphicAttribute(int attribute);
/// ESC "GT" text, closed by the next command's ESC.
std::string OpenGraphicText(std::string_view text);

// Transfers.
Command ResetChecksum();
Command AskChecksum();

}  // namespace kelvo
