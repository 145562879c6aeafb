#include "link/commands.h"

#include "link/control_characters.h"

namespace kelvo {
namespace {

using Name = CommandName;

std::string Digits(int number) { return std::to_string(number); }

// A number that is not negative keeps the place of its sign.
std::string Blank(int number) { return " " + Digits(number); }

std::string_view End(Ending ending) {
  switch (ending) {
    case Ending::Semicolon:
      return kEndMark;
    case Ending::Etx:
      return {&kEtx, 1};
    case Ending::Eot:
      return {&kEot, 1};
    case Ending::AtOnce:
    case Ending::Open:
      break;
  }
  return {};
}

Command SetInterface(Name name, const InterfaceNumbers& numbers) {
  return Command(name, {Digits(numbers.baud), Digits(numbers.parity), Digits(numbers.dataBits),
                        Digits(numbers.stopBits), Digits(numbers.handshake)});
}

}  // namespace

Command::Command(CommandName name, std::initializer_list<std::string_view> parameters)
    : name_(name) {
  BeginCommand(text_, name);
  std::string_view separator;
  for (const std::string_view parameter : parameters) {
    text_.append(separator).append(parameter);
    separator = ",";
  }
  text_ += End(RowOf(name).ending);
}

void BeginCommand(std::string& text, CommandName name) {
  text += CmdPrefix;
  text += RowOf(name).letters;
}

std::string Sequence(std::initializer_list<Command> commands) {
  std::string text;
  for (const Command& command : commands) text += command.Text();
  return text;
}

Command AskVersion() { return Command(Name::AskVersion); }
Command AskSystemInfo() { return Command(Name::AskSystemInfo); }
Command AskAddress() { return Command(Name::AskAddress); }
Command SelectAddress(int address) { return SelectAddress(Digits(address)); }
Command SelectAddress(std::string_view address) { return Command(Name::SelectAddress, {address}); }
Command AskPort() { return Command(Name::AskPort); }
Command SetPort(std::string_view lines) { return Command(Name::SetPort, {lines}); }
Command SetResolution(std::string_view x, std::string_view y, std::string_view option) {
  return Command(Name::SetResolution, {x, y, option});
}
Command Restart() { return Command(Name::Restart); }
Command AskFlash() { return Command(Name::AskFlash); }

Command SetInterface1(const InterfaceNumbers& numbers) {
  return SetInterface(Name::SetInterface1, numbers);
}
Command SetBuffer1(int characters) { return Command(Name::SetBuffer1, {Digits(characters)}); }
Command SetInterface2(const InterfaceNumbers& numbers) {
  return SetInterface(Name::SetInterface2, numbers);
}
Command SetBuffer2(int characters) { return Command(Name::SetBuffer2, {Digits(characters)}); }
Command SetReceiveMode2(int mode) { return Command(Name::SetReceiveMode2, {Digits(mode)}); }
Command SendToInterface2(std::string_view text) { return Command(Name::SendToInterface2, {text}); }

Command AskFreeBytes() { return Command(Name::AskFreeBytes); }
Command WriteConfig() { return Command(Name::WriteConfig); }
Command DeleteConfig() { return Command(Name::DeleteConfig); }
Command EraseEEprom() { return Command(Name::EraseEEprom); }
Command EraseEEpromCounting() { return Command(Name::EraseEEpromCounting); }
Command WriteMakro(int number, std::string_view text) {
  return Command(Name::WriteMakro, {Digits(number), text});
}
Command DeleteMakro(std::string_view number) { return Command(Name::DeleteMakro, {number}); }
Command RunMakro(int number) { return Command(Name::RunMakro, {Digits(number)}); }
Command WriteBitmap(int number, std::string_view bitmap) {
  // Its own end comes with the bitmap.
  if (bitmap.ends_with(kEndMark)) bitmap.remove_suffix(kEndMark.size());
  return Command(Name::WriteBitmap, {Digits(number), bitmap});
}

Command WriteKeyTable(std::string_view number, std::string_view start, std::string_view codes) {
  return Command(Name::WriteKeyTable, {number, std::string(start).append(codes)});
}
Command ActivateMatrixTable(std::string_view number) {
  return Command(Name::ActivateMatrixTable, {number});
}
Command ActivateAtTable(std::string_view number) {
  return Command(Name::ActivateAtTable, {number});
}
Command DeleteKeyTable(std::string_view number) { return Command(Name::DeleteKeyTable, {number}); }
Command AskMatrixTable() { return Command(Name::AskMatrixTable); }
Command AskAtTable() { return Command(Name::AskAtTable); }
Command SetMatrixSize(int columns, int rows) {
  return Command(Name::SetMatrixSize, {Digits(columns), Digits(rows)});
}
Command SetMatrixConfig(int inputs, int outputs) {
  return Command(Name::SetMatrixConfig, {"2", "10", "35", Digits(inputs), Digits(outputs), "5"});
}
Command StartMatrix() { return Command(Name::StartMatrix); }
Command StopMatrix() { return Command(Name::StopMatrix); }

Command DefineCursor(int kind, std::string_view shape) {
  if (shape.empty()) return Command(Name::DefineCursor, {Blank(kind)});
  return Command(Name::DefineCursor, {Blank(kind), shape});
}
Command SwitchCursor(int kind) { return Command(Name::SwitchCursor, {Blank(kind)}); }
Command CursorOffForDrawing() { return Command(Name::SwitchCursor, {"0"}); }
Command AskCursor() { return Command(Name::AskCursor); }
Command AskCursorShape() { return Command(Name::AskCursorShape); }
Command SetTextPosition(std::string_view column, std::string_view row) {
  return Command(Name::SetTextPosition, {column, row});
}
Command MoveTextHome() { return Command(Name::MoveTextHome); }
Command SetTextFont(int font) { return Command(Name::SetTextFont, {Digits(font)}); }
Command SetTextAttribute(int attribute) {
  return Command(Name::SetTextAttribute, {Digits(attribute)});
}
Command SetTextMode(int mode) { return Command(Name::SetTextMode, {Digits(mode)}); }
Command SetTextZoom(std::string_view x, std::string_view y) {
  return Command(Name::SetTextZoom, {x, y});
}
Command AskTextPosition() { return Command(Name::AskTextPosition); }
Command AskTextFont() { return Command(Name::AskTextFont); }
Command AskTextAttribute() { return Command(Name::AskTextAttribute); }
Command AskTextMode() { return Command(Name::AskTextMode); }
Command AskTextZoom() { return Command(Name::AskTextZoom); }

Command ClearDisplay() { return Command(Name::ClearDisplay); }
Command SetGraphicPosition(std::string_view x, std::string_view y) {
  return Command(Name::SetGraphicPosition, {x, y});
}
Command MoveGraphicHome() { return Command(Name::MoveGraphicHome); }
Command AskGraphicPosition() { return Command(Name::AskGraphicPosition); }
Command SetGraphicFont(int font) { return Command(Name::SetGraphicFont, {Digits(font)}); }
Command SetGraphicZoom(int x, int y) {
  return Command(Name::SetGraphicZoom, {Digits(x), Digits(y)});
}
Command SetGraphicAttribute(int attribute) {
  return Command(Name::SetGraphicAttribute, {Digits(attribute)});
}
std::string OpenGraphicText(std::string_view text) {
  std::string command;
  BeginCommand(command, Name::GraphicText);
  return command.append(text);
}

Command ResetChecksum() { return Command(Name::ResetChecksum); }
Command AskChecksum() { return Command(Name::AskChecksum); }

}  // namespace kelvo
