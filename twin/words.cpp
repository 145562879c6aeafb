#include "twin/words.h"

#include <utility>

namespace kelvo {
namespace {

constexpr std::pair<Knowledge::Parts, const char*> kParts[] = {
    {Knowledge::Pen, "Stift"},
    {Knowledge::GraphicPoint, "Grafikposition"},
    {Knowledge::GraphicFont, "Schrift des Grafiktexts"},
    {Knowledge::GraphicZoom, "Zoom des Grafiktexts"},
    {Knowledge::GraphicAttribute, "Attribut des Grafiktexts"},
    {Knowledge::Column | Knowledge::Row, "Textposition"},
    {Knowledge::TextFont, "Schrift"},
    {Knowledge::TextZoom, "Zoom"},
    {Knowledge::TextAttribute, "Attribut"},
    {Knowledge::TextMode, "Textmodus"}};

std::string PartWords(Knowledge::Parts parts) {
  std::string words;
  for (const auto& [some, name] : kParts) {
    if ((parts & some) != 0) words += (words.empty() ? "" : ", ") + std::string(name);
  }
  return words;
}

std::string MakroWords(int number) { return "Makro " + std::to_string(number); }

std::string SizeWords(const Twin& twin) {
  const PixelMap& pixels = twin.terminal.Display().Pixels();
  return "Unbekannt, weil die Größe " + std::to_string(pixels.Width()) + " × " +
         std::to_string(pixels.Height()) +
         " angenommen ist. Gewissheit bringt \"Version und Info lesen\" auf der Seite Status.";
}

}  // namespace

std::string DoubtWords(const Knowledge& knowledge) {
  switch (knowledge.Why()) {
    case TwinDoubt::None:
    case TwinDoubt::NeverAnswered:
      return "das Terminal noch nicht geantwortet hat";
    case TwinDoubt::FromBefore:
      return "nicht bekannt ist, was es vorher gezeigt hat";
    case TwinDoubt::Silent:
      return "das Terminal nicht geantwortet hat; vielleicht war es aus";
    case TwinDoubt::Garbled:
      return "die Antwort des Terminals gestört war";
    case TwinDoubt::LineLost:
      return "die Verbindung verloren ging";
    case TwinDoubt::LineSetAnew:
      return "der Anschluss umgestellt wurde";
    case TwinDoubt::OwnLineSetAnew:
      return "das Terminal seine Schnittstelle umgestellt hat";
    case TwinDoubt::AllSelected:
      return "alle Terminals zugleich gewählt wurden";
    case TwinDoubt::SendingCut:
      return "das Senden abgebrochen wurde";
    case TwinDoubt::UnknownMakro:
      return MakroWords(knowledge.WhyNumber()) +
             " gelaufen ist, dessen Text hier nicht bekannt ist";
    case TwinDoubt::UnknownStart:
      return "Makro 0 nach dem Start gelaufen ist, dessen Text hier nicht bekannt ist";
    case TwinDoubt::EndlessMakro:
      return "Makros einander ohne Ende aufrufen";
    case TwinDoubt::OtherAnswer:
      return "das Terminal etwas anderes geantwortet hat, als errechnet war";
    case TwinDoubt::OtherSum:
      return "die Prüfsumme des Terminals zu etwas anderem gehört, als gesendet wurde";
    case TwinDoubt::UnknownSettings:
      break;
  }
  return "mit etwas gezeichnet wurde, das nicht bekannt war: " + PartWords(knowledge.WhyParts());
}

std::string RemedyWords(const Knowledge& knowledge) {
  if (knowledge.Deaf()) {
    return "Gewissheit bringt eine Antwort (\"Verbindung prüfen\") und danach das Löschen der "
           "Anzeige (GC).";
  }
  if (knowledge.Why() != TwinDoubt::UnknownSettings) {
    return "Gewissheit bringt das Löschen der Anzeige (GC).";
  }
  const std::string parts = PartWords(knowledge.WhyParts() & knowledge.Unknown());
  if (parts.empty()) return "Gewissheit bringt das Löschen der Anzeige (GC).";
  return "Gewissheit bringt das Löschen der Anzeige (GC), sobald auch das gesetzt oder gelesen "
         "ist: " +
         parts + ".";
}

std::string TwinWords(const Twin& twin, std::string (*clock)(WallTime time)) {
  const Knowledge& knowledge = twin.knowledge;
  if (twin.OnlySizeAssumed()) return SizeWords(twin);
  if (!twin.Certain()) {
    return "Unbekannt, weil " + DoubtWords(knowledge) + ". " + RemedyWords(knowledge);
  }
  std::string words =
      "Errechnet aus dem, was seit " + clock(twin.since.value_or(WallTime())) + " gesendet wurde";
  if (twin.answered) words += "; zuletzt geantwortet um " + clock(*twin.answered);
  words += ".";
  if (!knowledge.KnowsCursor()) words += " Cursor unbekannt.";
  return words;
}

}  // namespace kelvo
