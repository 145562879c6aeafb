#include "link/command_table.h"

#include <algorithm>
#include <limits>

#include "link/control_characters.h"

namespace kelvo {
namespace {

using enum CommandName;

// Coordinates that lie outside the display are sent as they are; the drawing's arithmetic has 16
// bits.
constexpr int kLowest16 = std::numeric_limits<short>::min();
constexpr int kHighest16 = std::numeric_limits<short>::max();

constexpr std::span<const Parameter> kNothing;
constexpr Parameter kAddress[] = {{"Adresse", 0, 255}};
constexpr Parameter kLines[] = {{"Leitungen", 0, 255}};
constexpr Parameter kResolution[] = {
    {"Breite", 20, 640}, {"Höhe", 20, 480}, {"Option", 0, 0, Form::Text}};
constexpr Parameter kInterface[] = {{"Baudrate", 1200, 19200},
                                    {"Parität", 0, 3},
                                    {"Datenbits", 7, 8},
                                    {"Stoppbits", 1, 2},
                                    {"Handshake", 0, 1}};
constexpr Parameter kBuffer[] = {{"Zeichen", 1024, 16384}};
constexpr Parameter kReceiveMode[] = {{"Empfang", 0, 2}};
constexpr Parameter kText[] = {{"Text", 0, 0, Form::Text}};
constexpr Parameter kMakro[] = {{"Nummer", 0, 255}, {"Text", 0, 0, Form::Text}};
constexpr Parameter kNumber[] = {{"Nummer", 0, 255}};
constexpr Parameter kKeyTable[] = {
    {"Nummer", 0, 255}, {"erster Code", 0, 255, Form::Hex}, {"Codes", 0, 255, Form::HexList}};
constexpr Parameter kStoredBitmap[] = {{"Nummer", 0, 255},
                                       {"Byte je Zeile", 1, 80},
                                       {"Höhe", 1, 480},
                                       {"Punkte", 0, 255, Form::HexBytes}};
constexpr Parameter kMatrixSize[] = {{"Spalten", 1, 8}, {"Zeilen", 1, 8}};
constexpr Parameter kMatrixConfig[] = {{"fest", 2, 2},
                                       {"fest", 10, 10},
                                       {"fest", 35, 35},
                                       {"freie Eingänge", 0, 255},
                                       {"freie Ausgänge", 0, 255},
                                       {"fest", 5, 5}};
constexpr Parameter kCursorShape[] = {{"Art", 0, 6}, {"Form oder Größe", 0, 640}};
constexpr Parameter kCursor[] = {{"Art", 0, 6}};
constexpr Parameter kCell[] = {{"Spalte", 1, 255}, {"Zeile", 1, 255}};
constexpr Parameter kFont[] = {{"Schrift", 0, 9}};
constexpr Parameter kAttribute[] = {{"Attribut", 0, 7}};
constexpr Parameter kMode[] = {{"Modus", 0, 3}};
constexpr Parameter kZoom[] = {{"Zoom X", 1, 4}, {"Zoom Y", 1, 8}};
constexpr Parameter kGraphicZoom[] = {{"Zoom X", 0, 9}, {"Zoom Y", 0, 9}};
constexpr Parameter kPoint[] = {{"X", kLowest16, kHighest16}, {"Y", kLowest16, kHighest16}};
constexpr Parameter kRadii[] = {{"Radius X", kLowest16, kHighest16},
                                {"Radius Y", kLowest16, kHighest16}};
constexpr Parameter kBitmap[] = {{"X", kLowest16, kHighest16},
                                 {"Y", kLowest16, kHighest16},
                                 {"Byte je Zeile, oder - Breite", kLowest16, kHighest16},
                                 {"Höhe", 1, kHighest16},
                                 {"Punkte", 0, 255, Form::HexBytes}};

// What the Terminal answers.
constexpr int kHighest = std::numeric_limits<int>::max();
constexpr Parameter kFlash[] = {{"Sektoren", 0, kHighest}, {"Sektorgröße", 0, kHighest}};
constexpr Parameter kFreeBytes[] = {{"Byte", 0, kHighest}};
constexpr Parameter kShape[] = {{"Art", 0, 6}, {"Form oder Größe", 0, kHighest16}};
constexpr Parameter kPosition[] = {{"X", kLowest16, kHighest16}, {"Y", kLowest16, kHighest16}};
constexpr Parameter kSum[] = {{"Prüfsumme", 0, 0xFFFF, Form::Hex}};

constexpr auto AtOnce = Ending::AtOnce;
constexpr auto Semicolon = Ending::Semicolon;
constexpr auto None = Answer::None;
constexpr auto Acknowledge = Answer::Acknowledge;
constexpr auto Value = Answer::Value;

constexpr CommandRow kRows[] = {
    {AskVersion, "?V", kNothing, AtOnce, Value, "Version abfragen"},
    {AskSystemInfo, "??", kNothing, AtOnce, Answer::FreeText, "Systeminformation abfragen"},
    {AskAddress, "?A", kNothing, AtOnce, Value, "Adresse abfragen", "", "", kAddress},
    {SelectAddress, "!A", kAddress, Semicolon, None, "Adresse wählen",
     "Terminal mit Adresse $1 wählen", "Adresse $1 gewählt"},
    {AskPort, "?P", kNothing, AtOnce, Value, "Eingänge P1 abfragen", "", "", kLines},
    {SetPort, "!P", kLines, Semicolon, None, "Ausgänge P0 setzen", "Ausgänge P0 auf $1 setzen",
     "Ausgänge P0 auf $1 setzen"},
    {SetResolution, "!R", kResolution, Semicolon, None, "Auflösung setzen", "",
     "Auflösung $1 x $2"},
    {Restart, "R", kNothing, AtOnce, None, "Neustart", "", "Neustart"},
    {AskFlash, "F??", kNothing, AtOnce, Value, "Flash-Sektoren abfragen", "", "", kFlash},
    {SetInterface1, "!B", kInterface, Semicolon, None, "erste Schnittstelle einstellen", "",
     "erste Schnittstelle auf $1 Bit/s"},
    {SetBuffer1, "!S", kBuffer, Semicolon, None, "Puffer der ersten Schnittstelle",
     "Puffer der ersten Schnittstelle: $1 Zeichen"},
    {SetInterface2, "!b", kInterface, Semicolon, None, "zweite Schnittstelle einstellen", "",
     "zweite Schnittstelle auf $1 Bit/s"},
    {SetBuffer2, "!s", kBuffer, Semicolon, None, "Puffer der zweiten Schnittstelle",
     "Puffer der zweiten Schnittstelle: $1 Zeichen"},
    {SetReceiveMode2, "2I", kReceiveMode, Semicolon, None, "Empfang der zweiten Schnittstelle"},
    {SendToInterface2, "2O", kText, Ending::Open, None, "Ausgabe auf zweiter Schnittstelle",
     "Ausgabe auf zweiter Schnittstelle: &1", "Ausgabe auf zweiter Schnittstelle, $1"},
    {AskFreeBytes, "E?F", kNothing, AtOnce, Value, "freien Platz im EEPROM abfragen", "", "",
     kFreeBytes},
    {WriteConfig, "EWC", kNothing, AtOnce, Acknowledge, "Konfiguration speichern", "",
     "Konfiguration gespeichert"},
    {DeleteConfig, "EDC", kNothing, AtOnce, Acknowledge, "Konfiguration löschen", "",
     "Konfiguration gelöscht"},
    {EraseEEprom, "EE", kNothing, AtOnce, Acknowledge, "EEPROM löschen", "", "EEPROM gelöscht"},
    {EraseEEpromCounting, "Ee", kNothing, AtOnce, Answer::CountDown,
     "EEPROM löschen mit Fortschritt", "", "EEPROM gelöscht"},
    {WriteMakro, "EWM", kMakro, Ending::Etx, Acknowledge, "Makro schreiben",
     "Makro $1 schreiben, $2", "Makro $1 geschrieben: $2"},
    {DeleteMakro, "EDM", kNumber, Semicolon, Acknowledge, "Makro löschen", "Makro $1 löschen",
     "Makro $1 gelöscht"},
    {RunMakro, "ECM", kNumber, Semicolon, None, "Makro ausführen", "Makro $1 ausführen",
     "Makro $1 ausführen"},
    {WriteKeyTable, "EWK", kKeyTable, Semicolon, Acknowledge, "Tastaturtabelle schreiben",
     "Tastaturtabelle $1 schreiben, ab Code $2, $3", "Tabelle $1 geschrieben: $3"},
    {ActivateMatrixTable, "EMK", kNumber, Semicolon, None, "Matrix-Tabelle aktivieren",
     "Matrix-Tabelle $1 aktivieren", "Matrix-Tabelle $1 aktivieren"},
    {ActivateAtTable, "EAK", kNumber, Semicolon, None, "AT-Tabelle aktivieren",
     "AT-Tabelle $1 aktivieren", "AT-Tabelle $1 aktivieren"},
    {DeleteKeyTable, "EDK", kNumber, Semicolon, Acknowledge, "Tastaturtabelle löschen",
     "Tastaturtabelle $1 löschen", "Tabelle $1 gelöscht"},
    {AskMatrixTable, "EM?", kNothing, AtOnce, Value, "Matrix-Tabelle abfragen"},
    {AskAtTable, "EA?", kNothing, AtOnce, Value, "AT-Tabelle abfragen"},
    {WriteBitmap, "EWB", kStoredBitmap, Semicolon, Acknowledge, "Bitmap schreiben",
     "Bitmap $1 schreiben, $4", "Bitmap $1 geschrieben: $4"},
    {SetMatrixSize, "MS", kMatrixSize, Semicolon, None, "Matrix: Größe",
     "Matrix: $1 Spalten, $2 Zeilen"},
    {SetMatrixConfig, "MC", kMatrixConfig, Semicolon, None, "Matrix: Konfiguration"},
    {StartMatrix, "ME", kNothing, AtOnce, None, "Matrix-Abfrage ein", "", "Matrix-Abfrage ein"},
    {StopMatrix, "MD", kNothing, AtOnce, None, "Matrix-Abfrage aus", "", "Matrix-Abfrage aus"},
    {DefineCursor, "!c", kCursorShape, Semicolon, None, "Cursorform", "", "Cursor"},
    {SwitchCursor, "!C", kCursor, Semicolon, None, "Cursor ein/aus"},
    {AskCursor, "?C", kNothing, AtOnce, Value, "Cursorart abfragen", "", "", kCursor},
    {AskCursorShape, "?c", kNothing, AtOnce, Value, "Cursorform abfragen", "", "", kShape},
    {SetTextPosition, "TP", kCell, Semicolon, None, "Textposition",
     "Textposition Spalte $1, Zeile $2"},
    {MoveTextHome, "TH", kNothing, AtOnce, None, "Textcursor nach Hause"},
    {SetTextFont, "TF", kFont, Semicolon, None, "Schrift", "Schrift $1"},
    {SetTextAttribute, "TA", kAttribute, Semicolon, None, "Textattribut", "Textattribut $1"},
    {SetTextMode, "TM", kMode, Semicolon, None, "Textmodus", "Textmodus $1", "Textmodus"},
    {SetTextZoom, "TZ", kZoom, Semicolon, None, "Textzoom", "Textzoom $1,$2"},
    {AskTextPosition, "T?P", kNothing, AtOnce, Value, "Textposition abfragen", "", "", kPosition},
    {AskTextFont, "T?F", kNothing, AtOnce, Value, "Schrift abfragen", "", "", kFont},
    {AskTextAttribute, "T?A", kNothing, AtOnce, Value, "Textattribut abfragen", "", "", kAttribute},
    {AskTextMode, "T?M", kNothing, AtOnce, Value, "Textmodus abfragen", "", "", kMode},
    {AskTextZoom, "T?Z", kNothing, AtOnce, Value, "Textzoom abfragen", "", "", kZoom},
    {SetGraphicPosition, "GP", kPoint, Semicolon, None, "Grafikposition", "Grafikposition $1,$2"},
    {MoveGraphicHome, "GH", kNothing, AtOnce, None, "Grafikcursor nach Hause"},
    {AskGraphicPosition, "G?P", kNothing, AtOnce, Value, "Grafikposition abfragen", "", "",
     kPosition},
    {ClearDisplay, "GC", kNothing, AtOnce, None, "Display löschen"},
    {PenDraws, "GM0", kNothing, Semicolon, None, "zeichnen"},
    {PenErases, "GM1", kNothing, Semicolon, None, "radieren"},
    {Line, "GL", kPoint, Semicolon, None, "Linie", "Linie bis $1,$2"},
    {Rectangle, "GR", kPoint, Semicolon, None, "Rechteck", "Rechteck bis $1,$2"},
    {FilledRectangle, "GfR", kPoint, Semicolon, None, "gefülltes Rechteck",
     "gefülltes Rechteck bis $1,$2"},
    {Ellipse, "GE", kRadii, Semicolon, None, "Ellipse", "Ellipse mit Radien $1,$2"},
    {FilledEllipse, "GfE", kRadii, Semicolon, None, "gefüllte Ellipse",
     "gefüllte Ellipse mit Radien $1,$2"},
    {Bitmap, "GB", kBitmap, Semicolon, None, "Bitmap", "Bitmap bei $1,$2, $5"},
    {SetGraphicFont, "GF", kFont, Semicolon, None, "Grafikschrift", "Grafikschrift $1"},
    {SetGraphicZoom, "GZ", kGraphicZoom, Semicolon, None, "Grafikschrift-Zoom",
     "Grafikschrift-Zoom $1,$2"},
    {SetGraphicAttribute, "GA", kAttribute, Semicolon, None, "Grafikschrift-Attribut",
     "Grafikschrift-Attribut $1"},
    {GraphicText, "GT", kText, Ending::Eot, None, "Grafiktext", "Grafiktext &1"},
    {ResetChecksum, "C!", kNothing, AtOnce, None, "Prüfsumme beginnen"},
    {AskChecksum, "C?", kNothing, AtOnce, Value, "Prüfsumme abfragen", "", "", kSum},
};

constexpr bool InOrder() {
  for (std::size_t i = 0; i < std::size(kRows); ++i) {
    if (static_cast<std::size_t>(kRows[i].name) != i) return false;
  }
  return std::size(kRows) == static_cast<std::size_t>(AskChecksum) + 1;
}
static_assert(InOrder(), "a command is found by its name's position");

// A macro text runs to ETX and may hold whole commands; all others end with the next ESC at the
// latest.
std::size_t CommandEnd(std::string_view wire, std::size_t from, const CommandRow* row) {
  const bool toEtx = row != nullptr && row->ending == Ending::Etx;
  const std::size_t end = wire.find(toEtx ? kEtx : kEsc, from);
  return end == std::string_view::npos ? wire.size() : end;
}

// How many characters of what stands behind the letters are parameters.
std::size_t ParametersEnd(std::string_view text, Ending ending) {
  switch (ending) {
    case Ending::AtOnce:
      return 0;
    case Ending::Semicolon:
    case Ending::Open:
      return text.find(';');
    case Ending::Eot:
      return text.find(kEot);
    case Ending::Etx:
      break;
  }
  return text.size();
}

// `body` is what stands between ESC and the next command.
SentCommand SentAs(const CommandRow* row, std::string_view body) {
  if (row == nullptr) return {row, body, {}};
  body.remove_prefix(row->letters.size());
  const std::size_t end = std::min(ParametersEnd(body, row->ending), body.size());
  std::string_view text = body.substr(end);
  const bool closed = !text.empty() && row->ending != Ending::AtOnce;
  text.remove_prefix(closed ? 1 : 0);
  const bool open = !closed && (row->ending == Ending::Semicolon || row->ending == Ending::Open);
  return {row, body.substr(0, end), text, open};
}

}  // namespace

std::span<const CommandRow> CommandTable() { return kRows; }

const CommandRow& RowOf(CommandName name) { return kRows[static_cast<std::size_t>(name)]; }

const CommandRow* FindCommand(std::string_view text) {
  const CommandRow* best = nullptr;
  for (const CommandRow& row : kRows) {
    if (!text.starts_with(row.letters)) continue;
    if (best == nullptr || row.letters.size() > best->letters.size()) best = &row;
  }
  return best;
}

void WalkCommands(std::string_view wire, const std::function<bool(const SentCommand&)>& visit) {
  for (std::size_t at = wire.find(kEsc); at != std::string_view::npos; at = wire.find(kEsc, at)) {
    const CommandRow* row = FindCommand(wire.substr(at + 1));
    const std::size_t end = CommandEnd(wire, at + 1, row);
    if (!visit(SentAs(row, wire.substr(at + 1, end - at - 1)))) return;
    at = end;
  }
}

std::string CommandMeaning(std::string_view wire, int limit) {
  std::string meaning;
  WalkCommands(wire, [&](const SentCommand& command) {
    if (!meaning.empty()) meaning += "; ";
    const bool named = limit-- > 0;
    const CommandRow* const row = command.row;
    meaning += !named ? "…" : row == nullptr ? "unbekannter Befehl" : row->meaning;
    return named;
  });
  return meaning;
}

bool EndsOpen(std::string_view wire) {
  bool open = false;
  WalkCommands(wire, [&open](const SentCommand& command) {
    open = command.open;
    return true;
  });
  return open;
}

const CommandRow* LastCommand(std::string_view wire) {
  const CommandRow* last = nullptr;
  WalkCommands(wire, [&last](const SentCommand& command) {
    last = command.row;
    return true;
  });
  return last;
}

}  // namespace kelvo
