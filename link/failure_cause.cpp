#include "link/failure_cause.h"

#include <algorithm>

#include "base/val.h"
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
                                  {"nicht genügend Platz im EEprom", NoRoom, true},
                                  {"nicht bestätigt: "},
                                  {"nicht geschrieben: auf die Frage", WrongTerminal},
                                  {"nicht geschrieben: "},
                                  {"angekommen ist etwas anderes: ", OtherArrived},
                                  {"bestätigt, aber nicht geprüft: ", NotProven},
                                  {"Verbindung verloren: "},
                                  {"stellen Sie zuerst eine Schnittstelle ein", PortClosed, true},
                                  {"zuerst Anschluß wählen", PortClosed, true},
                                  {"Schnittstelle belegt", PortBusy, true},
                                  {"Schnittstelle nicht vorhanden", PortMissing, true},
                                  {"Schnittstelle bereits geöffnet", PortFault, true},
                                  {"Schnittstellenfehler8012", PortForbidden, true},
                                  {"Schnittstellenfehler", PortFault, true},
                                  {"Keine gültige Makro-Nummer", WrongNumber, true},
                                  {"Makro zu lang", TooLong, true},
                                  {"Die Tabelle ist leer", NothingIn, true},
                                  {"Welches Terminal hört, ist nicht bekannt.", NoTarget, true},
                                  {"Gewählt sind alle Terminals zugleich (255).", NoTarget, true},
                                  {"Es ist kein Terminal gewählt.", NoTarget, true},
                                  {"Es ist keine Spalte angekreuzt", NoColumn, true},
                                  {"Die Zeichnung enthält kein Bild.", NoPicture, true},
                                  {"Die Verbindung zu ", DeviceGone},
                                  {"Es hat kein Terminal geantwortet."},
                                  {"Die Antwort war nicht vollständig.", Unfinished},
                                  {"Die Antwort war nicht lesbar.", Strange}};

constexpr CausePlace kPlaces[] = {
    {PortClosed, "ursache-geschlossen"}, {DeviceGone, "ursache-geraet"},
    {LineHeld, "ursache-gehalten"},      {NobodySelected, "ursache-keines"},
    {SelectedSilent, "ursache-still"},   {AllSilent, "ursache-still"},
    {UnknownSilent, "ursache-still"},    {Refused, "ursache-abgelehnt"},
    {Strange, "ursache-fremd"},          {Unfinished, "ursache-halb"},
    {NotConfirmed, "ursache-halb"},      {NoRoom, "ursache-platz"},
    {RoomUnknown, "ursache-platz"},      {PortBusy, "ursache-belegt"},
    {PortMissing, "ursache-fehlt"},      {PortForbidden, "ursache-rechte"},
    {PortFault, "ursache-fehlt"},        {StillGone, "ursache-geraet"},
    {WrongNumber, "ursache-nummer"},     {TooLong, "ursache-lang"},
    {NothingIn, "ursache-leer"},         {OtherArrived, "ursache-anderes"},
    {NotProven, "ursache-ungeprueft"},   {WrongTerminal, "ursache-anderes-terminal"},
    {NoTarget, "ursache-ziel"},          {NoColumn, "ursache-spalte"},
    {NoPicture, "ursache-bild"}};

// Refusals that explain themselves.
constexpr std::string_view kPlainRefusals[] = {"Das Makro enthält an Position",
                                               "Bitte zuerst in jeder Liste einen Wert wählen.",
                                               "Einstellung "};
constexpr std::string_view kAnotherRuns = " Solange wird nichts anderes gesendet.";

const FailureText* RowOf(std::string_view text) {
  const auto* const row =
      std::find_if(std::begin(kTexts), std::end(kTexts),
                   [text](const FailureText& some) { return text.starts_with(some.beginning); });
  return row != std::end(kTexts) ? row : nullptr;
}

// Without an answer to the question for the room nothing is known of it; a port that was lost is
// not one that nobody has opened.
FailureCause Sharpened(FailureCause cause, const LineState& state) {
  if (cause == NoRoom && (state.LastFailure() || state.DeviceGone())) return RoomUnknown;
  return cause == PortClosed && state.DeviceGone() ? StillGone : cause;
}

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
  if (state.DeviceGone()) return DeviceGone;
  switch (state.Answers()) {
    case Answering::Disconnected:
      return PortClosed;
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

// A question has nothing to carry out.
std::string Doubt(const LineState& state) {
  const auto& failure = state.LastFailure();
  const CommandRow* const asked = failure ? LastCommand(failure->sent) : nullptr;
  const bool question =
      asked != nullptr && (asked->answer == Answer::Value || asked->answer == Answer::FreeText);
  return question ? "" : " Ob es den Befehl ausgeführt hat, ist nicht bekannt.";
}

std::string SilenceWords(FailureCause cause, const LineState& state) {
  const std::string address = std::to_string(state.Address().value_or(kAllAddresses));
  switch (cause) {
    case NobodySelected:
      return "Es ist kein Terminal gewählt; nach dem Senden an alle und nach einer Suche ist das "
             "so. Oben die Adresse einsetzen, „Terminal wählen“ drücken und wiederholen.";
    case SelectedSilent:
      return "Das Terminal mit der Adresse " + address + " hat in der Zeit nicht geantwortet." +
             Doubt(state) + " Stimmt die Adresse? Ist es eingeschaltet? Stimmen Rate und Kabel?";
    case AllSilent:
      return "Gewählt sind alle Terminals, und keines hat in der Zeit geantwortet. Kabel, Strom "
             "und "
             "Rate prüfen.";
    default:
      return "Es kam kein einziges Zeichen." + Doubt(state) +
             " Welches Terminal hört, ist nicht bekannt: Oben eines wählen (255: alle), dann "
             "Kabel, Strom und Rate prüfen.";
  }
}

// Where the first value of the command is a number that the Terminal does not have.
std::string WrongNumberWords(const SentCommand& command) {
  const auto& parameters = command.row->parameters;
  if (parameters.empty() || parameters.front().form != Form::Number) return {};
  const Parameter& number = parameters.front();
  const std::string value(command.parameters.substr(0, command.parameters.find(',')));
  if (Val(value) >= number.lowest && Val(value) <= number.highest) return {};
  return std::string(number.meaning) + " „" + ReadableText(value) + "“ gibt es dort nicht, nur " +
         std::to_string(number.lowest) + " bis " + std::to_string(number.highest) + ".";
}

bool TakesRoom(CommandName name) {
  return name != CommandName::DeleteMakro && name != CommandName::DeleteKeyTable &&
         name != CommandName::DeleteConfig && name != CommandName::EraseEEprom &&
         name != CommandName::EraseEEpromCounting;
}

// What was refused says which of the reasons it can have been.
std::string RefusedWords(const LineState& state) {
  std::string reason;
  bool room = true;
  const auto& failure = state.LastFailure();
  WalkCommands(failure ? failure->sent : std::string_view(), [&](const SentCommand& command) {
    reason = command.row != nullptr ? WrongNumberWords(command) : std::string();
    room = command.row == nullptr || TakesRoom(command.row->name);
    return true;
  });
  if (reason.empty()) {
    reason =
        room ? "Zuerst den freien Platz im EEPROM lesen: Ist genug da, hilft Löschen nicht, und "
               "die Werte des Befehls oder das EEPROM selbst sind nicht in Ordnung."
             : "Mit dem freien Platz hat das nichts zu tun: Was gelöscht werden soll, gibt es "
               "dort vielleicht nicht, oder das EEPROM selbst ist nicht in Ordnung.";
  }
  return "Das Terminal hat den Befehl abgelehnt (NAK); die Verbindung ist gut. " + reason;
}

std::string AnswerWords(FailureCause cause, const LineState& state) {
  switch (cause) {
    case Refused:
      return RefusedWords(state);
    case Strange:
      return "Statt einer Quittung kam " + Received(state) + "." + Doubt(state) +
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

std::string NothingSentWords(FailureCause cause) {
  switch (cause) {
    case StillGone:
      return "Das Gerät ist vom Rechner verschwunden; seitdem ist kein Anschluss offen, und es "
             "wurde nichts gesendet. Kabel und Adapter prüfen, oder auf der Seite "
             "„Schnittstellen“ einen anderen Anschluss wählen.";
    case WrongNumber:
      return "Eine Makro-Nummer ist eine ganze Zahl von 0 bis 255. Es wurde nichts gesendet.";
    case TooLong:
      return "Ein Makro fasst im Terminal höchstens 1023 Zeichen. Es wurde nichts gesendet. "
             "Kürzen, "
             "oder auf zwei Makros verteilen, von denen das erste das zweite ausführt.";
    case NoTarget:
      return "Geprüft wird, was ein einzelnes Terminal empfangen hat; es wurde nichts gesendet. "
             "Oben "
             "seine Adresse einsetzen und „Terminal wählen“ drücken. An mehrere schreibt „An "
             "aktive "
             "Terminals …“.";
    case NoColumn:
      return "Ohne Spalte hat das Tastenfeld keine Tasten. Es wurde nichts gesendet. Die Spalten "
             "ankreuzen, an denen Tasten liegen.";
    case NoPicture:
      return "Ins EEPROM kommt ein eingefügtes Bild, und in der Zeichnung ist keines. Es wurde "
             "nichts gesendet. Im Editor ein Bild einfügen; was gezeichnet ist, lässt sich als "
             "Makro "
             "speichern.";
    default:
      return "In der Tabelle steht nichts, was sich übertragen ließe. Es wurde nichts gesendet.";
  }
}

std::string ProofWords(FailureCause cause) {
  switch (cause) {
    case OtherArrived:
      return "Auf der Leitung sind Zeichen verloren gegangen oder verändert worden: Das Terminal "
             "hat etwas anderes gespeichert, als gesendet wurde, vielleicht auch unter einer "
             "anderen Nummer. Noch einmal schreiben; kommt es wieder vor, Rate, Kabel und "
             "Handshake prüfen.";
    case NotProven:
      return "Das Terminal hat den Befehl bestätigt, aber seine Prüfsumme kam nicht; ob alles "
             "richtig angekommen ist, ist nicht bekannt. Noch einmal schreiben. Kann das Terminal "
             "keine Prüfsummen bilden, in der Liste der Terminals „Checksumme“ ausschalten.";
    default:
      return "Unter dieser Adresse antwortet nicht das Terminal, das gemeint ist; geschrieben "
             "wurde nichts. Antworten zwei Terminals zugleich, oder stimmt die Rate nicht? Die "
             "Suche auf der Seite „Terminals“ zeigt es.";
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
  const FailureText* const row = RowOf(text);
  if (row == nullptr) return std::nullopt;
  return row->cause ? Sharpened(*row->cause, state) : CauseByLine(state);
}

std::optional<std::string> RefusalWords(std::string_view text, const LineState& state) {
  const FailureText* const row = RowOf(text);
  const bool plain =
      std::any_of(std::begin(kPlainRefusals), std::end(kPlainRefusals),
                  [text](std::string_view beginning) { return text.starts_with(beginning); });
  if (!plain && !text.ends_with(kAnotherRuns) && (row == nullptr || !row->local)) {
    return std::nullopt;
  }
  if (row != nullptr && row->cause && Sharpened(*row->cause, state) == RoomUnknown) {
    return "nicht geschrieben: Der freie Platz ist nicht bekannt";
  }
  const std::string words(text.substr(0, text.find(" / ")));
  return words.substr(0, words.find_last_not_of(' ') + 1);
}

std::string CauseWords(FailureCause cause, const LineState& state) {
  switch (cause) {
    case PortClosed:
      return "Kein Anschluss ist offen; es wurde nichts gesendet. Auf der Seite „Schnittstellen“ "
             "einen Anschluss wählen.";
    case DeviceGone:
      return std::string("Das Gerät ist vom Rechner verschwunden. ") +
             (state.SentAny() ? "Was gerade gesendet wurde, kann unvollständig angekommen sein. "
                              : "") +
             "Kabel und Adapter prüfen.";
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
    case OtherArrived:
    case NotProven:
    case WrongTerminal:
      return ProofWords(cause);
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
    case StillGone:
    case WrongNumber:
    case TooLong:
    case NothingIn:
    case NoTarget:
    case NoColumn:
    case NoPicture:
      return NothingSentWords(cause);
    default:
      return PortWords(cause);
  }
}

}  // namespace kelvo
