#include "interfaces/line_finder.h"

#include <algorithm>

#include "base/wire_text.h"
#include "interfaces/port_control.h"
#include "link/addresses.h"
#include "link/control_characters.h"

namespace kelvo {
namespace {

constexpr std::size_t kShown = 20;

std::string Setting(std::string_view baud, std::string_view parity, std::string_view bits,
                    std::string_view stopBits) {
  return MakePortSettings(baud, parity, bits, stopBits, 0).text;
}

// Begins with a digit, and all of it can be read: wrong settings do not look like that.
bool IsVersionReply(const Reply& reply) {
  const std::size_t first = reply.text.find_first_not_of(' ');
  if (reply.Failed() || first == std::string::npos) return false;
  return reply.text[first] >= '0' && reply.text[first] <= '9' &&
         std::all_of(reply.text.begin(), reply.text.end(),
                     [](char c) { return c >= ' ' && c < 127; });
}

bool Any(const std::vector<LineResult>& results, LineHeard heard) {
  return std::any_of(results.begin(), results.end(),
                     [heard](const LineResult& result) { return result.heard == heard; });
}

std::string Unreadable(const std::vector<LineResult>& results, int address) {
  std::string at;
  for (const LineResult& result : results) {
    if (result.heard == LineHeard::Unreadable) at += (at.empty() ? "" : "; ") + result.settings;
  }
  return "Nichts gefunden, aber es kam etwas Unlesbares (" + at + "). " +
         (address == kAllAddresses ? "Antworten mehrere Terminals zugleich? Dann mit der Adresse "
                                     "eines einzelnen suchen. "
                                   : "") +
         "Vermutlich stören die Leitung oder ihr Abschluss.";
}

std::string Asked(int address) {
  return address == kAllAddresses ? "Gefragt wurden alle Adressen (255). Am Bus antworten darauf "
                                    "alle Terminals zugleich, und keines ist zu verstehen: Dann "
                                    "mit der Adresse eines einzelnen suchen."
                                  : "Gefragt wurde nur die Adresse " + std::to_string(address) +
                                        "; vielleicht hat das Terminal eine andere.";
}

}  // namespace

std::vector<std::string> LineTries() {
  std::vector<std::string> tries;
  const auto rates = ComEntries(ComBaud1);
  for (auto rate = rates.rbegin(); rate != rates.rend(); ++rate) {
    tries.push_back(Setting(rate->text, "N", "8", "1"));
  }
  for (const ListEntry& stopBits : ComEntries(ComStopBit1)) {
    for (const ListEntry& parity : ComEntries(ComParity1)) {
      for (const ListEntry& bits : ComEntries(ComBits1)) {
        for (auto rate = rates.rbegin(); rate != rates.rend(); ++rate) {
          const std::string text = Setting(rate->text, parity.text, bits.text, stopBits.text);
          if (std::find(tries.begin(), tries.end(), text) == tries.end()) tries.push_back(text);
        }
      }
    }
  }
  return tries;
}

std::string HeardText(const LineResult& result) {
  const std::string quoted = "„" + ReadableText(result.received.substr(0, kShown)) +
                             (result.received.size() > kShown ? "…“" : "“");
  switch (result.heard) {
    case LineHeard::Nothing:
      return "nichts";
    case LineHeard::Unreadable:
      return "unlesbar: " + quoted;
    case LineHeard::Terminal:
      return "ein Terminal: " + quoted;
    case LineHeard::Refused:
      return "kann das Gerät nicht";
    case LineHeard::Held:
      return "nicht gesendet, die Leitung wird gehalten";
  }
  return {};
}

std::string FinderReport(const std::vector<LineResult>& results, int address, bool stopped) {
  if (!results.empty() && results.back().heard == LineHeard::Terminal) {
    return "Gefunden: Das Terminal antwortet mit " + results.back().settings + ".";
  }
  if (stopped) {
    const bool rates = results.size() >= kUsualTries && address == kAllAddresses;
    return "Abgebrochen, bis dahin nichts gefunden." + (rates ? " " + Asked(address) : "");
  }
  if (Any(results, LineHeard::Unreadable)) return Unreadable(results, address);
  if (Any(results, LineHeard::Held)) {
    return "Nichts gefunden: Die Leitung wird gehalten. Vermutlich fehlt beim Handshake RTS / CTS "
           "eine Ader; XOn / XOff wählen und noch einmal suchen.";
  }
  return "Nichts gefunden, bei keiner Einstellung kam ein Zeichen. Ist das Terminal eingeschaltet? "
         "Stimmt der Anschluss? Sind die Adern richtig verbunden (TXD und RXD gekreuzt, A an A, B "
         "an "
         "B)? " +
         Asked(address);
}

std::string AdviceAfterRates(const std::vector<LineResult>& results, int address) {
  const bool found = Any(results, LineHeard::Terminal);
  if (results.size() != kUsualTries || address != kAllAddresses || found) return {};
  return "Mit den sechs üblichen Einstellungen nichts gefunden. " + Asked(address) +
         " Die Suche geht noch etwa eine Minute weiter.";
}

std::vector<LineResult> LineFinder::Run(int address, Handshaking handshaking,
                                        const std::function<void(const LineResult&)>& listener) {
  stopping_ = false;
  std::vector<LineResult> results;
  for (const std::string& settings : LineTries()) {
    LineResult result = Try(settings, address, handshaking);
    if (!exchange_.Alive()) break;  // nothing is known about this one
    listener(result);
    results.push_back(std::move(result));
    if (results.back().heard == LineHeard::Terminal || stopping_) break;
  }
  return results;
}

LineResult LineFinder::Try(const std::string& settings, int address, Handshaking handshaking) {
  if (!com1_.SetUp(settings, handshaking).empty()) return {settings, LineHeard::Refused, {}};
  com1_.DiscardInput();
  // What was sent with a wrong setting may have begun anything; it is closed first.
  exchange_.SendString(std::string{';', kEtx, kEot} + SelectAddress(address).Text(),
                       Pending::Discard);
  const Reply reply = exchange_.SendQuery(AskVersion());
  if (com1_.Held()) {
    com1_.DiscardOutput();
    return {settings, LineHeard::Held, reply.received};
  }
  const LineHeard unclear = reply.received.empty() ? LineHeard::Nothing : LineHeard::Unreadable;
  return {settings, IsVersionReply(reply) ? LineHeard::Terminal : unclear, reply.received};
}

}  // namespace kelvo
