#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bus/addresses.h"
#include "link/exchange.h"
#include "terminal/terminal_state.h"

// The search for Terminals on an RS-485 line: every address from 0 on is asked for its address and
// its version, and whoever is there shows its address on its own display.

namespace kelvo {

/// What was heard under an address.
enum class Heard {
  Silence,       ///< not one character
  Unfinished,    ///< characters, but no end mark within the time
  Itself,        ///< the Terminal of this address
  OtherAddress,  ///< a reply with another number
  Garbled,       ///< a reply without a number
};

/// What the search has found at one address. Replies are wire texts.
struct SearchResult {
  int address = 0;
  Heard heard = Heard::Silence;
  std::string reply;                 ///< to "?A"; "TimeOut" when none was complete
  std::string received;              ///< all that came after "?A", whatever it was
  std::string versionReply;          ///< to "?V", empty when that was not asked
  std::string versionReceived;       ///< all that came after "?V"
  std::chrono::nanoseconds took{0};  ///< until an answer was complete, or given up
  bool versionUsable = false;
  bool checksum = false;  ///< its version computes checksums
  bool echoed = false;    ///< the line has brought back what was sent

  bool Found() const { return heard == Heard::Itself && versionUsable; }
  bool Absent() const { return heard == Heard::Silence || heard == Heard::Unfinished; }
};

/// Drawn by the Terminal that was found: "Adresse : n".
std::string FoundDisplay(int address);
/// Drawn by all that listen to one address: "Konflikt !", "Adresse : n".
std::string ConflictDisplay(int address);

/// What the reply to "?A" tells. The number counts from the reply's third character on, because a
/// Terminal repeats the letters.
Heard ReadAddressReply(int address, const Reply& reply);

/// The texts of a result's row.
std::string ResultName(int address);                    ///< "(Anzeige Nr.5)"
std::string ResultVerdict(const SearchResult& result);  ///< "ok", "nicht vorhanden", …
std::string YesNoText(bool yes);                        ///< "ja", "nein"
/// In whole German sentences what happened, with the characters received. UTF-8.
std::string ResultStory(const SearchResult& result);
/// The results as a text of lines with tabulators between the columns, UTF-8.
std::string SearchReport(const std::vector<SearchResult>& results);

/// Whether the line brings back what is sent from now on.
class EchoCheck {
 public:
  explicit EchoCheck(const Exchange& exchange)
      : exchange_(exchange), before_(exchange.CharactersEchoed()) {}
  bool Came() const { return exchange_.CharactersEchoed() > before_; }

 private:
  const Exchange& exchange_;
  std::size_t before_;
};

/// The search itself. It ends early when it is stopped or the line is lost, in either case with the
/// same closing steps.
class TerminalSearch {
 public:
  struct Services {
    Exchange& exchange;
    TerminalState& state;  ///< takes each version
    /// Closes the port and opens it again, which empties both buffers; false when it failed.
    std::function<bool()> reopenPort;
  };
  enum class End { Complete, Stopped, LineLost };
  using Listener = std::function<void(const SearchResult& result)>;

  explicit TerminalSearch(Services services) : services_(std::move(services)) {}

  /// Searches the addresses `first`..`last`. `checksumFrom` is the first version with checksums.
  /// The listener is told of each address as soon as it is done. Afterwards the last address asked
  /// remains the selected one.
  End Run(int last, double checksumFrom, const Listener& listener, int first = 0);
  /// The steps for one address, display and all; nothing when the line was lost in them.
  std::optional<SearchResult> Visit(int address, double checksumFrom);
  /// What a Terminal that has answered to its address is told and asked next.
  void ShowFound(int address);
  void ReadVersionOf(SearchResult& result, double checksumFrom);
  /// Ends it after the present address.
  void Stop() { stopping_ = true; }

 private:
  SearchResult Ask(int address, double checksumFrom);
  bool ShowConflict(int address);

  Services services_;
  bool stopping_ = false;
};

}  // namespace kelvo
