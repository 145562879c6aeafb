#pragma once

#include <string>

#include "inventory/journal.h"

// What is said of how far a statement about a Terminal is to be trusted, in German. UTF-8.

namespace kelvo {

/// "22.11.2026 16:31", in local time.
std::string LocalMoment(JournalTime time);

/// "geprüft", "bestätigt"
std::string ProofWords(Proof proof);
/// The same, "an alle, bestätigt" where it went to all of a line at once.
std::string RestsWords(const Held& held);
/// "keine Antwort", "Löschen: bestätigt, aber nicht bekannt, von wem", "an Adresse 5 bestätigt; ob
/// sie zuhört, ist offen"
std::string RestsWords(const Doubt& doubt);

}  // namespace kelvo
