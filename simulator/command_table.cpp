#include "simulator/command_table.h"

namespace kelvo::sim {
namespace {

using enum Ending;
using C = Command;

constexpr CommandRow kRows[] = {
    {"?V", C::AskVersion, AtOnce, Reply::Value, 0, "Version abfragen"},
    {"??", C::AskInfo, AtOnce, Reply::None, 0, "Systeminformation abfragen"},
    {"?A", C::AskAddress, AtOnce, Reply::Value, 0, "Adresse abfragen"},
    {"?P", C::AskPort, AtOnce, Reply::Value, 0, "Port P1 abfragen"},
    {"!A", C::SelectAddress, Semicolon, Reply::None, 1, "Adresse auswählen"},
    {"!P", C::SetPort, Semicolon, Reply::None, 1, "Port P0 setzen"},
    {"!R", C::SetResolution, Semicolon, Reply::None, 2, "Auflösung einstellen"},
    {"R", C::Restart, AtOnce, Reply::None, 0, "Neustart"},
    {"F??", C::AskFlash, AtOnce, Reply::Value, 0, "Flash abfragen"},
    {"!B", C::SetInterface1, Semicolon, Reply::None, 5, "1. Schnittstelle einstellen"},
    {"!S", C::SetBuffer1, Semicolon, Reply::None, 1, "1. Schnittstelle: Puffer"},
    {"!b", C::SetInterface2, Semicolon, Reply::None, 5, "2. Schnittstelle einstellen"},
    {"!s", C::SetBuffer2, Semicolon, Reply::None, 1, "2. Schnittstelle: Puffer"},
    {"2I", C::SetReceive2, Semicolon, Reply::None, 1, "2. Schnittstelle: Empfang"},
    {"2O", C::Send2, Semicolon, Reply::None, 0, "2. Schnittstelle: senden"},
    {"C!", C::ResetChecksum, AtOnce, Reply::None, 0, "Prüfsumme zurücksetzen"},
    {"C?", C::AskChecksum, AtOnce, Reply::Value, 0, "Prüfsumme abfragen"},

    {"E?F", C::AskFreeBytes, AtOnce, Reply::Value, 0, "freien EEPROM-Platz abfragen"},
    {"EWC", C::WriteConfig, AtOnce, Reply::Acknowledge, 0, "Konfiguration speichern"},
    {"EDC", C::DeleteConfig, AtOnce, Reply::Acknowledge, 0, "Konfiguration löschen"},
    {"EE", C::Erase, AtOnce, Reply::Acknowledge, 0, "EEPROM löschen"},
    {"Ee", C::EraseCounting, AtOnce, Reply::Acknowledge, 0, "EEPROM löschen mit Fortschritt"},
    {"EWM", C::WriteMacro, Etx, Reply::Acknowledge, 0, "Makro speichern"},
    {"EDM", C::DeleteMacro, Semicolon, Reply::Acknowledge, 0, "Makro löschen"},
    {"ECM", C::RunMacro, Semicolon, Reply::None, 1, "Makro ausführen"},
    {"EWK", C::WriteKeyTable, Semicolon, Reply::Acknowledge, 0, "Tastaturtabelle speichern"},
    {"EDK", C::DeleteKeyTable, Semicolon, Reply::Acknowledge, 0, "Tastaturtabelle löschen"},
    {"EWB", C::WriteBitmap, Semicolon, Reply::Acknowledge, 0, "Bitmap speichern"},

    {"EMK", C::ActivateMatrixTable, Semicolon, Reply::None, 1, "Matrix-Tabelle aktivieren"},
    {"EAK", C::ActivateAtTable, Semicolon, Reply::None, 1, "AT-Tabelle aktivieren"},
    {"EM?", C::AskMatrixTable, AtOnce, Reply::Value, 0, "Matrix-Tabelle lesen"},
    {"EA?", C::AskAtTable, AtOnce, Reply::Value, 0, "AT-Tabelle lesen"},
    {"MS", C::MatrixSize, Semicolon, Reply::None, 2, "Matrix: Größe"},
    {"MC", C::MatrixConfig, Semicolon, Reply::None, 5, "Matrix: Anschluss"},
    {"ME", C::MatrixOn, AtOnce, Reply::None, 0, "Matrix-Abfrage ein"},
    {"MD", C::MatrixOff, AtOnce, Reply::None, 0, "Matrix-Abfrage aus"},

    {"!c", C::DefineCursor, Semicolon, Reply::None, 1, "Cursor-Form"},
    {"!C", C::SwitchCursor, Semicolon, Reply::None, 1, "Cursor-Art"},
    {"?C", C::AskCursor, AtOnce, Reply::Value, 0, "Cursor-Art abfragen"},
    {"?c", C::AskCursorShape, AtOnce, Reply::Value, 0, "Cursor-Form abfragen"},
    {"TP", C::TextPosition, Semicolon, Reply::None, 2, "Textposition"},
    {"TH", C::TextHome, AtOnce, Reply::None, 0, "Text-Cursor an den Anfang"},
    {"TF", C::TextFont, Semicolon, Reply::None, 1, "Text: Schrift"},
    {"TA", C::TextAttribute, Semicolon, Reply::None, 1, "Text: Attribut"},
    {"TM", C::TextMode, Semicolon, Reply::None, 1, "Text: Modus"},
    {"TZ", C::TextZoom, Semicolon, Reply::None, 2, "Text: Zoom"},
    {"T?P", C::AskTextPosition, AtOnce, Reply::Value, 0, "Textposition abfragen"},
    {"T?F", C::AskTextFont, AtOnce, Reply::Value, 0, "Schrift abfragen"},
    {"T?A", C::AskTextAttribute, AtOnce, Reply::Value, 0, "Attribut abfragen"},
    {"T?M", C::AskTextMode, AtOnce, Reply::Value, 0, "Textmodus abfragen"},
    {"T?Z", C::AskTextZoom, AtOnce, Reply::Value, 0, "Textzoom abfragen"},

    {"GC", C::Clear, AtOnce, Reply::None, 0, "Anzeige löschen"},
    {"GP", C::GraphicPosition, Semicolon, Reply::None, 2, "Grafikposition"},
    {"GH", C::GraphicHome, AtOnce, Reply::None, 0, "Grafik-Cursor an den Anfang"},
    {"G?P", C::AskGraphicPosition, AtOnce, Reply::Value, 0, "Grafikposition abfragen"},
    {"GM", C::DrawMode, Semicolon, Reply::None, 1, "Zeichenmodus"},
    {"GL", C::Line, Semicolon, Reply::None, 2, "Linie"},
    {"GR", C::Rectangle, Semicolon, Reply::None, 2, "Rechteck"},
    {"GfR", C::FilledRectangle, Semicolon, Reply::None, 2, "gefülltes Rechteck"},
    {"GE", C::Ellipse, Semicolon, Reply::None, 2, "Ellipse"},
    {"GfE", C::FilledEllipse, Semicolon, Reply::None, 2, "gefüllte Ellipse"},
    {"GB", C::Bitmap, Semicolon, Reply::None, 5, "Bitmap zeichnen"},
    {"GF", C::GraphicFont, Semicolon, Reply::None, 1, "Grafiktext: Schrift"},
    {"GZ", C::GraphicZoom, Semicolon, Reply::None, 2, "Grafiktext: Zoom"},
    {"GA", C::GraphicAttribute, Semicolon, Reply::None, 1, "Grafiktext: Attribut"},
    {"GT", C::GraphicText, Text, Reply::None, 0, "Grafiktext"},
};

}  // namespace

std::span<const CommandRow> CommandRows() { return kRows; }

NameMatch FindCommand(std::string_view letters) {
  NameMatch match;
  for (const CommandRow& row : kRows) {
    if (row.name.front() != letters.front()) continue;
    if (row.name == letters) match.row = &row;
    if (row.name.size() > letters.size() && row.name.starts_with(letters)) match.mayGrow = true;
  }
  return match;
}

}  // namespace kelvo::sim
