#pragma once

#include <functional>
#include <string>

#include "link/line_state.h"

// What is known of the line, in German, UTF-8.

namespace kelvo {

/// The stored name of the Terminal with this address; empty for none, and for the one that the
/// search gives, which is its address.
using TerminalNames = std::function<std::string(int address)>;

/// "Halle 1 Tor, Adresse 7", "Adresse 7", "alle Terminals", "keines gewählt",
/// "Terminal nicht bekannt".
std::string ListenerWords(const LineState& state, const TerminalNames& names);

/// Why something sent may not have arrived: "aber es ist kein Terminal gewählt"; empty where
/// nothing is known against it.
std::string DoubtWords(const LineState& state);

/// How it stands with the answer: "hat vor 8 s geantwortet".
std::string AnswerWords(const LineState& state);
/// A sign for that, each of another shape.
const char* AnswerSign(const LineState& state);
/// How long until the words change without anything having happened; 0 when they do not.
std::chrono::seconds AnswerWordsLast(const LineState& state);

/// What "?A" and "?V" have brought, as a sentence.
std::string CheckWords(const LineState& state, const TerminalNames& names, const Reply& address,
                       const Reply& version);

}  // namespace kelvo
