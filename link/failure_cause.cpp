#include "link/failure_cause.h"

#include "base/wire_text.h"
#include "link/addresses.h"

namespace kelvo {
namespace {

using enum FailureCause;

constexpr std::size_t kQuotedCharacters = 20;

constexpr FailureText kTexts[] = {{"keine Reaktion"},
                                  {"unknown "},
                                  {"TimeOut"},
                                  {"Fehler beim EEPROM", Refused},
                                  {"unerwartetes Zeichen"},
                                  {"kein ACK nach löschen"},
                                  {"keine Verbindung, PC-Schnittstelle trotzdem ändern ?"},
                                  {"nicht genügend Platz im EEprom", NoRoom},
                                  {"stellen Sie zuerst eine Schnittstelle ein", PortClosed},
                                  {"zuerst Anschluß wählen", PortClosed},
                                  {"Schnittstelle belegt", PortBusy},
                                  {"Schnittstelle nicht vorhanden", PortMissing},
                                  {"Schnittstelle bereits geöffnet", PortFault},
                                  {"Schnittstellenfehler8012", PortForbidden},
                                  {"Schnittstellenfehler", PortFault},
                                  {"Die Verbindung zu ", DeviceGone},
                                  {"Es hat kein Terminal geantwortet."},
                                  {"Die Antwort war nicht vollständig.", Unfinished}};

constexpr CausePlace kPlaces[] = {
    {PortClosed, "ursache-geschlossen"}, {DeviceGone, "ursache-geraet"},
    {LineHeld, "ursache-gehalten"},      {NobodySelected, "ursache-keines"},
    {SelectedSilent, "ursache-still"},   {AllSilent, "ursache-still"},
    {UnknownSilent, "ursache-still"},    {Refused, "ursache-abgelehnt"},
    {Strange, "ursache-fremd"},          {Unfinished, "ursache-halb"},
    {NotConfirmed, "ursache-halb"},      {NoRoom, "ursache-platz"},
    {RoomUnknown, "ursache-platz"},      {PortBusy, "ursache-belegt"},
    {PortMissing, "ursache-fehlt"},      {PortForbidden, "ursache-rechte"},
    {PortFault, "ursache-fehlt"}};

FailureCause CauseOfSilence(const LineState& state) {
  switch (state.Listens()) {
    case Listening::All:
      return AllSilent;
    case Listening::Unknown:
      return UnknownSilent;
    case Listening::Nobody:
      return state.SelectedAway() ? NobodySelected : SelectedSilent;
    case Listening::One:
      break;
  }
  return SelectedSilent;
}

FailureCause CauseByLine(const LineState& state) {
  switch (state.Answers()) {
    case Answering::Disconnected:
      return PortClosed;
    case Answering::Lost:
      return DeviceGone;
    case Answering::Held:
      return LineHeld;
    default:
      break;
  }
  if (!state.LastFailure()) return NotConfirmed;
  switch (state.LastFailure()->kind) {
    case ReplyKind::Silent:
      return CauseOfSilence(state);
    case ReplyKind::Refused:
      return Refused;
    case ReplyKind::Unexpected:
      return Strange;
    default:
      return Unfinished;
  }
}

std::string Received(const LineState& state) {
  const auto& failure = state.LastFailure();
  const std::string received = failure ? failure->received.substr(0, kQuotedCharacters) : "";
  if (received.empty()) return "nur ein Teil des Erwarteten";
  return "„" + ReadableText(received) + "“ (" + HexText(received) + ")";
}

constexpr char kDoubt[] = " Ob es den Befehl ausgeführt hat, ist nicht bekannt.";

std::string SilenceWords(FailureCause cause, const LineState& state) {
  const std::string address = std::to_string(state.Address().value_or(kAllAddresses));
  switch (cause) {
    case NobodySelected:
      return "Es ist kein Terminal gewählt; nach dem Senden an alle und nach einer Suche ist das "
             "so. Oben die Adresse einsetzen, „Terminal wählen“ drücken und wiederholen.";
    case SelectedSilent:
      return "Das Terminal mit der Adresse " + address + " hat in der Zeit nicht geantwortet." +
             kDoubt + " Stimmt die Adresse? Ist es eingeschaltet? Stimmen Rate und Kabel?";
    case AllSilent:
      return "Gewählt sind alle Terminals, und keines hat in der Zeit geantwortet. Kabel, Strom "
             "und "
             "Rate prüfen.";
    default:
      return std::string("Es kam kein einziges Zeichen.") + kDoubt +
             " Welches Terminal hört, ist nicht bekannt: Oben eines wählen (255: alle), dann "
             "Kabel, Strom und Rate prüfen.";
  }
}

std::string AnswerWords(FailureCause cause, const LineState& state) {
  switch (cause) {
    case Refused:
      return "Das Terminal hat den Befehl abgelehnt (NAK); die Verbindung ist gut. Zuerst den "
             "freien Platz im EEPROM lesen: Ist genug da, hilft Löschen nicht, und die Werte des "
             "Befehls oder das EEPROM selbst sind nicht in Ordnung.";
    case Strange:
      return "Statt einer Quittung kam " + Received(state) + "." + kDoubt +
             " Vielleicht wurde am Terminal gerade eine Taste gedrückt; kommt es immer wieder, "
             "stimmt wohl die Rate oder die Parität nicht.";
    case Unfinished:
      return "Die Antwort blieb unvollständig: Es kam " + Received(state) +
             ". Vielleicht stimmt die Rate nicht, oder mehrere Terminals antworten zugleich.";
    default:
      return "Es wurde geantwortet, aber die Bestätigung am Ende fehlte. Den freien Platz lesen: "
             "Er zeigt, ob das Terminal es getan hat.";
  }
}

std::string PortWords(FailureCause cause) {
  switch (cause) {
    case PortBusy:
      return "Ein anderes Programm, vielleicht ein zweites kelvo, hat das Gerät offen. Dort "
             "schließen, dann den Anschluss noch einmal wählen.";
    case PortMissing:
      return "Das Gerät, das hinter diesem Anschluss eingetragen ist, gibt es gerade nicht. "
             "Einstecken, oder unter „Optionen“ / „Anschlüsse …“ ein anderes eintragen. Beim "
             "Simulator: Er läuft nicht.";
    case PortForbidden:
      return "Das Gerät ist da, aber Sie dürfen es nicht benutzen. „Optionen“ / „Anschlüsse …“ "
             "nennt die Gruppe, die es darf.";
    default:
      return "Das Gerät ließ sich nicht öffnen. Abziehen, wieder einstecken und den Anschluss noch "
             "einmal wählen.";
  }
}

}  // namespace

std::span<const FailureText> FailureTexts() { return kTexts; }

std::span<const CausePlace> CausePlaces() { return kPlaces; }

std::string_view AnchorOf(FailureCause cause) {
  return kPlaces[static_cast<std::size_t>(cause)].anchor;
}

std::optional<FailureCause> CauseOf(std::string_view text, const LineState& state) {
  for (const FailureText& row : kTexts) {
    if (!text.starts_with(row.beginning)) continue;
    // Without an answer to the question for the room nothing is known of it.
    if (row.cause == NoRoom && state.LastFailure()) return RoomUnknown;
    return row.cause ? *row.cause : CauseByLine(state);
  }
  return std::nullopt;
}

std::string CauseWords(FailureCause cause, const LineState& state) {
  switch (cause) {
    case PortClosed:
      return "Kein Anschluss ist offen; es wurde nichts gesendet. Auf der Seite „Schnittstellen“ "
             "einen Anschluss wählen.";
    case DeviceGone:
      return "Das Gerät ist vom Rechner verschwunden. Was gerade gesendet wurde, kann "
             "unvollständig "
             "angekommen sein. Kabel und Adapter prüfen.";
    case LineHeld:
      return "Die Gegenstelle hält die Leitung (Handshake); der Befehl wartet noch im PC. Terminal "
             "einschalten, oder den Handshake auf der Seite „Schnittstellen“ prüfen.";
    case NoRoom:
      return "Es passt nicht mehr hinein. Löschen, was nicht mehr gebraucht wird; das ganze EEPROM "
             "zu löschen ist dafür nicht nötig.";
    case RoomUnknown:
      return "Auf die Frage nach dem freien Platz kam keine brauchbare Antwort; wie viel frei ist, "
             "ist nicht bekannt. Löschen hilft nicht. " +
             CauseWords(CauseByLine(state), state);
    case NobodySelected:
    case SelectedSilent:
    case AllSilent:
    case UnknownSilent:
      return SilenceWords(cause, state);
    case Refused:
    case Strange:
    case Unfinished:
    case NotConfirmed:
      return AnswerWords(cause, state);
    default:
      return PortWords(cause);
  }
}

}  // namespace kelvo
