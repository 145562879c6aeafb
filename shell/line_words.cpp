#include "shell/line_words.h"

#include "base/wire_text.h"

namespace kelvo {
namespace {

using std::chrono::seconds;

constexpr seconds kMinute{60};
constexpr seconds kHour{3600};
constexpr std::size_t kLongestVersionText = 20;

std::string Age(seconds since) {
  if (since < seconds(1)) return "eben";
  if (since < kMinute) return "vor " + std::to_string(since.count()) + " s";
  if (since < kHour) return "vor " + std::to_string(since / kMinute) + " min";
  return "vor über 1 h";
}

std::string NamedAddress(int address, const TerminalNames& names) {
  const std::string name = names(address);
  return (name.empty() ? "" : name + ", ") + "Adresse " + std::to_string(address);
}

}  // namespace

std::string ListenerWords(const LineState& state, const TerminalNames& names) {
  switch (state.Listens()) {
    case Listening::All:
      return "alle Terminals";
    case Listening::Nobody:
    case Listening::One:
      return state.Meant() ? NamedAddress(*state.Meant(), names) : "keines gewählt";
    case Listening::Unknown:
      break;
  }
  return "Terminal nicht bekannt";
}

std::string DoubtWords(const LineState& state) {
  if (state.Listens() == Listening::Nobody && !state.Meant()) {
    return "aber es ist kein Terminal gewählt";
  }
  if (state.Answers() != Answering::Silent) return {};
  return state.Listens() == Listening::All ? "aber es antwortet keines"
                                           : "aber das Terminal antwortet nicht";
}

std::string AnswerWords(const LineState& state) {
  switch (state.Answers()) {
    case Answering::Disconnected:
      return "getrennt";
    case Answering::Lost:
      return "getrennt, das Gerät fehlt";
    case Answering::Held:
      return "Leitung gehalten";
    case Answering::NotAsked:
      return state.SendsUnasked() ? "sendet Zeichen, noch nicht gefragt" : "noch nicht gefragt";
    case Answering::Answered:
      return "hat " + Age(state.SinceAnswer()) + " geantwortet";
    case Answering::Unclear:
      return state.Listens() == Listening::All
                 ? "unklar, mehrere zugleich? (" + Age(state.SinceAnswer()) + ")"
                 : "hat " + Age(state.SinceAnswer()) + " unklar geantwortet";
    case Answering::Silent:
      break;
  }
  if (state.SendsUnasked()) return "sendet Zeichen, antwortet aber nicht";
  const int count = state.Unanswered();
  return "antwortet nicht (seit " + std::to_string(count) +
         (count == 1 ? " Befehl)" : " Befehlen)");
}

const char* AnswerSign(const LineState& state) {
  switch (state.Answers()) {
    case Answering::Disconnected:
    case Answering::Lost:
      return "–";
    case Answering::Held:
      return "=";
    case Answering::NotAsked:
      return "?";
    case Answering::Answered:
      return "✓";
    case Answering::Unclear:
      return "!";
    case Answering::Silent:
      break;
  }
  if (state.SendsUnasked()) return "!";
  return "✗";
}

seconds AnswerWordsLast(const LineState& state) {
  const Answering answers = state.Answers();
  if (answers != Answering::Answered && answers != Answering::Unclear) return {};
  const seconds since = state.SinceAnswer();
  if (since < kMinute) return seconds(1);
  return since < kHour ? kMinute - since % kMinute : seconds(0);
}

std::string CheckWords(const LineState& state, const TerminalNames& names, const Reply& address,
                       const Reply& version) {
  if (address.kind == ReplyKind::Silent && version.kind == ReplyKind::Silent) {
    return "Es hat kein Terminal geantwortet.";
  }
  if (address.Failed() || version.Failed()) return "Die Antwort war nicht vollständig.";
  if (!address.readable || !version.readable) return "Die Antwort war nicht lesbar.";
  const std::string said = ReadableText(version.text).substr(0, kLongestVersionText);
  if (state.Listens() == Listening::All) {
    return "Gewählt sind alle, und es wurde geantwortet, Version " + said + ".";
  }
  const auto number = state.Address();
  return (number ? "Das Terminal " + NamedAddress(*number, names) : "Ein Terminal") +
         " antwortet, Version " + said + ".";
}

}  // namespace kelvo
