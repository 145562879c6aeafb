#include "bus/terminal_search.h"

#include <algorithm>

#include "base/val.h"
#include "base/wire_text.h"
#include "link/control_characters.h"
#include "settings/status.h"

namespace kelvo {
namespace {

using std::chrono::milliseconds;

// In force for the search as written; a query brings its own 500 ms all the same.
constexpr milliseconds searchTimeout{100};
constexpr milliseconds usualTimeout{1000};
constexpr std::size_t longestVersion = 20;
constexpr std::string_view digits = "0123456789";

std::string Commands(std::initializer_list<std::string_view> commands) {
  std::string text;
  for (const std::string_view command : commands) text.append(CmdPrefix).append(command);
  return text;
}

std::string_view NumberPart(std::string_view reply) {
  return reply.substr(std::min<std::size_t>(reply.size(), 2));
}

bool BeginsWithDigit(std::string_view text) {
  return !text.empty() && digits.find(text.front()) != std::string_view::npos;
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

}  // namespace

std::string FoundDisplay(int address) {
  return Commands({"GC", "GP50,150;", "GF8;", "GZ3,3;", "GA0;", "GT Adresse : ", "GP130,90;",
                   "GT" + std::to_string(address)});
}

std::string ConflictDisplay(int address) {
  return Commands({"GC", "GP10,150;", "GF8;", "GZ3,3;", "GA0;", "GTKonflikt ! ", "GP20,90;",
                   "GTAdresse : " + std::to_string(address)});
}

Heard ReadAddressReply(int address, bool timedOut, std::string_view reply,
                       std::string_view received) {
  if (timedOut && reply != "TimeOut") return Heard::Garbled;
  if (timedOut) return received.empty() ? Heard::Silence : Heard::Unfinished;
  const std::string_view number = NumberPart(reply);
  // A text without a number has the value 0 and so counts as address 0; there the version decides.
  if (Val(number) == address) return Heard::Itself;
  return BeginsWithDigit(number) ? Heard::OtherAddress : Heard::Garbled;
}

bool IsVersion(std::string_view reply) {
  if (!BeginsWithDigit(reply) || reply.size() > longestVersion) return false;
  std::string_view rest = reply.substr(std::min(reply.find_first_not_of(digits), reply.size()));
  if (rest.starts_with('.')) {
    rest.remove_prefix(1);
    rest = rest.substr(std::min(rest.find_first_not_of(digits), rest.size()));
  }
  return rest.find_first_of(digits) == std::string_view::npos;
}

std::string ResultName(int address) { return "(Anzeige Nr." + std::to_string(address) + ")"; }

std::string ResultVerdict(const SearchResult& result) {
  if (result.Absent()) return "nicht vorhanden";
  return result.Found() ? "ok" : "Fehler/Kollision";
}

std::string YesNoText(bool yes) { return yes ? "ja" : "nein"; }

std::string ResultStory(const SearchResult& result) {
  std::string story = HeardStory(result);
  if (result.address == AllAddresses && !result.Found()) {
    story += " Auf diese Adresse hören alle Terminals.";
  }
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

TerminalSearch::End TerminalSearch::Run(int last, double checksumFrom, const Listener& listener) {
  Exchange& exchange = services_.exchange;
  stopping_ = false;
  exchange.SetReplyTimeout(searchTimeout);
  bool connected = services_.reopenPort();
  for (int address = 0; connected && address <= last && !stopping_; ++address) {
    const SearchResult result = Ask(address, checksumFrom);
    connected = exchange.Alive();
    if (!connected) break;  // nothing is known about this address
    if (!result.Found() && !result.Absent()) connected = ShowConflict(address);
    listener(result);
  }
  exchange.SetReplyTimeout(usualTimeout);
  if (!connected) return End::LineLost;
  return stopping_ ? End::Stopped : End::Complete;
}

SearchResult TerminalSearch::Ask(int address, double checksumFrom) {
  Exchange& exchange = services_.exchange;
  SearchResult result;
  result.address = address;
  Send(SetAddressCommand(std::to_string(address)), Pending::Discard);
  // On a two-wire bus the selection is heard as well; the query drops what is there when it starts.
  exchange.WaitUntilSent();
  result.reply = Query("?A");
  const bool timedOut = exchange.LastStatus != 0;
  result.received = exchange.LastReceived();
  result.heard = ReadAddressReply(address, timedOut, result.reply, result.received);
  if (result.heard == Heard::Itself) AskVersion(result, checksumFrom);
  return result;
}

void TerminalSearch::AskVersion(SearchResult& result, double checksumFrom) {
  Send(FoundDisplay(result.address), Pending::Discard);
  services_.exchange.WaitUntilSent();
  result.versionReply = Query("?V");
  result.versionReceived = services_.exchange.LastReceived();
  result.versionUsable = services_.exchange.LastStatus == 0 && IsVersion(result.versionReply);
  if (!result.versionUsable) return;
  NoteVersion(services_.state, result.versionReply);
  result.checksum = ReadVersion(result.versionReply).number >= checksumFrom;
}

bool TerminalSearch::ShowConflict(int address) {
  Send(ConflictDisplay(address), Pending::Keep);
  services_.exchange.WaitUntilSent();
  return services_.exchange.Alive() && services_.reopenPort();
}

void TerminalSearch::Send(std::string command, Pending pending) {
  Exchange& exchange = services_.exchange;
  exchange.CommandBuffer = std::move(command);
  exchange.LastStatus =
      exchange.SendString(exchange.CommandBuffer, pending, Acknowledge::None) ? -1 : 0;
}

std::string TerminalSearch::Query(const char* query) {
  services_.exchange.CommandBuffer = query;
  services_.exchange.QueryCommand();
  return services_.exchange.CommandBuffer;
}

}  // namespace kelvo
