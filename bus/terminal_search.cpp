#include "bus/terminal_search.h"

#include <algorithm>

#include "base/val.h"
#include "base/wire_text.h"
#include "link/answer_form.h"
#include "link/commands.h"
#include "link/intervals.h"
#include "terminal/version.h"

namespace kelvo {
namespace {

// In force for the search as written; a query brings its own 500 ms all the same.
constexpr std::chrono::milliseconds kSearchInterval{100};
constexpr std::string_view kDigits = "0123456789";

// GC, position, font, zoom, attribute, a text, another position, another text that stays open.
std::string TwoTexts(std::string_view x1, std::string_view text1, std::string_view x2,
                     const std::string& text2) {
  return Sequence({ClearDisplay(), SetGraphicPosition(x1, "150"), SetGraphicFont(8),
                   SetGraphicZoom(3, 3), SetGraphicAttribute(0)}) +
         OpenGraphicText(text1) + SetGraphicPosition(x2, "90").Text() + OpenGraphicText(text2);
}

std::string_view NumberPart(std::string_view reply) {
  return reply.substr(std::min<std::size_t>(reply.size(), 2));
}

bool BeginsWithDigit(std::string_view text) {
  return !text.empty() && kDigits.find(text.front()) != std::string_view::npos;
}

std::string Quoted(const std::string& wire) { return "\"" + ReadableText(wire) + "\""; }

std::string ReceivedText(const std::string& received) {
  if (received.empty()) return "Empfangen: nichts.";
  return "Empfangen: " + Quoted(received) + " (" + HexText(received) + ").";
}

std::string HeardStory(const SearchResult& result) {
  const std::string address = std::to_string(result.address);
  switch (result.heard) {
    case Heard::Silence:
      return "Stille: Unter Adresse " + address + " hat niemand geantwortet, sie ist frei.";
    case Heard::Unfinished:
      return "Unter Adresse " + address +
             " kamen Zeichen, aber keine vollständige Antwort. Antworten vielleicht mehrere "
             "Terminals zugleich, oder ist die Leitung gestört?";
    case Heard::OtherAddress:
      return "Auf Adresse " + address +
             " hat eine andere Adresse geantwortet: " + NumberText(Val(NumberPart(result.reply))) +
             ".";
    case Heard::Garbled:
      return "Die Antwort unter Adresse " + address +
             " ist verstümmelt. Vermutlich antworten mehrere Terminals zugleich.";
    case Heard::Itself:
      break;
  }
  if (result.versionUsable) {
    return "Das Terminal mit der Adresse " + address + " hat geantwortet, Version " +
           ReadableText(result.versionReply) + ".";
  }
  const char* const what =
      result.versionReceived.empty() ? "kam keine Antwort" : "kam keine Version";
  return "Unter Adresse " + address + " wurde geantwortet, aber auf die Frage nach der Version " +
         what + ". Vermutlich antworten mehrere Terminals zugleich.";
}

// What the Terminal shows now has its fixed place and size, which not every display has room for.
std::string DisplayStory(const SearchResult& result) {
  if (result.Absent()) return {};
  if (result.Found()) return " Von der Anzeige sieht man auf 240 x 128 Punkten nur die Nummer.";
  return " Von der Anzeige sieht man auf 240 x 128 Punkten nur den Anfang der Adresse.";
}

}  // namespace

std::string FoundDisplay(int address) {
  return TwoTexts("50", " Adresse : ", "130", std::to_string(address));
}

std::string ConflictDisplay(int address) {
  return TwoTexts("10", "Konflikt ! ", "20", "Adresse : " + std::to_string(address));
}

Heard ReadAddressReply(int address, const Reply& reply) {
  if (reply.kind == ReplyKind::Unfinished) return Heard::Unfinished;
  if (reply.Failed()) return Heard::Silence;
  const std::string_view number = NumberPart(reply.text);
  // A text without a number has the value 0 and so counts as address 0; there the version decides.
  if (Val(number) == address) return Heard::Itself;
  return BeginsWithDigit(number) ? Heard::OtherAddress : Heard::Garbled;
}

std::string ResultName(int address) { return "(Anzeige Nr." + std::to_string(address) + ")"; }

std::string ResultVerdict(const SearchResult& result) {
  if (result.Absent()) return "nicht vorhanden";
  return result.Found() ? "ok" : "Fehler/Kollision";
}

std::string YesNoText(bool yes) { return yes ? "ja" : "nein"; }

std::string ResultStory(const SearchResult& result) {
  std::string story = HeardStory(result);
  if (result.address == kAllAddresses && !result.Found()) {
    story += " Auf diese Adresse hören alle Terminals.";
  }
  story += DisplayStory(result);
  story += "\n" + ReceivedText(result.received);
  if (result.heard != Heard::Itself || result.versionUsable) return story;
  return story + "\nNach der Version gefragt: " + ReceivedText(result.versionReceived);
}

std::string SearchReport(const std::vector<SearchResult>& results) {
  std::string text = "Beschreibung\tTestergebnis\tRückgabewert\tChecksummenfähig\tErläuterung\r\n";
  for (const SearchResult& result : results) {
    std::string story = ResultStory(result);
    std::replace(story.begin(), story.end(), '\n', ' ');
    text += ResultName(result.address) + "\t" + ResultVerdict(result) + "\t" +
            ReadableText(result.reply) + "\t" + YesNoText(result.checksum) + "\t" + story + "\r\n";
  }
  return text;
}

TerminalSearch::End TerminalSearch::Run(int last, double checksumFrom, const Listener& listener,
                                        int first) {
  Exchange& exchange = services_.exchange;
  stopping_ = false;
  exchange.SetInterval(kSearchInterval);
  bool connected = services_.reopenPort();
  for (int address = first; connected && address <= last && !stopping_; ++address) {
    const auto result = Visit(address, checksumFrom);
    if (result) listener(*result);
    connected = result && exchange.Alive();
  }
  exchange.SetInterval(kUsualInterval);
  if (!connected) return End::LineLost;
  return stopping_ ? End::Stopped : End::Complete;
}

std::optional<SearchResult> TerminalSearch::Visit(int address, double checksumFrom) {
  SearchResult result = Ask(address, checksumFrom);
  if (!services_.exchange.Alive()) return std::nullopt;  // nothing is known about this address
  if (!result.Found() && !result.Absent()) ShowConflict(address);
  return result;
}

SearchResult TerminalSearch::Ask(int address, double checksumFrom) {
  Exchange& exchange = services_.exchange;
  SearchResult result;
  result.address = address;
  const EchoCheck echo(exchange);
  exchange.SendString(SelectAddress(address).Text(), Pending::Discard);
  exchange.WaitUntilSent();
  const Reply reply = exchange.SendQuery(AskAddress());
  result.took = exchange.LastWait();
  result.reply = reply.text;
  result.received = reply.received;
  result.heard = ReadAddressReply(address, reply);
  result.echoed = echo.Came();
  if (result.heard == Heard::Itself) {
    ShowFound(address);
    ReadVersionOf(result, checksumFrom);
  }
  return result;
}

void TerminalSearch::ShowFound(int address) {
  services_.exchange.SendString(FoundDisplay(address), Pending::Discard);
  services_.exchange.WaitUntilSent();
}

void TerminalSearch::ReadVersionOf(SearchResult& result, double checksumFrom) {
  const Reply reply = services_.exchange.SendQuery(AskVersion());
  // An answer that this machine has held up is no slow Terminal's: those are slow each time.
  if (!reply.Failed()) result.took = std::min(result.took, services_.exchange.LastWait());
  result.versionReply = reply.text;
  result.versionReceived = reply.received;
  result.versionUsable = !reply.Failed() && IsVersion(reply.text);
  if (!result.versionUsable) return;
  NoteVersion(services_.state, reply);
  result.checksum = ReadVersion(reply.text).number >= checksumFrom;
}

bool TerminalSearch::ShowConflict(int address) {
  services_.exchange.SendString(ConflictDisplay(address));
  services_.exchange.WaitUntilSent();
  return services_.exchange.Alive() && services_.reopenPort();
}

}  // namespace kelvo
