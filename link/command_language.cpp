#include "link/command_language.h"

#include "link/control_characters.h"

namespace kelvo {
namespace {

constexpr CommandWord words[] = {
    {"?V", "Version abfragen"},
    {"??", "Systeminformation abfragen"},
    {"?A", "Adresse abfragen"},
    {"!A", "Adresse wählen"},
    {"?P", "Eingänge P1 abfragen"},
    {"!P", "Ausgänge P0 setzen"},
    {"!R", "Auflösung setzen"},
    {"R", "Neustart"},
    {"F??", "Flash-Sektoren abfragen"},
    {"!B", "erste Schnittstelle einstellen"},
    {"!S", "Puffer der ersten Schnittstelle"},
    {"!b", "zweite Schnittstelle einstellen"},
    {"!s", "Puffer der zweiten Schnittstelle"},
    {"2I", "Empfang der zweiten Schnittstelle"},
    {"2O", "Ausgabe auf zweiter Schnittstelle"},
    {"E?F", "freie EEPROM-Bytes abfragen"},
    {"EWC", "Konfiguration speichern"},
    {"EDC", "Konfiguration löschen"},
    {"EE", "EEPROM löschen"},
    {"Ee", "EEPROM löschen mit Fortschritt"},
    {"EWM", "Makro schreiben"},
    {"EDM", "Makro löschen"},
    {"ECM", "Makro ausführen"},
    {"EWK", "Tastaturtabelle schreiben"},
    {"EMK", "Matrix-Tabelle aktivieren"},
    {"EAK", "AT-Tabelle aktivieren"},
    {"EDK", "Tastaturtabelle löschen"},
    {"EM?", "Matrix-Tabelle abfragen"},
    {"EA?", "AT-Tabelle abfragen"},
    {"EWB", "Bitmap schreiben"},
    {"MS", "Matrix: Größe"},
    {"MC", "Matrix: Konfiguration"},
    {"ME", "Matrix-Abfrage ein"},
    {"MD", "Matrix-Abfrage aus"},
    {"!c", "Cursorform"},
    {"!C", "Cursor ein/aus"},
    {"?C", "Cursorart abfragen"},
    {"?c", "Cursorform abfragen"},
    {"TP", "Textposition"},
    {"TH", "Textcursor nach Hause"},
    {"TF", "Schrift"},
    {"TA", "Textattribut"},
    {"TM", "Textmodus"},
    {"TZ", "Textzoom"},
    {"T?P", "Textposition abfragen"},
    {"T?F", "Schrift abfragen"},
    {"T?A", "Textattribut abfragen"},
    {"T?M", "Textmodus abfragen"},
    {"T?Z", "Textzoom abfragen"},
    {"GP", "Grafikposition"},
    {"GH", "Grafikcursor nach Hause"},
    {"G?P", "Grafikposition abfragen"},
    {"GC", "Display löschen"},
    {"GM0", "zeichnen"},
    {"GM1", "radieren"},
    {"GL", "Linie"},
    {"GR", "Rechteck"},
    {"GfR", "gefülltes Rechteck"},
    {"GE", "Ellipse"},
    {"GfE", "gefüllte Ellipse"},
    {"GB", "Bitmap"},
    {"GF", "Grafikschrift"},
    {"GZ", "Grafikschrift-Zoom"},
    {"GA", "Grafikschrift-Attribut"},
    {"GT", "Grafiktext"},
    {"C!", "Prüfsumme beginnen"},
    {"C?", "Prüfsumme abfragen"},
};

// The longest letters that fit decide, so "GfR" is found before "GF" could be.
const CommandWord* Find(std::string_view text) {
  const CommandWord* best = nullptr;
  for (const CommandWord& word : CommandLanguage()) {
    if (!text.starts_with(word.letters)) continue;
    if (best == nullptr || word.letters.size() > best->letters.size()) best = &word;
  }
  return best;
}

// A macro text runs to ETX and may hold whole commands; a graphic text runs to EOT or the next ESC.
std::size_t CommandEnd(std::string_view wire, std::size_t from, std::string_view letters) {
  const std::size_t end = letters == "EWM" ? wire.find(Etx, from) : wire.find(Esc, from);
  return end == std::string_view::npos ? wire.size() : end;
}

}  // namespace

std::span<const CommandWord> CommandLanguage() { return words; }

std::string CommandMeaning(std::string_view wire, int limit) {
  std::string meaning;
  for (std::size_t at = wire.find(Esc); at != std::string_view::npos; at = wire.find(Esc, at)) {
    ++at;
    const CommandWord* word = Find(wire.substr(at));
    if (!meaning.empty()) meaning += "; ";
    if (limit-- == 0) return meaning += "…";
    meaning += word != nullptr ? word->meaning : "unbekannter Befehl";
    at = CommandEnd(wire, at, word != nullptr ? word->letters : std::string_view());
  }
  return meaning;
}

}  // namespace kelvo
