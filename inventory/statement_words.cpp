#include "inventory/statement_words.h"

#include <array>
#include <ctime>

#include "inventory/journal_text.h"

namespace kelvo {

std::string LocalMoment(JournalTime time) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
  const std::time_t moment = std::chrono::system_clock::to_time_t(seconds);
  std::tm local{};
  localtime_r(&moment, &local);
  std::array<char, 40> text{};
  const std::size_t length = std::strftime(text.data(), text.size(), "%d.%m.%Y %H:%M", &local);
  return {text.data(), length};
}

std::string ProofWords(Proof proof) { return proof == Proof::Checksum ? "geprüft" : "bestätigt"; }

std::string RestsWords(const Held& held) {
  return (held.broadcast ? "an alle, " : "") + ProofWords(held.proof);
}

std::string RestsWords(const Doubt& doubt) {
  const bool goes = doubt.change != ItemChange::Kind::Written && doubt.event != Event::ByMacro;
  const std::string deletes = goes ? "Löschen: " : "";
  const bool acknowledged = doubt.event == Event::Acknowledged;
  if (!doubt.at) {
    return deletes +
           (acknowledged ? "bestätigt, aber nicht bekannt, von wem" : EventText(doubt.event));
  }
  return deletes + "an Adresse " + std::to_string(*doubt.at) +
         (acknowledged ? " bestätigt; ob sie zuhört, ist offen" : ": " + EventText(doubt.event));
}

}  // namespace kelvo
